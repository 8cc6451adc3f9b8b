// What a look at the storages makes of what the device says: texts, measures, order of several looks.

#include "media_fixture.h"

#include <slateview.h>

#include <QFile>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <mutex>
#include <semaphore>
#include <utility>

#include <dlfcn.h>
#include <pthread.h>
#include <sys/statvfs.h>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::Storage;
using lindenreed::picture_stand::StorageItem;

namespace {

/// What the device says, as a test wants it.
struct World
{
    std::mutex mutex;
    QByteArray internalName;
    const char *format = nullptr; ///< of the space
    std::uint64_t freeBlocks = 0;
    bool measurable = true;
    QByteArrayList measured; ///< paths
};

World world;

std::counting_semaphore<> held(0); ///< lets one held worker go on
std::atomic<int> toHold = 0; ///< workers that are to stop at the name of the internal memory
std::atomic<int> holding = 0;
constexpr const char *heldName = "the one that was held";

thread_local int threadsToRefuse = 0; ///< of those that this thread starts

} // namespace

// These three stand before the device's own and the system's.
int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*run)(void *),
                   void *argument) noexcept
{
    if (threadsToRefuse > 0) {
        --threadsToRefuse;
        return EAGAIN;
    }
    static const auto system
        = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return system(thread, attributes, run, argument);
}

const char *GetLangText(const char *key)
{
    if (std::strcmp(key, "@AvailableDiskSpace") == 0)
        return world.format;
    if (std::strcmp(key, "@FlashDir") != 0)
        return nullptr;
    if (toHold.fetch_sub(1) > 0) {
        ++holding;
        held.acquire();
        return heldName;
    }
    const std::lock_guard lock(world.mutex);
    return world.internalName.isNull() ? nullptr : world.internalName.constData();
}

int statvfs64(const char *path, struct statvfs64 *medium) noexcept
{
    const std::lock_guard lock(world.mutex);
    world.measured.append(path);
    if (!world.measurable) {
        errno = EIO;
        return -1;
    }
    *medium = {};
    medium->f_bsize = 65536; // not the unit of the counts
    medium->f_frsize = 4096;
    medium->f_blocks = 25600; // 100 MB
    medium->f_bfree = world.freeBlocks;
    medium->f_bavail = world.freeBlocks / 2; // without what is kept for the superuser
    return 0;
}

class tst_StorageScan : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_media.reset(); }

    void measures();
    void measuresOnlyStorages_data();
    void measuresOnlyStorages();
    void failureLeavesTheTexts();
    void namesWithoutAText();
    void spaceStaysUntilTheNextLook();
    void spaceInASentence_data();
    void spaceInASentence();
    void sentenceIsMadeAtEachRead();
    void lastOneStays();
    void refusedThread();

private:
    std::unique_ptr<MediaFixture> m_media;
};

void tst_StorageScan::initTestCase()
{
    const MediaFixture media;
    QVERIFY(MediaFixture::settled());
}

void tst_StorageScan::init()
{
    m_media = std::make_unique<MediaFixture>();
    const std::lock_guard lock(world.mutex);
    world.internalName = "Memory";
    world.format = "%s of %s";
    world.freeBlocks = 12800;
    world.measurable = true;
    world.measured.clear();
}

void tst_StorageScan::measures()
{
    MediaFixture::plug(true, true);
    QVERIFY(MediaFixture::look());
    QCOMPARE(world.measured, QByteArrayList({"/mnt/ext1", "/mnt/ext2", "/mnt/ext3"}));
    for (const StorageItem &root : MediaFixture::roots()) {
        QCOMPARE(root.totalSpace(), u"100 MB"_s);
        QCOMPARE(root.freeSpace(), u"50.0 MB"_s); // with what is kept for the superuser
        QCOMPARE(root.space, std::pair(std::string("100 MB"), std::string("50.0 MB")));
    }
    const QByteArrayList calls = MediaFixture::workerCalls();
    const qsizetype total = calls.indexOf("HumanSizeWithPrecision 64 25600 4096 0");
    QVERIFY(total >= 0);
    QCOMPARE(calls.value(total + 1), QByteArray("HumanSizeWithPrecision 64 12800 4096 0"));
}

void tst_StorageScan::measuresOnlyStorages_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("measured");

    QTest::newRow("above all storages") << 0 << false;
    QTest::newRow("internal memory") << 1 << true;
    QTest::newRow("card") << 2 << true;
    QTest::newRow("USB") << 3 << true;
    QTest::newRow("folder") << 4 << false;
    QTest::newRow("picture") << 5 << false;
    QTest::newRow("empty cell") << 6 << false;
    QTest::newRow("no kind at all") << -1 << false;
}

void tst_StorageScan::measuresOnlyStorages()
{
    QFETCH(int, type);
    QFETCH(bool, measured);

    const StorageItem item(u"Name"_s, u"/some/päth"_s, type);
    QCOMPARE(item.name, u"Name"_s);
    QCOMPARE(item.path, u"/some/päth"_s);
    QCOMPARE(item.type, type);
    QCOMPARE(world.measured, measured ? QByteArrayList{QFile::encodeName(item.path)} : QByteArrayList());
    QCOMPARE(item.totalSpace(), measured ? u"100 MB"_s : QString());
    QCOMPARE(item.freeSpace(), measured ? u"50.0 MB"_s : QString());
    const StorageItem copy = item; // nothing is measured again
    QCOMPARE(copy.space, item.space);
    QCOMPARE(world.measured.size(), measured ? 1 : 0);
}

void tst_StorageScan::failureLeavesTheTexts()
{
    world.measurable = false;
    std::pair<std::string, std::string> out{"total before", "free before"};
    QVERIFY(!Storage::diskSpace("/somewhere", out));
    QCOMPARE(out, std::pair(std::string("total before"), std::string("free before")));
    QVERIFY(MediaFixture::workerCalls().isEmpty()
            && m_media->device.calls({"HumanSizeWithPrecision"}).isEmpty());
    world.measurable = true;
    QVERIFY(Storage::diskSpace("/somewhere", out));
    QCOMPARE(out, std::pair(std::string("100 MB"), std::string("50.0 MB")));
    QCOMPARE(world.measured, QByteArrayList({"/somewhere", "/somewhere"}));
}

void tst_StorageScan::namesWithoutAText()
{
    MediaFixture::plug(true, false);
    world.internalName = QByteArray();
    QVERIFY(MediaFixture::look());
    QCOMPARE(MediaFixture::lines(MediaFixture::roots()), QStringList({u" /mnt/ext1 1"_s, u" /mnt/ext2 2"_s}));
}

void tst_StorageScan::spaceStaysUntilTheNextLook()
{
    QVERIFY(MediaFixture::look());
    {
        const std::lock_guard lock(world.mutex);
        world.freeBlocks = 256; // somebody writes
    }
    QCOMPARE(MediaFixture::roots().constFirst().freeSpace(), u"50.0 MB"_s);
    QVERIFY(MediaFixture::look());
    QCOMPARE(MediaFixture::roots().constFirst().freeSpace(), u"1.0 MB"_s);
}

void tst_StorageScan::spaceInASentence_data()
{
    QTest::addColumn<QByteArray>("format"); // null for no text
    QTest::addColumn<QString>("sentence");

    const QString english = u"50.0 MB free\nof 100 MB"_s;
    QTest::newRow("free space first") << QByteArray("%s/%s") << u"50.0 MB/100 MB"_s;
    QTest::newRow("in UTF-8") << QByteArray("空き %s / %s") << u"空き 50.0 MB / 100 MB"_s;
    QTest::newRow("a percent sign") << QByteArray("%s of %s, 100 %%") << u"50.0 MB of 100 MB, 100 %"_s;
    QTest::newRow("no text") << QByteArray() << english;
    QTest::newRow("the key") << QByteArray("@AvailableDiskSpace") << english;
    QTest::newRow("empty") << QByteArray("") << english;
    QTest::newRow("one text") << QByteArray("%s free") << english;
    QTest::newRow("three texts") << QByteArray("%s %s %s") << english;
    QTest::newRow("a number") << QByteArray("%d of %s") << english;
    QTest::newRow("one that writes to memory") << QByteArray("%s of %n") << english;
    QTest::newRow("by position") << QByteArray("%2$s of %1$s") << english;
    QTest::newRow("a width from the values") << QByteArray("%*s of %s") << english;
    QTest::newRow("a percent sign at the end") << QByteArray("%s of %s, 100 %") << english;
}

void tst_StorageScan::spaceInASentence()
{
    QFETCH(QByteArray, format);
    QFETCH(QString, sentence);

    const StorageItem item(u"Memory"_s, u"/mnt/ext1"_s, 1);
    world.format = format.isNull() ? nullptr : format.constData();
    QCOMPARE(item.memoryText(), sentence);
}

void tst_StorageScan::sentenceIsMadeAtEachRead()
{
    const StorageItem item(u"Memory"_s, u"/mnt/ext1"_s, 1);
    QCOMPARE(item.memoryText(), u"50.0 MB of 100 MB"_s);
    world.format = "%s auf %s";
    QCOMPARE(item.memoryText(), u"50.0 MB auf 100 MB"_s);
    const StorageItem folder(u"A"_s, u"/A"_s, 4);
    QCOMPARE(folder.memoryText(), u" auf "_s);
}

void tst_StorageScan::lastOneStays()
{
    Storage &storage = Storage::instance();
    const QSignalSpy changed(&storage, &Storage::storageChanged);
    holding = 0;
    toHold = 1;
    storage.update();
    QTRY_COMPARE(holding.load(), 1);
    storage.update(); // nobody keeps it from overtaking
    QVERIFY(MediaFixture::reported(changed, 1));
    QCOMPARE(MediaFixture::roots().constFirst().name, u"Memory"_s);
    held.release();
    QVERIFY(MediaFixture::reported(changed, 2));
    QCOMPARE(MediaFixture::roots().constFirst().name, QString::fromLatin1(heldName));
}

void tst_StorageScan::refusedThread()
{
    MediaFixture::plug(false, false);
    QVERIFY(MediaFixture::look());
    const QStringList before = MediaFixture::lines(MediaFixture::roots());
    QCOMPARE(before.size(), 1);

    MediaFixture::plug(true, false);
    const QSignalSpy changed(&Storage::instance(), &Storage::storageChanged);
    threadsToRefuse = 1;
    Storage::instance().update();
    QCOMPARE(std::exchange(threadsToRefuse, 0), 0); // one was asked for
    QCOMPARE(m_media->device.calls({"lr_print_log2"}).size(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(MediaFixture::lines(MediaFixture::roots()), before);
    QCOMPARE(changed.count(), 0);
    QVERIFY(MediaFixture::look());
    QCOMPARE(MediaFixture::roots().size(), 2);
}

QTEST_GUILESS_MAIN(tst_StorageScan)
#include "tst_storage_scan.moc"
