// What tests of real files in a running show start from: a folder, a device, and what the show says of its
// picture.

#pragma once

#include "running_app.h"
#include "stderr_capture.h"
#include "stored_database.h"

#include <slateview_testing.h>

#include <QBuffer>
#include <QImage>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThreadPool>

#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::picture_stand::App;

enum ImageStatus { Null, Ready, Loading, Error }; // as QQuickImageBase numbers them

inline QByteArray encoded(const QImage &picture, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, format);
    return bytes;
}

inline bool write(const QByteArray &path, const QByteArray &contents)
{
    std::FILE *handle = std::fopen(path.constData(), "wb"); // names that are no text, too
    if (!handle)
        return false;
    const bool done = std::fwrite(contents.constData(), 1, std::size_t(contents.size()), handle)
        == std::size_t(contents.size());
    return std::fclose(handle) == 0 && done;
}

inline QImage twoGreys()
{
    QImage picture(40, 30, QImage::Format_Grayscale8);
    picture.fill(0x44);
    picture.scanLine(3)[5] = 0xee;
    return picture;
}

inline int status(const RunningApp &running)
{
    QQuickItem *screen = running.itemWith("test_w");
    for (QQuickItem *child : screen->childItems()) {
        if (child->metaObject()->indexOfProperty("fillMode") >= 0)
            return child->property("status").toInt();
    }
    return -1;
}

class PictureShowTest : public QObject
{
protected:
    void begin()
    {
        // What the engine says of a picture that it did not get is expected, and how often it asks is its own
        // affair; no other warning is. Damaged files have warnings of the image plug-ins.
        QTest::failOnWarning(QRegularExpression(u"\\A(?!.*Failed to get image from provider)"_s));
        QLoggingCategory::setFilterRules(u"qt.gui.imageio*=false"_s);
        m_folder = std::make_unique<QTemporaryDir>();
        m_device = std::make_unique<DeviceForTest>();
        m_log = std::make_unique<StderrCapture>();
    }
    void end()
    {
        QThreadPool::globalInstance()->waitForDone();
        m_log.reset();
        m_device.reset();
        m_folder.reset();
    }

    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<StderrCapture> m_log;
};
