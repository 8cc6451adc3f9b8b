// What flat fields look like when they are dithered: no worms, no rows of dots, no edges where they start.

#include "dither.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

using namespace lindenreed::pixels;

namespace {

constexpr std::size_t side = 512;
constexpr std::size_t tile = 64;
constexpr std::size_t edge = 6;

using Field = std::vector<std::uint8_t>;

const LevelCurve measured = curveFor(luminancesByGamma(0.009, 0.65, 1.42));

const LevelCurve &curveOf(bool isMeasured)
{
    return isMeasured ? measured : evenLevels();
}

Field dithered(std::uint8_t grey, const LevelCurve &curve)
{
    Field field(side * side, grey);
    diffuseTo16Levels({field.data(), side, side, side, 1}, 0, 0, side, side, curve);
    return field;
}

/// How far a grey is from the level below it to the one above: the share of lighter dots.
double shareOfDots(std::uint8_t grey, const LevelCurve &curve)
{
    return double(curve[grey] % levelStep) / levelStep;
}

/// The power of each frequency of a field (half of them: the others mirror them), mean of its tiles, where
/// white noise of as many dots has 1 everywhere.
std::vector<double> spectrumOf(const Field &field)
{
    double mean = 0;
    double square = 0;
    for (const std::uint8_t pixel : field) {
        mean += pixel / double(field.size());
        square += double(pixel) * pixel / double(field.size());
    }
    const double variance = square - mean * mean;
    std::vector<std::complex<double>> waves(tile);
    for (std::size_t i = 0; i < tile; ++i)
        waves[i] = std::polar(1.0, 2 * std::numbers::pi * double(i) / tile);

    std::vector<double> power(tile * tile);
    for (std::size_t top = 0; top < side; top += tile) {
        for (std::size_t left = 0; left < side; left += tile) {
            std::vector<std::complex<double>> ofRows(tile * tile);
            for (std::size_t y = 0; y < tile; ++y) {
                for (std::size_t u = 0; u <= tile / 2; ++u) {
                    for (std::size_t x = 0; x < tile; ++x)
                        ofRows[y * tile + u]
                            += (field[(top + y) * side + left + x] - mean) * waves[u * x % tile];
                }
            }
            for (std::size_t v = 0; v < tile; ++v) {
                for (std::size_t u = 0; u <= tile / 2; ++u) {
                    std::complex<double> sum;
                    for (std::size_t y = 0; y < tile; ++y)
                        sum += ofRows[y * tile + u] * waves[v * y % tile];
                    power[v * tile + u] += std::norm(sum) / variance / double(side * side);
                }
            }
        }
    }
    return power;
}

/// Share of dots in a rectangle.
double dotsIn(const Field &field, int below, std::size_t x, std::size_t y, std::size_t width,
              std::size_t height)
{
    double dots = 0;
    for (std::size_t row = y; row < y + height; ++row) {
        for (std::size_t column = x; column < x + width; ++column)
            dots += (field[row * side + column] - below) / 17.0;
    }
    return dots / double(width * height);
}

void addGreys()
{
    QTest::addColumn<int>("grey");
    QTest::addColumn<bool>("isMeasured");

    for (const int grey : {1, 2, 9, 110, 128, 132, 240, 254})
        QTest::addRow("grey %d", grey) << grey << false;
    for (const int grey : {2, 40, 110, 200})
        QTest::addRow("grey %d, measured levels", grey) << grey << true;
}

} // namespace

class tst_DitherTexture : public QObject
{
    Q_OBJECT

private slots:
    void dotsAreSpreadEvenly_data() { addGreys(); }
    void dotsAreSpreadEvenly();
    void startsAtOnce_data() { addGreys(); }
    void startsAtOnce();
};

void tst_DitherTexture::dotsAreSpreadEvenly()
{
    QFETCH(int, grey);
    QFETCH(bool, isMeasured);

    const LevelCurve &curve = curveOf(isMeasured);
    const std::vector<double> power = spectrumOf(dithered(std::uint8_t(grey), curve));
    const double share = shareOfDots(std::uint8_t(grey), curve);
    // Evenly spread dots have their distance as principal wavelength, and next to nothing that is much
    // longer.
    const double longWaves = std::sqrt(std::min(share, 1 - share)) / 2;
    double sum = 0;
    int count = 0;
    for (std::size_t v = 0; v < tile; ++v) {
        for (std::size_t u = 0; u <= tile / 2; ++u) {
            const double frequency = std::hypot(double(u), double(std::min(v, tile - v))) / tile;
            if (frequency > 0 && frequency < longWaves) {
                sum += power[v * tile + u];
                ++count;
            }
        }
    }
    QVERIFY2(sum / count < 0.2, qPrintable(QString::number(sum / count)));
    // Rows of dots, checks and worms would stand out at a frequency of their own; without noise they do by up
    // to 490.
    const double highest = *std::max_element(power.begin(), power.end());
    QVERIFY2(highest < 20, qPrintable(QString::number(highest)));
}

void tst_DitherTexture::startsAtOnce()
{
    QFETCH(int, grey);
    QFETCH(bool, isMeasured);

    const LevelCurve &curve = curveOf(isMeasured);
    const Field field = dithered(std::uint8_t(grey), curve);
    const double share = shareOfDots(std::uint8_t(grey), curve);
    const int below = curve[std::size_t(grey)] / levelStep * 17;
    const auto isEven
        = [&](double dots) { return std::abs(dots - share) < 0.3 * std::min(share, 1 - share); };
    QVERIFY(isEven(dotsIn(field, below, 0, 0, side, edge)));
    QVERIFY(isEven(dotsIn(field, below, 0, edge, edge, side - edge)));
    QVERIFY(isEven(dotsIn(field, below, side - edge, edge, edge, side - edge)));
    QVERIFY(isEven(dotsIn(field, below, 0, side - edge, side, edge)));
    // A row by itself may miss a rare dot, or have one too many.
    for (const std::size_t row : {std::size_t(0), side - 1}) {
        const double off = dotsIn(field, below, 0, row, side, 1) - share;
        QVERIFY2(std::abs(off) < 0.1, qPrintable(QString::number(off)));
    }
}

QTEST_APPLESS_MAIN(tst_DitherTexture)
#include "tst_dither_texture.moc"
