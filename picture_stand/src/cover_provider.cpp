#include "cover_provider.h"

#include "async_image_response.h"
#include "lasting_threads.h"
#include "storage.h"

#include <boardconf.h>
#include <slateview.h>

#include <utility>

namespace lindenreed::picture_stand {

CoverProvider::~CoverProvider()
{
    pool.clear(); // the pool would run them all before it ends
    pool.waitForDone();

    // A response tells of its end, which takes the mutex.
    QSet<QObject *> left;
    {
        const std::lock_guard lock(m_handedOut->mutex);
        left = std::exchange(m_handedOut->responses, {});
    }
    qDeleteAll(left);
}

void CoverProvider::setup()
{
    cover_width = GetThemeInt("e3.galery_cover.width", 165);
    cover_height = GetThemeInt("e3.galery_cover.height", 290);
    pool.setMaxThreadCount(device_platform() == 17 ? 3 : 2);
    startLastingThreads(pool);
    connect(
        &Storage::instance(), &Storage::listFilesChanged, this,
        [this](const QStringList &names) { prefetchCovers(names); }, Qt::DirectConnection);
}

QQuickImageResponse *CoverProvider::requestImageResponse(const QString &id, const QSize &requestedSize)
{
    auto *response = new AsyncImageResponse(id, requestedSize);
    {
        const std::lock_guard lock(m_handedOut->mutex);
        m_handedOut->responses.insert(response);
    }
    connect(
        response, &QObject::destroyed, response,
        [handedOut = m_handedOut](QObject *gone) {
            const std::lock_guard lock(handedOut->mutex);
            handedOut->responses.remove(gone);
        },
        Qt::DirectConnection);
    pool.start(response, 1);
    return response;
}

void CoverProvider::prefetchCovers(const QStringList &paths)
{
    for (const QString &path : paths) {
        const QSize box(cover_width, cover_height);
        pool.start(new AsyncImageResponse(path, box, AsyncImageResponse::Owner::Pool), 0);
    }
}

} // namespace lindenreed::picture_stand
