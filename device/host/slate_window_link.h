// The window's side of the control socket.

#pragma once

#include <QHash>
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

    /// Tries until the device listens; connected() tells, or timedOut() once after `limitMs`. After gone() it
    /// tries again by itself.
    void open(int limitMs);

    bool isConnected() const { return m_isConnected; }

    /// Dropped while the device has too many unanswered ones: it hangs, and old gestures would only surprise.
    void send(const QString &command, const QJsonObject &members = {});

signals:
    void connected();
    void refreshed(); ///< the panel shows something else
    void changed(); ///< light or orientation may be others now
    void stateTold(const QJsonObject &state); ///< the answer to "state"
    void refused(const QString &command, const QString &error, const QString &message);
    void gone(); ///< has ended, or was lost
    void timedOut(); ///< has never come

private:
    void tryToConnect();
    void read(QLocalSocket *socket);
    void takeAnswer(const QJsonObject &answer);
    void lose();

    QString m_path;
    QLocalSocket m_events;
    QLocalSocket m_commands; ///< apart, so that events do not wait behind the answer to a long gesture
    QTimer m_retry;
    QTimer m_limit;
    qint64 m_nextId = 1;
    QHash<qint64, QString> m_unanswered; ///< id to command
    bool m_isConnected = false;
};

} // namespace lindenreed::remote
