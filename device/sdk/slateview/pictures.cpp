// Tone and error diffusion of pictures in memory.

#include "slateview.h"

#include "call.h"

#include <dither.h>
#include <facts.h>
#include <panel_levels.h>
#include <tone.h>

#include <algorithm>
#include <optional>

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;
using lindenreed::pixels::Picture;

namespace {

/// The picture of these arguments; nothing where they describe none, or one whose rows overlap.
std::optional<Picture> picture(unsigned char *data, int bytesPerLine, int width, int height)
{
    const int bytesPerPixel = facts().colourMask == 0 ? 1 : 3;
    if (!data || width <= 0 || height <= 0 || qint64(width) * bytesPerPixel > bytesPerLine)
        return std::nullopt;
    return Picture{data, std::size_t(width), std::size_t(height), std::size_t(bytesPerLine), bytesPerPixel};
}

} // namespace

void adjustAreaDefault(unsigned char *data, int bytesPerLine, int width, int height)
{
    note("adjustAreaDefault", bytesPerLine, width, height);
    if (const auto area = picture(data, bytesPerLine, width, height))
        lindenreed::pixels::adjustTone(*area, defaultTone());
}

void adjustAreaWithBrightnessContrastGamma(unsigned char *data, int bytesPerLine, int width, int height,
                                           double brightness, double contrast, double gamma)
{
    note("adjustAreaWithBrightnessContrastGamma", bytesPerLine, width, height, brightness, contrast, gamma);
    if (const auto area = picture(data, bytesPerLine, width, height))
        lindenreed::pixels::adjustTone(*area, {brightness, contrast, gamma});
}

void QuickFloyd16Dither(unsigned char *data, int bytesPerLine, int x, int y, int width, int height)
{
    note("QuickFloyd16Dither", bytesPerLine, x, y, width, height);
    const qint64 left = std::max(x, 0);
    const qint64 top = std::max(y, 0);
    const qint64 right = std::min(qint64(x) + width, qint64(bytesPerLine));
    const qint64 bottom = qint64(y) + height;
    if (!data || left >= right || top >= bottom)
        return;
    // Inverted, a show's pictures come inverted, and the screen turns them round again.
    const auto &curve = facts().inverted ? invertedLevelCurve() : levelCurve();
    // The picture reaches at least as far as the rectangle; how much further does not matter.
    const Picture area{data, std::size_t(right), std::size_t(bottom), std::size_t(bytesPerLine), 1};
    lindenreed::pixels::diffuseTo16Levels(area, std::size_t(left), std::size_t(top),
                                          std::size_t(right - left), std::size_t(bottom - top), curve);
}
