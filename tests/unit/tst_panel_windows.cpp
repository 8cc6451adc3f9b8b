// Windows on the panel: where they lie, what covers what, and what follows turning and the status panel.

#include "panel_application.h"
#include "panel_qml.h"
#include "panel_view.h"

#include <device.h>

#include <QBackingStore>
#include <QPainter>
#include <QQuickItem>
#include <QRasterWindow>
#include <QScreen>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::device::Screen;

namespace {

/// A window of one grey.
class GreyWindow : public QRasterWindow
{
public:
    GreyWindow(int grey, const QRect &geometry)
        : m_grey(grey)
    {
        setGeometry(geometry);
        show();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(QRect(QPoint(), size()), QColor(m_grey, m_grey, m_grey));
    }

private:
    int m_grey;
};

Screen &screen()
{
    return Device::instance()->screen;
}

} // namespace

class tst_PanelWindows : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void screenSizes();
    void windowBelowStatusPanel();
    void windowWithoutSizeFillsAvailableGeometry();
    void windowLargerThanScreenIsCut();
    void topmostCovers();
    void movingUncovers();
    void hidingAndClosingUncover();
    void raiseAndLower();
    void shownAgain();
    void windowFollowsStatusPanel();
    void windowFollowsTurning();
    void fullScreenWindowFollows();
    void secondWindowKeepsItsPlace();
    void twoEnginesInARow();
    void oldDrawingIsNotShownAgain_data();
    void oldDrawingIsNotShownAgain();
    void windowThatDoesNotDraw();
    void statusPanelShowsClock();
    void noDoubleScaling();
};

void tst_PanelWindows::cleanup()
{
    screen().setOrientation(0);
    screen().setPanelType(1);
    QVERIFY(panel_view::waitUntilStill());
}

void tst_PanelWindows::screenSizes()
{
    const QScreen *qtScreen = QGuiApplication::primaryScreen();
    QCOMPARE(qtScreen->geometry(), QRect(0, 0, 758, 1024));
    QCOMPARE(qtScreen->availableGeometry(), QRect(0, 45, 758, 979));
    QCOMPARE(qtScreen->devicePixelRatio(), 1.0);
    QCOMPARE(qtScreen->orientation(), Qt::PortraitOrientation);
    screen().setPanelType(0);
    QTRY_COMPARE(qtScreen->availableGeometry(), QRect(0, 0, 758, 1024));
    screen().setOrientation(1);
    QTRY_COMPARE(qtScreen->geometry(), QRect(0, 0, 1024, 758));
    QTRY_COMPARE(qtScreen->orientation(), Qt::LandscapeOrientation);
    screen().setOrientation(2);
    QTRY_COMPARE(qtScreen->orientation(), Qt::InvertedLandscapeOrientation);
    screen().setOrientation(3);
    QTRY_COMPARE(qtScreen->orientation(), Qt::InvertedPortraitOrientation);
    QCOMPARE(qtScreen->geometry(), QRect(0, 0, 758, 1024));
}

void tst_PanelWindows::windowBelowStatusPanel()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window {
        width: 758; height: 979; visible: true; color: "#888888"
        Rectangle { x: 10; y: 20; width: 30; height: 40; color: "black" } })");
    QTRY_COMPARE(panel_view::greyAt(400, 500), 0x88);
    QCOMPARE(window->geometry(), QRect(0, 45, 758, 979));
    const QImage picture = panel_view::upright();
    QCOMPARE(qGray(picture.pixel(9, 65)), 0x88);
    QCOMPARE(qGray(picture.pixel(10, 65)), 0);
    QCOMPARE(qGray(picture.pixel(39, 104)), 0);
    QCOMPARE(qGray(picture.pixel(40, 104)), 0x88);
    QCOMPARE(qGray(picture.pixel(10, 64)), 0x88);
    QCOMPARE(qGray(picture.pixel(0, 45)), 0x88);
    QCOMPARE(qGray(picture.pixel(0, 44)), 255); // the status panel's ground
    QCOMPARE(qGray(picture.pixel(757, 1023)), 0x88);
}

void tst_PanelWindows::windowWithoutSizeFillsAvailableGeometry()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, "Window { visible: true; color: \"#444444\" }");
    QTRY_COMPARE(window->geometry(), QRect(0, 45, 758, 979));
    QTRY_COMPARE(panel_view::greyAt(757, 1023), 0x44);
}

void tst_PanelWindows::windowLargerThanScreenIsCut()
{
    const GreyWindow window(0x44, QRect(0, 0, 2000, 3000));
    QTRY_COMPARE(panel_view::greyAt(757, 1023), 0x44);
    QCOMPARE(window.geometry(), QRect(0, 45, 2000, 3000));
    QCOMPARE(panel_view::greyAt(757, 44), 255);
}

void tst_PanelWindows::topmostCovers()
{
    const GreyWindow below(0x88, QRect(0, 45, 758, 979));
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x88);
    const GreyWindow above(0x33, QRect(100, 200, 300, 400));
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x33);
    QCOMPARE(panel_view::greyAt(100, 200), 0x33);
    QCOMPARE(panel_view::greyAt(99, 200), 0x88);
    QCOMPARE(panel_view::greyAt(399, 599), 0x33);
    QCOMPARE(panel_view::greyAt(400, 599), 0x88);
}

void tst_PanelWindows::movingUncovers()
{
    const GreyWindow below(0x88, QRect(0, 45, 600, 979));
    GreyWindow above(0x33, QRect(100, 200, 300, 400));
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x33);
    above.setPosition(450, 200);
    QTRY_COMPARE(panel_view::greyAt(700, 250), 0x33); // over paper
    QCOMPARE(panel_view::greyAt(450, 250), 0x33);
    QCOMPARE(panel_view::greyAt(150, 250), 0x88);
    above.setPosition(100, 200);
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x33);
    QCOMPARE(panel_view::greyAt(700, 250), 255); // nothing covers it: white
}

void tst_PanelWindows::hidingAndClosingUncover()
{
    const GreyWindow below(0x88, QRect(0, 45, 758, 979));
    {
        GreyWindow hidden(0x33, QRect(100, 200, 300, 400));
        QTRY_COMPARE(panel_view::greyAt(150, 250), 0x33);
        hidden.hide();
        QTRY_COMPARE(panel_view::greyAt(150, 250), 0x88);
        QTRY_COMPARE(QGuiApplication::focusWindow(), &below);
    }
    {
        const GreyWindow closed(0x33, QRect(100, 200, 300, 400));
        QTRY_COMPARE(panel_view::greyAt(150, 250), 0x33);
    }
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x88);
}

void tst_PanelWindows::raiseAndLower()
{
    GreyWindow first(0x88, QRect(100, 200, 300, 400));
    GreyWindow second(0x33, QRect(100, 200, 300, 400));
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x33);
    first.raise();
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x88);
    first.lower();
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x33);
}

void tst_PanelWindows::shownAgain()
{
    GreyWindow window(0x88, QRect(0, 45, 758, 979));
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x88);
    window.hide();
    QTRY_COMPARE(panel_view::greyAt(150, 250), 255);
    window.show();
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x88);
}

void tst_PanelWindows::windowFollowsStatusPanel()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window {
        width: Screen.width; height: Screen.desktopAvailableHeight; visible: true; color: "#888888"
        Rectangle { width: 10; height: 10; color: "black" } })");
    QTRY_COMPARE(panel_view::greyAt(5, 50), 0);
    screen().setPanelType(0);
    QTRY_COMPARE(window->geometry(), QRect(0, 0, 758, 1024));
    QTRY_COMPARE(panel_view::greyAt(5, 5), 0);
    QTRY_COMPARE(panel_view::greyAt(757, 1023), 0x88);
    QCOMPARE(panel_view::greyAt(5, 50), 0x88);
    QCOMPARE(panel_view::snapshot().header.flags & 2U, 0U);
    screen().setPanelType(1);
    QTRY_COMPARE(window->geometry(), QRect(0, 45, 758, 979));
    QTRY_COMPARE(panel_view::greyAt(5, 50), 0);
    QTRY_COMPARE(panel_view::greyAt(5, 5), 255);
    QCOMPARE(panel_view::snapshot().header.flags & 2U, 2U);
}

void tst_PanelWindows::windowFollowsTurning()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window {
        width: Screen.width; height: Screen.desktopAvailableHeight; visible: true; color: "#888888"
        Rectangle { width: 10; height: 10; color: "black" }
        Rectangle { anchors.right: parent.right; anchors.bottom: parent.bottom; width: 10; height: 10; color: "#333333" } })");
    QTRY_COMPARE(panel_view::greyAt(5, 50), 0);
    for (const int orientation : {1, 3, 2, 0}) {
        screen().setOrientation(orientation);
        const QSize size = screen().size();
        QTRY_COMPARE(window->geometry(), QRect(0, 45, size.width(), size.height() - 45));
        QVERIFY(panel_view::waitUntilStill());
        QCOMPARE(int(panel_view::snapshot().header.orientation), orientation);
        const QImage upright = panel_view::upright();
        QCOMPARE(upright.size(), size);
        QCOMPARE(qGray(upright.pixel(5, 50)), 0);
        QCOMPARE(qGray(upright.pixel(5, 44)), 255);
        QCOMPARE(qGray(upright.pixel(size.width() - 1, size.height() - 1)), 0x33);
        QCOMPARE(qGray(upright.pixel(size.width() - 1, 45)), 0x88);
    }
}

void tst_PanelWindows::fullScreenWindowFollows()
{
    GreyWindow window(0x88, QRect(100, 200, 300, 400));
    window.showFullScreen();
    QTRY_COMPARE(window.geometry(), QRect(0, 45, 758, 979));
    screen().setOrientation(1);
    QTRY_COMPARE(window.geometry(), QRect(0, 45, 1024, 713));
    screen().setPanelType(0);
    QTRY_COMPARE(window.geometry(), QRect(0, 0, 1024, 758));
    QTRY_COMPARE(panel_view::snapshot().header.orientation, 1U);
    QTRY_COMPARE(panel_view::greyAt(1023, 757), 0x88);
    window.showNormal();
    QTRY_COMPARE(window.size(), QSize(300, 400));
}

void tst_PanelWindows::secondWindowKeepsItsPlace()
{
    const GreyWindow below(0x88, QRect(0, 45, 758, 979));
    const GreyWindow above(0x33, QRect(100, 245, 300, 400));
    QTRY_COMPARE(panel_view::greyAt(150, 250), 0x33);
    screen().setPanelType(0);
    QTRY_COMPARE(above.geometry(), QRect(100, 200, 300, 400));
    QTRY_COMPARE(panel_view::greyAt(150, 200), 0x33);
    QCOMPARE(panel_view::greyAt(150, 600), 0x88);
}

void tst_PanelWindows::twoEnginesInARow()
{
    for (const char *colour : {"#333333", "#888888"}) {
        QQmlEngine engine;
        const auto window
            = loadWindow(engine, QByteArray("Window { visible: true; color: \"") + colour + "\" }");
        QTRY_COMPARE(panel_view::greyAt(400, 500), QColor(QString::fromLatin1(colour)).red());
    }
    QTRY_COMPARE(panel_view::greyAt(400, 500), 255);
}

void tst_PanelWindows::oldDrawingIsNotShownAgain_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("panelType");

    QTest::newRow("status panel goes") << 0 << 0;
    QTest::newRow("quarter turn") << 1 << 1;
    QTest::newRow("half turn, status panel goes") << 3 << 0;
}

void tst_PanelWindows::oldDrawingIsNotShownAgain()
{
    QFETCH(int, orientation);
    QFETCH(int, panelType);

    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true
        width: Screen.width; height: Screen.desktopAvailableHeight; color: "#888888" })");
    QVERIFY(panel_view::waitUntilStill());
    const quint64 before = panel_view::countFrom();
    screen().setOrientation(orientation);
    screen().setPanelType(panelType);
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::greyAt(400, 500), 0x88);
    QCOMPARE(panel_view::refreshNumber(), before + 1);
}

void tst_PanelWindows::windowThatDoesNotDraw()
{
    // It draws once, into a store of its own, and never again.
    QWindow window;
    window.setSurfaceType(QSurface::RasterSurface);
    window.setGeometry(0, 45, 758, 979);
    window.show();
    QBackingStore store(&window);
    store.resize(window.size());
    store.beginPaint(QRect(QPoint(), window.size()));
    QPainter(store.paintDevice()).fillRect(QRect(QPoint(), window.size()), QColor(0x88, 0x88, 0x88));
    store.endPaint();
    store.flush(QRect(QPoint(), window.size()));
    QVERIFY(panel_view::waitUntilStill());
    const quint64 before = panel_view::countFrom();
    screen().setPanelType(0);
    QTRY_COMPARE(panel_view::refreshNumber(), before + 1); // the panel does not wait for ever
    QCOMPARE(panel_view::greyAt(400, 10), 0x88);
}

void tst_PanelWindows::statusPanelShowsClock()
{
    const auto blackPixels = [](const QRect &area) {
        const QImage upright = panel_view::upright();
        int black = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                black += qGray(upright.pixel(x, y)) == 0 ? 1 : 0;
        }
        return black;
    };
    QVERIFY(blackPixels(QRect(42, 0, 80, 45)) > 100); // at the left margin of 60 design pixels
    QCOMPARE(blackPixels(QRect(0, 0, 42, 45)), 0);
    const QRect right(500, 0, 258 - 42, 45);
    Device::instance()->light.setEnabled(true);
    QTRY_VERIFY(blackPixels(right) > 10);
    const int withLight = blackPixels(right);
    Device::instance()->light.setEnabled(false);
    QTRY_VERIFY(blackPixels(right) < withLight);
    QCOMPARE(panel_view::snapshot().header.flags & 4U, 0U);
    Device::instance()->light.setEnabled(true);
    QTRY_COMPARE(panel_view::snapshot().header.flags & 4U, 4U);
}

void tst_PanelWindows::noDoubleScaling()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true
        property real density: Screen.pixelDensity; property real ratio: Screen.devicePixelRatio })");
    QCOMPARE(window->property("ratio").toReal(), 1.0);
    QVERIFY(qAbs(window->property("density").toReal() - 212 / 25.4) < 0.01);
}

PANEL_TEST_MAIN(tst_PanelWindows)
#include "tst_panel_windows.moc"
