// Numbers of the device's theme: theme.cfg.

#pragma once

#include <QByteArray>
#include <QString>

namespace lindenreed::device::theme {

/// Reads the theme. Main thread, once, before any other thread reads; does nothing where it is loaded
/// already. False, with one sentence in `error`, where a number is missing, not known or absurd. `path` is
/// that of the installed data where it is empty.
bool load(QString *error, const QString &path = QString());
int integer(const QByteArray &name, int fallback); ///< any thread

} // namespace lindenreed::device::theme
