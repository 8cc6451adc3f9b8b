// What the device's reader of JPEG files makes of every kind of file, beside Qt's own, where no panel is
// grey.

#include "jpeg_files.h"
#include "jpeg_readers.h"
#include "slow_reduction.h"

#include <QColorSpace>
#include <QTest>

using namespace Qt::StringLiterals;
using Whose = JpegReader::Whose;

Q_DECLARE_METATYPE(JpegKind)

class tst_JpegReading : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(lindenreed::device::qtJpegPlugin()); }
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }
    void whole_data() { kinds(); }
    void whole();
    void clipped_data() { kinds(); }
    void clipped();
    void reduced_data() { kinds(); }
    void reduced();
    void reducedInOneDirection();
    void enlarged();
    void clippedAndReduced();
    void lowQuality();
    void turned_data();
    void turned();
    void brokenExif_data();
    void brokenExif();
    void comments_data();
    void comments();
    void colourProfile();
    void secondPicture();
    void isNoJpeg();

private:
    static void kinds()
    {
        QTest::addColumn<JpegKind>("kind");
        for (const NamedJpegKind &row : jpegKinds())
            QTest::newRow(row.name) << row.kind;
    }
};

void tst_JpegReading::whole()
{
    QFETCH(JpegKind, kind);

    for (const QSize size : {QSize(203, 157), QSize(1, 1), QSize(17, 8)}) {
        const QByteArray file = jpegFile(size, kind);
        JpegReader own(Whose::Device, file);
        JpegReader qts(Whose::Qt, file);
        QCOMPARE(own->option(QImageIOHandler::Size), qts->option(QImageIOHandler::Size));
        const auto format = own->option(QImageIOHandler::ImageFormat).value<QImage::Format>();
        QVERIFY(own->canRead() && own->format() == "jpeg");
        const QImage picture = own.picture();
        const QImage expected = qts.picture();
        QVERIFY(!expected.isNull());
        QCOMPARE(picture, expected);
        QCOMPARE(picture.format(), expected.format());
        QCOMPARE(format, expected.format());
        QCOMPARE(picture.dotsPerMeterX(), expected.dotsPerMeterX());
        QCOMPARE(picture.dotsPerMeterY(), expected.dotsPerMeterY());
        QVERIFY(!own->canRead());
    }
}

void tst_JpegReading::clipped()
{
    QFETCH(JpegKind, kind);

    const QByteArray file = jpegFile({203, 157}, kind);
    for (const QRect clip : {QRect(0, 0, 203, 157), QRect(30, 20, 50, 60), QRect(200, 150, 3, 7),
                             QRect(100, 100, 500, 500), QRect(0, 156, 203, 1)}) {
        const auto clips
            = [clip](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ClipRect, clip); };
        QCOMPARE(ownPicture(file, clips), qtPicture(file, clips));
        const auto scaledClips
            = [clip](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledClipRect, clip); };
        QCOMPARE(ownPicture(file, scaledClips), qtPicture(file, scaledClips));
        const auto both = [clip](QImageIOHandler &reader) {
            reader.setOption(QImageIOHandler::ClipRect, QRect(10, 10, 120, 120));
            reader.setOption(QImageIOHandler::ScaledClipRect, clip.translated(-5, -5));
        };
        QCOMPARE(ownPicture(file, both), qtPicture(file, both));
    }
    const auto outside = [](QImageIOHandler &reader) {
        reader.setOption(QImageIOHandler::ClipRect, QRect(300, 300, 10, 10));
    };
    QVERIFY(ownPicture(file, outside).isNull());
}

/// What libjpeg makes smaller while it decodes, block by block, differs from a picture reduced in one.
/// Colours it stretches in its own way, above all where they are sampled otherwise across than down.
static ReductionError mostErrorByBlocks(const JpegKind &kind)
{
    if (kind.colours == JCS_GRAYSCALE)
        return {4, 51};
    if (kind.quality < 50)
        return {25, 42};
    if (kind.across == kind.down * 4)
        return {32, 26};
    if (kind.across != kind.down)
        return {13, 38};
    return {16, 44.5};
}

void tst_JpegReading::reduced()
{
    QFETCH(JpegKind, kind);

    const QByteArray file = jpegFile({203, 157}, kind);
    const QImage whole = qtPicture(file);
    for (const QSize size : {QSize(202, 156), QSize(160, 124), QSize(101, 78), QSize(60, 46), QSize(20, 15),
                             QSize(7, 150), QSize(1, 1)}) {
        const auto scales
            = [size](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, size); };
        const QImage picture = ownPicture(file, scales);
        QCOMPARE(picture.size(), size);
        QCOMPARE(picture.format(), whole.format());
        const ReductionError error = reductionError(picture, whole);
        // Of grey, from 3/8 on libjpeg decodes the whole.
        const bool byBlocks = kind.colours == JCS_GRAYSCALE ? size.width() <= 76 && size.height() <= 58
                                                            : size.width() < 202 && size.height() < 150;
        const ReductionError most = byBlocks ? mostErrorByBlocks(kind) : ReductionError{0.6, 58};
        QVERIFY2(
            error.most < most.most && error.peakSignalToNoise > most.peakSignalToNoise,
            qPrintable(u"%1, %2 dB for %3"_s.arg(error.most).arg(error.peakSignalToNoise).arg(size.width())));
    }
}

void tst_JpegReading::reducedInOneDirection()
{
    const QByteArray file = jpegFile({403, 3});
    const auto scales
        = [](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, QSize(50, 3)); };
    QCOMPARE(ownPicture(file, scales).size(), QSize(50, 3));
}

void tst_JpegReading::enlarged()
{
    const QByteArray file = jpegFile({60, 40});
    for (const QSize size : {QSize(120, 80), QSize(120, 20), QSize(60, 41)}) {
        const auto scales
            = [size](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, size); };
        QCOMPARE(ownPicture(file, scales), qtPicture(file, scales));
    }
}

void tst_JpegReading::clippedAndReduced()
{
    const QByteArray file = jpegFile({400, 300});
    const QRect clip(100, 50, 200, 200);
    const auto asked = [clip](QImageIOHandler &reader) {
        reader.setOption(QImageIOHandler::ClipRect, clip);
        reader.setOption(QImageIOHandler::ScaledSize, QSize(100, 50));
    };
    QVERIFY(reductionError(ownPicture(file, asked), qtPicture(file).copy(clip)).most < 0.6);
    const auto clippedOnce = [&asked](QImageIOHandler &reader) {
        asked(reader);
        reader.setOption(QImageIOHandler::ScaledClipRect, QRect(20, 10, 30, 30));
    };
    QCOMPARE(ownPicture(file, clippedOnce), ownPicture(file, asked).copy(20, 10, 30, 30));
}

void tst_JpegReading::lowQuality()
{
    for (const NamedJpegKind &row : jpegKinds()) {
        const QByteArray file = jpegFile({97, 61}, row.kind);
        const auto fast = [](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::Quality, 20); };
        QCOMPARE(ownPicture(file, fast), qtPicture(file, fast));
    }
}

/// An APP1 segment with one directory of one entry.
static QByteArray exifWith(const QByteArray &entry)
{
    return QByteArray("Exif\0\0II*\0\x08\0\0\0\x01\0", 16) + entry + QByteArray(4, '\0');
}

void tst_JpegReading::turned_data()
{
    QTest::addColumn<int>("orientation");
    for (int orientation = 0; orientation <= 9; ++orientation)
        QTest::addRow("%d", orientation) << orientation;
}

void tst_JpegReading::turned()
{
    QFETCH(int, orientation);

    const QByteArray little("\x12\x01\x03\0\x01\0\0\0", 8);
    const QByteArray big("Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 25);
    for (const QByteArray &exif : {exifWith(little + char(orientation) + QByteArray(3, '\0')),
                                   QByteArray(big + char(orientation) + QByteArray(6, '\0'))}) {
        const QByteArray file = jpegFile({20, 10}, {.app1 = exif});
        JpegReader own(Whose::Device, file);
        JpegReader qts(Whose::Qt, file);
        QCOMPARE(own->option(QImageIOHandler::ImageTransformation).toInt(),
                 qts->option(QImageIOHandler::ImageTransformation).toInt());
        QCOMPARE(own->option(QImageIOHandler::ImageTransformation).toInt() != 0,
                 orientation > 1 && orientation < 9);
        QCOMPARE(own.picture().size(), QSize(20, 10)); // turning it is QImageReader's
    }
}

void tst_JpegReading::brokenExif_data()
{
    QTest::addColumn<QByteArray>("exif");

    const QByteArray whole = exifWith(QByteArray("\x12\x01\x03\0\x01\0\0\0\x06\0\0\0", 12));
    for (const int length : {1, 6, 8, 13, 15, 20, 25})
        QTest::addRow("cut off at %d", length) << whole.first(length);
    QTest::newRow("of another type") << exifWith(QByteArray("\x12\x01\x04\0\x01\0\0\0\x06\0\0\0", 12));
    QTest::newRow("twice") << exifWith(QByteArray("\x12\x01\x03\0\x02\0\0\0\x06\0\0\0", 12));
    QTest::newRow("neither byte order") << QByteArray(whole).replace(6, 2, "XX");
    QTest::newRow("no TIFF") << QByteArray(whole).replace(8, 1, "+");
    QTest::newRow("directory far outside") << QByteArray(whole).replace(10, 4, "\xff\xff\xff\xff");
    QTest::newRow("a circle") << QByteArray("Exif\0\0II*\0\x08\0\0\0\0\0\x08\0\0\0", 20);
}

void tst_JpegReading::brokenExif()
{
    QFETCH(QByteArray, exif);

    const QByteArray file = jpegFile({20, 10}, {.app1 = exif});
    JpegReader own(Whose::Device, file);
    JpegReader qts(Whose::Qt, file);
    QCOMPARE(own->option(QImageIOHandler::ImageTransformation).toInt(), 0);
    QCOMPARE(qts->option(QImageIOHandler::ImageTransformation).toInt(), 0);
    QCOMPARE(own.picture().size(), QSize(20, 10));
}

void tst_JpegReading::comments_data()
{
    QTest::addColumn<QByteArray>("comment");

    QTest::newRow("none") << QByteArray();
    QTest::newRow("plain") << QByteArray("by the lake");
    QTest::newRow("with a key") << QByteArray("Author: somebody\n else");
    QTest::newRow("a colon in a sentence") << QByteArray("this is it: a lake");
    QTest::newRow("no UTF-8") << QByteArray("\xff\xfe\x80");
}

void tst_JpegReading::comments()
{
    QFETCH(QByteArray, comment);

    const QByteArray file = jpegFile({20, 10}, {.comment = comment});
    JpegReader own(Whose::Device, file);
    JpegReader qts(Whose::Qt, file);
    QCOMPARE(own->option(QImageIOHandler::Description).toString(),
             qts->option(QImageIOHandler::Description).toString());
    const QImage picture = own.picture();
    const QImage expected = qts.picture();
    QCOMPARE(picture.textKeys(), expected.textKeys());
    for (const QString &key : expected.textKeys())
        QCOMPARE(picture.text(key), expected.text(key));
}

void tst_JpegReading::colourProfile()
{
    const QByteArray mark("ICC_PROFILE\0\x01\x01", 14);
    const QByteArray profile = QColorSpace(QColorSpace::AdobeRgb).iccProfile();
    const QByteArray file = jpegFile({20, 10}, {.app2 = mark + profile});
    QVERIFY(ownPicture(file).colorSpace().isValid());
    QCOMPARE(ownPicture(file).colorSpace(), qtPicture(file).colorSpace());
    const QByteArray cutOff = jpegFile({20, 10}, {.app2 = mark + profile.first(100)});
    QVERIFY(!ownPicture(cutOff).isNull());
    QVERIFY(!ownPicture(cutOff).colorSpace().isValid());
    const QByteArray damaged = jpegFile({20, 10}, {.app2 = mark + profile.first(200)});
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u".*"_s));
    const QImage picture = ownPicture(damaged);
    QCOMPARE(picture.size(), QSize(20, 10));
    QVERIFY(!picture.colorSpace().isValid());
}

void tst_JpegReading::secondPicture()
{
    // A reader gives its picture once; what follows in the device is left there.
    QBuffer buffer;
    buffer.setData(jpegFile({30, 20}) + jpegFile({20, 10}) + "end");
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    for (const QSize size : {QSize(30, 20), QSize(20, 10)}) {
        lindenreed::device::JpegHandler reader;
        reader.setDevice(&buffer);
        QImage picture;
        QVERIFY(reader.read(&picture));
        QCOMPARE(picture.size(), size);
        QVERIFY(!reader.read(&picture));
    }
    QCOMPARE(buffer.readAll(), QByteArray("end"));
}

void tst_JpegReading::isNoJpeg()
{
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("\xff"), QByteArray("\xff\xd8"), QByteArray("text"),
          QByteArray("\xff\xd8\xff\xd9"), QByteArray("\xff\xd8 text")}) {
        JpegReader own(Whose::Device, bytes);
        QCOMPARE(own->canRead(), bytes.startsWith("\xff\xd8"));
        QCOMPARE(own->option(QImageIOHandler::Size).toSize(), QSize());
        QVERIFY(own.picture().isNull());
        QVERIFY(!own->canRead());
    }
    lindenreed::device::JpegHandler without;
    QImage picture;
    QVERIFY(!without.canRead() && !without.read(&picture));
}

QTEST_GUILESS_MAIN(tst_JpegReading)
#include "tst_jpeg_reading.moc"
