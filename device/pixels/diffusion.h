// The rules of the error diffusion, and the part of it that is compiled once for each instruction set.

#pragma once

#include "level_curve.h"
#include "picture.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace lindenreed::pixels {

/// A pixel's error goes on in sixteenths. The shares are rounded down; down right gets what is left.
inline constexpr int toRight = 7;
inline constexpr int toDownLeft = 3;
inline constexpr int toDown = 5;
inline constexpr int toDownRight = 1;

/// The threshold between two levels moves by up to this much to either side: enough to break up the rows and
/// worms into which the dots of a flat field would fall.
inline constexpr int noiseLimit = 432;

/// From one pixel to the next the noise goes on by the golden section of its range: neighbours differ widely,
/// and no short period meets that of the dots.
inline constexpr std::uint16_t noiseStep = 40503;

static_assert((32768 * 27) / 2048 == noiseLimit, "of the widest 16-bit fraction");

/// The noise of a row's first pixel, as a signed fraction of 16 bits: f stands for f * 27 / 2048, rounded
/// down.
inline std::uint16_t noisePhase(std::size_t row)
{
    auto bits = static_cast<std::uint32_t>(row);
    bits = (bits ^ (bits >> 16)) * 0x7feb352dU;
    bits = (bits ^ (bits >> 15)) * 0x846ca68bU;
    return static_cast<std::uint16_t>(bits ^ (bits >> 16));
}

/// The row that is imagined above the first has remainders all over the range, and this more: on their way to
/// a rare dot, errors are mostly of one sign.
constexpr int startBias(int fraction)
{
    return ((levelStep / 2 - fraction) * 5) >> 4;
}

/// Errors end at a pixel that lies at a level and has so many of the same grey to its left: an empty sky or a
/// margin stays empty. Fewer would take light from fine patterns.
inline constexpr int solidRun = 3;

/// The curve as the diffusion looks it up.
struct Tables
{
    std::array<std::int16_t, 256> alone;
    std::array<std::uint32_t, 256> first; ///< as the first of two 16-bit numbers, the second 0
    std::array<std::uint32_t, 256> second;
};

/// Room for errors right of a row: a vector of them.
inline constexpr std::ptrdiff_t errorMargin = 16;

/// `area`: grey, of a pixel at least. `errors`: scratch of width + errorMargin. Uses the best instruction set
/// of the processor.
void diffuse(const Picture &area, const LevelCurve &curve, std::span<std::int16_t> errors);

} // namespace lindenreed::pixels
