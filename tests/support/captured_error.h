// What a piece of a test writes to standard error, write by write.

#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <cstdio>

#include <sys/socket.h>
#include <unistd.h>

/// Standard error leads here as long as this lives.
class CapturedError
{
public:
    CapturedError()
    {
        std::fflush(stderr);
        // Packets keep the writes apart.
        if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, m_sockets) != 0)
            std::abort();
        m_former = dup(STDERR_FILENO);
        dup2(m_sockets[0], STDERR_FILENO);
    }
    ~CapturedError()
    {
        restore();
        close(m_former);
        close(m_sockets[0]);
        close(m_sockets[1]);
    }
    CapturedError(const CapturedError &) = delete;
    CapturedError &operator=(const CapturedError &) = delete;

    /// One entry for each write so far; standard error is as before from here on.
    QByteArrayList finish()
    {
        restore();
        QByteArrayList writes;
        QByteArray buffer(1 << 17, '\0');
        ssize_t size = 0;
        while ((size = recv(m_sockets[1], buffer.data(), std::size_t(buffer.size()), MSG_DONTWAIT)) > 0)
            writes.append(buffer.first(size));
        return writes;
    }

private:
    void restore() { dup2(m_former, STDERR_FILENO); }

    int m_sockets[2] = {-1, -1};
    int m_former = -1;
};
