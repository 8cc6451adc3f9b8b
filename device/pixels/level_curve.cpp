#include "level_curve.h"

#include <algorithm>
#include <cmath>

namespace lindenreed::pixels {

namespace {

/// The place of a luminance among rising levels.
std::int16_t placeOf(double wanted, const Luminances &levels)
{
    std::size_t level = 0;
    while (level + 2 < levels.size() && levels[level + 1] <= wanted)
        ++level;
    const double fraction = (wanted - levels[level]) / (levels[level + 1] - levels[level]);
    const auto place
        = static_cast<int>(std::lround((double(level) + std::clamp(fraction, 0.0, 1.0)) * levelStep));
    const int beyond = place % levelStep;
    return static_cast<std::int16_t>(beyond == 0 ? place
                                                 : place - beyond + std::clamp(beyond | 1, 3, levelStep - 3));
}

} // namespace

double luminance(double grey)
{
    const double value = grey / 255;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double lightness(double luminance)
{
    return luminance <= 216.0 / 24389 ? luminance * 24389 / 27 : 116 * std::cbrt(luminance) - 16;
}

double luminanceOfLightness(double lightness)
{
    return lightness <= 8 ? lightness * 27 / 24389 : std::pow((lightness + 16) / 116, 3);
}

const LevelCurve &evenLevels()
{
    static const LevelCurve even = [] {
        Luminances levels;
        for (std::size_t level = 0; level < levels.size(); ++level)
            levels[level] = luminance(double(level) * 17);
        LevelCurve curve;
        for (std::size_t grey = 0; grey < curve.size(); ++grey)
            curve[grey] = placeOf(luminance(double(grey)), levels);
        return curve;
    }();
    return even;
}

Luminances luminancesByGamma(double black, double white, double gamma)
{
    const double darkest = lightness(black);
    const double lightest = lightness(white);
    Luminances levels;
    for (std::size_t level = 0; level < levels.size(); ++level)
        levels[level]
            = luminanceOfLightness(darkest + std::pow(double(level) / 15, gamma) * (lightest - darkest));
    return levels;
}

double wantedLightness(double grey, const Luminances &levels)
{
    const double black = lightness(levels.front());
    const double white = lightness(levels.back());
    return black + (white - black) * lightness(luminance(grey)) / 100;
}

LevelCurve curveFor(const Luminances &levels)
{
    LevelCurve curve;
    for (std::size_t grey = 0; grey < curve.size(); ++grey)
        curve[grey] = placeOf(luminanceOfLightness(wantedLightness(double(grey), levels)), levels);
    return curve;
}

LevelCurve mirrored(const LevelCurve &curve)
{
    LevelCurve mirrored;
    for (std::size_t grey = 0; grey < curve.size(); ++grey)
        mirrored[grey] = static_cast<std::int16_t>(15 * levelStep - curve[255 - grey]);
    return mirrored;
}

} // namespace lindenreed::pixels
