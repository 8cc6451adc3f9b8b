// The application object by itself: how the screen is turned, and turned back.

#include "app.h"
#include "call_lines.h"
#include "stderr_capture.h"
#include "stored_database.h"

#include <device.h>
#include <slateview.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <cstdio>
#include <memory>

using lindenreed::device::Device;
using lindenreed::device::DeviceForTest;
using lindenreed::picture_stand::App;

namespace {

/// Everything that turning the screen asks for, in order, as "name argument argument".
QByteArray turnLines(const DeviceForTest &device)
{
    return callLines(device.calls({"prepareAspectChange", "SetOrientation", "ClearScreen", "GetEventHandler",
                                   "SendEvent", "setScreenUpdateMode", "requestScreenRefresh"}))
        .join('\n');
}

QByteArray sequence(const QByteArray &before, int orientation)
{
    const QByteArray code = QByteArray::number(orientation);
    return before + "SetOrientation " + code + "\nClearScreen\nGetEventHandler\nSendEvent null 212 32 " + code
        + "\nGetEventHandler\nSendEvent null 43 0 0";
}

const QString firstTurnSidewaysArgument = QStringLiteral("--first-turn-sideways");
const QString slideshow = QStringLiteral("slideshow");
const QString playlists = QStringLiteral("playlists");

} // namespace

class tst_AppTurns : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
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
    void leavingTheShow_data();
    void leavingTheShow();

private:
    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<StderrCapture> m_log;
};

void tst_AppTurns::init()
{
    m_log = std::make_unique<StderrCapture>();
    m_device = std::make_unique<DeviceForTest>();
}

void tst_AppTurns::cleanup()
{
    m_device.reset();
    m_log.reset();
}

void tst_AppTurns::firstTurnAlwaysCounts()
{
    App app;
    QSignalSpy screen(&app, &App::screenChanged);
    QSignalSpy turned(&app, &App::orientationChanged);
    QByteArray callsBeforeSignal;
    connect(&app, &App::screenChanged, &app, [&] { callsBeforeSignal = turnLines(*m_device); });
    QElapsedTimer sinceTurn;
    qint64 signalAfter = -1;
    connect(&app, &App::orientationChanged, &app, [&] { signalAfter = sinceTurn.elapsed(); });

    app.changeOrientation(1); // not let through, and does not count
    QCOMPARE(turnLines(*m_device), QByteArray());

    // The device stands upright already: a change all the same, from nothing.
    sinceTurn.start();
    app.changeOrientation(0);
    QCOMPARE(turnLines(*m_device), sequence("prepareAspectChange 0\n", 0));
    QCOMPARE(callsBeforeSignal, turnLines(*m_device)); // the signal comes last
    QCOMPARE(screen.count(), 1);
    QCOMPARE(turned.count(), 0);
    m_device->forgetCalls();

    QTRY_COMPARE(turned.count(), 1);
    QVERIFY2(signalAfter >= 100 && signalAfter < 500, QByteArray::number(signalAfter).constData());
    QCOMPARE(turnLines(*m_device), QByteArray()); // the refresh comes later than the signal
    QTRY_COMPARE(turnLines(*m_device), QByteArray("setScreenUpdateMode 1\nrequestScreenRefresh 1 1"));
    QVERIFY2(sinceTurn.elapsed() >= 500, QByteArray::number(sinceTurn.elapsed()).constData());
    QCOMPARE(screen.count(), 1);
    QCOMPARE(turned.count(), 1);
}

void tst_AppTurns::firstTurnSideways()
{
    // From nothing, which is not upright either: no change between upright and sideways to prepare.
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {firstTurnSidewaysArgument});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(child.readAllStandardOutput(), sequence({}, 1));
}

void tst_AppTurns::turnToWhereItStands()
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
    QCOMPARE(turnLines(*m_device), QByteArray());
    QCOMPARE(screen.count(), 0);
}

void tst_AppTurns::allowedTurns_data()
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

void tst_AppTurns::allowedTurns()
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

void tst_AppTurns::turnCalls_data()
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

void tst_AppTurns::turnCalls()
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
    QCOMPARE(turnLines(*m_device), sequence(prepared ? "prepareAspectChange 0\n" : "", to));
}

void tst_AppTurns::turnedScreenOnColour()
{
    m_device->setColourMask(1);
    App app;
    app.changeView(slideshow);
    app.changeOrientation(2);
    m_device->forgetCalls();
    QTRY_COMPARE(turnLines(*m_device), QByteArray("setScreenUpdateMode 2\nrequestScreenRefresh 1 1"));
}

void tst_AppTurns::leavingTheShow_data()
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

void tst_AppTurns::leavingTheShow()
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

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().contains(firstTurnSidewaysArgument)) {
        const DeviceForTest device;
        App app;
        app.changeView(slideshow);
        app.changeOrientation(1);
        return std::fputs(turnLines(device).constData(), stdout) >= 0 ? 0 : 1;
    }
    tst_AppTurns test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_app_turns.moc"
