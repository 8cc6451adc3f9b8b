#include "app.h"
#include "language_setup.h"

#include <slateview.h>

#include <QFont>
#include <QGuiApplication>
#include <QLocale>
#include <QQuickWindow>

#include <cstdlib>

int main(int argc, char **argv)
{
    setenv("QT_QPA_PLATFORM", "lindenreed2", 1);
    lindenreed::picture_stand::setUpLanguage();
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);

    QLocale::setDefault(QLocale(qEnvironmentVariable("LANG")));
    const QFont font(QString::fromUtf8(sv_get_default_font(5)), -1, -1, false);
    QGuiApplication::setFont(font);

    lindenreed::picture_stand::App app;
    return app.run(&application);
}
