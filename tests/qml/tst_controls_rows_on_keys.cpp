// Rows and the frontlight panel on a device that has keys, no touch, and a light without colour.

#include <device.h>

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

#include <QSignalSpy>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsRowsOnKeys : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void focusFrame_data();
    void focusFrame();
    void walkThroughRows();
    void lightByKeys();
    void crumbsByKeys();
    void leavingAField();

private:
    void make(const QByteArray &items);
    void key(Qt::Key key) { m_scene->key(key); }
    QString focused() const;

    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsRowsOnKeys::make(const QByteArray &items)
{
    m_scene = controlsScene(items, {758, 900});
    QVERIFY(m_scene);
}

void tst_ControlsRowsOnKeys::cleanup()
{
    Device::instance()->light.reset();
    QCOMPARE(endScene(m_scene), QStringList());
}

QString tst_ControlsRowsOnKeys::focused() const
{
    return accessibleName(m_scene->window().activeFocusItem());
}

void tst_ControlsRowsOnKeys::focusFrame_data()
{
    QTest::addColumn<QByteArray>("item");

    QTest::newRow("row with a value") << QByteArray("SettingsBitmapTextTextButton { objectName: 'item'\n"
                                                    "title: 'Shuffle'; text: 'on' }");
    QTest::newRow("row with a switch") << QByteArray("SettingsBitmapTextSwitcher { objectName: 'item'\n"
                                                     "title: 'Shuffle' }");
}

void tst_ControlsRowsOnKeys::focusFrame()
{
    QFETCH(QByteArray, item);

    make(item);
    const QImage rest = m_scene->picture(u"item"_s);
    m_scene->item(u"item"_s)->forceActiveFocus();
    const QImage focused = m_scene->picture(u"item"_s);
    QCOMPARE(focused.size(), QSize(758, 102));
    // Four pixels of black inside the row, on every side.
    for (const QPoint &edge : {QPoint(0, 50), QPoint(3, 50), QPoint(757, 50), QPoint(754, 50), QPoint(300, 0),
                               QPoint(300, 3), QPoint(300, 101), QPoint(300, 98)}) {
        QCOMPARE(rest.pixelColor(edge), QColor(Qt::white));
        QCOMPARE(focused.pixelColor(edge), QColor(Qt::black));
    }
    QCOMPARE(focused.pixelColor(5, 50), QColor(Qt::white));
    QCOMPARE(focused.copy(20, 10, 700, 80), rest.copy(20, 10, 700, 80));
}

void tst_ControlsRowsOnKeys::walkThroughRows()
{
    make("Column { width: 758\n"
         "SettingsBitmapTextTextButton { objectName: 'first'; title: 'One'; width: 758 }\n"
         "SettingsBitmapTextSwitcher { title: 'Asleep'; enabled: false; width: 758 }\n"
         "SettingsBitmapTextSwitcher { objectName: 'last'; title: 'Two'; width: 758 } }");
    QSignalSpy action(m_scene->item(u"last"_s), SIGNAL(action()));
    m_scene->item(u"first"_s)->forceActiveFocus();
    key(Qt::Key_Down);
    QCOMPARE(focused(), u"Two"_s);
    key(Qt::Key_Return);
    QCOMPARE(action.count(), 1);
    key(Qt::Key_Up);
    QCOMPARE(focused(), u"One"_s);
}

void tst_ControlsRowsOnKeys::lightByKeys()
{
    make("Frontlight { objectName: 'panel'; width: 758 }");
    const Light &light = Device::instance()->light;
    // The light, its brightness, and whether that sets itself: no colour here.
    QCOMPARE(m_scene->item(u"panel"_s)->implicitHeight(), 2.0 * 85 + 102);
    QQuickItem *onAndOff = findAccessible(m_scene->root(), QAccessible::CheckBox);
    QQuickItem *brightness = findAccessible(m_scene->root(), QAccessible::Slider);
    QVERIFY(onAndOff && brightness);
    onAndOff->forceActiveFocus();
    key(Qt::Key_Down);
    QVERIFY(brightness->hasActiveFocus());
    const QImage picture = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    QCOMPARE(picture.pixelColor(1, sceneRectangle(brightness).center().y()), QColor(Qt::black)); // its frame
    key(Qt::Key_Right);
    QCOMPARE(light.brightness(), 45);
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    QCOMPARE(light.brightness(), 35);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    QVERIFY(light.brightnessAuto());
    key(Qt::Key_Up); // past the slider, which is asleep now
    QVERIFY(onAndOff->hasActiveFocus());
    key(Qt::Key_Return);
    QVERIFY(!light.enabled());
}

void tst_ControlsRowsOnKeys::crumbsByKeys()
{
    make("LRControls2.Breadcrumbs { objectName: 'bar'; model: ListModel { ListElement { name: '' }\n"
         "ListElement { name: 'SD card' } ListElement { name: 'Trip' } } }");
    QSignalSpy clicked(m_scene->item(u"bar"_s), SIGNAL(clicked(int)));
    QQuickItem *trip = nullptr;
    QTRY_VERIFY((trip = findAccessible(m_scene->root(), QAccessible::Button, u"Trip"_s)));
    trip->forceActiveFocus();
    const QRect target = sceneRectangle(trip);
    const QImage picture = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    QCOMPARE(picture.pixelColor(target.center().x(), 2), QColor(Qt::black));
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    key(Qt::Key_Return);
    QCOMPARE(clicked.takeFirst(), QVariantList{0});
}

void tst_ControlsRowsOnKeys::leavingAField()
{
    make("Column { Rectangle { width: 500; height: 90\n"
         "AdvancedTextInput { objectName: 'field'; anchors.fill: parent; text: 'Lake' } }\n"
         "SettingsBitmapTextSwitcher { title: 'Two'; width: 758 } }");
    m_scene->item(u"field"_s)->forceActiveFocus();
    key(Qt::Key_Left); // the caret's
    QVERIFY(m_scene->item(u"field"_s)->hasActiveFocus());
    key(Qt::Key_Down);
    QCOMPARE(focused(), u"Two"_s);
    key(Qt::Key_Up);
    QVERIFY(m_scene->item(u"field"_s)->hasActiveFocus());
}

PANEL_TEST_MAIN_WITH_RECORD(tst_ControlsRowsOnKeys, R"({"profile": "keys-6"})")
#include "tst_controls_rows_on_keys.moc"
