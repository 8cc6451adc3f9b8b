// The date of the shot as the EXIF reader and as libexif read it: whichever of the two gives it, it is the
// same.

#include "exif_orders.h"

#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

#include <libexif/exif-data.h>

#include <array>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>

using namespace TinyEXIF;

namespace {

/// What libexif says, without the blanks at the end, which the reader drops.
std::string dateByLibrary(const std::string &path)
{
    const std::unique_ptr<ExifData, void (*)(ExifData *)> data(exif_data_new_from_file(path.c_str()),
                                                               &exif_data_unref);
    ExifEntry *entry
        = data ? exif_content_get_entry(data->ifd[EXIF_IFD_EXIF], EXIF_TAG_DATE_TIME_ORIGINAL) : nullptr;
    if (!entry)
        return {};
    std::array<char, 1024> buffer = {};
    exif_entry_get_value(entry, buffer.data(), buffer.size());
    const std::string text = buffer.data();
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string dateByReader(const std::string &path)
{
    std::ifstream stream(path, std::ios::binary);
    return EXIFInfo(stream).DateTimeOriginal;
}

struct Text
{
    const char *name;
    std::string bytes; ///< as counted
    std::string expected;
};

const Text texts[] = {
    {"date", date + '\0', date},
    {"date without zero", date, date},
    {"blanks behind the date", date + std::string("   \0", 4), date},
    {"date and more", date + std::string(".25+02:00\0", 10), date + ".25+02:00"},
    {"zero inside",
     std::string("2024:05:31\0"
                 "18:20:00\0",
                 20),
     "2024:05:31"},
    {"no clock", std::string("0000:00:00 00:00:00\0", 20), "0000:00:00 00:00:00"},
    {"long", std::string(300, 'x') + '\0', std::string(300, 'x')},
};

/// Where the entry stands among others.
const std::pair<const char *, std::function<std::string(ByteOrder, const std::string &)>> shapes[] = {
    {"alone",
     [](ByteOrder order, const std::string &text) {
         return ExifBuilder(order).text(ExifBuilder::Exif, dateTag, text).segment();
     }},
    {"between other texts",
     [](ByteOrder order, const std::string &text) {
         return ExifBuilder(order)
             .text(ExifBuilder::First, 0x010F, std::string("maker\0", 6))
             .text(ExifBuilder::First, 0x0132, std::string("2001:01:01 01:01:01\0", 20))
             .text(ExifBuilder::Exif, dateTag, text)
             .text(ExifBuilder::Exif, 0x9004, std::string("2002:02:02 02:02:02\0", 20))
             .segment();
     }},
    {"between numbers, with GPS data",
     [](ByteOrder order, const std::string &text) {
         return ExifBuilder(order)
             .shorts(ExifBuilder::First, 0x0112, {6})
             .rationals(ExifBuilder::First, 0x011A, {72, 1})
             .rationals(ExifBuilder::Exif, 0x829A, {1, 60})
             .text(ExifBuilder::Exif, dateTag, text)
             .shorts(ExifBuilder::Exif, 0x9209, {1})
             .text(ExifBuilder::Gps, 1, std::string("N\0", 2))
             .rationals(ExifBuilder::Gps, 2, {50, 1, 27, 1, 0, 1})
             .segment();
     }},
    {"behind notes of the maker",
     [](ByteOrder order, const std::string &text) {
         return ExifBuilder(order)
             .value(ExifBuilder::Exif, 0x927C, ExifBuilder::Undefined, 5000, std::string(5000, 'n'))
             .text(ExifBuilder::Exif, dateTag, text)
             .segment();
     }},
    {"with bytes behind",
     [](ByteOrder order, const std::string &text) {
         return ExifBuilder(order).text(ExifBuilder::Exif, dateTag, text).segment() + std::string(999, 'p');
     }},
};

/// What stands before and behind the segment in the file.
const std::array<const char *, 5> files
    = {"alone", "behind JFIF", "behind fill bytes", "before XMP", "before the same in APP2"};

std::string fileOf(std::size_t kind, const std::string &segment)
{
    const std::string jfif = jpegSegment(0xE0, std::string("JFIF\0\1\1\0\0\1\0\1\0\0", 14));
    const std::string table = jpegSegment(0xDB, std::string(65, '\1'));
    switch (kind) {
    case 0:
        return jpegFile(app1(segment));
    case 1:
        return jpegFile(jfif + app1(segment) + table);
    case 2:
        return jpegFile(std::string(3, '\xFF') + app1(segment));
    case 3:
        return jpegFile(app1(segment) + app1("http://metadata/") + table);
    default:
        return jpegFile(app1(segment) + jpegSegment(0xE2, segment) + jfif);
    }
}

} // namespace

class tst_ExifAgreement : public QObject
{
    Q_OBJECT

private slots:
    void generated_data();
    void generated();
    void samples();
};

void tst_ExifAgreement::generated_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("expected");

    for (const ByteOrder order : byteOrders) {
        for (const Text &text : texts) {
            for (const auto &[shape, segment] : shapes) {
                for (std::size_t kind = 0; kind < files.size(); ++kind) {
                    QTest::addRow("%s, %s, %s, %s", nameOf(order), text.name, shape, files[kind])
                        << QByteArray::fromStdString(fileOf(kind, segment(order, text.bytes)))
                        << QByteArray::fromStdString(text.expected);
                }
            }
        }
    }
}

void tst_ExifAgreement::generated()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, expected);

    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("picture.jpg")).toStdString();
    std::ofstream(path, std::ios::binary) << file.toStdString();
    QCOMPARE(QByteArray::fromStdString(dateByReader(path)), expected);
    QCOMPARE(QByteArray::fromStdString(dateByLibrary(path)), expected);
}

void tst_ExifAgreement::samples()
{
    // Pictures of real cameras: a folder that is not part of the sources.
    const QString folder = qEnvironmentVariable("SLATE_EXIF_SAMPLES");
    if (folder.isEmpty())
        QSKIP("SLATE_EXIF_SAMPLES names no folder of pictures");

    int dated = 0;
    QStringList different;
    QDirIterator pictures(folder, {QStringLiteral("*.jpg"), QStringLiteral("*.jpeg")}, QDir::Files,
                          QDirIterator::Subdirectories);
    while (pictures.hasNext()) {
        const std::string path = QFile::encodeName(pictures.next()).toStdString();
        const std::string byLibrary = dateByLibrary(path);
        if (byLibrary.empty())
            continue;
        ++dated;
        const std::string byReader = dateByReader(path);
        if (byReader != byLibrary)
            different.append(QStringLiteral("%1: '%2', not '%3'")
                                 .arg(pictures.fileName(), QString::fromStdString(byReader),
                                      QString::fromStdString(byLibrary)));
    }
    QVERIFY2(different.isEmpty(), qPrintable(different.join(u'\n')));
    QVERIFY(dated > 0);
    qInfo("%d pictures with a date", dated);
}

QTEST_APPLESS_MAIN(tst_ExifAgreement)
#include "tst_exif_agreement.moc"
