// Databases that cannot be opened, are none, or are damaged.

#include "not_open_warnings.h"
#include "obeyed_permissions.h"
#include "storage_fixture.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QByteArray randomBytes(int count)
{
    QRandomGenerator random(20240607);
    QByteArray bytes(count, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

} // namespace

class tst_DataStorageFailures : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<StorageFixture>(); }
    void cleanup();

    void aDatabaseThatCannotBeOpened_data();
    void aDatabaseThatCannotBeOpened();
    void aFileThatIsNoDatabase_data();
    void aFileThatIsNoDatabase();
    void aDamagedDatabaseDoesNotEndTheRun();
    void anotherProgramsDatabaseKeepsItsRows();

private:
    void everyOperationFails(const QString &error);

    std::unique_ptr<StorageFixture> m_test;
};

void tst_DataStorageFailures::cleanup()
{
    m_test.reset();
    if (QFile::exists(u"/mnt/ext1/away"_s)) {
        QVERIFY(QDir(stored_database::folder).removeRecursively());
        QVERIFY(QFile::rename(u"/mnt/ext1/away"_s, stored_database::folder));
    }
}

void tst_DataStorageFailures::everyOperationFails(const QString &error)
{
    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);
    m_test->output.forget();
    const auto logged = [&](const QStringList &lines, int signals_) {
        const QStringList found = m_test->output.logLines(logSource);
        m_test->output.forget();
        const int emitted = static_cast<int>(changed.count());
        changed.clear();
        return QTest::qCompare(found, withError(lines, error), "found", "lines", __FILE__, __LINE__)
            && QTest::qCompare(emitted, signals_, "emitted", "signals_", __FILE__, __LINE__);
    };

    QVERIFY(m_test->store->getPlaylists().empty());
    QVERIFY(logged({readPlaylists}, 0));
    for (const QString &key : {u"shuffle"_s, u"is_first_run"_s, u"frontlight_enabled"_s})
        QCOMPARE(m_test->store->getSetting(key, -1), QString());
    QVERIFY(logged({getSetting, getSetting, getSetting}, 0));
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, 3), QString());
    QVERIFY(logged({getSetting, getSetting}, 0));
    m_test->store->setSetting(u"shuffle"_s, u"1"_s, -1);
    QVERIFY(logged({setSetting}, 0));
    QCOMPARE(m_test->store->addPlaylist(u"Lake"_s), -1LL);
    QVERIFY(logged({addPlaylist}, 0));
    QVERIFY(m_test->store->addImageToPlayList(1, u"/a.jpg"_s));
    QVERIFY(logged({findImage, addImage}, 0));
    m_test->store->deleteImageFromPlayList(1, u"/a.jpg"_s);
    QVERIFY(logged({deleteImage}, 1));
    m_test->store->updatePlaylist(1, u"Wood"_s);
    QVERIFY(logged({updatePlaylist}, 1));
    m_test->store->deletePlaylist(1);
    QVERIFY(logged({deletePlaylist, deleteImages}, 1));
}

void tst_DataStorageFailures::aDatabaseThatCannotBeOpened_data()
{
    QTest::addColumn<int>("obstacle");

    QTest::newRow("the folder is missing") << 0;
    QTest::newRow("a folder has its name") << 1;
    QTest::newRow("the file may not be read") << 2;
    QTest::newRow("a link into nowhere has its name") << 3;
    QTest::newRow("the folder takes no new file") << 4;
}

void tst_DataStorageFailures::aDatabaseThatCannotBeOpened()
{
    QFETCH(int, obstacle);

    const WithoutNotOpenWarnings quiet;
    std::unique_ptr<ObeyedPermissions> permissions;
    if (obstacle == 0) {
        QVERIFY(QFile::rename(stored_database::folder, u"/mnt/ext1/away"_s));
    } else if (obstacle == 1) {
        QVERIFY(QDir().mkpath(stored_database::path + u"/inner"_s));
    } else if (obstacle == 2) {
        writeBytes({});
        QVERIFY(QFile::setPermissions(stored_database::path, {}));
        permissions = std::make_unique<ObeyedPermissions>();
    } else if (obstacle == 3) {
        QVERIFY(QFile::link(u"/mnt/ext1/no/such/folder"_s, stored_database::path));
    } else {
        QVERIFY(QFile::setPermissions(stored_database::folder, QFile::ReadOwner | QFile::ExeOwner));
        permissions = std::make_unique<ObeyedPermissions>();
    }

    m_test->start();
    m_test->device.forgetCalls();
    QCOMPARE(m_test->output.logLines(logSource),
             QStringList(u"2 DataStorage::DataStorage(QObject *): Failed to open database "
                         "/mnt/ext1/system/picture_stand.sqlite"_s)
                 + failedScheme(QString()));
    everyOperationFails(QString());
    QVERIFY(m_test->device.calls({"GetSoftwareLocalizationType"}).isEmpty());
    QVERIFY(obstacle != 0 || !QFile::exists(stored_database::folder)); // no folder is made
    QVERIFY(obstacle != 4 || !QFile::exists(stored_database::path));
}

void tst_DataStorageFailures::aFileThatIsNoDatabase_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("random bytes") << randomBytes(10'000);
    QTest::newRow("a few random bytes") << randomBytes(100);
    QTest::newRow("a text") << QByteArray("The pictures of last summer.\n").repeated(50);
    QTest::newRow("zeros") << QByteArray(4096, '\0');
}

void tst_DataStorageFailures::aFileThatIsNoDatabase()
{
    QFETCH(QByteArray, bytes);

    writeBytes(bytes);
    m_test->start();
    const QString error = u"file is not a database"_s;
    QCOMPARE(m_test->output.logLines(logSource), failedScheme(error));
    everyOperationFails(error);
    m_test->stop();
    QCOMPARE(bytesOf(stored_database::path), bytes);
}

void tst_DataStorageFailures::aDamagedDatabaseDoesNotEndTheRun()
{
    m_test->start();
    m_test->stop();
    QByteArray bytes = bytesOf(stored_database::path);
    const QByteArray noise = randomBytes(static_cast<int>(bytes.size()) - 200);
    bytes.replace(200, noise.size(), noise);
    writeBytes(bytes);

    m_test->output.forget();
    m_test->start();
    const QStringList lines = m_test->output.logLines(logSource);
    QVERIFY(!lines.isEmpty());
    QVERIFY2(lines.first().startsWith(scheme + u"Error creating tables ["_s), qPrintable(lines.first()));
    QVERIFY(m_test->store->getPlaylists().empty());
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, -1), QString());
    QCOMPARE(m_test->store->addPlaylist(u"Lake"_s), -1LL);
}

void tst_DataStorageFailures::anotherProgramsDatabaseKeepsItsRows()
{
    QVERIFY(stored_database::execute({
        u"CREATE TABLE settings(option TEXT)"_s,
        u"CREATE TABLE playlists(song TEXT)"_s,
        u"CREATE TABLE notes(line TEXT)"_s,
        u"INSERT INTO playlists VALUES('a song')"_s,
        u"INSERT INTO notes VALUES('a note')"_s,
    }));
    m_test->start();
    const QString error = u"table settings has no column named id"_s;
    QCOMPARE(m_test->output.logLines(logSource),
             QStringList(addPlaylist.arg(QString()))
                 + QStringList(scheme + u"Error insert into [%1]"_s.arg(error)));

    m_test->output.forget();
    QVERIFY(m_test->store->getPlaylists().empty());
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, -1), QString());
    m_test->store->setSetting(u"shuffle"_s, u"1"_s, -1);
    QCOMPARE(m_test->output.logLines(logSource), withError({readPlaylists, getSetting, setSetting}, error));
    QCOMPARE(stored_database::rows(u"SELECT song FROM playlists"_s), QStringList(u"a song"_s));
    QCOMPARE(stored_database::rows(u"SELECT line FROM notes"_s), QStringList(u"a note"_s));
    QCOMPARE(stored_database::rows(u"SELECT count(*) FROM settings"_s), QStringList(u"0"_s));
}

QTEST_GUILESS_MAIN(tst_DataStorageFailures)
#include "tst_datastorage_failures.moc"
