// What Qt's reader of PNG files does.

#pragma once

#include <QLibraryInfo>
#include <QVersionNumber>

/// Whether files in colour are reduced while they are read: by Qt 6.4 they are, by 6.8 not.
inline bool pngIsReduced()
{
    return QLibraryInfo::version() < QVersionNumber(6, 8);
}
