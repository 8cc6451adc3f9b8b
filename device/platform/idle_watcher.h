// Waiting until the device has nothing left to do.

#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <list>

namespace lindenreed::device {

/// Whether another thread of this process, or a process that it has started, runs or waits for the disk at
/// this moment.
bool othersWork();

/// Looks every 20 ms, while somebody waits, whether anything is under way. A look that comes late counts as
/// work: the main thread was busy. Main thread.
class IdleWatcher : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds lookInterval{20};
    static constexpr std::chrono::milliseconds latest{20}; ///< how much later than wanted a look may come

    /// `isBusy`: whether the device itself has something under way.
    explicit IdleWatcher(std::function<bool()> isBusy);

    /// Something was done just now, though it may be over at the next look.
    void noteWork() { m_workNoted = true; }

    using Done = std::function<void(bool idle)>;
    /// Calls `done` once: true when nothing was under way for `quiet`, false when `patience` ran out before.
    /// Drops it where `abandoned` says so.
    void wait(std::chrono::milliseconds quiet, std::chrono::milliseconds patience,
              std::function<bool()> abandoned, Done done);

private:
    struct Waiting
    {
        std::chrono::milliseconds quiet;
        std::chrono::milliseconds patience;
        std::function<bool()> abandoned;
        Done done;
        QElapsedTimer sinceBegin;
        QElapsedTimer sinceWork;
    };

    void look();
    static bool isQuietEnough(const Waiting &waiting);

    std::function<bool()> m_isBusy;
    QTimer m_timer;
    QElapsedTimer m_sinceLook;
    std::list<Waiting> m_waiting;
    bool m_workNoted = false; ///< since the last look
};

} // namespace lindenreed::device
