#include "launch.h"

#include "desktop.h"
#include "device_root.h"
#include "message.h"
#include "pictures_mount.h"
#include "places.h"
#include "root_settings.h"
#include "run_folder.h"
#include "run_place.h"
#include "supervisor.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QStandardPaths>

#include <csignal>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

namespace {

constexpr int refused = 2; // the program was not started

int refuse(const QString &reason)
{
    say(reason);
    return refused;
}

QString whyNoSandbox(const QString &reason)
{
    // Old kernels and new ones, plain and with a security module, refuse at different steps of one thing.
    if (reason.contains(u"namespace"_s) || reason.contains(u"uid map"_s)
        || reason.contains(u"not permitted"_s) || reason.contains(u"Permission denied"_s))
        return u"this machine does not allow private namespaces (%1); an administrator can allow them with "
               "\"sysctl kernel.unprivileged_userns_clone=1\" or \"sysctl "
               "kernel.apparmor_restrict_unprivileged_userns=0\""_s.arg(reason);
    return u"the sandbox cannot be made (%1)"_s.arg(reason.isEmpty() ? u"bubblewrap gave no reason"_s
                                                                     : reason);
}

} // namespace

Launch::Launch(const Options &options)
    : m_options(options)
{
}

Launch::~Launch() = default;

int Launch::run()
{
    QString error;
    if (!prepare(&error))
        return refuse(error);
    if (m_options.direct) {
        const Outcome outcome = runDirectly();
        return outcome.status ? *outcome.status : refuse(outcome.reason);
    }

    const Outcome alone = runEnclosed(false);
    if (alone.status)
        return *alone.status;
    if (alone.signal)
        return signalStatus + *alone.signal; // what has not begun does not begin any more
    const Outcome withNetwork = runEnclosed(true, alone.reason);
    return withNetwork.status ? *withNetwork.status : refuse(whyNoSandbox(withNetwork.reason));
}

bool Launch::findProgram(QString *error)
{
    m_program = m_options.program;
    if (m_program.isEmpty())
        m_program = QStringList{programFolder() + u"/picture_stand"_s};
    const QString asGiven = m_program.first();
    const QString path = asGiven.contains(u'/') ? QDir::cleanPath(QFileInfo(asGiven).absoluteFilePath())
                                                : QStandardPaths::findExecutable(asGiven);
    const QFileInfo file(path);
    if (!m_options.direct && !path.isEmpty() && isHiddenInside(path)) {
        *error = u"%1 would be hidden by the device's own folders; start it from another place"_s.arg(path);
        return false;
    }
    if (path.isEmpty() || !file.isFile() || !file.isExecutable()) {
        *error = u"there is no program %1"_s.arg(asGiven);
        return false;
    }
    m_program.first() = path;
    return true;
}

bool Launch::findSandbox(QString *error)
{
    m_helper = programFolder() + u"/slate-enter"_s;
    if (isHiddenInside(m_helper)) {
        *error
            = u"slate-run itself would be hidden by the device's own folders; install it in another place"_s;
        return false;
    }
    m_sandboxProgram = QStandardPaths::findExecutable(u"bwrap"_s);
    if (m_sandboxProgram.isEmpty()) {
        *error = u"bubblewrap is needed and not installed (apt-get install bubblewrap)"_s;
        return false;
    }
    return true;
}

bool Launch::openRoot(QString *error)
{
    if (m_options.direct) {
        m_root = DeviceRoot::openMachine(error);
        return m_root != nullptr;
    }
    auto kind = DeviceRoot::Kind::Kept;
    if (m_options.temporary)
        kind = m_options.samples ? DeviceRoot::Kind::TemporaryWithSamples : DeviceRoot::Kind::Temporary;
    const bool atUsualPlace = m_options.root.isEmpty() && !m_options.temporary;
    m_root = DeviceRoot::open(atUsualPlace ? remote::defaultDeviceRoot() : m_options.root, kind, error);
    return m_root != nullptr;
}

bool Launch::prepare(QString *error)
{
    if (!findProgram(error) || (!m_options.direct && !findSandbox(error)))
        return false;
    // A device that is refused is not made, and one that is there does not keep what cannot be.
    if (!m_options.profile.isEmpty() && !isProfile(m_options.profile, error))
        return false;
    if (!m_options.language.isEmpty() && !isLanguage(m_options.language, error))
        return false;
    if (!m_options.memoryInformation.isEmpty()) {
        const QFileInfo file(m_options.memoryInformation);
        if (!file.isFile() || !file.isReadable()) {
            *error = u"%1 is no file that can be read"_s.arg(m_options.memoryInformation);
            return false;
        }
        m_sandbox.memoryInformation = file.absoluteFilePath();
    }

    if (!m_options.photos.isEmpty() && !PicturesMount::isUsable(m_options.photos, error))
        return false;

    if (!openRoot(error))
        return false;
    const QString photoFolder = m_root->inside(u"/mnt/ext1/Photo"_s);
    const QString mountRecord = m_root->inside(u"/devroot/mount_point"_s);
    PicturesMount::removeAbandoned(photoFolder, mountRecord);
    if (!m_options.photos.isEmpty()) {
        m_pictures = PicturesMount::prepare(m_options.photos, photoFolder, mountRecord, error);
        if (!m_pictures)
            return false;
        m_sandbox.pictures = m_pictures->source();
        m_sandbox.picturesAt = m_pictures->devicePath();
    }
    const QString record = m_root->inside(u"/devroot/device.json"_s);
    if (!writeDeviceRecord(record, m_options.profile, m_options.orientation, error))
        return false;
    const QString configuration = m_root->inside(u"/mnt/ext1/system/config/global.cfg"_s);
    if (!m_options.language.isEmpty() && !writeLanguage(configuration, m_options.language, error))
        return false;

    m_runPlace = m_options.direct ? RunPlace::makeForMachine(error) : RunPlace::make(m_root->path(), error);
    if (!m_runPlace)
        return false;
    m_sandbox.mnt = m_root->inside(u"/mnt"_s);
    m_sandbox.devroot = m_root->inside(u"/devroot"_s);
    m_sandbox.runFolder = m_runPlace->path();
    return true;
}

Launch::Outcome Launch::runEnclosed(bool network, const QString &whyNetwork)
{
    Supervisor supervisor(programEnvironment(QProcessEnvironment::systemEnvironment()));
    if (network) {
        QObject::connect(&supervisor, &Supervisor::started, &supervisor, [whyNetwork] {
            say(u"the network stays on, it cannot be switched off here (%1)"_s.arg(whyNetwork));
        });
    }
    const QStringList launch = QStringList{m_sandboxProgram} + sandboxArguments(m_sandbox, network);
    return supervise(supervisor, [&] { supervisor.startEnclosed(launch, m_helper, m_program); });
}

Launch::Outcome Launch::runDirectly()
{
    Supervisor supervisor(programEnvironment(QProcessEnvironment::systemEnvironment()));
    return supervise(supervisor, [&] { supervisor.start(m_program, u"/mnt/ext1"_s); });
}

Launch::Outcome Launch::supervise(Supervisor &supervisor, const std::function<void()> &start)
{
    Outcome outcome;
    QEventLoop loop;
    QObject::connect(&m_signals, &StopSignals::received, &supervisor, &Supervisor::pass);
    QObject::connect(&supervisor, &Supervisor::started, &supervisor, [&] { joinDesktop(supervisor); });
    QObject::connect(&supervisor, &Supervisor::ended, &supervisor, [&](int status) {
        outcome.status = status;
        loop.quit();
    });
    QObject::connect(&supervisor, &Supervisor::notStarted, &supervisor, [&](const QString &reason) {
        outcome.reason = reason;
        loop.quit();
    });
    // From inside the loop, so that a failure that is known at once finds it running.
    QMetaObject::invokeMethod(&supervisor, start, Qt::QueuedConnection);
    loop.exec();
    m_signals.read(); // one that came just before the program's end
    outcome.signal = supervisor.waitingSignal();
    m_desktop.reset();
    return outcome;
}

void Launch::joinDesktop(Supervisor &supervisor)
{
    if (m_options.headless || !Desktop::isThere())
        return;
    m_desktop = std::make_unique<Desktop>(m_runPlace->path(),
                                          [this](const QString &path) { return hostPath(path); });
    QObject::connect(m_desktop.get(), &Desktop::windowClosed, &supervisor,
                     [&supervisor] { supervisor.pass(SIGTERM); });
}

QString Launch::hostPath(const QString &devicePath) const
{
    const QString path = QDir::cleanPath(devicePath);
    if (m_pictures && path.startsWith(m_pictures->devicePath() + u'/'))
        return m_pictures->source() + path.sliced(m_pictures->devicePath().size());
    if (path.startsWith(u"/mnt/"_s) || path.startsWith(u"/devroot/"_s))
        return m_root->inside(path);
    return path;
}

} // namespace lindenreed::host
