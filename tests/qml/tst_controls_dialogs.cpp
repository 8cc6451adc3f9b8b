// Dialogs: the frame over everything, and the two buttons at its foot.

#include <facts.h>

#include "accessible_items.h"
#include "panel_application.h"
#include "qml_scene.h"

#include <QInputMethod>
#include <QSignalSpy>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsDialogs : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
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
    void footerTells();
    void footerWords_data();
    void footerWords();
    void footerHalves();
    void footerPressed();

private:
    void make(const QByteArray &properties = {}, const QByteArray &content = {}, QSize size = {600, 800});
    void show(bool visible = true) { m_scene->item(u"loader"_s)->setVisible(visible); }
    QQuickItem *frame() const;
    QRect place(const QString &name) const { return sceneRectangle(m_scene->item(name)); }
    QStringList log() const { return m_scene->root()->property("log").toStringList(); }
    void click(const QPoint &point) { QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, point); }
    QQuickItem *focused() const { return m_scene->window().activeFocusItem(); }

    std::unique_ptr<QmlScene> m_scene;
};

namespace {

constexpr int line = 3; // 4 of the design
constexpr int head = 79; // 112 of the design
constexpr int mat = 6; // 8 of the design

const QByteArray twoButtons
    = "TextButton { objectName: 'first'; text: 'First'; onAction: screen.note('first') }\n"
      "TextButton { objectName: 'second'; text: 'Second'; onAction: screen.note('second') }";

} // namespace

void tst_ControlsDialogs::make(const QByteArray &properties, const QByteArray &content, QSize size)
{
    m_scene = std::make_unique<QmlScene>(
        QByteArray(R"(import QtQuick
import com.lindenreed.controls 1.0
Item {
    id: screen
    property var log: []
    function note(text) { log = log.concat([text]) }
    ListModel {
        id: units
        ListElement { uid_: 0; text_: 'Seconds' }
        ListElement { uid_: 1; text_: 'Minutes' }
    }
    MouseArea { anchors.fill: parent; onClicked: screen.note('behind') }
    TextButton { objectName: 'behind'; text: 'Behind'; onAction: screen.note('behind') }
    LoaderNoSleep {
        id: loader
        objectName: 'loader'
        visible: false
        sourceComponent: component
        onVisibleChanged: if (visible) parent = Window.window.contentItem
    }
    Component {
        id: component
        DialogContainer {
            objectName: 'dialog'
            title: 'Interval'
            onClose: { screen.note('close'); loader.visible = false }
            @PROPERTIES@
            @CONTENT@
        }
    }
})")
            .replace("title: 'Interval'", properties.contains("title: ") ? "" : "title: 'Interval'")
            .replace("@PROPERTIES@", properties)
            .replace("@CONTENT@",
                     content.isEmpty() ? "Item { objectName: 'body'; width: "
                                         "parent.width; height: 200 }"
                                       : content),
        size);
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

void tst_ControlsDialogs::cleanup()
{
    const QStringList warnings = m_scene ? m_scene->warnings() : QStringList();
    m_scene.reset();
    QGuiApplication::inputMethod()->hide();
    facts().dpi = 212;
    QCOMPARE(warnings, QStringList());
}

QQuickItem *tst_ControlsDialogs::frame() const
{
    return findAccessible(m_scene->item(u"dialog"_s), QAccessible::Dialog);
}

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
    QCOMPARE(place(u"body"_s).top(), outer.top() + line + head);
    QCOMPARE(place(u"body"_s).width(), outer.width() - 2 * line);
    QCOMPARE(place(u"footer"_s).top(), place(u"body"_s).top() + 120);
    QCOMPARE(place(u"footer"_s).width(), outer.width() - 2 * line);
    QCOMPARE(place(u"footer"_s).bottom() + line, outer.bottom());
    QVERIFY(findAccessible(frame(), QAccessible::Heading, u"Interval"_s));
    QCOMPARE(accessibleName(frame()), u"Interval"_s);
}

void tst_ControlsDialogs::withoutTitle()
{
    make("title: ''");
    show();
    QCOMPARE(place(u"body"_s).top(), sceneRectangle(frame()).top() + line);
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
    click(place(u"box"_s).center());
    click({300, 780}); // so does a tap outside
    QCOMPARE(log(), QStringList(u"unit 1"_s));
    QTest::keyClick(&m_scene->window(), Qt::Key_Down);
    QCOMPARE(focused(), m_scene->item(u"first"_s));
}

void tst_ControlsDialogs::footerTells()
{
    make({},
         "DialogFooter { objectName: 'footer'; applyTitle: 'Save'; onApply: screen.note('apply')\n"
         "onCancel: screen.note('cancel') }");
    show();
    const QRect footer = place(u"footer"_s);
    click(footer.topLeft() + QPoint(30, 40));
    click(footer.topRight() + QPoint(-30, 40));
    QCOMPARE(log(), (QStringList{u"cancel"_s, u"apply"_s}));
    QVERIFY(pressByAccessibility(findAccessible(frame(), QAccessible::Button, u"Save"_s)));
    QVERIFY(pressByAccessibility(findAccessible(frame(), QAccessible::Button, u"Cancel"_s)));
    QCOMPARE(log().mid(2), (QStringList{u"apply"_s, u"cancel"_s}));
    QTest::keyClick(&m_scene->window(), Qt::Key_Return); // the first of the dialog has the focus
    QTest::keyClick(&m_scene->window(), Qt::Key_Right);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(log().mid(4), (QStringList{u"cancel"_s, u"apply"_s}));
}

void tst_ControlsDialogs::footerWords_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QStringList>("words");

    QTest::newRow("as they are") << QByteArray("applyTitle: 'Weiß'") << QStringList{u"Cancel"_s, u"Weiß"_s};
    QTest::newRow("in capitals") << QByteArray("applyTitle: 'Weiß'; isUppercase: true")
                                 << QStringList{u"CANCEL"_s, u"WEISS"_s};
    QTest::newRow("in capitals, Cyrillic") << QByteArray("applyTitle: 'Сохранить'; isUppercase: true")
                                           << QStringList{u"CANCEL"_s, u"СОХРАНИТЬ"_s};
    QTest::newRow("plain") << QByteArray("applyTitle: '<b>x</b>'") << QStringList{u"Cancel"_s, u"<b>x</b>"_s};
}

void tst_ControlsDialogs::footerWords()
{
    QFETCH(QByteArray, properties);
    QFETCH(QStringList, words);

    make({}, "DialogFooter { objectName: 'footer'; " + properties + " }");
    show();
    QStringList found;
    const QList<QQuickItem *> halves = m_scene->item(u"footer"_s)->childItems();
    for (QQuickItem *half : halves) {
        for (QQuickItem *item : half->childItems()) {
            if (item->inherits("QQuickText")) {
                found.append(item->property("text").toString());
                QCOMPARE(item->property("textFormat").toInt(), int(Qt::PlainText));
                QCOMPARE(item->property("font").value<QFont>().bold(), found.size() == 2);
            }
        }
    }
    QCOMPARE(found, words);
}

void tst_ControlsDialogs::footerHalves()
{
    make({}, "DialogFooter { objectName: 'footer'; applyTitle: 'Save' }");
    show();
    const QRect footer = place(u"footer"_s);
    QCOMPARE(footer.height(), head + 1); // 112 and a line of 2 of the design
    const QRect cancel = sceneRectangle(findAccessible(frame(), QAccessible::Button, u"Cancel"_s));
    const QRect apply = sceneRectangle(findAccessible(frame(), QAccessible::Button, u"Save"_s));
    QVERIFY(std::abs(cancel.width() - apply.width()) <= 1);
    QCOMPARE(apply.left() - cancel.right(), 2); // the line between
    QCOMPARE(cancel.left(), footer.left());
    QCOMPARE(apply.right(), footer.right());
    const QImage picture = m_scene->window().grabWindow();
    QCOMPARE(picture.pixelColor(footer.left() + 100, footer.top()), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(cancel.right() + 1, footer.center().y()), QColor(Qt::black));
    QCOMPARE(picture.pixelColor(cancel.right() - 1, footer.center().y()), QColor(Qt::white));
}

void tst_ControlsDialogs::footerPressed()
{
    make({}, "DialogFooter { objectName: 'footer'; applyTitle: 'Save' }");
    m_scene->window().setColor(Qt::white);
    show();
    const QRect outer = sceneRectangle(frame());
    const QImage rest = m_scene->window().grabWindow();
    const QRect apply = sceneRectangle(findAccessible(frame(), QAccessible::Button, u"Save"_s));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, apply.center());
    const QImage pressed = m_scene->window().grabWindow();
    QCOMPARE(pressed.pixelColor(apply.left() + 4, apply.top() + 4), QColor(Qt::black));
    QCOMPARE(pressed.pixelColor(apply.left() - 4, apply.top() + 4), QColor(Qt::white));
    QVERIFY2(pressed.pixelColor(outer.bottomRight()) == rest.pixelColor(outer.bottomRight()),
             "the round corner of the dialog stays round");
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(300, 790));
    QCOMPARE(log(), QStringList());
}

PANEL_TEST_MAIN(tst_ControlsDialogs)

#include "tst_controls_dialogs.moc"
