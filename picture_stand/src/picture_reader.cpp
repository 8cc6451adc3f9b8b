#include "picture_reader.h"

#include "regular_file.h"

#include <boardconf.h>
#include <slateview.h>

#include <QImageReader>

#include <utility>

namespace lindenreed::picture_stand {

namespace {

// The reader of JPEG files alone reduces while it decodes, so that Qt's limit does not count what is in the
// file; but a progressive file in colour takes up to six bytes a pixel on the way, 720 MB here. The largest
// photographs of telephones have 108 million.
constexpr qint64 mostJpegPixels = 120'000'000;

} // namespace

QImage readImage(const QString &path)
{
    if (!isRegularFile(path))
        return {};

    QImageReader reader(path);
    const QSize size = reader.size();
    if (reader.format() == "jpeg" && qint64(size.width()) * size.height() > mostJpegPixels)
        return {};
    if (size.width() >= 0 && size.height() >= 0) {
        const QSize screen(ScreenWidth(), ScreenHeight());
        // A thread keeps one row or column: readers take a size without either as none asked for.
        if (size.width() > screen.width() || size.height() > screen.height())
            reader.setScaledSize(size.scaled(screen, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }
    QImage picture = reader.read();
    picture = std::move(picture).convertToFormat(device_display_colormask() == 0 ? QImage::Format_Grayscale8
                                                                                 : QImage::Format_RGB888);
    if (SvGetScreenModeInversion())
        picture.invertPixels(QImage::InvertRgb);
    return picture;
}

} // namespace lindenreed::picture_stand
