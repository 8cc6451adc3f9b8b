#include "regular_file.h"

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lindenreed::picture_stand {

bool isRegularFile(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode);
}

bool openRegularFile(QFile &file)
{
    if (!isRegularFile(file.fileName()))
        return false;
    // By now something else may have the name, which does not hold this up.
    const int descriptor
        = open(QFile::encodeName(file.fileName()).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status = {};
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
        && file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    close(descriptor);
    return false;
}

bool lacksHandles()
{
    // As many as starting the process that draws an SVG takes, with room for another thread's.
    std::array<int, 16> handles;
    for (int &handle : handles)
        handle = eventfd(0, EFD_CLOEXEC);
    const bool lacks = std::ranges::find(handles, -1) != handles.end();
    for (const int handle : handles) {
        if (handle >= 0)
            close(handle);
    }
    return lacks;
}

} // namespace lindenreed::picture_stand
