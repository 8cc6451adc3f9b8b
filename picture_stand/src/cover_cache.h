// Finished thumbnails in memory.

#pragma once

#include <QImage>
#include <QMap>
#include <QMutex>
#include <QSet>
#include <QString>

#include <optional>

namespace lindenreed::picture_stand {

/// The name of a thumbnail in the cache: path and box, cut after 62 bytes of UTF-8. Long paths that agree so
/// far share one thumbnail, of whatever size came first.
QString coverKey(const QString &path, int width, int height);

/// The key with the lowest tick, of several the first in key order; `ticks` must not be empty.
QString leastRecentlyUsed(const QMap<QString, unsigned int> &ticks);

/**
 * The 50 thumbnails that were used last.
 *
 * A null picture stands for a file that cannot be shown; it is not tried again while it is here, but where
 * there was no file. Any thread.
 */
class CoverCache
{
public:
    static constexpr qsizetype capacity = 50;

    /// The one of this process, which all requests share.
    static CoverCache &instance();

    /// Nothing where the key is not here. Is no use of the entry: touch() says so.
    std::optional<QImage> find(const QString &key) const;
    /// Notes a use; a new key takes the place of the least recently used one where the cache is full.
    void touch(const QString &key);
    /// Uses the key and keeps `picture` under it, in place of what is there. `isAway`: it is null because
    /// there was no file.
    void insert(const QString &key, const QImage &picture, bool isAway = false);
    /// True for what came in as away.
    bool isAway(const QString &key) const;

private:
    void touchLocked(const QString &key);

    mutable QMutex cover_mutex; ///< guards what follows
    QMap<QString, QImage> cover_cache;
    QMap<QString, unsigned int> cover_ticks; ///< of the last use
    unsigned int cover_tick = 0; ///< uses so far; wraps
    QSet<QString> m_away; ///< keys of pictures without a file
};

} // namespace lindenreed::picture_stand
