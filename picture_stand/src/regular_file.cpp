#include "regular_file.h"

#include <QFile>

#include <sys/stat.h>

namespace lindenreed::picture_stand {

bool isRegularFile(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace lindenreed::picture_stand
