#include "tone_table.h"

#include <algorithm>

namespace lindenreed::device {

ToneTable toneTable(int levels, bool inverted)
{
    ToneTable table = {};
    const int steps = std::clamp(levels, 2, 256) - 1;
    for (int grey = 0; grey < 256; ++grey) {
        const int step = (grey * steps + 127) / 255;
        table[std::size_t(grey)] = std::uint8_t((step * 255 + steps / 2) / steps);
    }
    if (inverted)
        std::reverse(table.begin(), table.end());
    return table;
}

} // namespace lindenreed::device
