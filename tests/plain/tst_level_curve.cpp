// What greys mean on a panel: as light, by its profile.

#include "dither.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace lindenreed::pixels;

namespace {

/// A real panel: it is darker than its codes say, and its white is grey.
const Luminances paper = luminancesByGamma(0.009, 0.65, 1.42);

/// How light a field of one grey is, dithered by `curve` and shown by levels of these luminances.
double shownLightness(std::uint8_t grey, const LevelCurve &curve, const Luminances &levels)
{
    constexpr std::size_t side = 256;
    std::vector<std::uint8_t> field(side * side, grey);
    diffuseTo16Levels({field.data(), side, side, side, 1}, 0, 0, side, side, curve);
    double light = 0;
    for (const std::uint8_t pixel : field)
        light += levels[pixel / 17];
    return lightness(light / double(field.size()));
}

} // namespace

class tst_LevelCurve : public QObject
{
    Q_OBJECT

private slots:
    void evenLevelsStay();
    void risesEverywhere();
    void levelsAreTold();
    void knownLuminances_data();
    void knownLuminances();
    void byGamma();
    void evenLevelsAreTooDarkOnPaper();
    void profileIsTrueOnPaper();
    void blackAndWhiteAreThePanels();
    void whiteIsThePanelsOwn();
    void shadowsKeepTheirDifferences();
};

void tst_LevelCurve::evenLevelsStay()
{
    for (std::size_t level = 0; level < 16; ++level)
        QCOMPARE(int(evenLevels()[level * 17]), int(level) * levelStep);
}

void tst_LevelCurve::risesEverywhere()
{
    const LevelCurve onPaper = curveFor(paper);
    for (const LevelCurve &curve : {evenLevels(), onPaper})
        QVERIFY(std::adjacent_find(curve.begin(), curve.end(), std::greater_equal<>()) == curve.end());
}

void tst_LevelCurve::levelsAreTold()
{
    const LevelCurve onPaper = curveFor(paper);
    for (const LevelCurve &curve : {evenLevels(), onPaper, mirrored(evenLevels()), mirrored(onPaper)}) {
        for (const int place : curve) {
            const int beyond = place % levelStep;
            QVERIFY(beyond == 0 || (beyond % 2 == 1 && beyond > 1 && beyond < levelStep - 1));
        }
    }
}

void tst_LevelCurve::knownLuminances_data()
{
    QTest::addColumn<double>("grey");
    QTest::addColumn<double>("light");
    QTest::addColumn<double>("lightness");

    QTest::newRow("black") << 0.0 << 0.0 << 0.0;
    QTest::newRow("in the linear part") << 10.0 << 0.0030353 << 2.7418;
    QTest::newRow("the usual middle") << 119.0 << 0.18447 << 50.034;
    QTest::newRow("white") << 255.0 << 1.0 << 100.0;
}

void tst_LevelCurve::knownLuminances()
{
    QFETCH(double, grey);
    QFETCH(double, light);
    QFETCH(double, lightness);

    QVERIFY(std::abs(luminance(grey) - light) < 0.00001);
    QVERIFY(std::abs(lindenreed::pixels::lightness(light) - lightness) < 0.001);
    QVERIFY(std::abs(luminanceOfLightness(lightness) - light) < 0.00001);
}

void tst_LevelCurve::byGamma()
{
    QVERIFY(std::abs(paper.front() - 0.009) < 1e-9);
    QVERIFY(std::abs(paper.back() - 0.65) < 1e-9);
    const double middle = lightness(0.009) + std::pow(0.4, 1.42) * (lightness(0.65) - lightness(0.009));
    QVERIFY(std::abs(lightness(paper[6]) - middle) < 1e-9);
}

void tst_LevelCurve::evenLevelsAreTooDarkOnPaper()
{
    double sum = 0;
    double worst = 0;
    for (int grey = 0; grey < 256; ++grey) {
        const double lacking
            = wantedLightness(grey, paper) - shownLightness(std::uint8_t(grey), evenLevels(), paper);
        sum += lacking;
        worst = std::max(worst, lacking);
    }
    QVERIFY2(std::abs(sum / 256 - 7.9) < 0.1, qPrintable(QString::number(sum / 256)));
    QVERIFY2(std::abs(worst - 12.3) < 0.1, qPrintable(QString::number(worst)));
}

void tst_LevelCurve::profileIsTrueOnPaper()
{
    const LevelCurve curve = curveFor(paper);
    for (int grey = 0; grey < 256; ++grey) {
        const double off = wantedLightness(grey, paper) - shownLightness(std::uint8_t(grey), curve, paper);
        QVERIFY2(std::abs(off) < 0.1, qPrintable(QString::number(grey) + u' ' + QString::number(off)));
    }
}

void tst_LevelCurve::blackAndWhiteAreThePanels()
{
    const LevelCurve curve = curveFor(paper);
    QCOMPARE(int(curve.front()), 0);
    QCOMPARE(int(curve.back()), 15 * levelStep);
}

// Eyes take the panel's white for white. Seen that way, too, lightness is scaled linearly.
void tst_LevelCurve::whiteIsThePanelsOwn()
{
    const double black = lightness(paper.front() / paper.back());
    for (int grey = 0; grey < 256; ++grey) {
        const double shown = luminanceOfLightness(wantedLightness(grey, paper));
        const double expected = black + (100 - black) * lightness(luminance(grey)) / 100;
        QVERIFY(std::abs(lightness(shown / paper.back()) - expected) < 0.01);
    }
}

void tst_LevelCurve::shadowsKeepTheirDifferences()
{
    const double range = (lightness(paper.back()) - lightness(paper.front())) / 100;
    for (int grey = 0; grey < 255; ++grey) {
        const double step = wantedLightness(grey + 1, paper) - wantedLightness(grey, paper);
        const double original = lightness(luminance(grey + 1)) - lightness(luminance(grey));
        QVERIFY(std::abs(step - original * range) < 1e-9);
    }
}

QTEST_APPLESS_MAIN(tst_LevelCurve)
#include "tst_level_curve.moc"
