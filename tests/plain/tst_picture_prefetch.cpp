// Loading pictures ahead: how much memory there is, how many at once, the order, and what goes when the
// budget is full.

#include "picture_cache.h"
#include "small_pictures.h"
#include "stderr_capture.h"

#include <QTemporaryDir>
#include <QTest>

using lindenreed::picture_stand::PictureCache;
using lindenreed::picture_stand::prefetchDecoders;
using lindenreed::picture_stand::readTotalMemory;

namespace {

QString writeFile(const QTemporaryDir &folder, const QByteArray &contents)
{
    QFile file(folder.filePath(QStringLiteral("meminfo")));
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        return {};
    return file.fileName();
}

} // namespace

class tst_PicturePrefetch : public QObject
{
    Q_OBJECT

private slots:
    void totalMemory_data();
    void totalMemory();
    void totalMemoryOfMissingFile();
    void decoders_data();
    void decoders();
    void order_data();
    void order();
    void exactlyAtTheBudget();
    void freshCacheOverflows();
    void warmCacheGivesUpTheFarEnd();
    void visitedPositionsWithoutPictureCount();
    void pictureLargerThanTheBudget();
    void noBudget();
    void strangersStay();
};

void tst_PicturePrefetch::totalMemory_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<long long>("bytes");

    const QByteArray filler63(63, 'x');
    QTest::newRow("an ordinary file")
        << QByteArray("MemTotal:       16384 kB\nMemFree: 5 kB\n") << 16384LL * 1024;
    QTest::newRow("empty") << QByteArray() << 0LL;
    QTest::newRow("no such line") << QByteArray("MemFree: 5 kB\n") << 0LL;
    QTest::newRow("the last line wins")
        << QByteArray("MemTotal: 1 kB\nMemTotal: 2 kB\nMemFree: 9 kB\n") << 2048LL;
    QTest::newRow("no unit, no line end") << QByteArray("MemTotal: 7") << 7LL * 1024;
    QTest::newRow("not at the start of the line") << QByteArray(" MemTotal: 7 kB\n") << 0LL;
    QTest::newRow("another name that begins alike") << QByteArray("MemTotalHuge: 7 kB\n") << 0LL;
    QTest::newRow("no number") << QByteArray("MemTotal: many\n") << 0LL;
    QTest::newRow("more than 32 bits of bytes") << QByteArray("MemTotal: 25165824 kB\n") << 25165824LL * 1024;
    QTest::newRow("a long line is read in pieces of 63") << filler63 + "MemTotal: 3 kB\n" << 3072LL;
    QTest::newRow("behind 62 characters it begins no piece") << filler63.chopped(1) + "MemTotal: 3 kB\n"
                                                             << 0LL;
    QTest::newRow("binary bytes") << QByteArray("\0\xff\nMemTotal: 4 kB\n", 17) << 4096LL;
}

void tst_PicturePrefetch::totalMemory()
{
    QFETCH(QByteArray, contents);
    QFETCH(long long, bytes);

    const QTemporaryDir folder;
    const QString path = writeFile(folder, contents);
    QCOMPARE(readTotalMemory(qPrintable(path)), std::optional<long long>(bytes));
}

void tst_PicturePrefetch::totalMemoryOfMissingFile()
{
    QCOMPARE(readTotalMemory("/nowhere/meminfo"), std::optional<long long>());
}

void tst_PicturePrefetch::decoders_data()
{
    QTest::addColumn<long long>("mebibytes");
    QTest::addColumn<int>("processors");
    QTest::addColumn<int>("decoders");

    QTest::newRow("memory that is not known") << 0LL << 4 << 1;
    QTest::newRow("a small machine") << 256LL << 4 << 1;
    QTest::newRow("almost a GiB") << 1023LL << 4 << 1;
    QTest::newRow("a GiB") << 1024LL << 4 << 2;
    QTest::newRow("enough for all processors") << 2048LL << 4 << 4;
    QTest::newRow("more than enough") << 65'536LL << 4 << 4;
    QTest::newRow("more than 32 bits of decoders") << (1LL << 42) << 4 << 4;
    QTest::newRow("processors that are not known") << 65'536LL << -1 << 1;
}

void tst_PicturePrefetch::decoders()
{
    QFETCH(long long, mebibytes);
    QFETCH(int, processors);

    QTEST(prefetchDecoders(mebibytes << 20, processors), "decoders");
}

void tst_PicturePrefetch::order_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("loaded");

    // The last position of the order is never loaded.
    QTest::newRow("no picture") << 0 << 0 << QByteArray();
    QTest::newRow("one picture: left to the request") << 1 << 0 << QByteArray();
    QTest::newRow("two: the current one alone") << 2 << 1 << QByteArray("+1");
    QTest::newRow("three, at the first") << 3 << 0 << QByteArray("+0 +1");
    QTest::newRow("four, at the last: forward wraps first") << 4 << 3 << QByteArray("+3 +0 +2");
    QTest::newRow("six, in the middle") << 6 << 2 << QByteArray("+2 +3 +1 +4 +0");
    QTest::newRow("five, at the first: backward wraps") << 5 << 0 << QByteArray("+0 +1 +4 +2");
}

void tst_PicturePrefetch::order()
{
    QFETCH(int, count);
    QFETCH(int, index);
    QFETCH(QByteArray, loaded);

    PictureCache cache(1'000'000, smallPicture);
    const StderrCapture log;
    prefetch(cache, names(count), index);
    QCOMPARE(steps(log.text()), loaded);
}

void tst_PicturePrefetch::exactlyAtTheBudget()
{
    // The fourth picture meets the budget and is not above it.
    PictureCache cache(4 * pictureSize, smallPicture);
    const StderrCapture log;
    prefetch(cache, names(5), 0);
    QCOMPARE(steps(log.text()), QByteArray("+0 +1 +4 +2"));
    QCOMPARE(cache.used(), cache.limit());
}

void tst_PicturePrefetch::freshCacheOverflows()
{
    // The third picture overflows; the tail walks over positions that hold nothing, and that picture is kept.
    PictureCache cache(2 * pictureSize, smallPicture);
    const StderrCapture log;
    prefetch(cache, names(8), 0);
    QCOMPARE(steps(log.text()), QByteArray("+0 +1 +7"));
    QCOMPARE(cache.used(), 3 * pictureSize);
}

void tst_PicturePrefetch::warmCacheGivesUpTheFarEnd()
{
    PictureCache cache(4 * pictureSize, smallPicture);
    for (const QString &name : names(4))
        cache.addToCache(name);

    // Order 4 5 3 0 2 1: position 4 is new, and 1 goes.
    const StderrCapture log;
    prefetch(cache, names(6), 4);
    QCOMPARE(steps(log.text()), QByteArray("+4 -1 +5 -2"));
    QCOMPARE(cache.used(), cache.limit());
}

void tst_PicturePrefetch::visitedPositionsWithoutPictureCount()
{
    PictureCache cache(2 * pictureSize, smallPicture);
    cache.addToCache(QStringLiteral("2"));
    cache.addToCache(QStringLiteral("5"));

    // Order 0 1 5 2 4 3: 3 and 4 hold nothing, 2 goes; then 1 takes the place of 5, where the tail meets the
    // head.
    const StderrCapture log;
    prefetch(cache, names(6), 0);
    QCOMPARE(steps(log.text()), QByteArray("+0 -2 +1 -5"));
}

void tst_PicturePrefetch::pictureLargerThanTheBudget()
{
    PictureCache cache(pictureSize / 2, smallPicture);
    const StderrCapture log;
    prefetch(cache, names(4), 1);
    QCOMPARE(steps(log.text()), QByteArray("+1"));
    QCOMPARE(cache.used(), pictureSize);
}

void tst_PicturePrefetch::noBudget()
{
    // An unknown memory size: each job adds one picture and ends.
    PictureCache cache(0, smallPicture);
    const StderrCapture log;
    prefetch(cache, names(4), 0);
    prefetch(cache, names(4), 1);
    QCOMPARE(steps(log.text()), QByteArray("+0 +1 -0"));
}

void tst_PicturePrefetch::strangersStay()
{
    // Pictures of an earlier list are out of the job's reach and keep counting.
    PictureCache cache(2 * pictureSize, smallPicture);
    cache.addToCache(QStringLiteral("old 1"));
    cache.addToCache(QStringLiteral("old 2"));
    const StderrCapture log;
    prefetch(cache, names(5), 0);
    QCOMPARE(steps(log.text()), QByteArray("+0"));
    QVERIFY(!cache.find(QStringLiteral("old 1")).isNull() && !cache.find(QStringLiteral("old 2")).isNull());
}

QTEST_GUILESS_MAIN(tst_PicturePrefetch)
#include "tst_picture_prefetch.moc"
