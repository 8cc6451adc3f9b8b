// Pictures loaded ahead beside everything else that the process does.

#include "held_pictures.h"
#include "process_memory.h"
#include "resource_image_provider.h"
#include "stderr_capture.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QThreadPool>
#include <QtPlugin>

#include <chrono>
#include <memory>
#include <semaphore>
#include <thread>
#include <vector>

Q_IMPORT_PLUGIN(HeldPicturePlugin)

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::prefetchDecoders;
using lindenreed::picture_stand::readTotalMemory;
using lindenreed::picture_stand::ResourceImageProvider;

class tst_PrefetchJobs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void conversionsDoNotWait();
    void asManyAtOnceAsDecoders();
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
    QThreadPool::globalInstance()->setMaxThreadCount(QThread::idealThreadCount());
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
    // On a device with one processor: a picture goes to the screen while another is being loaded.
    QThreadPool::globalInstance()->setMaxThreadCount(1);
    m_provider->loadToCache(album(0), 0);
    QVERIFY(HeldPictures::waitUntilBegun(1));
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
