// Pictures in memory, loaded ahead of the show within a budget.

#pragma once

#include "published.h"

#include <QImage>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <optional>
#include <semaphore>
#include <utility>

namespace lindenreed::picture_stand {

/// "MemTotal:" of a file like /proc/meminfo, in bytes; 0 where the file has no such line, nothing where it
/// cannot be opened. Lines are read in pieces of 63 characters, and the last piece that begins with the name
/// counts.
std::optional<long long> readTotalMemory(const char *path);

/// How many pictures a machine of so many bytes decodes ahead at once: no more than it has processors, nor
/// than a quarter of the memory holds where each has the 128 MiB that setUpMemory() allows; at least one.
int prefetchDecoders(long long totalMemory, int processors);

/**
 * Pictures by path, as the panel wants them but neither toned nor dithered.
 *
 * The budget is a soft one: only prefetch() removes pictures, picture() and addToCache() never do. A null
 * picture stands for a file that cannot be shown, and is tried again only where there was no file, on a card
 * that was out say, and there is one now. Shared by its provider and the jobs that the provider started,
 * which may outlive it. Any thread.
 */
class PictureCache
{
public:
    /// How a file becomes a picture; runs on the caller's thread or a job's, also on several at once.
    using Read = std::function<QImage(const QString &path)>;

    /// The budget is in bytes; more than 2^31 - 1 counts as 2^31 - 1. `decoders`: how many pictures
    /// prefetch() decodes at once.
    PictureCache(long long limit, Read read, int decoders = 1);

    /// The picture, decoded unless it is here. One for which there were no handles does not come in.
    QImage picture(const QString &path) { return added(path).first; }
    /// The same; true if this call put it in.
    bool addToCache(const QString &path) { return added(path).second; }
    /// True if the picture was here.
    bool removeFromCache(const QString &path);

    /// What is here, else null. Takes no lock.
    QImage find(const QString &path) const;
    bool contains(const QString &path) const;
    qsizetype count() const;
    int limit() const { return ram_limit; }
    int used() const { return ram_used; }

    /// Loads `images` from position `index` outwards, forward first, until the budget is met; then gives up
    /// pictures from the far end. `index` must be a position of the list. Ends early once the owner has gone.
    /// Jobs may overlap, as many as one likes: the decoders are for all of them together.
    void prefetch(const QStringList &images, int index);
    /// Nobody will ask for a picture any more.
    void abandon() { m_abandoned = true; }

private:
    std::pair<QImage, bool> added(const QString &path);
    std::optional<QImage> kept(const QString &path) const;
    void loadAhead(const QString &path);
    bool isOverBudget() const { return m_bytes > ram_limit; }

    const Read m_read;
    const int ram_limit;
    std::atomic<int> ram_used = 0; ///< m_bytes as far as it goes into 31 bits
    QMap<QString, QImage> cache; ///< behind the mutex
    QSet<QString> m_away; ///< of its null pictures those without a file; behind the mutex
    Published<QMap<QString, QImage>> m_published; ///< the same, for lookups

    // A used figure that stops at 2^31 - 1 would never be above a limit of 2^31 - 1: the comparison needs the
    // sum.
    std::atomic<long long> m_bytes = 0;
    std::atomic<bool> m_abandoned = false;
    std::counting_semaphore<> m_decoders; ///< free for jobs
};

} // namespace lindenreed::picture_stand
