// What the EXIF reader takes for data that is made to cost much: no more memory than the data has, every
// value is read once, and there is an end to reading.

#include "allocations.h"
#include "exif_orders.h"

using namespace TinyEXIF;

namespace {

constexpr unsigned mostReads = 1'000'000;
constexpr unsigned bytesOfOneRead = 64;
const std::string dated = app1(datedSegment(ByteOrder::Little));

/// Bytes in memory, and how often they were read or passed over.
class CountedStream : public EXIFStream
{
public:
    explicit CountedStream(const std::string &bytes)
        : m_bytes(bytes)
    {
    }

    bool IsValid() const override { return true; }
    const std::uint8_t *GetBuffer(unsigned n) override
    {
        m_bytesRead += n;
        const std::size_t begin = m_position;
        return SkipBuffer(n) ? reinterpret_cast<const std::uint8_t *>(m_bytes.data()) + begin : nullptr;
    }
    bool SkipBuffer(unsigned n) override
    {
        ++m_calls;
        if (m_bytes.size() - m_position < n)
            return false;
        m_position += n;
        return true;
    }

    unsigned calls() const { return m_calls; }
    std::size_t bytesRead() const { return m_bytesRead; }

private:
    const std::string &m_bytes;
    std::size_t m_position = 0;
    unsigned m_calls = 0;
    std::size_t m_bytesRead = 0;
};

/// What is left for what stands before the date. Start, marker and length of the date's segment are one read
/// each.
constexpr unsigned leftBefore(std::size_t segment)
{
    return mostReads - 3 - (1 + unsigned(segment) / bytesOfOneRead);
}

std::string times(unsigned count, const std::string &what)
{
    std::string result;
    result.reserve(count * what.size());
    for (unsigned i = 0; i < count; ++i)
        result += what;
    return result;
}

} // namespace

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
    void endOfReading_data();
    void endOfReading();
    void endAfterTheDate();
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

void tst_ExifLimits::endOfReading_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<bool>("found");

    const auto row = [](const char *name, const std::string &before, bool found) {
        QTest::newRow(name) << QByteArray::fromStdString(before) << found;
    };
    const unsigned left = leftBefore(dated.size() - 4);
    row("as many fill bytes as are read", std::string(left, '\xFF'), true);
    row("one more", std::string(left + 1, '\xFF'), false);
    row("many more", std::string(std::size_t(4) * left, '\xFF'), false);
    const std::string markers = "\xFF\x01"; // without a length
    row("as many markers as are read", times(left, markers), true);
    row("one more marker", times(left + 1, markers), false);
    const std::string tiny = jpegSegment(0xFE, "x"); // marker, length, content
    row("as many segments as are read", times(left / 3, tiny), true);
    row("one more segment", times(left / 3 + 1, tiny), false);
    const std::string large = app1(std::string(65'533, 'x'));
    const unsigned largeOnes = left / (3 + 65'533 / bytesOfOneRead);
    row("as much of APP1 as is read", times(largeOnes, large), true);
    row("one APP1 more", times(largeOnes + 1, large), false);
}

void tst_ExifLimits::endOfReading()
{
    QFETCH(QByteArray, before);
    QFETCH(bool, found);

    const std::string file = jpegFile(before.toStdString() + dated);
    CountedStream stream(file);
    EXIFInfo info;
    QCOMPARE(info.parseFrom(stream) == ParseSuccess, found);
    QCOMPARE(info.Fields, found ? 1u : 0u);
    QCOMPARE(info.DateTimeOriginal, found ? date : std::string());
    QVERIFY(stream.calls() <= mostReads);
    QVERIFY(stream.bytesRead() <= std::size_t(mostReads) * bytesOfOneRead);
}

void tst_ExifLimits::endAfterTheDate()
{
    const std::string file = jpegFile(dated + std::string(mostReads, '\xFF'));
    EXIFInfo info;
    for (int i = 0; i < 2; ++i) { // each file has all of it
        CountedStream stream(file);
        QCOMPARE(info.parseFrom(stream), int(ParseSuccess));
        QCOMPARE(info.DateTimeOriginal, date);
        QVERIFY(stream.calls() <= mostReads);
    }
}

QTEST_APPLESS_MAIN(tst_ExifLimits)
#include "tst_exif_limits.moc"
