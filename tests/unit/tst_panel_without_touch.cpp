// A device with keys and without touch.

#include "keyboard_scene.h"
#include "panel_application.h"
#include "recorded_events.h"

#include <device.h>
#include <texts.h>

#include <optional>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;

namespace {

QByteArray rowsQml();

} // namespace

class tst_PanelWithoutTouch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void profile();
    void fingerIsNotSupported_data();
    void fingerIsNotSupported();
    void keys_data();
    void keys();
    void centreActivatesTheFocusedItem();
    void arrowsMoveTheFocus();
    void arrowsLeadFromAListToWhatIsInIt();
    void arrowsStayWithWhoTakesThem();
    void arrowsInAField();
    void pressByName();
    void arrowsMoveOverTheKeyboard();
    void framedKey();
    void frameBeginsAtTheFirstKey();
    void framedKeyAccepts();
    void frameStaysBetweenPages();
    void backClosesTheKeyboard();
    void fastModeAndFullRefresh();

private:
    QString key(const QString &name) { return code(m_remote->ask(u"key"_s, {{u"name"_s, name}})); }
    QStringList log() const { return m_window->property("log").toStringList(); }
    QString focused() const
    {
        return m_window->activeFocusItem() ? m_window->activeFocusItem()->objectName() : QString();
    }
    void openKeyboard()
    {
        m_window.reset();
        m_scene = std::make_unique<KeyboardScene>();
        QTRY_COMPARE(QGuiApplication::focusWindow(), m_scene->window.get());
        m_scene->item("name")->forceActiveFocus();
        QTRY_VERIFY(KeyboardScene::isOpen());
    }

    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<KeyboardScene> m_scene;
    std::unique_ptr<PanelRemote> m_remote;
    std::optional<RecordedEvents> m_events;
};

void tst_PanelWithoutTouch::init()
{
    lindenreed::device::texts::load(u"en"_s);
    m_remote = std::make_unique<PanelRemote>();
    m_window = loadWindow(m_engine, rowsQml());
    m_events.emplace();
    QTRY_COMPARE(QGuiApplication::focusWindow(), m_window.get());
    QVERIFY(panel_view::waitUntilStill());
}

void tst_PanelWithoutTouch::cleanup()
{
    m_events.reset();
    m_scene.reset();
    m_window.reset();
    m_remote.reset();
    QTRY_VERIFY(!KeyboardScene::isOpen());
}

void tst_PanelWithoutTouch::profile()
{
    const QJsonObject state = m_remote->ask(u"state"_s);
    QCOMPARE(state.value(u"profile"_s).toString(), u"keys-6"_s);
    QCOMPARE(state.value(u"touch"_s), QJsonValue(false));
    QCOMPARE(panel_view::upright().size(), QSize(758, 1024));
    QCOMPARE(Device::instance()->profile.dpi, 212);
    QVERIFY(!Device::instance()->profile.touch);
}

void tst_PanelWithoutTouch::fingerIsNotSupported_data()
{
    QTest::addColumn<QJsonObject>("members");
    QTest::addColumn<QString>("answer");
    const QJsonObject place{{u"x"_s, 300}, {u"y"_s, 300}};
    const QJsonObject line{{u"x1"_s, 300}, {u"y1"_s, 300}, {u"x2"_s, 300}, {u"y2"_s, 400}};
    QTest::newRow("tap") << place << u"not-supported"_s;
    QTest::newRow("hold") << place << u"not-supported"_s;
    QTest::newRow("drag") << line << u"not-supported"_s;
    QTest::newRow("tap without a place") << QJsonObject() << u"bad-argument"_s;
}

void tst_PanelWithoutTouch::fingerIsNotSupported()
{
    QFETCH(QJsonObject, members);
    QFETCH(QString, answer);
    const QString command = QString::fromLatin1(QTest::currentDataTag()).section(u' ', 0, 0);
    QCOMPARE(code(m_remote->ask(command, members)), answer);
    QCOMPARE(log(), QStringList());
}

void tst_PanelWithoutTouch::keys_data()
{
    addKeys(Qt::Key_Menu);
}

void tst_PanelWithoutTouch::keys()
{
    QFETCH(QStringList, events);
    QFETCH(int, qtKey);
    m_window->findChild<QQuickItem *>(u"taker"_s)->forceActiveFocus();
    QCOMPARE(key(QString::fromLatin1(QTest::currentDataTag())), u"ok"_s);
    QCOMPARE(m_events->texts(), events);
    QCOMPARE(log(), qtKey != 0 ? QStringList{u"taker %1"_s.arg(qtKey)} : QStringList());
    QCOMPARE(focused(), u"taker"_s);
}

void tst_PanelWithoutTouch::centreActivatesTheFocusedItem()
{
    QCOMPARE(focused(), u"first"_s);
    QCOMPARE(key(u"centre"_s), u"ok"_s);
    QCOMPARE(key(u"down"_s), u"ok"_s);
    QCOMPARE(key(u"centre"_s), u"ok"_s);
    QCOMPARE(log(), QStringList({u"first activated"_s, u"second activated"_s}));
}

void tst_PanelWithoutTouch::arrowsMoveTheFocus()
{
    QCOMPARE(key(u"right"_s), u"ok"_s);
    QCOMPARE(focused(), u"second"_s);
    QCOMPARE(key(u"down"_s), u"ok"_s); // past the one that is disabled and the one that is hidden
    QCOMPARE(focused(), u"third"_s);
    QCOMPARE(key(u"left"_s), u"ok"_s);
    QCOMPARE(focused(), u"second"_s);
    QCOMPARE(key(u"up"_s), u"ok"_s);
    QCOMPARE(focused(), u"first"_s);
    QCOMPARE(key(u"page-down"_s), u"ok"_s); // no arrow
    QCOMPARE(focused(), u"first"_s);
}

void tst_PanelWithoutTouch::arrowsLeadFromAListToWhatIsInIt()
{
    m_window->findChild<QQuickItem *>(u"list"_s)->forceActiveFocus(); // no item that Tab reaches
    QCOMPARE(key(u"down"_s), u"ok"_s);
    QCOMPARE(focused(), u"inside"_s);
    QCOMPARE(key(u"up"_s), u"ok"_s);
    QCOMPARE(focused(), u"field"_s);
}

void tst_PanelWithoutTouch::arrowsStayWithWhoTakesThem()
{
    m_window->findChild<QQuickItem *>(u"taker"_s)->forceActiveFocus();
    for (const QString &name : {u"left"_s, u"right"_s, u"up"_s, u"down"_s}) {
        QCOMPARE(key(name), u"ok"_s);
        QCOMPARE(focused(), u"taker"_s);
    }
}

void tst_PanelWithoutTouch::arrowsInAField()
{
    // Without the keyboard, which would take them.
    auto *field = m_window->findChild<QQuickItem *>(u"field"_s);
    field->forceActiveFocus();
    QTRY_VERIFY(KeyboardScene::isOpen());
    QGuiApplication::inputMethod()->hide();
    QCOMPARE(field->property("cursorPosition").toInt(), 2);
    QCOMPARE(key(u"left"_s), u"ok"_s);
    QCOMPARE(field->property("cursorPosition").toInt(), 1);
    QCOMPARE(focused(), u"field"_s);
    QCOMPARE(key(u"up"_s), u"ok"_s);
    QCOMPARE(focused(), u"third"_s);
}

void tst_PanelWithoutTouch::pressByName()
{
    QCOMPARE(code(m_remote->ask(u"press"_s, {{u"name"_s, u"third"_s}})), u"ok"_s);
    QCOMPARE(log(), QStringList{u"third pressed"_s});
}

void tst_PanelWithoutTouch::arrowsMoveOverTheKeyboard()
{
    openKeyboard();
    for (const QString &name : {u"centre"_s, u"right"_s, u"centre"_s, u"left"_s, u"down"_s, u"centre"_s})
        QCOMPARE(key(name), u"ok"_s);
    QCOMPARE(m_scene->text("name"), u"qwa"_s); // the frame begins at the first key
    for (const QString &name : {u"right"_s, u"centre"_s, u"left"_s, u"left"_s, u"centre"_s})
        QCOMPARE(key(name), u"ok"_s);
    QCOMPARE(m_scene->text("name"), u"qwasa"_s); // nothing lies further left
    for (const QString &name : {u"down"_s, u"centre"_s})
        QCOMPARE(key(name), u"ok"_s);
    QCOMPARE(m_scene->key(u"Shift"_s).value(u"checked"_s), QJsonValue(true));
    QVERIFY(m_scene->item("name")->hasActiveFocus());
    QVERIFY(m_scene->ask(u"type"_s, {{u"text"_s, u"!"_s}})); // keys of a real keyboard beside it
    QCOMPARE(m_scene->text("name"), u"qwasa!"_s);
}

void tst_PanelWithoutTouch::framedKey()
{
    openKeyboard();
    QVERIFY(panel_view::waitUntilStill());
    const QRect first = rectangleOf(m_scene->key(u"q"_s));
    const int y = first.center().y();
    QCOMPARE(panel_view::greyAt(first.left() + 2, y), 0); // 6 wide on a 300 dpi panel
    QCOMPARE(panel_view::greyAt(first.left() + 6, y), 255);
    QCOMPARE(m_scene->key(u"q"_s).value(u"focused"_s), QJsonValue(true));
    QVERIFY(!m_scene->key(u"w"_s).contains(u"focused"_s));
    QCOMPARE(key(u"right"_s), u"ok"_s);
    QTRY_COMPARE(panel_view::greyAt(first.left() + 2, y), 255);
    QCOMPARE(m_scene->key(u"w"_s).value(u"focused"_s), QJsonValue(true));
}

void tst_PanelWithoutTouch::frameBeginsAtTheFirstKey()
{
    openKeyboard();
    for (const QString &name : {u"right"_s, u"down"_s})
        QCOMPARE(key(name), u"ok"_s);
    m_scene->item("number")->forceActiveFocus();
    QTRY_COMPARE(m_scene->key(u"1"_s).value(u"focused"_s), QJsonValue(true));
    QCOMPARE(key(u"centre"_s), u"ok"_s);
    QCOMPARE(m_scene->text("number"), u"1"_s);
    QVERIFY(KeyboardScene::isOpen());
    QCOMPARE(key(u"back"_s), u"ok"_s);
    QVERIFY(!KeyboardScene::isOpen());
    m_scene->item("name")->forceActiveFocus(); // and again
    QTRY_COMPARE(m_scene->key(u"q"_s).value(u"focused"_s), QJsonValue(true));
}

void tst_PanelWithoutTouch::framedKeyAccepts()
{
    openKeyboard();
    for (int i = 0; i < 3; ++i)
        QCOMPARE(key(u"down"_s), u"ok"_s);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(key(u"right"_s), u"ok"_s);
    QCOMPARE(m_scene->key(u"Done"_s).value(u"focused"_s), QJsonValue(true));
    QCOMPARE(key(u"centre"_s), u"ok"_s);
    QCOMPARE(m_scene->log(), QStringList{u"accepted"_s});
    QVERIFY(!KeyboardScene::isOpen());
}

void tst_PanelWithoutTouch::frameStaysBetweenPages()
{
    openKeyboard();
    for (int i = 0; i < 3; ++i)
        QCOMPARE(key(u"down"_s), u"ok"_s); // from q over a and Shift to 123
    QCOMPARE(key(u"centre"_s), u"ok"_s);
    QVERIFY(!m_scene->key(u"ABC"_s).isEmpty());
    QCOMPARE(key(u"centre"_s), u"ok"_s);
    QVERIFY(!m_scene->key(u"123"_s).isEmpty());
}

void tst_PanelWithoutTouch::backClosesTheKeyboard()
{
    openKeyboard();
    QCOMPARE(key(u"back"_s), u"ok"_s);
    QVERIFY(!KeyboardScene::isOpen());
    QVERIFY(m_scene->item("name")->hasActiveFocus());
}

void tst_PanelWithoutTouch::fastModeAndFullRefresh()
{
    auto &screen = Device::instance()->screen;
    screen.useFastMode(QRect(0, 500, 200, 200));
    QTRY_COMPARE(panel_view::greyAt(100, 600), 255);
    QTRY_COMPARE(panel_view::greyAt(100, 600), 0x88);
    QCOMPARE(panel_view::snapshot().header.refreshMode, 0U);
    screen.refresh(lindenreed::device::RefreshMode::Full);
    QTRY_COMPARE(panel_view::snapshot().header.refreshMode, 1U);
}

namespace {

QByteArray rowsQml()
{
    return R"(Window {
        id: root
        width: Screen.width; height: Screen.desktopAvailableHeight; visible: true; color: "#888888"
        property var log: []
        function note(text) { log = log.concat([text]) }
        component Row: Item {
            width: 100; height: 30; activeFocusOnTab: true
            Accessible.role: Accessible.Button; Accessible.name: objectName
            Accessible.onPressAction: root.note(objectName + " pressed")
            Keys.onReturnPressed: root.note(objectName + " activated")
        }
        MouseArea { anchors.fill: parent; onPressed: root.note("touched") }
        Row { objectName: "first"; focus: true }
        Row { objectName: "second"; y: 40 }
        Row { objectName: "disabled"; y: 80; enabled: false }
        Row { objectName: "hidden"; y: 120; visible: false }
        Row { objectName: "third"; y: 160 }
        TextInput { objectName: "field"; y: 200; width: 200; height: 30; text: "ab"; activeFocusOnTab: true }
        ListView {
            objectName: "list"; y: 300; width: 200; height: 100; model: 1; keyNavigationEnabled: true
            delegate: Item { width: 200; height: 40; Row { objectName: "inside" } }
        }
        Item { objectName: "taker"; y: 240
               Keys.onPressed: (event) => { root.note("taker " + event.key); event.accepted = true } }
    })";
}

} // namespace

PANEL_TEST_MAIN_WITH_RECORD(tst_PanelWithoutTouch, "{\"profile\": \"keys-6\"}")
#include "tst_panel_without_touch.moc"
