// The data store: its tables, playlists and their pictures.

#include "storage_fixture.h"

namespace {

QStringList titles(DataStorage &store)
{
    QStringList result;
    for (const DataStorage::Playlists &playlist : store.getPlaylists())
        result.append(playlist.title);
    return result;
}

QStringList images(DataStorage &store, long long id)
{
    for (const DataStorage::Playlists &playlist : store.getPlaylists()) {
        if (playlist.id == id)
            return playlist.images;
    }
    return {u"no such playlist"_s};
}

} // namespace

/// Each test has a new database without the default playlist.
class tst_DataStorage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theSchemaIsThreeTables();
    void nothingIsSetOnTheConnection();
    void theDefaultConnectionIsTheStore();
    void theMetaObjectHasOneSignal();

    void addPlaylistGivesTheNewId();
    void titlesAreKept_data();
    void titlesAreKept();
    void theSignalComesBeforeTheIdIsRead();
    void eachWriteIsCommittedWhenTheSignalComes();

    void aPictureIsInAPlaylistOnce();
    void aPictureMayBeInTwoPlaylists();
    void aNullPathIsFoundAgain();
    void deleteImageTakesOneRow();
    void updatePlaylistChangesTheTitle();
    void deletePlaylistTakesItsPicturesAndLeavesItsSettings();
    void aFreedLargestIdBringsItsSettingsBack();
    void unknownIdsAreSilentAndStillSignalled_data();
    void unknownIdsAreSilentAndStillSignalled();

    void playlistsComeInTheOrderOfTheirIds();
    void imagesAreSortedByTheirBytes();
    void anEmptyPlaylistIsListed();
    void readingEmitsNothing();

private:
    std::unique_ptr<StorageFixture> m_test;
};

void tst_DataStorage::init()
{
    m_test = std::make_unique<StorageFixture>();
    m_test->device.setLocalization(4, 0); // without the default playlist
    m_test->store = std::make_unique<DataStorage>(nullptr);
}

void tst_DataStorage::cleanup()
{
    const QStringList lines = m_test->output.logLines(logSource);
    m_test.reset();
    QCOMPARE(lines, QStringList()); // nothing here fails, so nothing is logged
}

void tst_DataStorage::theSchemaIsThreeTables()
{
    // Each statement whole.
    // clang-format off
    const QStringList expected{
        u"table|playlists|CREATE TABLE playlists(id INTEGER PRIMARY KEY, title TEXT)"_s,
        u"table|playlist_images|CREATE TABLE playlist_images (id INTEGER PRIMARY KEY, url TEXT, playlist INTEGER REFERENCES playlists(id))"_s,
        u"table|settings|CREATE TABLE settings(id INTEGER PRIMARY KEY, name TEXT, value TEXT, playlist INTEGER)"_s,
    };
    // clang-format on
    QCOMPARE(stored_database::rows(u"SELECT type, name, sql FROM sqlite_master ORDER BY rowid"_s), expected);
}

void tst_DataStorage::nothingIsSetOnTheConnection()
{
    const auto pragma = [](const QString &name) {
        QSqlQuery query(u"PRAGMA "_s + name);
        return query.next() ? query.value(0).toString() : u"none"_s;
    };
    QCOMPARE(pragma(u"foreign_keys"_s), u"0"_s);
    QCOMPARE(pragma(u"user_version"_s), u"0"_s);
    QCOMPARE(pragma(u"journal_mode"_s), u"delete"_s);
    QCOMPARE(pragma(u"synchronous"_s), u"2"_s);
    QCOMPARE(pragma(u"busy_timeout"_s), u"5000"_s); // as Qt opens every SQLite file
}

void tst_DataStorage::theDefaultConnectionIsTheStore()
{
    const QSqlDatabase database = QSqlDatabase::database();
    QCOMPARE(database.connectionName(), u"qt_sql_default_connection"_s);
    QCOMPARE(database.driverName(), u"QSQLITE"_s);
    QCOMPARE(database.databaseName(), u"/mnt/ext1/system/picture_stand.sqlite"_s);
    QVERIFY(database.isOpen());
}

void tst_DataStorage::theMetaObjectHasOneSignal()
{
    const QMetaObject &meta = DataStorage::staticMetaObject;
    QCOMPARE(meta.className(), "DataStorage");
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("changed()"));
    QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
}

void tst_DataStorage::addPlaylistGivesTheNewId()
{
    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);
    QCOMPARE(m_test->store->addPlaylist(u"Garden"_s), 1LL);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_test->store->addPlaylist(u"Garden"_s), 2LL);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(stored_database::rows(u"SELECT id, title FROM playlists"_s),
             QStringList({u"1|Garden"_s, u"2|Garden"_s}));
}

void tst_DataStorage::titlesAreKept_data()
{
    QTest::addColumn<QString>("title");

    QTest::newRow("empty") << u""_s;
    QTest::newRow("null") << QString();
    QTest::newRow("quotes") << u"Anna's \"best\" `pictures`"_s;
    QTest::newRow("a statement") << u"'); DROP TABLE playlists; --"_s;
    QTest::newRow("a placeholder") << u":title ? %1 %s %n"_s;
    QTest::newRow("markup") << u"<b>Lake</b> & more"_s;
    QTest::newRow("outside the first plane") << u"Strand \U0001F3D6 2024"_s;
    QTest::newRow("lines") << u"one\ntwo\r\nthree"_s;
    QTest::newRow("long") << QString(100'000, u'x');
}

void tst_DataStorage::titlesAreKept()
{
    QFETCH(QString, title);

    const long long id = m_test->store->addPlaylist(title);
    QCOMPARE(titles(*m_test->store), QStringList(title));
    QCOMPARE(stored_database::rows(u"SELECT typeof(title), count(*) FROM playlists"_s),
             QStringList(u"text|1"_s));

    m_test->store->updatePlaylist(id, u"another"_s);
    m_test->store->updatePlaylist(id, title);
    QCOMPARE(titles(*m_test->store), QStringList(title));
}

void tst_DataStorage::theSignalComesBeforeTheIdIsRead()
{
    m_test->store->addPlaylist(u"first"_s);
    for (int picture = 0; picture < 7; ++picture)
        m_test->store->addImageToPlayList(1, u"/mnt/ext1/Photo/%1.jpg"_s.arg(picture));

    // What a listener inserts is the connection's last row, and so the result.
    const auto insertion
        = QObject::connect(m_test->store.get(), &DataStorage::changed, m_test->store.get(), [this] {
              disconnect(m_test->store.get(), &DataStorage::changed, m_test->store.get(), nullptr);
              m_test->store->addImageToPlayList(1, u"/mnt/ext1/Photo/7.jpg"_s);
          });
    QVERIFY(insertion);
    QCOMPARE(m_test->store->addPlaylist(u"second"_s), 8LL);
    QCOMPARE(stored_database::rows(u"SELECT id FROM playlists"_s), QStringList({u"1"_s, u"2"_s}));
}

void tst_DataStorage::eachWriteIsCommittedWhenTheSignalComes()
{
    QStringList seen;
    connect(m_test->store.get(), &DataStorage::changed, this, [&seen] {
        seen.append(stored_database::rows(
            u"SELECT (SELECT count(*) FROM playlists), (SELECT count(*) FROM playlist_images)"_s));
    });
    m_test->store->addPlaylist(u"one"_s);
    m_test->store->addImageToPlayList(1, u"/a.jpg"_s);
    m_test->store->addImageToPlayList(1, u"/b.jpg"_s);
    m_test->store->deleteImageFromPlayList(1, u"/a.jpg"_s);
    m_test->store->deletePlaylist(1);
    QCOMPARE(seen, QStringList({u"1|0"_s, u"1|1"_s, u"1|2"_s, u"1|1"_s, u"0|0"_s}));
}

void tst_DataStorage::aPictureIsInAPlaylistOnce()
{
    const long long id = m_test->store->addPlaylist(u"Lake"_s);
    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);

    QVERIFY(m_test->store->addImageToPlayList(id, u"/mnt/ext1/a.jpg"_s));
    QCOMPARE(changed.count(), 1);
    QVERIFY(!m_test->store->addImageToPlayList(id, u"/mnt/ext1/a.jpg"_s));
    QCOMPARE(changed.count(), 1);
    QVERIFY(m_test->store->addImageToPlayList(id, u"/mnt/ext1/A.jpg"_s)); // another file
    QCOMPARE(stored_database::rows(u"SELECT url, playlist FROM playlist_images ORDER BY id"_s),
             QStringList({u"/mnt/ext1/a.jpg|1"_s, u"/mnt/ext1/A.jpg|1"_s}));
}

void tst_DataStorage::aPictureMayBeInTwoPlaylists()
{
    const long long lake = m_test->store->addPlaylist(u"Lake"_s);
    const long long wood = m_test->store->addPlaylist(u"Wood"_s);
    QVERIFY(m_test->store->addImageToPlayList(lake, u"/a.jpg"_s));
    QVERIFY(m_test->store->addImageToPlayList(wood, u"/a.jpg"_s));
    QCOMPARE(stored_database::rows(u"SELECT url, playlist FROM playlist_images ORDER BY id"_s),
             QStringList({u"/a.jpg|1"_s, u"/a.jpg|2"_s}));
}

void tst_DataStorage::aNullPathIsFoundAgain()
{
    const long long id = m_test->store->addPlaylist(u"Lake"_s);
    QVERIFY(m_test->store->addImageToPlayList(id, QString()));
    QVERIFY(!m_test->store->addImageToPlayList(id, u""_s));
    QVERIFY(!m_test->store->addImageToPlayList(id, QString()));
}

void tst_DataStorage::deleteImageTakesOneRow()
{
    const long long lake = m_test->store->addPlaylist(u"Lake"_s);
    const long long wood = m_test->store->addPlaylist(u"Wood"_s);
    m_test->store->addImageToPlayList(lake, u"/a.jpg"_s);
    m_test->store->addImageToPlayList(lake, u"/b.jpg"_s);
    m_test->store->addImageToPlayList(wood, u"/a.jpg"_s);
    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);
    m_test->store->deleteImageFromPlayList(lake, u"/a.jpg"_s);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(stored_database::rows(u"SELECT url, playlist FROM playlist_images ORDER BY id"_s),
             QStringList({u"/b.jpg|1"_s, u"/a.jpg|2"_s}));
}

void tst_DataStorage::updatePlaylistChangesTheTitle()
{
    m_test->store->addPlaylist(u"Lake"_s);
    m_test->store->addPlaylist(u"Wood"_s);
    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);
    m_test->store->updatePlaylist(2, u"Forest"_s);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(stored_database::rows(u"SELECT id, title FROM playlists"_s),
             QStringList({u"1|Lake"_s, u"2|Forest"_s}));
}

void tst_DataStorage::deletePlaylistTakesItsPicturesAndLeavesItsSettings()
{
    m_test->store->addPlaylist(u"Lake"_s);
    m_test->store->addPlaylist(u"Wood"_s);
    m_test->store->addImageToPlayList(1, u"/a.jpg"_s);
    m_test->store->addImageToPlayList(1, u"/b.jpg"_s);
    m_test->store->addImageToPlayList(2, u"/a.jpg"_s);
    m_test->store->setSetting(u"shuffle"_s, u"1"_s, 1);

    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);
    m_test->store->deletePlaylist(1);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(stored_database::rows(u"SELECT id, title FROM playlists"_s), QStringList(u"2|Wood"_s));
    QCOMPARE(stored_database::rows(u"SELECT url, playlist FROM playlist_images"_s),
             QStringList(u"/a.jpg|2"_s));
    QCOMPARE(stored_database::rows(u"SELECT id, name, value, playlist FROM settings WHERE playlist <> -1"_s),
             QStringList(u"21|shuffle|1|1"_s));
}

void tst_DataStorage::aFreedLargestIdBringsItsSettingsBack()
{
    const long long lake = m_test->store->addPlaylist(u"Lake"_s);
    m_test->store->setSetting(u"shuffle"_s, u"1"_s, static_cast<int>(lake));
    m_test->store->deletePlaylist(lake);
    const long long wood = m_test->store->addPlaylist(u"Wood"_s);
    QCOMPARE(wood, lake);
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, static_cast<int>(wood)), u"1"_s);
}

void tst_DataStorage::unknownIdsAreSilentAndStillSignalled_data()
{
    QTest::addColumn<int>("operation");

    QTest::newRow("a playlist is deleted") << 0;
    QTest::newRow("a playlist is renamed") << 1;
    QTest::newRow("a picture is taken out") << 2;
}

void tst_DataStorage::unknownIdsAreSilentAndStillSignalled()
{
    QFETCH(int, operation);

    m_test->store->addPlaylist(u"Lake"_s);
    m_test->store->addImageToPlayList(1, u"/a.jpg"_s);
    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);
    if (operation == 0)
        m_test->store->deletePlaylist(99);
    else if (operation == 1)
        m_test->store->updatePlaylist(99, u"Wood"_s);
    else
        m_test->store->deleteImageFromPlayList(99, u"/a.jpg"_s);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(stored_database::rows(u"SELECT id, title FROM playlists"_s), QStringList(u"1|Lake"_s));
    QCOMPARE(stored_database::rows(u"SELECT url, playlist FROM playlist_images"_s),
             QStringList(u"/a.jpg|1"_s));
}

void tst_DataStorage::playlistsComeInTheOrderOfTheirIds()
{
    for (const QString &title : {u"Zoo"_s, u"Lake"_s, u"Alps"_s})
        m_test->store->addPlaylist(title);
    m_test->store->deletePlaylist(1);
    m_test->store->addPlaylist(u"Beach"_s);

    QList<long long> ids;
    for (const DataStorage::Playlists &playlist : m_test->store->getPlaylists())
        ids.append(playlist.id);
    QCOMPARE(titles(*m_test->store), QStringList({u"Lake"_s, u"Alps"_s, u"Beach"_s}));
    QCOMPARE(ids, QList<long long>({2, 3, 4}));
}

void tst_DataStorage::imagesAreSortedByTheirBytes()
{
    const long long id = m_test->store->addPlaylist(u"Lake"_s);
    const QStringList sorted{u"/p/09.jpg"_s,     u"/p/10.jpg"_s,     u"/p/2.jpg"_s,
                             u"/p/B.jpg"_s,      u"/p/a b.jpg"_s,    u"/p/a.jpg"_s,
                             u"/p/\u00e4.jpg"_s, u"/p/\uff41.jpg"_s, u"/p/\U0001F3D6.jpg"_s};
    for (int picture : {5, 0, 8, 3, 2, 7, 1, 6, 4})
        QVERIFY(m_test->store->addImageToPlayList(id, sorted.at(picture)));
    QCOMPARE(images(*m_test->store, id), sorted);
}

void tst_DataStorage::anEmptyPlaylistIsListed()
{
    const long long lake = m_test->store->addPlaylist(u"Lake"_s);
    const long long wood = m_test->store->addPlaylist(u"Wood"_s);
    m_test->store->addImageToPlayList(lake, u"/a.jpg"_s);
    QCOMPARE(images(*m_test->store, lake), QStringList(u"/a.jpg"_s));
    QCOMPARE(images(*m_test->store, wood), QStringList());
}

void tst_DataStorage::readingEmitsNothing()
{
    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);
    m_test->store->getPlaylists();
    m_test->store->getSetting(u"shuffle"_s, 3);
    m_test->store->setSetting(u"shuffle"_s, u"1"_s, 3);
    QCOMPARE(changed.count(), 0);
}

QTEST_GUILESS_MAIN(tst_DataStorage)
#include "tst_datastorage.moc"
