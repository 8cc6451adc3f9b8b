// The service manager's end of sd_notify(3).

#pragma once

#include <QByteArray>
#include <QList>

#include <cstddef>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// Hears what is told. Its name is a path of at most 107 bytes, or is not in the file system where it begins
/// with "@".
class NotifySocket
{
public:
    explicit NotifySocket(const QByteArray &name)
        : m_socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, name.constData(), std::size_t(name.size()));
        if (name.startsWith('@'))
            address.sun_path[0] = '\0';
        const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + std::size_t(name.size()));
        m_bound = ::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), length) == 0;
    }
    ~NotifySocket() { ::close(m_socket); }
    NotifySocket(const NotifySocket &) = delete;
    NotifySocket &operator=(const NotifySocket &) = delete;

    bool bound() const { return m_bound; }

    /// All that has come so far.
    const QList<QByteArray> &told()
    {
        char text[100];
        for (ssize_t length = 0; (length = ::recv(m_socket, text, sizeof text, 0)) > 0;)
            m_told.append(QByteArray(text, length));
        return m_told;
    }

private:
    int m_socket;
    bool m_bound = false;
    QList<QByteArray> m_told;
};
