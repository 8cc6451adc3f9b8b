#include "svg_reader.h"

#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QImageReader>
#include <QProcess>
#include <QThread>

#include <cstring>
#include <mutex>

namespace lindenreed::picture_stand {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostText = 32 * 1024 * 1024; ///< a picture within it takes the process six times as much
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

QImage readSvg(QFile &file, SvgFit fit, QSize box)
{
    if (file.size() > mostText)
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
                  {QString::number(text.size()), fit == SvgFit::Cover ? u"cover"_s : u"within"_s,
                   QString::number(box.width()), QString::number(box.height()),
                   QGuiApplication::font().family()});
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
