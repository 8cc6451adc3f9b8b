// Paths in lines for people.

#pragma once

#include <QByteArray>
#include <QString>

namespace lindenreed::picture_stand {

/// The path in local 8-bit form with control characters as "\n", "\x1b": a file may be called anything, and
/// a line of the log stays one that steers no terminal.
QByteArray visiblePath(const QString &path);

} // namespace lindenreed::picture_stand
