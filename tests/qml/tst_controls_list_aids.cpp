// The header of a selection, and a list's aids for scrolling.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

#include <QSignalSpy>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsListAids : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void selectionCount_data();
    void selectionCount();
    void selectAll_data();
    void selectAll();
    void selectionCancels();
    void nothingToTake_data();
    void nothingToTake();
    void selectionMeasures();
    void indicatorFollowsAList();
    void indicatorStaysOnItsRail();
    void assistantPages();
    void assistantOfTheSecondVersion();

private:
    /// At 300 dpi, `items` in a window of 1072 by 800 pixels.
    void make(const QByteArray &items);
    void tap(const QPoint &point) { m_scene->tap(point); }

    std::unique_ptr<QmlScene> m_scene;
};

namespace {

const QByteArray panel = "GroupSelectionPanel { objectName: 'panel'; width: 1072\n"
                         "selected_label_text: 'chosen'; select_all_title: 'All'; ";

} // namespace

void tst_ControlsListAids::make(const QByteArray &items)
{
    m_scene = controlsScene(items, {1072, 800}, 300);
    QVERIFY(m_scene);
}

void tst_ControlsListAids::cleanup()
{
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsListAids::selectionCount_data()
{
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("shown");

    QTest::newRow("none of none") << 0 << 0 << u"0 / 0"_s;
    QTest::newRow("some") << 24 << 3 << u"3 / 24"_s;
    QTest::newRow("all") << 24 << 24 << u"24 / 24"_s;
    QTest::newRow("more than this folder has") << 4 << 9 << u"9"_s;
}

void tst_ControlsListAids::selectionCount()
{
    QFETCH(int, items);
    QFETCH(int, selected);
    QFETCH(QString, shown);

    make(panel + "}");
    m_scene->item(u"panel"_s)->setProperty("items_count", items);
    m_scene->item(u"panel"_s)->setProperty("selected_count", selected);
    QVERIFY(findAccessible(m_scene->root(), QAccessible::StaticText, shown));
    QVERIFY(findAccessible(m_scene->root(), QAccessible::StaticText, u"chosen"_s));
}

void tst_ControlsListAids::selectAll_data()
{
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("selected");
    QTest::addColumn<bool>("checked");

    QTest::newRow("nothing is selected") << 24 << 0 << false;
    QTest::newRow("some are selected") << 24 << 23 << false;
    QTest::newRow("all are selected") << 24 << 24 << true;
    QTest::newRow("more are selected, elsewhere") << 24 << 25 << false;
    QTest::newRow("there is nothing") << 0 << 0 << false;
}

void tst_ControlsListAids::selectAll()
{
    QFETCH(int, items);
    QFETCH(int, selected);
    QFETCH(bool, checked);

    make(panel + "items_count: " + QByteArray::number(items)
         + "; selected_count: " + QByteArray::number(selected) + " }");
    QQuickItem *box = findAccessible(m_scene->root(), QAccessible::CheckBox, u"All"_s);
    QVERIFY(box);
    QCOMPARE(bool(accessible(box)->state().checked), checked);
    // A check in the box, 56 wide and ending on the content line.
    const QImage picture = m_scene->picture(u"panel"_s).copy(1072 - 60 - 56 + 6, 0, 44, 110);
    QCOMPARE(ink(picture.copy(0, 40, 44, 36)).isEmpty(), !checked);

    QSignalSpy spy(m_scene->item(u"panel"_s), SIGNAL(selectAll(bool)));
    tap(QPoint(1072 - 60 - 28, 60));
    QVERIFY(pressByAccessibility(box));
    QVERIFY(actByAccessibility(box, QAccessibleActionInterface::toggleAction()));
    QCOMPARE(spy.count(), 3);
    for (const QVariantList &arguments : spy)
        QCOMPARE(arguments, QVariantList{!checked});
}

void tst_ControlsListAids::selectionCancels()
{
    make(panel + "items_count: 2 }");
    QSignalSpy cancel(m_scene->item(u"panel"_s), SIGNAL(cancel()));
    QSignalSpy all(m_scene->item(u"panel"_s), SIGNAL(selectAll(bool)));
    tap(QPoint(88, 60));
    QCOMPARE(cancel.count(), 1);
    QQuickItem *back = findAccessible(m_scene->root(), QAccessible::Button);
    QVERIFY(back);
    QVERIFY(!accessibleName(back).isEmpty());
    pressByAccessibility(back);
    QCOMPARE(cancel.count(), 2);
    back->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Right);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(all.count(), 1);
    QTest::keyClick(&m_scene->window(), Qt::Key_Left);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(cancel.count(), 3);
    tap(QPoint(500, 60)); // the count is no button
    QCOMPARE(cancel.count() + all.count(), 4);
}

void tst_ControlsListAids::nothingToTake_data()
{
    QTest::addColumn<bool>("useDisabled");
    QTest::addColumn<int>("items");
    QTest::addColumn<int>("told");

    QTest::newRow("asleep") << true << 0 << 0;
    QTest::newRow("awake with one") << true << 1 << 1;
    QTest::newRow("never asleep unless told") << false << 0 << 1;
}

void tst_ControlsListAids::nothingToTake()
{
    QFETCH(bool, useDisabled);
    QFETCH(int, items);
    QFETCH(int, told);

    make(panel + "}");
    QQuickItem *item = m_scene->item(u"panel"_s);
    item->setProperty("use_disabled", useDisabled);
    item->setProperty("items_count", items);
    QSignalSpy spy(item, SIGNAL(selectAll(bool)));
    tap(QPoint(1072 - 88, 60));
    QCOMPARE(spy.count(), told);
    const QImage box = m_scene->picture(u"panel"_s).copy(1072 - 60 - 56, 30, 56, 60);
    QCOMPARE(ink(box).isEmpty(), told == 0);
    QCOMPARE(ink(box, 0xAB).width(), 56);
}

void tst_ControlsListAids::selectionMeasures()
{
    make(panel + "items_count: 24; selected_count: 3 }");
    QCOMPARE(m_scene->item(u"panel"_s)->height(), 120.0);
    const QImage picture = m_scene->picture(u"panel"_s);
    for (int x : {0, 500, 1071}) {
        QCOMPARE(grey(picture, x, 117), 255);
        QCOMPARE(grey(picture, x, 118), 0);
        QCOMPARE(grey(picture, x, 119), 0);
    }
    const QRect count = ink(picture.copy(150, 0, 150, 116));
    QVERIFY(count.left() + 150 >= 156 && count.left() + 150 <= 164);
    QCOMPARE(ink(picture.copy(800, 0, 272, 116)).right() + 800, 1072 - 60 - 1);
}

void tst_ControlsListAids::indicatorFollowsAList()
{
    make("GridView { id: grid; objectName: 'grid'; width: 1072; height: 400; cellWidth: 1072; cellHeight: "
         "100\n"
         "model: 40; delegate: Item {} }\n"
         "ScrollIndicator { id: bar; objectName: 'bar'; anchors.right: parent.right\n"
         "length: grid.height - GlobalValues.scrollListButtonsHeight\n"
         "indicatorLength: Math.max(height * bar.height / grid.contentHeight,\n"
         "GlobalValues.scrollIndicatorMinimalLenght)\n"
         "offset: (length - indicatorLength) * grid.contentY / Math.max(grid.contentHeight - grid.height, 1) "
         "}");
    QQuickItem *bar = m_scene->item(u"bar"_s);
    QCOMPARE(bar->height(), 272.0);
    QRect drawn = ink(m_scene->picture(u"bar"_s), 0x40);
    QCOMPARE(drawn.topLeft(), QPoint(0, 0));
    QCOMPARE(drawn.size(), QSize(8, 96));
    QCOMPARE(bar->mapToScene({}).x(), 1072.0 - 16 - 8); // 16 from the edge
    const QImage rail = m_scene->picture(u"bar"_s);
    for (int x = 0; x < rail.width(); ++x)
        QCOMPARE(grey(rail, x, 200), x == 3 || x == 4 ? 0xAA : 0xFF);
    QCOMPARE(accessible(bar)->role(), QAccessible::ScrollBar);
    QCOMPARE(accessible(bar)->valueInterface()->currentValue().toInt(), 0);

    m_scene->item(u"grid"_s)->setProperty("contentY", 3600);
    drawn = ink(m_scene->picture(u"bar"_s), 0x40);
    QCOMPARE(drawn.bottom(), 271);
    QCOMPARE(drawn.height(), 96);
    QCOMPARE(accessible(bar)->valueInterface()->currentValue().toInt(), 100);
}

void tst_ControlsListAids::indicatorStaysOnItsRail()
{
    make("ScrollIndicator { objectName: 'bar'; length: 200; indicatorLength: 100; offset: -30 }");
    QQuickItem *bar = m_scene->item(u"bar"_s);
    QCOMPARE(ink(m_scene->picture(u"bar"_s), 0x40), QRect(0, 0, 8, 100)); // pulled beyond the top
    bar->setProperty("offset", 130);
    QCOMPARE(ink(m_scene->picture(u"bar"_s), 0x40), QRect(0, 100, 8, 100));
    bar->setProperty("offset", 40.6);
    QCOMPARE(ink(m_scene->picture(u"bar"_s), 0x40), QRect(0, 41, 8, 100));
}

void tst_ControlsListAids::assistantPages()
{
    make("LRControls2.ScrollAssistant { objectName: 'assistant'; anchors.fill: parent }");
    QQuickItem *assistant = m_scene->item(u"assistant"_s);
    QSignalSpy up(assistant, SIGNAL(scrollUp()));
    QSignalSpy down(assistant, SIGNAL(scrollDown()));
    tap(QPoint(0, 799));
    tap(QPoint(111, 800 - 128));
    QCOMPARE(up.count(), 2);
    tap(QPoint(1071, 799));
    tap(QPoint(1072 - 112, 800 - 128));
    QCOMPARE(down.count(), 2);
    for (const QPoint &beside : {QPoint(112, 790), QPoint(0, 671), QPoint(959, 790), QPoint(500, 400)})
        tap(beside);
    QCOMPARE(up.count() + down.count(), 4);
    QVERIFY(ink(m_scene->picture(u"assistant"_s), 255).isEmpty()); // nothing is drawn

    QList<QQuickItem *> corners = assistant->childItems();
    QCOMPARE(corners.size(), 2);
    for (QQuickItem *corner : corners) {
        QCOMPARE(accessible(corner)->role(), QAccessible::Button);
        QVERIFY(!accessibleName(corner).isEmpty());
        QVERIFY(pressByAccessibility(corner));
    }
    QCOMPARE(up.count(), 3);
    QCOMPARE(down.count(), 3);
}

void tst_ControlsListAids::assistantOfTheSecondVersion()
{
    QmlScene scene("import com.lindenreed.controls 1.0\nScrollAssistant {}");
    QVERIFY(!scene.root());
    QVERIFY2(scene.errors().contains(u"ScrollAssistant is not a type"), qPrintable(scene.errors()));
}

PANEL_TEST_MAIN(tst_ControlsListAids)
#include "tst_controls_list_aids.moc"
