// Pictures loaded ahead beside everything else that the process does.

#include "held_pictures.h"
#include "lasting_threads.h"
#include "process_memory.h"
#include "resource_image_provider.h"
#include "small_pictures.h"
#include "stderr_capture.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QThreadPool>
#include <QtPlugin>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <new>
#include <semaphore>
#include <thread>
#include <utility>
#include <vector>

Q_IMPORT_PLUGIN(HeldPicturePlugin)

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::PictureCache;
using lindenreed::picture_stand::prefetchDecoders;
using lindenreed::picture_stand::PrefetchJob;
using lindenreed::picture_stand::PrefetchJobs;
using lindenreed::picture_stand::readTotalMemory;
using lindenreed::picture_stand::ResourceImageProvider;
using lindenreed::picture_stand::startLastingThreads;

namespace {

QStringList entriesOf(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
}

/// Threads of Qt's pools, those that have nothing to do among them.
QStringList pooledThreads()
{
    QStringList pooled = entriesOf(u"/proc/self/task"_s);
    pooled.removeIf([](const QString &thread) {
        QFile name(u"/proc/self/task/"_s + thread + u"/comm"_s);
        return !name.open(QIODevice::ReadOnly) || name.readAll() != "Thread (pooled)\n";
    });
    return pooled;
}

} // namespace

class tst_PrefetchJobs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void conversionsDoNotWait();
    void asManyAtOnceAsDecoders();
    void jobsThatWaitTakeNoThreads();
    void jobsTakeTurns();
    void jobThatFailsEndsAlone();
    void jobsThatWaitDecodeNothingForNobody();
    void freeMemoryGoesBack();

private:
    /// Three held pictures of a job's own: it loads two of them.
    QStringList album(int job) const;

    const int m_decoders
        = prefetchDecoders(readTotalMemory("/proc/meminfo").value_or(0), QThread::idealThreadCount());
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<StderrCapture> m_log;
    std::unique_ptr<ResourceImageProvider> m_provider;
};

void tst_PrefetchJobs::initTestCase()
{
    // Qt looks its readers up once, by the thread that all others come from.
    const QTemporaryDir folder;
    HeldPictures::letAllPass();
    QVERIFY(!QImage(writeHeldPicture(folder.path(), u"first"_s)).isNull());
}

void tst_PrefetchJobs::init()
{
    HeldPictures::reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_log = std::make_unique<StderrCapture>();
    m_provider = std::make_unique<ResourceImageProvider>();
}

void tst_PrefetchJobs::cleanup()
{
    QThreadPool::globalInstance()->waitForDone();
    m_provider.reset();
    m_log.reset();
}

QStringList tst_PrefetchJobs::album(int job) const
{
    QStringList paths;
    for (int i = 0; i < 3; ++i)
        paths.append(writeHeldPicture(m_folder->path(), u"%1-%2"_s.arg(job).arg(i)));
    return paths;
}

void tst_PrefetchJobs::conversionsDoNotWait()
{
    // A picture goes to the screen while as many others as can be are loaded.
    for (int job = 0; job < m_decoders; ++job)
        m_provider->loadToCache(album(job), 0);
    QVERIFY(HeldPictures::waitUntilBegun(m_decoders));
    std::binary_semaphore done(0);
    std::jthread screen([&done] {
        QImage picture(1000, 1000, QImage::Format_Grayscale8);
        picture.fill(0x80);
        picture.convertTo(QImage::Format_RGB32);
        done.release();
    });
    const bool converted = done.try_acquire_for(std::chrono::seconds(30));
    HeldPictures::letAllPass();
    QVERIFY(converted);
}

void tst_PrefetchJobs::asManyAtOnceAsDecoders()
{
    const int jobs = m_decoders + 3;
    for (int job = 0; job < jobs; ++job)
        m_provider->loadToCache(album(job), 0);
    // All have been started when what was queued behind them has run, and have had their turn by now.
    for (int turn = 0; turn < 50; ++turn) {
        std::binary_semaphore done(0);
        QThreadPool::globalInstance()->start([&done] { done.release(); });
        done.acquire();
    }
    for (int begun = m_decoders; begun < 2 * jobs; ++begun) {
        QVERIFY(HeldPictures::waitUntilBegun(begun));
        HeldPictures::letPass(1);
    }
    QVERIFY(QThreadPool::globalInstance()->waitForDone(30'000));
    QCOMPARE(HeldPictures::begun().size(), 2 * jobs);
    QCOMPARE(HeldPictures::most(), m_decoders);
}

void tst_PrefetchJobs::jobsThatWaitTakeNoThreads()
{
    // A storage that does not answer holds the decoders, and the show is stepped through meanwhile.
    QThreadPool *const pool = QThreadPool::globalInstance();
    startLastingThreads(*pool);
    for (int job = 0; job < m_decoders; ++job)
        m_provider->loadToCache(album(job), 0);
    QVERIFY(HeldPictures::waitUntilBegun(m_decoders));
    QTRY_VERIFY(pooledThreads().size() >= pool->maxThreadCount());
    const QStringList threads = pooledThreads();
    const qsizetype handles = entriesOf(u"/proc/self/fd"_s).size();
    const QStringList waiting = album(m_decoders);
    std::counting_semaphore<> begin(0);
    std::counting_semaphore<> done(0);
    for (int round = 0; round < 50; ++round) {
        // Many steps at a time: the pool begins when all of them stand in its queue.
        for (int thread = 0; thread < pool->maxThreadCount(); ++thread)
            pool->start([&begin] { begin.acquire(); });
        for (int i = 0; i < 200; ++i)
            m_provider->loadToCache(waiting, 0);
        pool->start([&done] { done.release(); });
        begin.release(pool->maxThreadCount());
        done.acquire();
    }
    const QStringList threadsThen = pooledThreads();
    const qsizetype handlesThen = entriesOf(u"/proc/self/fd"_s).size();
    HeldPictures::letAllPass();
    QVERIFY(pool->waitForDone(30'000));
    QVERIFY(handlesThen <= handles);
    // Nor has one ended and another come, which could lack a handle.
    QVERIFY(
        std::ranges::all_of(threadsThen, [&](const QString &thread) { return threads.contains(thread); }));
}

void tst_PrefetchJobs::jobsTakeTurns()
{
    // The second comes while the first loads its first picture.
    QByteArrayList loaded;
    std::function<void()> meanwhile;
    const auto cache = std::make_shared<PictureCache>(1'000'000, [&](const QString &path) {
        loaded.append(path.toLatin1());
        if (const auto now = std::exchange(meanwhile, {}))
            now();
        return smallPicture(path);
    });
    PrefetchJobs jobs(cache, 1);
    meanwhile = [&jobs] { jobs.run(PrefetchJob({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, 0)); };
    jobs.run(PrefetchJob({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s}, 1));
    QCOMPARE(loaded.join(' '), QByteArray("2 a 3 b 1 d 4"));
}

void tst_PrefetchJobs::jobThatFailsEndsAlone()
{
    QByteArrayList loaded;
    std::function<void()> meanwhile;
    const auto cache = std::make_shared<PictureCache>(1'000'000, [&](const QString &path) {
        loaded.append(path.toLatin1());
        if (const auto now = std::exchange(meanwhile, {}))
            now();
        if (path == u"b"_s)
            throw std::bad_alloc();
        return smallPicture(path);
    });
    PrefetchJobs jobs(cache, 1);
    meanwhile = [&jobs] { jobs.run(PrefetchJob({u"a"_s, u"b"_s, u"c"_s, u"d"_s}, 0)); };
    jobs.run(PrefetchJob({u"1"_s, u"2"_s, u"3"_s, u"4"_s}, 0));
    QCOMPARE(loaded.join(' '), QByteArray("1 a 2 b 4"));
    jobs.run(PrefetchJob({u"5"_s, u"6"_s}, 0)); // nor is its thread missing
    QCOMPARE(loaded.join(' '), QByteArray("1 a 2 b 4 5"));
}

void tst_PrefetchJobs::jobsThatWaitDecodeNothingForNobody()
{
    for (int job = 0; job < m_decoders + 3; ++job)
        m_provider->loadToCache(album(job), 0);
    QVERIFY(HeldPictures::waitUntilBegun(m_decoders));
    m_provider.reset();
    QVERIFY(QThreadPool::globalInstance()->waitForDone(30'000));
    QCOMPARE(HeldPictures::begun().size(), m_decoders);
}

void tst_PrefetchJobs::freeMemoryGoesBack()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("AddressSanitizer has heaps of its own.");
#endif
    // 40 MB in pieces too small to be taken from the system one by one, of which every hundredth stays.
    std::vector<std::unique_ptr<char[]>> pieces(10'000);
    for (std::unique_ptr<char[]> &piece : pieces)
        piece = std::make_unique<char[]>(4000);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i % 100 != 0)
            pieces[i].reset();
    }
    const qint64 before = GrowthWatch::resident();
    HeldPictures::letAllPass();
    m_provider->loadToCache(album(0), 0);
    QVERIFY(QThreadPool::globalInstance()->waitForDone(30'000));
    const qint64 now = GrowthWatch::resident();
    QVERIFY2(now < before - 20 * 1024, qPrintable(u"%1 KiB of %2"_s.arg(now).arg(before)));
}

QTEST_GUILESS_MAIN(tst_PrefetchJobs)
#include "tst_prefetch_jobs.moc"
