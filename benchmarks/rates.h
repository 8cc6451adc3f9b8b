// What the benchmarks report beside the time.

#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>

namespace lindenreed::benchmarks {

/// Nanoseconds for each of the pixels that one iteration handles.
inline void countPixels(benchmark::State &state, std::size_t pixels)
{
    state.counters["ns_per_pixel"] = benchmark::Counter(
        double(pixels) * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

} // namespace lindenreed::benchmarks
