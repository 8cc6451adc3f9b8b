#include "slate_window_link.h"

#include <QJsonDocument>

#include <utility>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

constexpr int retryMs = 50;
constexpr int retryAfterLossMs = 1000; ///< it may take days
constexpr int mostUnanswered = 32;

QByteArray lineOf(qint64 id, const QString &command, QJsonObject members)
{
    members.insert("id"_L1, id);
    members.insert("do"_L1, command);
    return QJsonDocument(members).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace

DeviceLink::DeviceLink(const QString &runFolder, QObject *parent)
    : QObject(parent)
    , m_path(runFolder + u"/control"_s)
{
    m_limit.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &DeviceLink::tryToConnect);
    connect(&m_limit, &QTimer::timeout, this, &DeviceLink::timedOut);
    for (QLocalSocket *socket : {&m_events, &m_commands}) {
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QLocalSocket::disconnected, this, &DeviceLink::lose);
    }
}

DeviceLink::~DeviceLink()
{
    // Sockets tell of their end while they are destroyed, when nobody is here to hear it.
    m_events.disconnect(this);
    m_commands.disconnect(this);
}

void DeviceLink::open(int limitMs)
{
    m_limit.start(limitMs);
    m_retry.start(retryMs);
    tryToConnect();
}

void DeviceLink::tryToConnect()
{
    // Connecting to a local socket is done or refused at once.
    for (QLocalSocket *socket : {&m_events, &m_commands}) {
        if (socket->state() == QLocalSocket::ConnectedState)
            continue;
        socket->connectToServer(m_path);
        if (socket->state() != QLocalSocket::ConnectedState) {
            socket->abort();
            return;
        }
    }
    m_retry.stop();
    m_limit.stop();
    m_isConnected = true;
    m_events.write(lineOf(m_nextId++, u"follow"_s, {}));
    emit connected();
}

void DeviceLink::send(const QString &command, const QJsonObject &members)
{
    if (m_commands.state() != QLocalSocket::ConnectedState || m_unanswered.size() >= mostUnanswered)
        return;
    m_unanswered.insert(m_nextId, command);
    m_commands.write(lineOf(m_nextId++, command, members));
}

void DeviceLink::read(QLocalSocket *socket)
{
    bool refresh = false;
    bool change = false;
    while (socket->canReadLine()) {
        const QJsonObject object = QJsonDocument::fromJson(socket->readLine()).object();
        const QString event = object.value("event"_L1).toString();
        refresh |= event == "refresh"_L1;
        change |= event == "changed"_L1;
        if (socket == &m_commands)
            takeAnswer(object);
        else if (event.isEmpty()) // what was drawn before the device answered "follow" was not announced
            refresh = true;
    }
    if (refresh)
        emit refreshed();
    if (change)
        emit changed();
}

void DeviceLink::takeAnswer(const QJsonObject &answer)
{
    const QString command = m_unanswered.take(answer.value("id"_L1).toInteger());
    if (!answer.value("ok"_L1).toBool())
        emit refused(command, answer.value("error"_L1).toString(), answer.value("message"_L1).toString());
    else if (command == "state"_L1)
        emit stateTold(answer);
}

void DeviceLink::lose()
{
    if (!std::exchange(m_isConnected, false))
        return;
    // The other half of the connection is of no use; the next device gets new ones.
    m_events.abort();
    m_commands.abort();
    m_unanswered.clear();
    m_retry.start(retryAfterLossMs);
    emit gone();
}

} // namespace lindenreed::remote
