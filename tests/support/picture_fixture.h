// Picture files, parameters and a device, for tests of what becomes of a picture.

#pragma once

#include "stderr_capture.h"

#include <facts.h>
#include <paths.h>
#include <slateview_testing.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <memory>

constexpr QSize screen(758, 1024);

/// Every grey next to every other, so that reductions, adjustments and dithering all show.
inline QImage gradient(QSize size)
{
    QImage picture(size, QImage::Format_Grayscale8);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            picture.scanLine(y)[x] = uchar(x * 3 + y * 5);
    }
    return picture;
}

/// What every test of the pictures has afresh: a device with its reader of JPEG files, a folder, a
/// configuration without parameters, the log.
class PictureFixture
{
public:
    PictureFixture()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".?")));
        // Where no panel does it: its reader of JPEG files.
        QCoreApplication::addLibraryPath(lindenreed::device::pluginFolder());
        configure({});
    }
    ~PictureFixture()
    {
        QThreadPool::globalInstance()->waitForDone();
        lindenreed::device::facts().inverted = false;
    }

    QString save(const QImage &picture, const QString &name) const
    {
        const QString path = folder.filePath(name);
        return picture.save(path) ? path : QString();
    }

    static QString configurationPath() { return QStringLiteral("/mnt/ext1/system/config/global.cfg"); }

    /// Writes the device's configuration.
    void configure(const QByteArray &contents) const
    {
        QDir().mkpath(QFileInfo(configurationPath()).path());
        QFile file(configurationPath());
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(contents);
    }

    lindenreed::device::DeviceForTest device;
    QTemporaryDir folder;
    StderrCapture log;
};
