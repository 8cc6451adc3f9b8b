// One thumbnail on its way.

#pragma once

#include <QImage>
#include <QQuickImageResponse>
#include <QRunnable>
#include <QSize>
#include <QString>

#include <atomic>
#include <mutex>

namespace lindenreed::picture_stand {

/**
 * Makes one thumbnail on a thread of a pool, or takes it from the cache.
 *
 * What somebody waits for outlives its run, with the result. finished() comes once, from the pool's
 * thread, also where there is no picture. May be deleted as soon as finished() was emitted; the destructor
 * waits for the last statement of the run.
 */
class AsyncImageResponse : public QQuickImageResponse, public QRunnable
{
    Q_OBJECT

public:
    /// Who deletes it: whoever asked, or the pool behind the run, for nobody waits.
    enum class Owner { Asker, Pool };

    /// `id` is the path. An empty one, or a box of less than 1 x 1, gives no picture.
    AsyncImageResponse(const QString &id, const QSize &requestedSize, Owner owner = Owner::Asker);
    ~AsyncImageResponse() override;

    /// What the screen shows of it: inverted while the screen is, whatever it was when the picture was made.
    QQuickTextureFactory *textureFactory() const override;
    QString errorString() const override;

public slots:
    /// Does nothing: the thumbnail is worth having for the next request.
    void cancel() override;

public:
    void run() override;

private:
    QString path; ///< empty where there is nothing to do
    int width = -1;
    int height = -1;
    QImage image;
    QString error; ///< always empty
    bool done = false; ///< behind m_end
    /// Path and box are there to be read. Written last and read first: hands all of this to the run's thread.
    std::atomic<bool> m_usable = false;
    std::mutex m_end; ///< held while the run ends: whoever hears of that may delete this at once
};

} // namespace lindenreed::picture_stand
