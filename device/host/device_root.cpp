#include "device_root.h"

#include "abandoned_roots.h"
#include "file_tree.h"
#include "places.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

namespace {

QString systemMessage()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool isEmptyFolder(const QString &path)
{
    return QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

/// Folders that a device cannot do without, also where its first contents came without empty ones.
bool makeFolders(const QString &root, QString *error)
{
    QStringList folders{u"mnt/ext1/Photo"_s, u"mnt/ext1/system/config"_s,
                        u"mnt/.unplugged"_s, u"devroot/share/locale"_s,
                        u"devroot/tmp"_s,    u"devroot/run"_s};
    // A medium that is in has its folder below mnt.
    if (!QFileInfo::exists(root + u"/mnt/ext2"_s))
        folders.append(u"mnt/.unplugged/sd"_s);
    if (!QFileInfo::exists(root + u"/mnt/ext3"_s))
        folders.append(u"mnt/.unplugged/usb"_s);
    for (const QString &folder : std::as_const(folders)) {
        if (!QDir(root).mkpath(folder)) {
            *error = u"%1/%2 cannot be made"_s.arg(root, folder);
            return false;
        }
    }
    return true;
}

bool isSamplePicture(const std::filesystem::path &insideRoot)
{
    return insideRoot.parent_path() == "ext1/Photo" && insideRoot.extension() == ".jpg";
}

} // namespace

std::unique_ptr<DeviceRoot> DeviceRoot::open(const QString &path, Kind kind, QString *error)
{
    std::unique_ptr<DeviceRoot> root(new DeviceRoot);
    root->m_temporary = kind != Kind::Kept;

    QString folder = path.isEmpty() ? QString() : QDir::cleanPath(QDir::current().absoluteFilePath(path));
    if (folder.isEmpty()) {
        removeAbandonedRoots(QDir::tempPath());
        QByteArray name = QFile::encodeName(QDir::tempPath() + u"/slate-run-XXXXXX"_s);
        if (::mkdtemp(name.data()) == nullptr) {
            *error = u"no temporary device can be made in %1: %2"_s.arg(QDir::tempPath(), systemMessage());
            return nullptr;
        }
        folder = QFile::decodeName(name);
        root->m_removesFolder = true;
    }

    const QFileInfo info(folder);
    if ((info.exists() || info.isSymLink()) && !info.isDir()) {
        *error = u"%1 is no folder, so it cannot hold a device"_s.arg(folder);
        return nullptr;
    }
    if (info.exists()) {
        const bool empty = isEmptyFolder(folder);
        if (kind != Kind::Kept && !empty) {
            *error = u"%1 is not empty, so it cannot become a temporary device"_s.arg(folder);
            return nullptr;
        }
        if (!empty && !QFileInfo(folder + u"/mnt"_s).isDir() && !QFileInfo(folder + u"/devroot"_s).isDir()) {
            *error = u"%1 holds other things than a device"_s.arg(folder);
            return nullptr;
        }
    } else if (QDir().mkpath(folder)) {
        root->m_removesFolder = true;
    } else {
        *error = u"%1 cannot be made"_s.arg(folder);
        return nullptr;
    }

    root->m_path = QFileInfo(folder).canonicalFilePath();
    if (!root->hold(error) || !root->fill(kind, error))
        return nullptr;
    return root;
}

std::unique_ptr<DeviceRoot> DeviceRoot::openMachine(QString *error)
{
    for (const QString &folder : {u"/mnt/ext1"_s, u"/devroot"_s}) {
        if (!QFileInfo(folder).isDir()) {
            *error = u"this machine has no %1, which --direct needs"_s.arg(folder);
            return nullptr;
        }
    }
    std::unique_ptr<DeviceRoot> root(new DeviceRoot);
    root->m_path = u"/"_s;
    if (!root->hold(error))
        return nullptr;
    if (!QDir().mkpath(u"/devroot/tmp"_s)) {
        *error = u"/devroot/tmp cannot be made"_s;
        return nullptr;
    }
    return root;
}

DeviceRoot::~DeviceRoot()
{
    if (m_temporary && m_lock >= 0) {
        if (m_removesFolder)
            removeTree(nativePath(m_path));
        else
            emptyFolder(nativePath(m_path));
    }
    if (m_lock >= 0)
        ::close(m_lock);
}

QString DeviceRoot::inside(const QString &devicePath) const
{
    return m_path == u"/"_s ? devicePath : m_path + devicePath;
}

bool DeviceRoot::hold(QString *error)
{
    const QString path = inside(u"/devroot/lock"_s);
    if (!QDir().mkpath(inside(u"/devroot"_s))) {
        *error = u"%1 cannot be made"_s.arg(inside(u"/devroot"_s));
        return false;
    }
    // Not inherited: the program must not hold the device when its launcher has gone.
    const int lock
        = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (lock < 0) {
        *error = u"%1 cannot be opened: %2"_s.arg(path, systemMessage());
        return false;
    }
    if (::flock(lock, LOCK_EX | LOCK_NB) != 0) {
        char holder[32] = {};
        const ssize_t length = ::pread(lock, holder, sizeof(holder) - 1, 0);
        const QString process = length > 0 ? QString::fromLatin1(holder).trimmed() : u"unknown"_s;
        *error = u"the device %1 is in use by process %2"_s.arg(m_path, process);
        ::close(lock);
        return false;
    }
    m_lock = lock;
    const QByteArray process = QByteArray::number(::getpid()) + '\n';
    if (::ftruncate(lock, 0) != 0 || ::pwrite(lock, process.constData(), size_t(process.size()), 0) < 0) {
        *error = u"%1 cannot be written: %2"_s.arg(path, systemMessage());
        return false;
    }
    return true;
}

bool DeviceRoot::fill(Kind kind, QString *error)
{
    // The whole of mnt appears at once, so that a start that is cut off leaves no half device.
    const QString internal = inside(u"/mnt"_s);
    if (!QFileInfo::exists(internal)) {
        const QString skeleton = dataFolder() + u"/skeleton"_s;
        const std::filesystem::path unfinished = nativePath(inside(u"/.unfinished"_s));
        removeTree(unfinished);
        const auto wanted = [kind](const std::filesystem::path &path) {
            return kind != Kind::Temporary || !isSamplePicture(path);
        };
        if (QFileInfo(skeleton + u"/mnt"_s).isDir()
            && !copyTree(nativePath(skeleton + u"/mnt"_s), unfinished, wanted, error)) {
            removeTree(unfinished);
            return false;
        }
        if (QFileInfo(skeleton + u"/devroot"_s).isDir()
            && !copyTree(nativePath(skeleton + u"/devroot"_s), nativePath(inside(u"/devroot"_s)), wanted,
                         error))
            return false;
        std::error_code failure;
        std::filesystem::create_directories(unfinished, failure);
        std::filesystem::rename(unfinished, nativePath(internal), failure);
        if (failure) {
            *error = u"%1 cannot be made"_s.arg(internal);
            return false;
        }
    }
    if (!makeFolders(m_path, error))
        return false;
    emptyFolder(nativePath(inside(u"/devroot/tmp"_s)));
    return true;
}

} // namespace lindenreed::host
