// A picture's way through the application: the load stage from a camera's JPEG file, the request stage from
// the cache. The references decode the whole file and scale then, and scale without tone and dither.

#include "device_reader.h"
#include "photographs.h"
#include "program.h"
#include "rates.h"

#include <facts.h>
#include <picture_reader.h>
#include <resource_image_provider.h>

#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>

#include <map>

using namespace Qt::StringLiterals;
using namespace lindenreed;

namespace {

/// A JPEG file of so many megapixels, made once.
QString photographFile(int megapixels)
{
    static QTemporaryDir folder;
    static std::map<int, QString> made;
    QString &path = made[megapixels];
    if (path.isEmpty()) {
        path = folder.filePath(u"%1.jpg"_s.arg(megapixels));
        benchmarks::photograph(megapixels == 12 ? QSize(4000, 3000) : QSize(6000, 4000))
            .save(path, "JPG", benchmarks::photographQuality);
    }
    return path;
}

QSize useScreenOf(const benchmark::State &state)
{
    const QSize screen(int(state.range(1)), int(state.range(2)));
    device::facts().width = screen.width();
    device::facts().height = screen.height();
    return screen;
}

void loadStage(benchmark::State &state)
{
    useScreenOf(state);
    const QString path = photographFile(int(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        const QImage picture = *picture_stand::readImage(path);
        if (picture.isNull())
            state.SkipWithError("no picture");
    }
}

void loadReference(benchmark::State &state)
{
    const QSize screen = useScreenOf(state);
    const QString path = photographFile(int(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        QImage picture(path);
        picture = picture.scaled(screen, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                      .convertToFormat(QImage::Format_Grayscale8);
        benchmark::DoNotOptimize(picture.constBits());
    }
}

void requestStageWarm(benchmark::State &state)
{
    const QSize screen = useScreenOf(state);
    const QString path = photographFile(int(state.range(0)));
    picture_stand::ResourceImageProvider provider;
    QSize size;
    provider.requestImage(path, &size, screen); // into the cache
    for ([[maybe_unused]] auto iteration : state) {
        const QImage picture = provider.requestImage(path, &size, screen);
        benchmark::DoNotOptimize(picture.constBits());
    }
    benchmarks::countPixels(state, std::size_t(size.width()) * std::size_t(size.height()));
}

void requestReference(benchmark::State &state)
{
    const QSize screen = useScreenOf(state);
    const QImage kept = *picture_stand::readImage(photographFile(int(state.range(0))));
    QSize size;
    for ([[maybe_unused]] auto iteration : state) {
        QImage picture = kept.scaled(screen, Qt::KeepAspectRatio, Qt::FastTransformation);
        picture.detach();
        size = picture.size();
        benchmark::DoNotOptimize(picture.constBits());
    }
    benchmarks::countPixels(state, std::size_t(size.width()) * std::size_t(size.height()));
}

void cameraFiles(benchmark::internal::Benchmark *measured)
{
    measured->ArgNames({"megapixels", "width", "height"})->Unit(benchmark::kMillisecond);
    for (const int megapixels : {12, 24}) {
        measured->Args({megapixels, 758, 1024});
        measured->Args({megapixels, 1404, 1872});
    }
}

void oneFile(benchmark::internal::Benchmark *measured)
{
    measured->ArgNames({"megapixels", "width", "height"})->Unit(benchmark::kMillisecond);
    measured->Args({12, 758, 1024})->Args({12, 1404, 1872});
}

BENCHMARK(loadStage)->Apply(cameraFiles);
BENCHMARK(loadReference)->Apply(cameraFiles);
BENCHMARK(requestStageWarm)->Apply(oneFile);
BENCHMARK(requestReference)->Apply(oneFile);

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "minimal");
    return benchmarks::run<QGuiApplication>(argc, argv, &benchmarks::readAsOnAGreyPanel);
}
