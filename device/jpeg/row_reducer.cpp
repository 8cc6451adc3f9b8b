#include "row_reducer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>

namespace lindenreed::device {

namespace {

constexpr int block = 16; // pixels that are mixed at once
constexpr int tapsAtOnce = 8; // weights that are multiplied at once
constexpr int furtherBits = 6; // of a mixed row: with a sinc's overshoot still within 16 bits
constexpr int lobes = 3;

/// The kernel, drawn between points that are closer than its weights are exact.
class Kernel
{
public:
    Kernel()
    {
        for (std::size_t i = 0; i < m_values.size(); ++i) {
            const double x = double(i) / steps;
            m_values[i] = x < lobes ? sinc(x) * sinc(x / lobes) : 0;
        }
    }
    double operator()(double x) const
    {
        const double place = std::min(std::abs(x), double(lobes)) * steps;
        const auto before = std::size_t(place);
        return m_values[before] + (place - double(before)) * (m_values[before + 1] - m_values[before]);
    }

private:
    static double sinc(double x)
    {
        return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
    }

    static constexpr int steps = 512;
    std::array<double, std::size_t(lobes) * steps + 2> m_values;
};

int roundedUp(int number, int unit)
{
    return (number + unit - 1) / unit * unit;
}

// What follows is written for the compiler to make vectors of, with the instructions of every processor:
// products of 16 bits by 16, and four or eight at once.

void addRows(std::int32_t *__restrict sums, std::size_t count, std::array<const std::uint8_t *, 4> rows,
             const std::int16_t *weights)
{
    const std::uint8_t *__restrict const a = rows[0];
    const std::uint8_t *__restrict const b = rows[1];
    const std::uint8_t *__restrict const c = rows[2];
    const std::uint8_t *__restrict const d = rows[3];
    const std::int16_t ofA = weights[0];
    const std::int16_t ofB = weights[1];
    const std::int16_t ofC = weights[2];
    const std::int16_t ofD = weights[3];
    for (std::size_t x = 0; x < count; ++x) {
        sums[x] += std::int16_t(a[x]) * ofA + std::int16_t(b[x]) * ofB + std::int16_t(c[x]) * ofC
            + std::int16_t(d[x]) * ofD;
    }
}

std::int32_t sumOf(const std::int16_t *source, const std::int16_t *weights, std::size_t count)
{
    std::int32_t sum = 0;
    for (std::size_t tap = 0; tap < count; tap += tapsAtOnce) {
        for (std::size_t i = 0; i < tapsAtOnce; ++i)
            sum += source[tap + i] * weights[tap + i];
    }
    return sum;
}

std::array<std::int32_t, 4> sumsOfFour(const std::int16_t *source, const std::int16_t *weights,
                                       std::size_t count)
{
    std::array<std::int32_t, 4> sums = {};
    for (std::size_t tap = 0; tap < count; ++tap) {
        for (std::size_t i = 0; i < 4; ++i)
            sums[i] += source[tap * 4 + i] * weights[tap];
    }
    return sums;
}

std::uint8_t byte(std::int32_t sum)
{
    constexpr int shift = ReducingTaps::bits + furtherBits;
    return std::uint8_t(std::clamp((sum + (1 << (shift - 1))) >> shift, 0, 255));
}

} // namespace

ReducingTaps::ReducingTaps(int sourceLength, double extent, int targetLength)
{
    static const Kernel kernel;
    const double scale = extent / targetLength;
    const int reach = std::min(sourceLength, int(std::ceil(2 * lobes * scale)));
    count = roundedUp(reach, tapsAtOnce);
    first.resize(std::size_t(targetLength));
    weights.resize(std::size_t(targetLength) * std::size_t(count));
    std::vector<double> exact(static_cast<std::size_t>(reach));
    for (int target = 0; target < targetLength; ++target) {
        const double centre = (target + 0.5) * scale - 0.5;
        const int begin = std::clamp(int(std::floor(centre - lobes * scale)) + 1, 0, sourceLength - reach);
        for (int i = 0; i < reach; ++i)
            exact[std::size_t(i)] = kernel((begin + i - centre) / scale);
        const double sum = std::accumulate(exact.begin(), exact.end(), 0.0);
        const std::span mine
            = std::span(weights).subspan(std::size_t(target) * std::size_t(count), std::size_t(count));
        // The running sum is rounded, so that the weights' own sum is exact.
        double running = 0;
        for (int i = 0; i < reach; ++i) {
            const long before = std::lround(running);
            running += exact[std::size_t(i)] / sum * one;
            mine[std::size_t(i)] = std::int16_t(std::lround(running) - before);
        }
        first[std::size_t(target)] = begin;
    }
}

RowReducer::RowReducer(Size source, Extent extent, Size reduced, int channels, std::span<std::uint8_t> target,
                       std::size_t stride)
    : m_channels(channels)
    , m_targetWidth(reduced.width)
    , m_targetHeight(reduced.height)
    , m_down(source.height, extent.height, reduced.height)
    , m_across(source.width, extent.width, reduced.width)
    , m_rowBytes(std::size_t(roundedUp(source.width * channels, block)))
    , m_target(target)
    , m_stride(stride)
    , m_rows(m_rowBytes * std::size_t(m_down.count))
    , m_sums(m_rowBytes)
    , m_mixed(m_rowBytes + std::size_t(m_across.count * channels))
{
}

std::uint8_t *RowReducer::nextRow()
{
    return m_rows.data() + std::size_t(m_added % m_down.count) * m_rowBytes;
}

void RowReducer::add()
{
    ++m_added;
    while (m_written < m_targetHeight) {
        // Weights beyond the picture are 0, and the rows there are any.
        const auto mine
            = std::span(m_down.weights)
                  .subspan(std::size_t(m_written) * std::size_t(m_down.count), std::size_t(m_down.count));
        int last = m_down.count;
        while (mine[std::size_t(last - 1)] == 0)
            --last;
        if (m_down.first[std::size_t(m_written)] + last > m_added)
            return;
        mixRows(m_written);
        writeRow(m_written);
        ++m_written;
    }
}

void RowReducer::mixRows(int row)
{
    const auto count = std::size_t(m_down.count);
    const std::int16_t *const weights = m_down.weights.data() + std::size_t(row) * count;
    const auto first = std::size_t(m_down.first[std::size_t(row)]);
    const auto source = [&](std::size_t tap) { return m_rows.data() + (first + tap) % count * m_rowBytes; };
    constexpr int shift = ReducingTaps::bits - furtherBits;
    std::fill(m_sums.begin(), m_sums.end(), 1 << (shift - 1));
    for (std::size_t tap = 0; tap < count; tap += 4) {
        addRows(m_sums.data(), m_rowBytes, {source(tap), source(tap + 1), source(tap + 2), source(tap + 3)},
                weights + tap);
    }
    for (std::size_t x = 0; x < m_rowBytes; ++x)
        m_mixed[x] = std::int16_t(m_sums[x] >> shift);
}

void RowReducer::writeRow(int row)
{
    std::uint8_t *const target = m_target.data() + std::size_t(row) * m_stride;
    for (std::size_t x = 0; x < std::size_t(m_targetWidth); ++x) {
        const std::int16_t *const weights = m_across.weights.data() + x * std::size_t(m_across.count);
        const std::int16_t *const source = m_mixed.data() + std::size_t(m_across.first[x] * m_channels);
        if (m_channels == 1) {
            target[x] = byte(sumOf(source, weights, std::size_t(m_across.count)));
        } else {
            const auto sums = sumsOfFour(source, weights, std::size_t(m_across.count));
            std::transform(sums.begin(), sums.end(), target + x * 4, &byte);
        }
    }
}

} // namespace lindenreed::device
