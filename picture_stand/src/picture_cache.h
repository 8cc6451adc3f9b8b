// Pictures in memory, within a budget.

#pragma once

#include "published.h"

#include <QImage>
#include <QMap>
#include <QSet>
#include <QString>

#include <atomic>
#include <functional>
#include <optional>
#include <utility>

namespace lindenreed::picture_stand {

/// "MemTotal:" of a file like /proc/meminfo, in bytes; 0 where the file has no such line, nothing where it
/// cannot be opened. Lines are read in pieces of 63 characters, and the last piece that begins with the name
/// counts.
std::optional<long long> readTotalMemory(const char *path);

/**
 * Pictures by path, as the panel wants them but neither toned nor dithered.
 *
 * The budget is a soft one: only removeFromCache() removes pictures, picture() and addToCache() never do. A
 * null picture stands for a file that cannot be shown, and is tried again only where there was no file, on a
 * card that was out say, and there is one now. Shared by its provider and the jobs that the provider started,
 * which may outlive it. Any thread.
 */
class PictureCache
{
public:
    /// How a file becomes a picture; runs on the caller's thread or a job's, also on several at once.
    /// Nothing where the file was not there, or went meanwhile.
    using Read = std::function<std::optional<QImage>(const QString &path)>;

    /// The budget is in bytes; more than 2^31 - 1 counts as 2^31 - 1.
    PictureCache(long long limit, Read read);

    /// The picture, decoded unless it is here. One for which there were no handles does not come in.
    QImage picture(const QString &path) { return added(path).first; }
    /// The same; true if this call put it in.
    bool addToCache(const QString &path) { return added(path).second; }
    /// True if the picture was here.
    bool removeFromCache(const QString &path);

    /// What is here, else null. Takes no lock.
    QImage find(const QString &path) const;
    qsizetype count() const;
    int limit() const { return ram_limit; }
    int used() const { return ram_used; }
    /// Exact, where limit() and used() end at 2^31 - 1.
    bool isOverBudget() const { return m_bytes > ram_limit; }

private:
    std::pair<QImage, bool> added(const QString &path);
    std::optional<QImage> kept(const QString &path) const;

    const Read m_read;
    const int ram_limit;
    std::atomic<int> ram_used = 0; ///< m_bytes as far as it goes into 31 bits
    QMap<QString, QImage> cache; ///< behind the mutex
    QSet<QString> m_away; ///< of its null pictures those without a file; behind the mutex
    Published<QMap<QString, QImage>> m_published; ///< the same, for lookups

    // A used figure that stops at 2^31 - 1 would never be above a limit of 2^31 - 1: the comparison needs the
    // sum.
    std::atomic<long long> m_bytes = 0;
};

} // namespace lindenreed::picture_stand
