// The device's texts in its language.

#pragma once

#include "paths.h"

#include <QByteArray>
#include <QLocale>
#include <QString>

#include <ctime>

namespace lindenreed::device::texts {

/// Loads the table of `language` (a code such as "en" or "zh_CN"), else that of the code without its country,
/// else English, and makes it visible to qsTr() if an application object exists. Main thread, before any
/// other thread reads. A table that is loaded later takes the place of the former one; texts that were handed
/// out stay.
///
/// One line in the log, and the next of these tables, where one cannot be read or is not whole. One line, and
/// the English text, for a key whose placeholders in any plural form are not those of the English text.
void load(const QString &language, const QString &folder = dataFolder() + QStringLiteral("/languages"));

QLocale locale(); ///< of that language, for numbers and names; QLocale::c() before. Any thread.
QString language(); ///< of the table that is loaded, empty where none is. Any thread.

/// The text of a key, UTF-8, alive for ever; null where there is none. Any thread.
const char *text(const char *key);

/// The plural form of a key for `count`, which is rounded to the nearest whole number first; less than 0 and
/// no number at all count as 0, more than an int holds as the largest int. As text().
const char *plural(const char *key, double count);

/// `time` in the device language after a strftime-like format, UTF-8. Conversions: a A b B d e H I j l m M p
/// S y Y %;
/// "%l" is the name of the month as it stands beside a day, "%B" as it stands alone. An unknown conversion is
/// copied. Any thread.
QByteArray time(const char *format, const std::tm &time);

} // namespace lindenreed::device::texts
