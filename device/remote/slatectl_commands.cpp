#include "slatectl_commands.h"

#include "protocol_limits.h"

#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 lowestInteger = std::numeric_limits<qint32>::min();
constexpr qint64 highestInteger = std::numeric_limits<qint32>::max();

CommandWord integer(const QString &label, const QString &member, qint64 low = lowestInteger,
                    qint64 high = highestInteger)
{
    return {.label = label, .member = member, .kind = WordKind::Integer, .low = low, .high = high};
}

CommandWord text(const QString &label, const QString &member)
{
    return {.label = label, .member = member, .kind = WordKind::Text};
}

CommandWord choice(const QString &member, const QStringList &choices)
{
    return {.label = choices.join(u'|'), .member = member, .kind = WordKind::Choice, .choices = choices};
}

/// A device has no other events. Programs drop what they do not know, so a slip would never show.
CommandWord eventType()
{
    return {.label = u"TYPE"_s,
            .member = u"type"_s,
            .kind = WordKind::Number,
            .choices
            = {u"25"_s, u"32"_s, u"40"_s, u"151"_s, u"152"_s, u"161"_s, u"162"_s, u"163"_s, u"164"_s}};
}

CommandWord yesOrNo(const QString &member, const QStringList &words)
{
    return {.label = words.join(u'|'), .member = member, .kind = WordKind::Switch, .choices = words};
}

CommandWord onOff(const QString &member)
{
    return yesOrNo(member, {u"on"_s, u"off"_s});
}

CommandWord optional(CommandWord word, const QString &keyword = {})
{
    word.optional = true;
    word.keyword = keyword;
    return word;
}

QList<CommandWord> itemWords()
{
    return {{.label = u"NAME|#ID"_s, .member = u"name"_s, .kind = WordKind::NameOrId},
            optional(integer(u"N"_s, u"n"_s, 1))};
}

QList<Command> makeCommands()
{
    return {
        {u"state"_s, u"screen, panel, light, power, timers and media"_s, {}},
        {u"tap"_s,
         u"one short touch, in screen pixels"_s,
         {integer(u"X"_s, u"x"_s), integer(u"Y"_s, u"y"_s)}},
        {u"hold"_s,
         u"a touch that stays for MS"_s,
         {integer(u"X"_s, u"x"_s), integer(u"Y"_s, u"y"_s),
          optional(integer(u"MS"_s, u"ms"_s, 0, longestHoldMs))}},
        {u"drag"_s,
         u"a finger that goes from one place to another"_s,
         {integer(u"X1"_s, u"x1"_s), integer(u"Y1"_s, u"y1"_s), integer(u"X2"_s, u"x2"_s),
          integer(u"Y2"_s, u"y2"_s), optional(integer(u"STEPS"_s, u"steps"_s, 1, mostDragSteps))}},
        {u"key"_s,
         u"menu, prev and next are the device's keys"_s,
         {choice(u"name"_s,
                 {u"menu"_s, u"prev"_s, u"next"_s, u"page-up"_s, u"page-down"_s, u"left"_s, u"right"_s,
                  u"up"_s, u"down"_s, u"centre"_s, u"back"_s})}},
        {u"event"_s,
         u"an event of the device: 25, 32, 40, 151, 152, 161 to 164"_s,
         {eventType(), integer(u"P1"_s, u"par1"_s), integer(u"P2"_s, u"par2"_s)}},
        {u"type"_s, u"text for the field that has the focus"_s, {text(u"TEXT"_s, u"text"_s)}},
        {u"timers"_s, u"the timers that are pending"_s, {}},
        {u"fire"_s, u"let a timer run out now"_s, {text(u"NAME"_s, u"name"_s)}},
        {u"card"_s, u"put the simulated card in, or take it out"_s, {yesOrNo(u"in"_s, {u"in"_s, u"out"_s})}},
        {u"usb"_s, u"the same with the simulated USB storage"_s, {yesOrNo(u"in"_s, {u"in"_s, u"out"_s})}},
        {u"light"_s,
         u"set the light; what is not named stays"_s,
         {optional(integer(u"N"_s, u"brightness"_s, 0, 100), u"brightness"_s),
          optional(integer(u"N"_s, u"color"_s, 0, 100), u"color"_s), optional(onOff(u"auto"_s), u"auto"_s),
          optional(onOff(u"color_auto"_s), u"color-auto"_s), optional(onOff(u"enabled"_s), u"enabled"_s)}},
        {u"invert"_s, u"white on black, or black on white"_s, {onOff(u"on"_s)}},
        {u"orientation"_s,
         u"what the sensor says when the device is turned"_s,
         {integer(u"N"_s, u"value"_s, 0, 3)}},
        {u"background"_s, u"another task comes to the front"_s, {}},
        {u"foreground"_s, u"the application comes back to the front"_s, {}},
        {u"screenshot"_s,
         u"the panel as a PNG, upright"_s,
         {{.label = u"FILE"_s, .member = u"file"_s, .kind = WordKind::PngFile}}},
        {u"frame"_s,
         u"the panel or a part of it, as PGM or PPM"_s,
         {optional(integer(u"X"_s, u"x"_s)), integer(u"Y"_s, u"y"_s), integer(u"W"_s, u"width"_s, 1),
          integer(u"H"_s, u"height"_s, 1)}},
        {u"follow"_s, u"refreshes and changes as they happen, until the device ends"_s, {}},
        {u"tree"_s, u"what can be seen and reached, in reading order"_s, {}},
        {u"press"_s, u"press the item (the N-th of them)"_s, itemWords()},
        {u"increase"_s, u"one step up"_s, itemWords()},
        {u"decrease"_s, u"one step down"_s, itemWords()},
        {u"idle"_s,
         u"wait until nothing happened for MS (300), no longer than LIMIT (30000)"_s,
         {optional(integer(u"MS"_s, u"ms"_s, 0, longestQuietMs)),
          optional(integer(u"LIMIT"_s, u"limit"_s, 0, longestIdleMs))}},
        {u"journal"_s, u"the last N calls of the application"_s, {optional(integer(u"N"_s, u"n"_s, 0))}},
        {u"chart"_s, u"a test chart, until the next full refresh"_s, {}},
        {u"opened"_s, u"pictures handed to the device's viewer"_s, {}},
        {u"quit"_s, u"end the application"_s, {}},
    };
}

/// Puts one word into `members`; else the sentence that says what it has to be.
QString readWord(const CommandWord &expected, const QString &word, QJsonObject *members)
{
    switch (expected.kind) {
    case WordKind::Integer: {
        bool isInteger = false;
        const qint64 value = word.toLongLong(&isInteger);
        if (!isInteger || value < expected.low || value > expected.high) {
            return u"%1 must be a whole number from %2 to %3, not \"%4\""_s.arg(expected.label)
                .arg(expected.low)
                .arg(expected.high)
                .arg(word);
        }
        members->insert(expected.member, value);
        return {};
    }
    case WordKind::Text:
        if (word.isEmpty())
            return u"%1 must not be empty"_s.arg(expected.label);
        members->insert(expected.member, word);
        return {};
    case WordKind::Choice:
        if (!expected.choices.contains(word))
            return u"\"%1\" is not one of %2"_s.arg(word, expected.choices.join(u", "_s));
        members->insert(expected.member, word);
        return {};
    case WordKind::Number:
        if (!expected.choices.contains(word))
            return u"\"%1\" is not one of %2"_s.arg(word, expected.choices.join(u", "_s));
        members->insert(expected.member, word.toInt());
        return {};
    case WordKind::Switch:
        if (!expected.choices.contains(word))
            return u"\"%1\" is neither %2"_s.arg(word, expected.choices.join(u" nor "_s));
        members->insert(expected.member, word == expected.choices.constFirst());
        return {};
    case WordKind::NameOrId:
        if (word.isEmpty() || word == "#"_L1)
            return u"%1 must not be empty"_s.arg(expected.label);
        members->insert(expected.member, word); // "#" and all: the member "id" is the request's own
        return {};
    case WordKind::PngFile:
        if (word.isEmpty())
            return u"%1 must not be empty"_s.arg(expected.label);
        if (const QString suffix = QFileInfo(word).suffix();
            !suffix.isEmpty() && suffix.compare("png"_L1, Qt::CaseInsensitive) != 0)
            return u"\"%1\" does not end in .png, and the picture is a PNG"_s.arg(word);
        members->insert(expected.member, word);
        return {};
    }
    return {};
}

} // namespace

QString Command::usage() const
{
    QString line = name;
    qsizetype open = 0;
    for (const CommandWord &word : words) {
        if (!word.keyword.isEmpty()) {
            line += u" ["_s + word.keyword + u' ' + word.label + u']';
            continue;
        }
        line += word.optional ? u" ["_s : u" "_s;
        line += word.label;
        open += word.optional ? 1 : 0;
    }
    return line + QString(open, u']');
}

const QList<Command> &commands()
{
    static const QList<Command> table = makeCommands();
    return table;
}

const Command *findCommand(const QString &name)
{
    const auto found = std::find_if(commands().begin(), commands().end(),
                                    [&name](const Command &command) { return command.name == name; });
    return found == commands().end() ? nullptr : &*found;
}

std::optional<QJsonObject> readWords(const Command &command, const QStringList &words, QString *error)
{
    QJsonObject members;
    QStringList given = words;
    const auto refuse = [&](const QString &sentence) {
        *error = sentence + u" (usage: slatectl "_s + command.usage() + u')';
        return std::nullopt;
    };

    for (const CommandWord &expected : command.words) {
        if (!expected.keyword.isEmpty())
            break; // only such ones follow
        if (given.isEmpty()) {
            if (expected.optional)
                break;
            return refuse(u"%1 is missing"_s.arg(expected.label));
        }
        if (const QString complaint = readWord(expected, given.takeFirst(), &members); !complaint.isEmpty())
            return refuse(complaint);
    }

    QStringList keywords;
    for (const CommandWord &word : command.words)
        keywords << word.keyword;
    keywords.removeAll(QString());
    if (given.isEmpty() && members.isEmpty() && !keywords.isEmpty())
        return refuse(u"one of %1 is missing"_s.arg(keywords.join(u", "_s)));

    while (!given.isEmpty()) {
        const QString keyword = given.takeFirst();
        const auto expected
            = std::find_if(command.words.begin(), command.words.end(), [&](const CommandWord &word) {
                  return !word.keyword.isEmpty() && word.keyword == keyword;
              });
        if (expected == command.words.end()) {
            return refuse(keywords.isEmpty()
                              ? u"\"%1\" is one word too many"_s.arg(keyword)
                              : u"\"%1\" is not one of %2"_s.arg(keyword, keywords.join(u", "_s)));
        }
        if (members.contains(expected->member))
            return refuse(u"%1 is there twice"_s.arg(keyword));
        if (given.isEmpty())
            return refuse(u"%1 needs a value"_s.arg(keyword));
        if (const QString complaint = readWord(*expected, given.takeFirst(), &members); !complaint.isEmpty())
            return refuse(keyword + u": "_s + complaint);
    }
    return members;
}

QString helpText()
{
    QString text = u"Usage: slatectl [--root DIR | --run DIR] COMMAND [WORDS]\n\n"
                   "Asks a running device and prints its answer as one line of JSON.\n\n"
                   "  --root DIR  the device root, where it is not the default one; also after the words\n"
                   "  --run DIR   instead: its run folder, where control socket and panel are\n"
                   "  --version   the version\n"
                   "  --help      this text\n\n"
                   "Commands:\n"_s;
    constexpr qsizetype helpColumn = 32;
    for (const Command &command : commands()) {
        const QString usage = u"  "_s + command.usage();
        text += usage.size() < helpColumn ? usage.leftJustified(helpColumn)
                                          : usage + u'\n' + QString(helpColumn, u' ');
        text += command.help + u'\n';
    }
    text += u"\nExit status: 0 done, 1 the device refused, 2 wrong usage or no device.\n"_s;
    return text;
}

} // namespace lindenreed::remote
