// What the panel can show of a grey.

#pragma once

#include <array>
#include <cstdint>

namespace lindenreed::device {

using ToneTable
    = std::array<std::uint8_t, 256>; ///< index: grey (or channel) wanted, value: what the panel shows

/// The nearest of `levels` evenly spread greys (2 to 256). With 16 levels the multiples of 17 pass unchanged,
/// so that what was dithered stays as it is; with 256 everything does. Inverted, the table is turned round.
ToneTable toneTable(int levels, bool inverted);

} // namespace lindenreed::device
