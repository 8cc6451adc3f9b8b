#include "scan_memory.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>
#include <QThread>

#include <algorithm>
#include <type_traits>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

bool isMainThread()
{
    const QCoreApplication *const application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

} // namespace

qint64 mostScanMemory(qint64 bytes)
{
    // 120 megapixels at six bytes each; three quarters are for the picture of the show, which does not wait,
    // and for all else.
    constexpr qint64 most = 720'000'000;
    return bytes > 0 ? std::min(bytes / 4, most) : most;
}

qint64 machineMemory(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    constexpr qint64 enough = 4096; // it is among the first lines
    const QByteArray name = "MemTotal:";
    for (const QByteArray &line : file.read(enough).split('\n')) {
        if (line.startsWith(name)) {
            constexpr qint64 most = 1LL << 40; // no machine has as many, and the product fits
            const QByteArray number = line.sliced(name.size()).simplified().split(' ').constFirst();
            return std::clamp<qint64>(number.toLongLong(), 0, most) * 1024;
        }
    }
    return 0;
}

ScanMemory &ScanMemory::ofMachine()
{
    // Readers may be at work to the very end.
    static_assert(std::is_trivially_destructible_v<ScanMemory>);
    static ScanMemory memory(mostScanMemory(machineMemory()));
    return memory;
}

bool ScanMemory::take(qint64 bytes)
{
    if (bytes > m_most)
        return false;
    if (isMainThread()) {
        m_used += bytes;
        return true;
    }
    qint64 used = m_used;
    while (used + bytes > m_most || !m_used.compare_exchange_weak(used, used + bytes)) {
        if (used + bytes > m_most)
            m_used.wait(used);
        used = m_used;
    }
    return true;
}

void ScanMemory::giveBack(qint64 bytes)
{
    m_used -= bytes;
    m_used.notify_all();
}

} // namespace lindenreed::device
