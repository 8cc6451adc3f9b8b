#include "root_settings.h"

#include "places.h"

#include <profile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

namespace {

/// All or nothing: a start that is cut off leaves the file as it was.
bool replaceFile(const QString &path, const QByteArray &content, QString *error)
{
    QSaveFile file(path);
    if (QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
        && file.write(content) == content.size() && file.commit())
        return true;
    *error = u"%1 cannot be written: %2"_s.arg(path, file.errorString());
    return false;
}

QString profilesFolder()
{
    return dataFolder() + u"/profiles"_s;
}

} // namespace

QStringList profileNames()
{
    return device::Profile::names(profilesFolder());
}

QStringList languageNames()
{
    QStringList names = QDir(dataFolder() + u"/languages"_s).entryList({u"*.qm"_s}, QDir::Files);
    for (QString &name : names)
        name.chop(3);
    names.sort();
    return names;
}

bool isProfile(const QString &profile, QString *error)
{
    return device::Profile::named(profilesFolder(), profile, error).has_value();
}

bool writeDeviceRecord(const QString &path, const QString &profile, std::optional<int> orientation,
                       QString *error)
{
    QByteArray before;
    if (QFile file(path); file.open(QIODevice::ReadOnly))
        before = file.readAll();
    QJsonObject record = QJsonDocument::fromJson(before).object();

    if (!profile.isEmpty()) {
        record.insert(u"profile"_s, profile);
    } else if (!QFile::exists(path)) {
        record.insert(u"profile"_s, u"grey-6"_s);
        if (!isProfile(u"grey-6"_s, error))
            return false;
    } else if (!record.value(u"profile"_s).isString()) {
        *error = u"%1 names no profile; --profile writes it anew"_s.arg(path);
        return false;
    } else if (!isProfile(record.value(u"profile"_s).toString(), error)) {
        *error += u" The device has kept this profile since an earlier start; --profile gives it another."_s;
        return false;
    }

    if (orientation)
        record.insert(u"orientation"_s, *orientation);
    else
        record.remove(u"orientation"_s);

    const QByteArray after = QJsonDocument(record).toJson();
    return after == before || replaceFile(path, after, error);
}

bool isLanguage(const QString &language, QString *error)
{
    const QStringList names = languageNames();
    if (names.contains(language) || names.contains(language.section(u'_', 0, 0)))
        return true;
    *error = u"there is no language \"%1\"; there are %2"_s.arg(language, names.join(u", "_s));
    return false;
}

bool writeLanguage(const QString &path, const QString &language, QString *error)
{
    QByteArray content;
    if (QFile file(path); file.open(QIODevice::ReadOnly)) {
        content = file.readAll();
    } else if (file.exists()) {
        *error = u"%1 cannot be read: %2"_s.arg(path, file.errorString());
        return false;
    }

    // The last line of a key is the one that counts.
    static constexpr QByteArrayView key("language=");
    qsizetype valueAt = -1;
    for (qsizetype line = 0; line < content.size();) {
        if (QByteArrayView(content).sliced(line).startsWith(key))
            valueAt = line + key.size();
        const qsizetype end = content.indexOf('\n', line);
        line = end < 0 ? content.size() : end + 1;
    }

    if (valueAt >= 0) {
        qsizetype end = content.indexOf('\n', valueAt);
        if (end < 0)
            end = content.size();
        if (end > valueAt && content.at(end - 1) == '\r')
            --end;
        content.replace(valueAt, end - valueAt, language.toUtf8());
    } else {
        if (!content.isEmpty() && !content.endsWith('\n'))
            content.append('\n');
        content.append(QByteArray(key.data(), key.size()) + language.toUtf8() + '\n');
    }
    return replaceFile(path, content, error);
}

} // namespace lindenreed::host
