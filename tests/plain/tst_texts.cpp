// Texts by key, plural forms, and times as text.

#include <texts.h>

#include <QCoreApplication>
#include <QTest>
#include <QTranslator>

#include <limits>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

class tst_Texts : public QObject
{
    Q_OBJECT

private slots:
    void nothingBeforeLoading();
    void english_data();
    void english();
    void unknownKeys();
    void immortal();
    void plural_data();
    void plural();
    void pluralWithoutForms();
    void qsTrFindsThem();
    void languageCodes_data();
    void languageCodes();
    void anotherLanguage();
    void ownTranslatorWins();
    void time_data();
    void time();
    void strangeTimes();

private:
    static QString testTables() { return QStringLiteral(TEST_LANGUAGES); }
};

void tst_Texts::nothingBeforeLoading()
{
    QCOMPARE(texts::text("@PlayItem"), nullptr);
    QCOMPARE(texts::plural("@PhotosWereAddedToPlaylist", 2), nullptr);
    QCOMPARE(texts::language(), QString());
    texts::load(u"en"_s);
    QCOMPARE(texts::language(), u"en"_s);
}

void tst_Texts::english_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *key, const char *expected) {
        QTest::newRow(key) << QByteArray(key) << QByteArray(expected);
    };
    row("@DefaultPlaylist", "Photos");
    row("@PhotoWasAddedToPlaylist", "%s picture was added to %s");
    row("@PlayItem", "Play");
    row("@StartPlayback", "Start playback");
    row("@ThereAreNoPlaylistsYet", "There are no playlists yet. Tap New playlist to make one.");
    row("@picture_stand", "Picture frame");
}

void tst_Texts::english()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, expected);
    QCOMPARE(QByteArray(texts::text(key.constData())), expected);
}

void tst_Texts::unknownKeys()
{
    QCOMPARE(texts::text("@NoSuchKey"), nullptr);
    QCOMPARE(texts::text(""), nullptr);
    QCOMPARE(texts::text("Garden"), nullptr);
    QCOMPARE(texts::text("\xff\xfe"), nullptr);
    QCOMPARE(texts::text("@playitem"), nullptr);
    QCOMPARE(texts::plural("@NoSuchKey", 3), nullptr);
    QCOMPARE(texts::text(nullptr), nullptr);
    QCOMPARE(texts::plural(nullptr, 3), nullptr);
}

void tst_Texts::immortal()
{
    const char *const first = texts::text("@PlayItem");
    for (int i = 0; i < 1000; ++i)
        texts::plural("@PhotosWereAddedToPlaylist", i);
    QCOMPARE(static_cast<const void *>(texts::text("@PlayItem")), static_cast<const void *>(first));
    QCOMPARE(QByteArray(first), QByteArray("Play"));
}

void tst_Texts::plural_data()
{
    QTest::addColumn<double>("count");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray one("%s picture was added to %s");
    const QByteArray many("%s pictures were added to %s");
    QTest::newRow("none") << 0.0 << many;
    QTest::newRow("one") << 1.0 << one;
    QTest::newRow("two") << 2.0 << many;
    QTest::newRow("rounded up to one") << 0.6 << one;
    QTest::newRow("rounded down to one") << 1.4 << one;
    QTest::newRow("rounded to two") << 1.5 << many;
    QTest::newRow("negative counts as none") << -1.0 << many;
    QTest::newRow("more than an int holds") << 1e300 << many;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << many;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << many;
}

void tst_Texts::plural()
{
    QFETCH(double, count);
    QFETCH(QByteArray, expected);
    QCOMPARE(QByteArray(texts::plural("@PhotosWereAddedToPlaylist", count)), expected);
}

void tst_Texts::pluralWithoutForms()
{
    QCOMPARE(QByteArray(texts::plural("@PlayItem", 5)), QByteArray("Play"));
}

void tst_Texts::qsTrFindsThem()
{
    QCOMPARE(QCoreApplication::translate("Playlists", "@PlayItem"), u"Play"_s);
    QCOMPARE(QCoreApplication::translate("AnyContext", "@PlayItem", "any hint"), u"Play"_s);
    QCOMPARE(QCoreApplication::translate("A", "@PhotosWereAddedToPlaylist", "0", 1),
             u"%s picture was added to %s"_s);
    QCOMPARE(QCoreApplication::translate("A", "@PhotosWereAddedToPlaylist", "0", 2),
             u"%s pictures were added to %s"_s);
    QCOMPARE(QCoreApplication::translate("Playlists", "@NoSuchKey"), u"@NoSuchKey"_s);
    QCOMPARE(QCoreApplication::translate("Playlists", "Garden"), u"Garden"_s);
}

void tst_Texts::languageCodes_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("loaded");

    QTest::newRow("as it is") << u"pl"_s << u"pl"_s;
    QTest::newRow("with a country that has no table of its own") << u"pl_PL"_s << u"pl"_s;
    QTest::newRow("unknown") << u"xx"_s << u"en"_s;
    QTest::newRow("unknown, with a country") << u"xx_YY"_s << u"en"_s;
    QTest::newRow("empty") << QString() << u"en"_s;
    QTest::newRow("out of the folder") << u"../languages/pl"_s << u"en"_s;
    QTest::newRow("with a NUL") << u"pl"_s + QChar(0) << u"en"_s;
    QTest::newRow("very long") << QString(100'000, u'p') << u"en"_s;
}

void tst_Texts::languageCodes()
{
    QFETCH(QString, code);
    QFETCH(QString, loaded);
    texts::load(code, testTables());
    QCOMPARE(texts::language(), loaded);
}

void tst_Texts::anotherLanguage()
{
    texts::load(u"xx"_s, testTables());
    const char *const english = texts::text("@DefaultPlaylist");
    QCOMPARE(QByteArray(english), QByteArray("Pictures for a test"));
    texts::load(u"pl"_s, testTables());
    QCOMPARE(QByteArray(texts::text("@DefaultPlaylist")), QByteArray("Zdjęcia"));
    QCOMPARE(QByteArray(english), QByteArray("Pictures for a test")); // handed out before, still there
    QCOMPARE(QByteArray(texts::plural("@Second", 1)), QByteArray("sekunda"));
    QCOMPARE(QByteArray(texts::plural("@Second", 3)), QByteArray("sekundy"));
    QCOMPARE(QByteArray(texts::plural("@Second", 5)), QByteArray("sekund"));
    QCOMPARE(QByteArray(texts::plural("@Second", 22)), QByteArray("sekundy"));
    QCOMPARE(QCoreApplication::translate("A", "@Second", "0", 22), u"sekundy"_s);
    QCOMPARE(QCoreApplication::translate("A", "@PlayItem"), u"@PlayItem"_s); // this table lacks it

    texts::load(u"en"_s, u"/nowhere"_s); // no table at all: the former one stays
    QCOMPARE(texts::language(), u"pl"_s);
    texts::load(u"en"_s);
    QCOMPARE(QByteArray(texts::text("@DefaultPlaylist")), QByteArray("Photos"));
}

void tst_Texts::ownTranslatorWins()
{
    class Own : public QTranslator
    {
    public:
        bool isEmpty() const override { return false; }
        QString translate(const char *, const char *key, const char *, int) const override
        {
            return qstrcmp(key, "@PlayItem") == 0 ? u"Mine"_s : QString();
        }
    } own;
    QVERIFY(QCoreApplication::installTranslator(&own));
    texts::load(u"en"_s); // again: the device does not push itself in front
    QCOMPARE(QCoreApplication::translate("A", "@PlayItem"), u"Mine"_s);
    QCOMPARE(QCoreApplication::translate("A", "@DefaultPlaylist"), u"Photos"_s);
    QCoreApplication::removeTranslator(&own);
}

namespace {

std::tm moment()
{
    std::tm time{};
    time.tm_year = 124;
    time.tm_mon = 1;
    time.tm_mday = 5;
    time.tm_hour = 15;
    time.tm_min = 7;
    time.tm_sec = 9;
    time.tm_wday = 1;
    time.tm_yday = 35;
    return time;
}

} // namespace

void tst_Texts::time_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *name, const char *format, const char *expected) {
        QTest::newRow(name) << QByteArray(format) << QByteArray(expected);
    };
    row("short day", "%a", "Mon");
    row("day", "%A", "Monday");
    row("short month", "%b", "Feb");
    row("month", "%B", "February");
    row("month beside a day", "%l", "February");
    row("day of the month", "%d", "05");
    row("day of the month, padded by a blank", "%e", " 5");
    row("hour", "%H", "15");
    row("hour of twelve", "%I", "03");
    row("day of the year", "%j", "036");
    row("number of the month", "%m", "02");
    row("minute", "%M", "07");
    row("half of the day", "%p", "PM");
    row("second", "%S", "09");
    row("short year", "%y", "24");
    row("year", "%Y", "2024");
    row("percent sign", "%%", "%");
    row("percent sign and letter", "%%H", "%H");
    row("empty", "", "");
    row("text alone", "at noon", "at noon");
    row("several", "%H:%M, %e %l", "15:07,  5 February");
    row("unknown conversion", "%Q", "%Q");
    row("unknown conversion before a known one", "%Q%H", "%Q15");
    row("modifier", "%Ey", "%Ey");
    row("percent sign at the end", "%H%", "15%");
    row("UTF-8 around", "%H Uhr, Frühstück", "15 Uhr, Frühstück");
}

void tst_Texts::time()
{
    QFETCH(QByteArray, format);
    QFETCH(QByteArray, expected);
    QCOMPARE(texts::time(format.constData(), moment()), expected);
}

void tst_Texts::strangeTimes()
{
    std::tm time = moment();
    time.tm_hour = 0;
    QCOMPARE(texts::time("%I %p", time), QByteArray("12 AM"));
    time.tm_hour = 12;
    QCOMPARE(texts::time("%I %p", time), QByteArray("12 PM"));
    time.tm_mday = 25;
    QCOMPARE(texts::time("%e", time), QByteArray("25"));
    time.tm_wday = 7;
    time.tm_mon = 12;
    QCOMPARE(texts::time("%a%A%b%B%l", time), QByteArray());
    time.tm_wday = -1;
    time.tm_mon = -1;
    QCOMPARE(texts::time("%a%A%b%B%l", time), QByteArray());
    time.tm_year = -1901;
    QCOMPARE(texts::time("%y", time), QByteArray("99"));
    const int largest = std::numeric_limits<int>::max();
    time = {};
    time.tm_year = time.tm_mon = time.tm_yday = largest;
    QCOMPARE(texts::time("%Y %m %j", time), QByteArray("2147485547 2147483648 2147483648"));
}

QTEST_GUILESS_MAIN(tst_Texts)
#include "tst_texts.moc"
