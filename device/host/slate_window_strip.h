// The strip of buttons beside the device on the desk.

#pragma once

#include "slate_window_buttons.h"

#include <QRect>
#include <QRegion>

#include <optional>

class QPainter;

namespace lindenreed::remote {

/// A plate of the body's own material, one button above the other. Measures in pixels of the display.
class ButtonStrip
{
public:
    /// Right of a body of this size, level with its panel. Shrinks with the body, to 36 logical pixels a
    /// button and no further; `ratio` is the display's pixels for a logical one.
    explicit ButtonStrip(QSize body = {}, double divisor = 1, double ratio = 1);

    QRect plate() const { return m_plate; }
    QRegion outline() const; ///< every pixel that the plate touches
    QRect buttonRectangle(DeviceButton button) const;
    std::optional<DeviceButton> buttonAt(QPoint point) const;

    /// `pressed`: the one that a finger is on.
    void paint(QPainter *painter, const ButtonStates &states, std::optional<DeviceButton> pressed) const;

private:
    int m_button; ///< width and height of one
    int m_margin; ///< above the first and below the last
    QRect m_plate;
};

} // namespace lindenreed::remote
