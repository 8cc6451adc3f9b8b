// Small picture files that ask for more than a device has, or that lead a reader in a circle.

#pragma once

#include "hostile_picture.h"

#include <QtEndian>

#include <array>

namespace hostile {

inline QByteArray big32(quint32 number)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

inline QByteArray little(quint32 number, int size = 4)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToLittleEndian(number, bytes.data());
    return bytes.first(size);
}

inline QByteArray packed(const QByteArray &bytes)
{
    return qCompress(bytes, 9).sliced(4); // a zlib stream behind the size that Qt puts before it
}

inline QByteArray pngChunk(const QByteArray &type, const QByteArray &contents)
{
    quint32 sum = 0xffffffff;
    for (const char byte : type + contents) {
        sum ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ (sum & 1 ? 0xedb88320 : 0);
    }
    return big32(quint32(contents.size())) + type + contents + big32(~sum);
}

/// A PNG whose pixels are `pixelBytes` zeros.
inline QByteArray png(quint32 width, quint32 height, int depth, int colours, qsizetype pixelBytes,
                      const QByteArray &chunks = {}, bool interlaced = false)
{
    const QByteArray header = big32(width) + big32(height) + char(depth) + char(colours) + QByteArray(2, '\0')
        + char(interlaced ? 1 : 0);
    return "\x89PNG\r\n\x1a\n" + pngChunk("IHDR", header) + chunks
        + pngChunk("IDAT", packed(QByteArray(pixelBytes, '\0'))) + pngChunk("IEND", {});
}

/// A TIFF of one directory; each entry is tag, type (3: 16 bits, 4: 32 bits), count, value.
inline QByteArray tiff(const QList<std::array<quint32, 4>> &entries, const QByteArray &data = {},
                       quint32 next = 0)
{
    QByteArray bytes = "II*" + QByteArray(1, '\0') + little(8) + little(quint32(entries.size()), 2);
    for (const auto &[tag, type, count, value] : entries)
        bytes += little(tag, 2) + little(type, 2) + little(count) + little(value);
    return bytes + little(next) + data;
}

/// Width, height, bits and so on of an RGB picture in one strip behind the directory.
inline QList<std::array<quint32, 4>> tiffEntries(quint32 width, quint32 height, quint32 compression,
                                                 quint32 size)
{
    constexpr quint32 behind = 8 + 2 + 10 * 12 + 4;
    return {{256, 4, 1, width}, {257, 4, 1, height}, {258, 3, 1, 8}, {259, 3, 1, compression},
            {262, 3, 1, 1},     {273, 4, 1, behind}, {277, 3, 1, 1}, {278, 4, 1, height},
            {279, 4, 1, size},  {284, 3, 1, 1}};
}

inline QByteArray bmp(quint32 width, quint32 height, quint32 bits, quint32 compression, quint32 palette,
                      const QByteArray &data)
{
    return "BM" + little(quint32(54 + data.size())) + little(0) + little(54) + little(40) + little(width)
        + little(height) + little(1, 2) + little(bits, 2) + little(compression) + little(0) + little(0)
        + little(0) + little(palette) + little(0) + data;
}

inline QByteArray svg(const QByteArray &contents, const QByteArray &size = "200",
                      const QByteArray &before = {})
{
    return before
        + "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
          "width=\""
        + size + "\" height=\"" + size + "\" viewBox=\"0 0 100 100\">" + contents + "</svg>";
}

inline QByteArray repeated(const QByteArray &text, int count)
{
    return text.repeated(count);
}

/// Ten times ten times ten and so on of one rectangle.
inline QByteArray references(int depth)
{
    QByteArray contents = "<g id=\"a0\"><rect width=\"50\" height=\"50\"/></g>";
    for (int i = 1; i <= depth; ++i) {
        contents += "<g id=\"a" + QByteArray::number(i) + "\">"
            + repeated("<use xlink:href=\"#a" + QByteArray::number(i - 1) + "\"/>", 10) + "</g>";
    }
    return contents;
}

inline QByteArray entities()
{
    QByteArray bytes = "<?xml version=\"1.0\"?><!DOCTYPE svg [<!ENTITY a0 \"0123456789\">";
    for (int i = 1; i < 10; ++i) {
        bytes += "<!ENTITY a" + QByteArray::number(i) + " \""
            + repeated("&a" + QByteArray::number(i - 1) + ';', 10) + "\">";
    }
    return bytes + "]>";
}

inline Pictures svgBombs(const QByteArray &folder)
{
    const QByteArray image = "<image width=\"100\" height=\"100\" xlink:href=\"";
    const QByteArray photo = png(5700, 5800, 8, 0, 5701 * 5800).toBase64();
    return {
        {"svg entities.svg", svg("<text>&a9;</text>", "200", entities())},
        {"svg outside entity.svg",
         svg("<text>&a;</text>", "200", "<!DOCTYPE svg [<!ENTITY a SYSTEM \"file:///dev/zero\">]>")},
        {"svg references.svg", svg(references(9))},
        {"svg reference to itself.svg", svg("<g id=\"a\"><use xlink:href=\"#a\"/></g>")},
        {"svg file that never ends.svg", svg(image + "/dev/zero\"/>")},
        {"svg file that blocks.svg", svg(image + folder + "/pipe\"/>")},
        {"svg includes itself.svg", svg(image + folder + "/svg includes itself.svg\"/>")},
        {"svg many pictures.svg", svg(repeated(image + "data:image/png;base64," + photo + "\"/>", 30))},
        {"svg dashes.svg",
         svg("<path d=\"M0 0" + repeated("L100 100L0 100", 2000)
             + "\" stroke=\"black\" stroke-dasharray=\"0.01 0.01\"/>")},
        {"svg deep.svg", svg(repeated("<g>", 200'000) + repeated("</g>", 200'000))},
        {"svg many elements.svg", svg(repeated("<g/>", 4'000'000))},
        {"svg wide as the world.svg", svg("<rect width=\"50\" height=\"50\"/>", "1000000000")},
        {"svg letters of a kilometre.svg", svg(repeated("<text font-size=\"1e9\">A</text>", 100))},
        {"svg animated.svg",
         svg("<rect width=\"50\" height=\"50\"><animateTransform attributeName=\"transform\" type=\"rotate\" "
             "from=\"0\" to=\"360\" dur=\"0.001s\" repeatCount=\"indefinite\"/></rect>")},
    };
}

inline Pictures pngBombs()
{
    const QByteArray zeros = packed(QByteArray(7'900'000, '\0'));
    const QByteArray letters = packed(QByteArray(7'900'000, 'A'));
    return {
        {"png texts of 160 MB.png",
         png(10, 10, 8, 2, 310, repeated(pngChunk("zTXt", QByteArray("C\0\0", 3) + letters), 20))},
        {"png texts of 7 GB.png",
         png(10, 10, 8, 2, 310, repeated(pngChunk("iTXt", QByteArray("C\0\1\0\0\0", 6) + zeros), 900))},
        {"png 400 megapixels.png", png(20'000, 20'000, 1, 0, 2501 * 20'000)},
        {"png near the limit.png", png(5700, 5800, 8, 0, 5701 * 5800)},
        {"png interlaced.png", png(5700, 5800, 8, 0, 5701 * 5800, {}, true)},
        {"png one row.png", png(1'000'000, 3, 8, 2, 3'000'001 * 3)},
        {"png claims more.png", png(60'000, 60'000, 8, 6, 1000)},
        {"png no size.png", png(0, 0, 8, 2, 10)},
        {"png profile.png", png(10, 10, 8, 2, 310, pngChunk("iCCP", QByteArray("C\0\0", 3) + letters))},
    };
}

inline Pictures tiffBombs()
{
    const QByteArray empty = packed(QByteArray(5700 * 5800, '\0'));
    const auto size = quint32(empty.size());
    auto changed = [&](int index, quint32 value) {
        auto entries = tiffEntries(5700, 5800, 8, size);
        entries[index][3] = value;
        return tiff(entries, empty);
    };
    return {
        {"tiff near the limit.tif", tiff(tiffEntries(5700, 5800, 8, size), empty)},
        {"tiff 2 gigapixels.tif", tiff(tiffEntries(50'000, 50'000, 8, size), empty)},
        {"tiff claims all.tif", tiff(tiffEntries(0x7fffffff, 0x7fffffff, 8, size), empty)},
        {"tiff 65535 samples.tif", changed(6, 65'535)},
        {"tiff 64 bits.tif", changed(2, 64)},
        {"tiff strip of 4 GB.tif", changed(8, 0xffffffff)},
        {"tiff strips of no row.tif", changed(7, 0)},
        {"tiff strip behind the end.tif", changed(5, 0xfffffff0)},
        {"tiff packed by runs.tif",
         tiff(tiffEntries(5700, 5800, 32773, 400'000), repeated(QByteArray("\x81\0", 2), 200'000))},
        {"tiff no end of directories.tif", tiff(tiffEntries(5700, 5800, 8, size), empty, 8)},
        {"tiff entry of 4 GB.tif", tiff({{256, 4, 1, 10}, {257, 4, 1, 10}, {273, 4, 0x3fffffff, 8}})},
    };
}

/// A small JPEG with a megabyte and more beside its picture.
inline Pictures jpegBombs(const QByteArray &whole)
{
    const auto with = [&](const QByteArray &segments) {
        return QByteArray(whole).insert(2, segments); // behind the mark of the beginning
    };
    return {
        {"jpeg empty comments.jpg", with(repeated(QByteArray("\xff\xfe\0\2", 4), 1 << 18))},
        {"jpeg empty profiles.jpg", with(repeated(QByteArray("\xff\xe2\0\2", 4), 1 << 18))},
        {"jpeg EXIF data of 32 MB.jpg", with(repeated("\xff\xe1\xff\xff" + QByteArray(65'533, 'x'), 500))},
        {"jpeg empty tables.jpg", with(repeated(QByteArray("\xff\xc4\0\2", 4), 1 << 18))},
    };
}

inline Pictures otherBombs()
{
    const QByteArray frame = QByteArray::fromHex("21f904000000000000"
                                                 "2c0000000001000100000202440100")
                                 .chopped(0);
    const QByteArray gif = "GIF89a";
    return {
        {"bmp runs.bmp",
         bmp(5700, 5800, 8, 1, 256, QByteArray(1024, '\0') + repeated(QByteArray("\xff\0", 2), 1000))},
        {"bmp palette of 4 GB.bmp", bmp(10, 10, 8, 0, 0xffffffff, QByteArray(200, '\0'))},
        {"bmp upside down and endless.bmp", bmp(0x7fffffff, 0x80000000, 32, 0, 0, QByteArray(200, '\0'))},
        {"bmp 0 bits.bmp", bmp(1000, 1000, 0, 0, 0, QByteArray(200, '\0'))},
        {"gif of 4 gigapixels.gif", gif + QByteArray::fromHex("ffffffff800000000000ffffff") + frame + ';'},
        {"gif of 100000 frames.gif",
         gif + QByteArray::fromHex("01000100800000000000ffffff") + repeated(frame, 100'000) + ';'},
        {"ppm claims more.jpg", "P6 60000 60000 255\n" + QByteArray(1000, '\7')},
        {"ppm in letters.png", "P3 5700 5800 65535\n" + repeated("9 ", 100'000)},
        {"pbm.bmp", "P1 100000 100000\n1 0 1"},
        {"xpm.jpg",
         "/* XPM */\nstatic char *a[]={\"100000 100000 2 1\",\"a c black\",\"b c white\",\"ab\"};"},
        {"xbm.png", "#define a_width 100000\n#define a_height 100000\nstatic char a_bits[]={0x00};"},
        {"empty.jpg", {}},
        {"svg packed.svg", {}},
    };
}

} // namespace hostile
