#include "picture_reader.h"

#include "regular_file.h"

#include <boardconf.h>
#include <slateview.h>

#include <QImageReader>

#include <utility>

namespace lindenreed::picture_stand {

QImage readImage(const QString &path)
{
    if (!isRegularFile(path))
        return {};

    QImageReader reader(path);
    const QSize size = reader.size();
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
