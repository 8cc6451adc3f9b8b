// When a picture was taken.

#pragma once

#include <QDateTime>
#include <QString>

namespace lindenreed::picture_stand {

/**
 * The date of the shot as the file's EXIF data tell it, else the time of the last access before this call.
 *
 * libexif is asked first, then our own reader, which also takes files that libexif refuses. Every file that
 * exists has a date; invalid for what does not exist. Opens regular files only. Any thread.
 */
QDateTime createdDate(const QString &path);

} // namespace lindenreed::picture_stand
