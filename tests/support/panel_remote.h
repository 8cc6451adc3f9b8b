// Asking the device that runs in this very process, through its control socket. Needs Qt6::Network.

#pragma once

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QRect>
#include <QTest>

/// "ok", or the code of the error.
inline QString code(const QJsonObject &answer)
{
    return answer.value(QStringLiteral("ok")).toBool() ? QStringLiteral("ok")
                                                       : answer.value(QStringLiteral("error")).toString();
}

/// Of a node of the tree, in screen pixels.
inline QRect rectangleOf(const QJsonObject &node)
{
    const QJsonObject rectangle = node.value(QStringLiteral("rectangle")).toObject();
    return QRect(rectangle.value(QStringLiteral("x")).toInt(), rectangle.value(QStringLiteral("y")).toInt(),
                 rectangle.value(QStringLiteral("width")).toInt(),
                 rectangle.value(QStringLiteral("height")).toInt());
}

/// A client that keeps the event loop running while it waits, so that the device can answer.
class PanelRemote
{
public:
    explicit PanelRemote(const QString &path = QStringLiteral("/devroot/run/control"))
    {
        m_socket.connectToServer(path);
        if (!m_socket.waitForConnected(5000))
            qFatal("%s", qUtf8Printable(m_socket.errorString()));
    }

    /// Sends a request and waits for its answer; an empty object when none came within `limit` ms.
    QJsonObject ask(const QString &command, const QJsonObject &members = {}, int limit = 10'000)
    {
        send(command, members);
        return nextLine(limit);
    }

    void send(const QString &command, const QJsonObject &members = {})
    {
        QJsonObject request = members;
        request.insert(QStringLiteral("id"), ++m_lastId);
        request.insert(QStringLiteral("do"), command);
        m_socket.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
        m_socket.flush();
    }

    /// The next answer or event; an empty object when none came within `limit` ms.
    QJsonObject nextLine(int limit = 10'000)
    {
        QElapsedTimer waited;
        waited.start();
        while (!m_socket.canReadLine() && waited.elapsed() < limit)
            QTest::qWait(1);
        return m_socket.canReadLine() ? QJsonDocument::fromJson(m_socket.readLine()).object() : QJsonObject();
    }

    bool isConnected() const { return m_socket.state() == QLocalSocket::ConnectedState; }
    void leave() { m_socket.abort(); }

private:
    QLocalSocket m_socket;
    int m_lastId = 0;
};
