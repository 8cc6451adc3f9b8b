// A table for every byte of a row.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace lindenreed::pixels {

using ByteTable = std::array<std::uint8_t, 256>;

/// Replaces each byte by its entry, in place. Uses the best instruction set of the processor.
void lookUp(std::uint8_t *bytes, std::size_t count, const ByteTable &table);

} // namespace lindenreed::pixels
