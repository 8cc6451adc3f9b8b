// What the process writes to standard error while an object of this lives.

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

/// Takes file descriptor 2 over, for C, C++ and direct writes alike; its end puts the old one back. One at a
/// time. Writes of up to 128 KiB are kept, each by itself and in their order. Any thread may write meanwhile.
class StderrCapture
{
public:
    StderrCapture()
    {
        std::fflush(stderr);
        // Packets keep the writes apart.
        if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, m_sockets) != 0)
            std::abort();
        m_former = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
        ::dup2(m_sockets[0], STDERR_FILENO);
        m_reader = std::thread([this] { readUntilTheEnd(); });
    }
    ~StderrCapture()
    {
        finish();
        ::shutdown(m_sockets[0], SHUT_WR);
        m_reader.join();
        ::close(m_former);
        ::close(m_sockets[0]);
        ::close(m_sockets[1]);
    }
    StderrCapture(const StderrCapture &) = delete;
    StderrCapture &operator=(const StderrCapture &) = delete;

    /// One entry for each write since the beginning or the last forget(); standard error is as before from
    /// here on.
    QByteArrayList finish()
    {
        std::fflush(stderr);
        ::dup2(m_former, STDERR_FILENO);
        return writes();
    }

    /// The same as one text; capturing goes on.
    QByteArray text() const
    {
        std::fflush(stderr);
        return writes().join();
    }

    void forget()
    {
        std::fflush(stderr);
        const std::lock_guard lock(m_mutex);
        takeWaiting();
        m_writes.clear();
    }

    /// The device log's lines of one source, as "LEVEL FUNCTION: MESSAGE"; each must name a line from 1 on.
    QStringList logLines(const QString &source) const
    {
        const QRegularExpression form(
            QStringLiteral("^(\\d+ )%1:[1-9]\\d* (.*)$").arg(QRegularExpression::escape(source)));
        QStringList lines;
        const QStringList all = QString::fromUtf8(text()).split(u'\n');
        for (const QString &line : all) {
            const QRegularExpressionMatch match = form.match(line);
            if (match.hasMatch())
                lines.append(match.captured(1) + match.captured(2));
        }
        return lines;
    }

private:
    QByteArrayList writes() const
    {
        const std::lock_guard lock(m_mutex);
        takeWaiting();
        return m_writes;
    }

    /// Whoever asks takes what has been written by then; the mutex is held.
    void takeWaiting() const
    {
        ssize_t size = 0;
        while ((size = ::recv(m_sockets[1], m_packet.data(), std::size_t(m_packet.size()), MSG_DONTWAIT)) > 0)
            m_writes.append(m_packet.first(size));
    }

    /// A full socket would stop the writers, so somebody always reads.
    void readUntilTheEnd()
    {
        char first = 0;
        while (::recv(m_sockets[1], &first, 1, MSG_PEEK) > 0) {
            const std::lock_guard lock(m_mutex);
            takeWaiting();
        }
    }

    int m_sockets[2] = {-1, -1};
    int m_former = -1;
    mutable std::mutex m_mutex; ///< guards the two below
    mutable QByteArrayList m_writes;
    mutable QByteArray m_packet = QByteArray(1 << 17, '\0');
    std::thread m_reader;
};
