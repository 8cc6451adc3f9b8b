// Named one-shot timers.

#include <timers.h>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace lindenreed::device;
using namespace std::chrono_literals;

namespace {

struct Counter
{
    int calls = 0;
    static void count(void *context) { ++static_cast<Counter *>(context)->calls; }
};

/// Notes the order in which several timers run out.
struct Note
{
    QByteArrayList *order;
    QByteArray name;
    static void write(void *context)
    {
        const Note *note = static_cast<Note *>(context);
        note->order->append(note->name);
    }
};

/// Arms itself again inside its callback.
struct Repeater
{
    Timers *timers;
    int calls = 0;
    bool inside = false;
    bool pendingInside = false;
    static void run(void *context)
    {
        auto *self = static_cast<Repeater *>(context);
        self->pendingInside = self->pendingInside || !self->timers->pending().isEmpty();
        self->inside = true;
        ++self->calls;
        const int before = self->calls;
        self->timers->arm("again", run, self, 0ms);
        self->pendingInside = self->pendingInside || self->calls != before;
        self->inside = false;
    }
};

} // namespace

class tst_Timers : public QObject
{
    Q_OBJECT

private slots:
    void runsOutOnce();
    void keepsItsTime();
    void delayOfZeroIsNeverSynchronous();
    void negativeDelayIsZero();
    void zeroForEverLeavesRoom();
    void armsItselfAgain();
    void replaces();
    void clears();
    void clearsAll();
    void clearedByAnEarlierCallback();
    void armedAnewByAnEarlierCallback();
    void firesAtTheNextTurn();
    void soonestFirst();
    void runsOutInOrderOfDeadlines();
    void longDelays_data();
    void longDelays();
    void emptyName();
    void tellsChanges();
    void notesWhatRanOut();
    void nestedLoop();
    void destroyedByItsCallback();
};

void tst_Timers::runsOutOnce()
{
    Timers timers;
    Counter counter;
    timers.arm("a", Counter::count, &counter, 1ms);
    QTRY_COMPARE(counter.calls, 1);
    QVERIFY(timers.pending().isEmpty());
    QVERIFY(!timers.clear("a"));

    Counter later;
    timers.arm("b", Counter::count, &later, 20ms);
    QTRY_COMPARE(later.calls, 1);
    QCOMPARE(counter.calls, 1);
}

void tst_Timers::keepsItsTime()
{
    Timers timers;
    Counter counter;
    QElapsedTimer clock;
    clock.start();
    timers.arm("a", Counter::count, &counter, 120ms);
    QTRY_COMPARE(counter.calls, 1);
    QVERIFY2(clock.elapsed() >= 120, "ran out too early");
}

void tst_Timers::delayOfZeroIsNeverSynchronous()
{
    Timers timers;
    Counter counter;
    timers.arm("a", Counter::count, &counter, 0ms);
    QCOMPARE(counter.calls, 0);
    QCOMPARE(timers.pending().size(), 1);
    QCOMPARE(timers.pending().constFirst().remaining, 0ms);
    QCOMPARE(timers.pending().constFirst().interval, 0ms);
    QTRY_COMPARE(counter.calls, 1);
}

void tst_Timers::negativeDelayIsZero()
{
    Timers timers;
    Counter counter;
    timers.arm("a", Counter::count, &counter, -5000ms);
    QCOMPARE(counter.calls, 0);
    QCOMPARE(timers.pending().constFirst().interval, 0ms);
    QTRY_COMPARE(counter.calls, 1);
}

void tst_Timers::zeroForEverLeavesRoom()
{
    Timers timers;
    Repeater repeater{&timers};
    timers.arm("again", Repeater::run, &repeater, 0ms);

    // Others' timers, posted events and other named timers all get their turn meanwhile.
    Counter named;
    timers.arm("named", Counter::count, &named, 5ms);
    bool posted = false;
    QMetaObject::invokeMethod(
        this, [&posted] { posted = true; }, Qt::QueuedConnection);
    bool plain = false;
    QTimer::singleShot(10, this, [&plain] { plain = true; });
    QTRY_VERIFY(posted && plain && named.calls == 1 && repeater.calls > 5);

    // One turn of the loop runs it at most once.
    const int before = repeater.calls;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QVERIFY(repeater.calls <= before + 1);
}

void tst_Timers::armsItselfAgain()
{
    Timers timers;
    Repeater repeater{&timers};
    timers.arm("again", Repeater::run, &repeater, 0ms);
    QTRY_VERIFY(repeater.calls >= 3);
    QVERIFY2(!repeater.pendingInside,
             "the entry is gone before its callback, which arms without being called");
    QCOMPARE(timers.pending().size(), 1);
}

void tst_Timers::replaces()
{
    Timers timers;
    Counter first;
    Counter second;
    timers.arm("a", Counter::count, &first, 1ms);
    timers.arm("a", Counter::count, &second, 10ms);
    QCOMPARE(timers.pending().size(), 1);
    QCOMPARE(timers.pending().constFirst().interval, 10ms);
    QTRY_COMPARE(second.calls, 1);
    QCOMPARE(first.calls, 0);
}

void tst_Timers::clears()
{
    Timers timers;
    Counter cleared;
    Counter kept;
    timers.arm("a", Counter::count, &cleared, 1ms);
    timers.arm("b", Counter::count, &kept, 15ms);
    QVERIFY(timers.clear("a"));
    QVERIFY(!timers.clear("a"));
    QVERIFY(!timers.clear("never armed"));
    QTRY_COMPARE(kept.calls, 1);
    QCOMPARE(cleared.calls, 0);
}

void tst_Timers::clearsAll()
{
    Timers timers;
    Counter counter;
    timers.arm("a", Counter::count, &counter, 0ms);
    timers.arm("b", Counter::count, &counter, 1ms);
    timers.clearAll();
    QVERIFY(timers.pending().isEmpty());
    Counter kept;
    timers.arm("c", Counter::count, &kept, 10ms);
    QTRY_COMPARE(kept.calls, 1);
    QCOMPARE(counter.calls, 0);
}

void tst_Timers::clearedByAnEarlierCallback()
{
    Timers timers;
    Counter counter;
    timers.arm(
        "first", [](void *all) { static_cast<Timers *>(all)->clear("second"); }, &timers, 0ms);
    timers.arm("second", Counter::count, &counter, 0ms);
    Counter last;
    timers.arm("third", Counter::count, &last, 20ms);
    QTRY_COMPARE(last.calls, 1);
    QCOMPARE(counter.calls, 0);
}

void tst_Timers::armedAnewByAnEarlierCallback()
{
    struct Both
    {
        Timers timers;
        Counter before, after;
    } both;
    both.timers.arm(
        "first",
        [](void *context) {
            auto *all = static_cast<Both *>(context);
            all->timers.arm("second", Counter::count, &all->after, 5ms);
        },
        &both, 0ms);
    both.timers.arm("second", Counter::count, &both.before, 0ms);
    QTRY_COMPARE(both.after.calls, 1);
    QCOMPARE(both.before.calls, 0);
}

void tst_Timers::firesAtTheNextTurn()
{
    Timers timers;
    Counter counter;
    timers.arm("hour", Counter::count, &counter, 1h);
    QSignalSpy ranOut(&timers, &Timers::ranOut);
    QVERIFY(timers.fire("hour"));
    QCOMPARE(counter.calls, 0);
    QCOMPARE(timers.pending().size(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(counter.calls, 1);
    QCOMPARE(ranOut.size(), 1);
    QCOMPARE(ranOut.constFirst().constFirst().toByteArray(), QByteArray("hour"));
    QVERIFY(!timers.fire("hour"));
    QVERIFY(!timers.fire("never armed"));
}

void tst_Timers::soonestFirst()
{
    Timers timers;
    timers.arm("late", Counter::count, nullptr, 3h);
    timers.arm("soon", Counter::count, nullptr, 1h);
    timers.arm("middle", Counter::count, nullptr, 2h);
    const QList<PendingTimer> pending = timers.pending();
    QCOMPARE(pending.size(), 3);
    QCOMPARE(pending.at(0).name, QByteArray("soon"));
    QCOMPARE(pending.at(1).name, QByteArray("middle"));
    QCOMPARE(pending.at(2).name, QByteArray("late"));
    QVERIFY(pending.at(0).remaining <= 1h && pending.at(0).remaining > 59min);
    QCOMPARE(pending.at(0).interval, std::chrono::milliseconds(1h));
}

void tst_Timers::runsOutInOrderOfDeadlines()
{
    Timers timers;
    QByteArrayList order;
    Note a{&order, "a"};
    Note b{&order, "b"};
    Note c{&order, "c"};
    timers.arm("x", Note::write, &c, 12ms);
    timers.arm("y", Note::write, &a, 3ms);
    timers.arm("z", Note::write, &b, 7ms);
    QTRY_COMPARE(order.size(), 3);
    QCOMPARE(order, QByteArrayList({"a", "b", "c"}));
}

void tst_Timers::longDelays_data()
{
    QTest::addColumn<qint64>("delay");
    QTest::addColumn<qint64>("interval");

    const qint64 century = qint64(36'525) * 24 * 3'600'000;
    QTest::newRow("thirty days") << qint64(30) * 24 * 3'600'000 << qint64(30) * 24 * 3'600'000;
    QTest::newRow("one above an int") << qint64(2'147'483'648) << qint64(2'147'483'648);
    QTest::newRow("an int turned over to 1 ms") << qint64(4'294'967'297) << qint64(4'294'967'297);
    QTest::newRow("longest") << std::numeric_limits<qint64>::max() << century;
}

void tst_Timers::longDelays()
{
    QFETCH(qint64, delay);
    QFETCH(qint64, interval);

    Timers timers;
    Counter counter;
    Counter other;
    timers.arm("far", Counter::count, &counter, std::chrono::milliseconds(delay));
    timers.arm("near", Counter::count, &other, 10ms);
    QTRY_COMPARE(other.calls, 1);
    QCOMPARE(counter.calls, 0);
    QCOMPARE(timers.pending().size(), 1);
    QCOMPARE(qint64(timers.pending().constFirst().interval.count()), interval);
    QVERIFY(timers.pending().constFirst().remaining.count() > interval - 60'000);
}

void tst_Timers::emptyName()
{
    Timers timers;
    Counter counter;
    timers.arm("", Counter::count, &counter, 0ms);
    QTRY_COMPARE(counter.calls, 1);
}

void tst_Timers::tellsChanges()
{
    Timers timers;
    QSignalSpy changed(&timers, &Timers::changed);
    timers.arm("a", Counter::count, nullptr, 1h);
    QCOMPARE(changed.size(), 1);
    timers.clear("b");
    QCOMPARE(changed.size(), 1);
    timers.clear("a");
    QCOMPARE(changed.size(), 2);
    timers.clearAll();
    QCOMPARE(changed.size(), 2);
    Counter counter;
    timers.arm("c", Counter::count, &counter, 0ms);
    QTRY_COMPARE(counter.calls, 1);
    QCOMPARE(changed.size(), 4);
}

void tst_Timers::notesWhatRanOut()
{
    using Clock = std::chrono::steady_clock;
    Timers timers;
    Counter counter;
    const auto before = Clock::now();
    timers.arm("a", Counter::count, &counter, 30ms);
    const auto armed = Clock::now();
    QVERIFY(timers.lately().isEmpty());
    QTRY_COMPARE(counter.calls, 1);
    const auto ran = Clock::now();
    QCOMPARE(timers.lately().size(), 1);
    const RanOut first = timers.lately().constFirst();
    QCOMPARE(first.number, 1ULL);
    QCOMPARE(first.name, "a");
    QCOMPARE(first.interval, 30ms);
    QVERIFY(first.armed >= before && first.armed <= armed);
    QVERIFY(first.ran >= first.armed + 30ms && first.ran <= ran);
    QVERIFY(!first.fired);

    for (int i = 0; i < 21; ++i) {
        timers.arm("b", Counter::count, &counter, 1h);
        QVERIFY(timers.fire("b"));
        QTRY_COMPARE(counter.calls, i + 2);
    }
    QCOMPARE(timers.lately().size(), 20);
    QCOMPARE(timers.lately().constFirst().number, 3ULL);
    QCOMPARE(timers.lately().constLast().number, 22ULL);
    QVERIFY(timers.lately().constLast().fired);
}

void tst_Timers::nestedLoop()
{
    struct Both
    {
        Timers timers;
        Counter inner;
        bool ranInside = false;
    } both;
    both.timers.arm(
        "outer",
        [](void *context) {
            auto *all = static_cast<Both *>(context);
            all->timers.arm("inner", Counter::count, &all->inner, 1ms);
            all->ranInside = QTest::qWaitFor([all] { return all->inner.calls == 1; });
        },
        &both, 0ms);
    QTRY_COMPARE(both.inner.calls, 1);
    QVERIFY(both.ranInside);
}

void tst_Timers::destroyedByItsCallback()
{
    struct Holder
    {
        std::unique_ptr<Timers> timers = std::make_unique<Timers>();
        Counter other;
    } holder;
    holder.timers->arm(
        "end", [](void *context) { static_cast<Holder *>(context)->timers.reset(); }, &holder, 0ms);
    holder.timers->arm("other", Counter::count, &holder.other, 0ms);
    QTRY_VERIFY(!holder.timers);
    QCOMPARE(holder.other.calls, 0);
}

QTEST_GUILESS_MAIN(tst_Timers)
#include "tst_timers.moc"
