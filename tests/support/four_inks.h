// Pictures in four inks, as versions of Qt read them.

#pragma once

#include <QImage>

/// What Qt 6.8 leaves in four inks, in the colours that 6.4 makes of them; any other picture as it is.
inline QImage withoutInks(const QImage &image)
{
    constexpr int inks = 36; // Format_CMYK8888
    if (int(image.format()) != inks)
        return image;
    QImage colours(image.size(), QImage::Format_RGB32);
    colours.setDotsPerMeterX(image.dotsPerMeterX());
    colours.setDotsPerMeterY(image.dotsPerMeterY());
    for (int y = 0; y < image.height(); ++y) {
        const uchar *ink = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x, ink += 4) {
            const auto colour = [&](int i) { return (255 - ink[i]) * (255 - ink[3]) / 255; };
            colours.setPixel(x, y, qRgb(colour(0), colour(1), colour(2)));
        }
    }
    return colours;
}
