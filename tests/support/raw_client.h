// A client of the control socket that reads only when told to, and sends whatever bytes it is given.

#pragma once

#include <QByteArray>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// Lives on the thread of the server under test, whose event loop runs while something is awaited.
class RawClient
{
public:
    explicit RawClient(const QString &path)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const QByteArray name = QFile::encodeName(path);
        std::strncpy(address.sun_path, name.constData(), sizeof(address.sun_path) - 1);
        m_connected = ::connect(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0;
    }
    ~RawClient() { leave(); }
    RawClient(RawClient &&other) noexcept
        : m_socket(std::exchange(other.m_socket, -1))
        , m_connected(other.m_connected)
        , m_ended(other.m_ended)
        , m_received(std::move(other.m_received))
    {
    }
    RawClient &operator=(RawClient &&) = delete;
    RawClient(const RawClient &) = delete;
    RawClient &operator=(const RawClient &) = delete;

    bool isConnected() const { return m_connected; }

    void leave()
    {
        if (m_socket >= 0)
            ::close(std::exchange(m_socket, -1));
    }

    /// True when all bytes went out.
    bool send(const QByteArray &bytes)
    {
        qsizetype sent = 0;
        return QTest::qWaitFor([&] {
            while (sent < bytes.size()) {
                const ssize_t count = ::send(m_socket, bytes.constData() + sent,
                                             std::size_t(bytes.size() - sent), MSG_DONTWAIT | MSG_NOSIGNAL);
                if (count < 0)
                    return false;
                sent += count;
            }
            return true;
        });
    }
    bool send(const QJsonObject &object)
    {
        return send(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
    }

    /// The next line as an object; empty when none comes.
    QJsonObject next(int limitMs = 5000)
    {
        if (!QTest::qWaitFor([this] { return receive().contains('\n'); }, limitMs))
            return {};
        const qsizetype end = m_received.indexOf('\n');
        const QByteArray line = m_received.first(end);
        m_received.remove(0, end + 1);
        return QJsonDocument::fromJson(line).object();
    }

    QJsonObject ask(const QByteArray &line) { return send(line + '\n') ? next() : QJsonObject(); }

    /// Whether the server closes the connection.
    bool isClosedByServer()
    {
        return QTest::qWaitFor([this] {
            receive();
            return m_ended;
        });
    }

    /// What has come and was not taken yet.
    const QByteArray &receive()
    {
        char buffer[16 * 1024];
        while (m_socket >= 0 && !m_ended) {
            const ssize_t count = ::recv(m_socket, buffer, sizeof(buffer), MSG_DONTWAIT);
            if (count > 0)
                m_received.append(buffer, count);
            else if (count == 0 || (errno != EAGAIN && errno != EINTR))
                m_ended = true;
            else
                break;
        }
        return m_received;
    }

private:
    int m_socket;
    bool m_connected = false;
    bool m_ended = false;
    QByteArray m_received;
};
