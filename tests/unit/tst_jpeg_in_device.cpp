// Which reader of JPEG files a running device has, and what it makes of colours on its panel.

#include "jpeg_files.h"
#include "panel_application.h"
#include "picture_fixture.h"
#include "picture_reader.h"

#include <QImageReader>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::readImage;

class tst_JpegInDevice : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup() { m_test.reset(); }
    void readerOfTheDevice_data();
    void readerOfTheDevice();
    void show();
    void written();

private:
    QString file(const QString &name) const
    {
        QFile file(m_test->folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(jpegFile({2000, 1500})) > 0 ? file.fileName()
                                                                                         : QString();
    }

    std::unique_ptr<PictureFixture> m_test;
};

void tst_JpegInDevice::readerOfTheDevice_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"a.jpg", "a.jpeg", "a", "a.png", "a.tif"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_JpegInDevice::readerOfTheDevice()
{
    QFETCH(QString, name);

    // Qt's own would keep the colours of a grey panel's picture, too.
    QImageReader grey(file(name));
    QCOMPARE(grey.imageFormat(), QImage::Format_Grayscale8);
    m_test->device.setColourMask(1);
    QImageReader colour(file(name));
    QCOMPARE(colour.imageFormat(), QImage::Format_RGB32);
}

void tst_JpegInDevice::show()
{
    const QString path = file(u"a.jpg"_s);
    const QImage grey = *readImage(path);
    QCOMPARE(grey.size(), QSize(758, 568));
    QCOMPARE(grey.format(), QImage::Format_Grayscale8);
    m_test->device.setColourMask(1);
    const QImage colour = *readImage(path);
    QCOMPARE(colour.size(), QSize(758, 568));
    QCOMPARE(colour.format(), QImage::Format_RGB888);
    QVERIFY(!colour.allGray());
}

void tst_JpegInDevice::written()
{
    QImage red(40, 30, QImage::Format_RGB32);
    red.fill(Qt::red);
    const QString path = m_test->save(red, u"red.jpg"_s);
    m_test->device.setColourMask(1);
    const QRgb pixel = QImage(path).pixel(20, 10);
    QVERIFY(qRed(pixel) > 250 && qGreen(pixel) < 5 && qBlue(pixel) < 5);
}

PANEL_TEST_MAIN(tst_JpegInDevice)
#include "tst_jpeg_in_device.moc"
