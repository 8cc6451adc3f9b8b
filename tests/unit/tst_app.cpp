// The application object by itself: views, panel, way out. How it runs is tested with the interface.

#include "app.h"
#include "call_lines.h"
#include "datastorage.h"
#include "meta_object_lines.h"
#include "stderr_capture.h"
#include "stored_database.h"

#include <device.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using lindenreed::device::Device;
using lindenreed::device::DeviceForTest;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::App;

namespace {

const QString configPath = QStringLiteral("/mnt/ext1/system/config/global.cfg");
const QString slideshow = QStringLiteral("slideshow");
const QString playlists = QStringLiteral("playlists");

} // namespace

class tst_App : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init();
    void cleanup();

    void construction();
    void metaObject();
    void screenSize();
    void showPanel();
    void currentDateIsTakenAfresh();
    void backView();
    void changeView();
    void changeToTheSameView();
    void writingTheProperty();
    void settingsHearOfTheViewOnlyInRun();
    void updateScreen_data();
    void updateScreen();
    void destructorStopsTheShow();

private:
    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<StderrCapture> m_log;
};

void tst_App::init()
{
    m_log = std::make_unique<StderrCapture>();
    m_device = std::make_unique<DeviceForTest>();
}

void tst_App::cleanup()
{
    m_device.reset();
    m_log.reset();
}

void tst_App::construction()
{
    QDir().mkpath(QFileInfo(configPath).path());
    QFile config(configPath);
    QVERIFY(config.open(QIODevice::WriteOnly));
    config.write("btkeys.count=2\nbtkeys.bt1.name=__DELETED__\nbtkeys.bt2.name=a\n");
    config.close();
    DataStorage::instance(); // seeding is no part of it
    m_device->forgetCalls();
    const App app;
    QVERIFY(config.remove());
    QByteArrayList lines = callLines(m_device->calls());
    lines.removeIf([](const QByteArray &line) { return line.startsWith("lr_print_log2"); });
    // The image provider's tone first, the keys last of all; a deleted key is not looked at.
    QCOMPARE(lines.join('\n'),
             QByteArray("sv_config_open /mnt/ext1/system/config/global.cfg 0\n"
                        "ReadInt picviewer_brightness -2147483648\nReadInt picviewer_brightness 0\n"
                        "ReadInt picviewer_contrast -2147483648\nReadInt picviewer_contrast 0\n"
                        "ReadInt picviewer_gamma -2147483648\nReadInt picviewer_gamma 0\n"
                        "sv_config_close config\n"
                        "sv_config_open /mnt/ext1/system/config/global.cfg 1\n"
                        "ReadInt btkeys.count -2147483648\nReadString btkeys.bt1.name \n"
                        "ReadString btkeys.bt2.name \n"
                        "ReadInt btkeys.bt2.scanCode -2147483648\nReadInt btkeys.bt2.scanCode 0\n"
                        "ReadString tkey.bt2.0 \nsv_config_close config"));
}

void tst_App::metaObject()
{
    const QMetaObject &meta = App::staticMetaObject;
    QCOMPARE(methodLines(meta),
             (QByteArrayList{"signal void screenChanged() ", "signal void currentDateChanged() ",
                             "signal void orientationChanged() ", "signal void changedView(QString) view",
                             "signal void backViewChanged() ",
                             "signal void showInfoMessage(QString,QString) message,icon",
                             "slot void showPanel(bool) show", "slot void changeOrientation(int) n",
                             "slot void updateScreen() ", "slot void quit() ",
                             "slot void changeView(QString) view"}));

    QCOMPARE(
        propertyLines(meta),
        (QByteArrayList{"screenWidth int r screenChanged", "screenHeight int r screenChanged",
                        "currentDate QDateTime r currentDateChanged", "backView QString rw backViewChanged",
                        "currentView QString rw changedView", "prevView QString r "}));
}

void tst_App::screenSize()
{
    const App app;
    const int panel = Device::instance()->profile.statusHeight;
    Device::instance()->screen.setPanelType(0);
    QCOMPARE(app.screenWidth(), 758);
    QCOMPARE(app.screenHeight(), 1024);
    Device::instance()->screen.setPanelType(1);
    QCOMPARE(app.screenWidth(), 758);
    QCOMPARE(app.screenHeight(), 1024 - panel);
    QVERIFY(panel > 0);
}

void tst_App::showPanel()
{
    App app;
    QList<int> heights; // as a binding would read them
    connect(&app, &App::screenChanged, &app, [&] { heights.append(app.screenHeight()); });
    app.showPanel(false);
    app.showPanel(true);
    QCOMPARE(heights, (QList<int>{1024, 1024 - Device::instance()->profile.statusHeight}));
    const QList<SdkCall> calls = m_device->calls({"SetPanelType"});
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).arguments, QByteArrayList{"0"});
    QCOMPARE(calls.at(1).arguments, QByteArrayList{"1"});
}

void tst_App::currentDateIsTakenAfresh()
{
    const App app;
    const QDateTime first = app.currentDate();
    QTRY_VERIFY(app.currentDate() > first);
}

void tst_App::backView()
{
    App app;
    QCOMPARE(app.backView(), QString());
    QSignalSpy changed(&app, &App::backViewChanged);
    app.setBackView(slideshow);
    app.setBackView(slideshow);
    QCOMPARE(app.backView(), slideshow);
    QCOMPARE(changed.count(), 1);
}

void tst_App::changeView()
{
    App app;
    QCOMPARE(app.currentView(), QString());
    QCOMPARE(app.prevView(), QString());
    QSignalSpy changed(&app, &App::changedView);

    app.changeView(playlists); // the first is a real change
    QCOMPARE(changed.takeFirst(), QVariantList{playlists});
    QCOMPARE(app.currentView(), playlists);
    QCOMPARE(app.prevView(), QString());

    app.changeView(QStringLiteral("no such view"));
    QCOMPARE(changed.takeFirst(), QVariantList{QStringLiteral("no such view")});
    QCOMPARE(app.currentView(), QStringLiteral("no such view"));
    QCOMPARE(app.prevView(), playlists);
}

void tst_App::changeToTheSameView()
{
    App app;
    app.changeView(playlists);
    app.changeView(slideshow);
    QSignalSpy changed(&app, &App::changedView);
    app.changeView(slideshow);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(app.prevView(), playlists);
}

void tst_App::writingTheProperty()
{
    App app;
    QSignalSpy changed(&app, &App::changedView);
    QVERIFY(app.setProperty("currentView", playlists));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(app.currentView(), playlists);
}

void tst_App::settingsHearOfTheViewOnlyInRun()
{
    // The light changes hands through a connection that run() makes.
    App app;
    app.changeView(slideshow);
    QVERIFY(m_device->calls({"SetFrontlightState", "GetFrontlightState"}).isEmpty());
}

void tst_App::updateScreen_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QByteArray>("calls");

    QTest::newRow("grey") << 0 << QByteArray();
    QTest::newRow("colour") << 1 << QByteArray("setScreenUpdateMode 5");
}

void tst_App::updateScreen()
{
    QFETCH(int, mask);
    QFETCH(QByteArray, calls);

    m_device->setColourMask(mask);
    App app;
    m_device->forgetCalls();
    app.updateScreen();
    QCOMPARE(changingCalls(*m_device), calls);
}

void tst_App::destructorStopsTheShow()
{
    {
        const App app;
        m_device->forgetCalls();
    }
    QByteArrayList names;
    for (const SdkCall &call : m_device->calls())
        names.append(call.name);
    QCOMPARE(names, (QByteArrayList{"SetAutoPowerOff", "SetAutoKeylock", "ClearTimerByName"}));
}

QTEST_GUILESS_MAIN(tst_App)
#include "tst_app.moc"
