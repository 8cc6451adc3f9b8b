// Numbers of the device's theme: theme.cfg.

#pragma once

#include <QByteArray>

namespace lindenreed::device::theme {

void load(); ///< main thread, once, before any other thread reads
int integer(const QByteArray &name, int fallback); ///< any thread

} // namespace lindenreed::device::theme
