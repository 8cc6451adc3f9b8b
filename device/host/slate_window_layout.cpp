#include "slate_window_layout.h"

#include <algorithm>
#include <cmath>

namespace lindenreed::remote {

namespace {

constexpr double mostDivisor = 8;
constexpr double muchEmpty = 0.75; ///< of the length that would fit
constexpr double step = 1.002; ///< about a pixel of a panel

bool fits(QSize size, QSize room)
{
    return size.width() <= room.width() && size.height() <= room.height();
}

} // namespace

WindowLayout::WindowLayout(QSize panel, double divisor, double ratio)
    : m_body(panel, divisor)
    , m_strip(m_body.size(), m_body.divisor(), ratio)
{
}

double WindowLayout::divisorFor(QSize panel, QSize room, double ratio)
{
    double exact = 1;
    while (exact < mostDivisor && !fits(WindowLayout(panel, exact, ratio).size(), room))
        exact *= step;
    const double whole = std::ceil(exact);
    return std::min(mostDivisor, exact / whole >= muchEmpty ? whole : exact);
}

QSize WindowLayout::size() const
{
    const QSize body = m_body.size();
    return {m_strip.plate().x() + m_strip.plate().width(),
            std::max(body.height(), m_strip.plate().y() + m_strip.plate().height())};
}

} // namespace lindenreed::remote
