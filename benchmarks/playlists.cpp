// The overview on the panel, with playlists of 100 pictures: from opening it to the panel's first refresh,
// and its pages, one after the other by the page key; "cpu ms" and "system ms" are the main thread's own
// time.
//
// Adding pictures to a playlist in a database with so many other rows, per picture, once. Each picture is
// committed by itself, and all playlists are read again after each: "commit ms" and "read ms" are these two
// alone, by a bare query of the same driver in the same run, and "ours percent" is what adding takes beyond
// them: first of all to look whether the picture is there already, which is "look up ms".

#include "device_run.h"
#include "photographs.h"
#include "program.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace lindenreed;

namespace {

/// A folder of 4,100 pictures: one file of 3 megapixels under many names.
QString album()
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(u"album"_s);
    if (!QFile::exists(path)) {
        QDir().mkpath(path);
        const QString file = folder.filePath(u"one.jpg"_s);
        benchmarks::photograph({2000, 1500}).save(file, "JPG", benchmarks::photographQuality);
        for (int i = 0; i < 4100; ++i)
            QFile::link(file, path + u"/%1.jpg"_s.arg(i, 5, 10, QLatin1Char('0')));
    }
    return path;
}

void measured(benchmark::State &state, const QStringList &arguments)
{
    for ([[maybe_unused]] auto iteration : state)
        benchmarks::runInDevice(state, u"grey-8"_s, u"benchmark_playlists_in_device"_s, arguments);
}

void overview(benchmark::State &state)
{
    measured(state, {u"overview"_s, album(), QString::number(state.range(0))});
}

void add(benchmark::State &state)
{
    measured(state, {u"add"_s, QString::number(state.range(0)), QString::number(state.range(1))});
}

BENCHMARK(overview)
    ->ArgName("playlists")
    ->RangeMultiplier(10)
    ->Range(1, 1000)
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

// Once: the pictures of a row are its repetitions.
BENCHMARK(add)
    ->ArgNames({"rows", "pictures"})
    ->ArgsProduct({{0, 10'000}, {10, 100, 1000, 5000}})
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(1)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    return benchmarks::run<QCoreApplication>(argc, argv);
}
