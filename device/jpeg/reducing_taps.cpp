// A target pixel is the sum of the source pixels around its centre, weighted by a sinc of three lobes that is
// as wide as the picture is reduced, and windowed by the middle lobe of a sinc three times as wide (Lanczos).
// The weights are whole numbers whose sum is exact, so that a flat field keeps its value.

#include "reducing_taps.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>
#include <span>

namespace lindenreed::device {

namespace {

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

} // namespace

ReducingTaps::ReducingTaps(int sourceLength, double extent, int targetLength)
{
    static const Kernel kernel;
    const double scale = extent / targetLength;
    const int reach = std::min(sourceLength, int(std::ceil(2 * lobes * scale)));
    count = (reach + tapsAtOnce - 1) / tapsAtOnce * tapsAtOnce;
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

} // namespace lindenreed::device
