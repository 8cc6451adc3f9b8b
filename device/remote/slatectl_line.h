// The command line of slatectl.

#pragma once

#include "slatectl_commands.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace lindenreed::remote {

/// What the user asks for.
struct CommandLine
{
    bool help = false; ///< then nothing else counts
    bool version = false; ///< the same
    QString root; ///< empty where none is named
    QString runFolder; ///< the same; at most one of the two is
    const Command *command = nullptr;
    QJsonObject members; ///< of the request
};

/// Reads the words behind the program's name. Options stand before or after the command's words; where a
/// command takes a text, that place is the text's, whatever it looks like. Nothing, with one sentence in
/// `error`, for what cannot be meant.
std::optional<CommandLine> readCommandLine(const QStringList &words, QString *error);

} // namespace lindenreed::remote
