// Where the pixels are that the functions of this library work on.

#pragma once

#include <cstddef>
#include <cstdint>

namespace lindenreed::pixels {

/// A picture that someone else owns. Rows lie `stride` bytes apart; what a row has beyond its pixels is
/// padding, which nothing reads or writes. A null `data` or an empty size is a picture without pixels.
struct Picture
{
    std::uint8_t *data;
    std::size_t width; ///< pixels
    std::size_t height; ///< pixels
    std::size_t stride; ///< bytes, at least width * bytesPerPixel
    int bytesPerPixel; ///< 1: grey, 3: red, green, blue
};

} // namespace lindenreed::pixels
