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

/// What a small file of the process file system has now; empty where it has gone.
QByteArray contentsOf(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return {};
    char text[256];
    const ssize_t length = ::read(file, text, sizeof(text));
    ::close(file);
    return length > 0 ? QByteArray(text, length) : QByteArray();
}

/// By the "stat" file of a thread or process. Its state letter is the first after the name, which stands in
/// brackets and may hold any character.
bool works(const QByteArray &path)
{
    const QByteArray text = contentsOf(path);
    const qsizetype bracket = text.lastIndexOf(')');
    const char state = bracket >= 0 && bracket + 2 < text.size() ? text.at(bracket + 2) : 0;
    return state == 'R' || state == 'D';
}

std::chrono::milliseconds elapsed(const QElapsedTimer &timer)
{
    return std::chrono::milliseconds(timer.elapsed());
}

} // namespace

bool othersWork()
{
    const auto close = [](DIR *folder) { ::closedir(folder); };
    const std::unique_ptr<DIR, decltype(close)> folder(::opendir("/proc/self/task"), close);
    if (!folder)
        return false;
    while (const dirent *entry = ::readdir(folder.get())) {
        if (entry->d_name[0] == '.')
            continue;
        const QByteArray thread = QByteArray("/proc/self/task/") + entry->d_name;
        if (std::atoi(entry->d_name) != int(::gettid()) && works(thread + "/stat"))
            return true;
        // Drawings are made by processes, which belong to the thread that has started them.
        for (const QByteArray &process : contentsOf(thread + "/children").split(' ')) {
            if (!process.isEmpty() && works("/proc/" + process + "/stat"))
                return true;
        }
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
    const bool busy = workNoted || sinceLook > lookInterval + latest || m_isBusy() || othersWork();

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
