#include "control_connection.h"

#include "control_server.h"
#include "request_line.h"

#include <QJsonDocument>
#include <QLocalSocket>
#include <QRect>

#include <algorithm>

#include <sys/socket.h>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype readPiece = 16 * 1024;
constexpr qsizetype mostWaitingEvents = 100; ///< as many as the device's viewer holds pictures

/// Small, so that a reader that has fallen behind finds few refreshes of the past before the united one.
constexpr int listenerSendBuffer = 8 * 1024;

bool isRefresh(const QJsonObject &event)
{
    return event.value("event"_L1) == "refresh"_L1;
}

QRect rectangleOf(const QJsonObject &event)
{
    return {event.value("x"_L1).toInt(), event.value("y"_L1).toInt(), event.value("width"_L1).toInt(),
            event.value("height"_L1).toInt()};
}

int strengthOf(const QJsonObject &event)
{
    const QString mode = event.value("mode"_L1).toString();
    return mode == "full"_L1 ? 2 : mode == "partial"_L1 ? 1 : 0;
}

} // namespace

QJsonObject unitedRefresh(const QJsonObject &earlier, const QJsonObject &later)
{
    QJsonObject united = later;
    const QRect rectangle = rectangleOf(earlier).united(rectangleOf(later));
    united.insert("x"_L1, rectangle.x());
    united.insert("y"_L1, rectangle.y());
    united.insert("width"_L1, rectangle.width());
    united.insert("height"_L1, rectangle.height());
    if (strengthOf(earlier) > strengthOf(later))
        united.insert("mode"_L1, earlier.value("mode"_L1));
    united.insert("missed"_L1,
                  earlier.value("missed"_L1).toInteger() + later.value("missed"_L1).toInteger() + 1);
    return united;
}

ControlConnection::ControlConnection(ControlServer *server, std::unique_ptr<QLocalSocket> socket)
    : m_server(server)
    , m_socket(std::move(socket))
{
    // Bounds what a client can pile up while its request is under way; the rest waits in the client.
    m_socket->setReadBufferSize(longestRequestLine);
    m_turn.setSingleShot(true);
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &ControlConnection::takeLine);
    connect(m_socket.get(), &QLocalSocket::readyRead, this, &ControlConnection::takeLine);
    connect(m_socket.get(), &QLocalSocket::bytesWritten, this, &ControlConnection::flushed);
    connect(m_socket.get(), &QLocalSocket::disconnected, this, &ControlConnection::leave);
}

ControlConnection::~ControlConnection()
{
    if (m_socket)
        m_socket->disconnect(this);
}

void ControlConnection::begin()
{
    if (m_socket->state() != QLocalSocket::ConnectedState)
        leave();
    else
        m_turn.start();
}

void ControlConnection::takeLine()
{
    if (m_gone || m_waiting)
        return;
    const std::shared_ptr<ControlConnection> self = shared_from_this(); // the client may leave meanwhile
    if (const std::optional<QByteArray> line = nextLine())
        handle(*line);
    // Another line may be here already, or may follow when the answer is out.
    if (!m_gone && !m_waiting && (m_received.contains('\n') || m_socket->bytesAvailable() > 0))
        m_turn.start();
}

std::optional<QByteArray> ControlConnection::nextLine()
{
    qsizetype end = m_received.indexOf('\n');
    while (end < 0 && m_received.size() <= longestRequestLine) {
        const QByteArray piece = m_socket->read(readPiece);
        if (piece.isEmpty())
            break;
        const qsizetype before = m_received.size();
        m_received += piece;
        end = m_received.indexOf('\n', before);
    }

    const bool tooLong = m_skipping || (end < 0 ? m_received.size() : end) > longestRequestLine;
    if (end < 0) {
        if (tooLong) {
            m_skipping = true;
            m_received.clear();
        }
        return std::nullopt;
    }
    const QByteArray line = m_received.first(end);
    m_received.remove(0, end + 1);
    if (tooLong) {
        m_skipping = false;
        write({{u"id"_s, QJsonValue::Null},
               {u"ok"_s, false},
               {u"error"_s, u"too-long"_s},
               {u"message"_s, u"A request line is at most 64 KiB."_s}});
        return std::nullopt;
    }
    return line;
}

void ControlConnection::handle(const QByteArray &line)
{
    const RequestLine read = parseRequestLine(line);
    const auto refuse = [&](const QString &code, const QString &message) {
        write({{u"id"_s, read.id ? QJsonValue(*read.id) : QJsonValue()},
               {u"ok"_s, false},
               {u"error"_s, code},
               {u"message"_s, message}});
    };
    if (!read.error.isEmpty()) {
        refuse(read.error, read.message);
        return;
    }

    const bool isFollow = read.command == "follow"_L1;
    const auto command = m_server->m_commands.constFind(read.command);
    if (!isFollow && command == m_server->m_commands.constEnd()) {
        refuse(u"unknown-command"_s, u"There is no command \"%1\"."_s.arg(read.command.left(100)));
        return;
    }
    const QStringList members = isFollow ? QStringList() : command->first;
    for (auto member = read.request.begin(); member != read.request.end(); ++member) {
        const QString name = member.key();
        if (name != "id"_L1 && name != "do"_L1 && !members.contains(name)) {
            refuse(u"bad-argument"_s, u"\"%1\" has no member \"%2\"."_s.arg(read.command, name.left(100)));
            return;
        }
    }

    m_waiting = true;
    m_requestId = read.id;
    if (isFollow) {
        follow(*read.id);
        return;
    }
    const ControlServer::Handler handler = command->second; // the table may change while it runs
    handler(read.request, Reply(weak_from_this(), *read.id));
}

void ControlConnection::answer(qint64 id, const QJsonObject &members)
{
    if (m_gone || m_requestId != id)
        return;
    m_requestId.reset();
    QJsonObject object = members;
    object.insert("id"_L1, id);
    write(object);
}

void ControlConnection::write(const QJsonObject &object)
{
    m_waiting = true;
    m_socket->write(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
    m_socket->flush();
    flushed();
}

void ControlConnection::flushed()
{
    if (m_gone || m_socket->bytesToWrite() > 0)
        return;
    if (m_waiting && !m_requestId) {
        m_waiting = false;
        m_turn.start();
    }
    sendEvent();
}

void ControlConnection::follow(qint64 id)
{
    ::setsockopt(int(m_socket->socketDescriptor()), SOL_SOCKET, SO_SNDBUF, &listenerSendBuffer,
                 sizeof(listenerSendBuffer));
    answer(id, {{u"ok"_s, true}});
    m_following = true; // after the answer, so that no event comes before it
}

void ControlConnection::announce(const QJsonObject &event)
{
    if (!m_following || m_gone)
        return;

    if (isRefresh(event)) {
        QJsonObject refresh = event;
        if (!refresh.contains("missed"_L1))
            refresh.insert("missed"_L1, 0);
        const auto waiting = std::find_if(m_events.begin(), m_events.end(), isRefresh);
        if (waiting != m_events.end())
            *waiting = unitedRefresh(*waiting, refresh);
        else
            m_events.append(refresh);
    } else if (event.size() > 1 || !m_events.contains(event)) { // a bare name says no more the second time
        m_events.append(event);
        if (m_events.size() > mostWaitingEvents)
            m_events.removeAt(isRefresh(m_events.constFirst()) ? 1 : 0);
    }
    sendEvent();
}

void ControlConnection::sendEvent()
{
    while (!m_gone && !m_events.isEmpty() && m_socket->bytesToWrite() == 0) {
        const QJsonObject event = m_events.takeFirst();
        m_socket->write(QJsonDocument(event).toJson(QJsonDocument::Compact) + '\n');
        m_socket->flush();
    }
}

void ControlConnection::leave()
{
    if (m_gone)
        return;
    m_gone = true;
    m_turn.stop();
    m_socket->disconnect(this);
    m_socket.release()->deleteLater(); // it is in the middle of telling us
    m_server->remove(this);
}

} // namespace lindenreed::remote
