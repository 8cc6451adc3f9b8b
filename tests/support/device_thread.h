// A control server on a thread of its own, as in a device, so that a blocking client can be tested.

#pragma once

#include "control_server.h"

#include <QThread>

#include <functional>
#include <memory>

/// Starts a server and its event loop; the end of the object ends both.
class DeviceThread
{
public:
    using Setup = std::function<void(lindenreed::remote::ControlServer &)>;

    DeviceThread(const QString &path, const Setup &setup)
    {
        m_anchor.moveToThread(&m_thread);
        m_thread.start();
        run([&] {
            m_server = std::make_unique<lindenreed::remote::ControlServer>();
            setup(*m_server);
            m_listens = m_server->listen(path, &m_error);
        });
    }
    ~DeviceThread() { stop(); }
    DeviceThread(const DeviceThread &) = delete;
    DeviceThread &operator=(const DeviceThread &) = delete;

    bool listens() const { return m_listens; }

    /// Runs on the device's thread and waits for the end.
    void run(const std::function<void()> &work)
    {
        QMetaObject::invokeMethod(&m_anchor, work, Qt::BlockingQueuedConnection);
    }

    void announce(const QJsonObject &event)
    {
        run([&] { m_server->announce(event); });
    }

    void stop()
    {
        if (!m_thread.isRunning())
            return;
        run([this] { m_server.reset(); });
        m_thread.quit();
        m_thread.wait();
    }

private:
    QThread m_thread;
    QObject m_anchor; ///< what runs on the thread runs in its name
    std::unique_ptr<lindenreed::remote::ControlServer> m_server;
    QString m_error;
    bool m_listens = false;
};
