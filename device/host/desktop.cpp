#include "desktop.h"

#include "message.h"
#include "places.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeDatabase>
#include <QTimer>

#include <chrono>
#include <csignal>

#include <sys/prctl.h>

namespace lindenreed::host {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A device that was asked to quit by its closed window gives its light back first.
constexpr auto timeToQuit = 5s;

} // namespace

bool Desktop::isThere()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || !qEnvironmentVariableIsEmpty("DISPLAY");
}

Desktop::Desktop(const QString &runFolder, ToHostPath toHostPath, QObject *parent)
    : QObject(parent)
    , m_runFolder(runFolder)
    , m_toHostPath(std::move(toHostPath))
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &Desktop::joinWhenReady);
    connect(&m_socket, &QLocalSocket::readyRead, this, &Desktop::readEvents);
    connect(&m_socket, &QLocalSocket::connected, this,
            [this] { m_socket.write("{\"id\":1,\"do\":\"follow\"}\n"); });
    connect(&m_window, &QProcess::finished, this, &Desktop::windowEnded);
    connect(&m_window, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        say(u"the window cannot be started: %1"_s.arg(m_window.errorString()));
        emit windowClosed();
    });
    m_window.setProcessChannelMode(QProcess::ForwardedChannels);
    // A launcher that is killed cannot close the window.
    m_window.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    m_watcher.addPath(runFolder);
    joinWhenReady();
}

Desktop::~Desktop()
{
    m_window.disconnect(this);
    if (m_window.state() == QProcess::NotRunning)
        return;
    m_window.terminate();
    if (!m_window.waitForFinished(2000))
        m_window.kill();
    m_window.waitForFinished();
}

void Desktop::joinWhenReady()
{
    const QString control = m_runFolder + u"/control"_s;
    if (m_joined || !QFileInfo::exists(control))
        return;
    m_joined = true;
    m_socket.connectToServer(control);
    m_window.start(ownFolder() + u"/slate-window"_s, {u"--run"_s, m_runFolder});
}

void Desktop::readEvents()
{
    while (m_socket.canReadLine()) {
        const QJsonObject event = QJsonDocument::fromJson(m_socket.readLine()).object();
        if (event.value(u"event"_s).toString() == u"open")
            open(event.value(u"path"_s).toString());
    }
}

void Desktop::open(const QString &devicePath)
{
    // The program inside is not trusted with what the desktop starts: pictures only, told by their content.
    const QString path = m_toHostPath(devicePath);
    const QFileInfo file(path);
    if (!file.isFile()
        || !QMimeDatabase()
                .mimeTypeForFile(path, QMimeDatabase::MatchContent)
                .name()
                .startsWith(u"image/"_s)) {
        say(u"%1 is no picture, so it is not opened"_s.arg(path));
        return;
    }
    if (!QProcess::startDetached(u"xdg-open"_s, {path}))
        say(u"%1 cannot be opened: xdg-open is missing"_s.arg(path));
}

void Desktop::windowEnded(int exitCode, QProcess::ExitStatus exitStatus)
{
    if (exitStatus == QProcess::NormalExit && exitCode == 0) {
        QTimer::singleShot(timeToQuit, this, &Desktop::windowClosed);
        return;
    }
    say(u"the window has ended unexpectedly, so the device is switched off"_s);
    emit windowClosed();
}

} // namespace lindenreed::host
