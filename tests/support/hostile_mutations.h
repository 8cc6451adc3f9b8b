// Good pictures of every format that the frame reads, and what is made of them by damage.

#pragma once

#include "hostile_picture.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QRandomGenerator>

namespace hostile {

/// A photograph of sorts.
inline QImage scene(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto *row = static_cast<QRgb *>(static_cast<void *>(picture.scanLine(y)));
        for (int x = 0; x < size.width(); ++x)
            row[x] = qRgb(x * 255 / size.width(), y * 255 / size.height(), (x * y) & 255);
    }
    return picture;
}

inline QByteArray written(const QByteArray &format, int compression = -1, bool progressive = false)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(progressive);
    if (compression >= 0)
        writer.setCompression(compression);
    // Icons are small.
    const QSize size = format.startsWith("ic") ? QSize(32, 32) : QSize(300, 200);
    return writer.write(scene(size)) ? bytes : QByteArray();
}

/// One of each kind. A file's name says nothing to the readers: what no list has goes by another ending.
inline Pictures wholePictures()
{
    QFile sample(QStringLiteral("/mnt/ext1/Photo/01.jpg"));
    const QByteArray photograph = sample.open(QIODevice::ReadOnly) ? sample.readAll() : QByteArray();
    const QByteArray drawing
        = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"300\" height=\"200\"><defs><linearGradient "
          "id=\"g\"><stop offset=\"0\" stop-color=\"red\"/><stop offset=\"1\"/></linearGradient></defs>"
          "<g transform=\"rotate(3)\"><rect x=\"9\" y=\"9\" width=\"90\" height=\"80\" fill=\"url(#g)\"/>"
          "<path d=\"M10 80 C 40 10, 65 10, 95 80 S 150 150, 180 80\" stroke=\"black\"/>"
          "<text x=\"50\" y=\"90\" font-size=\"20\">Lake</text></g></svg>";
    Pictures pictures{{"sample.jpg", photograph},
                      {"jpeg.jpg", written("jpeg")},
                      {"progressive.jpg", written("jpeg", -1, true)},
                      {"png.png", written("png")},
                      {"tiff.tif", written("tiff")},
                      {"packed tiff.tif", written("tiff", 1)},
                      {"bmp.bmp", written("bmp")},
                      {"svg.svg", drawing},
                      {"ppm.bmp", written("ppm")},
                      {"xpm.png", written("xpm")},
                      {"webp.jpg", written("webp")},
                      {"ico.bmp", written("ico")},
                      {"icns.png", written("icns")},
                      {"gif.jpg",
                       QByteArray::fromHex("474946383961010001008000000000"
                                           "00ffffff21f904000000000021fe0441414141002c00000000010001"
                                           "00000202440100"
                                           "3b")}};
    pictures.removeIf([](const Picture &picture) { return picture.contents.isEmpty(); });
    return pictures;
}

/// The same damage at each call.
inline QByteArray damaged(QByteArray contents, int kind, QRandomGenerator &random)
{
    const auto position = [&](qsizetype below) { return random.bounded(int(std::max<qsizetype>(below, 1))); };
    switch (kind % 4) {
    case 0: // a few bits
        for (int flips = 1 + random.bounded(20); flips > 0; --flips)
            contents[position(contents.size())] ^= char(1 << random.bounded(8));
        break;
    case 1: // what a header says
        for (int lies = 1 + random.bounded(4); lies > 0; --lies) {
            const char values[] = {'\0', '\1', '\x7f', '\x80', '\xff'};
            const int at = position(std::min<qsizetype>(contents.size(), 120));
            for (int i = at; i < std::min<qsizetype>(at + 1 + random.bounded(4), contents.size()); ++i)
                contents[i] = values[random.bounded(5)];
        }
        break;
    case 2: // cut off
        contents.truncate(position(contents.size()));
        break;
    default: // a piece that comes again, or is missing
        const int from = position(contents.size());
        const int size = position(contents.size() - from);
        if (random.bounded(2) == 0)
            contents.insert(position(contents.size()), contents.mid(from, size));
        else
            contents.remove(from, size);
    }
    return contents;
}

inline Pictures damagedPictures(int ofEach)
{
    QRandomGenerator random(20'240'531);
    Pictures all;
    int kind = 0;
    for (const Picture &whole : wholePictures()) {
        for (int i = 0; i < ofEach; ++i) {
            all.append({"damage " + QByteArray::number(i) + ' ' + whole.name,
                        damaged(whole.contents, kind++, random)});
        }
    }
    return all;
}

} // namespace hostile
