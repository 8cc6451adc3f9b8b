// The control set on a device that has keys and no touch.

#include <device.h>

#include "qml_scene.h"

#include <QGuiApplication>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsOnKeys : public QObject
{
    Q_OBJECT

private slots:
    void deviceIsKnown();
    void focusFrame();
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

int main(int argc, char **argv)
{
    // Without the device's own plug-in, which would start another device.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    Profile profile;
    profile.name = u"keys"_s;
    profile.touch = false;
    Device::start(profile);
    tst_ControlsOnKeys test;
    const int result = QTest::qExec(&test, argc, argv);
    Device::stop();
    return result;
}

#include "tst_controls_on_keys.moc"
