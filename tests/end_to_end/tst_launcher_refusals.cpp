// What cannot be started: one line that says why, and status 2.

#include "launcher_run.h"

#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;

class tst_LauncherRefusals : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void helpNamesEveryOption();
    void commandLine_data();
    void commandLine();
    void noSandbox_data();
    void noSandbox();
    void noSandboxProgram();
    void networkThatStaysOn();
    void signalDuringTheFirstAttempt_data();
    void signalDuringTheFirstAttempt();
    void foreignRunFolder_data();
    void foreignRunFolder();

private:
    /// A bubblewrap of the test's own is found first.
    void replaceSandbox(const QByteArray &script);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
};

void tst_LauncherRefusals::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
}

void tst_LauncherRefusals::cleanup()
{
    if (!QTest::currentTestFailed())
        QCOMPARE(m_place->leftovers(), QStringList());
}

void tst_LauncherRefusals::replaceSandbox(const QByteArray &script)
{
    QVERIFY(writeFile(m_place->path(u"search/bwrap"_s), "#!/bin/sh\n" + script, true));
    m_place->environment().insert(u"PATH"_s, m_place->path(u"search"_s) + u":/usr/bin:/bin"_s);
}

void tst_LauncherRefusals::helpNamesEveryOption()
{
    const LauncherEnd end = m_place->run({u"--help"_s});
    QCOMPARE(end.status, 0);
    QCOMPARE(end.errors, QByteArray());
    for (const char *option :
         {"--root DIR", "--photos DIR", "--profile NAME", "--language L", "--orientation N", "--headless",
          "--temporary", "--samples", "--meminfo FILE", "--direct", "-- PROGRAM"})
        QVERIFY2(end.output.contains(option), option);
}

void tst_LauncherRefusals::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("reason");

    QTest::newRow("unknown option") << QStringList{u"--colour"_s} << QByteArray("Unknown option 'colour'");
    QTest::newRow("value missing") << QStringList{u"--root"_s} << QByteArray("Missing value after '--root'");
    QTest::newRow("value empty") << QStringList{u"--root"_s, QString()} << QByteArray("--root is empty");
    QTest::newRow("two folders of pictures")
        << QStringList{u"--photos"_s, u"/tmp"_s, u"--photos=/var"_s} << QByteArray("--photos is there twice");
    QTest::newRow("no option") << QStringList{u"true"_s} << QByteArray("\"true\" is no option");
    QTest::newRow("no program") << QStringList{u"--temporary"_s, u"--"_s} << QByteArray("no program after");
    QTest::newRow("samples of a kept device")
        << QStringList{u"--samples"_s} << QByteArray("goes with --temporary");
    for (const QStringList &other : {QStringList{u"--root"_s, u"x"_s}, QStringList{u"--temporary"_s},
                                     QStringList{u"--photos"_s, u"x"_s}, QStringList{u"--meminfo"_s, u"x"_s}})
        QTest::newRow(qPrintable(u"direct with "_s + other.first()))
            << QStringList(QStringList{u"--direct"_s} + other)
            << QByteArray("--direct uses this machine's own");
}

void tst_LauncherRefusals::commandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, reason);

    const LauncherEnd end = m_place->run(arguments);
    QVERIFY2(isOneLine(end.errors) && end.errors.contains(reason), end.errors.constData());
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
}

void tst_LauncherRefusals::noSandbox_data()
{
    QTest::addColumn<QByteArray>("said");
    QTest::addColumn<QByteArray>("reason");

    QTest::newRow("no namespaces") << QByteArray(
        "bwrap: No permissions to create new namespace, likely because the kernel does not allow "
        "non-privileged user namespaces. See the documentation.")
                                   << QByteArray("does not allow private namespaces (bwrap: No permissions");
    QTest::newRow("security module") << QByteArray("bwrap: setting up uid map: Permission denied")
                                     << QByteArray(
                                            "does not allow private namespaces (bwrap: setting up uid map");
    QTest::newRow("something else, in two lines")
        << QByteArray("bwrap: Can't find source path /x: gone\nmore")
        << QByteArray("cannot be made (bwrap: Can't find source path /x: gone)");
    QTest::newRow("silence") << QByteArray("") << QByteArray("gave no reason");
}

void tst_LauncherRefusals::noSandbox()
{
    QFETCH(QByteArray, said);
    QFETCH(QByteArray, reason);

    QVERIFY(writeFile(m_place->path(u"said"_s), said));
    replaceSandbox("cat " + QFile::encodeName(m_place->path(u"said"_s)) + " >&2\nexit 1\n");
    const LauncherEnd end = m_place->runScript(u"echo started"_s);
    QVERIFY2(isOneLine(end.errors) && end.errors.contains(reason), end.errors.constData());
    if (reason.contains("private namespaces"))
        QVERIFY2(end.errors.contains("sysctl kernel.unprivileged_userns_clone=1"), end.errors.constData());
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
}

void tst_LauncherRefusals::noSandboxProgram()
{
    QVERIFY(QDir().mkpath(m_place->path(u"search"_s)));
    m_place->environment().insert(u"PATH"_s, m_place->path(u"search"_s));
    const LauncherEnd end = m_place->runScript(u"echo started"_s);
    QCOMPARE(end.errors,
             QByteArray("slate-run: bubblewrap is needed and not installed (apt-get install bubblewrap)\n"));
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
}

void tst_LauncherRefusals::networkThatStaysOn()
{
    replaceSandbox(
        "for word; do [ \"$word\" != --unshare-net ] || {\n"
        "echo 'bwrap: loopback: Failed RTM_NEWADDR: Operation not permitted' >&2; exit 1; }; done\n"
        "exec "
        + QFile::encodeName(QStandardPaths::findExecutable(u"bwrap"_s)) + " \"$@\"\n");
    const LauncherEnd end = m_place->runScript(u"echo started; echo own >&2; exit 6"_s);
    // Launcher and program write on their own: either may come first.
    QByteArrayList lines = end.errors.split('\n');
    std::sort(lines.begin(), lines.end());
    const QByteArray notice
        = "slate-run: the network stays on, it cannot be switched off here (bwrap: loopback: "
          "Failed RTM_NEWADDR: Operation not permitted)";
    QCOMPARE(lines, (QByteArrayList{"", "own", notice}));
    QCOMPARE(end.output, QByteArray("started\n"));
    QCOMPARE(end.status, 6);
}

void tst_LauncherRefusals::signalDuringTheFirstAttempt_data()
{
    QTest::addColumn<int>("signal");

    QTest::newRow("TERM") << SIGTERM;
    QTest::newRow("INT") << SIGINT;
    QTest::newRow("HUP") << SIGHUP;
}

void tst_LauncherRefusals::signalDuringTheFirstAttempt()
{
    QFETCH(int, signal);

    // The second attempt would succeed.
    replaceSandbox("for word; do [ \"$word\" != --unshare-net ] || {\n"
                   "kill -"
                   + QByteArray::number(signal)
                   + " $PPID; exit 1; }; done\n"
                     "exec "
                   + QFile::encodeName(QStandardPaths::findExecutable(u"bwrap"_s)) + " \"$@\"\n");
    const LauncherEnd end = m_place->runScript(u"sleep 1000; echo over"_s);
    QCOMPARE(end.status, 128 + signal);
    QCOMPARE(end.output, QByteArray());
}

void tst_LauncherRefusals::foreignRunFolder_data()
{
    QTest::addColumn<bool>("open"); // to others, else it belongs to somebody else
    QTest::addColumn<QByteArray>("reason");

    QTest::newRow("open to others") << true << QByteArray("0700");
    QTest::newRow("of somebody else") << false << QByteArray("belongs to somebody else");
}

void tst_LauncherRefusals::foreignRunFolder()
{
    QFETCH(bool, open);
    QFETCH(QByteArray, reason);

    // Whoever listens there could be anybody.
    const QString base = m_place->runtimeFolder() + u"/picture_stand"_s;
    QVERIFY(QDir().mkdir(base));
    const QFile::Permissions all(0x7777);
    QVERIFY(QFile::setPermissions(base, open ? all : QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    if (!open && ::chown(QFile::encodeName(base).constData(), 12'345, 12'345) != 0)
        QSKIP("Only the superuser gives a folder away.");
    const LauncherEnd end = m_place->runScript(u"echo started"_s);
    QVERIFY2(isOneLine(end.errors) && end.errors.contains(reason), end.errors.constData());
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
}

QTEST_GUILESS_MAIN(tst_LauncherRefusals)
#include "tst_launcher_refusals.moc"
