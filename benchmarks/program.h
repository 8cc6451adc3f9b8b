// The main program of benchmarks that need an application object.

#pragma once

#include <benchmark/benchmark.h>

namespace lindenreed::benchmarks {

/// Runs what is registered, as `prepare` may do, under an application of this kind.
template <typename Application>
int run(
    int argc, char *argv[], void (*prepare)() = [] {})
{
    const Application application(argc, argv);
    benchmark::Initialize(&argc, argv);
    prepare();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace lindenreed::benchmarks
