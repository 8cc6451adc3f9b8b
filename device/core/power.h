// What keeps the device awake and unlocked.

#pragma once

#include <QObject>

#include <memory>

namespace lindenreed::device {

class Inhibitor;

/// Holds an inhibitor of the machine's sleep exactly while auto power-off is off. Main thread.
class Power : public QObject
{
    Q_OBJECT

public:
    Power();
    ~Power() override; ///< the inhibitor is given back

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
    std::unique_ptr<Inhibitor> m_inhibitor;
    bool m_autoPowerOff = true;
    bool m_autoKeylock = true;
    int m_banSleep = 0;
};

} // namespace lindenreed::device
