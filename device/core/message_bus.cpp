#include "message_bus.h"

#include "socket_address.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <cerrno>
#include <optional>
#include <utility>

#include <unistd.h>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

constexpr int patienceMs = 1000;

/// Other kinds of addresses would start programs, and the call would wait for them.
QString plainAddress(const QString &address)
{
    return address.startsWith(u"unix:"_s) ? address : QString();
}

/// Whether the bus has so many connections waiting that the next one would have to wait as well.
bool isCongested(const QString &address)
{
    const QByteArray path
        = QByteArray::fromPercentEncoding(address.section(u"path="_s, 1).section(u',', 0, 0).toUtf8());
    const std::optional<sockaddr_un> name = socketAddress(path);
    if (path.isEmpty() || !name)
        return false;
    const int probe = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (probe < 0)
        return true;
    const bool waits
        = ::connect(probe, reinterpret_cast<const sockaddr *>(&*name), sizeof(*name)) != 0 && errno == EAGAIN;
    ::close(probe);
    return waits;
}

} // namespace

QString MessageBus::sessionAddress()
{
    return plainAddress(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
}

QString MessageBus::systemAddress()
{
    return plainAddress(
        qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS", u"unix:path=/run/dbus/system_bus_socket"_s));
}

MessageBus::MessageBus(const QString &address)
{
    const auto fail = [this](const QString &reason) {
        QMetaObject::invokeMethod(
            this, [this, reason] { close(reason); }, Qt::QueuedConnection);
    };
    if (isCongested(address)) {
        fail(u"it takes no connections"_s);
        return;
    }
    static int number = 0;
    m_name = u"slate-%1"_s.arg(++number);
    // Connecting to a bus the usual way waits for its greeting. A peer's connection does not, so that the
    // greeting can be a call like any other.
    QDBusConnection connection = QDBusConnection::connectToPeer(address, m_name);
    if (!connection.isConnected()) {
        fail(connection.lastError().message());
        return;
    }
    connection.connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                       u"Disconnected"_s, this, SLOT(noteDisconnection()));
    const QDBusMessage greeting = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"Hello"_s);
    call(greeting, [this](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage)
            close(reply.errorMessage());
    });
}

MessageBus::~MessageBus()
{
    QDBusConnection::disconnectFromPeer(m_name);
}

void MessageBus::call(const QDBusMessage &message, const Answer &answer)
{
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection(m_name).asyncCall(message, patienceMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answer] {
        watcher->deleteLater();
        if (!m_abandoned)
            answer(watcher->reply());
    });
}

void MessageBus::send(const QDBusMessage &message)
{
    QDBusConnection(m_name).send(message);
}

void MessageBus::abandon()
{
    m_abandoned = true;
}

void MessageBus::noteDisconnection()
{
    close(u"the bus has gone"_s);
}

void MessageBus::close(const QString &reason)
{
    if (!std::exchange(m_closed, true) && !m_abandoned)
        emit closed(reason);
}

} // namespace lindenreed::device
