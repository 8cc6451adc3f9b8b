// Error diffusion, with each instruction set, against a twin that is slow and plainly right.

#include "grey_picture.h"
#include "instruction_sets.h"
#include "slow_diffusion.h"

#include <QTest>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

using namespace lindenreed::pixels;

namespace {

using Random = std::mt19937;

const LevelCurve measuredByGamma = curveFor(luminancesByGamma(0.009, 0.65, 1.42));

/// Levels that one panel gave, neither evenly nor by any formula.
const LevelCurve measuredOneByOne = curveFor({0.021, 0.023, 0.031, 0.036, 0.049, 0.071, 0.083, 0.112, 0.139,
                                              0.185, 0.224, 0.281, 0.302, 0.377, 0.431, 0.47});

/// All over the range, where much is cut off, and with runs of one level, where errors end.
const std::vector<unsigned (*)(Random &)> sources = {
    [](Random &random) -> unsigned { return random() % 256; },
    [](Random &random) -> unsigned { return random() % 24; },
    [](Random &random) -> unsigned { return 232 + random() % 24; },
    [](Random &random) -> unsigned { return random() % 2 ? 255 : 247; },
    [](Random &random) -> unsigned { return random() % 2 ? 0 : 8; },
    [](Random &random) -> unsigned { return random() % 9 ? 255 : 230; },
    [](Random &random) -> unsigned { return random() % 9 ? 0 : 30; },
};

/// The first instruction set that gives other bytes than the twin, rows and padding alike; or nothing.
std::string differingSet(const Grey &original, const Rectangle &area, const LevelCurve &curve)
{
    Grey slow = original;
    diffuseSlowly(slow.picture(), area.x, area.y, area.width, area.height, curve);
    for (const auto set : instructionSets()) {
        const ForcedInstructionSet forced(set);
        Grey fast = original;
        fast.diffuse(area, curve);
        if (fast.bytes != slow.bytes)
            return instructionSetName(set);
    }
    return {};
}

const std::vector<LevelCurve> curves = {evenLevels(), measuredByGamma, measuredOneByOne};

} // namespace

class tst_DitherTwin : public QObject
{
    Q_OBJECT

private slots:
    void anySmallSize();
    void largerSizes_data();
    void largerSizes();
    void rectangles_data();
    void rectangles();
    void anyRectangle();
};

void tst_DitherTwin::anySmallSize()
{
    Random random(1);
    std::size_t turn = 0;
    for (std::size_t width = 1; width <= 40; ++width) {
        for (std::size_t height = 1; height <= 40; ++height) {
            Grey grey(width, height, random() % 9);
            const auto source = sources[turn % sources.size()];
            const LevelCurve &curve = curves[turn % curves.size()];
            ++turn;
            grey.fill([&](std::size_t, std::size_t) { return source(random); });
            const std::string set = differingSet(grey, {0, 0, width, height}, curve);
            QVERIFY2(set.empty(), qPrintable(QString::asprintf("%zu x %zu, %s", width, height, set.c_str())));
        }
    }
}

void tst_DitherTwin::largerSizes_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    QTest::newRow("one column") << 1 << 300;
    QTest::newRow("two columns") << 2 << 300;
    QTest::newRow("one row") << 300 << 1;
    QTest::newRow("two rows") << 300 << 2;
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
    QTest::newRow("wider than 16-bit positions") << 33'001 << 3;
    QTest::newRow("panel of six inches") << 758 << 1024;
}

void tst_DitherTwin::largerSizes()
{
    QFETCH(int, width);
    QFETCH(int, height);

    Random random(static_cast<unsigned>(width * 4099 + height));
    const bool isLarge = width > 500; // and slow where it is checked for errors
    for (std::size_t i = 0; i < (isLarge ? 1 : sources.size() * curves.size()); ++i) {
        Grey grey(std::size_t(width), std::size_t(height), random() % 70);
        grey.fill([&](std::size_t, std::size_t) { return sources[i % sources.size()](random); });
        const std::string set
            = differingSet(grey, {0, 0, grey.width, grey.height}, curves[i % curves.size()]);
        QVERIFY2(set.empty(), set.c_str());
    }
}

void tst_DitherTwin::rectangles_data()
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

void tst_DitherTwin::rectangles()
{
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, width);
    QFETCH(int, height);
    // A negative number stands for the largest size there is.
    const Rectangle area{std::size_t(x), std::size_t(y), std::size_t(width), std::size_t(height)};

    Random random(7);
    Grey grey(81, 53, 3);
    grey.fill([&](std::size_t, std::size_t) { return random() % 256; });
    const std::string set = differingSet(grey, area, evenLevels());
    QVERIFY2(set.empty(), set.c_str());
    const Grey before = grey;
    grey.diffuse(area);
    QVERIFY(grey.bytes != before.bytes);
    QCOMPARE(grey.at(0, 0), before.bytes[0]);
}

void tst_DitherTwin::anyRectangle()
{
    Random random(2);
    for (std::size_t i = 0; i < 200; ++i) {
        Grey grey(1 + random() % 130, 1 + random() % 90, random() % 70);
        grey.fill([&](std::size_t, std::size_t) { return random() % 256; });
        const std::size_t x = random() % grey.width;
        const std::size_t y = random() % grey.height;
        const Rectangle area{x, y, 1 + random() % (grey.width - x), 1 + random() % (grey.height - y)};
        const std::string set = differingSet(grey, area, curves[i % curves.size()]);
        QVERIFY2(set.empty(),
                 qPrintable(QString::asprintf("%zu x %zu at %zu, %zu, stride %zu, %s", area.width,
                                              area.height, x, y, grey.stride, set.c_str())));
    }
}

QTEST_APPLESS_MAIN(tst_DitherTwin)
#include "tst_dither_twin.moc"
