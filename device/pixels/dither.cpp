#include "dither.h"

#include "diffusion.h"

#include <algorithm>
#include <vector>

namespace lindenreed::pixels {

void diffuseTo16Levels(const Picture &picture, std::size_t x, std::size_t y, std::size_t width,
                       std::size_t height, const LevelCurve &curve)
{
    if (!picture.data || picture.bytesPerPixel != 1 || x >= picture.width || y >= picture.height)
        return;
    width = std::min(width, picture.width - x);
    height = std::min(height, picture.height - y);
    if (width == 0 || height == 0)
        return;

    std::vector<std::int16_t> errors(width + errorMargin);
    diffuse({picture.data + y * picture.stride + x, width, height, picture.stride, 1}, curve, errors);
}

} // namespace lindenreed::pixels
