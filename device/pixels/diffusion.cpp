// A pixel needs its left neighbour's error, so a row by itself is one long chain of waiting. Here each row
// follows the one above at a distance, and the pixels of a slanted line are computed together, a row in each
// lane: how they come into the lanes and out of them.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "diffusion.cpp"

#include "diffusion.h"

#include <cstring>

#include <hwy/foreach_target.h>
// After it.
#include "diffusion_line-inl.h"

HWY_BEFORE_NAMESPACE();

namespace lindenreed::pixels::HWY_NAMESPACE {

/// Rows that are diffused at once.
constexpr std::ptrdiff_t bandRows = lanes;
static_assert(lanes <= errorMargin);
static_assert(levelStep == 2048, "greysOf() turns levels into greys");

constexpr std::ptrdiff_t steepness = lag * (bandRows - 1); ///< of the last row behind the first
constexpr std::ptrdiff_t blockLines = 16; ///< slanted lines that are gathered and given back at once

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
    const Tables *tables;

    std::uint8_t *row(std::ptrdiff_t index) const { return pixels + index * stride; }
};

/// The lines of a block in which a row is inside: from the first to before the second.
struct Lines
{
    std::ptrdiff_t begin;
    std::ptrdiff_t end;

    bool areAll() const { return end - begin == blockLines; }
};

HWY_INLINE Lines linesInside(const Band &band, std::ptrdiff_t row, std::ptrdiff_t x)
{
    if (row >= band.rows)
        return {0, 0};
    const std::ptrdiff_t left = band.width - x;
    return {x < 0 ? -x : 0, left < blockLines ? left : blockLines};
}

HWY_INLINE std::size_t twoPixels(const std::uint8_t *from)
{
    std::uint16_t pixels;
    __builtin_memcpy(&pixels, from, 2);
    return pixels;
}

/// Gathers the places of two rows, a block's lines of each. Loads and stores are what this waits for: two
/// pixels are loaded at once, and two rows stored.
HWY_INLINE void gatherWhole(const Tables &tables, const std::uint8_t *upper, const std::uint8_t *lower,
                            std::int16_t *pair)
{
    const auto place = [&](std::ptrdiff_t line, std::size_t upperPixel, std::size_t lowerPixel) {
        const std::uint32_t both = tables.second[upperPixel] | tables.first[lowerPixel];
        __builtin_memcpy(pair + line * bandRows, &both, sizeof both);
    };
    constexpr std::ptrdiff_t later = isLittleEndian ? 1 : 0;
    for (std::ptrdiff_t line = 0; line < blockLines; line += 2) {
        const std::size_t upperPixels = twoPixels(upper + line);
        const std::size_t lowerPixels = twoPixels(lower + line);
        place(line + 1 - later, upperPixels & 255, lowerPixels & 255);
        place(line + later, upperPixels >> 8, lowerPixels >> 8);
    }
}

/// Gathers the places of two rows into a block, which holds line by line the rows from the last to the first,
/// as far as they are inside. Elsewhere any place will do: nothing comes of it.
HWY_NOINLINE void gatherPair(const Band &band, std::ptrdiff_t firstLine, std::ptrdiff_t row,
                             std::int16_t *block)
{
    const std::ptrdiff_t x = firstLine - lag * row;
    std::int16_t *pair = block + (bandRows - 2 - row);
    if (linesInside(band, row, x).areAll() && linesInside(band, row + 1, x - lag).areAll()) {
        gatherWhole(*band.tables, band.row(row) + x, band.row(row + 1) + x - lag, pair);
        return;
    }
    for (std::ptrdiff_t lower = 0; lower < 2; ++lower) {
        const std::ptrdiff_t left = x - lag * lower;
        const auto [begin, end] = linesInside(band, row + lower, left);
        for (std::ptrdiff_t line = begin; line < end; ++line)
            pair[line * bandRows + 1 - lower] = band.tables->alone[band.row(row + lower)[left + line]];
    }
}

/// Turns lines around into columns. Two lines are in one already, a byte from either in turn; of the columns,
/// vector i holds i, 8 + i ..
HWY_INLINE void transpose(Lanes (&lines)[blockLines / 2])
{
    // Each pass interleaves the first four with the others: three of them turn 8 by 8 around.
    static_assert(blockLines == 16);
    for (int pass = 0; pass < 3; ++pass) {
        Lanes mixed[8];
        for (int i = 0; i < 4; ++i) {
            mixed[2 * i] = firstHalves(lines[i], lines[i + 4]);
            mixed[2 * i + 1] = secondHalves(lines[i], lines[i + 4]);
        }
        for (int i = 0; i < 8; ++i)
            lines[i] = mixed[i];
    }
}

/// Gives the greys of a block back to their rows.
HWY_INLINE void giveBack(const Band &band, std::ptrdiff_t firstLine, Lanes (&greys)[blockLines / 2])
{
    transpose(greys);
    if (linesInside(band, 0, firstLine).areAll()
        && linesInside(band, bandRows - 1, firstLine - steepness).areAll()) {
        const std::ptrdiff_t toLower = band.stride - lag;
        std::uint8_t *row = band.pixels + firstLine + (bandRows - 1) * toLower;
        for (std::ptrdiff_t i = 0; i < 8; ++i) {
            storeColumns(greys[i], [&](std::ptrdiff_t part) { return row - part * 8 * toLower; });
            row -= toLower;
        }
        return;
    }
    const auto rowOf = [](std::ptrdiff_t part, std::ptrdiff_t i) { return bandRows - 1 - (part * 8 + i); };
    HWY_ALIGN std::uint8_t rows[bandRows][blockLines];
    for (std::ptrdiff_t i = 0; i < 8; ++i)
        storeColumns(greys[i], [&](std::ptrdiff_t part) { return rows[rowOf(part, i)]; });
    for (std::ptrdiff_t row = 0; row < band.rows; ++row) {
        const std::ptrdiff_t x = firstLine - lag * row;
        const Lines inside = linesInside(band, row, x);
        if (inside.areAll()) {
            std::memcpy(band.row(row) + x, rows[row], blockLines);
            continue;
        }
        for (std::ptrdiff_t line = inside.begin; line < inside.end; ++line)
            band.row(row)[x + line] = rows[row][line];
    }
}

std::int16_t limited(std::ptrdiff_t distance)
{
    constexpr std::ptrdiff_t far = 10'000;
    return static_cast<std::int16_t>(distance < -far ? -far : distance > far ? far : distance);
}

Position positionOf(const Band &band, std::ptrdiff_t line)
{
    // Lane 0 holds the lowest row; each further lane is a row up and `lag` pixels to the right.
    static_assert(lag == 2);
    const Lanes ahead = ramp() + ramp();
    const std::ptrdiff_t x = line - steepness;
    return {constant(limited(x)) + ahead, constant(limited(band.width - 1 - x)) - ahead, band.endsArea,
            constant(limited(band.rows - bandRows)) + ramp()};
}

template <bool AtSides>
HWY_INLINE void diffuseBlock(const Band &band, std::ptrdiff_t firstLine, const std::int16_t *places,
                             std::int16_t *nextPlaces, Course &course, const Constants &constants)
{
    Position where{};
    if constexpr (AtSides)
        where = positionOf(band, firstLine);
    const bool nextIsWhole = !AtSides && firstLine + 2 * blockLines <= band.width;
    const std::ptrdiff_t toLower = band.stride - lag;
    const std::uint8_t *next = band.pixels + firstLine + blockLines;
    const Tables &tables = *band.tables;
    std::int16_t *const errors = band.errors;
    const std::ptrdiff_t width = band.width;
    Lanes greys[blockLines / 2];
    const auto diffuseNext = [&](std::ptrdiff_t i) {
        const std::ptrdiff_t line = firstLine + i;
        const bool hasAbove = !AtSides || line < width;
        const Lanes first = hasAbove ? load<Lanes>(errors + line) : constant(0);
        const Lanes levels
            = diffuseLine<AtSides>(load<Lanes>(places + i * bandRows), first, course, where, constants);
        // Later lines make good what this writes beyond its one pixel.
        const std::ptrdiff_t left = line - steepness - 1;
        if (!AtSides || (left >= 0 && left < width))
            store(course.below, errors + left);
        if constexpr (AtSides)
            where.advance();
        return levels;
    };
    for (std::ptrdiff_t i = 0; i < blockLines; i += 2) {
        if (i % linesPerPair == 0) {
            const std::ptrdiff_t row = i / linesPerPair * 2;
            if (nextIsWhole) {
                gatherWhole(tables, next, next + toLower, nextPlaces + (bandRows - 2 - row));
                next += 2 * toLower;
            } else {
                gatherPair(band, firstLine + blockLines, row, nextPlaces);
            }
        }
        const Lanes levels = diffuseNext(i);
        greys[i / 2] = greysOf(levels, diffuseNext(i + 1));
    }
    giveBack(band, firstLine, greys);
}

void diffuseBand(const Band &band, std::size_t firstRow)
{
    HWY_ALIGN std::int16_t noise[bandRows];
    for (std::ptrdiff_t row = 0; row < bandRows; ++row) {
        const auto ahead = static_cast<std::uint16_t>(lag * row * noiseStep);
        noise[bandRows - 1 - row]
            = static_cast<std::int16_t>(noisePhase(firstRow + std::size_t(row)) - ahead);
    }
    const Lanes none = constant(0);
    Course course = {none, none, none, none, load<Lanes>(noise), none, none, none};
    const Constants constants;
    HWY_ALIGN std::int16_t places[2][blockLines * bandRows] = {}; // of this block and the next

    const bool whole = band.rows == bandRows && !band.endsArea;
    for (std::ptrdiff_t row = 0; row < bandRows; row += 2)
        gatherPair(band, 0, row, places[0]);
    int current = 0;
    for (std::ptrdiff_t line = 0; line < band.width + steepness + 1; line += blockLines) {
        if (whole && line > steepness && line + blockLines < band.width)
            diffuseBlock<false>(band, line, places[current], places[1 - current], course, constants);
        else
            diffuseBlock<true>(band, line, places[current], places[1 - current], course, constants);
        current = 1 - current;
    }
}

void diffuseArea(const Picture &area, const Tables &tables, std::int16_t *errors)
{
    for (std::size_t row = 0; row < area.height; row += bandRows) {
        const std::size_t left = area.height - row;
        const bool endsArea = left <= bandRows;
        diffuseBand({area.data + row * area.stride, std::ptrdiff_t(area.stride), std::ptrdiff_t(area.width),
                     endsArea ? std::ptrdiff_t(left) : bandRows, endsArea, errors, &tables},
                    row);
    }
}

} // namespace lindenreed::pixels::HWY_NAMESPACE

HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lindenreed::pixels {

namespace {

HWY_EXPORT(diffuseArea);

/// Errors as a row above the first would leave them. Without, the first rows of a light or dark field stay
/// empty until enough has gathered for a dot. A grey that is one of the levels takes none: solid fields stay
/// solid.
void startErrors(const Picture &area, const LevelCurve &curve, std::int16_t *errors)
{
    const auto share = [](int error, int sixteenths) { return (error * sixteenths) >> 4; };
    const auto errorOf = [&](std::size_t x) { // wraps left of the row
        const int fraction = x < area.width ? curve[area.data[x]] & (levelStep - 1) : 0;
        return fraction == 0 ? 0
                             : static_cast<std::uint16_t>(x * noiseStep) * levelStep / 65536 - levelStep / 2
                + startBias(fraction);
    };
    for (std::size_t x = 0; x < area.width; ++x) {
        const int before = errorOf(x - 1);
        const int downRight
            = before - share(before, toRight) - share(before, toDownLeft) - share(before, toDown);
        errors[x] = static_cast<std::int16_t>(share(errorOf(x + 1), toDownLeft) + share(errorOf(x), toDown)
                                              + downRight);
    }
}

} // namespace

void diffuse(const Picture &area, const LevelCurve &curve, std::span<std::int16_t> errors)
{
    Tables tables;
    tables.alone = curve;
    for (std::size_t grey = 0; grey < 256; ++grey) {
        const std::array<std::int16_t, 2> low = {curve[grey], 0}, high = {0, curve[grey]};
        std::memcpy(&tables.first[grey], low.data(), 4);
        std::memcpy(&tables.second[grey], high.data(), 4);
    }
    startErrors(area, curve, errors.data());
    HWY_DYNAMIC_DISPATCH(diffuseArea)(area, tables, errors.data());
}

} // namespace lindenreed::pixels

#endif
