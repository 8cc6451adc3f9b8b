// Databases that cannot be opened, are none, are damaged or locked; operations that fail one by one.

#include "obeyed_permissions.h"
#include "storage_fixture.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <iostream>
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

/// Qt says for each statement that the database is not open; the lines under test are the device log's.
class WithoutNotOpenWarnings
{
public:
    WithoutNotOpenWarnings() { s_usual = qInstallMessageHandler(hand); }
    ~WithoutNotOpenWarnings() { qInstallMessageHandler(s_usual); }
    WithoutNotOpenWarnings(const WithoutNotOpenWarnings &) = delete;
    WithoutNotOpenWarnings &operator=(const WithoutNotOpenWarnings &) = delete;

private:
    static void hand(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (!message.endsWith("database not open"_L1))
            s_usual(type, context, message);
    }

    static inline QtMessageHandler s_usual = nullptr;
};

/// Holds the database for itself until standard input ends; runs in a process of its own.
int holdLock()
{
    int result = 1;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        database.setDatabaseName(stored_database::path);
        if (database.open()) {
            QSqlQuery query(database);
            if (query.exec(u"BEGIN EXCLUSIVE"_s)) {
                std::cout << "locked" << std::endl;
                std::string line;
                while (std::getline(std::cin, line)) { }
                result = query.exec(u"ROLLBACK"_s) ? 0 : 1;
            }
        }
    }
    QSqlDatabase::removeDatabase(u"other"_s);
    return result;
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
    void anOperationFails_data();
    void anOperationFails();
    void theTextIsTheConnectionsLastError();
    void aDatabaseLockedByAnotherProcess();

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

void tst_DataStorageFailures::anOperationFails_data()
{
    QTest::addColumn<QStringList>("sabotage");
    QTest::addColumn<std::function<QString(DataStorage &)>>("operation");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("changedCount");
    QTest::addColumn<QString>("rows");

    using Operation = std::function<QString(DataStorage &)>;
    const auto refuse = [](const QString &what) {
        return QStringList(
            u"CREATE TRIGGER refuse BEFORE %1 BEGIN SELECT RAISE(ABORT, 'refused'); END"_s.arg(what));
    };
    const auto drop = [](const QString &table) { return QStringList(u"DROP TABLE "_s + table); };
    const auto text = [](bool value) { return value ? u"true"_s : u"false"_s; };
    const Operation deleting = [](DataStorage &store) {
        store.deletePlaylist(1);
        return QString();
    };
    const Operation adding
        = [text](DataStorage &store) { return text(store.addImageToPlayList(1, u"/new.jpg"_s)); };
    const Operation listing = [](DataStorage &store) {
        QStringList result;
        for (const DataStorage::Playlists &playlist : store.getPlaylists())
            result.append(u"%1 %2 %3"_s.arg(playlist.id).arg(playlist.title).arg(playlist.images.size()));
        return result.join(u", "_s);
    };

    const QString unchanged = u"2|10|20"_s; // playlists, pictures, settings

    QTest::newRow("adding a playlist")
        << refuse(u"INSERT ON playlists"_s)
        << Operation([](DataStorage &store) { return QString::number(store.addPlaylist(u"x"_s)); }) << u"-1"_s
        << QStringList(addPlaylist) << 0 << unchanged;
    QTest::newRow("adding a picture") << refuse(u"INSERT ON playlist_images"_s) << adding << u"true"_s
                                      << QStringList(addImage) << 0 << unchanged;
    QTest::newRow("looking for a picture, where adding works")
        << QStringList({u"ALTER TABLE playlist_images RENAME COLUMN id TO number"_s}) << adding << u"true"_s
        << QStringList(findImage) << 1 << u"2|11|20"_s;
    QTest::newRow("looking for a picture and adding it")
        << drop(u"playlist_images"_s) << adding << u"true"_s << QStringList({findImage, addImage}) << 0
        << QString();
    QTest::newRow("taking a picture out")
        << refuse(u"DELETE ON playlist_images"_s) << Operation([](DataStorage &store) {
               store.deleteImageFromPlayList(1, u"/mnt/ext1/Photo/01.jpg"_s);
               return QString();
           })
        << QString() << QStringList(deleteImage) << 1 << unchanged;
    QTest::newRow("renaming a playlist")
        << refuse(u"UPDATE ON playlists"_s) << Operation([](DataStorage &store) {
               store.updatePlaylist(1, u"x"_s);
               return QString();
           })
        << QString() << QStringList(updatePlaylist) << 1 << unchanged;
    QTest::newRow("deleting a playlist, where its pictures go")
        << refuse(u"DELETE ON playlists"_s) << deleting << QString() << QStringList(deletePlaylist) << 1
        << u"2|0|20"_s;
    QTest::newRow("deleting a playlist's pictures")
        << refuse(u"DELETE ON playlist_images"_s) << deleting << QString() << QStringList(deleteImages) << 1
        << u"1|10|20"_s;
    QTest::newRow("deleting a playlist and its pictures")
        << (refuse(u"DELETE ON playlist_images"_s)
            + QStringList(
                u"CREATE TRIGGER too BEFORE DELETE ON playlists BEGIN SELECT RAISE(ABORT, 'refused'); END"_s))
        << deleting << QString() << QStringList({deletePlaylist, deleteImages}) << 1 << unchanged;
    QTest::newRow("reading the playlists")
        << drop(u"playlists"_s) << listing << QString() << QStringList(readPlaylists) << 0 << QString();
    QTest::newRow("reading the pictures of two playlists")
        << drop(u"playlist_images"_s) << listing << u"1 @DefaultPlaylist 0, 2 Lake 0"_s
        << QStringList({readImages, readImages}) << 0 << QString();
    QTest::newRow("reading a global setting")
        << drop(u"settings"_s)
        << Operation([](DataStorage &store) { return store.getSetting(u"shuffle"_s, -1); }) << QString()
        << QStringList(getSetting) << 0 << QString();
    QTest::newRow("reading a playlist's setting")
        << drop(u"settings"_s)
        << Operation([](DataStorage &store) { return store.getSetting(u"shuffle"_s, 1); }) << QString()
        << QStringList({getSetting, getSetting}) << 0 << QString();
    QTest::newRow("writing a setting")
        << refuse(u"INSERT ON settings"_s) << Operation([](DataStorage &store) {
               store.setSetting(u"shuffle"_s, u"1"_s, -1);
               return store.getSetting(u"shuffle"_s, -1);
           })
        << u"0"_s << QStringList(setSetting) << 0 << unchanged;
}

void tst_DataStorageFailures::anOperationFails()
{
    QFETCH(QStringList, sabotage);
    QFETCH(std::function<QString(DataStorage &)>, operation);
    QFETCH(QString, result);
    QFETCH(QStringList, lines);
    QFETCH(int, changedCount);
    QFETCH(QString, rows);

    m_test->start();
    m_test->store->addPlaylist(u"Lake"_s);
    QVERIFY(stored_database::execute(sabotage));
    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);

    QCOMPARE(operation(*m_test->store), result);
    // What went wrong in a prepared statement stays with its query: the connection has nothing to tell.
    QCOMPARE(m_test->output.logLines(logSource), withError(lines, QString()));
    QCOMPARE(changed.count(), changedCount);
    if (!rows.isEmpty()) {
        QCOMPARE(stored_database::rows(
                     u"SELECT (SELECT count(*) FROM playlists), (SELECT count(*) FROM playlist_images), "
                     "(SELECT count(*) FROM settings)"_s),
                 QStringList(rows));
    }
}

void tst_DataStorageFailures::theTextIsTheConnectionsLastError()
{
    // The third table cannot be made, as its name is a view's: the first error that the connection ever has
    // stays.
    QVERIFY(stored_database::execute(
        {u"CREATE VIEW settings AS SELECT 1 AS id, 'x' AS name, 'y' AS value, -1 AS playlist"_s}));
    m_test->start();
    m_test->store->setSetting(u"shuffle"_s, u"1"_s, -1);
    const QStringList lines = m_test->output.logLines(logSource);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first(),
             setSetting.arg(QString())); // the query's own: cannot modify settings because it is a view

    m_test->output.forget();
    QSqlDatabase database = QSqlDatabase::database();
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    database.exec(u"nonsense"_s);
    QT_WARNING_POP
    m_test->store->setSetting(u"shuffle"_s, u"1"_s, -1);
    QCOMPARE(m_test->output.logLines(logSource),
             QStringList(setSetting.arg(u"near \"nonsense\": syntax error"_s)));
}

void tst_DataStorageFailures::aDatabaseLockedByAnotherProcess()
{
    m_test->start();
    QProcess other;
    other.start(QCoreApplication::applicationFilePath(), {u"hold-lock"_s});
    QVERIFY(other.waitForStarted());
    QTRY_VERIFY(other.canReadLine() || other.state() == QProcess::NotRunning);
    QCOMPARE(other.readLine(), QByteArray("locked\n"));

    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);
    QCOMPARE(m_test->store->addPlaylist(u"Lake"_s), -1LL);
    QCOMPARE(m_test->store->getSetting(u"change_picture_time"_s, -1), QString());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_test->output.logLines(logSource), withError({addPlaylist, getSetting}, QString()));

    other.closeWriteChannel();
    QVERIFY(other.waitForFinished());
    QCOMPARE(other.exitCode(), 0);
    QCOMPARE(m_test->store->addPlaylist(u"Lake"_s), 2LL);
    QCOMPARE(m_test->store->getSetting(u"change_picture_time"_s, -1), u"30"_s);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == "hold-lock"_L1)
        return holdLock();
    tst_DataStorageFailures test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_datastorage_failures.moc"
