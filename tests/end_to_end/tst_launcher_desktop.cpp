// What a running device has on the user's desktop: a window, and pictures opened in the user's own viewer.

#include "launcher_run.h"

#include "control_client.h"
#include "run_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::remote::ControlClient;

class tst_LauncherDesktop : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowComesAndGoesWithTheDevice();
    void windowGoesWithAKilledLauncher();
    void noWindow_data();
    void noWindow();
    void brokenWindowEndsTheDevice();
    void missingWindowEndsTheDevice();
    void picturesAreOpenedByTheHostsPath_data();
    void picturesAreOpenedByTheHostsPath();
    void onlyPicturesAreOpened_data();
    void onlyPicturesAreOpened();
    void viewerIsMissing();

private:
    void setWindow(const QByteArray &script);
    void startDevice(const QStringList &options = {});
    void open(const QString &devicePath);
    /// Asked again until the launcher, which joins on its own, has heard of it.
    bool saysAfterOpening(const QString &devicePath, const QByteArray &words);
    QByteArray notes() const { return fileContent(m_place->path(u"notes"_s)); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
    std::unique_ptr<QProcess> m_launcher;
    QString m_prefix;
    QString m_root;
    QString m_runFolder;
    QByteArray m_errors;
};

namespace {

// A smallest PGM picture: the viewer is chosen by what is inside.
const QByteArray picture("P5 1 1 255\n\x80");

// Notes how it was started and that it was closed.
const QByteArray goodWindow("echo \"window $*\" >> $NOTES\ntrap 'echo closed >> $NOTES; exit 0' TERM\n"
                            "while :; do sleep 0.02; done\n");

} // namespace

void tst_LauncherDesktop::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
    m_prefix = m_place->useOwnPrefix();
    QVERIFY(!m_prefix.isEmpty());
    m_root = m_place->path(u"device"_s);
    m_errors.clear();
    QVERIFY(QDir().mkdir(m_root));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_place->runtimeFolder()));
    m_runFolder = lindenreed::remote::runFolderOf(m_root, nullptr).value_or(QString());
    QVERIFY(!m_runFolder.isEmpty());

    QProcessEnvironment &environment = m_place->environment();
    environment.insert(u"NOTES"_s, m_place->path(u"notes"_s));
    environment.insert(u"DISPLAY"_s, u":none"_s);
    environment.insert(u"PATH"_s, m_place->path(u"search"_s) + u':' + environment.value(u"PATH"_s));
    setWindow(goodWindow);
    QVERIFY(writeFile(m_place->path(u"search/xdg-open"_s), "#!/bin/sh\necho \"open $*\" >> $NOTES\n", true));
}

void tst_LauncherDesktop::cleanup()
{
    m_launcher.reset(); // a failed test leaves it running
}

void tst_LauncherDesktop::setWindow(const QByteArray &script)
{
    QVERIFY(writeFile(m_prefix + u"/bin/slate-window"_s, "#!/bin/sh\n" + script, true));
}

void tst_LauncherDesktop::startDevice(const QStringList &options)
{
    m_launcher = std::make_unique<QProcess>();
    m_place->start(
        *m_launcher,
        QStringList{u"--root"_s, m_root} + options
            + QStringList{u"--"_s, QCoreApplication::applicationDirPath() + u"/answering_device"_s});
}

void tst_LauncherDesktop::open(const QString &devicePath)
{
    QString error;
    auto client = ControlClient::connectTo(m_runFolder, &error);
    QVERIFY2(client, qUtf8Printable(error));
    QVERIFY(client->ask(u"open"_s, {{u"path"_s, devicePath}}).value("ok"_L1).toBool());
}

bool tst_LauncherDesktop::saysAfterOpening(const QString &devicePath, const QByteArray &words)
{
    if (!m_errors.contains(words))
        open(devicePath);
    m_errors += m_launcher->readAllStandardError();
    return m_errors.contains(words);
}

void tst_LauncherDesktop::windowComesAndGoesWithTheDevice()
{
    startDevice();
    const QByteArray started = "window --run " + QFile::encodeName(m_runFolder) + '\n';
    QTRY_COMPARE(notes(), started);
    auto client = ControlClient::connectTo(m_runFolder, nullptr);
    QVERIFY(client);
    QVERIFY(client->ask(u"quit"_s).value("ok"_L1).toBool());
    const LauncherEnd end = LauncherPlace::end(*m_launcher);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.status, 0);
    QCOMPARE(notes(), started + "closed\n");
}

void tst_LauncherDesktop::windowGoesWithAKilledLauncher()
{
    startDevice();
    QTRY_VERIFY(notes().startsWith("window"));
    m_launcher->kill();
    QVERIFY(m_launcher->waitForFinished());
    QTRY_VERIFY(notes().endsWith("closed\n"));
}

void tst_LauncherDesktop::noWindow_data()
{
    QTest::addColumn<QString>("display");
    QTest::addColumn<QStringList>("options");

    QTest::newRow("headless") << u":none"_s << QStringList{u"--headless"_s};
    QTest::newRow("no display") << QString() << QStringList{};
}

void tst_LauncherDesktop::noWindow()
{
    QFETCH(QString, display);
    QFETCH(QStringList, options);

    m_place->environment().insert(u"DISPLAY"_s, display);
    QVERIFY(writeFile(m_root + u"/mnt/ext1/Photo/a.pgm"_s, picture));
    startDevice(options);
    QTRY_VERIFY(QFileInfo::exists(m_runFolder + u"/control"_s));
    open(u"/mnt/ext1/Photo/a.pgm"_s);
    auto client = ControlClient::connectTo(m_runFolder, nullptr);
    QVERIFY(client);
    QVERIFY(client->ask(u"quit"_s).value("ok"_L1).toBool());
    const LauncherEnd end = LauncherPlace::end(*m_launcher);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.status, 0);
    QCOMPARE(notes(), QByteArray());
}

void tst_LauncherDesktop::brokenWindowEndsTheDevice()
{
    setWindow("exit 1\n");
    startDevice();
    const LauncherEnd end = LauncherPlace::end(*m_launcher);
    QVERIFY2(isOneLine(end.errors) && end.errors.contains("the window has ended unexpectedly"),
             end.errors.constData());
    QCOMPARE(end.status, 128 + SIGTERM);
}

void tst_LauncherDesktop::missingWindowEndsTheDevice()
{
    QVERIFY(QFile::remove(m_prefix + u"/bin/slate-window"_s));
    startDevice();
    const LauncherEnd end = LauncherPlace::end(*m_launcher);
    QVERIFY2(isOneLine(end.errors) && end.errors.contains("the window cannot be started"),
             end.errors.constData());
    QCOMPARE(end.status, 128 + SIGTERM);
}

void tst_LauncherDesktop::picturesAreOpenedByTheHostsPath_data()
{
    QTest::addColumn<QString>("onDevice");
    QTest::addColumn<QString>("onHost");

    QTest::newRow("internal memory") << u"/mnt/ext1/Photo/a b.pgm"_s << u"device/mnt/ext1/Photo/a b.pgm"_s;
    QTest::newRow("roundabout") << u"/mnt/ext1/Photo/../Photo//a b.pgm"_s
                                << u"device/mnt/ext1/Photo/a b.pgm"_s;
    QTest::newRow("the user's own") << u"/mnt/ext1/Photo/Holiday/c.pgm"_s << u"Holiday/c.pgm"_s;
    QTest::newRow("beside the user's own")
        << u"/mnt/ext1/Photo/Holiday 2.pgm"_s << u"device/mnt/ext1/Photo/Holiday 2.pgm"_s;
}

void tst_LauncherDesktop::picturesAreOpenedByTheHostsPath()
{
    QFETCH(QString, onDevice);
    QFETCH(QString, onHost);

    QVERIFY(writeFile(m_place->path(u"Holiday/c.pgm"_s), picture));
    QVERIFY(writeFile(m_place->path(onHost), picture));
    startDevice({u"--photos"_s, m_place->path(u"Holiday"_s)});
    // The first note tells that the launcher has joined the device.
    QTRY_VERIFY(notes().startsWith("window"));
    QTRY_VERIFY([&] {
        open(onDevice);
        return notes().contains("open " + QFile::encodeName(m_place->path(onHost)) + '\n');
    }());
    m_launcher->terminate();
    LauncherPlace::end(*m_launcher);
}

void tst_LauncherDesktop::onlyPicturesAreOpened_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("program under a picture's name") << u"/mnt/ext1/Photo/script.jpg"_s;
    QTest::newRow("folder") << u"/mnt/ext1/Photo"_s;
    QTest::newRow("missing") << u"/mnt/ext1/Photo/none.jpg"_s;
    QTest::newRow("empty path") << QString();
    QTest::newRow("host's file") << u"/etc/passwd"_s;
}

void tst_LauncherDesktop::onlyPicturesAreOpened()
{
    QFETCH(QString, path);

    QVERIFY(writeFile(m_root + u"/mnt/ext1/Photo/script.jpg"_s, "#!/bin/sh\necho x\n", true));
    startDevice();
    QTRY_VERIFY(notes().startsWith("window"));
    QTRY_VERIFY(saysAfterOpening(path, "is no picture, so it is not opened\n"));
    QVERIFY2(!notes().contains("open"), notes().constData());
    m_launcher->terminate();
    LauncherPlace::end(*m_launcher);
}

void tst_LauncherDesktop::viewerIsMissing()
{
    QVERIFY(QFile::remove(m_place->path(u"search/xdg-open"_s)));
    QVERIFY(QDir().mkpath(m_place->path(u"search"_s)));
    for (const QString &name : {u"sh"_s, u"sleep"_s, u"bwrap"_s})
        QVERIFY(QFile::link(QStandardPaths::findExecutable(name), m_place->path(u"search/"_s) + name));
    m_place->environment().insert(u"PATH"_s, m_place->path(u"search"_s));
    QVERIFY(writeFile(m_root + u"/mnt/ext1/Photo/a.pgm"_s, picture));
    startDevice();
    QTRY_VERIFY(QFileInfo::exists(m_runFolder + u"/control"_s));
    QTRY_VERIFY(saysAfterOpening(u"/mnt/ext1/Photo/a.pgm"_s, "xdg-open is missing"));
    QCOMPARE(m_launcher->state(), QProcess::Running);
    m_launcher->terminate();
    LauncherPlace::end(*m_launcher);
}

QTEST_GUILESS_MAIN(tst_LauncherDesktop)
#include "tst_launcher_desktop.moc"
