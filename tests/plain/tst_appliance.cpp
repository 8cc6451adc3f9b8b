// What makes a board a frame: services as systemd reads them, and where media are mounted.

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Appliance : public QObject
{
    Q_OBJECT

private slots:
    void unit_data();
    void unit();
    void exposure_data() { unit_data(); }
    void exposure();
    void medium_data();
    void medium();

private:
    static QString source(const QString &name) { return QStringLiteral(APPLIANCE "/") + name; }
    static QByteArray run(const QString &program, const QStringList &arguments, int *status);
};

/// What it says on either channel; `status` is -1 where it could not be run.
QByteArray tst_Appliance::run(const QString &program, const QStringList &arguments, int *status)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool ended = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    *status = ended ? process.exitCode() : -1;
    return process.readAll();
}

void tst_Appliance::unit_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("frame") << u"picture-stand.service"_s;
    QTest::newRow("panel") << u"picture-stand-panel.service"_s;
}

void tst_Appliance::unit()
{
    QFETCH(QString, name);

    if (QStandardPaths::findExecutable(u"systemd-analyze"_s).isEmpty())
        QSKIP("systemd-analyze is not installed (apt-get install systemd)");
    // systemd looks whether the programs are there: these are those that were built.
    const QByteArray built = QFile::encodeName(QCoreApplication::applicationDirPath() + u"/../../bin/"_s);
    const QTemporaryDir folder;
    for (const QString &each : {u"picture-stand.service"_s, u"picture-stand-panel.service"_s}) {
        QFile file(source(each));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll().replace("/usr/bin/", built);
        QFile copy(folder.filePath(each));
        QVERIFY(copy.open(QIODevice::WriteOnly) && copy.write(text) == text.size());
    }
    int status = -1;
    const QByteArray said
        = run(u"systemd-analyze"_s, {u"verify"_s, u"--man=no"_s, folder.filePath(name)}, &status);
    QCOMPARE(said, QByteArray());
    QCOMPARE(status, 0);
}

void tst_Appliance::exposure()
{
    QFETCH(QString, name);

    if (QStandardPaths::findExecutable(u"systemd-analyze"_s).isEmpty())
        QSKIP("systemd-analyze is not installed (apt-get install systemd)");
    // The threshold is in tenths.
    int status = -1;
    const QByteArray said = run(
        u"systemd-analyze"_s,
        {u"security"_s, u"--no-pager"_s, u"--offline=true"_s, u"--threshold=20"_s, source(name)}, &status);
    QVERIFY2(status == 0, said.constData());
    QVERIFY2(said.contains("Overall exposure level"), said.constData());
}

void tst_Appliance::medium_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("fileSystem");
    QTest::addColumn<QByteArray>("used"); // mount points of the disk
    QTest::addColumn<QByteArray>("taken"); // status of mountpoint and findmnt: 0 is yes
    QTest::addColumn<QByteArray>("mounted");

    const QByteArray always = "--no-block --collect --fsck=no --property=LazyUnmount=yes "
                              "--options=ro,nosuid,nodev,noexec,x-systemd.device-bound";
    const QByteArray card = " /dev/sdx1 /var/lib/picture-stand/mnt/ext2\n";
    const QByteArray stick = " /dev/sdx1 /var/lib/picture-stand/mnt/ext3\n";
    const QByteArray ours = ",uid=picture-stand,gid=picture-stand";
    QTest::newRow("card") << u"card"_s << QByteArray("vfat") << QByteArray("\n") << QByteArray("1 1")
                          << always + ours + ",utf8" + card;
    QTest::newRow("stick") << u"usb"_s << QByteArray("exfat") << QByteArray("\n") << QByteArray("1 1")
                           << always + ours + stick;
    QTest::newRow("journal") << u"usb"_s << QByteArray("ext4") << QByteArray("\n") << QByteArray("1 1")
                             << always + ",noload" + stick;
    QTest::newRow("another file system")
        << u"usb"_s << QByteArray("btrfs") << QByteArray("\n") << QByteArray("1 1") << always + stick;
    QTest::newRow("the system's own disk")
        << u"card"_s << QByteArray("vfat") << QByteArray("\n/boot\n/\n") << QByteArray("1 1") << QByteArray();
    QTest::newRow("second medium") << u"usb"_s << QByteArray("vfat") << QByteArray("\n") << QByteArray("0 1")
                                   << QByteArray();
    QTest::newRow("named in fstab") << u"usb"_s << QByteArray("vfat") << QByteArray("\n") << QByteArray("1 0")
                                    << QByteArray();
    QTest::newRow("another kind") << u"disk"_s << QByteArray("vfat") << QByteArray("\n") << QByteArray("1 1")
                                  << QByteArray();
}

void tst_Appliance::medium()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, fileSystem);
    QFETCH(QByteArray, used);
    QFETCH(QByteArray, taken);
    QFETCH(QByteArray, mounted);

    // Mounting needs rights and a disk, so those who tell of disks, and who mounts, are played here.
    const QTemporaryDir folder;
    const auto play = [&folder](const QString &name, const QByteArray &script) {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + script + '\n') > 0
            && file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    };
    QVERIFY(play(u"lsblk"_s, "case \"$*\" in *PKNAME*) echo sdx ;; *) printf '" + used + "' ;; esac"));
    QVERIFY(play(u"mountpoint"_s, "exit " + taken.left(1)));
    QVERIFY(play(u"findmnt"_s, "exit " + taken.right(1)));
    QVERIFY(play(u"systemd-mount"_s, "echo \"$@\""));
    QProcess process;
    QProcessEnvironment environment;
    environment.insert(u"PATH"_s, folder.path() + u":/usr/bin:/bin"_s);
    environment.insert(u"ID_FS_TYPE"_s, QString::fromLatin1(fileSystem));
    process.setProcessEnvironment(environment);
    process.start(source(u"mount-medium"_s), {kind, u"/dev/sdx1"_s});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardError(), QByteArray());
    QCOMPARE(process.readAllStandardOutput(), mounted);
    QCOMPARE(process.exitCode(), kind == u"disk" ? 2 : 0);
}

QTEST_GUILESS_MAIN(tst_Appliance)
#include "tst_appliance.moc"
