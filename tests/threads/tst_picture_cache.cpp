// The pictures in memory: what is kept, how it is counted, and several threads at once.

#include "picture_cache.h"
#include "resource_image_provider.h"
#include "small_pictures.h"
#include "stderr_capture.h"

#include <QDeadlineTimer>
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
using lindenreed::picture_stand::PrefetchJob;
using lindenreed::picture_stand::PrefetchJobs;
using lindenreed::picture_stand::ResourceImageProvider;

class tst_PictureCache : public QObject
{
    Q_OBJECT

private slots:
    void limit_data();
    void limit();
    void logLines();
    void secondAddDoesNothing();
    void keysAreExact();
    void unreadablePictureIsKept();
    void fileThatComesBackIsRead();
    void removingWhatIsNotThere();
    void addingNeverRemoves();
    void figuresSaturate();
    void firstDecodingWins();
    void overlappingJobs();
    void lookupsWhileWriting();
    void askedForWhileGivenUp();
    void jobOutlivesItsProvider();
    void emptyListStartsNothing();
};

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
    QVERIFY(!cache.find(QStringLiteral("a.jpg")).isNull());
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
    QCOMPARE(cache.count(), 1);
    QVERIFY(!cache.addToCache(QStringLiteral("bad")));
    QCOMPARE(reads, 1);
}

void tst_PictureCache::fileThatComesBackIsRead()
{
    // On a card that is out for a while, say.
    const QTemporaryDir folder;
    const QStringList paths{folder.filePath(QStringLiteral("a.png")),
                            folder.filePath(QStringLiteral("b.png")),
                            folder.filePath(QStringLiteral("c.png"))};
    int reads = 0;
    PictureCache cache(1000, [&reads](const QString &path) {
        ++reads;
        return QFile::exists(path) ? std::optional(QImage(path)) : std::nullopt;
    });
    const StderrCapture log;
    prefetch(cache, paths, 0);
    prefetch(cache, paths, 0); // not there still
    QVERIFY(cache.picture(paths.at(0)).isNull());
    QCOMPARE(reads, 2);
    QCOMPARE(log.text().count(" size(0) ram(0/1000) \r\n"), 2);

    for (const QString &path : paths)
        QVERIFY(smallPicture({}).save(path));
    QCOMPARE(cache.picture(paths.at(0)).size(), QSize(8, 8));
    prefetch(cache, paths, 0);
    QCOMPARE(cache.find(paths.at(1)).size(), QSize(8, 8));
    QCOMPARE(reads, 4);
    QCOMPARE(cache.count(), 2);
    QCOMPARE(cache.used(), 2 * pictureSize);

    QVERIFY(QFile::remove(paths.at(0)));
    QVERIFY(!cache.picture(paths.at(0)).isNull());
    QVERIFY(cache.removeFromCache(paths.at(0)));
    QCOMPARE(reads, 4);
    QCOMPARE(cache.used(), pictureSize);
}

void tst_PictureCache::removingWhatIsNotThere()
{
    PictureCache cache(1000, smallPicture);
    const StderrCapture log;
    QVERIFY(!cache.removeFromCache(QStringLiteral("a")));
    QCOMPARE(log.text(), QByteArray());
    QCOMPARE(cache.used(), 0);
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
        prefetch(cache, {QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")}, 0);
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
    const auto read = [&reads](const QString &path) {
        ++reads.at(path.toUInt());
        return smallPicture(path);
    };
    const auto cache = std::make_shared<PictureCache>(1'000'000, read);
    PrefetchJobs jobs(cache, 2);
    const StderrCapture log;
    {
        std::jthread first([&] { jobs.run(PrefetchJob(names(40), 0)); });
        std::jthread second([&] { jobs.run(PrefetchJob(names(40), 1)); });
    }
    const QByteArrayList all = steps(log.text()).split(' ');
    QCOMPARE(all.size(), 40); // each picture is stored once
    QCOMPARE(QSet<QByteArray>(all.begin(), all.end()).size(), 40);
    QVERIFY(std::all_of(reads.begin(), reads.end(), [](int times) { return times == 1 || times == 2; }));
    QCOMPARE(cache->used(), 40 * pictureSize);
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
            prefetch(cache, names(12), round % 12);
        done = true;
    }
    QVERIFY(found > 0);
    QVERIFY(!damaged);
    QCOMPARE(cache.used(), int(cache.count()) * pictureSize);
}

void tst_PictureCache::askedForWhileGivenUp()
{
    // Whoever asks gets the picture, however soon a job gives it up again.
    PictureCache cache(1000, smallPicture);
    const StderrCapture log; // keeps the lines off the screen
    std::atomic<int> givenUp = 0;
    std::atomic<bool> done = false;
    int missing = 0;
    {
        std::jthread job([&] {
            while (!done) {
                givenUp += cache.removeFromCache(QStringLiteral("a"));
                std::this_thread::yield();
            }
        });
        const QDeadlineTimer enough(500); // the moment between the two steps comes a few times
        while (!enough.hasExpired() || givenUp == 0)
            missing += cache.picture(QStringLiteral("a")).isNull();
        done = true;
    }
    QCOMPARE(missing, 0);
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
    QVERIFY(QThreadPool::globalInstance()->waitForDone(0));
    QCOMPARE(provider.cache()->count(), 0);
}

QTEST_GUILESS_MAIN(tst_PictureCache)
#include "tst_picture_cache.moc"
