// The start on a device that can stand upside down, after a task of either orientation.

#include "panel_application.h"
#include "running_app.h"

#include <slateview.h>
#include <slateview_testing.h>

#include <QList>

using lindenreed::device::DeviceForTest;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::App;

class tst_AppUpsideDown : public QObject
{
    Q_OBJECT

private slots:
    void previousOrientation_data();
    void previousOrientation();
};

void tst_AppUpsideDown::previousOrientation_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("afterwards");

    QTest::newRow("upside down is taken over") << 3 << 3;
    QTest::newRow("90 degrees is ignored") << 1 << 0;
    QTest::newRow("270 degrees is ignored") << 2 << 0;
}

void tst_AppUpsideDown::previousOrientation()
{
    QFETCH(int, orientation);
    QFETCH(int, afterwards);

    DeviceForTest device(QStringLiteral("grey-8"));
    device.setPreviousOrientation(orientation);
    App app;
    QList<bool> windows; // whether there was one at each change of the screen
    connect(&app, &App::screenChanged, &app,
            [&windows] { windows.append(!QGuiApplication::topLevelWindows().isEmpty()); });
    int seen = -1;
    QCOMPARE(runApp(app, [&seen](RunningApp &) { seen = GetOrientation(); }), 0);
    QCOMPARE(seen, afterwards);
    const QList<SdkCall> turns = device.calls({"SetOrientation"});
    QCOMPARE(turns.size(), afterwards == 0 ? 0 : 1);
    QCOMPARE(windows, QList<bool>(1 + turns.size(), false));
}

PANEL_TEST_MAIN_WITH_RECORD(tst_AppUpsideDown, R"({"profile": "grey-8"})")
#include "tst_app_upside_down.moc"
