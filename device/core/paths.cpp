#include "paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

/// Of the library that this code is in.
QString libraryFolder()
{
    // The address of any object of this library will do; a function's own could be the program's stub for it.
    static const char here = 0;
    Dl_info info{};
    if (dladdr(&here, &info) == 0 || !info.dli_fname)
        return {};
    const QFileInfo library(QFile::decodeName(info.dli_fname));
    return QFileInfo(library.canonicalFilePath()).path();
}

} // namespace

QString dataFolder()
{
    const QString folder = libraryFolder();
    return folder.isEmpty() ? QString() : QDir::cleanPath(folder + u"/../../share/picture_stand"_s);
}

QString profilesFolder()
{
    return dataFolder() + u"/profiles"_s;
}

QString pluginFolder()
{
    const QString folder = libraryFolder();
    return folder.isEmpty() ? QString() : folder + u"/device"_s;
}

} // namespace lindenreed::device
