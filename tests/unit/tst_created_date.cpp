// When a picture was taken: which of the three sources answers, and what it takes for a date.

#include "created_date.h"
#include "exif_builder.h"
#include "exif_info.h"
#include "obeyed_permissions.h"
#include "special_files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

#include <libexif/exif-data.h>

#include <fstream>
#include <memory>

#include <sys/statvfs.h>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::createdDate;

namespace {

constexpr unsigned dateTime = 0x0132; ///< of the last change
constexpr unsigned dateTimeOriginal = 0x9003;
constexpr unsigned dateTimeDigitized = 0x9004;
constexpr unsigned placeDirectory = 0x8825;

const std::string august = "2019:08:17 14:30:05";
const QDateTime inAugust(QDate(2019, 8, 17), QTime(14, 30, 5));
const QDateTime accessedBefore(QDate(2001, 2, 3), QTime(4, 5, 6));

std::string segmentWith(const std::string &date, ExifBuilder::Directory directory = ExifBuilder::Exif,
                        unsigned tag = dateTimeOriginal, ByteOrder order = ByteOrder::Little)
{
    return ExifBuilder(order).text(directory, tag, date + '\0').segment();
}

std::string fileWith(const std::string &date)
{
    return jpegFile(app1(segmentWith(date)));
}

/// A segment that libexif stops at and our reader steps over.
std::string foreignSegment()
{
    return jpegSegment(0xE3, "of a maker's own");
}

bool libexifKnows(const QString &path)
{
    const std::unique_ptr<ExifData, void (*)(ExifData *)> data(
        exif_data_new_from_file(QFile::encodeName(path).constData()), &exif_data_unref);
    return data && exif_content_get_entry(data->ifd[EXIF_IFD_EXIF], EXIF_TAG_DATE_TIME_ORIGINAL);
}

bool ownReaderKnows(const QString &path)
{
    std::ifstream stream(QFile::encodeName(path).constData(), std::ios::binary);
    const TinyEXIF::EXIFInfo info(stream);
    return info.Fields != 0 && !info.DateTimeOriginal.empty();
}

} // namespace

class tst_CreatedDate : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_folder.reset(); }

    void texts_data();
    void texts();
    void sources_data();
    void sources();
    void endOfReading_data();
    void endOfReading();
    void otherDates_data();
    void otherDates();
    void accessTimeOfBefore();
    void accessTimeInAFolderForReadingOnly();
    void fileWithoutPermission();
    void missingFile();
    void whatIsNoRegularFile_data();
    void whatIsNoRegularFile();
    void linkToAPicture();
    void nameInAnotherScript();

private:
    /// Last read long before it was last changed: any access would move the time of access.
    QString save(const std::string &contents, const QString &name = u"picture.jpg"_s) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_CreatedDate::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_folder = std::make_unique<QTemporaryDir>();
}

QString tst_CreatedDate::save(const std::string &contents, const QString &name) const
{
    const QString path = m_folder->filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(contents.data(), qint64(contents.size())) != qint64(contents.size()) || !file.flush()
        || !file.setFileTime(QDateTime(QDate(2011, 2, 3), QTime(4, 5, 6)), QFileDevice::FileModificationTime)
        || !file.setFileTime(accessedBefore, QFileDevice::FileAccessTime))
        qFatal("%s cannot be written", qPrintable(path));
    return path;
}

void tst_CreatedDate::texts_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<QDateTime>("expected"); // invalid: no date

    const QDateTime day(QDate(2019, 8, 17), QTime(0, 0));
    QTest::newRow("as cameras write it") << august << inAugust;
    QTest::newRow("as ISO writes it") << std::string("2019-08-17T14:30:05") << inAugust;
    QTest::newRow("any separators") << std::string("2019/08.17 14:30:05") << inAugust;
    QTest::newRow("letters are no separators") << std::string("2019x08x17 14:30:05") << QDateTime();
    QTest::newRow("no separators") << std::string("20190817 143005") << QDateTime();
    QTest::newRow("a day alone") << std::string("2019:08:17") << day;
    QTest::newRow("without seconds") << std::string("2019:08:17 14:30") << inAugust.addSecs(-5);
    QTest::newRow("with a fraction") << std::string("2019:08:17 14:30:05.25") << inAugust.addMSecs(250);
    QTest::newRow("in UTC") << std::string("2019:08:17 14:30:05Z")
                            << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5), QTimeZone::utc());
    QTest::newRow("with an offset") << std::string("2019:08:17 14:30:05+02:00")
                                    << QDateTime(QDate(2019, 8, 17), QTime(12, 30, 5), QTimeZone::utc());
    QTest::newRow("midnight as 24") << std::string("2019:08:17 24:00:00") << day.addDays(1);
    QTest::newRow("trailing blanks") << august + "   " << inAugust;
    QTest::newRow("no such hour") << std::string("2019:08:17 25:00:00") << QDateTime();
    QTest::newRow("no such day") << std::string("2019:02:31 14:30:05") << QDateTime();
    QTest::newRow("no such month") << std::string("2019:13:01 14:30:05") << QDateTime();
    QTest::newRow("a camera without a clock") << std::string("0000:00:00 00:00:00") << QDateTime();
    QTest::newRow("blanks, which also say so") << std::string("    :  :     :  :  ") << QDateTime();
    QTest::newRow("nothing but blanks") << std::string(19, ' ') << QDateTime();
    QTest::newRow("empty") << std::string() << QDateTime();
    QTest::newRow("words") << std::string("last summer, maybe!") << QDateTime();
    QTest::newRow("more than fits the buffer") << august + std::string(3000, 'x') << QDateTime();
    QTest::newRow("bytes that are no text") << std::string("\xff\xfe\x80 17 14:30:05") << QDateTime();
}

void tst_CreatedDate::texts()
{
    QFETCH(std::string, text);
    QFETCH(QDateTime, expected);

    const QDateTime created = createdDate(save(fileWith(text)));
    QCOMPARE(created, expected.isValid() ? expected : accessedBefore);
    if (expected.timeSpec() == Qt::LocalTime)
        QCOMPARE(created.timeSpec(), Qt::LocalTime);
    // The other reader takes the same text for the same date.
    QCOMPARE(createdDate(save(jpegFile(foreignSegment() + app1(segmentWith(text))))), created);
}

void tst_CreatedDate::sources_data()
{
    QTest::addColumn<std::string>("contents");
    QTest::addColumn<bool>("libexif"); // finds an entry
    QTest::addColumn<bool>("own");
    QTest::addColumn<QDateTime>("expected");

    const std::string later = "2020:01:02 03:04:05";
    const QDateTime inJanuary(QDate(2020, 1, 2), QTime(3, 4, 5));
    QTest::newRow("both") << fileWith(august) << true << true << inAugust;
    QTest::newRow("most significant byte first")
        << jpegFile(app1(segmentWith(august, ExifBuilder::Exif, dateTimeOriginal, ByteOrder::Big))) << true
        << true << inAugust;
    QTest::newRow("both, with different dates: libexif comes first")
        << jpegFile(app1(segmentWith(august)) + app1(segmentWith(later))) << true << true << inAugust;
    QTest::newRow("libexif alone, where the place was written to nowhere")
        << jpegFile(app1(ExifBuilder(ByteOrder::Little)
                             .text(ExifBuilder::Exif, dateTimeOriginal, august + '\0')
                             .longNumber(ExifBuilder::First, placeDirectory, 0)
                             .segment()))
        << true << false << inAugust;
    QTest::newRow("ours alone, behind a segment that libexif does not know")
        << jpegFile(foreignSegment() + app1(segmentWith(august))) << false << true << inAugust;
    QTest::newRow("ours alone, in the first directory")
        << jpegFile(app1(segmentWith(august, ExifBuilder::First))) << false << true << inAugust;
    QTest::newRow("ours, where libexif has no date but an entry")
        << jpegFile(app1(segmentWith("0000:00:00 00:00:00")) + app1(segmentWith(later))) << true << true
        << inJanuary;
    QTest::newRow("ours, where libexif keeps the blanks")
        << fileWith(august + "  ") << true << true << inAugust;
    QTest::newRow("a directory beyond its segment")
        << jpegFile(app1(segmentWith(august).substr(0, 40))) << false << false << accessedBefore;
    ExifBuilder beyond(ByteOrder::Little);
    beyond.text(ExifBuilder::First, dateTimeOriginal, august + '\0').begin(ExifBuilder::Exif);
    QTest::newRow("a date in the first directory, and a second one that ends beyond the segment")
        << jpegFile(
               app1(withNumber(beyond.segment(), beyond.order(), beyond.offset(ExifBuilder::Exif), 1000, 2)))
        << false << false << accessedBefore;
    QTest::newRow("JPEG without EXIF") << jpegFile(foreignSegment()) << false << false << accessedBefore;
    QTest::newRow("XMP alone") << jpegFile(app1("http://ns.adobe.com/xap/1.0/")) << false << false
                               << accessedBefore;
    QTest::newRow("no picture at all") << std::string("words") << false << false << accessedBefore;
    QTest::newRow("empty file") << std::string() << false << false << accessedBefore;
}

void tst_CreatedDate::sources()
{
    QFETCH(std::string, contents);
    QFETCH(bool, libexif);
    QFETCH(bool, own);
    QFETCH(QDateTime, expected);

    const QString path = save(contents);
    QCOMPARE(createdDate(path), expected);
    QCOMPARE(libexifKnows(path), libexif);
    QCOMPARE(ownReaderKnows(path), own);
}

void tst_CreatedDate::endOfReading_data()
{
    QTest::addColumn<std::string>("contents");
    QTest::addColumn<QDateTime>("expected");

    // Behind fill bytes, of which libexif takes any number, and behind a segment that libexif stops at. Each
    // stands for what only one of the two may still read.
    const std::string start = "\xFF\xD8";
    const std::string dated = app1(segmentWith(august)); // the date is the last of it
    const std::size_t most = std::size_t(16) * 1024 * 1024;
    const std::string fill(most - start.size() - dated.size(), '\xFF');
    QTest::newRow("libexif: the last bytes that are read") << start + fill + dated << inAugust;
    QTest::newRow("libexif: one byte beyond") << start + fill + '\xFF' + dated << accessedBefore;
    QTest::newRow("libexif: many bytes beyond") << start + fill + fill + dated << accessedBefore;
    const std::string ours = start + foreignSegment();
    QTest::newRow("ours: fewer fill bytes than are read")
        << ours + std::string(990'000, '\xFF') + dated << inAugust;
    QTest::newRow("ours: more of them") << ours + std::string(1'000'000, '\xFF') + dated << accessedBefore;
}

void tst_CreatedDate::endOfReading()
{
    QFETCH(std::string, contents);
    QFETCH(QDateTime, expected);

    QCOMPARE(createdDate(save(contents)), expected);
}

void tst_CreatedDate::otherDates_data()
{
    QTest::addColumn<int>("directory");
    QTest::addColumn<unsigned>("tag");

    QTest::newRow("when the file was changed") << int(ExifBuilder::First) << dateTime;
    QTest::newRow("when it was digitised") << int(ExifBuilder::Exif) << dateTimeDigitized;
}

void tst_CreatedDate::otherDates()
{
    QFETCH(int, directory);
    QFETCH(unsigned, tag);

    // Only the date of the shot counts.
    const QString path = save(jpegFile(app1(segmentWith(august, ExifBuilder::Directory(directory), tag))));
    QCOMPARE(createdDate(path), accessedBefore);
}

void tst_CreatedDate::accessTimeOfBefore()
{
    const QString path = save(jpegFile(std::string()));
    QCOMPARE(createdDate(path), accessedBefore);
    // Whatever has read the file since is told at the next time, be it ourselves.
    QCOMPARE(createdDate(path), QFileInfo(path).fileTime(QFileDevice::FileAccessTime));
}

void tst_CreatedDate::accessTimeInAFolderForReadingOnly()
{
    // Everything outside the device is for reading only.
    const QString path = QCoreApplication::applicationFilePath();
    struct statvfs status = {};
    QCOMPARE(statvfs(QFile::encodeName(path).constData(), &status), 0);
    QVERIFY(status.f_flag & ST_RDONLY);
    const QDateTime before = QFileInfo(path).fileTime(QFileDevice::FileAccessTime);
    QCOMPARE(createdDate(path), before);
    QCOMPARE(createdDate(path), before);
}

void tst_CreatedDate::fileWithoutPermission()
{
    const QString path = save(fileWith(august));
    QVERIFY(QFile::setPermissions(path, {}));
    const ObeyedPermissions obeyed;
    QCOMPARE(createdDate(path), accessedBefore);
}

void tst_CreatedDate::missingFile()
{
    QVERIFY(!createdDate(m_folder->filePath(u"missing.jpg"_s)).isValid());
    QVERIFY(!createdDate(QString()).isValid());
}

void tst_CreatedDate::whatIsNoRegularFile_data()
{
    QTest::addColumn<QByteArray>("kind");

    for (const QByteArray &kind : special_files::kinds)
        QTest::newRow(kind) << kind;
}

void tst_CreatedDate::whatIsNoRegularFile()
{
    QFETCH(QByteArray, kind);

    const QString path = special_files::make(kind, m_folder->filePath(u"special.jpg"_s));
    QVERIFY(!path.isEmpty());
    const QDateTime before = QFileInfo(path).fileTime(QFileDevice::FileAccessTime);
    const OpenCount opened(path);
    QCOMPARE(createdDate(path), before);
    QCOMPARE(opened.get(), 0);
}

void tst_CreatedDate::linkToAPicture()
{
    const QString link = m_folder->filePath(u"link.jpg"_s);
    QVERIFY(QFile::link(save(fileWith(august)), link));
    const OpenCount opened(link);
    QCOMPARE(createdDate(link), inAugust);
    QVERIFY(opened.get() > 0);
}

void tst_CreatedDate::nameInAnotherScript()
{
    QCOMPARE(createdDate(save(fileWith(august), u"50% фото é.jpg"_s)), inAugust);
    QCOMPARE(createdDate(save(jpegFile(foreignSegment() + app1(segmentWith(august))), u"写真.jpg"_s)),
             inAugust);
}

QTEST_GUILESS_MAIN(tst_CreatedDate)
#include "tst_created_date.moc"
