#include "program.h"

#include "app.h"
#include "error_output.h"
#include "language_setup.h"
#include "lasting_threads.h"
#include "memory_setup.h"

#include <slateview.h>

#include <QFont>
#include <QGuiApplication>
#include <QLocale>
#include <QQuickWindow>
#include <QThreadPool>

#include <clocale>
#include <cstdlib>

namespace lindenreed::picture_stand {

int runProgram(int argc, char **argv)
{
    setUpErrorOutput();
    setUpMemory();
    setenv("QT_QPA_PLATFORM", "lindenreed2", 1);
    setUpLanguage();
    // Stays where the language's locale is not installed. Qt 6.8 complains of any encoding but UTF-8.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);

    QLocale::setDefault(QLocale(qEnvironmentVariable("LANG")));
    const QFont font(QString::fromUtf8(sv_get_default_font(5)), -1, -1, false);
    QGuiApplication::setFont(font);

    App app;
    startLastingThreads(*QThreadPool::globalInstance());
    const int result = app.run(&application);
    // What drew the canvases is to be deleted later, and no event loop comes for it any more.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return result;
}

} // namespace lindenreed::picture_stand
