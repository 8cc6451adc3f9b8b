// What may be opened as a picture.

#pragma once

#include <QString>

namespace lindenreed::picture_stand {

/// True for a regular file, also behind symbolic links. To be asked before a reader opens a picture: opening
/// a FIFO waits for a writer, and opening a device may do anything. Any thread.
bool isRegularFile(const QString &path);

} // namespace lindenreed::picture_stand
