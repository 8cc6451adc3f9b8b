#include "sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

namespace {

/// What the link says, which may be relative.
QString linkText(const QString &path)
{
    std::error_code failure;
    return QFile::decodeName(
        std::filesystem::read_symlink(QFile::encodeName(path).constData(), failure).c_str());
}

/// The host's top-level entries. Bound one by one, because the device's own two need not exist on the host
/// and nothing may be made there.
QStringList hostArguments()
{
    QStringList arguments;
    const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const QFileInfoList entries = QDir(u"/"_s).entryInfoList(all, QDir::Name);
    for (const QFileInfo &entry : entries) {
        const QString path = entry.filePath();
        if (path == u"/mnt" || path == u"/devroot" || path == u"/dev" || path == u"/proc")
            continue;
        if (entry.isSymLink())
            arguments << u"--symlink"_s << linkText(path) << path;
        else
            arguments << u"--ro-bind-try"_s << path << path;
    }
    return arguments;
}

/// Processes look into /proc and change what is their own there; what is the machine's they cannot.
QStringList processArguments()
{
    QStringList arguments{u"--bind"_s, u"/proc"_s, u"/proc"_s};
    for (const QString &path : {u"/proc/sys"_s, u"/proc/sysrq-trigger"_s, u"/proc/irq"_s, u"/proc/bus"_s})
        arguments << u"--ro-bind-try"_s << path << path;
    return arguments;
}

} // namespace

QStringList sandboxArguments(const Sandbox &sandbox, bool network)
{
    QStringList arguments{u"--die-with-parent"_s, u"--cap-drop"_s, u"ALL"_s};
    if (!network)
        arguments << u"--unshare-net"_s;
    if (QFile::exists(
            u"/proc/self/ns/ipc"_s)) // a kernel without System V's shared memory has none to keep apart
        arguments << u"--unshare-ipc"_s;
    // The null device and the like, and shared memory of its own: on the host's anybody may write.
    arguments << hostArguments() << u"--dev"_s << u"/dev"_s << processArguments();
    arguments << u"--bind"_s << sandbox.mnt << u"/mnt"_s;
    arguments << u"--bind"_s << sandbox.devroot << u"/devroot"_s;
    arguments << u"--bind"_s << sandbox.runFolder << u"/devroot/run"_s;
    if (!sandbox.pictures.isEmpty())
        arguments << u"--ro-bind"_s << sandbox.pictures << sandbox.picturesAt;
    if (!sandbox.memoryInformation.isEmpty())
        arguments << u"--ro-bind"_s << sandbox.memoryInformation << u"/proc/meminfo"_s;
    arguments << u"--remount-ro"_s << u"/"_s << u"--chdir"_s << u"/mnt/ext1"_s;
    return arguments;
}

QProcessEnvironment programEnvironment(const QProcessEnvironment &own)
{
    QProcessEnvironment environment;
    for (const QString &name :
         {u"HOME"_s, u"PATH"_s, u"TZ"_s, u"DBUS_SESSION_BUS_ADDRESS"_s, u"XDG_SESSION_ID"_s,
          u"NOTIFY_SOCKET"_s, u"WATCHDOG_USEC"_s, u"ASAN_OPTIONS"_s, u"LSAN_OPTIONS"_s, u"UBSAN_OPTIONS"_s,
          u"TSAN_OPTIONS"_s}) {
        if (own.contains(name))
            environment.insert(name, own.value(name));
    }

    // One variable stands for the three that choose a locale. Qt wants UTF-8 and says so on standard error.
    QString language = own.value(u"LC_ALL"_s);
    if (language.isEmpty())
        language = own.value(u"LANG"_s);
    environment.insert(u"LANG"_s, language.isEmpty() ? u"C.UTF-8"_s : language);

    // The user's runtime folder is another one inside, so the bus has to be named where it is.
    const QString bus = own.value(u"XDG_RUNTIME_DIR"_s) + u"/bus"_s;
    if (!environment.contains(u"DBUS_SESSION_BUS_ADDRESS"_s) && own.contains(u"XDG_RUNTIME_DIR"_s)
        && QFileInfo::exists(bus))
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path="_s + bus);

    environment.insert(u"TMPDIR"_s, u"/devroot/tmp"_s);
    environment.insert(u"XDG_RUNTIME_DIR"_s, u"/devroot/run/user"_s);
    return environment;
}

} // namespace lindenreed::host
