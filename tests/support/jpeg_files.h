// JPEG files of every kind, in memory. Needs JPEG::JPEG.

#pragma once

#include <QByteArray>
#include <QSize>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>

/// What is in a file. All but the sampling as libjpeg has it.
struct JpegKind
{
    J_COLOR_SPACE colours = JCS_YCbCr; ///< JCS_GRAYSCALE, JCS_RGB, JCS_CMYK and JCS_YCCK as well
    int across = 2; ///< samples of luma to one of chroma
    int down = 2;
    bool progressive = false;
    int restartRows = 0; ///< rows of blocks between restart marks
    bool adobeMark = true; ///< where the colours ask for it
    int quality = 90;
    QByteArray comment = {};
    QByteArray app1 = {};
    QByteArray app2 = {};
};

/// Soft shapes, edges and a little noise, the same at every call; each channel another.
inline int jpegSample(int x, int y, int channel)
{
    const double wave = 60 * std::sin(x / (17.0 + channel * 5)) + 50 * std::cos(y / (23.0 - channel * 4));
    const int edge = (x / 40 + y / 56) % 3 == 0 ? 30 : 0;
    const auto noise = (unsigned(x) * 2654435761U ^ unsigned(y + channel * 77) * 2246822519U) >> 28;
    return std::clamp(110 + int(wave) + edge + int(noise) - 8, 0, 255);
}

/// Holds few rows of the picture at a time. Broken parameters end the process.
inline QByteArray jpegFile(QSize size, const JpegKind &kind = {})
{
    jpeg_compress_struct info = {};
    jpeg_error_mgr errors = {};
    info.err = jpeg_std_error(&errors); // which ends the process
    jpeg_create_compress(&info);
    unsigned char *bytes = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&info, &bytes, &length);
    info.image_width = JDIMENSION(size.width());
    info.image_height = JDIMENSION(size.height());
    const bool four = kind.colours == JCS_CMYK || kind.colours == JCS_YCCK;
    info.in_color_space = four ? JCS_CMYK : kind.colours == JCS_GRAYSCALE ? JCS_GRAYSCALE : JCS_RGB;
    info.input_components = four ? 4 : kind.colours == JCS_GRAYSCALE ? 1 : 3;
    jpeg_set_defaults(&info);
    jpeg_set_colorspace(&info, kind.colours);
    jpeg_set_quality(&info, kind.quality, TRUE);
    info.restart_in_rows = kind.restartRows;
    info.write_Adobe_marker = info.write_Adobe_marker && kind.adobeMark;
    info.density_unit = 1;
    info.X_density = 300;
    info.Y_density = 150;
    if (kind.colours == JCS_YCbCr || kind.colours == JCS_YCCK) {
        info.comp_info[0].h_samp_factor = kind.across;
        info.comp_info[0].v_samp_factor = kind.down;
        if (four) {
            info.comp_info[3].h_samp_factor = kind.across;
            info.comp_info[3].v_samp_factor = kind.down;
        }
    }
    if (kind.progressive)
        jpeg_simple_progression(&info);
    jpeg_start_compress(&info, TRUE);
    const auto write = [&info](int mark, const QByteArray &contents) {
        if (!contents.isEmpty()) {
            jpeg_write_marker(&info, mark, reinterpret_cast<const JOCTET *>(contents.constData()),
                              unsigned(contents.size()));
        }
    };
    write(JPEG_COM, kind.comment);
    write(JPEG_APP0 + 1, kind.app1);
    write(JPEG_APP0 + 2, kind.app2);
    constexpr std::size_t band = 128; // rows, which come again: large files are made in no time
    std::vector<std::vector<JSAMPLE>> lines(band);
    for (int y = 0; y < size.height(); ++y) {
        std::vector<JSAMPLE> &line = lines[std::size_t(y) % band];
        if (line.empty()) {
            for (int x = 0; x < size.width(); ++x) {
                for (int channel = 0; channel < info.input_components; ++channel)
                    line.push_back(JSAMPLE(jpegSample(x, y, channel)));
            }
        }
        JSAMPROW rows[] = {line.data()};
        jpeg_write_scanlines(&info, rows, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    const QByteArray file(reinterpret_cast<const char *>(bytes), qsizetype(length));
    std::free(bytes);
    return file;
}

/// The same file with another size in its header; `frame` is the mark of that: 0xff 0xc0, progressive 0xff
/// 0xc2.
inline QByteArray claiming(QByteArray file, QSize size, const char *frame)
{
    const qsizetype place = file.indexOf(frame) + 5;
    const char bytes[] = {char(size.height() / 256), char(size.height() % 256), char(size.width() / 256),
                          char(size.width() % 256)};
    return file.replace(place, 4, QByteArray(bytes, 4));
}

/// Every kind that there is, as rows of a table of this name.
struct NamedJpegKind
{
    const char *name;
    JpegKind kind;
};
inline std::vector<NamedJpegKind> jpegKinds()
{
    return {
        {"4:2:0", {}},
        {"4:4:4", {.across = 1, .down = 1}},
        {"4:2:2", {.across = 2, .down = 1}},
        {"4:4:0", {.across = 1, .down = 2}},
        {"4:1:1", {.across = 4, .down = 1}},
        {"4:1:0", {.across = 4, .down = 2}},
        {"progressive", {.progressive = true}},
        {"progressive 4:4:4", {.across = 1, .down = 1, .progressive = true}},
        {"with restart marks", {.restartRows = 1}},
        {"grey", {.colours = JCS_GRAYSCALE}},
        {"progressive grey", {.colours = JCS_GRAYSCALE, .progressive = true}},
        {"RGB", {.colours = JCS_RGB}},
        {"CMYK", {.colours = JCS_CMYK}},
        {"CMYK without Adobe's mark", {.colours = JCS_CMYK, .adobeMark = false}},
        {"YCCK", {.colours = JCS_YCCK}},
        {"YCCK 4:4:4", {.colours = JCS_YCCK, .across = 1, .down = 1}},
        {"progressive YCCK", {.colours = JCS_YCCK, .progressive = true}},
        {"coarse", {.quality = 8}},
    };
}
