// The device's texts in its language.

#pragma once

#include "paths.h"

#include <QByteArray>
#include <QString>

#include <ctime>

namespace lindenreed::device::texts {

/// Loads the table of `language` (a code such as "en" or "zh_CN"), else that of the code without its country,
/// else English, and makes it visible to qsTr() if an application object exists. Main thread, before any
/// other thread reads. A table that is loaded later takes the place of the former one; texts that were handed
/// out stay.
void load(const QString &language, const QString &folder = dataFolder() + QStringLiteral("/languages"));

QString language(); ///< of the table that is loaded, empty where none is. Any thread.

/// The text of a key, UTF-8, alive for ever; null where there is none. Any thread.
const char *text(const char *key);

/// The plural form of a key for `count`, which is rounded to the nearest whole number first; less than 0 and
/// no number at all count as 0, more than an int holds as the largest int. As text().
const char *plural(const char *key, double count);

/// `time` in the device language after a strftime-like format, UTF-8. Conversions: a A b B d e H I j l m M p
/// S y Y %;
/// "%l" is the name of the month as it stands beside a day. An unknown conversion is copied. Any thread.
QByteArray time(const char *format, const std::tm &time);

} // namespace lindenreed::device::texts
