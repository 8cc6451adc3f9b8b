#include "cover_cache.h"

#include <QMutexLocker>

#include <array>
#include <cstdio>
#include <limits>

namespace lindenreed::picture_stand {

QString coverKey(const QString &path, int width, int height)
{
    // The cut may take the size away, or a part of a letter: that is how the entries are named.
    std::array<char, 63> key = {};
    std::snprintf(key.data(), key.size(), "%s_%dx%d", path.toUtf8().constData(), width, height);
    return QString::fromUtf8(key.data());
}

QString leastRecentlyUsed(const QMap<QString, unsigned int> &ticks)
{
    auto oldest = ticks.cbegin();
    unsigned int lowest = std::numeric_limits<unsigned int>::max();
    for (auto entry = ticks.cbegin(); entry != ticks.cend(); ++entry) {
        if (entry.value() < lowest) {
            lowest = entry.value();
            oldest = entry;
        }
    }
    return oldest.key();
}

CoverCache &CoverCache::instance()
{
    static CoverCache cache;
    return cache;
}

std::optional<QImage> CoverCache::find(const QString &key) const
{
    const QMutexLocker lock(&cover_mutex);
    const auto entry = cover_cache.constFind(key);
    if (entry == cover_cache.constEnd())
        return std::nullopt;
    return *entry;
}

void CoverCache::touch(const QString &key)
{
    const QMutexLocker lock(&cover_mutex);
    touchLocked(key);
}

void CoverCache::insert(const QString &key, const QImage &picture, bool isAway)
{
    const QMutexLocker lock(&cover_mutex);
    touchLocked(key);
    cover_cache.insert(key, picture);
    if (isAway)
        m_away.insert(key);
    else
        m_away.remove(key);
}

bool CoverCache::isAway(const QString &key) const
{
    const QMutexLocker lock(&cover_mutex);
    return m_away.contains(key);
}

void CoverCache::touchLocked(const QString &key)
{
    ++cover_tick;
    const auto known = cover_ticks.find(key);
    if (known != cover_ticks.end()) {
        *known = cover_tick;
        return;
    }
    if (cover_ticks.size() >= capacity) {
        const QString oldest = leastRecentlyUsed(cover_ticks);
        cover_cache.remove(oldest);
        cover_ticks.remove(oldest);
        m_away.remove(oldest);
    }
    cover_ticks.insert(key, cover_tick);
}

} // namespace lindenreed::picture_stand
