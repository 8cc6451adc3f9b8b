#include "stop_signals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace lindenreed::host {

namespace {

constexpr std::array stopSignals{SIGTERM, SIGINT, SIGHUP};

std::array<int, 2> descriptors{-1, -1}; // read by the handler, which may run at any instruction

extern "C" void noteSignal(int signal)
{
    const int before = errno;
    const auto byte = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(descriptors[1], &byte, 1);
    errno = before;
}

} // namespace

StopSignals::StopSignals(QObject *parent)
    : QObject(parent)
{
    if (::pipe2(descriptors.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(descriptors[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &StopSignals::read);

    for (const int signal : stopSignals) {
        struct sigaction before = {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler == SIG_IGN)
            continue;
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESTART;
        ::sigaction(signal, &action, nullptr);
    }
}

StopSignals::~StopSignals()
{
    // The handlers stay: a signal during the last clean-up must not cut it off.
    delete m_notifier;
}

void StopSignals::read()
{
    unsigned char byte = 0;
    while (::read(descriptors[0], &byte, 1) == 1)
        emit received(byte);
}

} // namespace lindenreed::host
