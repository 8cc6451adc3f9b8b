// Keeping the machine awake: a real bus with services that the test plays, and buses that are none.

#include "stderr_capture.h"
#include "wakeful_services.h"

#include <inhibitor.h>

#include <QCoreApplication>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace lindenreed::device;

namespace {

const Inhibition inhibition{u"Pictures are on show"_s, u"idle:sleep"_s, true};
constexpr std::chrono::milliseconds shortPause = 20ms;

} // namespace

/// Has the names of both services, and answers them with something else than an inhibitor.
class LyingService : public QDBusVirtualObject
{
    Q_OBJECT

public:
    LyingService(const PrivateBus &bus, QVariantList answer)
        : m_answer(std::move(answer))
    {
        QDBusConnection connection = bus.connection();
        for (const QString &path : {u"/org/freedesktop/ScreenSaver"_s, u"/org/freedesktop/login1"_s})
            connection.registerVirtualObject(path, this);
        for (const QString &name : {u"org.freedesktop.ScreenSaver"_s, u"org.freedesktop.login1"_s})
            connection.registerService(name);
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &request, const QDBusConnection &bus) override
    {
        return bus.send(request.createReply(m_answer));
    }

private:
    QVariantList m_answer;
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
    void noBus_data();
    void noBus();
    void hangingBus_data();
    void hangingBus();
    void hangingBusAndTheEnd();
    void busThatDies();
    void anotherBusAfterOneThatDied_data();
    void anotherBusAfterOneThatDied();
    void busThatComesLate();
    void oneAttemptInAPause();
    void noAttemptAfterTheEnd();
    void busThatDiesWhileAsked();
    void complaintIsNotRepeated();
    void answersThatMakeNoSense_data();
    void answersThatMakeNoSense();

private:
    static qsizetype complaints(const StderrCapture &errors)
    {
        return errors.text().count("nothing keeps the machine awake (");
    }
};

void tst_Inhibitor::init()
{
    useNoBus();
}

void tst_Inhibitor::fromTheDesktop()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    useSessionBus(bus.address());
    Inhibitor inhibitor(inhibition);
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
    useSystemBus(bus.address());
    const StderrCapture errors;
    Inhibitor inhibitor(inhibition);
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
    useSessionBus(bus.address());
    useSystemBus(bus.address());
    Inhibitor inhibitor(inhibition);
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
    useSessionBus(bus.address());
    Inhibitor inhibitor(inhibition);
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

    useSessionBus(session);
    useSystemBus(system);
    const StderrCapture errors;
    Inhibitor inhibitor(inhibition);
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
        useSessionBus(bus.address());
    else
        useSystemBus(bus.address());
    const StderrCapture errors;
    QElapsedTimer time;
    time.start();
    Inhibitor inhibitor(inhibition);
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
    useSessionBus(bus.address());
    QElapsedTimer time;
    time.start();
    {
        Inhibitor inhibitor(inhibition);
        inhibitor.setWanted(true);
    }
    QVERIFY2(time.elapsed() < 300, "the end waited for the bus");
}

void tst_Inhibitor::busThatDies()
{
    PrivateBus bus;
    const ScreenSaver desktop(bus);
    useSessionBus(bus.address());
    const StderrCapture errors;
    Inhibitor inhibitor(inhibition);
    inhibitor.setWanted(true);
    QTRY_VERIFY(inhibitor.isHeld());
    bus.end();
    QTRY_COMPARE(complaints(errors), 1);
    QVERIFY(!inhibitor.isHeld());
    inhibitor.setWanted(false);

    const PrivateBus next;
    const ScreenSaver again(next);
    useSessionBus(next.address());
    inhibitor.setWanted(true);
    QTRY_VERIFY(inhibitor.isHeld());
}

void tst_Inhibitor::anotherBusAfterOneThatDied_data()
{
    QTest::addColumn<bool>("sameKind");

    QTest::newRow("session, session") << true;
    QTest::newRow("session, system") << false;
}

void tst_Inhibitor::anotherBusAfterOneThatDied()
{
    QFETCH(bool, sameKind);

    PrivateBus bus;
    const ScreenSaver desktop(bus);
    useSessionBus(bus.address());
    const StderrCapture errors;
    Inhibitor inhibitor(inhibition, shortPause);
    inhibitor.setWanted(true);
    QTRY_VERIFY(inhibitor.isHeld());
    bus.end();
    QTRY_COMPARE(complaints(errors), 1);

    const PrivateBus next;
    ScreenSaver again(next);
    const Logind system(next);
    if (sameKind)
        useSessionBus(next.address());
    else
        useSystemBus(next.address());
    QTRY_VERIFY(inhibitor.isHeld());
    QCOMPARE(again.held.size(), sameKind ? 1 : 0);
    QCOMPARE(system.isLent(), !sameKind);
    QCOMPARE(complaints(errors), 1);
    inhibitor.setWanted(false);
    QTRY_COMPARE(again.held.size(), 0);
    QTRY_VERIFY(!system.isLent());
}

void tst_Inhibitor::busThatComesLate()
{
    const StderrCapture errors;
    Inhibitor inhibitor(inhibition, shortPause);
    inhibitor.setWanted(true);
    QTRY_COMPARE(complaints(errors), 1);
    const PrivateBus bus;
    const ScreenSaver desktop(bus);
    useSessionBus(bus.address());
    QTRY_VERIFY(inhibitor.isHeld());
}

void tst_Inhibitor::oneAttemptInAPause()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    desktop.refuses = true;
    useSessionBus(bus.address());
    const StderrCapture errors;
    Inhibitor inhibitor(inhibition);
    inhibitor.setWanted(true);
    QTRY_COMPARE(complaints(errors), 1);
    inhibitor.setWanted(true);
    QVERIFY(!inhibitor.isAsking());
    QCOMPARE(desktop.asked, 1);

    inhibitor.setWanted(false);
    inhibitor.setWanted(true); // another wish
    QTRY_COMPARE(desktop.asked, 2);
}

void tst_Inhibitor::noAttemptAfterTheEnd()
{
    const PrivateBus bus;
    ScreenSaver desktop(bus);
    desktop.refuses = true;
    useSessionBus(bus.address());
    const StderrCapture errors;
    Inhibitor waiting(inhibition, 1ms);
    waiting.setWanted(true);
    QTRY_VERIFY(desktop.asked > 2);
    QCOMPARE(complaints(errors), 1);
    waiting.setWanted(false);
    // What was under way is over when one that was asked for later is held.
    desktop.refuses = false;
    Inhibitor later(inhibition);
    later.setWanted(true);
    QTRY_VERIFY(later.isHeld());
    QTRY_COMPARE(desktop.held.size(), 1);
    const int asked = desktop.asked;
    QVERIFY(!waiting.isHeld());
    later.setWanted(false);
    QTRY_COMPARE(desktop.held.size(), 0);
    QCOMPARE(desktop.asked, asked);
}

void tst_Inhibitor::busThatDiesWhileAsked()
{
    PrivateBus bus;
    useSessionBus(bus.address());
    const StderrCapture errors;
    Inhibitor inhibitor(inhibition);
    inhibitor.setWanted(true);
    bus.end();
    QTRY_COMPARE(complaints(errors), 1);
    QVERIFY(!inhibitor.isHeld());
}

void tst_Inhibitor::complaintIsNotRepeated()
{
    const StderrCapture errors;
    Inhibitor inhibitor(inhibition);
    for (int round = 0; round < 5; ++round) {
        inhibitor.setWanted(true);
        QTRY_VERIFY(!inhibitor.isAsking());
        inhibitor.setWanted(false);
    }
    QCOMPARE(complaints(errors), 1);
}

void tst_Inhibitor::answersThatMakeNoSense_data()
{
    QTest::addColumn<QVariantList>("answer");

    QTest::newRow("nothing") << QVariantList();
    QTest::newRow("a text") << QVariantList{u"yes"_s};
    QTest::newRow("a negative number") << QVariantList{-1};
    QTest::newRow("many") << QVariantList(200, QVariant(u"x"_s.repeated(1000)));
}

void tst_Inhibitor::answersThatMakeNoSense()
{
    QFETCH(QVariantList, answer);

    const PrivateBus bus;
    const LyingService liar(bus, answer);
    useSessionBus(bus.address());
    useSystemBus(bus.address());
    const StderrCapture errors;
    Inhibitor inhibitor(inhibition);
    inhibitor.setWanted(true);
    QTRY_COMPARE(complaints(errors), 1);
    QVERIFY(errors.text().contains("session bus: its answer makes no sense; "
                                   "system bus: its answer makes no sense"));
    QVERIFY(!inhibitor.isHeld());
    inhibitor.setWanted(false);
    QTRY_VERIFY(!inhibitor.isAsking());
}

QTEST_GUILESS_MAIN(tst_Inhibitor)
#include "tst_inhibitor.moc"
