// Qt's own plug-in for JPEG files.

#pragma once

#include <QImageIOPlugin>

namespace lindenreed::device {

/// Null where there is none. Qt loads only the first one of several plug-ins that are for the same formats,
/// and leaves it to that one to know of the others. Any thread.
QImageIOPlugin *qtJpegPlugin();

} // namespace lindenreed::device
