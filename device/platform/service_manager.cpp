#include "service_manager.h"

#include <socket_address.h>

#include <algorithm>
#include <cstddef>
#include <optional>

#include <unistd.h>

namespace lindenreed::device {

ServiceManager::ServiceManager(QObject *parent)
    : QObject(parent)
    , m_socket(qgetenv("NOTIFY_SOCKET"))
{
    connect(&m_alive, &QTimer::timeout, this, [this] { tell("WATCHDOG=1"); });
}

void ServiceManager::tellReady()
{
    tell("READY=1");
    // Twice in the time that the manager waits for it, as sd_watchdog_enabled(3) recommends.
    constexpr qint64 microsecondsInTwoMilliseconds = 2000;
    const qint64 patience = qgetenv("WATCHDOG_USEC").toLongLong();
    if (!m_socket.isEmpty() && patience > 0)
        m_alive.start(int(std::clamp<qint64>(patience / microsecondsInTwoMilliseconds, 1, 3'600'000)));
}

void ServiceManager::tell(QByteArrayView state) const
{
    std::optional<sockaddr_un> address = socketAddress(m_socket);
    if (m_socket.isEmpty() || !address)
        return;
    if (address->sun_path[0] == '@') // not in the file system
        address->sun_path[0] = '\0';
    const int sender = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (sender < 0)
        return;
    const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + std::size_t(m_socket.size()));
    ::sendto(sender, state.data(), std::size_t(state.size()), MSG_NOSIGNAL,
             reinterpret_cast<const sockaddr *>(&*address), length);
    ::close(sender);
}

} // namespace lindenreed::device
