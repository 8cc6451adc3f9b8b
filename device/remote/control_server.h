// The device's control socket: JSON lines in, JSON lines out.

#pragma once

#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>

namespace lindenreed::remote {

class ControlConnection;
class ListeningSocket;

/// How a command answers. Copyable; call exactly one of the two, exactly once, now or later, on the server's
/// thread. Harmless after the client, or the server, has left.
class Reply
{
public:
    Reply(std::weak_ptr<ControlConnection> connection, qint64 id);

    void operator()(const QJsonObject &results = {}) const; ///< {"id", "ok": true, results}
    void fail(const QString &code, const QString &message) const; ///< {"id", "ok": false, "error", "message"}
    bool clientGone() const; ///< nobody waits for this answer any more

private:
    std::weak_ptr<ControlConnection> m_connection;
    qint64 m_id;
};

/// Lines in, lines out. Knows no command but "follow", which turns a connection into a listener. Lives on one
/// thread, which runs an event loop.
///
/// One request per connection at a time; the next line is read after the answer has been handed to the
/// system. At most 64 connections, request lines of at most 64 KiB, and clients of this user alone. Where
/// there is no handle for a client, it waits until there is one.
class ControlServer : public QObject
{
    Q_OBJECT

public:
    /// `request` is the whole object, "id" and "do" among it. A handler must not delete the server.
    using Handler = std::function<void(const QJsonObject &request, Reply reply)>;

    explicit ControlServer(QObject *parent = nullptr);
    ~ControlServer() override;

    /// `members`: names that a request of this command may have beside "id" and "do"; any other is
    /// "bad-argument".
    void add(const QString &command, const QStringList &members, Handler handler);

    /// To every connection that follows. An event {"event": "refresh", ...} that a slow listener has not
    /// taken yet is united with the next one: bounding rectangle, strongest mode, "missed" counts what was
    /// united.
    void announce(const QJsonObject &event);

    /// Removes a socket that no process listens on. False with one sentence in `error`.
    bool listen(const QString &path, QString *error);

    qsizetype clients() const;

private:
    void accept(int socket);
    void refuseBusy(int socket);
    void hangUp(qsizetype left);
    void remove(ControlConnection *connection);

    std::unique_ptr<ListeningSocket> m_listening;
    QList<int> m_refused; ///< sockets of clients that have been told so, oldest first
    QTimer m_hangUp;
    QHash<QString, std::pair<QStringList, Handler>> m_commands;
    QList<std::shared_ptr<ControlConnection>> m_connections;
    QList<std::shared_ptr<ControlConnection>>
        m_leaving; ///< until the end of the present turn of the event loop
    friend class ControlConnection;
};

} // namespace lindenreed::remote
