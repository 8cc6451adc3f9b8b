// What the eye sees of a dithered picture from where its dots mix: a blur, in light. No peer and no clock,
// but a floor below which no change may let the picture fall.

#include "dither.h"
#include "grey_picture.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using namespace lindenreed::pixels;

namespace {

constexpr std::size_t side = 480;

/// Noise at all scales, and over parts of it edges, a ramp and a fan of lines.
Grey benchPicture()
{
    std::vector<double> sum(side * side, 0.0);
    std::mt19937 random(7);
    for (std::size_t cell = 2; cell <= side; cell *= 2) {
        const std::size_t columns = side / cell + 2;
        std::vector<double> corners(columns * columns);
        for (double &corner : corners)
            corner = double(random() % 1000) / 1000 - 0.5;
        for (std::size_t y = 0; y < side; ++y) {
            for (std::size_t x = 0; x < side; ++x) {
                const double *corner = &corners[y / cell * columns + x / cell];
                const double right = double(x % cell) / double(cell);
                const double down = double(y % cell) / double(cell);
                const double above = corner[0] + (corner[1] - corner[0]) * right;
                const double below = corner[columns] + (corner[columns + 1] - corner[columns]) * right;
                sum[y * side + x] += (above + (below - above) * down) * std::sqrt(double(cell)) * 6;
            }
        }
    }
    Grey grey(side, side);
    grey.fill([&](std::size_t x, std::size_t y) {
        if (y < 60)
            return double(x) * 255 / double(side - 1);
        if (y < 140 && x < 240)
            return (x / 20 + y / 20) % 2 == 0 ? 40.0 : 210.0;
        if (y < 140)
            return std::fmod(double(x) * double(y) / 60, 8) < 4 ? 90.0 : 150.0;
        return std::clamp(128 + sum[y * side + x], 0.0, 255.0);
    });
    return grey;
}

/// The picture's light after a Gaussian blur of sigma 2 pixels, without the margin that it reaches over.
std::vector<double> blurredLight(Grey grey)
{
    constexpr int reach = 8;
    std::vector<double> weights;
    double total = 0;
    for (int i = -reach; i <= reach; ++i) {
        weights.push_back(std::exp(-i * i / 8.0));
        total += weights.back();
    }
    std::vector<double> rows(side * side, 0.0);
    std::vector<double> blurred;
    for (std::size_t y = 0; y < side; ++y) {
        for (std::size_t x = reach; x < side - reach; ++x) {
            for (std::size_t i = 0; i < weights.size(); ++i)
                rows[y * side + x] += weights[i] / total * luminance(grey.at(x + i - reach, y));
        }
    }
    for (std::size_t y = reach; y < side - reach; ++y) {
        for (std::size_t x = reach; x < side - reach; ++x) {
            double light = 0;
            for (std::size_t i = 0; i < weights.size(); ++i)
                light += weights[i] / total * rows[(y + i - reach) * side + x];
            blurred.push_back(light);
        }
    }
    return blurred;
}

} // namespace

class tst_DitherDetail : public QObject
{
    Q_OBJECT

private slots:
    void detailStays();
};

void tst_DitherDetail::detailStays()
{
    Grey grey = benchPicture();
    const std::vector<double> wanted = blurredLight(grey);
    grey.diffuse();
    const std::vector<double> shown = blurredLight(grey);
    double squares = 0;
    for (std::size_t i = 0; i < wanted.size(); ++i)
        squares += (wanted[i] - shown[i]) * (wanted[i] - shown[i]);
    const double decibels = 10 * std::log10(double(wanted.size()) / squares); // peak signal to noise
    QVERIFY2(decibels > 59.5, qPrintable(QString::number(decibels)));
}

QTEST_APPLESS_MAIN(tst_DitherDetail)
#include "tst_dither_detail.moc"
