// Writes what fuzzing of the EXIF reader begins with: make_exif_seeds FOLDER.

#include "exif_builder.h"
#include "seed_files.h"

namespace {

/// Every entry that fills a field, in its own format.
ExifBuilder everyField(ByteOrder order)
{
    ExifBuilder builder(order);
    for (const unsigned tag : {0x010E, 0x010F, 0x0110, 0x0131, 0x0132, 0x8298})
        builder.text(ExifBuilder::First, tag, std::string("a text  \0", 9));
    for (const unsigned tag : {0x0102, 0x0112, 0x0128})
        builder.shorts(ExifBuilder::First, tag, {6});
    for (const unsigned tag : {0x011A, 0x011B})
        builder.rationals(ExifBuilder::First, tag, {72, 1});
    for (const unsigned tag : {0x1001, 0x1002})
        builder.longNumber(ExifBuilder::First, tag, 640);

    for (const unsigned tag : {0x9003, 0x9004})
        builder.text(ExifBuilder::Exif, tag, std::string("2024:05:31 18:20:00\0", 20));
    for (const unsigned tag : {0x9291, 0xA431, 0xA433, 0xA434})
        builder.text(ExifBuilder::Exif, tag, std::string("42\0", 3));
    for (const unsigned tag : {0x829A, 0x829D, 0x9202, 0x9206, 0x920A, 0xA20E, 0xA20F, 0xA215, 0xA404})
        builder.rationals(ExifBuilder::Exif, tag, {1, 60});
    for (const unsigned tag : {0x9201, 0x9203, 0x9204})
        builder.rationals(ExifBuilder::Exif, tag, {0xFFFFFFFF, 3}, ExifBuilder::SignedRational);
    for (const unsigned tag : {0x8822, 0x8827, 0x9207, 0x9208, 0x9209, 0xA210, 0xA405})
        builder.shorts(ExifBuilder::Exif, tag, {2});
    for (const unsigned tag : {0xA002, 0xA003})
        builder.longNumber(ExifBuilder::Exif, tag, 4000);
    builder.shorts(ExifBuilder::Exif, 0x9214, {100, 200, 30, 40});
    builder.rationals(ExifBuilder::Exif, 0xA432, {24, 1, 70, 1, 28, 10, 40, 10});

    for (const unsigned tag : {1, 3})
        builder.text(ExifBuilder::Gps, tag, std::string("S\0", 2));
    for (const unsigned tag : {2, 4, 7})
        builder.rationals(ExifBuilder::Gps, tag, {50, 1, 27, 1, 0, 0});
    builder.value(ExifBuilder::Gps, 5, ExifBuilder::Byte, 1, std::string(1, '\1'));
    for (const unsigned tag : {6, 11})
        builder.rationals(ExifBuilder::Gps, tag, {1, 2});
    for (const unsigned tag : {18, 29})
        builder.text(ExifBuilder::Gps, tag, "2024:05:31");
    builder.shorts(ExifBuilder::Gps, 30, {1});
    return builder;
}

/// The shapes that the walk tells apart.
std::vector<std::string> seeds(ByteOrder order)
{
    const std::string every = everyField(order).segment();
    const std::string date
        = ExifBuilder(order).text(ExifBuilder::Exif, 0x9003, "2024:05:31 18:20:00").segment();
    const std::string inFirst
        = ExifBuilder(order).text(ExifBuilder::First, 0x9003, "2024:05:31 18:20:00").segment();
    const std::string foreign = app1("some other metadata");
    const std::string fill(3, '\xFF');
    return {
        every,
        date,
        inFirst,
        jpegFile(app1(every)),
        jpegFile(jpegSegment(0xE0, "JFIF") + fill + app1(date) + foreign),
        jpegFile(foreign + app1(inFirst) + app1(every) + "\xFF\x01\xFF\xD0"),
        jpegFile(app1(date) + app1(every.substr(0, every.size() / 2))),
        jpegFile(app1(every)).substr(0, every.size()),
    };
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<std::string> all = seeds(ByteOrder::Little);
    for (const std::string &seed : seeds(ByteOrder::Big))
        all.push_back(seed);
    return writeSeeds(argc, argv, all);
}
