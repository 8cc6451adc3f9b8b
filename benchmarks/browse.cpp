// Opening a folder of pictures on the panel, and the first pages of the grid, one after the other by the page
// key. The time is that from opening to the panel's first refresh. "cpu ms" and "system ms" are the main
// thread's own time: for opening, and for a page with all of its thumbnails; the system's share has the looks
// at files in it. "MiB" is the resident memory at the end. "through" goes to the last page, once.

#include "device_run.h"
#include "photographs.h"
#include "program.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <limits>

using namespace Qt::StringLiterals;
using namespace lindenreed;

namespace {

/// A folder of so many pictures, one file of 3 megapixels under many names.
void measured(benchmark::State &state, int pages)
{
    static const QTemporaryDir folder;
    const QString album = folder.filePath(QString::number(state.range(0)));
    const QString file = folder.filePath(u"one.jpg"_s);
    if (!QFile::exists(file))
        benchmarks::photograph({2000, 1500}).save(file, "JPG", benchmarks::photographQuality);
    if (!QFile::exists(album)) {
        QDir().mkpath(album);
        for (std::int64_t i = 0; i < state.range(0); ++i)
            QFile::link(file, album + u"/%1.jpg"_s.arg(i, 5, 10, QLatin1Char('0')));
    }
    for ([[maybe_unused]] auto iteration : state)
        benchmarks::runInDevice(state, u"grey-8"_s, u"benchmark_browse_in_device"_s,
                                {album, QString::number(pages)});
}

void browse(benchmark::State &state)
{
    measured(state, 12);
}

void through(benchmark::State &state)
{
    measured(state, std::numeric_limits<int>::max());
}

BENCHMARK(browse)
    ->ArgName("pictures")
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10'000)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// Once: its pages are its repetitions.
BENCHMARK(through)
    ->ArgName("pictures")
    ->Arg(10'000)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(1)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    return benchmarks::run<QCoreApplication>(argc, argv);
}
