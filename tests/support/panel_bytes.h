// The panel file byte for byte.

#pragma once

#include <QByteArray>

#include <cstdint>
#include <cstring>

inline constexpr qsizetype pixelsOffset = 4096;

/// What a writer leaves for a grey panel of 70 by 3 pixels.
inline QByteArray goodPanelFile()
{
    QByteArray bytes(pixelsOffset + 128 * 3, '\0');
    std::memcpy(bytes.data(), "SLATEPNL", 8);
    const std::uint32_t fields[] = {1, 1, 70, 3, 128, 16, 212};
    std::memcpy(bytes.data() + 8, fields, sizeof(fields));
    std::memset(bytes.data() + pixelsOffset, 255, 128 * 3);
    return bytes;
}
