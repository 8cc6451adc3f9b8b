// The light panel over the show on a device of keys and without a light: its rows are asleep.

#include <device.h>

#include "qml_scene.h"

#include <QGuiApplication>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ShowNoLight : public QObject
{
    Q_OBJECT

private slots:
    void keysStayInThePanel();
};

void tst_ShowNoLight::keysStayInThePanel()
{
    QmlScene scene("import QtQuick\nItem { id: show; property int closed: 0\n"
                   "Item { focus: true; activeFocusOnTab: true }\n"
                   "Loader { objectName: 'panel'; width: parent.width\n"
                   "source: 'qrc:/qt/qml/com/lindenreed/picture_stand/qml/SettingsFrontlight.qml'\n"
                   "Keys.onBackPressed: ++show.closed } }");
    QVERIFY2(scene.isShown(), qPrintable(scene.errors()));
    auto *panel = scene.item(u"panel"_s)->property("item").value<QQuickItem *>();
    QVERIFY(panel);
    panel->setVisible(false);
    panel->setVisible(true);
    QTest::keyClick(&scene.window(), Qt::Key_Back);
    QCOMPARE(scene.root()->property("closed").toInt(), 1);
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
    profile.touch = false;
    Device::start(profile);
    tst_ShowNoLight test;
    const int result = QTest::qExec(&test, argc, argv);
    Device::stop();
    return result;
}

#include "tst_show_no_light.moc"
