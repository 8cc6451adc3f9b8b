// What a folder has. QDir and QDirIterator of Qt 6.8 end at the first name that is no UTF-8; these leave it
// out.

#pragma once

#include <QDir>
#include <QStringList>

namespace lindenreed::picture_stand {

/// As QDir(folder).entryList(filters, kinds, QDir::Name), where `kinds` are QDir::Dirs and QDir::Files; but a
/// link to a FIFO, socket or device is a file alone, to QDir also a folder. Any thread.
QStringList folderNames(const QString &folder, QDir::Filters kinds, const QStringList &filters = {});

/// Paths of the files in a folder and all below it, in the order of the file system; links to folders are not
/// followed. Any thread.
QStringList filesBelow(const QString &folder, const QStringList &filters);

} // namespace lindenreed::picture_stand
