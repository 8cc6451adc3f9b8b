// A colour panel: what is drawn arrives unchanged.

#include "panel_application.h"
#include "panel_qml.h"
#include "panel_remote.h"
#include "panel_view.h"

#include <device.h>

using lindenreed::device::Device;
using lindenreed::device::Screen;

class tst_PanelColour : public QObject
{
    Q_OBJECT

private slots:
    void profileIsTheOneOfTheRecord();
    void coloursPassUnchanged();
    void inverted();
    void fastModeIsBlackAndWhite();
    void fastUpdatesAreBlackAndWhiteFirst();
    void chartIsGrey();
};

void tst_PanelColour::profileIsTheOneOfTheRecord()
{
    const auto header = panel_view::snapshot().header;
    QCOMPARE(header.format, 2U);
    QCOMPARE(header.levels, 256U);
    QCOMPARE(header.width, 1072U);
    QCOMPARE(header.height, 1448U);
    QVERIFY(!Device::instance()->previousOrientation);
}

void tst_PanelColour::coloursPassUnchanged()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true; color: "#123456"
        Rectangle { x: 100; y: 100; width: 50; height: 50; color: "#fe8001" } })");
    QTRY_COMPARE(panel_view::upright().pixel(10, 1400), qRgb(0x12, 0x34, 0x56));
    QCOMPARE(panel_view::upright().pixel(100, 164), qRgb(0xfe, 0x80, 0x01));
    QCOMPARE(panel_view::upright().pixel(0, 0), qRgb(255, 255, 255)); // the status panel
}

void tst_PanelColour::inverted()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true; color: "#123456" })");
    QTRY_COMPARE(panel_view::upright().pixel(10, 1400), qRgb(0x12, 0x34, 0x56));
    Device::instance()->screen.setInverted(true);
    QTRY_COMPARE(panel_view::upright().pixel(10, 1400), qRgb(0xed, 0xcb, 0xa9));
    Device::instance()->screen.setInverted(false);
    QTRY_COMPARE(panel_view::upright().pixel(10, 1400), qRgb(0x12, 0x34, 0x56));
}

void tst_PanelColour::fastModeIsBlackAndWhite()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true; color: "#123456" })");
    QTRY_COMPARE(panel_view::upright().pixel(10, 1400), qRgb(0x12, 0x34, 0x56));
    Device::instance()->screen.useFastMode(QRect(0, 1000, 100, 448));
    QTRY_COMPARE(panel_view::upright().pixel(10, 1400), qRgb(0, 0, 0));
    QTRY_COMPARE(panel_view::upright().pixel(10, 1400), qRgb(0x12, 0x34, 0x56));
}

void tst_PanelColour::fastUpdatesAreBlackAndWhiteFirst()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true; color: "white"
        property alias partColour: part.color
        Rectangle { id: part; x: 100; y: 100; width: 50; height: 50; color: "#fe8001" } })");
    QVERIFY(panel_view::waitUntilStill());
    Screen &screen = Device::instance()->screen;
    const quint64 before = panel_view::countFrom();
    PanelRemote remote;
    QVERIFY(remote.ask(QStringLiteral("follow")).value(QStringLiteral("ok")).toBool());
    const auto nextRefresh = [&remote] {
        QJsonObject event;
        do
            event = remote.nextLine();
        while (!event.isEmpty() && event.value(QStringLiteral("event")) != QStringLiteral("refresh"));
        return event.value(QStringLiteral("mode")).toString();
    };

    screen.setFastUpdates(true);
    window->setProperty("partColour", QColor(0x12, 0x34, 0x56));
    QCOMPARE(nextRefresh(), QStringLiteral("fast"));
    QCOMPARE(panel_view::upright().pixel(110, 174), qRgb(0, 0, 0));
    QVERIFY(panel_view::waitUntilStill()); // which is when all levels are back
    QCOMPARE(panel_view::upright().pixel(110, 174), qRgb(0x12, 0x34, 0x56));
    QCOMPARE(nextRefresh(), QStringLiteral("partial"));
    QCOMPARE(panel_view::refreshNumber(), before + 2);

    screen.setUpdateMode(5); // a full refresh is never a fast one
    window->setProperty("partColour", QColor(0xfe, 0x80, 0x01));
    QCOMPARE(nextRefresh(), QStringLiteral("full"));
    QCOMPARE(panel_view::upright().pixel(110, 174), qRgb(0xfe, 0x80, 0x01));

    screen.setFastUpdates(false);
    window->setProperty("partColour", QColor(0x12, 0x34, 0x56));
    QCOMPARE(nextRefresh(), QStringLiteral("partial"));
    QCOMPARE(panel_view::upright().pixel(110, 174), qRgb(0x12, 0x34, 0x56));
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(panel_view::refreshNumber(), before + 4);
}

void tst_PanelColour::chartIsGrey()
{
    PanelRemote remote;
    for (const bool inverted : {false, true}) {
        Device::instance()->screen.setInverted(inverted);
        QVERIFY(panel_view::waitUntilStill());
        QVERIFY(remote.ask(QStringLiteral("chart")).value(QStringLiteral("ok")).toBool());
        const QImage panel = panel_view::upright();
        for (int patch = 0; patch < 16; ++patch) {
            const int grey = patch * 17;
            QCOMPARE(panel.pixel(patch % 4 * 268 + 134, patch / 4 * 271 + 135), qRgb(grey, grey, grey));
        }
        for (int x = 1; x < 1071; ++x) {
            const QRgb pixel = panel.pixel(x, 1300);
            QVERIFY(qIsGray(pixel) && qGray(pixel) % 17 == 0); // dithered as everywhere
        }
    }
    Device::instance()->screen.setInverted(false);
}

PANEL_TEST_MAIN_WITH_RECORD(tst_PanelColour, R"({"profile": "colour-6"})")
#include "tst_panel_colour.moc"
