#include "slate_window_options.h"

#include <QCommandLineParser>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

std::optional<WindowOptions> readWindowOptions(const QStringList &arguments, QString *error)
{
    QCommandLineParser parser;
    parser.addOptions({{u"run"_s, {}, u"DIR"_s},
                       {u"root"_s, {}, u"DIR"_s},
                       {u"full-screen"_s, {}},
                       {u"version"_s, {}},
                       {{u"h"_s, u"help"_s}, {}}});
    if (!parser.parse(QStringList{u"slate-window"_s} + arguments)) {
        *error = parser.errorText();
        return std::nullopt;
    }
    WindowOptions options;
    options.help = parser.isSet(u"help"_s);
    options.version = parser.isSet(u"version"_s);
    options.fullScreen = parser.isSet(u"full-screen"_s);
    options.runFolder = parser.value(u"run"_s);
    options.root = parser.value(u"root"_s);
    const qsizetype named = parser.values(u"run"_s).size() + parser.values(u"root"_s).size();
    const bool isEmpty = options.runFolder.isEmpty() && options.root.isEmpty();
    if (!options.help && !options.version
        && (named != 1 || isEmpty || !parser.positionalArguments().isEmpty())) {
        *error = u"Usage: slate-window --run DIR, or slate-window --root DIR; see slate-window --help."_s;
        return std::nullopt;
    }
    return options;
}

QString windowHelpText()
{
    return uR"(Usage: slate-window [--full-screen] --root DIR | --run DIR

Shows a running device as a window; slate-run does so by itself where there is a display.

  --root DIR     the device root of the device
  --run DIR      its run folder, where control socket and panel are
  --full-screen  the panel alone, on the whole display, as on a board
  --version      the version
  --help         this text

A click is a finger. The three signs below the panel are the device's keys: previous, menu, next.
The strip beside the device has its other parts, each with a key of its own:

  Ctrl+D  SD card in or out         Ctrl+U  USB drive in or out
  Ctrl+T  turn the device           Ctrl+L  light on or off
  Ctrl+I  white on black, and back  Ctrl+S  sleep: another task comes to the front
  Ctrl+R  wake: back to the front

  Page Up, Left      previous       Page Down, Right  next
  M, Menu            menu           Up, Down, Left, Right, Return, Escape  on a device without touch
  Ctrl+Plus, Minus   larger, smaller; Ctrl+0 fits the display again
  Ctrl+Q             close: ends the program on the device, as slatectl quit does

Exit status: 0; 2 for wrong usage, or where no device or no display is found.
)"_s;
}

} // namespace lindenreed::remote
