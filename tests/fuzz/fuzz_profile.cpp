// Profile files.

#include "fuzz_targets.h"
#include "require.h"

#include <profile.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <functional>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

namespace {

QJsonObject written(const Profile &profile)
{
    QJsonObject members{{u"name"_s, profile.name},
                        {u"width"_s, profile.panelSize.width()},
                        {u"height"_s, profile.panelSize.height()},
                        {u"dpi"_s, profile.dpi},
                        {u"colour"_s, profile.colourMask},
                        {u"platform"_s, profile.platformNumber},
                        {u"touch"_s, profile.touch},
                        {u"upside_down"_s, profile.upsideDown},
                        {u"status_height"_s, profile.statusHeight},
                        {u"frontlight"_s, profile.frontlight},
                        {u"colour_light"_s, profile.colourLight},
                        {u"levels"_s, profile.levels}};
    if (profile.luminances) {
        QJsonArray luminances;
        for (const double luminance : *profile.luminances)
            luminances.append(luminance);
        members.insert(u"luminance"_s, luminances);
    }
    if (!profile.backlight.isEmpty())
        members.insert(u"backlight"_s, profile.backlight);
    return members;
}

} // namespace

void fuzzProfile(const QByteArray &input)
{
    const QString path = inputFile(input);
    QString error;
    const std::optional<Profile> profile = Profile::read(path, &error);
    if (!profile) {
        requireSentence(error, path);
        return;
    }
    require(error.isEmpty() && !profile->name.isEmpty());
    const QSize size = profile->panelSize;
    require(size.width() >= 1 && size.height() >= 1 && size.width() <= 10'000 && size.height() <= 10'000);
    require(profile->statusHeight >= 0 && profile->statusHeight < std::min(size.width(), size.height()));
    require(profile->dpi >= 50 && profile->dpi <= 1000);
    require(profile->levels == 16 || profile->levels == 256);
    require(!profile->backlight.contains(u'/') && profile->backlight != ".."_L1);
    // What was accepted and is written again has to be read as the same profile.
    const QJsonObject members = written(*profile);
    QJsonObject file = members;
    if (profile->luminances) {
        const auto &levels = *profile->luminances;
        require(std::ranges::adjacent_find(levels, std::ranges::greater_equal()) == levels.end());
        require(levels.front() >= 0 && levels.back() < 1 + 1e-9);
        // By gamma levels may lie closer than readings do.
        const auto given = QJsonDocument::fromJson(input.first(std::min<qsizetype>(input.size(), 65'536)));
        file.insert(u"luminance"_s, given[u"luminance"_s]);
    }
    const QByteArray again = QJsonDocument(file).toJson();
    if (again.size() > 65'536)
        return; // a long name in which every byte is written as an escape
    const std::optional<Profile> second = Profile::read(inputFile(again), &error);
    require(second && written(*second) == members);
}
