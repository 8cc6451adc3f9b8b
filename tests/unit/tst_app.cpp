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
#include <QMetaMethod>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

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
    void turnToWhereItStands();
    void allowedTurns_data();
    void allowedTurns();
    void turnCalls_data();
    void turnCalls();
    void turnedScreenOnColour();
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

    app.changeOrientation(1); // not let through, and does not count
    QCOMPARE(::turnCalls(*m_device), QByteArray());

    // The device stands upright already: a change all the same, from nothing.
    app.changeOrientation(0);
    QCOMPARE(::turnCalls(*m_device), sequence("prepareAspectChange 0\n", 0));
    QCOMPARE(screen.count(), 1);
    QCOMPARE(turned.count(), 0);
    m_device->forgetCalls();

    QTRY_COMPARE(turned.count(), 1);
    QCOMPARE(::turnCalls(*m_device), QByteArray()); // the refresh comes later than the signal
    QTRY_COMPARE(::turnCalls(*m_device), QByteArray("setScreenUpdateMode 1\nrequestScreenRefresh 1 1"));
    QCOMPARE(screen.count(), 1);
    QCOMPARE(turned.count(), 1);
}

void tst_App::turnToWhereItStands()
{
    App app;
    app.changeOrientation(0);
    m_device->forgetCalls();
    QSignalSpy screen(&app, &App::screenChanged);
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

void tst_App::metaObject()
{
    const QMetaObject &meta = App::staticMetaObject;
    QByteArrayList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods.append(meta.method(i).methodSignature());
    QCOMPARE(methods,
             (QByteArrayList{"screenChanged()", "currentDateChanged()", "orientationChanged()",
                             "changedView(QString)", "backViewChanged()", "showInfoMessage(QString,QString)",
                             "showPanel(bool)", "changeOrientation(int)", "updateScreen()", "quit()",
                             "changeView(QString)"}));

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
    QCOMPARE(heard, GetOrientation());
    QCOMPARE(m_device->calls({"SetOrientation"}).isEmpty() ? orientation : 0, afterwards);
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

QTEST_GUILESS_MAIN(tst_App)
#include "tst_app.moc"
