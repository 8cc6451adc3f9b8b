// The values of EXIF entries: texts and numbers, and what does not lie in the segment.

#include "exif_orders.h"

#include <functional>
#include <limits>

using namespace TinyEXIF;

namespace {

constexpr double unset = EXIFInfo::GpsGroup::unset;

} // namespace

class tst_ExifValues : public QObject
{
    Q_OBJECT

private slots:
    void text_data();
    void text();
    void textOutside_data();
    void textOutside();
    void textAtTheEnd_data() { bothOrders(); }
    void textAtTheEnd();
    void shortNumber_data() { bothOrders(); }
    void shortNumber();
    void longOrShort_data() { bothOrders(); }
    void longOrShort();
    void rational_data();
    void rational();
    void rationalOutside_data();
    void rationalOutside();
    void someRationalsOutside_data() { bothOrders(); }
    void someRationalsOutside();
    void subjectArea_data() { bothOrders(); }
    void subjectArea();
    void subjectAreaOutside_data();
    void subjectAreaOutside();
};

void tst_ExifValues::text_data()
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");

    for (const ByteOrder order : byteOrders) {
        const auto row = [order](const char *name, const QByteArray &bytes, const QByteArray &expected) {
            QTest::addRow("%s, %s", nameOf(order), name) << order << bytes << expected;
        };
        row("one character", "A", "A");
        row("two", "AB", "AB");
        row("three", "ABC", "ABC");
        row("four", "ABCD", "ABCD");
        row("one with zero", QByteArray("A\0", 2), "A");
        row("two with zero", QByteArray("AB\0", 3), "AB");
        row("three with zero", QByteArray("ABC\0", 4), "ABC");
        row("zero alone", QByteArray("\0", 1), "");
        // Only the last byte is looked at, and blanks are left, up to four bytes.
        row("short, two zeros", QByteArray("AB\0\0", 4), QByteArray("AB\0", 3));
        row("short, zero inside", QByteArray("A\0B", 3), QByteArray("A\0B", 3));
        row("short, blanks", "A  ", "A  ");
        row("short, blanks and zero", QByteArray("A  \0", 4), "A  ");

        row("five", "ABCDE", "ABCDE");
        row("five with zero", QByteArray("ABCDE\0", 6), "ABCDE");
        row("zero inside", QByteArray("ABC\0EFG\0", 8), "ABC");
        row("zero first", QByteArray("\0BCDEFG", 7), "");
        row("blanks at the end", "ABCDE   ", "ABCDE");
        row("blanks before the zero", QByteArray("ABCDE   \0", 9), "ABCDE");
        row("blanks before a zero inside", QByteArray("ABC  \0EFG ", 10), "ABC");
        row("blanks first and inside", "  A B  ", "  A B");
        row("blanks alone", "        ", "");
        row("other white space stays", "ABCDE\t\n", "ABCDE\t\n");
        row("bytes above 127", "\xC3\xA4\xFF\xFE\x80", "\xC3\xA4\xFF\xFE\x80");
        row("date without a clock", QByteArray("    :  :     :  :  \0", 20), "    :  :     :  :");
    }
}

void tst_ExifValues::text()
{
    QFETCH(ByteOrder, order);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);

    ExifBuilder builder(order);
    builder.text(ExifBuilder::First, 0x010F, bytes.toStdString())
        .text(ExifBuilder::Exif, dateTag, bytes.toStdString())
        .text(ExifBuilder::Gps, 18, bytes.toStdString());
    // Characters that follow a text do not belong to it.
    const EXIFInfo info = readSegment(builder.segment() + "more").info;
    QCOMPARE(QByteArray::fromStdString(info.Make), expected);
    QCOMPARE(QByteArray::fromStdString(info.DateTimeOriginal), expected);
    QCOMPARE(QByteArray::fromStdString(info.GPS.MapDatum), expected);
}

namespace {

/// Offsets at which a value of `size` bytes does not lie in a segment of `length`.
void outsideRows(std::uint32_t size)
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<std::uint32_t>("before"); // the end of the segment; 0: use the offset
    QTest::addColumn<std::uint32_t>("offset");

    for (const ByteOrder order : byteOrders) {
        for (std::uint32_t before = 1; before < size;
             before += before < 3 || before > size - 4 ? 1 : size - 6)
            QTest::addRow("%s, %u bytes before the end", nameOf(order), before) << order << before << 0u;
        for (const std::uint32_t offset : {0x10000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFF00u, 0xFFFFFFF0u,
                                           0xFFFFFFF8u, 0xFFFFFFFAu, 0xFFFFFFFBu, 0xFFFFFFFFu})
            QTest::addRow("%s, %X", nameOf(order), offset) << order << 0u << offset;
    }
}

/// An entry whose offset leads so many bytes before the end of the segment, or to `offset`. Followed by an
/// entry that has to be read all the same.
std::string pointing(ByteOrder order, ExifBuilder::Directory directory, unsigned tag, unsigned format,
                     std::uint32_t count, std::uint32_t before, std::uint32_t offset)
{
    const auto build = [&](std::uint32_t to) {
        ExifBuilder builder(order);
        builder.raw(directory, tag, format, count, to).shorts(ExifBuilder::Exif, 0x9209, {1});
        return builder.segment() + std::string(64, 'x');
    };
    if (before > 0)
        offset = std::uint32_t(build(0).size()) - ExifBuilder::headerLength - before;
    return build(offset);
}

} // namespace

void tst_ExifValues::textOutside_data()
{
    outsideRows(20);
}

void tst_ExifValues::textOutside()
{
    QFETCH(ByteOrder, order);
    QFETCH(std::uint32_t, before);
    QFETCH(std::uint32_t, offset);

    EXIFInfo info;
    info.DateTimeOriginal = "of a segment before";
    QCOMPARE(parseSegment(
                 info, pointing(order, ExifBuilder::Exif, dateTag, ExifBuilder::Ascii, 20, before, offset)),
             int(ParseSuccess));
    QVERIFY(info.DateTimeOriginal.empty()); // known to be there, but not what it says
    QCOMPARE(int(info.Flash), 1);
}

void tst_ExifValues::textAtTheEnd()
{
    QFETCH(ByteOrder, order);

    // One that fills the segment to its last byte, and one that is longer than its segment by a byte.
    const ReadExif fits
        = readSegment(pointing(order, ExifBuilder::Exif, dateTag, ExifBuilder::Ascii, 20, 20, 0));
    QCOMPARE(fits.info.DateTimeOriginal, std::string(20, 'x'));
    const ReadExif whole
        = readSegment(pointing(order, ExifBuilder::Exif, dateTag, ExifBuilder::Ascii, 21, 20, 0));
    QVERIFY(whole.info.DateTimeOriginal.empty());
    // From the byte order mark on: "II*" or "MM", and a zero.
    const ReadExif first
        = readSegment(pointing(order, ExifBuilder::Exif, dateTag, ExifBuilder::Ascii, 9, 0, 0));
    QCOMPARE(first.info.DateTimeOriginal, std::string(order == ByteOrder::Little ? "II*" : "MM"));
}

void tst_ExifValues::shortNumber()
{
    QFETCH(ByteOrder, order);

    // The first two bytes count, whatever is in the others, and however many there are.
    for (const std::uint32_t count : {1u, 2u, 3u, 0xFFFFFFFFu}) {
        ExifBuilder builder(order);
        builder.value(ExifBuilder::First, 0x0112, ExifBuilder::Short, count,
                      numberBytes(order, 0xFEDC, 2) + "xy");
        QCOMPARE(readSegment(builder.segment()).info.Orientation, std::uint16_t(0xFEDC));
    }
}

void tst_ExifValues::longOrShort()
{
    QFETCH(ByteOrder, order);

    for (const unsigned tag : {0xA002u, 0xA003u, 0x1001u, 0x1002u}) {
        const auto read = [&](unsigned format) {
            ExifBuilder builder(order);
            builder.raw(ExifBuilder::First, tag, format, 1, 0xFEDCBA98);
            const EXIFInfo info = readSegment(builder.segment()).info;
            return info.ImageWidth + info.ImageHeight + info.RelatedImageWidth + info.RelatedImageHeight;
        };
        QCOMPARE(read(ExifBuilder::Long), 0xFEDCBA98u);
        QCOMPARE(read(ExifBuilder::Short), order == ByteOrder::Little ? 0xBA98u : 0xFEDCu);
        QCOMPARE(read(9), 0u);
    }
}

void tst_ExifValues::rational_data()
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<bool>("isSigned");
    QTest::addColumn<std::uint32_t>("numerator");
    QTest::addColumn<std::uint32_t>("denominator");
    QTest::addColumn<double>("expected");

    constexpr std::uint32_t all = 0xFFFFFFFF; // -1 where it is signed
    constexpr std::uint32_t least = 0x80000000;
    for (const ByteOrder order : byteOrders) {
        const auto row = [order](const char *name, bool isSigned, std::uint32_t numerator,
                                 std::uint32_t denominator, double expected) {
            QTest::addRow("%s, %s", nameOf(order), name)
                << order << isSigned << numerator << denominator << expected;
        };
        row("one half", false, 1, 2, 0.5);
        row("zero", false, 0, 7, 0);
        row("greatest", false, all, 1, 4294967295.0);
        row("least", false, 1, all, 1 / 4294967295.0);
        row("over zero", false, 5, 0, 0);
        row("zero over zero", false, 0, 0, 0);
        row("signed, one half", true, 1, 2, 0.5);
        row("signed, below zero", true, all, 2, -0.5);
        row("signed, both below zero", true, all, all, 1);
        row("signed, least", true, least, all, 2147483648.0);
        row("signed, over zero", true, all, 0, 0);
    }
}

void tst_ExifValues::rational()
{
    QFETCH(ByteOrder, order);
    QFETCH(bool, isSigned);
    QFETCH(std::uint32_t, numerator);
    QFETCH(std::uint32_t, denominator);
    QFETCH(double, expected);

    const auto format = isSigned ? ExifBuilder::SignedRational : ExifBuilder::Rational;
    ExifBuilder builder(order);
    builder.rationals(ExifBuilder::First, 0x011A, {numerator, denominator}, format)
        .rationals(ExifBuilder::Exif, 0x9204, {numerator, denominator}, format)
        .rationals(ExifBuilder::Gps, 6, {numerator, denominator}, format);
    const EXIFInfo info = readSegment(builder.segment()).info;
    QVERIFY(info.XResolution == expected);
    QVERIFY(info.ExposureBiasValue == expected);
    QVERIFY(info.GPS.Altitude == expected);

    // How many follow plays no part.
    ExifBuilder many(order);
    many.raw(ExifBuilder::First, 0x011A, format, 0xFFFFFFFF, ExifBuilder::firstOffset + 2 + 12 + 4);
    const EXIFInfo counted
        = readSegment(many.segment() + numberBytes(order, numerator, 4) + numberBytes(order, denominator, 4))
              .info;
    QVERIFY(counted.XResolution == expected);
}

void tst_ExifValues::rationalOutside_data()
{
    outsideRows(8);
}

void tst_ExifValues::rationalOutside()
{
    QFETCH(ByteOrder, order);
    QFETCH(std::uint32_t, before);
    QFETCH(std::uint32_t, offset);

    for (const auto format : {ExifBuilder::Rational, ExifBuilder::SignedRational}) {
        EXIFInfo info;
        info.ExposureTime = 3;
        const auto read = [&](ExifBuilder::Directory directory, unsigned tag) {
            info.Flash = 0;
            const int result = parseSegment(info, pointing(order, directory, tag, format, 1, before, offset));
            return result == ParseSuccess && info.Flash == 1;
        };
        QVERIFY(read(ExifBuilder::Exif, 0x829A));
        QCOMPARE(info.ExposureTime, 0.0);
        info.GPS.Altitude = 3;
        QVERIFY(read(ExifBuilder::Gps, 6));
        QCOMPARE(info.GPS.Altitude, unset);
        info.ISOSpeedRatings = 0;
        QVERIFY(read(ExifBuilder::Exif, 0xA215));
        QCOMPARE(int(info.ISOSpeedRatings), 0);
    }

    // The last eight bytes are a number.
    const EXIFInfo last
        = readSegment(pointing(order, ExifBuilder::Exif, 0x829A, ExifBuilder::Rational, 1, 8, 0)).info;
    QCOMPARE(last.ExposureTime, 1.0);
}

void tst_ExifValues::someRationalsOutside()
{
    QFETCH(ByteOrder, order);

    // Two of the three lie in the segment: that is no coordinate.
    const EXIFInfo gps
        = readSegment(pointing(order, ExifBuilder::Gps, 2, ExifBuilder::Rational, 3, 23, 0)).info;
    QCOMPARE(gps.GPS.LatitudeParts, (EXIFInfo::GpsGroup::Triple{1, 1, unset}));
    QCOMPARE(gps.GPS.Latitude, unset);
    const EXIFInfo whole
        = readSegment(pointing(order, ExifBuilder::Gps, 2, ExifBuilder::Rational, 3, 24, 0)).info;
    QCOMPARE(whole.GPS.Latitude, 1 + 1 / 60.0 + 1 / 3600.0);

    const EXIFInfo lens
        = readSegment(pointing(order, ExifBuilder::Exif, 0xA432, ExifBuilder::Rational, 4, 31, 0)).info;
    QCOMPARE(lens.Lens.FNumberAtFocalLengthMin, 1.0);
    QCOMPARE(lens.Lens.FNumberAtFocalLengthMax, 0.0);
}

void tst_ExifValues::subjectArea()
{
    QFETCH(ByteOrder, order);

    const auto read = [order](const std::vector<std::uint16_t> &numbers) {
        ExifBuilder builder(order);
        builder.shorts(ExifBuilder::Exif, 0x9214, numbers);
        return readSegment(builder.segment()).info.SubjectArea;
    };
    using Numbers = std::vector<std::uint16_t>;
    QCOMPARE(read({7}), Numbers()); // not an area, not even a point
    for (const Numbers &numbers : {Numbers{1, 0xFEDC}, Numbers{1, 2, 3}, Numbers{1, 2, 3, 0xFEDC}})
        QCOMPARE(read(numbers), numbers);
    QCOMPARE(read(Numbers(30000, 0x1234)), Numbers(30000, 0x1234));
}

void tst_ExifValues::subjectAreaOutside_data()
{
    outsideRows(8);
}

void tst_ExifValues::subjectAreaOutside()
{
    QFETCH(ByteOrder, order);
    QFETCH(std::uint32_t, before);
    QFETCH(std::uint32_t, offset);

    EXIFInfo info;
    info.SubjectArea = {1, 2};
    QCOMPARE(
        parseSegment(info, pointing(order, ExifBuilder::Exif, 0x9214, ExifBuilder::Short, 4, before, offset)),
        int(ParseSuccess));
    QVERIFY(info.SubjectArea.empty());
    QCOMPARE(int(info.Flash), 1);
    const EXIFInfo last
        = readSegment(pointing(order, ExifBuilder::Exif, 0x9214, ExifBuilder::Short, 4, 8, 0)).info;
    QCOMPARE(last.SubjectArea, std::vector<std::uint16_t>(4, 0x7878));
}

QTEST_APPLESS_MAIN(tst_ExifValues)
#include "tst_exif_values.moc"
