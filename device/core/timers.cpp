#include "timers.h"

#include <QPointer>
#include <QThread>

#include <algorithm>
#include <tuple>
#include <vector>

namespace lindenreed::device {

using namespace std::chrono_literals;

Timers::Timers()
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Timers::runOutDue);
}

void Timers::arm(const QByteArray &name, Callback callback, void *context, std::chrono::milliseconds delay)
{
    Q_ASSERT(QThread::currentThread() == thread());
    // A century is for ever, and far enough from the end of the clock to be added to it.
    const std::chrono::milliseconds interval
        = std::clamp<std::chrono::milliseconds>(delay, 0ms, 24h * 36'525);
    const Clock::time_point now = Clock::now();
    m_entries.insert_or_assign(
        name, Entry{callback, context, now, now + interval, interval, ++m_lastNumber, false});
    schedule();
    emit changed();
}

bool Timers::clear(const QByteArray &name)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (m_entries.erase(name) == 0)
        return false;
    schedule();
    emit changed();
    return true;
}

bool Timers::fire(const QByteArray &name)
{
    const auto found = m_entries.find(name);
    if (found == m_entries.end())
        return false;
    found->second.deadline = Clock::now();
    found->second.fired = true;
    schedule();
    return true;
}

QList<PendingTimer> Timers::pending() const
{
    std::vector<std::pair<Clock::time_point, PendingTimer>> sorted;
    const Clock::time_point now = Clock::now();
    for (const auto &[name, entry] : m_entries) {
        const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(entry.deadline - now);
        sorted.emplace_back(entry.deadline, PendingTimer{name, std::max(remaining, 0ms), entry.interval});
    }
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const auto &left, const auto &right) { return left.first < right.first; });
    QList<PendingTimer> timers;
    for (const auto &timer : sorted)
        timers.append(timer.second);
    return timers;
}

void Timers::clearAll()
{
    if (m_entries.empty())
        return;
    m_entries.clear();
    schedule();
    emit changed();
}

void Timers::schedule()
{
    if (m_entries.empty()) {
        m_timer.stop();
        return;
    }
    const auto soonest
        = std::min_element(m_entries.cbegin(), m_entries.cend(), [](const auto &left, const auto &right) {
              return left.second.deadline < right.second.deadline;
          });
    // At least a millisecond, so that a timer of 0 ms that arms itself again for ever lets the loop sleep in
    // between; at most a day, because the loop's timers count milliseconds in an int.
    const std::chrono::milliseconds least = soonest->second.fired ? 0ms : 1ms;
    const auto remaining
        = std::chrono::ceil<std::chrono::milliseconds>(soonest->second.deadline - Clock::now());
    m_timer.start(std::clamp<std::chrono::milliseconds>(remaining, least, 24h));
}

void Timers::note(const QByteArray &name, const Entry &entry)
{
    constexpr qsizetype most = 20;
    if (m_lately.size() == most)
        m_lately.removeFirst();
    m_lately.append({++m_ranOut, name, entry.interval, entry.armed, Clock::now(), entry.fired});
}

void Timers::runOutDue()
{
    struct Due
    {
        Clock::time_point deadline;
        quint64 number;
        QByteArray name;
    };
    // Only what is due now: what a callback arms waits for the next turn of the loop.
    std::vector<Due> due;
    const Clock::time_point now = Clock::now();
    for (const auto &[name, entry] : m_entries) {
        if (entry.deadline <= now)
            due.push_back({entry.deadline, entry.number, name});
    }
    std::sort(due.begin(), due.end(), [](const Due &left, const Due &right) {
        return std::tie(left.deadline, left.number) < std::tie(right.deadline, right.number);
    });

    const QPointer<Timers> self(this); // a callback may end the device
    for (const Due &next : due) {
        const auto found = m_entries.find(next.name);
        if (found == m_entries.end() || found->second.number != next.number)
            continue; // cleared or armed anew by an earlier callback
        const Entry entry = found->second;
        m_entries.erase(found);
        note(next.name, entry);
        schedule(); // before the callback: it may run an event loop of its own
        emit changed();
        entry.callback(entry.context);
        if (!self)
            return;
        emit ranOut(next.name);
    }
    schedule();
}

} // namespace lindenreed::device
