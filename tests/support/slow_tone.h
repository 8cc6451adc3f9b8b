// Tone adjustment as it is told, pixel after pixel: what the fast way is held against.

#pragma once

#include "tone.h"

#include <algorithm>
#include <cmath>

namespace lindenreed::pixels {

/// Of a grey picture, by factors within their limits.
inline void adjustToneSlowly(const Picture &picture, const Tone &tone)
{
    for (std::size_t y = 0; y < picture.height; ++y) {
        for (std::size_t x = 0; x < picture.width; ++x) {
            std::uint8_t &grey = picture.data[y * picture.stride + x];
            double value = std::clamp(grey / 255.0 * tone.brightness, 0.0, 1.0);
            value = std::clamp((value - 0.5) * tone.contrast + 0.5, 0.0, 1.0);
            grey = static_cast<std::uint8_t>(std::lround(std::pow(value, 1 / tone.gamma) * 255));
        }
    }
}

} // namespace lindenreed::pixels
