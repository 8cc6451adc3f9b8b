// How a key of the keyboard looks.

#pragma once

#include "keyboard_page.h"

class QPainter;

namespace lindenreed::device {

struct KeyLook
{
    bool inverted = false; ///< pressed, or switched on
    bool framed = false; ///< chosen by the arrow keys
};

/// The ground between the keys, with the line along the upper edge.
void drawKeyboardGround(QPainter &painter, const QSize &keyboard, int dpi);

void drawKey(QPainter &painter, const KeyboardKey &key, KeyLook look, int dpi);

} // namespace lindenreed::device
