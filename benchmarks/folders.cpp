// Opening a folder of pictures on the main thread: the rows of the list, and the thumbnails that are begun
// for what is listed. The reference lists the same folder twice and does nothing with it.

#include "program.h"

#include <cover_provider.h>
#include <folder_model.h>

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <chrono>
#include <cstdint>
#include <ctime>
#include <functional>
#include <map>

using namespace Qt::StringLiterals;
using namespace lindenreed;

namespace {

/// A folder of so many empty files, made once.
QString folderOf(const benchmark::State &state)
{
    static QTemporaryDir folder;
    static std::map<std::int64_t, QString> made;
    QString &path = made[state.range(0)];
    if (path.isEmpty()) {
        path = folder.filePath(QString::number(state.range(0)));
        QDir().mkpath(path);
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            QFile file(path + u"/IMG_%1.jpg"_s.arg(i, 6, 10, QLatin1Char('0')));
            if (!file.open(QIODevice::WriteOnly))
                qFatal("%s cannot be made", qPrintable(file.fileName()));
        }
    }
    return path;
}

double cpuMs()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) * 1e-6;
}

/// One iteration's time, and the thread's own as a mean.
void measure(benchmark::State &state, const std::function<void()> &work)
{
    const double cpuBefore = cpuMs();
    const auto begin = std::chrono::steady_clock::now();
    work();
    state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    state.counters["cpu_ms"].flags = benchmark::Counter::kAvgIterations;
    state.counters["cpu_ms"].value += cpuMs() - cpuBefore;
}

void changeFolder(benchmark::State &state)
{
    const QString path = folderOf(state);
    picture_stand::FolderModel model;
    for ([[maybe_unused]] auto iteration : state) {
        picture_stand::CoverProvider provider; // its end drops the jobs that this iteration has begun
        provider.setup();
        measure(state, [&] { model.changeFolder(path); });
    }
    if (model.rowCount() != state.range(0))
        state.SkipWithError("not all pictures were listed");
}

void twoListings(benchmark::State &state)
{
    const QString path = folderOf(state);
    const QStringList kinds = u"*.jpg|*.png|*.bmp|*.jpeg|*.tiff|*.tif|*.svg"_s.split(u'|'); // as the model's
    for ([[maybe_unused]] auto iteration : state) {
        measure(state, [&] {
            for (int i = 0; i < 2; ++i)
                benchmark::DoNotOptimize(QDir(path).entryList(kinds).size());
        });
    }
}

void folders(benchmark::internal::Benchmark *measured)
{
    measured->ArgName("pictures")->Arg(100)->Arg(1000)->Arg(10'000);
    measured->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(changeFolder)->Apply(folders);
BENCHMARK(twoListings)->Apply(folders);

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "minimal");
    return benchmarks::run<QGuiApplication>(argc, argv);
}
