// The application's handler for device events.

#include <events.h>

#include <QTest>

using namespace lindenreed::device;

class tst_Events : public QObject
{
    Q_OBJECT

private slots:
    void sendCallsDirectly();
    void withoutHandler();
    void emptyFunctionRemoves();
    void postWaitsForTheLoop();
    void postIsDroppedWithoutHandler();
    void postGoesToTheHandlerOfThen();
    void replacedFromInside();
    void sentFromInside();
    void foregroundAndBackground();
};

void tst_Events::sendCallsDirectly()
{
    Events events;
    QList<int> seen;
    events.setHandler([&seen](int type, int par1, int par2) {
        seen = {type, par1, par2};
        return 7;
    });
    QVERIFY(events.hasHandler());
    QCOMPARE(events.send(25, 23, -1), 7);
    QCOMPARE(seen, QList<int>({25, 23, -1}));
}

void tst_Events::withoutHandler()
{
    Events events;
    QVERIFY(!events.hasHandler());
    QCOMPARE(events.send(25, 0, 0), 0);
}

void tst_Events::emptyFunctionRemoves()
{
    Events events;
    events.setHandler([](int, int, int) { return 7; });
    events.setHandler({});
    QVERIFY(!events.hasHandler());
    QCOMPARE(events.send(25, 0, 0), 0);
}

void tst_Events::postWaitsForTheLoop()
{
    Events events;
    QList<int> types;
    events.setHandler([&types](int type, int, int) {
        types.append(type);
        return 0;
    });
    events.post(1, 0, 0);
    events.post(2, 0, 0);
    QVERIFY(types.isEmpty());
    QTRY_COMPARE(types, QList<int>({1, 2}));
}

void tst_Events::postIsDroppedWithoutHandler()
{
    Events events;
    events.post(1, 0, 0);
    QCoreApplication::processEvents();
    QList<int> types;
    events.setHandler([&types](int type, int, int) {
        types.append(type);
        return 0;
    });
    events.post(2, 0, 0);
    QTRY_COMPARE(types, QList<int>({2}));
}

void tst_Events::postGoesToTheHandlerOfThen()
{
    Events events;
    bool former = false;
    bool latter = false;
    events.setHandler([&former](int, int, int) { return former = true, 0; });
    events.post(1, 0, 0);
    events.setHandler([&latter](int, int, int) { return latter = true, 0; });
    QTRY_VERIFY(latter);
    QVERIFY(!former);
}

void tst_Events::replacedFromInside()
{
    Events events;
    int later = 0;
    const auto marker = std::make_shared<int>(41);
    events.setHandler([&events, &later, marker](int, int, int) {
        events.setHandler([&later](int, int, int) { return ++later; });
        return ++*marker; // what was captured lives until the call returns
    });
    QCOMPARE(events.send(1, 0, 0), 42);
    QCOMPARE(marker.use_count(), 1);
    QCOMPARE(events.send(1, 0, 0), 1);
}

void tst_Events::sentFromInside()
{
    Events events;
    events.setHandler(
        [&events](int type, int, int) { return type == 0 ? 1 : 1 + events.send(type - 1, 0, 0); });
    QCOMPARE(events.send(3, 0, 0), 4);
}

void tst_Events::foregroundAndBackground()
{
    Events events;
    int changes = 0;
    connect(&events, &Events::inForegroundChanged, this, [&changes] { ++changes; });
    QVERIFY(events.inForeground());
    events.send(event::foreground, 0, 0);
    QCOMPARE(changes, 0);
    events.send(event::background, 0, 0);
    QVERIFY(!events.inForeground());
    events.send(event::background, 0, 0);
    QCOMPARE(changes, 1);
    events.send(event::key, 23, 0);
    QVERIFY(!events.inForeground());
    events.send(event::foreground, 0, 0);
    QVERIFY(events.inForeground());
    QCOMPARE(changes, 2);
    events.send(event::background, 0, 0);
    events.reset();
    QVERIFY(events.inForeground());
    QCOMPARE(changes, 4);
}

QTEST_GUILESS_MAIN(tst_Events)
#include "tst_events.moc"
