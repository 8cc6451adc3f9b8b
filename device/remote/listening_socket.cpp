#include "listening_socket.h"

#include <socket_address.h>

#include <QFile>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kind = SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK;

/// Whether a process answers on this socket.
bool hasListener(const QByteArray &name)
{
    const std::optional<sockaddr_un> address = device::socketAddress(name);
    if (!address)
        return false;
    const int probe = ::socket(AF_UNIX, kind, 0);
    if (probe < 0)
        return true; // cannot tell, so leave it alone
    const bool refused
        = ::connect(probe, reinterpret_cast<const sockaddr *>(&*address), sizeof(*address)) != 0
        && errno == ECONNREFUSED;
    ::close(probe);
    return !refused;
}

} // namespace

ListeningSocket::ListeningSocket(Accepted accepted)
    : m_accepted(std::move(accepted))
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(1s);
    m_pause.callOnTimeout([this] { m_knock->setEnabled(true); });
}

ListeningSocket::~ListeningSocket()
{
    m_knock.reset();
    if (m_socket >= 0)
        ::close(m_socket);
    if (!m_name.isEmpty())
        ::unlink(m_name.constData());
}

bool ListeningSocket::listen(const QString &path, QString *error)
{
    const auto refuse = [&](const QString &sentence) {
        if (error)
            *error = sentence;
        return false;
    };
    const auto failure = [&path] {
        return u"The control socket %1 cannot be made: %2."_s.arg(path,
                                                                  QString::fromLocal8Bit(strerror(errno)));
    };

    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (::lstat(name.constData(), &status) == 0) {
        if (!S_ISSOCK(status.st_mode))
            return refuse(u"%1 is in the way of the control socket."_s.arg(path));
        if (hasListener(name))
            return refuse(u"Another process listens on %1."_s.arg(path));
    }

    // It gets its name when it listens: who sees it may knock.
    const QByteArray before = name + '~';
    const std::optional<sockaddr_un> address = device::socketAddress(before);
    if (!address)
        return refuse(u"The name of the control socket %1 is too long."_s.arg(path));
    ::unlink(before.constData());
    m_socket = ::socket(AF_UNIX, kind, 0);
    constexpr int mostWaiting = 50;
    // The mode of a socket becomes that of its name.
    if (m_socket < 0 || ::fchmod(m_socket, S_IRUSR | S_IWUSR) != 0
        || ::bind(m_socket, reinterpret_cast<const sockaddr *>(&*address), sizeof(*address)) != 0)
        return refuse(failure());
    m_name = before; // goes as well, should it not become the other
    if (::listen(m_socket, mostWaiting) != 0 || std::rename(before.constData(), name.constData()) != 0)
        return refuse(failure());
    m_name = name;
    m_knock = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    QObject::connect(m_knock.get(), &QSocketNotifier::activated, m_knock.get(), [this] { accept(); });
    return true;
}

void ListeningSocket::accept()
{
    const int descriptor = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (descriptor >= 0) {
        m_accepted(descriptor);
        return;
    }
    if (errno == EAGAIN || errno == EINTR || errno == ECONNABORTED)
        return; // whoever knocked has gone
    // Else the knocking would be heard all the time.
    m_knock->setEnabled(false);
    m_pause.start();
}

} // namespace lindenreed::remote
