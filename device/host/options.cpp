#include "options.h"

#include "root_settings.h"

#include <QCommandLineParser>
#include <QRegularExpression>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

namespace {

/// What cannot go together, or cannot be meant.
std::optional<QString> complaint(const Options &options)
{
    static const QRegularExpression languageName(u"^[A-Za-z0-9_@.-]+$"_s);
    if (!options.language.isEmpty() && !languageName.match(options.language).hasMatch())
        return u"\"%1\" is no language"_s.arg(options.language);
    if (options.samples && !options.temporary)
        return u"--samples goes with --temporary; every other device has the sample pictures anyway"_s;
    const bool ownRoot = !options.root.isEmpty() || options.temporary;
    if (options.direct && (ownRoot || !options.photos.isEmpty() || !options.memoryInformation.isEmpty()))
        return u"--direct uses this machine's own /mnt/ext1, without --root, --temporary, --photos or --meminfo"_s;
    return std::nullopt;
}

} // namespace

std::optional<Options> readOptions(const QStringList &arguments, QString *error)
{
    // All after the first "--" is the program's, whatever it looks like.
    const qsizetype separator = arguments.indexOf(u"--"_s);
    const QStringList own = separator < 0 ? arguments : arguments.first(separator);

    Options options;
    if (separator >= 0) {
        options.program = arguments.sliced(separator + 1);
        if (options.program.isEmpty() || options.program.first().isEmpty()) {
            *error = u"no program after \"--\""_s;
            return std::nullopt;
        }
    }

    QCommandLineParser parser;
    parser.addOptions({
        {u"root"_s, {}, u"DIR"_s},
        {u"photos"_s, {}, u"DIR"_s},
        {u"profile"_s, {}, u"NAME"_s},
        {u"language"_s, {}, u"L"_s},
        {u"orientation"_s, {}, u"N"_s},
        {u"meminfo"_s, {}, u"FILE"_s},
        {u"headless"_s, {}},
        {u"temporary"_s, {}},
        {u"samples"_s, {}},
        {u"direct"_s, {}},
        {u"version"_s, {}},
        {{u"h"_s, u"help"_s}, {}},
    });
    if (!parser.parse(QStringList{u"slate-run"_s} + own)) {
        *error = parser.errorText();
        if (error->endsWith(u'.'))
            error->chop(1);
        return std::nullopt;
    }
    if (!parser.positionalArguments().isEmpty()) {
        *error = u"\"%1\" is no option; a program to start follows \"--\""_s.arg(
            parser.positionalArguments().first());
        return std::nullopt;
    }

    for (const QString &name :
         {u"root"_s, u"photos"_s, u"profile"_s, u"language"_s, u"meminfo"_s, u"orientation"_s}) {
        if (parser.values(name).size() > 1) {
            *error = u"--%1 is there twice"_s.arg(name);
            return std::nullopt;
        }
    }
    for (const auto &[name, target] :
         {std::pair{u"root"_s, &options.root}, std::pair{u"photos"_s, &options.photos},
          std::pair{u"profile"_s, &options.profile}, std::pair{u"language"_s, &options.language},
          std::pair{u"meminfo"_s, &options.memoryInformation}}) {
        *target = parser.value(name);
        if (parser.isSet(name) && target->isEmpty()) {
            *error = u"--%1 is empty"_s.arg(name);
            return std::nullopt;
        }
    }
    if (parser.isSet(u"orientation"_s)) {
        bool isNumber = false;
        const int orientation = parser.value(u"orientation"_s).toInt(&isNumber);
        if (!isNumber || orientation < 0 || orientation > 3) {
            *error = u"--orientation is a number from 0 to 3"_s;
            return std::nullopt;
        }
        options.orientation = orientation;
    }
    options.headless = parser.isSet(u"headless"_s);
    options.temporary = parser.isSet(u"temporary"_s);
    options.samples = parser.isSet(u"samples"_s);
    options.direct = parser.isSet(u"direct"_s);
    options.help = parser.isSet(u"help"_s);
    options.version = parser.isSet(u"version"_s);

    if (const auto wrong = complaint(options)) {
        *error = *wrong;
        return std::nullopt;
    }
    return options;
}

QString helpText()
{
    return uR"(Usage: slate-run [OPTIONS] [-- PROGRAM ARGUMENTS...]

Starts the picture frame, or PROGRAM, on a device kept in an ordinary folder, and ends with its status.

  --root DIR        the device's folder; made on first use (default: $XDG_DATA_HOME/picture_stand/device)
  --photos DIR      show a folder of yours, read-only, as /mnt/ext1/Photo/<its name>
  --profile NAME    kind of device, kept between starts:
                    %1
  --language L      the device's language, kept between starts:
                    %2
  --orientation N   how the previous program left the screen turned: 0 to 3
  --headless        no window, and pictures handed to the device's viewer are not opened
  --temporary       a fresh device, removed at the end; with --root, in that new or empty folder
  --samples         sample pictures on a temporary device
  --meminfo FILE    serve FILE as /proc/meminfo
  --direct          no sandbox, on a machine that has /mnt/ext1 and /devroot itself
  --version         the version
  --help            this text

Exit status: the program's; 128 and the signal's number where a signal ended it; 2 where it could not be started.
)"_s.arg(profileNames().join(u", "_s), languageNames().join(u", "_s));
}

} // namespace lindenreed::host
