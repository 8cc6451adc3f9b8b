// How the errors of a slanted line go on: of its pixels, a row in each lane, which diffusion.cpp brings.

// Read once for each instruction set.
#if defined(SLATE_PIXELS_DIFFUSION_LINE_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef SLATE_PIXELS_DIFFUSION_LINE_INL_H
#undef SLATE_PIXELS_DIFFUSION_LINE_INL_H
#else
#define SLATE_PIXELS_DIFFUSION_LINE_INL_H
#endif

#include "diffusion.h"
#include "lanes-inl.h"

#include <cstddef>
#include <cstdint>

HWY_BEFORE_NAMESPACE();

namespace lindenreed::pixels::HWY_NAMESPACE {

/// How far a row is behind the one above: a pixel needs the one above to the right.
constexpr std::ptrdiff_t lag = 2;

/// Bounds of an error: half a step, and what the noise adds. Those of a value are as far from black and
/// white.
constexpr int lowestError = -levelStep / 2 - noiseLimit;
constexpr int highestError = levelStep / 2 - 1 + noiseLimit;
constexpr int lowestValue = lowestError;
constexpr int highestValue = 15 * levelStep + highestError;
static_assert(highestValue <= INT16_MAX);

/// Whether what a pixel receives away from the sides, a share of four errors, always stays within the bounds
/// of one: there nothing is cut off, and errors would grow from pixel to pixel. With some noise they do.
constexpr bool sharesStayWithinBounds()
{
    int most[4] = {};
    int least[4] = {};
    for (int error = lowestError; error <= highestError; ++error) {
        const int right = (error * toRight) >> 4;
        const int downLeft = (error * toDownLeft) >> 4;
        const int down = (error * toDown) >> 4;
        const int shares[4] = {right, downLeft, down, error - right - downLeft - down};
        for (int i = 0; i < 4; ++i) {
            most[i] = shares[i] > most[i] ? shares[i] : most[i];
            least[i] = shares[i] < least[i] ? shares[i] : least[i];
        }
    }
    return most[0] + most[1] + most[2] + most[3] <= highestError
        && least[0] + least[1] + least[2] + least[3] >= lowestError;
}
static_assert(sharesStayWithinBounds());

/// What each line needs. In memory: GCC would rather make them anew in each line, one by one.
struct Constants
{
    Lanes even = constant(~1);
    Lanes whole = constant(-levelStep);
    Lanes half = constant(levelStep / 2);
    Lanes noiseStep = constant(pixels::noiseStep);
    // As parts of 65536: the upper half of a product is what is wanted.
    Lanes noiseFactor = constant(27 * 32);
    Lanes toRight = constant(pixels::toRight * 4096);
    Lanes toDownLeft = constant(pixels::toDownLeft * 4096);
    Lanes toDown = constant(pixels::toDown * 4096);

    Constants() { hide(this); }
};

/// What the lines before the present one left: shares on their way to a pixel of a later line.
struct Course
{
    Lanes right; ///< for the next pixel of the same row
    Lanes below; ///< for the row below: complete, for the next line
    Lanes below2; ///< for the line after that, so far
    Lanes below3; ///< for the third line, so far
    Lanes noise;
    // Whether the pixels before are a level that is also their left neighbour's: the last one of each row,
    // and the last two.
    Lanes before; ///< the last one's place; if that is no level, no level's
    Lanes same;
    Lanes sameTwice;
};

/// Where the lanes are in a line.
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

/// Where errors end: at a level that goes on for the pixel and solidRun to its left.
template <bool AtSides>
HWY_INLINE Lanes solidOf(Lanes places, Course &course, const Position &where, const Constants &constants)
{
    static_assert(solidRun == 3);
    Lanes same = whereEqual(places, course.before);
    if constexpr (AtSides)
        same = cleared(whereZero(where.fromLeft), same);
    const Lanes solid = course.sameTwice & same;
    course.sameTwice = course.same & same;
    course.same = same;
    course.before = places & constants.even;
    return solid;
}

/// One line: places in, levels in steps of levelStep out.
template <bool AtSides>
HWY_INLINE Lanes diffuseLine(Lanes places, Lanes first, Course &course, const Position &where,
                             const Constants &constants)
{
    const Lanes solid = solidOf<AtSides>(places, course, where, constants);
    const Lanes threshold = highProduct(course.noise, constants.noiseFactor) + constants.half;
    const Lanes fromLeft = cleared(solid, course.right);
    const Lanes fromAbove = cleared(solid, moved(first, course.below)); // the last to be there
    Lanes values;
    Lanes noisy;
    if constexpr (AtSides) {
        // What comes together here may be too much to be shared out, and to fit 16 bits.
        const Lanes received = fromLeft + fromAbove;
        const Lanes most = constant(highestValue) - greatest(received, constant(0));
        values = greatest(least(places, most) + received, constant(lowestValue));
        noisy = saturatedSum(values, threshold);
    } else {
        values = places + fromLeft;
        // What the first sum may lose is less than lies between a value of 16 bits and the highest level.
        noisy = saturatedSum(saturatedSum(values, threshold), fromAbove);
        values = values + fromAbove;
    }
    const Lanes levels = greatest(noisy, constant(0)) & constants.whole;
    Lanes errors = values - levels;
    if constexpr (AtSides)
        errors = cleared(whereNegative(least(where.fromLeft, where.fromRight)), errors);

    Lanes right = highProduct(errors, constants.toRight);
    const Lanes downLeft = highProduct(errors, constants.toDownLeft);
    Lanes down = highProduct(errors, constants.toDown);
    const Lanes downRight = errors - right - (downLeft + down);
    if constexpr (AtSides) {
        // What goes out of the area is looked at by nobody; it only has to go down as well.
        down = down + (downLeft & whereZero(where.fromLeft))
            + ((right + downRight) & whereZero(where.fromRight));
        if (where.hasLastRow) {
            const Lanes isLast = whereZero(where.toLastRow);
            right = cleared(isLast, right) | (errors & isLast);
        }
    }

    course.right = right;

    course.below = downLeft + course.below2;
    course.below2 = down + course.below3;
    course.below3 = downRight;
    course.noise = wrappingSum(course.noise, constants.noiseStep);
    return levels;
}

} // namespace lindenreed::pixels::HWY_NAMESPACE

HWY_AFTER_NAMESPACE();

#endif
