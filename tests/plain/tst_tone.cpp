// Brightness, contrast and gamma.

#include "instruction_sets.h"
#include "slow_tone.h"
#include "tone.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

using namespace lindenreed::pixels;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

std::array<std::uint8_t, 256> adjusted(const Tone &tone)
{
    std::array<std::uint8_t, 256> greys;
    std::iota(greys.begin(), greys.end(), std::uint8_t(0));
    // A column: too narrow for vectors.
    adjustTone({greys.data(), 1, greys.size(), 1, 1}, tone);
    return greys;
}

} // namespace

Q_DECLARE_METATYPE(Tone)

class tst_Tone : public QObject
{
    Q_OBJECT

private slots:
    void changesNothing_data();
    void changesNothing();
    void values_data();
    void values();
    void risesEverywhere_data();
    void risesEverywhere();
    void panelIsMild();
    void colourChannelsAreAdjustedAlike();
    void paddingKeepsItsBytes_data();
    void paddingKeepsItsBytes();
    void sameAsTheSlowTwin_data();
    void sameAsTheSlowTwin();
    void eachGreyInEachLane();
    void withoutPixels();
    void unknownPixelSize_data();
    void unknownPixelSize();
};

void tst_Tone::changesNothing_data()
{
    QTest::addColumn<Tone>("tone");

    QTest::newRow("factors of 1") << Tone{1, 1, 1};
    QTest::newRow("default factors") << Tone{};
    QTest::newRow("not-a-number counts as 1") << Tone{notANumber, notANumber, notANumber};
}

void tst_Tone::changesNothing()
{
    QFETCH(Tone, tone);

    const auto greys = adjusted(tone);
    for (std::size_t grey = 0; grey < greys.size(); ++grey)
        QCOMPARE(std::size_t(greys[grey]), grey);
}

void tst_Tone::values_data()
{
    QTest::addColumn<Tone>("tone");
    QTest::addColumn<int>("grey");
    QTest::addColumn<int>("expected");

    QTest::newRow("half the brightness") << Tone{0.5, 1, 1} << 200 << 100;
    QTest::newRow("double brightness") << Tone{2, 1, 1} << 60 << 120;
    QTest::newRow("double brightness ends at white") << Tone{2, 1, 1} << 200 << 255;
    QTest::newRow("contrast leaves the middle: just below") << Tone{1, 1.02, 1} << 127 << 127;
    QTest::newRow("contrast leaves the middle: just above") << Tone{1, 1.02, 1} << 128 << 128;
    QTest::newRow("more contrast, light") << Tone{1, 1.5, 1} << 180 << 206;
    QTest::newRow("more contrast, dark") << Tone{1, 1.5, 1} << 75 << 49;
    QTest::newRow("more contrast ends at black") << Tone{1, 3, 1} << 40 << 0;
    QTest::newRow("less contrast lifts black") << Tone{1, 0.5, 1} << 0 << 64;
    QTest::newRow("gamma lightens the middle") << Tone{1, 1, 2} << 64 << 128;
    QTest::newRow("gamma below 1 darkens it") << Tone{1, 1, 0.5} << 128 << 64;
    QTest::newRow("gamma leaves black") << Tone{1, 1, 2} << 0 << 0;
    QTest::newRow("gamma leaves white") << Tone{1, 1, 2} << 255 << 255;
    QTest::newRow("brightness before contrast") << Tone{0.5, 2, 1} << 180 << 53;
    QTest::newRow("limited to white before contrast") << Tone{2, 0.5, 1} << 255 << 191;
    QTest::newRow("contrast before gamma") << Tone{1, 2, 2} << 96 << 128;

    QTest::newRow("brightness 0 is black") << Tone{0, 1, 1} << 255 << 0;
    QTest::newRow("negative brightness is 0") << Tone{-3, 1, 1} << 255 << 0;
    QTest::newRow("negative infinite brightness is 0") << Tone{-infinite, 1, 1} << 255 << 0;
    QTest::newRow("infinite brightness leaves black") << Tone{infinite, 1, 1} << 0 << 0;
    QTest::newRow("infinite brightness is 100, dark") << Tone{infinite, 1, 1} << 1 << 100;
    QTest::newRow("infinite brightness is 100, less dark") << Tone{infinite, 1, 1} << 3 << 255;
    QTest::newRow("contrast 0, black") << Tone{1, 0, 1} << 0 << 128;
    QTest::newRow("contrast 0, white") << Tone{1, 0, 1} << 255 << 128;
    QTest::newRow("negative contrast is 0") << Tone{1, -2, 1} << 10 << 128;
    QTest::newRow("infinite contrast, dark") << Tone{1, infinite, 1} << 126 << 0;
    QTest::newRow("infinite contrast, light") << Tone{1, infinite, 1} << 129 << 255;
    QTest::newRow("gamma 0 is black") << Tone{1, 1, 0} << 200 << 0;
    QTest::newRow("gamma 0 is 1/100, nearly white") << Tone{1, 1, 0} << 254 << 172;
    QTest::newRow("gamma 0 leaves white") << Tone{1, 1, 0} << 255 << 255;
    QTest::newRow("negative gamma is as 0") << Tone{1, 1, -1} << 200 << 0;
    QTest::newRow("infinite gamma leaves black") << Tone{1, 1, infinite} << 0 << 0;
    QTest::newRow("infinite gamma, nearly white") << Tone{1, 1, infinite} << 1 << 241;
    QTest::newRow("only the one that is no number counts as 1") << Tone{0.5, notANumber, 1} << 200 << 100;
}

void tst_Tone::values()
{
    QFETCH(Tone, tone);
    QFETCH(int, grey);
    QFETCH(int, expected);

    QCOMPARE(int(adjusted(tone)[std::size_t(grey)]), expected);
}

void tst_Tone::risesEverywhere_data()
{
    QTest::addColumn<Tone>("tone");

    QTest::newRow("darker") << Tone{0.7, 1, 1};
    QTest::newRow("harder") << Tone{1, 1.8, 1};
    QTest::newRow("lighter in the middle") << Tone{1, 1, 1.7};
    QTest::newRow("all three") << Tone{1.2, 0.8, 1.3};
    QTest::newRow("panel") << panelTone;
}

void tst_Tone::risesEverywhere()
{
    QFETCH(Tone, tone);

    const auto greys = adjusted(tone);
    QVERIFY(std::is_sorted(greys.begin(), greys.end()));
    QVERIFY(greys.front() < greys.back());
}

void tst_Tone::panelIsMild()
{
    const auto greys = adjusted(panelTone);
    QCOMPARE(int(greys[0]), 0);
    QCOMPARE(int(greys[255]), 255);
    QVERIFY(greys[100] > 100);
    for (int grey = 0; grey < 256; ++grey)
        QVERIFY(std::abs(greys[std::size_t(grey)] - grey) <= 12);
}

void tst_Tone::colourChannelsAreAdjustedAlike()
{
    std::vector<std::uint8_t> bytes = {0, 100, 200, 50, 60, 70, 10, 20, 30, 255, 254, 253};
    adjustTone({bytes.data(), 2, 2, 6, 3}, {0.5, 1, 1});
    const std::vector<std::uint8_t> expected = {0, 50, 100, 25, 30, 35, 5, 10, 15, 128, 127, 127};
    QCOMPARE(bytes, expected);
}

void tst_Tone::paddingKeepsItsBytes_data()
{
    QTest::addColumn<int>("bytesPerPixel");

    QTest::newRow("grey") << 1;
    QTest::newRow("colour") << 3;
}

void tst_Tone::paddingKeepsItsBytes()
{
    QFETCH(int, bytesPerPixel);

    constexpr std::size_t width = 5, height = 4, stride = 20;
    std::vector<std::uint8_t> bytes(stride * height, 77);
    adjustTone({bytes.data(), width, height, stride, bytesPerPixel}, {0, 1, 1});
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool isPixel = i % stride < width * std::size_t(bytesPerPixel);
        QCOMPARE(int(bytes[i]), isPixel ? 0 : 77);
    }
}

void tst_Tone::sameAsTheSlowTwin_data()
{
    QTest::addColumn<Tone>("tone");

    QTest::newRow("lighter in the middle") << Tone{1, 1, 1.7};
    QTest::newRow("harder") << Tone{1, 1.8, 1};
    QTest::newRow("mid grey") << Tone{1, 0, 1};
    QTest::newRow("all three") << Tone{1.2, 0.8, 1.3};
    QTest::newRow("white from near black on") << Tone{100, 1, 1};
}

void tst_Tone::sameAsTheSlowTwin()
{
    QFETCH(Tone, tone);

    // Rows of any length up to a few vectors, at any address, any distance apart.
    std::mt19937 random(3);
    for (std::size_t width = 1; width <= 300; ++width) {
        const std::size_t offset = random() % 64, height = 1 + random() % 4, stride = width + random() % 70;
        std::vector<std::uint8_t> bytes(offset + height * stride + random() % 64);
        for (std::uint8_t &byte : bytes)
            byte = static_cast<std::uint8_t>(random());
        std::vector<std::uint8_t> expected = bytes;
        adjustToneSlowly({expected.data() + offset, width, height, stride, 1}, tone);
        for (const auto set : instructionSets()) {
            const ForcedInstructionSet forced(set);
            std::vector<std::uint8_t> changed = bytes;
            adjustTone({changed.data() + offset, width, height, stride, 1}, tone);
            QVERIFY2(changed == expected,
                     qPrintable(QString::asprintf("width %zu, %s", width, instructionSetName(set).c_str())));
        }
    }
}

// Every grey, in every lane of a vector.
void tst_Tone::eachGreyInEachLane()
{
    constexpr std::size_t width = 263, height = 70, stride = 270;
    std::vector<std::uint8_t> bytes(stride * height);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i % stride + i / stride);
    std::vector<std::uint8_t> expected = bytes;
    adjustToneSlowly({expected.data(), width, height, stride, 1}, {1.1, 1.2, 0.9});
    for (const auto set : instructionSets()) {
        const ForcedInstructionSet forced(set);
        std::vector<std::uint8_t> changed = bytes;
        adjustTone({changed.data(), width, height, stride, 1}, {1.1, 1.2, 0.9});
        QVERIFY2(changed == expected, instructionSetName(set).c_str());
    }
}

void tst_Tone::withoutPixels()
{
    adjustTone({nullptr, 0, 0, 0, 1}, {0, 1, 1});
    adjustTone({nullptr, 10, 10, 10, 1}, {0, 1, 1});
    adjustTone({nullptr, 0, 0, 0, 3}, panelTone);

    std::uint8_t byte = 9;
    adjustTone({&byte, 0, 1, 1, 1}, {0, 1, 1});
    adjustTone({&byte, 1, 0, 1, 1}, {0, 1, 1});
    QCOMPARE(int(byte), 9);
}

void tst_Tone::unknownPixelSize_data()
{
    QTest::addColumn<int>("bytesPerPixel");

    QTest::newRow("none") << 0;
    QTest::newRow("negative") << -1;
    QTest::newRow("two") << 2;
    QTest::newRow("four: one of them may be opacity") << 4;
}

void tst_Tone::unknownPixelSize()
{
    QFETCH(int, bytesPerPixel);

    std::vector<std::uint8_t> bytes(16, 9);
    const std::vector<std::uint8_t> before = bytes;
    adjustTone({bytes.data(), 2, 2, 8, bytesPerPixel}, {0, 1, 1});
    QCOMPARE(bytes, before);
}

QTEST_APPLESS_MAIN(tst_Tone)
#include "tst_tone.moc"
