// Error diffusion as it is told, without a thought for speed: what the fast way is held against.

#pragma once

#include "tone.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace lindenreed::pixels {

inline int dividedRoundingDown(int number, int divisor)
{
    return static_cast<int>(std::floor(double(number) / divisor));
}

/// Pixel after pixel, every share written down where it goes, in sixteenths of a grey.
inline void diffuseSlowly(const Picture &picture, std::size_t left, std::size_t top, std::size_t width,
                          std::size_t height)
{
    if (left >= picture.width || top >= picture.height)
        return;
    width = std::min(width, picture.width - left);
    height = std::min(height, picture.height - top);
    const auto pixel = [&](std::size_t x, std::size_t y) -> std::uint8_t & {
        return picture.data[(top + y) * picture.stride + left + x];
    };

    std::vector<std::vector<int>> values(height, std::vector<int>(width));
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x)
            values[y][x] = 16 * pixel(x, y);
    }
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const int value = std::clamp(values[y][x], -136, 16 * 255 + 135);
            const int level = dividedRoundingDown(value + 136, 16 * 17);
            const int error = value - level * 16 * 17;
            pixel(x, y) = static_cast<std::uint8_t>(level * 17);

            const bool hasLeft = x > 0;
            const bool hasRight = x + 1 < width;
            if (y + 1 == height) {
                if (hasRight)
                    values[y][x + 1] += error;
                continue;
            }
            const int right = dividedRoundingDown(7 * error + 8, 16);
            const int downLeft = dividedRoundingDown(3 * error + 8, 16);
            const int down = dividedRoundingDown(5 * error + 8, 16);
            const int downRight = error - right - downLeft - down;
            values[y + 1][x] += down;
            values[y + 1][hasLeft ? x - 1 : x] += downLeft;
            values[y + 1][hasRight ? x + 1 : x] += downRight;
            values[hasRight ? y : y + 1][hasRight ? x + 1 : x] += right;
        }
    }
}

} // namespace lindenreed::pixels
