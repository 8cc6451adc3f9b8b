// Error diffusion: what it promises of its results.

#include "dither.h"
#include "grey_picture.h"
#include "slow_diffusion.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

using namespace lindenreed::pixels;

class tst_Dither : public QObject
{
    Q_OBJECT

private slots:
    void rectangleOutside_data();
    void rectangleOutside();
    void paddingKeepsItsBytes();
    void greysOfThePanelStay();
    void panelGreysSideBySideStay();
    void levelsOfAMeasuredPanelStay();
    void flatFieldsKeepTheirLight();
    void aLineKeepsItsSum_data();
    void aLineKeepsItsSum();
    void sharesByHand_data();
    void sharesByHand();
    void levelsTakeNoGhost_data();
    void levelsTakeNoGhost();
    void patternsKeepTheirLight();
    void linesOnALevelLoseLittle();
    void numbersStay();
    void gridStays();
    void withoutPixels();
    void colourPicturesStay();
};

void tst_Dither::rectangleOutside_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    QTest::newRow("right of it") << 20 << 0 << 5 << 5;
    QTest::newRow("below it") << 0 << 10 << 5 << 5;
    QTest::newRow("far away") << -1 << -1 << 5 << 5;
    QTest::newRow("no width") << 3 << 3 << 0 << 5;
    QTest::newRow("no height") << 3 << 3 << 5 << 0;
}

void tst_Dither::rectangleOutside()
{
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, width);
    QFETCH(int, height);

    Grey grey(20, 10);
    grey.fill([](std::size_t, std::size_t) { return 100; });
    const Grey before = grey;
    grey.diffuse(Rectangle{std::size_t(x), std::size_t(y), std::size_t(width), std::size_t(height)});
    QVERIFY(grey.bytes == before.bytes);
}

void tst_Dither::paddingKeepsItsBytes()
{
    Grey grey(45, 30, 7);
    grey.fill([](std::size_t x, std::size_t y) { return x * y % 256; });
    grey.diffuse();
    for (std::size_t y = 0; y < grey.height; ++y) {
        for (std::size_t x = 0; x < grey.stride; ++x) {
            if (x < grey.width)
                QCOMPARE(grey.at(x, y) % 17, 0);
            else
                QCOMPARE(grey.at(x, y), Grey::paddingMark);
        }
    }
}

void tst_Dither::greysOfThePanelStay()
{
    for (unsigned level = 0; level < 16; ++level) {
        Grey grey(64, 40, 2);
        grey.fill([&](std::size_t, std::size_t) { return level * 17; });
        const Grey before = grey;
        grey.diffuse();
        QVERIFY(grey.bytes == before.bytes);
    }
}

void tst_Dither::panelGreysSideBySideStay()
{
    std::mt19937 random(3);
    Grey grey(97, 61);
    grey.fill([&](std::size_t, std::size_t) { return random() % 16 * 17; });
    const Grey before = grey;
    grey.diffuse();
    QVERIFY(grey.bytes == before.bytes);
}

// A panel on which other greys than the multiples of 17 are levels.
void tst_Dither::levelsOfAMeasuredPanelStay()
{
    constexpr std::array greys = {0, 9, 30, 44, 51, 76, 90, 103, 121, 140, 166, 180, 201, 222, 240, 255};
    const Luminances ends = {0.009, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.65};
    Luminances levels;
    for (std::size_t level = 0; level < levels.size(); ++level)
        levels[level] = luminanceOfLightness(wantedLightness(greys[level], ends));
    const LevelCurve curve = curveFor(levels);

    for (std::size_t level = 0; level < greys.size(); ++level) {
        Grey field(64, 40, 2);
        field.fill([&](std::size_t, std::size_t) { return greys[level]; });
        field.diffuse(curve);
        Grey expected(64, 40, 2);
        expected.fill([&](std::size_t, std::size_t) { return level * 17; });
        QVERIFY2(field.bytes == expected.bytes, qPrintable(QString::number(level)));
    }
    std::mt19937 random(5);
    Grey mixed(97, 61), expected(97, 61);
    for (std::size_t i = 0; i < mixed.bytes.size(); ++i) {
        const std::size_t level = random() % greys.size();
        mixed.bytes[i] = static_cast<std::uint8_t>(greys[level]);
        expected.bytes[i] = static_cast<std::uint8_t>(level * 17);
    }
    mixed.diffuse(curve);
    QVERIFY(mixed.bytes == expected.bytes);
}

void tst_Dither::flatFieldsKeepTheirLight()
{
    Luminances lights;
    for (std::size_t level = 0; level < lights.size(); ++level)
        lights[level] = luminance(double(level) * 17);
    for (unsigned value = 0; value < 256; ++value) {
        Grey grey(256, 256);
        grey.fill([&](std::size_t, std::size_t) { return value; });
        grey.diffuse();
        double light = 0;
        for (const std::uint8_t pixel : grey.bytes)
            light += lights[pixel / 17];
        const auto [darkest, lightest] = std::minmax_element(grey.bytes.begin(), grey.bytes.end());
        QVERIFY(*darkest > int(value) - 17 - 9); // its neighbours, or the next beyond
        QVERIFY(*lightest < int(value) + 17 + 9);
        const double off = lightness(light / double(grey.bytes.size())) - lightness(luminance(value));
        QVERIFY2(std::abs(off) < 0.05, qPrintable(QString::number(value) + u' ' + QString::number(off)));
    }
}

void tst_Dither::aLineKeepsItsSum_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    QTest::newRow("a row") << 300 << 1;
    QTest::newRow("a column") << 1 << 300;
    QTest::newRow("two columns") << 2 << 150;
    QTest::newRow("a picture") << 60 << 50;
}

// All that is lost is the error of the very last pixel; what the first row starts with comes to as little.
void tst_Dither::aLineKeepsItsSum()
{
    QFETCH(int, width);
    QFETCH(int, height);

    std::mt19937 random(11);
    Grey grey{std::size_t(width), std::size_t(height)};
    grey.fill([&](std::size_t, std::size_t) { return 20 + random() % 216; });
    int before = 0;
    for (const std::uint8_t pixel : grey.bytes)
        before += evenLevels()[pixel];
    grey.diffuse();
    int after = 0;
    for (const std::uint8_t pixel : grey.bytes)
        after += evenLevels()[pixel];
    QVERIFY2(std::abs(after - before) <= 2 * levelStep, qPrintable(QString::number(after - before)));
}

void tst_Dither::sharesByHand_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("share");

    QTest::newRow("right: 7 / 16") << 3 << 1 << 262;
    QTest::newRow("down left: 3 / 16") << 1 << 2 << 112;
    QTest::newRow("down: 5 / 16, and 49 each by way of the right and of the left") << 2 << 2 << 187 + 49 + 49;
}

// A grey in black, at 600 of the 2048 places to the next level, becomes black; what it lacks lifts a
// neighbour.
void tst_Dither::sharesByHand()
{
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, share);

    LevelCurve eights;
    for (std::size_t grey = 0; grey < eights.size(); ++grey)
        eights[grey] = std::int16_t(grey * 8);
    const int lacking = levelStep / 2 - share - slowNoise(std::size_t(x), std::size_t(y));
    const int smallest = (lacking + 7) / 8;
    for (const int value : {smallest - 1, smallest}) {
        Grey grey(5, 4);
        grey.fill([](std::size_t, std::size_t) { return 0; });
        grey.at(2, 1) = 75;
        grey.at(std::size_t(x), std::size_t(y)) = static_cast<std::uint8_t>(value);
        diffuseTo16Levels(grey.picture(), 0, 0, 5, 4, eights);
        QCOMPARE(int(grey.at(2, 1)), 0);
        QCOMPARE(int(grey.at(std::size_t(x), std::size_t(y))), value == smallest ? 17 : 0);
    }
}

void tst_Dither::levelsTakeNoGhost_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");

    QTest::newRow("nearly white above white") << 255 << 254 << 254;
    QTest::newRow("nearly black above black") << 0 << 1 << 1;
    QTest::newRow("noise above a grey between") << 153 << 0 << 255;
}

// A strip full of errors, and a field of one level below it: none comes further than its first pixels.
void tst_Dither::levelsTakeNoGhost()
{
    QFETCH(int, level);
    QFETCH(int, least);
    QFETCH(int, most);

    std::mt19937 random(13);
    Grey grey(200, 60);
    grey.fill([&](std::size_t, std::size_t y) {
        return y < 8 ? unsigned(least) + random() % unsigned(most - least + 1) : unsigned(level);
    });
    grey.diffuse();
    for (std::size_t y = 8; y < grey.height; ++y) {
        for (std::size_t x = y < 12 ? 2 * std::size_t(solidRun) : 0; x < grey.width; ++x)
            QCOMPARE(int(grey.at(x, y)), level);
    }
}

// Pixels of a level that stand among others pass errors on: a fine pattern keeps its light.
void tst_Dither::patternsKeepTheirLight()
{
    for (const unsigned period : {2U, 3U}) {
        Grey grey(256, 256);
        double before = 0;
        grey.fill([&](std::size_t x, std::size_t y) {
            const unsigned value = (x + y) % period == 0 ? 247U : 255U;
            before += luminance(value);
            return value;
        });
        grey.diffuse();
        double after = 0;
        for (const std::uint8_t pixel : grey.bytes)
            after += luminance(pixel);
        const double pixels = double(grey.bytes.size());
        const double off = lightness(after / pixels) - lightness(before / pixels);
        QVERIFY2(std::abs(off) < 0.05, qPrintable(QString::number(off)));
    }
}

void tst_Dither::linesOnALevelLoseLittle()
{
    // Between them errors end.
    for (const auto &[line, ground] : {std::pair(100U, 0U), std::pair(240U, 0U), std::pair(15U, 255U)}) {
        for (const unsigned period : {5U, 6U, 20U}) {
            Grey grey(240, 240);
            double before = 0;
            grey.fill([&](std::size_t x, std::size_t) {
                const unsigned value = x % period == 2 ? line : ground;
                before += luminance(value);
                return value;
            });
            grey.diffuse();
            double after = 0;
            for (const std::uint8_t pixel : grey.bytes)
                after += luminance(pixel);
            const double pixels = double(grey.bytes.size());
            const double off = lightness(after / pixels) - lightness(before / pixels);
            QVERIFY2(std::abs(off) < 0.5, qPrintable(QString::number(off)));
        }
    }
}

// What the slow twin takes over from the product.
void tst_Dither::numbersStay()
{
    const std::array<std::pair<std::size_t, int>, 6> phases
        = {{{0, 0}, {1, 37056}, {2, 8577}, {31, 13877}, {32, 27346}, {1000, 27986}}};
    for (const auto &[row, phase] : phases)
        QCOMPARE(int(noisePhase(row)), phase);
    const std::array<std::pair<int, int>, 5> biases
        = {{{1, 319}, {512, 160}, {1024, 0}, {1025, -1}, {2047, -320}}};
    for (const auto &[fraction, bias] : biases)
        QCOMPARE(startBias(fraction), bias);
    QCOMPARE(int(noiseStep), 40503);
    QCOMPARE(noiseLimit, 432);
    QCOMPARE(solidRun, 3);
    QCOMPARE(toRight, 7);
    QCOMPARE(toDownLeft, 3);
    QCOMPARE(toDown, 5);
    QCOMPARE(toDownRight, 1);
}

void tst_Dither::gridStays()
{
    constexpr std::array<std::array<int, 12>, 6> levels = {{
        {1, 1, 3, 3, 3, 4, 4, 5, 5, 6, 6, 7},
        {2, 3, 3, 4, 4, 5, 6, 6, 7, 7, 8, 8},
        {4, 4, 5, 5, 6, 6, 7, 7, 8, 8, 9, 10},
        {5, 5, 6, 7, 7, 8, 8, 9, 9, 10, 10, 10},
        {6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 13},
        {7, 8, 9, 8, 10, 9, 11, 11, 11, 13, 12, 13},
    }};
    Grey grey(12, 6);
    grey.fill([](std::size_t x, std::size_t y) { return 20 + x * 9 + y * 21; });
    grey.diffuse();
    for (std::size_t y = 0; y < 6; ++y) {
        for (std::size_t x = 0; x < 12; ++x)
            QCOMPARE(int(grey.at(x, y)), levels[y][x] * 17);
    }
}

void tst_Dither::withoutPixels()
{
    diffuseTo16Levels({nullptr, 0, 0, 0, 1}, 0, 0, 0, 0);
    diffuseTo16Levels({nullptr, 10, 10, 10, 1}, 0, 0, 10, 10);

    std::uint8_t byte = 100;
    diffuseTo16Levels({&byte, 0, 1, 1, 1}, 0, 0, 1, 1);
    diffuseTo16Levels({&byte, 1, 0, 1, 1}, 0, 0, 1, 1);
    QCOMPARE(int(byte), 100);
}

void tst_Dither::colourPicturesStay()
{
    std::vector<std::uint8_t> bytes(30, 100);
    const std::vector<std::uint8_t> before = bytes;
    diffuseTo16Levels({bytes.data(), 5, 2, 15, 3}, 0, 0, 5, 2);
    QVERIFY(bytes == before);
}

QTEST_APPLESS_MAIN(tst_Dither)
#include "tst_dither.moc"
