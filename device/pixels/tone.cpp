#include "tone.h"

#include "lookup.h"

#include <algorithm>
#include <cmath>

namespace lindenreed::pixels {

namespace {

double factor(double value, double lowest)
{
    constexpr double highest = 100;
    return std::isnan(value) ? 1.0 : std::clamp(value, lowest, highest);
}

ByteTable curveOf(const Tone &tone)
{
    ByteTable curve;
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

    lookUp(picture, curveOf(limited));
}

} // namespace lindenreed::pixels
