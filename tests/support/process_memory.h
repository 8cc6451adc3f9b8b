// How far the process has grown.

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// Watches the process's memory from its construction on.
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
        m_before = memory("VmRSS");
        m_reservedBefore = memory("VmSize");
    }
    qint64 grown() const { return memory("VmHWM") - m_before; } ///< at most, in KiB
    qint64 reserved() const { return memory("VmSize") - m_reservedBefore; } ///< now, used or not, in KiB
    static qint64 resident() { return memory("VmRSS"); } ///< now, in KiB

private:
    static qint64 memory(const QByteArray &name)
    {
        QFile file(QStringLiteral("/proc/self/status"));
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith(name + ':'))
                return line.simplified().split(' ').at(1).toLongLong();
        }
        return -1;
    }

    qint64 m_before = 0;
    qint64 m_reservedBefore = 0;
};
