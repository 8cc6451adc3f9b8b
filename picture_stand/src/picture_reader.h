// From a picture file to a picture that the cache keeps.

#pragma once

#include <QImage>
#include <QString>

#include <optional>

namespace lindenreed::picture_stand {

/// Decodes a file: reduced to the screen where it is larger in either direction, never enlarged; grey on a
/// grey panel, else RGB; inverted while the screen is. Null for what is no readable picture, has more than
/// 120 million pixels, or asks for more than hasBearableTexts() and readSvg() allow; nothing where there was
/// no regular file, or it went while it was read. Any thread.
std::optional<QImage> readImage(const QString &path);

} // namespace lindenreed::picture_stand
