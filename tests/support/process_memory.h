// How much memory a process has, and how far this one has grown.

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// A line of the process's status, as "VmRSS", in KiB; -1 where there is none. This process by default.
inline qint64 processMemory(const QByteArray &name, qint64 process = 0)
{
    QFile file(process == 0 ? QStringLiteral("/proc/self/status")
                            : QStringLiteral("/proc/%1/status").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.simplified().split(' ').at(1).toLongLong();
    }
    return -1;
}

/// All that this process has mapped, used or not, in KiB: as itself sees it, which under an emulator is not
/// what the system tells of the process.
inline qint64 mappedMemory()
{
    QFile file(QStringLiteral("/proc/self/maps"));
    quint64 bytes = 0;
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : file.readAll().split('\n')) {
            const QList<QByteArray> ends = line.left(line.indexOf(' ')).split('-'); // "begin-end rw-p ..."
            if (ends.size() == 2)
                bytes += ends.at(1).toULongLong(nullptr, 16) - ends.at(0).toULongLong(nullptr, 16);
        }
    }
    return qint64(bytes / 1024);
}

/// Watches this process's memory from its construction on.
class GrowthWatch
{
public:
    GrowthWatch()
    {
        // Makes the memory of now the highest so far. Where the system does not let one, what was before
        // counts too.
        QFile file(QStringLiteral("/proc/self/clear_refs"));
        if (file.open(QIODevice::WriteOnly))
            file.write("5");
        m_before = processMemory("VmRSS");
        m_reservedBefore = mappedMemory();
    }
    qint64 grown() const { return processMemory("VmHWM") - m_before; } ///< at most, in KiB
    qint64 reserved() const { return mappedMemory() - m_reservedBefore; } ///< now, used or not, in KiB
    static qint64 resident() { return processMemory("VmRSS"); } ///< now, in KiB

private:
    qint64 m_before = 0;
    qint64 m_reservedBefore = 0;
};
