// The corner picker by itself: its measures and place, its items, its keys.

#include "panel_application.h"
#include "settings_screens.h"

#include <QQmlComponent>

#include <cmath>
#include <memory>

namespace {

// On a panel of 212 dpi.
constexpr int border = 3;
constexpr int menuMargin = 11;
constexpr int spaceOfItems = 28;
constexpr int picture = 66;
constexpr int edge = 34;
constexpr QSize pointerSize(20, 40); ///< before it is turned

/// Where the menu goes, by the rules alone.
struct Place
{
    int right; ///< margin
    int width;
    int height;
};

/// As the interface rounds.
int whole(double value)
{
    return int(std::floor(value + 0.5));
}

Place placeFor(int screenWidth, const QRectF &area, int items, int most)
{
    const int inRow = std::min(items, most);
    const int width = 2 * (spaceOfItems / 2 + border) + inRow * (picture + spaceOfItems);
    const int rows = (items + inRow - 1) / inRow;
    const int height = 2 * (menuMargin + border) + rows * picture;
    const double center = area.x() + area.width() / 2;
    double right = screenWidth - (center + width / 2.0);
    if (right < edge)
        right = edge;
    else if (center - width / 2.0 < edge)
        right = screenWidth - edge - width;
    return {whole(right), width, height};
}

} // namespace

class tst_PositionMenu : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<SettingsScreens>(); }
    void cleanup() { m_test.reset(); }

    void interface();
    void places_data();
    void places();
    void otherMeasures();
    void shownAgain();
    void follows();
    void look();
    void items();
    void pressedItem();
    void tapBeside();
    void keys();
    void itemInForce();

private:
    /// In the window of a running application, `width` wide, with so many items.
    void with(int width, int items, const QRectF &area,
              const std::function<void(RunningApp &, QQuickItem *)> &body);

    std::unique_ptr<SettingsScreens> m_test;
};

void tst_PositionMenu::with(int width, int items, const QRectF &area,
                            const std::function<void(RunningApp &, QQuickItem *)> &body)
{
    m_test->run(u"settings_customize_created_date"_s, [&](RunningApp &running) {
        QQmlComponent component(qmlEngine(running.window));
        component.setData(R"(import QtQuick
import com.lindenreed.picture_stand 1.0
Item {
    id: stage
    property int items
    property var lines: []
    property alias menu: menu
    height: 600
    ListModel {
        id: model
        Component.onCompleted: {
            const names = ["top_left", "top_right", "bottom_left", "bottom_right"]
            for (let i = 0; i < stage.items; ++i) {
                const image = "positioning_" + names[i % 4]
                append({uid_: i + 10, image_: image, pressedImage_: image + "_inv", title_: "Item " + i})
            }
        }
    }
    PositionContextMenu {
        id: menu
        menuItems: model
        onChoosed: uid => stage.lines.push("choosed " + uid)
        onClose: stage.lines.push("close")
    }
})",
                          QUrl(u"qrc:/stage.qml"_s));
        const std::unique_ptr<QObject> object(
            component.createWithInitialProperties({{u"items"_s, items}, {u"width"_s, width}}));
        auto *const stage = qobject_cast<QQuickItem *>(object.get());
        QVERIFY2(stage, qPrintable(component.errorString()));
        stage->setParentItem(running.window->contentItem());
        auto *const menu = stage->property("menu").value<QQuickItem *>();
        menu->setProperty("transparentRect", area);
        QVERIFY(QMetaObject::invokeMethod(menu, "show"));
        body(running, menu);
    });
}

namespace {

QStringList taken(const QQuickItem *menu)
{
    const QStringList lines
        = menu->parentItem()->property("lines").value<QJSValue>().toVariant().toStringList();
    return lines;
}

/// In the coordinates of the picker, as it is drawn.
QRectF drawn(const QQuickItem *menu, const QQuickItem *item)
{
    return item->mapRectToItem(menu, QRectF(QPointF(), item->size()));
}

} // namespace

void tst_PositionMenu::interface()
{
    m_test->run(u"settings_customize_created_date"_s, [](RunningApp &running) {
        QQmlComponent component(qmlEngine(running.window));
        component.setData("import com.lindenreed.picture_stand 1.0\nPositionContextMenu {}",
                          QUrl(u"qrc:/menu.qml"_s));
        const std::unique_ptr<QObject> menu(component.create());
        QVERIFY(menu);
        QCOMPARE(menu->property("transparentRect").toRectF(), QRectF());
        QVERIFY(!menu->property("menuItems").value<QObject *>());
        QCOMPARE(menu->property("menuWidth").toInt(), 140);
        QCOMPARE(menu->property("menuHeight").toInt(), 105);
        QCOMPARE(menu->property("max_elements_in_row").toInt(), 4);
        QCOMPARE(menu->property("width_element").toInt(), 100);
        QCOMPARE(menu->property("height_element").toInt(), 100);
        QCOMPARE(menu->property("margin_items").toInt(), spaceOfItems);
        QCOMPARE(menu->property("chosen").toInt(), -1);
    });
}

void tst_PositionMenu::places_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QRectF>("area");
    QTest::addColumn<int>("items");

    QTest::newRow("in the middle") << 1024 << QRectF(480, 10, 66, 77) << 4;
    QTest::newRow("at the left") << 1024 << QRectF(20, 10, 66, 77) << 4;
    QTest::newRow("at the right") << 1024 << QRectF(900, 10, 66, 77) << 4;
    QTest::newRow("just fits at the right") << 1024 << QRectF(1024 - edge - 205 - 33, 10, 66, 77) << 4;
    QTest::newRow("one less") << 1024 << QRectF(1024 - edge - 205 - 33 + 1, 10, 66, 77) << 4;
    QTest::newRow("just fits at the left") << 1024 << QRectF(edge + 205 - 33, 10, 66, 77) << 4;
    QTest::newRow("one less at the left") << 1024 << QRectF(edge + 205 - 33 - 1, 10, 66, 77) << 4;
    QTest::newRow("between two pixels") << 1024 << QRectF(480, 10, 67, 77) << 4;
    QTest::newRow("narrow, at the right") << 758 << QRectF(560, 10, 66, 77) << 4;
    QTest::newRow("narrower than the menu and its edges") << 460 << QRectF(200, 10, 66, 77) << 4;
    QTest::newRow("one item") << 758 << QRectF(300, 10, 66, 77) << 1;
    QTest::newRow("three items") << 758 << QRectF(300, 10, 66, 77) << 3;
    QTest::newRow("a second row begins") << 758 << QRectF(300, 10, 66, 77) << 5;
    QTest::newRow("two rows") << 758 << QRectF(300, 10, 66, 77) << 8;
    QTest::newRow("three rows") << 758 << QRectF(300, 30, 66, 57) << 9;
}

void tst_PositionMenu::places()
{
    QFETCH(int, width);
    QFETCH(QRectF, area);
    QFETCH(int, items);

    with(width, items, area, [&](RunningApp &running, QQuickItem *menu) {
        const Place expected = placeFor(width, area, items, 4);
        QQmlContext *const context = qmlContext(menu->childItems().constFirst());
        const auto *const frame = qobject_cast<QQuickItem *>(context->objectForName(u"menu"_s));
        const auto *const pointer = qobject_cast<QQuickItem *>(context->objectForName(u"pointer"_s));
        QCOMPARE(menu->property("width_element").toInt(), picture);
        QCOMPARE(menu->property("height_element").toInt(), picture);
        QCOMPARE(menu->property("menuWidth").toInt(), expected.width);
        QCOMPARE(menu->property("menuHeight").toInt(), expected.height);
        const double top = area.bottom() + pointerSize.width() - border;
        QCOMPARE(drawn(menu, frame),
                 QRectF(width - expected.right - expected.width, top, expected.width, expected.height));
        // The tip at the area's middle, the open side over the frame's line.
        QCOMPARE(drawn(menu, pointer),
                 QRectF(std::floor(area.center().x() - pointerSize.height() / 2.0),
                        top + border - pointerSize.width(), pointerSize.height(), pointerSize.width()));
        Q_UNUSED(running)
    });
}

void tst_PositionMenu::otherMeasures()
{
    with(758, 4, QRectF(300, 10, 66, 77), [](RunningApp &, QQuickItem *menu) {
        // The first picture is the measure of all: a higher one here. Two rows of two.
        QVERIFY(QQmlExpression(qmlContext(menu), menu,
                               u"menuItems.setProperty(0, 'image_', 'context_menu_pointer')"_s)
                    .evaluate()
                    .isNull());
        menu->setProperty("max_elements_in_row", 2);
        menu->setProperty("margin_items", 40);
        QVERIFY(QMetaObject::invokeMethod(menu, "show"));
        QCOMPARE(menu->property("width_element").toInt(), pointerSize.width());
        QCOMPARE(menu->property("height_element").toInt(), pointerSize.height());
        QCOMPARE(menu->property("menuWidth").toInt(), 2 * (20 + border) + 2 * (pointerSize.width() + 40));
        QCOMPARE(menu->property("menuHeight").toInt(), 2 * (menuMargin + border) + 2 * pointerSize.height());
        QQmlContext *const context = qmlContext(menu->childItems().constFirst());
        const auto *const inner = qobject_cast<QQuickItem *>(context->objectForName(u"inner"_s));
        QCOMPARE(inner->property("cellWidth").toInt(), pointerSize.width() + 40);
        QCOMPARE(inner->property("cellHeight").toInt(), pointerSize.height());
    });
}

void tst_PositionMenu::shownAgain()
{
    with(758, 4, QRectF(560, 10, 66, 77), [](RunningApp &, QQuickItem *menu) {
        menu->parentItem()->setWidth(1024); // as after the device was turned
        menu->setProperty("transparentRect", QRectF(100, 10, 66, 77));
        QVERIFY(QMetaObject::invokeMethod(menu, "show"));
        QQmlContext *const context = qmlContext(menu->childItems().constFirst());
        const auto *const frame = qobject_cast<QQuickItem *>(context->objectForName(u"menu"_s));
        const Place expected = placeFor(1024, QRectF(100, 10, 66, 77), 4, 4);
        QCOMPARE(drawn(menu, frame).left(), 1024 - expected.right - expected.width);
    });
}

void tst_PositionMenu::follows()
{
    with(758, 4, QRectF(300, 10, 66, 77), [](RunningApp &, QQuickItem *menu) {
        QQmlContext *const context = qmlContext(menu->childItems().constFirst());
        const auto *const frame = qobject_cast<QQuickItem *>(context->objectForName(u"menu"_s));
        const double top = drawn(menu, frame).top();
        menu->setProperty("transparentRect", QRectF(300, 20, 66, 80)); // not shown anew
        QCOMPARE(drawn(menu, frame).top(), top + 13);
    });
}

void tst_PositionMenu::look()
{
    with(758, 4, QRectF(300, 10, 66, 77), [](RunningApp &, QQuickItem *menu) {
        QQmlContext *const context = qmlContext(menu->childItems().constFirst());
        const auto value
            = [&](const QString &expression) { return QQmlExpression(context, menu, expression).evaluate(); };
        QCOMPARE(value(u"menu.border.width === GlobalValues.dialogBorderWidth"_s), true);
        QCOMPARE(value(u"Qt.colorEqual(menu.border.color, GlobalValues.defaultBorderColor)"_s), true);
        QCOMPARE(value(u"Qt.colorEqual(menu.color, GlobalValues.defaultBackgroundColor)"_s), true);
        QCOMPARE(value(u"menu.radius === GlobalValues.defaultDialogBorderRadius"_s), true);
        const auto *const mat = qobject_cast<QQuickItem *>(context->objectForName(u"mat"_s));
        const auto *const frame = qobject_cast<QQuickItem *>(context->objectForName(u"menu"_s));
        QCOMPARE(drawn(menu, mat), drawn(menu, frame).adjusted(-6, -6, 6, 6)); // 8 of 300 dpi
        QCOMPARE(value(u"mat.radius === menu.radius + 6"_s), true);
        QCOMPARE(value(u"Qt.colorEqual(mat.color, GlobalValues.defaultBackgroundColor)"_s), true);
        QCOMPARE(value(u"inner.interactive"_s), false);
        QCOMPARE(value(u"inner.cellWidth"_s).toInt(), picture + spaceOfItems);
        QCOMPARE(value(u"inner.cellHeight"_s).toInt(), picture);
        QCOMPARE(value(u"inner.anchors.topMargin"_s).toInt(), menuMargin + border);
        QCOMPARE(value(u"inner.anchors.leftMargin"_s).toInt(), spaceOfItems / 2 + border);
        QCOMPARE(value(u"pointer.source"_s).toString(), u"image://resource/context_menu_pointer"_s);
        QCOMPARE(value(u"pointer.rotation"_s).toInt(), 90);
        QCOMPARE(value(u"first_image.visible"_s), false);
    });
}

void tst_PositionMenu::items()
{
    with(758, 5, QRectF(300, 10, 66, 77), [](RunningApp &, QQuickItem *menu) {
        for (int i = 0; i < 5; ++i) {
            QQuickItem *found = nullptr;
            QTRY_VERIFY((found = findAccessible(menu, QAccessible::ListItem, u"Item %1"_s.arg(i)))
                        != nullptr);
            QCOMPARE(found->position(), QPointF(i % 4 * (picture + spaceOfItems), i / 4 * picture));
            QVERIFY(pressByAccessibility(found));
        }
        QCOMPARE(taken(menu),
                 (QStringList{u"choosed 10"_s, u"choosed 11"_s, u"choosed 12"_s, u"choosed 13"_s,
                              u"choosed 14"_s}));
    });
}

void tst_PositionMenu::pressedItem()
{
    with(758, 4, QRectF(300, 10, 66, 77), [](RunningApp &running, QQuickItem *menu) {
        QQuickItem *found = nullptr;
        QTRY_VERIFY((found = findAccessible(menu, QAccessible::ListItem, u"Item 1"_s)) != nullptr);
        const auto source = [&] { return found->childItems().constFirst()->property("source").toString(); };
        QCOMPARE(source(), u"image://resource/positioning_top_right"_s);
        QTest::mousePress(running.window, Qt::LeftButton, {}, sceneRectangle(found).center());
        QCOMPARE(source(), u"image://resource/positioning_top_right_inv"_s);
        QCOMPARE(taken(menu), QStringList());
        QTest::mouseRelease(running.window, Qt::LeftButton, {}, sceneRectangle(found).center());
        QCOMPARE(source(), u"image://resource/positioning_top_right"_s);
        QCOMPARE(taken(menu), QStringList{u"choosed 11"_s});
    });
}

void tst_PositionMenu::tapBeside()
{
    with(758, 4, QRectF(300, 10, 66, 77), [](RunningApp &running, QQuickItem *menu) {
        const QRect frame = sceneRectangle(findAccessible(menu, QAccessible::PopupMenu));
        QTest::mouseClick(running.window, Qt::LeftButton, {}, frame.topLeft() + QPoint(30, 7));
        constexpr int mat = 6;
        for (const QPoint &point :
             {frame.topLeft() - QPoint(-30, mat), frame.topLeft() - QPoint(mat, -30),
              frame.bottomRight() + QPoint(-30, mat), frame.bottomRight() + QPoint(mat, -30)})
            QTest::mouseClick(running.window, Qt::LeftButton, {}, point);
        QCOMPARE(taken(menu), QStringList());
        QTest::mouseClick(running.window, Qt::LeftButton, {}, frame.bottomLeft() + QPoint(30, 40));
        QVERIFY(pressByAccessibility(findAccessible(menu, QAccessible::Button, textOf("@Close"))));
        QCOMPARE(taken(menu), (QStringList{u"close"_s, u"close"_s}));
    });
}

void tst_PositionMenu::keys()
{
    with(758, 5, QRectF(300, 10, 66, 77), [](RunningApp &running, QQuickItem *menu) {
        for (const Qt::Key key :
             {Qt::Key_Return, Qt::Key_Right, Qt::Key_Enter, Qt::Key_Left, Qt::Key_Down, Qt::Key_Return,
              Qt::Key_Down, Qt::Key_Up, Qt::Key_Up, Qt::Key_Return, Qt::Key_Back, Qt::Key_Escape})
            SettingsScreens::key(running, key);
        QCOMPARE(taken(menu),
                 (QStringList{u"choosed 10"_s, u"choosed 11"_s, u"choosed 14"_s, u"choosed 10"_s, u"close"_s,
                              u"close"_s}));
    });
}

void tst_PositionMenu::itemInForce()
{
    with(758, 4, QRectF(300, 10, 66, 77), [](RunningApp &running, QQuickItem *menu) {
        const auto checked = [&](int row) {
            QQuickItem *found = nullptr;
            return QTest::qWaitFor([&] {
                       return (found = findAccessible(menu, QAccessible::ListItem, u"Item %1"_s.arg(row)))
                           != nullptr;
                   })
                && accessible(found)->state().checkable && accessible(found)->state().checked;
        };
        QVERIFY(!checked(0) && !checked(2));
        menu->setProperty("chosen", 12);
        QVERIFY(QMetaObject::invokeMethod(menu, "show"));
        QVERIFY(!checked(0) && checked(2));
        SettingsScreens::key(running, Qt::Key_Return); // the keys begin there
        SettingsScreens::key(running, Qt::Key_Right);
        SettingsScreens::key(running, Qt::Key_Return);
        menu->setProperty("chosen", 99); // of no item
        QVERIFY(QMetaObject::invokeMethod(menu, "show"));
        SettingsScreens::key(running, Qt::Key_Return);
        QCOMPARE(taken(menu), (QStringList{u"choosed 12"_s, u"choosed 13"_s, u"choosed 10"_s}));
    });
}

PANEL_TEST_MAIN(tst_PositionMenu)
#include "tst_position_menu.moc"
