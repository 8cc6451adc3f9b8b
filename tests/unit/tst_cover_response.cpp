// What becomes of a picture file on its way to a thumbnail, and how it is handed over.

#include "exif_builder.h"
#include "finished_cover.h"
#include "panel_application.h"
#include "picture_fixture.h"
#include "special_files.h"

#include <boardconf.h>
#include <slateview.h>

#include <libexif/exif-data.h>

using namespace Qt::StringLiterals;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::AsyncImageResponse;

namespace {

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A segment of two directories: the picture's turn, and the thumbnail, a JPEG file.
std::string exifWithThumbnail(std::uint32_t turn, const std::string &jpeg)
{
    const auto number
        = [](std::uint32_t value, unsigned size) { return numberBytes(ByteOrder::Little, value, size); };
    const auto entry = [&](std::uint32_t tag, ExifBuilder::Format format, std::uint32_t value) {
        return number(tag, 2) + number(format, 2) + number(1, 4) + number(value, 4);
    };
    constexpr std::uint32_t entryLength = 12;
    constexpr std::uint32_t second = ExifBuilder::firstOffset + 2 + entryLength + 4;
    constexpr std::uint32_t behind = second + 2 + 3 * entryLength + 4;
    return std::string("Exif\0\0II", 8) + number(42, 2) + number(ExifBuilder::firstOffset, 4) //
        + number(1, 2) + entry(0x0112, ExifBuilder::Short, turn) + number(second, 4) //
        + number(3, 2) + entry(0x0103, ExifBuilder::Short, 6) + entry(0x0201, ExifBuilder::Long, behind)
        + entry(0x0202, ExifBuilder::Long, std::uint32_t(jpeg.size())) + number(0, 4) //
        + jpeg;
}

} // namespace

class tst_CoverResponse : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup() { m_test.reset(); }

    void boxes_data();
    void boxes();
    void unusable_data();
    void unusable();
    void greyPanel();
    void colourPanel();
    void readWholeAndScaledBeforeItIsConverted();
    void parametersDoNotApply();
    void exifThumbnailAndTurnAreNotUsed();
    void kindIsInTheContent();
    void cannotBeShown_data();
    void cannotBeShown();
    void cancelDoesNothing();
    void poolKeepsItsHandsOff();
    void metaObject();

private:
    std::unique_ptr<PictureFixture> m_test;
};

void tst_CoverResponse::boxes_data()
{
    QTest::addColumn<QSize>("file");
    QTest::addColumn<QSize>("box");
    QTest::addColumn<QSize>("shown");

    QTest::newRow("enlarged") << QSize(10, 10) << QSize(100, 100) << QSize(100, 100);
    QTest::newRow("wide") << QSize(300, 100) << QSize(100, 100) << QSize(100, 33);
    QTest::newRow("tall") << QSize(100, 300) << QSize(100, 100) << QSize(33, 100);
    QTest::newRow("the box itself") << QSize(100, 50) << QSize(100, 50) << QSize(100, 50);
    QTest::newRow("one pixel") << QSize(100, 50) << QSize(1, 1) << QSize(1, 1);
    QTest::newRow("a thread keeps a row") << QSize(3000, 1) << QSize(100, 100) << QSize(100, 1);
}

void tst_CoverResponse::boxes()
{
    QFETCH(QSize, file);
    QFETCH(QSize, box);
    QFETCH(QSize, shown);

    const QString path = m_test->save(gradient(file), u"a.png"_s);
    QCOMPARE(cover(path, box).size(), shown);
    QCOMPARE(cached(path, box)->size(), shown);
}

void tst_CoverResponse::unusable_data()
{
    QTest::addColumn<bool>("named");
    QTest::addColumn<QSize>("box");

    QTest::newRow("no id") << false << QSize(10, 10);
    QTest::newRow("no width") << true << QSize(0, 10);
    QTest::newRow("no height") << true << QSize(10, 0);
    QTest::newRow("half a box") << true << QSize(10, -1);
    QTest::newRow("no box") << true << QSize();
}

void tst_CoverResponse::unusable()
{
    QFETCH(bool, named);
    QFETCH(QSize, box);

    const QString path = named ? m_test->save(gradient({20, 20}), u"a.png"_s) : QString();
    m_test->device.forgetCalls();
    QVERIFY(cover(path, box).isNull()); // and finished() came
    QVERIFY(!cached(path, box)); // it is no failure to remember
    QVERIFY(!cached(path, {-1, -1}));
    QVERIFY(m_test->device.calls({"adjustAreaDefault", "QuickFloyd16Dither"}).isEmpty());
}

void tst_CoverResponse::greyPanel()
{
    const QImage original = gradient({300, 200});
    const QString path = m_test->save(original, u"a.png"_s);
    m_test->device.forgetCalls();
    const QImage shown = cover(path, {150, 150});

    const QList<SdkCall> calls = m_test->device.calls(
        {"adjustAreaDefault", "adjustAreaWithBrightnessContrastGamma", "QuickFloyd16Dither"});
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).name, QByteArray("adjustAreaDefault"));
    QCOMPARE(calls.at(0).arguments, (QByteArrayList{"152", "150", "100"}));
    QCOMPARE(calls.at(1).name, QByteArray("QuickFloyd16Dither"));
    QCOMPARE(calls.at(1).arguments, (QByteArrayList{"152", "0", "0", "150", "100"}));

    QImage expected = original.scaled(150, 150, Qt::KeepAspectRatio, Qt::FastTransformation);
    adjustAreaDefault(expected.scanLine(0), int(expected.bytesPerLine()), 150, 100);
    QuickFloyd16Dither(expected.scanLine(0), int(expected.bytesPerLine()), 0, 0, 150, 100);
    QCOMPARE(*cached(path, {150, 150}), expected); // the finished form is what is kept
    QCOMPARE(cached(path, {150, 150})->format(), QImage::Format_Grayscale8);
    QCOMPARE(shown.convertToFormat(QImage::Format_Grayscale8), expected);
}

void tst_CoverResponse::colourPanel()
{
    m_test->device.setColourMask(1);
    QImage colours(90, 60, QImage::Format_RGB888);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 90; ++x)
            colours.setPixel(x, y, qRgb(x * 2, y * 4, 200));
    }
    const QString path = m_test->save(colours, u"a.png"_s);
    m_test->device.forgetCalls();
    QVERIFY(!cover(path, {45, 45}).isNull());

    const QList<SdkCall> calls = m_test->device.calls(
        {"adjustAreaDefault", "adjustAreaWithBrightnessContrastGamma", "QuickFloyd16Dither"});
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().name, QByteArray("adjustAreaDefault"));
    QImage expected = QImage(path)
                          .scaled(45, 45, Qt::KeepAspectRatio, Qt::FastTransformation)
                          .convertToFormat(QImage::Format_RGB888);
    adjustAreaDefault(expected.scanLine(0), int(expected.bytesPerLine()), 45, 30);
    QCOMPARE(*cached(path, {45, 45}), expected);
    QCOMPARE(cached(path, {45, 45})->format(), QImage::Format_RGB888);
}

void tst_CoverResponse::readWholeAndScaledBeforeItIsConverted()
{
    // A JPEG that was reduced while decoding, or smoothly, would have other greys; a picture with transparent
    // pixels others again if it were converted first.
    QImage photo(400, 400, QImage::Format_RGB32);
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 400; ++x)
            photo.setPixel(x, y, (x / 3 + y / 5) % 2 == 0 ? qRgb(x % 256, 10, y % 256) : qRgb(240, 250, 220));
    }
    for (const QString &name : {u"a.jpg"_s, u"a.bmp"_s, u"a.tiff"_s}) {
        const QString path = m_test->save(photo, name);
        QVERIFY2(!path.isEmpty(), qPrintable(name));
        cover(path, {50, 50});
        QImage expected = QImage(path)
                              .scaled(50, 50, Qt::KeepAspectRatio, Qt::FastTransformation)
                              .convertToFormat(QImage::Format_Grayscale8);
        adjustAreaDefault(expected.scanLine(0), int(expected.bytesPerLine()), 50, 50);
        QuickFloyd16Dither(expected.scanLine(0), int(expected.bytesPerLine()), 0, 0, 50, 50);
        QCOMPARE(*cached(path, {50, 50}), expected);
    }
}

void tst_CoverResponse::parametersDoNotApply()
{
    const QString path = m_test->save(gradient({64, 64}), u"a.png"_s);
    cover(path, {32, 32});
    m_test->configure("picviewer_brightness=300\npicviewer_contrast=10\npicviewer_gamma=10\n");
    const QString copy = m_test->folder.filePath(u"b.png"_s);
    QVERIFY(QFile::copy(path, copy));
    cover(copy, {32, 32});
    QCOMPARE(*cached(copy, {32, 32}), *cached(path, {32, 32}));
}

void tst_CoverResponse::exifThumbnailAndTurnAreNotUsed()
{
    // A JPEG whose EXIF says "turned by 90 degrees" and has a small black picture of its own: the full
    // picture is shown, pixels as stored.
    const QString plain = m_test->save(gradient({60, 30}), u"plain.jpg"_s);
    QImage black(16, 8, QImage::Format_Grayscale8);
    black.fill(Qt::black);
    const QByteArray thumbnail = contentsOf(m_test->save(black, u"black.jpg"_s));
    const std::string exif = exifWithThumbnail(6, thumbnail.toStdString());
    QByteArray bytes = contentsOf(plain);
    bytes.insert(2, QByteArray::fromStdString(app1(exif)));
    const QString turned = m_test->folder.filePath(u"turned.jpg"_s);
    QFile out(turned);
    QVERIFY(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size());
    out.close();

    // Those who look for it find it.
    const std::unique_ptr<ExifData, void (*)(ExifData *)> data(
        exif_data_new_from_file(QFile::encodeName(turned).constData()), &exif_data_unref);
    QVERIFY(data && data->data);
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(data->data), data->size), thumbnail);

    cover(plain, {30, 30});
    cover(turned, {30, 30});
    QCOMPARE(cached(turned, {30, 30})->size(), QSize(30, 15));
    QCOMPARE(*cached(turned, {30, 30}), *cached(plain, {30, 30}));
}

void tst_CoverResponse::kindIsInTheContent()
{
    for (const char *name : {"a.jpg", "a.png", "a.bmp", "a.tiff", "a.svg"}) {
        const QString path = m_test->folder.filePath(QString::fromLatin1(name));
        QVERIFY(gradient({60, 30}).save(path, "JPG"));
        QCOMPARE(cover(path, {30, 30}).size(), QSize(30, 15));
    }
}

void tst_CoverResponse::cannotBeShown_data()
{
    QTest::addColumn<QByteArray>("kind");

    for (const QByteArray &kind :
         special_files::kinds + QByteArrayList{"missing", "empty", "text", "a resource"})
        QTest::newRow(kind) << kind;
}

void tst_CoverResponse::cannotBeShown()
{
    QFETCH(QByteArray, kind);

    QString path = m_test->folder.filePath(u"a.png"_s);
    const auto write = [&path](const QByteArray &contents) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
    };
    if (kind == "empty")
        QVERIFY(write({}));
    else if (kind == "text")
        QVERIFY(write("no picture at all\n"));
    else if (kind == "a resource")
        path = u":/qt-project.org/imports/nothing.png"_s;
    else if (kind != "missing")
        path = special_files::make(kind, path);
    QVERIFY(!path.isEmpty());

    // A null picture without an error, through all operations.
    m_test->device.forgetCalls();
    m_test->log.forget();
    const OpenCount opened(path);
    QVERIFY(cover(path, {32, 32}).isNull());
    QCOMPARE(opened.get() > 0, kind == "empty" || kind == "text"); // nothing but regular files
    const QList<SdkCall> calls = m_test->device.calls({"adjustAreaDefault", "QuickFloyd16Dither"});
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).arguments, (QByteArrayList{"0", "0", "0"}));
    QCOMPARE(calls.at(1).arguments, (QByteArrayList{"0", "0", "0", "0", "0"}));
    QVERIFY(cached(path, {32, 32}));
    QCOMPARE(m_test->log.text(), QByteArray());
}

void tst_CoverResponse::cancelDoesNothing()
{
    const QString path = m_test->save(gradient({64, 64}), u"a.png"_s);
    AsyncImageResponse response(path, {32, 32});
    response.cancel();
    QCOMPARE(handedOver(response).size(), QSize(32, 32));
    QVERIFY(cached(path, {32, 32}));
    response.cancel();
    QVERIFY(std::unique_ptr<QQuickTextureFactory>(response.textureFactory()));
}

void tst_CoverResponse::poolKeepsItsHandsOff()
{
    AsyncImageResponse response(m_test->save(gradient({64, 64}), u"a.png"_s), {32, 32});
    QVERIFY(!response.autoDelete());
    QCOMPARE(response.errorString(), QString());
}

void tst_CoverResponse::metaObject()
{
    const QMetaObject &meta = AsyncImageResponse::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("cancel()"));
    QCOMPARE(QByteArray(meta.className()), QByteArray("lindenreed::picture_stand::AsyncImageResponse"));
}

PANEL_TEST_MAIN(tst_CoverResponse)
#include "tst_cover_response.moc"
