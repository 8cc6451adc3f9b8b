// How turning changes a size.

#pragma once

#include <QSize>

namespace lindenreed::device {

/// A size of the glass as the user sees it in an orientation (0 to 3, as in Screen).
inline QSize turnedSize(const QSize &panelSize, int orientation)
{
    const bool sideways = orientation == 1 || orientation == 2;
    return sideways ? panelSize.transposed() : panelSize;
}

} // namespace lindenreed::device
