// Pictures for the show, as the panel can show them.

#pragma once

#include "picture_cache.h"
#include "prefetch_jobs.h"

#include <QFutureWatcher>
#include <QQuickImageProvider>

#include <memory>

namespace lindenreed::picture_stand {

/**
 * Turns a picture file into what the show's image item draws.
 *
 * A file is decoded once and kept. Each request works on a copy: scaled to the box, then toned and, on a grey
 * panel, dithered, so that the kept form is never treated twice. Constructed on the main thread; requests may
 * come from any.
 */
class ResourceImageProvider : public QQuickImageProvider
{
public:
    ResourceImageProvider();
    ~ResourceImageProvider() override;

    /// `id` is the absolute path as it is, which is also the cache's key. Null for an empty id, then `size`
    /// is not written; null and 0 x 0 for what cannot be shown.
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

    /// Starts loading `images` from position `index` outwards and returns at once. Main thread.
    void loadToCache(QList<QString> images, int index);

    const std::shared_ptr<PictureCache> &cache() const { return m_cache; }

    /// The device's memory in bytes, as such a file tells it, and a line of the log; 0 and no line where it
    /// cannot be opened.
    static long long getTotalRam(const char *path = "/proc/meminfo");

private:
    void readPictureParams();

    // Factors of the tone adjustment; 1.0 changes nothing. Read once.
    double brightness = 1.0;
    double contrast = 1.0;
    double gamma = 1.0;
    // Also held by the threads of the jobs, which nobody waits for.
    std::shared_ptr<PictureCache> m_cache;
    std::shared_ptr<PrefetchJobs> m_jobs;
    QFutureWatcher<void> watcher; ///< of the latest job
};

} // namespace lindenreed::picture_stand
