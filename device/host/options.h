// What the user asked the launcher for.

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lindenreed::host {

/// Empty strings: not given.
struct Options
{
    QString root; ///< as given
    QString photos; ///< as given
    QString profile;
    QString language;
    QString memoryInformation; ///< file to serve as /proc/meminfo
    std::optional<int> orientation; ///< 0 to 3
    bool headless = false;
    bool temporary = false;
    bool samples = false;
    bool direct = false;
    bool help = false;
    bool version = false;
    QStringList program; ///< with its arguments; empty: the picture frame
};

/// Reads the command line, without the program's own name. Nothing, with one sentence in `error`, for what
/// cannot be meant. Needs no application object.
std::optional<Options> readOptions(const QStringList &arguments, QString *error);

QString helpText();

} // namespace lindenreed::host
