// Pictures that are too large to be decoded whole, or at all, on their way into the show.

#include "hostile_bombs.h"
#include "jpeg_files.h"
#include "memory_setup.h"
#include "panel_application.h"
#include "picture_fixture.h"
#include "picture_reader.h"
#include "png_reading.h"

#include <QImageReader>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::readImage;

class tst_PictureLimits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { lindenreed::picture_stand::setUpMemory(); }
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup() { m_test.reset(); }
    void aboveTheLimit_data();
    void aboveTheLimit();
    void headersThatClaimMuch_data();
    void headersThatClaimMuch();

private:
    std::unique_ptr<PictureFixture> m_test;
};

void tst_PictureLimits::aboveTheLimit_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<bool>("shown"); ///< because it is reduced while it is read

    QTest::newRow("JPEG") << u"a.jpg"_s << QImage::Format_Grayscale8 << true;
    QTest::newRow("PNG in colour") << u"a.png"_s << QImage::Format_RGB888 << pngIsReduced();
    QTest::newRow("PNG in grey") << u"a.png"_s << QImage::Format_Grayscale8 << false;
    QTest::newRow("BMP") << u"a.bmp"_s << QImage::Format_Grayscale8 << false;
    QTest::newRow("TIFF") << u"a.tif"_s << QImage::Format_Grayscale8 << false;
}

void tst_PictureLimits::aboveTheLimit()
{
    QFETCH(QString, name);
    QFETCH(QImage::Format, format);
    QFETCH(bool, shown);

    // 36 megapixels: at four bytes each, as Qt reckons, above 128 MiB.
    QString path;
    {
        QImage picture(6000, 6000, format);
        QVERIFY(!picture.isNull());
        picture.fill(Qt::gray);
        path = m_test->save(picture, name);
    }
    if (!shown)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"exceeds the current allocation limit"_s));
    QCOMPARE(readImage(path)->size(), shown ? QSize(758, 758) : QSize(0, 0));
}

static QByteArray jpegThatClaims(QSize size)
{
    return claiming(jpegFile({64, 64}), size, "\xff\xc0");
}

/// In colour, with so much of it that reading begins.
static QByteArray pngThatClaims(QSize size)
{
    return hostile::png(quint32(size.width()), quint32(size.height()), 8, 2, size.width() * 3 * 10);
}

static QByteArray bmpThatClaims(QSize size)
{
    return hostile::bmp(quint32(size.width()), quint32(size.height()), 24, 0, 0, QByteArray(1000, '\0'));
}

void tst_PictureLimits::headersThatClaimMuch_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("kept");
    QTest::addColumn<QString>("warning"); ///< Qt's
    QTest::addColumn<QByteArray>("line"); ///< of the decoder itself

    // Of what is not there a JPEG is grey, others are not shown; what is refused is not even begun.
    const QSize below(10'900, 11'000);
    const QSize above(10'910, 11'000);
    const QSize most(65'500, 65'500);
    const QSize none(0, 0);
    const auto row
        = [](const char *name, const QByteArray &file, QSize size, QSize kept, const QString &warning = {},
             const QByteArray &line = {}) { QTest::newRow(name) << file << size << kept << warning << line; };
    row("JPEG just below", jpegThatClaims(below), below, {758, 764});
    row("JPEG just above", jpegThatClaims(above), above, none);
    row("all of a JPEG", jpegThatClaims(most), most, none);
    // Read whole, it is above the other limit.
    row("PNG just below", pngThatClaims(below), below, none,
        pngIsReduced() ? QString() : u"allocation limit"_s, pngIsReduced() ? "libpng error" : "");
    row("PNG just above", pngThatClaims(above), above, none);
    row("BMP just below", bmpThatClaims(below), below, none, u"allocation limit"_s);
    row("BMP just above", bmpThatClaims(above), above, none);
}

void tst_PictureLimits::headersThatClaimMuch()
{
    QFETCH(QByteArray, file);
    QFETCH(QSize, size);
    QFETCH(QString, warning);
    QFETCH(QByteArray, line);

    QFile written(m_test->folder.filePath(u"picture"_s));
    QVERIFY(written.open(QIODevice::WriteOnly) && written.write(file) == file.size());
    written.close();
    QCOMPARE(QImageReader(written.fileName()).size(), size);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    m_test->log.forget();
    QTEST(readImage(written.fileName())->size(), "kept");
    QCOMPARE(m_test->log.text().isEmpty(), line.isEmpty());
    QVERIFY(m_test->log.text().contains(line));
}

PANEL_TEST_MAIN(tst_PictureLimits)
#include "tst_picture_limits.moc"
