// Files above 2 GiB and dates after 2038: what 32-bit numbers do not hold.

#include "created_date.h"
#include "exif_builder.h"
#include "picture_reader.h"
#include "regular_file.h"
#include "slideshow_model.h"

#include <slateview_testing.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

#include <ctime>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>

using lindenreed::device::DeviceForTest;
using lindenreed::picture_stand::createdDate;
using lindenreed::picture_stand::openRegularFile;
using lindenreed::picture_stand::readImage;
using lindenreed::picture_stand::SlideshowModel;

namespace {

constexpr qint64 large = (qint64(5) << 30) + 7; // more than 32 bits hold, too
const QDateTime late(QDate(2041, 7, 9), QTime(10, 11, 12));

} // namespace

class tst_LargeNumbers : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void largeFile();
    void pictureInLargeFile();
    void lateShot();
    void lateAccess();
    void lateTimeAsText();

private:
    /// A sparse file that begins with `bytes`; null if it cannot be made.
    QString makeLarge(const QByteArray &bytes) const;

    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_LargeNumbers::init()
{
    m_device = std::make_unique<DeviceForTest>();
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QString tst_LargeNumbers::makeLarge(const QByteArray &bytes) const
{
    QFile file(m_folder->filePath(QStringLiteral("large.jpg")));
    const bool made
        = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.resize(large);
    return made ? file.fileName() : QString();
}

void tst_LargeNumbers::largeFile()
{
    const QString path = makeLarge("start");
    QVERIFY(!path.isEmpty());
    QFile file(path);
    QVERIFY(openRegularFile(file));
    QCOMPARE(file.size(), large);
    QVERIFY(file.seek(large - 1));
    QCOMPARE(file.read(2), QByteArray(1, '\0'));
    // No picture, but a file like any other, with a date.
    QVERIFY(createdDate(path).isValid());
    QVERIFY(readImage(path)->isNull());
}

void tst_LargeNumbers::pictureInLargeFile()
{
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "JPEG"));
    const QString path = makeLarge(bytes);
    QVERIFY(!path.isEmpty());
    QCOMPARE(readImage(path)->size(), picture.size());
}

void tst_LargeNumbers::lateShot()
{
    const std::string segment
        = ExifBuilder(ByteOrder::Little).text(ExifBuilder::Exif, 0x9003, "2041:07:09 10:11:12").segment();
    const QString path = makeLarge(QByteArray::fromStdString(jpegFile(app1(segment))));
    QVERIFY(!path.isEmpty());
    QCOMPARE(createdDate(path), late);
}

void tst_LargeNumbers::lateAccess()
{
    const QString path = makeLarge("no picture");
    QVERIFY(!path.isEmpty());
    const timespec time{.tv_sec = std::time_t(late.toSecsSinceEpoch()), .tv_nsec = 0};
    QCOMPARE(qint64(time.tv_sec), late.toSecsSinceEpoch());
    const timespec times[] = {time, time};
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    QCOMPARE(createdDate(path), late);
}

void tst_LargeNumbers::lateTimeAsText()
{
    SlideshowModel model;
    QCOMPARE(model.getTimeString(QStringLiteral("%d %b %Y, %H:%M"), late),
             QStringLiteral("09 Jul 2041, 10:11"));
}

QTEST_GUILESS_MAIN(tst_LargeNumbers)
#include "tst_large_numbers.moc"
