#include "device_record.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

DeviceRecord readDeviceRecord(const QString &path, QString *error)
{
    DeviceRecord record;
    QFile file(path);
    if (!file.exists())
        return record;
    if (!file.open(QIODevice::ReadOnly)) {
        *error = u"%1 cannot be read: %2"_s.arg(path, file.errorString());
        return record;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject()) {
        *error = u"%1 is not a JSON object"_s.arg(path);
        return record;
    }

    const QJsonValue profile = document.object().value("profile"_L1);
    if (profile.isString())
        record.profile = profile.toString();
    else if (!profile.isUndefined())
        *error = u"%1: \"profile\" is not a name"_s.arg(path);

    const QJsonValue orientation = document.object().value("orientation"_L1);
    const int code = orientation.toInt(-1);
    if (code >= 0 && code <= 3)
        record.orientation = code;
    else if (!orientation.isUndefined())
        *error = u"%1: \"orientation\" is not a number from 0 to 3"_s.arg(path);
    return record;
}

} // namespace lindenreed::device
