// A table for every byte of a picture.

#pragma once

#include "picture.h"

#include <array>
#include <cstdint>

namespace lindenreed::pixels {

using ByteTable = std::array<std::uint8_t, 256>;

/// Replaces each byte of each pixel by its entry, in place. Uses the best instruction set of the processor.
void lookUp(const Picture &picture, const ByteTable &table);

} // namespace lindenreed::pixels
