// The date that a camera would have written.

#pragma once

#include <QByteArray>

namespace lindenreed::samples {

/// `jpeg` with an EXIF segment behind its start marker: upright, taken at `dateTime` ("2024:05:31 18:20:00").
QByteArray withExif(const QByteArray &jpeg, const QByteArray &dateTime);

} // namespace lindenreed::samples
