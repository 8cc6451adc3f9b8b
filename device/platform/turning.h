// From the picture as the user holds it to the glass.

#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace lindenreed::device {

/// How screen pixels (as the user holds the device) lie on panel pixels (the glass, never turned).
/// Orientation codes: the picture is turned clockwise on the glass by 0°, 90°, 270° and 180° for 0, 1, 2
/// and 3.
class Turning
{
public:
    Turning(const QSize &panelSize, int orientation)
        : m_panelSize(panelSize)
        , m_orientation(orientation)
    {
    }

    int orientation() const { return m_orientation; }
    QSize screenSize() const;
    QPoint toPanel(const QPoint &screenPixel) const;
    QRect toPanel(const QRect &screenRectangle) const; ///< an empty rectangle stays empty

private:
    QSize m_panelSize;
    int m_orientation;
};

} // namespace lindenreed::device
