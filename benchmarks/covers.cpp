// Thumbnails of a camera's JPEG files on two threads and on three, as many as a device has; the reference
// decodes the same files on as many. "fifty" asks at once for 40 thumbnails of 3 megapixels, 5 of the largest
// PNG that Qt reads, and 5 of a grey one of 100 megapixels, which it refuses (it reckons four bytes a pixel);
// "peak MiB" is by how much the resident memory grew, "largest MiB" what one of the largest takes.

#include "device_reader.h"
#include "photographs.h"
#include "program.h"

#include <cover_cache.h>
#include <cover_provider.h>
#include <facts.h>

#include <benchmark/benchmark.h>

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <map>

using namespace Qt::StringLiterals;
using namespace lindenreed;

namespace {

constexpr int atOnce = 12; ///< thumbnails or decodings in one iteration

const QTemporaryDir &folder()
{
    static const QTemporaryDir folder;
    return folder;
}

/// A JPEG file of so many megapixels, made once.
QString photographFile(std::int64_t megapixels)
{
    static std::map<std::int64_t, QString> made;
    QString &path = made[megapixels];
    if (path.isEmpty()) {
        path = folder().filePath(u"%1.jpg"_s.arg(megapixels));
        const QSize size = megapixels == 3 ? QSize(2000, 1500)
            : megapixels == 12             ? QSize(4000, 3000)
                                           : QSize(6000, 4000);
        benchmarks::photograph(size).save(path, "JPG", benchmarks::photographQuality);
    }
    return path;
}

void countPictures(benchmark::State &state)
{
    state.counters["per_second"] = benchmark::Counter(atOnce, benchmark::Counter::kIsIterationInvariantRate);
}

class Clock
{
public:
    double seconds() const { return std::chrono::duration<double>(now() - m_begin).count(); }

private:
    static std::chrono::steady_clock::time_point now() { return std::chrono::steady_clock::now(); }
    const std::chrono::steady_clock::time_point m_begin = now();
};

/// Asks for all of `paths` at once and waits for the last; the seconds that it took.
double makeThumbnails(const QStringList &paths, std::int64_t threads)
{
    device::facts().platformNumber = threads == 3 ? 17 : 0;
    picture_stand::CoverProvider provider;
    provider.setup();
    static int height = 220; // a box that no request had before: its thumbnail is not in the cache
    QStringList keys;
    const Clock clock;
    for (const QString &path : paths) {
        const QSize box(220, ++height);
        provider.requestImageResponse(path, box);
        keys.append(picture_stand::coverKey(path, box.width(), box.height()));
    }
    for (const QString &key : std::as_const(keys)) {
        while (!picture_stand::CoverCache::instance().find(key))
            QThread::usleep(200);
    }
    return clock.seconds();
}

void thumbnails(benchmark::State &state)
{
    const QStringList paths(atOnce, photographFile(state.range(0)));
    for ([[maybe_unused]] auto iteration : state)
        state.SetIterationTime(makeThumbnails(paths, state.range(1)));
    countPictures(state);
}

void decodings(benchmark::State &state)
{
    const QString path = photographFile(state.range(0));
    QThreadPool pool;
    pool.setMaxThreadCount(int(state.range(1)));
    for ([[maybe_unused]] auto iteration : state) {
        const Clock clock;
        for (int i = 0; i < atOnce; ++i)
            pool.start([&path] { benchmark::DoNotOptimize(QImage(path).constBits()); });
        pool.waitForDone();
        state.SetIterationTime(clock.seconds());
    }
    countPictures(state);
}

/// Of the process, in MiB: "VmHWM" is the highest resident memory since it was forgotten, "VmRSS" that of
/// now.
double memory(const QByteArray &name)
{
    QFile file(u"/proc/self/status"_s);
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return text.mid(text.indexOf(name) + name.size() + 1).simplified().split(' ').value(0).toDouble() / 1024;
}

bool forgetHighestMemory()
{
    QFile file(u"/proc/self/clear_refs"_s);
    return file.open(QIODevice::WriteOnly) && file.write("5") == 1;
}

QString blackFile(int side, QImage::Format format)
{
    const QString path = folder().filePath(u"%1.png"_s.arg(side));
    if (!QFile::exists(path)) {
        QImage picture(side, side, format);
        picture.fill(Qt::black);
        picture.save(path);
    }
    return path;
}

void fifty(benchmark::State &state)
{
    const int largest = int(std::sqrt(QImageReader::allocationLimit() * 1024. * 1024 / 4)) - 1;
    QStringList paths(5, blackFile(largest, QImage::Format_RGB32));
    paths += QStringList(5, blackFile(10'000, QImage::Format_Grayscale8));
    paths += QStringList(40, photographFile(3));
    double peak = 0;
    for ([[maybe_unused]] auto iteration : state) {
        if (!forgetHighestMemory()) {
            state.SkipWithError("the highest memory cannot be told");
            return;
        }
        const double before = memory("VmRSS");
        state.SetIterationTime(makeThumbnails(paths, state.range(0)));
        peak = std::max(peak, memory("VmHWM") - before);
    }
    state.counters["peak_MiB"] = peak;
    state.counters["largest_MiB"] = largest * 4. * largest / 1024 / 1024;
}

void photographs(benchmark::internal::Benchmark *measured)
{
    measured->ArgNames({"megapixels", "threads"})->ArgsProduct({{3, 12, 24}, {2, 3}});
    measured->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
}

BENCHMARK(thumbnails)->Apply(photographs);
BENCHMARK(decodings)->Apply(photographs);
BENCHMARK(fifty)->ArgName("threads")->Arg(2)->Arg(3)->UseManualTime()->Iterations(1)->Unit(
    benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "minimal");
    return benchmarks::run<QGuiApplication>(argc, argv, [] {
        benchmarks::readAsOnAGreyPanel();
        QLoggingCategory::setFilterRules(u"qt.gui.imageio=false"_s); // what is refused
    });
}
