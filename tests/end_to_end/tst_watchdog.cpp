// A frame that hangs is noticed: whoever started it hears of it as long as its main loop goes on, no longer.

#include "launched_device.h"
#include "notify_socket.h"

#include <QElapsedTimer>

#include <sys/ptrace.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int patienceMs = 1000;

/// Holds one thread of another process, as a thread is held that waits for ever; the others go on.
class HeldThread
{
public:
    explicit HeldThread(qint64 thread)
        : m_thread(pid_t(thread))
    {
        m_isHeld = ::ptrace(PTRACE_SEIZE, m_thread, nullptr, nullptr) == 0
            && ::ptrace(PTRACE_INTERRUPT, m_thread, nullptr, nullptr) == 0
            && ::waitpid(m_thread, nullptr, __WALL) == m_thread;
    }
    ~HeldThread() { ::ptrace(PTRACE_DETACH, m_thread, nullptr, nullptr); }
    HeldThread(const HeldThread &) = delete;
    HeldThread &operator=(const HeldThread &) = delete;

    bool isHeld() const { return m_isHeld; }

private:
    pid_t m_thread;
    bool m_isHeld = false;
};

} // namespace

class tst_Watchdog : public QObject
{
    Q_OBJECT

private slots:
    void mainLoopIsHeld();
};

void tst_Watchdog::mainLoopIsHeld()
{
    LaunchedDevice device;
    const QString path = device.place.path(u"notify"_s);
    NotifySocket manager(QFile::encodeName(path));
    QVERIFY(manager.bound());
    device.place.environment().insert(u"NOTIFY_SOCKET"_s, path);
    device.place.environment().insert(u"WATCHDOG_USEC"_s, QString::number(patienceMs * 1000));
    QVERIFY(device.start({u"--headless"_s}));

    QTRY_VERIFY(manager.told().size() >= 3);
    QCOMPARE(manager.told().constFirst(), QByteArray("READY=1"));
    QCOMPARE(manager.told().constLast(), QByteArray("WATCHDOG=1"));

    const qint64 program = findDescendant(device.launcher.processId(), "picture_stand");
    QVERIFY(program > 0);
    {
        const HeldThread mainThread(program);
        QVERIFY(mainThread.isHeld());
        const qsizetype before = manager.told().size();
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY(clock.hasExpired(2 * patienceMs)); // the manager would have ended it by now
        QCOMPARE(manager.told().size(), before);
    }
    const qsizetype before = manager.told().size();
    QTRY_VERIFY(manager.told().size() > before);
    QVERIFY(device.does(u"quit"_s));
    QCOMPARE(LauncherPlace::end(device.launcher).status, 0);
}

QTEST_GUILESS_MAIN(tst_Watchdog)
#include "tst_watchdog.moc"
