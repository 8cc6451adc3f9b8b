// What a device remembers of itself between two starts.

#include "fuzz_targets.h"
#include "require.h"

#include <device_record.h>

#include <QJsonDocument>
#include <QJsonObject>

using namespace lindenreed::device;

void fuzzDeviceRecord(const QByteArray &input)
{
    const QString path = inputFile(input);
    QString error;
    const std::optional<DeviceRecord> record = readDeviceRecord(path, &error);
    if (!record) {
        requireSentence(error, path);
        return;
    }
    require(error.isEmpty() && record->orientation.value_or(0) >= 0 && record->orientation.value_or(0) <= 3);

    // What was accepted and is written again has to be read as the same record.
    QJsonObject members{{QStringLiteral("profile"), record->profile}};
    if (record->orientation)
        members.insert(QStringLiteral("orientation"), *record->orientation);
    const auto again = readDeviceRecord(inputFile(QJsonDocument(members).toJson()), &error);
    require(again && again->profile == record->profile && again->orientation == record->orientation);
}
