#include "chart.h"

#include <dither.h>
#include <panel_levels.h>

#include <algorithm>

namespace lindenreed::device {

namespace {

constexpr int patchesAcross = 4;
constexpr int greyStep = 17;

} // namespace

QImage drawChart(QSize size)
{
    QImage chart(size, QImage::Format_Grayscale8);
    if (chart.isNull())
        return chart;
    const int rampTop = size.height() * 3 / 4;
    for (int y = 0; y < size.height(); ++y) {
        uchar *row = chart.scanLine(y);
        for (int x = 0; x < size.width(); ++x) {
            if (y < rampTop) {
                const int patch
                    = y * patchesAcross / rampTop * patchesAcross + x * patchesAcross / size.width();
                const bool inCheck = x * patchesAcross % size.width() < size.width() / 3
                    && y * patchesAcross % rampTop >= rampTop * 2 / 3;
                row[x] = inCheck ? uchar((x + y) % 2 * 255) : uchar(patch * greyStep);
            } else {
                row[x] = uchar(x * 255 / std::max(1, size.width() - 1));
            }
        }
    }
    const pixels::Picture picture{chart.bits(), std::size_t(size.width()), std::size_t(size.height()),
                                  std::size_t(chart.bytesPerLine()), 1};
    pixels::diffuseTo16Levels(picture, 0, std::size_t(rampTop), picture.width, picture.height, levelCurve());
    return chart;
}

} // namespace lindenreed::device
