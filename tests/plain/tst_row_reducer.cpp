// Reduced pictures, beside the same sums in floating point.

#include "instruction_sets.h"
#include "slow_reduction.h"

#include <row_reducer.h>

#include <QTest>

#include <cmath>
#include <initializer_list>
#include <numeric>
#include <random>

using lindenreed::device::ReducingTaps;
using lindenreed::device::RowReducer;

using Bytes = std::vector<std::uint8_t>;

namespace {

Bytes reduced(const Bytes &picture, RowReducer::Size size, RowReducer::Size target, int channels,
              std::size_t stride, std::uint8_t padding = 0)
{
    Bytes result(stride * std::size_t(target.height), padding);
    RowReducer reducer(size, {double(size.width), double(size.height)}, target, channels, result, stride);
    const std::size_t rowBytes = std::size_t(size.width) * std::size_t(channels);
    for (std::size_t y = 0; y < std::size_t(size.height); ++y) {
        std::copy_n(picture.begin() + std::ptrdiff_t(y * rowBytes), rowBytes, reducer.nextRow());
        reducer.add();
    }
    return result;
}

Bytes noise(std::size_t count)
{
    std::mt19937 random(3);
    Bytes bytes(count);
    for (auto &byte : bytes)
        byte = std::uint8_t(random());
    return bytes;
}

} // namespace

class tst_RowReducer : public QObject
{
    Q_OBJECT

private slots:
    void sizes_data();
    void sizes();
    void instructionSets();
    void channelsAreApart();
    void flatStaysFlat();
    void paddingIsLeft();
    void weightsAreWhole();
    void endsWithinTheLastPixel();
};

void tst_RowReducer::sizes_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("targetWidth");
    QTest::addColumn<int>("targetHeight");

    QTest::newRow("a little") << 75 << 113 << 62 << 94;
    QTest::newRow("the same") << 33 << 21 << 33 << 21;
    QTest::newRow("half") << 64 << 48 << 32 << 24;
    QTest::newRow("far") << 200 << 150 << 7 << 5;
    QTest::newRow("to one pixel") << 40 << 30 << 1 << 1;
    QTest::newRow("of one pixel") << 1 << 1 << 1 << 1;
    QTest::newRow("of two") << 2 << 2 << 1 << 2;
    QTest::newRow("one row") << 100 << 1 << 37 << 1;
    QTest::newRow("one column") << 1 << 100 << 1 << 37;
    QTest::newRow("in one direction") << 50 << 40 << 50 << 13;
}

void tst_RowReducer::sizes()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, targetWidth);
    QFETCH(int, targetHeight);

    const Bytes picture = noise(std::size_t(width) * std::size_t(height));
    const Bytes result
        = reduced(picture, {width, height}, {targetWidth, targetHeight}, 1, std::size_t(targetWidth));
    const std::vector<double> expected = slowlyReduced(picture, width, targetWidth, targetHeight);
    for (std::size_t i = 0; i < result.size(); ++i)
        QVERIFY2(std::abs(result[i] - std::clamp(expected[i], 0.0, 255.0)) < 0.75,
                 QByteArray::number(qulonglong(i)));
}

void tst_RowReducer::instructionSets()
{
    // Extremes as well: no set may lose what the sums reach beyond black and white.
    Bytes extremes = noise(std::size_t(97) * 61 * 4);
    for (std::uint8_t &byte : extremes)
        byte = byte < 128 ? 0 : 255;
    for (const Bytes &picture : {noise(extremes.size()), extremes}) {
        for (const int channels : {1, 4}) {
            for (const RowReducer::Size target : {RowReducer::Size{80, 51}, {97, 20}, {5, 61}, {1, 1}}) {
                Bytes expected;
                for (const std::int64_t set : lindenreed::pixels::instructionSets()) {
                    const lindenreed::pixels::ForcedInstructionSet forced(set);
                    const Bytes result = reduced(picture, {97, 61}, target, channels,
                                                 std::size_t(target.width) * std::size_t(channels));
                    if (expected.empty())
                        expected = result;
                    QVERIFY2(result == expected, lindenreed::pixels::instructionSetName(set).c_str());
                }
            }
        }
    }
}

void tst_RowReducer::channelsAreApart()
{
    const Bytes picture = noise(61 * 43 * 4);
    const Bytes result = reduced(picture, {61, 43}, {40, 25}, 4, 160);
    for (std::size_t channel = 0; channel < 4; ++channel) {
        Bytes alone;
        for (std::size_t i = channel; i < picture.size(); i += 4)
            alone.push_back(picture[i]);
        const Bytes expected = reduced(alone, {61, 43}, {40, 25}, 1, 40);
        for (std::size_t i = 0; i < expected.size(); ++i)
            QCOMPARE(result[i * 4 + channel], expected[i]);
    }
}

void tst_RowReducer::flatStaysFlat()
{
    for (const int length : {100, 101, 399, 2250}) {
        for (const int target : {1, 3, 57, 99, 100}) {
            for (const std::uint8_t value : std::initializer_list<std::uint8_t>{0, 1, 128, 254, 255}) {
                const Bytes result
                    = reduced(Bytes(std::size_t(length), value), {length, 1}, {target, 1}, 1, 100);
                for (std::size_t x = 0; x < std::size_t(target); ++x)
                    QCOMPARE(result[x], value);
            }
        }
    }
}

void tst_RowReducer::paddingIsLeft()
{
    const Bytes result = reduced(noise(60 * 40), {60, 40}, {50, 30}, 1, 64, 7);
    for (std::size_t y = 0; y < 30; ++y) {
        for (std::size_t x = 50; x < 64; ++x)
            QCOMPARE(result[y * 64 + x], 7);
    }
}

void tst_RowReducer::weightsAreWhole()
{
    for (const int length : {1, 2, 5, 100, 1500, 8000}) {
        for (const int target : {1, 2, 37, 1248}) {
            if (target > length)
                continue;
            const ReducingTaps taps(length, length, target);
            for (int i = 0; i < target; ++i) {
                const auto mine = taps.weights.begin() + std::ptrdiff_t(i) * taps.count;
                QCOMPARE(std::accumulate(mine, mine + taps.count, 0), ReducingTaps::one);
                QVERIFY(taps.first[std::size_t(i)] >= 0);
            }
        }
    }
}

void tst_RowReducer::endsWithinTheLastPixel()
{
    // A ramp stays where it is: each target pixel has the value of the source at its own centre.
    constexpr double extent = 98.5;
    constexpr int target = 70;
    Bytes row(99);
    for (std::size_t x = 0; x < row.size(); ++x)
        row[x] = std::uint8_t(2 * x + 10);
    Bytes result(target);
    RowReducer reducer({99, 1}, {extent, 1}, {target, 1}, 1, result, result.size());
    std::copy(row.begin(), row.end(), reducer.nextRow());
    reducer.add();
    for (int x = 5; x < target - 5; ++x) {
        const double centre = (x + 0.5) * extent / target - 0.5;
        QVERIFY(std::abs(result[std::size_t(x)] - (2 * centre + 10)) < 0.75);
    }
}

QTEST_APPLESS_MAIN(tst_RowReducer)
#include "tst_row_reducer.moc"
