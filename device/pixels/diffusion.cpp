// A pixel needs its left neighbour's error, so a row by itself is one long chain of waiting. Here each row
// follows the one above at a distance of two pixels, and the pixels of a slanted line are computed together,
// a row in each lane.
//
// Remainders instead of errors: u is a pixel's place among the levels with what its neighbours left; the
// remainder e = u - level is 0 to levelStep where an error would be -levelStep / 2 to levelStep / 2. A
// neighbour without error leaves half a step. Shares of remainders are never off by more than the remainders
// are, so nothing needs clamping but at the sides of the rectangle, where shares turn down instead of
// leaving. A run of one level takes none of them.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "diffusion.cpp"

#include "diffusion.h"

#include <cstring>

#include <hwy/foreach_target.h>
// After it.
#include "lanes-inl.h"

HWY_BEFORE_NAMESPACE();

namespace lindenreed::pixels::HWY_NAMESPACE {

constexpr std::ptrdiff_t bandRows = 2 * lanes; ///< two vectors: one is computed while the other waits
static_assert(lanes <= errorMargin);
constexpr std::ptrdiff_t lag = 2;
constexpr std::ptrdiff_t steepness
    = lag * (bandRows - 1); ///< how far the last row of a band is behind the first
constexpr std::ptrdiff_t blockLines = 16; ///< slanted lines that are gathered and given back at once
constexpr int middle
    = 8 * levelStep; ///< places are counted from here: they fit 16 bits with all that is added
static_assert(levelStep == 2048, "seventeenOf2048() turns places into greys");
constexpr int neutral = levelStep / 2; ///< remainder of a pixel without error

/// What a pixel without error leaves.
constexpr int neutralShare(int inSixteenths)
{
    return neutral * inSixteenths / 16;
}

/// While one block is diffused, which is waiting for the most part, the next one is gathered pair of rows by
/// pair of rows.
constexpr std::ptrdiff_t linesPerPair = 2 * blockLines / bandRows;

/// A band of rows, the topmost in the last lane: then the lane whose errors leave the band is the first.
struct Band
{
    std::uint8_t *pixels;
    std::ptrdiff_t stride;
    std::ptrdiff_t width;
    std::ptrdiff_t rows; ///< 1 to bandRows
    bool endsArea;
    std::int16_t *errors; ///< what the row above leaves for each pixel; then, what the band leaves
    const Places *places;

    std::uint8_t *row(std::ptrdiff_t index) const { return pixels + index * stride; }
};

/// Half a band, and what the lines before the present one left: shares on their way to a pixel of a later
/// line.
struct Half
{
    Lanes right; ///< for the next pixel of the same row
    Lanes below; ///< for the row below: complete, for the next line
    Lanes below2; ///< for the line after that, so far
    Lanes below3; ///< for the third line, so far
    Lanes noise;
    Lanes before; ///< the place to the left
    Lanes run; ///< pixels of one level since the row's last other one, up to solidRun
};

/// Where the lanes of half a band are in a line.
struct Position
{
    Lanes fromLeft; ///< pixels to the left side; negative outside
    Lanes fromRight;
    bool hasLastRow; ///< of the area
    Lanes toLastRow; ///< rows down to it; negative below it

    void advance()
    {
        fromLeft = fromLeft + constant(1);
        fromRight = fromRight - constant(1);
    }
};

/// `yes` where the bits of `mask` are set, else `no`.
HWY_INLINE Lanes chosen(Lanes mask, Lanes yes, Lanes no)
{
    return no ^ ((yes ^ no) & mask);
}

/// One line of half a band: places in, greys out.
template <bool AtSides>
HWY_INLINE Lanes diffuseLine(Lanes places, Lanes above, Half &half, const Position &where)
{
    Lanes same = whereZero(places & constant(levelStep - 1)) & whereZero(places ^ half.before);
    if constexpr (AtSides)
        same = chosen(whereZero(where.fromLeft), constant(0), same);
    half.before = places;
    half.run = least(half.run + constant(1), constant(solidRun)) & same;
    const Lanes solid = whereZero(half.run ^ constant(solidRun));
    Lanes values = places + chosen(solid, constant(neutral), above + half.right);
    if constexpr (AtSides)
        values = greatest(least(values, constant(middle - 1 + noiseLimit)), constant(-middle - noiseLimit));
    const Lanes noisy = values + twentySevenOf2048(half.noise);
    const Lanes levels
        = greatest(least(noisy, constant(middle - 1)), constant(-middle)) & constant(-levelStep);
    Lanes remainders = values - levels;
    if constexpr (AtSides) {
        const Lanes outside = whereNegative(least(where.fromLeft, where.fromRight));
        remainders = chosen(outside, constant(neutral), remainders);
    }

    Lanes right = sixteenths(remainders, toRight);
    const Lanes downLeft = sixteenths(remainders, toDownLeft);
    Lanes down = sixteenths(remainders, toDown);
    const Lanes downRight = remainders - right - (downLeft + down);
    if constexpr (AtSides) {
        // What goes out of the area is looked at by nobody; it only has to go down as well.
        const Lanes turnedLeft = (downLeft - constant(neutralShare(toDownLeft))) & whereZero(where.fromLeft);
        const Lanes turnedRight = (right + downRight - constant(neutralShare(toRight + toDownRight)))
            & whereZero(where.fromRight);
        down = down + turnedLeft + turnedRight;
        if (where.hasLastRow) {
            const Lanes everything = remainders - constant(neutral - neutralShare(toRight));
            right = chosen(whereZero(where.toLastRow), everything, right);
        }
    }

    half.right = right;
    half.below = downLeft + half.below2;
    half.below2 = down + half.below3;
    half.below3 = downRight;
    half.noise = wrappingSum(half.noise, constant(noiseStep));
    return seventeenOf2048(levels) + constant(8 * 17);
}

/// Where a row's pixels of a block are: all of them inside it, none, or some.
enum class Share { All, None, Some };

HWY_INLINE Share shareOf(const Band &band, std::ptrdiff_t row, std::ptrdiff_t x)
{
    if (row >= band.rows || x + blockLines <= 0 || x >= band.width)
        return Share::None;
    return x >= 0 && x + blockLines <= band.width ? Share::All : Share::Some;
}

/// Gathers what there is of a row. Elsewhere any place will do: nothing comes of it.
HWY_NOINLINE void gatherSome(const Band &band, std::ptrdiff_t row, std::ptrdiff_t x, std::int16_t *lane)
{
    const std::uint8_t *pixels = band.row(row);
    for (std::ptrdiff_t line = 0; line < blockLines; ++line) {
        if (x + line >= 0 && x + line < band.width)
            lane[line * bandRows] = band.places->alone[pixels[x + line]];
    }
}

/// Gathers the places of two rows into a block, which holds line by line the rows from the last to the first.
/// Two rows at a time, since stores are what this waits for.
HWY_INLINE void gatherPair(const Band &band, std::ptrdiff_t firstLine, std::ptrdiff_t row,
                           std::int16_t *block)
{
    const std::ptrdiff_t x = firstLine - lag * row;
    std::int16_t *pair = block + (bandRows - 2 - row);
    const Share upper = shareOf(band, row, x);
    const Share lower = shareOf(band, row + 1, x - lag);
    if (upper == Share::All && lower == Share::All) {
        const std::uint8_t *upperPixels = band.row(row) + x;
        const std::uint8_t *lowerPixels = band.row(row + 1) + x - lag;
        for (std::ptrdiff_t line = 0; line < blockLines; ++line) {
            const std::uint32_t both
                = band.places->second[upperPixels[line]] | band.places->first[lowerPixels[line]];
            __builtin_memcpy(pair + line * bandRows, &both, sizeof both);
        }
        return;
    }
    if (upper != Share::None)
        gatherSome(band, row, x, pair + 1);
    if (lower != Share::None)
        gatherSome(band, row + 1, x - lag, pair);
}

/// Sixteen lines of 16 bytes become 16 columns. The distances are in bytes.
HWY_INLINE void transpose(const std::uint8_t *lines, std::ptrdiff_t lineDistance, std::uint8_t *columns,
                          std::ptrdiff_t columnDistance)
{
    Bytes bytes[16];
    for (std::ptrdiff_t i = 0; i < 16; ++i)
        bytes[i] = load<Bytes>(lines + i * lineDistance);
    // Each pass interleaves the first eight with the others: four of them turn 16 by 16 around.
    for (int pass = 0; pass < 4; ++pass) {
        Bytes mixed[16];
        for (int i = 0; i < 8; ++i) {
            mixed[2 * i] = firstHalves(bytes[i], bytes[i + 8]);
            mixed[2 * i + 1] = secondHalves(bytes[i], bytes[i + 8]);
        }
        for (int i = 0; i < 16; ++i)
            bytes[i] = mixed[i];
    }
    for (std::ptrdiff_t i = 0; i < 16; ++i)
        store(bytes[i], columns + i * columnDistance);
}

/// Gives the greys of a block back to their rows.
HWY_INLINE void giveBack(const Band &band, std::ptrdiff_t firstLine, const std::uint8_t *block)
{
    const bool inside = band.rows == bandRows && shareOf(band, 0, firstLine) == Share::All
        && shareOf(band, bandRows - 1, firstLine - steepness) == Share::All;
    for (std::ptrdiff_t group = 0; group < bandRows; group += 16) {
        const std::ptrdiff_t lowestRow = bandRows - 1 - group;
        if (inside) {
            transpose(block + group, bandRows, band.row(lowestRow) + firstLine - lag * lowestRow,
                      lag - band.stride);
            continue;
        }
        HWY_ALIGN std::uint8_t columns[16 * blockLines];
        transpose(block + group, bandRows, columns, blockLines);
        for (std::ptrdiff_t lane = 0; lane < 16; ++lane) {
            const std::ptrdiff_t row = lowestRow - lane;
            const std::ptrdiff_t x = firstLine - lag * row;
            if (shareOf(band, row, x) == Share::None)
                continue;
            for (std::ptrdiff_t line = 0; line < blockLines; ++line) {
                if (x + line >= 0 && x + line < band.width)
                    band.row(row)[x + line] = columns[lane * blockLines + line];
            }
        }
    }
}

std::int16_t limited(std::ptrdiff_t distance)
{
    constexpr std::ptrdiff_t far = 10'000;
    return static_cast<std::int16_t>(distance < -far ? -far : distance > far ? far : distance);
}

Position positionOf(const Band &band, std::ptrdiff_t line, std::ptrdiff_t lowestRow)
{
    // Lane 0 holds the lowest row; each further lane is a row up and `lag` pixels to the right.
    static_assert(lag == 2);
    const Lanes ahead = ramp() + ramp();
    const std::ptrdiff_t x = line - lag * lowestRow;
    return {constant(limited(x)) + ahead, constant(limited(band.width - 1 - x)) - ahead, band.endsArea,
            constant(limited(band.rows - 1 - lowestRow)) + ramp()};
}

template <bool AtSides>
HWY_INLINE void diffuseLines(const Band &band, std::ptrdiff_t firstLine, const std::int16_t *places,
                             std::int16_t *nextPlaces, std::uint8_t *greys, Half &upper, Half &lower)
{
    Position whereUpper{};
    Position whereLower{};
    if constexpr (AtSides) {
        whereUpper = positionOf(band, firstLine, lanes - 1);
        whereLower = positionOf(band, firstLine, bandRows - 1);
    }
    for (std::ptrdiff_t i = 0; i < blockLines; ++i) {
        const std::ptrdiff_t line = firstLine + i;
        if (i % linesPerPair == 0)
            gatherPair(band, firstLine + blockLines, i / linesPerPair * 2, nextPlaces);
        const bool hasAbove = !AtSides || line < band.width;
        const Lanes first = hasAbove ? load<Lanes>(band.errors + line)
                                     : constant(neutralShare(toDownLeft + toDown + toDownRight));
        const Lanes aboveUpper = moved(first, upper.below);
        const Lanes aboveLower = moved(upper.below, lower.below);
        const Lanes lowerGreys
            = diffuseLine<AtSides>(load<Lanes>(places + i * bandRows), aboveLower, lower, whereLower);
        const Lanes upperGreys
            = diffuseLine<AtSides>(load<Lanes>(places + i * bandRows + lanes), aboveUpper, upper, whereUpper);
        // Later lines make good what this writes beyond its one pixel.
        const std::ptrdiff_t left = line - steepness - 1;
        if (!AtSides || (left >= 0 && left < band.width))
            store(lower.below, band.errors + left);
        storeAsBytes(lowerGreys, greys + i * bandRows);
        storeAsBytes(upperGreys, greys + i * bandRows + lanes);
        if constexpr (AtSides) {
            whereUpper.advance();
            whereLower.advance();
        }
    }
}

void diffuseBand(const Band &band, std::size_t firstRow)
{
    HWY_ALIGN std::int16_t noise[bandRows];
    for (std::ptrdiff_t row = 0; row < bandRows; ++row) {
        const auto ahead = static_cast<std::uint16_t>(lag * row * noiseStep);
        noise[bandRows - 1 - row]
            = static_cast<std::int16_t>(noisePhase(firstRow + std::size_t(row)) - ahead);
    }
    const auto start = [](const std::int16_t *from) {
        return Half{constant(neutralShare(toRight)),
                    constant(neutralShare(toDownLeft + toDown + toDownRight)),
                    constant(neutralShare(toDown + toDownRight)),
                    constant(neutralShare(toDownRight)),
                    load<Lanes>(from),
                    constant(0),
                    constant(0)};
    };
    Half lower = start(noise);
    Half upper = start(noise + lanes);
    HWY_ALIGN std::int16_t places[2][blockLines * bandRows] = {}; // of this block and the next
    HWY_ALIGN std::uint8_t greys[blockLines * bandRows];

    const bool whole = band.rows == bandRows && !band.endsArea;
    for (std::ptrdiff_t row = 0; row < bandRows; row += 2)
        gatherPair(band, 0, row, places[0]);
    int current = 0;
    for (std::ptrdiff_t line = 0; line < band.width + steepness + 1; line += blockLines) {
        if (whole && line > steepness && line + blockLines < band.width)
            diffuseLines<false>(band, line, places[current], places[1 - current], greys, upper, lower);
        else
            diffuseLines<true>(band, line, places[current], places[1 - current], greys, upper, lower);
        current = 1 - current;
        giveBack(band, line, greys);
    }
}

void diffuseArea(const Area &area, const Places &places, std::int16_t *errors)
{
    for (std::size_t row = 0; row < area.height; row += bandRows) {
        const std::size_t left = area.height - row;
        const bool endsArea = left <= bandRows;
        diffuseBand({area.pixels + row * area.stride, std::ptrdiff_t(area.stride), std::ptrdiff_t(area.width),
                     endsArea ? std::ptrdiff_t(left) : bandRows, endsArea, errors, &places},
                    row);
    }
}

} // namespace lindenreed::pixels::HWY_NAMESPACE

HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lindenreed::pixels {

namespace {

HWY_EXPORT(diffuseArea);

int sixteenthsOf(int value, int share)
{
    return (value * share) >> 4;
}

/// Errors as a row above the first would leave them. Without, the first rows of a light or dark field stay
/// empty until enough has gathered for a dot. A grey that is one of the levels takes none: solid fields stay
/// solid.
void startErrors(const Area &area, const std::int16_t *curve, std::int16_t *errors)
{
    const auto remainder = [&](std::size_t x) { // wraps left of the row
        const int fraction = x < area.width ? curve[area.pixels[x]] & (levelStep - 1) : 0;
        return fraction == 0
            ? levelStep / 2
            : static_cast<std::uint16_t>(x * noiseStep) * levelStep / 65536 + startBias(fraction);
    };
    for (std::size_t x = 0; x < area.width; ++x) {
        const int before = remainder(x - 1);
        const int downRight = before - sixteenthsOf(before, toRight) - sixteenthsOf(before, toDownLeft)
            - sixteenthsOf(before, toDown);
        errors[x] = static_cast<std::int16_t>(sixteenthsOf(remainder(x + 1), toDownLeft)
                                              + sixteenthsOf(remainder(x), toDown) + downRight);
    }
}

} // namespace

void diffuse(const Area &area, const LevelCurve &curve, std::span<std::int16_t> errors)
{
    Places places;
    for (std::size_t grey = 0; grey < 256; ++grey) {
        const auto place = static_cast<std::int16_t>(curve[grey] - 8 * levelStep);
        places.alone[grey] = place;
        const std::array<std::int16_t, 2> low = {place, 0}, high = {0, place};
        std::memcpy(&places.first[grey], low.data(), 4);
        std::memcpy(&places.second[grey], high.data(), 4);
    }
    startErrors(area, places.alone.data(), errors.data());
    HWY_DYNAMIC_DISPATCH(diffuseArea)(area, places, errors.data());
}

} // namespace lindenreed::pixels

#endif
