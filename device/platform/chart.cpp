#include "chart.h"

#include <dither.h>
#include <panel_levels.h>

#include <QPainter>

#include <algorithm>

namespace lindenreed::device {

namespace {

constexpr int patchesAcross = 4;
constexpr int patches = patchesAcross * patchesAcross;
constexpr int greyStep = 17;

uchar against(int grey)
{
    return grey < 128 ? 255 : 0;
}

/// At the top of the picture.
void numberPatches(QImage &chart, int height)
{
    const int patchWidth = chart.width() / patchesAcross;
    const int patchHeight = height / patchesAcross;
    const int margin = std::min(patchWidth, patchHeight) / 16;
    QPainter painter(&chart);
    QFont font;
    font.setPixelSize(std::max(1, margin * 2));
    painter.setFont(font);
    for (int patch = 0; patch < patches; ++patch) {
        const QRect area(patch % patchesAcross * chart.width() / patchesAcross,
                         patch / patchesAcross * height / patchesAcross, patchWidth, patchHeight);
        const int grey = against(patch * greyStep);
        painter.setPen(QColor(grey, grey, grey));
        painter.drawText(area.adjusted(margin, margin, -margin, -margin), Qt::AlignTop | Qt::AlignRight,
                         QString::number(patch));
    }
}

} // namespace

QImage drawChart(QSize size)
{
    QImage chart(size, QImage::Format_Grayscale8);
    if (chart.isNull())
        return chart;
    const int rampTop = size.height() * 3 / 4;
    const int right = size.width() - 1;
    const int bottom = size.height() - 1;
    const int solidEnd = size.width() / 32;
    for (int y = 0; y <= bottom; ++y) {
        uchar *row = chart.scanLine(y);
        for (int x = 0; x <= right; ++x) {
            int grey = std::clamp((x - solidEnd) * 255 / std::max(1, right - 2 * solidEnd), 0, 255);
            bool inCheck = false;
            if (y < rampTop) {
                grey = greyStep
                    * (y * patchesAcross / rampTop * patchesAcross + x * patchesAcross / size.width());
                inCheck = x * patchesAcross % size.width() < size.width() / 3
                    && y * patchesAcross % rampTop >= rampTop * 2 / 3;
            }
            if (x == 0 || y == 0 || x == right || y == bottom)
                row[x] = against(grey);
            else
                row[x] = inCheck ? uchar((x + y) % 2 * 255) : uchar(grey);
        }
    }
    numberPatches(chart, rampTop);
    const pixels::Picture picture{chart.bits(), std::size_t(size.width()), std::size_t(size.height()),
                                  std::size_t(chart.bytesPerLine()), 1};
    if (right > 1 && bottom > rampTop)
        pixels::diffuseTo16Levels(picture, 1, std::size_t(rampTop), std::size_t(right - 1),
                                  std::size_t(bottom - rampTop), levelCurve());
    return chart;
}

} // namespace lindenreed::device
