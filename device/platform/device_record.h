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

/// Reads {"profile": NAME, "orientation": N}. Both may be missing, and so may the file; what is there and
/// wrong is passed over, with one sentence in `error`.
DeviceRecord readDeviceRecord(const QString &path, QString *error);

} // namespace lindenreed::device
