// Finger and keys: what reaches which item.

#include "panel_application.h"
#include "panel_qml.h"
#include "panel_remote.h"
#include "panel_view.h"
#include "recorded_events.h"

#include <device.h>

#include <QQuickItem>
#include <QThread>
#include <QTimer>

#include <optional>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;

namespace {

QJsonObject at(int x, int y)
{
    return {{u"x"_s, x}, {u"y"_s, y}};
}

} // namespace

class tst_PanelInput : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void tapReachesItem_data();
    void tapReachesItem();
    void tapOnStatusPanelReachesNothing();
    void tapTakesTime();
    void holdIsPressAndHold();
    void heldUp_data();
    void heldUp();
    void shortHoldIsAClick();
    void quickDoubleTapsAreTwoClicks();
    void dragMovesInSteps();
    void windowGrabbedAtPressGetsAll();
    void wobbleIsAClick();
    void gesturesQueue();
    void clientThatLeavesLiftsItsFinger();
    void nothingStaysHovered();
    void badArguments_data();
    void badArguments();
    void keys_data();
    void keys();
    void unknownKey();
    void typing();
    void typingWithoutAField();

private:
    QStringList log() const { return m_window->property("log").toStringList(); }

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<PanelRemote> m_remote;
    std::optional<RecordedEvents> m_events;
};

void tst_PanelInput::init()
{
    m_engine = std::make_unique<QQmlEngine>();
    m_window = loadWindow(*m_engine, R"(Window {
        id: root
        width: Screen.width; height: Screen.desktopAvailableHeight; visible: true
        property var log: []
        function note(text) { log = log.concat([text]) }
        Item {
            anchors.fill: parent
            focus: true
            Keys.onPressed: (event) => { root.note("key " + event.key); }
        }
        MouseArea {
            id: area
            objectName: "area"
            anchors.fill: parent
            hoverEnabled: true
            onPressed: (mouse) => root.note("press " + mouse.x + " " + mouse.y)
            onReleased: (mouse) => root.note("release " + mouse.x + " " + mouse.y)
            onClicked: root.note("click")
            onPressAndHold: root.note("hold")
            onPositionChanged: (mouse) => { if (pressed) root.note("move " + mouse.x + " " + mouse.y) }
        }
        MouseArea {
            x: 100; y: 200; width: 50; height: 40
            onClicked: root.note("small")
        }
        Flickable {
            x: 250; y: 400; width: 100; height: 100
            pressDelay: 120
            MouseArea {
                anchors.fill: parent
                onClicked: root.note("list click")
                onPressAndHold: root.note("list hold")
            }
        }
        TextInput { id: field; objectName: "field"; x: 100; y: 600; width: 200; height: 40 }
    })");
    m_remote = std::make_unique<PanelRemote>();
    m_events.emplace();
    QVERIFY(panel_view::waitUntilStill());
    QTRY_COMPARE(QGuiApplication::focusWindow(), m_window.get());
}

void tst_PanelInput::cleanup()
{
    m_events.reset();
    m_remote.reset();
    m_window.reset();
    m_engine.reset();
    Device::instance()->screen.setOrientation(0);
    Device::instance()->screen.setPanelType(1);
    QVERIFY(panel_view::waitUntilStill());
}

void tst_PanelInput::tapReachesItem_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("panelType");
    for (const int orientation : {0, 1, 2, 3}) {
        QTest::addRow("orientation %d, status panel shown", orientation) << orientation << 1;
        QTest::addRow("orientation %d, status panel hidden", orientation) << orientation << 0;
    }
}

void tst_PanelInput::tapReachesItem()
{
    QFETCH(int, orientation);
    QFETCH(int, panelType);
    Device::instance()->screen.setOrientation(orientation);
    Device::instance()->screen.setPanelType(panelType);
    QVERIFY(panel_view::waitUntilStill());
    const int top = panelType != 0 ? 45 : 0;
    QCOMPARE(code(m_remote->ask(u"tap"_s, at(100, 200 + top))), u"ok"_s);
    QCOMPARE(log(), QStringList{u"small"_s});
    QCOMPARE(code(m_remote->ask(u"tap"_s, at(149, 239 + top))), u"ok"_s);
    QCOMPARE(log(), QStringList({u"small"_s, u"small"_s}));
    QCOMPARE(code(m_remote->ask(u"tap"_s, at(99, 200 + top))), u"ok"_s);
    QCOMPARE(log().mid(2), QStringList({u"press 99 200"_s, u"release 99 200"_s, u"click"_s}));
}

void tst_PanelInput::tapOnStatusPanelReachesNothing()
{
    QCOMPARE(code(m_remote->ask(u"tap"_s, at(300, 44))), u"ok"_s);
    QCOMPARE(log(), QStringList());
    QCOMPARE(code(m_remote->ask(u"tap"_s, at(300, 45))), u"ok"_s);
    QVERIFY(log().contains(u"click"_s));
}

void tst_PanelInput::tapTakesTime()
{
    QElapsedTimer time;
    time.start();
    QCOMPARE(code(m_remote->ask(u"tap"_s, at(300, 300))), u"ok"_s);
    QVERIFY(time.elapsed() >= 60);
    QCOMPARE(log(), QStringList({u"press 300 255"_s, u"release 300 255"_s, u"click"_s}));
}

void tst_PanelInput::holdIsPressAndHold()
{
    QElapsedTimer time;
    time.start();
    QCOMPARE(code(m_remote->ask(u"hold"_s, at(300, 300))), u"ok"_s);
    QVERIFY(time.elapsed() >= 1000);
    QCOMPARE(log(), QStringList({u"press 300 255"_s, u"hold"_s, u"release 300 255"_s}));
}

void tst_PanelInput::heldUp_data()
{
    QTest::addColumn<QString>("gesture");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("from");
    QTest::addColumn<QString>("taken");
    QTest::newRow("hold") << u"hold"_s << 300 << 200 << u"hold"_s;
    QTest::newRow("hold in a list") << u"hold"_s << 500 << 50 << u"list hold"_s;
    QTest::newRow("tap") << u"tap"_s << 300 << 50 << u"click"_s;
    QTest::newRow("tap in a list") << u"tap"_s << 500 << 50 << u"list click"_s;
}

/// The time of an item's long press is over, and that of the finger as well, before either is looked at.
void tst_PanelInput::heldUp()
{
    QFETCH(QString, gesture);
    QFETCH(int, y);
    QFETCH(int, from);
    QFETCH(QString, taken);
    QTimer::singleShot(from, [] { QThread::msleep(1000); });
    QCOMPARE(code(m_remote->ask(gesture, at(300, y))), u"ok"_s);
    QStringList ends = log();
    ends.removeIf(
        [](const QString &line) { return line.startsWith("press"_L1) || line.startsWith("release"_L1); });
    QCOMPARE(ends, QStringList{taken});
}

void tst_PanelInput::shortHoldIsAClick()
{
    QJsonObject members = at(300, 300);
    members.insert(u"ms"_s, 200);
    QCOMPARE(code(m_remote->ask(u"hold"_s, members)), u"ok"_s);
    QCOMPARE(log(), QStringList({u"press 300 255"_s, u"release 300 255"_s, u"click"_s}));
    members.insert(u"ms"_s, 0);
    QCOMPARE(code(m_remote->ask(u"hold"_s, members)), u"ok"_s);
    QCOMPARE(log().size(), 6);
}

void tst_PanelInput::quickDoubleTapsAreTwoClicks()
{
    PanelRemote second;
    m_remote->send(u"tap"_s, at(300, 300));
    second.send(u"tap"_s, at(300, 300));
    QCOMPARE(code(m_remote->nextLine()), u"ok"_s);
    QCOMPARE(code(second.nextLine()), u"ok"_s);
    QCOMPARE(log().count(u"click"_s), 2);
}

void tst_PanelInput::dragMovesInSteps()
{
    const QJsonObject members{{u"x1"_s, 300}, {u"y1"_s, 545}, {u"x2"_s, 400}, {u"y2"_s, 345}};
    QCOMPARE(code(m_remote->ask(u"drag"_s, members)), u"ok"_s);
    QStringList expected{u"press 300 500"_s};
    for (int step = 1; step <= 10; ++step)
        expected.append(u"move %1 %2"_s.arg(300 + step * 10).arg(500 - step * 20));
    expected.append({u"release 400 300"_s, u"click"_s});
    QCOMPARE(log(), expected);
}

void tst_PanelInput::windowGrabbedAtPressGetsAll()
{
    // Up into the status panel, where no window lies.
    const QJsonObject members{{u"x1"_s, 300}, {u"y1"_s, 95}, {u"x2"_s, 300}, {u"y2"_s, 5}, {u"steps"_s, 3}};
    QCOMPARE(code(m_remote->ask(u"drag"_s, members)), u"ok"_s);
    QCOMPARE(log(),
             QStringList({u"press 300 50"_s, u"move 300 20"_s, u"move 300 -10"_s, u"move 300 -40"_s,
                          u"release 300 -40"_s}));
}

void tst_PanelInput::wobbleIsAClick()
{
    const QJsonObject members{
        {u"x1"_s, 120}, {u"y1"_s, 260}, {u"x2"_s, 124}, {u"y2"_s, 264}, {u"steps"_s, 2}};
    QCOMPARE(code(m_remote->ask(u"drag"_s, members)), u"ok"_s);
    QCOMPARE(log(), QStringList{u"small"_s});
}

void tst_PanelInput::gesturesQueue()
{
    PanelRemote second;
    const QJsonObject members{
        {u"x1"_s, 300}, {u"y1"_s, 545}, {u"x2"_s, 300}, {u"y2"_s, 345}, {u"steps"_s, 5}};
    m_remote->send(u"drag"_s, members);
    QTRY_VERIFY(!log().isEmpty());
    second.send(u"tap"_s, at(350, 145));
    QCOMPARE(code(m_remote->nextLine()), u"ok"_s);
    QCOMPARE(code(second.nextLine()), u"ok"_s);
    const QStringList all = log();
    QVERIFY(all.indexOf(u"release 300 300"_s) < all.indexOf(u"press 350 100"_s));
    QVERIFY(all.indexOf(u"press 350 100"_s) > 0);
}

void tst_PanelInput::clientThatLeavesLiftsItsFinger()
{
    PanelRemote leaving;
    QJsonObject members = at(300, 300);
    members.insert(u"ms"_s, 30'000);
    leaving.send(u"hold"_s, members);
    QTRY_COMPARE(log(), QStringList{u"press 300 255"_s});
    leaving.leave();
    QTRY_VERIFY(log().contains(u"release 300 255"_s));
    QCOMPARE(code(m_remote->ask(u"tap"_s, at(120, 260))), u"ok"_s); // the finger is free
}

void tst_PanelInput::nothingStaysHovered()
{
    QCOMPARE(code(m_remote->ask(u"tap"_s, at(300, 300))), u"ok"_s);
    const auto *area = m_window->findChild<QObject *>(u"area"_s);
    QTRY_VERIFY(!area->property("containsMouse").toBool());
}

void tst_PanelInput::badArguments_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QJsonObject>("members");
    QTest::newRow("right of the screen") << u"tap"_s << at(758, 0);
    QTest::newRow("below the screen") << u"tap"_s << at(0, 1024);
    QTest::newRow("left of the screen") << u"tap"_s << at(-1, 0);
    QTest::newRow("no place") << u"tap"_s << QJsonObject();
    QTest::newRow("fraction") << u"tap"_s << QJsonObject{{u"x"_s, 1.5}, {u"y"_s, 1}};
    QTest::newRow("text for a number") << u"tap"_s << QJsonObject{{u"x"_s, u"1"_s}, {u"y"_s, 1}};
    QTest::newRow("unknown member") << u"tap"_s << QJsonObject{{u"x"_s, 1}, {u"y"_s, 1}, {u"z"_s, 1}};
    QTest::newRow("negative time") << u"hold"_s << QJsonObject{{u"x"_s, 1}, {u"y"_s, 1}, {u"ms"_s, -1}};
    QTest::newRow("no steps") << u"drag"_s
                              << QJsonObject{
                                     {u"x1"_s, 1}, {u"y1"_s, 1}, {u"x2"_s, 1}, {u"y2"_s, 1}, {u"steps"_s, 0}};
    QTest::newRow("drag out of the screen")
        << u"drag"_s << QJsonObject{{u"x1"_s, 1}, {u"y1"_s, 1}, {u"x2"_s, 800}, {u"y2"_s, 1}};
    QTest::newRow("no key") << u"key"_s << QJsonObject();
    QTest::newRow("no text") << u"type"_s << QJsonObject();
    QTest::newRow("empty text") << u"type"_s << QJsonObject{{u"text"_s, u""_s}};
}

void tst_PanelInput::badArguments()
{
    QFETCH(QString, command);
    QFETCH(QJsonObject, members);
    const QJsonObject answer = m_remote->ask(command, members);
    QCOMPARE(code(answer), u"bad-argument"_s);
    QVERIFY(!answer.value(u"message"_s).toString().isEmpty());
    QCOMPARE(log(), QStringList());
}

void tst_PanelInput::keys_data()
{
    addKeys(0);
}

void tst_PanelInput::keys()
{
    QFETCH(QStringList, events);
    QFETCH(int, qtKey);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QCOMPARE(code(m_remote->ask(u"key"_s, {{u"name"_s, name}})), u"ok"_s);
    QCOMPARE(m_events->texts(), events);
    QCOMPARE(log(), qtKey != 0 ? QStringList{u"key %1"_s.arg(qtKey)} : QStringList());
}

void tst_PanelInput::unknownKey()
{
    const QJsonObject answer = m_remote->ask(u"key"_s, {{u"name"_s, u"enter"_s}});
    QCOMPARE(code(answer), u"bad-argument"_s);
    QVERIFY(answer.value(u"message"_s).toString().contains(u"page-down"_s));
    QCOMPARE(m_events->texts(), QStringList());
}

void tst_PanelInput::typing()
{
    auto *field = m_window->findChild<QQuickItem *>(u"field"_s);
    field->forceActiveFocus();
    QCOMPARE(code(m_remote->ask(u"type"_s, {{u"text"_s, u"Żółw 7% \U0001F600!"_s}})), u"ok"_s);
    QCOMPARE(field->property("text").toString(), u"Żółw 7% \U0001F600!"_s);
}

void tst_PanelInput::typingWithoutAField()
{
    QCOMPARE(code(m_remote->ask(u"type"_s, {{u"text"_s, u"a"_s}})), u"not-possible"_s);
    QCOMPARE(log(), QStringList());
}

PANEL_TEST_MAIN(tst_PanelInput)
#include "tst_panel_input.moc"
