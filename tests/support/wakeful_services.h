// What keeps a machine awake: the two services that lend inhibitors, played by the test on a bus of its own.

#pragma once

#include "private_bus.h"

#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QHash>
#include <QObject>
#include <QStringList>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

/// The desktop session's service.
class ScreenSaver : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    explicit ScreenSaver(const PrivateBus &bus)
        : m_watcher(QString(), bus.connection(), QDBusServiceWatcher::WatchForUnregistration)
    {
        QDBusConnection connection = bus.connection();
        connection.registerObject(QStringLiteral("/org/freedesktop/ScreenSaver"), this,
                                  QDBusConnection::ExportAllSlots);
        connection.registerService(QStringLiteral("org.freedesktop.ScreenSaver"));
        connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString &client) {
            held.removeIf([&client](auto entry) { return entry.value() == client; });
        });
    }

    int asked = 0;
    int givenBack = 0;
    bool refuses = false;
    QHash<uint, QString> held; ///< cookie, client
    QStringList words;

public slots:
    uint Inhibit(const QString &application, const QString &reason)
    {
        ++asked;
        words = {application, reason};
        if (refuses) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("not now"));
            return 0;
        }
        const QString client = message().service();
        m_watcher.addWatchedService(client);
        // It may have left before it was watched.
        if (connection().interface()->isServiceRegistered(client))
            held.insert(++m_lastCookie, client);
        return m_lastCookie;
    }
    void UnInhibit(uint cookie) { givenBack += int(held.remove(cookie)); }

private:
    QDBusServiceWatcher m_watcher;
    uint m_lastCookie = 41;
};

/// The system's service, which lends a descriptor.
class Logind : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    explicit Logind(const PrivateBus &bus)
    {
        QDBusConnection connection = bus.connection();
        connection.registerObject(QStringLiteral("/org/freedesktop/login1"), this,
                                  QDBusConnection::ExportAllSlots);
        connection.registerService(QStringLiteral("org.freedesktop.login1"));
    }
    ~Logind() override
    {
        if (m_end >= 0)
            ::close(m_end);
    }

    bool isLent() const
    {
        pollfd end = {m_end, POLLIN, 0};
        return m_end >= 0 && ::poll(&end, 1, 0) == 0; // closed by the borrower: hung up
    }
    QStringList words;

public slots:
    QDBusUnixFileDescriptor Inhibit(const QString &what, const QString &who, const QString &why,
                                    const QString &mode)
    {
        words = {what, who, why, mode};
        int ends[2] = {-1, -1};
        if (::pipe2(ends, O_CLOEXEC) != 0)
            return {};
        if (m_end >= 0)
            ::close(m_end);
        m_end = ends[0];
        QDBusUnixFileDescriptor lent(ends[1]);
        ::close(ends[1]);
        return lent;
    }

private:
    int m_end = -1;
};

inline void useSessionBus(const QString &address)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
}

inline void useSystemBus(const QString &address)
{
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.toUtf8());
}

inline void useNoBus()
{
    useSessionBus(QString());
    useSystemBus(QStringLiteral("unix:path=/nowhere/bus"));
}
