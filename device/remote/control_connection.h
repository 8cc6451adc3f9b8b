// One client of the control socket, as the server sees it.

#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

class QLocalSocket;

namespace lindenreed::remote {

class ControlServer;

inline constexpr qsizetype longestRequestLine = 64 * 1024;
inline constexpr qsizetype mostConnections = 64;

/// Two refreshes as one: bounding rectangle, strongest mode (full before partial before fast), the later
/// number, and "missed" counting what the reader does not get to see.
QJsonObject unitedRefresh(const QJsonObject &earlier, const QJsonObject &later);

/// Takes a client's lines one at a time and hands its answers and events to the system. The server owns it; a
/// Reply only looks. Its buffers are bounded, whatever the client sends or leaves unread.
class ControlConnection : public QObject, public std::enable_shared_from_this<ControlConnection>
{
    Q_OBJECT

public:
    /// Takes over the socket.
    ControlConnection(ControlServer *server, std::unique_ptr<QLocalSocket> socket);
    ~ControlConnection() override;

    void begin(); ///< looks at what the client has sent already
    void answer(qint64 id, const QJsonObject &members); ///< passed over unless `id` is the request under way
    void announce(const QJsonObject &event); ///< passed over unless the client follows
    bool isGone() const { return m_gone; }

private:
    void takeLine();
    std::optional<QByteArray> nextLine();
    void handle(const QByteArray &line);
    void write(const QJsonObject &object);
    void flushed();
    void sendEvent();
    void follow(qint64 id);
    void leave();

    ControlServer *m_server;
    std::unique_ptr<QLocalSocket> m_socket;
    QTimer m_turn; ///< one line a turn of the event loop: a client that sends many cannot hold up the device
    QByteArray m_received; ///< at most one line and one read more
    bool m_skipping = false; ///< in the rest of a line that is too long
    bool m_waiting = false; ///< a request is with its handler, or its answer not yet with the system
    std::optional<qint64> m_requestId; ///< of the request that is with its handler
    bool m_following = false;
    QList<QJsonObject> m_events; ///< not yet written, oldest first, at most one refresh
    bool m_gone = false;
};

} // namespace lindenreed::remote
