// The commands of slatectl: one table for the help and for reading the words of a command line.

#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace lindenreed::remote {

/// What a word of a command line has to be.
enum class WordKind {
    Integer, ///< `low` to `high`
    Text, ///< anything but nothing
    Choice, ///< one of `choices`
    Number, ///< one of `choices`, which are numbers
    Switch, ///< the first of two `choices` for yes, the second for no
    NameOrId, ///< NAME, or #ID
    PngFile, ///< a file name without a suffix that promises another format
};

struct CommandWord
{
    QString label; ///< in the help
    QString member; ///< on the wire; empty: for the client alone
    WordKind kind = WordKind::Text;
    bool optional = false; ///< where it is left out, those after it that have no keyword are out as well
    /// Where there is one, it stands before the word. Such pairs come in any order; a command that has
    /// nothing else needs one of them.
    QString keyword = {};
    qint64 low = 0;
    qint64 high = 0;
    QStringList choices = {};
};

struct Command
{
    QString name;
    QString help;
    QList<CommandWord> words;

    QString usage() const; ///< the command line without the program
};

const QList<Command> &commands();
const Command *findCommand(const QString &name);

/// The members of a request; "file" for the client's own word. Nothing, with one sentence in `error`, where a
/// word is missing, superfluous or wrong.
std::optional<QJsonObject> readWords(const Command &command, const QStringList &words, QString *error);

/// The whole help text.
QString helpText();

} // namespace lindenreed::remote
