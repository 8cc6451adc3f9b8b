// Pictures that decode as a camera's do.

#pragma once

#include <QImage>
#include <QSize>

#include <random>

namespace lindenreed::benchmarks {

/// Soft shapes with a camera's noise, so that decoding has to do what it does for photographs.
inline QImage photograph(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    std::mt19937 random(2);
    for (int y = 0; y < size.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const int noise = int(random() % 12);
            const int wave = (x * 7 / 50 + (y * 5 / 40) * (x / 400 + 1)) % 160;
            row[x] = qRgb(40 + wave + noise, 60 + wave / 2 + noise, 120 - wave / 2 + noise);
        }
    }
    return image;
}

constexpr int photographQuality = 92; ///< of the JPEG files

} // namespace lindenreed::benchmarks
