#include "image_adapter.h"

#include "cover_cache.h"
#include "cover_provider.h"
#include "resource_image_provider.h"

#include <QFile>
#include <QUrl>

namespace lindenreed::picture_stand {

namespace {

QString unescaped(const QString &id)
{
    return QUrl::fromPercentEncoding(id.toUtf8());
}

} // namespace

QString fileOfImageId(const QString &id, const std::function<bool(const QString &)> &exists)
{
    if (!id.contains(u'%') || exists(id))
        return id;
    return unescaped(id);
}

ImageAdapter::ImageAdapter(ResourceImageProvider *provider)
    : QQuickImageProvider(QQmlImageProviderBase::Image)
    , m_provider(provider)
{
}

QImage ImageAdapter::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    // A picture that was loaded ahead is shown even when its file has gone since.
    const QString path = fileOfImageId(id, [this](const QString &candidate) {
        return m_provider->cache()->contains(candidate) || QFile::exists(candidate);
    });
    return m_provider->requestImage(path, size, requestedSize);
}

CoverAdapter::CoverAdapter(CoverProvider *provider)
    : m_provider(provider)
{
}

QQuickImageResponse *CoverAdapter::requestImageResponse(const QString &id, const QSize &requestedSize)
{
    const QString path = fileOfImageId(id, [&id, requestedSize](const QString &candidate) {
        if (QFile::exists(candidate))
            return true;
        // Of a long path both names have the same key: what is kept tells nothing where the other one is
        // there.
        const QString key = coverKey(candidate, requestedSize.width(), requestedSize.height());
        return !QFile::exists(unescaped(id)) && CoverCache::instance().find(key).has_value();
    });
    return m_provider->requestImageResponse(path, requestedSize);
}

} // namespace lindenreed::picture_stand
