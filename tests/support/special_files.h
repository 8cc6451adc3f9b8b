// What is no regular file under a picture's name, and whether anybody opens it. To be included by one source
// of a program, as file_calls.h.

#pragma once

#include "file_calls.h"

#include <QByteArrayList>
#include <QDir>
#include <QFile>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace special_files {

inline const QByteArrayList kinds{"a FIFO",   "a socket",           "a folder",
                                  "a device", "a link to a device", "a link to an empty device"};

inline bool makeSocket(const QByteArray &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool done = ::bind(handle, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
    ::close(handle);
    return done;
}

/// Makes one of the kinds; its path, which a device has of its own, or none where it cannot be made.
inline QString make(const QByteArray &kind, const QString &path)
{
    const QString device = QStringLiteral("/dev/zero"); // reading it would never end
    const QByteArray name = QFile::encodeName(path);
    if (kind == "a device")
        return device;
    const bool made = kind == "a FIFO"
        ? ::mkfifo(name.constData(), 0600) == 0 // opening it would wait for ever
        : kind == "a socket"           ? makeSocket(name)
        : kind == "a folder"           ? QDir().mkdir(path)
        : kind == "a link to a device" ? QFile::link(device, path)
                                       : QFile::link(QStringLiteral("/dev/null"), path);
    return made ? path : QString();
}

} // namespace special_files

/// Counts how often a file is opened, on whatever thread. As FileCalls, it must outlive what is opened
/// meanwhile.
class OpenCount
{
public:
    explicit OpenCount(const QString &path)
        : m_calls(QFile::encodeName(path), [this](FileCall &call) {
            if (call.kind == FileCall::Open)
                ++m_count;
        })
    {
    }

    int get() const { return m_count; }

private:
    std::atomic<int> m_count = 0;
    FileCalls m_calls;
};
