// Every control in every state, page by page: the device's key "next" goes on, "prev" goes back. It turns
// with the device.

#include "finger.h"

#include <shared_tools/eink_interface.h>
#include <slateview.h>

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "lindenreed2");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    lindenreed::utilities::EinkInterface::instance().platform()->setEventHandler([](int type, int par1, int) {
        constexpr int turned = 32;
        if (type == turned)
            SetOrientation(par1);
        return 0;
    });
    Finger finger;
    qmlRegisterSingletonInstance("device_gallery", 1, 0, "Finger", &finger);
    QQmlApplicationEngine engine;
    engine.load(QUrl(u"qrc:/device_gallery/Gallery.qml"_s));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
