#include "profile.h"

#include "visible_text.h"

#include <level_curve.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

/// Takes the members of one JSON object, one after the other, and keeps the first complaint.
class Members
{
public:
    explicit Members(const QJsonObject &object)
        : m_object(object)
    {
    }

    void take(const QString &name, QString &value)
    {
        const QJsonValue found = takeAny(name);
        if (found.isString() && !found.toString().isEmpty())
            value = found.toString();
        else
            complain(u"\"%1\" must be a text that is not empty"_s.arg(name));
    }

    void take(const QString &name, int &value, int least, int most)
    {
        const double number = takeAny(name).toDouble(std::nan(""));
        if (number >= least && number <= most && number == std::floor(number))
            value = int(number);
        else
            complain(u"\"%1\" must be a whole number from %2 to %3"_s.arg(name).arg(least).arg(most));
    }

    void take(const QString &name, double &value, double least, double most)
    {
        const double number = takeAny(name).toDouble(std::nan(""));
        if (number >= least && number <= most)
            value = number;
        else
            complain(u"\"%1\" must be a number from %2 to %3"_s.arg(name).arg(least).arg(most));
    }

    void take(const QString &name, bool &value)
    {
        const QJsonValue found = takeAny(name);
        if (found.isBool())
            value = found.toBool();
        else
            complain(u"\"%1\" must be true or false"_s.arg(name));
    }

    QJsonValue takeAny(const QString &name)
    {
        if (!m_object.contains(name))
            complain(u"\"%1\" is missing"_s.arg(name));
        return m_object.take(name);
    }

    void complain(const QString &complaint)
    {
        if (m_complaint.isEmpty())
            m_complaint = complaint;
    }

    /// The complaint, or nothing. A name that is not known comes first: another one is then missing for it.
    QString finish() const
    {
        return m_object.isEmpty() ? m_complaint : u"\"%1\" is not known"_s.arg(m_object.begin().key());
    }

private:
    QJsonObject m_object;
    QString m_complaint;
};

/// Readings have four decimals; what is closer together is one level.
constexpr double leastStep = 0.0001;

/// Of two luminances that have to rise: what is wrong with them, or nothing.
QString riseComplaint(const QString &darker, double from, const QString &lighter, double to, double least)
{
    const auto shown
        = [](double value) { return QString::number(value, 'f', QLocale::FloatingPointShortest); };
    if (to <= from)
        return u"%1 (%2) is not above %3 (%4)"_s.arg(lighter, shown(to), darker, shown(from));
    constexpr double rounding = 1e-9;
    if (to - from < least - rounding)
        return u"%1 (%2) is less than %3 above %4 (%5)"_s.arg(lighter, shown(to), shown(least), darker,
                                                              shown(from));
    return {};
}

/// Levels one by one, which count from 0 as the patches of the chart do. The complaint, or nothing.
QString takeReadings(const QJsonArray &readings, pixels::Luminances &luminances)
{
    if (readings.size() != qsizetype(luminances.size()))
        return u"%1 values, %2 needed"_s.arg(readings.size()).arg(luminances.size());
    const auto numbered = [](std::size_t level) { return u"value %1"_s.arg(level); };
    for (std::size_t level = 0; level < luminances.size(); ++level) {
        const double reading = readings.at(qsizetype(level)).toDouble(-1);
        if (reading < 0 || reading > 1)
            return u"%1 must be a number from 0 to 1"_s.arg(numbered(level));
        luminances[level] = reading;
        if (level == 0)
            continue;
        const QString complaint = riseComplaint(numbered(level - 1), luminances[level - 1], numbered(level),
                                                luminances[level], leastStep);
        if (!complaint.isEmpty())
            return complaint;
    }
    return {};
}

/// Levels by black, white and gamma. The complaint, or nothing.
QString takeGamma(const QJsonObject &object, pixels::Luminances &luminances)
{
    double black = 0;
    double white = 1;
    double gamma = 1;
    Members members(object);
    members.take(u"black"_s, black, 0, 1);
    members.take(u"white"_s, white, 0, 1);
    members.take(u"gamma"_s, gamma, 0.2, 5);
    if (const QString complaint = riseComplaint(u"\"black\""_s, black, u"\"white\""_s, white, leastStep * 15);
        !complaint.isEmpty())
        members.complain(complaint);
    luminances = pixels::luminancesByGamma(black, white, gamma);
    return members.finish();
}

/// The complaint, or nothing.
QString takeLuminances(const QJsonValue &value, pixels::Luminances &luminances)
{
    if (value.isArray())
        return takeReadings(value.toArray(), luminances);
    if (value.isObject())
        return takeGamma(value.toObject(), luminances);
    return u"16 numbers in brackets or \"black\", \"white\" and \"gamma\" in braces are needed"_s;
}

QString whyNoObject(const QByteArray &content, const QJsonParseError &parsing)
{
    if (parsing.error == QJsonParseError::NoError)
        return u"another value"_s;
    const qsizetype line = 1 + content.first(qBound(0, parsing.offset, int(content.size()))).count('\n');
    return u"line %1: %2"_s.arg(line).arg(parsing.errorString());
}

/// Names come from files and command lines: none leads out of its folder.
bool isProfileName(const QString &name)
{
    static const QRegularExpression plain(u"\\A[A-Za-z0-9][A-Za-z0-9_.-]*\\z"_s);
    return plain.match(name).hasMatch();
}

bool isBacklightName(const QString &name)
{
    static const QRegularExpression plain(u"\\A[A-Za-z0-9_:.-]+\\z"_s);
    return plain.match(name).hasMatch() && name != u"."_s && name != u".."_s;
}

void tell(QString *error, const QString &sentence)
{
    if (error)
        *error = visibleText(sentence);
}

} // namespace

std::optional<Profile> Profile::read(const QString &path, QString *error)
{
    constexpr qint64 mostBytes = 65'536;
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        tell(error, u"The profile %1 cannot be read."_s.arg(path));
        return std::nullopt;
    }
    QJsonParseError parsing{};
    const QByteArray content = file.read(mostBytes);
    const QJsonDocument document = QJsonDocument::fromJson(content, &parsing);
    if (!document.isObject()) {
        tell(error, u"The profile %1 is no JSON object (%2)."_s.arg(path, whyNoObject(content, parsing)));
        return std::nullopt;
    }

    Profile profile;
    int width = profile.panelSize.width();
    int height = profile.panelSize.height();
    Members members(document.object());
    members.take(u"name"_s, profile.name);
    members.take(u"width"_s, width, 1, 10'000);
    members.take(u"height"_s, height, 1, 10'000);
    members.take(u"dpi"_s, profile.dpi, 50, 1000);
    members.take(u"colour"_s, profile.colourMask, 0, 0xffff);
    members.take(u"platform"_s, profile.platformNumber, 0, 0xffff);
    members.take(u"touch"_s, profile.touch);
    members.take(u"upside_down"_s, profile.upsideDown);
    members.take(u"status_height"_s, profile.statusHeight, 0, 10'000);
    members.take(u"frontlight"_s, profile.frontlight);
    members.take(u"colour_light"_s, profile.colourLight);
    profile.levels = members.takeAny(u"levels"_s).toInt();
    if (profile.levels != 16 && profile.levels != 256)
        members.complain(u"\"levels\" must be 16 or 256"_s);
    if (document.object().contains(u"backlight"_s)) {
        members.take(u"backlight"_s, profile.backlight);
        if (!isBacklightName(profile.backlight))
            members.complain(u"\"backlight\" must be the name of a folder"_s);
    }
    if (document.object().contains(u"luminance"_s)) {
        profile.luminances.emplace();
        const QString complaint = takeLuminances(members.takeAny(u"luminance"_s), *profile.luminances);
        if (!complaint.isEmpty())
            members.complain(u"\"luminance\": "_s + complaint);
        if (profile.levels != 16 || profile.colourMask != 0)
            members.complain(u"\"luminance\" is for grey panels of 16 levels"_s);
    }
    if (profile.statusHeight >= qMin(width, height))
        members.complain(u"\"status_height\" must be less than width and height"_s);
    profile.panelSize = QSize(width, height);

    const QString complaint = members.finish();
    if (!complaint.isEmpty()) {
        tell(error, u"The profile %1 is not usable: %2."_s.arg(path, complaint));
        return std::nullopt;
    }
    return profile;
}

std::optional<Profile> Profile::named(const QString &folder, const QString &name, QString *error)
{
    if (!isProfileName(name)) {
        tell(error,
             u"\"%1\" is no name of a profile: letters, digits, \"_\", \".\" and \"-\" make one, beginning "
             u"with a "
             "letter or digit."_s.arg(name));
        return std::nullopt;
    }
    if (const QStringList all = names(folder); !all.contains(name)) {
        tell(error, u"There is no profile \"%1\"; there are: %2."_s.arg(name, all.join(u", "_s)));
        return std::nullopt;
    }
    const QString path = folder + u'/' + name + u".json"_s;
    std::optional<Profile> profile = read(path, error);
    if (profile && profile->name != name) {
        tell(error,
             u"The profile %1 is not usable: it says \"name\": \"%2\", its file \"%3\"."_s.arg(
                 path, profile->name, name));
        return std::nullopt;
    }
    return profile;
}

QStringList Profile::names(const QString &folder)
{
    QStringList found;
    for (const QString &file : QDir(folder).entryList({u"*.json"_s}, QDir::Files | QDir::CaseSensitive)) {
        if (const QString name = QFileInfo(file).completeBaseName(); isProfileName(name))
            found.append(name);
    }
    found.sort();
    return found;
}

} // namespace lindenreed::device
