// Context menus: what taps and keys choose, and what closes them.

#include "context_menu_test.h"
#include "panel_application.h"

using namespace Qt::StringLiterals;

class tst_ControlsMenuChoices : public ContextMenuTest
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(endScene(m_scene), QStringList()); }

    void tapChooses();
    void tapOnTheRimIsNothing();
    void tapOutsideCloses();
    void nothingBehindIsTouched();
    void checkedRow_data();
    void checkedRow();
    void titleThatIsARowByChance();
    void uidsWithGaps();
    void keysWalkAndChoose();
    void keyBackCloses();
    void pageKeysInALongMenu();
    void focusComesBack();
    void accessiblePressChooses();
};

void tst_ControlsMenuChoices::tapChooses()
{
    make("ImageTextButton", threeRows);
    open();
    click(sceneRectangle(row(u"Add photos"_s)).center());
    QCOMPARE(chosen(), QVariantList{1});
    QCOMPARE(closed(), 0);
    QVERIFY(!isOpen());
    open();
    click(sceneRectangle(row(u"Rename"_s)).center());
    QCOMPARE(chosen(), (QVariantList{1, 0}));
    QCOMPARE(closed(), 0);
}

void tst_ControlsMenuChoices::tapOnTheRimIsNothing()
{
    make("ImageTextButton", threeRows);
    open();
    const QRect frame = sceneRectangle(panel());
    click(frame.topLeft() + QPoint(frame.width() / 2, 5));
    click(frame.topLeft() + QPoint(-3, 100)); // the mat
    QVERIFY(isOpen());
    QCOMPARE(closed(), 0);
    QCOMPARE(chosen(), QVariantList());
}

void tst_ControlsMenuChoices::tapOutsideCloses()
{
    make("ImageTextButton", threeRows);
    open();
    click({300, 780});
    QCOMPARE(closed(), 1);
    QCOMPARE(chosen(), QVariantList());
}

void tst_ControlsMenuChoices::nothingBehindIsTouched()
{
    make("ImageTextButton", threeRows);
    open();
    click(m_scene->middle(u"behind"_s));
    QCOMPARE(closed(), 1);
    QCOMPARE(m_scene->root()->property("touchedBehind").toInt(), 0);
    QVERIFY2(!isOpen(), "the button behind would have opened it again");
}

void tst_ControlsMenuChoices::checkedRow_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QVariantList>("expected");

    QTest::newRow("can be chosen again where it is asked for")
        << QByteArray("radioBtnDontCheckChecked: true") << QVariantList{2};
    QTest::newRow("is chosen already") << QByteArray() << QVariantList();
}

void tst_ControlsMenuChoices::checkedRow()
{
    QFETCH(QByteArray, properties);
    QFETCH(QVariantList, expected);

    make("RadioButton", threeRows, "Delete", {40, 100, 500, 60}, properties);
    open();
    click(sceneRectangle(row(u"Delete"_s, QAccessible::RadioButton)).center());
    QCOMPARE(chosen(), expected);
    QCOMPARE(closed(), 0);
    QCOMPARE(isOpen(), expected.isEmpty());
    if (isOpen()) {
        click(sceneRectangle(row(u"Rename"_s, QAccessible::RadioButton)).center());
        QCOMPARE(chosen(), QVariantList{0});
    }
}

void tst_ControlsMenuChoices::titleThatIsARowByChance()
{
    make("ImageTextButton", threeRows, "Delete"); // a playlist of that name
    open();
    QVERIFY(!accessible(row(u"Delete"_s))->state().checked);
    click(sceneRectangle(row(u"Delete"_s)).center());
    QCOMPARE(chosen(), QVariantList{2});
}

void tst_ControlsMenuChoices::uidsWithGaps()
{
    make("RadioButton", "append({uid_: 7, text_: 'Seven'}); append({uid_: 40, text_: 'Forty'})");
    open();
    click(sceneRectangle(row(u"Forty"_s, QAccessible::RadioButton)).center());
    QCOMPARE(chosen(), QVariantList{40});
}

void tst_ControlsMenuChoices::keysWalkAndChoose()
{
    make("RadioButton", threeRows, "Delete");
    open();
    QTest::keyClick(&m_scene->window(), Qt::Key_Up); // it began at the checked row
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(chosen(), QVariantList{1});
    open();
    QTest::keyClick(&m_scene->window(), Qt::Key_Down); // nothing below the last
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(&m_scene->window(), Qt::Key_Up);
    QTest::keyClick(&m_scene->window(), Qt::Key_Enter);
    QCOMPARE(chosen(), (QVariantList{1, 0}));
    QCOMPARE(closed(), 0);
}

void tst_ControlsMenuChoices::keyBackCloses()
{
    make("ImageTextButton", threeRows);
    open();
    QTest::keyClick(&m_scene->window(), Qt::Key_Back);
    QCOMPARE(closed(), 1);
    open();
    QTest::keyClick(&m_scene->window(), Qt::Key_Escape);
    QCOMPARE(closed(), 2);
    QCOMPARE(chosen(), QVariantList());
}

void tst_ControlsMenuChoices::pageKeysInALongMenu()
{
    make("RadioButton", manyRows, "Row 3");
    open();
    const int page = sceneRectangle(panel()).height() / 85;
    QTest::keyClick(&m_scene->window(), Qt::Key_PageDown);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(chosen().size(), 1);
    QVERIFY(chosen().first().toInt() >= 3 + page - 1);
    open();
    QTest::keyClick(&m_scene->window(), Qt::Key_PageUp);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(chosen().last().toInt(), 0);
}

void tst_ControlsMenuChoices::focusComesBack()
{
    make("ImageTextButton", threeRows);
    QQuickItem *behind = m_scene->item(u"behind"_s);
    behind->forceActiveFocus();
    for (int i = 0; i < 2; ++i) { // the first time it is loaded
        open();
        QVERIFY(!behind->hasActiveFocus());
        click({300, 780});
        QVERIFY(behind->hasActiveFocus());
    }
}

void tst_ControlsMenuChoices::accessiblePressChooses()
{
    make("ImageTextButton", threeRows);
    open();
    QVERIFY(pressByAccessibility(row(u"Delete"_s)));
    QCOMPARE(chosen(), QVariantList{2});
    QCOMPARE(closed(), 0);
    open();
    QVERIFY(pressByAccessibility(row(u"Close"_s, QAccessible::Button)));
    QCOMPARE(closed(), 1);
}

PANEL_TEST_MAIN(tst_ControlsMenuChoices)
#include "tst_controls_menu_choices.moc"
