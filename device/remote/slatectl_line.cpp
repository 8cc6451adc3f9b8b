#include "slatectl_line.h"

#include <utility>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

bool isText(const Command &command, qsizetype position)
{
    if (position >= command.words.size())
        return false;
    const WordKind kind = command.words.at(position).kind;
    return kind == WordKind::Text || kind == WordKind::NameOrId || kind == WordKind::PngFile;
}

/// Whether `word` is an option, which then is in `line`, with its value from `following`; else what is wrong
/// with it is in `error`.
bool takeOption(const QString &word, QStringList *following, CommandLine *line, QString *error)
{
    if (word == "--help"_L1 || word == "-h"_L1) {
        line->help = true;
        return true;
    }
    if (word == "--version"_L1) {
        line->version = true;
        return true;
    }
    for (const auto &[name, place] : {std::pair("--root"_L1, &line->root), {"--run"_L1, &line->runFolder}}) {
        QString folder;
        if (word == name)
            folder = following->isEmpty() ? QString() : following->takeFirst();
        else if (word.startsWith(name + u'='))
            folder = word.sliced(name.size() + 1);
        else
            continue;
        if (folder.isEmpty())
            *error = u"%1 needs a folder; see slatectl --help."_s.arg(name);
        else if (!place->isEmpty())
            *error = u"%1 is there twice."_s.arg(name);
        else if (!line->root.isEmpty() || !line->runFolder.isEmpty())
            *error = u"--root and --run both name the device."_s;
        *place = folder;
        return true;
    }
    return false;
}

} // namespace

std::optional<CommandLine> readCommandLine(const QStringList &words, QString *error)
{
    CommandLine line;
    QStringList rest = words;
    QStringList ofTheCommand;
    QString complaint;
    while (!rest.isEmpty() && complaint.isEmpty() && !line.help && !line.version) {
        const QString word = rest.takeFirst();
        const bool isLiteral = line.command && isText(*line.command, ofTheCommand.size());
        if (!isLiteral && takeOption(word, &rest, &line, &complaint))
            continue;
        if (line.command) {
            ofTheCommand.append(word);
        } else if (word.startsWith(u'-')) {
            complaint = u"There is no option %1; see slatectl --help."_s.arg(word);
        } else if (line.command = findCommand(word); !line.command) {
            complaint = u"There is no command \"%1\"; see slatectl --help."_s.arg(word);
        }
    }
    if (complaint.isEmpty() && (line.help || line.version))
        return line;
    if (complaint.isEmpty() && !line.command)
        complaint = u"Which command? See slatectl --help."_s;
    if (complaint.isEmpty()) {
        if (const std::optional<QJsonObject> members = readWords(*line.command, ofTheCommand, &complaint)) {
            line.members = *members;
            return line;
        }
        complaint = u"%1: %2."_s.arg(line.command->name, complaint);
    }
    *error = complaint;
    return std::nullopt;
}

} // namespace lindenreed::remote
