// Mounts that a test's process has for itself.

#pragma once

#include <QByteArray>
#include <QFile>

#include <cerrno>
#include <cstring>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

/// From here on mounts are this process's alone. Who may not mount gets the right in a user namespace, which
/// only a process of one thread can enter: first of all in main(). Returns why it failed, or nothing.
inline QByteArray enterOwnMounts()
{
    QByteArray failure;
    const auto write = [&failure](const char *path, const QByteArray &text) {
        QFile file(QString::fromLatin1(path));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(text) != text.size())
            failure = QByteArray(path) + ": " + std::strerror(errno);
    };
    const QByteArray user = QByteArray::number(::getuid());
    const QByteArray group = QByteArray::number(::getgid());
    if (::unshare(CLONE_NEWNS) != 0) {
        if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return std::strerror(errno);
        write("/proc/self/setgroups", "deny");
        write("/proc/self/uid_map", user + ' ' + user + " 1");
        write("/proc/self/gid_map", group + ' ' + group + " 1");
    }
    ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
    return failure;
}
