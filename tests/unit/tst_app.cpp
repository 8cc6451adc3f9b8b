// The application object by itself: views, panel, orientation, way out. How it runs is tested with the
// interface.

#include "app.h"
#include "stderr_capture.h"
#include "stored_database.h"

#include <device.h>
#include <facts.h>
#include <slateview.h>
#include <slateview_testing.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <cstdio>
#include <memory>

using lindenreed::device::Device;
using lindenreed::device::DeviceForTest;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::App;

namespace {

/// Everything that turning the screen asks for, in order, as "name argument argument".
QByteArray turnCalls(const DeviceForTest &device)
{
    QByteArrayList lines;
    const QList<SdkCall> calls
        = device.calls({"prepareAspectChange", "SetOrientation", "ClearScreen", "GetEventHandler",
                        "SendEvent", "setScreenUpdateMode", "requestScreenRefresh"});
    for (const SdkCall &call : calls)
        lines.append((QByteArrayList{call.name} + call.arguments).join(' '));
    return lines.join('\n');
}

QByteArray sequence(const QByteArray &before, int orientation)
{
    const QByteArray code = QByteArray::number(orientation);
    return before + "SetOrientation " + code + "\nClearScreen\nGetEventHandler\nSendEvent null 212 32 " + code
        + "\nGetEventHandler\nSendEvent null 43 0 0";
}

const QString firstTurnSidewaysArgument = QStringLiteral("--first-turn-sideways");
const QString configPath = QStringLiteral("/mnt/ext1/system/config/global.cfg");
const QString slideshow = QStringLiteral("slideshow");
const QString playlists = QStringLiteral("playlists");

} // namespace

class tst_App : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void firstTurnAlwaysCounts(); // first: the flag is the process's
    void firstTurnSideways();
    void turnToWhereItStands();
    void allowedTurns_data();
    void allowedTurns();
    void turnCalls_data();
    void turnCalls();
    void turnedScreenOnColour();
    void construction();
    void metaObject();
    void screenSize();
    void showPanel();
    void currentDateIsTakenAfresh();
    void backView();
    void changeView();
    void changeToTheSameView();
    void writingTheProperty();
    void leavingTheShow_data();
    void leavingTheShow();
    void settingsHearOfTheViewOnlyInRun();
    void updateScreen_data();
    void updateScreen();
    void destructorStopsTheShow();

private:
    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<StderrCapture> m_log;
};

void tst_App::initTestCase()
{
    stored_database::remove();
}

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

void tst_App::firstTurnAlwaysCounts()
{
    App app;
    QSignalSpy screen(&app, &App::screenChanged);
    QSignalSpy turned(&app, &App::orientationChanged);
    QByteArray callsBeforeSignal;
    connect(&app, &App::screenChanged, &app, [&] { callsBeforeSignal = ::turnCalls(*m_device); });
    QElapsedTimer sinceTurn;
    qint64 signalAfter = -1;
    connect(&app, &App::orientationChanged, &app, [&] { signalAfter = sinceTurn.elapsed(); });

    app.changeOrientation(1); // not let through, and does not count
    QCOMPARE(::turnCalls(*m_device), QByteArray());

    // The device stands upright already: a change all the same, from nothing.
    sinceTurn.start();
    app.changeOrientation(0);
    QCOMPARE(::turnCalls(*m_device), sequence("prepareAspectChange 0\n", 0));
    QCOMPARE(callsBeforeSignal, ::turnCalls(*m_device)); // the signal comes last
    QCOMPARE(screen.count(), 1);
    QCOMPARE(turned.count(), 0);
    m_device->forgetCalls();

    QTRY_COMPARE(turned.count(), 1);
    QVERIFY2(signalAfter >= 100 && signalAfter < 500, QByteArray::number(signalAfter).constData());
    QCOMPARE(::turnCalls(*m_device), QByteArray()); // the refresh comes later than the signal
    QTRY_COMPARE(::turnCalls(*m_device), QByteArray("setScreenUpdateMode 1\nrequestScreenRefresh 1 1"));
    QVERIFY2(sinceTurn.elapsed() >= 500, QByteArray::number(sinceTurn.elapsed()).constData());
    QCOMPARE(screen.count(), 1);
    QCOMPARE(turned.count(), 1);
}

void tst_App::firstTurnSideways()
{
    // From nothing, which is not upright either: no change between upright and sideways to prepare.
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {firstTurnSidewaysArgument});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(child.readAllStandardOutput(), sequence({}, 1));
}

void tst_App::turnToWhereItStands()
{
    {
        App first;
        first.changeOrientation(0);
    }
    // What one application knows of the screen holds for the next one in the process.
    App app;
    m_device->forgetCalls();
    QSignalSpy screen(&app, &App::screenChanged);
    app.changeOrientation(0);
    app.changeOrientation(0);
    QCOMPARE(::turnCalls(*m_device), QByteArray());
    QCOMPARE(screen.count(), 0);
}

void tst_App::allowedTurns_data()
{
    QTest::addColumn<QString>("profile");
    QTest::addColumn<QString>("view");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("allowed");

    const QString plain = QStringLiteral("grey-6"); // cannot stand upside down
    const QString turning = QStringLiteral("grey-8"); // can
    QTest::newRow("overview, 90 degrees") << turning << playlists << 1 << false;
    QTest::newRow("overview, 270 degrees") << turning << playlists << 2 << false;
    QTest::newRow("overview, 180 degrees") << turning << playlists << 3 << true;
    QTest::newRow("overview, 180 degrees, cannot") << plain << playlists << 3 << false;
    QTest::newRow("no view yet, 90 degrees") << turning << QString() << 1 << false;
    QTest::newRow("no view yet, 180 degrees") << turning << QString() << 3 << true;
    QTest::newRow("show, 90 degrees") << plain << slideshow << 1 << true;
    QTest::newRow("show, 270 degrees") << plain << slideshow << 2 << true;
    QTest::newRow("show, 180 degrees") << turning << slideshow << 3 << true;
}

void tst_App::allowedTurns()
{
    QFETCH(QString, profile);
    QFETCH(QString, view);
    QFETCH(int, orientation);
    QFETCH(bool, allowed);

    m_device.reset();
    m_device = std::make_unique<DeviceForTest>(profile);
    App app;
    app.changeView(view);
    app.changeOrientation(orientation);
    QCOMPARE(m_device->calls({"SetOrientation"}).size(), allowed ? 1 : 0);
    QCOMPARE(Device::instance()->screen.orientation(), allowed ? orientation : 0);
}

void tst_App::turnCalls_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<bool>("prepared");

    QTest::newRow("upright to sideways") << 0 << 1 << true;
    QTest::newRow("sideways to upright") << 2 << 0 << true;
    QTest::newRow("upside down to sideways") << 3 << 2 << true;
    QTest::newRow("upright to upside down") << 0 << 3 << false;
    QTest::newRow("one side to the other") << 1 << 2 << false;
}

void tst_App::turnCalls()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(bool, prepared);

    m_device.reset();
    m_device = std::make_unique<DeviceForTest>(QStringLiteral("grey-8"));
    App app;
    app.changeView(slideshow);
    app.changeOrientation(from);
    m_device->forgetCalls();
    app.changeOrientation(to);
    QCOMPARE(::turnCalls(*m_device), sequence(prepared ? "prepareAspectChange 0\n" : "", to));
}

void tst_App::turnedScreenOnColour()
{
    m_device->setColourMask(1);
    App app;
    app.changeView(slideshow);
    app.changeOrientation(2);
    m_device->forgetCalls();
    QTRY_COMPARE(::turnCalls(*m_device), QByteArray("setScreenUpdateMode 2\nrequestScreenRefresh 1 1"));
}

void tst_App::construction()
{
    QDir().mkpath(QFileInfo(configPath).path());
    QFile config(configPath);
    QVERIFY(config.open(QIODevice::WriteOnly));
    config.write("btkeys.count=2\nbtkeys.bt1.name=__DELETED__\nbtkeys.bt2.name=a\n");
    config.close();
    QByteArrayList lines;
    const App app;
    QVERIFY(config.remove());
    for (const SdkCall &call : m_device->calls()) {
        if (call.name != "lr_print_log2")
            lines.append((QByteArrayList{call.name} + call.arguments).join(' '));
    }
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
    QByteArrayList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        methods.append(QByteArray(method.methodType() == QMetaMethod::Signal ? "signal " : "slot ")
                       + method.methodSignature() + ' ' + method.parameterNames().join(','));
        QCOMPARE(method.access(), QMetaMethod::Public);
        QCOMPARE(method.returnMetaType().id(), int(QMetaType::Void));
    }
    QCOMPARE(
        methods,
        (QByteArrayList{"signal screenChanged() ", "signal currentDateChanged() ",
                        "signal orientationChanged() ", "signal changedView(QString) view",
                        "signal backViewChanged() ", "signal showInfoMessage(QString,QString) message,icon",
                        "slot showPanel(bool) show", "slot changeOrientation(int) n", "slot updateScreen() ",
                        "slot quit() ", "slot changeView(QString) view"}));

    QByteArrayList properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        properties.append(QByteArray(property.typeName()) + ' ' + property.name()
                          + (property.isWritable() ? " writable " : " ") + property.notifySignal().name());
    }
    QCOMPARE(properties,
             (QByteArrayList{"int screenWidth screenChanged", "int screenHeight screenChanged",
                             "QDateTime currentDate currentDateChanged",
                             "QString backView writable backViewChanged",
                             "QString currentView writable changedView", "QString prevView "}));
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

void tst_App::leavingTheShow_data()
{
    QTest::addColumn<QString>("profile");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("afterwards");

    const QString plain = QStringLiteral("grey-6");
    const QString turning = QStringLiteral("grey-8");
    QTest::newRow("upright stays") << plain << 0 << 0;
    QTest::newRow("sideways is turned back") << plain << 1 << 0;
    QTest::newRow("the other side, too") << turning << 2 << 0;
    QTest::newRow("upside down stays where it can be") << turning << 3 << 3;
    QTest::newRow("and is turned back where it cannot") << plain << 3 << 0;
}

void tst_App::leavingTheShow()
{
    QFETCH(QString, profile);
    QFETCH(int, orientation);
    QFETCH(int, afterwards);

    m_device.reset();
    m_device = std::make_unique<DeviceForTest>(profile);
    App app;
    app.changeView(slideshow);
    SetOrientation(orientation);
    m_device->forgetCalls();
    int heard = -1; // before anybody hears of the change the screen has turned
    connect(&app, &App::changedView, &app, [&heard] { heard = GetOrientation(); });
    app.changeView(playlists);
    QCOMPARE(m_device->calls({"SetOrientation"}).size(), orientation == afterwards ? 0 : 1);
    QCOMPARE(heard, afterwards);
    QCOMPARE(GetOrientation(), afterwards);
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
    app.updateScreen();
    QCOMPARE(::turnCalls(*m_device), calls);
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

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().contains(firstTurnSidewaysArgument)) {
        const DeviceForTest device;
        App app;
        app.changeView(slideshow);
        app.changeOrientation(1);
        return std::fputs(turnCalls(device).constData(), stdout) >= 0 ? 0 : 1;
    }
    tst_App test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_app.moc"
