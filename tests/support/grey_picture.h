// A grey picture to try the pixels' code on.

#pragma once

#include "dither.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lindenreed::pixels {

struct Rectangle
{
    std::size_t x = 0;
    std::size_t y = 0;
    std::size_t width = 0;
    std::size_t height = 0;
};

/// A grey picture with its own memory. Padding holds a mark of its own.
struct Grey
{
    static constexpr std::uint8_t paddingMark = 0xA5;

    Grey(std::size_t width_, std::size_t height_, std::size_t padding = 0)
        : width(width_)
        , height(height_)
        , stride(width_ + padding)
        , bytes(stride * height_, paddingMark)
    {
    }

    std::uint8_t &at(std::size_t x, std::size_t y) { return bytes[y * stride + x]; }

    template <typename Source>
    void fill(Source source)
    {
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < width; ++x)
                at(x, y) = static_cast<std::uint8_t>(source(x, y));
        }
    }

    Picture picture() { return {bytes.data(), width, height, stride, 1}; }

    void diffuse(const LevelCurve &curve = evenLevels())
    {
        diffuseTo16Levels(picture(), 0, 0, width, height, curve);
    }

    void diffuse(const Rectangle &area, const LevelCurve &curve = evenLevels())
    {
        diffuseTo16Levels(picture(), area.x, area.y, area.width, area.height, curve);
    }

    std::size_t width;
    std::size_t height;
    std::size_t stride;
    std::vector<std::uint8_t> bytes;
};

} // namespace lindenreed::pixels
