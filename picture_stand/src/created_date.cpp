#include "created_date.h"

#include "exif_info.h"
#include "regular_file.h"

#include <QFile>
#include <QFileInfo>

#include <libexif/exif-data.h>
#include <libexif/exif-loader.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>

namespace lindenreed::picture_stand {

namespace {

/// Cameras write "2024:05:31 18:20:00". The ISO format takes any separators and a blank before the time.
QDateTime fromText(const char *text)
{
    return QDateTime::fromString(QString::fromUtf8(text), Qt::ISODate);
}

using LibexifData = std::unique_ptr<ExifData, void (*)(ExifData *)>;

/// As exif_data_new_from_file(), which reads a file of any length when it is made for that.
LibexifData libexifData(const QByteArray &name)
{
    // EXIF data has at most 64 KiB and stands among the first segments of a photograph. Of those before it,
    // libexif reads every byte.
    constexpr std::size_t mostBytes = std::size_t(16) * 1024 * 1024;
    const std::unique_ptr<ExifLoader, void (*)(ExifLoader *)> loader(exif_loader_new(), &exif_loader_unref);
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(name.constData(), "rb"),
                                                                &std::fclose);
    std::array<unsigned char, 1024> piece;
    for (std::size_t left = file ? mostBytes : 0; left > 0; left -= piece.size()) {
        const std::size_t size = std::fread(piece.data(), 1, piece.size(), file.get());
        if (size == 0 || exif_loader_write(loader.get(), piece.data(), unsigned(size)) == 0)
            break;
    }
    return {exif_loader_get_data(loader.get()), &exif_data_unref};
}

QDateTime readByLibexif(const QByteArray &file)
{
    const LibexifData data = libexifData(file);
    if (!data)
        return {};
    ExifEntry *entry = exif_content_get_entry(data->ifd[EXIF_IFD_EXIF], EXIF_TAG_DATE_TIME_ORIGINAL);
    if (!entry)
        return {};
    std::array<char, 1024> text = {};
    exif_entry_get_value(entry, text.data(), text.size());
    return fromText(text.data());
}

QDateTime readByOurselves(const QByteArray &file)
{
    std::ifstream stream(file.constData(), std::ios::binary);
    if (!stream)
        return {};
    const TinyEXIF::EXIFInfo info(stream);
    if (info.Fields == 0 || info.DateTimeOriginal.empty())
        return {};
    return fromText(info.DateTimeOriginal.c_str());
}

} // namespace

QDateTime createdDate(const QString &path)
{
    // The readers' own access moves this time on most file systems.
    const QDateTime accessed = QFileInfo(path).fileTime(QFileDevice::FileAccessTime);
    QFile file(path);
    if (!openRegularFile(file))
        return accessed;

    // The readers take names. This one stays with the file that was opened.
    const QByteArray name = "/proc/self/fd/" + QByteArray::number(file.handle());
    for (const auto read : {&readByLibexif, &readByOurselves}) {
        const QDateTime taken = read(name);
        if (taken.isValid())
            return taken;
    }
    return accessed;
}

} // namespace lindenreed::picture_stand
