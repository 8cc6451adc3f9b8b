#include "turning.h"

#include "turned_size.h"

namespace lindenreed::device {

QSize Turning::screenSize() const
{
    return turnedSize(m_panelSize, m_orientation);
}

QPoint Turning::toPanel(const QPoint &screenPixel) const
{
    const int lastColumn = m_panelSize.width() - 1;
    const int lastRow = m_panelSize.height() - 1;
    switch (m_orientation) {
    case 1: // the picture's top lies along the right edge of the glass
        return {lastColumn - screenPixel.y(), screenPixel.x()};
    case 2: // along its left edge
        return {screenPixel.y(), lastRow - screenPixel.x()};
    case 3:
        return {lastColumn - screenPixel.x(), lastRow - screenPixel.y()};
    default:
        return screenPixel;
    }
}

QRect Turning::toPanel(const QRect &screenRectangle) const
{
    if (screenRectangle.isEmpty())
        return {};
    const QPoint corner = toPanel(screenRectangle.topLeft());
    const QPoint opposite = toPanel(screenRectangle.bottomRight());
    return QRect(QPoint(qMin(corner.x(), opposite.x()), qMin(corner.y(), opposite.y())),
                 QPoint(qMax(corner.x(), opposite.x()), qMax(corner.y(), opposite.y())));
}

} // namespace lindenreed::device
