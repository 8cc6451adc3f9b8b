// What a grey value means on a panel of 16 levels: where between two of them it lies, as light.

#pragma once

#include <array>
#include <cstdint>

namespace lindenreed::pixels {

/// From one level to the next. Errors are counted in these steps, too.
inline constexpr int levelStep = 2048;

/// The luminance of each level, from black to white, rising; 1 is a perfect white.
using Luminances = std::array<double, 16>;

/**
 * For each of the 256 greys its place among the 16 levels, 0 to 15 * levelStep, never falling.
 *
 * Neighbouring pixels mix in the eye as light. A grey between two levels stands where their mixture has its
 * luminance: at a quarter of the way, a quarter of the pixels get the lighter level. There it is odd, and
 * neither next to a level: that tells the diffusion without a calculation what is a level and what is not.
 */
using LevelCurve = std::array<std::int16_t, 256>;

/// Luminance, 0 to 1, of a grey value, 0 to 255, by the sRGB curve (IEC 61966-2-1).
double luminance(double grey);

/// CIE lightness L*, 0 to 100, of a luminance, 0 to 1, and back (CIE 15).
double lightness(double luminance);
double luminanceOfLightness(double lightness);

/// For a panel that shows the 16 greys 0, 17, 34 .. 255 as what they are.
const LevelCurve &evenLevels();

/// Of a panel whose lightness rises from black to white as the `gamma`th power of the level. Luminances are 0
/// to 1.
Luminances luminancesByGamma(double black, double white, double gamma);

/**
 * For a panel whose levels have these luminances.
 *
 * Pictures know lighter whites and deeper blacks than paper. Lightness is scaled to the panel's range, black
 * to its black and white to its white: the way that keeps the differences between greys in proportion to what
 * the eye sees of them (linear lightness compression, as in CIE 156). Relative to the panel's own white,
 * which eyes take for white, it is the same: L* of the two differ by a factor and an offset.
 */
LevelCurve curveFor(const Luminances &levels);

/// For pictures that are shown inverted, grey and level alike: their dots mix as what they turn into.
LevelCurve mirrored(const LevelCurve &curve);

/// The lightness that curveFor() aims at for a grey.
double wantedLightness(double grey, const Luminances &levels);

} // namespace lindenreed::pixels
