// What may be opened as a picture.

#pragma once

#include <QString>

class QFile;

namespace lindenreed::picture_stand {

/// True for a regular file, also behind symbolic links. Any thread.
bool isRegularFile(const QString &path);

/// Opens `file`, by its name, for reading a picture; false where it cannot be, or is no regular file: opening
/// a FIFO waits for a writer, and opening a device may do anything. What comes under the name between the two
/// looks at it is not waited for either. Any thread.
bool openRegularFile(QFile &file);

} // namespace lindenreed::picture_stand
