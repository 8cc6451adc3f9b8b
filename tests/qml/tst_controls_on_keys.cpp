// The control set on a device that has keys and no touch.

#include "accessible_items.h"
#include "panel_application.h"
#include "qml_scene.h"

using namespace Qt::StringLiterals;

class tst_ControlsOnKeys : public QObject
{
    Q_OBJECT

private slots:
    void deviceIsKnown();
    void focusFrame();
    void sidesOfTheFocusFrame();
    void frameIsAtTheRowOfTheMenu();
    void frameWalksThroughADialog();

private:
    /// Whether the frame's line is at `point`, a pixel from the window's upper left corner.
    static bool isInk(QmlScene &scene, const QPoint &point);
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
    QCOMPARE(rest.pixelColor(1, 40), QColor(Qt::white));
    scene.item(u"button"_s)->forceActiveFocus();
    const QImage focused = scene.picture(u"button"_s);
    // Four pixels of black inside the target, on every side.
    for (const QPoint &edge : {QPoint(0, 40), QPoint(3, 40), QPoint(95, 40), QPoint(92, 40), QPoint(48, 0),
                               QPoint(48, 3), QPoint(48, 78), QPoint(48, 75)})
        QCOMPARE(focused.pixelColor(edge), QColor(Qt::black));
    QCOMPARE(focused.pixelColor(5, 40), QColor(Qt::white));
    QCOMPARE(focused.pixelColor(0, 0), QColor(Qt::white)); // round corners
    QCOMPARE(focused.copy(10, 10, 76, 59), rest.copy(10, 10, 76, 59));
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
        return row && isInk(scene, sceneRectangle(row).topLeft() + QPoint(120, 3));
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
    const QPoint frame = sceneRectangle(apply).topLeft() + QPoint(60, 3);
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
