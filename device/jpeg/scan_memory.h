// How much memory JPEG files of several scans may take, all together.

#pragma once

#include <QString>
#include <QtGlobal>

#include <atomic>

namespace lindenreed::device {

/// Of a machine of so many bytes: a quarter, at most 720 MB; 0: not known how many.
qint64 mostScanMemory(qint64 bytes);

/// The machine's memory in bytes, as a file like /proc/meminfo tells it; 0 where it does not.
qint64 machineMemory(const QString &path = QStringLiteral("/proc/meminfo"));

/// Memory that several readers share. Any thread.
class ScanMemory
{
public:
    explicit ScanMemory(qint64 most)
        : m_most(most)
    {
    }
    static ScanMemory &ofMachine();

    /// False for more than there is in all. Else waits until so much is free; the main thread, on whose
    /// picture the show hangs, takes it at once, beside what the others have.
    bool take(qint64 bytes);
    void giveBack(qint64 bytes);
    qint64 used() const { return m_used; }

private:
    const qint64 m_most;
    std::atomic<qint64> m_used = 0;
};

} // namespace lindenreed::device
