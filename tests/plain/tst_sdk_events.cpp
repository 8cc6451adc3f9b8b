// The SDK's operations on events and timers, and the device platform object.

#include <slateview.h>
#include <slateview_testing.h>

#include <shared_tools/eink_interface.h>

#include <device.h>

#include <journal_lines.h>

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;
using lindenreed::utilities::EinkInterface;
using lindenreed::utilities::EinkPlatform;

namespace {

EinkPlatform *platform()
{
    return EinkInterface::instance().platform();
}

void count(void *context)
{
    ++*static_cast<int *>(context);
}

} // namespace

class tst_SdkEvents : public QObject
{
    Q_OBJECT

private slots:
    void noHandler();
    void handlerIsForwardedTo();
    void sameFunctionForEveryHandler();
    void handlerReplacedFromInside();
    void functionOutlivesItsHandler();
    void sendsAreEnteredBeforeWhatTheyCause();
    void deviceEventsComeThroughTheLoop();
    void timers();
    void timerArguments_data();
    void timerArguments();
    void platformObject();
    void refreshes();
    void updateModes();
};

void tst_SdkEvents::noHandler()
{
    DeviceForTest device;
    QVERIFY(!GetEventHandler());
    QCOMPARE(SendEvent(nullptr, 43, 0, 0), 0);
    QCOMPARE(SendEvent(GetEventHandler(), 43, 1, 2), 0);
    QCOMPARE(journalLines(device),
             QByteArrayList({"GetEventHandler() = null", "SendEvent(null, 43, 0, 0)",
                             "GetEventHandler() = null", "SendEvent(null, 43, 1, 2)"}));
}

void tst_SdkEvents::handlerIsForwardedTo()
{
    DeviceForTest device;
    QList<int> seen;
    platform()->setEventHandler([&seen](int type, int par1, int par2) {
        seen = {type, par1, par2};
        return 5;
    });
    QVERIFY(GetEventHandler());
    QCOMPARE(SendEvent(GetEventHandler(), 212, -3, 4), 5); // called before it returns, with its result
    QCOMPARE(seen, QList<int>({212, -3, 4}));
    QCOMPARE(journalLines(device),
             QByteArrayList({"setEventHandler(handler)", "GetEventHandler() = handler",
                             "GetEventHandler() = handler", "SendEvent(handler, 212, -3, 4)"}));
    platform()->setEventHandler(nullptr);
    QVERIFY(!GetEventHandler());
    QCOMPARE(device.calls({"setEventHandler"}).constLast().arguments, QByteArrayList({"null"}));
}

void tst_SdkEvents::sameFunctionForEveryHandler()
{
    DeviceForTest device;
    platform()->setEventHandler([](int, int, int) { return 1; });
    const sv_event_handler before = GetEventHandler();
    platform()->setEventHandler([](int, int, int) { return 2; });
    QVERIFY(GetEventHandler() == before);
    QCOMPARE(before(0, 0, 0), 2);
}

void tst_SdkEvents::handlerReplacedFromInside()
{
    DeviceForTest device;
    const auto kept = std::make_shared<int>(7);
    platform()->setEventHandler([kept](int, int, int) {
        platform()->setEventHandler([](int, int, int) { return 1; });
        return *kept;
    });
    QCOMPARE(SendEvent(GetEventHandler(), 1, 0, 0), 7);
    QCOMPARE(SendEvent(GetEventHandler(), 1, 0, 0), 1);
    QCOMPARE(kept.use_count(), 1);
}

void tst_SdkEvents::functionOutlivesItsHandler()
{
    sv_event_handler function = nullptr;
    {
        DeviceForTest device;
        platform()->setEventHandler([](int, int, int) { return 1; });
        function = GetEventHandler();
    }
    QCOMPARE(function(1, 2, 3), 0); // no device any more
    QCOMPARE(SendEvent(function, 1, 2, 3), 0);
}

void tst_SdkEvents::sendsAreEnteredBeforeWhatTheyCause()
{
    DeviceForTest device;
    platform()->setEventHandler([](int, int, int) {
        ClearScreen();
        return 0;
    });
    device.forgetCalls();
    SendEvent(GetEventHandler(), 1, 0, 0);
    QCOMPARE(journalLines(device),
             QByteArrayList({"GetEventHandler() = handler", "SendEvent(handler, 1, 0, 0)", "ClearScreen()"}));
}

void tst_SdkEvents::deviceEventsComeThroughTheLoop()
{
    DeviceForTest device;
    int seen = 0;
    platform()->setEventHandler([&seen](int type, int, int) { return seen = type; });
    Device::instance()->events.post(event::foreground, 0, 0);
    QCOMPARE(seen, 0);
    QTRY_COMPARE(seen, 151);
    device.send(event::background);
    QCOMPARE(seen, 152);
}

void tst_SdkEvents::timers()
{
    DeviceForTest device;
    int calls = 0;
    SetHardTimerEx("nextImageEvent", count, &calls, 0);
    QCOMPARE(calls, 0);
    QTRY_COMPARE(calls, 1);
    SetHardTimerEx("nextImageEvent", count, &calls, 3'600'000);
    QCOMPARE(Device::instance()->timers.pending().constFirst().name, QByteArray("nextImageEvent"));
    ClearTimerByName("nextImageEvent");
    ClearTimerByName("nextImageEvent");
    QVERIFY(Device::instance()->timers.pending().isEmpty());
    SetHardTimerEx("updateDateTimeEvent", count, &calls, 60'000);
    QVERIFY(device.fire("updateDateTimeEvent"));
    QCOMPARE(calls, 2);
    QCOMPARE(journalLines(device),
             QByteArrayList({"SetHardTimerEx(nextImageEvent, callback, context, 0)",
                             "SetHardTimerEx(nextImageEvent, callback, context, 3600000)",
                             "ClearTimerByName(nextImageEvent)", "ClearTimerByName(nextImageEvent)",
                             "SetHardTimerEx(updateDateTimeEvent, callback, context, 60000)"}));
}

void tst_SdkEvents::timerArguments_data()
{
    QTest::addColumn<bool>("named");
    QTest::addColumn<bool>("withCallback");
    QTest::addColumn<int>("delay");
    QTest::addColumn<qint64>("interval"); // -1: not armed
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("no name") << false << true << 5 << qint64(-1)
                             << QByteArray("SetHardTimerEx(null, callback, null, 5)");
    QTest::newRow("no callback") << true << false << 5 << qint64(-1)
                                 << QByteArray("SetHardTimerEx(t, null, null, 5)");
    QTest::newRow("negative delay") << true << true << -5 << qint64(0)
                                    << QByteArray("SetHardTimerEx(t, callback, null, -5)");
    QTest::newRow("longest delay") << true << true << std::numeric_limits<int>::max() << qint64(2'147'483'647)
                                   << QByteArray("SetHardTimerEx(t, callback, null, 2147483647)");
}

void tst_SdkEvents::timerArguments()
{
    QFETCH(bool, named);
    QFETCH(bool, withCallback);
    QFETCH(int, delay);
    QFETCH(qint64, interval);
    QFETCH(QByteArray, line);

    DeviceForTest device;
    SetHardTimerEx(named ? "t" : nullptr, withCallback ? count : nullptr, nullptr, delay);
    QCOMPARE(journalLines(device), QByteArrayList({line}));
    const QList<PendingTimer> pending = Device::instance()->timers.pending();
    QCOMPARE(pending.isEmpty() ? -1 : qint64(pending.constFirst().interval.count()), interval);
    ClearTimerByName(nullptr);
    QCOMPARE(journalLines(device).constLast(), QByteArray("ClearTimerByName(null)"));
    QCOMPARE(Device::instance()->timers.pending().size(), pending.size());
}

void tst_SdkEvents::platformObject()
{
    DeviceForTest device;
    QVERIFY(platform());
    QCOMPARE(platform(), EinkInterface::instance().platform());
    platform()->prepareAspectChange(0);
    platform()->setStartupFlag(1);
    platform()->setFastUpdates(true);
    QVERIFY(Device::instance()->screen.fastUpdates());
    platform()->setFastUpdates(false);
    QVERIFY(!Device::instance()->screen.fastUpdates());
    QCOMPARE(journalLines(device),
             QByteArrayList(
                 {"prepareAspectChange(0)", "setStartupFlag(1)", "setFastUpdates(1)", "setFastUpdates(0)"}));
}

void tst_SdkEvents::refreshes()
{
    DeviceForTest device;
    QList<std::pair<RefreshMode, QRect>> seen;
    connect(&Device::instance()->screen, &Screen::refreshWanted, this, [&seen](RefreshMode mode, QRect area) {
        seen.append({mode, area});
    });
    platform()->requestScreenRefresh(1, 1);
    platform()->requestScreenRefresh(0, 0);
    QCOMPARE(seen.size(), 2);
    QCOMPARE(seen.at(0).first, RefreshMode::Full);
    QCOMPARE(seen.at(1).first, RefreshMode::Partial);
    QCOMPARE(seen.at(0).second, QRect(0, 0, 758, 1024));
    QCOMPARE(journalLines(device),
             QByteArrayList({"requestScreenRefresh(1, 1)", "requestScreenRefresh(0, 0)"}));
}

void tst_SdkEvents::updateModes()
{
    DeviceForTest device;
    QSignalSpy wanted(&Device::instance()->screen, &Screen::nextDrawingWanted);
    platform()->setScreenUpdateMode(2);
    platform()->setScreenUpdateMode(5);
    QCOMPARE(wanted.size(), 2);
    QCOMPARE(wanted.constLast().constFirst().value<RefreshMode>(), RefreshMode::Full);
    QCOMPARE(journalLines(device), QByteArrayList({"setScreenUpdateMode(2)", "setScreenUpdateMode(5)"}));
}

QTEST_GUILESS_MAIN(tst_SdkEvents)
#include "tst_sdk_events.moc"
