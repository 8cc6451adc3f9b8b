// The SDK's operations on pictures in memory.

#include <dither.h>
#include <facts.h>
#include <panel_levels.h>
#include <slateview.h>
#include <slateview_testing.h>

#include <journal_lines.h>

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();
constexpr unsigned char untouched = 0xa7; ///< no multiple of 17: no panel grey

/// 5 rows of 20 bytes, 12 of which belong to the picture: 12 grey or 4 coloured pixels.
std::vector<unsigned char> canvas()
{
    std::vector<unsigned char> bytes(100, untouched);
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 12; ++x)
            bytes[std::size_t(y * 20 + x)] = static_cast<unsigned char>(5 + x * 20 + y);
    }
    return bytes;
}

bool paddingIsUntouched(const std::vector<unsigned char> &bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % 20 >= 12 && bytes[i] != untouched)
            return false;
    }
    return true;
}

/// How light a thumbnail of one grey is, shown by levels of these luminances.
double thumbnailLightness(int grey, const lindenreed::pixels::Luminances &levels)
{
    constexpr int side = 200;
    std::vector<unsigned char> field(std::size_t(side * side), static_cast<unsigned char>(grey));
    adjustAreaDefault(field.data(), side, side, side);
    QuickFloyd16Dither(field.data(), side, 0, 0, side, side);
    double light = 0;
    for (const unsigned char pixel : field)
        light += levels[pixel / 17];
    return lindenreed::pixels::lightness(light / double(field.size()));
}

/// How light a show's picture of one grey is in inverted mode: it comes inverted, and so goes to the screen.
double invertedLightness(int grey, const lindenreed::pixels::Luminances &levels)
{
    constexpr int side = 200;
    std::vector<unsigned char> field(std::size_t(side * side), static_cast<unsigned char>(255 - grey));
    QuickFloyd16Dither(field.data(), side, 0, 0, side, side);
    double light = 0;
    for (const unsigned char pixel : field)
        light += levels[15 - pixel / 17];
    return lindenreed::pixels::lightness(light / double(field.size()));
}

} // namespace

class tst_SdkPictures : public QObject
{
    Q_OBJECT

private slots:
    void tone_data();
    void tone();
    void defaultTone();
    void toneOfColour();
    void refusedAreas_data();
    void refusedAreas();
    void factorsWithoutEnd_data();
    void factorsWithoutEnd();
    void dither();
    void ditherForThePanel();
    void thumbnailOnAMeasuredPanel();
    void thumbnailOnAnyPanel();
    void thumbnailMadeWhileInverted();
    void invertedOnEvenLevels();
    void invertedOnAMeasuredPanel();
    void ditherRectangle_data();
    void ditherRectangle();
};

void tst_SdkPictures::tone_data()
{
    QTest::addColumn<double>("brightness");
    QTest::addColumn<double>("contrast");
    QTest::addColumn<double>("gamma");
    QTest::addColumn<bool>("changes");

    QTest::newRow("ones change nothing") << 1.0 << 1.0 << 1.0 << false;
    QTest::newRow("brightness") << 1.5 << 1.0 << 1.0 << true;
    QTest::newRow("contrast") << 1.0 << 1.5 << 1.0 << true;
    QTest::newRow("gamma") << 1.0 << 1.0 << 1.5 << true;
    QTest::newRow("zeros are passed on") << 0.0 << 0.0 << 0.0 << true;
}

void tst_SdkPictures::tone()
{
    QFETCH(double, brightness);
    QFETCH(double, contrast);
    QFETCH(double, gamma);
    QFETCH(bool, changes);

    DeviceForTest device;
    std::vector<unsigned char> bytes = canvas();
    adjustAreaWithBrightnessContrastGamma(bytes.data(), 20, 12, 5, brightness, contrast, gamma);
    QCOMPARE(bytes != canvas(), changes);
    QVERIFY(paddingIsUntouched(bytes));
    QCOMPARE(
        journalLines(device),
        QByteArrayList({"adjustAreaWithBrightnessContrastGamma(20, 12, 5, " + QByteArray::number(brightness)
                        + ", " + QByteArray::number(contrast) + ", " + QByteArray::number(gamma) + ")"}));
}

void tst_SdkPictures::defaultTone()
{
    DeviceForTest device;
    std::vector<unsigned char> bytes = canvas();
    adjustAreaDefault(bytes.data(), 20, 12, 5);
    QVERIFY(bytes != canvas());
    QVERIFY(paddingIsUntouched(bytes));
    QCOMPARE(journalLines(device), QByteArrayList({"adjustAreaDefault(20, 12, 5)"}));
}

void tst_SdkPictures::toneOfColour()
{
    DeviceForTest device;
    // 4 pixels are 4 bytes of a grey row and 12 of a coloured one: how far the change reaches tells which it
    // was.
    std::vector<unsigned char> grey = canvas();
    adjustAreaWithBrightnessContrastGamma(grey.data(), 20, 4, 5, 1.5, 1.0, 1.0);
    QCOMPARE(grey[11], canvas()[11]);
    device.setColourMask(1);
    std::vector<unsigned char> coloured = canvas();
    adjustAreaWithBrightnessContrastGamma(coloured.data(), 20, 4, 5, 0.5, 1.0, 1.0);
    QVERIFY(coloured[11] != canvas()[11]);
    QVERIFY(paddingIsUntouched(coloured));
    // Seven pixels of three bytes do not fit a row of twenty.
    coloured = canvas();
    adjustAreaWithBrightnessContrastGamma(coloured.data(), 20, 7, 5, 0.5, 1.0, 1.0);
    QVERIFY(coloured == canvas());
}

void tst_SdkPictures::refusedAreas_data()
{
    QTest::addColumn<int>("bytesPerLine");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    QTest::newRow("no width") << 20 << 0 << 5;
    QTest::newRow("no height") << 20 << 12 << 0;
    QTest::newRow("negative width") << 20 << -12 << 5;
    QTest::newRow("negative height") << 20 << 12 << -5;
    QTest::newRow("smallest numbers") << smallest << smallest << smallest;
    QTest::newRow("rows that overlap") << 11 << 12 << 5;
    QTest::newRow("no row length") << 0 << 12 << 5;
    QTest::newRow("negative row length") << -20 << 12 << 5;
    QTest::newRow("width beyond all rows") << 20 << largest << 5;
}

void tst_SdkPictures::refusedAreas()
{
    QFETCH(int, bytesPerLine);
    QFETCH(int, width);
    QFETCH(int, height);

    DeviceForTest device;
    for (const int mask : {0, 1}) {
        device.setColourMask(mask);
        std::vector<unsigned char> bytes = canvas();
        adjustAreaDefault(bytes.data(), bytesPerLine, width, height);
        adjustAreaWithBrightnessContrastGamma(bytes.data(), bytesPerLine, width, height, 0.5, 0.5, 0.5);
        QVERIFY(bytes == canvas());
    }
    adjustAreaDefault(nullptr, 20, 12, 5);
    adjustAreaWithBrightnessContrastGamma(nullptr, 20, 12, 5, 0.5, 0.5, 0.5);
    adjustAreaDefault(nullptr, 0, 0, 0);
    adjustAreaWithBrightnessContrastGamma(nullptr, 0, 0, 0, 0.5, 0.5, 0.5);
    QuickFloyd16Dither(nullptr, 0, 0, 0, 0, 0);
    QCOMPARE(device.calls().size(), 9); // all in the journal
}

void tst_SdkPictures::factorsWithoutEnd_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("countsAs");
    QTest::newRow("no number") << std::nan("") << 1.0;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 100.0;
    QTest::newRow("infinite below") << -std::numeric_limits<double>::infinity() << 0.0;
}

void tst_SdkPictures::factorsWithoutEnd()
{
    QFETCH(double, factor);
    QFETCH(double, countsAs);
    DeviceForTest device;
    for (int which = 0; which < 3; ++which) {
        const auto adjusted = [&](double value) {
            double factors[3] = {0.5, 0.5, 0.5};
            factors[which] = value;
            std::vector<unsigned char> bytes = canvas();
            adjustAreaWithBrightnessContrastGamma(bytes.data(), 20, 12, 5, factors[0], factors[1],
                                                  factors[2]);
            return bytes;
        };
        QVERIFY(adjusted(factor) == adjusted(countsAs));
        QVERIFY(adjusted(factor) != canvas());
    }
}

void tst_SdkPictures::dither()
{
    DeviceForTest device;
    std::vector<unsigned char> bytes = canvas();
    QuickFloyd16Dither(bytes.data(), 20, 0, 0, 12, 5);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % 20 < 12)
            QCOMPARE(bytes[i] % 17, 0);
    }
    QVERIFY(paddingIsUntouched(bytes));
    QCOMPARE(journalLines(device), QByteArrayList({"QuickFloyd16Dither(20, 0, 0, 12, 5)"}));
}

void tst_SdkPictures::ditherForThePanel()
{
    DeviceForTest device;
    const auto paper = lindenreed::pixels::luminancesByGamma(0.01, 0.5, 1.4);
    setLevelLuminances(paper);
    std::vector<unsigned char> bytes = canvas();
    QuickFloyd16Dither(bytes.data(), 20, 0, 0, 12, 5);
    setLevelLuminances({});

    std::vector<unsigned char> expected = canvas();
    lindenreed::pixels::diffuseTo16Levels({expected.data(), 12, 5, 20, 1}, 0, 0, 12, 5,
                                          lindenreed::pixels::curveFor(paper));
    QVERIFY(bytes == expected);
    std::vector<unsigned char> even = canvas();
    QuickFloyd16Dither(even.data(), 20, 0, 0, 12, 5);
    QVERIFY(bytes != even);
}

// The default tone would make greys up to 2.5 L* too light, on top of levels that are right.
void tst_SdkPictures::thumbnailOnAMeasuredPanel()
{
    DeviceForTest device;
    const auto paper = lindenreed::pixels::luminancesByGamma(0.009, 0.65, 1.42);
    setLevelLuminances(paper);
    double tooLight = 0; // at worst, of greys with the tone that other panels get
    for (int grey = 0; grey < 256; ++grey) {
        const double wanted = lindenreed::pixels::wantedLightness(grey, paper);
        const double off = thumbnailLightness(grey, paper) - wanted;
        QVERIFY2(std::abs(off) < 0.1, qPrintable(u"%1 %2"_s.arg(grey).arg(off)));
        auto toned = static_cast<unsigned char>(grey);
        lindenreed::pixels::adjustTone({&toned, 1, 1, 1, 1}, lindenreed::pixels::panelTone);
        tooLight = std::max(tooLight, thumbnailLightness(toned, paper) - wanted);
    }
    setLevelLuminances({});
    QVERIFY2(std::abs(tooLight - 2.5) < 0.1, qPrintable(QString::number(tooLight)));
}

// Without a measurement the tone makes up for part of what such a panel is too dark. Only the lightest greys,
// where it is not too dark by much, come out a little too light.
void tst_SdkPictures::thumbnailOnAnyPanel()
{
    DeviceForTest device;
    const auto paper = lindenreed::pixels::luminancesByGamma(0.009, 0.65, 1.42);
    for (int grey = 85; grey <= 221; grey += 17) {
        const double lacking
            = lindenreed::pixels::wantedLightness(grey, paper) - thumbnailLightness(grey, paper);
        const double without = lindenreed::pixels::wantedLightness(grey, paper)
            - lindenreed::pixels::lightness(paper[std::size_t(grey / 17)]);
        QVERIFY2(lacking > 0 && lacking < without - 1, qPrintable(u"%1 %2"_s.arg(grey).arg(lacking)));
    }
    double lacking = 0;
    for (int grey = 0; grey < 256; ++grey) {
        const double off = thumbnailLightness(grey, paper) - lindenreed::pixels::wantedLightness(grey, paper);
        QVERIFY2(off < (grey < 236 ? 0.1 : 1.6), qPrintable(u"%1 %2"_s.arg(grey).arg(off)));
        lacking -= off / 256;
    }
    // A quarter less than without the tone.
    QVERIFY2(std::abs(lacking - 0.75 * 7.9) < 0.1, qPrintable(QString::number(lacking)));
}

// Its dots are mixed for the levels that they would be turned into, and it is inverted as a whole afterwards.
void tst_SdkPictures::thumbnailMadeWhileInverted()
{
    DeviceForTest device;
    const auto paper = lindenreed::pixels::luminancesByGamma(0.009, 0.65, 1.42);
    lindenreed::pixels::Luminances even;
    for (std::size_t level = 0; level < even.size(); ++level)
        even[level] = lindenreed::pixels::luminance(double(level) * 17);

    const auto lightnesses = [](bool inverted, const lindenreed::pixels::Luminances &levels) {
        facts().inverted = inverted;
        std::vector<double> all;
        for (int grey = 0; grey < 256; ++grey)
            all.push_back(thumbnailLightness(grey, levels));
        return all;
    };
    setLevelLuminances(paper);
    double lacking = 0;
    for (int grey = 0; const double lightness : lightnesses(true, paper))
        lacking += (lindenreed::pixels::wantedLightness(grey++, paper) - lightness) / 256;
    setLevelLuminances({});
    QVERIFY2(std::abs(lacking - 15.7) < 0.1, qPrintable(QString::number(lacking)));

    const std::vector<double> upright = lightnesses(false, even);
    const std::vector<double> inverted = lightnesses(true, even);
    for (std::size_t grey = 0; grey < 256; ++grey)
        QVERIFY(std::abs(upright[grey] - inverted[grey]) < 1);
}

void tst_SdkPictures::invertedOnEvenLevels()
{
    DeviceForTest device;
    facts().inverted = true;
    lindenreed::pixels::Luminances levels;
    for (std::size_t level = 0; level < levels.size(); ++level)
        levels[level] = lindenreed::pixels::luminance(double(level) * 17);
    for (int grey = 0; grey < 256; grey += 5) {
        const double off = invertedLightness(grey, levels)
            - lindenreed::pixels::lightness(lindenreed::pixels::luminance(grey));
        QVERIFY2(std::abs(off) < 0.1, qPrintable(u"%1 %2"_s.arg(grey).arg(off)));
    }
}

void tst_SdkPictures::invertedOnAMeasuredPanel()
{
    DeviceForTest device;
    facts().inverted = true;
    const auto paper = lindenreed::pixels::luminancesByGamma(0.009, 0.65, 1.42);
    setLevelLuminances(paper);
    for (int grey = 0; grey < 256; grey += 5) {
        const double off = invertedLightness(grey, paper) - lindenreed::pixels::wantedLightness(grey, paper);
        QVERIFY2(std::abs(off) < 0.1, qPrintable(u"%1 %2"_s.arg(grey).arg(off)));
    }
    setLevelLuminances({});
}

void tst_SdkPictures::ditherRectangle_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<QRect>("touched");

    QTest::newRow("inside") << 2 << 1 << 3 << 2 << QRect(2, 1, 3, 2);
    QTest::newRow("reaching out to the left and above") << -3 << -2 << 6 << 4 << QRect(0, 0, 3, 2);
    QTest::newRow("reaching beyond the row") << 15 << 0 << 50 << 2 << QRect(15, 0, 5, 2);
    QTest::newRow("widest") << 0 << 0 << largest << 1 << QRect(0, 0, 20, 1);
    QTest::newRow("outside to the left") << -9 << 0 << 9 << 5 << QRect();
    QTest::newRow("outside above") << 0 << -5 << 12 << 5 << QRect();
    QTest::newRow("outside to the right") << 20 << 0 << 4 << 5 << QRect();
    QTest::newRow("no width") << 0 << 0 << 0 << 5 << QRect();
    QTest::newRow("no height") << 0 << 0 << 12 << 0 << QRect();
    QTest::newRow("negative width") << 4 << 0 << -2 << 5 << QRect();
    QTest::newRow("negative height") << 4 << 4 << 2 << -3 << QRect();
    QTest::newRow("smallest numbers") << smallest << smallest << smallest << smallest << QRect();
    QTest::newRow("sums beyond an int") << largest << 0 << largest << 5 << QRect();
}

void tst_SdkPictures::ditherRectangle()
{
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(QRect, touched);

    DeviceForTest device;
    std::vector<unsigned char> bytes(100, untouched);
    QuickFloyd16Dither(bytes.data(), 20, x, y, width, height);
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 20; ++column) {
            const int value = bytes[std::size_t(row * 20 + column)];
            if (touched.contains(column, row))
                QCOMPARE(value % 17, 0);
            else
                QCOMPARE(value, int(untouched));
        }
    }
    QuickFloyd16Dither(nullptr, 20, 0, 0, 12, 5);
    QuickFloyd16Dither(bytes.data(), 0, 0, 0, 12, 5);
    QuickFloyd16Dither(bytes.data(), -20, 0, 0, 12, 5);
    QCOMPARE(device.calls({"QuickFloyd16Dither"}).size(), 4);
}

QTEST_GUILESS_MAIN(tst_SdkPictures)
#include "tst_sdk_pictures.moc"
