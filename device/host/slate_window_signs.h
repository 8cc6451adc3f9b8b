// The signs on the device on the desk: flat, one line, one family.

#pragma once

#include "slate_window_buttons.h"

class QPainter;
class QString;

namespace lindenreed::remote {

/// Draw with the painter's pen, around the origin, within 16 units each way.
void paintKeySign(QPainter *painter, const QString &key);
void paintButtonSign(QPainter *painter, DeviceButton button);

inline constexpr double signLine = 3.5; ///< width of the pen, in the same units

} // namespace lindenreed::remote
