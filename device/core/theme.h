// Numbers of the device's theme: theme.cfg.

#pragma once

#include <QByteArray>
#include <QString>

namespace lindenreed::device {

class Configuration;

namespace theme {

/// Reads the theme. Main thread, once, before any other thread reads; does nothing where it is loaded
/// already. False, with one sentence in `error`, where a number is missing, not known or absurd. `path` is
/// that of the installed data where it is empty.
bool load(QString *error, const QString &path = QString());
/// Why a configuration is no theme: a number that is missing, not known or absurd. Empty for one that is.
QString complaint(const Configuration &table);

int integer(const QByteArray &name, int fallback); ///< any thread

} // namespace theme
} // namespace lindenreed::device
