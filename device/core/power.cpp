#include "power.h"

#include "inhibitor.h"

#include <utility>

namespace lindenreed::device {

Power::Power()
    : m_inhibitor(std::make_unique<Inhibitor>())
{
}

Power::~Power() = default;

void Power::setAutoPowerOff(bool on)
{
    if (std::exchange(m_autoPowerOff, on) == on)
        return;
    m_inhibitor->setWanted(!on);
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
    emit changed();
}

void Power::reset()
{
    m_banSleep = 0;
    setAutoPowerOff(true);
    setAutoKeylock(true);
}

} // namespace lindenreed::device
