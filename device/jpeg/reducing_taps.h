// By which weights a picture is made smaller.

#pragma once

#include <cstdint>
#include <vector>

namespace lindenreed::device {

/// The weights by which one direction is reduced: each target pixel is a sum over `count` source pixels.
struct ReducingTaps
{
    /// `extent`: how much of the source pixels the picture takes, which may end within the last one.
    ReducingTaps(int sourceLength, double extent, int targetLength);

    int count = 0; ///< whole times tapsAtOnce
    std::vector<int> first; ///< source pixel of each target pixel's first weight
    std::vector<std::int16_t> weights; ///< `count` for each target pixel, whose sum is `one`
    static constexpr int tapsAtOnce = 8; ///< weights that are multiplied at once
    static constexpr int bits = 14;
    static constexpr int one = 1 << bits;
};

} // namespace lindenreed::device
