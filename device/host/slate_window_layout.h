// Device and buttons together, as large as a display has room for.

#pragma once

#include "slate_window_body.h"
#include "slate_window_strip.h"

namespace lindenreed::remote {

/// Where everything is, in pixels of the display, from the upper left corner of the device.
class WindowLayout
{
public:
    /// `panel`: the panel's size as the user holds it. `ratio`: the display's pixels for a logical one.
    explicit WindowLayout(QSize panel = {}, double divisor = 1, double ratio = 1);

    /// One where everything fits into `room`; else the next whole number, so that every pixel is shown by the
    /// same number of others. Where that would leave much of the room empty, exactly what fits.
    static double divisorFor(QSize panel, QSize room, double ratio = 1);

    const DeviceBody &body() const { return m_body; }
    const ButtonStrip &strip() const { return m_strip; }
    QSize size() const;
    QRegion outline() const { return m_body.outline() + m_strip.outline(); }

private:
    DeviceBody m_body;
    ButtonStrip m_strip;
};

} // namespace lindenreed::remote
