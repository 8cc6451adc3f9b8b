#include "control_server.h"

#include "control_connection.h"
#include "listening_socket.h"

#include <QLocalSocket>

#include <sys/socket.h>
#include <unistd.h>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

bool isOwnUser(int socket)
{
    ucred peer = {};
    socklen_t length = sizeof(peer);
    return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 && peer.uid == ::geteuid();
}

} // namespace

Reply::Reply(std::weak_ptr<ControlConnection> connection, qint64 id)
    : m_connection(std::move(connection))
    , m_id(id)
{
}

void Reply::operator()(const QJsonObject &results) const
{
    if (const std::shared_ptr<ControlConnection> connection = m_connection.lock()) {
        QJsonObject members = results;
        members.insert("ok"_L1, true);
        connection->answer(m_id, members);
    }
}

void Reply::fail(const QString &code, const QString &message) const
{
    if (const std::shared_ptr<ControlConnection> connection = m_connection.lock())
        connection->answer(m_id, {{u"ok"_s, false}, {u"error"_s, code}, {u"message"_s, message}});
}

bool Reply::clientGone() const
{
    const std::shared_ptr<ControlConnection> connection = m_connection.lock();
    return !connection || connection->isGone();
}

ControlServer::ControlServer(QObject *parent)
    : QObject(parent)
    , m_listening(std::make_unique<ListeningSocket>([this](int socket) { accept(socket); }))
{
    m_hangUp.setSingleShot(true);
    m_hangUp.setInterval(1s);
    m_hangUp.callOnTimeout([this] { hangUp(0); });
}

ControlServer::~ControlServer()
{
    m_listening.reset();
    hangUp(0);
}

void ControlServer::add(const QString &command, const QStringList &members, Handler handler)
{
    m_commands.insert(command, {members, std::move(handler)});
}

void ControlServer::announce(const QJsonObject &event)
{
    // A copy: a client that turns out to have left changes the list.
    const QList<std::shared_ptr<ControlConnection>> connections = m_connections;
    for (const std::shared_ptr<ControlConnection> &connection : connections)
        connection->announce(event);
}

bool ControlServer::listen(const QString &path, QString *error)
{
    return m_listening->listen(path, error);
}

qsizetype ControlServer::clients() const
{
    return m_connections.size();
}

void ControlServer::accept(int socket)
{
    if (!isOwnUser(socket)) {
        ::close(socket);
        return;
    }
    if (m_connections.size() >= mostConnections) {
        refuseBusy(socket);
        return;
    }
    auto connection = std::make_unique<QLocalSocket>();
    if (!connection->setSocketDescriptor(socket)) {
        ::close(socket);
        return;
    }
    m_connections.append(std::make_shared<ControlConnection>(this, std::move(connection)));
    m_connections.constLast()->begin();
}

void ControlServer::refuseBusy(int socket)
{
    constexpr char line[] = "{\"error\":\"busy\",\"id\":null,"
                            "\"message\":\"The device has 64 clients already.\",\"ok\":false}\n";
    ::send(socket, line, sizeof(line) - 1, MSG_NOSIGNAL);
    // Nothing more is said. The socket goes a little later: a client that is just writing its request would
    // find it broken and never read the answer.
    ::shutdown(socket, SHUT_WR);
    m_refused.append(socket);
    constexpr qsizetype mostRefused = 8; // of many that come at once the first have had the time
    hangUp(mostRefused);
    m_hangUp.start();
}

void ControlServer::hangUp(qsizetype left)
{
    while (m_refused.size() > left)
        ::close(m_refused.takeFirst());
}

void ControlServer::remove(ControlConnection *connection)
{
    for (qsizetype i = 0; i < m_connections.size(); ++i) {
        if (m_connections.at(i).get() != connection)
            continue;
        // Its own functions are still on the stack.
        m_leaving.append(m_connections.takeAt(i));
        QMetaObject::invokeMethod(
            this, [this] { m_leaving.clear(); }, Qt::QueuedConnection);
        return;
    }
}

} // namespace lindenreed::remote
