#include "svg_reader.h"

#include "picture_cache.h"

#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QImageReader>
#include <QProcess>
#include <QThread>

#include <algorithm>
#include <cstring>
#include <mutex>

namespace lindenreed::picture_stand {

using namespace Qt::StringLiterals;

namespace {

constexpr int timesText = 6; ///< what a picture within the text takes, from its letters to its pixels
constexpr int patience = 15'000; ///< in ms; the process itself ends after ten seconds

/// As svg_program.cpp writes it; null for anything else.
QImage received(const QByteArray &bytes)
{
    qint32 size[2] = {};
    if (bytes.size() < qsizetype(sizeof size))
        return {};
    std::memcpy(size, bytes.constData(), sizeof size);
    constexpr int most = 100'000;
    if (size[0] < 1 || size[1] < 1 || size[0] > most || size[1] > most
        || qint64(size[0]) * size[1] * 4 != bytes.size() - qint64(sizeof size))
        return {};
    QImage picture(size[0], size[1], QImage::Format_ARGB32_Premultiplied);
    if (!picture.isNull()) // rows of four bytes a pixel have no padding
        std::memcpy(picture.bits(), bytes.constData() + sizeof size, std::size_t(picture.sizeInBytes()));
    return picture;
}

} // namespace

bool isSvg(const QImageReader &reader)
{
    return reader.format().startsWith("svg");
}

qint64 svgMemory(qint64 machine)
{
    constexpr qint64 most = 192 * 1024 * 1024;
    return machine > 0 ? std::min(machine / 3, most) : most;
}

QImage readSvg(QFile &file, SvgFit fit, QSize box)
{
    const qint64 memory = svgMemory(readTotalMemory("/proc/meminfo").value_or(0));
    if (file.size() > memory / timesText)
        return {};
    const QByteArray text = file.read(file.size());

    // The main thread waits for its own picture alone: the show's next step hangs on it.
    static std::mutex oneAtATime;
    std::unique_lock lock(oneAtATime, std::defer_lock);
    if (QThread::currentThread() != QCoreApplication::instance()->thread())
        lock.lock();
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice()); // what is wrong with a picture is not told
    process.start(QCoreApplication::applicationDirPath() + u"/picture_stand_svg"_s,
                  {QString::number(memory), QString::number(text.size()),
                   fit == SvgFit::Cover ? u"cover"_s : u"within"_s, QString::number(box.width()),
                   QString::number(box.height()), QGuiApplication::font().family()});
    if (!process.waitForStarted())
        return {};
    process.write(text);
    process.closeWriteChannel();
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return process.exitStatus() == QProcess::NormalExit ? received(process.readAllStandardOutput())
                                                        : QImage();
}

} // namespace lindenreed::picture_stand
