#include "profile.h"

#include "paths.h"
#include "visible_text.h"

#include <level_curve.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <functional>

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
        const QJsonValue found = m_object.take(name);
        if (found.isString() && !found.toString().isEmpty())
            value = found.toString();
        else
            complain(u"\"%1\" must be a text that is not empty"_s.arg(name));
    }

    void take(const QString &name, int &value, int least, int most)
    {
        const QJsonValue found = m_object.take(name);
        const double number = found.toDouble(std::nan(""));
        if (number >= least && number <= most && number == std::floor(number))
            value = int(number);
        else
            complain(u"\"%1\" must be a whole number from %2 to %3"_s.arg(name).arg(least).arg(most));
    }

    void take(const QString &name, bool &value)
    {
        const QJsonValue found = m_object.take(name);
        if (found.isBool())
            value = found.toBool();
        else
            complain(u"\"%1\" must be true or false"_s.arg(name));
    }

    QJsonValue takeAny(const QString &name) { return m_object.take(name); }

    void complain(const QString &complaint)
    {
        if (m_complaint.isEmpty())
            m_complaint = complaint;
    }

    QString finish()
    {
        if (!m_object.isEmpty())
            complain(u"\"%1\" is not known"_s.arg(m_object.begin().key()));
        return m_complaint;
    }

private:
    QJsonObject m_object;
    QString m_complaint;
};

/// The luminances of 16 levels, one by one or by black, white and gamma; nothing where they are none.
std::optional<pixels::Luminances> luminancesOf(const QJsonValue &value)
{
    pixels::Luminances luminances{};
    if (value.isArray() && value.toArray().size() == qsizetype(luminances.size())) {
        for (std::size_t level = 0; level < luminances.size(); ++level)
            luminances[level] = value.toArray().at(qsizetype(level)).toDouble(-1);
    } else if (value.isObject() && value.toObject().size() == 3) {
        const double gamma = value[u"gamma"_s].toDouble();
        const double black = value[u"black"_s].toDouble(-1);
        const double white = value[u"white"_s].toDouble(-1);
        if (gamma < 0.2 || gamma > 5 || black < 0 || white > 1)
            return std::nullopt;
        luminances = pixels::luminancesByGamma(black, white, gamma);
    }
    // Anything else is all zeros, which do not rise.
    const bool rises = std::adjacent_find(luminances.begin(), luminances.end(), std::greater_equal<>())
        == luminances.end();
    return rises && luminances.front() >= 0 && luminances.back() <= 1 ? std::optional(luminances)
                                                                      : std::nullopt;
}

/// Names come from files and command lines: none leads out of its folder.
bool isFileName(const QString &name)
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
    const QJsonDocument document = QJsonDocument::fromJson(file.read(mostBytes), &parsing);
    if (!document.isObject()) {
        tell(error,
             u"The profile %1 is no JSON object (%2)."_s.arg(
                 path,
                 parsing.error == QJsonParseError::NoError ? u"another value"_s : parsing.errorString()));
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
    members.take(u"levels"_s, profile.levels, 16, 256);
    if (document.object().contains(u"backlight"_s)) {
        members.take(u"backlight"_s, profile.backlight);
        if (!isFileName(profile.backlight))
            members.complain(u"\"backlight\" must be the name of a folder"_s);
    }
    if (document.object().contains(u"luminance"_s)) {
        profile.luminances = luminancesOf(members.takeAny(u"luminance"_s));
        if (!profile.luminances)
            members.complain(
                u"\"luminance\" must be 16 numbers that rise from 0 to 1 at most, or \"black\", a lighter "
                "\"white\" and a \"gamma\" from 0.2 to 5"_s);
        if (profile.levels != 16 || profile.colourMask != 0)
            members.complain(u"\"luminance\" is for grey panels of 16 levels"_s);
    }
    if (profile.levels != 16 && profile.levels != 256)
        members.complain(u"\"levels\" must be 16 or 256"_s);
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

std::optional<Profile> Profile::named(const QString &name, QString *error)
{
    const QString folder = dataFolder() + u"/profiles"_s;
    // Names come from the command line and from a file of the device root: none leads out of the folder.
    static const QRegularExpression plain(u"\\A[a-z0-9-]+\\z"_s);
    const QString path = folder + u'/' + name + u".json"_s;
    if (plain.match(name).hasMatch() && QFileInfo(path).isFile())
        return read(path, error);

    QStringList names;
    const QStringList files = QDir(folder).entryList({u"*.json"_s}, QDir::Files);
    for (const QString &file : files)
        names.append(file.chopped(5));
    names.sort();
    tell(error, u"There is no profile \"%1\"; there are: %2."_s.arg(name, names.join(u", "_s)));
    return std::nullopt;
}

} // namespace lindenreed::device
