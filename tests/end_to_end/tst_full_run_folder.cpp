// A runtime folder in memory that has no room, from the start or later.

#include "first_show.h"
#include "launcher_run.h"

#include <control_client.h>
#include <run_folder.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <cstdio>
#include <memory>

#include <sys/mount.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using lindenreed::remote::ControlClient;

namespace {

constexpr char ownMounts[] = "TEST_HAS_ITS_OWN_MOUNTS";

} // namespace

class tst_FullRunFolder : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void noRoomForFolders();
    void noRoomForThePanel();
    void noRoomForAnyFile();
    void fullLater();

private:
    bool limitRuntimeFolder(const QByteArray &options)
    {
        m_mounted = ::mount("run", QFile::encodeName(m_place->runtimeFolder()).constData(), "tmpfs", 0,
                            (options + ",mode=0700").constData())
            == 0;
        return m_mounted;
    }
    void start(QProcess &launcher) { m_place->start(launcher, {u"--root"_s, m_root, u"--headless"_s}); }
    QString runFolder() const
    {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_place->runtimeFolder()));
        return lindenreed::remote::runFolderOf(m_root, nullptr).value_or(QString());
    }
    std::optional<ControlClient> connectTo()
    {
        std::optional<ControlClient> client;
        [[maybe_unused]] const bool connected = QTest::qWaitFor(
            [&] {
                const QString folder = runFolder();
                client = folder.isEmpty() ? std::nullopt : ControlClient::connectTo(folder, nullptr);
                return client.has_value();
            },
            20'000);
        return client;
    }
    /// What the device itself had to say.
    static QByteArrayList deviceLines(const QByteArray &errors)
    {
        QByteArrayList lines = errors.split('\n');
        lines.removeIf([](const QByteArray &line) { return !line.startsWith("lindenreed2: "); });
        return lines;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
    QString m_root;
    bool m_mounted = false;
};

void tst_FullRunFolder::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
    m_root = m_place->path(u"device"_s);
}

void tst_FullRunFolder::cleanup()
{
    QCOMPARE(m_place->leftovers(), QStringList());
    if (std::exchange(m_mounted, false))
        QCOMPARE(::umount2(QFile::encodeName(m_place->runtimeFolder()).constData(), MNT_DETACH), 0);
}

void tst_FullRunFolder::noRoomForFolders()
{
    QVERIFY(limitRuntimeFolder("nr_inodes=2"));
    const LauncherEnd end = m_place->run({u"--root"_s, m_root, u"--headless"_s});
    QVERIFY2(isOneLine(end.errors) && end.errors.contains("cannot be made"), end.errors.constData());
    QCOMPARE(end.status, 2);
}

void tst_FullRunFolder::noRoomForThePanel()
{
    QVERIFY(limitRuntimeFolder("size=64k"));
    QProcess launcher;
    start(launcher);
    auto client = connectTo();
    QVERIFY(client);
    QVERIFY(client->ask(u"idle"_s).value("ok"_L1).toBool());
    QVERIFY(startFirstShow(*client));
    QVERIFY(client->ask(u"idle"_s).value("ok"_L1).toBool());
    QVERIFY(client->ask(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}).value("ok"_L1).toBool());
    QString error;
    QVERIFY(client->screenshot(&error).isNull());
    QVERIFY(!error.isEmpty());
    QVERIFY(client->ask(u"quit"_s).value("ok"_L1).toBool());
    const LauncherEnd end = LauncherPlace::end(launcher);
    QCOMPARE(end.status, 0);
    const QByteArrayList lines = deviceLines(end.errors);
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.constFirst().contains("No space left")
                 && lines.constFirst().endsWith("Nobody can see the panel."),
             lines.constFirst().constData());
}

void tst_FullRunFolder::noRoomForAnyFile()
{
    QVERIFY(limitRuntimeFolder("nr_inodes=4")); // the mount itself and three folders
    QProcess launcher;
    start(launcher);
    QByteArray errors;
    QTRY_VERIFY_WITH_TIMEOUT((errors += launcher.readAllStandardError(), deviceLines(errors).size() == 2),
                             20'000);
    // A frame that nobody can steer is one still.
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_root + u"/mnt/ext1/system/picture_stand.sqlite"_s), 20'000);
    QCOMPARE(launcher.state(), QProcess::Running);
    launcher.terminate();
    QCOMPARE(LauncherPlace::end(launcher).status, 0);
}

void tst_FullRunFolder::fullLater()
{
    QVERIFY(limitRuntimeFolder("size=4m"));
    QProcess launcher;
    start(launcher);
    auto client = connectTo();
    QVERIFY(client);
    QVERIFY(client->ask(u"idle"_s).value("ok"_L1).toBool());
    QFile filler(m_place->runtimeFolder() + u"/filler"_s);
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) { }

    QVERIFY(startFirstShow(*client));
    QVERIFY(client->ask(u"idle"_s).value("ok"_L1).toBool());
    const QImage first = client->screenshot();
    QVERIFY(!first.isNull());
    QVERIFY(client->ask(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}).value("ok"_L1).toBool());
    QVERIFY(client->ask(u"idle"_s).value("ok"_L1).toBool());
    QVERIFY(client->screenshot() != first);
    QVERIFY(connectTo());
    QVERIFY(client->ask(u"quit"_s).value("ok"_L1).toBool());
    const LauncherEnd end = LauncherPlace::end(launcher);
    QCOMPARE(end.status, 0);
    QCOMPARE(deviceLines(end.errors), QByteArrayList());
}

int main(int argc, char *argv[])
{
    // Mounting needs no rights in a namespace of its own.
    if (!qEnvironmentVariableIsSet(ownMounts)) {
        qputenv(ownMounts, "1");
        QByteArrayList words{"unshare", "--map-root-user", "--mount"};
        for (int i = 0; i < argc; ++i)
            words.append(argv[i]);
        QList<char *> arguments;
        for (QByteArray &word : words)
            arguments.append(word.data());
        arguments.append(nullptr);
        ::execvp("unshare", arguments.data());
        std::perror("unshare");
        return 1;
    }
    QCoreApplication application(argc, argv);
    tst_FullRunFolder test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_full_run_folder.moc"
