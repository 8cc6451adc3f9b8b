// Which storages are in.

#include "own_mounts.h"

#include <device.h>
#include <facts.h>
#include <media.h>
#include <slateview_testing.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include <sys/mount.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

constexpr char mountsArgument[] = "--play-with-mounts";

} // namespace

class tst_Media : public QObject
{
    Q_OBJECT

private slots:
    void simulated_data();
    void simulated();
    void realOne();
    void fileIsNoMedium();
    void tellsWhatChanged();
    void plugs_data();
    void plugs();
    void doesNotPlug_data();
    void doesNotPlug();
    void seesFoldersMove();
    void seesAFolderVanish();
    void seesUnpluggedMadeAnew();
    void seesMounts();
    void mountedOneIsNotTouched();
    void eventsOfTheDevice();
    void twoHundredTimes();
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

void tst_Media::mountedOneIsNotTouched()
{
    // Nothing is asked of a mounted file system, which might hang: here it is not even a folder.
    QTemporaryDir mounts;
    QFile table(mounts.filePath(u"mountinfo"_s));
    QVERIFY(table.open(QIODevice::WriteOnly));
    table.write("36 35 98:0 / " + mounts.path().toUtf8() + "/ext2 rw - nfs host:/share rw\n");
    table.close();
    const Media media(mounts.path(), table.fileName());
    QVERIFY(media.present(Medium::Card));
    QVERIFY(!media.present(Medium::Usb));
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

void tst_Media::plugs_data()
{
    QTest::addColumn<Medium>("medium");
    QTest::addColumn<QString>("unplugged");
    QTest::addColumn<QString>("folder");

    QTest::newRow("card") << Medium::Card << u".unplugged/sd"_s << u"ext2"_s;
    QTest::newRow("USB") << Medium::Usb << u".unplugged/usb"_s << u"ext3"_s;
}

void tst_Media::plugs()
{
    QFETCH(Medium, medium);
    QFETCH(QString, unplugged);
    QFETCH(QString, folder);

    const QTemporaryDir mounts;
    const QDir place(mounts.path());
    QVERIFY(place.mkpath(unplugged + u"/pictures"_s));
    Media media(mounts.path());
    QList<std::pair<Medium, bool>> seen;
    connect(&media, &Media::changed, this, [&](Medium which) { seen.append({which, media.present(which)}); });

    QCOMPARE(media.plug(medium, true), PlugResult::Done);
    QVERIFY(place.exists(folder + u"/pictures"_s) && !place.exists(unplugged));
    QVERIFY(media.present(medium));
    QCOMPARE(seen.size(), 1); // told when it returns
    QVERIFY(seen.constLast() == std::pair(medium, true));
    QCOMPARE(media.plug(medium, true), PlugResult::AlreadySo);

    QVERIFY(
        QDir(place.filePath(u".unplugged"_s)).removeRecursively()); // it is made again where it is missing
    QCOMPARE(media.plug(medium, false), PlugResult::Done);
    QVERIFY(!place.exists(folder) && place.exists(unplugged + u"/pictures"_s));
    QCOMPARE(media.plug(medium, false), PlugResult::AlreadySo);
    QCOMPARE(seen.size(), 2);
    QVERIFY(seen.constLast() == std::pair(medium, false));
}

void tst_Media::doesNotPlug_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<bool>("isMountPoint");
    QTest::addColumn<bool>("in");
    QTest::addColumn<PlugResult>("expected");

    QTest::newRow("no simulated medium") << QStringList() << false << true << PlugResult::NoMedium;
    QTest::newRow("real medium out") << QStringList{u"ext2"_s, u".unplugged/sd"_s} << true << false
                                     << PlugResult::RealMedium;
    QTest::newRow("real medium out without a simulated one")
        << QStringList{u"ext2"_s} << true << false << PlugResult::RealMedium;
    QTest::newRow("real medium in") << QStringList{u"ext2"_s, u".unplugged/sd"_s} << true << true
                                    << PlugResult::AlreadySo;
    QTest::newRow("other things in the way")
        << QStringList{u"ext2/other"_s, u".unplugged/sd"_s} << false << true << PlugResult::Failed;
}

void tst_Media::doesNotPlug()
{
    QFETCH(QStringList, folders);
    QFETCH(bool, isMountPoint);
    QFETCH(bool, in);
    QFETCH(PlugResult, expected);

    const QTemporaryDir mounts;
    for (const QString &folder : folders)
        QVERIFY(QDir(mounts.path()).mkpath(folder));
    QFile table(mounts.filePath(u"mountinfo"_s));
    QVERIFY(table.open(QIODevice::WriteOnly));
    if (isMountPoint)
        table.write("36 35 98:0 / " + mounts.path().toUtf8() + "/ext2 rw - ext4 /dev/sda rw\n");
    table.close();
    Media media(mounts.path(), table.fileName());
    QString error;
    QCOMPARE(media.plug(Medium::Card, in, &error), expected);
    QCOMPARE(!error.isEmpty(), expected == PlugResult::Failed);
    for (const QString &folder : folders)
        QVERIFY(QDir(mounts.path()).exists(folder)); // nothing was moved
}

void tst_Media::seesFoldersMove()
{
    const QTemporaryDir mounts;
    QDir folder(mounts.path());
    QVERIFY(folder.mkpath(u".unplugged/sd"_s) && folder.mkpath(u".unplugged/usb"_s));
    const Media media(mounts.path());
    QSignalSpy changed(&media, &Media::changed);
    for (int round = 1; round <= 3; ++round) {
        QVERIFY(folder.rename(u".unplugged/usb"_s, u"ext3"_s));
        QTRY_VERIFY(media.present(Medium::Usb));
        QVERIFY(folder.rename(u"ext3"_s, u".unplugged/usb"_s));
        QTRY_VERIFY(!media.present(Medium::Usb));
        QCOMPARE(changed.size(), 2 * round);
    }
    QVERIFY(!media.present(Medium::Card));
}

void tst_Media::seesAFolderVanish()
{
    const QTemporaryDir mounts;
    QVERIFY(QDir(mounts.path()).mkpath(u"ext2/pictures"_s));
    const Media media(mounts.path());
    QVERIFY(media.present(Medium::Card));
    QSignalSpy changed(&media, &Media::changed);
    QVERIFY(QDir(mounts.filePath(u"ext2"_s)).removeRecursively());
    QTRY_VERIFY(!media.present(Medium::Card));
    QVERIFY(QDir(mounts.path()).mkpath(u"ext2"_s));
    QTRY_VERIFY(media.present(Medium::Card));
    QCOMPARE(changed.size(), 2);
}

void tst_Media::seesUnpluggedMadeAnew()
{
    const QTemporaryDir mounts;
    QDir folder(mounts.path());
    QVERIFY(folder.mkpath(u".unplugged"_s) && folder.mkpath(u"ext2"_s));
    const Media media(mounts.path());
    QVERIFY(folder.rmdir(u".unplugged"_s));
    QVERIFY(folder.mkpath(u".unplugged"_s));
    QVERIFY(folder.mkpath(u"ext3"_s));
    QTRY_VERIFY(media.present(Medium::Usb)); // and what came before has been seen
    // Nothing in the folder of all storages changes from here on: only a new watcher sees it.
    QVERIFY(folder.mkpath(u".unplugged/sd"_s));
    QTRY_VERIFY(!media.present(Medium::Card));
}

// In a process with mounts of its own, which needs no rights.
void tst_Media::seesMounts()
{
    const QTemporaryDir mounts;
    QVERIFY(QDir(mounts.path()).mkpath(u"ext2"_s));
    QVERIFY(QDir(mounts.path()).mkpath(u".unplugged/sd"_s));
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {QString::fromLatin1(mountsArgument), mounts.path()});
    QVERIFY2(child.waitForFinished(), qPrintable(child.errorString()));
    QCOMPARE(child.readAllStandardError(), QByteArray());
    QCOMPARE(child.readAllStandardOutput(), QByteArray("in\nout\nin\nout\n"));
    QCOMPARE(child.exitCode(), 0);
}

void tst_Media::eventsOfTheDevice()
{
    DeviceForTest fresh;
    Device &device = *Device::instance();
    QList<int> types;
    device.events.setHandler([&types](int type, int, int) {
        types.append(type);
        return 0;
    });
    emit device.media.changed(Medium::Card);
    emit device.media.changed(Medium::Usb);
    QVERIFY(types.isEmpty()); // through the event loop
    facts().cardPresent = true;
    facts().usbPresent = true;
    QTRY_COMPARE(types, QList<int>({162, 164}));
    emit device.media.changed(Medium::Card);
    emit device.media.changed(Medium::Usb);
    QTRY_COMPARE(types, QList<int>({162, 164, 161, 163}));
    facts().cardPresent = false;
    facts().usbPresent = false;
}

void tst_Media::twoHundredTimes()
{
    const auto descriptors
        = [] { return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size(); };
    const QTemporaryDir mounts;
    QVERIFY(QDir(mounts.path()).mkpath(u".unplugged/sd"_s));
    QVERIFY(QDir(mounts.path()).mkpath(u".unplugged/usb"_s));
    qsizetype before = 0;
    for (int round = 0; round < 201; ++round) {
        {
            Media media(mounts.path());
            for (const bool in : {true, false}) {
                QCOMPARE(media.plug(Medium::Card, in), PlugResult::Done);
                QCOMPARE(media.plug(Medium::Usb, in), PlugResult::Done);
                QCoreApplication::processEvents();
            }
        }
        if (round == 0)
            before = descriptors();
    }
    QCOMPARE(descriptors(), before);
}

/// Mounts and unmounts, and says what is seen of it.
static int playWithMounts(const QString &mounts)
{
    const Media media(mounts);
    const QByteArray path = QFile::encodeName(mounts + u"/ext2"_s);
    QObject::connect(&media, &Media::changed, &media,
                     [&media] { std::puts(media.present(Medium::Card) ? "in" : "out"); });
    for (int round = 0; round < 2; ++round) {
        if (::mount("card", path.constData(), "tmpfs", 0, "size=64k") != 0
            || !QTest::qWaitFor([&media] { return media.present(Medium::Card); }))
            return 1;
        if (::umount(path.constData()) != 0
            || !QTest::qWaitFor([&media] { return !media.present(Medium::Card); }))
            return 2;
    }
    return 0;
}

int main(int argc, char *argv[])
{
    const bool playing = argc == 3 && qstrcmp(argv[1], mountsArgument) == 0;
    if (playing) {
        if (const QByteArray failure = enterOwnMounts(); !failure.isEmpty()) {
            std::fprintf(stderr, "%s\n", failure.constData());
            return 3;
        }
    }
    const QCoreApplication application(argc, argv);
    if (playing)
        return playWithMounts(QFile::decodeName(argv[2]));
    tst_Media test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_media.moc"
