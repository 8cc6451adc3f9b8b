// From 256 greys to the 16 of the panel, by error diffusion.

#pragma once

#include "tone.h"

namespace lindenreed::pixels {

/**
 * Turns a rectangle of a grey picture into the 16 greys 0, 17, 34 .. 255, in place.
 *
 * Floyd and Steinberg's weights, row by row from the top, each from left to right. The error of a pixel goes
 * to its neighbours without a remainder: the shares that would leave the rectangle at its sides go to the
 * pixel below, and in the last row everything goes to the right. Where an error would push a pixel beyond
 * black or white by more than half a step, the excess is cut off, so that no ghost of it wanders through an
 * empty sky. A field of one of the 16 greys comes back byte for byte.
 *
 * The part of the rectangle outside the picture is left out; pixels outside the rectangle are neither read
 * nor written. Pictures without pixels, or with a number of bytes per pixel other than 1, stay as they are.
 * Any thread.
 */
void diffuseTo16Levels(const Picture &picture, std::size_t x, std::size_t y, std::size_t width,
                       std::size_t height);

} // namespace lindenreed::pixels
