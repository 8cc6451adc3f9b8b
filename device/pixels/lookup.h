// A table for every byte of a picture.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace lindenreed::pixels {

using ByteTable = std::array<std::uint8_t, 256>;

/// Rows of bytes, `stride` bytes from one to the next.
struct Bytes
{
    std::uint8_t *first;
    std::size_t stride;
    std::size_t width;
    std::size_t height;
};

/// Replaces each byte by its entry, in place. Uses the best instruction set of the processor.
void lookUp(const Bytes &bytes, const ByteTable &table);

} // namespace lindenreed::pixels
