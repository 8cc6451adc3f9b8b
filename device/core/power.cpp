#include "power.h"

#include "inhibitor.h"

#include <QCoreApplication>

#include <utility>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

Power::Power(std::chrono::milliseconds idleTime)
    : m_show(std::make_unique<Inhibitor>(Inhibition{u"Pictures are on show"_s, u"idle:sleep"_s, true}))
    // Not the sleep that somebody asks for; and a machine without buses does not sleep either.
    , m_delay(std::make_unique<Inhibitor>(Inhibition{u"The device is in use"_s, u"idle"_s, false}))
{
    m_idleTime.setSingleShot(true);
    m_idleTime.setInterval(idleTime);
    connect(&m_idleTime, &QTimer::timeout, this, &Power::endDelay);
}

Power::~Power() = default;

void Power::setAutoPowerOff(bool on)
{
    if (std::exchange(m_autoPowerOff, on) == on)
        return;
    m_show->setWanted(!on);
    emit changed();
}

void Power::setAutoKeylock(bool on)
{
    if (std::exchange(m_autoKeylock, on) != on)
        emit changed();
}

void Power::putOffSleep()
{
    ++m_banSleep;
    // Without an application there is no event loop in which time could run out.
    if (QCoreApplication::instance()) {
        m_idleTime.start();
        m_delay->setWanted(true);
    }
    emit changed();
}

void Power::endDelay()
{
    m_idleTime.stop();
    m_delay->setWanted(false);
}

void Power::reset()
{
    m_banSleep = 0;
    endDelay();
    setAutoPowerOff(true);
    setAutoKeylock(true);
}

} // namespace lindenreed::device
