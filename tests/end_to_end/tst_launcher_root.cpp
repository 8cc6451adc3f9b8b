// Device roots: made from the skeleton, held by one launcher, removed when they are temporary.

#include "launcher_run.h"

#include "run_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;

class tst_LauncherRoot : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void madeFromTheSkeletonOnce();
    void skeletonWithoutEmptyFolders();
    void emptyFolderBecomesADevice();
    void usualPlace();
    void cutOffMakingIsRepeated();
    void mediumThatIsInStaysIn();
    void temporaryFilesAreEmptied();
    void runFolderIsThereMeanwhile();
    void oneLauncherAtATime();
    void notADevice_data();
    void notADevice();
    void temporaryIsRemoved_data();
    void temporaryIsRemoved();
    void temporaryIsRemovedAfterTerm();
    void temporaryOfAKilledLauncher();
    void temporaryInANamedFolder();
    void temporaryRefusesWhatIsThere();
    void samplesOnlyWhenAsked();

private:
    LauncherEnd runOn(const QString &root, const QString &script, const QStringList &options = {}) const;
    void addToSkeleton(const QString &file, const QByteArray &content);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
    QString m_prefix;
    QString m_root;
};

void tst_LauncherRoot::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
    m_prefix = m_place->useOwnPrefix();
    QVERIFY(!m_prefix.isEmpty());
    m_root = m_place->path(u"device"_s);
}

void tst_LauncherRoot::cleanup()
{
    if (!QTest::currentTestFailed())
        QCOMPARE(m_place->leftovers(), QStringList());
}

LauncherEnd tst_LauncherRoot::runOn(const QString &root, const QString &script,
                                    const QStringList &options) const
{
    return m_place->run(QStringList{u"--root"_s, root, u"--headless"_s} + options
                        + QStringList{u"--"_s, u"/bin/sh"_s, u"-c"_s, script});
}

void tst_LauncherRoot::addToSkeleton(const QString &file, const QByteArray &content)
{
    const QString path = m_prefix + u"/share/picture_stand/skeleton/"_s + file;
    QVERIFY(writeFile(path, content));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadOther)); // as a system's files may be
}

void tst_LauncherRoot::madeFromTheSkeletonOnce()
{
    addToSkeleton(u"mnt/ext1/Photo/01.jpg"_s, "first");
    addToSkeleton(u"mnt/ext1/Photo/notes.txt"_s, "notes");
    addToSkeleton(u"devroot/share/locale/locale.alias"_s, "german de_DE\n");

    const LauncherEnd first = runOn(m_root,
                                    u"cat Photo/01.jpg /devroot/share/locale/locale.alias; "
                                    "echo mine > Photo/01.jpg; rm Photo/notes.txt; echo own > own"_s);
    QCOMPARE(first.errors, QByteArray());
    QCOMPARE(first.output, QByteArray("firstgerman de_DE\n"));
    QCOMPARE(fileContent(m_root + u"/mnt/ext1/own"_s), QByteArray("own\n"));

    const LauncherEnd second = runOn(m_root, u"cat Photo/01.jpg own; ls Photo"_s);
    QCOMPARE(second.output, QByteArray("mine\nown\n01.jpg\n"));
}

void tst_LauncherRoot::skeletonWithoutEmptyFolders()
{
    QVERIFY(QDir(m_prefix + u"/share/picture_stand/skeleton"_s).removeRecursively());
    const QByteArray folders = "/devroot/run\n/devroot/share/locale\n/devroot/tmp\n/mnt/.unplugged/sd\n"
                               "/mnt/.unplugged/usb\n/mnt/ext1/Photo\n/mnt/ext1/system/config\n";
    const LauncherEnd end = runOn(m_root,
                                  u"ls -d /mnt/.unplugged/* /mnt/ext1/Photo /mnt/ext1/system/config "
                                  "/devroot/share/locale /devroot/tmp /devroot/run | sort"_s);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.output, folders);
}

void tst_LauncherRoot::emptyFolderBecomesADevice()
{
    addToSkeleton(u"mnt/ext1/Photo/01.jpg"_s, "first");
    QVERIFY(QDir().mkdir(m_root));
    QCOMPARE(runOn(m_root, u"cat Photo/01.jpg"_s).output, QByteArray("first"));
    QCOMPARE(QDir(m_root).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name),
             (QStringList{u"devroot"_s, u"mnt"_s}));
}

void tst_LauncherRoot::usualPlace()
{
    const LauncherEnd end
        = m_place->run({u"--headless"_s, u"--"_s, u"/bin/sh"_s, u"-c"_s, u"echo own > own"_s});
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(fileContent(m_place->path(u"data/picture_stand/device/mnt/ext1/own"_s)), QByteArray("own\n"));
}

void tst_LauncherRoot::cutOffMakingIsRepeated()
{
    addToSkeleton(u"mnt/ext1/Photo/01.jpg"_s, "first");
    QVERIFY(writeFile(m_root + u"/devroot/lock"_s, "1\n"));
    QVERIFY(writeFile(m_root + u"/.unfinished/ext1/Photo/00.jpg"_s, "half"));

    QCOMPARE(runOn(m_root, u"ls Photo"_s).output, QByteArray("01.jpg\n"));
    QVERIFY(!QFileInfo::exists(m_root + u"/.unfinished"_s));
}

void tst_LauncherRoot::mediumThatIsInStaysIn()
{
    QCOMPARE(runOn(m_root, u"mv /mnt/.unplugged/sd /mnt/ext2"_s).status, 0);
    QCOMPARE(runOn(m_root, u"ls /mnt/.unplugged; ls -d /mnt/ext2"_s).output, QByteArray("usb\n/mnt/ext2\n"));
}

void tst_LauncherRoot::temporaryFilesAreEmptied()
{
    QCOMPARE(runOn(m_root, u"mkdir -p $TMPDIR/a/b; touch $TMPDIR/a/b/c $TMPDIR/.d; chmod 500 $TMPDIR/a/b"_s)
                 .status,
             0);
    QCOMPARE(runOn(m_root, u"ls -A $TMPDIR"_s).output, QByteArray());
}

void tst_LauncherRoot::runFolderIsThereMeanwhile()
{
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_place->runtimeFolder()));
    QVERIFY(QDir().mkpath(m_root));
    QString error;
    const auto runFolder = lindenreed::remote::runFolderOf(m_root, &error);
    QVERIFY2(runFolder, qUtf8Printable(error));
    QVERIFY(runFolder->startsWith(m_place->runtimeFolder()));
    QVERIFY(writeFile(*runFolder + u"/control"_s, "left by a crash"));

    QProcess process;
    m_place->start(process,
                   {u"--root"_s, m_root, u"--headless"_s, u"--"_s, u"/bin/sh"_s, u"-c"_s,
                    u"ls -A /devroot/run; echo pixels > /devroot/run/panel; echo ready; read line"_s});
    QTRY_VERIFY(process.bytesAvailable() >= 11);
    QCOMPARE(process.readAllStandardOutput(), QByteArray("user\nready\n"));
    QCOMPARE(fileContent(*runFolder + u"/panel"_s), QByteArray("pixels\n"));
    QCOMPARE(QFileInfo(*runFolder).permissions() & 0x0fff, QFile::Permissions(0x0700));
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished());
    QVERIFY(!QFileInfo::exists(*runFolder));
}

void tst_LauncherRoot::oneLauncherAtATime()
{
    QProcess process;
    m_place->start(
        process,
        {u"--root"_s, m_root, u"--headless"_s, u"--"_s, u"/bin/sh"_s, u"-c"_s, u"echo ready; read line"_s});
    QTRY_VERIFY(process.bytesAvailable() > 0);

    const LauncherEnd second
        = runOn(m_root, u"echo started"_s, {u"--language"_s, u"de"_s, u"--profile"_s, u"grey-8"_s});
    QCOMPARE(second.errors,
             "slate-run: the device " + m_root.toUtf8() + " is in use by process "
                 + QByteArray::number(process.processId()) + '\n');
    QCOMPARE(second.output, QByteArray());
    QCOMPARE(second.status, 2);
    // The refused start has changed nothing.
    QVERIFY(!QFileInfo::exists(m_root + u"/mnt/ext1/system/config/global.cfg"_s));
    QVERIFY(fileContent(m_root + u"/devroot/device.json"_s).contains("grey-6"));
    QCOMPARE(process.state(), QProcess::Running);

    process.closeWriteChannel();
    QVERIFY(process.waitForFinished());
    QCOMPARE(runOn(m_root, u"echo started"_s).output, QByteArray("started\n"));
}

void tst_LauncherRoot::notADevice_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QByteArray>("reason");

    QTest::newRow("file") << u"file"_s << QByteArray("is no folder");
    QTest::newRow("below a file") << u"file/device"_s << QByteArray("cannot be made");
    QTest::newRow("link that leads nowhere") << u"link"_s << QByteArray("is no folder");
    QTest::newRow("folder of something else") << u"other"_s << QByteArray("holds other things");
    QTest::newRow("no right to make one") << u"/proc/device"_s << QByteArray("cannot be made");
}

void tst_LauncherRoot::notADevice()
{
    QFETCH(QString, root);
    QFETCH(QByteArray, reason);

    QVERIFY(writeFile(m_place->path(u"file"_s), "content"));
    QVERIFY(writeFile(m_place->path(u"other/file"_s), "content"));
    QVERIFY(QFile::link(u"nowhere"_s, m_place->path(u"link"_s)));

    const LauncherEnd end = runOn(QDir(m_folder->path()).absoluteFilePath(root), u"echo started"_s);
    QVERIFY2(isOneLine(end.errors) && end.errors.contains(reason), end.errors.constData());
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
    QCOMPARE(fileContent(m_place->path(u"file"_s)), QByteArray("content"));
    QCOMPARE(QDir(m_place->path(u"other"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{u"file"_s});
}

void tst_LauncherRoot::temporaryIsRemoved_data()
{
    QTest::addColumn<QString>("script");

    QTest::newRow("untouched") << u"true"_s;
    QTest::newRow("program failed") << u"exit 3"_s;
    QTest::newRow("program crashed") << u"kill -ABRT $$"_s;
    QTest::newRow("folders without rights")
        << u"mkdir -p a/b/c; touch a/b/c/d; chmod 0 a/b/c; chmod 500 a/b a"_s;
    QTest::newRow("names that are no text") << u"touch \"$(printf 'a\\377b')\" 'line\nbreak' .hidden"_s;
    QTest::newRow("link to the host") << u"ln -s \"$HOME\" link"_s;
    QTest::newRow("device folder without rights") << u"chmod 0 /mnt/ext1 /mnt"_s;
}

void tst_LauncherRoot::temporaryIsRemoved()
{
    QFETCH(QString, script);

    QVERIFY(writeFile(m_place->path(u"home/kept"_s), "kept"));
    const LauncherEnd end = m_place->runScript(script);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(m_place->leftovers(), QStringList());
    QCOMPARE(fileContent(m_place->path(u"home/kept"_s)), QByteArray("kept"));
}

void tst_LauncherRoot::temporaryIsRemovedAfterTerm()
{
    QProcess process;
    m_place->start(
        process,
        {u"--temporary"_s, u"--headless"_s, u"--"_s, u"/bin/sh"_s, u"-c"_s, u"echo ready; read line"_s});
    QTRY_VERIFY(process.bytesAvailable() > 0);
    QCOMPARE(m_place->leftovers().size(), 2);
    process.terminate();
    QCOMPARE(LauncherPlace::end(process).status, 128 + SIGTERM);
    QCOMPARE(m_place->leftovers(), QStringList());
}

void tst_LauncherRoot::temporaryOfAKilledLauncher()
{
    // One of them lives: it stays.
    const QStringList arguments{u"--temporary"_s, u"--headless"_s, u"--"_s,
                                u"/bin/sh"_s,     u"-c"_s,         u"echo ready; read line"_s};
    QProcess killed;
    m_place->start(killed, arguments);
    QTRY_VERIFY(killed.bytesAvailable() > 0);
    const QStringList left = m_place->leftovers();
    QCOMPARE(left.size(), 2);
    QProcess living;
    m_place->start(living, arguments);
    QTRY_VERIFY(living.bytesAvailable() > 0);
    QCOMPARE(m_place->leftovers().size(), 4);
    killed.kill();
    QVERIFY(killed.waitForFinished());
    QCOMPARE(m_place->leftovers().size(), 4);
    // Not a device of a launcher's, whatever its name.
    const QString other = m_place->temporaryFolder() + u"/slate-run-abcdef"_s;
    QVERIFY(writeFile(other + u"/devroot/lock"_s, ""));

    QCOMPARE(m_place->runScript(u":"_s).status, 0);
    const QStringList now = m_place->leftovers();
    QCOMPARE(now.size(), 3);
    QVERIFY(now.contains(other));
    for (const QString &path : left)
        QVERIFY(!QFileInfo::exists(path));
    QCOMPARE(living.state(), QProcess::Running);
    living.terminate();
    LauncherPlace::end(living);
    QVERIFY(QDir(other).removeRecursively());
}

void tst_LauncherRoot::temporaryInANamedFolder()
{
    QCOMPARE(runOn(m_root, u"touch own"_s, {u"--temporary"_s}).status, 0);
    QVERIFY(!QFileInfo::exists(m_root));

    // What was there before stays there.
    QVERIFY(QDir().mkdir(m_root));
    QCOMPARE(runOn(m_root, u"touch own"_s, {u"--temporary"_s}).status, 0);
    QVERIFY(QFileInfo(m_root).isDir());
    QVERIFY(QDir(m_root).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

void tst_LauncherRoot::temporaryRefusesWhatIsThere()
{
    QCOMPARE(runOn(m_root, u"touch own"_s).status, 0);
    const LauncherEnd end = runOn(m_root, u"echo started"_s, {u"--temporary"_s});
    QVERIFY2(isOneLine(end.errors) && end.errors.contains("is not empty"), end.errors.constData());
    QCOMPARE(end.status, 2);
    QVERIFY(QFileInfo::exists(m_root + u"/mnt/ext1/own"_s));
}

void tst_LauncherRoot::samplesOnlyWhenAsked()
{
    addToSkeleton(u"mnt/ext1/Photo/01.jpg"_s, "first");
    addToSkeleton(u"mnt/ext1/Photo/notes.txt"_s, "notes");

    QCOMPARE(m_place->runScript(u"ls Photo"_s).output, QByteArray("notes.txt\n"));
    QCOMPARE(m_place->runScript(u"ls Photo"_s, {u"--samples"_s}).output, QByteArray("01.jpg\nnotes.txt\n"));
}

QTEST_GUILESS_MAIN(tst_LauncherRoot)
#include "tst_launcher_root.moc"
