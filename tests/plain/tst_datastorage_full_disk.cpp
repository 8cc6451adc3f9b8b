#include <datastorage.h>
#include <slateview_testing.h>
#include <stderr_capture.h>
#include <stored_database.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QtTest>

#include <cerrno>
#include <cstring>
#include <memory>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString logSource = u"picture_stand/src/datastorage"_s;
const QString fillerPath = stored_database::folder + u"/filler"_s;
constexpr qint64 page = 4096; // what the file system hands out at a time

QByteArray missing; ///< why there is no small file system; empty: there is one

void write(const char *path, const QByteArray &text)
{
    QFile file(QString::fromLatin1(path));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(text) != text.size())
        missing = QByteArray(path) + ": " + std::strerror(errno);
}

void mountMemory(const QString &folder, const char *options)
{
    QDir().mkpath(folder);
    if (::mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, options) != 0)
        missing = QFile::encodeName(folder) + ": " + std::strerror(errno);
}

/// Puts a small file system in the database's folder, for this process alone. Who may not mount gets the
/// right in a user namespace of their own, which only a process of one thread can enter.
void mountSmallFileSystem()
{
    const QByteArray user = QByteArray::number(::getuid());
    const QByteArray group = QByteArray::number(::getgid());
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            missing = std::strerror(errno);
            return;
        }
        write("/proc/self/setgroups", "deny");
        write("/proc/self/uid_map", user + ' ' + user + " 1");
        write("/proc/self/gid_map", group + ' ' + group + " 1");
    }
    ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
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
    void start();
    void stop();

    std::unique_ptr<lindenreed::device::DeviceForTest> m_device;
    std::unique_ptr<StderrCapture> m_output;
    std::unique_ptr<DataStorage> m_store;
};

void tst_DataStorageFullDisk::initTestCase()
{
    if (!missing.isEmpty())
        QSKIP(("no small file system here: " + missing).constData());
}

void tst_DataStorageFullDisk::init()
{
    stored_database::remove();
    m_device = std::make_unique<lindenreed::device::DeviceForTest>();
    m_output = std::make_unique<StderrCapture>();
}

void tst_DataStorageFullDisk::cleanup()
{
    stop();
    m_output.reset();
    m_device.reset();
    QFile::remove(fillerPath);
}

void tst_DataStorageFullDisk::start()
{
    stop();
    m_store = std::make_unique<DataStorage>(nullptr);
}

void tst_DataStorageFullDisk::stop()
{
    m_store.reset();
    stored_database::forgetDefaultConnection();
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
    start();
    const QString table
        = u"2 void DataStorage::createScheme(): Error creating tables [database or disk is full]"_s;
    const QString count = u"2 void DataStorage::createScheme(): Error performing select settings request. "
                          "[database or disk is full]"_s;
    QCOMPARE(m_output->logLines(logSource), QStringList({table, table, table, count}));
    QVERIFY(m_store->getPlaylists().empty());
    QCOMPARE(m_store->getSetting(u"change_picture_time"_s, -1), QString());
    QCOMPARE(m_store->addPlaylist(u"Lake"_s), -1LL);

    // With room again the next start makes everything.
    QVERIFY(QFile::remove(fillerPath));
    m_output->forget();
    start();
    QCOMPARE(m_output->logLines(logSource), QStringList());
    QCOMPARE(m_store->getPlaylists().size(), 1U);
    QCOMPARE(m_store->getSetting(u"change_picture_time"_s, -1), u"30"_s);
}

void tst_DataStorageFullDisk::later()
{
    start();
    fill(0);
    m_output->forget();
    QSignalSpy changed(m_store.get(), &DataStorage::changed);

    QCOMPARE(m_store->addPlaylist(u"Lake"_s), -1LL);
    QCOMPARE(changed.count(), 0);
    QVERIFY(m_store->addImageToPlayList(1, u"/a.jpg"_s));
    QCOMPARE(changed.count(), 0);
    m_store->setSetting(u"shuffle"_s, u"1"_s, -1);
    QCOMPARE(changed.count(), 0);
    m_store->updatePlaylist(1, u"Wood"_s);
    QCOMPARE(changed.count(), 1);
    m_store->deletePlaylist(1);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(m_output->logLines(logSource).size(), 6); // deleting says two

    // Nothing that was stored is lost, reading goes on, and so does writing when there is room.
    QCOMPARE(m_store->getSetting(u"shuffle"_s, -1), u"0"_s);
    QCOMPARE(m_store->getPlaylists().size(), 1U);
    QCOMPARE(m_store->getPlaylists().front().title, u"@DefaultPlaylist"_s);
    QCOMPARE(m_store->getPlaylists().front().images.size(), 10);
    QVERIFY(QFile::remove(fillerPath));
    QCOMPARE(m_store->addPlaylist(u"Lake"_s), 2LL);
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
