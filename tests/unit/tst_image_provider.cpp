// What the screen gets of a picture: box, tone, dithering, parameters.

#include "picture_fixture.h"
#include "resource_image_provider.h"

#include <slateview.h>

using lindenreed::device::SdkCall;
using lindenreed::picture_stand::ResourceImageProvider;

namespace {

bool hasOnlySixteenGreys(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.constScanLine(y)[x] % 17 != 0)
                return false;
        }
    }
    return true;
}

} // namespace

class tst_ImageProvider : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup() { m_test.reset(); }

    void boxes_data();
    void boxes();
    void enlargedWithoutSmoothing();
    void greyPanelDithers();
    void keptFormIsUntouched();
    void pictureThatIsExactlyTheScreen();
    void colourPanelTakesTheDefaultTone();
    void unreadablePicture();
    void unreadablePictureOnColourPanel();
    void whatIsNoPictureStaysSo();
    void whatIsNotThereMayCome();
    void parameters_data();
    void parameters();
    void parametersAreReadOnce();

private:
    std::unique_ptr<PictureFixture> m_test;
};

void tst_ImageProvider::boxes_data()
{
    QTest::addColumn<QSize>("file");
    QTest::addColumn<QSize>("box");
    QTest::addColumn<QSize>("shown");

    QTest::newRow("enlarged to the box") << QSize(100, 50) << QSize(700, 700) << QSize(700, 350);
    QTest::newRow("reduced to the box") << QSize(100, 50) << QSize(10, 10) << QSize(10, 5);
    QTest::newRow("no box") << QSize(100, 50) << QSize(-1, -1) << QSize(100, 50);
    QTest::newRow("half a box") << QSize(100, 50) << QSize(20, -1) << QSize(100, 50);
    QTest::newRow("a box without width") << QSize(100, 50) << QSize(0, 10) << QSize(0, 0);
    QTest::newRow("the screen") << QSize(100, 50) << screen << QSize(758, 379);
    QTest::newRow("the screen itself") << screen << screen << screen;
    QTest::newRow("one pixel") << QSize(1, 1) << screen << QSize(758, 758);
}

void tst_ImageProvider::boxes()
{
    QFETCH(QSize, file);
    QFETCH(QSize, box);
    QFETCH(QSize, shown);

    const QString path = m_test->save(gradient(file), QStringLiteral("a.png"));
    ResourceImageProvider provider;
    QSize size(7, 9);
    const QImage picture = provider.requestImage(path, &size, box);
    QCOMPARE(size, shown);
    QCOMPARE(picture.size(), shown);
    QCOMPARE(picture.isNull(), shown.isEmpty());
    QCOMPARE(provider.cache()->find(path).size(), file);
}

void tst_ImageProvider::enlargedWithoutSmoothing()
{
    // Two halves meet in a hard edge.
    QImage halves(2, 1, QImage::Format_Grayscale8);
    halves.scanLine(0)[0] = 0;
    halves.scanLine(0)[1] = 255;
    ResourceImageProvider provider;
    QSize size;
    const QImage picture
        = provider.requestImage(m_test->save(halves, QStringLiteral("a.png")), &size, QSize(100, 100));
    QCOMPARE(size, QSize(100, 50));
    for (int x = 0; x < 100; ++x)
        QCOMPARE(int(picture.constScanLine(20)[x]), x < 50 ? 0 : 255);
}

void tst_ImageProvider::greyPanelDithers()
{
    m_test->configure("picviewer_brightness=120\npicviewer_contrast=90\npicviewer_gamma=110\n");
    const QString path = m_test->save(gradient({300, 200}), QStringLiteral("a.png"));
    ResourceImageProvider provider;
    m_test->device.forgetCalls();
    QSize size;
    const QImage picture = provider.requestImage(path, &size, QSize(600, 600));

    const QList<SdkCall> calls = m_test->device.calls(
        {"adjustAreaDefault", "adjustAreaWithBrightnessContrastGamma", "QuickFloyd16Dither"});
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).name, QByteArray("adjustAreaWithBrightnessContrastGamma"));
    QCOMPARE(calls.at(0).arguments, (QByteArrayList{"600", "600", "400", "1.2", "0.9", "1.1"}));
    QCOMPARE(calls.at(1).name, QByteArray("QuickFloyd16Dither"));
    QCOMPARE(calls.at(1).arguments, (QByteArrayList{"600", "0", "0", "600", "400"}));

    QVERIFY(hasOnlySixteenGreys(picture));
    QImage expected
        = provider.cache()->find(path).scaled(600, 600, Qt::KeepAspectRatio, Qt::FastTransformation);
    adjustAreaWithBrightnessContrastGamma(expected.scanLine(0), 600, 600, 400, 1.2, 0.9, 1.1);
    QuickFloyd16Dither(expected.scanLine(0), 600, 0, 0, 600, 400);
    QCOMPARE(picture, expected);
}

void tst_ImageProvider::keptFormIsUntouched()
{
    const QImage original = gradient({64, 64});
    const QString path = m_test->save(original, QStringLiteral("a.png"));
    ResourceImageProvider provider;
    QSize size;
    const QImage first = provider.requestImage(path, &size, {});
    QCOMPARE(provider.cache()->find(path), original);
    QCOMPARE(provider.requestImage(path, &size, {}), first);
    QVERIFY(first != original);
}

void tst_ImageProvider::pictureThatIsExactlyTheScreen()
{
    const QImage original = gradient(screen);
    const QString path = m_test->save(original, QStringLiteral("a.png"));
    ResourceImageProvider provider;
    QSize size;
    QImage expected = original;
    QuickFloyd16Dither(expected.scanLine(0), int(expected.bytesPerLine()), 0, 0, screen.width(),
                       screen.height());
    QCOMPARE(provider.requestImage(path, &size, screen), expected);
}

void tst_ImageProvider::colourPanelTakesTheDefaultTone()
{
    m_test->device.setColourMask(1);
    m_test->configure("picviewer_brightness=300\n");
    QImage colours(90, 60, QImage::Format_RGB888);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 90; ++x)
            colours.setPixel(x, y, qRgb(x * 2, y * 4, 200));
    }
    const QString path = m_test->save(colours, QStringLiteral("a.png"));
    ResourceImageProvider provider;
    m_test->device.forgetCalls();
    QSize size;
    const QImage picture = provider.requestImage(path, &size, {});

    const QList<SdkCall> calls = m_test->device.calls(
        {"adjustAreaDefault", "adjustAreaWithBrightnessContrastGamma", "QuickFloyd16Dither"});
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.at(0).name, QByteArray("adjustAreaDefault"));
    QCOMPARE(calls.at(0).arguments, (QByteArrayList{QByteArray::number(colours.bytesPerLine()), "90", "60"}));
    QImage expected = colours;
    adjustAreaDefault(expected.scanLine(0), int(expected.bytesPerLine()), 90, 60);
    QCOMPARE(picture, expected);
}

void tst_ImageProvider::unreadablePicture()
{
    const QString path = m_test->folder.filePath(QStringLiteral("not there.jpg"));
    ResourceImageProvider provider;
    m_test->log.forget();
    m_test->device.forgetCalls();
    QSize size(7, 9);
    QVERIFY(provider.requestImage(path, &size, screen).isNull());
    QCOMPARE(size, QSize(0, 0));

    // It goes through the picture operations all the same, and is remembered; nothing else is said about it.
    const QList<SdkCall> calls
        = m_test->device.calls({"adjustAreaWithBrightnessContrastGamma", "QuickFloyd16Dither"});
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).arguments, (QByteArrayList{"0", "0", "0", "1", "1", "1"}));
    QCOMPARE(calls.at(1).arguments, (QByteArrayList{"0", "0", "0", "0", "0"}));
    QCOMPARE(m_test->log.text(),
             QByteArray("add image " + path.toLocal8Bit() + " size(0) ram(0/"
                        + QByteArray::number(provider.cache()->limit()) + ") \r\n"));
}

void tst_ImageProvider::unreadablePictureOnColourPanel()
{
    m_test->device.setColourMask(1);
    ResourceImageProvider provider;
    m_test->device.forgetCalls();
    QSize size(7, 9);
    QVERIFY(provider.requestImage(m_test->folder.filePath(QStringLiteral("not there.jpg")), &size, screen)
                .isNull());
    QCOMPARE(size, QSize(0, 0));
    const QList<SdkCall> calls = m_test->device.calls(
        {"adjustAreaDefault", "adjustAreaWithBrightnessContrastGamma", "QuickFloyd16Dither"});
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().name, QByteArray("adjustAreaDefault"));
    QCOMPARE(calls.first().arguments, (QByteArrayList{"0", "0", "0"}));
}

void tst_ImageProvider::whatIsNoPictureStaysSo()
{
    QFile file(m_test->folder.filePath(QStringLiteral("late.png")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no picture") > 0);
    file.close();
    ResourceImageProvider provider;
    QSize size;
    QVERIFY(provider.requestImage(file.fileName(), &size, {}).isNull());
    QVERIFY(gradient({8, 8}).save(file.fileName()));
    QVERIFY(provider.requestImage(file.fileName(), &size, {}).isNull());
}

void tst_ImageProvider::whatIsNotThereMayCome()
{
    const QString path = m_test->folder.filePath(QStringLiteral("late.png"));
    ResourceImageProvider provider;
    QSize size;
    QVERIFY(provider.requestImage(path, &size, {}).isNull());
    QVERIFY(gradient({8, 8}).save(path));
    QCOMPARE(provider.requestImage(path, &size, {}).size(), QSize(8, 8));
}

void tst_ImageProvider::parameters_data()
{
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<QByteArrayList>("factors");

    QTest::newRow("no entries") << QByteArray() << QByteArrayList{"1", "1", "1"};
    QTest::newRow("contrast alone") << QByteArray("picviewer_contrast=150\n")
                                    << QByteArrayList{"1", "1.5", "1"};
    QTest::newRow("zero is passed on")
        << QByteArray("picviewer_contrast=0\n") << QByteArrayList{"1", "0", "1"};
    QTest::newRow("below zero is passed on")
        << QByteArray("picviewer_gamma=-50\n") << QByteArrayList{"1", "1", "-0.5"};
    QTest::newRow("no number") << QByteArray("picviewer_gamma=dark\n") << QByteArrayList{"1", "1", "1"};
    QTest::newRow("too large a number")
        << QByteArray("picviewer_gamma=99999999999\n") << QByteArrayList{"1", "1", "1"};
    QTest::newRow("CR LF") << QByteArray("picviewer_brightness=80\r\n") << QByteArrayList{"0.8", "1", "1"};
    QTest::newRow("a key twice") << QByteArray("picviewer_gamma=50\npicviewer_gamma=70\n")
                                 << QByteArrayList{"1", "1", "0.7"};
    QTest::newRow("a line of a megabyte, and bytes that are no text") << QByteArray("\xff\xfe\0junk\n", 8)
            + QByteArray(1 << 20, 'x') + "\npicviewer_gamma=70\n" << QByteArrayList{"1", "1", "0.7"};
}

void tst_ImageProvider::parameters()
{
    QFETCH(QByteArray, config);
    QFETCH(QByteArrayList, factors);

    m_test->configure(config);
    ResourceImageProvider provider;
    m_test->device.forgetCalls();
    QSize size;
    provider.requestImage(m_test->save(gradient({8, 8}), QStringLiteral("a.png")), &size, {});
    const QList<SdkCall> calls = m_test->device.calls({"adjustAreaWithBrightnessContrastGamma"});
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().arguments.mid(3), factors);
}

void tst_ImageProvider::parametersAreReadOnce()
{
    QVERIFY(QFile::remove(m_test->configurationPath()));
    ResourceImageProvider provider;
    m_test->configure("picviewer_gamma=50\n");
    m_test->device.forgetCalls();
    QSize size;
    provider.requestImage(m_test->save(gradient({8, 8}), QStringLiteral("a.png")), &size, {});
    QCOMPARE(m_test->device.calls({"adjustAreaWithBrightnessContrastGamma"}).first().arguments.last(),
             QByteArray("1"));
    QFile file(m_test->configurationPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("picviewer_gamma=50\n")); // and nothing is written
}

QTEST_GUILESS_MAIN(tst_ImageProvider)
#include "tst_image_provider.moc"
