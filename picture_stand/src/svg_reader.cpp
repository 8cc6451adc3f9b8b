#include "svg_reader.h"

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

QImage readSvg(const QString &path, SvgFit fit, QSize box)
{
    // The main thread waits for its own picture alone: the show's next step hangs on it.
    static std::mutex oneAtATime;
    std::unique_lock lock(oneAtATime, std::defer_lock);
    if (QThread::currentThread() != QCoreApplication::instance()->thread())
        lock.lock();
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice()); // what is wrong with a picture is not told
    process.start(QCoreApplication::applicationDirPath() + u"/picture_stand_svg"_s,
                  {path, fit == SvgFit::Cover ? u"cover"_s : u"within"_s, QString::number(box.width()),
                   QString::number(box.height()), QGuiApplication::font().family()});
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return process.exitStatus() == QProcess::NormalExit ? received(process.readAllStandardOutput())
                                                        : QImage();
}

} // namespace lindenreed::picture_stand
