// The thumbnails in memory: their names, the order of use, the fifty places.

#include "cover_cache.h"

#include <QImage>
#include <QTest>

#include <climits>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::CoverCache;
using lindenreed::picture_stand::coverKey;
using lindenreed::picture_stand::leastRecentlyUsed;

namespace {

QImage picture(int width)
{
    QImage image(width, 1, QImage::Format_Grayscale8);
    image.fill(0);
    return image;
}

QString name(int number)
{
    return u"%1"_s.arg(number, 3, 10, QChar(u'0'));
}

} // namespace

class tst_CoverCache : public QObject
{
    Q_OBJECT

private slots:
    void keys_data();
    void keys();
    void longPathsShareAKey();
    void cutLetterIsOneName();
    void leastRecentlyUsed_data();
    void leastRecentlyUsed();
    void emptyAtFirst();
    void nullPictureIsAnEntry();
    void insertReplaces();
    void fiftyOneEvictTheFirst();
    void useProtects();
    void findingIsNoUse();
    void insertingAgainIsAUse();
    void touchWithoutPictureTakesAPlace();
    void awayUntilAPictureComes();
    void awayUntilItsPlaceIsTaken();
};

void tst_CoverCache::keys_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("box");
    QTest::addColumn<QByteArray>("key");

    const QString a(56, u'a');
    QTest::newRow("short") << u"/a/b.png"_s << QSize(165, 290) << QByteArray("/a/b.png_165x290");
    QTest::newRow("62 bytes with the whole size") << a << QSize(99, 99) << a.toUtf8() + "_99x99";
    QTest::newRow("the size loses its last digit") << a << QSize(99, 100) << a.toUtf8() + "_99x10";
    QTest::newRow("the size is cut at its x")
        << QString(58, u'a') << QSize(12, 34) << QByteArray(58, 'a') + "_12x";
    QTest::newRow("no size, its line alone")
        << QString(61, u'a') << QSize(12, 34) << QByteArray(61, 'a') + "_";
    QTest::newRow("62 bytes of path") << QString(62, u'a') << QSize(12, 34) << QByteArray(62, 'a');
    QTest::newRow("70 bytes of path") << QString(70, u'a') << QSize(12, 34) << QByteArray(62, 'a');
    QTest::newRow("bytes count, not letters")
        << QString(31, u'ü') << QSize(12, 34) << QString(31, u'ü').toUtf8();
    QTest::newRow("cut after the first byte of two")
        << QString(61, u'a') + u"ü"_s << QSize(12, 34) << QByteArray(61, 'a') + "\xef\xbf\xbd";
    QTest::newRow("percent signs are no formats")
        << u"/50%s%n.png"_s << QSize(1, 2) << QByteArray("/50%s%n.png_1x2");
    QTest::newRow("a size below zero") << u"/a"_s << QSize(-1, -1) << QByteArray("/a_-1x-1");
}

void tst_CoverCache::keys()
{
    QFETCH(QString, path);
    QFETCH(QSize, box);
    QFETCH(QByteArray, key);

    QCOMPARE(coverKey(path, box.width(), box.height()).toUtf8(), key);
}

void tst_CoverCache::longPathsShareAKey()
{
    const QString common(62, u'p');
    QCOMPARE(coverKey(common + u"one.jpg"_s, 10, 20), coverKey(common + u"two.jpg"_s, 300, 400));
    QVERIFY(coverKey(common.chopped(1) + u"1"_s, 10, 20) != coverKey(common.chopped(1) + u"2"_s, 10, 20));
    QVERIFY(coverKey(u"a.jpg"_s, 10, 20) != coverKey(u"a.jpg"_s, 20, 10));
}

void tst_CoverCache::cutLetterIsOneName()
{
    // ü and ö begin with the same byte, and a four-byte letter may lose one to three.
    const QString before(61, u'a');
    QCOMPARE(coverKey(before + u"ü.jpg"_s, 1, 1), coverKey(before + u"ö.png"_s, 2, 2));
    for (int kept = 1; kept < 4; ++kept) {
        const QString key = coverKey(QString(62 - kept, u'a') + u"🌄.jpg"_s, 1, 1);
        QVERIFY(key.startsWith(QString(62 - kept, u'a')));
        QCOMPARE(key, QString::fromUtf8((QString(62 - kept, u'a') + u"🌄"_s).toUtf8().first(62)));
    }
}

void tst_CoverCache::leastRecentlyUsed_data()
{
    using Ticks = QMap<QString, unsigned int>;
    QTest::addColumn<Ticks>("ticks");
    QTest::addColumn<QString>("oldest");

    QTest::newRow("one") << Ticks{{u"a"_s, 7}} << u"a"_s;
    QTest::newRow("the lowest, in the middle") << Ticks{{u"a"_s, 3}, {u"b"_s, 1}, {u"c"_s, 2}} << u"b"_s;
    QTest::newRow("the last") << Ticks{{u"a"_s, 3}, {u"b"_s, 2}, {u"c"_s, 1}} << u"c"_s;
    QTest::newRow("of two the first in key order") << Ticks{{u"c"_s, 1}, {u"b"_s, 1}, {u"a"_s, 2}} << u"b"_s;
    QTest::newRow("zero, after the counter wrapped") << Ticks{{u"a"_s, UINT_MAX}, {u"b"_s, 0}} << u"b"_s;
    QTest::newRow("the highest of all ticks") << Ticks{{u"b"_s, UINT_MAX}, {u"a"_s, UINT_MAX}} << u"a"_s;
}

void tst_CoverCache::leastRecentlyUsed()
{
    using Ticks = QMap<QString, unsigned int>;
    QFETCH(Ticks, ticks);
    QFETCH(QString, oldest);

    QCOMPARE(lindenreed::picture_stand::leastRecentlyUsed(ticks), oldest);
}

void tst_CoverCache::emptyAtFirst()
{
    QVERIFY(!CoverCache().find(u"a"_s));
    QCOMPARE(&CoverCache::instance(), &CoverCache::instance());
}

void tst_CoverCache::nullPictureIsAnEntry()
{
    CoverCache cache;
    cache.insert(u"bad"_s, QImage());
    QVERIFY(cache.find(u"bad"_s));
    QVERIFY(cache.find(u"bad"_s)->isNull());
}

void tst_CoverCache::insertReplaces()
{
    CoverCache cache;
    cache.insert(u"a"_s, picture(1));
    cache.insert(u"a"_s, picture(2));
    QCOMPARE(cache.find(u"a"_s)->width(), 2);
}

void tst_CoverCache::fiftyOneEvictTheFirst()
{
    CoverCache cache;
    for (int i = 0; i < 50; ++i)
        cache.insert(name(99 - i), picture(i + 1)); // against the order of keys
    for (int i = 0; i < 50; ++i)
        QCOMPARE(cache.find(name(99 - i))->width(), i + 1);
    cache.insert(u"new"_s, picture(1));
    QVERIFY(!cache.find(name(99)));
    for (int i = 1; i < 50; ++i)
        QVERIFY(cache.find(name(99 - i)));
    QVERIFY(cache.find(u"new"_s));
}

void tst_CoverCache::useProtects()
{
    CoverCache cache;
    for (int i = 0; i < 50; ++i)
        cache.insert(name(i), picture(1));
    cache.touch(name(0));
    cache.insert(u"new"_s, picture(1));
    QVERIFY(cache.find(name(0)));
    QVERIFY(!cache.find(name(1)));
}

void tst_CoverCache::findingIsNoUse()
{
    CoverCache cache;
    for (int i = 0; i < 50; ++i)
        cache.insert(name(i), picture(1));
    QVERIFY(cache.find(name(0)));
    cache.insert(u"new"_s, picture(1));
    QVERIFY(!cache.find(name(0)));
}

void tst_CoverCache::insertingAgainIsAUse()
{
    CoverCache cache;
    for (int i = 0; i < 50; ++i)
        cache.insert(name(i), picture(1));
    cache.insert(name(0), picture(2)); // a known key needs no place
    for (int i = 0; i < 50; ++i)
        QVERIFY(cache.find(name(i)));
    cache.insert(u"new"_s, picture(1));
    QVERIFY(cache.find(name(0)));
    QVERIFY(!cache.find(name(1)));
}

void tst_CoverCache::touchWithoutPictureTakesAPlace()
{
    // The places are counted by use: an entry that went between its lookup and its use keeps one.
    CoverCache cache;
    cache.touch(u"ghost"_s);
    QVERIFY(!cache.find(u"ghost"_s));
    for (int i = 0; i < 49; ++i)
        cache.insert(name(i), picture(1));
    QVERIFY(cache.find(name(0)));
    cache.insert(name(49), picture(1)); // the ghost goes
    QVERIFY(cache.find(name(0)));
    cache.insert(name(50), picture(1));
    QVERIFY(!cache.find(name(0)));
}

void tst_CoverCache::awayUntilAPictureComes()
{
    CoverCache cache;
    QVERIFY(!cache.isAway(u"a"_s));
    cache.insert(u"a"_s, QImage(), true);
    QVERIFY(cache.isAway(u"a"_s));
    cache.insert(u"a"_s, picture(1));
    QVERIFY(!cache.isAway(u"a"_s));
}

void tst_CoverCache::awayUntilItsPlaceIsTaken()
{
    CoverCache cache;
    cache.insert(u"a"_s, QImage(), true);
    for (int i = 0; i < 50; ++i) {
        QVERIFY(cache.isAway(u"a"_s));
        cache.insert(name(i), picture(1));
    }
    QVERIFY(!cache.isAway(u"a"_s));
}

QTEST_GUILESS_MAIN(tst_CoverCache)
#include "tst_cover_cache.moc"
