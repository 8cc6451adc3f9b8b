#include "own_mounts.h"
#include "storage_fixture.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include <cerrno>
#include <cstring>
#include <memory>

#include <sys/mount.h>

using namespace Qt::StringLiterals;

namespace {

const QString fillerPath = stored_database::folder + u"/filler"_s;
constexpr qint64 page = 4096; // what the file system hands out at a time

QByteArray missing; ///< why there is no small file system; empty: there is one

void mountMemory(const QString &folder, const char *options)
{
    QDir().mkpath(folder);
    if (::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, options) != 0)
        missing = QFile::encodeName(folder) + ": " + std::strerror(errno);
}

/// Puts a small file system in the database's folder, for this process alone.
void mountSmallFileSystem()
{
    missing = enterOwnMounts();
    if (!missing.isEmpty())
        return;
    mountMemory(u"/mnt"_s, "size=1m");
    mountMemory(stored_database::folder, "size=128k");
}

/// Leaves `room` bytes of the small file system free.
void fill(qint64 room)
{
    QFile filler(fillerPath);
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    const QByteArray bytes(page, 'x');
    while (filler.write(bytes) == page) { }
    QVERIFY(filler.resize(filler.size() - room));
}

} // namespace

/// The database on a file system without room, which is also how a full device looks to it.
class tst_DataStorageFullDisk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void atTheFirstStart_data();
    void atTheFirstStart();
    void later();

private:
    std::unique_ptr<StorageFixture> m_storage;
};

void tst_DataStorageFullDisk::initTestCase()
{
    if (!missing.isEmpty())
        QSKIP(("no small file system here: " + missing).constData());
}

void tst_DataStorageFullDisk::init()
{
    m_storage = std::make_unique<StorageFixture>();
}

void tst_DataStorageFullDisk::cleanup()
{
    m_storage.reset();
    QFile::remove(fillerPath);
}

void tst_DataStorageFullDisk::atTheFirstStart_data()
{
    QTest::addColumn<qint64>("room");

    QTest::newRow("no room at all") << qint64(0);
    QTest::newRow("room for a journal") << page;
    QTest::newRow("room for a journal and half a table") << 2 * page;
}

void tst_DataStorageFullDisk::atTheFirstStart()
{
    QFETCH(qint64, room);

    fill(room);
    m_storage->start();
    QCOMPARE(m_storage->output.logLines(logSource), failedScheme(u"database or disk is full"_s));
    QVERIFY(m_storage->store->getPlaylists().empty());
    QCOMPARE(m_storage->store->getSetting(u"change_picture_time"_s, -1), QString());
    QCOMPARE(m_storage->store->addPlaylist(u"Lake"_s), -1LL);

    // With room again the next start makes everything.
    QVERIFY(QFile::remove(fillerPath));
    m_storage->output.forget();
    m_storage->start();
    QCOMPARE(m_storage->output.logLines(logSource), QStringList());
    QCOMPARE(m_storage->store->getPlaylists().size(), 1U);
    QCOMPARE(m_storage->store->getSetting(u"change_picture_time"_s, -1), u"30"_s);
}

void tst_DataStorageFullDisk::later()
{
    m_storage->start();
    fill(0);
    m_storage->output.forget();
    QSignalSpy changed(m_storage->store.get(), &DataStorage::changed);

    QCOMPARE(m_storage->store->addPlaylist(u"Lake"_s), -1LL);
    QCOMPARE(changed.count(), 0);
    QVERIFY(m_storage->store->addImageToPlayList(1, u"/a.jpg"_s));
    QCOMPARE(changed.count(), 0);
    m_storage->store->setSetting(u"shuffle"_s, u"1"_s, -1);
    QCOMPARE(changed.count(), 0);
    m_storage->store->updatePlaylist(1, u"Wood"_s);
    QCOMPARE(changed.count(), 1);
    m_storage->store->deletePlaylist(1);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(m_storage->output.logLines(logSource).size(), 6); // deleting says two

    // Nothing that was stored is lost, reading goes on, and so does writing when there is room.
    QCOMPARE(m_storage->store->getSetting(u"shuffle"_s, -1), u"0"_s);
    QCOMPARE(m_storage->store->getPlaylists().size(), 1U);
    QCOMPARE(m_storage->store->getPlaylists().front().title, u"@DefaultPlaylist"_s);
    QCOMPARE(m_storage->store->getPlaylists().front().images.size(), 10);
    QVERIFY(QFile::remove(fillerPath));
    QCOMPARE(m_storage->store->addPlaylist(u"Lake"_s), 2LL);
    QCOMPARE(stored_database::rows(u"PRAGMA integrity_check"_s), QStringList(u"ok"_s));
}

int main(int argc, char **argv)
{
    mountSmallFileSystem();
    QCoreApplication application(argc, argv);
    tst_DataStorageFullDisk test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_datastorage_full_disk.moc"
