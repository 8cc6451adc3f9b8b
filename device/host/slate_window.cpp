// A running device as a window on the desk.

#include "run_folder.h"
#include "slate_window_accessible.h"
#include "slate_window_link.h"
#include "slate_window_options.h"
#include "slate_window_view.h"

#include <QFile>
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

constexpr int connectLimitMs = 20'000; ///< the device may still be starting, on a slow board
constexpr int quitLimitMs = 10'000; ///< for a device that does not end although it was asked to
constexpr int lostDelayMs = 700; ///< whoever started both closes the window after an ordinary end

int fail(const QString &sentence)
{
    std::fprintf(stderr, "slate-window: %s\n", sentence.simplified().toUtf8().constData());
    return 2;
}

bool displayIsNamed()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

/// While the application object is made: what Qt has to say of a display that it cannot use is said in one
/// line.
void tellNoDisplay(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtFatalMsg)
        std::_Exit(fail(u"The display cannot be used (%1)."_s.arg(qEnvironmentVariable(
            "QT_QPA_PLATFORM", qEnvironmentVariable("WAYLAND_DISPLAY", qEnvironmentVariable("DISPLAY"))))));
    if (!QByteArrayView(context.category).startsWith("qt.qpa"))
        std::fprintf(stderr, "%s\n", qUtf8Printable(message));
}

} // namespace

int main(int argc, char **argv)
{
    // Before the application object, which ends the program where there is no display.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QFile::decodeName(argv[i]));
    QString error;
    const std::optional<WindowOptions> options = readWindowOptions(arguments, &error);
    if (!options)
        return fail(error);
    if (options->help) {
        std::fputs(windowHelpText().toUtf8().constData(), stdout);
        return 0;
    }
    if (options->version) {
        std::puts("slate-window " SLATE_VERSION);
        return 0;
    }
    QString runFolder = options->runFolder;
    if (runFolder.isEmpty()) {
        const std::optional<QString> found = runFolderOf(options->root, &error);
        if (!found)
            return fail(error);
        runFolder = *found;
    }
    if (!displayIsNamed())
        return fail(u"There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set."_s);

    qInstallMessageHandler(tellNoDisplay);
    QGuiApplication application(argc, argv);
    qInstallMessageHandler(nullptr);
    QGuiApplication::setApplicationDisplayName(u"Picture frame"_s);
    QGuiApplication::setDesktopFileName(
        u"com.lindenreed.picture_stand"_s); // of which a desktop takes the icon
    QGuiApplication::setQuitOnLastWindowClosed(false); // the window goes when the device does
    if (!options->fullScreen) // the panel alone has neither keys nor buttons
        makeDeviceViewAccessible();

    ButtonStates buttons;
    DeviceLink link(runFolder);
    DeviceView view(runFolder + u"/panel"_s, &buttons);
    if (options->fullScreen)
        view.showPanelAlone();
    QTimer lost;
    lost.setSingleShot(true);
    bool isClosing = false;

    QObject::connect(&link, &DeviceLink::connected, &view, [&] {
        lost.stop();
        view.setDeviceIsThere(true);
        buttons.deviceCame();
    });
    QObject::connect(&link, &DeviceLink::refreshed, &view, &DeviceView::readSoon);
    QObject::connect(&link, &DeviceLink::changed, &view, [&] {
        view.readSoon();
        link.send(u"state"_s);
    });
    QObject::connect(&link, &DeviceLink::stateTold, &buttons, &ButtonStates::setState);
    QObject::connect(&link, &DeviceLink::refused, &buttons, &ButtonStates::refuse);
    QObject::connect(&link, &DeviceLink::timedOut, &application, [&] {
        QGuiApplication::exit(fail(u"No device answers at %1/control."_s.arg(runFolder)));
    });
    QObject::connect(&link, &DeviceLink::gone, &application, [&] {
        buttons.deviceWent();
        if (isClosing)
            QGuiApplication::exit(0);
        else
            lost.start(lostDelayMs);
    });
    QObject::connect(&lost, &QTimer::timeout, &view, [&] { view.setDeviceIsThere(false); });

    QObject::connect(&view, &DeviceView::ready, &view,
                     options->fullScreen ? &QWindow::showFullScreen : &QWindow::show);
    QObject::connect(&view, &DeviceView::asked, &link, &DeviceLink::send);
    QObject::connect(&buttons, &ButtonStates::asked, &link, &DeviceLink::send);
    QObject::connect(&view, &DeviceView::closing, &link, [&] {
        if (isClosing)
            return;
        isClosing = true;
        view.hide();
        if (!link.isConnected()) {
            QGuiApplication::exit(0);
            return;
        }
        link.send(u"quit"_s);
        QTimer::singleShot(quitLimitMs, &application, [] { QGuiApplication::exit(0); });
    });

    QTimer::singleShot(0, &link, [&link] { link.open(connectLimitMs); });
    return QGuiApplication::exec();
}
