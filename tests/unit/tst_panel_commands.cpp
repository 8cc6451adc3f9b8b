// The device's commands: state, what the rest of the device would do, idle, the end.

// Else QtTest would take the signals.
#define PANEL_TEST_ARGUMENTS QStringList(QStringLiteral("-nocrashhandler"))
#include "panel_application.h"
#include "panel_qml.h"
#include "panel_remote.h"
#include "panel_view.h"
#include "recorded_events.h"

#include <device.h>
#include <journal.h>

#include <QJsonArray>
#include <QtConcurrent>

#include <csignal>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using lindenreed::device::Device;

namespace {

int timerRuns = 0;

void countRun(void *)
{
    ++timerRuns;
}

} // namespace

class tst_PanelCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void state();
    void timersAndFire();
    void events_data();
    void events();
    void task();
    void light();
    void lightWithoutColour();
    void invert();
    void orientationTurnsNothing();
    void journal();
    void opened();
    void idleWhenNothingHappens();
    void idleWaitsForDrawing();
    void idleWaitsForAClearedPanel();
    void idleWaitsForThreads();
    void idleGivesUp();
    void badArguments_data();
    void badArguments();
    void previousOrientation();
    void quit();
    void signalsQuit_data();
    void signalsQuit();

private:
    std::unique_ptr<PanelRemote> m_remote;
    std::optional<RecordedEvents> m_events;
};

void tst_PanelCommands::init()
{
    m_remote = std::make_unique<PanelRemote>();
    m_events.emplace();
}

void tst_PanelCommands::cleanup()
{
    m_events.reset();
    Device::instance()->timers.clearAll();
    Device::instance()->screen.setInverted(false);
    m_remote.reset();
}

void tst_PanelCommands::state()
{
    Device &device = *Device::instance();
    device.light.setBrightness(33);
    device.power.setAutoPowerOff(false);
    device.timers.arm("later", countRun, nullptr, 1h);
    const QJsonObject answer = m_remote->ask(u"state"_s);
    QCOMPARE(code(answer), u"ok"_s);
    QCOMPARE(answer.value(u"protocol"_s).toInt(), 1);
    QCOMPARE(answer.value(u"profile"_s).toString(), u"grey-8"_s);
    QCOMPARE(answer.value(u"touch"_s), QJsonValue(true));
    QVERIFY(answer.value(u"language"_s).isString());
    const QJsonObject screen{
        {u"width"_s, 1404}, {u"height"_s, 1872}, {u"orientation"_s, 0}, {u"inverted"_s, false}};
    QCOMPARE(answer.value(u"screen"_s).toObject(), screen);
    const QJsonObject panel = answer.value(u"panel"_s).toObject();
    QCOMPARE(panel.value(u"type"_s).toInt(), 1);
    QCOMPARE(panel.value(u"height"_s).toInt(), 64);
    QCOMPARE(panel.value(u"refreshes"_s).toInteger(), qint64(panel_view::refreshNumber()));
    QVERIFY(panel.contains(u"last_mode"_s));
    const QJsonObject light = answer.value(u"light"_s).toObject();
    QCOMPARE(light.value(u"brightness"_s).toInt(), 33);
    QCOMPARE(light.keys(),
             QStringList({u"brightness"_s, u"brightness_auto"_s, u"color"_s, u"color_auto"_s, u"enabled"_s}));
    const QJsonObject power = answer.value(u"power"_s).toObject();
    QCOMPARE(power.value(u"auto_power_off"_s), QJsonValue(false));
    QCOMPARE(power.value(u"auto_keylock"_s), QJsonValue(true));
    QVERIFY(power.contains(u"ban_sleep"_s));
    QCOMPARE(answer.value(u"timers"_s).toArray().size(), 1);
    QVERIFY(answer.value(u"media"_s).toObject().value(u"sd"_s).isBool());
    QVERIFY(answer.value(u"media"_s).toObject().value(u"usb"_s).isBool());
    device.power.setAutoPowerOff(true);
}

void tst_PanelCommands::timersAndFire()
{
    timerRuns = 0;
    Device::instance()->timers.arm("nextImageEvent", countRun, nullptr, 1h);
    const QJsonArray timers = m_remote->ask(u"timers"_s).value(u"timers"_s).toArray();
    QCOMPARE(timers.size(), 1);
    QCOMPARE(timers.at(0).toObject().value(u"name"_s).toString(), u"nextImageEvent"_s);
    QCOMPARE(timers.at(0).toObject().value(u"interval_ms"_s).toInt(), 3'600'000);
    QVERIFY(timers.at(0).toObject().value(u"remaining_ms"_s).toInt() > 3'500'000);

    QCOMPARE(code(m_remote->ask(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}})), u"ok"_s);
    QCOMPARE(timerRuns, 1); // it has run when the answer comes
    const QJsonObject ran = m_remote->ask(u"timers"_s).value(u"ran_out"_s).toArray().last().toObject();
    QCOMPARE(ran.keys(),
             QStringList({u"armed_us"_s, u"fired"_s, u"interval_ms"_s, u"name"_s, u"number"_s, u"ran_us"_s}));
    QCOMPARE(ran.value(u"name"_s).toString(), u"nextImageEvent"_s);
    QCOMPARE(ran.value(u"interval_ms"_s).toInt(), 3'600'000);
    QCOMPARE(ran.value(u"fired"_s), QJsonValue(true));
    QVERIFY(ran.value(u"number"_s).toInt() > 0);
    QVERIFY(ran.value(u"armed_us"_s).toInteger() > 0);
    QVERIFY(ran.value(u"ran_us"_s).toInteger() >= ran.value(u"armed_us"_s).toInteger());
    QCOMPARE(code(m_remote->ask(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}})), u"no-such-item"_s);
}

void tst_PanelCommands::events_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QJsonObject>("members");
    QTest::addColumn<QString>("event");
    QTest::newRow("any event") << u"event"_s << QJsonObject{{u"type"_s, 40}, {u"par1"_s, 7}, {u"par2"_s, -1}}
                               << u"40 7 -1"_s;
    QTest::newRow("parameters left out") << u"event"_s << QJsonObject{{u"type"_s, 40}} << u"40 0 0"_s;
    QTest::newRow("background") << u"background"_s << QJsonObject() << u"152 0 0"_s;
    QTest::newRow("foreground") << u"foreground"_s << QJsonObject() << u"151 0 0"_s;
    QTest::newRow("orientation") << u"orientation"_s << QJsonObject{{u"value"_s, 3}} << u"32 3 0"_s;
}

void tst_PanelCommands::events()
{
    QFETCH(QString, command);
    QFETCH(QJsonObject, members);
    QFETCH(QString, event);
    QCOMPARE(code(m_remote->ask(command, members)), u"ok"_s);
    QCOMPARE(m_events->texts(), QStringList{event});
}

void tst_PanelCommands::task()
{
    const auto inForeground
        = [this] { return m_remote->ask(u"state"_s).value(u"task"_s).toObject().value(u"foreground"_s); };
    PanelRemote listener;
    QVERIFY(listener.ask(u"follow"_s).value(u"ok"_s).toBool());
    QCOMPARE(inForeground(), QJsonValue(true));
    QCOMPARE(code(m_remote->ask(u"background"_s)), u"ok"_s);
    QCOMPARE(inForeground(), QJsonValue(false));
    QCOMPARE(listener.nextLine(), QJsonObject({{u"event"_s, u"changed"_s}}));
    QCOMPARE(code(m_remote->ask(u"foreground"_s)), u"ok"_s);
    QCOMPARE(inForeground(), QJsonValue(true));
}

void tst_PanelCommands::light()
{
    const QJsonObject all{{u"brightness"_s, 12},
                          {u"color"_s, 34},
                          {u"auto"_s, true},
                          {u"color_auto"_s, true},
                          {u"enabled"_s, false}};
    QCOMPARE(code(m_remote->ask(u"light"_s, all)), u"ok"_s);
    auto &light = Device::instance()->light;
    QCOMPARE(light.brightness(), 12);
    QCOMPARE(light.colour(), 34);
    QVERIFY(light.brightnessAuto() && light.colourAuto() && !light.enabled());
    QCOMPARE(
        code(m_remote->ask(u"light"_s, {{u"enabled"_s, true}, {u"auto"_s, false}, {u"color_auto"_s, false}})),
        u"ok"_s);
    QVERIFY(!light.brightnessAuto() && !light.colourAuto() && light.enabled());
    QCOMPARE(light.brightness(), 12); // what is not named stays
    QCOMPARE(panel_view::snapshot().header.brightness, 12U);
    QCOMPARE(panel_view::snapshot().header.colour, 34U);
}

void tst_PanelCommands::invert()
{
    QCOMPARE(code(m_remote->ask(u"invert"_s, {{u"on"_s, true}})), u"ok"_s);
    QVERIFY(Device::instance()->screen.inverted());
    QCOMPARE(code(m_remote->ask(u"invert"_s, {{u"on"_s, false}})), u"ok"_s);
    QVERIFY(!Device::instance()->screen.inverted());
}

void tst_PanelCommands::orientationTurnsNothing()
{
    QCOMPARE(code(m_remote->ask(u"orientation"_s, {{u"value"_s, 1}})), u"ok"_s);
    QCOMPARE(Device::instance()->screen.orientation(), 0);
}

void tst_PanelCommands::journal()
{
    using namespace lindenreed::device;
    journal::forget();
    journal::record("BanSleep", {"1"}, "0");
    journal::record("GetLangText", {"@Play"}, "Play");
    const QJsonArray all = m_remote->ask(u"journal"_s).value(u"calls"_s).toArray();
    QCOMPARE(all.size(), 2);
    const QJsonObject first = all.at(0).toObject();
    QCOMPARE(first.value(u"name"_s).toString(), u"BanSleep"_s);
    QCOMPARE(first.value(u"arguments"_s).toArray(), QJsonArray{u"1"_s});
    QCOMPARE(first.value(u"result"_s).toString(), u"0"_s);
    QCOMPARE(first.value(u"thread"_s).toString(), u"main"_s);
    QVERIFY(first.value(u"number"_s).toInteger() > 0);
    const QJsonArray last = m_remote->ask(u"journal"_s, {{u"n"_s, 1}}).value(u"calls"_s).toArray();
    QCOMPARE(last.size(), 1);
    QCOMPARE(last.at(0).toObject().value(u"name"_s).toString(), u"GetLangText"_s);
}

void tst_PanelCommands::opened()
{
    Device::instance()->viewer.forget();
    Device::instance()->viewer.open(u"/mnt/ext1/a.jpg"_s);
    Device::instance()->viewer.open(u"/mnt/ext1/b.jpg"_s);
    QCOMPARE(m_remote->ask(u"opened"_s).value(u"opened"_s).toArray(),
             QJsonArray({u"/mnt/ext1/a.jpg"_s, u"/mnt/ext1/b.jpg"_s}));
}

void tst_PanelCommands::idleWhenNothingHappens()
{
    QElapsedTimer time;
    time.start();
    QCOMPARE(code(m_remote->ask(u"idle"_s, {{u"ms"_s, 100}}, 40'000)), u"ok"_s);
    QVERIFY(time.elapsed() >= 100);
}

void tst_PanelCommands::idleWaitsForDrawing()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true
        property int ticks: 0
        Timer { interval: 40; repeat: true; running: ticks < 20; onTriggered: ticks += 1 }
        Text { text: ticks } })");
    QCOMPARE(code(m_remote->ask(u"idle"_s, {{u"ms"_s, 200}}, 40'000)), u"ok"_s);
    QCOMPARE(window->property("ticks").toInt(), 20);
    // The last tick stands on the panel: a full refresh now would bring nothing new.
    const quint64 before = panel_view::countFrom();
    const QImage seen = panel_view::upright();
    Device::instance()->screen.refresh(lindenreed::device::RefreshMode::Full);
    QTRY_COMPARE(panel_view::refreshNumber(), before + 1);
    QCOMPARE(panel_view::upright(), seen);
}

void tst_PanelCommands::idleWaitsForAClearedPanel()
{
    using lindenreed::device::RefreshMode;
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true; color: "#888888" })");
    QVERIFY(panel_view::waitUntilStill());
    auto &screen = Device::instance()->screen;
    screen.clear();
    // As the frame does when it turns its screen.
    QTimer::singleShot(500, window.get(), [&screen] { screen.refresh(RefreshMode::Full); });
    QCOMPARE(code(m_remote->ask(u"idle"_s, {{u"ms"_s, 60}}, 40'000)), u"ok"_s);
    QCOMPARE(panel_view::greyAt(100, 1000), 0x88);

    screen.clear(); // for good
    QCOMPARE(code(m_remote->ask(u"idle"_s, {{u"ms"_s, 60}}, 40'000)), u"ok"_s);
    QCOMPARE(panel_view::greyAt(100, 1000), 255);
}

void tst_PanelCommands::idleWaitsForThreads()
{
    std::atomic<bool> stop = false;
    std::atomic<bool> running = false;
    const QFuture<void> job = QtConcurrent::run([&] {
        running = true;
        while (!stop) { }
    });
    QTRY_VERIFY(running);
    m_remote->send(u"idle"_s, {{u"ms"_s, 60}});
    PanelRemote other; // gives up after ten times as long
    QCOMPARE(code(other.ask(u"idle"_s, {{u"ms"_s, 60}, {u"limit"_s, 600}})), u"busy"_s);
    QVERIFY(m_remote->nextLine(0).isEmpty());
    stop = true;
    QCOMPARE(code(m_remote->nextLine(40'000)), u"ok"_s);
}

void tst_PanelCommands::idleGivesUp()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true
        property int ticks: 0
        property bool going: true
        Timer { interval: 20; repeat: true; running: going; onTriggered: ticks += 1 }
        Text { text: ticks } })");
    const QJsonObject answer = m_remote->ask(u"idle"_s, {{u"ms"_s, 300}, {u"limit"_s, 500}});
    QCOMPARE(code(answer), u"busy"_s);
    QCOMPARE(answer.value(u"message"_s).toString(), u"The device has not come to rest within 0.5 seconds."_s);
    window->setProperty("going", false);
    QCOMPARE(code(m_remote->ask(u"idle"_s, {{u"ms"_s, 60}}, 40'000)), u"ok"_s);
}

void tst_PanelCommands::badArguments_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QJsonObject>("members");
    QTest::newRow("event without a type") << u"event"_s << QJsonObject();
    QTest::newRow("event type below 0") << u"event"_s << QJsonObject{{u"type"_s, -1}};
    QTest::newRow("event parameter beyond int")
        << u"event"_s << QJsonObject{{u"type"_s, 1}, {u"par1"_s, 3e9}};
    QTest::newRow("orientation 4") << u"orientation"_s << QJsonObject{{u"value"_s, 4}};
    QTest::newRow("invert without a switch") << u"invert"_s << QJsonObject();
    QTest::newRow("invert by a number") << u"invert"_s << QJsonObject{{u"on"_s, 1}};
    QTest::newRow("light too bright") << u"light"_s << QJsonObject{{u"brightness"_s, 101}};
    QTest::newRow("light below 0") << u"light"_s << QJsonObject{{u"color"_s, -1}};
    QTest::newRow("light switch by a text") << u"light"_s << QJsonObject{{u"enabled"_s, u"on"_s}};
    QTest::newRow("fire without a name") << u"fire"_s << QJsonObject();
    QTest::newRow("journal below 0") << u"journal"_s << QJsonObject{{u"n"_s, -1}};
    QTest::newRow("limit above the highest") << u"idle"_s << QJsonObject{{u"limit"_s, 30'001}};
    QTest::newRow("idle below 0") << u"idle"_s << QJsonObject{{u"ms"_s, -1}};
    QTest::newRow("state with a member") << u"state"_s << QJsonObject{{u"n"_s, 1}};
}

void tst_PanelCommands::badArguments()
{
    QFETCH(QString, command);
    QFETCH(QJsonObject, members);
    const QJsonObject answer = m_remote->ask(command, members);
    QCOMPARE(code(answer), u"bad-argument"_s);
    QVERIFY(answer.value(u"message"_s).toString().endsWith(u'.'));
    QCOMPARE(m_events->texts(), QStringList());
}

void tst_PanelCommands::lightWithoutColour()
{
    if (Device::instance()->profile.colourLight)
        QCOMPARE(code(m_remote->ask(u"light"_s, {{u"color"_s, 5}})), u"ok"_s);
    else
        QCOMPARE(code(m_remote->ask(u"light"_s, {{u"color"_s, 5}})), u"not-supported"_s);
}

void tst_PanelCommands::previousOrientation()
{
    QCOMPARE(Device::instance()->previousOrientation, std::optional<int>(2));
}

void tst_PanelCommands::quit()
{
    m_remote->send(u"quit"_s);
    QCOMPARE(QGuiApplication::exec(), 0);
    QCOMPARE(m_events->texts(), QStringList{u"152 0 0"_s});
    QCOMPARE(code(m_remote->nextLine()), u"ok"_s);
}

void tst_PanelCommands::signalsQuit_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void tst_PanelCommands::signalsQuit()
{
    QFETCH(int, number);
    QTimer::singleShot(0, this, [number] { ::kill(::getpid(), number); });
    QCOMPARE(QGuiApplication::exec(), 0);
    QCOMPARE(m_events->texts(), QStringList{u"152 0 0"_s});
}

PANEL_TEST_MAIN_WITH_RECORD(tst_PanelCommands, R"({"profile": "grey-8", "orientation": 2})")
#include "tst_panel_commands.moc"
