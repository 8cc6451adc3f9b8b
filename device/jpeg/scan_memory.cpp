#include "scan_memory.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <algorithm>

#include <sys/sysinfo.h>

namespace lindenreed::device {

namespace {

bool isMainThread()
{
    const QCoreApplication *const application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

} // namespace

qint64 mostScanMemory(qint64 bytes)
{
    // 120 megapixels at six bytes each. With 256 MiB, 24 megapixels of a camera have to fit.
    constexpr qint64 most = 720'000'000;
    return bytes > 0 ? std::min(bytes / 3, most) : most;
}

qint64 machineMemory(const QString &path)
{
    QFile file(path);
    constexpr qint64 enough = 4096; // it is among the first lines
    const QByteArray name = "MemTotal:";
    const QByteArray contents = file.open(QIODevice::ReadOnly) ? file.read(enough) : QByteArray();
    for (const QByteArray &line : contents.split('\n')) {
        if (!line.startsWith(name))
            continue;
        constexpr qint64 most = 1LL << 40; // no machine has as many, and the product fits
        const QByteArray number = line.sliced(name.size()).simplified().split(' ').constFirst();
        if (const qint64 kibibytes = number.toLongLong(); kibibytes > 0)
            return std::min(kibibytes, most) * 1024;
    }
    // It takes no handle, of which none may be left.
    struct sysinfo information = {};
    ::sysinfo(&information);
    return qint64(information.totalram) * information.mem_unit;
}

ScanMemory &ScanMemory::ofMachine()
{
    // Never destroyed: readers may be at work to the very end.
    static ScanMemory *const memory = new ScanMemory(mostScanMemory(machineMemory()));
    return *memory;
}

bool ScanMemory::take(qint64 bytes)
{
    if (bytes > m_most)
        return false;
    const bool isFirst = isMainThread();
    std::unique_lock lock(m_mutex);
    m_firstWaits |= isFirst;
    m_changed.wait(lock, [&] { return m_used + bytes <= m_most && (isFirst || !m_firstWaits); });
    m_used += bytes;
    if (isFirst) {
        m_firstWaits = false;
        m_changed.notify_all();
    }
    return true;
}

void ScanMemory::giveBack(qint64 bytes)
{
    const std::lock_guard lock(m_mutex);
    m_used -= bytes;
    m_changed.notify_all();
}

qint64 ScanMemory::used() const
{
    const std::lock_guard lock(m_mutex);
    return m_used;
}

} // namespace lindenreed::device
