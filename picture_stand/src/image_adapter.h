// What the QML engine owns of an image provider.

#pragma once

#include <QQuickAsyncImageProvider>
#include <QQuickImageProvider>

namespace lindenreed::picture_stand {

/// The file that an image id of the engine means. A path travels as part of a URL, in which the screens write
/// its "%" as "%25" and the engine keeps that and some other characters escaped.
QString fileOfImageId(const QString &id);

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
