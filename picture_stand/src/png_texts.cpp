#include "png_texts.h"

#include <QFile>
#include <QtEndian>

#include <zlib.h>

#include <algorithm>
#include <array>

namespace lindenreed::picture_stand {

namespace {

constexpr qint64 mostText = 4 * 1024 * 1024;

/// How many bytes `packed` unpacks to, counted up to `most`; what cannot be unpacked counts as far as it can.
qint64 unpackedSize(QByteArrayView packed, qint64 most)
{
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK)
        return most;
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data()));
    stream.avail_in = uInt(packed.size());
    std::array<Bytef, 16 * 1024> piece;
    qint64 size = 0;
    int result = Z_OK;
    while (result == Z_OK && size < most) {
        stream.next_out = piece.data();
        stream.avail_out = uInt(piece.size());
        result = inflate(&stream, Z_NO_FLUSH);
        size += qint64(piece.size() - stream.avail_out);
    }
    inflateEnd(&stream);
    return size;
}

/// Where the packed part of a text begins; -1 where nothing is packed.
qsizetype packedStart(QByteArrayView type, QByteArrayView text)
{
    const qsizetype keyEnd = text.indexOf('\0');
    if (keyEnd < 0)
        return -1;
    if (type == "zTXt")
        return keyEnd + 2;
    if (type != "iTXt" || text.sliced(keyEnd).size() < 3 || text[keyEnd + 1] == '\0')
        return -1;
    const qsizetype languageEnd = text.indexOf('\0', keyEnd + 3);
    const qsizetype translationEnd = languageEnd < 0 ? -1 : text.indexOf('\0', languageEnd + 1);
    return translationEnd < 0 ? -1 : translationEnd + 1;
}

/// From where the file stands on.
bool hasBearableChunks(QFile &file)
{
    constexpr QByteArrayView signature("\x89PNG\r\n\x1a\n");
    if (file.read(signature.size()) != signature)
        return true;
    qint64 left = mostText;
    while (left > 0) {
        const QByteArray head = file.read(8); // the size of a chunk's contents, and its type
        if (head.size() < 8)
            return true;
        const qint64 size = qFromBigEndian<quint32>(head.constData());
        const QByteArrayView type = QByteArrayView(head).last(4);
        if (type == "IEND") // Qt reads no further
            return true;
        constexpr qint64 checksum = 4;
        const qint64 next = file.pos() + size + checksum;
        if (type == "tEXt" || type == "zTXt" || type == "iTXt") {
            left -= size;
            const QByteArray text = file.read(std::clamp<qint64>(left, 0, size));
            const qsizetype start = packedStart(type, text);
            if (start >= 0 && start < text.size())
                left -= unpackedSize(QByteArrayView(text).sliced(start), std::max<qint64>(left, 0));
        }
        if (!file.seek(next))
            return true;
    }
    return false;
}

} // namespace

bool hasBearableTexts(QFile &file)
{
    const bool bearable = hasBearableChunks(file);
    return file.seek(0) && bearable;
}

} // namespace lindenreed::picture_stand
