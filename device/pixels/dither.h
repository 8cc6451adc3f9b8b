// From 256 greys to the 16 of the panel, by error diffusion.

#pragma once

#include "level_curve.h"
#include "picture.h"

namespace lindenreed::pixels {

/**
 * Turns a rectangle of a grey picture into the 16 greys 0, 17, 34 .. 255, in place.
 *
 * `curve` says where each grey lies among the levels. The error of a pixel goes to its neighbours by Floyd
 * and Steinberg's weights, row by row from the top, each from left to right; shares that would
 * leave the rectangle at its sides go to the pixel below, and in the last row everything goes to the right. A
 * little noise on the threshold keeps flat fields free of patterns, and the first row starts as if another
 * lay above it. Where errors ask for more than black or white, they go on until others want what they hold;
 * at the sides, where most of them meet, what exceeds the range of one is cut off. They end where three
 * pixels in a row have the same grey as the next one, and it is one of the levels: no ghost of them wanders
 * through an empty sky. That takes up to half an L* from lines on such a ground. A field that lies at one of
 * the 16 levels, as black and white do on every curve, comes back solid. The same picture always gives the
 * same bytes, on any processor.
 *
 * The part of the rectangle outside the picture is left out; pixels outside the rectangle are neither read
 * nor written. Pictures without pixels, or with a number of bytes per pixel other than 1, stay as they are.
 * Any thread.
 */
void diffuseTo16Levels(const Picture &picture, std::size_t x, std::size_t y, std::size_t width,
                       std::size_t height, const LevelCurve &curve = evenLevels());

} // namespace lindenreed::pixels
