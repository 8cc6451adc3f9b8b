// The date of a picture, and times as text.

#include "show_fixture.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <libexif/exif-data.h>

#include <cstdlib>
#include <cstring>

#include <sys/stat.h>

using lindenreed::device::SdkCall;
using lindenreed::picture_stand::SlideshowModel;

namespace {

/// The smallest JPEG that libexif reads a date from.
QByteArray jpegWithDate(const char *date, ExifIfd directory = EXIF_IFD_EXIF,
                        ExifTag tag = EXIF_TAG_DATE_TIME_ORIGINAL)
{
    ExifData *data = exif_data_new();
    exif_data_set_byte_order(data, EXIF_BYTE_ORDER_INTEL);
    ExifEntry *entry = exif_entry_new();
    exif_content_add_entry(data->ifd[directory], entry);
    entry->tag = tag;
    entry->format = EXIF_FORMAT_ASCII;
    entry->components = std::strlen(date) + 1;
    entry->size = unsigned(entry->components);
    ExifMem *memory = exif_mem_new_default();
    entry->data = static_cast<unsigned char *>(exif_mem_alloc(memory, ExifLong(entry->size)));
    std::memcpy(entry->data, date, entry->size);
    unsigned char *bytes = nullptr;
    unsigned int length = 0;
    exif_data_save_data(data, &bytes, &length);
    QByteArray segment(reinterpret_cast<const char *>(bytes), int(length));
    std::free(bytes);
    exif_entry_unref(entry);
    exif_mem_unref(memory);
    exif_data_unref(data);

    QByteArray file("\xff\xd8\xff\xe1", 4);
    const auto size = quint16(segment.size() + 2);
    file.append(char(size >> 8)).append(char(size & 0xff)).append(segment);
    return file.append("\xff\xd9", 2);
}

} // namespace

class tst_SlideshowDates : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_show = std::make_unique<ShowFixture>(); }
    void cleanup() { m_show.reset(); }

    void timeString_data();
    void timeString();
    void createdFromExif_data();
    void createdFromExif();
    void createdFromAnotherEntry_data();
    void createdFromAnotherEntry();
    void createdIsReadAnew();
    void createdFromAccessTime();
    void createdOfWhatIsNoFile();
    void createdOfFifo();

private:
    std::unique_ptr<ShowFixture> m_show;
};

void tst_SlideshowDates::timeString_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QDateTime>("time"); // where it is in UTC, the zone has changed since the last row
    QTest::addColumn<QString>("text");

    const QDateTime morning(QDate(2024, 5, 3), QTime(7, 4, 9));
    QTest::newRow("clock") << QStringLiteral("%H:%M") << morning << QStringLiteral("07:04");
    QTest::newRow("date") << QStringLiteral("%b %d, %Y") << morning << QStringLiteral("May 03, 2024");
    QTest::newRow("other letters pass through")
        << QStringLiteral("ü %H") << morning << QStringLiteral("ü 07");
    QTest::newRow("empty format") << QString() << morning << QString();
    QTest::newRow("no time at all: the epoch")
        << QStringLiteral("%Y") << QDateTime() << QStringLiteral("1970");
    QTest::newRow("another zone than before")
        << QStringLiteral("%d %H:%M") << QDateTime(QDate(2024, 5, 3), QTime(22, 4, 9), Qt::UTC)
        << QStringLiteral("04 07:04");
    QTest::newRow("cut at 127 bytes") << QString(200, u'x') << morning << QString(127, u'x');
}

void tst_SlideshowDates::timeString()
{
    QFETCH(QString, format);
    QFETCH(QDateTime, time);
    QFETCH(QString, text);

    SlideshowModel model;
    model.getTimeString(QStringLiteral("%H"), time); // whoever remembers a zone remembers this one
    const QByteArray zone = qgetenv("TZ");
    if (time.timeSpec() == Qt::UTC)
        qputenv("TZ", "JST-9"); // Tokyo's, written so that no list of zones is needed
    const auto restore = qScopeGuard([&zone] { qputenv("TZ", zone); });
    m_show->device.forgetCalls();
    QCOMPARE(model.getTimeString(format, time), text);

    const QList<SdkCall> calls = m_show->device.calls({"GetLangTime"});
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().arguments, (QByteArrayList{"128", format.toUtf8(), "0"}));
}

void tst_SlideshowDates::createdFromExif_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QDateTime>("expected"); // invalid: the access time

    QTest::newRow("as cameras write it")
        << QByteArray("2019:08:17 14:30:05") << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5));
    QTest::newRow("as ISO writes it")
        << QByteArray("2019-08-17T14:30:05") << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5));
    QTest::newRow("any separators") << QByteArray("2019/08.17 14:30:05")
                                    << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5));
    QTest::newRow("a day alone") << QByteArray("2019:08:17") << QDateTime(QDate(2019, 8, 17), QTime(0, 0));
    QTest::newRow("without seconds") << QByteArray("2019:08:17 14:30")
                                     << QDateTime(QDate(2019, 8, 17), QTime(14, 30));
    QTest::newRow("with a fraction") << QByteArray("2019:08:17 14:30:05.25")
                                     << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5, 250));
    QTest::newRow("in UTC") << QByteArray("2019:08:17 14:30:05Z")
                            << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5), Qt::UTC);
    QTest::newRow("with an offset") << QByteArray("2019:08:17 14:30:05+02:00")
                                    << QDateTime(QDate(2019, 8, 17), QTime(12, 30, 5), Qt::UTC);
    QTest::newRow("midnight as 24") << QByteArray("2019:08:17 24:00:00")
                                    << QDateTime(QDate(2019, 8, 18), QTime(0, 0));
    QTest::newRow("no such hour") << QByteArray("2019:08:17 25:00:00") << QDateTime();
    QTest::newRow("blanks, as cameras without a clock write it")
        << QByteArray("    :  :     :  :  ") << QDateTime();
    QTest::newRow("empty") << QByteArray() << QDateTime();
    QTest::newRow("no such day") << QByteArray("2019:02:31 14:30:05") << QDateTime();
    QTest::newRow("a camera without a clock") << QByteArray("0000:00:00 00:00:00") << QDateTime();
    QTest::newRow("words") << QByteArray("last summer, maybe!") << QDateTime();
}

void tst_SlideshowDates::createdFromExif()
{
    QFETCH(QByteArray, text);
    QFETCH(QDateTime, expected);

    const QString path = m_show->folder.filePath(QStringLiteral("dated.jpg"));
    QVERIFY(writeFile(path, jpegWithDate(text.constData())));
    const QDateTime accessed(QDate(2001, 2, 3), QTime(4, 5, 6));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(accessed, QFileDevice::FileAccessTime));
    file.close();

    SlideshowModel model;
    model.initFromList({path}, 1);
    const QDateTime created = model.createdDateTime();
    if (expected.isValid())
        QCOMPARE(created, expected);
    else
        QVERIFY(created == accessed || created == QFileInfo(path).fileTime(QFileDevice::FileAccessTime));
}

void tst_SlideshowDates::createdFromAnotherEntry_data()
{
    QTest::addColumn<int>("directory");
    QTest::addColumn<int>("tag");

    QTest::newRow("when it was taken, in the main directory")
        << int(EXIF_IFD_0) << int(EXIF_TAG_DATE_TIME_ORIGINAL);
    QTest::newRow("when the file was changed, in the main directory")
        << int(EXIF_IFD_0) << int(EXIF_TAG_DATE_TIME);
    QTest::newRow("when it was digitised") << int(EXIF_IFD_EXIF) << int(EXIF_TAG_DATE_TIME_DIGITIZED);
}

void tst_SlideshowDates::createdFromAnotherEntry()
{
    QFETCH(int, directory);
    QFETCH(int, tag);

    // Only the date of the shot in its own directory counts.
    const QString path = m_show->folder.filePath(QStringLiteral("dated.jpg"));
    QVERIFY(writeFile(path, jpegWithDate("2019:08:17 14:30:05", ExifIfd(directory), ExifTag(tag))));
    SlideshowModel model;
    model.initFromList({path}, 1);
    const QDateTime created = model.createdDateTime();
    QCOMPARE(created, QFileInfo(path).fileTime(QFileDevice::FileAccessTime));
}

void tst_SlideshowDates::createdIsReadAnew()
{
    const QString path = m_show->folder.filePath(QStringLiteral("dated.jpg"));
    QVERIFY(writeFile(path, jpegWithDate("2019:08:17 14:30:05")));
    SlideshowModel model;
    model.initFromList({path}, 1);
    QCOMPARE(model.createdDateTime(), QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5)));
    QVERIFY(writeFile(path, jpegWithDate("2020:01:02 03:04:05")));
    QCOMPARE(model.createdDateTime(), QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5)));
}

void tst_SlideshowDates::createdFromAccessTime()
{
    const QString path = m_show->makePictures(1).first();
    const QDateTime accessed(QDate(2001, 2, 3), QTime(4, 5, 6));
    const QDateTime modified(QDate(2011, 2, 3), QTime(4, 5, 6));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
    QVERIFY(file.setFileTime(accessed, QFileDevice::FileAccessTime));
    file.close();
    SlideshowModel model;
    model.initFromList({path}, 1);
    // Looking for EXIF data may itself move the access time; it is that time all the same.
    const QDateTime created = model.createdDateTime();
    QVERIFY(created == accessed || created == QFileInfo(path).fileTime(QFileDevice::FileAccessTime));
    QVERIFY(created != modified);
}

void tst_SlideshowDates::createdOfWhatIsNoFile()
{
    const QString path = m_show->makePictures(1).first();
    SlideshowModel model;
    model.initFromList({path}, 1);
    QFile::remove(path);
    QVERIFY(!model.createdDateTime().isValid());
}

void tst_SlideshowDates::createdOfFifo()
{
    // Opening it would wait for a writer for ever.
    const QString path = m_show->folder.filePath(QStringLiteral("fifo.jpg"));
    QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    SlideshowModel model;
    model.initFromList({path}, 1);
    QCOMPARE(model.currentImage(), path);
    QCOMPARE(model.createdDateTime(), QFileInfo(path).fileTime(QFileDevice::FileAccessTime));
}

QTEST_GUILESS_MAIN(tst_SlideshowDates)
#include "tst_slideshow_dates.moc"
