// EXIF data in both byte orders, read back.

#pragma once

#include "exif_builder.h"

#include <exif_info.h>

#include <QTest>

#include <sstream>
#include <string>
#include <vector>

Q_DECLARE_METATYPE(ByteOrder)

constexpr ByteOrder byteOrders[] = {ByteOrder::Little, ByteOrder::Big};

inline const char *nameOf(ByteOrder order)
{
    return order == ByteOrder::Little ? "II" : "MM";
}

/// The rows of a test that holds for both orders: its column is "order".
inline void bothOrders()
{
    QTest::addColumn<ByteOrder>("order");
    for (const ByteOrder order : byteOrders)
        QTest::newRow(nameOf(order)) << order;
}

struct ReadExif
{
    int result;
    TinyEXIF::EXIFInfo info;
};

/// In memory of exactly its size, so that the sanitizer sees every step beyond it.
inline int parseSegment(TinyEXIF::EXIFInfo &info, const std::string &bytes)
{
    const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
    return info.parseFromEXIFSegment(exact.data(), unsigned(exact.size()));
}

inline ReadExif readSegment(const std::string &bytes)
{
    ReadExif read;
    read.result = parseSegment(read.info, bytes);
    return read;
}

inline ReadExif readFile(const std::string &bytes)
{
    std::istringstream stream(bytes);
    ReadExif read;
    read.result = read.info.parseFrom(stream);
    return read;
}

constexpr unsigned dateTag = 0x9003;
inline const std::string date = "2024:05:31 18:20:00";

/// A segment with `text` as the date of the shot.
inline std::string datedSegment(ByteOrder order, const std::string &text = date)
{
    return ExifBuilder(order).text(ExifBuilder::Exif, dateTag, text + '\0').segment();
}
