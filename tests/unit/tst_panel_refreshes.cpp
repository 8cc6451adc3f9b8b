// Refreshes: what is one, how large it is, which mode and number it has.

#include "panel_application.h"
#include "panel_remote.h"
#include "panel_view.h"

#include <device.h>

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QRasterWindow>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::device::RefreshMode;
using lindenreed::device::Screen;
using lindenreed::remote::PanelHeader;

namespace {

/// A window of one grey; every part of it can be drawn again alone.
class GreyWindow : public QRasterWindow
{
public:
    explicit GreyWindow(int grey, const QRect &geometry = QRect(0, 45, 758, 979))
        : m_grey(grey)
    {
        setGeometry(geometry);
        show();
    }
    void setGrey(int grey) { m_grey = grey; }

    bool pressed = false;
    int greyAtRelease = -1; ///< of the screen's pixel 150, 150, when a finger was lifted

protected:
    void mousePressEvent(QMouseEvent *) override { pressed = true; }
    void mouseReleaseEvent(QMouseEvent *) override { greyAtRelease = panel_view::greyAt(150, 150); }
    void paintEvent(QPaintEvent *event) override
    {
        QPainter(this).fillRect(event->rect(), QColor(m_grey, m_grey, m_grey));
    }

private:
    int m_grey;
};

Screen &screen()
{
    return Device::instance()->screen;
}

PanelHeader header()
{
    return panel_view::snapshot().header;
}

QRect refreshed(const PanelHeader &header)
{
    return QRect(header.x, header.y, header.refreshWidth, header.refreshHeight);
}

const QRect wholePanel(0, 0, 758, 1024);

} // namespace

class tst_PanelRefreshes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void nothingDrawnNothingRefreshed();
    void oneTurnIsOneRefresh();
    void rectangleIsInPanelPixels();
    void numbersGoUpByOne();
    void fullRefreshComposesAnew();
    void partialRefreshOfAnArea();
    void clearIsWhiteAtOnce();
    void clearWipesOutWhatWasDrawnBefore();
    void fullRefreshBringsBackAfterClear();
    void updateModeFive();
    void updateModesOneAndTwoTakeItBack_data();
    void updateModesOneAndTwoTakeItBack();
    void fastUpdatesAreForColour();
    void fastMode();
    void fastModeStaysWhileDrawingGoesOn();
    void fastModeStaysWhileAFingerIsDown();
    void drawingOutsideIsNoFastRefresh();
    void inversion();
    void multiplesOf17OnThePanel();
    void announcements();

private:
    GreyWindow m_window{0x88};
};

void tst_PanelRefreshes::init()
{
    m_window.setGrey(0x88);
    screen().setOrientation(0);
    screen().setInverted(false);
    screen().refresh(RefreshMode::Full);
    m_window.update();
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::greyAt(400, 500), 0x88);
}

void tst_PanelRefreshes::nothingDrawnNothingRefreshed()
{
    const quint64 before = panel_view::countFrom();
    QVERIFY(PanelRemote().ask(u"idle"_s, {{u"ms"_s, 100}}, 40'000).value(u"ok"_s).toBool());
    QCOMPARE(panel_view::refreshNumber(), before);
}

void tst_PanelRefreshes::oneTurnIsOneRefresh()
{
    GreyWindow second(0x33, QRect(500, 500, 100, 100));
    QVERIFY(panel_view::waitUntilStill());
    second.update(); // the first drawing after the one at showing is a whole one again
    QVERIFY(panel_view::waitUntilStill());
    const quint64 before = panel_view::countFrom();
    m_window.update(QRect(10, 20, 30, 40));
    m_window.update(QRect(100, 200, 10, 10));
    second.update(QRect(0, 0, 20, 20));
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::refreshNumber(), before + 1);
    QCOMPARE(refreshed(header()), QRect(QPoint(10, 65), QPoint(519, 519)));
    QCOMPARE(header().refreshMode, 0U);
}

void tst_PanelRefreshes::rectangleIsInPanelPixels()
{
    screen().setOrientation(1);
    QVERIFY(panel_view::waitUntilStill());
    m_window.update(QRect(10, 20, 30, 40));
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(refreshed(header()), QRect(758 - 65 - 40, 10, 40, 30));
}

void tst_PanelRefreshes::numbersGoUpByOne()
{
    const quint64 before = panel_view::countFrom();
    for (quint64 i = 1; i <= 3; ++i) {
        m_window.update(QRect(0, 0, 10, 10));
        QTRY_COMPARE(panel_view::refreshNumber(), before + i);
    }
}

void tst_PanelRefreshes::fullRefreshComposesAnew()
{
    const quint64 before = panel_view::countFrom();
    m_window.update(QRect(0, 0, 10, 10));
    screen().refresh(RefreshMode::Full);
    QTRY_VERIFY(panel_view::refreshNumber() > before);
    QCOMPARE(header().refreshMode, 1U);
    QCOMPARE(refreshed(header()), wholePanel);
    QVERIFY(panel_view::waitUntilStill());
}

void tst_PanelRefreshes::partialRefreshOfAnArea()
{
    const quint64 before = panel_view::countFrom();
    screen().refresh(RefreshMode::Partial, QRect(5, 6, 7, 8));
    QTRY_COMPARE(panel_view::refreshNumber(), before + 1);
    QCOMPARE(header().refreshMode, 0U);
    QCOMPARE(refreshed(header()), QRect(5, 6, 7, 8));
}

void tst_PanelRefreshes::clearIsWhiteAtOnce()
{
    const quint64 before = panel_view::countFrom();
    screen().clear();
    QCOMPARE(panel_view::refreshNumber(), before + 1); // no turn of the loop was needed
    QCOMPARE(header().refreshMode, 1U);
    QCOMPARE(refreshed(header()), wholePanel);
    QImage white(758, 1024, QImage::Format_Grayscale8);
    white.fill(255);
    QCOMPARE(panel_view::upright(), white);
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::upright(), white); // nothing comes back by itself

    m_window.update(QRect(10, 20, 30, 40));
    QTRY_COMPARE(panel_view::greyAt(10, 65), 0x88);
    QCOMPARE(panel_view::greyAt(400, 500), 255); // what was not drawn anew stays white
    QVERIFY(refreshed(header()).contains(QRect(0, 0, 758, 45))); // the status panel comes along
}

void tst_PanelRefreshes::clearWipesOutWhatWasDrawnBefore()
{
    const quint64 before = panel_view::countFrom();
    screen().refresh(RefreshMode::Partial, QRect(0, 100, 100, 100));
    screen().clear();
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::refreshNumber(), before + 1);
    QCOMPARE(panel_view::greyAt(50, 150), 255);
}

void tst_PanelRefreshes::fullRefreshBringsBackAfterClear()
{
    const QImage before = panel_view::upright();
    screen().clear();
    screen().refresh(RefreshMode::Full);
    QTRY_COMPARE(panel_view::greyAt(400, 500), 0x88);
    QCOMPARE(panel_view::upright(), before);
}

void tst_PanelRefreshes::updateModeFive()
{
    const quint64 before = panel_view::countFrom();
    screen().setUpdateMode(5);
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::refreshNumber(), before); // asks for nothing by itself
    m_window.update(QRect(0, 0, 10, 10));
    QTRY_COMPARE(panel_view::refreshNumber(), before + 1);
    QCOMPARE(header().refreshMode, 1U);
    QCOMPARE(refreshed(header()), wholePanel);
    m_window.update(QRect(0, 0, 10, 10));
    QTRY_COMPARE(panel_view::refreshNumber(), before + 2);
    QCOMPARE(header().refreshMode, 0U); // once only
}

void tst_PanelRefreshes::updateModesOneAndTwoTakeItBack_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<unsigned>("refreshMode");

    QTest::newRow("partial on grey") << 1 << 0U;
    QTest::newRow("partial on colour") << 2 << 0U;
    QTest::newRow("unknown") << 3 << 1U;
}

void tst_PanelRefreshes::updateModesOneAndTwoTakeItBack()
{
    QFETCH(int, mode);
    QFETCH(unsigned, refreshMode);

    const quint64 before = panel_view::countFrom();
    screen().setUpdateMode(5);
    screen().setUpdateMode(mode);
    m_window.update(QRect(0, 0, 10, 10));
    QTRY_COMPARE(panel_view::refreshNumber(), before + 1);
    QCOMPARE(header().refreshMode, refreshMode);
}

void tst_PanelRefreshes::fastUpdatesAreForColour()
{
    const quint64 before = panel_view::countFrom();
    screen().setFastUpdates(true);
    m_window.update(QRect(0, 0, 10, 10));
    QTRY_COMPARE(panel_view::refreshNumber(), before + 1);
    QCOMPARE(header().refreshMode, 0U);
    QCOMPARE(panel_view::greyAt(5, 50), 0x88);
    screen().setFastUpdates(false);
}

void tst_PanelRefreshes::fastMode()
{
    const quint64 before = panel_view::countFrom();
    screen().useFastMode(QRect(100, 100, 200, 200));
    QTRY_COMPARE(panel_view::greyAt(150, 150), 255); // 0x88 is nearer to white
    QCOMPARE(panel_view::greyAt(99, 150), 0x88);
    QCOMPARE(header().refreshMode, 2U);
    QCOMPARE(refreshed(header()), QRect(100, 100, 200, 200));

    m_window.setGrey(0x77);
    m_window.update(QRect(110, 65, 10, 10)); // screen 110, 110
    QTRY_COMPARE(panel_view::greyAt(112, 112), 0);
    QCOMPARE(header().refreshMode, 2U);
    QCOMPARE(refreshed(header()), QRect(110, 110, 10, 10));

    QTRY_COMPARE(panel_view::greyAt(150, 150), 0x88); // all levels again
    QCOMPARE(panel_view::greyAt(112, 112), 0x77);
    QCOMPARE(header().refreshMode, 0U);
    QCOMPARE(refreshed(header()), QRect(100, 100, 200, 200));
    QCOMPARE(panel_view::refreshNumber(), before + 3);
}

void tst_PanelRefreshes::fastModeStaysWhileDrawingGoesOn()
{
    screen().useFastMode(QRect(100, 100, 200, 200));
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 600) {
        const quint64 before = panel_view::refreshNumber();
        m_window.update(QRect(110, 65, 10, 10));
        QTRY_VERIFY(panel_view::refreshNumber() > before);
        QCOMPARE(panel_view::greyAt(250, 250), 255);
    }
    time.start();
    QTRY_COMPARE(panel_view::greyAt(250, 250), 0x88);
    QVERIFY(time.elapsed() >= 200); // 250 ms after the last drawing, which was a moment ago
}

void tst_PanelRefreshes::fastModeStaysWhileAFingerIsDown()
{
    PanelRemote remote;
    m_window.pressed = false;
    remote.send(u"hold"_s, {{u"x"_s, 400}, {u"y"_s, 700}, {u"ms"_s, 700}});
    QTRY_VERIFY(m_window.pressed);
    QElapsedTimer time;
    time.start();
    screen().useFastMode(QRect(100, 100, 200, 200));
    QVERIFY(remote.nextLine().value(u"ok"_s).toBool());
    QVERIFY(time.elapsed() > 300); // the rest of 250 ms was over before the finger was lifted
    QCOMPARE(m_window.greyAtRelease, 255);
    QTRY_COMPARE(panel_view::greyAt(150, 150), 0x88);
}

void tst_PanelRefreshes::drawingOutsideIsNoFastRefresh()
{
    screen().useFastMode(QRect(100, 100, 200, 200));
    QTRY_COMPARE(header().refreshMode, 2U);
    m_window.update(QRect(110, 65, 300, 300));
    QTRY_COMPARE(header().refreshMode, 0U);
    QCOMPARE(panel_view::greyAt(350, 350), 0x88);
    QCOMPARE(panel_view::greyAt(150, 150), 255); // two levels stay inside
}

void tst_PanelRefreshes::inversion()
{
    screen().setInverted(true);
    QTRY_COMPARE(panel_view::greyAt(400, 500), 0x77);
    QCOMPARE(panel_view::greyAt(1, 1), 0); // the status panel too
    QCOMPARE(header().flags & 1U, 1U);
    QCOMPARE(header().refreshMode, 1U);
    screen().setInverted(false);
    QTRY_COMPARE(panel_view::greyAt(400, 500), 0x88);
    QCOMPARE(header().flags & 1U, 0U);
}

void tst_PanelRefreshes::multiplesOf17OnThePanel()
{
    for (int grey = 0; grey < 256; grey += 17) {
        m_window.setGrey(grey);
        m_window.update();
        QTRY_COMPARE(panel_view::greyAt(400, 500), grey);
    }
}

void tst_PanelRefreshes::announcements()
{
    const quint64 before = panel_view::countFrom();
    PanelRemote remote;
    QVERIFY(remote.ask(u"follow"_s).value(u"ok"_s).toBool());
    m_window.update(QRect(10, 20, 30, 40));
    const QJsonObject expected{{u"event"_s, u"refresh"_s},
                               {u"number"_s, qint64(before + 1)},
                               {u"x"_s, 10},
                               {u"y"_s, 65},
                               {u"width"_s, 30},
                               {u"height"_s, 40},
                               {u"mode"_s, u"partial"_s},
                               {u"missed"_s, 0}};
    QCOMPARE(remote.nextLine(), expected);
    Device::instance()->light.setBrightness(11);
    Device::instance()->light.setBrightness(12);
    QCOMPARE(remote.nextLine(), QJsonObject({{u"event"_s, u"changed"_s}}));
    Device::instance()->viewer.open(u"/mnt/ext1/Photo/01.jpg"_s);
    QCOMPARE(remote.nextLine(),
             QJsonObject({{u"event"_s, u"open"_s}, {u"path"_s, u"/mnt/ext1/Photo/01.jpg"_s}}));
    m_window.update();
    QCOMPARE(remote.nextLine().value(u"event"_s), u"refresh"_s); // one "changed" for both, also none later
}

PANEL_TEST_MAIN(tst_PanelRefreshes)
#include "tst_panel_refreshes.moc"
