// What this device remembers of itself between two starts.

#pragma once

#include <QString>

#include <optional>

namespace lindenreed::device {

struct DeviceRecord
{
    QString profile = QStringLiteral("grey-6");
    std::optional<int> orientation; ///< that the task before this one left, 0 to 3
};

/// Reads {"profile": NAME, "orientation": N}; the orientation may be missing, and so may the whole file.
/// Nothing, with one sentence in `error`, where something is wrong.
std::optional<DeviceRecord> readDeviceRecord(const QString &path, QString *error);

} // namespace lindenreed::device
