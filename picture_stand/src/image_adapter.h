// What the QML engine owns of an image provider.

#pragma once

#include <QQuickAsyncImageProvider>
#include <QQuickImageProvider>

#include <functional>

namespace lindenreed::picture_stand {

/// The file that an image id of the engine means: the id as it came where `exists` says so, else with the
/// URL's percent escapes undone, also where that file is gone: it then shares the cache's entry with the path
/// that was loaded ahead. A path travels as part of a URL, in which the engine keeps some characters escaped;
/// nothing is asked where there are none.
QString fileOfImageId(const QString &id, const std::function<bool(const QString &)> &exists);

class CoverProvider;
class ResourceImageProvider;

/// Forwards to a provider that lives elsewhere and must outlive the engine.
class ImageAdapter : public QQuickImageProvider
{
public:
    explicit ImageAdapter(ResourceImageProvider *provider);

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

private:
    ResourceImageProvider *m_provider;
};

/// The same for thumbnails.
class CoverAdapter : public QQuickAsyncImageProvider
{
public:
    explicit CoverAdapter(CoverProvider *provider);

    QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requestedSize) override;

private:
    CoverProvider *m_provider;
};

} // namespace lindenreed::picture_stand
