// Keeping the machine awake: a real bus with services that the test plays, and buses that are none.

#include "private_bus.h"
#include "stderr_capture.h"

#include <device.h>
#include <inhibitor.h>

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QElapsedTimer>
#include <QHash>
#include <QProcess>
#include <QSocketNotifier>
#include <QTest>

#include <csignal>
#include <memory>

#include <fcntl.h>
#include <poll.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

constexpr char childArgument[] = "--hold-an-inhibitor";

} // namespace

/// The desktop session's service.
class ScreenSaver : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

public:
    explicit ScreenSaver(const PrivateBus &bus)
        : m_watcher(QString(), bus.connection(), QDBusServiceWatcher::WatchForUnregistration)
    {
        QDBusConnection connection = bus.connection();
        connection.registerObject(u"/org/freedesktop/ScreenSaver"_s, this, QDBusConnection::ExportAllSlots);
        connection.registerService(u"org.freedesktop.ScreenSaver"_s);
        connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString &client) {
            held.removeIf([&client](auto entry) { return entry.value() == client; });
        });
    }

    int asked = 0;
    int givenBack = 0;
    bool refuses = false;
    QHash<uint, QString> held; ///< cookie, client
    QStringList words;

public slots:
    uint Inhibit(const QString &application, const QString &reason)
    {
        ++asked;
        words = {application, reason};
        if (refuses) {
            sendErrorReply(QDBusError::AccessDenied, u"not now"_s);
            return 0;
        }
        const QString client = message().service();
        m_watcher.addWatchedService(client);
        // It may have left before it was watched.
        if (connection().interface()->isServiceRegistered(client))
            held.insert(++m_lastCookie, client);
        return m_lastCookie;
    }
    void UnInhibit(uint cookie) { givenBack += int(held.remove(cookie)); }

private:
    QDBusServiceWatcher m_watcher;
    uint m_lastCookie = 41;
};

/// The system's service, which lends a descriptor.
class Logind : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    explicit Logind(const PrivateBus &bus)
    {
        QDBusConnection connection = bus.connection();
        connection.registerObject(u"/org/freedesktop/login1"_s, this, QDBusConnection::ExportAllSlots);
        connection.registerService(u"org.freedesktop.login1"_s);
    }
    ~Logind() override
    {
        if (m_end >= 0)
            ::close(m_end);
    }

    bool isLent() const
    {
        pollfd end = {m_end, POLLIN, 0};
        return m_end >= 0 && ::poll(&end, 1, 0) == 0; // closed by the borrower: hung up
    }
    QStringList words;

public slots:
    QDBusUnixFileDescriptor Inhibit(const QString &what, const QString &who, const QString &why,
                                    const QString &mode)
    {
        words = {what, who, why, mode};
        int ends[2] = {-1, -1};
        if (::pipe2(ends, O_CLOEXEC) != 0)
            return {};
        if (m_end >= 0)
            ::close(m_end);
        m_end = ends[0];
        QDBusUnixFileDescriptor lent(ends[1]);
        ::close(ends[1]);
        return lent;
    }

private:
    int m_end = -1;
};

class tst_Inhibitor : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void fromTheDesktop();
    void fromLogind();
    void fromLogindWhereTheDesktopRefuses();
    void quickChanges_data();
    void quickChanges();
    void powerHoldsIt();
    void stopGivesItBack();
    void stopWhileItIsAskedFor();
    void endOfTheProcess_data();
    void endOfTheProcess();
    void noBus_data();
    void noBus();
    void hangingBus_data();
    void hangingBus();
    void hangingBusAndTheEnd();
    void busThatDies();
    void busThatDiesWhileAsked();
    void complaintIsNotRepeated();

private:
    static void useSession(const QString &address) { qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8()); }
    static void useSystem(const QString &address) { qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.toUtf8()); }
    static qsizetype complaints(const StderrCapture &errors)
    {
        return errors.text().count("nothing keeps the machine awake (");
    }
};

void tst_Inhibitor::init()
{
    useSession(QString());
    useSystem(u"unix:path=/nowhere/bus"_s);
}

void tst_Inhibitor::fromTheDesktop()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSession(bus.address());
    Inhibitor inhibitor;
    inhibitor.setWanted(true);
    QTRY_VERIFY(inhibitor.isHeld());
    QCOMPARE(desktop.held.size(), 1);
    QCOMPARE(desktop.words, QStringList({u"Picture frame"_s, u"Pictures are on show"_s}));
    inhibitor.setWanted(true);
    inhibitor.setWanted(false);
    QVERIFY(!inhibitor.isHeld());
    QTRY_COMPARE(desktop.givenBack, 1); // in so many words
    QCOMPARE(desktop.asked, 1);

    inhibitor.setWanted(true);
    QTRY_VERIFY(inhibitor.isHeld());
    QCOMPARE(desktop.asked, 2);
}

void tst_Inhibitor::fromLogind()
{
    const PrivateBus bus;
    const Logind system(bus);
    useSystem(bus.address());
    const StderrCapture errors;
    Inhibitor inhibitor;
    inhibitor.setWanted(true);
    QTRY_VERIFY(inhibitor.isHeld());
    QCOMPARE(system.words,
             QStringList({u"idle:sleep"_s, u"Picture frame"_s, u"Pictures are on show"_s, u"block"_s}));
    QVERIFY(system.isLent());
    inhibitor.setWanted(false);
    QTRY_VERIFY(!system.isLent());
    QCOMPARE(errors.text(), QByteArray());
}

void tst_Inhibitor::fromLogindWhereTheDesktopRefuses()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    const Logind system(bus);
    desktop.refuses = true;
    useSession(bus.address());
    useSystem(bus.address());
    Inhibitor inhibitor;
    inhibitor.setWanted(true);
    QTRY_VERIFY(inhibitor.isHeld());
    QCOMPARE(desktop.asked, 1);
    QVERIFY(system.isLent());
}

void tst_Inhibitor::quickChanges_data()
{
    QTest::addColumn<QList<bool>>("wishes");

    QTest::newRow("on and off") << QList<bool>{true, false};
    QTest::newRow("on, off and on") << QList<bool>{true, false, true};
    QTest::newRow("many") << QList<bool>{true, false, true, false, true, false, true, false};
}

void tst_Inhibitor::quickChanges()
{
    QFETCH(QList<bool>, wishes);

    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSession(bus.address());
    Inhibitor inhibitor;
    for (const bool wanted : wishes)
        inhibitor.setWanted(wanted);
    QTRY_COMPARE(desktop.asked, 1);
    if (wishes.constLast()) {
        QTRY_VERIFY(inhibitor.isHeld());
        QCOMPARE(desktop.givenBack, 0);
        QCOMPARE(desktop.held.size(), 1);
    } else {
        QTRY_COMPARE(desktop.givenBack, 1);
        QVERIFY(desktop.held.isEmpty());
        QVERIFY(!inhibitor.isHeld());
    }
}

void tst_Inhibitor::powerHoldsIt()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSession(bus.address());
    Power power;
    power.setAutoKeylock(false);
    power.putOffSleep();
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

void tst_Inhibitor::stopGivesItBack()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSession(bus.address());
    Device::start(Profile());
    Device::instance()->power.setAutoPowerOff(false);
    QTRY_COMPARE(desktop.held.size(), 1);
    Device::stop();
    QTRY_COMPARE(desktop.held.size(), 0);
}

void tst_Inhibitor::stopWhileItIsAskedFor()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSession(bus.address());
    Device::start(Profile());
    Device::instance()->power.setAutoPowerOff(false);
    Device::stop();
    QCOMPARE(desktop.asked, 0);
    QTRY_COMPARE(desktop.asked, 1); // it was on its way
    QTRY_VERIFY(desktop.held.isEmpty());
}

void tst_Inhibitor::endOfTheProcess_data()
{
    QTest::addColumn<bool>("crash");
    QTest::addColumn<bool>("desktopIsThere");

    QTest::newRow("in order, desktop") << false << true;
    QTest::newRow("in order, logind") << false << false;
    QTest::newRow("killed, desktop") << true << true;
    QTest::newRow("killed, logind") << true << false;
}

void tst_Inhibitor::endOfTheProcess()
{
    QFETCH(bool, crash);
    QFETCH(bool, desktopIsThere);

    const PrivateBus bus;
    std::unique_ptr<ScreenSaver> desktop;
    std::unique_ptr<Logind> system;
    if (desktopIsThere) {
        useSession(bus.address());
        desktop = std::make_unique<ScreenSaver>(bus);
    } else {
        useSystem(bus.address());
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

void tst_Inhibitor::noBus_data()
{
    QTest::addColumn<QString>("session");
    QTest::addColumn<QString>("system");

    QTest::newRow("neither has an address") << QString() << QString();
    QTest::newRow("nobody listens") << u"unix:path=/nowhere/session"_s << u"unix:path=/nowhere/system"_s;
    QTest::newRow("no path") << u"unix:"_s << u"unix:nonsense"_s;
    QTest::newRow("address that would start a program") << u"autolaunch:"_s << u"unixexec:path=/bin/false"_s;
    QTest::newRow("address without sense") << u";;=,%"_s << u"unix:path=%zz"_s;
}

void tst_Inhibitor::noBus()
{
    QFETCH(QString, session);
    QFETCH(QString, system);

    useSession(session);
    useSystem(system);
    const StderrCapture errors;
    Inhibitor inhibitor;
    inhibitor.setWanted(true);
    QTRY_COMPARE(complaints(errors), 1);
    QCOMPARE(errors.text().count('\n'), 1);
    QVERIFY(!inhibitor.isHeld());
    inhibitor.setWanted(false);
}

void tst_Inhibitor::hangingBus_data()
{
    QTest::addColumn<bool>("session");
    QTest::addColumn<bool>("congested");

    QTest::newRow("session bus") << true << false;
    QTest::newRow("system bus") << false << false;
    QTest::newRow("session bus that takes no connections") << true << true;
    QTest::newRow("system bus that takes no connections") << false << true;
}

void tst_Inhibitor::hangingBus()
{
    QFETCH(bool, session);
    QFETCH(bool, congested);

    const HangingBus bus(congested);
    if (session)
        useSession(bus.address());
    else
        useSystem(bus.address());
    const StderrCapture errors;
    QElapsedTimer time;
    time.start();
    Inhibitor inhibitor;
    inhibitor.setWanted(true);
    inhibitor.setWanted(false);
    inhibitor.setWanted(true);
    QVERIFY2(time.elapsed() < 300, "the caller waited for the bus");
    QTRY_COMPARE(complaints(errors), 1);
    QVERIFY(time.elapsed() < 3000);
    QCOMPARE(errors.text().count('\n'), 1);
    QVERIFY(!inhibitor.isHeld());
}

void tst_Inhibitor::hangingBusAndTheEnd()
{
    const HangingBus bus;
    useSession(bus.address());
    QElapsedTimer time;
    time.start();
    {
        Inhibitor inhibitor;
        inhibitor.setWanted(true);
    }
    QVERIFY2(time.elapsed() < 300, "the end waited for the bus");

    QProcess child;
    child.start(u"/proc/self/exe"_s, {QString::fromLatin1(childArgument)});
    child.write("end\n");
    QVERIFY2(child.waitForFinished(5000), "the process waited for the bus");
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
}

void tst_Inhibitor::busThatDies()
{
    PrivateBus bus;
    const ScreenSaver desktop(bus);
    useSession(bus.address());
    const StderrCapture errors;
    Inhibitor inhibitor;
    inhibitor.setWanted(true);
    QTRY_VERIFY(inhibitor.isHeld());
    bus.end();
    QTRY_COMPARE(complaints(errors), 1);
    QVERIFY(!inhibitor.isHeld());
    inhibitor.setWanted(false);

    const PrivateBus next;
    const ScreenSaver again(next);
    useSession(next.address());
    inhibitor.setWanted(true);
    QTRY_VERIFY(inhibitor.isHeld());
}

void tst_Inhibitor::busThatDiesWhileAsked()
{
    PrivateBus bus;
    useSession(bus.address());
    const StderrCapture errors;
    Inhibitor inhibitor;
    inhibitor.setWanted(true);
    bus.end();
    QTRY_COMPARE(complaints(errors), 1);
    QVERIFY(!inhibitor.isHeld());
}

void tst_Inhibitor::complaintIsNotRepeated()
{
    const StderrCapture errors;
    Inhibitor inhibitor;
    for (int round = 0; round < 5; ++round) {
        inhibitor.setWanted(true);
        QTRY_COMPARE(complaints(errors), 1);
        QTest::qWait(10);
        inhibitor.setWanted(false);
    }
    QCOMPARE(complaints(errors), 1);
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
    tst_Inhibitor test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_inhibitor.moc"
