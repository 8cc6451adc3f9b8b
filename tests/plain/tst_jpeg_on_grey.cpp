// JPEG files on a grey panel: the luma alone, reduced while it is decoded, in little memory.

#include "growth_limit.h"
#include "jpeg_files.h"
#include "jpeg_readers.h"
#include "process_memory.h"
#include "slow_reduction.h"

#include <facts.h>
#include <paths.h>
#include <row_reducer.h>

#include <QBuffer>
#include <QColorSpace>
#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using lindenreed::device::facts;

Q_DECLARE_METATYPE(JpegKind)

namespace {

/// Bytes that come as from a pipe.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray &bytes)
        : m_bytes(bytes)
    {
        open(QIODevice::ReadOnly);
    }
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const qint64 count = std::min<qint64>({most, m_bytes.size() - m_place, 1000});
        std::copy_n(m_bytes.constData() + m_place, count, data);
        m_place += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_place = 0;
};

/// JPEG's luma of each pixel.
QImage lumaOf(const QImage &picture)
{
    QImage luma(picture.size(), QImage::Format_Grayscale8);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            luma.scanLine(y)[x]
                = uchar(std::lround(0.299 * qRed(pixel) + 0.587 * qGreen(pixel) + 0.114 * qBlue(pixel)));
        }
    }
    return luma;
}

} // namespace

class tst_JpegOnGrey : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::addLibraryPath(lindenreed::device::pluginFolder()); }
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".?"_s));
        facts().running = true;
        QCOMPARE(facts().colourMask.load(), 0);
    }
    void cleanup()
    {
        facts().running = false;
        facts().colourMask = 0;
    }
    void luma_data() { kinds(); }
    void luma();
    void reduced_data() { kinds(); }
    void reduced();
    void fineStructure();
    void whichPanel();
    void sampling_data();
    void sampling();
    void colourProfile();
    void anyName_data();
    void anyName();
    void otherDevices();
    void otherFormats();
    void written_data();
    void written();
    void memory_data();
    void memory();

private:
    static void kinds()
    {
        QTest::addColumn<JpegKind>("kind");
        for (const NamedJpegKind &row : jpegKinds())
            QTest::newRow(row.name) << row.kind;
    }
};

void tst_JpegOnGrey::luma()
{
    QFETCH(JpegKind, kind);

    const QByteArray file = jpegFile({203, 157}, kind);
    const QImage picture = ownPicture(file);
    QCOMPARE(picture.format(), QImage::Format_Grayscale8);
    // Colours that a screen cannot show were cut off on the way to the other one.
    const double likeness = peakSignalToNoise(picture, lumaOf(qtPicture(file)));
    QVERIFY2(likeness > 35, QByteArray::number(likeness).constData());
}

void tst_JpegOnGrey::reduced()
{
    QFETCH(JpegKind, kind);

    const QByteArray file = jpegFile({203, 157}, kind);
    const QImage whole = lumaOf(qtPicture(file));
    for (const QSize size : {QSize(202, 156), QSize(101, 78), QSize(60, 46), QSize(20, 15), QSize(1, 1)}) {
        const auto scales
            = [size](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, size); };
        const QImage picture = ownPicture(file, scales);
        QCOMPARE(picture.size(), size);
        QCOMPARE(picture.format(), QImage::Format_Grayscale8);
        const ReductionError error = reductionError(picture, whole);
        // Besides what libjpeg makes smaller block by block, colours that a screen cannot show were cut off.
        QVERIFY2(
            error.most < 6.5 && error.peakSignalToNoise > 50,
            qPrintable(u"%1, %2 dB for %3"_s.arg(error.most).arg(error.peakSignalToNoise).arg(size.width())));
    }
}

void tst_JpegOnGrey::fineStructure()
{
    // As if the whole picture had been decoded. Eighths of these lengths end within a pixel.
    const QByteArray file = jpegFile({203, 157}, {.colours = JCS_GRAYSCALE, .quality = 98});
    const QImage whole = ownPicture(file);
    for (const QSize size : {QSize(140, 108), QSize(80, 61), QSize(50, 39)}) {
        QImage expected(size, QImage::Format_Grayscale8);
        using lindenreed::device::RowReducer;
        RowReducer reducer({203, 157}, {203, 157}, {size.width(), size.height()}, 1,
                           std::span(expected.bits(), std::size_t(expected.sizeInBytes())),
                           std::size_t(expected.bytesPerLine()));
        for (int y = 0; y < whole.height(); ++y) {
            std::copy_n(whole.constScanLine(y), whole.width(), reducer.nextRow());
            reducer.add();
        }
        const QImage picture = ownPicture(
            file, [size](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, size); });
        const double likeness = peakSignalToNoise(picture, expected);
        QVERIFY2(likeness > 48, qPrintable(u"%1 for %2"_s.arg(likeness).arg(size.width())));
    }
}

void tst_JpegOnGrey::whichPanel()
{
    const QByteArray file = jpegFile({20, 10});
    QCOMPARE(ownPicture(file).format(), QImage::Format_Grayscale8);
    facts().colourMask = 1;
    QCOMPARE(ownPicture(file).format(), QImage::Format_RGB32);
    facts().colourMask = 0;
    facts().running = false;
    QCOMPARE(ownPicture(file).format(), QImage::Format_RGB32);

    // What was promised with the header is kept.
    JpegReader reader(JpegReader::Whose::Device, file);
    QCOMPARE(reader->option(QImageIOHandler::ImageFormat).value<QImage::Format>(), QImage::Format_RGB32);
    facts().running = true;
    QCOMPARE(reader.picture().format(), QImage::Format_RGB32);
}

void tst_JpegOnGrey::sampling_data()
{
    QTest::addColumn<char>("luma");
    QTest::addColumn<char>("chroma");
    QTest::addColumn<bool>("isShown");

    QTest::newRow("three to one across") << '\x31' << '\x11' << true;
    QTest::newRow("three to two across") << '\x31' << '\x21' << false;
    QTest::newRow("three to one down") << '\x13' << '\x11' << true;
    QTest::newRow("three to two down") << '\x13' << '\x12' << false;
}

void tst_JpegOnGrey::sampling()
{
    QFETCH(char, luma);
    QFETCH(char, chroma);
    QFETCH(bool, isShown);

    // libjpeg writes no such file: it is another one's data.
    QByteArray file = jpegFile({48, 48});
    const qsizetype parts = file.indexOf("\xff\xc0") + 10;
    for (int i = 0; i < 3; ++i)
        file[parts + i * 3 + 1] = i == 0 ? luma : chroma;

    QCOMPARE(!ownPicture(file).isNull(), isShown);
    facts().colourMask = 1;
    QCOMPARE(!ownPicture(file).isNull(), isShown);
}

void tst_JpegOnGrey::colourProfile()
{
    // One for colours says nothing of greys.
    const QByteArray mark("ICC_PROFILE\0\x01\x01", 14);
    const QByteArray profile = QColorSpace(QColorSpace::AdobeRgb).iccProfile();
    QVERIFY(!ownPicture(jpegFile({20, 10}, {.app2 = mark + profile})).colorSpace().isValid());
}

void tst_JpegOnGrey::anyName_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"a.jpg", "a.jpeg", "a.JPG", "a", "a.png", "a.tiff", "a.svg", "a.bmp", "a.jpg.txt"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_JpegOnGrey::anyName()
{
    QFETCH(QString, name);

    const QTemporaryDir folder;
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(jpegFile({20, 10})) > 0);
    file.close();
    // That it is grey tells whose reader it was.
    QImageReader reader(file.fileName());
    QVERIFY(reader.canRead());
    QCOMPARE(reader.format(), QByteArray("jpeg"));
    QCOMPARE(reader.size(), QSize(20, 10));
    QCOMPARE(reader.imageFormat(), QImage::Format_Grayscale8);
    QCOMPARE(reader.read().format(), QImage::Format_Grayscale8);
    QCOMPARE(QImage(file.fileName()).format(), QImage::Format_Grayscale8);
}

void tst_JpegOnGrey::otherDevices()
{
    QByteArray bytes = jpegFile({203, 157});
    const QImage expected = ownPicture(bytes);
    QCOMPARE(QImage::fromData(bytes), expected);
    QBuffer buffer(&bytes);
    QCOMPARE(QImageReader(&buffer).read(), expected);
    Pipe pipe(bytes);
    QImageReader reader(&pipe);
    QCOMPARE(reader.size(), expected.size());
    QCOMPARE(reader.read(), expected);
}

void tst_JpegOnGrey::otherFormats()
{
    QImage red(4, 4, QImage::Format_RGB32);
    red.fill(Qt::red);
    const QTemporaryDir folder;
    for (const char *name : {"a.png", "a.bmp", "png.jpg"}) {
        const QString path = folder.filePath(QString::fromLatin1(name));
        QVERIFY(red.save(path, name[2] == 'b' ? "BMP" : "PNG"));
        QCOMPARE(QImage(path).pixel(1, 1), qRgb(255, 0, 0));
    }
}

void tst_JpegOnGrey::written_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");

    QTest::newRow("by its name") << u"a.jpg"_s << QByteArray();
    QTest::newRow("by another name") << u"a.jpeg"_s << QByteArray();
    QTest::newRow("by a format") << u"a"_s << QByteArray("jpg");
    QTest::newRow("by another format") << u"a.x"_s << QByteArray("JPEG");
}

void tst_JpegOnGrey::written()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, format);

    // By Qt's own, with everything that it can.
    QVERIFY(QImageWriter::supportedImageFormats().contains("jpeg"));
    const QImage picture = qtPicture(jpegFile({203, 157}));
    const QTemporaryDir folder;
    QImageWriter writer(folder.filePath(name), format);
    writer.setQuality(35);
    writer.setProgressiveScanWrite(true);
    writer.setText(u"Author"_s, u"somebody"_s);
    writer.setTransformation(QImageIOHandler::TransformationRotate90);
    QVERIFY2(writer.write(picture), qPrintable(writer.errorString()));

    QBuffer expected;
    expected.open(QIODevice::WriteOnly);
    const std::unique_ptr<QImageIOHandler> qts(lindenreed::device::qtJpegPlugin()->create(&expected, "jpeg"));
    qts->setOption(QImageIOHandler::Quality, 35);
    qts->setOption(QImageIOHandler::ProgressiveScanWrite, true);
    qts->setOption(QImageIOHandler::Description, u"Author: somebody"_s);
    qts->setOption(QImageIOHandler::ImageTransformation, int(QImageIOHandler::TransformationRotate90));
    QVERIFY(qts->write(picture));
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), expected.data());
}

void tst_JpegOnGrey::memory_data()
{
    QTest::addColumn<JpegKind>("kind");
    QTest::addColumn<int>("most"); ///< MiB

    QTest::newRow("baseline") << JpegKind{} << 12;
    QTest::newRow("progressive") << JpegKind{.progressive = true} << 80;
}

void tst_JpegOnGrey::memory()
{
    QFETCH(JpegKind, kind);
    QFETCH(int, most);

    QByteArray bytes = jpegFile({4000, 6000}, kind); // 24 megapixels
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    reader.setScaledSize({1248, 1872});
    const GrowthWatch watch;
    QCOMPARE(reader.read().size(), QSize(1248, 1872));
    const qint64 grown = watch.grown();
    QVERIFY2(grown < growthLimit(most * 1024), QByteArray::number(grown).constData());
}

QTEST_GUILESS_MAIN(tst_JpegOnGrey)
#include "tst_jpeg_on_grey.moc"
