#include "control_server.h"

#include "control_connection.h"

#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <cerrno>
#include <cstring>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Whether a process answers on this socket.
bool hasListener(const QByteArray &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (std::size_t(path.size()) >= sizeof(address.sun_path))
        return false;
    std::memcpy(address.sun_path, path.constData(), std::size_t(path.size()));
    const int probe = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (probe < 0)
        return true; // cannot tell, so leave it alone
    const bool refused = ::connect(probe, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0
        && errno == ECONNREFUSED;
    ::close(probe);
    return !refused;
}

bool isOwnUser(const QLocalSocket &socket)
{
    ucred peer = {};
    socklen_t length = sizeof(peer);
    return ::getsockopt(int(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0
        && peer.uid == ::geteuid();
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
    , m_server(std::make_unique<QLocalServer>())
{
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &ControlServer::accept);
}

ControlServer::~ControlServer()
{
    m_server->close();
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
    const auto refuse = [&](const QString &sentence) {
        if (error)
            *error = sentence;
        return false;
    };

    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (::lstat(name.constData(), &status) == 0) {
        if (!S_ISSOCK(status.st_mode))
            return refuse(u"%1 is in the way of the control socket."_s.arg(path));
        if (hasListener(name))
            return refuse(u"Another process listens on %1."_s.arg(path));
        ::unlink(name.constData());
    }
    if (!m_server->listen(path))
        return refuse(u"The control socket %1 cannot be made: %2."_s.arg(path, m_server->errorString()));
    return true;
}

qsizetype ControlServer::clients() const
{
    return m_connections.size();
}

void ControlServer::accept()
{
    while (m_server->hasPendingConnections()) {
        std::unique_ptr<QLocalSocket> socket(m_server->nextPendingConnection());
        if (!isOwnUser(*socket))
            continue;
        if (m_connections.size() >= mostConnections) {
            refuseBusy(std::move(socket));
            continue;
        }
        m_connections.append(std::make_shared<ControlConnection>(this, std::move(socket)));
        m_connections.constLast()->begin();
    }
}

void ControlServer::refuseBusy(std::unique_ptr<QLocalSocket> socket)
{
    socket->write("{\"error\":\"busy\",\"id\":null,\"message\":\"The device has 64 clients already.\","
                  "\"ok\":false}\n");
    socket->flush();
    // Nothing more is said. The socket goes a little later: a client that is just writing its request would
    // find it broken and never read the answer.
    ::shutdown(int(socket->socketDescriptor()), SHUT_WR);
    QTimer::singleShot(1s, socket.get(), &QObject::deleteLater);
    socket->setParent(m_server.get());
    socket.release();
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
