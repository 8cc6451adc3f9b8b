// From a picture file to a picture that the cache keeps.

#pragma once

#include <QImage>
#include <QString>

namespace lindenreed::picture_stand {

/// Decodes a file: reduced to the screen where it is larger in either direction, never enlarged; grey on a
/// grey panel, else RGB; inverted while the screen is. Null for what is no regular file or no readable
/// picture, has more than 120 million pixels, or asks for more than hasBearableTexts() and readSvg() allow.
/// Any thread.
QImage readImage(const QString &path);

} // namespace lindenreed::picture_stand
