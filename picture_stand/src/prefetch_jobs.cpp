#include "prefetch_jobs.h"

#include "memory_setup.h"
#include "picture_cache.h"

#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <exception>
#include <utility>

namespace lindenreed::picture_stand {

int prefetchDecoders(long long totalMemory, int processors)
{
    constexpr long long eachInFour = 4LL * 128 * 1024 * 1024;
    return static_cast<int>(std::clamp<long long>(totalMemory / eachInFour, 1, std::max(processors, 1)));
}

// One picture is left to the request: it is on its way already.
PrefetchJob::PrefetchJob(const QStringList &images, int index)
    : m_images(images)
    , m_index(index)
    , m_tail(std::max<qsizetype>(images.size() - 1, 0))
{
}

/// By nearness to the index, which comes first; of two equally near the one ahead.
const QString &PrefetchJob::path(qsizetype rank) const
{
    const qsizetype distance = (rank + 1) / 2;
    const qsizetype position = m_index + (rank % 2 == 1 ? distance : m_images.size() - distance);
    return m_images.at(position % m_images.size());
}

bool PrefetchJob::goOn(PictureCache &cache)
{
    if (m_head >= m_tail)
        return false;
    cache.addToCache(path(m_head));
    while (cache.isOverBudget()) {
        if (m_tail == m_head || m_tail == 0)
            return false;
        cache.removeFromCache(path(m_tail));
        --m_tail;
    }
    ++m_head;
    return m_head < m_tail;
}

PrefetchJobs::PrefetchJobs(std::shared_ptr<PictureCache> cache, int atOnce)
    : m_cache(std::move(cache))
    , m_atOnce(atOnce)
{
    // Qt converts large pictures on the same pool, those of the main thread as well, which waits for it: what
    // it has for that stays beside those that load.
    QThreadPool::globalInstance()->setMaxThreadCount(QThread::idealThreadCount() + atOnce);
}

void PrefetchJobs::run(PrefetchJob job)
{
    if (!isToWork(std::move(job)))
        return;
    while (std::optional<PrefetchJob> turn = next()) {
        bool more = false;
        try {
            more = turn->goOn(*m_cache);
        } catch (const std::exception &) {
            more = false; // it ends, and the others go on
        }
        if (more)
            goesOn(*std::move(turn));
        else
            // What decoders, screens and lists of thousands of pictures left behind: once for each picture of
            // a show, when there is time.
            giveFreeMemoryBack();
    }
}

void PrefetchJobs::abandon()
{
    const std::lock_guard lock(m_mutex);
    m_abandoned = true;
}

/// False where there are threads enough for it.
bool PrefetchJobs::isToWork(PrefetchJob job)
{
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(std::move(job));
    if (m_threads == m_atOnce)
        return false;
    ++m_threads;
    return true;
}

/// Nothing where this thread is no longer needed.
std::optional<PrefetchJob> PrefetchJobs::next()
{
    const std::lock_guard lock(m_mutex);
    if (m_waiting.empty() || m_abandoned) {
        --m_threads;
        return std::nullopt;
    }
    PrefetchJob job = std::move(m_waiting.front());
    m_waiting.pop_front();
    return job;
}

void PrefetchJobs::goesOn(PrefetchJob job)
{
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back(std::move(job));
}

} // namespace lindenreed::picture_stand
