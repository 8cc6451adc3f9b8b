// Context menus, opened the way screens open them.

#include <facts.h>

#include "accessible_items.h"
#include "panel_application.h"
#include "qml_scene.h"

#include <QSignalSpy>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsMenus : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void opensWithItsRows();
    void textIsPlain();
    void iconsOfRows();
    void titleChecksItsRow();
    void customTextOfThisMomentIsMeasured();
    void tapChooses();
    void tapOnTheRimIsNothing();
    void tapOutsideCloses();
    void nothingBehindIsTouched();
    void checkedRow_data();
    void checkedRow();
    void titleThatIsARowByChance();
    void uidsWithGaps();
    void place_data();
    void place();
    void staysOnTheScreenWhenItTurns();
    void longMenuScrolls();
    void longTextIsElided();
    void keysWalkAndChoose();
    void keyBackCloses();
    void pageKeysInALongMenu();
    void focusComesBack();
    void accessibleRows();
    void accessiblePressChooses();
    void loaderOfNothing();

private:
    /// A screen of `size` with one row at `area` that a tap opens the menu of.
    void make(const QByteArray &delegate, const QByteArray &rows, const QByteArray &title = {},
              const QRect &area = {40, 100, 500, 60}, const QByteArray &properties = {},
              QSize size = {600, 800});
    void open();
    QQuickItem *row(const QString &text, QAccessible::Role role = QAccessible::MenuItem) const;
    QQuickItem *panel() const; ///< the menu's frame
    QVariantList chosen() const { return m_scene->root()->property("chosen").toList(); }
    int closed() const { return m_scene->root()->property("closed").toInt(); }
    bool isOpen() const { return m_scene->item(u"loader"_s)->isVisible(); }
    void click(const QPoint &point);

    std::unique_ptr<QmlScene> m_scene;
};

namespace {

const QByteArray threeRows = "append({uid_: 0, text_: 'Rename', image_: 'edit_word'});"
                             "append({uid_: 1, text_: 'Add photos', image_: 'plus_add'});"
                             "append({uid_: 2, text_: 'Delete', image_: 'trash'})";
const QByteArray manyRows = "for (let i = 0; i < 30; ++i) append({uid_: i, text_: 'Row ' + i})";

} // namespace

void tst_ControlsMenus::make(const QByteArray &delegate, const QByteArray &rows, const QByteArray &title,
                             const QRect &area, const QByteArray &properties, QSize size)
{
    m_scene = std::make_unique<QmlScene>(QByteArray(R"(import QtQuick
import com.lindenreed.controls 1.0
Item {
    id: screen
    property var chosen: []
    property int closed: 0
    property int touchedBehind: 0
    property alias rows: rows
    function open() {
        const corner = mapToGlobal(@X@, @Y@)
        Global.openContextMenuLoader(loader, rows, "@DELEGATE@", "@TITLE@", Qt.rect(corner.x, corner.y, @W@, @H@))
    }
    ListModel { id: rows; Component.onCompleted: { @ROWS@ } }
    MouseArea { anchors.fill: parent; onClicked: ++screen.touchedBehind }
    BitmapButton { objectName: 'behind'; focus: true; onAction: screen.open() }
    LoaderNoSleep {
        id: loader
        objectName: 'loader'
        anchors.fill: parent
        visible: false
        onVisibleChanged: if (visible && status === Loader.Null) sourceComponent = component
        onLoaded: parent = Window.window.contentItem
    }
    Component {
        id: component
        ContextMenu {
            @PROPERTIES@
            onChoosed: uid => { screen.chosen = screen.chosen.concat([uid]); loader.visible = false }
            onClose: { ++screen.closed; loader.visible = false }
        }
    }
})")
                                             .replace("@DELEGATE@", delegate)
                                             .replace("@TITLE@", title)
                                             .replace("@X@", QByteArray::number(area.x()))
                                             .replace("@Y@", QByteArray::number(area.y()))
                                             .replace("@W@", QByteArray::number(area.width()))
                                             .replace("@H@", QByteArray::number(area.height()))
                                             .replace("@ROWS@", rows)
                                             .replace("@PROPERTIES@", properties),
                                         size);
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

void tst_ControlsMenus::cleanup()
{
    const QStringList warnings = m_scene ? m_scene->warnings() : QStringList();
    m_scene.reset();
    facts().dpi = 212;
    QCOMPARE(warnings, QStringList());
}

void tst_ControlsMenus::open()
{
    QVERIFY(QMetaObject::invokeMethod(m_scene->root(), "open"));
    QVERIFY(isOpen());
    QVERIFY(panel());
    m_scene->window().grabWindow(); // lays the rows out
}

QQuickItem *tst_ControlsMenus::row(const QString &text, QAccessible::Role role) const
{
    return findAccessible(m_scene->window().contentItem(), role, text);
}

QQuickItem *tst_ControlsMenus::panel() const
{
    return findAccessible(m_scene->item(u"loader"_s), QAccessible::PopupMenu);
}

void tst_ControlsMenus::click(const QPoint &point)
{
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, point);
}

void tst_ControlsMenus::opensWithItsRows()
{
    make("ImageTextButton", threeRows);
    QVERIFY(!isOpen());
    open();
    QCOMPARE(m_scene->item(u"loader"_s)->parentItem(), m_scene->window().contentItem());
    int last = 0;
    for (const QString &text : {u"Rename"_s, u"Add photos"_s, u"Delete"_s}) {
        QVERIFY2(row(text), qPrintable(text));
        const QRect rectangle = sceneRectangle(row(text));
        QVERIFY(rectangle.top() > last);
        QCOMPARE(rectangle.height(), 85); // 120 of the design
        last = rectangle.top();
    }
    QVERIFY2(!row({}, QAccessible::Heading), "no title, no place for it");
}

void tst_ControlsMenus::textIsPlain()
{
    make("ImageTextButton", "append({uid_: 0, text_: '<b>Bold</b>', image_: ''})");
    open();
    QVERIFY(row(u"<b>Bold</b>"_s));
    for (QQuickItem *item : row(u"<b>Bold</b>"_s)->childItems()) {
        if (item->inherits("QQuickText")) {
            QCOMPARE(item->property("text").toString(), u"<b>Bold</b>"_s);
            QCOMPARE(item->property("textFormat").toInt(), int(Qt::PlainText));
        }
    }
}

void tst_ControlsMenus::iconsOfRows()
{
    make("ImageTextButton", threeRows);
    open();
    const QRect place = sceneRectangle(row(u"Delete"_s));
    const auto sources = [this] {
        QStringList found;
        for (QQuickItem *item : row(u"Delete"_s)->childItems()) {
            if (item->inherits("QQuickImage") && item->isVisible())
                found.append(item->property("source").toString());
        }
        return found;
    };
    QCOMPARE(sources(), QStringList(u"image://resource/trash"_s));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, place.center());
    QTRY_COMPARE(sources(), QStringList(u"image://resource_inv/trash"_s));
    const QImage pressed = m_scene->window().grabWindow();
    QCOMPARE(pressed.pixelColor(place.right() - 8, place.center().y()), QColor(Qt::black));
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(chosen(), QVariantList());
}

void tst_ControlsMenus::titleChecksItsRow()
{
    make("RadioButton", threeRows, "Delete");
    open();
    QVERIFY(row(u"Delete"_s, QAccessible::Heading));
    QVERIFY(accessible(row(u"Delete"_s, QAccessible::RadioButton))->state().checked);
    QVERIFY(!accessible(row(u"Rename"_s, QAccessible::RadioButton))->state().checked);
    QVERIFY(accessible(row(u"Rename"_s, QAccessible::RadioButton))->state().checkable);
}

void tst_ControlsMenus::customTextOfThisMomentIsMeasured()
{
    make("RadioButton", threeRows, "Delete");
    open();
    const int before = sceneRectangle(panel()).width();
    QCOMPARE(before, 339); // 480 of the design, at least
    click({590, 790});
    QVERIFY(!isOpen());
    QVERIFY(QMetaObject::invokeMethod(m_scene->root()->property("rows").value<QObject *>(), "setProperty",
                                      Q_ARG(int, 1), Q_ARG(QString, u"text_"_s),
                                      Q_ARG(QVariant, u"Custom (45 seconds of this)"_s)));
    open();
    const QRect wide = sceneRectangle(panel());
    QVERIFY2(wide.width() > before, "as wide as its text");
    QVERIFY(wide.left() >= 34 && wide.right() < 600 - 34);
}

void tst_ControlsMenus::tapChooses()
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

void tst_ControlsMenus::tapOnTheRimIsNothing()
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

void tst_ControlsMenus::tapOutsideCloses()
{
    make("ImageTextButton", threeRows);
    open();
    click({300, 780});
    QCOMPARE(closed(), 1);
    QCOMPARE(chosen(), QVariantList());
}

void tst_ControlsMenus::nothingBehindIsTouched()
{
    make("ImageTextButton", threeRows);
    open();
    click(m_scene->middle(u"behind"_s));
    QCOMPARE(closed(), 1);
    QCOMPARE(m_scene->root()->property("touchedBehind").toInt(), 0);
    QVERIFY2(!isOpen(), "the button behind would have opened it again");
}

void tst_ControlsMenus::checkedRow_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QVariantList>("expected");

    QTest::newRow("can be chosen again where it is asked for")
        << QByteArray("radioBtnDontCheckChecked: true") << QVariantList{2};
    QTest::newRow("is chosen already") << QByteArray() << QVariantList();
}

void tst_ControlsMenus::checkedRow()
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

void tst_ControlsMenus::titleThatIsARowByChance()
{
    make("ImageTextButton", threeRows, "Delete"); // a playlist of that name
    open();
    QVERIFY(!accessible(row(u"Delete"_s))->state().checked);
    click(sceneRectangle(row(u"Delete"_s)).center());
    QCOMPARE(chosen(), QVariantList{2});
}

void tst_ControlsMenus::uidsWithGaps()
{
    make("RadioButton", "append({uid_: 7, text_: 'Seven'}); append({uid_: 40, text_: 'Forty'})");
    open();
    click(sceneRectangle(row(u"Forty"_s, QAccessible::RadioButton)).center());
    QCOMPARE(chosen(), QVariantList{40});
}

void tst_ControlsMenus::place_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QByteArray>("side");

    QTest::newRow("under a row") << QRect(34, 100, 532, 100) << QByteArray("under");
    QTest::newRow("above a row near the foot") << QRect(34, 600, 532, 100) << QByteArray("above");
    QTest::newRow("at the right of something tall") << QRect(20, 60, 150, 700) << QByteArray("right");
    QTest::newRow("at the left of something tall") << QRect(430, 60, 150, 700) << QByteArray("left");
    QTest::newRow("over the middle of what fills the screen") << QRect(0, 0, 600, 800) << QByteArray("over");
    QTest::newRow("of something beyond the left edge") << QRect(-300, 100, 200, 50) << QByteArray("under");
    QTest::newRow("of something below the screen") << QRect(40, 900, 200, 50) << QByteArray("any");
}

void tst_ControlsMenus::place()
{
    QFETCH(QRect, area);
    QFETCH(QByteArray, side);

    make("ImageTextButton", threeRows, {}, area);
    open();
    const QRect frame = sceneRectangle(panel());
    QVERIFY(QRect(34, 34, 600 - 68, 800 - 68).contains(frame)); // page margins, 48 of the design
    const QByteArray found = frame.top() > area.bottom() ? "under"
        : frame.bottom() < area.top()                    ? "above"
        : frame.left() > area.right()                    ? "right"
        : frame.right() < area.left()                    ? "left"
                                                         : "over";
    if (side != "any")
        QCOMPARE(found, side);
    if (side == "under" && area.left() >= 0)
        QCOMPARE(frame.right(), area.right());
    if (side == "over")
        QVERIFY((frame.center() - area.center()).manhattanLength() <= 3);
}

void tst_ControlsMenus::staysOnTheScreenWhenItTurns()
{
    make("ImageTextButton", threeRows, {}, {34, 640, 532, 100});
    open();
    m_scene->window().resize(800, 600);
    m_scene->root()->setSize({800, 600});
    QTRY_VERIFY(QRect(34, 34, 800 - 68, 600 - 68).contains(sceneRectangle(panel())));
}

void tst_ControlsMenus::longMenuScrolls()
{
    make("RadioButton", manyRows, "Row 3");
    open();
    const QRect frame = sceneRectangle(panel());
    QVERIFY(frame.height() <= 800 - 68);
    QVERIFY(row(u"Row 3"_s, QAccessible::RadioButton));
    QVERIFY2(!row(u"Row 29"_s, QAccessible::RadioButton), "not there yet");
    auto *list = row(u"Row 3"_s, QAccessible::RadioButton)->parentItem()->parentItem();
    QCOMPARE(int(list->height()) % 85, 0); // whole rows
    list->setProperty("contentY", 85.0 * 30 - list->height());
    QTRY_VERIFY(row(u"Row 29"_s, QAccessible::RadioButton));
    click(sceneRectangle(row(u"Row 29"_s, QAccessible::RadioButton)).center());
    QTRY_COMPARE(chosen(), QVariantList{29});
}

void tst_ControlsMenus::longTextIsElided()
{
    make("ImageTextButton", "append({uid_: 0, text_: 'Very '.repeat(60), image_: 'trash'})");
    open();
    QCOMPARE(sceneRectangle(panel()).width(), 600 - 68);
    bool truncated = false;
    for (QQuickItem *item : row(u"Very "_s.repeated(60))->childItems())
        truncated = truncated || item->property("truncated").toBool();
    QVERIFY(truncated);
}

void tst_ControlsMenus::keysWalkAndChoose()
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

void tst_ControlsMenus::keyBackCloses()
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

void tst_ControlsMenus::pageKeysInALongMenu()
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

void tst_ControlsMenus::focusComesBack()
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

void tst_ControlsMenus::accessibleRows()
{
    make("RadioButton", threeRows, "Delete");
    open();
    QVERIFY(row(u"Rename"_s, QAccessible::RadioButton));
    m_scene.reset();
    make("ImageTextButton", threeRows, "Delete");
    open();
    QVERIFY(row(u"Rename"_s, QAccessible::MenuItem));
    QVERIFY(!accessible(row(u"Delete"_s, QAccessible::MenuItem))->state().checked);
}

void tst_ControlsMenus::accessiblePressChooses()
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

void tst_ControlsMenus::loaderOfNothing()
{
    m_scene = std::make_unique<QmlScene>(
        "import QtQuick\nimport com.lindenreed.controls 1.0\n"
        "Item { Item { id: none; visible: false }\n"
        "ListModel { id: rows }\n"
        "Component.onCompleted: {\n"
        "Global.openContextMenuLoader(null, rows, '', '', Qt.rect(0, 0, 1, 1))\n"
        "Global.openContextMenuLoader(none, null, '', '', Qt.rect(0, 0, 1, 1)) } }");
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

PANEL_TEST_MAIN(tst_ControlsMenus)

#include "tst_controls_menus.moc"
