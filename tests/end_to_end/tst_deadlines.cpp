// When the pictures of a show change, by what the device itself has noted on its clock: a busy machine that
// wakes the test late changes nothing.

#include "ran_out.h"
#include "stored_show.h"

#include <QDir>
#include <QImage>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr double intervalMs = 1000;
constexpr double mostLateMs = 1000;
const QString showTimer = u"nextImageEvent"_s;

} // namespace

class tst_Deadlines : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void timedSteps();
    void stepRestartsTheInterval_data();
    void stepRestartsTheInterval();
    void pauseStays_data();
    void pauseStays();

private:
    /// Those of the show with a higher number than `number`.
    QList<RanOut> stepsAfter(qint64 number)
    {
        QList<RanOut> steps = RanOut::lately(*m_device);
        steps.removeIf([&](const RanOut &ran) { return ran.number <= number || ran.name != showTimer; });
        return steps;
    }
    qint64 lastNumber()
    {
        const QList<RanOut> steps = stepsAfter(0);
        return steps.isEmpty() ? 0 : steps.constLast().number;
    }
    /// Of the show, in ms; -1 where its timer is not pending.
    int remaining()
    {
        const QJsonArray timers = m_device->ask(u"timers"_s).value("timers"_L1).toArray();
        for (const QJsonValue timer : timers) {
            if (timer.toObject().value("name"_L1) == showTimer)
                return timer.toObject().value("remaining_ms"_L1).toInt();
        }
        return -1;
    }
    /// "key NAME" or a command without members.
    bool act(const QString &means)
    {
        if (!means.startsWith("key "_L1) && !means.startsWith("press "_L1))
            return m_device->does(means);
        return m_device->does(means.section(u' ', 0, 0), {{u"name"_s, means.section(u' ', 1)}});
    }

    std::unique_ptr<ShowDevice> m_device;
};

void tst_Deadlines::initTestCase()
{
    QVERIFY(QDir().mkpath(u"/mnt/ext1/Timed"_s));
    QStringList paths;
    for (int i = 0; i < 3; ++i) {
        paths.append(u"/mnt/ext1/Timed/%1.png"_s.arg(i));
        QImage picture(60, 80, QImage::Format_RGB32);
        picture.fill(qRgb(80 * i, 80 * i, 80 * i));
        QVERIFY(picture.save(paths.constLast()));
    }
    QVERIFY(stored_show::store(paths, {{u"change_picture_time"_s, u"1"_s}}));
}

void tst_Deadlines::init()
{
    m_device = std::make_unique<ShowDevice>();
    QVERIFY(m_device->start());
    QVERIFY(m_device->play());
}

void tst_Deadlines::cleanup()
{
    QCOMPARE(m_device->unexpectedErrors(), QByteArrayList());
    m_device.reset();
}

void tst_Deadlines::timedSteps()
{
    const std::size_t count = qEnvironmentVariableIsSet("SLATE_LONG") ? 1000 : 10;
    std::vector<RanOut> steps;
    qint64 last = lastNumber();
    QVERIFY(QTest::qWaitFor(
        [&] {
            for (const RanOut &step : stepsAfter(last)) {
                last = step.number;
                steps.push_back(step);
            }
            return steps.size() >= count;
        },
        int(count) * 2000 + 10'000));

    std::vector<double> late;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        QCOMPARE(steps[i].intervalMs, intervalMs);
        QVERIFY(!steps[i].fired);
        late.push_back(steps[i].lateMs());
        if (i > 0) { // the wait begins when the picture before has been dealt with, and at once
            const double handling = steps[i].armedMs - steps[i - 1].ranMs;
            QVERIFY2(handling >= 0 && handling < mostLateMs, qPrintable(QString::number(handling)));
        }
    }
    std::ranges::sort(late);
    std::printf("%zu steps: %.3f ms late in the middle, %.3f ms at most; %.3f s for %zu intervals\n",
                late.size(), late[late.size() / 2], late.back(),
                (steps.back().ranMs - steps.front().ranMs) / 1000, steps.size() - 1);
    QVERIFY2(late.front() >= 0, qPrintable(QString::number(late.front())));
    QVERIFY2(late.back() < mostLateMs, qPrintable(QString::number(late.back())));
    // What each picture stays too long adds up.
    QVERIFY2(late[late.size() / 2] < intervalMs / 50, qPrintable(QString::number(late[late.size() / 2])));
}

void tst_Deadlines::stepRestartsTheInterval_data()
{
    QTest::addColumn<QString>("step");
    QTest::newRow("forward") << u"key next"_s;
    QTest::newRow("back") << u"key prev"_s;
}

void tst_Deadlines::stepRestartsTheInterval()
{
    QFETCH(QString, step);

    // Half of an interval has gone by.
    QVERIFY(QTest::qWaitFor([this] { return remaining() > 0 && remaining() < intervalMs / 2; }, 10'000));
    const qint64 last = lastNumber();
    const double before = RanOut::nowMs();
    QVERIFY(act(step));
    const double after = RanOut::nowMs();
    // A slow machine may have let the timer run out before the step was there.
    QList<RanOut> restarted;
    QVERIFY(QTest::qWaitFor(
        [&] {
            restarted = stepsAfter(last);
            restarted.removeIf([&](const RanOut &ran) { return ran.armedMs < before; });
            return !restarted.isEmpty();
        },
        10'000));
    QVERIFY(restarted.constFirst().armedMs <= after);
    QCOMPARE(restarted.constFirst().intervalMs, intervalMs); // the whole of it
    QVERIFY(restarted.constFirst().lateMs() >= 0);
}

void tst_Deadlines::pauseStays_data()
{
    QTest::addColumn<QString>("pause");
    QTest::addColumn<QString>("resume");
    QTest::newRow("menu") << u"press #wrapper"_s << u"key menu"_s;
    QTest::newRow("background") << u"background"_s << u"foreground"_s;
}

void tst_Deadlines::pauseStays()
{
    QFETCH(QString, pause);
    QFETCH(QString, resume);

    QVERIFY(act(pause));
    const qint64 last = lastNumber();
    QCOMPARE(remaining(), -1);
    const double paused = RanOut::nowMs();
    QVERIFY(QTest::qWaitFor([&] { return RanOut::nowMs() > paused + 1.5 * intervalMs; }, 10'000));
    QCOMPARE(remaining(), -1);
    QVERIFY(stepsAfter(last).isEmpty());

    const double before = RanOut::nowMs();
    QVERIFY(act(resume));
    QVERIFY(QTest::qWaitFor([&] { return !stepsAfter(last).isEmpty(); }, 10'000));
    const RanOut next = stepsAfter(last).constFirst();
    QVERIFY(next.armedMs >= before);
    QCOMPARE(next.intervalMs, intervalMs); // the whole of it
    QVERIFY(next.lateMs() >= 0);
}

QTEST_GUILESS_MAIN(tst_Deadlines)
#include "tst_deadlines.moc"
