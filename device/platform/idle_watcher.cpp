#include "idle_watcher.h"

#include <QByteArray>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <utility>

namespace lindenreed::device {

namespace {

/// The state letter of /proc/self/task/ID/stat: the first after the name, which stands in brackets and may
/// hold any character. 0 for a thread that has ended meanwhile.
char stateOf(const char *id)
{
    const QByteArray path = QByteArray("/proc/self/task/") + id + "/stat";
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return 0;
    char line[256];
    const ssize_t length = ::read(file, line, sizeof(line));
    ::close(file);
    if (length <= 0)
        return 0;
    const QByteArrayView text(line, length);
    const qsizetype bracket = text.lastIndexOf(')');
    return bracket >= 0 && bracket + 2 < text.size() ? text.at(bracket + 2) : 0;
}

std::chrono::milliseconds elapsed(const QElapsedTimer &timer)
{
    return std::chrono::milliseconds(timer.elapsed());
}

} // namespace

bool otherThreadsWork()
{
    const auto close = [](DIR *folder) { ::closedir(folder); };
    const std::unique_ptr<DIR, decltype(close)> folder(::opendir("/proc/self/task"), close);
    if (!folder)
        return false;
    while (const dirent *entry = ::readdir(folder.get())) {
        if (entry->d_name[0] == '.' || std::atoi(entry->d_name) == int(::gettid()))
            continue;
        const char state = stateOf(entry->d_name);
        if (state == 'R' || state == 'D')
            return true;
    }
    return false;
}

IdleWatcher::IdleWatcher(std::function<bool()> isBusy)
    : m_isBusy(std::move(isBusy))
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(lookInterval);
    connect(&m_timer, &QTimer::timeout, this, &IdleWatcher::look);
}

void IdleWatcher::wait(std::chrono::milliseconds quiet, std::chrono::milliseconds patience,
                       std::function<bool()> abandoned, Done done)
{
    Waiting &waiting
        = m_waiting.emplace_back(Waiting{quiet, patience, std::move(abandoned), std::move(done), {}, {}});
    waiting.sinceBegin.start();
    waiting.sinceWork.start();
    if (!m_timer.isActive()) {
        m_sinceLook.start();
        m_timer.start();
    }
}

bool IdleWatcher::isQuietEnough(const Waiting &waiting)
{
    return elapsed(waiting.sinceWork) >= waiting.quiet;
}

void IdleWatcher::look()
{
    const auto sinceLook = std::chrono::nanoseconds(m_sinceLook.nsecsElapsed());
    m_sinceLook.start();
    const bool workNoted = std::exchange(m_workNoted, false);
    const bool busy = workNoted || sinceLook > lookInterval + latest || m_isBusy() || otherThreadsWork();

    std::list<Waiting> finished;
    for (auto each = m_waiting.begin(); each != m_waiting.end();) {
        const auto next = std::next(each);
        if (busy)
            each->sinceWork.start();
        if (each->abandoned() || (!busy && isQuietEnough(*each))
            || elapsed(each->sinceBegin) >= each->patience)
            finished.splice(finished.end(), m_waiting, each);
        each = next;
    }
    if (m_waiting.empty())
        m_timer.stop();
    for (const Waiting &each : finished) {
        if (!each.abandoned())
            each.done(!busy && isQuietEnough(each));
    }
}

} // namespace lindenreed::device
