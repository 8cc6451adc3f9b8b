#include "run_place.h"

#include "file_tree.h"
#include "run_folder.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

namespace {

bool makePrivate(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    return (::mkdir(name.constData(), 0700) == 0 || QFileInfo(path).isDir())
        && ::chmod(name.constData(), 0700) == 0;
}

} // namespace

std::unique_ptr<RunPlace> RunPlace::make(const QString &deviceRoot, QString *error)
{
    const auto path = remote::runFolderOf(deviceRoot, error);
    if (!path)
        return nullptr;
    std::unique_ptr<RunPlace> place(new RunPlace);
    place->m_path = *path;
    // The program's own runtime folder is apart from what the device shows to others.
    if (!removeTree(nativePath(*path)) || !makePrivate(*path) || !makePrivate(*path + u"/user"_s)) {
        *error = u"%1 cannot be made"_s.arg(*path);
        return nullptr;
    }
    return place;
}

std::unique_ptr<RunPlace> RunPlace::makeForMachine(QString *error)
{
    const auto path = remote::runFolderOf(u"/"_s, error);
    if (!path)
        return nullptr;
    std::unique_ptr<RunPlace> place(new RunPlace);
    place->m_path = *path;
    const QString own = u"/devroot/run"_s;
    if (!makePrivate(own) || !emptyFolder(nativePath(own)) || !makePrivate(own + u"/user"_s)) {
        *error = u"%1 cannot be made"_s.arg(own);
        return nullptr;
    }
    if (!removeTree(nativePath(*path)) || !QFile::link(own, *path)) {
        *error = u"%1 cannot be made"_s.arg(*path);
        return nullptr;
    }
    return place;
}

RunPlace::~RunPlace()
{
    if (QFileInfo(m_path).isSymLink())
        emptyFolder(nativePath(m_path));
    removeTree(nativePath(m_path));
}

} // namespace lindenreed::host
