// The EXIF reader's way through a JPEG file.

#include "exif_orders.h"

#include <QTemporaryDir>

#include <fstream>

using namespace TinyEXIF;

Q_DECLARE_METATYPE(std::string)

namespace {

std::string bytes(std::initializer_list<int> values)
{
    std::string result;
    for (const int value : values)
        result += char(value);
    return result;
}

const std::string start = bytes({0xFF, 0xD8});
const std::string end = bytes({0xFF, 0xD9});
const std::string dated = app1(datedSegment(ByteOrder::Little));
const std::string otherDate = "1999:12:31 23:59:59";
const std::string foreign = app1("no EXIF data");

/// With bytes "IM" in place of the order, and with a first directory that ends outside.
const std::string unknownOrder = [] {
    std::string segment = datedSegment(ByteOrder::Little);
    segment[7] = 'M';
    return app1(segment);
}();
const std::string corrupt = app1(ExifBuilder(ByteOrder::Little).segment().substr(0, 19));

} // namespace

class tst_ExifFile : public QObject
{
    Q_OBJECT

private slots:
    void result_data();
    void result();
    void faultAfterDate_data();
    void faultAfterDate();
    void dateIsFound_data();
    void dateIsFound();
    void bothOrdersGiveTheSame();
    void laterSegmentOverwrites();
    void laterSegmentKeepsWhatItDoesNotName();
    void laterCorruptSegmentOverwritesWithWhatItHas();
    void clearsFirst();
    void constructorTellsByFields();
};

void tst_ExifFile::result_data()
{
    QTest::addColumn<std::string>("file");
    QTest::addColumn<int>("expected");

    QTest::newRow("empty") << std::string() << int(ParseInvalidJpeg);
    QTest::newRow("one byte") << bytes({0xFF}) << int(ParseInvalidJpeg);
    QTest::newRow("another first byte") << bytes({0xFE, 0xD8}) + dated << int(ParseInvalidJpeg);
    QTest::newRow("another second byte") << bytes({0xFF, 0xD9}) + dated << int(ParseInvalidJpeg);
    QTest::newRow("another kind of picture") << std::string("\x89PNG\r\n\x1a\n") << int(ParseInvalidJpeg);

    QTest::newRow("start alone") << start << int(ParseAbsentData);
    QTest::newRow("half a marker") << start + bytes({0xFF}) << int(ParseAbsentData);
    QTest::newRow("no marker where one has to be") << start + bytes({0xFE, 0xE1}) << int(ParseAbsentData);
    QTest::newRow("fill bytes to the end") << start + std::string(5, '\xFF') << int(ParseAbsentData);
    QTest::newRow("fill bytes to the end, an even number")
        << start + std::string(6, '\xFF') << int(ParseAbsentData);
    QTest::newRow("end of image before the data") << start + end + dated << int(ParseAbsentData);
    QTest::newRow("start of scan before the data")
        << start + bytes({0xFF, 0xDA}) + dated << int(ParseAbsentData);
    QTest::newRow("without EXIF data") << jpegFile(jpegSegment(0xE0, "JFIF")) << int(ParseAbsentData);
    QTest::newRow("other data in APP1") << jpegFile(foreign) << int(ParseAbsentData);
    QTest::newRow("APP1 of one byte") << jpegFile(app1("E")) << int(ParseAbsentData);

    for (const int marker : {0xE1, 0xE0, 0xFE, 0xDB, 0xC0, 0x02, 0xCF}) {
        const std::string head = start + bytes({0xFF, marker});
        QTest::addRow("%02X without length", marker) << head << int(ParseInvalidJpeg);
        QTest::addRow("%02X with half a length", marker) << head + bytes({0}) << int(ParseInvalidJpeg);
        for (const int length : {0, 1, 2}) {
            QTest::addRow("%02X with length %d", marker, length)
                << head + bytes({0, length}) + dated << int(ParseInvalidJpeg);
        }
    }
    QTest::newRow("APP1 cut off") << start + dated.substr(0, dated.size() - 1) << int(ParseInvalidJpeg);
    QTest::newRow("APP1 without content") << start + dated.substr(0, 4) << int(ParseInvalidJpeg);
    QTest::newRow("another segment cut off")
        << start + jpegSegment(0xE0, "JFIF").substr(0, 6) << int(ParseInvalidJpeg);

    QTest::newRow("unknown byte order") << jpegFile(unknownOrder) << int(ParseUnknownByteAlign);
    QTest::newRow("unknown byte order: nothing behind it")
        << jpegFile(unknownOrder + dated) << int(ParseUnknownByteAlign);
    QTest::newRow("corrupt") << jpegFile(corrupt) << int(ParseCorruptData);
    QTest::newRow("corrupt: nothing behind it") << jpegFile(corrupt + dated) << int(ParseCorruptData);
    QTest::newRow("corrupt behind other data") << jpegFile(foreign + corrupt) << int(ParseCorruptData);
}

void tst_ExifFile::result()
{
    QFETCH(std::string, file);
    QFETCH(int, expected);

    const ReadExif read = readFile(file);
    QCOMPARE(read.result, expected);
    QCOMPARE(read.info.Fields, 0u);
    QVERIFY(read.info.DateTimeOriginal.empty());
}

void tst_ExifFile::faultAfterDate_data()
{
    QTest::addColumn<std::string>("rest");

    QTest::newRow("nothing") << std::string();
    QTest::newRow("half a marker") << bytes({0xFF});
    QTest::newRow("no marker") << bytes({0x12, 0x34});
    QTest::newRow("fill bytes to the end") << std::string(5, '\xFF');
    QTest::newRow("end of image") << end;
    QTest::newRow("start of scan") << bytes({0xFF, 0xDA});
    QTest::newRow("no length") << bytes({0xFF, 0xE0});
    QTest::newRow("a length below 3") << bytes({0xFF, 0xE0, 0, 2});
    QTest::newRow("APP1 cut off") << dated.substr(0, dated.size() - 1);
    QTest::newRow("another segment cut off") << jpegSegment(0xE0, "JFIF").substr(0, 6);
    QTest::newRow("other data in APP1") << foreign;
    QTest::newRow("unknown byte order") << unknownOrder;
    QTest::newRow("corrupt data") << corrupt;
}

void tst_ExifFile::faultAfterDate()
{
    QFETCH(std::string, rest);

    const ReadExif read = readFile(start + dated + rest);
    QCOMPARE(read.result, int(ParseSuccess));
    QCOMPARE(read.info.Fields, 1u);
    QCOMPARE(read.info.DateTimeOriginal, date);
}

void tst_ExifFile::dateIsFound_data()
{
    QTest::addColumn<std::string>("before");

    QTest::newRow("nothing") << std::string();
    QTest::newRow("one fill byte") << bytes({0xFF});
    QTest::newRow("many fill bytes") << std::string(1001, '\xFF');
    QTest::newRow("other data in APP1") << foreign;
    QTest::newRow("a segment of one byte") << jpegSegment(0xE0, "J");
    QTest::newRow("a segment as long as can be") << jpegSegment(0xFE, std::string(65533, 'x'));
    QTest::newRow("APP1 as long as can be") << app1(std::string(65533, 'x'));
    QTest::newRow("fill bytes between segments") << jpegSegment(0xE0, "JFIF") + std::string(4, '\xFF');
    for (const int marker : {0x00, 0x01, 0xD0, 0xD1, 0xD2, 0xD3, 0xD4, 0xD5, 0xD6, 0xD7, 0xD8})
        QTest::addRow("%02X, which has no length", marker) << bytes({0xFF, marker});
    for (const int marker : {0x02, 0xBF, 0xC0, 0xC4, 0xCF, 0xDB, 0xDD, 0xE0, 0xE2, 0xEF, 0xFE}) {
        // What is skipped is not looked into.
        QTest::addRow("%02X, which has one", marker)
            << jpegSegment(unsigned(marker), end + app1(datedSegment(ByteOrder::Big, otherDate)));
    }
}

void tst_ExifFile::dateIsFound()
{
    QFETCH(std::string, before);

    const ReadExif read = readFile(jpegFile(before + dated));
    QCOMPARE(read.result, int(ParseSuccess));
    QCOMPARE(read.info.Fields, 1u);
    QCOMPARE(read.info.DateTimeOriginal, date);
}

void tst_ExifFile::bothOrdersGiveTheSame()
{
    for (const ByteOrder order : byteOrders)
        QCOMPARE(readFile(jpegFile(app1(datedSegment(order)))).info.DateTimeOriginal, date);
}

void tst_ExifFile::laterSegmentOverwrites()
{
    for (const ByteOrder order : byteOrders) {
        const std::string later = app1(datedSegment(order, otherDate));
        const ReadExif read = readFile(jpegFile(dated + foreign + later));
        QCOMPARE(read.result, int(ParseSuccess));
        QCOMPARE(read.info.Fields, 1u);
        QCOMPARE(read.info.DateTimeOriginal, otherDate);
    }
}

void tst_ExifFile::laterSegmentKeepsWhatItDoesNotName()
{
    for (const ByteOrder order : byteOrders) {
        const std::string later = ExifBuilder(order).shorts(ExifBuilder::First, 0x0112, {6}).segment();
        const ReadExif read = readFile(jpegFile(dated + app1(later)));
        QCOMPARE(read.info.DateTimeOriginal, date);
        QCOMPARE(read.info.Orientation, std::uint16_t(6));
    }
}

void tst_ExifFile::laterCorruptSegmentOverwritesWithWhatItHas()
{
    for (const ByteOrder order : byteOrders) {
        ExifBuilder later(order);
        later.text(ExifBuilder::First, dateTag, otherDate);
        const std::uint32_t lastBytes = later.valuesOffset() + std::uint32_t(otherDate.size()) - 4 + 12;
        later.longNumber(ExifBuilder::First, 0x8769, lastBytes);
        const ReadExif read = readFile(jpegFile(dated + app1(later.segment())));
        QCOMPARE(read.result, int(ParseSuccess));
        QCOMPARE(read.info.DateTimeOriginal, otherDate);
        QCOMPARE(readSegment(later.segment()).result, int(ParseCorruptData));
    }
}

void tst_ExifFile::clearsFirst()
{
    EXIFInfo info;
    std::istringstream good(jpegFile(dated));
    QCOMPARE(info.parseFrom(good), int(ParseSuccess));
    QCOMPARE(info.DateTimeOriginal, date);

    std::istringstream bad("nothing");
    QCOMPARE(info.parseFrom(bad), int(ParseInvalidJpeg));
    QCOMPARE(info.Fields, 0u);
    QVERIFY(info.DateTimeOriginal.empty());
}

void tst_ExifFile::constructorTellsByFields()
{
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("picture.jpg")).toStdString();
    std::ofstream(path, std::ios::binary) << jpegFile(foreign + dated);
    std::ifstream stream(path, std::ios::binary);
    const EXIFInfo info(stream);
    QCOMPARE(info.Fields, 1u);
    QCOMPARE(info.DateTimeOriginal, date);

    std::ofstream(path, std::ios::binary) << jpegFile(foreign);
    std::ifstream without(path, std::ios::binary);
    QCOMPARE(EXIFInfo(without).Fields, 0u);
}

QTEST_APPLESS_MAIN(tst_ExifFile)
#include "tst_exif_file.moc"
