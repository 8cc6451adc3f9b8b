// The pictures in memory: budget, order of loading, and several threads at once.

#include "picture_cache.h"
#include "resource_image_provider.h"
#include "stderr_capture.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <climits>
#include <memory>
#include <semaphore>
#include <thread>
#include <vector>

#include <sys/mman.h>

using lindenreed::picture_stand::PictureCache;
using lindenreed::picture_stand::readTotalMemory;
using lindenreed::picture_stand::ResourceImageProvider;

namespace {

constexpr int pictureSize = 64; ///< bytes of an 8 x 8 grey picture

QImage smallPicture(const QString &)
{
    QImage picture(8, 8, QImage::Format_Grayscale8);
    picture.fill(0x80);
    return picture;
}

/// "0", "1", ... stand for paths.
QStringList names(int count)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list.append(QString::number(i));
    return list;
}

/// What a job says it does, as "+name" and "-name".
QByteArray steps(const QByteArray &log)
{
    QByteArrayList found;
    for (const QByteArray &line : log.split('\n')) {
        const QByteArrayList words = line.split(' ');
        if (words.size() > 2)
            found.append((words.at(0) == "add" ? '+' : '-') + words.at(2));
    }
    return found.join(' ');
}

QString writeFile(const QTemporaryDir &folder, const QByteArray &contents)
{
    QFile file(folder.filePath(QStringLiteral("meminfo")));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        return {};
    return file.fileName();
}

} // namespace

class tst_PictureCache : public QObject
{
    Q_OBJECT

private slots:
    void totalMemory_data();
    void totalMemory();
    void totalMemoryOfMissingFile();
    void limit_data();
    void limit();
    void logLines();
    void secondAddDoesNothing();
    void keysAreExact();
    void unreadablePictureIsKept();
    void removingWhatIsNotThere();
    void order_data();
    void order();
    void exactlyAtTheBudget();
    void freshCacheOverflows();
    void warmCacheGivesUpTheFarEnd();
    void visitedPositionsWithoutPictureCount();
    void pictureLargerThanTheBudget();
    void noBudget();
    void strangersStay();
    void addingNeverRemoves();
    void figuresSaturate();
    void firstDecodingWins();
    void overlappingJobs();
    void lookupsWhileWriting();
    void jobOutlivesItsProvider();
    void emptyListStartsNothing();
};

void tst_PictureCache::totalMemory_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<long long>("bytes");

    const QByteArray filler63(63, 'x');
    QTest::newRow("an ordinary file")
        << QByteArray("MemTotal:       16384 kB\nMemFree: 5 kB\n") << 16384LL * 1024;
    QTest::newRow("empty") << QByteArray() << 0LL;
    QTest::newRow("no such line") << QByteArray("MemFree: 5 kB\n") << 0LL;
    QTest::newRow("the last line wins")
        << QByteArray("MemTotal: 1 kB\nMemTotal: 2 kB\nMemFree: 9 kB\n") << 2048LL;
    QTest::newRow("no unit, no line end") << QByteArray("MemTotal: 7") << 7LL * 1024;
    QTest::newRow("not at the start of the line") << QByteArray(" MemTotal: 7 kB\n") << 0LL;
    QTest::newRow("another name that begins alike") << QByteArray("MemTotalHuge: 7 kB\n") << 0LL;
    QTest::newRow("no number") << QByteArray("MemTotal: many\n") << 0LL;
    QTest::newRow("more than 32 bits of bytes") << QByteArray("MemTotal: 25165824 kB\n") << 25165824LL * 1024;
    QTest::newRow("a long line is read in pieces of 63") << filler63 + "MemTotal: 3 kB\n" << 3072LL;
    QTest::newRow("behind 62 characters it begins no piece") << filler63.chopped(1) + "MemTotal: 3 kB\n"
                                                             << 0LL;
    QTest::newRow("binary bytes") << QByteArray("\0\xff\nMemTotal: 4 kB\n", 17) << 4096LL;
}

void tst_PictureCache::totalMemory()
{
    QFETCH(QByteArray, contents);
    QFETCH(long long, bytes);

    const QTemporaryDir folder;
    const QString path = writeFile(folder, contents);
    QCOMPARE(readTotalMemory(qPrintable(path)), std::optional<long long>(bytes));
}

void tst_PictureCache::totalMemoryOfMissingFile()
{
    QCOMPARE(readTotalMemory("/nowhere/meminfo"), std::optional<long long>());
}

void tst_PictureCache::limit_data()
{
    QTest::addColumn<long long>("bytes");
    QTest::addColumn<int>("limit");

    QTest::newRow("none") << 0LL << 0;
    QTest::newRow("below zero") << -1024LL << 0;
    QTest::newRow("the largest figure") << (1LL << 31) - 1 << INT_MAX;
    QTest::newRow("just above") << (1LL << 31) << INT_MAX;
    QTest::newRow("a tenth of 64 GiB") << (64LL << 30) / 10 << INT_MAX;
}

void tst_PictureCache::limit()
{
    QFETCH(long long, bytes);
    QFETCH(int, limit);

    QCOMPARE(PictureCache(bytes, smallPicture).limit(), limit);
}

void tst_PictureCache::logLines()
{
    PictureCache cache(100, smallPicture);
    const StderrCapture log;
    QVERIFY(cache.addToCache(QStringLiteral("/a b/ü.jpg")));
    QVERIFY(cache.addToCache(QStringLiteral("two")));
    QVERIFY(cache.removeFromCache(QStringLiteral("/a b/ü.jpg")));
    QCOMPARE(log.text(),
             QByteArray("add image /a b/ü.jpg size(64) ram(64/100) \r\n"
                        "add image two size(64) ram(128/100) \r\n"
                        "remove image /a b/ü.jpg size(64) ram(64/100) \r\n"));
    QCOMPARE(cache.used(), 64);
}

void tst_PictureCache::secondAddDoesNothing()
{
    std::atomic<int> reads = 0;
    PictureCache cache(1000, [&reads](const QString &path) {
        ++reads;
        return smallPicture(path);
    });
    QVERIFY(cache.addToCache(QStringLiteral("a")));
    const StderrCapture log;
    QVERIFY(!cache.addToCache(QStringLiteral("a")));
    QCOMPARE(log.text(), QByteArray());
    QCOMPARE(int(reads), 1);
    QCOMPARE(cache.used(), pictureSize);
}

void tst_PictureCache::keysAreExact()
{
    PictureCache cache(1000, smallPicture);
    cache.addToCache(QStringLiteral("a.jpg"));
    QVERIFY(cache.contains(QStringLiteral("a.jpg")));
    QVERIFY(!cache.contains(QStringLiteral("A.JPG")));
    QVERIFY(cache.find(QStringLiteral("A.JPG")).isNull());
    QVERIFY(cache.addToCache(QStringLiteral("A.JPG")));
    QVERIFY(cache.addToCache(QStringLiteral("./a.jpg")));
    QCOMPARE(cache.count(), 3);
}

void tst_PictureCache::unreadablePictureIsKept()
{
    int reads = 0;
    PictureCache cache(1000, [&reads](const QString &) {
        ++reads;
        return QImage();
    });
    const StderrCapture log;
    QVERIFY(cache.addToCache(QStringLiteral("bad")));
    QCOMPARE(log.text(), QByteArray("add image bad size(0) ram(0/1000) \r\n"));
    QVERIFY(cache.contains(QStringLiteral("bad")));
    QVERIFY(!cache.addToCache(QStringLiteral("bad")));
    QCOMPARE(reads, 1);
}

void tst_PictureCache::removingWhatIsNotThere()
{
    PictureCache cache(1000, smallPicture);
    const StderrCapture log;
    QVERIFY(!cache.removeFromCache(QStringLiteral("a")));
    QCOMPARE(log.text(), QByteArray());
    QCOMPARE(cache.used(), 0);
}

void tst_PictureCache::order_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("loaded");

    // The last position of the order is never loaded.
    QTest::newRow("no picture") << 0 << 0 << QByteArray();
    QTest::newRow("one picture: left to the request") << 1 << 0 << QByteArray();
    QTest::newRow("two: the current one alone") << 2 << 1 << QByteArray("+1");
    QTest::newRow("three, at the first") << 3 << 0 << QByteArray("+0 +1");
    QTest::newRow("four, at the last: forward wraps first") << 4 << 3 << QByteArray("+3 +0 +2");
    QTest::newRow("six, in the middle") << 6 << 2 << QByteArray("+2 +3 +1 +4 +0");
    QTest::newRow("five, at the first: backward wraps") << 5 << 0 << QByteArray("+0 +1 +4 +2");
}

void tst_PictureCache::order()
{
    QFETCH(int, count);
    QFETCH(int, index);
    QFETCH(QByteArray, loaded);

    PictureCache cache(1'000'000, smallPicture);
    const StderrCapture log;
    cache.prefetch(names(count), index);
    QCOMPARE(steps(log.text()), loaded);
}

void tst_PictureCache::exactlyAtTheBudget()
{
    // The fourth picture meets the budget and is not above it.
    PictureCache cache(4 * pictureSize, smallPicture);
    const StderrCapture log;
    cache.prefetch(names(5), 0);
    QCOMPARE(steps(log.text()), QByteArray("+0 +1 +4 +2"));
    QCOMPARE(cache.used(), cache.limit());
}

void tst_PictureCache::freshCacheOverflows()
{
    // The third picture overflows; the tail walks over positions that hold nothing, and that picture is kept.
    PictureCache cache(2 * pictureSize, smallPicture);
    const StderrCapture log;
    cache.prefetch(names(8), 0);
    QCOMPARE(steps(log.text()), QByteArray("+0 +1 +7"));
    QCOMPARE(cache.used(), 3 * pictureSize);
}

void tst_PictureCache::warmCacheGivesUpTheFarEnd()
{
    PictureCache cache(4 * pictureSize, smallPicture);
    for (const QString &name : names(4))
        cache.addToCache(name);

    // Order 4 5 3 0 2 1: position 4 is new, and 1 goes.
    const StderrCapture log;
    cache.prefetch(names(6), 4);
    QCOMPARE(steps(log.text()), QByteArray("+4 -1 +5 -2"));
    QCOMPARE(cache.used(), cache.limit());
}

void tst_PictureCache::visitedPositionsWithoutPictureCount()
{
    PictureCache cache(2 * pictureSize, smallPicture);
    cache.addToCache(QStringLiteral("2"));
    cache.addToCache(QStringLiteral("5"));

    // Order 0 1 5 2 4 3: 3 and 4 hold nothing, 2 goes; then 1 takes the place of 5, where the tail meets the
    // head.
    const StderrCapture log;
    cache.prefetch(names(6), 0);
    QCOMPARE(steps(log.text()), QByteArray("+0 -2 +1 -5"));
}

void tst_PictureCache::pictureLargerThanTheBudget()
{
    PictureCache cache(pictureSize / 2, smallPicture);
    const StderrCapture log;
    cache.prefetch(names(4), 1);
    QCOMPARE(steps(log.text()), QByteArray("+1"));
    QCOMPARE(cache.used(), pictureSize);
}

void tst_PictureCache::noBudget()
{
    // An unknown memory size: each job adds one picture and ends.
    PictureCache cache(0, smallPicture);
    const StderrCapture log;
    cache.prefetch(names(4), 0);
    cache.prefetch(names(4), 1);
    QCOMPARE(steps(log.text()), QByteArray("+0 +1 -0"));
}

void tst_PictureCache::strangersStay()
{
    // Pictures of an earlier list are out of the job's reach and keep counting.
    PictureCache cache(2 * pictureSize, smallPicture);
    cache.addToCache(QStringLiteral("old 1"));
    cache.addToCache(QStringLiteral("old 2"));
    const StderrCapture log;
    cache.prefetch(names(5), 0);
    QCOMPARE(steps(log.text()), QByteArray("+0"));
    QVERIFY(cache.contains(QStringLiteral("old 1")) && cache.contains(QStringLiteral("old 2")));
}

void tst_PictureCache::addingNeverRemoves()
{
    PictureCache cache(0, smallPicture);
    for (const QString &name : names(5))
        QVERIFY(cache.addToCache(name));
    QCOMPARE(cache.count(), 5);
    QCOMPARE(cache.used(), 5 * pictureSize);
}

void tst_PictureCache::figuresSaturate()
{
    // Pages that nobody touches cost nothing: pictures of 1.5 GiB over one and the same memory.
    constexpr int rows = 1536;
    constexpr int bytesPerRow = 1 << 20;
    void *pages = mmap(nullptr, std::size_t(rows) * bytesPerRow, PROT_READ,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    QVERIFY(pages != MAP_FAILED);
    {
        PictureCache cache(4LL << 30, [pages](const QString &) {
            return QImage(static_cast<const uchar *>(pages), bytesPerRow, rows, bytesPerRow,
                          QImage::Format_Grayscale8);
        });
        const StderrCapture log;
        QVERIFY(cache.addToCache(QStringLiteral("a")));
        QCOMPARE(cache.used(), 1'610'612'736);
        QVERIFY(cache.addToCache(QStringLiteral("b")));
        QCOMPARE(cache.used(), INT_MAX);
        QVERIFY(log.text().endsWith("add image b size(1610612736) ram(2147483647/2147483647) \r\n"));

        // What is above the figures' range still counts: the sum is above the budget, the far end goes.
        const qsizetype before = log.text().size();
        cache.prefetch({QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")}, 0);
        QCOMPARE(log.text().mid(before),
                 QByteArray("add image c size(1610612736) ram(2147483647/2147483647) \r\n"
                            "remove image b size(1610612736) ram(2147483647/2147483647) \r\n"
                            "remove image a size(1610612736) ram(1610612736/2147483647) \r\n"));
        QCOMPARE(cache.used(), 1'610'612'736);
        QCOMPARE(cache.count(), 1);

        QVERIFY(cache.removeFromCache(QStringLiteral("c")));
        QCOMPARE(cache.used(), 0);
    }
    munmap(pages, std::size_t(rows) * bytesPerRow);
}

void tst_PictureCache::firstDecodingWins()
{
    // Both threads have looked and found nothing before either has decoded.
    std::counting_semaphore<2> decoding(0);
    std::counting_semaphore<2> mayEnd(0);
    PictureCache cache(1000, [&](const QString &path) {
        decoding.release();
        mayEnd.acquire();
        return smallPicture(path);
    });
    std::atomic<int> put = 0;
    const auto add = [&] { put += cache.addToCache(QStringLiteral("a")); };
    {
        const StderrCapture log;
        std::jthread first(add);
        std::jthread second(add);
        decoding.acquire();
        decoding.acquire();
        mayEnd.release(2);
        first.join();
        second.join();
        QCOMPARE(steps(log.text()), QByteArray("+a"));
    }
    QCOMPARE(int(put), 1);
    QCOMPARE(cache.used(), pictureSize);
}

void tst_PictureCache::overlappingJobs()
{
    std::vector<std::atomic<int>> reads(40);
    PictureCache cache(1'000'000, [&reads](const QString &path) {
        ++reads.at(path.toUInt());
        return smallPicture(path);
    });
    const StderrCapture log;
    {
        std::jthread first([&] { cache.prefetch(names(40), 0); });
        std::jthread second([&] { cache.prefetch(names(40), 1); });
    }
    const QByteArrayList all = steps(log.text()).split(' ');
    QCOMPARE(all.size(), 40); // each picture is stored once
    QCOMPARE(QSet<QByteArray>(all.begin(), all.end()).size(), 40);
    QVERIFY(std::all_of(reads.begin(), reads.end(), [](int times) { return times == 1 || times == 2; }));
    QCOMPARE(cache.used(), 40 * pictureSize);
}

void tst_PictureCache::lookupsWhileWriting()
{
    PictureCache cache(5 * pictureSize, smallPicture);
    const StderrCapture log; // keeps the lines off the screen
    std::atomic<bool> ready = false;
    std::atomic<long> found = 0;
    std::atomic<bool> damaged = false;
    std::atomic<bool> done = false;
    const auto look = [&] {
        while (!done) {
            const QImage picture = cache.find(QStringLiteral("3"));
            if (!picture.isNull()) {
                ++found;
                ready = true;
                if (picture.constBits()[0] != 0x80 || cache.used() < pictureSize)
                    damaged = true;
            }
        }
    };
    {
        std::jthread firstReader(look);
        std::jthread secondReader(look);
        for (int round = 0; round < 300 || !ready; ++round)
            cache.prefetch(names(12), round % 12);
        done = true;
    }
    QVERIFY(found > 0);
    QVERIFY(!damaged);
    QCOMPARE(cache.used(), int(cache.count()) * pictureSize);
}

void tst_PictureCache::jobOutlivesItsProvider()
{
    // Large enough that the job is at work when its provider goes.
    const QTemporaryDir folder;
    QImage large(1500, 1500, QImage::Format_RGB32);
    large.fill(Qt::white);
    QStringList paths;
    for (int i = 0; i < 60; ++i) {
        paths.append(folder.filePath(QStringLiteral("%1.png").arg(i)));
        if (i == 0)
            QVERIFY(large.save(paths.first()));
        else
            QVERIFY(QFile::link(paths.first(), paths.last()));
    }

    const StderrCapture log;
    auto provider = std::make_unique<ResourceImageProvider>();
    const std::shared_ptr<PictureCache> cache = provider->cache();
    provider->loadToCache(paths, 0);
    while (cache->count() == 0)
        std::this_thread::yield();
    provider.reset();

    QVERIFY(QThreadPool::globalInstance()->waitForDone(60'000));
    QVERIFY(cache->count() < paths.size() - 1); // it did not go on to its end for nobody
    QCOMPARE(cache.use_count(), 1L); // and has let go of what it shared
}

void tst_PictureCache::emptyListStartsNothing()
{
    ResourceImageProvider provider;
    provider.loadToCache({}, 0);
    QCOMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
    QCOMPARE(provider.cache()->count(), 0);
}

QTEST_GUILESS_MAIN(tst_PictureCache)
#include "tst_picture_cache.moc"
