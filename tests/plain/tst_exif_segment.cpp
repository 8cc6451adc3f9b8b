// The EXIF reader at the head of a segment: header, byte order, the first directory.

#include "exif_orders.h"

using namespace TinyEXIF;

class tst_ExifSegment : public QObject
{
    Q_OBJECT

private slots:
    void noExifSegment();
    void tooShort_data();
    void tooShort();
    void byteOrder_data();
    void byteOrder();
    void magic_data();
    void magic();
    void firstOffset_data();
    void firstOffset();
    void firstDirectoryFits_data();
    void firstDirectoryFits();
    void linkIsNotFollowed_data();
    void linkIsNotFollowed();
    void keepsWhatIsNotNamed_data();
    void keepsWhatIsNotNamed();
};

void tst_ExifSegment::noExifSegment()
{
    EXIFInfo info;
    QCOMPARE(info.parseFromEXIFSegment(nullptr, 0), int(ParseAbsentData));
    QCOMPARE(info.parseFromEXIFSegment(nullptr, 100), int(ParseAbsentData));
    const std::string good = datedSegment(ByteOrder::Little);
    for (unsigned length = 0; length < 6; ++length)
        QCOMPARE(parseSegment(info, good.substr(0, length)), int(ParseAbsentData));
    for (unsigned i = 0; i < 6; ++i) {
        std::string other = good;
        other[i] = '?';
        QCOMPARE(parseSegment(info, other), int(ParseAbsentData));
    }
    QVERIFY(info.DateTimeOriginal.empty());
}

void tst_ExifSegment::tooShort_data()
{
    bothOrders();
}

void tst_ExifSegment::tooShort()
{
    QFETCH(ByteOrder, order);

    for (unsigned length = 6; length < 14; ++length)
        QCOMPARE(readSegment(datedSegment(order).substr(0, length)).result, int(ParseCorruptData));
    // Too short comes before an order that is not known.
    QCOMPARE(readSegment(std::string("Exif\0\0??", 8)).result, int(ParseCorruptData));
}

void tst_ExifSegment::byteOrder_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::addColumn<int>("expected");

    QTest::newRow("little-endian") << QByteArray("II") << int(ParseSuccess);
    for (const char *mark : {"MI", "IM", "ii", "mm", "I?", "?I", "M?", "?M", "??"})
        QTest::newRow(mark) << QByteArray(mark) << int(ParseUnknownByteAlign);
    // The magic that follows is little-endian.
    QTest::newRow("big-endian, with numbers that are not") << QByteArray("MM") << int(ParseCorruptData);
}

void tst_ExifSegment::byteOrder()
{
    QFETCH(QByteArray, mark);
    QFETCH(int, expected);

    std::string segment = datedSegment(ByteOrder::Little);
    segment.replace(6, 2, mark.toStdString());
    QCOMPARE(readSegment(segment).result, expected);
}

void tst_ExifSegment::magic_data()
{
    bothOrders();
}

void tst_ExifSegment::magic()
{
    QFETCH(ByteOrder, order);

    QCOMPARE(readSegment(datedSegment(order)).result, int(ParseSuccess));
    for (const unsigned magic : {0u, 41u, 43u, 0x2A00u, 0x2A2Au})
        QCOMPARE(readSegment(withNumber(datedSegment(order), order, 2, magic, 2)).result,
                 int(ParseCorruptData));
}

void tst_ExifSegment::firstOffset_data()
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<qint64>("offset"); // below 0: from the end of the segment
    QTest::addColumn<int>("expected");

    for (const ByteOrder order : byteOrders) {
        const auto row = [order](qint64 offset, ParseResult expected) {
            QTest::addRow("%s, %lld", nameOf(order), static_cast<long long>(offset))
                << order << offset << int(expected);
        };
        // The header, a count of 0 and the link make twelve bytes.
        row(-12, ParseSuccess);
        for (const int offset : {-11, -9, -8, -7, -6, -5, -4, -1})
            row(offset, ParseCorruptData);
        for (const qint64 offset : {0x10000LL, 0x7FFFFFFFLL, 0x80000000LL, 0xFFFFFFF4LL, 0xFFFFFFF8LL,
                                    0xFFFFFFFALL, 0xFFFFFFFCLL, 0xFFFFFFFFLL})
            row(offset, ParseCorruptData);
    }
}

void tst_ExifSegment::firstOffset()
{
    QFETCH(ByteOrder, order);
    QFETCH(qint64, offset);
    QFETCH(int, expected);

    std::string segment = ExifBuilder(order).segment() + std::string(40, '\0');
    if (offset < 0)
        offset += qint64(segment.size());
    segment = withNumber(segment, order, 4, std::uint32_t(offset), 4);
    QCOMPARE(readSegment(segment).result, expected);
}

void tst_ExifSegment::firstDirectoryFits_data()
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<int>("entries");

    for (const ByteOrder order : byteOrders) {
        for (const int entries : {0, 1, 2, 5000})
            QTest::addRow("%s, %d entries", nameOf(order), entries) << order << entries;
    }
}

void tst_ExifSegment::firstDirectoryFits()
{
    QFETCH(ByteOrder, order);
    QFETCH(int, entries);

    ExifBuilder builder(order);
    for (int i = 0; i < entries; ++i)
        builder.shorts(ExifBuilder::First, 0x0112, {6});
    const std::string segment = builder.segment();

    const ReadExif whole = readSegment(segment);
    QCOMPARE(whole.result, int(ParseSuccess));
    QCOMPARE(int(whole.info.Orientation), entries > 0 ? 6 : 0);

    // The link behind the entries is not used, but has to be there.
    for (const std::string &cut :
         {segment.substr(0, segment.size() - 1), segment.substr(0, segment.size() - 4),
          withNumber(segment, order, 8, std::uint32_t(entries + 1), 2),
          withNumber(segment, order, 8, 65535, 2)}) {
        const ReadExif read = readSegment(cut);
        QCOMPARE(read.result, int(ParseCorruptData));
        QCOMPARE(int(read.info.Orientation), 0);
    }
}

void tst_ExifSegment::linkIsNotFollowed_data()
{
    bothOrders();
}

void tst_ExifSegment::linkIsNotFollowed()
{
    QFETCH(ByteOrder, order);

    ExifBuilder builder(order);
    builder.shorts(ExifBuilder::First, 0x0112, {6});
    const std::uint32_t link = ExifBuilder::firstOffset + 2 + 12;
    std::string segment = builder.segment();
    const auto next = std::uint32_t(segment.size() - ExifBuilder::headerLength);
    segment += ExifBuilder(order).shorts(ExifBuilder::First, 0x0112, {8}).segment().substr(14);
    for (const std::uint32_t to : {next, ExifBuilder::firstOffset, link, 0xFFFFFFFFu}) {
        const ReadExif read = readSegment(withNumber(segment, order, link, to, 4));
        QCOMPARE(read.result, int(ParseSuccess));
        QCOMPARE(int(read.info.Orientation), 6);
    }
}

void tst_ExifSegment::keepsWhatIsNotNamed_data()
{
    bothOrders();
}

void tst_ExifSegment::keepsWhatIsNotNamed()
{
    QFETCH(ByteOrder, order);

    EXIFInfo info;
    info.Make = "of a segment before";
    info.DateTimeOriginal = "of a segment before";
    QCOMPARE(parseSegment(info, datedSegment(order)), int(ParseSuccess));
    QCOMPARE(info.Make, std::string("of a segment before"));
    QCOMPARE(info.DateTimeOriginal, date);
    QCOMPARE(info.Fields, 0u); // told by the file, not by the segment
}

QTEST_APPLESS_MAIN(tst_ExifSegment)
#include "tst_exif_segment.moc"
