// The frontlight panel on a device without a light.

#include <device.h>

#include "accessible_items.h"
#include "qml_scene.h"

#include <QGuiApplication>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsNoLight : public QObject
{
    Q_OBJECT

private slots:
    void oneRowAsleep();
};

void tst_ControlsNoLight::oneRowAsleep()
{
    QmlScene scene("import QtQuick\nimport com.lindenreed.controls 1.0\nItem { Frontlight {\n"
                   "objectName: 'panel'; width: parent.width; bottomPadding: 10 } }");
    QVERIFY2(scene.isShown(), qPrintable(scene.errors()));
    QVERIFY(!scene.item(u"panel"_s)->property("frontlight_enabled").toBool());
    QCOMPARE(scene.item(u"panel"_s)->implicitHeight(), 85.0 + 10);
    QVERIFY(!findAccessible(scene.root(), QAccessible::Slider));
    QQuickItem *onAndOff = findAccessible(scene.root(), QAccessible::CheckBox);
    QVERIFY(onAndOff && !onAndOff->isEnabled());
    QVERIFY(!accessible(onAndOff)->state().checked);
    const bool before = Device::instance()->light.enabled();
    pressByAccessibility(onAndOff);
    QTest::mouseClick(&scene.window(), Qt::LeftButton, {}, sceneRectangle(onAndOff).center());
    QCOMPARE(Device::instance()->light.enabled(), before);
    QCOMPARE(scene.warnings(), QStringList());
}

int main(int argc, char **argv)
{
    // Without the device's own plug-in, which would start another device.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    Profile profile;
    profile.name = u"dark"_s;
    profile.frontlight = false;
    Device::start(profile);
    tst_ControlsNoLight test;
    const int result = QTest::qExec(&test, argc, argv);
    Device::stop();
    return result;
}

#include "tst_controls_no_light.moc"
