#include "dither.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace lindenreed::pixels {

namespace {

// Values and errors are counted in sixteenths of a grey: fine enough that the shares of a small error differ.
constexpr int unit = 16;
constexpr int step = 17 * unit; ///< from one of the 16 greys to the next
constexpr int half = step / 2;
constexpr int lowest = -half; ///< limits of a value with its errors: what is
constexpr int highest = 15 * step + half - 1; ///< beyond them could not be made good by a neighbour

/// The level, 0 to 15, of a value within the limits: (value + half) / step without a division. Exact, and no
/// intermediate result needs more than 16 bits.
template <typename Value>
Value levelOf(Value value)
{
    return (((value + half) >> 4) * 241) >> 12;
}

/// Errors that one row hands to the next, one per pixel, in sixteenths of a grey.
using Errors = std::vector<std::int16_t>;

// A pixel needs its left neighbour's error, so a row by itself is one long chain of waiting. Each row
// therefore follows the one above at a distance of two pixels, and the pixels of a slanted line are computed
// together.
constexpr int rowsAtOnce = 8;
constexpr int lag = 2;
constexpr std::size_t steepness = rowsAtOnce * lag;

typedef std::int16_t Lanes __attribute__((vector_size(rowsAtOnce * sizeof(std::int16_t))));
typedef std::uint16_t UnsignedLanes __attribute__((vector_size(rowsAtOnce * sizeof(std::uint16_t))));

Lanes levelsOf(Lanes values)
{
    return reinterpret_cast<Lanes>(levelOf(reinterpret_cast<UnsignedLanes>(values)));
}

/// What the slanted lines before the present one left: shares on their way to a pixel of a later line.
struct Shares
{
    Lanes right = {}; ///< for the next pixel of the same row
    Lanes below = {}; ///< for the row below: complete, for the next line
    Lanes below2 = {}; ///< for the line after that, so far
    Lanes below3 = {}; ///< for the third line, so far
};

/// Which lanes lie where in their row. All bits set or none.
struct Places
{
    Lanes inside = {};
    Lanes first = {};
    Lanes last = {};
};

/// One slanted line: greys in, greys of the panel out.
template <bool AtSides>
Lanes diffuseLine(Lanes greys, std::int16_t fromAbove, Shares &shares, const Places &places)
{
    Lanes above = __builtin_shufflevector(shares.below, shares.below, 7, 0, 1, 2, 3, 4, 5, 6);
    above[0] = fromAbove;

    Lanes values = greys * unit + above + shares.right;
    values = values < lowest ? lowest - Lanes{} : values;
    values = values > highest ? highest - Lanes{} : values;
    const Lanes levels = levelsOf(values);
    Lanes errors = values - levels * step;
    if constexpr (AtSides)
        errors &= places.inside;

    Lanes right = (errors * 7 + 8) >> 4;
    Lanes downLeft = (errors * 3 + 8) >> 4;
    Lanes down = (errors * 5 + 8) >> 4;
    Lanes downRight = errors - right - downLeft - down;
    if constexpr (AtSides) {
        down += (downLeft & places.first) + ((right + downRight) & places.last);
        downLeft &= ~places.first;
        right &= ~places.last;
        downRight &= ~places.last;
    }

    shares.right = right;
    shares.below = downLeft + shares.below2;
    shares.below2 = down + shares.below3;
    shares.below3 = downRight;
    return levels * 17;
}

/// Eight rows, the last row of the rectangle not among them. `errors` as for one row; width at least 1.
void diffuseEightRows(std::uint8_t *rows, std::size_t stride, std::size_t width, std::int16_t *errors)
{
    Shares shares;

    const auto lineAtSides = [&](std::size_t line) {
        Lanes greys = {};
        Places places;
        for (std::size_t lane = 0; lane < rowsAtOnce; ++lane) {
            const std::size_t x = line - lane * lag; // wraps to a huge number left of the row
            if (x < width) {
                greys[lane] = rows[lane * stride + x];
                places.inside[lane] = -1;
                places.first[lane] = x == 0 ? -1 : 0;
                places.last[lane] = x + 1 == width ? -1 : 0;
            }
        }
        const std::int16_t fromAbove = line < width ? errors[line] : std::int16_t(0);
        if (line >= steepness)
            errors[line - steepness] = shares.below[rowsAtOnce - 1];
        greys = diffuseLine<true>(greys, fromAbove, shares, places);
        for (std::size_t lane = 0; lane < rowsAtOnce; ++lane) {
            if (places.inside[lane])
                rows[lane * stride + line - lane * lag] = static_cast<std::uint8_t>(greys[lane]);
        }
    };

    std::size_t line = 0;
    for (; line < steepness; ++line)
        lineAtSides(line);
    for (; line + 1 < width; ++line) {
        std::uint8_t *const pixels = rows + line;
        const std::size_t next = stride - lag; // may wrap: only ever added to a place within the picture
        Lanes greys = {pixels[0],        pixels[next],     pixels[2 * next], pixels[3 * next],
                       pixels[4 * next], pixels[5 * next], pixels[6 * next], pixels[7 * next]};
        const std::int16_t fromAbove = errors[line];
        errors[line - steepness] = shares.below[rowsAtOnce - 1];
        greys = diffuseLine<false>(greys, fromAbove, shares, {});
        for (std::size_t lane = 0; lane < rowsAtOnce; ++lane)
            pixels[lane * next] = static_cast<std::uint8_t>(greys[lane]);
    }
    for (; line < width + steepness; ++line)
        lineAtSides(line);
}

/// One row, pixel by pixel. `errors` holds what the row above left and then what this row leaves.
void diffuseRow(std::uint8_t *row, std::size_t width, std::int16_t *errors, bool isLast)
{
    int right = 0;
    int below = 0; // for the pixel below the present one, from those left of it
    int belowRight = 0; // for the pixel below the next one, from the present one
    for (std::size_t x = 0; x < width; ++x) {
        const int value = std::clamp(row[x] * unit + errors[x] + right, lowest, highest);
        const int level = levelOf(value);
        const int error = value - level * step;
        row[x] = static_cast<std::uint8_t>(level * 17);

        if (isLast) {
            right = error;
            continue;
        }
        right = (error * 7 + 8) >> 4;
        const int downLeft = (error * 3 + 8) >> 4;
        const int down = (error * 5 + 8) >> 4;
        const int downRight = error - right - downLeft - down;

        below = belowRight + down;
        belowRight = downRight;
        if (x > 0)
            errors[x - 1] = static_cast<std::int16_t>(errors[x - 1] + downLeft);
        else
            below += downLeft;
        if (x + 1 == width)
            below += right + downRight;
        errors[x] = static_cast<std::int16_t>(below);
    }
}

} // namespace

void diffuseTo16Levels(const Picture &picture, std::size_t x, std::size_t y, std::size_t width,
                       std::size_t height)
{
    if (!picture.data || picture.bytesPerPixel != 1 || x >= picture.width || y >= picture.height)
        return;
    width = std::min(width, picture.width - x);
    height = std::min(height, picture.height - y);
    if (width == 0 || height == 0)
        return;

    Errors errors(width, 0);
    std::uint8_t *row = picture.data + y * picture.stride + x;
    std::size_t left = height;
    for (; left > rowsAtOnce; left -= rowsAtOnce, row += rowsAtOnce * picture.stride)
        diffuseEightRows(row, picture.stride, width, errors.data());
    for (; left > 0; --left, row += picture.stride)
        diffuseRow(row, width, errors.data(), left == 1);
}

} // namespace lindenreed::pixels
