#include "image_adapter.h"

#include "cover_provider.h"
#include "resource_image_provider.h"

#include <QUrl>

namespace lindenreed::picture_stand {

QString fileOfImageId(const QString &id)
{
    return id.contains(u'%') ? QUrl::fromPercentEncoding(id.toUtf8()) : id;
}

ImageAdapter::ImageAdapter(ResourceImageProvider *provider)
    : QQuickImageProvider(QQmlImageProviderBase::Image)
    , m_provider(provider)
{
}

QImage ImageAdapter::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    return m_provider->requestImage(fileOfImageId(id), size, requestedSize);
}

CoverAdapter::CoverAdapter(CoverProvider *provider)
    : m_provider(provider)
{
}

QQuickImageResponse *CoverAdapter::requestImageResponse(const QString &id, const QSize &requestedSize)
{
    return m_provider->requestImageResponse(fileOfImageId(id), requestedSize);
}

} // namespace lindenreed::picture_stand
