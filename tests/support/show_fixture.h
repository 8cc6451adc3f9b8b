// A show without a window: a device, a folder of pictures, and the calls that the show makes.

#pragma once

#include "call_lines.h"
#include "slideshow_model.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

inline QByteArray armed(int milliseconds)
{
    return "SetHardTimerEx nextImageEvent callback context " + QByteArray::number(milliseconds);
}

inline const QByteArray cleared = "ClearTimerByName nextImageEvent";

inline bool writeFile(const QString &path, const QByteArray &contents = "x")
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

/// What every test of the show has afresh.
class ShowFixture
{
public:
    ShowFixture() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".?"))); }

    lindenreed::device::DeviceForTest device;
    QTemporaryDir folder;

    QStringList makePictures(int count) const
    {
        QStringList paths;
        for (int i = 0; i < count; ++i) {
            paths.append(folder.filePath(QStringLiteral("%1.jpg").arg(i)));
            writeFile(paths.last());
        }
        return paths;
    }

    /// The calls that change something, as "name argument argument"; queries of the device's kind left out.
    QByteArray calls() const
    {
        QByteArrayList lines = callLines(device.calls());
        lines.removeIf([](const QByteArray &line) {
            return line == "device_display_colormask" || line == "device_display_dpi";
        });
        return lines.join('\n');
    }
};
