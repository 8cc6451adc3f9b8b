// Another task in the front: it has the panel, the finger and the keys.

#include "panel_application.h"
#include "panel_qml.h"
#include "panel_remote.h"
#include "panel_view.h"
#include "recorded_events.h"

#include <device.h>

#include <QQuickItem>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::device::RefreshMode;

namespace {

QByteArray sceneQml();

} // namespace

class tst_PanelBackground : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void drawingStaysOffThePanel_data();
    void drawingStaysOffThePanel();
    void frontIsAFullRefresh();
    void turnedMeanwhile();
    void chartIsShown();
    void inputIsRefused_data();
    void inputIsRefused();
    void wrongInputIsToldFirst();
    void waitingGesturesEnd();
    void eventsReachTheHandler();

private:
    QString ask(const QString &command, const QJsonObject &members = {})
    {
        return code(m_remote->ask(command, members));
    }
    void paint(const QColor &colour) { m_window->setProperty("color", colour); }
    QStringList log() const { return m_window->property("log").toStringList(); }

    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<PanelRemote> m_remote;
    std::optional<RecordedEvents> m_events;
};

void tst_PanelBackground::init()
{
    m_remote = std::make_unique<PanelRemote>();
    m_window = loadWindow(m_engine, sceneQml());
    m_events.emplace();
    QTRY_COMPARE(QGuiApplication::focusWindow(), m_window.get());
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::greyAt(700, 900), 0x88);
}

void tst_PanelBackground::cleanup()
{
    Device::instance()->events.reset();
    Device::instance()->screen.reset();
    m_events.reset();
    m_window.reset();
    m_remote.reset();
}

void tst_PanelBackground::drawingStaysOffThePanel_data()
{
    QTest::addColumn<std::function<void()>>("draw");

    const auto row = [](const char *name, const std::function<void()> &draw) { QTest::newRow(name) << draw; };
    row("window", [this] { paint(0x444444); });
    row("refresh", [this] {
        paint(0x444444);
        Device::instance()->screen.refresh(RefreshMode::Full);
    });
    row("cleared panel", [] { Device::instance()->screen.clear(); });
    row("fast mode", [] { Device::instance()->screen.useFastMode(QRect(0, 0, 700, 900)); });
    row("white on black", [] { Device::instance()->screen.setInverted(true); });
    row("status panel", [] { Device::instance()->screen.setPanelType(0); });
    row("window that goes", [this] { m_window->setVisible(false); });
}

void tst_PanelBackground::drawingStaysOffThePanel()
{
    QFETCH(std::function<void()>, draw);

    const QImage before = panel_view::upright();
    QCOMPARE(ask(u"background"_s), u"ok"_s);
    const quint64 number = panel_view::refreshNumber();
    draw();
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::upright(), before);
    QCOMPARE(panel_view::refreshNumber(), number);
}

void tst_PanelBackground::frontIsAFullRefresh()
{
    QCOMPARE(ask(u"background"_s), u"ok"_s);
    paint(0x444444);
    QVERIFY(panel_view::waitUntilStill());
    const quint64 before = panel_view::countFrom();
    QCOMPARE(ask(u"foreground"_s), u"ok"_s);
    QTRY_COMPARE(panel_view::greyAt(700, 900), 0x44);
    QCOMPARE(panel_view::refreshNumber(), before + 1);
    QCOMPARE(panel_view::snapshot().header.refreshMode, 1U);

    // The event alone does the same.
    QCOMPARE(ask(u"event"_s, {{u"type"_s, 152}}), u"ok"_s);
    paint(0x666666);
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::greyAt(700, 900), 0x44);
    QCOMPARE(ask(u"event"_s, {{u"type"_s, 151}}), u"ok"_s);
    QTRY_COMPARE(panel_view::greyAt(700, 900), 0x66);
    QCOMPARE(panel_view::snapshot().header.refreshMode, 1U);
}

void tst_PanelBackground::turnedMeanwhile()
{
    QCOMPARE(ask(u"background"_s), u"ok"_s);
    Device::instance()->screen.setOrientation(1);
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::upright().size(), QSize(758, 1024));
    QCOMPARE(ask(u"foreground"_s), u"ok"_s);
    QTRY_COMPARE(panel_view::upright().size(), QSize(1024, 758));
    QTRY_COMPARE(panel_view::greyAt(900, 700), 0x88);
}

void tst_PanelBackground::chartIsShown()
{
    QCOMPARE(ask(u"background"_s), u"ok"_s);
    QCOMPARE(ask(u"chart"_s), u"ok"_s);
    QCOMPARE(panel_view::greyAt(10, 10), 0);
    const QImage chart = panel_view::upright();
    paint(0x444444);
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::upright(), chart);
    QCOMPARE(ask(u"foreground"_s), u"ok"_s);
    QTRY_COMPARE(panel_view::greyAt(10, 1000), 0x44);
}

void tst_PanelBackground::inputIsRefused_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QJsonObject>("members");
    QTest::addColumn<QString>("logged"); ///< first, in the front

    const QJsonObject place{{u"x"_s, 50}, {u"y"_s, 70}};
    QTest::newRow("tap") << u"tap"_s << place << u"touched"_s;
    QTest::newRow("hold") << u"hold"_s << QJsonObject{{u"x"_s, 50}, {u"y"_s, 70}, {u"ms"_s, 10}}
                          << u"touched"_s;
    QTest::newRow("drag") << u"drag"_s
                          << QJsonObject{{u"x1"_s, 50}, {u"y1"_s, 70}, {u"x2"_s, 60}, {u"y2"_s, 80}}
                          << u"touched"_s;
    QTest::newRow("key of Qt's") << u"key"_s << QJsonObject{{u"name"_s, u"centre"_s}} << u"activated"_s;
    QTest::newRow("page key") << u"key"_s << QJsonObject{{u"name"_s, u"next"_s}} << u"paged"_s;
    QTest::newRow("press") << u"press"_s << QJsonObject{{u"name"_s, u"Row"_s}} << u"pressed"_s;
    QTest::newRow("increase") << u"increase"_s << QJsonObject{{u"name"_s, u"Row"_s}} << u"increased"_s;
    QTest::newRow("decrease") << u"decrease"_s << QJsonObject{{u"name"_s, u"Row"_s}} << u"decreased"_s;
    QTest::newRow("type") << u"type"_s << QJsonObject{{u"text"_s, u"a"_s}} << u"typed"_s;
}

void tst_PanelBackground::inputIsRefused()
{
    QFETCH(QString, command);
    QFETCH(QJsonObject, members);
    QFETCH(QString, logged);

    if (command == u"type"_s)
        m_window->findChild<QQuickItem *>(u"field"_s)->forceActiveFocus();
    QCOMPARE(ask(u"background"_s), u"ok"_s);
    const QJsonObject answer = m_remote->ask(command, members);
    QCOMPARE(code(answer), u"not-possible"_s);
    QCOMPARE(answer.value(u"message"_s).toString(), u"The application is in the background."_s);
    QCOMPARE(log(), QStringList());
    QVERIFY(!m_events->texts().contains(u"25 25 0"_s));
    QCOMPARE(ask(u"foreground"_s), u"ok"_s);
    QCOMPARE(ask(command, members), u"ok"_s);
    QCOMPARE(log().value(0), logged);
}

void tst_PanelBackground::wrongInputIsToldFirst()
{
    QCOMPARE(ask(u"background"_s), u"ok"_s);
    QCOMPARE(ask(u"tap"_s), u"bad-argument"_s);
    QCOMPARE(ask(u"key"_s, {{u"name"_s, u"fire"_s}}), u"bad-argument"_s);
}

void tst_PanelBackground::waitingGesturesEnd()
{
    PanelRemote second;
    m_remote->send(u"hold"_s, {{u"x"_s, 50}, {u"y"_s, 70}, {u"ms"_s, 20'000}});
    QTRY_COMPARE(log(), QStringList{u"touched"_s});
    second.send(u"tap"_s, {{u"x"_s, 50}, {u"y"_s, 70}});
    QCOMPARE(code(PanelRemote().ask(u"background"_s)), u"ok"_s);
    QCOMPARE(code(m_remote->nextLine()), u"not-possible"_s);
    QCOMPARE(code(second.nextLine()), u"not-possible"_s);
    QCOMPARE(log().count(u"touched"_s), 1);
}

void tst_PanelBackground::eventsReachTheHandler()
{
    QCOMPARE(ask(u"background"_s), u"ok"_s);
    QCOMPARE(ask(u"event"_s, {{u"type"_s, 25}, {u"par1"_s, 25}}), u"ok"_s);
    QCOMPARE(ask(u"orientation"_s, {{u"value"_s, 3}}), u"ok"_s);
    QCOMPARE(m_events->texts(), QStringList({u"152 0 0"_s, u"25 25 0"_s, u"32 3 0"_s}));
    QVERIFY(!Device::instance()->events.inForeground());
}

namespace {

QByteArray sceneQml()
{
    return R"(Window {
        id: root
        width: Screen.width; height: Screen.desktopAvailableHeight; visible: true; color: "#888888"
        property var log: []
        function note(text) { log = log.concat([text]) }
        Item {
            width: 100; height: 100; focus: true
            Accessible.role: Accessible.Slider; Accessible.name: "Row"
            Accessible.onPressAction: root.note("pressed")
            Accessible.onIncreaseAction: root.note("increased")
            Accessible.onDecreaseAction: root.note("decreased")
            Keys.onReturnPressed: root.note("activated")
            Keys.onPressed: (event) => { if (event.key === Qt.Key_PageDown) root.note("paged") }
            MouseArea { anchors.fill: parent; onPressed: root.note("touched") }
        }
        TextInput { objectName: "field"; y: 200; width: 200; height: 30; onTextEdited: root.note("typed") }
    })";
}

} // namespace

PANEL_TEST_MAIN(tst_PanelBackground)
#include "tst_panel_background.moc"
