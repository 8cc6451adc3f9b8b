// Pictures for which there is no memory.

#include "failing_allocations.h"
#include "finished_cover.h"
#include "panel_application.h"
#include "picture_show_test.h"
#include "png_reading.h"

#include "picture_reader.h"

namespace {

constexpr std::size_t tenMebibytes = 10 << 20;

/// So that files of it are large as well.
QImage noise(QSize size, QImage::Format format)
{
    QImage picture(size, format);
    quint32 value = 1;
    for (int y = 0; y < size.height(); ++y) {
        uchar *const row = picture.scanLine(y);
        for (qsizetype x = 0; x < picture.bytesPerLine(); ++x)
            row[x] = uchar((value = value * 1664525 + 1013904223) >> 24);
    }
    return picture;
}

} // namespace

class tst_PictureMemory : public PictureShowTest
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void noneForAPicture_data();
    void noneForAPicture();
    void theShowGoesOn();
};

void tst_PictureMemory::noneForAPicture_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<bool>("shown"); ///< because it is reduced row by row

    QTest::newRow("JPEG") << QByteArray("JPEG") << true;
    QTest::newRow("PNG") << QByteArray("PNG") << pngIsReduced();
    QTest::newRow("PNG in grey") << QByteArray("grey PNG") << false;
    QTest::newRow("BMP") << QByteArray("BMP") << false;
    QTest::newRow("TIFF") << QByteArray("TIFF") << false;
    QTest::newRow("WebP") << QByteArray("WEBP") << false;
    QTest::newRow("SVG") << QByteArray("SVG") << false;
}

void tst_PictureMemory::noneForAPicture()
{
    QFETCH(QByteArray, format);
    QFETCH(bool, shown);

    const QString path = m_folder->filePath(u"a.picture"_s);
    const bool grey = format.startsWith("grey ");
    // A grey panel has grey thumbnails of JPEG files, at one byte a pixel.
    const QSize size = format == "JPEG" ? QSize(4000, 3000) : QSize(1800, 1600);
    const QByteArray contents = format == "SVG"
        ? QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='3000' height='4000'/>")
        : encoded(noise(size, grey ? QImage::Format_Grayscale8 : QImage::Format_RGB32),
                  format.mid(grey ? 5 : 0).constData());
    if (contents.isEmpty())
        QSKIP("nobody writes this format here");
    QVERIFY(write(QFile::encodeName(path), contents));
    {
        // A drawing comes from a process of its own, at the size of the screen or the thumbnail.
        const FailingAllocations failing(grey || format == "SVG" ? tenMebibytes / 4 : tenMebibytes);
        QCOMPARE(!lindenreed::picture_stand::readImage(path)->isNull(), shown);
        QCOMPARE(cover(path, {100, 100}).size(), format == "SVG" ? QSize(75, 100) : QSize(0, 0));
        QVERIFY(failing.count() > 0);
    }
}

void tst_PictureMemory::theShowGoesOn()
{
    const QString large = m_folder->filePath(u"large.bmp"_s);
    QVERIFY(write(QFile::encodeName(large), encoded(noise({1800, 1600}, QImage::Format_RGB32), "BMP")));
    const QString good = m_folder->filePath(u"z.png"_s);
    QVERIFY(twoGreys().save(good));
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const FailingAllocations failing(tenMebibytes);
                        running.startShow({large, good, large, good});
                        QCOMPARE(status(running), int(Error)); // black
                        QVERIFY(m_device->fire("nextImageEvent"));
                        QCOMPARE(running.slideshow()->currentImage(), good);
                        QCOMPARE(status(running), int(Ready));
                        QVERIFY(failing.count() > 0);
                    }),
             0);
}

PANEL_TEST_MAIN(tst_PictureMemory)
#include "tst_picture_memory.moc"
