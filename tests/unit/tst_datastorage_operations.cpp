// Operations of the data store that fail one by one, and a database that another process holds.

#include "storage_fixture.h"

#include <QProcess>

#include <functional>
#include <iostream>

namespace {

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

class tst_DataStorageOperations : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<StorageFixture>(); }
    void cleanup() { m_test.reset(); }

    void anOperationFails_data();
    void anOperationFails();
    void theTextIsTheConnectionsLastError();
    void aDatabaseLockedByAnotherProcess();

private:
    std::unique_ptr<StorageFixture> m_test;
};

void tst_DataStorageOperations::anOperationFails_data()
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

void tst_DataStorageOperations::anOperationFails()
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

void tst_DataStorageOperations::theTextIsTheConnectionsLastError()
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

void tst_DataStorageOperations::aDatabaseLockedByAnotherProcess()
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
    tst_DataStorageOperations test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_datastorage_operations.moc"
