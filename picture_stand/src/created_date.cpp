#include "created_date.h"

#include "exif_info.h"
#include "regular_file.h"

#include <QFile>
#include <QFileInfo>

#include <libexif/exif-data.h>

#include <array>
#include <fstream>
#include <memory>

namespace lindenreed::picture_stand {

namespace {

/// Cameras write "2024:05:31 18:20:00". The ISO format takes any separators and a blank before the time.
QDateTime fromText(const char *text)
{
    return QDateTime::fromString(QString::fromUtf8(text), Qt::ISODate);
}

QDateTime readByLibexif(const QByteArray &file)
{
    const std::unique_ptr<ExifData, void (*)(ExifData *)> data(exif_data_new_from_file(file.constData()),
                                                               &exif_data_unref);
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
