// The window's side of the control socket.

#pragma once

#include <QJsonObject>
#include <QLocalSocket>
#include <QObject>
#include <QTimer>

namespace lindenreed::remote {

/// Hears what happens on a device and tells it what the user does. Never blocks: a gesture may take seconds.
class DeviceLink : public QObject
{
    Q_OBJECT

public:
    explicit DeviceLink(const QString &runFolder, QObject *parent = nullptr);
    ~DeviceLink() override;

    /// Tries until the device listens, for at most `limitMs`; then connected() or gone().
    void open(int limitMs);

    /// Dropped while the device has too many unanswered ones: it hangs, and old gestures would only surprise.
    void send(const QString &command, const QJsonObject &members = {});

signals:
    void connected();
    void refreshed(); ///< the panel shows something else
    void changed(); ///< light or orientation may be others now
    void gone(); ///< once; never came, or has ended

private:
    void tryToConnect();
    void read(QLocalSocket *socket);
    void end();

    QString m_path;
    QLocalSocket m_events;
    QLocalSocket m_commands; ///< apart, so that events do not wait behind the answer to a long gesture
    QTimer m_retry;
    qint64 m_deadline = 0; ///< milliseconds of a monotonic clock
    qint64 m_nextId = 1;
    int m_unanswered = 0;
    bool m_ended = false;
};

} // namespace lindenreed::remote
