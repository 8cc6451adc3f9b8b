// What the device's power keeps awake, through a real bus with services that the test plays.

#include "stderr_capture.h"
#include "wakeful_services.h"

#include <device.h>
#include <power.h>

#include <QCoreApplication>
#include <QProcess>
#include <QSocketNotifier>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace lindenreed::device;

namespace {

constexpr char childArgument[] = "--hold-an-inhibitor";

} // namespace

class tst_PowerInhibitors : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void powerHoldsIt();
    void powerHoldsItWhileSleepIsPutOff();
    void putOffWithoutABus();
    void stopGivesItBack();
    void stopWhileItIsAskedFor();
    void endOfTheProcess_data();
    void endOfTheProcess();
    void endOfTheProcessOnAHangingBus();
};

void tst_PowerInhibitors::init()
{
    useNoBus();
}

void tst_PowerInhibitors::powerHoldsIt()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSessionBus(bus.address());
    Power power;
    power.setAutoKeylock(false);
    power.setAutoPowerOff(false);
    QTRY_COMPARE(desktop.held.size(), 1);
    power.setAutoPowerOff(false);
    power.setAutoPowerOff(true);
    QTRY_COMPARE(desktop.held.size(), 0);
    QCOMPARE(desktop.asked, 1);
    power.setAutoPowerOff(false);
    QTRY_COMPARE(desktop.held.size(), 1);
    power.reset();
    QTRY_COMPARE(desktop.held.size(), 0);
}

void tst_PowerInhibitors::powerHoldsItWhileSleepIsPutOff()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSessionBus(bus.address());
    Power power(200ms);
    power.putOffSleep();
    QTRY_COMPARE(desktop.held.size(), 1);
    QCOMPARE(desktop.words, QStringList({u"Picture frame"_s, u"The device is in use"_s}));
    power.putOffSleep(); // the time starts anew, the inhibitor is the same
    QTRY_COMPARE(desktop.held.size(), 0);
    QCOMPARE(desktop.asked, 1);

    const Logind system(bus);
    desktop.refuses = true;
    useSystemBus(bus.address());
    power.putOffSleep();
    QTRY_COMPARE(system.words.value(0), u"idle"_s); // sleep that somebody asks for is none of its business
    QTRY_VERIFY(system.isLent());
    power.reset();
    QTRY_VERIFY(!system.isLent());
}

void tst_PowerInhibitors::putOffWithoutABus()
{
    const StderrCapture errors;
    Power power;
    power.putOffSleep();
    power.setAutoPowerOff(false);
    QTRY_VERIFY(errors.text().contains("nothing keeps the machine awake (")); // of the show, which needs it
    QCOMPARE(errors.text().count('\n'), 1);
}

void tst_PowerInhibitors::stopGivesItBack()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSessionBus(bus.address());
    Device::start(Profile());
    Device::instance()->power.setAutoPowerOff(false);
    QTRY_COMPARE(desktop.held.size(), 1);
    Device::stop();
    QTRY_COMPARE(desktop.held.size(), 0);
}

void tst_PowerInhibitors::stopWhileItIsAskedFor()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSessionBus(bus.address());
    // A device that stops before it has reached the bus asks for nothing: again, until one was on its way.
    bool asked = false;
    for (int i = 0; !asked && i < 20; ++i) {
        Device::start(Profile());
        Device::instance()->power.setAutoPowerOff(false);
        Device::stop();
        QCOMPARE(desktop.asked, 0);
        asked = QTest::qWaitFor([&] { return desktop.asked != 0; }, 500);
    }
    QCOMPARE(desktop.asked, 1);
    QTRY_VERIFY(desktop.held.isEmpty());
}

void tst_PowerInhibitors::endOfTheProcess_data()
{
    QTest::addColumn<bool>("crash");
    QTest::addColumn<bool>("desktopIsThere");

    QTest::newRow("in order, desktop") << false << true;
    QTest::newRow("in order, logind") << false << false;
    QTest::newRow("killed, desktop") << true << true;
    QTest::newRow("killed, logind") << true << false;
}

void tst_PowerInhibitors::endOfTheProcess()
{
    QFETCH(bool, crash);
    QFETCH(bool, desktopIsThere);

    const PrivateBus bus;
    std::unique_ptr<ScreenSaver> desktop;
    std::unique_ptr<Logind> system;
    if (desktopIsThere) {
        useSessionBus(bus.address());
        desktop = std::make_unique<ScreenSaver>(bus);
    } else {
        useSystemBus(bus.address());
        system = std::make_unique<Logind>(bus);
    }
    const auto isHeld = [&] { return desktop ? desktop->held.size() == 1 : system->isLent(); };

    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(u"/proc/self/exe"_s, {QString::fromLatin1(childArgument)});
    QVERIFY(child.waitForStarted());
    QTRY_VERIFY(isHeld());
    if (crash)
        child.kill();
    else
        child.write("end\n");
    QTRY_VERIFY(!isHeld());
    QTRY_COMPARE(child.state(), QProcess::NotRunning);
    QCOMPARE(child.exitStatus() == QProcess::CrashExit, crash);
}

void tst_PowerInhibitors::endOfTheProcessOnAHangingBus()
{
    const HangingBus bus;
    useSessionBus(bus.address());
    QProcess child;
    child.start(u"/proc/self/exe"_s, {QString::fromLatin1(childArgument)});
    child.write("end\n");
    QVERIFY2(child.waitForFinished(5000), "the process waited for the bus");
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
}

/// Holds an inhibitor until a line comes; the device stops when the application object is gone already.
static int holdUntilTold(int argc, char *argv[])
{
    {
        QCoreApplication application(argc, argv);
        Device::start(Profile());
        Device::instance()->power.setAutoPowerOff(false);
        QSocketNotifier told(STDIN_FILENO, QSocketNotifier::Read);
        QObject::connect(&told, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
        QCoreApplication::exec();
    }
    Device::stop();
    return 0;
}

int main(int argc, char *argv[])
{
    if (argc == 2 && qstrcmp(argv[1], childArgument) == 0)
        return holdUntilTold(argc, argv);
    QCoreApplication application(argc, argv);
    tst_PowerInhibitors test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_power_inhibitors.moc"
