#include "control_client.h"

#include "panel_file.h"

#include <QJsonDocument>
#include <QLocalSocket>

#include <algorithm>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

constexpr int connectLimitMs = 5000;

QJsonObject madeHere(const QString &code, const QString &message)
{
    return {{u"ok"_s, false}, {u"error"_s, code}, {u"message"_s, message}};
}

} // namespace

ControlClient::ControlClient()
    : m_socket(std::make_unique<QLocalSocket>())
{
}

ControlClient::ControlClient(ControlClient &&) noexcept = default;
ControlClient &ControlClient::operator=(ControlClient &&) noexcept = default;
ControlClient::~ControlClient() = default;

std::optional<ControlClient> ControlClient::connectTo(const QString &runFolder, QString *error)
{
    ControlClient client;
    client.m_runFolder = runFolder;
    client.m_socket->connectToServer(runFolder + u"/control"_s);
    if (!client.m_socket->waitForConnected(connectLimitMs)) {
        if (error)
            *error = u"No device answers at %1/control."_s.arg(runFolder);
        return std::nullopt;
    }
    return client;
}

std::optional<QJsonObject> ControlClient::readObject(const QDeadlineTimer &deadline, QString *error)
{
    qsizetype searched = 0;
    while (true) {
        const qsizetype end = m_buffer.indexOf('\n', searched);
        if (end >= 0) {
            const QJsonDocument document = QJsonDocument::fromJson(m_buffer.first(end));
            m_buffer.remove(0, end + 1);
            searched = 0;
            if (document.isObject())
                return document.object();
            continue; // nothing that a device of this protocol says
        }
        searched = m_buffer.size();
        if (m_socket->bytesAvailable() == 0) {
            const bool connected = m_socket->state() == QLocalSocket::ConnectedState;
            const int milliseconds = int(std::min<qint64>(deadline.remainingTime(), 1000 * 60 * 60));
            if (!connected
                || (!m_socket->waitForReadyRead(milliseconds) && m_socket->bytesAvailable() == 0
                    && m_socket->state() != QLocalSocket::ConnectedState)) {
                *error = u"no-device"_s;
                return std::nullopt;
            }
            if (m_socket->bytesAvailable() == 0 && deadline.hasExpired()) {
                *error = u"no-answer"_s;
                return std::nullopt;
            }
        }
        m_buffer += m_socket->readAll();
    }
}

QJsonObject ControlClient::ask(const QString &command, const QJsonObject &members,
                               std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline(limit);
    const qint64 id = m_nextId++;
    QJsonObject request = members;
    request.insert("id"_L1, id);
    request.insert("do"_L1, command);
    // A device without room has said so by now and hung up: what it said would be lost with a failed write.
    if (m_socket->bytesAvailable() > 0 || m_socket->waitForReadyRead(0))
        m_buffer += m_socket->readAll();
    if (m_socket->state() == QLocalSocket::ConnectedState)
        m_socket->write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
    m_socket->flush();

    QString error;
    while (const std::optional<QJsonObject> object = readObject(deadline, &error)) {
        if (object->contains("event"_L1) && !object->contains("id"_L1)) {
            m_events.append(*object);
            continue;
        }
        // No id: the device could not read the request, or has no room for this client.
        const QJsonValue answered = object->value("id"_L1);
        if (answered.isNull() || answered.toInteger() == id)
            return *object;
        // Else it answers a request that was given up.
    }
    if (error == "no-device"_L1)
        return madeHere(error, u"The device at %1 is gone."_s.arg(m_runFolder));
    return madeHere(error,
                    u"The device did not answer \"%1\" within %2 ms."_s.arg(command).arg(limit.count()));
}

QJsonObject ControlClient::nextEvent(std::chrono::milliseconds limit)
{
    if (!m_events.isEmpty())
        return m_events.takeFirst();
    const QDeadlineTimer deadline(limit);
    QString error;
    while (const std::optional<QJsonObject> object = readObject(deadline, &error)) {
        if (object->contains("event"_L1))
            return *object;
    }
    return {};
}

bool ControlClient::isConnected() const
{
    return m_socket->state() == QLocalSocket::ConnectedState;
}

QImage ControlClient::screenshot(QString *error) const
{
    const std::optional<PanelSnapshot> panel = readPanel(m_runFolder + u"/panel"_s, error);
    return panel ? panel->upright() : QImage();
}

} // namespace lindenreed::remote
