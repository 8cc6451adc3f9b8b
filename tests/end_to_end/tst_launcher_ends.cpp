// How a program started by slate-run and its launcher end: statuses, signals, programs that cannot be
// started.

#include "launcher_run.h"

#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

class tst_LauncherEnds : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void statusIsPassedOn_data();
    void statusIsPassedOn();
    void deathBySignalIsPassedOn_data();
    void deathBySignalIsPassedOn();
    void signalsReachTheProgram_data();
    void signalsReachTheProgram();
    void ignoredHangUpStaysIgnored();
    void programDiesWithItsLauncher();
    void programThatCannotBeStarted_data();
    void programThatCannotBeStarted();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
};

void tst_LauncherEnds::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
}

void tst_LauncherEnds::cleanup()
{
    if (!QTest::currentTestFailed())
        QCOMPARE(m_place->leftovers(), QStringList());
}

void tst_LauncherEnds::statusIsPassedOn_data()
{
    QTest::addColumn<int>("status");

    QTest::newRow("success") << 0;
    QTest::newRow("failure") << 1;
    QTest::newRow("the launcher's own refusal") << 2;
    QTest::newRow("largest") << 255;
}

void tst_LauncherEnds::statusIsPassedOn()
{
    QFETCH(int, status);

    const LauncherEnd end = m_place->runScript(u"exit %1"_s.arg(status));
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.status, status);
}

void tst_LauncherEnds::deathBySignalIsPassedOn_data()
{
    QTest::addColumn<int>("signal");

    QTest::newRow("killed") << SIGKILL;
    QTest::newRow("memory fault") << SIGSEGV;
    QTest::newRow("asked to end") << SIGTERM;
}

void tst_LauncherEnds::deathBySignalIsPassedOn()
{
    QFETCH(int, signal);

    QCOMPARE(m_place->runScript(u"kill -%1 $$"_s.arg(signal)).status, 128 + signal);
}

void tst_LauncherEnds::signalsReachTheProgram_data()
{
    QTest::addColumn<int>("signal");
    QTest::addColumn<QString>("name");

    QTest::newRow("asked to end") << SIGTERM << u"TERM"_s;
    QTest::newRow("interrupted") << SIGINT << u"INT"_s;
    QTest::newRow("terminal gone") << SIGHUP << u"HUP"_s;
}

void tst_LauncherEnds::signalsReachTheProgram()
{
    QFETCH(int, signal);
    QFETCH(QString, name);

    // The program ends when it likes to; the launcher has to wait for it.
    const QString script = u"trap 'echo asked; read word; echo $word; exit 9' %1; echo ready; "
                           "while :; do sleep 0.02; done"_s;
    QProcess process;
    m_place->start(process,
                   {u"--temporary"_s, u"--headless"_s, u"--"_s, u"/bin/sh"_s, u"-c"_s, script.arg(name)});
    QTRY_VERIFY(process.bytesAvailable() > 0);
    QCOMPARE(process.readLine(), QByteArray("ready\n"));
    QCOMPARE(m_place->leftovers().size(), 2); // the device and its run folder

    QCOMPARE(::kill(pid_t(process.processId()), signal), 0);
    QTRY_VERIFY(process.canReadLine());
    QCOMPARE(process.readLine(), QByteArray("asked\n"));
    QCOMPARE(process.state(), QProcess::Running);
    process.write("ended\n");
    const LauncherEnd end = LauncherPlace::end(process);
    QCOMPARE(end.output, QByteArray("ended\n"));
    QCOMPARE(end.status, 9);
}

void tst_LauncherEnds::ignoredHangUpStaysIgnored()
{
    QProcess process;
    process.setChildProcessModifier([] { ::signal(SIGHUP, SIG_IGN); });
    m_place->start(process,
                   {u"--temporary"_s, u"--headless"_s, u"--"_s, u"/bin/sh"_s, u"-c"_s,
                    u"echo ready; read line; kill -HUP $$; echo $line"_s});
    QTRY_VERIFY(process.bytesAvailable() > 0);
    QCOMPARE(process.readLine(), QByteArray("ready\n"));
    QCOMPARE(::kill(pid_t(process.processId()), SIGHUP), 0);
    process.write("still here\n");
    const LauncherEnd end = LauncherPlace::end(process);
    QCOMPARE(end.output, QByteArray("still here\n"));
    QCOMPARE(end.status, 0);
}

void tst_LauncherEnds::programDiesWithItsLauncher()
{
    const QString root = m_place->path(u"device"_s);
    QProcess process;
    m_place->start(process,
                   {u"--root"_s, root, u"--headless"_s, u"--"_s, u"/bin/sh"_s, u"-c"_s,
                    u"echo $$; while :; do sleep 0.02; done"_s});
    QTRY_VERIFY(process.canReadLine());
    const int program = process.readLine().trimmed().toInt();
    QVERIFY(program > 0);
    process.kill();
    QVERIFY(process.waitForFinished());
    const auto isAlive = [program] {
        const QByteArray state = fileContent(u"/proc/%1/stat"_s.arg(program));
        return !state.isEmpty() && !state.contains(") Z ");
    };
    QTRY_VERIFY(!isAlive());

    // What the killed one left does not stand in the way, and is gone after the next run.
    const LauncherEnd next = m_place->run({u"--root"_s, root, u"--headless"_s, u"--"_s, u"true"_s});
    QCOMPARE(next.errors, QByteArray());
    QCOMPARE(next.status, 0);
}

void tst_LauncherEnds::programThatCannotBeStarted_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QByteArray>("reason");

    QTest::newRow("missing") << u"/nowhere/program"_s << QByteArray("no program /nowhere/program");
    QTest::newRow("missing, to be searched")
        << u"no-such-program"_s << QByteArray("no program no-such-program");
    QTest::newRow("folder") << u"/usr"_s << QByteArray("no program /usr");
    QTest::newRow("not executable") << u"/etc/passwd"_s << QByteArray("no program /etc/passwd");
    QTest::newRow("no program inside") << u"TEXT"_s << QByteArray("Exec format error");
    QTest::newRow("below the host's /mnt") << u"/mnt/program"_s << QByteArray("/mnt/program would be hidden");
    QTest::newRow("leads below the host's /mnt") << u"LINK"_s << QByteArray("would be hidden");
}

void tst_LauncherEnds::programThatCannotBeStarted()
{
    QFETCH(QString, program);
    QFETCH(QByteArray, reason);

    const QString text = m_place->path(u"text"_s);
    const QString link = m_place->path(u"link"_s);
    QVERIFY(writeFile(text, "no program\n", true));
    QVERIFY(QFile::link(u"/mnt"_s, link));
    if (program == u"TEXT")
        program = text;
    else if (program == u"LINK")
        program = link;

    const LauncherEnd end = m_place->run({u"--temporary"_s, u"--headless"_s, u"--"_s, program});
    QVERIFY2(isOneLine(end.errors) && end.errors.contains(reason), end.errors.constData());
    QCOMPARE(end.status, 2);
}

QTEST_GUILESS_MAIN(tst_LauncherEnds)
#include "tst_launcher_ends.moc"
