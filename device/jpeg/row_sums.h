// The sums of which a smaller picture is made.

#pragma once

#include "reducing_taps.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace lindenreed::device {

// All use the best instruction set of the processor, and give the same with each.

constexpr std::size_t mixedAtOnce = 16; ///< bytes

/// A row of the target's height: the sum of `rows` (whole times 8), each by its weight, with further bits.
/// `bytes`: whole times mixedAtOnce.
void mixRows(std::span<const std::uint8_t *const> rows, const std::int16_t *weights, std::size_t bytes,
             std::int16_t *mixed);

/// A target row of one byte a pixel, and of four. Behind the last pixel `mixed` has as many as there are
/// taps.
void reduceGreys(const std::int16_t *mixed, const ReducingTaps &taps, std::uint8_t *target);
void reducePixels(const std::int16_t *mixed, const ReducingTaps &taps, std::uint8_t *target);

} // namespace lindenreed::device
