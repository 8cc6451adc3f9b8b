// From a picture file to the cache: load stage, budget, prefetch, the file that an id means.

#include "image_adapter.h"
#include "picture_fixture.h"
#include "picture_reader.h"
#include "resource_image_provider.h"

#include <slateview.h>

#include <QFont>
#include <QGuiApplication>
#include <QImageReader>

using lindenreed::device::facts;
using lindenreed::picture_stand::readImage;
using lindenreed::picture_stand::ResourceImageProvider;

class tst_ImageLoading : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QGuiApplication::setFont(QFont(QStringLiteral("Noto Sans"))); } // for drawings
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup() { m_test.reset(); }

    void loadStage_data();
    void loadStage();
    void readerOfTheDevice();
    void largeDrawing();
    void loadStageOfTurnedScreen_data();
    void loadStageOfTurnedScreen();
    void colourPanelKeepsColours_data();
    void colourPanelKeepsColours();
    void transparencyIsDropped();
    void turnIsNotHonoured();
    void kindIsInTheContent();
    void invertedScreen();
    void invertedColourScreen();
    void inversionIsKept();
    void emptyId();
    void idIsNotParsed();
    void budgetAndLogLine();
    void memoryFile();
    void warmedByTheJob();
    void twoJobsInARow();
    void fileOfAnId_data();
    void fileOfAnId();

private:
    std::unique_ptr<PictureFixture> m_test;
};

void tst_ImageLoading::loadStage_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("kept");

    QTest::newRow("smaller") << QSize(100, 50) << QSize(100, 50);
    QTest::newRow("one pixel") << QSize(1, 1) << QSize(1, 1);
    QTest::newRow("exactly the screen") << screen << screen;
    QTest::newRow("one column too wide") << QSize(759, 10) << QSize(758, 9); // whole pixels, rounded down
    QTest::newRow("wider, but lower") << QSize(1516, 1000) << QSize(758, 500);
    QTest::newRow("higher, but narrower") << QSize(512, 2048) << QSize(256, 1024);
    QTest::newRow("larger in both directions") << QSize(2000, 2000) << QSize(758, 758);
    QTest::newRow("a thread: reduced to its last row") << QSize(20'000, 1) << QSize(758, 1);
    QTest::newRow("a thread upright") << QSize(1, 20'000) << QSize(1, 1024);
}

void tst_ImageLoading::loadStage()
{
    QFETCH(QSize, size);
    QFETCH(QSize, kept);

    const QImage picture = *readImage(m_test->save(gradient(size), QStringLiteral("picture.png")));
    QCOMPARE(picture.size(), kept);
    QCOMPARE(picture.format(), QImage::Format_Grayscale8);
}

void tst_ImageLoading::readerOfTheDevice()
{
    // Qt's own keeps the colours of a picture for a grey panel.
    QImage red(40, 30, QImage::Format_RGB32);
    red.fill(Qt::red);
    QCOMPARE(QImageReader(m_test->save(red, QStringLiteral("a.jpg"))).imageFormat(),
             QImage::Format_Grayscale8);
}

void tst_ImageLoading::largeDrawing()
{
    // Is drawn at the size that is asked for.
    QFile file(m_test->folder.filePath(QStringLiteral("a.svg")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<svg xmlns='http://www.w3.org/2000/svg' width='60000' height='30000'></svg>");
    file.close();
    QCOMPARE(readImage(file.fileName())->size(), QSize(758, 379));
}

void tst_ImageLoading::loadStageOfTurnedScreen_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("kept");

    QTest::newRow("the upright screen is too high") << screen << QSize(561, 758);
    QTest::newRow("exactly the turned screen") << QSize(1024, 758) << QSize(1024, 758);
    QTest::newRow("one row too high") << QSize(10, 759) << QSize(9, 758);
    QTest::newRow("wider, but lower") << QSize(2048, 700) << QSize(1024, 350);
}

void tst_ImageLoading::loadStageOfTurnedScreen()
{
    QFETCH(QSize, size);
    QFETCH(QSize, kept);

    SetOrientation(1);
    QCOMPARE(QSize(ScreenWidth(), ScreenHeight()), QSize(1024, 758));
    QCOMPARE(readImage(m_test->save(gradient(size), QStringLiteral("picture.png")))->size(), kept);
}

void tst_ImageLoading::colourPanelKeepsColours_data()
{
    QTest::addColumn<int>("mask");

    QTest::newRow("the first kind of mask") << 1;
    QTest::newRow("another kind") << 2;
    QTest::newRow("below zero") << -1;
}

void tst_ImageLoading::colourPanelKeepsColours()
{
    QFETCH(int, mask);

    m_test->device.setColourMask(mask);
    QImage red(4, 4, QImage::Format_RGB32);
    red.fill(qRgb(200, 10, 30));
    const QImage picture = *readImage(m_test->save(red, QStringLiteral("red.png")));
    QCOMPARE(picture.format(), QImage::Format_RGB888);
    QCOMPARE(picture.pixel(2, 2), qRgb(200, 10, 30));
}

void tst_ImageLoading::transparencyIsDropped()
{
    // The colours as stored, as if each pixel were opaque.
    QImage glass(2, 1, QImage::Format_ARGB32);
    glass.setPixel(0, 0, qRgba(200, 100, 40, 0));
    glass.setPixel(1, 0, qRgba(200, 100, 40, 128));
    const QString path = m_test->save(glass, QStringLiteral("glass.png"));
    const QImage grey = *readImage(path);
    QCOMPARE(grey.format(), QImage::Format_Grayscale8);
    m_test->device.setColourMask(1);
    const QImage colour = *readImage(path);
    QCOMPARE(colour.format(), QImage::Format_RGB888);

    QImage opaque(1, 1, QImage::Format_RGB32);
    opaque.fill(qRgb(200, 100, 40));
    const QRgb greyOfIt = opaque.convertToFormat(QImage::Format_Grayscale8).pixel(0, 0);
    for (int x : {0, 1}) {
        QCOMPARE(grey.pixel(x, 0), greyOfIt);
        QCOMPARE(colour.pixel(x, 0), qRgb(200, 100, 40));
    }
}

void tst_ImageLoading::turnIsNotHonoured()
{
    // Pixels are shown as stored: the turn that the file asks for is not honoured.
    QImage wide(8, 4, QImage::Format_RGB32);
    wide.fill(Qt::white);
    const QString path = m_test->save(wide, QStringLiteral("turned.jpg"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    const QByteArray exif("\xff\xe1\x00\x22"
                          "Exif\0\0"
                          "II*\0\x08\0\0\0"
                          "\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0"
                          "\0\0\0\0",
                          36);
    bytes.insert(2, exif);
    QVERIFY(file.seek(0));
    file.write(bytes);
    file.close();
    QCOMPARE(readImage(path)->size(), QSize(8, 4));
}

void tst_ImageLoading::kindIsInTheContent()
{
    for (const char *name : {"a.jpg", "a.png", "a.bmp", "a.tiff", "a.svg"}) {
        const QString path = m_test->folder.filePath(QString::fromLatin1(name));
        QVERIFY(gradient({2000, 1000}).save(path, "JPG"));
        QCOMPARE(readImage(path)->size(), QSize(758, 379));
    }
}

void tst_ImageLoading::invertedScreen()
{
    const QString path = m_test->save(gradient({16, 16}), QStringLiteral("a.png"));
    const QImage plain = *readImage(path);
    facts().inverted = true;
    QImage inverted = *readImage(path);
    inverted.invertPixels(QImage::InvertRgb);
    QCOMPARE(inverted, plain);
}

void tst_ImageLoading::invertedColourScreen()
{
    m_test->device.setColourMask(1);
    facts().inverted = true;
    QImage red(4, 4, QImage::Format_RGB32);
    red.fill(qRgb(200, 10, 30));
    const QImage picture = *readImage(m_test->save(red, QStringLiteral("red.png")));
    QCOMPARE(picture.format(), QImage::Format_RGB888);
    QCOMPARE(picture.pixel(2, 2), qRgb(55, 245, 225));
}

void tst_ImageLoading::inversionIsKept()
{
    // A picture that was read before stays as it is for the rest of the run. Its grey is a level of the
    // panel: between levels, dots are mixed for how the screen shows them.
    QImage grey(16, 16, QImage::Format_Grayscale8);
    grey.fill(34);
    const QString path = m_test->save(grey, QStringLiteral("a.png"));
    ResourceImageProvider provider;
    QSize size;
    const QImage before = provider.requestImage(path, &size, {});
    facts().inverted = true;
    QCOMPARE(provider.requestImage(path, &size, {}), before);
}

void tst_ImageLoading::emptyId()
{
    ResourceImageProvider provider;
    m_test->log.forget();
    m_test->device.forgetCalls();
    QSize size(7, 9);
    QVERIFY(provider.requestImage(QString(), &size, screen).isNull());
    QCOMPARE(size, QSize(7, 9));
    QCOMPARE(provider.cache()->count(), 0);
    QVERIFY(m_test->device.calls().isEmpty());
    QCOMPARE(m_test->log.text(), QByteArray());
}

void tst_ImageLoading::idIsNotParsed()
{
    const QString path = m_test->save(gradient({8, 8}), QStringLiteral("a%20b.png"));
    ResourceImageProvider provider;
    QSize size;
    QVERIFY(!provider.requestImage(path, &size, {}).isNull());
    QVERIFY(!provider.cache()->find(path).isNull());
    QVERIFY(provider.requestImage(m_test->folder.filePath(QStringLiteral("a b.png")), &size, {}).isNull());
    QVERIFY(provider.requestImage(path + QStringLiteral("#x"), &size, {}).isNull());
}

void tst_ImageLoading::budgetAndLogLine()
{
    m_test->log.forget();
    const ResourceImageProvider provider;
    const long long total = *lindenreed::picture_stand::readTotalMemory("/proc/meminfo");
    QCOMPARE(provider.cache()->limit(), int(std::min(total / 10, (1LL << 31) - 1)));
    QCOMPARE(provider.cache()->used(), 0);
    QCOMPARE(m_test->log.logLines(QStringLiteral("picture_stand/src/resource_image_provider")),
             QStringList{QStringLiteral(
                             "4 long long lindenreed::picture_stand::ResourceImageProvider::getTotalRam(): "
                             "TOTAL RAM is %1")
                             .arg(total)});
}

void tst_ImageLoading::memoryFile()
{
    const QString source = QStringLiteral("picture_stand/src/resource_image_provider");
    QCOMPARE(ResourceImageProvider::getTotalRam("/nowhere/meminfo"), 0LL);
    QCOMPARE(m_test->log.text(), QByteArray());

    const QString path = m_test->folder.filePath(QStringLiteral("meminfo"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(ResourceImageProvider::getTotalRam(qPrintable(path)), 0LL);
    const QString line = QStringLiteral(
        "4 long long lindenreed::picture_stand::ResourceImageProvider::getTotalRam(): TOTAL RAM is %1");
    QCOMPARE(m_test->log.logLines(source), QStringList{line.arg(0)});

    file.write("MemTotal: 3 kB\n");
    file.close();
    m_test->log.forget();
    QCOMPARE(ResourceImageProvider::getTotalRam(qPrintable(path)), 3072LL);
    QCOMPARE(m_test->log.logLines(source), QStringList{line.arg(3072)});
}

void tst_ImageLoading::warmedByTheJob()
{
    QStringList paths;
    for (int i = 0; i < 4; ++i)
        paths.append(m_test->save(gradient({20 + i, 20}), QStringLiteral("%1.png").arg(i)));
    ResourceImageProvider provider;
    m_test->log.forget();
    provider.loadToCache(paths, 3);
    QTRY_COMPARE(provider.cache()->count(), 3);
    QThreadPool::globalInstance()->waitForDone();
    QVERIFY(provider.cache()->find(paths.at(1)).isNull()); // the order is 3, 0, 2, 1

    m_test->log.forget();
    QSize size;
    QCOMPARE(provider.requestImage(paths.at(3), &size, {}).size(), QSize(23, 20));
    QCOMPARE(m_test->log.text(), QByteArray()); // it was there already
}

void tst_ImageLoading::twoJobsInARow()
{
    // The second one replaces nothing: both walk their order to its end.
    QStringList first;
    QStringList second;
    for (int i = 0; i < 4; ++i) {
        first.append(m_test->save(gradient({20, 20}), QStringLiteral("a%1.png").arg(i)));
        second.append(m_test->save(gradient({20, 20}), QStringLiteral("b%1.png").arg(i)));
    }
    ResourceImageProvider provider;
    m_test->log.forget();
    provider.loadToCache(first, 0);
    provider.loadToCache(second, 2);
    QVERIFY(QThreadPool::globalInstance()->waitForDone(60'000));

    QStringList loadedOfFirst;
    QStringList loadedOfSecond;
    const QStringList lines = QString::fromLocal8Bit(m_test->log.text()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QString path = line.section(u' ', 2, 2);
        (first.contains(path) ? loadedOfFirst : loadedOfSecond).append(path);
    }
    QCOMPARE(loadedOfFirst, (QStringList{first.at(0), first.at(1), first.at(3)}));
    QCOMPARE(loadedOfSecond, (QStringList{second.at(2), second.at(3), second.at(1)}));
}

void tst_ImageLoading::fileOfAnId_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("file");

    QTest::newRow("without an escape") << QStringLiteral("/a#b?.jpg") << QStringLiteral("/a#b?.jpg");
    QTest::newRow("escaped on its way") << QStringLiteral("/a%0Ab.jpg") << QStringLiteral("/a\nb.jpg");
    QTest::newRow("an escaped percent") << QStringLiteral("/50%25 x.jpg") << QStringLiteral("/50% x.jpg");
    QTest::newRow("a name that looks like an escape")
        << QStringLiteral("/a%2520b.jpg") << QStringLiteral("/a%20b.jpg");
    QTest::newRow("other scripts") << QStringLiteral("/ü%2525 山.jpg") << QStringLiteral("/ü%25 山.jpg");
}

void tst_ImageLoading::fileOfAnId()
{
    QFETCH(QString, id);
    QTEST(lindenreed::picture_stand::fileOfImageId(id), "file");
}

QTEST_GUILESS_MAIN(tst_ImageLoading)
#include "tst_image_loading.moc"
