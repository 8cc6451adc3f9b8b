// From a window's picture to the panel, a whole screen at a time: levels, turning and refresh. The reference
// copies rows.

#include "rates.h"

#include <panel.h>
#include <profile.h>
#include <turned_size.h>

#include <QImage>

#include <cstring>
#include <vector>

using namespace Qt::StringLiterals;
using namespace lindenreed;

namespace {

device::Profile profileOf(const benchmark::State &state)
{
    device::Profile profile;
    profile.panelSize = QSize(int(state.range(0)), int(state.range(1)));
    return profile;
}

QImage windowOf(const QSize &size)
{
    QImage picture(size, QImage::Format_Grayscale8);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            picture.scanLine(y)[x] = static_cast<uchar>(x * 3 + y * 5);
    }
    return picture;
}

void compose(benchmark::State &state, int orientation)
{
    const device::Profile profile = profileOf(state);
    QString error;
    const auto panel = device::Panel::create(profile, {}, &error);
    if (!panel) {
        state.SkipWithError(qPrintable(error));
        return;
    }
    panel->setOrientation(orientation);
    const QSize screen = device::turnedSize(profile.panelSize, orientation);
    const QImage window = windowOf(screen);
    const QRect area(QPoint(0, 0), screen);
    for ([[maybe_unused]] auto iteration : state) {
        panel->begin();
        panel->copy(window, {0, 0}, area, device::Tones::All);
        panel->finish(device::RefreshMode::Full, area);
    }
    benchmarks::countPixels(state, std::size_t(screen.width()) * std::size_t(screen.height()));
}

void composeUpright(benchmark::State &state)
{
    compose(state, 0);
}

void composeTurned(benchmark::State &state)
{
    compose(state, 1);
}

void composeUpsideDown(benchmark::State &state)
{
    compose(state, 3);
}

void composeReference(benchmark::State &state)
{
    const QSize size = profileOf(state).panelSize;
    const QImage window = windowOf(size);
    const std::size_t stride = (std::size_t(size.width()) + 63) / 64 * 64;
    std::vector<uchar> panel(stride * std::size_t(size.height()));
    for ([[maybe_unused]] auto iteration : state) {
        for (int y = 0; y < size.height(); ++y)
            std::memcpy(panel.data() + std::size_t(y) * stride, window.constScanLine(y),
                        std::size_t(size.width()));
        benchmark::ClobberMemory();
    }
    benchmarks::countPixels(state, std::size_t(size.width()) * std::size_t(size.height()));
}

void onBothPanels(benchmark::internal::Benchmark *measured)
{
    measured->ArgNames({"width", "height"})
        ->Args({758, 1024})
        ->Args({1404, 1872})
        ->Unit(benchmark::kMillisecond);
}

BENCHMARK(composeUpright)->Apply(onBothPanels);
BENCHMARK(composeTurned)->Apply(onBothPanels);
BENCHMARK(composeUpsideDown)->Apply(onBothPanels);
BENCHMARK(composeReference)->Apply(onBothPanels);

} // namespace
