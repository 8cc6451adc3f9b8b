// How the status panel looks.

#pragma once

#include <QImage>
#include <QString>

#include <optional>

namespace lindenreed::device {

/// What the status panel tells.
struct StatusValues
{
    QString clock;
    bool card = false;
    bool usb = false;
    bool light = false;
    std::optional<int> battery; ///< percent; nothing where there is no battery

    bool operator==(const StatusValues &) const = default;
};

/// The percentage as it is written beside the battery.
QString batteryText(int percent);

/// Black signs and text on white: the clock at the left, at the right what is there of card, USB, light and
/// battery.
QImage drawStatusPanel(const QSize &size, int dpi, QImage::Format format, const StatusValues &values);

} // namespace lindenreed::device
