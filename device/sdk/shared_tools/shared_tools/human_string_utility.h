// Numbers as text for people.

#pragma once

#include <cstdint>

namespace lindenreed::utilities {

class HumanStringUtility
{
public:
    /// Writes `count` times `unit` bytes as a short text in the device language, such as "29.1 GB" or
    /// "12,4 Go": units by 1024, one decimal below 100, a blank at which a narrow place breaks the line.
    /// UTF-8, at most `size` - 1 bytes of whole characters, always ended. Returns their number; 0, and
    /// nothing is written, for a null buffer or a size below 1. `flag` is accepted and changes nothing. Any
    /// thread.
    static int HumanSizeWithPrecision(char *buffer, int size, std::uint64_t count, std::uint64_t unit,
                                      bool flag);
};

} // namespace lindenreed::utilities
