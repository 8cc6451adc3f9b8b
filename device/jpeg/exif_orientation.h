// How a photograph has to be turned.

#pragma once

#include <QByteArrayView>
#include <QImageIOHandler>

namespace lindenreed::device {

/// What the orientation in EXIF data (the contents of an APP1 segment) asks for; none where there is none, or
/// no valid one. The segment may be any bytes: what is damaged counts as absent.
QImageIOHandler::Transformations exifTransformation(QByteArrayView segment);

} // namespace lindenreed::device
