// Settings in the data store: those of a playlist before the global ones.

#include "storage_fixture.h"

class tst_DataStorageSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aPlaylistInheritsTheGlobalValue();
    void aSecondValueReplacesTheFirst();
    void anUnknownKeyIsEmptyAndSilent();
    void valuesAreKeptAsText_data();
    void valuesAreKeptAsText();

private:
    std::unique_ptr<StorageFixture> m_test;
};

void tst_DataStorageSettings::init()
{
    m_test = std::make_unique<StorageFixture>();
    m_test->device.setLocalization(4, 0); // without the default playlist
    m_test->store = std::make_unique<DataStorage>(nullptr);
}

void tst_DataStorageSettings::cleanup()
{
    const QStringList lines = m_test->output.logLines(logSource);
    m_test.reset();
    QCOMPARE(lines, QStringList()); // nothing here fails, so nothing is logged
}

void tst_DataStorageSettings::aPlaylistInheritsTheGlobalValue()
{
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, 7), u"0"_s);
    m_test->store->setSetting(u"shuffle"_s, u"1"_s, 7);
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, 7), u"1"_s);
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, -1), u"0"_s);
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, 8), u"0"_s);
    m_test->store->setSetting(u"shuffle"_s, u"2"_s, -1);
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, 7), u"1"_s);
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, 8), u"2"_s);

    // An empty value of the playlist's own is a value.
    m_test->store->setSetting(u"shuffle"_s, QString(), 7);
    QCOMPARE(m_test->store->getSetting(u"shuffle"_s, 7), QString());
}

void tst_DataStorageSettings::aSecondValueReplacesTheFirst()
{
    m_test->store->setSetting(u"shuffle"_s, u"1"_s, 7);
    m_test->store->setSetting(u"shuffle"_s, u"2"_s, 7);
    m_test->store->setSetting(u"display_mode"_s, u"3"_s, 7);
    m_test->store->setSetting(u"display_mode"_s, u"0"_s, -1);
    QCOMPARE(
        stored_database::rows(u"SELECT id, name, value, playlist FROM settings WHERE id > 20 ORDER BY id"_s),
        QStringList({u"21|shuffle|2|7"_s, u"22|display_mode|3|7"_s}));
    QCOMPARE(stored_database::rows(
                 u"SELECT id, value FROM settings WHERE name = 'display_mode' AND playlist = -1"_s),
             QStringList(u"4|0"_s));
    QCOMPARE(stored_database::rows(u"SELECT count(*) FROM settings"_s), QStringList(u"22"_s));
}

void tst_DataStorageSettings::anUnknownKeyIsEmptyAndSilent()
{
    QCOMPARE(m_test->store->getSetting(u"no_such_key"_s, -1), QString());
    QCOMPARE(m_test->store->getSetting(u"no_such_key"_s, 7), QString());
    QCOMPARE(m_test->store->getSetting(u"Shuffle"_s, -1), QString());
    QCOMPARE(m_test->store->getSetting(QString(), -1), QString());
}

void tst_DataStorageSettings::valuesAreKeptAsText_data()
{
    QTest::addColumn<QString>("value");

    QTest::newRow("a number") << u"30"_s;
    QTest::newRow("leading zeros") << u"007"_s;
    QTest::newRow("empty") << u""_s;
    QTest::newRow("null") << QString();
    QTest::newRow("quotes") << u"O'Neill \"Sans\""_s;
    QTest::newRow("a statement") << u"1'); DELETE FROM settings; --"_s;
}

void tst_DataStorageSettings::valuesAreKeptAsText()
{
    QFETCH(QString, value);

    m_test->store->setSetting(u"created_date_font"_s, value, -1);
    QCOMPARE(m_test->store->getSetting(u"created_date_font"_s, -1), value);
    QCOMPARE(
        stored_database::rows(u"SELECT id, typeof(value) FROM settings WHERE name = 'created_date_font'"_s),
        QStringList(u"7|text"_s));
    QCOMPARE(stored_database::rows(u"SELECT count(*) FROM settings"_s), QStringList(u"20"_s));
}

QTEST_GUILESS_MAIN(tst_DataStorageSettings)
#include "tst_datastorage_settings.moc"
