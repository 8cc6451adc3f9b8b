// What a test of the running application has afresh: a device, a configuration, four pictures.

#pragma once

#include "call_lines.h"
#include "stored_database.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

class AppFixture
{
public:
    AppFixture()
    {
        // A show that was given no pictures has an empty id: no other warning is expected.
        QTest::failOnWarning(QRegularExpression(
            QStringLiteral("^(?!.*Failed to get image from provider: image://image_provider/$)")));
        configure({});
        for (int i = 0; i < 4; ++i) {
            QImage picture(60 + i, 40, QImage::Format_Grayscale8);
            picture.fill(i * 60);
            paths.append(folder.filePath(QStringLiteral("%1.png").arg(i)));
            if (!picture.save(paths.last()))
                qFatal("%s cannot be written", qPrintable(paths.last()));
        }
    }
    ~AppFixture() { QThreadPool::globalInstance()->waitForDone(); }

    /// Writes the device's configuration; "missing" removes it.
    void configure(const QByteArray &contents) const
    {
        const QString path = QStringLiteral("/mnt/ext1/system/config/global.cfg");
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (contents == "missing") {
            QVERIFY(!file.exists() || file.remove());
            return;
        }
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(contents);
    }

    /// The calls that change something, and those that read the orientation or the light.
    QByteArray calls() const { return changingCalls(device); }

    lindenreed::device::DeviceForTest device;
    QTemporaryDir folder;
    QStringList paths;
};
