// Writes what fuzzing of the reader of JPEG files begins with: make_jpeg_seeds FOLDER.

#include "jpeg_files.h"
#include "seed_files.h"

namespace {

/// An EXIF segment with an orientation, in either byte order.
QByteArray exifOf(int orientation, bool bigEndian)
{
    return bigEndian ? QByteArray("Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 25)
            + char(orientation) + QByteArray(6, '\0')
                     : QByteArray("Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 24)
            + char(orientation) + QByteArray(7, '\0');
}

/// How a seed is read, in the order in which fuzz_jpeg takes bytes from its end.
struct Reading
{
    char atOnce = 63;
    char fast = 0;
    char onGrey = 0;
    char size[2] = {};
    char clip[4] = {};
    char clipOfThat[4] = {};
};

std::string seed(const QByteArray &file, const Reading &reading = {})
{
    static_assert(sizeof reading == 13);
    const QByteArray how(reinterpret_cast<const char *>(&reading), sizeof reading);
    return file.toStdString() + std::string(how.crbegin(), how.crend());
}

} // namespace

int main(int argc, char **argv)
{
    const std::vector<Reading> readings = {
        {},
        {.size = {7, 5}},
        {.atOnce = 2, .onGrey = 1, .size = {20, 11}},
        {.fast = 1, .clip = {5, 3, 16, 16}, .clipOfThat = {2, 2, 5, 5}},
        {.size = {12, 40}, .clip = {1, 0, 30, 25}, .clipOfThat = {2, 2, 5, 5}},
    };
    std::vector<std::string> seeds;
    for (const NamedJpegKind &row : jpegKinds()) {
        const QByteArray file = jpegFile({37, 29}, row.kind);
        for (const Reading &reading : readings)
            seeds.push_back(seed(file, reading));
        seeds.push_back(seed(file.first(file.size() * 2 / 3)));
    }
    for (int orientation = 0; orientation <= 9; ++orientation)
        seeds.push_back(seed(jpegFile({8, 8}, {.app1 = exifOf(orientation, orientation % 2 == 0)})));
    const QByteArray profile("ICC_PROFILE\0\x01\x01", 14);
    seeds.push_back(
        seed(jpegFile({8, 8}, {.comment = "Author: somebody", .app2 = profile + QByteArray(140, '\0')})));
    for (const bool bigEndian : {false, true})
        seeds.push_back(seed(exifOf(6, bigEndian)));
    return writeSeeds(argc, argv, seeds);
}
