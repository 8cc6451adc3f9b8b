// Named one-shot timers on the monotonic clock.

#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <map>

namespace lindenreed::device {

struct PendingTimer
{
    QByteArray name;
    std::chrono::milliseconds remaining;
    std::chrono::milliseconds interval;
};

/// What became of a timer.
struct RanOut
{
    quint64 number; ///< from 1, of all that ran out
    QByteArray name;
    std::chrono::milliseconds interval;
    std::chrono::steady_clock::time_point armed;
    std::chrono::steady_clock::time_point ran; ///< when its callback began
    bool fired; ///< before its time
};

/// Named one-shot timers on the monotonic clock. Main thread.
///
/// Arming a pending name replaces it. A callback never runs inside arm, not even with delay 0, and a timer of
/// 0 ms that arms itself again leaves the event loop room to breathe. The entry is gone before its callback
/// runs, so that the callback may arm the same name again.
class Timers : public QObject
{
    Q_OBJECT

public:
    using Callback = void (*)(void *context);

    Timers();

    /// Delays below 0 are 0.
    void arm(const QByteArray &name, Callback callback, void *context, std::chrono::milliseconds delay);
    bool clear(const QByteArray &name); ///< false: none was pending
    bool
    fire(const QByteArray &name); ///< lets it run out at the next turn of the loop; false: none was pending
    QList<PendingTimer> pending() const; ///< soonest first
    const QList<RanOut> &lately() const { return m_lately; } ///< the last 20 that ran out, oldest first
    void clearAll();

signals:
    void changed(); ///< what pending() tells, the time that passes aside
    void ranOut(QByteArray name); ///< after its callback has returned

private:
    using Clock = std::chrono::steady_clock;
    struct Entry
    {
        Callback callback;
        void *context;
        Clock::time_point armed;
        Clock::time_point deadline;
        std::chrono::milliseconds interval;
        quint64 number; ///< tells an entry from its successors of the same name
        bool fired;
    };

    void schedule();
    void note(const QByteArray &name, const Entry &entry);
    void runOutDue();

    std::map<QByteArray, Entry> m_entries;
    QTimer m_timer; ///< one for all: runs until the soonest deadline
    quint64 m_lastNumber = 0;
    QList<RanOut> m_lately;
    quint64 m_ranOut = 0;
};

} // namespace lindenreed::device
