// Storages of the device that go in and out, and how the application finds them. Needs slate_core.

#pragma once

#include "call_lines.h"
#include "storage.h"

#include <device.h>

#include <QSignalSpy>
#include <QTest>

/// A device whose simulated media are out at the beginning and at the end.
class MediaFixture
{
public:
    explicit MediaFixture(const QString &profile = QStringLiteral("grey-6"))
        : device(profile)
    {
        plug(false, false);
    }
    ~MediaFixture() { plug(false, false); }

    static void plug(bool card, bool usb)
    {
        using namespace lindenreed::device;
        Media &media = Device::instance()->media;
        media.plug(Medium::Card, card);
        media.plug(Medium::Usb, usb);
        if (media.present(Medium::Card) != card || media.present(Medium::Usb) != usb)
            qFatal("the simulated media cannot be moved");
    }

    /// The storages as they are listed now.
    static QList<lindenreed::picture_stand::StorageItem> roots()
    {
        return lindenreed::picture_stand::Storage::instance().listFiles({}, {}, 3);
    }

    /// Waits for the look that the first use of the storages begins.
    static bool settled()
    {
        lindenreed::picture_stand::Storage::instance();
        return QTest::qWaitFor([] { return !roots().isEmpty(); }, 30'000);
    }

    /// Waits until so many looks have been reported since `changed` was made.
    static bool reported(const QSignalSpy &changed, int times)
    {
        return QTest::qWaitFor([&] { return changed.count() >= times; }, 30'000) && changed.count() == times;
    }

    /// Lets the application look, and waits for its report.
    static bool look()
    {
        using lindenreed::picture_stand::Storage;
        Storage &storage = Storage::instance();
        const QSignalSpy changed(&storage, &Storage::storageChanged);
        storage.update();
        return reported(changed, 1);
    }

    /// "name path type" of each.
    static QStringList lines(const QList<lindenreed::picture_stand::StorageItem> &items)
    {
        QStringList found;
        for (const lindenreed::picture_stand::StorageItem &item : items)
            found.append(QStringLiteral("%1 %2 %3").arg(item.name, item.path).arg(item.type));
        return found;
    }

    /// Rows for what is in, with what lines() then has: "card", "usb" and "expected".
    static void addStorages()
    {
        QTest::addColumn<bool>("card");
        QTest::addColumn<bool>("usb");
        QTest::addColumn<QStringList>("expected");

        const QString internal = QStringLiteral("This device /mnt/ext1 1");
        const QString card = QStringLiteral("SD card /mnt/ext2 2");
        const QString usb = QStringLiteral("USB drive /mnt/ext3 3");
        QTest::newRow("neither") << false << false << QStringList{internal};
        QTest::newRow("card") << true << false << QStringList{internal, card};
        QTest::newRow("USB") << false << true << QStringList{internal, usb};
        QTest::newRow("both") << true << true << QStringList{internal, card, usb};
    }

    /// The calls of other threads than the main one, as "Name argument argument".
    static QByteArrayList workerCalls()
    {
        QList<lindenreed::device::SdkCall> calls = lindenreed::device::journal::entries();
        calls.removeIf([](const lindenreed::device::SdkCall &call) { return call.onMainThread; });
        return callLines(calls);
    }

    lindenreed::device::DeviceForTest device;
};
