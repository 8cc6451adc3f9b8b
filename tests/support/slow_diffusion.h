// Error diffusion as it is told, without a thought for speed: what the fast way is held against.

#pragma once

#include "diffusion.h"
#include "tone.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lindenreed::pixels {

inline int dividedRoundingDown(int number, int divisor)
{
    return static_cast<int>(std::floor(double(number) / divisor));
}

/// What an error leaves to its four neighbours.
struct SlowShares
{
    explicit SlowShares(int error)
        : right(dividedRoundingDown(error * toRight, 16))
        , downLeft(dividedRoundingDown(error * toDownLeft, 16))
        , down(dividedRoundingDown(error * toDown, 16))
        , downRight(error - right - downLeft - down)
    {
    }

    int right, downLeft, down, downRight;
};

/// From -noiseLimit to noiseLimit.
inline int slowNoise(std::size_t x, std::size_t y)
{
    const int fraction = static_cast<std::int16_t>(noisePhase(y) + x * noiseStep);
    return dividedRoundingDown(fraction * 27, 2048);
}

/// Pixel after pixel, every share written down where it goes.
inline void diffuseSlowly(const Picture &picture, std::size_t left, std::size_t top, std::size_t width,
                          std::size_t height, const LevelCurve &curve = evenLevels())
{
    if (left >= picture.width || top >= picture.height)
        return;
    width = std::min(width, picture.width - left);
    height = std::min(height, picture.height - top);
    const auto pixel = [&](std::size_t x, std::size_t y) -> std::uint8_t & {
        return picture.data[(top + y) * picture.stride + left + x];
    };

    std::vector<std::vector<int>> values(height + 1, std::vector<int>(width));
    std::vector<std::vector<std::uint8_t>> greys(height, std::vector<std::uint8_t>(width));
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            greys[y][x] = pixel(x, y);
            values[y][x] = curve[greys[y][x]];
        }
    }
    std::vector<int> imagined(width); // errors of a row above the first
    for (std::size_t x = 0; x < width; ++x) {
        const int fraction = values[0][x] % levelStep;
        if (fraction != 0)
            imagined[x] = static_cast<std::uint16_t>(x * noiseStep) * levelStep / 65536 - levelStep / 2
                + startBias(fraction);
    }
    for (std::size_t x = 0; x < width; ++x) {
        const SlowShares shares(imagined[x]);
        if (x > 0)
            values[0][x - 1] += shares.downLeft;
        values[0][x] += shares.down;
        if (x + 1 < width)
            values[0][x + 1] += shares.downRight;
    }

    for (std::size_t y = 0; y < height; ++y) {
        const auto isSolid = [&](std::size_t x) {
            if (x < std::size_t(solidRun) || curve[greys[y][x]] % levelStep != 0)
                return false;
            for (std::size_t before = x - std::size_t(solidRun); before < x; ++before) {
                if (curve[greys[y][before]] != curve[greys[y][x]])
                    return false;
            }
            return true;
        };
        for (std::size_t x = 0; x < width; ++x) {
            if (isSolid(x))
                values[y][x] = curve[greys[y][x]];
            const int value = std::clamp(values[y][x], -levelStep / 2 - noiseLimit,
                                         15 * levelStep + levelStep / 2 - 1 + noiseLimit);
            const int level
                = std::clamp(dividedRoundingDown(value + slowNoise(x, y) + levelStep / 2, levelStep), 0, 15);
            const int error = value - level * levelStep;
            pixel(x, y) = static_cast<std::uint8_t>(level * 17);

            const bool hasLeft = x > 0;
            const bool hasRight = x + 1 < width;
            if (y + 1 == height) {
                if (hasRight)
                    values[y][x + 1] += error;
                continue;
            }
            const SlowShares shares(error);
            values[y + 1][x] += shares.down;
            values[y + 1][hasLeft ? x - 1 : x] += shares.downLeft;
            values[y + 1][hasRight ? x + 1 : x] += shares.downRight;
            values[hasRight ? y : y + 1][hasRight ? x + 1 : x] += shares.right;
        }
    }
}

} // namespace lindenreed::pixels
