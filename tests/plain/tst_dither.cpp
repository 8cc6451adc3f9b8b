// Error diffusion, against a twin that is slow and plainly right.

#include "dither.h"
#include "instruction_sets.h"
#include "slow_diffusion.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <vector>

using namespace lindenreed::pixels;

namespace {

struct Rectangle
{
    std::size_t x = 0;
    std::size_t y = 0;
    std::size_t width = 0;
    std::size_t height = 0;
};

/// A grey picture with its own memory. Padding holds a mark of its own.
struct Grey
{
    static constexpr std::uint8_t paddingMark = 0xA5;

    Grey(std::size_t width_, std::size_t height_, std::size_t padding = 0)
        : width(width_)
        , height(height_)
        , stride(width_ + padding)
        , bytes(stride * height_, paddingMark)
    {
    }

    std::uint8_t &at(std::size_t x, std::size_t y) { return bytes[y * stride + x]; }

    template <typename Source>
    void fill(Source source)
    {
        for (std::size_t y = 0; y < height; ++y) {
            for (std::size_t x = 0; x < width; ++x)
                at(x, y) = static_cast<std::uint8_t>(source(x, y));
        }
    }

    Picture picture() { return {bytes.data(), width, height, stride, 1}; }

    void diffuse() { diffuseTo16Levels(picture(), 0, 0, width, height); }

    void diffuse(const Rectangle &area)
    {
        diffuseTo16Levels(picture(), area.x, area.y, area.width, area.height);
    }

    std::size_t width;
    std::size_t height;
    std::size_t stride;
    std::vector<std::uint8_t> bytes;
};

void diffuseSlowly(Grey &grey, const Rectangle &area)
{
    lindenreed::pixels::diffuseSlowly(grey.picture(), area.x, area.y, area.width, area.height);
}

} // namespace

class tst_dither : public QObject
{
    Q_OBJECT

private slots:
    void sameAsTheSlowTwin_data();
    void sameAsTheSlowTwin();
    void onlyTheRectangle_data();
    void onlyTheRectangle();
    void rectangleOutside_data();
    void rectangleOutside();
    void paddingKeepsItsBytes();
    void greysOfThePanelStay();
    void panelGreysSideBySideStay();
    void flatFieldsKeepTheirLight();
    void aLineKeepsItsSum_data();
    void aLineKeepsItsSum();
    void sharesByHand_data();
    void sharesByHand();
    void whiteTakesNoGhost();
    void withoutPixels();
    void colourPicturesStay();
};

void tst_dither::sameAsTheSlowTwin_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    QTest::newRow("one pixel") << 1 << 1;
    QTest::newRow("one column") << 1 << 37;
    QTest::newRow("one row") << 61 << 1;
    QTest::newRow("two columns") << 2 << 29;
    QTest::newRow("two rows") << 29 << 2;
    QTest::newRow("exactly one short band of rows") << 100 << 16;
    QTest::newRow("one short band and a row") << 100 << 17;
    QTest::newRow("exactly one long band of rows") << 150 << 32;
    QTest::newRow("one long band and a row") << 150 << 33;
    QTest::newRow("narrower than a block") << 15 << 70;
    QTest::newRow("as wide as a block") << 16 << 70;
    QTest::newRow("as wide as a short band is steep") << 31 << 70;
    QTest::newRow("as wide as a long band is steep") << 63 << 70;
    QTest::newRow("one wider than a long band is steep") << 64 << 70;
    QTest::newRow("one block inside") << 80 << 70;
    QTest::newRow("odd sizes") << 211 << 157;
    QTest::newRow("panel of six inches") << 758 << 1024;
}

void tst_dither::sameAsTheSlowTwin()
{
    QFETCH(int, width);
    QFETCH(int, height);

    std::mt19937 random(static_cast<unsigned>(width * 4099 + height));
    const std::vector<std::function<unsigned(std::size_t, std::size_t)>> sources = {
        [&](std::size_t, std::size_t) { return random() % 256; },
        [&](std::size_t, std::size_t) { return random() % 24; },
        [&](std::size_t, std::size_t) { return 232 + random() % 24; },
        [&](std::size_t, std::size_t) { return random() % 2 ? 255U : 247U; },
        [&](std::size_t, std::size_t) { return random() % 2 ? 0U : 8U; },
        [](std::size_t x, std::size_t y) { return unsigned(x * 3 + y) % 256; },
    };
    const bool isLarge = width > 500; // and slow where it is checked for errors
    for (const auto &source : sources) {
        if (isLarge && &source != &sources.front())
            continue;
        for (const std::size_t padding : {0U, 5U}) {
            if (isLarge && padding == 0)
                continue;
            Grey fast{std::size_t(width), std::size_t(height), padding};
            fast.fill(source);
            const Grey original = fast;
            Grey slow = fast;
            diffuseSlowly(slow, {0, 0, slow.width, slow.height});
            for (const auto set : instructionSets()) {
                const ForcedInstructionSet forced(set);
                fast = original;
                fast.diffuse();
                QVERIFY2(fast.bytes == slow.bytes, instructionSetName(set).c_str());
            }
        }
    }
}

void tst_dither::onlyTheRectangle_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    QTest::newRow("inside") << 7 << 5 << 40 << 30;
    QTest::newRow("over the right side") << 60 << 5 << 100 << 30;
    QTest::newRow("over the lower side") << 7 << 40 << 40 << 100;
    QTest::newRow("over the corner, sums that wrap") << 7 << 5 << -1 << -1;
    QTest::newRow("the last pixel") << 80 << 52 << 9 << 9;
}

void tst_dither::onlyTheRectangle()
{
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, width);
    QFETCH(int, height);
    // A negative number stands for the largest size there is.
    const Rectangle area{std::size_t(x), std::size_t(y), std::size_t(width), std::size_t(height)};

    std::mt19937 random(7);
    Grey fast(81, 53, 3);
    fast.fill([&](std::size_t, std::size_t) { return random() % 256; });
    const Grey before = fast;
    Grey slow = fast;
    fast.diffuse(area);
    diffuseSlowly(slow, area);
    QVERIFY(fast.bytes == slow.bytes);
    QVERIFY(fast.bytes != before.bytes);
    QCOMPARE(fast.at(0, 0), before.bytes[0]);
}

void tst_dither::rectangleOutside_data()
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

void tst_dither::rectangleOutside()
{
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, width);
    QFETCH(int, height);

    Grey grey(20, 10);
    grey.fill([](std::size_t, std::size_t) { return 100; });
    const Grey before = grey;
    grey.diffuse({std::size_t(x), std::size_t(y), std::size_t(width), std::size_t(height)});
    QVERIFY(grey.bytes == before.bytes);
}

void tst_dither::paddingKeepsItsBytes()
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

void tst_dither::greysOfThePanelStay()
{
    for (unsigned level = 0; level < 16; ++level) {
        Grey grey(64, 40, 2);
        grey.fill([&](std::size_t, std::size_t) { return level * 17; });
        const Grey before = grey;
        grey.diffuse();
        QVERIFY(grey.bytes == before.bytes);
    }
}

void tst_dither::panelGreysSideBySideStay()
{
    std::mt19937 random(3);
    Grey grey(97, 61);
    grey.fill([&](std::size_t, std::size_t) { return random() % 16 * 17; });
    const Grey before = grey;
    grey.diffuse();
    QVERIFY(grey.bytes == before.bytes);
}

void tst_dither::flatFieldsKeepTheirLight()
{
    for (unsigned value = 0; value < 256; ++value) {
        Grey grey(256, 256);
        grey.fill([&](std::size_t, std::size_t) { return value; });
        grey.diffuse();
        double light = 0;
        for (const std::uint8_t pixel : grey.bytes) {
            QVERIFY(std::abs(int(pixel) - int(value)) < 17 + 9); // its neighbours, or the next beyond
            light += luminance(pixel);
        }
        const double off = lightness(light / double(grey.bytes.size())) - lightness(luminance(value));
        QVERIFY2(std::abs(off) < 0.05, qPrintable(QString::number(value) + u' ' + QString::number(off)));
    }
}

void tst_dither::aLineKeepsItsSum_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    QTest::newRow("a row") << 300 << 1;
    QTest::newRow("a column") << 1 << 300;
    QTest::newRow("two columns") << 2 << 150;
    QTest::newRow("a picture") << 60 << 50;
}

// All that is lost is the error of the very last pixel; what the first row starts with comes to as little.
void tst_dither::aLineKeepsItsSum()
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

void tst_dither::sharesByHand_data()
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
void tst_dither::sharesByHand()
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

void tst_dither::whiteTakesNoGhost()
{
    // A bright strip that asks for more than white can give, and white below it.
    Grey grey(200, 60);
    grey.fill([](std::size_t, std::size_t y) { return y < 8 ? 254 : 255; });
    grey.diffuse();
    for (std::size_t y = 10; y < grey.height; ++y) {
        for (std::size_t x = 0; x < grey.width; ++x)
            QVERIFY(grey.at(x, y) >= 238);
    }
}

void tst_dither::withoutPixels()
{
    diffuseTo16Levels({nullptr, 0, 0, 0, 1}, 0, 0, 0, 0);
    diffuseTo16Levels({nullptr, 10, 10, 10, 1}, 0, 0, 10, 10);

    std::uint8_t byte = 100;
    diffuseTo16Levels({&byte, 0, 1, 1, 1}, 0, 0, 1, 1);
    diffuseTo16Levels({&byte, 1, 0, 1, 1}, 0, 0, 1, 1);
    QCOMPARE(int(byte), 100);
}

void tst_dither::colourPicturesStay()
{
    std::vector<std::uint8_t> bytes(30, 100);
    const std::vector<std::uint8_t> before = bytes;
    diffuseTo16Levels({bytes.data(), 5, 2, 15, 3}, 0, 0, 5, 2);
    QVERIFY(bytes == before);
}

QTEST_APPLESS_MAIN(tst_dither)
#include "tst_dither.moc"
