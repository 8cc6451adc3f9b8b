// The service manager that has started the program, where there is one.

#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

namespace lindenreed::device {

/// Tells systemd, by the datagrams of sd_notify(3), that the device is ready, and from then on, from the main
/// loop, that it goes on: one that hangs is started anew where the unit has WatchdogSec. Does nothing where
/// NOTIFY_SOCKET is not set, and loses what cannot be sent. Main thread.
class ServiceManager : public QObject
{
    Q_OBJECT

public:
    explicit ServiceManager(QObject *parent = nullptr);

    void tellReady();

private:
    void tell(QByteArrayView state) const;

    QByteArray m_socket; ///< a path, or a name behind "@"
    QTimer m_alive;
};

} // namespace lindenreed::device
