// The tree of what can be seen and reached.

#include "panel_application.h"
#include "panel_tree_test.h"

#include <device.h>

using namespace Qt::StringLiterals;

class tst_PanelTree : public PanelTreeTest
{
    Q_OBJECT

private slots:
    void cleanup() { m_window.reset(); }

    void textsAndButtons();
    void readingOrder();
    void invisibleItemsAreLeftOut();
    void ignoredItemsAreLeftOut();
    void clippedItemsAreCut();
    void coveredItemsAreLeftOut();
    void roundCornersCoverLess();
    void transparentCoverDoesNotMatter();
    void nothingBehindAModalItemIsReached();
    void whatTakesNoTapsIsNotModal_data();
    void whatTakesNoTapsIsNotModal();
    void ownBackgroundDoesNotCover();
    void windowAboveCovers();
    void idInsideAndOutside();
    void checkedAndValue();
    void focused();
    void styledTextIsPlain();
    void statusPanelIsListed();
    void namelessRoot();
};

void tst_PanelTree::textsAndButtons()
{
    load(R"(
        Text { x: 10; y: 20; width: 100; height: 30; text: "Plain" }
        Item { x: 10; y: 100; width: 200; height: 50; Accessible.role: Accessible.Button; Accessible.name: "Play"
               Text { id: label; anchors.fill: parent; text: "Inside"; enabled: false } })");
    const QJsonArray tree = m_remote.ask(u"tree"_s).value(u"tree"_s).toArray();
    QCOMPARE(tree.size(), 3); // with the status panel
    const QJsonObject text = tree.at(1).toObject();
    QCOMPARE(text.value(u"name"_s).toString(), u"Plain"_s);
    QCOMPARE(text.value(u"role"_s).toString(), u"StaticText"_s);
    QCOMPARE(rectangleOf(text), QRect(10, 65, 100, 30)); // screen pixels
    QVERIFY(text.value(u"enabled"_s).toBool());
    QVERIFY(!text.contains(u"checked"_s));
    const QJsonObject button = tree.at(2).toObject();
    QCOMPARE(button.value(u"name"_s).toString(), u"Play"_s);
    QCOMPARE(button.value(u"role"_s).toString(), u"Button"_s);
    const QJsonObject inside = button.value(u"children"_s).toArray().at(0).toObject();
    QCOMPARE(inside.value(u"name"_s).toString(), u"Inside"_s);
    QCOMPARE(inside.value(u"id"_s).toString(), u"label"_s);
    QVERIFY(!inside.value(u"enabled"_s).toBool());
}

void tst_PanelTree::readingOrder()
{
    load(R"(
        Text { x: 300; y: 200; text: "4" }
        Text { x: 100; y: 100; text: "2" }
        Text { x: 10; y: 200; text: "3" }
        Item { Text { x: 200; y: 10; text: "1" } })");
    QCOMPARE(names(), QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s}));
}

void tst_PanelTree::invisibleItemsAreLeftOut()
{
    load(R"(
        Text { text: "shown" }
        Text { y: 50; text: "hidden"; visible: false }
        Item { y: 100; visible: false; Text { text: "in a hidden item" } }
        Text { y: 150; text: "clear"; opacity: 0 }
        Item { y: 200; opacity: 0; Text { text: "in a clear item" } }
        Text { x: 800; text: "beside the screen" }
        Text { y: 250; text: "" }
        Text { y: 300; width: 0; text: "without width" })");
    QCOMPARE(names(), QStringList{u"shown"_s});
}

void tst_PanelTree::ignoredItemsAreLeftOut()
{
    load(R"(Item { width: 100; height: 50; Accessible.role: Accessible.Button; Accessible.name: "Play"
                   Text { text: "Play"; Accessible.ignored: true } })");
    QCOMPARE(names(), QStringList{u"Play"_s});
}

void tst_PanelTree::clippedItemsAreCut()
{
    load(R"(
        Item { x: 100; y: 100; width: 200; height: 100; clip: true
            Text { x: -20; y: -10; width: 100; height: 30; text: "cut" }
            Text { y: 150; text: "scrolled out" }
            Item { x: 50; y: 50; width: 500; height: 500; clip: true
                Text { width: 400; height: 400; text: "cut twice" } } })");
    QCOMPARE(names(), QStringList({u"cut"_s, u"cut twice"_s}));
    const QList<QJsonObject> all = nodes();
    QCOMPARE(rectangleOf(all.at(1)), QRect(100, 145, 80, 20));
    QCOMPARE(rectangleOf(all.at(2)), QRect(150, 195, 150, 50));
}

void tst_PanelTree::coveredItemsAreLeftOut()
{
    load(R"(
        Item { width: 100; height: 50; Accessible.role: Accessible.Button; Accessible.name: "Below"
               Accessible.onPressAction: root.note("below") }
        Item { y: 100; width: 100; height: 50; Accessible.role: Accessible.Button; Accessible.name: "Partly"
               Accessible.onPressAction: root.note("partly") }
        Rectangle { width: 200; height: 120; z: 1; color: "white"; Text { text: "Dialog" } })");
    QCOMPARE(names(), QStringList({u"Dialog"_s, u"Partly"_s}));
    QCOMPARE(act(u"press"_s, u"Below"_s), u"not-possible"_s);
    QCOMPARE(act(u"press"_s, u"Partly"_s), u"ok"_s);
    QCOMPARE(log(), QStringList{u"partly"_s});
}

void tst_PanelTree::roundCornersCoverLess()
{
    load(R"(
        Text { x: 20; y: 1; width: 50; height: 10; text: "at the edge" }
        Text { x: 1; y: 20; width: 50; height: 10; text: "at the side" }
        Text { x: 1; y: 1; width: 50; height: 10; text: "at the corner" }
        Text { x: 20; y: 300; width: 30; height: 30; text: "in a circle" }
        Text { x: 21; y: 360; width: 28; height: 30; text: "under a small corner" }
        Rectangle { width: 200; height: 100; radius: 16; color: "white" }
        Rectangle { x: 20; y: 300; width: 30; height: 30; radius: 15; color: "white" }
        Rectangle { x: 20; y: 360; width: 30; height: 30; radius: 1; color: "white" })");
    QCOMPARE(names(), QStringList({u"at the corner"_s, u"in a circle"_s}));
}

void tst_PanelTree::transparentCoverDoesNotMatter()
{
    load(R"(
        Item { width: 100; height: 50; Accessible.role: Accessible.Button; Accessible.name: "Below"
               Accessible.onPressAction: root.note("below") }
        MouseArea { width: parent.width; height: parent.height - 1 }
        Rectangle { anchors.fill: parent; color: "#80000000" }
        Rectangle { anchors.fill: parent; color: "white"; opacity: 0.5 })");
    QCOMPARE(act(u"press"_s, u"Below"_s), u"ok"_s);
    QCOMPARE(log(), QStringList{u"below"_s});
}

void tst_PanelTree::nothingBehindAModalItemIsReached()
{
    load(R"(
        component Button: Item { width: 100; height: 50; Accessible.role: Accessible.Button
                                 Accessible.onPressAction: root.note(Accessible.name) }
        Item { id: page; anchors.fill: parent; Accessible.role: Accessible.NoRole
            Accessible.onIncreaseAction: root.note("next")
            Button { Accessible.name: "Behind" }
            Button { y: 100; Accessible.name: "Play" }
            Text { y: 200; text: "To be read" }
            MouseArea { anchors.fill: parent; Accessible.role: Accessible.Button; Accessible.name: "Close"
                        Accessible.onPressAction: root.note("close")
                Button { y: 300; Accessible.name: "Inside" }
                Button { y: 400; Accessible.name: "Play" } }
            Button { y: 500; Accessible.name: "Above" } })");
    QHash<QString, bool> enabled;
    const QList<QJsonObject> all = nodes();
    for (const QJsonObject &node : all)
        enabled[node.value(u"name"_s).toString()] = node.value(u"enabled"_s).toBool();
    QCOMPARE(names().count(u"Play"_s), 2);
    QCOMPARE(enabled.value(u"Behind"_s, true), false);
    QCOMPARE(enabled.value(u"To be read"_s, true), false);
    QVERIFY(enabled.value(u"Inside"_s) && enabled.value(u"Close"_s) && enabled.value(u"Above"_s));
    QCOMPARE(act(u"press"_s, u"Behind"_s), u"not-possible"_s);
    QCOMPARE(log(), QStringList());
    for (const QString &name : {u"Inside"_s, u"Close"_s, u"Above"_s, u"Play"_s})
        QCOMPARE(act(u"press"_s, name), u"ok"_s);
    QCOMPARE(act(u"press"_s, u"Play"_s, 2), u"no-such-item"_s); // the one behind is not counted
    QCOMPARE(act(u"increase"_s, u"#page"_s), u"ok"_s); // what the modal item is a part of
    QCOMPARE(log(), QStringList({u"Inside"_s, u"close"_s, u"Above"_s, u"Play"_s, u"next"_s}));
}

void tst_PanelTree::whatTakesNoTapsIsNotModal_data()
{
    QTest::addColumn<QByteArray>("area");

    QTest::newRow("disabled") << QByteArray("MouseArea { anchors.fill: parent; enabled: false }");
    QTest::newRow("in a disabled item")
        << QByteArray("Item { anchors.fill: parent; enabled: false; MouseArea { anchors.fill: parent } }");
    QTest::newRow("hidden") << QByteArray("MouseArea { anchors.fill: parent; visible: false }");
    QTest::newRow("for no button") << QByteArray(
        "MouseArea { anchors.fill: parent; acceptedButtons: Qt.NoButton }");
    QTest::newRow("cut") << QByteArray(
        "Item { width: 758; height: 900; clip: true; MouseArea { width: 758; height: 979 } }");
    QTest::newRow("behind") << QByteArray("MouseArea { anchors.fill: parent; z: -1 }");
}

void tst_PanelTree::whatTakesNoTapsIsNotModal()
{
    QFETCH(QByteArray, area);
    load(R"(Item { width: 100; height: 50; Accessible.role: Accessible.Button; Accessible.name: "Below"
                   Accessible.onPressAction: root.note("below") })"
         + area);
    QCOMPARE(act(u"press"_s, u"Below"_s), u"ok"_s);
}

void tst_PanelTree::ownBackgroundDoesNotCover()
{
    load(R"(Item { width: 100; height: 50; Accessible.role: Accessible.Button; Accessible.name: "Play"
                   Accessible.onPressAction: root.note("play")
                   Rectangle { anchors.fill: parent; color: "white" } })");
    QCOMPARE(act(u"press"_s, u"Play"_s), u"ok"_s);
}

void tst_PanelTree::windowAboveCovers()
{
    load(R"(Text { text: "Below" } Text { y: 500; text: "Free" })");
    const auto above = loadWindow(m_engine, R"(Window { y: 45; width: 758; height: 200; visible: true
                                                        Text { text: "Above" } })");
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(names(), QStringList({u"Above"_s, u"Free"_s}));
}

void tst_PanelTree::idInsideAndOutside()
{
    load(R"(
        component Row: Item { id: inner; width: 100; height: 20; Accessible.name: "row"; Text { id: row_text; text: "t" } }
        Row { id: outer }
        Row { y: 50 })");
    QStringList ids;
    for (const QJsonObject &node : nodes()) {
        if (node.value(u"name"_s) == u"row"_s)
            ids.append(node.value(u"id"_s).toString());
    }
    QCOMPARE(ids, QStringList({u"outer"_s, u"inner"_s}));
}

void tst_PanelTree::checkedAndValue()
{
    load(R"(
        Item { width: 100; height: 50; Accessible.role: Accessible.CheckBox; Accessible.name: "on"
               Accessible.checkable: true; Accessible.checked: true }
        Item { y: 100; width: 100; height: 50; Accessible.role: Accessible.CheckBox; Accessible.name: "off"
               Accessible.checkable: true; Accessible.checked: false }
        Item { y: 200; width: 100; height: 50; Accessible.role: Accessible.Slider; Accessible.name: "light"
               property int value: 40; property int minimumValue: 0; property int maximumValue: 100 }
        TextInput { y: 300; width: 100; height: 50; text: "typed" })");
    const QList<QJsonObject> all = nodes();
    QCOMPARE(all.at(1).value(u"checked"_s), QJsonValue(true));
    QCOMPARE(all.at(2).value(u"checked"_s), QJsonValue(false));
    QCOMPARE(all.at(3).value(u"value"_s).toString(), u"40"_s);
    QCOMPARE(all.at(4).value(u"value"_s).toString(), u"typed"_s);
    QCOMPARE(all.at(4).value(u"role"_s).toString(), u"EditableText"_s);
}

void tst_PanelTree::focused()
{
    load(R"(
        component Row: Item { width: 100; height: 30; Accessible.role: Accessible.Button; Accessible.name: objectName }
        Row { objectName: "first"; focus: true; Text { text: "inside" } }
        Row { objectName: "second"; y: 40 }
        Row { objectName: "around"; y: 80
              FocusScope { objectName: "scope"; width: 50; height: 30; Item { focus: true; width: 9; height: 9 } } }
        ListView { objectName: "list"; y: 160; width: 100; height: 60; model: 2
              delegate: Item { width: 90; height: 30
                     Text { text: "a text" }
                     Row { objectName: "hidden"; visible: false }
                     Row { objectName: "in cell " + index; width: 40 }
                     Row { objectName: "also in it"; x: 50; width: 40 } } }
        FocusScope { objectName: "no cell"; y: 240; width: 100; height: 30; Row { objectName: "in no cell" } }
        TextInput { objectName: "field"; y: 120; width: 100; height: 30; text: "typed" }
        Row { objectName: "row of a menu"; y: 300; visible: false; Accessible.focused: true })");
    const auto focusedNames = [this] {
        QStringList names;
        for (const QJsonObject &node : nodes()) {
            if (node.contains(u"focused"_s))
                names.append(node.value(u"name"_s).toString() + node.value(u"value"_s).toString());
        }
        return names;
    };
    const auto focus
        = [this](const QString &name) { m_window->findChild<QQuickItem *>(name)->forceActiveFocus(); };
    QTRY_COMPARE(focusedNames(), QStringList{u"first"_s});
    focus(u"second"_s);
    QCOMPARE(focusedNames(), QStringList{u"second"_s});
    focus(u"field"_s);
    QCOMPARE(focusedNames(), QStringList{u"typed"_s});
    focus(u"scope"_s); // nothing in it says anything, so what it lies in is told
    QCOMPARE(focusedNames(), QStringList{u"around"_s});
    focus(u"list"_s); // its cell stands for what can be pressed in that
    QCOMPARE(focusedNames(), QStringList{u"in cell 0"_s});
    m_window->findChild<QQuickItem *>(u"list"_s)->setProperty("currentIndex", 1);
    QCOMPARE(focusedNames(), QStringList{u"in cell 1"_s});
    // Somebody else has the keys and hands them to the row of its menu.
    auto *const menuRow = m_window->findChild<QQuickItem *>(u"row of a menu"_s);
    for (const QString &name : {u"first"_s, u"no cell"_s}) {
        focus(name);
        menuRow->setVisible(true);
        QCOMPARE(focusedNames(), QStringList{u"row of a menu"_s});
        menuRow->setVisible(false);
    }
    QCOMPARE(focusedNames(), QStringList());

    // The keys go to the window in front alone.
    const auto above = loadWindow(m_engine, "Window { y: 600; width: 100; height: 100; visible: true }");
    QTRY_COMPARE(QGuiApplication::focusWindow(), above.get());
    menuRow->setVisible(true);
    QCOMPARE(focusedNames(), QStringList());
}

void tst_PanelTree::styledTextIsPlain()
{
    load(
        R"(Text { text: "<b>Bold</b> &amp; plain" } Text { y: 50; textFormat: Text.PlainText; text: "<b>as it is</b>" })");
    QCOMPARE(names(), QStringList({u"Bold & plain"_s, u"<b>as it is</b>"_s}));
}

void tst_PanelTree::statusPanelIsListed()
{
    load(R"(Text { text: "x" })");
    const QJsonObject first = nodes().at(0);
    QCOMPARE(first.value(u"role"_s).toString(), u"StatusBar"_s);
    QCOMPARE(rectangleOf(first), QRect(0, 0, 758, 45));
    QVERIFY(first.value(u"value"_s).toString().contains(u':'));
}

void tst_PanelTree::namelessRoot()
{
    load(R"(Item { id: show; anchors.fill: parent; Accessible.role: Accessible.NoRole
                   Accessible.onPressAction: root.note("press"); Accessible.onIncreaseAction: root.note("next")
                   Accessible.onDecreaseAction: root.note("back") })");
    QCOMPARE(act(u"press"_s, u"#show"_s), u"ok"_s);
    QCOMPARE(act(u"increase"_s, u"#show"_s), u"ok"_s);
    QCOMPARE(act(u"decrease"_s, u"#show"_s), u"ok"_s);
    QCOMPARE(log(), QStringList({u"press"_s, u"next"_s, u"back"_s}));
}

PANEL_TEST_MAIN(tst_PanelTree)
#include "tst_panel_tree.moc"
