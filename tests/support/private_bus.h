// A message bus that belongs to one test.

#pragma once

#include <QDBusConnection>
#include <QDBusError>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// A real dbus-daemon, without any service but those that the test registers. Its end ends the daemon.
class PrivateBus
{
public:
    PrivateBus()
    {
        QFile configuration(m_folder.filePath(QStringLiteral("bus.conf")));
        if (!configuration.open(QIODevice::WriteOnly))
            qFatal("The bus cannot be configured.");
        configuration.write("<busconfig><type>session</type><listen>" + address().toUtf8()
                            + "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
                              "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/><allow own=\"*\"/>"
                              "</policy></busconfig>");
        configuration.close();
        m_daemon.setStandardErrorFile(QProcess::nullDevice()); // it may not raise its limits everywhere
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                        QStringLiteral("--print-address"),
                        QStringLiteral("--config-file=") + configuration.fileName()});
        if (!m_daemon.waitForReadyRead())
            qFatal("There is no dbus-daemon: %s", qUtf8Printable(m_daemon.errorString()));
        m_name = QStringLiteral("test-%1").arg(m_daemon.processId());
        if (!connection().isConnected())
            qFatal("The bus does not answer: %s", qUtf8Printable(connection().lastError().message()));
    }
    ~PrivateBus()
    {
        QDBusConnection::disconnectFromBus(m_name);
        end();
    }
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    QString address() const
    {
        return QStringLiteral("unix:path=") + m_folder.filePath(QStringLiteral("bus"));
    }

    /// The test's own, for the services it plays.
    QDBusConnection connection() const { return QDBusConnection::connectToBus(address(), m_name); }

    void end()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_name;
};

/// Takes connections and never answers; a congested one does not even take them.
class HangingBus
{
public:
    explicit HangingBus(bool congested = false)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un name = {};
        name.sun_family = AF_UNIX;
        std::strncpy(name.sun_path, QFile::encodeName(path()).constData(), sizeof(name.sun_path) - 1);
        if (::bind(m_socket, reinterpret_cast<const sockaddr *>(&name), sizeof(name)) != 0
            || ::listen(m_socket, congested ? 0 : 64) != 0)
            qFatal("The bus cannot be made.");
        if (congested) {
            m_first = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
            if (::connect(m_first, reinterpret_cast<const sockaddr *>(&name), sizeof(name)) != 0)
                qFatal("The bus cannot be filled.");
        }
    }
    ~HangingBus()
    {
        ::close(m_socket);
        if (m_first >= 0)
            ::close(m_first);
    }
    HangingBus(const HangingBus &) = delete;
    HangingBus &operator=(const HangingBus &) = delete;

    QString address() const { return QStringLiteral("unix:path=") + path(); }

private:
    QString path() const { return m_folder.filePath(QStringLiteral("bus")); }

    QTemporaryDir m_folder;
    int m_socket;
    int m_first = -1;
};
