// What a JPEG file says beside its picture, in sane files and in others.

#include "jpeg_files.h"
#include "jpeg_readers.h"

#include <jpeg_decoder.h>

#include <QBuffer>
#include <QColorSpace>
#include <QTest>

using namespace Qt::StringLiterals;
using lindenreed::device::JpegSegments;

class tst_JpegSegments : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(lindenreed::device::qtJpegPlugin()); }
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }
    void saneFiles_data();
    void saneFiles();
    void damagedLength_data();
    void damagedLength();
    void limits_data();
    void limits();
    void aMegabyteOfThem();
};

static QByteArray segment(int marker, const QByteArray &contents)
{
    const auto length = contents.size() + 2;
    return QByteArray(1, '\xff') + char(marker) + char(length >> 8) + char(length & 0xff) + contents;
}

/// Such a file, `segments` behind its beginning.
static QByteArray with(const QByteArray &segments, const JpegKind &kind = {})
{
    return jpegFile({40, 30}, kind).insert(2, segments);
}

static QByteArray profile()
{
    return QByteArray("ICC_PROFILE\0\1\1", 14) + QColorSpace(QColorSpace::AdobeRgb).iccProfile();
}

/// Turns the picture by a quarter.
static QByteArray exif()
{
    return QByteArray("Exif\0\0MM\0*\0\0\0\10\0\1\1\22\0\3\0\0\0\1\0\6\0\0\0\0\0\0", 32);
}

void tst_JpegSegments::saneFiles_data()
{
    QTest::addColumn<QByteArray>("segments");

    const QByteArray comment = segment(JPEG_COM, "Lake: blue");
    const QByteArray both = segment(JPEG_APP0 + 1, exif()) + segment(JPEG_APP0 + 2, profile());
    QTest::newRow("none") << QByteArray();
    QTest::newRow("one of each") << comment + both;
    QTest::newRow("the other way round") << both + comment;
    QTest::newRow("an empty one") << segment(JPEG_COM, {}) + both;
    QTest::newRow("several") << comment + segment(JPEG_COM, "Hill: green") + both;
    // Longer than what is read at once.
    QTest::newRow("the longest") << segment(JPEG_COM, QByteArray(65'533, 'x')) + both
            + segment(JPEG_COM, "Hill: " + QByteArray(65'000, 'y'));
    QTest::newRow("a depth map of 3 MiB")
        << both + segment(JPEG_APP0 + 1, "more " + QByteArray(65'000, 'm')).repeated(48) + comment;
    QTest::newRow("others between") << segment(JPEG_APP0 + 11, "z") + comment + segment(JPEG_APP0 + 13, "z")
            + both;
}

static void sameAsQts(const QByteArray &file)
{
    JpegReader own(JpegReader::Whose::Device, file);
    JpegReader qts(JpegReader::Whose::Qt, file);
    for (const auto option : {QImageIOHandler::ImageTransformation, QImageIOHandler::Description})
        QCOMPARE(own->option(option), qts->option(option));
    const QImage picture = own.picture();
    const QImage expected = qts.picture();
    QVERIFY(!expected.isNull());
    QCOMPARE(picture, expected);
    QCOMPARE(picture.textKeys(), expected.textKeys());
    for (const QString &key : expected.textKeys())
        QCOMPARE(picture.text(key), expected.text(key));
    QCOMPARE(picture.colorSpace(), expected.colorSpace());
}

void tst_JpegSegments::saneFiles()
{
    QFETCH(QByteArray, segments);

    sameAsQts(with(segments));
    sameAsQts(with(segments, {.progressive = true}));
}

void tst_JpegSegments::damagedLength_data()
{
    QTest::addColumn<int>("length");

    for (const int length : {0, 1, 2})
        QTest::addRow("%d", length) << length;
}

void tst_JpegSegments::damagedLength()
{
    QFETCH(int, length);

    QByteArray bytes = segment(JPEG_COM, {});
    bytes.back() = char(length);
    sameAsQts(with(bytes + segment(JPEG_COM, "Lake: blue")));
}

void tst_JpegSegments::limits_data()
{
    QTest::addColumn<QByteArray>("segment");
    QTest::addColumn<int>("kept");

    QTest::newRow("empty comments") << segment(JPEG_COM, {}) << 1000;
    QTest::newRow("small EXIF data") << segment(JPEG_APP0 + 1, "x") << 1000;
    QTest::newRow("colours") << segment(JPEG_APP0 + 2, "x") << 1000;
    QTest::newRow("long comments") << segment(JPEG_COM, QByteArray(65'000, 'x')) << 64;
}

void tst_JpegSegments::limits()
{
    QFETCH(QByteArray, segment);
    QFETCH(int, kept);

    for (const int count : {kept, kept + 1}) {
        QBuffer device;
        device.setData(with(segment.repeated(count)));
        QVERIFY(device.open(QIODevice::ReadOnly));
        lindenreed::device::JpegDecoder decoder(device);
        QVERIFY(decoder.readHeader());
        int found = 0;
        for (const auto *each = decoder.info().marker_list; each; each = each->next)
            ++found;
        QCOMPARE(found, kept);
        QCOMPARE(decoder.size(), QSize(40, 30));
    }
}

void tst_JpegSegments::aMegabyteOfThem()
{
    QByteArray segments;
    for (int i = 0; i < 100'000; ++i)
        segments += segment(JPEG_COM, QByteArray::number(i) + ": x");
    const QImage picture = ownPicture(with(segments));
    QCOMPARE(picture, qtPicture(with({})));
    QCOMPARE(picture.textKeys().size(), 1000);
}

QTEST_GUILESS_MAIN(tst_JpegSegments)
#include "tst_jpeg_segments.moc"
