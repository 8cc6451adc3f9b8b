// The menu of a combo box: where it lies, what it shows, what chooses and what closes it.

#include "combo_box_test.h"
#include "panel_application.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_ControlsComboBoxMenu : public ComboBoxTest
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(endScene(m_scene), QStringList()); }

    void tapOpensAndChooses();
    void selectedBeforeItIsTold();
    void selectedRowCanBeChosenAgain();
    void tapOutsideClosesAlone();
    void menuLiesOverEverything();
    void menuPlace_data();
    void menuPlace();
    void sevenRowsAndNoMore();
    void highlight_data();
    void highlight();
    void radioSignsAreAState();
    void closes_data();
    void closes();
    void goesWhileItIsOpen();
    void keysWithTheFocusKept();
    void keyBackCloses();
};

void tst_ControlsComboBoxMenu::tapOpensAndChooses()
{
    make("selectedUid: 0");
    QSignalSpy opened(box(), SIGNAL(isOpenedChanged()));
    open();
    QCOMPARE(opened.count(), 1);
    click(row(u"Minutes"_s));
    QCOMPARE(opened.count(), 2);
    QVERIFY(!isOpened());
    QTRY_VERIFY(!menu());
    QCOMPARE(name(), u"Minutes"_s);
    QCOMPARE(chosen().value(0).toInt(), 1);
}

void tst_ControlsComboBoxMenu::selectedBeforeItIsTold()
{
    make("selectedUid: 0", "append({uid_: 3, text_: 'Three'}); append({uid_: 8, text_: 'Eight'})");
    open();
    click(row(u"Eight"_s));
    QCOMPARE(chosen(), (QVariantList{8, 8, false}));
}

void tst_ControlsComboBoxMenu::selectedRowCanBeChosenAgain()
{
    make("selectedUid: 1");
    open();
    click(row(u"Minutes"_s));
    QCOMPARE(chosen(), (QVariantList{1, 1, false}));
}

void tst_ControlsComboBoxMenu::tapOutsideClosesAlone()
{
    make("selectedUid: 1", {},
         "BitmapButton { objectName: 'behind'; x: 480; y: 700; onAction: screen.chosen = ['behind'] }");
    open();
    click(m_scene->item(u"behind"_s));
    QVERIFY(!isOpened());
    QCOMPARE(chosen(), QVariantList());
    QCOMPARE(name(), u"Minutes"_s);
    click(m_scene->item(u"behind"_s));
    QCOMPARE(chosen(), QVariantList{u"behind"_s});
}

void tst_ControlsComboBoxMenu::menuLiesOverEverything()
{
    make("selectedUid: 0", {},
         "Item { anchors.fill: parent; parent: screen.Window.contentItem\n"
         "Rectangle { x: 60; y: 150; width: 400; height: 400; color: 'gray'\n"
         "MouseArea { anchors.fill: parent; onClicked: screen.chosen = ['covered'] } } }");
    open();
    click(row(u"Hours"_s));
    QCOMPARE(chosen().value(0).toInt(), 2);
}

void tst_ControlsComboBoxMenu::menuPlace_data()
{
    QTest::addColumn<QByteArray>("place");
    QTest::addColumn<bool>("under");

    QTest::newRow("under it") << QByteArray("x: 60; y: 100") << true;
    QTest::newRow("above it where there is no room") << QByteArray("x: 60; y: 700") << false;
    QTest::newRow("within the page's margins") << QByteArray("x: 500; y: 100") << true;
}

void tst_ControlsComboBoxMenu::menuPlace()
{
    QFETCH(QByteArray, place);
    QFETCH(bool, under);

    make("selectedUid: 0; " + place);
    open();
    const QRect frame = sceneRectangle(menu());
    const QRect closed = sceneRectangle(box());
    QVERIFY(QRect(34, 34, 600 - 68, 800 - 68).contains(frame));
    QVERIFY(under ? frame.top() > closed.bottom() : frame.bottom() < closed.top());
    if (place.contains("x: 60"))
        QCOMPARE(frame.left(), closed.left());
    QVERIFY(frame.width() >= closed.width());
}

void tst_ControlsComboBoxMenu::sevenRowsAndNoMore()
{
    make("selectedUid: 12; y: 10", "for (let i = 0; i < 20; ++i) append({uid_: i, text_: 'Row ' + i})");
    open();
    const int height = sceneRectangle(menu()).height();
    QVERIFY(height > 7 * 79 && height < 8 * 79);
    QVERIFY2(row(u"Row 12"_s), "the selected row is in sight");
    QVERIFY(sceneRectangle(menu()).contains(sceneRectangle(row(u"Row 12"_s))));
}

void tst_ControlsComboBoxMenu::highlight_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<bool>("bold");

    QTest::newRow("of itself") << QByteArray() << true;
    QTest::newRow("asked for") << QByteArray("highlightSelected: true") << true;
    QTest::newRow("not wanted") << QByteArray("highlightSelected: false") << false;
    QTest::newRow("of itself, without signs") << QByteArray("state: ''") << true;
    QTest::newRow("not wanted, without signs") << QByteArray("state: ''; highlightSelected: false") << false;
}

void tst_ControlsComboBoxMenu::highlight()
{
    QFETCH(QByteArray, properties);
    QFETCH(bool, bold);

    make("selectedUid: 1; " + properties);
    open();
    const auto role = properties.contains("state: ") ? QAccessible::MenuItem : QAccessible::RadioButton;
    QVERIFY(accessible(row(u"Minutes"_s, role))->state().checked);
    QVERIFY(!accessible(row(u"Hours"_s, role))->state().checked);
    const auto isBold = [](QQuickItem *row) {
        for (QQuickItem *item : row->childItems()) {
            if (item->inherits("QQuickText"))
                return item->property("font").value<QFont>().bold();
        }
        return false;
    };
    QCOMPARE(isBold(row(u"Minutes"_s, role)), bold);
    QVERIFY(!isBold(row(u"Hours"_s, role)));
}

void tst_ControlsComboBoxMenu::radioSignsAreAState()
{
    make("selectedUid: 1; state: ''");
    open();
    QVERIFY(!row(u"Minutes"_s, QAccessible::RadioButton));
    QVERIFY(row(u"Minutes"_s, QAccessible::MenuItem));
}

void tst_ControlsComboBoxMenu::closes_data()
{
    QTest::addColumn<QByteArray>("by");

    QTest::newRow("when the screen turns") << QByteArray("turn");
    QTest::newRow("when it is hidden") << QByteArray("hide");
    QTest::newRow("when it is disabled") << QByteArray("disable");
}

void tst_ControlsComboBoxMenu::closes()
{
    QFETCH(QByteArray, by);

    make("selectedUid: 1");
    if (by == "turn") { // closed, it does not mind
        QVERIFY(QMetaObject::invokeMethod(box(), "orientationChanged"));
        QVERIFY(!isOpened());
    }
    open();
    if (by == "turn")
        QVERIFY(QMetaObject::invokeMethod(box(), "orientationChanged"));
    else
        box()->setProperty(by == "hide" ? "visible" : "enabled", false);
    QVERIFY(!isOpened());
    QTRY_VERIFY(!menu());
    QCOMPARE(chosen(), QVariantList());
}

void tst_ControlsComboBoxMenu::goesWhileItIsOpen()
{
    make("selectedUid: 1");
    open();
    delete box();
    QVERIFY2(!menu(), "its menu goes with it");
    m_scene->window().grabWindow();
}

void tst_ControlsComboBoxMenu::keysWithTheFocusKept()
{
    // A screen gives it the focus whenever it opens or closes.
    make("selectedUid: 1; onIsOpenedChanged: box.forceActiveFocus()");
    box()->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QVERIFY(isOpened());
    QVERIFY(box()->hasActiveFocus());
    QTest::keyClick(&m_scene->window(), Qt::Key_Down);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QVERIFY(!isOpened());
    QCOMPARE(chosen(), (QVariantList{2, 2, false}));
    QVERIFY(box()->hasActiveFocus());
    QTest::keyClick(&m_scene->window(), Qt::Key_Space);
    QTest::keyClick(&m_scene->window(), Qt::Key_Up);
    QTest::keyClick(&m_scene->window(), Qt::Key_Up);
    QTest::keyClick(&m_scene->window(), Qt::Key_Enter);
    QCOMPARE(name(), u"Seconds"_s);
}

void tst_ControlsComboBoxMenu::keyBackCloses()
{
    make("selectedUid: 1");
    box()->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QTest::keyClick(&m_scene->window(), Qt::Key_Down);
    QTest::keyClick(&m_scene->window(), Qt::Key_Back);
    QVERIFY(!isOpened());
    QCOMPARE(chosen(), QVariantList());
    QCOMPARE(name(), u"Minutes"_s);
}

PANEL_TEST_MAIN(tst_ControlsComboBoxMenu)
#include "tst_controls_combo_box_menu.moc"
