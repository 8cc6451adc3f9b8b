// The date of a picture, and times as text.

#include "exif_builder.h"
#include "show_fixture.h"

#include <QScopeGuard>

using lindenreed::device::SdkCall;
using lindenreed::picture_stand::SlideshowModel;

class tst_SlideshowDates : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_show = std::make_unique<ShowFixture>(); }
    void cleanup() { m_show.reset(); }

    void timeString_data();
    void timeString();
    void createdOfThePosition();

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
        << QStringLiteral("%d %H:%M")
        << QDateTime::fromString(QStringLiteral("2024-05-03T22:04:09Z"), Qt::ISODate)
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

void tst_SlideshowDates::createdOfThePosition()
{
    const auto dated = [](const char *text) {
        return QByteArray::fromStdString(
            jpegFile(app1(ExifBuilder(ByteOrder::Little).text(ExifBuilder::Exif, 0x9003, text).segment())));
    };
    const QStringList paths = m_show->makePictures(2);
    QVERIFY(writeFile(paths.at(0), dated("2019:08:17 14:30:05")));
    QVERIFY(writeFile(paths.at(1), dated("2020:01:02 03:04:05")));
    SlideshowModel model;
    QVERIFY(!model.createdDateTime().isValid()); // no list yet
    model.initFromList(paths, 1);
    QCOMPARE(model.createdDateTime(), QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5)));
    model.nextImage();
    QCOMPARE(model.createdDateTime(), QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5)));

    // Read anew each time.
    QVERIFY(writeFile(paths.at(1), dated("2021:01:02 03:04:05")));
    QCOMPARE(model.property("created_datetime").toDateTime(), QDateTime(QDate(2021, 1, 2), QTime(3, 4, 5)));
    QVERIFY(QFile::remove(paths.at(1)));
    QVERIFY(!model.createdDateTime().isValid());

    model.initFromList({}, 1);
    QVERIFY(!model.createdDateTime().isValid());
    model.prevImage(); // to position -1
    QVERIFY(!model.createdDateTime().isValid());
}

QTEST_GUILESS_MAIN(tst_SlideshowDates)
#include "tst_slideshow_dates.moc"
