#include "picture_cache.h"

#include "regular_file.h"
#include "visible_path.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <mutex>
#include <utility>

namespace lindenreed::picture_stand {

namespace {

// One for the process: constant-initialised, so that jobs may use it to the very end.
std::mutex cacheMutex;

int saturated(long long bytes)
{
    return static_cast<int>(std::clamp<long long>(bytes, 0, std::numeric_limits<int>::max()));
}

} // namespace

std::optional<long long> readTotalMemory(const char *path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path, "r"), &std::fclose);
    if (!file)
        return std::nullopt;

    constexpr char name[] = "MemTotal:";
    constexpr std::size_t nameLength = sizeof name - 1;
    unsigned long long kibibytes = 0;
    std::array<char, 64> line = {};
    while (std::fgets(line.data(), line.size(), file.get())) {
        if (std::strncmp(line.data(), name, nameLength) == 0)
            kibibytes = static_cast<unsigned long long>(std::strtol(line.data() + nameLength, nullptr, 10));
    }
    return static_cast<long long>(kibibytes << 10);
}

PictureCache::PictureCache(long long limit, Read read)
    : m_read(std::move(read))
    , ram_limit(saturated(limit))
{
}

/// Nothing where it is to be decoded.
std::optional<QImage> PictureCache::kept(const QString &path) const
{
    {
        const std::lock_guard lock(cacheMutex);
        const auto entry = cache.constFind(path);
        if (entry == cache.constEnd())
            return std::nullopt;
        if (!m_away.contains(path))
            return *entry;
    }
    return isRegularFile(path) ? std::nullopt : std::optional(QImage());
}

/// The picture, and whether this call put it in.
std::pair<QImage, bool> PictureCache::added(const QString &path)
{
    if (const std::optional<QImage> picture = kept(path))
        return {*picture, false};

    // Decoding is the slow part and takes no lock. Another thread may be decoding the same file; the first
    // one wins.
    const std::optional<QImage> read = m_read(path);
    const bool isAway = !read;
    const QImage picture = read.value_or(QImage());
    if (picture.isNull() && !isAway && lacksHandles())
        return {QImage(), false}; // it is tried again

    const std::lock_guard lock(cacheMutex);
    if (const auto entry = cache.constFind(path);
        entry != cache.constEnd() && (isAway || !m_away.contains(path)))
        return {*entry, false};
    if (isAway)
        m_away.insert(path);
    else
        m_away.remove(path);
    m_bytes += picture.sizeInBytes();
    ram_used = saturated(m_bytes);
    std::fprintf(stderr, "add image %s size(%lld) ram(%lld/%lld) \r\n", visiblePath(path).constData(),
                 static_cast<long long>(picture.sizeInBytes()), static_cast<long long>(ram_used),
                 static_cast<long long>(ram_limit));
    cache.insert(path, picture);
    m_published.replace(cache); // shares the entries; the next change copies the map, not the pixels
    return {picture, true};
}

bool PictureCache::removeFromCache(const QString &path)
{
    const std::lock_guard lock(cacheMutex);
    const auto entry = cache.constFind(path);
    if (entry == cache.constEnd())
        return false;
    const long long size = entry->sizeInBytes();
    m_bytes -= size;
    ram_used = saturated(m_bytes);
    std::fprintf(stderr, "remove image %s size(%lld) ram(%lld/%lld) \r\n", visiblePath(path).constData(),
                 size, static_cast<long long>(ram_used), static_cast<long long>(ram_limit));
    cache.erase(entry);
    m_away.remove(path);
    m_published.replace(cache);
    return true;
}

QImage PictureCache::find(const QString &path) const
{
    return m_published.read([&path](const auto &pictures) { return pictures.value(path); });
}

qsizetype PictureCache::count() const
{
    return m_published.read([](const auto &pictures) { return pictures.size(); });
}

} // namespace lindenreed::picture_stand
