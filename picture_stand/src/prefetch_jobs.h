// Pictures loaded ahead of the show: the order of a job, and how jobs share the decoders.

#pragma once

#include <QStringList>

#include <deque>
#include <memory>
#include <mutex>
#include <optional>

namespace lindenreed::picture_stand {

class PictureCache;

/// How many pictures a machine of so many bytes decodes ahead at once: no more than it has processors, nor
/// than a quarter of the memory holds where each has the 128 MiB that setUpMemory() allows; at least one.
int prefetchDecoders(long long totalMemory, int processors);

/// Loads `images` from position `index` outwards, forward first, until the cache's budget is met; then gives
/// up pictures from the far end. `index` must be a position of the list, unless that is empty. One thread at
/// a time.
class PrefetchJob
{
public:
    PrefetchJob(const QStringList &images, int index);

    /// Loads the next picture. False once the job has ended.
    bool goOn(PictureCache &cache);

private:
    const QString &path(qsizetype rank) const;

    QStringList m_images;
    qsizetype m_index;
    qsizetype m_head = 0; ///< rank by nearness of the next picture to load
    qsizetype m_tail; ///< of the next one to give up
};

/// The jobs that are under way. They run side by side, however many there are, a picture of each in turn; one
/// that waits for its turn takes no thread. Shared by those threads, of which any may be the last.
class PrefetchJobs
{
public:
    /// `atOnce`: how many pictures are decoded at once. The application's pool may have as many threads more
    /// from now on.
    PrefetchJobs(std::shared_ptr<PictureCache> cache, int atOnce);

    /// Adds the job, and works on all of them until none is left; where as many threads do so as pictures are
    /// decoded at once, leaves that to them. On a thread of the application's pool.
    void run(PrefetchJob job);
    /// Nobody will ask for a picture any more. Any thread.
    void abandon();

private:
    bool isToWork(PrefetchJob job);
    std::optional<PrefetchJob> next();
    void goesOn(PrefetchJob job);

    const std::shared_ptr<PictureCache> m_cache;
    const int m_atOnce;
    std::mutex m_mutex; ///< for all below
    std::deque<PrefetchJob> m_waiting;
    int m_threads = 0;
    bool m_abandoned = false;
};

} // namespace lindenreed::picture_stand
