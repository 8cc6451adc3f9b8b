// Thumbnails made here and now, without pool and engine. Needs picture_stand_core.

#pragma once

#include "async_image_response.h"
#include "cover_cache.h"

#include <QImage>
#include <QQuickTextureFactory>
#include <QSignalSpy>

#include <memory>
#include <optional>

/// Runs it here and now; what the engine gets, or one pixel where the end is not told once and without error.
inline QImage handedOver(lindenreed::picture_stand::AsyncImageResponse &response)
{
    const QSignalSpy finished(&response, &QQuickImageResponse::finished);
    response.run();
    if (finished.count() != 1 || !response.errorString().isEmpty())
        return QImage(1, 1, QImage::Format_Mono);
    const std::unique_ptr<QQuickTextureFactory> factory(response.textureFactory());
    return factory ? factory->image() : QImage();
}

inline QImage cover(const QString &path, QSize box)
{
    lindenreed::picture_stand::AsyncImageResponse response(path, box);
    return handedOver(response);
}

/// What is remembered of it, if anything.
inline std::optional<QImage> cached(const QString &path, QSize box)
{
    using namespace lindenreed::picture_stand;
    return CoverCache::instance().find(coverKey(path, box.width(), box.height()));
}
