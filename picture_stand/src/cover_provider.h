// Thumbnails for the explorer and the playlists.

#pragma once

#include <QObject>
#include <QQuickAsyncImageProvider>
#include <QSet>
#include <QStringList>
#include <QThreadPool>

#include <memory>
#include <mutex>

namespace lindenreed::picture_stand {

/**
 * Makes thumbnails on a few threads of its own.
 *
 * Must outlive the engine whose requests it answers. Its end drops the jobs that are queued, waits for those
 * that are running, and deletes the responses that are left, for which nobody waits any more. Constructed on
 * the main thread; requests may come from any.
 */
class CoverProvider : public QQuickAsyncImageProvider
{
public:
    CoverProvider() = default;
    ~CoverProvider() override;

    /// Reads the sizes of the theme and begins to make thumbnails of what Storage lists. Once, main thread.
    void setup();

    /// `id` is the path as it is. The engine owns what it gets; what it leaves goes with this.
    QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requestedSize) override;

    /// Begins to make thumbnails of these files behind all requests, in the theme's size. Paths are taken as
    /// they are: bare names mean files of the working directory.
    void prefetchCovers(const QStringList &paths);

private:
    /// The responses that were handed out and still live.
    struct HandedOut
    {
        std::mutex mutex;
        QSet<QObject *> responses;
    };

    int cover_width = 165;
    int cover_height = 290;
    QThreadPool pool;
    std::shared_ptr<HandedOut> m_handedOut = std::make_shared<HandedOut>(); ///< also held by each of them
};

} // namespace lindenreed::picture_stand
