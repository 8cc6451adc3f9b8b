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
constexpr double lobes = 3;

double sinc(double x)
{
    return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
}

double kernel(double x)
{
    return std::abs(x) < lobes ? sinc(x) * sinc(x / lobes) : 0;
}

int roundedUp(int number, int unit)
{
    return (number + unit - 1) / unit * unit;
}

} // namespace

ReducingTaps::ReducingTaps(int sourceLength, int targetLength)
{
    const double scale = double(sourceLength) / targetLength;
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

RowReducer::RowReducer(Size source, Size reduced, int channels, std::span<std::uint8_t> target,
                       std::size_t stride)
    : m_channels(channels)
    , m_targetWidth(reduced.width)
    , m_targetHeight(reduced.height)
    , m_down(source.height, reduced.height)
    , m_across(source.width, reduced.width)
    , m_rowBytes(std::size_t(roundedUp(source.width * channels, block)))
    , m_target(target)
    , m_stride(stride)
    , m_rows(m_rowBytes * std::size_t(m_down.count))
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
    const std::size_t count = std::size_t(m_down.count);
    const std::int16_t *const weights = m_down.weights.data() + std::size_t(row) * count;
    const std::size_t first = std::size_t(m_down.first[std::size_t(row)]);
    constexpr int shift = ReducingTaps::bits - furtherBits;
    for (std::size_t x = 0; x < m_rowBytes; x += block) {
        std::array<std::int32_t, block> sums;
        sums.fill(1 << (shift - 1));
        std::size_t place = first % count;
        for (std::size_t tap = 0; tap < count; ++tap) {
            const std::uint8_t *const source = m_rows.data() + place * m_rowBytes + x;
            const std::int16_t weight = weights[tap];
            for (std::size_t i = 0; i < block; ++i)
                sums[i] += std::int16_t(source[i]) * weight;
            place = place + 1 == count ? 0 : place + 1;
        }
        for (std::size_t i = 0; i < block; ++i)
            m_mixed[x + i] = std::int16_t(sums[i] >> shift);
    }
}

void RowReducer::writeRow(int row)
{
    std::uint8_t *const target = m_target.data() + std::size_t(row) * m_stride;
    const std::size_t count = std::size_t(m_across.count);
    constexpr int shift = ReducingTaps::bits + furtherBits;
    const auto byte = [](std::int32_t sum) {
        return std::uint8_t(std::clamp((sum + (1 << (shift - 1))) >> shift, 0, 255));
    };
    for (std::size_t x = 0; x < std::size_t(m_targetWidth); ++x) {
        const std::int16_t *const weights = m_across.weights.data() + x * count;
        const std::int16_t *const source = m_mixed.data() + std::size_t(m_across.first[x] * m_channels);
        if (m_channels == 1) {
            std::int32_t sum = 0;
            for (std::size_t tap = 0; tap < count; tap += tapsAtOnce) {
                for (std::size_t i = 0; i < tapsAtOnce; ++i)
                    sum += source[tap + i] * weights[tap + i];
            }
            target[x] = byte(sum);
        } else {
            std::array<std::int32_t, 4> sums = {};
            for (std::size_t tap = 0; tap < count; ++tap) {
                for (std::size_t i = 0; i < 4; ++i)
                    sums[i] += source[tap * 4 + i] * weights[tap];
            }
            for (std::size_t i = 0; i < 4; ++i)
                target[x * 4 + i] = byte(sums[i]);
        }
    }
}

} // namespace lindenreed::device
