#include "tone.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lindenreed::pixels {

namespace {

using Curve = std::array<std::uint8_t, 256>;

double factor(double value, double lowest)
{
    constexpr double highest = 100;
    return std::isnan(value) ? 1.0 : std::clamp(value, lowest, highest);
}

Curve curveOf(const Tone &tone)
{
    Curve curve;
    for (std::size_t grey = 0; grey < curve.size(); ++grey) {
        double value = static_cast<double>(grey) / 255.0;
        value = std::clamp(value * tone.brightness, 0.0, 1.0);
        value = std::clamp((value - 0.5) * tone.contrast + 0.5, 0.0, 1.0);
        value = std::pow(value, 1.0 / tone.gamma);
        curve[grey] = static_cast<std::uint8_t>(std::lround(value * 255.0));
    }
    return curve;
}

} // namespace

void adjustTone(const Picture &picture, const Tone &tone)
{
    if (!picture.data || (picture.bytesPerPixel != 1 && picture.bytesPerPixel != 3))
        return;

    const Tone limited = {factor(tone.brightness, 0.0), factor(tone.contrast, 0.0), factor(tone.gamma, 0.01)};
    if (limited.brightness == 1.0 && limited.contrast == 1.0 && limited.gamma == 1.0)
        return;

    const Curve curve = curveOf(limited);
    const std::size_t bytes = picture.width * static_cast<std::size_t>(picture.bytesPerPixel);
    for (std::size_t y = 0; y < picture.height; ++y) {
        std::uint8_t *row = picture.data + y * picture.stride;
        for (std::size_t i = 0; i < bytes; ++i)
            row[i] = curve[row[i]];
    }
}

void adjustToneForPanel(const Picture &picture)
{
    adjustTone(picture, panelTone);
}

} // namespace lindenreed::pixels
