#include "device_record.h"

#include <visible_text.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

std::optional<DeviceRecord> readDeviceRecord(const QString &path, QString *error)
{
    DeviceRecord record;
    QFile file(path);
    if (!file.exists())
        return record;
    const auto refuse = [&](const QString &reason) {
        *error = visibleText(u"%1 is not usable: %2."_s.arg(path, reason));
        return std::nullopt;
    };
    // A pipe or a device under this name would block or never end.
    if (!QFileInfo(path).isFile())
        return refuse(u"it is no file"_s);
    if (!file.open(QIODevice::ReadOnly))
        return refuse(file.errorString());
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject())
        return refuse(u"it is no JSON object"_s);

    QJsonObject members = document.object();
    const QJsonValue profile = members.take("profile"_L1);
    if (!profile.isString())
        return refuse(u"\"profile\" must be the name of a profile"_s);
    record.profile = profile.toString();

    const QJsonValue orientation = members.take("orientation"_L1);
    const int code = orientation.toInt(-1);
    if (code >= 0 && code <= 3)
        record.orientation = code;
    else if (!orientation.isUndefined())
        return refuse(u"\"orientation\" must be a whole number from 0 to 3"_s);
    if (!members.isEmpty())
        return refuse(u"\"%1\" is not known"_s.arg(members.begin().key()));
    return record;
}

} // namespace lindenreed::device
