// Looks at the storages on their threads: beside a busy main thread, and when the program ends meanwhile.

#include "media_fixture.h"

#include <journal.h>
#include <slateview.h>

#include <QCoreApplication>
#include <QProcess>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>
#include <utility>

#include <dlfcn.h>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::device::DeviceForTest;
using lindenreed::device::Profile;
using lindenreed::picture_stand::Storage;

namespace {

constexpr char livesArgument[] = "--lives";
constexpr char outlivedArgument[] = "--outlived";
constexpr int crew = 8; ///< workers at once

std::atomic<bool> hold = false; ///< workers wait before they ask for their first text
std::atomic<int> waiting = 0;
bool isFirstUse = true; ///< which begins a look of its own

} // namespace

// This one stands before the device's own, and asks it.
const char *GetLangText(const char *key)
{
    using Function = const char *(*)(const char *);
    static const auto device = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "GetLangText"));
    ++waiting;
    while (hold)
        std::this_thread::yield();
    return device(key);
}

namespace {

/// Workers that have asked their last question.
qsizetype finished()
{
    const auto calls = lindenreed::device::journal::entries();
    return std::count_if(calls.cbegin(), calls.cend(),
                         [](const auto &call) { return call.name == "isUsbStorMounted"; });
}

/// A crew of workers, all before their first question.
void startHeldCrew()
{
    hold = true;
    waiting = 0;
    Storage &storage = Storage::instance();
    for (int i = std::exchange(isFirstUse, false) ? 1 : 0; i < crew; ++i)
        storage.update();
    while (waiting < crew)
        std::this_thread::yield();
}

/// A program that starts and ends many times, each time with workers that are about to report.
int manyLives()
{
    for (int life = 0; life < 60; ++life) {
        int argc = 0;
        const QCoreApplication application(argc, nullptr);
        Device::start(Profile());
        startHeldCrew();
        hold = false;
        if (life % 3 == 1)
            QCoreApplication::processEvents(); // some have reported
        if (life % 3 == 2)
            std::this_thread::yield();
        Device::stop();
    }
    return 0;
}

/// Lets the workers go on when nearly nothing is left of the program.
struct Release
{
    ~Release()
    {
        if (!armed)
            return;
        hold = false;
        while (finished() < crew)
            std::this_thread::yield();
        std::puts("outlived");
        std::fflush(stdout);
    }
    bool armed = false;
};

Release release;

int outlived()
{
    int argc = 0;
    const QCoreApplication application(argc, nullptr);
    Device::start(Profile());
    startHeldCrew();
    Device::stop();
    release.armed = true;
    return 0;
}

} // namespace

class tst_StorageThreads : public QObject
{
    Q_OBJECT

private slots:
    void besideABusyMainThread();
    void reportsAllAtOnce();
    void programEnds_data();
    void programEnds();
};

void tst_StorageThreads::besideABusyMainThread()
{
    constexpr int looks = 200;
    DeviceForTest device;
    Storage &storage = Storage::instance();
    isFirstUse = false;
    QVERIFY(MediaFixture::settled());
    const QSignalSpy changed(&storage, &Storage::storageChanged);
    int largest = 0;
    for (int i = 0; i < looks; ++i) {
        device.setMounted(i % 2 == 0, i % 3 == 0);
        storage.update();
        largest = std::max(largest, int(storage.listFiles({}, {}, 3).size()));
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE_WITH_TIMEOUT(changed.count(), looks, 60'000);
    device.setMounted(true, true);
    storage.update();
    QTRY_COMPARE(changed.count(), looks + 1);
    QCOMPARE(storage.listFiles({}, {}, 3).size(), 3);
    QVERIFY(largest >= 1 && largest <= 3);
}

void tst_StorageThreads::reportsAllAtOnce()
{
    DeviceForTest device;
    isFirstUse = false;
    QVERIFY(MediaFixture::settled());
    const QSignalSpy changed(&Storage::instance(), &Storage::storageChanged);
    for (int round = 1; round <= 20; ++round) {
        device.forgetCalls();
        startHeldCrew();
        hold = false;
        while (finished() < crew)
            std::this_thread::yield();
        QTRY_COMPARE(changed.count(), round * crew);
    }
}

void tst_StorageThreads::programEnds_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QByteArray>("output");

    QTest::newRow("while workers report") << QString::fromLatin1(livesArgument) << QByteArray();
    QTest::newRow("before workers ask the device")
        << QString::fromLatin1(outlivedArgument) << QByteArray("outlived\n");
}

void tst_StorageThreads::programEnds()
{
    QFETCH(QString, argument);
    QFETCH(QByteArray, output);

    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {argument});
    QVERIFY2(child.waitForFinished(60'000), qPrintable(child.errorString()));
    QCOMPARE(child.readAllStandardError(), QByteArray());
    QCOMPARE(child.readAllStandardOutput(), output);
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
}

int main(int argc, char *argv[])
{
    const QByteArray argument(argc == 2 ? argv[1] : "");
    if (argument == livesArgument)
        return manyLives();
    if (argument == outlivedArgument)
        return outlived();
    const QCoreApplication application(argc, argv);
    tst_StorageThreads test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_storage_threads.moc"
