// Lengths of the design in pixels of this panel.

#pragma once

#include <facts.h>

#include <QtMath>

namespace lindenreed::device::measures {

inline constexpr double designDpi = 300; ///< design lengths are pixels of a panel this fine
inline constexpr double dpBase = 160; ///< one dp is one pixel of a panel this fine

/// Whole pixels for a density-independent length. Any thread.
inline int dp(double value)
{
    return qRound(value * facts().dpi / dpBase);
}

/// Whole pixels for a length of the design. Any thread.
inline int pixelsFromDesign(double value)
{
    return qRound(value * facts().dpi / designDpi);
}

} // namespace lindenreed::device::measures
