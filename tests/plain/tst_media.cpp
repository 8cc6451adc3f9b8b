// Which storages are in.

#include <facts.h>
#include <media.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

class tst_Media : public QObject
{
    Q_OBJECT

private slots:
    void simulated_data();
    void simulated();
    void realOne();
    void fileIsNoMedium();
    void tellsWhatChanged();
};

void tst_Media::simulated_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<bool>("card");
    QTest::addColumn<bool>("usb");

    QTest::newRow("nothing") << QStringList() << false << false;
    QTest::newRow("both out") << QStringList{u".unplugged/sd"_s, u".unplugged/usb"_s} << false << false;
    QTest::newRow("card in") << QStringList{u"ext2"_s, u".unplugged/usb"_s} << true << false;
    QTest::newRow("USB in") << QStringList{u".unplugged/sd"_s, u"ext3"_s} << false << true;
    QTest::newRow("both in") << QStringList{u"ext2"_s, u"ext3"_s, u".unplugged"_s} << true << true;
    QTest::newRow("folder of a card that is out")
        << QStringList{u"ext2"_s, u".unplugged/sd"_s} << false << false;
}

void tst_Media::simulated()
{
    QFETCH(QStringList, folders);
    QFETCH(bool, card);
    QFETCH(bool, usb);

    QTemporaryDir mounts;
    for (const QString &folder : folders)
        QVERIFY(QDir(mounts.path()).mkpath(folder));
    const Media media(mounts.path());
    QCOMPARE(media.present(Medium::Card), card);
    QCOMPARE(media.present(Medium::Usb), usb);
    QCOMPARE(facts().cardPresent.load(), card);
    QCOMPARE(facts().usbPresent.load(), usb);
}

void tst_Media::realOne()
{
    QTemporaryDir mounts;
    QVERIFY(QDir(mounts.path()).mkpath(u"ext2"_s));
    QVERIFY(QDir(mounts.path()).mkpath(u"ext3"_s));
    QVERIFY(QDir(mounts.path()).mkpath(u".unplugged/sd"_s));
    QVERIFY(QDir(mounts.path()).mkpath(u".unplugged/usb"_s));
    QFile table(mounts.filePath(u"mountinfo"_s));
    QVERIFY(table.open(QIODevice::WriteOnly));
    // The path as source or as part of another path does not count.
    table.write("36 35 98:0 /a " + mounts.path().toUtf8()
                + "/ext2 rw - ext4 /dev/sda rw\n"
                  "37 35 98:0 "
                + mounts.path().toUtf8()
                + "/ext3 /elsewhere rw - ext4 /dev/sdb rw\n"
                  "38 35 98:0 /a "
                + mounts.path().toUtf8()
                + "/ext3/inside rw - ext4 /dev/sdb rw\n"
                  "short line\n");
    table.close();
    const Media media(mounts.path(), table.fileName());
    QVERIFY(media.present(Medium::Card));
    QVERIFY(!media.present(Medium::Usb));
    const Media without(mounts.path(), u"/nowhere/mountinfo"_s);
    QVERIFY(!without.present(Medium::Card));
}

void tst_Media::fileIsNoMedium()
{
    QTemporaryDir mounts;
    QFile file(mounts.filePath(u"ext2"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const Media media(mounts.path());
    QVERIFY(!media.present(Medium::Card));
}

void tst_Media::tellsWhatChanged()
{
    QTemporaryDir mounts;
    QDir folder(mounts.path());
    QVERIFY(folder.mkpath(u".unplugged/sd"_s));
    Media media(mounts.path());
    QList<std::pair<Medium, bool>> seen;
    connect(&media, &Media::changed, this, [&seen, &media](Medium medium) {
        seen.append({medium, media.present(medium)});
    });
    media.look();
    QVERIFY(seen.isEmpty());
    QVERIFY(folder.rename(u".unplugged/sd"_s, u"ext2"_s));
    media.look();
    media.look();
    QCOMPARE(seen.size(), 1);
    QVERIFY(seen.constLast() == std::pair(Medium::Card, true));
    QVERIFY(folder.rename(u"ext2"_s, u".unplugged/sd"_s));
    QVERIFY(folder.mkpath(u"ext3"_s));
    media.look();
    QCOMPARE(seen.size(), 3);
    QVERIFY(seen.at(1) == std::pair(Medium::Card, false));
    QVERIFY(seen.at(2) == std::pair(Medium::Usb, true));
}

QTEST_GUILESS_MAIN(tst_Media)
#include "tst_media.moc"
