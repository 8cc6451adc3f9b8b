// Pictures that are too large to be decoded whole, on their way into the show.

#include "panel_application.h"
#include "picture_fixture.h"
#include "picture_reader.h"

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::readImage;

class tst_PictureLimits : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup() { m_test.reset(); }
    void aboveTheLimit_data();
    void aboveTheLimit();

private:
    std::unique_ptr<PictureFixture> m_test;
};

void tst_PictureLimits::aboveTheLimit_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<bool>("shown"); ///< because it is reduced while it is read

    QTest::newRow("JPEG") << u"a.jpg"_s << QImage::Format_Grayscale8 << true;
    QTest::newRow("PNG in colour") << u"a.png"_s << QImage::Format_RGB888 << true;
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
    QCOMPARE(readImage(path).size(), shown ? QSize(758, 758) : QSize(0, 0));
}

PANEL_TEST_MAIN(tst_PictureLimits)
#include "tst_picture_limits.moc"
