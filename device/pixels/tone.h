// Brightness, contrast and gamma of a picture, in place.

#pragma once

#include "picture.h"

namespace lindenreed::pixels {

/**
 * Factors of a tone adjustment; 1 changes nothing.
 *
 * A value v from 0 (black) to 1 (white) becomes, in this order,
 *     v * brightness, limited to 0 .. 1
 *     (v - 1/2) * contrast + 1/2, limited to 0 .. 1
 *     v to the power of 1 / gamma
 * rounded to the nearest of 256 steps. Any double is accepted: not-a-number counts as 1, brightness and
 * contrast are limited to 0 .. 100, gamma to 1/100 .. 100.
 */
struct Tone
{
    double brightness = 1;
    double contrast = 1;
    double gamma = 1; ///< above 1 lightens the middle greys, below 1 darkens them
};

/// Adjusts every channel of every pixel by the same curve. With all factors 1 not a byte is written.
/// A number of bytes per pixel other than 1 and 3 leaves the picture as it is. Any thread.
void adjustTone(const Picture &picture, const Tone &tone);

/// For a panel nobody has measured. Paper of this kind is a mid grey white and swallows the difference
/// between dark middle tones. A little more light in the middle and a little more contrast make up for part
/// of it; black and white stay where they are.
inline constexpr Tone panelTone = {1.0, 1.05, 1.1};

} // namespace lindenreed::pixels
