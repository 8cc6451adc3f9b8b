// Weighted sums of 8 bit pixels by 14 bit weights. The rows are added up first, all columns side by side,
// into 16 bits with 6 further ones; then the columns of that one row, several weights at once. Both shift
// back by what the weights have brought, rounded.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "row_sums.cpp"

#include "row_sums.h"

#include <hwy/foreach_target.h>
// After it.
#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <cstring>

HWY_BEFORE_NAMESPACE();

namespace lindenreed::device::HWY_NAMESPACE {

constexpr int furtherBits = 6; // of a mixed row: with a sinc's overshoot still within 16 bits
constexpr int mixedShift = ReducingTaps::bits - furtherBits;
constexpr int reducedShift = ReducingTaps::bits + furtherBits;

// Four or eight products of 16 bits by 16 at once: what is a plain loop is written for the compiler to make
// vectors of.

std::int32_t sumOf(const std::int16_t *source, const std::int16_t *weights, std::size_t count)
{
    std::int32_t sum = 0;
    for (std::size_t tap = 0; tap < count; tap += ReducingTaps::tapsAtOnce) {
        for (std::size_t i = 0; i < ReducingTaps::tapsAtOnce; ++i)
            sum += source[tap + i] * weights[tap + i];
    }
    return sum;
}

std::uint8_t byte(std::int32_t sum)
{
    return std::uint8_t(std::clamp((sum + (1 << (reducedShift - 1))) >> reducedShift, 0, 255));
}

void reduceGreys(const std::int16_t *mixed, const ReducingTaps &taps, std::uint8_t *target)
{
    const auto count = std::size_t(taps.count);
    for (std::size_t x = 0; x < taps.first.size(); ++x)
        target[x] = byte(sumOf(mixed + taps.first[x], taps.weights.data() + x * count, count));
}

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128

void mixRows(const std::uint8_t *const *rows, std::size_t count, const std::int16_t *weights,
             std::size_t bytes, std::int16_t *mixed)
{
    constexpr std::size_t part = 256;
    std::array<std::int32_t, part> sums;
    for (std::size_t begin = 0; begin < bytes; begin += part) {
        const std::size_t length = std::min(part, bytes - begin);
        sums.fill(1 << (mixedShift - 1));
        for (std::size_t tap = 0; tap < count; tap += 4) {
            const std::uint8_t *__restrict const a = rows[tap] + begin;
            const std::uint8_t *__restrict const b = rows[tap + 1] + begin;
            const std::uint8_t *__restrict const c = rows[tap + 2] + begin;
            const std::uint8_t *__restrict const d = rows[tap + 3] + begin;
            const std::int16_t ofA = weights[tap];
            const std::int16_t ofB = weights[tap + 1];
            const std::int16_t ofC = weights[tap + 2];
            const std::int16_t ofD = weights[tap + 3];
            for (std::size_t x = 0; x < length; ++x) {
                sums[x] += std::int16_t(a[x]) * ofA + std::int16_t(b[x]) * ofB + std::int16_t(c[x]) * ofC
                    + std::int16_t(d[x]) * ofD;
            }
        }
        for (std::size_t x = 0; x < length; ++x)
            mixed[begin + x] = std::int16_t(sums[x] >> mixedShift);
    }
}

void reducePixels(const std::int16_t *mixed, const ReducingTaps &taps, std::uint8_t *target)
{
    const auto count = std::size_t(taps.count);
    for (std::size_t x = 0; x < taps.first.size(); ++x) {
        const std::int16_t *const source = mixed + std::ptrdiff_t(taps.first[x]) * 4;
        const std::int16_t *const weights = taps.weights.data() + x * count;
        std::array<std::int32_t, 4> sums = {};
        for (std::size_t tap = 0; tap < count; ++tap) {
            for (std::size_t i = 0; i < 4; ++i)
                sums[i] += source[tap * 4 + i] * weights[tap];
        }
        std::transform(sums.begin(), sums.end(), target + x * 4, &byte);
    }
}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::Full128<std::uint8_t>;
using Numbers = hn::Full128<std::int16_t>;
using Sums = hn::Full128<std::int32_t>;

/// Sums of two products each, of neighbours. How they lie in its two parts differs between processors, so
/// that what the sums begin with is added at the end.
class PairSums
{
public:
    explicit PairSums(std::int32_t begin)
        : m_begin(hn::Set(Sums(), begin))
        , m_sums(hn::Zero(Sums()))
        , m_further(hn::Zero(Sums()))
    {
    }
    HWY_INLINE void add(hn::Vec<Numbers> numbers, hn::Vec<Numbers> weights)
    {
        m_sums = hn::ReorderWidenMulAccumulate(Sums(), numbers, weights, m_sums, m_further);
    }
    HWY_INLINE hn::Vec<Sums> sums() const
    {
        return hn::Add(hn::RearrangeToOddPlusEven(m_sums, m_further), m_begin);
    }

private:
    hn::Vec<Sums> m_begin;
    hn::Vec<Sums> m_sums;
    hn::Vec<Sums> m_further;
};

/// Two weights that are neighbours, four times.
HWY_INLINE hn::Vec<Numbers> weightPair(const std::int16_t *weights)
{
    std::int32_t both;
    std::memcpy(&both, weights, sizeof both);
    return hn::BitCast(Numbers(), hn::Set(Sums(), both));
}

void mixRows(const std::uint8_t *const *rows, std::size_t count, const std::int16_t *weights,
             std::size_t bytes, std::int16_t *mixed)
{
    constexpr std::int32_t half = 1 << (mixedShift - 1);
    const Bytes tag;
    const auto none = hn::Zero(tag);
    const auto numbers = [](auto pairs) { return hn::BitCast(Numbers(), pairs); };
    const auto store = [](const PairSums &first, const PairSums &second, std::int16_t *to) {
        const hn::Half<Numbers> half16;
        hn::StoreU(hn::DemoteTo(half16, hn::ShiftRight<mixedShift>(first.sums())), half16, to);
        hn::StoreU(hn::DemoteTo(half16, hn::ShiftRight<mixedShift>(second.sums())), half16, to + 4);
    };
    for (std::size_t x = 0; x < bytes; x += mixedAtOnce) {
        PairSums first(half);
        PairSums second(half);
        PairSums third(half);
        PairSums fourth(half);
        for (std::size_t tap = 0; tap < count; tap += 2) {
            const auto upper = hn::LoadU(tag, rows[tap] + x);
            const auto lower = hn::LoadU(tag, rows[tap + 1] + x);
            const auto pair = weightPair(weights + tap);
            const auto left = hn::InterleaveLower(tag, upper, lower);
            const auto right = hn::InterleaveUpper(tag, upper, lower);
            first.add(numbers(hn::InterleaveLower(tag, left, none)), pair);
            second.add(numbers(hn::InterleaveUpper(tag, left, none)), pair);
            third.add(numbers(hn::InterleaveLower(tag, right, none)), pair);
            fourth.add(numbers(hn::InterleaveUpper(tag, right, none)), pair);
        }
        store(first, second, mixed + x);
        store(third, fourth, mixed + x + 8);
    }
}

void reducePixels(const std::int16_t *mixed, const ReducingTaps &taps, std::uint8_t *target)
{
    const Numbers tag;
    const hn::Rebind<std::uint8_t, Sums> byteTag;
    const auto count = std::size_t(taps.count);
    for (std::size_t x = 0; x < taps.first.size(); ++x) {
        const std::int16_t *const source = mixed + std::ptrdiff_t(taps.first[x]) * 4;
        const std::int16_t *const weights = taps.weights.data() + x * count;
        PairSums sums(1 << (reducedShift - 1));
        for (std::size_t tap = 0; tap < count; tap += 2) {
            const auto two = hn::LoadU(tag, source + tap * 4); // pixels
            const auto second = hn::ShiftRightLanes<4>(tag, two);
            sums.add(hn::InterleaveLower(tag, two, second), weightPair(weights + tap));
        }
        hn::StoreU(hn::DemoteTo(byteTag, hn::ShiftRight<reducedShift>(sums.sums())), byteTag, target + x * 4);
    }
}

#endif

} // namespace lindenreed::device::HWY_NAMESPACE

HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace lindenreed::device {

namespace {

HWY_EXPORT(mixRows);
HWY_EXPORT(reduceGreys);
HWY_EXPORT(reducePixels);

} // namespace

void mixRows(std::span<const std::uint8_t *const> rows, const std::int16_t *weights, std::size_t bytes,
             std::int16_t *mixed)
{
    HWY_DYNAMIC_DISPATCH(mixRows)(rows.data(), rows.size(), weights, bytes, mixed);
}

void reduceGreys(const std::int16_t *mixed, const ReducingTaps &taps, std::uint8_t *target)
{
    HWY_DYNAMIC_DISPATCH(reduceGreys)(mixed, taps, target);
}

void reducePixels(const std::int16_t *mixed, const ReducingTaps &taps, std::uint8_t *target)
{
    HWY_DYNAMIC_DISPATCH(reducePixels)(mixed, taps, target);
}

} // namespace lindenreed::device

#endif
