// The show without a display: what it asks of the device, what it leaves, and how it fails.

#include "launcher_run.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class tst_Show : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void leavesItsPictures();
    void keptDeviceAndPictures();
    void defaultDevice();
    void failures_data();
    void failures();
    void wrongUse();
    void stoppedHalfWay();

private:
    QString out(const QString &name) const { return m_place->path(u"out/"_s + name); }
    QStringList arguments(const QStringList &options, const QStringList &program) const;
    void start(QProcess &process, const QStringList &arguments) const;
    LauncherEnd play(const QStringList &options, const QStringList &program) const;
    static QStringList answering(const QString &refused = {});

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
};

void tst_Show::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
}

void tst_Show::cleanup()
{
    if (!QTest::currentTestFailed())
        QCOMPARE(m_place->leftovers(), QStringList());
}

QStringList tst_Show::arguments(const QStringList &options, const QStringList &program) const
{
    return QStringList{QFileInfo(LauncherPlace::builtCommand(u"slate-run"_s)).path(), m_place->path(u"out"_s)}
    + (options.contains(u"--root"_s) ? QStringList{} : QStringList{u"--temporary"_s, u"--samples"_s})
        + options + QStringList{u"--"_s} + program;
}

void tst_Show::start(QProcess &process, const QStringList &arguments) const
{
    process.setProcessEnvironment(m_place->environment());
    process.start(QStringLiteral(SOURCE_FOLDER "/tools/show"), arguments);
}

LauncherEnd tst_Show::play(const QStringList &options, const QStringList &program) const
{
    QProcess process;
    start(process, arguments(options, program));
    return LauncherPlace::end(process);
}

QStringList tst_Show::answering(const QString &refused)
{
    return {QCoreApplication::applicationDirPath() + u"/answering_device"_s, refused};
}

void tst_Show::leavesItsPictures()
{
    QVERIFY(writeFile(out(u"05.png"_s), "from an earlier show"));
    const LauncherEnd end = play({}, answering());
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.status, 0);

    QByteArray paths;
    // The panel gets darker with each press and each fire; the first picture comes after the third press.
    const QList<std::pair<QString, int>> pictures{
        {u"playlists.png"_s, 0}, {u"first_run.png"_s, 2}, {u"01.png"_s, 3}, {u"02.png"_s, 4},
        {u"03.png"_s, 5},        {u"04.png"_s, 6},        {u"05.png"_s, 7}};
    for (const auto &[name, shown] : pictures) {
        paths += QFile::encodeName(out(name)) + '\n';
        const QImage picture(out(name));
        QCOMPARE(picture.size(), QSize(60, 80));
        QCOMPARE(qGray(picture.pixel(30, 40)), 255 - 17 * shown);
    }
    QCOMPARE(end.output, paths);

    // The buttons by their texts, then four times the next picture; waiting before each look.
    QByteArray asked
        = "state\nidle\npress Start playback\nidle\npress Continue\nidle\npress Start playback\nidle\n";
    for (int picture = 2; picture <= 5; ++picture)
        asked += "fire nextImageEvent\nidle\n";
    QCOMPARE(fileContent(out(u"show.log"_s)), asked + "quit\n");
}

void tst_Show::keptDeviceAndPictures()
{
    const QString root = m_place->path(u"device"_s);
    QVERIFY(writeFile(m_place->path(u"Holiday/a.jpg"_s), "a"));
    const LauncherEnd end = play(
        {u"--root"_s, root, u"--photos"_s, m_place->path(u"Holiday"_s)},
        {u"/bin/sh"_s, u"-c"_s, u"cp -r Photo/Holiday /mnt/ext1/seen; exec \"$0\""_s, answering().first()});
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.status, 0);
    QCOMPARE(fileContent(root + u"/mnt/ext1/seen/a.jpg"_s), QByteArray("a"));
    QVERIFY(QFileInfo::exists(out(u"05.png"_s)));
}

void tst_Show::defaultDevice()
{
    QProcess process;
    const QString bin = QFileInfo(LauncherPlace::builtCommand(u"slate-run"_s)).path();
    start(process, QStringList{bin, m_place->path(u"out"_s), u"--"_s} + answering());
    const LauncherEnd end = LauncherPlace::end(process);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.status, 0);
    QVERIFY(QFileInfo::exists(m_place->path(u"data/picture_stand/device/mnt/ext1/Photo/10.jpg"_s)));
}

void tst_Show::failures_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("program");
    QTest::addColumn<QByteArray>("reason");
    QTest::addColumn<int>("status");

    QTest::newRow("program ends at once")
        << QStringList{} << QStringList{u"/bin/sh"_s, u"-c"_s, u"echo broken >&2; exit 0"_s}
        << QByteArray("did not start: broken") << 1;
    QTest::newRow("program ends without a word")
        << QStringList{} << QStringList{u"/bin/sh"_s, u"-c"_s, u"exit 7"_s}
        << QByteArray("did not start: it ended with status 7") << 7;
    QTest::newRow("launcher refuses") << QStringList{u"--profile"_s, u"grey-99"_s} << answering()
                                      << QByteArray("There is no profile \"grey-99\"") << 2;
    QTest::newRow("nothing to play") << QStringList{} << answering(u"press"_s)
                                     << QByteArray("\"press Start playback\" failed: slatectl: not-possible")
                                     << 1;
    QTest::newRow("no next picture") << QStringList{} << answering(u"fire"_s)
                                     << QByteArray("\"fire nextImageEvent\" failed") << 1;
    QTest::newRow("never at rest") << QStringList{} << answering(u"idle"_s) << QByteArray("\"idle\" failed")
                                   << 1;
}

void tst_Show::failures()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, program);
    QFETCH(QByteArray, reason);
    QFETCH(int, status);

    QVERIFY(writeFile(out(u"01.png"_s), "from an earlier show"));
    const LauncherEnd end = play(options, program);
    QVERIFY2(end.errors.startsWith("show: ") && end.errors.count('\n') == 1, end.errors.constData());
    QVERIFY2(end.errors.contains(reason), end.errors.constData());
    QCOMPARE(end.status, status);
    // A show that never began leaves the last one's pictures.
    const bool kept = fileContent(out(u"01.png"_s)) == "from an earlier show";
    QCOMPARE(kept, end.errors.contains("did not start"));
}

void tst_Show::wrongUse()
{
    QProcess process;
    start(process, {u"bin"_s});
    const LauncherEnd end = LauncherPlace::end(process);
    QVERIFY(end.errors.startsWith("usage: "));
    QCOMPARE(end.status, 2);
}

void tst_Show::stoppedHalfWay()
{
    QProcess process;
    start(process, arguments({}, {u"/bin/sh"_s, u"-c"_s, u"echo ready; read line < /dev/zero"_s}));
    QTRY_COMPARE(fileContent(out(u"show.log"_s)), QByteArray("ready\n"));
    process.terminate();
    QCOMPARE(LauncherPlace::end(process).status, 143);
}

QTEST_GUILESS_MAIN(tst_Show)
#include "tst_show.moc"
