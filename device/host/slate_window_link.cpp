#include "slate_window_link.h"

#include <QDeadlineTimer>
#include <QJsonDocument>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

constexpr int retryMs = 50;
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
    m_retry.setInterval(retryMs);
    connect(&m_retry, &QTimer::timeout, this, &DeviceLink::tryToConnect);
    for (QLocalSocket *socket : {&m_events, &m_commands})
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { read(socket); });
}

DeviceLink::~DeviceLink()
{
    // Sockets tell of their end while they are destroyed, when nobody is here to hear it.
    m_events.disconnect(this);
    m_commands.disconnect(this);
}

void DeviceLink::open(int limitMs)
{
    m_deadline = QDeadlineTimer(limitMs).deadline();
    m_retry.start();
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
            if (QDeadlineTimer::current().deadline() >= m_deadline)
                end();
            return;
        }
    }
    m_retry.stop();
    connect(&m_events, &QLocalSocket::disconnected, this, &DeviceLink::end);
    connect(&m_commands, &QLocalSocket::disconnected, this, &DeviceLink::end);
    m_events.write(lineOf(m_nextId++, u"follow"_s, {}));
    emit connected();
}

void DeviceLink::send(const QString &command, const QJsonObject &members)
{
    if (m_commands.state() != QLocalSocket::ConnectedState || m_unanswered >= mostUnanswered)
        return;
    ++m_unanswered;
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
        if (socket == &m_commands && object.contains("ok"_L1))
            --m_unanswered;
    }
    if (refresh)
        emit refreshed();
    if (change)
        emit changed();
}

void DeviceLink::end()
{
    if (m_ended)
        return;
    m_ended = true;
    m_retry.stop();
    emit gone();
}

} // namespace lindenreed::remote
