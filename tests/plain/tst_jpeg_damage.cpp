// Damaged JPEG files, and headers that claim more than there is: as Qt's own reader takes them, without a
// message.

#include "growth_limit.h"
#include "jpeg_files.h"
#include "jpeg_readers.h"
#include "process_memory.h"
#include "stderr_capture.h"

#include <facts.h>
#include <jpeg_decoder.h>

#include <QBuffer>
#include <QImageReader>
#include <QLoggingCategory>
#include <QTest>

#include <limits>
#include <random>

using namespace Qt::StringLiterals;
using lindenreed::device::facts;
using lindenreed::device::mostScanMemory;
using lindenreed::device::ScanMemory;

constexpr qint64 gibibyte = 1LL << 30;

Q_DECLARE_METATYPE(JpegKind)

class tst_JpegDamage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QImageReader::setAllocationLimit(m_limit); }
    void init()
    {
        QLoggingCategory::setFilterRules(u"qt.gui.imageio.jpeg=false"_s); // what Qt's own reader says
        QTest::failOnWarning(QRegularExpression(u".?"_s));
        m_log = std::make_unique<StderrCapture>();
    }
    void cleanup()
    {
        const QByteArray told = m_log->text();
        m_log.reset();
        facts().running = false;
        QImageReader::setAllocationLimit(m_limit);
        QCOMPARE(told, QByteArray());
    }
    void truncated_data() { kinds(); }
    void truncated();
    void damaged_data() { kinds(); }
    void damaged();
    void headerThatClaimsMuch_data();
    void headerThatClaimsMuch();
    void progressiveHeaderThatClaimsMuch();
    void memoryOfScans_data();
    void memoryOfScans();
    void cameraFileOnASmallMachine();
    void baselineFilesTakeNone();
    void endlessScans();
    void allocationLimit();

private:
    static void kinds()
    {
        QTest::addColumn<JpegKind>("kind");
        for (const NamedJpegKind &row : jpegKinds())
            QTest::newRow(row.name) << row.kind;
    }

    const int m_limit = 128; // as the frame sets it
    std::unique_ptr<StderrCapture> m_log;
};

/// The one line that there is, which is Qt's.
static void rejectionIsTold()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"exceeds the current allocation limit"_s));
}

void tst_JpegDamage::truncated()
{
    QFETCH(JpegKind, kind);

    const QByteArray file = jpegFile({203, 157}, kind);
    const auto scales
        = [](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, QSize(90, 70)); };
    int shown = 0;
    for (int part = 0; part < 20; ++part) {
        const QByteArray cut = file.first(file.size() * part / 20);
        const QImage expected = qtPicture(cut);
        QCOMPARE(ownPicture(cut), expected); // as far as it goes
        QCOMPARE(ownPicture(cut, scales).size(), expected.isNull() ? QSize(0, 0) : QSize(90, 70));
        facts().running = true;
        QCOMPARE(ownPicture(cut).size(), expected.size());
        facts().running = false;
        shown += expected.isNull() ? 0 : 1;
    }
    QVERIFY(shown > 5);
}

void tst_JpegDamage::damaged()
{
    QFETCH(JpegKind, kind);

    const QByteArray file = jpegFile({64, 48}, kind);
    std::mt19937 random(1); // the same numbers at every run
    int shown = 0;
    for (int i = 0; i < 300; ++i) {
        QByteArray bytes = file;
        // Half of them in the header. Its sizes stay: what they claim is another test's.
        for (int hits = 1 + int(random() % 4); hits > 0; --hits) {
            const qsizetype end = i % 2 == 0 ? bytes.size() : bytes.size() / 3;
            bytes[qsizetype(random() % quint32(end))] = char(random());
        }
        JpegReader header(JpegReader::Whose::Qt, bytes);
        const QSize size = header->option(QImageIOHandler::Size).toSize();
        if (size.isValid() && qint64(size.width()) * size.height() > 1'000'000)
            continue;
        const QImage expected = qtPicture(bytes);
        QCOMPARE(ownPicture(bytes), expected);
        facts().running = true;
        QCOMPARE(ownPicture(bytes).size(), expected.size());
        facts().running = false;
        shown += expected.isNull() ? 0 : 1;
    }
    QVERIFY(shown > 50);
}

void tst_JpegDamage::headerThatClaimsMuch_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("whole"); ///< shown at its own size
    QTest::addColumn<bool>("reduced"); ///< shown at another

    QTest::newRow("above the limit at its own size") << QSize(6000, 6000) << false << true;
    QTest::newRow("all that a header can say") << QSize(65'500, 65'500) << false << false;
    QTest::newRow("more than all") << QSize(65'535, 65'535) << false << false;
    QTest::newRow("a thread") << QSize(65'500, 1) << true << true;
}

void tst_JpegDamage::headerThatClaimsMuch()
{
    QFETCH(QSize, size);
    QFETCH(bool, whole);
    QFETCH(bool, reduced);

    const QByteArray file = claiming(jpegFile({64, 64}), size, "\xff\xc0");
    const auto scales
        = [](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, QSize(20, 1)); };
    // What no pointer could reach is refused without a word; and beyond its dimensions libjpeg takes the
    // header for damaged.
    const bool fits = qint64(size.width()) * size.height() <= std::numeric_limits<qsizetype>::max();
    for (const bool grey : {false, true}) {
        facts().running = grey;
        if (!whole && fits && size.width() <= JPEG_MAX_DIMENSION)
            rejectionIsTold();
        QCOMPARE(!ownPicture(file).isNull(), whole);
        const GrowthWatch watch;
        QCOMPARE(!ownPicture(file, scales).isNull(), reduced);
        QVERIFY(watch.grown() < growthLimit(24 * 1024));
    }
}

void tst_JpegDamage::progressiveHeaderThatClaimsMuch()
{
    // Takes memory for what it claims before the first byte of a scan: it is refused before. Reduced it would
    // be small enough.
    const QByteArray file = claiming(jpegFile({64, 64}, {.progressive = true}), {20'000, 20'000}, "\xff\xc2");
    const auto scales
        = [](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, QSize(20, 20)); };
    const GrowthWatch watch;
    QVERIFY(ownPicture(file, scales).isNull());
    QVERIFY(watch.grown() < growthLimit(8 * 1024));
}

void tst_JpegDamage::memoryOfScans_data()
{
    QTest::addColumn<JpegKind>("kind");
    QTest::addColumn<qint64>("bytes"); ///< of a pixel
    QTest::addColumn<qint64>("most");

    const JpegKind camera{.progressive = true};
    const qint64 enough = mostScanMemory(8 * gibibyte);
    QTest::newRow("grey") << JpegKind{.colours = JCS_GRAYSCALE, .progressive = true} << qint64(2) << enough;
    QTest::newRow("4:2:0") << camera << qint64(3) << enough;
    QTest::newRow("4:4:4") << JpegKind{.across = 1, .down = 1, .progressive = true} << qint64(6) << enough;
    QTest::newRow("four inks") << JpegKind{.colours = JCS_CMYK, .progressive = true} << qint64(8) << enough;
    QTest::newRow("on a small machine") << camera << qint64(3) << mostScanMemory(gibibyte / 2);
}

void tst_JpegDamage::memoryOfScans()
{
    QFETCH(JpegKind, kind);
    QFETCH(qint64, bytes);
    QFETCH(qint64, most);

    // Without tables for its first scan a file ends as soon as the memory is there, before any of it is used.
    QByteArray file = jpegFile({64, 64}, kind);
    for (qsizetype table = file.indexOf("\xff\xc4"); table >= 0; table = file.indexOf("\xff\xc4", table))
        file.replace(table, 2, "\xff\xe9");
    for (const auto &[percent, allowed] : {std::pair(98, true), std::pair(101, false)}) {
        constexpr int width = 8000;
        const QSize size(width, int(most / 100 * percent / bytes / width));
        QBuffer device;
        device.setData(claiming(file, size, "\xff\xc2"));
        QVERIFY(device.open(QIODevice::ReadOnly));
        ScanMemory memory(most);
        {
            lindenreed::device::JpegDecoder decoder(device, memory);
            QVERIFY(decoder.readHeader() && decoder.choose(1, decoder.info().jpeg_color_space, false));
            const GrowthWatch watch;
            QVERIFY(!decoder.start());
            const qint64 taken = watch.reserved();
            QVERIFY2(allowed ? taken > most / 100 * 95 / 1024 : taken < 8 * 1024,
                     QByteArray::number(taken).constData());
            QVERIFY(watch.grown() < growthLimit(8 * 1024, taken));
            // What is counted is what libjpeg takes.
            QVERIFY(allowed ? std::abs(memory.used() / 1024 - taken) < growthLimit(8 * 1024, taken)
                            : memory.used() == 0);
        }
        QCOMPARE(memory.used(), 0LL);
    }
}

void tst_JpegDamage::cameraFileOnASmallMachine()
{
    // 24 megapixels, with 512 MiB, of which the system keeps a part for itself.
    QBuffer device;
    device.setData(claiming(jpegFile({64, 64}, {.progressive = true}), {4000, 6000}, "\xff\xc2"));
    QVERIFY(device.open(QIODevice::ReadOnly));
    ScanMemory memory(mostScanMemory(480 * gibibyte / 1024));
    lindenreed::device::JpegDecoder decoder(device, memory);
    QVERIFY(decoder.readHeader() && decoder.choose(3, JCS_GRAYSCALE, false) && decoder.start());
    QVERIFY(memory.used() >= 72'000'000);
}

void tst_JpegDamage::baselineFilesTakeNone()
{
    QBuffer device;
    device.setData(jpegFile({64, 64}));
    QVERIFY(device.open(QIODevice::ReadOnly));
    ScanMemory memory(0);
    lindenreed::device::JpegDecoder decoder(device, memory);
    QVERIFY(decoder.readHeader() && decoder.choose(8, JCS_GRAYSCALE, false) && decoder.start());
}

/// `scans` further ones, like the first, each of which goes through the whole picture.
static QByteArray withFurtherScans(QByteArray file, int scans)
{
    const qsizetype begin = file.indexOf("\xff\xda");
    const qsizetype end = file.indexOf("\xff\xc4", begin);
    return file.insert(end, file.mid(begin, end - begin).repeated(scans));
}

void tst_JpegDamage::endlessScans()
{
    const QByteArray file = jpegFile({64, 48}, {.colours = JCS_GRAYSCALE, .progressive = true});
    const int own = int(file.count("\xff\xda"));
    QVERIFY(!ownPicture(withFurtherScans(file, 1000 - own)).isNull());
    QVERIFY(ownPicture(withFurtherScans(file, 1001 - own)).isNull());

    // 20 megapixels, a hundred times.
    const QByteArray large = claiming(file, {5000, 4000}, "\xff\xc2");
    const auto scales
        = [](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, QSize(20, 20)); };
    QVERIFY(!ownPicture(withFurtherScans(large, 100 - own), scales).isNull());
    QVERIFY(ownPicture(withFurtherScans(large, 101 - own), scales).isNull());
}

void tst_JpegDamage::allocationLimit()
{
    const QByteArray file = jpegFile({600, 600}); // 1.4 MB at four bytes a pixel
    QImageReader::setAllocationLimit(1);
    rejectionIsTold();
    QVERIFY(ownPicture(file).isNull());
    rejectionIsTold();
    QVERIFY(qtPicture(file).isNull());
    const auto scales
        = [](QImageIOHandler &reader) { reader.setOption(QImageIOHandler::ScaledSize, QSize(90, 70)); };
    QVERIFY(!ownPicture(file, scales).isNull());
    QImageReader::setAllocationLimit(0);
    QVERIFY(!ownPicture(file).isNull());
}

QTEST_GUILESS_MAIN(tst_JpegDamage)
#include "tst_jpeg_damage.moc"
