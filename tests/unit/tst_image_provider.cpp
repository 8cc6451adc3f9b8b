// From a picture file to what the show draws: load stage, request stage, parameters.

#include "image_adapter.h"
#include "picture_reader.h"
#include "resource_image_provider.h"
#include "stderr_capture.h"

#include <device.h>
#include <facts.h>
#include <slateview.h>
#include <slateview_testing.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <memory>

#include <sys/stat.h>

using lindenreed::device::DeviceForTest;
using lindenreed::device::facts;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::readImage;
using lindenreed::picture_stand::ResourceImageProvider;

namespace {

const QString configPath = QStringLiteral("/mnt/ext1/system/config/global.cfg");
constexpr QSize screen(758, 1024);

/// Every grey next to every other, so that reductions, adjustments and dithering all show.
QImage gradient(QSize size)
{
    QImage picture(size, QImage::Format_Grayscale8);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            picture.scanLine(y)[x] = uchar(x * 3 + y * 5);
    }
    return picture;
}

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
    void init();
    void cleanup();

    void loadStage_data();
    void loadStage();
    void loadStageOfTurnedScreen_data();
    void loadStageOfTurnedScreen();
    void colourPanelKeepsColours_data();
    void colourPanelKeepsColours();
    void transparencyIsDropped();
    void turnIsNotHonoured();
    void invertedScreen();
    void invertedColourScreen();
    void inversionIsKept();
    void emptyId();
    void idIsNotParsed();
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
    void parameters_data();
    void parameters();
    void parametersAreReadOnce();
    void budgetAndLogLine();
    void memoryFile();
    void warmedByTheJob();
    void twoJobsInARow();
    void fileOfAnId_data();
    void fileOfAnId();

private:
    QString save(const QImage &picture, const QString &name);
    void configure(const QByteArray &contents);

    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<StderrCapture> m_log;
};

void tst_ImageProvider::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".?")));
    m_device = std::make_unique<DeviceForTest>();
    m_folder = std::make_unique<QTemporaryDir>();
    m_log = std::make_unique<StderrCapture>();
    configure({});
}

void tst_ImageProvider::cleanup()
{
    QThreadPool::globalInstance()->waitForDone();
    facts().inverted = false;
    m_log.reset();
    m_folder.reset();
    m_device.reset();
}

QString tst_ImageProvider::save(const QImage &picture, const QString &name)
{
    const QString path = m_folder->filePath(name);
    return picture.save(path) ? path : QString();
}

void tst_ImageProvider::configure(const QByteArray &contents)
{
    QDir().mkpath(QFileInfo(configPath).path());
    QFile file(configPath);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(contents);
}

void tst_ImageProvider::loadStage_data()
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

void tst_ImageProvider::loadStage()
{
    QFETCH(QSize, size);
    QFETCH(QSize, kept);

    const QImage picture = readImage(save(gradient(size), QStringLiteral("picture.png")));
    QCOMPARE(picture.size(), kept);
    QCOMPARE(picture.format(), QImage::Format_Grayscale8);
}

void tst_ImageProvider::loadStageOfTurnedScreen_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("kept");

    QTest::newRow("the upright screen is too high") << screen << QSize(561, 758);
    QTest::newRow("exactly the turned screen") << QSize(1024, 758) << QSize(1024, 758);
    QTest::newRow("one row too high") << QSize(10, 759) << QSize(9, 758);
    QTest::newRow("wider, but lower") << QSize(2048, 700) << QSize(1024, 350);
}

void tst_ImageProvider::loadStageOfTurnedScreen()
{
    QFETCH(QSize, size);
    QFETCH(QSize, kept);

    SetOrientation(1);
    QCOMPARE(QSize(ScreenWidth(), ScreenHeight()), QSize(1024, 758));
    QCOMPARE(readImage(save(gradient(size), QStringLiteral("picture.png"))).size(), kept);
}

void tst_ImageProvider::colourPanelKeepsColours_data()
{
    QTest::addColumn<int>("mask");

    QTest::newRow("the first kind of mask") << 1;
    QTest::newRow("another kind") << 2;
    QTest::newRow("below zero") << -1;
}

void tst_ImageProvider::colourPanelKeepsColours()
{
    QFETCH(int, mask);

    m_device->setColourMask(mask);
    QImage red(4, 4, QImage::Format_RGB32);
    red.fill(qRgb(200, 10, 30));
    const QImage picture = readImage(save(red, QStringLiteral("red.png")));
    QCOMPARE(picture.format(), QImage::Format_RGB888);
    QCOMPARE(picture.pixel(2, 2), qRgb(200, 10, 30));
}

void tst_ImageProvider::transparencyIsDropped()
{
    // The colours as stored, as if each pixel were opaque.
    QImage glass(2, 1, QImage::Format_ARGB32);
    glass.setPixel(0, 0, qRgba(200, 100, 40, 0));
    glass.setPixel(1, 0, qRgba(200, 100, 40, 128));
    const QString path = save(glass, QStringLiteral("glass.png"));
    const QImage grey = readImage(path);
    QCOMPARE(grey.format(), QImage::Format_Grayscale8);
    m_device->setColourMask(1);
    const QImage colour = readImage(path);
    QCOMPARE(colour.format(), QImage::Format_RGB888);

    QImage opaque(1, 1, QImage::Format_RGB32);
    opaque.fill(qRgb(200, 100, 40));
    const QRgb greyOfIt = opaque.convertToFormat(QImage::Format_Grayscale8).pixel(0, 0);
    for (int x : {0, 1}) {
        QCOMPARE(grey.pixel(x, 0), greyOfIt);
        QCOMPARE(colour.pixel(x, 0), qRgb(200, 100, 40));
    }
}

void tst_ImageProvider::turnIsNotHonoured()
{
    // Pixels are shown as stored: the turn that the file asks for is not honoured.
    QImage wide(8, 4, QImage::Format_RGB32);
    wide.fill(Qt::white);
    const QString path = save(wide, QStringLiteral("turned.jpg"));
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
    QCOMPARE(readImage(path).size(), QSize(8, 4));
}

void tst_ImageProvider::invertedScreen()
{
    const QString path = save(gradient({16, 16}), QStringLiteral("a.png"));
    const QImage plain = readImage(path);
    facts().inverted = true;
    QImage inverted = readImage(path);
    inverted.invertPixels(QImage::InvertRgb);
    QCOMPARE(inverted, plain);
}

void tst_ImageProvider::invertedColourScreen()
{
    m_device->setColourMask(1);
    facts().inverted = true;
    QImage red(4, 4, QImage::Format_RGB32);
    red.fill(qRgb(200, 10, 30));
    const QImage picture = readImage(save(red, QStringLiteral("red.png")));
    QCOMPARE(picture.format(), QImage::Format_RGB888);
    QCOMPARE(picture.pixel(2, 2), qRgb(55, 245, 225));
}

void tst_ImageProvider::inversionIsKept()
{
    // A picture that was read before stays as it is for the rest of the run.
    const QString path = save(gradient({16, 16}), QStringLiteral("a.png"));
    ResourceImageProvider provider;
    QSize size;
    const QImage before = provider.requestImage(path, &size, {});
    facts().inverted = true;
    QCOMPARE(provider.requestImage(path, &size, {}), before);
}

void tst_ImageProvider::emptyId()
{
    ResourceImageProvider provider;
    m_log->forget();
    m_device->forgetCalls();
    QSize size(7, 9);
    QVERIFY(provider.requestImage(QString(), &size, screen).isNull());
    QCOMPARE(size, QSize(7, 9));
    QCOMPARE(provider.cache()->count(), 0);
    QVERIFY(m_device->calls().isEmpty());
    QCOMPARE(m_log->text(), QByteArray());
}

void tst_ImageProvider::idIsNotParsed()
{
    const QString path = save(gradient({8, 8}), QStringLiteral("a%20b.png"));
    ResourceImageProvider provider;
    QSize size;
    QVERIFY(!provider.requestImage(path, &size, {}).isNull());
    QVERIFY(provider.cache()->contains(path));
    QVERIFY(provider.requestImage(m_folder->filePath(QStringLiteral("a b.png")), &size, {}).isNull());
    QVERIFY(provider.requestImage(path + QStringLiteral("#x"), &size, {}).isNull());
}

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

    const QString path = save(gradient(file), QStringLiteral("a.png"));
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
        = provider.requestImage(save(halves, QStringLiteral("a.png")), &size, QSize(100, 100));
    QCOMPARE(size, QSize(100, 50));
    for (int x = 0; x < 100; ++x)
        QCOMPARE(int(picture.constScanLine(20)[x]), x < 50 ? 0 : 255);
}

void tst_ImageProvider::greyPanelDithers()
{
    configure("picviewer_brightness=120\npicviewer_contrast=90\npicviewer_gamma=110\n");
    const QString path = save(gradient({300, 200}), QStringLiteral("a.png"));
    ResourceImageProvider provider;
    m_device->forgetCalls();
    QSize size;
    const QImage picture = provider.requestImage(path, &size, QSize(600, 600));

    const QList<SdkCall> calls = m_device->calls(
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
    const QString path = save(original, QStringLiteral("a.png"));
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
    const QString path = save(original, QStringLiteral("a.png"));
    ResourceImageProvider provider;
    QSize size;
    QImage expected = original;
    QuickFloyd16Dither(expected.scanLine(0), int(expected.bytesPerLine()), 0, 0, screen.width(),
                       screen.height());
    QCOMPARE(provider.requestImage(path, &size, screen), expected);
}

void tst_ImageProvider::colourPanelTakesTheDefaultTone()
{
    m_device->setColourMask(1);
    configure("picviewer_brightness=300\n");
    QImage colours(90, 60, QImage::Format_RGB888);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 90; ++x)
            colours.setPixel(x, y, qRgb(x * 2, y * 4, 200));
    }
    const QString path = save(colours, QStringLiteral("a.png"));
    ResourceImageProvider provider;
    m_device->forgetCalls();
    QSize size;
    const QImage picture = provider.requestImage(path, &size, {});

    const QList<SdkCall> calls = m_device->calls(
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
    const QString path = m_folder->filePath(QStringLiteral("not there.jpg"));
    ResourceImageProvider provider;
    m_log->forget();
    m_device->forgetCalls();
    QSize size(7, 9);
    QVERIFY(provider.requestImage(path, &size, screen).isNull());
    QCOMPARE(size, QSize(0, 0));

    // It goes through the picture operations all the same, and is remembered; nothing else is said about it.
    const QList<SdkCall> calls
        = m_device->calls({"adjustAreaWithBrightnessContrastGamma", "QuickFloyd16Dither"});
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).arguments, (QByteArrayList{"0", "0", "0", "1", "1", "1"}));
    QCOMPARE(calls.at(1).arguments, (QByteArrayList{"0", "0", "0", "0", "0"}));
    QCOMPARE(m_log->text(),
             QByteArray("add image " + path.toLocal8Bit() + " size(0) ram(0/"
                        + QByteArray::number(provider.cache()->limit()) + ") \r\n"));
}

void tst_ImageProvider::unreadablePictureOnColourPanel()
{
    m_device->setColourMask(1);
    ResourceImageProvider provider;
    m_device->forgetCalls();
    QSize size(7, 9);
    QVERIFY(
        provider.requestImage(m_folder->filePath(QStringLiteral("not there.jpg")), &size, screen).isNull());
    QCOMPARE(size, QSize(0, 0));
    const QList<SdkCall> calls = m_device->calls(
        {"adjustAreaDefault", "adjustAreaWithBrightnessContrastGamma", "QuickFloyd16Dither"});
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().name, QByteArray("adjustAreaDefault"));
    QCOMPARE(calls.first().arguments, (QByteArrayList{"0", "0", "0"}));
}

void tst_ImageProvider::whatIsNoPictureStaysSo()
{
    const QString path = m_folder->filePath(QStringLiteral("late.png"));
    ResourceImageProvider provider;
    QSize size;
    QVERIFY(provider.requestImage(path, &size, {}).isNull());
    QVERIFY(gradient({8, 8}).save(path));
    QVERIFY(provider.requestImage(path, &size, {}).isNull());
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

    configure(config);
    ResourceImageProvider provider;
    m_device->forgetCalls();
    QSize size;
    provider.requestImage(save(gradient({8, 8}), QStringLiteral("a.png")), &size, {});
    const QList<SdkCall> calls = m_device->calls({"adjustAreaWithBrightnessContrastGamma"});
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().arguments.mid(3), factors);
}

void tst_ImageProvider::parametersAreReadOnce()
{
    QVERIFY(QFile::remove(configPath));
    ResourceImageProvider provider;
    configure("picviewer_gamma=50\n");
    m_device->forgetCalls();
    QSize size;
    provider.requestImage(save(gradient({8, 8}), QStringLiteral("a.png")), &size, {});
    QCOMPARE(m_device->calls({"adjustAreaWithBrightnessContrastGamma"}).first().arguments.last(),
             QByteArray("1"));
    QFile file(configPath);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("picviewer_gamma=50\n")); // and nothing is written
}

void tst_ImageProvider::budgetAndLogLine()
{
    m_log->forget();
    const ResourceImageProvider provider;
    const long long total = *lindenreed::picture_stand::readTotalMemory("/proc/meminfo");
    QCOMPARE(provider.cache()->limit(), int(std::min(total / 10, (1LL << 31) - 1)));
    QCOMPARE(provider.cache()->used(), 0);
    QCOMPARE(m_log->logLines(QStringLiteral("picture_stand/src/resource_image_provider")),
             QStringList{QStringLiteral(
                             "4 long long lindenreed::picture_stand::ResourceImageProvider::getTotalRam(): "
                             "TOTAL RAM is %1")
                             .arg(total)});
}

void tst_ImageProvider::memoryFile()
{
    const QString source = QStringLiteral("picture_stand/src/resource_image_provider");
    QCOMPARE(ResourceImageProvider::getTotalRam("/nowhere/meminfo"), 0LL);
    QCOMPARE(m_log->text(), QByteArray());

    const QString path = m_folder->filePath(QStringLiteral("meminfo"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(ResourceImageProvider::getTotalRam(qPrintable(path)), 0LL);
    const QString line = QStringLiteral(
        "4 long long lindenreed::picture_stand::ResourceImageProvider::getTotalRam(): TOTAL RAM is %1");
    QCOMPARE(m_log->logLines(source), QStringList{line.arg(0)});

    file.write("MemTotal: 3 kB\n");
    file.close();
    m_log->forget();
    QCOMPARE(ResourceImageProvider::getTotalRam(qPrintable(path)), 3072LL);
    QCOMPARE(m_log->logLines(source), QStringList{line.arg(3072)});
}

void tst_ImageProvider::warmedByTheJob()
{
    QStringList paths;
    for (int i = 0; i < 4; ++i)
        paths.append(save(gradient({20 + i, 20}), QStringLiteral("%1.png").arg(i)));
    ResourceImageProvider provider;
    m_log->forget();
    provider.loadToCache(paths, 3);
    QTRY_COMPARE(provider.cache()->count(), 3);
    QThreadPool::globalInstance()->waitForDone();
    QVERIFY(!provider.cache()->contains(paths.at(1))); // the order is 3, 0, 2, 1

    m_log->forget();
    QSize size;
    QCOMPARE(provider.requestImage(paths.at(3), &size, {}).size(), QSize(23, 20));
    QCOMPARE(m_log->text(), QByteArray()); // it was there already
}

void tst_ImageProvider::twoJobsInARow()
{
    // The second one replaces nothing: both walk their order to its end.
    QStringList first;
    QStringList second;
    for (int i = 0; i < 4; ++i) {
        first.append(save(gradient({20, 20}), QStringLiteral("a%1.png").arg(i)));
        second.append(save(gradient({20, 20}), QStringLiteral("b%1.png").arg(i)));
    }
    ResourceImageProvider provider;
    m_log->forget();
    provider.loadToCache(first, 0);
    provider.loadToCache(second, 2);
    QVERIFY(QThreadPool::globalInstance()->waitForDone(60'000));

    QStringList loadedOfFirst;
    QStringList loadedOfSecond;
    const QStringList lines = QString::fromLocal8Bit(m_log->text()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QString path = line.section(u' ', 2, 2);
        (first.contains(path) ? loadedOfFirst : loadedOfSecond).append(path);
    }
    QCOMPARE(loadedOfFirst, (QStringList{first.at(0), first.at(1), first.at(3)}));
    QCOMPARE(loadedOfSecond, (QStringList{second.at(2), second.at(3), second.at(1)}));
}

void tst_ImageProvider::fileOfAnId_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("file");

    const QString escaped = QStringLiteral("/a%23b.jpg");
    const QString plain = QStringLiteral("/a#b.jpg");
    QTest::newRow("a file of this very name") << QStringList{escaped} << escaped << escaped;
    QTest::newRow("this very name before the other") << QStringList{plain, escaped} << escaped << escaped;
    QTest::newRow("escaped on its way") << QStringList{plain} << escaped << plain;
    QTest::newRow("a file that has gone: as it was loaded ahead") << QStringList() << escaped << plain;
    QTest::newRow("without an escape") << QStringList() << plain << plain;
    QTest::newRow("an escaped percent")
        << QStringList() << QStringLiteral("/50%25 x.jpg") << QStringLiteral("/50% x.jpg");
}

void tst_ImageProvider::fileOfAnId()
{
    QFETCH(QStringList, files);
    QFETCH(QString, id);
    QFETCH(QString, file);

    QCOMPARE(lindenreed::picture_stand::fileOfImageId(
                 id, [&files](const QString &path) { return files.contains(path); }),
             file);
}

QTEST_GUILESS_MAIN(tst_ImageProvider)
#include "tst_image_provider.moc"
