// Databases that were damaged on the disk, and what lies beside them.

#include "storage_fixture.h"

#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype pageSize = 4096;

void useEverything(DataStorage &store)
{
    for (const DataStorage::Playlists &playlist : store.getPlaylists()) {
        store.addImageToPlayList(playlist.id, u"/a.jpg"_s);
        store.deleteImageFromPlayList(playlist.id, u"/mnt/ext1/Photo/01.jpg"_s);
    }
    store.updatePlaylist(1, QString(5000, u'x'));
    const long long id = store.addPlaylist(u"Lake"_s);
    store.addImageToPlayList(id, u"/b.jpg"_s);
    store.setSetting(u"shuffle"_s, u"1"_s, -1);
    store.getSetting(u"shuffle"_s, 7);
    store.deletePlaylist(1);
}

} // namespace

class tst_DataStorageDamage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_test.reset(); }

    void beyondRecovery_data();
    void beyondRecovery();
    void ofOneTable_data();
    void ofOneTable();
    void atRandom();
    void besideTheDatabase_data();
    void besideTheDatabase();

private:
    std::unique_ptr<StorageFixture> m_test;
    QByteArray m_sound;
};

void tst_DataStorageDamage::init()
{
    m_test = std::make_unique<StorageFixture>();
    if (m_sound.isEmpty()) {
        m_test->start();
        m_test->stop();
        m_sound = bytesOf(stored_database::path);
    }
    writeBytes(m_sound);
    QCOMPARE(m_sound.size(), 4 * pageSize); // the scheme and three tables
}

void tst_DataStorageDamage::beyondRecovery_data()
{
    QTest::addColumn<qsizetype>("place");
    QTest::addColumn<qsizetype>("size");
    QTest::addColumn<char>("byte");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, qsizetype place, qsizetype size, char byte, const QString &error) {
        QTest::newRow(name) << place << size << byte << error;
    };
    const QString none = u"file is not a database"_s;
    const QString malformed = u"database disk image is malformed"_s;
    row("the name of the format", 0, 1, 's', none);
    row("the page size", 16, 2, '\x07', none);
    row("the header", 0, 100, '\0', none);
    row("all but the header", 100, 4 * pageSize - 100, '\x55', malformed);
    row("the scheme's page behind the header", 100, pageSize - 100, '\0', malformed);
    row("the kind of the scheme's page", 100, 1, '\x07', malformed);
    row("the rows of the scheme", 3000, pageSize - 3000, '\xff', malformed);
    row("everything", 0, 4 * pageSize, '\xff', none);
}

void tst_DataStorageDamage::beyondRecovery()
{
    QFETCH(qsizetype, place);
    QFETCH(qsizetype, size);
    QFETCH(char, byte);
    QFETCH(QString, error);

    const QByteArray damaged = QByteArray(m_sound).replace(place, size, QByteArray(size, byte));
    writeBytes(damaged);
    m_test->start();
    QCOMPARE(m_test->output.logLines(logSource), failedScheme(error));
    QVERIFY(m_test->store->getPlaylists().empty());
    QCOMPARE(m_test->store->getSetting(u"change_picture_time"_s, -1), QString());
    m_test->output.forget();
    useEverything(*m_test->store);
    QCOMPARE(m_test->output.logLines(logSource),
             withError({readPlaylists, updatePlaylist, addPlaylist, findImage, addImage, setSetting,
                        getSetting, getSetting, deletePlaylist, deleteImages},
                       error));
    m_test->stop();
    QCOMPARE(bytesOf(stored_database::path), damaged);
}

void tst_DataStorageDamage::ofOneTable_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("playlists") << 1 << QStringList{readPlaylists};
    QTest::newRow("pictures") << 2 << QStringList{readImages};
    QTest::newRow("settings") << 3
                              << QStringList{scheme + u"Error performing select settings request. [%1]"_s,
                                             getSetting};
}

/// Of the other two everything is there.
void tst_DataStorageDamage::ofOneTable()
{
    QFETCH(int, page);
    QFETCH(QStringList, lines);

    const QByteArray damaged
        = QByteArray(m_sound).replace(page * pageSize, pageSize, QByteArray(pageSize, '\0'));
    writeBytes(damaged);
    m_test->start();
    const std::vector<DataStorage::Playlists> playlists = m_test->store->getPlaylists();
    QCOMPARE(playlists.size(), page == 1 ? 0U : 1U);
    if (page != 1)
        QCOMPARE(playlists.front().images.size(), page == 2 ? 0 : 10);
    QCOMPARE(m_test->store->getSetting(u"change_picture_time"_s, -1), page == 3 ? QString() : u"30"_s);
    m_test->stop();
    QCOMPARE(m_test->output.logLines(logSource).size(), lines.size());
    QCOMPARE(bytesOf(stored_database::path), damaged); // nobody wrote
}

/// None of it ends the run, and nothing is written by looking.
void tst_DataStorageDamage::atRandom()
{
    std::mt19937 random(20240607);
    const auto below = [&random](qsizetype limit) {
        return std::uniform_int_distribution<qsizetype>(0, limit - 1)(random);
    };
    for (int round = 0; round < 150; ++round) {
        QByteArray damaged = m_sound;
        for (qsizetype i = below(40); i >= 0; --i)
            damaged[below(3) == 0 ? below(pageSize) : below(damaged.size())] = static_cast<char>(below(256));
        if (below(4) == 0)
            damaged.truncate(below(damaged.size()));
        stored_database::remove();
        writeBytes(damaged);
        m_test->start();
        m_test->store->getPlaylists();
        m_test->store->getSetting(u"change_picture_time"_s, 3);
        const bool seeded = m_test->device.calls({"GetSoftwareLocalizationType"}).size() > 0;
        m_test->device.forgetCalls();
        if (!seeded && !damaged.isEmpty())
            QCOMPARE(bytesOf(stored_database::path), damaged);
        useEverything(*m_test->store);
        m_test->stop();
    }
}

void tst_DataStorageDamage::besideTheDatabase_data()
{
    QTest::addColumn<QByteArray>("journal");

    QTest::newRow("an empty journal") << QByteArray();
    QTest::newRow("a journal of zeros") << QByteArray(5000, '\0');
    QTest::newRow("a journal of text") << QByteArray("The pictures of last summer.\n").repeated(500);
    QTest::newRow("a journal's header alone")
        << QByteArray("\xd9\xd5\x05\xf9\x20\xa1\x63\xd7\xff\xff\xff\xff", 12) + QByteArray(500, '\0');
}

void tst_DataStorageDamage::besideTheDatabase()
{
    QFETCH(QByteArray, journal);

    QFile file(stored_database::path + u"-journal"_s);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(journal) == journal.size());
    file.close();
    m_test->output.forget();
    m_test->start();
    QCOMPARE(m_test->output.logLines(logSource), QStringList());
    QCOMPARE(m_test->store->getPlaylists().front().images.size(), 10);
    QCOMPARE(bytesOf(stored_database::path), m_sound);
    QCOMPARE(m_test->store->addPlaylist(u"Lake"_s), 2LL);
    QCOMPARE(stored_database::rows(u"PRAGMA integrity_check"_s), QStringList(u"ok"_s));
    QCOMPARE(stored_database::rows(u"SELECT count(*) FROM playlists"_s), QStringList(u"2"_s));
}

QTEST_GUILESS_MAIN(tst_DataStorageDamage)
#include "tst_datastorage_damage.moc"
