// Tone adjustment and error diffusion from the size of a thumbnail to that of the largest panel, with each
// instruction set that the processor has, beside the plain ways of doing the same.

#include "dither.h"
#include "instruction_sets.h"
#include "rates.h"
#include "slow_diffusion.h"
#include "slow_tone.h"

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

using namespace lindenreed;

namespace {

constexpr pixels::Tone tone = {1.1, 1.2, 1.15};

/// Gradients with some noise, as photographs have: every grey, no pattern that a processor could foresee.
std::vector<std::uint8_t> photograph(std::size_t width, std::size_t height)
{
    std::mt19937 random(1);
    std::vector<std::uint8_t> bytes(width * height);
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            const auto gradient = int((x * 180 / width + y * 60 / height));
            bytes[y * width + x] = static_cast<std::uint8_t>(gradient + int(random() % 16));
        }
    }
    return bytes;
}

/// The picture is made anew for each iteration, outside the time: a dithered one would be a different task.
template <typename Work>
void onPanel(benchmark::State &state, Work work)
{
    const auto width = static_cast<std::size_t>(state.range(0));
    const auto height = static_cast<std::size_t>(state.range(1));
    const std::vector<std::uint8_t> original = photograph(width, height);
    std::vector<std::uint8_t> bytes = original;

    for ([[maybe_unused]] auto iteration : state) {
        state.PauseTiming();
        std::copy(original.begin(), original.end(), bytes.begin());
        state.ResumeTiming();
        work(pixels::Picture{bytes.data(), width, height, width, 1});
        benchmark::ClobberMemory();
    }
    benchmarks::countPixels(state, width * height);
}

void toneAndDither(benchmark::State &state)
{
    onPanel(state, [](const pixels::Picture &picture) {
        pixels::adjustTone(picture, tone);
        pixels::diffuseTo16Levels(picture, 0, 0, picture.width, picture.height);
    });
}

void toneOnly(benchmark::State &state)
{
    onPanel(state, [](const pixels::Picture &picture) { pixels::adjustTone(picture, tone); });
}

void toneReference(benchmark::State &state)
{
    onPanel(state, [](const pixels::Picture &picture) { pixels::adjustToneSlowly(picture, tone); });
}

void ditherOnly(benchmark::State &state)
{
    onPanel(state, [](const pixels::Picture &picture) {
        pixels::diffuseTo16Levels(picture, 0, 0, picture.width, picture.height);
    });
}

void ditherReference(benchmark::State &state)
{
    onPanel(state, [](const pixels::Picture &picture) {
        pixels::diffuseSlowly(picture, 0, 0, picture.width, picture.height);
    });
}

void atAllSizes(benchmark::internal::Benchmark *measured)
{
    measured->ArgNames({"width", "height"})
        ->Args({165, 290})
        ->Args({758, 1024})
        ->Args({1072, 1448})
        ->Args({1404, 1872})
        ->Args({1872, 1404})
        ->Unit(benchmark::kMillisecond);
}

void onTheLargest(benchmark::internal::Benchmark *measured)
{
    measured->ArgNames({"width", "height"})->Args({1404, 1872})->Unit(benchmark::kMillisecond);
}

/// The same work with each instruction set, forced one by one.
void withEachSet(const std::string &name, void (*work)(benchmark::State &))
{
    for (const auto set : pixels::instructionSets()) {
        const auto forced = [set, work](benchmark::State &state) {
            const pixels::ForcedInstructionSet only(set);
            work(state);
        };
        benchmark::RegisterBenchmark((name + '/' + pixels::instructionSetName(set)).c_str(), forced)
            ->Apply(atAllSizes);
    }
}

[[maybe_unused]] const bool registered = [] {
    withEachSet("ditherOnly", ditherOnly);
    withEachSet("toneOnly", toneOnly);
    withEachSet("toneAndDither", toneAndDither);
    return true;
}();

BENCHMARK(ditherReference)->Apply(onTheLargest);
BENCHMARK(toneReference)->Apply(onTheLargest);

} // namespace
