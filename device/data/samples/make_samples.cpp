// Paints one of the sample pictures: make_samples NUMBER FILE. Runs while the device is built.

#include "exif.h"
#include "pictures.h"

#include <QBuffer>
#include <QByteArray>
#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <iterator>

using namespace lindenreed::samples;

namespace {

struct Sample
{
    Canvas (*paint)();
    const char *taken;
};

constexpr Sample samples[] = {
    {mountainsInMist, "2023:10:14 07:42:18"}, {moonOverWater, "2021:08:22 23:11:05"},
    {dunes, "2019:11:03 16:58:40"},           {birches, "2022:10:09 10:26:33"},
    {seedHead, "2024:05:18 18:07:51"},        {sea, "2020:02:29 15:33:12"},
    {skyline, "2025:03:07 18:49:27"},         {balloons, "2023:06:25 05:56:02"},
    {stillLife, "2021:01:17 11:14:46"},       {starryNight, "2024:08:12 22:38:29"},
};

/// High enough that no block shows on a sky, low enough that ten pictures stay a small download.
constexpr int jpegQuality = 84;

bool write(const Sample &sample, const QString &path)
{
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    QFile file(path);
    return buffer.open(QIODevice::WriteOnly) && sample.paint().image().save(&buffer, "JPG", jpegQuality)
        && file.open(QIODevice::WriteOnly) && file.write(withExif(jpeg, sample.taken)) > 0 && file.flush();
}

} // namespace

int main(int argc, char *argv[])
{
    const int number = argc == 3 ? std::atoi(argv[1]) : 0;
    if (number < 1 || number > int(std::size(samples))) {
        std::fprintf(stderr, "usage: make_samples NUMBER FILE, NUMBER from 1 to %zu\n", std::size(samples));
        return 2;
    }
    if (!write(samples[number - 1], QFile::decodeName(argv[2]))) {
        std::fprintf(stderr, "make_samples: cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
