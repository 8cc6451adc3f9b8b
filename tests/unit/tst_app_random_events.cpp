// Ten thousand events of the device, at random, in all views: nothing breaks, and no promise of the show is
// broken.
//
// SLATE_SEED repeats the run of another seed.

#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <device.h>
#include <slateview.h>

#include <QImage>
#include <QScopeGuard>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <random>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::picture_stand::App;

namespace {

constexpr int eventCount = 10'000;

/// What happens, and how often beside the others.
enum Action {
    Key,
    ScanCode,
    Orientation,
    Foreground,
    Background,
    Media,
    Unknown,
    TimerRunsOut,
    View,
    List,
    Turn
};
constexpr std::array<double, 11> weights{24, 14, 8, 8, 8, 6, 12, 8, 8, 2, 2};

class Chance
{
public:
    explicit Chance(quint32 seed)
        : m_random(seed)
    {
    }

    Action action() { return Action(m_actions(m_random)); }
    int between(int low, int high) { return std::uniform_int_distribution(low, high)(m_random); }
    template <typename List>
    auto oneOf(const List &list)
    {
        return list.at(between(0, int(list.size()) - 1));
    }

    /// One of those that mean something, or an extreme, or anything.
    int parameter(const QList<int> &sensible)
    {
        using Limits = std::numeric_limits<int>;
        if (between(0, 9) < 7)
            return oneOf(sensible);
        const QList<int> extremes{Limits::min(),     Limits::min() + 1, -1, 0, 1,
                                  Limits::max() - 1, Limits::max()};
        return between(0, 1) == 0 ? oneOf(extremes) : between(Limits::min(), Limits::max());
    }

private:
    std::mt19937 m_random;
    std::discrete_distribution<int> m_actions{weights.begin(), weights.end()};
};

quint32 chosenSeed()
{
    bool given = false;
    const quint32 seed = qEnvironmentVariable("SLATE_SEED").toUInt(&given);
    return given ? seed : std::random_device()();
}

bool isShowTimerPending()
{
    const auto pending = Device::instance()->timers.pending();
    return std::any_of(pending.begin(), pending.end(),
                       [](const auto &timer) { return timer.name == "nextImageEvent"; });
}

} // namespace

class tst_AppRandomEvents : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void tenThousand();

private:
    QByteArray happen(RunningApp &running, Chance &chance);
    void promisesHold(const RunningApp &running);

    std::unique_ptr<AppFixture> m_test;
};

/// Lets one thing happen; what it was.
QByteArray tst_AppRandomEvents::happen(RunningApp &running, Chance &chance)
{
    static const QStringList views{u"slideshow"_s,
                                   u"slideshow"_s, // the one with most to break
                                   u"slideshow"_s,
                                   u"playlists"_s,
                                   u"playlist"_s,
                                   u"select_photos"_s,
                                   u"settings_slideshow"_s,
                                   u"settings_created_datetime"_s,
                                   u"settings_current_datetime"_s,
                                   u"settings_customize_created_date"_s,
                                   u"settings_customize_current_date"_s,
                                   u"no such view"_s};
    const auto send = [&](int type, const QList<int> &sensible) {
        const int par1 = chance.parameter(sensible);
        const int par2 = chance.parameter({0, 1});
        m_test->device.send(type, par1, par2);
        return QByteArray::number(type) + ' ' + QByteArray::number(par1) + ' ' + QByteArray::number(par2);
    };
    switch (chance.action()) {
    case Key:
        return send(25, {23, 24, 25});
    case ScanCode:
        return send(40, {0, 7, 8, 9, 10});
    case Orientation:
        return send(32, {0, 1, 2, 3});
    case Foreground:
        return send(151, {0});
    case Background:
        return send(152, {0});
    case Media:
        return send(chance.between(161, 164), {0});
    case Unknown:
        return send(chance.parameter({0, 24, 26, 31, 33, 39, 41, 43, 150, 153, 160, 165, 212}), {0, 24, 25});
    case TimerRunsOut:
        Device::instance()->timers.fire(chance.between(0, 3) == 0 ? "updateDateTimeEvent" : "nextImageEvent");
        return "a timer";
    case View: {
        const QString view = chance.oneOf(views);
        running.app.changeView(view);
        return view.toUtf8();
    }
    case List: {
        const QStringList list = m_test->paths.first(chance.between(0, int(m_test->paths.size())));
        running.slideshow()->initFromList(list, chance.between(0, 40));
        running.slideshow()->shuffleChange(chance.between(0, 1) == 0);
        if (list.isEmpty())
            running.slideshow()->stop(); // nobody starts one
        else
            running.slideshow()->start();
        return "a list of " + QByteArray::number(list.size());
    }
    case Turn:
        QCoreApplication::processEvents();
        return "a turn of the loop";
    }
    return {};
}

void tst_AppRandomEvents::promisesHold(const RunningApp &running)
{
    // A show runs, or it does not: awake, unlocked and with a timer pending, or none of it.
    const bool awake = !Device::instance()->power.autoPowerOff();
    QCOMPARE(!Device::instance()->power.autoKeylock(), awake);
    QCOMPARE(isShowTimerPending(), awake);
    const QString picture = running.slideshow()->currentImage();
    QVERIFY(picture.isEmpty() || m_test->paths.contains(picture));
    if (running.app.currentView() != "slideshow"_L1)
        QCOMPARE(GetOrientation(), 0);
}

void tst_AppRandomEvents::tenThousand()
{
    const quint32 seed = chosenSeed();
    qInfo("SLATE_SEED=%u", seed);
    Chance chance(seed);
    m_test->configure(
        "btkeys.count=4\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=@KA_next\n"
        "btkeys.bt2.scanCode=8\ntkey.bt2.0=@KA_prev\nbtkeys.bt3.scanCode=9\ntkey.bt3.0=@KA_menu\n"
        "btkeys.bt4.scanCode=10\ntkey.bt4.0=@KA_none\n");
    App app;
    stored_database::hurry();
    QByteArrayList lately;
    const auto tell = qScopeGuard([&] {
        if (QTest::currentTestFailed())
            qInfo("last: %s", lately.join("; ").constData());
    });
    const int status = runApp(app, [&](RunningApp &running) {
        for (int i = 0; i < eventCount; ++i) {
            lately.append(happen(running, chance));
            if (lately.size() > 20)
                lately.removeFirst();
            promisesHold(running);
            if (QTest::currentTestFailed())
                return;
            if (i % 16 == 0) {
                QCoreApplication::processEvents(); // drawing is what takes the time
                m_test->device.forgetCalls();
            }
        }
        // It still does what it is for.
        running.slideshow()->stop();
        running.slideshow()->initFromList(m_test->paths, 30);
        app.changeView(u"playlists"_s);
        app.changeView(u"slideshow"_s);
        m_test->device.send(25, 25);
        QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(1));
        QVERIFY(isShowTimerPending());
        QVERIFY(m_test->device.fire("nextImageEvent"));
        QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(2));
    });
    QCOMPARE(status, 0);
}

PANEL_TEST_MAIN(tst_AppRandomEvents)
#include "tst_app_random_events.moc"
