// Changes of the picture in a show: from the timer running out to the panel's refresh being complete. Upright
// pictures from a camera, of 3 to 4 (12 megapixels) and 2 to 3 (24), in the cache of the file system. Warm:
// prefetched; cold: decoded on the spot. "cpu ms" and the stages are the main thread's own time in ms, which
// a busy machine leaves alone; "wait" is time by the clock: the 5 ms that Qt leaves before a frame, in which
// all that changes together is gathered, so that the panel flashes once. Date, decode, scale, tone and dither
// are measured with the same pictures outside the change: a warm one decodes nothing, and the date is read
// while something shows it.
//
// Where a warm change's time goes: first to Qt's 5 ms. Dithering is the one stage in which each pixel hangs
// on its neighbours. "scale" is a copy where the picture already has the screen's size, into memory that
// comes fresh from the system. "scene" is the whole frame; on a grey panel the picture is a copy of rows in
// it, since the image item's picture and the window's store have one format. "panel" looks the levels up, on
// a grey panel many at once. "rest" is "cpu ms" without the stages of the change, which for a cold one has
// decoding among them: bindings, overlays, events. As a difference of stages that are measured apart it may
// be below 0.

#include "device_run.h"
#include "exif_builder.h"
#include "photographs.h"
#include "program.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <map>
#include <string>

using namespace Qt::StringLiterals;
using namespace lindenreed;

namespace {

constexpr int changes = 12; ///< in each run

QByteArray cameraFile(const QSize &size)
{
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    benchmarks::photograph(size).save(&buffer, "JPG", benchmarks::photographQuality);
    const std::string date
        = app1(ExifBuilder(ByteOrder::Little)
                   .text(ExifBuilder::First, 0x010F, std::string("Camera\0", 7))
                   .text(ExifBuilder::Exif, 0x9003, std::string("2019:08:17 14:30:05\0", 20))
                   .segment());
    return jpeg.insert(2, QByteArray::fromStdString(date)); // behind the mark of the start
}

/// A folder of pictures of so many megapixels, one file under many names, made once.
QString album(int megapixels)
{
    static QTemporaryDir folder;
    static std::map<int, QString> made;
    QString &path = made[megapixels];
    if (path.isEmpty()) {
        path = folder.filePath(QString::number(megapixels));
        QDir().mkpath(path);
        QFile file(folder.filePath(u"%1.jpg"_s.arg(megapixels)));
        if (file.open(QIODevice::WriteOnly))
            file.write(cameraFile(megapixels == 12 ? QSize(3000, 4000) : QSize(4000, 6000)));
        for (int i = 0; i <= changes; ++i)
            QFile::link(file.fileName(), path + u"/%1.jpg"_s.arg(i, 2, 10, QLatin1Char('0')));
    }
    return path;
}

void change(benchmark::State &state, const QString &profile, int megapixels, const QString &cache)
{
    for ([[maybe_unused]] auto iteration : state)
        benchmarks::runInDevice(state, profile, u"benchmark_show_in_device"_s, {album(megapixels), cache});
}

void registerRows()
{
    for (const QString &profile : {u"grey-8"_s, u"colour-6"_s}) {
        for (const int megapixels : {12, 24}) {
            for (const QString &cache : {u"warm"_s, u"cold"_s}) {
                const QString name = u"change/%1/megapixels:%2/%3"_s.arg(profile).arg(megapixels).arg(cache);
                benchmark::RegisterBenchmark(
                    name.toUtf8().constData(),
                    [=](benchmark::State &state) { change(state, profile, megapixels, cache); })
                    ->UseManualTime()
                    ->Iterations(1)
                    ->Unit(benchmark::kMillisecond);
            }
        }
    }
}

} // namespace

int main(int argc, char *argv[])
{
    return benchmarks::run<QCoreApplication>(argc, argv, registerRows);
}
