// The last calls that crossed the SDK boundary.

#include <journal.h>

#include <QTest>

#include <thread>
#include <vector>

using namespace lindenreed::device;

class tst_Journal : public QObject
{
    Q_OBJECT

private slots:
    void init() { journal::forget(); }
    void keepsWhatItIsTold();
    void ringOfAThousand();
    void numbersGoOnAfterForgetting();
    void threads();
};

void tst_Journal::keepsWhatItIsTold()
{
    journal::record("SetPanelType", {"1"});
    journal::record("GetPanelType", {}, "1");
    const QList<SdkCall> calls = journal::entries();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).name, QByteArray("SetPanelType"));
    QCOMPARE(calls.at(0).arguments, QByteArrayList({"1"}));
    QVERIFY(calls.at(0).result.isEmpty());
    QVERIFY(calls.at(0).onMainThread);
    QCOMPARE(calls.at(1).result, QByteArray("1"));
    QCOMPARE(calls.at(1).number, calls.at(0).number + 1);
}

void tst_Journal::ringOfAThousand()
{
    for (int i = 1; i <= 1000; ++i)
        journal::record(QByteArray::number(i));
    QCOMPARE(journal::entries().size(), 1000);
    QCOMPARE(journal::entries().constFirst().name, QByteArray("1"));
    journal::record("1001");
    const QList<SdkCall> calls = journal::entries();
    QCOMPARE(calls.size(), 1000);
    QCOMPARE(calls.constFirst().name, QByteArray("2"));
    QCOMPARE(calls.constLast().name, QByteArray("1001"));
}

void tst_Journal::numbersGoOnAfterForgetting()
{
    journal::record("a");
    const quint64 number = journal::entries().constFirst().number;
    journal::forget();
    QVERIFY(journal::entries().isEmpty());
    journal::record("b");
    QCOMPARE(journal::entries().constFirst().number, number + 1);
}

void tst_Journal::threads()
{
    constexpr int each = 200;
    std::vector<std::thread> workers;
    for (int worker = 0; worker < 4; ++worker) {
        workers.emplace_back([worker] {
            for (int i = 0; i < each; ++i)
                journal::record(QByteArray::number(worker), {QByteArray::number(i)});
        });
    }
    journal::record("main");
    for (std::thread &worker : workers)
        worker.join();

    const QList<SdkCall> calls = journal::entries();
    QCOMPARE(calls.size(), 4 * each + 1);
    QHash<QByteArray, int> next;
    for (qsizetype i = 0; i < calls.size(); ++i) {
        const SdkCall &call = calls.at(i);
        QCOMPARE(call.number, calls.constFirst().number + quint64(i));
        QCOMPARE(call.onMainThread, call.name == "main");
        if (!call.onMainThread)
            QCOMPARE(call.arguments.constFirst().toInt(), next[call.name]++);
    }
}

QTEST_APPLESS_MAIN(tst_Journal)
#include "tst_journal.moc"
