// Sentences that the window itself says to the user.

#pragma once

#include "slate_window_layout.h"

#include <QString>

class QPainter;

namespace lindenreed::remote {

/// Beside the buttons, over the device: level with `button`, or with the first one. `ratio` is the display's
/// pixels for a logical one.
void paintTip(QPainter *painter, const WindowLayout &layout, const QString &sentence,
              std::optional<DeviceButton> button, double ratio);

/// Over a panel that has become pale.
void paintLost(QPainter *painter, const QRect &panel, const QString &sentence, double ratio);

} // namespace lindenreed::remote
