// How much memory JPEG files of several scans may take, all together.

#pragma once

#include <QString>
#include <QtGlobal>

#include <condition_variable>
#include <mutex>

namespace lindenreed::device {

/// Of a machine of so many bytes: a third, at most 720 MB; 0: not known how many.
qint64 mostScanMemory(qint64 bytes);

/// The machine's memory in bytes, as a file like /proc/meminfo tells it; what the kernel knows where it does
/// not.
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

    /// False for more than there is in all. Else waits until so much is free: the main thread, on whose
    /// picture the show hangs, before all others; of these whoever fits goes first. A thread has it once at a
    /// time.
    bool take(qint64 bytes);
    void giveBack(qint64 bytes);
    qint64 used() const;

private:
    const qint64 m_most;
    mutable std::mutex m_mutex; ///< of what follows
    std::condition_variable m_changed;
    qint64 m_used = 0;
    bool m_firstWaits = false; ///< the main thread does
};

} // namespace lindenreed::device
