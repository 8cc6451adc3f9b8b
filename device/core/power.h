// What keeps the device awake and unlocked.

#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>

namespace lindenreed::device {

class Inhibitor;

/// Holds an inhibitor of the machine's sleep exactly while auto power-off is off, and one of its falling
/// asleep by itself for an idle time after each request to put sleep off. Main thread.
class Power : public QObject
{
    Q_OBJECT

public:
    /// As long as desktops wait by default before they take a machine for idle.
    static constexpr std::chrono::milliseconds usualIdleTime{5 * 60'000};

    explicit Power(std::chrono::milliseconds idleTime = usualIdleTime);
    ~Power() override; ///< the inhibitors are given back

    bool autoPowerOff() const { return m_autoPowerOff; }
    bool autoKeylock() const { return m_autoKeylock; }
    int banSleep() const { return m_banSleep; } ///< how often sleep was put off since the start

    void setAutoPowerOff(bool on);
    void setAutoKeylock(bool on);
    void putOffSleep(); ///< the idle time starts anew
    void reset(); ///< as after the start

signals:
    void changed();

private:
    void endDelay();

    std::unique_ptr<Inhibitor> m_show; ///< auto power-off is off
    std::unique_ptr<Inhibitor> m_delay; ///< sleep is put off
    QTimer m_idleTime;
    bool m_autoPowerOff = true;
    bool m_autoKeylock = true;
    int m_banSleep = 0;
};

} // namespace lindenreed::device
