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
    void rampIsForThePanel();
    void staysOverPartialDrawing();
    void goesWithTheNextFullRefresh();
    void goesWithTheForeground();
    void goesWithTheTurn();
    void goesWhenThePanelIsCleared();
    void invertedAgainShowsTheWindow();

private:
    bool isShown() { return panel_view::greyAt(10, 10) == 0 && panel_view::greyAt(747, 10) == 51; }

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
    for (int y = 768; y < 1024; ++y) {
        for (int x = 0; x < 758; ++x) {
            greys.insert(qGray(panel.pixel(x, y)));
            (x < 379 ? left : right) += qGray(panel.pixel(x, y));
        }
    }
    QCOMPARE(greys.size(), 16U);
    QCOMPARE(*greys.begin(), 0);
    QCOMPARE(*greys.rbegin(), 255);
    // Diffused, the halves of a ramp from 0 to 255 keep its means.
    QVERIFY2(qAbs(left / (379 * 256) - 63) <= 1, qPrintable(QString::number(left / (379 * 256))));
    QVERIFY2(qAbs(right / (379 * 256) - 191) <= 1, qPrintable(QString::number(right / (379 * 256))));
    // Between two levels both are there, in one row.
    std::set<int> inOneRow;
    for (int x = 70; x < 80; ++x)
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
    lindenreed::device::setLevelLuminances({});
    QVERIFY2(meanOfTheRamp() > even + 17,
             qPrintable(QString::number(meanOfTheRamp()))); // lighter by over a level
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
