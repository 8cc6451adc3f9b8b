// What the EXIF reader takes for data that is made to cost much: no more memory than the data has, and every
// value is read once.

#include "allocations.h"
#include "exif_orders.h"

using namespace TinyEXIF;

class tst_ExifLimits : public QObject
{
    Q_OBJECT

private slots:
    void largestCounts_data() { bothOrders(); }
    void largestCounts();
    void manyEntriesOneText_data() { bothOrders(); }
    void manyEntriesOneText();
    void manySegments_data() { bothOrders(); }
    void manySegments();
};

void tst_ExifLimits::largestCounts()
{
    QFETCH(ByteOrder, order);

    // Counts whose size, or whose end, wraps around in 32 bits, at offsets that are in range.
    for (const std::uint32_t count : {0x7FFFFFFFu, 0x80000000u, 0x80000004u, 0xFFFFFFF0u, 0xFFFFFFFFu}) {
        for (const std::uint32_t offset : {0u, 8u, 20u}) {
            ExifBuilder builder(order);
            builder.raw(ExifBuilder::Exif, dateTag, ExifBuilder::Ascii, count, offset)
                .raw(ExifBuilder::Exif, 0x9214, ExifBuilder::Short, count, offset)
                .shorts(ExifBuilder::Exif, 0x9209, {1});
            const std::string segment = builder.segment();
            allocations.clear();
            const ReadExif read = readSegment(segment);
            QVERIFY(allocations.largest <= segment.size());
            QVERIFY(read.info.DateTimeOriginal.empty());
            QVERIFY(read.info.SubjectArea.empty());
            QCOMPARE(int(read.info.Flash), 1);
        }
    }
}

void tst_ExifLimits::manyEntriesOneText()
{
    QFETCH(ByteOrder, order);

    // Half of the segment is entries; each refers to the other half.
    constexpr int entries = 1200;
    constexpr std::uint32_t size = 32000;
    ExifBuilder builder(order);
    for (const ExifBuilder::Directory directory : {ExifBuilder::First, ExifBuilder::Exif}) {
        for (int i = 0; i < entries; ++i) {
            const std::uint32_t values = ExifBuilder::firstOffset + 2 * 6 + (2 * entries + 1) * 12;
            if (i % 2 == 0)
                builder.raw(directory, dateTag, ExifBuilder::Ascii, size, values);
            else
                builder.raw(directory, 0x9214, ExifBuilder::Short, size / 2, values);
        }
    }
    const std::string segment = builder.segment() + std::string(size, 'x');
    QVERIFY(segment.size() < 65534);
    EXIFInfo info;
    allocations.clear();
    QCOMPARE(info.parseFromEXIFSegment(reinterpret_cast<const std::uint8_t *>(segment.data()),
                                       unsigned(segment.size())),
             int(ParseSuccess));
    // Read once, not once for each.
    QVERIFY(allocations.total < 2 * segment.size());
    QCOMPARE(info.DateTimeOriginal, std::string(size, 'x'));
    QCOMPARE(info.SubjectArea, std::vector<std::uint16_t>(size / 2, 0x7878));
}

void tst_ExifLimits::manySegments()
{
    QFETCH(ByteOrder, order);

    // Texts that become longer from segment to segment: what held the last one is not doubled for the next.
    std::string segments;
    std::size_t largest = 0;
    for (int size = 1000; size < 65000; size += 1000) {
        ExifBuilder builder(order);
        builder.text(ExifBuilder::Exif, dateTag, std::string(std::size_t(size), 'x'));
        builder.shorts(ExifBuilder::Exif, 0x9214, {1, 2, 3});
        segments += app1(builder.segment());
        largest = builder.segment().size();
    }
    std::istringstream file(jpegFile(segments));
    EXIFInfo info;
    allocations.clear();
    QCOMPARE(info.parseFrom(file), int(ParseSuccess));
    QVERIFY(allocations.largest <= largest);
    QCOMPARE(info.DateTimeOriginal.size(), std::size_t(64000));
}

QTEST_APPLESS_MAIN(tst_ExifLimits)
#include "tst_exif_limits.moc"
