// The memory that JPEG files of several scans share: how much there is, and who waits for it.

#include <scan_memory.h>

#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <atomic>
#include <chrono>
#include <latch>
#include <thread>
#include <utility>

#include <sys/resource.h>
#include <sys/sysinfo.h>

using lindenreed::device::machineMemory;
using lindenreed::device::mostScanMemory;
using lindenreed::device::ScanMemory;

namespace {

qint64 ofTheKernel()
{
    struct sysinfo information = {};
    ::sysinfo(&information);
    return qint64(information.totalram) * information.mem_unit;
}

} // namespace

class tst_ScanMemory : public QObject
{
    Q_OBJECT

private slots:
    void thirdOfTheMachine();
    void memoryOfTheMachine_data();
    void memoryOfTheMachine();
    void memoryOfNoFile();
    void moreThanThereIs();
    void threadsShareIt();
    void mainThreadIsFirst();
};

void tst_ScanMemory::thirdOfTheMachine()
{
    QCOMPARE(mostScanMemory(384LL << 20), 128LL << 20);
    QCOMPARE(mostScanMemory(768LL << 20), 256LL << 20);
    QVERIFY(mostScanMemory(256LL << 20) > 24'000'000LL * 3);
    QCOMPARE(mostScanMemory(2'160'000'000), 720'000'000LL);
    QCOMPARE(mostScanMemory(1LL << 40), 720'000'000LL);
    QCOMPARE(mostScanMemory(0), 720'000'000LL);
}

void tst_ScanMemory::memoryOfTheMachine_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<qint64>("bytes");

    QTest::newRow("an ordinary file")
        << QByteArray("MemTotal:     524288 kB\nMemFree: 5 kB\n") << (512LL << 20);
    QTest::newRow("in a later line") << QByteArray("MemFree: 5 kB\nMemTotal: 7 kB") << 7LL * 1024;
    QTest::newRow("empty") << QByteArray() << ofTheKernel();
    QTest::newRow("no such line") << QByteArray("MemFree: 5 kB\n") << ofTheKernel();
    QTest::newRow("no number") << QByteArray("MemTotal: many\n") << ofTheKernel();
    QTest::newRow("nothing behind the name") << QByteArray("MemTotal:") << ofTheKernel();
    QTest::newRow("below zero") << QByteArray("MemTotal: -5 kB\n") << ofTheKernel();
    QTest::newRow("more than there can be") << QByteArray("MemTotal: 9223372036854775807 kB") << (1LL << 50);
}

void tst_ScanMemory::memoryOfTheMachine()
{
    QFETCH(QByteArray, contents);

    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("meminfo")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size());
    file.close();
    QTEST(machineMemory(file.fileName()), "bytes");
}

void tst_ScanMemory::memoryOfNoFile()
{
    QVERIFY(ofTheKernel() > 0);
    QCOMPARE(machineMemory(QStringLiteral("/nowhere/meminfo")), ofTheKernel());

    rlimit usual = {};
    QVERIFY(::getrlimit(RLIMIT_NOFILE, &usual) == 0);
    const rlimit none{3, usual.rlim_max}; // what is open stays
    QVERIFY(::setrlimit(RLIMIT_NOFILE, &none) == 0);
    const qint64 withoutHandles = machineMemory();
    QVERIFY(::setrlimit(RLIMIT_NOFILE, &usual) == 0);
    QCOMPARE(withoutHandles, ofTheKernel());
}

void tst_ScanMemory::moreThanThereIs()
{
    ScanMemory memory(100);
    QVERIFY(!memory.take(101));
    QCOMPARE(memory.used(), 0LL);
    QVERIFY(memory.take(100));
    QCOMPARE(memory.used(), 100LL);
    memory.giveBack(100);
    QCOMPARE(memory.used(), 0LL);
}

void tst_ScanMemory::threadsShareIt()
{
    ScanMemory memory(100);
    std::array<std::thread, 4> threads;
    std::latch begin(threads.size());
    std::atomic<int> taken = 0;
    std::atomic<qint64> most = 0;
    for (std::thread &thread : threads) {
        thread = std::thread([&, bytes = 30 + 10 * (&thread - threads.data())] {
            begin.arrive_and_wait();
            for (int i = 0; i < 2000; ++i) {
                taken += memory.take(bytes) ? 1 : 0;
                qint64 before = most;
                const qint64 now = memory.used();
                while (now > before && !most.compare_exchange_weak(before, now)) { }
                std::this_thread::yield();
                memory.giveBack(bytes);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join(); // nobody was forgotten
    QCOMPARE(int(taken), 8000);
    QVERIFY2(most <= 100, QByteArray::number(qint64(most)).constData());
    QCOMPARE(memory.used(), 0LL);
}

void tst_ScanMemory::mainThreadIsFirst()
{
    using namespace std::chrono;
    ScanMemory memory(100);
    QVERIFY(!memory.take(101));
    std::atomic<bool> begun = false;
    std::atomic<bool> over = false;
    std::atomic<int> taken = 0;
    bool stoodStill = false;
    std::thread other([&] {
        // There is always room for it, but not before the main thread.
        for (; !over; ++taken) {
            memory.take(10);
            memory.giveBack(10);
        }
    });
    std::thread holder([&] {
        memory.take(80);
        begun = true;
        const auto end = steady_clock::now() + 5s;
        for (int before = -1; !stoodStill && steady_clock::now() < end; std::this_thread::sleep_for(50ms)) {
            const int now = taken;
            stoodStill = std::exchange(before, now) == now;
        }
        memory.giveBack(80);
    });
    while (!begun)
        std::this_thread::yield();
    QVERIFY(memory.take(60));
    over = true;
    other.join();
    holder.join();
    QVERIFY(stoodStill);
    QCOMPARE(memory.used(), 60LL);
}

QTEST_GUILESS_MAIN(tst_ScanMemory)
#include "tst_scan_memory.moc"
