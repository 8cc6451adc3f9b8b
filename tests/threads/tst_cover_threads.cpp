// Thumbnails asked for by several threads at once, and ends at every moment.

#include "cover_cache.h"
#include "cover_provider.h"
#include "held_pictures.h"

#include <QImage>
#include <QQuickImageResponse>
#include <QTemporaryDir>
#include <QTest>
#include <QtPlugin>

#include <atomic>
#include <memory>
#include <semaphore>
#include <thread>
#include <vector>

Q_IMPORT_PLUGIN(HeldPicturePlugin)

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::CoverCache;
using lindenreed::picture_stand::coverKey;
using lindenreed::picture_stand::CoverProvider;

// What the pools of Qt and its conversions allocate, wake and move in their queues, behind locks that cannot
// be seen, has no names. What is called from Qt's libraries themselves is left out, in this test alone: our
// own code between them is not.
extern "C" const char *__tsan_default_suppressions() // NOLINT: the sanitizer's name
{
    return "called_from_lib:libQt6Core.so\ncalled_from_lib:libQt6Gui.so\n";
}

class tst_CoverThreads : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { HeldPictures::reset(); }
    void cleanup() { HeldPictures::letAllPass(); }

    void cacheFromManyThreads();
    void requestsFromManyThreads();
    void deletedByAnotherThreadAtItsEnd();
    void providerDestroyedWithQueuedJobs();
    void endInTheMiddleOfAPrefetch();
};

void tst_CoverThreads::initTestCase()
{
    // Qt looks its readers up once, by the thread that all others come from.
    const QTemporaryDir folder;
    HeldPictures::letAllPass();
    QVERIFY(!QImage(writeHeldPicture(folder.path(), u"first"_s)).isNull());
}

void tst_CoverThreads::cacheFromManyThreads()
{
    CoverCache cache;
    std::atomic<bool> damaged = false;
    const auto work = [&cache, &damaged](int seed) {
        for (int i = 0; i < 2000; ++i) {
            const int number = (i * 7 + seed) % 60;
            const QString key = coverKey(QString::number(number), 1, 1);
            if (const auto found = cache.find(key)) {
                cache.touch(key);
                damaged = damaged || found->width() != number + 1;
            } else {
                QImage picture(number + 1, 1, QImage::Format_Grayscale8);
                picture.fill(0);
                cache.insert(key, picture);
            }
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back(work, i * 13);
    }
    QVERIFY(!damaged);
    int kept = 0;
    for (int i = 0; i < 60; ++i)
        kept += cache.find(coverKey(QString::number(i), 1, 1)).has_value();
    QVERIFY(kept <= CoverCache::capacity);
    QVERIFY(kept >= CoverCache::capacity - 4); // a use between another's lookup and eviction takes a place
}

void tst_CoverThreads::requestsFromManyThreads()
{
    const QTemporaryDir folder;
    QStringList paths;
    for (int i = 0; i < 30; ++i)
        paths.append(writeHeldPicture(folder.path(), QString::number(i)));

    // All fit: those ahead are read last, and would take the places of what was asked for.
    const QStringList ahead = paths.first(CoverCache::capacity - paths.size());
    CoverProvider provider;
    provider.setup();
    provider.prefetchCovers(ahead);
    std::counting_semaphore<> ends(0);
    std::vector<std::unique_ptr<QQuickImageResponse>> responses[3];
    {
        std::vector<std::jthread> threads;
        for (auto &mine : responses) {
            threads.emplace_back([&] {
                for (const QString &path : paths) {
                    mine.emplace_back(provider.requestImageResponse(path, {10, 10}));
                    connect(
                        mine.back().get(), &QQuickImageResponse::finished, mine.back().get(),
                        [&ends] { ends.release(); }, Qt::DirectConnection);
                }
            });
        }
        threads.emplace_back([&] { provider.prefetchCovers(ahead); });
    }
    // All were asked for before any could end.
    HeldPictures::letAllPass();
    for (int i = 0; i < 90; ++i)
        ends.acquire();
    for (const QString &path : paths)
        QVERIFY(CoverCache::instance().find(coverKey(path, 10, 10)));
    QVERIFY(HeldPictures::most() <= 2);
}

void tst_CoverThreads::deletedByAnotherThreadAtItsEnd()
{
    // The moment the end is told, the response goes, as it does in the engine.
    const QTemporaryDir folder;
    CoverProvider provider;
    provider.setup();
    for (int i = 0; i < 100; ++i) {
        HeldPictures::reset();
        auto *response
            = provider.requestImageResponse(writeHeldPicture(folder.path(), QString::number(i)), {10, 10});
        std::binary_semaphore told(0);
        connect(
            response, &QQuickImageResponse::finished, response, [&told] { told.release(); },
            Qt::DirectConnection);
        std::jthread engine([&] {
            told.acquire();
            delete response;
        });
        HeldPictures::letAllPass();
        engine.join();
    }
}

void tst_CoverThreads::providerDestroyedWithQueuedJobs()
{
    for (int round = 0; round < 20; ++round) {
        const QTemporaryDir folder;
        HeldPictures::reset();
        {
            CoverProvider provider;
            provider.setup();
            for (int i = 0; i < 20; ++i)
                provider.requestImageResponse(writeHeldPicture(folder.path(), QString::number(i)), {10, 10});
            QVERIFY(HeldPictures::waitUntilBegun(2));
        }
        QCOMPARE(HeldPictures::begun().size(), 2);
    }
}

void tst_CoverThreads::endInTheMiddleOfAPrefetch()
{
    const QTemporaryDir folder;
    QStringList paths;
    for (int i = 0; i < 40; ++i) {
        QImage picture(100 + i, 80, QImage::Format_Grayscale8);
        picture.fill(i);
        paths.append(folder.filePath(u"%1.png"_s.arg(i)));
        QVERIFY(picture.save(paths.last()));
    }
    // Real decoders, which nobody holds: the end comes wherever they are.
    for (int round = 0; round < 20; ++round) {
        CoverProvider provider;
        provider.setup();
        provider.prefetchCovers(paths);
        for (int i = 0; i < round; ++i)
            provider.requestImageResponse(paths.at(i), {10 + round, 10 + round});
    }
}

QTEST_GUILESS_MAIN(tst_CoverThreads)
#include "tst_cover_threads.moc"
