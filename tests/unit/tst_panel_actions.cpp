// Acting on items of the tree by their names.

#include "panel_application.h"
#include "panel_tree_test.h"

using namespace Qt::StringLiterals;

class tst_PanelActions : public PanelTreeTest
{
    Q_OBJECT

private slots:
    void cleanup() { m_window.reset(); }

    void press_data();
    void press();
    void noBreakSpaceIsASpace();
    void pressIsRefused();
    void pressNth();
    void increaseAndDecrease();
};

void tst_PanelActions::press_data()
{
    QTest::addColumn<QJsonObject>("members");
    QTest::newRow("by name") << QJsonObject{{u"name"_s, u"Play"_s}};
    QTest::newRow("by id") << QJsonObject{{u"name"_s, u"#play_button"_s}};
    QTest::newRow("the first, said so") << QJsonObject{{u"name"_s, u"Play"_s}, {u"n"_s, 1}};
}

void tst_PanelActions::press()
{
    QFETCH(QJsonObject, members);
    // The label of the same name comes first in reading order and knows no action.
    load(R"(
        Text { text: "Play" }
        Item { id: play_button; y: 100; width: 100; height: 50
               Accessible.role: Accessible.Button; Accessible.name: "Play"; Accessible.onPressAction: root.note("pressed") })");
    QCOMPARE(code(m_remote.ask(u"press"_s, members)), u"ok"_s);
    QCOMPARE(log(), QStringList{u"pressed"_s});
}

void tst_PanelActions::noBreakSpaceIsASpace()
{
    load(R"(
        Item { width: 100; height: 50; Accessible.role: Accessible.Button; Accessible.name: "5\u00a0minutes"
               Accessible.onPressAction: root.note("pressed") })");
    QCOMPARE(act(u"press"_s, u"5 minutes"_s), u"ok"_s);
    QCOMPARE(act(u"press"_s, u"5\u00a0minutes"_s), u"ok"_s);
    QCOMPARE(log(), (QStringList{u"pressed"_s, u"pressed"_s}));
}

void tst_PanelActions::pressIsRefused()
{
    load(R"(
        Item { enabled: false
            Item { width: 100; height: 50; Accessible.role: Accessible.Button; Accessible.name: "Disabled"
                   Accessible.onPressAction: root.note("disabled") } }
        Item { y: 100; width: 100; height: 50; visible: false; Accessible.role: Accessible.Button
               Accessible.name: "Hidden"; Accessible.onPressAction: root.note("hidden") }
        Text { y: 200; text: "Text" })");
    QCOMPARE(act(u"press"_s, u"Disabled"_s), u"not-possible"_s);
    QCOMPARE(act(u"press"_s, u"Hidden"_s), u"no-such-item"_s);
    QCOMPARE(act(u"press"_s, u"Text"_s), u"not-possible"_s);
    QCOMPARE(act(u"press"_s, u"Tex"_s), u"no-such-item"_s); // the exact name alone
    QCOMPARE(act(u"press"_s, u"Disabled"_s, 0), u"bad-argument"_s);
    QCOMPARE(code(m_remote.ask(u"press"_s)), u"bad-argument"_s);
    QCOMPARE(act(u"press"_s, u"#missing"_s), u"no-such-item"_s);
    QCOMPARE(log(), QStringList());
}

void tst_PanelActions::pressNth()
{
    load(R"(
        Repeater { model: 3
            Item { x: 100 * (2 - index); y: 40; width: 50; height: 50; Accessible.role: Accessible.Button
                   Accessible.name: "Play"; Accessible.onPressAction: root.note("at " + x) } })");
    QCOMPARE(act(u"press"_s, u"Play"_s), u"ok"_s);
    QCOMPARE(act(u"press"_s, u"Play"_s, 3), u"ok"_s);
    QCOMPARE(act(u"press"_s, u"Play"_s, 4), u"no-such-item"_s);
    QCOMPARE(log(), QStringList({u"at 0"_s, u"at 200"_s}));
}

void tst_PanelActions::increaseAndDecrease()
{
    load(R"(Item { width: 100; height: 50; Accessible.role: Accessible.Slider; Accessible.name: "Light"
                   property int value: 40; property int minimumValue: 0; property int maximumValue: 100; property int stepSize: 1
                   Accessible.onIncreaseAction: root.note("more"); Accessible.onDecreaseAction: root.note("less") })");
    QCOMPARE(act(u"increase"_s, u"Light"_s), u"ok"_s);
    QCOMPARE(act(u"decrease"_s, u"Light"_s), u"ok"_s);
    QCOMPARE(act(u"press"_s, u"Light"_s), u"not-possible"_s);
    QCOMPARE(log(), QStringList({u"more"_s, u"less"_s}));
}

PANEL_TEST_MAIN(tst_PanelActions)
#include "tst_panel_actions.moc"
