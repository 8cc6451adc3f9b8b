// Requests for thumbnails whose ends are heard for sure. Needs what held_pictures.h needs.

#pragma once

#include "cover_provider.h"
#include "held_pictures.h"

#include <QImage>
#include <QList>
#include <QQuickImageResponse>
#include <QQuickTextureFactory>
#include <QSemaphore>
#include <QThread>

#include <atomic>
#include <memory>

/// Hears of the end of responses that are held or wait behind such.
struct Listener
{
    struct Heard
    {
        QSemaphore ends;
        std::atomic<QThread *> thread = nullptr; ///< of the last one
    };
    /// Also held by the responses, which may end after a test that failed.
    const std::shared_ptr<Heard> heard = std::make_shared<Heard>();

    void listenTo(QQuickImageResponse *response) const
    {
        QObject::connect(
            response, &QQuickImageResponse::finished, response,
            [heard = heard] {
                heard->thread = QThread::currentThread();
                heard->ends.release();
            },
            Qt::DirectConnection);
    }
    /// False where it takes longer than half a minute, or what is told.
    bool waitForEnds(int count, int ms = 30'000) const { return heard->ends.tryAcquire(count, ms); }
};

inline QImage imageOf(const QQuickImageResponse &response)
{
    const std::unique_ptr<QQuickTextureFactory> factory(response.textureFactory());
    return factory ? factory->image() : QImage();
}

/// Takes the two threads of the provider until the gate is opened, by requests that are left to the provider:
/// what is asked for next does not end before somebody listens. Empty where they cannot be taken.
inline QList<QQuickImageResponse *> takeThreads(lindenreed::picture_stand::CoverProvider &provider,
                                                const QString &folder)
{
    static int number = 0;
    HeldPictures::reset();
    QList<QQuickImageResponse *> holders;
    for (int i = 0; i < 2; ++i) {
        const QString path = writeHeldPicture(folder, QStringLiteral("holder %1").arg(++number));
        holders.append(provider.requestImageResponse(path, {10, 10}));
    }
    return HeldPictures::waitUntilBegun(2) ? holders : QList<QQuickImageResponse *>();
}
