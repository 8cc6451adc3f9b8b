#include "run_folder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t permissionBits = 07777;

/// An absolute path from the environment, else empty: relative ones would mean another folder to every
/// process.
QString absolutePathFromEnvironment(const char *name)
{
    const QString path = QFile::decodeName(qgetenv(name));
    return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QString();
}

bool isPrivateFolder(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode)
        && status.st_uid == ::geteuid() && (status.st_mode & permissionBits) == 0700;
}

/// Makes the folder where it is missing. One that somebody else could have put there is refused.
bool ensurePrivateFolder(const QString &path, QString *error)
{
    const QByteArray name = QFile::encodeName(path);
    if (::mkdir(name.constData(), 0700) == 0) {
        ::chmod(name.constData(), 0700); // whatever the umask took away
    } else if (errno != EEXIST) {
        *error = u"The folder %1 cannot be made: %2."_s.arg(path, qt_error_string(errno));
        return false;
    }

    struct stat status = {};
    if (::lstat(name.constData(), &status) != 0 || !S_ISDIR(status.st_mode)) {
        *error = u"%1 is not a folder."_s.arg(path);
        return false;
    }
    if (status.st_uid != ::geteuid()) {
        *error = u"The folder %1 belongs to somebody else."_s.arg(path);
        return false;
    }
    if ((status.st_mode & 0777) != 0700) {
        *error = u"The folder %1 must have mode 0700, it has 0%2."_s.arg(path).arg(status.st_mode & 0777, 3,
                                                                                   8, QChar(u'0'));
        return false;
    }
    return true;
}

} // namespace

QString defaultDeviceRoot()
{
    QString data = absolutePathFromEnvironment("XDG_DATA_HOME");
    if (data.isEmpty())
        data = QDir::homePath() + u"/.local/share"_s;
    return data + u"/picture_stand/device"_s;
}

std::optional<QString> runBase(QString *error)
{
    const QString runtime = absolutePathFromEnvironment("XDG_RUNTIME_DIR");
    const QString base = !runtime.isEmpty() && isPrivateFolder(runtime)
        ? runtime + u"/picture_stand"_s
        : u"/tmp/picture_stand-%1"_s.arg(::geteuid());

    QString reason;
    if (ensurePrivateFolder(base, &reason))
        return base;
    if (error)
        *error = reason;
    return std::nullopt;
}

std::optional<QString> runFolderOf(const QString &deviceRoot, QString *error)
{
    const std::unique_ptr<char, decltype(&std::free)> real(
        ::realpath(QFile::encodeName(deviceRoot).constData(), nullptr), &std::free);
    if (!real || !QFileInfo(QFile::decodeName(real.get())).isDir()) {
        if (error)
            *error = u"There is no device root %1."_s.arg(deviceRoot);
        return std::nullopt;
    }

    const std::optional<QString> base = runBase(error);
    if (!base)
        return std::nullopt;
    const QByteArray digest = QCryptographicHash::hash(QByteArray(real.get()), QCryptographicHash::Sha256);
    return *base + u'/' + QString::fromLatin1(digest.toHex().first(16));
}

} // namespace lindenreed::remote
