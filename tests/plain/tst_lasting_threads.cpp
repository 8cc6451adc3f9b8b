// Threads of a pool that are there before they are needed.

#include "lasting_threads.h"

#include <QSemaphore>
#include <QTest>
#include <QThread>
#include <QThreadPool>

#include <atomic>
#include <cerrno>
#include <memory>

#include <dlfcn.h>
#include <pthread.h>

using lindenreed::picture_stand::startLastingThreads;

namespace {

std::atomic<int> created = 0;
std::atomic<int> refused = -1; ///< which of them is

} // namespace

// Stands before the system's.
int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*run)(void *),
                   void *argument) noexcept
{
    if (created++ == refused)
        return EAGAIN;
    static const auto system
        = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return system(thread, attributes, run, argument);
}

class tst_LastingThreads : public QObject
{
    Q_OBJECT

private slots:
    void allAreThere();
    void refusedThreadHoldsNothingUp();
};

void tst_LastingThreads::allAreThere()
{
    QThreadPool pool;
    pool.setMaxThreadCount(5);
    created = 0;
    startLastingThreads(pool);
    QTRY_COMPARE(created, 5);
    QCOMPARE(pool.expiryTimeout(), -1);

    // All of them work at once from the first moment, and none comes later.
    QSemaphore begun;
    QSemaphore go;
    for (unsigned long pause = 0; pause < 200; ++pause) {
        for (int job = 0; job < 5; ++job) {
            pool.start([&] {
                begun.release();
                go.acquire();
            });
        }
        const bool allBegun = begun.tryAcquire(5, 30'000);
        go.release(5);
        QVERIFY(allBegun);
        QThread::usleep(pause);
    }
    QVERIFY(pool.waitForDone(30'000));
    QCOMPARE(created, 5);
}

void tst_LastingThreads::refusedThreadHoldsNothingUp()
{
    static auto *const pool = new QThreadPool; // waits at its end for a thread that it has not got
    pool->setMaxThreadCount(3);
    created = 0;
    refused = 1;
    constexpr QtMsgType kind = QT_VERSION < QT_VERSION_CHECK(6, 5, 0) ? QtCriticalMsg : QtWarningMsg;
    QTest::ignoreMessage(kind, "QThread::start: Thread creation error (Resource temporarily unavailable)");
    startLastingThreads(*pool);
    const auto done = std::make_shared<QSemaphore>();
    pool->start([done] { done->release(); });
    QVERIFY(done->tryAcquire(1, 30'000));
    refused = -1;
}

QTEST_GUILESS_MAIN(tst_LastingThreads)
#include "tst_lasting_threads.moc"
