#include "async_image_response.h"

#include "cover_cache.h"
#include "png_texts.h"
#include "regular_file.h"
#include "svg_reader.h"

#include <boardconf.h>
#include <slateview.h>

#include <QImageReader>
#include <QQuickTextureFactory>

#include <new>
#include <optional>
#include <tuple>
#include <utility>

namespace lindenreed::picture_stand {

namespace {

/// A finished thumbnail: scaled to the box, enlarged as well; toned and, on a grey panel, dithered. Never
/// inverted. And whether it is null because the file was not there, or went meanwhile.
std::pair<QImage, bool> makeCover(const QString &path, QSize box)
{
    QImage picture;
    PictureFile file(path);
    if (openRegularFile(file) && hasBearableTexts(file)) {
        QImageReader reader(&file);
        picture = isSvg(reader) ? readSvg(file, SvgFit::Cover, box) : reader.read();
    }
    const bool isAway = file.hasGone(picture);
    if (isAway)
        picture = {};
    // A null picture stays one, without the message that Qt would print.
    if (!picture.isNull())
        picture = picture.scaled(box, Qt::KeepAspectRatio, Qt::FastTransformation);
    const bool grey = device_display_colormask() == 0;
    picture = std::move(picture).convertToFormat(grey ? QImage::Format_Grayscale8 : QImage::Format_RGB888);

    // What cannot be shown goes through as well.
    uchar *pixels = picture.scanLine(0);
    const int bytesPerLine = static_cast<int>(picture.bytesPerLine());
    adjustAreaDefault(pixels, bytesPerLine, picture.width(), picture.height());
    if (grey)
        QuickFloyd16Dither(pixels, bytesPerLine, 0, 0, picture.width(), picture.height());
    return {picture, isAway};
}

} // namespace

AsyncImageResponse::AsyncImageResponse(const QString &id, const QSize &requestedSize, Owner owner)
{
    if (requestedSize.width() >= 1 && requestedSize.height() >= 1 && !id.isEmpty()) {
        path = id;
        width = requestedSize.width();
        height = requestedSize.height();
    }
    setAutoDelete(owner == Owner::Pool);
    m_usable = !path.isEmpty();
}

AsyncImageResponse::~AsyncImageResponse()
{
    const std::lock_guard lock(m_end);
}

QQuickTextureFactory *AsyncImageResponse::textureFactory() const
{
    QImage picture = image;
    if (SvGetScreenModeInversion())
        picture.invertPixels(QImage::InvertRgb);
    return QQuickTextureFactory::textureFactoryForImage(picture);
}

QString AsyncImageResponse::errorString() const
{
    return error;
}

void AsyncImageResponse::cancel() { }

void AsyncImageResponse::run()
{
    if (m_usable) {
        CoverCache &cache = CoverCache::instance();
        const QString key = coverKey(path, width, height);
        std::optional<QImage> found = cache.find(key);
        if (found && !(cache.isAway(key) && isRegularFile(path))) {
            cache.touch(key);
            image = *std::move(found);
        } else {
            // Decoding takes no lock. Another thread may be at the same file; the last one wins.
            bool isAway = false;
            try {
                std::tie(image, isAway) = makeCover(path, {width, height});
            } catch (const std::bad_alloc &) { // of what decoders keep beside the pixels
                image = {};
            }
            if (!image.isNull() || isAway || !lacksHandles()) // else it is tried again
                cache.insert(key, image, isAway);
        }
    }
    const std::lock_guard lock(m_end);
    emit finished();
    done = true;
}

} // namespace lindenreed::picture_stand
