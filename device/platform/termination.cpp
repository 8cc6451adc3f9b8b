#include "termination.h"

#include "events.h"

#include <QCoreApplication>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace lindenreed::device {

namespace {

constexpr std::array<int, 3> endingSignals{SIGTERM, SIGINT, SIGHUP};
std::array<struct sigaction, endingSignals.size()> formerActions;

// Read end, write end. A signal handler may do little more than write a byte.
std::array<int, 2> signalPipe{-1, -1};
std::atomic<int> signalPipeEnd{-1};

extern "C" void noteEndingSignal(int)
{
    const int before = errno;
    const char byte = 0;
    // A full pipe already says that a signal came.
    [[maybe_unused]] const ssize_t written = ::write(signalPipeEnd.load(std::memory_order_relaxed), &byte, 1);
    errno = before;
}

} // namespace

Termination::Termination(Events &events)
    : m_events(events)
{
    takeSignals();
}

Termination::~Termination()
{
    if (!m_notifier)
        return;
    for (std::size_t i = 0; i < endingSignals.size(); ++i)
        ::sigaction(endingSignals[i], &formerActions[i], nullptr);
    m_notifier.reset();
    signalPipeEnd = -1;
    for (int &end : signalPipe)
        ::close(std::exchange(end, -1));
}

void Termination::takeSignals()
{
    if (::pipe2(signalPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        std::fprintf(stderr, "lindenreed2: signals end the program at once: %s\n", std::strerror(errno));
        return;
    }
    signalPipeEnd = signalPipe[1];
    m_notifier = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes;
        while (::read(signalPipe[0], bytes.data(), bytes.size()) > 0) { }
        begin();
    });

    struct sigaction action = {};
    action.sa_handler = noteEndingSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < endingSignals.size(); ++i)
        ::sigaction(endingSignals[i], &action, &formerActions[i]);
}

void Termination::begin()
{
    if (std::exchange(m_begun, true))
        return; // a second signal is no second end
    m_events.send(event::background, 0, 0);
    const auto endLoop = [this] {
        m_begun = false;
        QCoreApplication::quit();
    };
    QMetaObject::invokeMethod(this, endLoop, Qt::QueuedConnection);
}

} // namespace lindenreed::device
