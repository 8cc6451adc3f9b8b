#include "storage_fixture.h"

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QStringList emptySchema{
    u"CREATE TABLE playlists(id INTEGER PRIMARY KEY, title TEXT)"_s,
    u"CREATE TABLE playlist_images(id INTEGER PRIMARY KEY, url TEXT, playlist INTEGER)"_s,
    u"CREATE TABLE settings(id INTEGER PRIMARY KEY, name TEXT, value TEXT, playlist INTEGER)"_s,
};

const QStringList seededSettings{
    u"1|change_picture_time|30|-1"_s,
    u"2|change_picture_time_index|0|-1"_s,
    u"3|shuffle|0|-1"_s,
    u"4|display_mode|1|-1"_s,
    u"5|created_date_show|1|-1"_s,
    u"6|created_date_position|2|-1"_s,
    u"7|created_date_font|default|-1"_s,
    u"8|created_date_font_is_bold|0|-1"_s,
    u"9|created_date_font_is_italic|0|-1"_s,
    u"10|current_date_show|0|-1"_s,
    u"11|current_date_position|0|-1"_s,
    u"12|current_date_font|default|-1"_s,
    u"13|current_date_font_is_bold|0|-1"_s,
    u"14|current_date_font_is_italic|0|-1"_s,
    u"15|is_first_run|1|-1"_s,
    u"16|frontlight_brightness|0|-1"_s,
    u"17|frontlight_brightness_auto|0|-1"_s,
    u"18|frontlight_smartlight|0|-1"_s,
    u"19|frontlight_smartlight_auto|0|-1"_s,
    u"20|frontlight_enabled|0|-1"_s,
};

const QStringList standardNames{u"01.jpg"_s, u"02.jpg"_s, u"03.jpg"_s, u"04.jpg"_s, u"05.jpg"_s,
                                u"06.jpg"_s, u"07.jpg"_s, u"08.jpg"_s, u"09.jpg"_s, u"10.jpg"_s};

const QStringList partnerNames{u"meadow-A2.png"_s,     u"meadow-B1.png"_s,     u"meadow-B2.png"_s,
                               u"meadow-C.png"_s,      u"harbour-view1.png"_s, u"harbour-view2.png"_s,
                               u"harbour-view3.png"_s, u"harbour-view4.png"_s, u"harbour-view5.png"_s,
                               u"backdrop-R7_1.png"_s, u"backdrop-R7_2.png"_s, u"backdropWideM1.png"_s,
                               u"backdropWideM2.png"_s};

QStringList playlistRows()
{
    return stored_database::rows(u"SELECT id, title FROM playlists ORDER BY id"_s);
}

QStringList imageRows()
{
    return stored_database::rows(u"SELECT id, url, playlist FROM playlist_images ORDER BY id"_s);
}

QStringList settingsRows()
{
    return stored_database::rows(u"SELECT id, name, value, playlist FROM settings ORDER BY id"_s);
}

QStringList expectedImages(const QStringList &names, int playlist, int firstId = 1)
{
    QStringList rows;
    for (const QString &name : names)
        rows.append(u"%1|/mnt/ext1/Photo/%2|%3"_s.arg(firstId++).arg(name).arg(playlist));
    return rows;
}

} // namespace

class tst_Seeding : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aNewDatabaseIsFilled_data();
    void aNewDatabaseIsFilled();
    void anyRowOfSettingsRulesItOut_data();
    void anyRowOfSettingsRulesItOut();
    void playlistsWithoutSettingsGetOneMore();
    void aSecondStartAddsNothing();
    void clearedSettingsSeedAgain();
    void thePlaylistComesFirstAndTheSettingsLast();
    void failedSettingsAreTriedAgainAtTheNextStart();
    void aFailedPlaylistLeavesItsPicturesToNobody();
    void thePhotoFolderIsNotLookedAt();
    void thePartnersListIsReadSorted();

private:
    std::unique_ptr<StorageFixture> m_storage;
};

void tst_Seeding::init()
{
    m_storage = std::make_unique<StorageFixture>();
}

void tst_Seeding::cleanup()
{
    m_storage.reset();
}

void tst_Seeding::aNewDatabaseIsFilled_data()
{
    QTest::addColumn<int>("localization");
    QTest::addColumn<int>("partner");
    QTest::addColumn<QStringList>("playlists");
    QTest::addColumn<QStringList>("images");
    QTest::addColumn<QByteArrayList>("asked");

    const QStringList one{u"1|@DefaultPlaylist"_s};
    const QByteArrayList both{"GetSoftwareLocalizationType", "GetCustomizedPartner"};

    QTest::newRow("an ordinary device") << 0 << 0 << one << expectedImages(standardNames, 1) << both;
    QTest::newRow("the partner with pictures of its own")
        << 0 << 21 << one << expectedImages(partnerNames, 1) << both;
    QTest::newRow("the partner before it") << 0 << 20 << one << expectedImages(standardNames, 1) << both;
    QTest::newRow("a partner below zero") << 0 << -21 << one << expectedImages(standardNames, 1) << both;
    QTest::newRow("other localisation") << 3 << 21 << one << expectedImages(partnerNames, 1) << both;
    QTest::newRow("the localisation without a playlist")
        << 4 << 0 << QStringList() << QStringList() << QByteArrayList{"GetSoftwareLocalizationType"};
    QTest::newRow("the localisation without a playlist, with the partner")
        << 4 << 21 << QStringList() << QStringList() << QByteArrayList{"GetSoftwareLocalizationType"};
}

void tst_Seeding::aNewDatabaseIsFilled()
{
    QFETCH(int, localization);
    QFETCH(int, partner);
    QFETCH(QStringList, playlists);
    QFETCH(QStringList, images);
    QFETCH(QByteArrayList, asked);

    m_storage->device.setLocalization(localization, partner);
    m_storage->device.forgetCalls();
    m_storage->start();

    QByteArrayList names;
    for (const lindenreed::device::SdkCall &call : m_storage->device.calls())
        names.append(call.name);
    QCOMPARE(names, asked);
    QCOMPARE(playlistRows(), playlists);
    QCOMPARE(imageRows(), images);
    QCOMPARE(settingsRows(), seededSettings);
    QCOMPARE(stored_database::rows(u"SELECT DISTINCT typeof(value) FROM settings"_s), QStringList(u"text"_s));
    QCOMPARE(m_storage->output.logLines(logSource), QStringList());
}

void tst_Seeding::anyRowOfSettingsRulesItOut_data()
{
    QTest::addColumn<QString>("row");

    QTest::newRow("a usual row") << u"(3, 'shuffle', '1', -1)"_s;
    QTest::newRow("a row of a playlist alone") << u"(77, 'shuffle', '1', 5)"_s;
    QTest::newRow("a row of nothing") << u"(1, NULL, NULL, NULL)"_s;
}

void tst_Seeding::anyRowOfSettingsRulesItOut()
{
    QFETCH(QString, row);

    QVERIFY(stored_database::execute(emptySchema));
    QVERIFY(stored_database::execute({u"INSERT INTO settings VALUES"_s + row}));
    const QStringList before = settingsRows();
    m_storage->device.forgetCalls();
    m_storage->start();
    QCOMPARE(settingsRows(), before);
    QCOMPARE(playlistRows(), QStringList());
    QCOMPARE(imageRows(), QStringList());
    QVERIFY(m_storage->device.calls({"GetSoftwareLocalizationType", "GetCustomizedPartner"}).isEmpty());
    QCOMPARE(m_storage->output.logLines(logSource), QStringList());
}

void tst_Seeding::playlistsWithoutSettingsGetOneMore()
{
    QVERIFY(stored_database::execute(emptySchema));
    QVERIFY(
        stored_database::execute({u"INSERT INTO playlists VALUES(4, 'Lake')"_s,
                                  u"INSERT INTO playlist_images VALUES(9, '/mnt/ext1/Photo/01.jpg', 4)"_s}));
    m_storage->start();
    QCOMPARE(playlistRows(), QStringList({u"4|Lake"_s, u"5|@DefaultPlaylist"_s}));
    QCOMPARE(imageRows(),
             QStringList(u"9|/mnt/ext1/Photo/01.jpg|4"_s) + expectedImages(standardNames, 5, 10));
    QCOMPARE(settingsRows(), seededSettings);
}

void tst_Seeding::aSecondStartAddsNothing()
{
    m_storage->start();
    m_storage->store->deletePlaylist(1);
    m_storage->store->setSetting(u"shuffle"_s, u"1"_s, -1);
    const QStringList settings = settingsRows();
    m_storage->start();
    QCOMPARE(playlistRows(), QStringList());
    QCOMPARE(imageRows(), QStringList());
    QCOMPARE(settingsRows(), settings);
}

void tst_Seeding::clearedSettingsSeedAgain()
{
    m_storage->start();
    m_storage->stop();
    QVERIFY(stored_database::execute({u"DELETE FROM settings"_s}));
    m_storage->start();
    QCOMPARE(playlistRows(), QStringList({u"1|@DefaultPlaylist"_s, u"2|@DefaultPlaylist"_s}));
    QCOMPARE(imageRows(), expectedImages(standardNames, 1) + expectedImages(standardNames, 2, 11));
    QCOMPARE(settingsRows(), seededSettings);
}

void tst_Seeding::thePlaylistComesFirstAndTheSettingsLast()
{
    QVERIFY(stored_database::execute(emptySchema));
    QVERIFY(stored_database::execute({
        u"CREATE TABLE witnessed(id INTEGER PRIMARY KEY, what TEXT)"_s,
        u"CREATE TRIGGER a AFTER INSERT ON playlists BEGIN INSERT INTO witnessed(what) VALUES('playlist'); END"_s,
        u"CREATE TRIGGER b AFTER INSERT ON playlist_images BEGIN INSERT INTO witnessed(what) VALUES(NEW.url); END"_s,
        u"CREATE TRIGGER c AFTER INSERT ON settings BEGIN INSERT INTO witnessed(what) VALUES(NEW.name); END"_s,
    }));
    m_storage->device.setLocalization(0, 21);
    m_storage->start();

    QStringList expected{u"playlist"_s};
    for (const QString &name : partnerNames)
        expected.append(u"/mnt/ext1/Photo/"_s + name);
    for (const QString &row : seededSettings)
        expected.append(row.section(u'|', 1, 1));
    QCOMPARE(stored_database::rows(u"SELECT what FROM witnessed ORDER BY id"_s), expected);
}

void tst_Seeding::failedSettingsAreTriedAgainAtTheNextStart()
{
    QVERIFY(stored_database::execute(emptySchema));
    QVERIFY(stored_database::execute(
        {u"CREATE TRIGGER refuse BEFORE INSERT ON settings BEGIN SELECT RAISE(ABORT, 'refused'); END"_s}));
    m_storage->start();
    QCOMPARE(m_storage->output.logLines(logSource),
             QStringList(u"2 void DataStorage::createScheme(): Error insert into [refused]"_s));
    QCOMPARE(settingsRows(), QStringList());
    QCOMPARE(playlistRows(), QStringList(u"1|@DefaultPlaylist"_s));
    QCOMPARE(m_storage->store->getSetting(u"change_picture_time"_s, -1), QString());

    m_storage->stop();
    QVERIFY(stored_database::execute({u"DROP TRIGGER refuse"_s}));
    m_storage->start();
    QCOMPARE(settingsRows(), seededSettings);
    QCOMPARE(playlistRows(), QStringList({u"1|@DefaultPlaylist"_s, u"2|@DefaultPlaylist"_s}));
}

void tst_Seeding::aFailedPlaylistLeavesItsPicturesToNobody()
{
    QVERIFY(stored_database::execute(emptySchema));
    QVERIFY(stored_database::execute(
        {u"CREATE TRIGGER refuse BEFORE INSERT ON playlists BEGIN SELECT RAISE(ABORT, 'refused'); END"_s}));
    m_storage->start();
    QCOMPARE(m_storage->output.logLines(logSource),
             QStringList(
                 u"2 long long DataStorage::addPlaylist(const QString &): Error performing addPlaylistItem "
                 "request. []"_s));
    QCOMPARE(playlistRows(), QStringList());
    QCOMPARE(imageRows(), expectedImages(standardNames, -1));
    QCOMPARE(settingsRows(), seededSettings);
    QVERIFY(m_storage->store->getPlaylists().empty());

    // The settings are there, so it stays so.
    m_storage->stop();
    QVERIFY(stored_database::execute({u"DROP TRIGGER refuse"_s}));
    m_storage->start();
    QCOMPARE(playlistRows(), QStringList());
    QCOMPARE(imageRows(), expectedImages(standardNames, -1));

    m_storage->stop();
    QVERIFY(stored_database::execute({u"DELETE FROM settings"_s}));
    m_storage->start();
    QCOMPARE(playlistRows(), QStringList(u"1|@DefaultPlaylist"_s));
    QCOMPARE(m_storage->store->getPlaylists().front().images.size(), 10);
}

void tst_Seeding::thePhotoFolderIsNotLookedAt()
{
    QDir(u"/mnt/ext1/Photo"_s).removeRecursively();
    m_storage->start();
    QCOMPARE(imageRows(), expectedImages(standardNames, 1));
    QVERIFY(!QFile::exists(u"/mnt/ext1/Photo"_s));
}

void tst_Seeding::thePartnersListIsReadSorted()
{
    m_storage->device.setLocalization(0, 21);
    m_storage->start();
    QStringList sorted;
    for (const QString &name : partnerNames)
        sorted.append(u"/mnt/ext1/Photo/"_s + name);
    sorted.sort();
    const std::vector<DataStorage::Playlists> playlists = m_storage->store->getPlaylists();
    QCOMPARE(playlists.size(), 1U);
    QCOMPARE(playlists.front().images, sorted);
    QVERIFY(sorted.first().endsWith("backdrop-R7_1.png"_L1));
}

QTEST_GUILESS_MAIN(tst_Seeding)
#include "tst_seeding.moc"
