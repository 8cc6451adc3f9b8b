// Asking services of the desktop and of the system, without ever waiting for them.

#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <functional>

namespace lindenreed::device {

/// A connection of its own to one message bus. Main thread; answers need its event loop.
///
/// Neither opening nor calling waits for the bus: one that never answers costs a second of patience, and
/// nobody stands still meanwhile. What the bus keeps for this connection, as inhibitors, goes with it.
class MessageBus : public QObject
{
    Q_OBJECT

public:
    static QString sessionAddress(); ///< from the environment; empty where there is none
    static QString systemAddress();

    /// Opens the bus at `address`. Where that fails, closed() comes from the event loop.
    explicit MessageBus(const QString &address);
    /// What was sent before still goes out.
    ~MessageBus() override;

    using Answer = std::function<void(const QDBusMessage &reply)>;

    /// Calls a method. `answer` gets the reply, or the error, within about a second; never after this
    /// object's end.
    void call(const QDBusMessage &message, const Answer &answer);
    void send(const QDBusMessage &message); ///< for calls whose answer does not matter

    void abandon(); ///< no answer and no closed() from here on

signals:
    /// The bus is not there, does not answer or has gone. Comes at most once; calls are errors from then on.
    void closed(const QString &reason);

private slots:
    void noteDisconnection();

private:
    void close(const QString &reason);

    QString m_name; ///< of the connection, in this process
    bool m_closed = false;
    bool m_abandoned = false;
};

} // namespace lindenreed::device
