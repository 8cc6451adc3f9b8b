// A device whose files make no sense: one clear line, status 2.

#include "launcher_run.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int noInterface = 255; // the copy has no control set, so a device that starts goes no further

bool copyFolder(const QString &from, const QString &to)
{
    QDirIterator entries(from, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString file = entries.next();
        const QString copy = to + file.sliced(from.size());
        if (!QDir().mkpath(QFileInfo(copy).path()) || !QFile::copy(file, copy))
            return false;
    }
    return true;
}

} // namespace

class tst_DeviceFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void refused_data();
    void refused();
    void missing_data();
    void missing();
    void usable();

private:
    QString data(const QString &file) const { return m_prefix + u"/share/picture_stand/"_s + file; }
    LauncherEnd start() const { return m_place->run({u"--root"_s, m_root, u"--headless"_s}); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
    QString m_prefix;
    QString m_root;
};

void tst_DeviceFiles::initTestCase()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
    m_prefix = m_place->useOwnPrefix();
    QVERIFY(!m_prefix.isEmpty());
    m_root = m_place->path(u"device"_s);

    const QDir stage(LauncherPlace::builtCommand(u"../lib/picture_stand"_s));
    const QString programs = m_prefix + u"/lib/picture_stand"_s;
    for (const QString &file : stage.entryList({u"lib*.so"_s, u"picture_stand"_s}, QDir::Files))
        QVERIFY(QFile::copy(stage.filePath(file), programs + u'/' + file));
    QVERIFY(copyFolder(stage.filePath(u"platforms"_s), programs + u"/platforms"_s));
    QVERIFY(QDir(data(u"profiles"_s)).removeRecursively());
    cleanup();
}

/// The data as they are installed.
void tst_DeviceFiles::cleanup()
{
    for (const QString &folder : {u"profiles"_s, u"theme"_s, u"languages"_s}) {
        QDir(data(folder)).removeRecursively();
        QVERIFY(copyFolder(LauncherPlace::builtCommand(u"../share/picture_stand/"_s + folder), data(folder)));
    }
    QDir(m_root).removeRecursively();
    QCOMPARE(m_place->leftovers(), QStringList());
}

void tst_DeviceFiles::refused_data()
{
    QTest::addColumn<QString>("file"); // below the data; "record": the device's own
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("complaint");

    const QString profile = u"profiles/grey-6.json"_s;
    QTest::newRow("empty profile") << profile << QByteArray() << QByteArray("is no JSON object");
    QTest::newRow("profile without a member")
        << profile << QByteArray(R"({"name":"grey-6"})") << QByteArray("\"width\" is missing");
    QTest::newRow("profile that is too long")
        << profile << "{\"name\":\"" + QByteArray(70'000, 'x') + "\"}" << QByteArray("is no JSON object");
    const QString theme = u"theme/theme.cfg"_s;
    QTest::newRow("empty theme") << theme << QByteArray()
                                 << QByteArray("\"e3.galery_cover.width\" must be a whole number");
    QTest::newRow("absurd theme") << theme
                                  << QByteArray("e3.galery_cover.width=220\ne3.galery_cover.height=-3\n")
                                  << QByteArray("\"e3.galery_cover.height\" must be a whole number");
    QTest::newRow("theme with a number too many")
        << theme << QByteArray("e3.galery_cover.width=1\ne3.galery_cover.height=1\nmore=1\n")
        << QByteArray("\"more\" is not known");
    const QString record = u"record"_s;
    QTest::newRow("damaged record") << record << QByteArray("{\"profile\"") << QByteArray("names no profile");
    QTest::newRow("record with an unknown member")
        << record << QByteArray(R"({"profile":"grey-6","owner":"me"})")
        << QByteArray("\"owner\" is not known");
}

void tst_DeviceFiles::refused()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, complaint);

    QVERIFY(writeFile(file == u"record" ? m_root + u"/devroot/device.json"_s : data(file), content));
    const LauncherEnd end = start();
    QVERIFY2(end.errors.contains(complaint), end.errors.constData());
    QCOMPARE(end.errors.count('\n'), 1);
    QCOMPARE(end.status, 2);
}

void tst_DeviceFiles::missing_data()
{
    QTest::addColumn<QString>("file");

    QTest::newRow("profile") << u"profiles/grey-6.json"_s;
    QTest::newRow("theme") << u"theme/theme.cfg"_s;
}

void tst_DeviceFiles::missing()
{
    QFETCH(QString, file);

    QVERIFY(QFile::remove(data(file)));
    const LauncherEnd end = start();
    QCOMPARE(end.errors.count('\n'), 1);
    QCOMPARE(end.status, 2);
}

void tst_DeviceFiles::usable()
{
    QCOMPARE(start().status, noInterface);
}

QTEST_GUILESS_MAIN(tst_DeviceFiles)
#include "tst_device_files.moc"
