// One picture's whole way, from a file to a grey panel's dithered pixels, as a program that other tools can
// be measured beside:
//
//   benchmark_picture_job FILE WIDTH HEIGHT [OUTPUT.pgm]
//   benchmark_picture_job --qt FILE ...     with Qt's own reader of JPEG files
//   benchmark_picture_job                   nothing: what starting takes
//
// Tells on standard output what that took, of the processor and of memory above what the idle program has.

#include "in_device.h"

#include <facts.h>
#include <paths.h>
#include <resource_image_provider.h>

#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QStringList>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace lindenreed;

namespace {

long long memory(const QByteArray &name)
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.simplified().split(' ').at(1).toLongLong();
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = application.arguments().mid(1);
    if (arguments.value(0) == "--qt"_L1)
        arguments.removeFirst();
    else
        QCoreApplication::addLibraryPath(device::pluginFolder());
    device::facts().running = true; // a grey panel
    device::facts().width = arguments.value(1).toInt();
    device::facts().height = arguments.value(2).toInt();
    picture_stand::ResourceImageProvider provider;
    QImageReader::supportedImageFormats(); // the idle program has looked for its readers
    if (arguments.size() < 3)
        return 0;

    const long long before = memory("VmRSS");
    const double begun = benchmarks::cpuTime();
    QSize size;
    const QImage picture
        = provider.requestImage(arguments.at(0), &size, {device::facts().width, device::facts().height});
    const double spent = benchmarks::cpuTime() - begun;
    std::printf("%d x %d, %.1f ms, %.1f MiB\n", size.width(), size.height(), spent,
                double(memory("VmHWM") - before) / 1024);
    return picture.isNull() || (arguments.size() > 3 && !picture.save(arguments.at(3), "PGM")) ? 1 : 0;
}
