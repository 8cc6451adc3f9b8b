// A running device as a window on the desk.

#include "run_folder.h"
#include "slate_window_link.h"
#include "slate_window_view.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

constexpr int connectLimitMs = 20'000; ///< the device may still be starting, on a slow board
constexpr int quitLimitMs = 10'000; ///< for a device that does not end although it was asked to

int fail(const QString &sentence)
{
    std::fprintf(stderr, "slate-window: %s\n", sentence.simplified().toUtf8().constData());
    return 2;
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationDisplayName(u"Picture frame"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false); // the window goes when the device does

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Shows a running device. Arrows turn pages, M is its menu key, Ctrl+Q ends it; "
        "Ctrl with plus, minus or 0 changes the size."_s);
    const QCommandLineOption runOption(u"run"_s, u"The device's run folder."_s, u"FOLDER"_s);
    const QCommandLineOption rootOption(u"root"_s, u"The device's root, where its run folder is not named."_s,
                                        u"DIR"_s);
    const QCommandLineOption help = parser.addHelpOption();
    parser.addOptions({runOption, rootOption});
    if (!parser.parse(QGuiApplication::arguments()))
        return fail(parser.errorText());
    if (parser.isSet(help)) {
        std::fputs(parser.helpText().toUtf8().constData(), stdout);
        return 0;
    }
    if (parser.isSet(runOption) == parser.isSet(rootOption) || !parser.positionalArguments().isEmpty())
        return fail(u"Usage: slate-window --run FOLDER, or slate-window --root DIR"_s);

    QString runFolder = parser.value(runOption);
    if (parser.isSet(rootOption)) {
        QString error;
        const std::optional<QString> found = runFolderOf(parser.value(rootOption), &error);
        if (!found)
            return fail(error);
        runFolder = *found;
    }
    DeviceLink link(runFolder);
    DeviceView view(runFolder + u"/panel"_s);
    bool wasThere = false;
    bool isClosing = false;

    QObject::connect(&link, &DeviceLink::connected, &view, [&] {
        wasThere = true;
        view.readSoon();
    });
    QObject::connect(&link, &DeviceLink::refreshed, &view, &DeviceView::readSoon);
    QObject::connect(&link, &DeviceLink::changed, &view, &DeviceView::readSoon);
    QObject::connect(&link, &DeviceLink::gone, &application, [&] {
        QGuiApplication::exit(wasThere ? 0 : fail(u"No device answers at %1/control."_s.arg(runFolder)));
    });
    QObject::connect(&view, &DeviceView::ready, &view, &QWindow::show);
    QObject::connect(&view, &DeviceView::asked, &link, &DeviceLink::send);
    QObject::connect(&view, &DeviceView::closing, &link, [&] {
        if (isClosing)
            return;
        isClosing = true;
        view.hide();
        link.send(u"quit"_s);
        QTimer::singleShot(quitLimitMs, &application, [] { QGuiApplication::exit(0); });
    });

    QTimer::singleShot(0, &link, [&link] { link.open(connectLimitMs); });
    return QGuiApplication::exec();
}
