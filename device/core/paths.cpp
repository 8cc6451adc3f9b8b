#include "paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

QString dataFolder()
{
    // The address of any object of this library will do; a function's own could be the program's stub for it.
    static const char here = 0;
    Dl_info info{};
    if (dladdr(&here, &info) == 0 || !info.dli_fname)
        return {};
    const QFileInfo library(QFile::decodeName(info.dli_fname));
    return QDir::cleanPath(QFileInfo(library.canonicalFilePath()).path() + u"/../../share/picture_stand"_s);
}

} // namespace lindenreed::device
