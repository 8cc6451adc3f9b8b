#include "regular_file.h"

#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lindenreed::picture_stand {

std::optional<FileIdentity> regularFile(const QString &path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return FileIdentity{status.st_dev, status.st_ino};
}

bool isRegularFile(const QString &path)
{
    return regularFile(path).has_value();
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
    // As many as starting the process that draws an SVG takes, with room for another thread's. They are
    // counted, not taken: another thread may need the last one at this moment.
    constexpr int enough = 16;
    rlimit limit = {};
    getrlimit(RLIMIT_NOFILE, &limit);
    int left = 0;
    for (int number = 0; left < enough && rlim_t(number) < limit.rlim_cur; ++number)
        left += fcntl(number, F_GETFD) < 0 ? 1 : 0;
    if (left < enough)
        return true;
    // The machine's cannot be counted.
    const int handle = eventfd(0, EFD_CLOEXEC);
    if (handle >= 0)
        close(handle);
    return handle < 0;
}

} // namespace lindenreed::picture_stand
