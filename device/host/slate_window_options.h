// What the user asked slate-window for.

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lindenreed::remote {

struct WindowOptions
{
    bool help = false;
    bool version = false; ///< then nothing else counts
    bool fullScreen = false;
    QString runFolder;
    QString root; ///< where the run folder is not named; exactly one of the two is
};

/// Reads the command line, without the program's own name. Nothing, with one sentence in `error`, for what
/// cannot be meant. Needs neither an application object nor a display.
std::optional<WindowOptions> readWindowOptions(const QStringList &arguments, QString *error);

QString windowHelpText();

} // namespace lindenreed::remote
