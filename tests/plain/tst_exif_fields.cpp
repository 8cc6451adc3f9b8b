// Which entries of EXIF data fill which fields.

#include "exif_field_table.h"
#include "exif_orders.h"

#include <algorithm>

using namespace TinyEXIF;

namespace {

/// Filled by more than one entry, or by one of several.
const ExifField others[] = {
    EXIF_FIELD(Gps, 0, Ratio, GPS.Latitude),
    EXIF_FIELD(Gps, 0, Ratio, GPS.Longitude),
    EXIF_FIELD(Exif, 0xA432, Ratio, Lens.FocalLengthMin),
    EXIF_FIELD(Exif, 0xA432, Ratio, Lens.FocalLengthMax),
    EXIF_FIELD(Exif, 0xA432, Ratio, Lens.FNumberAtFocalLengthMin),
    EXIF_FIELD(Exif, 0xA432, Ratio, Lens.FNumberAtFocalLengthMax),
};

/// The fields that are not as a new EXIFInfo has them.
std::vector<std::string> filled(const EXIFInfo &info)
{
    std::vector<std::string> names;
    const EXIFInfo cleared;
    const auto add = [&](const ExifField &field) {
        if (field.read(info) != field.read(cleared))
            names.emplace_back(field.name);
    };
    std::for_each(std::begin(exifFields), std::end(exifFields), add);
    std::for_each(std::begin(others), std::end(others), add);
    return names;
}

/// Adds the entry in its own format; returns how its value is shown.
std::string add(ExifBuilder &builder, const ExifField &field, ExifBuilder::Directory directory)
{
    switch (field.kind) {
    case ValueKind::Text:
        builder.text(directory, field.tag, std::string("some text\0", 10));
        return "some text";
    case ValueKind::Short:
        builder.shorts(directory, field.tag, {0x1234});
        return shown(0x1234);
    case ValueKind::LongOrShort:
        builder.longNumber(directory, field.tag, 0x89ABCDEF);
        return shown(0x89ABCDEF);
    case ValueKind::Ratio:
        builder.rationals(directory, field.tag, {3, 8});
        return shown(0.375);
    case ValueKind::Ratios:
        builder.rationals(directory, field.tag, {1, 1, 5, 2, 3, 8});
        return shown(EXIFInfo::GpsGroup::Triple{1, 2.5, 0.375});
    case ValueKind::Area:
        builder.shorts(directory, field.tag, {7, 8, 0x1234});
        return shown(std::vector<std::uint16_t>{7, 8, 0x1234});
    case ValueKind::Byte:
        builder.value(directory, field.tag, ExifBuilder::Byte, 1, std::string(1, '\1'));
        return shown(1);
    }
    return {};
}

bool accepts(ValueKind kind, unsigned format)
{
    switch (kind) {
    case ValueKind::Text:
        return format == ExifBuilder::Ascii;
    case ValueKind::Short:
    case ValueKind::Area:
        return format == ExifBuilder::Short;
    case ValueKind::LongOrShort:
        return format == ExifBuilder::Short || format == ExifBuilder::Long;
    case ValueKind::Ratio:
    case ValueKind::Ratios:
        return format == ExifBuilder::Rational || format == ExifBuilder::SignedRational;
    case ValueKind::Byte:
        return format == ExifBuilder::Byte;
    }
    return false;
}

} // namespace

class tst_ExifFields : public QObject
{
    Q_OBJECT

private slots:
    void cleared();
    void filledFromDirectory_data();
    void filledFromDirectory();
    void otherFormatOrNoCount_data() { filledFromDirectory_data(); }
    void otherFormatOrNoCount();
    void lastEntryCounts_data() { filledFromDirectory_data(); }
    void lastEntryCounts();
    void unknownTags_data();
    void unknownTags();
    void lensSpecification_data();
    void lensSpecification();
    void exposureIndexForSpeed_data();
    void exposureIndexForSpeed();
    void decimalDegrees_data();
    void decimalDegrees();
};

void tst_ExifFields::cleared()
{
    EXIFInfo info;
    for (const ExifField &field : exifFields) {
        const bool number = field.kind == ValueKind::Short || field.kind == ValueKind::LongOrShort
            || field.kind == ValueKind::Ratio || field.kind == ValueKind::Ratios
            || field.kind == ValueKind::Byte;
        constexpr double unset = std::numeric_limits<double>::max();
        std::string expected;
        if (number)
            expected = shown(field.directory == ExifBuilder::Gps ? unset : 0);
        if (field.kind == ValueKind::Ratios)
            expected = shown(EXIFInfo::GpsGroup::Triple{unset, unset, unset});
        QCOMPARE(field.read(info), expected);
    }
    for (const ExifField &field : others)
        QCOMPARE(field.read(info), shown(field.tag == 0 ? std::numeric_limits<double>::max() : 0));

    ExifBuilder builder(ByteOrder::Little);
    for (const ExifField &field : exifFields)
        add(builder, field, field.directory);
    builder.rationals(ExifBuilder::Exif, 0xA432, {1, 1, 2, 1, 3, 1, 4, 1});
    info.Fields = 1;
    QCOMPARE(parseSegment(info, builder.segment()), int(ParseSuccess));
    QCOMPARE(filled(info).size(), std::size(exifFields) + std::size(others));
    info.clear();
    QVERIFY(filled(info).empty());
    QCOMPARE(info.Fields, 0u);
}

void tst_ExifFields::filledFromDirectory_data()
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<int>("index");

    for (const ByteOrder order : byteOrders) {
        for (int i = 0; i < int(std::size(exifFields)); ++i)
            QTest::addRow("%s, %s", nameOf(order), exifFields[i].name) << order << i;
    }
}

void tst_ExifFields::filledFromDirectory()
{
    QFETCH(ByteOrder, order);
    QFETCH(int, index);

    const ExifField &field = exifFields[index];
    for (const ExifBuilder::Directory directory : {ExifBuilder::First, ExifBuilder::Exif, ExifBuilder::Gps}) {
        ExifBuilder builder(order);
        const std::string value = add(builder, field, directory);
        const ReadExif read = readSegment(builder.segment());
        QCOMPARE(read.result, int(ParseSuccess));
        // The first directory may hold what belongs to the Exif directory.
        const bool taken = directory == field.directory
            || (directory == ExifBuilder::First && field.directory == ExifBuilder::Exif);
        if (!taken) {
            QVERIFY(filled(read.info).empty());
            continue;
        }
        std::vector<std::string> expected = {field.name};
        if (field.directory == ExifBuilder::Gps && (field.tag == 2 || field.tag == 4))
            expected.emplace_back(field.tag == 2 ? "GPS.Latitude" : "GPS.Longitude");
        QCOMPARE(filled(read.info), expected);
        QCOMPARE(field.read(read.info), value);
    }
}

void tst_ExifFields::otherFormatOrNoCount()
{
    QFETCH(ByteOrder, order);
    QFETCH(int, index);

    const ExifField &field = exifFields[index];
    for (unsigned format = 0; format <= 13; ++format) {
        // Offset 0: bytes that are there.
        const std::uint32_t count = accepts(field.kind, format) ? 0 : 4;
        const std::string segment
            = ExifBuilder(order).raw(field.directory, field.tag, format, count, 0).segment();
        EXIFInfo info;
        QCOMPARE(parseSegment(info, segment), int(ParseSuccess));
        QVERIFY2(filled(info).empty(), std::to_string(format).c_str());

        // Nor is a value that is there touched.
        ExifBuilder before(order);
        const std::string value = add(before, field, field.directory);
        QCOMPARE(parseSegment(info, before.segment()), int(ParseSuccess));
        QCOMPARE(parseSegment(info, segment), int(ParseSuccess));
        QCOMPARE(field.read(info), value);
    }
}

void tst_ExifFields::lastEntryCounts()
{
    QFETCH(ByteOrder, order);
    QFETCH(int, index);

    const ExifField &field = exifFields[index];
    ExifBuilder builder(order);
    // A first one that is in range, and a third one of no format.
    const unsigned format = field.kind == ValueKind::Text                   ? ExifBuilder::Ascii
        : field.kind == ValueKind::Byte                                     ? ExifBuilder::Byte
        : field.kind == ValueKind::LongOrShort                              ? ExifBuilder::Long
        : field.kind == ValueKind::Ratio || field.kind == ValueKind::Ratios ? ExifBuilder::Rational
                                                                            : ExifBuilder::Short;
    builder.raw(field.directory, field.tag, format, 3, 8);
    const std::string value = add(builder, field, field.directory);
    builder.raw(field.directory, field.tag, 0, 3, 8);
    QCOMPARE(field.read(readSegment(builder.segment()).info), value);
}

void tst_ExifFields::unknownTags_data()
{
    bothOrders();
}

void tst_ExifFields::unknownTags()
{
    QFETCH(ByteOrder, order);

    for (const ExifBuilder::Directory directory : {ExifBuilder::First, ExifBuilder::Exif, ExifBuilder::Gps}) {
        ExifBuilder builder(order);
        for (const unsigned tag : {0x0000U, 0x0008U, 0x0100U, 0x0201U, 0x0202U, 0x02BCU, 0x9000U, 0x927CU,
                                   0x9286U, 0xA001U, 0xA005U, 0xC4A5U, 0xFFFFU})
            builder.text(directory, tag, std::string("DJI\0", 4)).shorts(directory, tag, {1});
        builder.text(directory, 0x927C, std::string(500, 'x')); // the maker's own notes
        const ReadExif read = readSegment(builder.segment());
        QCOMPARE(read.result, int(ParseSuccess));
        QVERIFY(filled(read.info).empty());
    }
}

void tst_ExifFields::lensSpecification_data()
{
    bothOrders();
}

void tst_ExifFields::lensSpecification()
{
    QFETCH(ByteOrder, order);

    ExifBuilder builder(order);
    builder.rationals(ExifBuilder::Exif, 0xA432, {24, 1, 70, 1, 28, 10, 0, 0});
    const EXIFInfo::LensGroup lens = readSegment(builder.segment()).info.Lens;
    QCOMPARE(lens.FocalLengthMin, 24.0);
    QCOMPARE(lens.FocalLengthMax, 70.0);
    QCOMPARE(lens.FNumberAtFocalLengthMin, 2.8);
    QCOMPARE(lens.FNumberAtFocalLengthMax, 0.0);

    builder = ExifBuilder(order);
    builder.rationals(ExifBuilder::Exif, 0xA432, {24, 1, 70, 1, 28, 10}); // one is missing
    QVERIFY(filled(readSegment(builder.segment()).info).empty());
}

void tst_ExifFields::exposureIndexForSpeed_data()
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<int>("speed"); // below 0: none
    QTest::addColumn<double>("index");
    QTest::addColumn<int>("expected");

    for (const ByteOrder order : byteOrders) {
        const auto row = [order](const char *name, int speed, double index, int expected) {
            QTest::addRow("%s, %s", nameOf(order), name) << order << speed << index << expected;
        };
        row("in place of the speed", -1, 200, 200);
        row("speed of 0", 0, 200, 200);
        row("speed", 100, 200, 100);
        row("the greatest", -1, 65535, 65535);
        row("too great", -1, 70000, 0);
        row("negative", -1, -200, 0);
        row("fraction", -1, 99.5, 99);
        row("none", -1, 0, 0);
    }
}

void tst_ExifFields::exposureIndexForSpeed()
{
    QFETCH(ByteOrder, order);
    QFETCH(int, speed);
    QFETCH(double, index);
    QFETCH(int, expected);

    ExifBuilder builder(order);
    if (speed >= 0)
        builder.shorts(ExifBuilder::Exif, 0x8827, {std::uint16_t(speed)});
    builder.rationals(ExifBuilder::Exif, 0xA215, {std::uint32_t(std::int32_t(index * 2)), 2},
                      ExifBuilder::SignedRational);
    QCOMPARE(int(readSegment(builder.segment()).info.ISOSpeedRatings), expected);

    // Behind it, the speed wins, be it 0.
    builder.shorts(ExifBuilder::Exif, 0x8827, {64});
    QCOMPARE(int(readSegment(builder.segment()).info.ISOSpeedRatings), 64);

    // As a whole number.
    builder = ExifBuilder(order);
    builder.shorts(ExifBuilder::Exif, 0xA215, {400});
    QCOMPARE(int(readSegment(builder.segment()).info.ISOSpeedRatings), 400);
}

void tst_ExifFields::decimalDegrees_data()
{
    QTest::addColumn<ByteOrder>("order");
    QTest::addColumn<QByteArray>("directions");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");

    for (const ByteOrder order : byteOrders) {
        const auto row = [order](const char *directions, double latitude, double longitude) {
            QTest::addRow("%s, %s", nameOf(order), directions)
                << order << QByteArray(directions) << latitude << longitude;
        };
        row("NE", 50.455, 30.5125);
        row("NW", 50.455, -30.5125);
        row("SE", -50.455, 30.5125);
        row("SW", -50.455, -30.5125);
        row("??", 50.455, 30.5125);
    }
}

void tst_ExifFields::decimalDegrees()
{
    QFETCH(ByteOrder, order);
    QFETCH(QByteArray, directions);
    QFETCH(double, latitude);
    QFETCH(double, longitude);

    ExifBuilder builder(order);
    builder.rationals(ExifBuilder::Gps, 2, {50, 1, 27, 1, 180, 10})
        .text(ExifBuilder::Gps, 1, {directions[0], '\0'})
        .rationals(ExifBuilder::Gps, 4, {30, 1, 305, 10, 15, 1})
        .text(ExifBuilder::Gps, 3, {directions[1], '\0'});
    const EXIFInfo info = readSegment(builder.segment()).info;
    QCOMPARE(info.GPS.Latitude, latitude);
    QCOMPARE(info.GPS.Longitude, longitude);

    // Fewer parts are no coordinate.
    ExifBuilder two(order);
    two.rationals(ExifBuilder::Gps, 2, {50, 1, 27, 1}).rationals(ExifBuilder::Gps, 4, {30, 1});
    QVERIFY(filled(readSegment(two.segment()).info).empty());
}

QTEST_APPLESS_MAIN(tst_ExifFields)
#include "tst_exif_fields.moc"
