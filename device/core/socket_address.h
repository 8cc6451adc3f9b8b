// The addresses of local sockets.

#pragma once

#include <QByteArray>

#include <cstring>
#include <optional>

#include <sys/socket.h>
#include <sys/un.h>

namespace lindenreed::device {

/// Of a socket in the file system, as bind() and connect() want it. Nothing where the name is too long for
/// one.
inline std::optional<sockaddr_un> socketAddress(const QByteArray &path)
{
    sockaddr_un address = {};
    if (std::size_t(path.size()) >= sizeof address.sun_path)
        return std::nullopt;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), std::size_t(path.size()));
    return address;
}

} // namespace lindenreed::device
