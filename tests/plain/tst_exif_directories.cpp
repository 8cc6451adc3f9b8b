// The directories that the first one of EXIF data refers to: where they may be, and what has to fit.

#include "exif_orders.h"

using namespace TinyEXIF;

namespace {

/// Entries that are read on either side of one that says where another directory is.
std::string withDirectoryAt(ByteOrder order, unsigned tag, std::uint32_t offset)
{
    return ExifBuilder(order)
        .shorts(ExifBuilder::First, 0x0112, {6})
        .longNumber(ExifBuilder::First, tag, offset)
        .text(ExifBuilder::First, 0x010F, "Make\0")
        .segment();
}

constexpr unsigned exifTag = 0x8769;
constexpr unsigned gpsTag = 0x8825;

} // namespace

class tst_ExifDirectories : public QObject
{
    Q_OBJECT

private slots:
    void subDirectoryFits_data();
    void subDirectoryFits();
    void subDirectoryBegins_data();
    void subDirectoryBegins();
    void corruptExifDirectoryHidesGps_data();
    void corruptExifDirectoryHidesGps();
    void referencesOfAnyFormat_data();
    void referencesOfAnyFormat();
    void lastReferenceCounts_data();
    void lastReferenceCounts();
    void referencesCountInFirstDirectoryAlone_data();
    void referencesCountInFirstDirectoryAlone();
    void sharedDirectories_data();
    void sharedDirectories();
    void firstDirectoryBehindTheOthers_data();
    void firstDirectoryBehindTheOthers();
};

void tst_ExifDirectories::subDirectoryFits_data()
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<int>("directory");

    for (const ByteOrder order : byteOrders) {
        QTest::addRow("%s, Exif", nameOf(order)) << order << int(ExifBuilder::Exif);
        QTest::addRow("%s, GPS", nameOf(order)) << order << int(ExifBuilder::Gps);
    }
}

void tst_ExifDirectories::subDirectoryFits()
{
    QFETCH(ByteOrder, order);
    QFETCH(int, directory);

    ExifBuilder builder(order);
    builder.shorts(ExifBuilder::First, 0x0112, {6});
    const bool exif = directory == ExifBuilder::Exif;
    if (exif)
        builder.shorts(ExifBuilder::Exif, 0x9209, {1});
    else
        builder.shorts(ExifBuilder::Gps, 30, {1});
    const std::string segment = builder.segment();
    const auto filled
        = [exif](const EXIFInfo &info) { return exif ? info.Flash == 1 : info.GPS.Differential == 1; };

    const ReadExif whole = readSegment(segment);
    QCOMPARE(whole.result, int(ParseSuccess));
    QVERIFY(filled(whole.info));

    const std::uint32_t offset = builder.offset(ExifBuilder::Directory(directory));
    for (const std::string &cut :
         {segment.substr(0, segment.size() - 1), segment.substr(0, segment.size() - 4),
          withNumber(segment, order, offset, 2, 2), withNumber(segment, order, offset, 65535, 2)}) {
        const ReadExif read = readSegment(cut);
        QCOMPARE(read.result, int(ParseCorruptData));
        QVERIFY(!filled(read.info));
        QCOMPARE(int(read.info.Orientation), 6); // what was read before stays
    }
}

void tst_ExifDirectories::subDirectoryBegins_data()
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<unsigned>("tag");
    QTest::addColumn<qint64>("offset"); // below 0: from the end of the segment
    QTest::addColumn<int>("expected");

    for (const ByteOrder order : byteOrders) {
        for (const unsigned tag : {exifTag, gpsTag}) {
            const auto row = [order, tag](qint64 offset, ParseResult expected) {
                QTest::addRow("%s, %X, %lld", nameOf(order), tag, static_cast<long long>(offset))
                    << order << tag << offset << int(expected);
            };
            row(-12, ParseSuccess); // six of the header, two of the count, four of the link
            row(-11, ParseCorruptData);
            row(-10, ParseCorruptData);
            // Four bytes are not there: there is no such directory.
            for (const int offset : {-9, -8, -7, -6, -1})
                row(offset, ParseSuccess);
            for (const qint64 offset : {0x10000LL, 0x7FFFFFFFLL, 0x80000000LL, 0xFFFFFFF0LL, 0xFFFFFFF8LL,
                                        0xFFFFFFFALL, 0xFFFFFFFCLL, 0xFFFFFFFFLL})
                row(offset, ParseSuccess);
            row(0, ParseCorruptData); // the byte order mark as a count
        }
    }
}

void tst_ExifDirectories::subDirectoryBegins()
{
    QFETCH(ByteOrder, order);
    QFETCH(unsigned, tag);
    QFETCH(qint64, offset);
    QFETCH(int, expected);

    if (offset < 0)
        offset += qint64(withDirectoryAt(order, tag, 0).size()) + 40;
    const ReadExif read
        = readSegment(withDirectoryAt(order, tag, std::uint32_t(offset)) + std::string(40, '\0'));
    QCOMPARE(read.result, expected);
    QCOMPARE(int(read.info.Orientation), 6);
    QCOMPARE(read.info.Make, std::string("Make")); // texts too, and entries behind the reference
}

void tst_ExifDirectories::corruptExifDirectoryHidesGps_data()
{
    bothOrders();
}

void tst_ExifDirectories::corruptExifDirectoryHidesGps()
{
    QFETCH(ByteOrder, order);

    ExifBuilder builder(order);
    builder.begin(ExifBuilder::Exif).shorts(ExifBuilder::Gps, 30, {1});
    QCOMPARE(readSegment(builder.segment()).info.GPS.Differential, 1.0);
    const ReadExif read
        = readSegment(withNumber(builder.segment(), order, builder.offset(ExifBuilder::Exif), 9, 2));
    QCOMPARE(read.result, int(ParseCorruptData));
    QCOMPARE(read.info.GPS.Differential, EXIFInfo::GpsGroup::unset);
}

void tst_ExifDirectories::referencesOfAnyFormat_data()
{
    bothOrders();
}

void tst_ExifDirectories::referencesOfAnyFormat()
{
    QFETCH(ByteOrder, order);

    for (const unsigned format : {0u, 2u, 3u, 13u, 65535u}) {
        for (const std::uint32_t count : {0u, 1u, 0xFFFFFFFFu}) {
            ExifBuilder builder(order);
            builder.shorts(ExifBuilder::Exif, 0x9209, {1}).shorts(ExifBuilder::Gps, 30, {1});
            std::string segment = builder.segment();
            for (const std::uint32_t entry : {10u, 22u}) {
                segment = withNumber(segment, order, entry + 2, format, 2);
                segment = withNumber(segment, order, entry + 4, count, 4);
            }
            const ReadExif read = readSegment(segment);
            QCOMPARE(int(read.info.Flash), 1);
            QCOMPARE(read.info.GPS.Differential, 1.0);
        }
    }
}

void tst_ExifDirectories::lastReferenceCounts_data()
{
    bothOrders();
}

void tst_ExifDirectories::lastReferenceCounts()
{
    QFETCH(ByteOrder, order);

    ExifBuilder builder(order);
    builder.longNumber(ExifBuilder::First, exifTag, 0)
        .longNumber(ExifBuilder::First, gpsTag, 0)
        .shorts(ExifBuilder::Exif, 0x9209, {1})
        .shorts(ExifBuilder::Gps, 30, {1});
    const ReadExif read = readSegment(builder.segment());
    QCOMPARE(read.result, int(ParseSuccess));
    QCOMPARE(int(read.info.Flash), 1);
    QCOMPARE(read.info.GPS.Differential, 1.0);
}

void tst_ExifDirectories::referencesCountInFirstDirectoryAlone_data()
{
    bothOrders();
}

void tst_ExifDirectories::referencesCountInFirstDirectoryAlone()
{
    QFETCH(ByteOrder, order);

    // Both would be corrupt where these entries lead.
    ExifBuilder builder(order);
    for (const ExifBuilder::Directory directory : {ExifBuilder::Exif, ExifBuilder::Gps}) {
        builder.longNumber(directory, exifTag, 0).longNumber(directory, gpsTag, 0);
        builder.longNumber(directory, 0xA005, 0); // another directory that cameras write
    }
    QCOMPARE(readSegment(builder.segment()).result, int(ParseSuccess));
}

void tst_ExifDirectories::sharedDirectories_data()
{
    bothOrders();
}

void tst_ExifDirectories::sharedDirectories()
{
    QFETCH(ByteOrder, order);

    // All three are the first: it is gone through once for each, and no more.
    ExifBuilder builder(order);
    builder.longNumber(ExifBuilder::First, exifTag, ExifBuilder::firstOffset)
        .longNumber(ExifBuilder::First, gpsTag, ExifBuilder::firstOffset)
        .shorts(ExifBuilder::First, 0x0112, {6})
        .shorts(ExifBuilder::First, 0x9209, {1})
        .shorts(ExifBuilder::First, 30, {1});
    const ReadExif read = readSegment(builder.segment());
    QCOMPARE(read.result, int(ParseSuccess));
    QCOMPARE(int(read.info.Orientation), 6);
    QCOMPARE(int(read.info.Flash), 1);
    QCOMPARE(read.info.GPS.Differential, 1.0);
}

void tst_ExifDirectories::firstDirectoryBehindTheOthers_data()
{
    bothOrders();
}

void tst_ExifDirectories::firstDirectoryBehindTheOthers()
{
    QFETCH(ByteOrder, order);

    // An Exif directory at the usual place of the first, which stands behind it.
    std::string segment = ExifBuilder(order).shorts(ExifBuilder::First, 0x9209, {1}).segment();
    const auto first = std::uint32_t(segment.size() - ExifBuilder::headerLength);
    segment += ExifBuilder(order)
                   .longNumber(ExifBuilder::First, exifTag, ExifBuilder::firstOffset)
                   .segment()
                   .substr(ExifBuilder::headerLength + ExifBuilder::firstOffset);
    const ReadExif read = readSegment(withNumber(segment, order, 4, first, 4));
    QCOMPARE(read.result, int(ParseSuccess));
    QCOMPARE(int(read.info.Flash), 1);
}

QTEST_APPLESS_MAIN(tst_ExifDirectories)
#include "tst_exif_directories.moc"
