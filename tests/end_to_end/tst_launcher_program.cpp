// What a program started by slate-run finds around it.

#include "launcher_run.h"

#include <QDir>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <memory>

#include <sys/ipc.h>
#include <sys/shm.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class tst_LauncherProgram : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void streamsAreTheProgramsOwn();
    void argumentsArePassedOn();
    void environmentIsWhatIsNeeded();
    void localeIsOneVariable_data();
    void localeIsOneVariable();
    void userBusIsNamed();
    void startsInInternalMemory();
    void hostIsReadOnly_data();
    void hostIsReadOnly();
    void deviceIsWritable_data();
    void deviceIsWritable();
    void onlyTheDeviceIsWritable();
    void devicesAndProcessesAreUsable();
    void sharedMemoryIsItsOwn();
    void networkIsOff();
    void nobodyIsReached();
    void privilegesAreGone();
    void runtimeFolderIsPrivate();
    void memoryInformationIsServed();
    void leaksAreFoundInside();
    void withoutSandbox();
    void ordinaryUser();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
};

void tst_LauncherProgram::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
}

void tst_LauncherProgram::cleanup()
{
    if (!QTest::currentTestFailed())
        QCOMPARE(m_place->leftovers(), QStringList());
}

void tst_LauncherProgram::streamsAreTheProgramsOwn()
{
    const LauncherEnd end = m_place->run(
        {u"--temporary"_s, u"--headless"_s, u"--"_s, u"/bin/sh"_s, u"-c"_s, u"cat; echo complaint >&2"_s},
        "input\n");
    QCOMPARE(end.output, QByteArray("input\n"));
    QCOMPARE(end.errors, QByteArray("complaint\n"));
    QCOMPARE(end.status, 0);
}

void tst_LauncherProgram::argumentsArePassedOn()
{
    const LauncherEnd end = m_place->run({u"--temporary"_s, u"--headless"_s, u"--"_s, u"printf"_s, u"<%s>"_s,
                                          u"--root"_s, u"two words"_s, u"--"_s, QString(), u"a=b"_s});
    QCOMPARE(end.output, QByteArray("<--root><two words><--><><a=b>"));
}

void tst_LauncherProgram::environmentIsWhatIsNeeded()
{
    QProcessEnvironment &environment = m_place->environment();
    const QString home = environment.value(u"HOME"_s);
    const QString search = environment.value(u"PATH"_s);
    environment.clear();
    const QMap<QString, QString> passed{
        {u"HOME"_s, home},
        {u"PATH"_s, search},
        {u"LANG"_s, u"de_DE.UTF-8"_s},
        {u"TZ"_s, u"Europe/Warsaw"_s},
        {u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s},
        {u"XDG_SESSION_ID"_s, u"7"_s},
        {u"NOTIFY_SOCKET"_s, u"/nowhere/notify"_s},
        {u"WATCHDOG_USEC"_s, u"30000000"_s},
        {u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s},
        {u"LSAN_OPTIONS"_s, u"print_suppressions=0"_s},
        {u"UBSAN_OPTIONS"_s, u"print_stacktrace=1"_s},
        {u"TSAN_OPTIONS"_s, u"second_deadlock_stack=1"_s},
    };
    for (const auto &[name, value] : passed.asKeyValueRange())
        environment.insert(name, value);
    environment.insert(u"TMPDIR"_s, m_place->temporaryFolder());
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_place->runtimeFolder());
    for (const QString &name :
         {u"QT_QPA_PLATFORM"_s, u"XDG_DATA_HOME"_s, u"LANGUAGE"_s, u"LC_TIME"_s, u"USER"_s, u"DISPLAY"_s,
          u"QT_LOGGING_RULES"_s, u"LD_PRELOAD_NOTE"_s, u"PWD"_s})
        environment.insert(name, u"x"_s);

    const LauncherEnd end = m_place->run({u"--temporary"_s, u"--headless"_s, u"--"_s, u"/usr/bin/env"_s});
    QCOMPARE(end.status, 0);
    QMap<QString, QString> seen;
    for (const QString &line : QString::fromUtf8(end.output).split(u'\n', Qt::SkipEmptyParts))
        seen.insert(line.section(u'=', 0, 0), line.section(u'=', 1));
    QMap<QString, QString> expected = passed;
    expected.insert(u"TMPDIR"_s, u"/devroot/tmp"_s);
    expected.insert(u"XDG_RUNTIME_DIR"_s, u"/devroot/run/user"_s);
    QCOMPARE(seen, expected);
}

void tst_LauncherProgram::localeIsOneVariable_data()
{
    QTest::addColumn<QString>("all");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QByteArray>("inside");

    QTest::newRow("nothing set") << QString() << QString() << QByteArray("C.UTF-8\n");
    QTest::newRow("language set") << QString() << u"pl_PL.UTF-8"_s << QByteArray("pl_PL.UTF-8\n");
    QTest::newRow("all wins") << u"C.UTF-8"_s << u"pl_PL.UTF-8"_s << QByteArray("C.UTF-8\n");
}

void tst_LauncherProgram::localeIsOneVariable()
{
    QFETCH(QString, all);
    QFETCH(QString, language);
    QFETCH(QByteArray, inside);

    m_place->environment().insert(u"LC_ALL"_s, all);
    m_place->environment().insert(u"LANG"_s, language);
    QCOMPARE(m_place->runScript(u"echo $LC_ALL$LANG"_s).output, inside);
}

void tst_LauncherProgram::userBusIsNamed()
{
    QVERIFY(writeFile(m_place->runtimeFolder() + u"/bus"_s, {}));
    const LauncherEnd end = m_place->runScript(u"echo $DBUS_SESSION_BUS_ADDRESS"_s);
    QCOMPARE(end.output, "unix:path=" + QFile::encodeName(m_place->runtimeFolder()) + "/bus\n");
}

void tst_LauncherProgram::startsInInternalMemory()
{
    QCOMPARE(m_place->runScript(u"pwd -P"_s).output, QByteArray("/mnt/ext1\n"));
}

void tst_LauncherProgram::hostIsReadOnly_data()
{
    QTest::addColumn<QString>("target");

    QTest::newRow("system") << u"/usr/made-inside"_s;
    QTest::newRow("configuration") << u"/etc/made-inside"_s;
    QTest::newRow("home") << u"$HOME/made-inside"_s;
    QTest::newRow("temporary files") << u"/tmp/made-inside"_s;
    QTest::newRow("top") << u"/made-inside"_s;
    QTest::newRow("kernel settings") << u"/proc/sys/kernel/core_pattern"_s;
}

void tst_LauncherProgram::hostIsReadOnly()
{
    QFETCH(QString, target);

    // Opened for writing but nothing written, so that a hole would do no harm.
    const LauncherEnd end = m_place->runScript(u"exec 9>>%1"_s.arg(target));
    QVERIFY2(end.errors.contains("Read-only file system"), end.errors.constData());
    QVERIFY(end.status != 0);
}

void tst_LauncherProgram::deviceIsWritable_data()
{
    QTest::addColumn<QString>("folder");

    QTest::newRow("internal memory") << u"/mnt/ext1"_s;
    QTest::newRow("pictures") << u"/mnt/ext1/Photo"_s;
    QTest::newRow("configuration") << u"/mnt/ext1/system/config"_s;
    QTest::newRow("media") << u"/mnt"_s;
    QTest::newRow("device") << u"/devroot"_s;
    QTest::newRow("locales") << u"/devroot/share/locale"_s;
    QTest::newRow("temporary files") << u"$TMPDIR"_s;
    QTest::newRow("control socket and panel") << u"/devroot/run"_s;
    QTest::newRow("runtime folder") << u"$XDG_RUNTIME_DIR"_s;
}

void tst_LauncherProgram::deviceIsWritable()
{
    QFETCH(QString, folder);

    const LauncherEnd end = m_place->runScript(u"cd %1 && echo written > a && mv a b && cat b"_s.arg(folder));
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.output, QByteArray("written\n"));
}

void tst_LauncherProgram::onlyTheDeviceIsWritable()
{
    // Whatever is mounted inside.
    const LauncherEnd end
        = m_place->runScript(u"cut -d' ' -f5 /proc/self/mountinfo | while read place; do "
                             "[ -w \"$place\" ] && echo \"$place\"; done | grep -v '^/dev/' | sort -u"_s);
    QCOMPARE(end.errors, QByteArray());
    QByteArrayList writable = end.output.split('\n');
    writable.removeAll("/dev"); // in memory, as what is below
    QCOMPARE(writable, (QByteArrayList{"/devroot", "/devroot/run", "/mnt", ""}));
}

void tst_LauncherProgram::sharedMemoryIsItsOwn()
{
    QTemporaryFile shared(u"/dev/shm/slate"_s);
    if (!shared.open())
        QSKIP("this machine has no shared memory");
    const LauncherEnd end
        = m_place->runScript(u"ls -A /dev/shm; echo written > /dev/shm/%1 && echo done"_s.arg(
            QFileInfo(shared.fileName()).fileName()));
    QCOMPARE(end.output, QByteArray("done\n"));
    QCOMPARE(fileContent(shared.fileName()), QByteArray());

    // The other kind is told by number.
    const int segment = ::shmget(IPC_PRIVATE, 4096, IPC_CREAT | 0600);
    if (segment >= 0) {
        const QString listing = u"tail -n +2 /proc/sysvipc/shm"_s;
        QProcess outside;
        outside.start(u"/bin/sh"_s, {u"-c"_s, listing});
        QVERIFY(outside.waitForFinished());
        const LauncherEnd segments = m_place->runScript(listing);
        ::shmctl(segment, IPC_RMID, nullptr);
        QVERIFY(!outside.readAllStandardOutput().isEmpty());
        QCOMPARE(segments.output, QByteArray());
    }

    // No disk either.
    const LauncherEnd disks = m_place->runScript(u"find /dev -type b"_s);
    QCOMPARE(disks.output, QByteArray());
}

void tst_LauncherProgram::devicesAndProcessesAreUsable()
{
    const LauncherEnd end = m_place->runScript(u"echo gone >/dev/null && head -c 3 /dev/zero | wc -c && "
                                               "read name < /proc/self/comm && echo $name && "
                                               "echo 7 > /proc/self/oom_score_adj"_s);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.output, QByteArray("3\nsh\n"));
    QCOMPARE(end.status, 0);
}

void tst_LauncherProgram::networkIsOff()
{
    const LauncherEnd end = m_place->runScript(u"tail -n +3 /proc/net/dev | cut -d: -f1 | tr -d ' '; "
                                               "tail -n +2 /proc/net/route"_s);
    if (end.errors.contains("the network stays on"))
        QSKIP("this machine does not let a program's network be switched off");
    QCOMPARE(end.output, QByteArray("lo\n"));
}

void tst_LauncherProgram::nobodyIsReached()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const QString connecting = u"exec 3<>/dev/tcp/127.0.0.1/%1"_s.arg(server.serverPort());
    const QString bash = QStandardPaths::findExecutable(u"bash"_s);
    if (bash.isEmpty())
        QSKIP("this test connects by bash");
    QProcess outside;
    outside.start(bash, {u"-c"_s, connecting});
    QVERIFY(outside.waitForFinished());
    QCOMPARE(outside.exitCode(), 0); // the host reaches it
    QTRY_VERIFY(server.hasPendingConnections());
    delete server.nextPendingConnection();

    const LauncherEnd end
        = m_place->run({u"--temporary"_s, u"--headless"_s, u"--"_s, bash, u"-c"_s, connecting});
    if (end.errors.contains("the network stays on"))
        QSKIP("this machine does not let a program's network be switched off");
    QVERIFY(end.status != 0);
    QVERIFY2(end.errors.contains("/dev/tcp/"), end.errors.constData());
    QVERIFY(!server.waitForNewConnection(0));
}

void tst_LauncherProgram::privilegesAreGone()
{
    const LauncherEnd end = m_place->runScript(u"grep -E '^(NoNewPrivs|CapEff|CapPrm)' /proc/self/status"_s);
    QCOMPARE(end.output,
             QByteArray("CapPrm:\t0000000000000000\nCapEff:\t0000000000000000\nNoNewPrivs:\t1\n"));
}

void tst_LauncherProgram::runtimeFolderIsPrivate()
{
    QCOMPARE(m_place->runScript(u"stat -c %a $XDG_RUNTIME_DIR /devroot/run"_s).output,
             QByteArray("700\n700\n"));
    m_place->environment().remove(u"XDG_RUNTIME_DIR"_s);
    QCOMPARE(m_place->runScript(u"stat -c %a $XDG_RUNTIME_DIR"_s).output, QByteArray("700\n"));
}

void tst_LauncherProgram::memoryInformationIsServed()
{
    const QByteArray little = "MemTotal:        1024 kB\n";
    QVERIFY(writeFile(m_place->path(u"meminfo"_s), little));
    const LauncherEnd end
        = m_place->runScript(u"cat /proc/meminfo"_s, {u"--meminfo"_s, m_place->path(u"meminfo"_s)});
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.output, little);

    const LauncherEnd missing = m_place->runScript(u"true"_s, {u"--meminfo"_s, m_place->path(u"none"_s)});
    QVERIFY2(isOneLine(missing.errors), missing.errors.constData());
    QCOMPARE(missing.status, 2);
}

void tst_LauncherProgram::leaksAreFoundInside()
{
    m_place->environment().remove(u"LSAN_OPTIONS"_s);
    m_place->environment().remove(u"ASAN_OPTIONS"_s);
    const LauncherEnd end = m_place->run({u"--temporary"_s, u"--headless"_s, u"--"_s,
                                          QCoreApplication::applicationDirPath() + u"/leaking_program"_s});
    QVERIFY2(end.errors.contains("detected memory leaks"), end.errors.constData());
    QVERIFY(end.status != 0);
}

void tst_LauncherProgram::withoutSandbox()
{
    const LauncherEnd missing = m_place->run({u"--direct"_s, u"--headless"_s, u"--"_s, u"true"_s});
    if (!QDir(u"/mnt/ext1"_s).exists() || !QDir(u"/devroot"_s).exists()) {
        QVERIFY2(isOneLine(missing.errors) && missing.errors.contains("--direct needs"),
                 missing.errors.constData());
        QCOMPARE(missing.status, 2);
    }

    // Inside a device is such a machine, once it no longer looks held.
    const QString script
        = u"rm /devroot/lock; mkdir -m 700 /devroot/tmp/r; unset PWD; XDG_RUNTIME_DIR=/mnt/r; "
          "export XDG_RUNTIME_DIR; mkdir -m 700 /mnt/r; "
          "%1 --direct --headless --profile grey-8 --language fr -- /bin/sh -c "
          "'pwd -P; cat /mnt/ext1/system/config/global.cfg; ls -A /devroot/tmp /mnt/r/picture_stand | "
          "wc -l; touch /devroot/run/control; ls /mnt/r/picture_stand/*; exit 5'; echo $?; "
          "ls -A /mnt/r/picture_stand; grep -o grey-8 /devroot/device.json; "
          "%1 --direct --headless -- /bin/sh -c 'kill -9 $$'; echo $?"_s.arg(m_place->launcher());
    const LauncherEnd end = m_place->runScript(script);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.output.split('\n').first(), QByteArray("/mnt/ext1"));
    QVERIFY2(end.output.contains("language=fr\n"), end.output.constData());
    QVERIFY2(end.output.contains("control\nuser\n5\ngrey-8\n137\n"), end.output.constData());
    QCOMPARE(end.status, 0);
}

void tst_LauncherProgram::ordinaryUser()
{
    const QString runAs = QStandardPaths::findExecutable(u"setpriv"_s);
    const QStringList asNobody{u"--reuid=65534"_s, u"--regid=65534"_s, u"--clear-groups"_s};
    if (::geteuid() != 0 || runAs.isEmpty())
        QSKIP("only root can become somebody else");
    if (QProcess::execute(runAs, asNobody + QStringList{u"test"_s, u"-x"_s, m_place->launcher()}) != 0)
        QSKIP("an ordinary user cannot reach this build");

    QProcess process;
    process.setProcessEnvironment(m_place->environment());
    QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7755));
    for (const QString &folder : {m_place->temporaryFolder(), m_place->runtimeFolder()})
        QVERIFY(::chown(QFile::encodeName(folder).constData(), 65534, 65534) == 0);
    process.start(runAs,
                  asNobody
                      + QStringList{m_place->launcher(), u"--temporary"_s, u"--headless"_s, u"--"_s,
                                    u"/bin/sh"_s, u"-c"_s,
                                    u"id -u; touch /mnt/ext1/a /devroot/run/b; "
                                    "tail -n +3 /proc/net/dev | wc -l; exit 4"_s});
    const LauncherEnd end = LauncherPlace::end(process);
    if (end.errors.contains("does not allow private namespaces"))
        QSKIP("ordinary users may not make namespaces here");
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.output, QByteArray("65534\n1\n"));
    QCOMPARE(end.status, 4);
}

QTEST_GUILESS_MAIN(tst_LauncherProgram)
#include "tst_launcher_program.moc"
