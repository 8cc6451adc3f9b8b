#include "abandoned_roots.h"

#include "file_tree.h"
#include "run_folder.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

namespace {

bool isOwnFolder(const QString &path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode)
        && status.st_uid == ::geteuid();
}

/// The descriptor of the lock, taken, where nobody holds it any more; else -1.
int takeAbandonedLock(const QString &path)
{
    const int lock = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (lock < 0)
        return -1;
    // A launcher that is about to start has made the file, but writes its number only into a lock it holds.
    char byte = 0;
    if (::pread(lock, &byte, 1, 0) == 1 && ::flock(lock, LOCK_EX | LOCK_NB) == 0)
        return lock;
    ::close(lock);
    return -1;
}

} // namespace

void removeAbandonedRoots(const QString &folder)
{
    const QStringList names = QDir(folder).entryList({u"slate-run-??????"_s}, QDir::Dirs | QDir::NoSymLinks);
    for (const QString &name : names) {
        const QString root = folder + u'/' + name;
        if (!isOwnFolder(root))
            continue;
        const int lock = takeAbandonedLock(root + u"/devroot/lock"_s);
        if (lock < 0)
            continue;
        if (const auto runFolder = remote::runFolderOf(root, nullptr))
            removeTree(nativePath(*runFolder));
        removeTree(nativePath(root));
        ::close(lock);
    }
}

} // namespace lindenreed::host
