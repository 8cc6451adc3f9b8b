// The test chart over everything, and how it goes.

#include "panel_application.h"
#include "panel_qml.h"
#include "panel_remote.h"
#include "panel_view.h"

#include <device.h>
#include <panel_levels.h>

#include <set>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::device::RefreshMode;

class tst_PanelChart : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void showsPatchesAndRamp();
    void checksAreBlackAndWhite();
    void rampHasSolidEnds();
    void patchesAreNumbered();
    void lineRunsAlongTheEdge();
    void isTheSameWhileInverted();
    void followsTheTurn();
    void rampIsForThePanel();
    void staysOverPartialDrawing();
    void goesWithTheNextFullRefresh();
    void goesWithTheForeground();
    void goesWithTheTurn();
    void goesWhenThePanelIsCleared();
    void invertedAgainShowsTheWindow();

private:
    static constexpr int rampLeft = 23; // what is left and right of it is solid
    static constexpr int rampRight = 734;

    bool isShown() { return panel_view::greyAt(10, 10) == 0 && panel_view::greyAt(600, 10) == 51; }

    PanelRemote m_remote;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

void tst_PanelChart::init()
{
    Device::instance()->screen.setOrientation(0);
    Device::instance()->screen.setInverted(false);
    if (!m_window) {
        m_window = loadWindow(m_engine, R"(Window { visible: true; width: Screen.width
            height: Screen.desktopAvailableHeight; color: "#888888"
            property alias partColour: part.color
            Rectangle { id: part; x: 300; y: 300; width: 50; height: 50; color: "#444444" } })");
    }
    Device::instance()->screen.refresh(RefreshMode::Full);
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::greyAt(10, 1000), 0x88);

    QVERIFY(m_remote.ask(u"chart"_s).value(u"ok"_s).toBool());
    QVERIFY(isShown()); // when the answer is there
    QCOMPARE(panel_view::snapshot().header.refreshMode, 1U);
}

void tst_PanelChart::showsPatchesAndRamp()
{
    const QImage panel = panel_view::upright();
    QCOMPARE(panel.size(), QSize(758, 1024));
    for (int patch = 0; patch < 16; ++patch) {
        const QPoint middle((patch % 4) * 190 + 95, (patch / 4) * 192 + 96);
        QCOMPARE(qGray(panel.pixel(middle)), patch * 17);
    }
    std::set<int> greys;
    int left = 0;
    int right = 0;
    for (int y = 768; y < 1023; ++y) {
        for (int x = rampLeft; x <= rampRight; ++x) {
            greys.insert(qGray(panel.pixel(x, y)));
            (x < 379 ? left : right) += qGray(panel.pixel(x, y));
        }
    }
    QCOMPARE(greys.size(), 16U);
    QCOMPARE(*greys.begin(), 0);
    QCOMPARE(*greys.rbegin(), 255);
    // Diffused, the halves of a ramp from 0 to 255 keep its means.
    const int count = (379 - rampLeft) * 255;
    QVERIFY2(qAbs(left / count - 63) <= 1, qPrintable(QString::number(left / count)));
    QVERIFY2(qAbs(right / count - 191) <= 1, qPrintable(QString::number(right / count)));
    // Between two levels both are there, in one row.
    std::set<int> inOneRow;
    for (int x = 85; x < 95; ++x)
        inOneRow.insert(qGray(panel.pixel(x, 900)));
    QCOMPARE(inOneRow, (std::set<int>{17, 34}));
}

void tst_PanelChart::checksAreBlackAndWhite()
{
    const QImage panel = panel_view::upright();
    for (int patch = 0; patch < 16; ++patch) {
        const QPoint corner((patch % 4) * 190 + 5, (patch / 4) * 192 + 185);
        for (const QPoint offset : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)}) {
            const QPoint at = corner + offset;
            QCOMPARE(qGray(panel.pixel(at)), (at.x() + at.y()) % 2 ? 255 : 0);
        }
    }
}

void tst_PanelChart::rampHasSolidEnds()
{
    const QImage panel = panel_view::upright();
    for (int y = 768; y < 1023; ++y) {
        // Errors end within three pixels.
        for (int x = 1; x < rampLeft - 3; ++x)
            QCOMPARE(qGray(panel.pixel(x, y)), 0);
        for (int x = rampRight + 4; x < 757; ++x)
            QCOMPARE(qGray(panel.pixel(x, y)), 255);
    }
}

void tst_PanelChart::patchesAreNumbered()
{
    const QImage panel = panel_view::upright();
    std::set<QByteArray> shapes;
    for (int patch = 0; patch < 16; ++patch) {
        // Its signs are left once the grey is taken out; around the middle, where it is measured, are none.
        const QRect area(patch % 4 * 758 / 4 + 2, patch / 4 * 192 + 2, 185, 124);
        QByteArray shape;
        int signs = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                const bool isSign = qGray(panel.pixel(x, y)) != patch * 17;
                QVERIFY2(!isSign || (x > area.center().x() && y < area.top() + 40),
                         qPrintable(QString::number(patch)));
                shape.append(isSign ? '#' : ' ');
                signs += isSign;
            }
        }
        QVERIFY2(signs > 20, qPrintable(QString::number(patch)));
        shapes.insert(shape);
    }
    QCOMPARE(shapes.size(), 16U);
}

void tst_PanelChart::lineRunsAlongTheEdge()
{
    const QImage panel = panel_view::upright();
    const auto greyOfRamp = [](int x) { return x < 380 ? 0 : 255; };
    for (int x = 0; x < 758; ++x) {
        QCOMPARE(qGray(panel.pixel(x, 0)), 255); // over the four darkest patches
        QCOMPARE(qGray(panel.pixel(x, 1023)), 255 - greyOfRamp(x));
    }
    for (int y = 1; y < 1023; ++y) {
        QCOMPARE(qGray(panel.pixel(0, y)), y < 384 || y >= 768 ? 255 : 0);
        QCOMPARE(qGray(panel.pixel(757, y)), y < 384 ? 255 : 0);
    }
    // One pixel wide.
    QCOMPARE(qGray(panel.pixel(100, 1)), 0);
    QCOMPARE(qGray(panel.pixel(1, 100)), 0);
    QCOMPARE(qGray(panel.pixel(756, 650)), 255);
    QCOMPARE(qGray(panel.pixel(756, 1022)), 255);
}

void tst_PanelChart::isTheSameWhileInverted()
{
    const QImage before = panel_view::upright();
    Device::instance()->screen.setInverted(true);
    QVERIFY(panel_view::waitUntilStill());
    QVERIFY(!isShown());
    QVERIFY(m_remote.ask(u"chart"_s).value(u"ok"_s).toBool());
    QCOMPARE(panel_view::snapshot().header.flags & 1U, 1U);
    QCOMPARE(panel_view::upright(), before);
}

void tst_PanelChart::followsTheTurn()
{
    Device::instance()->screen.setOrientation(1);
    QTRY_COMPARE(panel_view::upright().size(), QSize(1024, 758));
    QVERIFY(panel_view::waitUntilStill());
    QVERIFY(m_remote.ask(u"chart"_s).value(u"ok"_s).toBool());
    const QImage panel = panel_view::upright();
    for (int patch = 0; patch < 16; ++patch)
        QCOMPARE(qGray(panel.pixel(patch % 4 * 256 + 128, patch / 4 * 142 + 71)), patch * 17);
    QCOMPARE(qGray(panel.pixel(10, 700)), 0);
    QCOMPARE(qGray(panel.pixel(1010, 700)), 255);
}

void tst_PanelChart::rampIsForThePanel()
{
    const auto meanOfTheRamp = [] {
        const QImage panel = panel_view::upright();
        int sum = 0;
        for (int y = 800; y < 1000; ++y) {
            for (int x = 360; x < 400; ++x)
                sum += qGray(panel.pixel(x, y));
        }
        return sum / 8000;
    };
    const int even = meanOfTheRamp();
    lindenreed::device::setLevelLuminances(lindenreed::pixels::luminancesByGamma(0.009, 0.65, 1.42));
    QVERIFY(m_remote.ask(u"chart"_s).value(u"ok"_s).toBool());
    QVERIFY2(meanOfTheRamp() > even + 17,
             qPrintable(QString::number(meanOfTheRamp()))); // lighter by over a level

    const QImage before = panel_view::upright();
    Device::instance()->screen.setInverted(true);
    QVERIFY(panel_view::waitUntilStill());
    QVERIFY(m_remote.ask(u"chart"_s).value(u"ok"_s).toBool());
    lindenreed::device::setLevelLuminances({});
    QCOMPARE(panel_view::upright(), before);
}

void tst_PanelChart::staysOverPartialDrawing()
{
    const QImage before = panel_view::upright();
    const quint64 number = panel_view::refreshNumber();
    m_window->setProperty("partColour", QColor(0xcc, 0xcc, 0xcc));
    QTRY_VERIFY(panel_view::refreshNumber() > number);
    QCOMPARE(panel_view::upright(), before);
}

void tst_PanelChart::goesWithTheNextFullRefresh()
{
    Device::instance()->screen.refresh(RefreshMode::Full, QRect(0, 0, 10, 10));
    QTRY_VERIFY(!isShown());
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::greyAt(10, 10), 255); // status panel and window are back
    QCOMPARE(panel_view::greyAt(10, 1000), 0x88);
}

void tst_PanelChart::goesWithTheForeground()
{
    QVERIFY(m_remote.ask(u"foreground"_s).value(u"ok"_s).toBool());
    QTRY_COMPARE(panel_view::greyAt(10, 1000), 0x88);
    QCOMPARE(panel_view::snapshot().header.refreshMode, 1U);
    QVERIFY(!isShown());
}

void tst_PanelChart::goesWithTheTurn()
{
    Device::instance()->screen.setOrientation(1);
    QTRY_COMPARE(panel_view::upright().size(), QSize(1024, 758));
    QTRY_COMPARE(panel_view::greyAt(10, 700), 0x88);
}

void tst_PanelChart::goesWhenThePanelIsCleared()
{
    Device::instance()->screen.clear();
    QCOMPARE(panel_view::greyAt(10, 10), 255);
    m_window->setProperty("partColour", QColor(0x22, 0x22, 0x22));
    QTRY_COMPARE(panel_view::greyAt(325, 370), 0x22);
}

void tst_PanelChart::invertedAgainShowsTheWindow()
{
    QVERIFY(m_remote.ask(u"invert"_s, {{u"on"_s, true}}).value(u"ok"_s).toBool());
    QTRY_COMPARE(panel_view::greyAt(10, 1000), 0x77);
}

PANEL_TEST_MAIN(tst_PanelChart)
#include "tst_panel_chart.moc"
