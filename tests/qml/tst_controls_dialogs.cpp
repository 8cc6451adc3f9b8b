// Dialogs: the frame over everything.

#include "dialog_test.h"
#include "panel_application.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int line = 3; // 4 of the design
constexpr int mat = 6; // 8 of the design

const QByteArray twoButtons
    = "TextButton { objectName: 'first'; text: 'First'; onAction: screen.note('first') }\n"
      "TextButton { objectName: 'second'; text: 'Second'; onAction: screen.note('second') }";

} // namespace

class tst_ControlsDialogs : public DialogTest
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(end(), QStringList()); }

    void width_data();
    void width();
    void place_data();
    void place();
    void contentIsTheChildren();
    void withoutTitle();
    void titleIsPlainAndElided();
    void tapOutsideCloses();
    void tapInsideIsTheDialogs();
    void keyBackCloses();
    void matOnAllSides();
    void coversTheWindowInALoaderWithoutSize();
    void staysAboveTheKeyboard();
    void comesBackWhenTheKeyboardGoes();
    void fitsAfterATurn();
    void comboBoxInADialog();
};

void tst_ControlsDialogs::width_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("windowWidth");
    QTest::addColumn<int>("expected");

    QTest::newRow("the screen less two margins") << QByteArray() << 600 << 600 - 68;
    QTest::newRow("no wider than 1100 of the design") << QByteArray() << 1200 << 777;
    QTest::newRow("what is asked for") << QByteArray("dialogWidth: 400") << 600 << 400;
    QTest::newRow("never wider than the screen") << QByteArray("dialogWidth: 4000") << 600 << 600 - 68;
}

void tst_ControlsDialogs::width()
{
    QFETCH(QByteArray, properties);
    QFETCH(int, windowWidth);
    QFETCH(int, expected);

    make(properties, {}, {windowWidth, 800});
    show();
    const QRect rectangle = sceneRectangle(frame());
    QCOMPARE(rectangle.width(), expected);
    QVERIFY(std::abs(rectangle.left() - (windowWidth - 1 - rectangle.right())) <= 1);
}

void tst_ControlsDialogs::place_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("top");

    const int height = 2 * line + head + 200;
    QTest::newRow("in the middle") << QByteArray() << (800 - height) / 2;
    QTest::newRow("at the top") << QByteArray("state: 'VerticalTop'") << 170; // 240 of the design
    QTest::newRow("at its offset") << QByteArray("state: 'VerticalTop'; verticalOffset: 33") << 33;
    QTest::newRow("an offset that would push it out")
        << QByteArray("state: 'VerticalTop'; verticalOffset: 790") << 800 - mat - height;
    QTest::newRow("an offset without the state") << QByteArray("verticalOffset: 33") << (800 - height) / 2;
}

void tst_ControlsDialogs::place()
{
    QFETCH(QByteArray, properties);
    QFETCH(int, top);

    make(properties);
    show();
    QVERIFY(std::abs(sceneRectangle(frame()).top() - top) <= 1);
}

void tst_ControlsDialogs::contentIsTheChildren()
{
    make({},
         "Item { objectName: 'body'; width: parent.width; height: 120 }\n"
         "DialogFooter { objectName: 'footer'; applyTitle: 'Save' }");
    show();
    const QRect outer = sceneRectangle(frame());
    QCOMPARE(placeOf(u"body"_s).top(), outer.top() + line + head);
    QCOMPARE(placeOf(u"body"_s).width(), outer.width() - 2 * line);
    QCOMPARE(placeOf(u"footer"_s).top(), placeOf(u"body"_s).top() + 120);
    QCOMPARE(placeOf(u"footer"_s).width(), outer.width() - 2 * line);
    QCOMPARE(placeOf(u"footer"_s).bottom() + line, outer.bottom());
    QVERIFY(findAccessible(frame(), QAccessible::Heading, u"Interval"_s));
    QCOMPARE(accessibleName(frame()), u"Interval"_s);
}

void tst_ControlsDialogs::withoutTitle()
{
    make("title: ''");
    show();
    QCOMPARE(placeOf(u"body"_s).top(), sceneRectangle(frame()).top() + line);
    QVERIFY(!findAccessible(frame(), QAccessible::Heading));
}

void tst_ControlsDialogs::titleIsPlainAndElided()
{
    make("title: '<i>' + 'Long '.repeat(40)");
    show();
    QQuickItem *heading = findAccessible(frame(), QAccessible::Heading);
    QVERIFY(heading->property("truncated").toBool());
    QCOMPARE(heading->property("textFormat").toInt(), int(Qt::PlainText));
    QVERIFY(sceneRectangle(frame()).contains(sceneRectangle(heading)));
}

void tst_ControlsDialogs::tapOutsideCloses()
{
    make();
    show();
    click({300, 780});
    QCOMPARE(log(), QStringList(u"close"_s)); // and nothing behind
    click({300, 780});
    QCOMPARE(log(), (QStringList{u"close"_s, u"behind"_s}));
    show();
    QVERIFY(
        pressByAccessibility(findAccessible(m_scene->item(u"dialog"_s), QAccessible::Button, u"Close"_s)));
    QCOMPARE(log().last(), u"close"_s);
    QCOMPARE(log().size(), 3);
}

void tst_ControlsDialogs::tapInsideIsTheDialogs()
{
    make();
    show();
    const QRect outer = sceneRectangle(frame());
    click(outer.center());
    click(outer.topLeft() + QPoint(100, 30)); // the title
    click(outer.topLeft() + QPoint(-4, 100)); // the mat
    QCOMPARE(log(), QStringList());
}

void tst_ControlsDialogs::keyBackCloses()
{
    make({}, twoButtons);
    show();
    QTest::keyClick(&m_scene->window(), Qt::Key_Back);
    QCOMPARE(log(), QStringList(u"close"_s));
}

void tst_ControlsDialogs::matOnAllSides()
{
    make();
    m_scene->window().setColor(Qt::gray);
    show();
    const QRect outer = sceneRectangle(frame());
    const QImage picture = m_scene->window().grabWindow();
    const QPoint middle = outer.center();
    for (int distance : {1, mat}) {
        for (const QPoint &point :
             {QPoint(outer.left() - distance, middle.y()), QPoint(outer.right() + distance, middle.y()),
              QPoint(middle.x(), outer.top() - distance), QPoint(middle.x(), outer.bottom() + distance)})
            QCOMPARE(picture.pixelColor(point), QColor(Qt::white));
    }
    QVERIFY(picture.pixelColor(middle.x(), outer.bottom() + mat + 1) != QColor(Qt::white));
    QCOMPARE(picture.pixelColor(outer.left() + 1, middle.y()), QColor(Qt::black));
}

void tst_ControlsDialogs::coversTheWindowInALoaderWithoutSize()
{
    make();
    show();
    QCOMPARE(m_scene->item(u"dialog"_s)->size(), QSizeF(600, 800));
}

void tst_ControlsDialogs::staysAboveTheKeyboard()
{
    make("state: 'VerticalTop'; verticalOffset: 560; onVisibleChanged: if (visible) input.forceActiveFocus()",
         "AdvancedTextInput { id: input; objectName: 'input'; width: parent.width; height: 80 }\n"
         "DialogFooter { objectName: 'footer'; applyTitle: 'Save' }");
    m_scene->window().setGeometry(0, 0, 600, 1000);
    show();
    QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
    const auto keyboardTop = [] { return QGuiApplication::inputMethod()->keyboardRectangle().top(); };
    QTRY_COMPARE(sceneRectangle(frame()).bottom() + 1 + mat, int(keyboardTop()));
    QVERIFY(sceneRectangle(frame()).top() < 560);
}

void tst_ControlsDialogs::comesBackWhenTheKeyboardGoes()
{
    make("state: 'VerticalTop'; verticalOffset: 560; onVisibleChanged: if (visible) input.forceActiveFocus()",
         "AdvancedTextInput { id: input; width: parent.width; height: 80 }\n"
         "ComboBox { objectName: 'box'; menuItems: units; selectedUid: 0; show_border: true }");
    m_scene->window().setGeometry(0, 0, 600, 1000);
    show();
    QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
    QTRY_VERIFY(sceneRectangle(frame()).top() < 560);
    // Opening the combo box takes the focus from the field: its menu belongs where the combo box is then.
    QQuickItem *box = m_scene->item(u"box"_s);
    click(sceneRectangle(box).center());
    QVERIFY(box->property("isOpened").toBool());
    QTRY_VERIFY(!QGuiApplication::inputMethod()->isVisible());
    QTRY_COMPARE(sceneRectangle(frame()).top(), 560);
    const auto besideTheBox = [&] {
        QQuickItem *menu = findAccessible(m_scene->window().contentItem(), QAccessible::PopupMenu);
        return sceneRectangle(menu).top() == sceneRectangle(box).bottom() + 1 + mat
            || sceneRectangle(menu).bottom() == sceneRectangle(box).top() - 1 - mat;
    };
    QTRY_VERIFY(besideTheBox());
}

void tst_ControlsDialogs::fitsAfterATurn()
{
    make("state: 'VerticalTop'; verticalOffset: 500");
    show();
    m_scene->window().resize(800, 500);
    QTRY_VERIFY(QRect(0, 0, 800, 500).contains(sceneRectangle(frame())));
    QTRY_COMPARE(sceneRectangle(frame()).width(), 800 - 68);
}

void tst_ControlsDialogs::comboBoxInADialog()
{
    make("onVisibleChanged: if (visible) box.forceActiveFocus()",
         "ComboBox { id: box; objectName: 'box'; menuItems: units; selectedUid: 0; state: 'RadioTextButton'\n"
         "onIsOpenedChanged: box.forceActiveFocus(); onChoosed: uid => screen.note('unit ' + uid) }\n"
             + twoButtons);
    show();
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QTest::keyClick(&m_scene->window(), Qt::Key_Down); // in the menu, not in the dialog
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(log(), QStringList(u"unit 1"_s));
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QTest::keyClick(&m_scene->window(), Qt::Key_Back); // closes the menu alone
    QCOMPARE(log(), QStringList(u"unit 1"_s));
    click(placeOf(u"box"_s).center());
    click({300, 780}); // so does a tap outside
    QCOMPARE(log(), QStringList(u"unit 1"_s));
    QTest::keyClick(&m_scene->window(), Qt::Key_Down);
    QCOMPARE(focused(), m_scene->item(u"first"_s));
}

PANEL_TEST_MAIN(tst_ControlsDialogs)
#include "tst_controls_dialogs.moc"
