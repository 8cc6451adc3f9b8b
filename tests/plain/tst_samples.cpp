// The sample pictures and the rest of a device root's first contents, as the build made them.

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QSet>
#include <QTest>

#include <libexif/exif-data.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

QString skeleton()
{
    return QCoreApplication::applicationDirPath() + u"/../../share/picture_stand/skeleton/"_s;
}

QString samplePath(int number)
{
    return skeleton() + u"mnt/ext1/Photo/%1.jpg"_s.arg(number, 2, 10, QLatin1Char('0'));
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct ReleaseExif
{
    void operator()(ExifData *data) const { exif_data_unref(data); }
};
using Exif = std::unique_ptr<ExifData, ReleaseExif>;

Exif exifOf(const QString &path)
{
    return Exif(exif_data_new_from_file(QFile::encodeName(path).constData()));
}

QString textOf(const Exif &exif, ExifIfd directory, ExifTag tag)
{
    ExifEntry *entry = exif ? exif_content_get_entry(exif->ifd[directory], tag) : nullptr;
    char text[64] = {};
    return entry ? QString::fromLatin1(exif_entry_get_value(entry, text, sizeof text)) : QString();
}

} // namespace

class tst_Samples : public QObject
{
    Q_OBJECT

private slots:
    void exactlyTen();
    void picture_data();
    void picture();
    void allDiffer();
    void sizeTogether();
    void folders_data();
    void folders();
    void localeAliases();
    void language();
};

void tst_Samples::exactlyTen()
{
    QStringList expected;
    for (int number = 1; number <= 10; ++number)
        expected.append(u"%1.jpg"_s.arg(number, 2, 10, QLatin1Char('0')));
    const QDir folder(skeleton() + u"mnt/ext1/Photo"_s);
    QCOMPARE(folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name), expected);
}

void tst_Samples::picture_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("taken");

    const QSize portrait(1600, 2161);
    const QSize landscape(2161, 1600);
    QTest::newRow("mountains in mist") << 1 << portrait << u"2023:10:14 07:42:18"_s;
    QTest::newRow("moon over water") << 2 << portrait << u"2021:08:22 23:11:05"_s;
    QTest::newRow("dunes") << 3 << landscape << u"2019:11:03 16:58:40"_s;
    QTest::newRow("birches") << 4 << portrait << u"2022:10:09 10:26:33"_s;
    QTest::newRow("seed head") << 5 << portrait << u"2024:05:18 18:07:51"_s;
    QTest::newRow("sea") << 6 << landscape << u"2020:02:29 15:33:12"_s;
    QTest::newRow("skyline") << 7 << landscape << u"2025:03:07 18:49:27"_s;
    QTest::newRow("balloons") << 8 << portrait << u"2023:06:25 05:56:02"_s;
    QTest::newRow("still life") << 9 << landscape << u"2021:01:17 11:14:46"_s;
    QTest::newRow("starry night") << 10 << portrait << u"2024:08:12 22:38:29"_s;
}

void tst_Samples::picture()
{
    QFETCH(int, number);
    QFETCH(QSize, size);
    QFETCH(QString, taken);
    const QString path = samplePath(number);

    QImageReader reader(path);
    QCOMPARE(reader.format(), QByteArray("jpeg"));
    QCOMPARE(reader.size(), size);
    QCOMPARE(reader.transformation(), QImageIOHandler::TransformationNone);
    const QImage image = reader.read();
    QCOMPARE(image.size(), size);

    // Worth a frame needs dark and light at the least: both ends of the panel's greys are in use.
    const QImage grey = image.convertToFormat(QImage::Format_Grayscale8).scaled(150, 150);
    int dark = 0;
    int light = 0;
    for (int y = 0; y < grey.height(); ++y) {
        for (int x = 0; x < grey.width(); ++x) {
            dark += grey.constScanLine(y)[x] < 64;
            light += grey.constScanLine(y)[x] > 176;
        }
    }
    QVERIFY2(dark > 100 && light > 100, qPrintable(u"%1 dark, %2 light"_s.arg(dark).arg(light)));

    const Exif exif = exifOf(path);
    QVERIFY(exif);
    QCOMPARE(textOf(exif, EXIF_IFD_EXIF, EXIF_TAG_DATE_TIME_ORIGINAL), taken);
    QCOMPARE(textOf(exif, EXIF_IFD_EXIF, EXIF_TAG_DATE_TIME_DIGITIZED), taken);
    QCOMPARE(textOf(exif, EXIF_IFD_0, EXIF_TAG_DATE_TIME), taken);
    ExifEntry *orientation = exif_content_get_entry(exif->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
    QVERIFY(orientation);
    QCOMPARE(int(exif_get_short(orientation->data, exif_data_get_byte_order(exif.get()))), 1);
    QVERIFY(textOf(exif, EXIF_IFD_0, EXIF_TAG_MAKE).isEmpty());
    QVERIFY(textOf(exif, EXIF_IFD_0, EXIF_TAG_MODEL).isEmpty());
    QVERIFY(QDateTime::fromString(taken, u"yyyy:MM:dd HH:mm:ss"_s).isValid());
}

void tst_Samples::allDiffer()
{
    QSet<QByteArray> pictures;
    QSet<QString> dates;
    for (int number = 1; number <= 10; ++number) {
        const QImage image(samplePath(number));
        QVERIFY(!image.isNull());
        const QByteArrayView pixels(image.constBits(), image.sizeInBytes());
        pictures.insert(QCryptographicHash::hash(pixels.toByteArray(), QCryptographicHash::Sha256));
        dates.insert(textOf(exifOf(samplePath(number)), EXIF_IFD_EXIF, EXIF_TAG_DATE_TIME_ORIGINAL));
    }
    QCOMPARE(pictures.size(), 10);
    QCOMPARE(dates.size(), 10);
}

void tst_Samples::sizeTogether()
{
    qint64 bytes = 0;
    for (int number = 1; number <= 10; ++number)
        bytes += QFileInfo(samplePath(number)).size();
    QVERIFY2(bytes > 1024 * 1024 && bytes < 6 * 1024 * 1024, qPrintable(QString::number(bytes)));
}

void tst_Samples::folders_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("isEmpty");

    QTest::newRow("internal memory") << u"mnt/ext1"_s << false;
    QTest::newRow("system") << u"mnt/ext1/system"_s << false;
    QTest::newRow("configuration") << u"mnt/ext1/system/config"_s << false;
    QTest::newRow("pictures") << u"mnt/ext1/Photo"_s << false;
    QTest::newRow("card that is not in") << u"mnt/.unplugged/sd"_s << true;
    QTest::newRow("USB storage that is not in") << u"mnt/.unplugged/usb"_s << true;
    QTest::newRow("locale") << u"devroot/share/locale"_s << false;
}

void tst_Samples::folders()
{
    QFETCH(QString, folder);
    QFETCH(bool, isEmpty);

    const QDir directory(skeleton() + folder);
    QVERIFY(directory.exists());
    QCOMPARE(directory.isEmpty(), isEmpty);
}

void tst_Samples::localeAliases()
{
    QCOMPARE(
        contentOf(skeleton() + u"devroot/share/locale/locale.alias"_s),
        QByteArray("en en_US.UTF-8\nde de_DE.UTF-8\nfr fr_FR.UTF-8\nes es_ES.UTF-8\nit it_IT.UTF-8\n"
                   "pl pl_PL.UTF-8\nuk uk_UA.UTF-8\nru ru_RU.UTF-8\nzh_CN zh_CN.UTF-8\nja ja_JP.UTF-8\n"));
}

void tst_Samples::language()
{
    QCOMPARE(contentOf(skeleton() + u"mnt/ext1/system/config/global.cfg"_s), QByteArray("language=en\n"));
}

QTEST_GUILESS_MAIN(tst_Samples)
#include "tst_samples.moc"
