// What the launcher writes into a device before it starts: kind of device, orientation, language.

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lindenreed::host {

/// What the device's data has, in the order of the alphabet.
QStringList profileNames();
QStringList languageNames();

/// Whether a device can be made of a profile. False, with what is wrong in `error`, where it cannot.
bool isProfile(const QString &profile, QString *error);

/// Brings the device's record up to date. `profile`: one that isProfile(); empty keeps the recorded one, or
/// takes the default. The orientation counts for one start: without one, an earlier one is taken out. False,
/// with what is wrong in `error`, for a record that cannot be used or written and for a recorded profile that
/// is none.
bool writeDeviceRecord(const QString &path, const QString &profile, std::optional<int> orientation,
                       QString *error);

/// Whether the device has texts in a language, be it without its country, such as "de" for "de_AT". False,
/// with one sentence in `error`, where it has none.
bool isLanguage(const QString &language, QString *error);

/// Sets "language" in a device configuration, every other line stays as it is, byte for byte. Missing file
/// and folders are made.
bool writeLanguage(const QString &path, const QString &language, QString *error);

} // namespace lindenreed::host
