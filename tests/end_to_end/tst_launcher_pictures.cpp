// A folder of the user's shown on the device, and gone from it afterwards.

#include "launcher_run.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class tst_LauncherPictures : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void shownUnderItsName_data();
    void shownUnderItsName();
    void readOnly();
    void mountPointIsGoneAfterTerm();
    void mountPointOfAKilledLauncher();
    void recordOfAMountPointLeadsNowhereElse_data();
    void recordOfAMountPointLeadsNowhereElse();
    void emptyFolderOfThatNameIsUsedAndLeft();
    void nameIsTaken_data();
    void nameIsTaken();
    void cannotBeShown_data();
    void cannotBeShown();

private:
    LauncherEnd start(const QString &pictures, const QString &script) const;
    QString mountPoint(const QString &name) const { return m_root + u"/mnt/ext1/Photo/"_s + name; }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
    QString m_root;
    QString m_pictures;
};

void tst_LauncherPictures::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
    QVERIFY(!m_place->useOwnPrefix().isEmpty());
    m_root = m_place->path(u"device"_s);
    m_pictures = m_place->path(u"My holiday, 50%"_s);
    QVERIFY(writeFile(m_pictures + u"/lake.jpg"_s, "lake"));
    QVERIFY(writeFile(m_pictures + u"/day 2/hill.jpg"_s, "hill"));
    QVERIFY(QFile::link(m_pictures, m_place->path(u"link"_s)));
}

LauncherEnd tst_LauncherPictures::start(const QString &pictures, const QString &script) const
{
    return m_place->run({u"--root"_s, m_root, u"--headless"_s, u"--photos"_s, pictures, u"--"_s, u"/bin/sh"_s,
                         u"-c"_s, script});
}

void tst_LauncherPictures::shownUnderItsName_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << u"My holiday, 50%"_s << u"My holiday, 50%"_s;
    QTest::newRow("final slash") << u"My holiday, 50%/"_s << u"My holiday, 50%"_s;
    QTest::newRow("roundabout") << u"home/../My holiday, 50%/day 2/.."_s << u"My holiday, 50%"_s;
    QTest::newRow("link") << u"link"_s << u"link"_s;
}

void tst_LauncherPictures::shownUnderItsName()
{
    QFETCH(QString, given);
    QFETCH(QString, name);

    const LauncherEnd end = start(m_place->path(given),
                                  u"cd \"/mnt/ext1/Photo/%1\" && cat lake.jpg 'day 2/hill.jpg'"_s.arg(name));
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.output, QByteArray("lakehill"));
    QVERIFY(!QFileInfo::exists(mountPoint(name)));
    QCOMPARE(fileContent(m_pictures + u"/lake.jpg"_s), QByteArray("lake"));
}

void tst_LauncherPictures::readOnly()
{
    const LauncherEnd end
        = start(m_pictures, u"cd Photo/My*; echo x > new; echo x >> lake.jpg; rm -rf 'day 2'; :"_s);
    QCOMPARE(end.errors.count("Read-only file system"), 3);
    QCOMPARE(QDir(m_pictures).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
             (QStringList{u"day 2"_s, u"lake.jpg"_s}));
    QCOMPARE(fileContent(m_pictures + u"/lake.jpg"_s), QByteArray("lake"));
}

void tst_LauncherPictures::mountPointIsGoneAfterTerm()
{
    QProcess process;
    m_place->start(process,
                   {u"--root"_s, m_root, u"--headless"_s, u"--photos"_s, m_pictures, u"--"_s, u"/bin/sh"_s,
                    u"-c"_s, u"ls Photo/My*/lake.jpg; read line"_s});
    QTRY_VERIFY(process.bytesAvailable() > 0);
    QVERIFY(QFileInfo(mountPoint(u"My holiday, 50%"_s)).isDir());
    process.terminate();
    LauncherPlace::end(process);
    QVERIFY(!QFileInfo::exists(mountPoint(u"My holiday, 50%"_s)));
    QCOMPARE(fileContent(m_pictures + u"/lake.jpg"_s), QByteArray("lake"));
}

void tst_LauncherPictures::mountPointOfAKilledLauncher()
{
    QProcess process;
    m_place->start(process,
                   {u"--root"_s, m_root, u"--headless"_s, u"--photos"_s, m_pictures, u"--"_s, u"/bin/sh"_s,
                    u"-c"_s, u"ls Photo/My*/lake.jpg; read line"_s});
    QTRY_VERIFY(process.bytesAvailable() > 0);
    process.kill();
    QVERIFY(process.waitForFinished());
    QVERIFY(QFileInfo(mountPoint(u"My holiday, 50%"_s)).isDir());

    // The next start takes it away, and so do starts that show the same folder again.
    QVERIFY(QDir().mkpath(mountPoint(u"own"_s)));
    const LauncherEnd next
        = m_place->run({u"--root"_s, m_root, u"--headless"_s, u"--"_s, u"ls"_s, u"Photo"_s});
    QCOMPARE(next.errors, QByteArray());
    QCOMPARE(next.output, QByteArray("own\n"));
    QCOMPARE(start(m_pictures, u":"_s).status, 0);
    QVERIFY(!QFileInfo::exists(mountPoint(u"My holiday, 50%"_s)));
    QVERIFY(!QFileInfo::exists(m_root + u"/devroot/mount_point"_s));
}

void tst_LauncherPictures::recordOfAMountPointLeadsNowhereElse_data()
{
    QTest::addColumn<QByteArray>("record");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("folder above") << QByteArray("..");
    QTest::newRow("another folder") << QByteArray("../empty");
    QTest::newRow("absolute") << QByteArray("/mnt");
    QTest::newRow("folder that is not empty") << QByteArray("full");
    QTest::newRow("foreign bytes") << QByteArray("\xff\0\n", 3);
}

void tst_LauncherPictures::recordOfAMountPointLeadsNowhereElse()
{
    QFETCH(QByteArray, record);

    const QString kept = m_root + u"/mnt/ext1/empty"_s;
    QVERIFY(QDir().mkpath(kept));
    QVERIFY(writeFile(mountPoint(u"full/a.jpg"_s), "a"));
    QVERIFY(writeFile(m_root + u"/devroot/mount_point"_s, record));
    QCOMPARE(m_place->run({u"--root"_s, m_root, u"--headless"_s, u"--"_s, u"true"_s}).status, 0);
    QVERIFY(QFileInfo(kept).isDir());
    QVERIFY(QFileInfo::exists(mountPoint(u"full/a.jpg"_s)));
    QVERIFY(!QFileInfo::exists(m_root + u"/devroot/mount_point"_s));
}

void tst_LauncherPictures::emptyFolderOfThatNameIsUsedAndLeft()
{
    QVERIFY(QDir().mkpath(mountPoint(u"My holiday, 50%"_s)));
    const LauncherEnd end = start(m_pictures, u"cat Photo/My*/lake.jpg"_s);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.output, QByteArray("lake"));
    QVERIFY(QFileInfo(mountPoint(u"My holiday, 50%"_s)).isDir());
}

void tst_LauncherPictures::nameIsTaken_data()
{
    QTest::addColumn<QString>("kind");

    QTest::newRow("folder with a file") << u"full"_s;
    QTest::newRow("folder with a hidden file") << u"hidden"_s;
    QTest::newRow("file") << u"file"_s;
    QTest::newRow("link to an empty folder") << u"link"_s;
    QTest::newRow("link that leads nowhere") << u"dangling"_s;
}

void tst_LauncherPictures::nameIsTaken()
{
    QFETCH(QString, kind);

    const QString entry = mountPoint(u"My holiday, 50%"_s);
    QVERIFY(QDir().mkpath(QFileInfo(entry).path()));
    if (kind == u"full")
        QVERIFY(writeFile(entry + u"/own.jpg"_s, "own"));
    else if (kind == u"hidden")
        QVERIFY(writeFile(entry + u"/.own"_s, "own"));
    else if (kind == u"file")
        QVERIFY(writeFile(entry, "own"));
    else
        QVERIFY(QFile::link(kind == u"link" ? m_place->path(u"home"_s) : u"nowhere"_s, entry));

    const LauncherEnd end = start(m_pictures, u"echo started"_s);
    QVERIFY2(isOneLine(end.errors) && end.errors.contains("of its own"), end.errors.constData());
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
    QVERIFY(QFileInfo::exists(entry) || QFileInfo(entry).isSymLink());
    if (kind == u"full")
        QCOMPARE(fileContent(entry + u"/own.jpg"_s), QByteArray("own"));
}

void tst_LauncherPictures::cannotBeShown_data()
{
    QTest::addColumn<QString>("pictures");
    QTest::addColumn<QByteArray>("reason");

    QTest::newRow("missing") << u"nowhere"_s << QByteArray("is no folder that can be read");
    QTest::newRow("file") << u"My holiday, 50%/lake.jpg"_s << QByteArray("is no folder that can be read");
    QTest::newRow("the host's /mnt") << u"/mnt"_s << QByteArray("would be hidden");
    QTest::newRow("leads to the host's /mnt") << u"hidden"_s << QByteArray("would be hidden");
    QTest::newRow("everything") << u"/"_s << QByteArray("has no name");
}

void tst_LauncherPictures::cannotBeShown()
{
    QFETCH(QString, pictures);
    QFETCH(QByteArray, reason);

    QVERIFY(QFile::link(u"/mnt"_s, m_place->path(u"hidden"_s)));
    const LauncherEnd end = start(QDir(m_folder->path()).absoluteFilePath(pictures), u"echo started"_s);
    QVERIFY2(isOneLine(end.errors) && end.errors.contains(reason), end.errors.constData());
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
    QVERIFY(!QFileInfo::exists(m_root)); // a device that is refused is not made
}

QTEST_GUILESS_MAIN(tst_LauncherPictures)
#include "tst_launcher_pictures.moc"
