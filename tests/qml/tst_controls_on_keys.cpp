// The control set on a device that has keys and no touch.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

using namespace Qt::StringLiterals;

class tst_ControlsOnKeys : public QObject
{
    Q_OBJECT

private slots:
    void deviceIsKnown();
    void focusFrame();
    void sidesOfTheFocusFrame();
    void frameOfTheFooterButton();
    void frameTouchesNothing_data();
    void frameTouchesNothing();
    void frameInAMenuTouchesNothing();
    void frameIsAtTheRowOfTheMenu();
    void frameWalksThroughADialog();

private:
    /// Whether the frame's line is at `point`, a pixel from the window's upper left corner.
    static bool isInk(QmlScene &scene, const QPoint &point);
    /// What is not white beside the frame by which `focused` differs from `rest`; {-1, -1} where there is no
    /// frame.
    static QList<QPoint> touched(const QImage &rest, const QImage &focused);
};

void tst_ControlsOnKeys::deviceIsKnown()
{
    QmlScene scene("import QtQuick\nimport com.lindenreed.controls 1.0\n"
                   "Item { property bool touch: DeviceInfoProvider.isTouchDevice }");
    QVERIFY2(scene.root(), qPrintable(scene.errors()));
    QVERIFY(!scene.root()->property("touch").toBool());
}

void tst_ControlsOnKeys::focusFrame()
{
    QmlScene scene("import QtQuick\nimport com.lindenreed.controls 1.0\n"
                   "Item { BitmapButton { objectName: 'button'; icon: 'image://resource/home' } }");
    QVERIFY2(scene.isShown(), qPrintable(scene.errors()));
    const QImage rest = scene.picture(u"button"_s);
    QCOMPARE(rest.pixelColor(10, 40), QColor(Qt::white));
    scene.item(u"button"_s)->forceActiveFocus();
    const QImage focused = scene.picture(u"button"_s);
    // Four pixels of black on every side of a square of 79.
    for (const QPoint &edge : {QPoint(9, 40), QPoint(12, 40), QPoint(87, 40), QPoint(84, 40), QPoint(48, 0),
                               QPoint(48, 3), QPoint(48, 78), QPoint(48, 75)})
        QCOMPARE(focused.pixelColor(edge), QColor(Qt::black));
    for (const QPoint &beside : {QPoint(8, 40), QPoint(14, 40), QPoint(82, 40), QPoint(88, 40)})
        QCOMPARE(focused.pixelColor(beside), QColor(Qt::white));
    QCOMPARE(focused.pixelColor(9, 0), QColor(Qt::white)); // round corners
    QCOMPARE(focused.copy(15, 10, 66, 59), rest.copy(15, 10, 66, 59));
    QCOMPARE(scene.warnings(), QStringList());
}

bool tst_ControlsOnKeys::isInk(QmlScene &scene, const QPoint &point)
{
    return scene.window().grabWindow().pixelColor(point) == QColor(Qt::black);
}

void tst_ControlsOnKeys::sidesOfTheFocusFrame()
{
    QmlScene scene("import QtQuick\nimport com.lindenreed.controls 1.0\n"
                   "Item { TextButton { objectName: 'button'; x: 50; y: 50; text: 'Go'\n"
                   "focusElement.visibleParts: [1, 0, 1, 1] } }");
    QVERIFY2(scene.isShown(), qPrintable(scene.errors()));
    const QRect place = sceneRectangle(scene.item(u"button"_s));
    const QPoint middle = place.center();
    const int depth = 3; // the frame is four pixels thick, the button's own line one
    scene.item(u"button"_s)->forceActiveFocus();
    QVERIFY(isInk(scene, {middle.x(), place.top() + depth}));
    QVERIFY(!isInk(scene, {place.right() - depth, middle.y()}));
    QVERIFY(isInk(scene, {middle.x(), place.bottom() - depth}));
    QVERIFY(isInk(scene, {place.left() + depth, middle.y()}));
    scene.item(u"button"_s)->setFocus(false);
    QVERIFY(!isInk(scene, {middle.x(), place.top() + depth}));
}

void tst_ControlsOnKeys::frameOfTheFooterButton()
{
    QmlScene scene("import QtQuick\nimport com.lindenreed.controls 1.0\n"
                   "Item { RoundedCornerButtonContainer { objectName: 'button'; x: 50; y: 50; width: 300\n"
                   "height: GlobalValues.scrollListButtonsHeight; visibleBorders: [1, 1, 0, 1] } }");
    QVERIFY2(scene.isShown(), qPrintable(scene.errors()));
    scene.item(u"button"_s)->forceActiveFocus();
    const QImage focused = scene.picture(u"button"_s);
    const int foot = focused.height() - 1;
    // Like its lines, it runs straight into the edge of the panel.
    for (int x = 0; x < 4; ++x) {
        QCOMPARE(focused.pixelColor(x, foot), QColor(Qt::black));
        QCOMPARE(focused.pixelColor(299 - x, foot), QColor(Qt::black));
    }
    QCOMPARE(focused.pixelColor(150, 3), QColor(Qt::black));
    QCOMPARE(focused.pixelColor(150, foot), QColor(Qt::white));
    QCOMPARE(scene.warnings(), QStringList());
}

QList<QPoint> tst_ControlsOnKeys::touched(const QImage &rest, const QImage &focused)
{
    const auto isFrame = [&](const QPoint &at) { return qGray(focused.pixel(at)) < qGray(rest.pixel(at)); };
    QList<QPoint> found = {QPoint(-1, -1)};
    for (int y = 1; y < focused.height() - 1; ++y) {
        for (int x = 1; x < focused.width() - 1; ++x) {
            const QPoint at(x, y);
            if (!isFrame(at))
                continue;
            found.removeOne(QPoint(-1, -1));
            for (const QPoint &beside :
                 {at + QPoint(1, 0), at - QPoint(1, 0), at + QPoint(0, 1), at - QPoint(0, 1)}) {
                if (!isFrame(beside) && qGray(focused.pixel(beside)) != 255)
                    found.append(beside);
            }
        }
    }
    return found;
}

void tst_ControlsOnKeys::frameTouchesNothing_data()
{
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<QAccessible::Role>("role");
    QTest::addColumn<QString>("name");

    const QByteArray header
        = "LRControls2.AppHeader { y: 20; width: 600; title: '24'; closeIcon: 'image://resource/back' }";
    const QByteArray selection
        = "GroupSelectionPanel { y: 20; width: 600; items_count: 24; selected_count: 24\n"
          "selected_label_text: 'selected'; select_all_title: 'All' }";
    const QByteArray crumbs
        = "LRControls2.Breadcrumbs { y: 20; width: 600; model: ListModel {\n"
          "ListElement { name: '' } ListElement { name: 'SD card' } ListElement { name: 'Trip' } } }";
    const QByteArray dialog
        = "DialogContainer { anchors.fill: parent; title: 'Stop?'; DialogFooter { applyTitle: 'Stop' } }";
    QTest::newRow("button of a header") << header << QAccessible::Button << u"Back"_s;
    QTest::newRow("back from a selection") << selection << QAccessible::Button << u"Cancel"_s;
    QTest::newRow("box of a selection") << selection << QAccessible::CheckBox << u"All"_s;
    QTest::newRow("crumb between others") << crumbs << QAccessible::Button << u"SD card"_s;
    QTest::newRow("right half of a dialog's foot") << dialog << QAccessible::Button << u"Stop"_s;
}

void tst_ControlsOnKeys::frameTouchesNothing()
{
    QFETCH(QByteArray, items);
    QFETCH(QAccessible::Role, role);
    QFETCH(QString, name);

    const std::unique_ptr<QmlScene> scene = controlsScene(items);
    QVERIFY(scene);
    QQuickItem *target = nullptr;
    QTRY_VERIFY((target = findAccessible(scene->root(), role, name)));
    // A dialog takes the focus when it appears; then it is the other half's.
    if (items.startsWith("Dialog"))
        QTRY_VERIFY(scene->focused() != scene->window().contentItem());
    const QImage rest = scene->window().grabWindow();
    target->forceActiveFocus();
    QCOMPARE(touched(rest, scene->window().grabWindow()), QList<QPoint>());
    QCOMPARE(scene->warnings(), QStringList());
}

void tst_ControlsOnKeys::frameInAMenuTouchesNothing()
{
    const std::unique_ptr<QmlScene> scene
        = controlsScene("ListModel { id: rows; ListElement { uid_: 0; text_: 'One' }\n"
                        "ListElement { uid_: 1; text_: 'Two' } ListElement { uid_: 2; text_: 'Three' } }\n"
                        "ComboBox { objectName: 'box'; x: 50; y: 50; width: 250; menuItems: rows; "
                        "selectedUid: 0; focus: true }");
    QVERIFY(scene);
    scene->key(Qt::Key_Return);
    const QImage first = scene->window().grabWindow();
    scene->key(Qt::Key_Down);
    const QImage second = scene->window().grabWindow();
    QCOMPARE(touched(first, second), QList<QPoint>());
    QCOMPARE(touched(second, first), QList<QPoint>());
    QCOMPARE(scene->warnings(), QStringList());
}

void tst_ControlsOnKeys::frameIsAtTheRowOfTheMenu()
{
    QmlScene scene(
        "import QtQuick\nimport com.lindenreed.controls 1.0\n"
        "Item { ListModel { id: rows; ListElement { uid_: 0; text_: 'One' }\n"
        "ListElement { uid_: 1; text_: 'Two' } }\n"
        "ComboBox { objectName: 'box'; x: 50; y: 50; width: 250; show_border: true; menuItems: rows\n"
        "selectedUid: 0; state: 'RadioTextButton' } }");
    QVERIFY2(scene.isShown(), qPrintable(scene.errors()));
    QQuickItem *box = scene.item(u"box"_s);
    const QPoint frameOfBox = sceneRectangle(box).topLeft() + QPoint(120, 3);
    box->forceActiveFocus();
    QVERIFY(isInk(scene, frameOfBox));
    QTest::keyClick(&scene.window(), Qt::Key_Return);
    QVERIFY2(!isInk(scene, frameOfBox), "one frame at a time");
    const auto frameOfRow = [&](const QString &text) {
        QQuickItem *row = findAccessible(scene.window().contentItem(), QAccessible::RadioButton, text);
        return row && isInk(scene, sceneRectangle(row).topLeft() + QPoint(120, 9));
    };
    QVERIFY(frameOfRow(u"One"_s) && !frameOfRow(u"Two"_s));
    QTest::keyClick(&scene.window(), Qt::Key_Down);
    QVERIFY(frameOfRow(u"Two"_s) && !frameOfRow(u"One"_s));
    QTest::keyClick(&scene.window(), Qt::Key_Return);
    QCOMPARE(box->property("selectedUid").toInt(), 1);
    QVERIFY(isInk(scene, frameOfBox));
    QCOMPARE(scene.warnings(), QStringList());
}

void tst_ControlsOnKeys::frameWalksThroughADialog()
{
    QmlScene scene(
        "import QtQuick\nimport com.lindenreed.controls 1.0\n"
        "DialogContainer { objectName: 'dialog'; title: 'Stop?'; property string last\n"
        "DialogFooter { applyTitle: 'Stop'; onApply: last = 'apply'; onCancel: last = 'cancel' } }");
    QVERIFY2(scene.isShown(), qPrintable(scene.errors()));
    QQuickItem *apply = findAccessible(scene.root(), QAccessible::Button, u"Stop"_s);
    QVERIFY(apply);
    const QPoint frame = sceneRectangle(apply).topLeft() + QPoint(60, 9);
    QVERIFY(!isInk(scene, frame));
    QTRY_VERIFY(scene.window().activeFocusItem() != scene.window().contentItem());
    QTest::keyClick(&scene.window(), Qt::Key_Right);
    QVERIFY(apply->hasActiveFocus());
    QVERIFY(isInk(scene, frame));
    QTest::keyClick(&scene.window(), Qt::Key_Return);
    QCOMPARE(scene.root()->property("last").toString(), u"apply"_s);
    QCOMPARE(scene.warnings(), QStringList());
}

PANEL_TEST_MAIN_WITH_RECORD(tst_ControlsOnKeys, "{\"profile\": \"keys-6\"}")
#include "tst_controls_on_keys.moc"
