#include "light.h"

#include <algorithm>
#include <utility>

namespace lindenreed::device {

template <typename T>
void Light::set(T &member, T value)
{
    if (std::exchange(member, value) != value)
        emit changed();
}

void Light::setBrightness(int level)
{
    set(m_brightness, std::clamp(level, 0, 100));
}

void Light::setColour(int level)
{
    set(m_colour, std::clamp(level, 0, 100));
}

void Light::setBrightnessAuto(bool on)
{
    set(m_brightnessAuto, on);
}

void Light::setColourAuto(bool on)
{
    set(m_colourAuto, on);
}

void Light::setEnabled(bool on)
{
    set(m_enabled, on);
}

void Light::reset()
{
    const Light fresh;
    setBrightness(fresh.m_brightness);
    setColour(fresh.m_colour);
    setBrightnessAuto(fresh.m_brightnessAuto);
    setColourAuto(fresh.m_colourAuto);
    setEnabled(fresh.m_enabled);
}

} // namespace lindenreed::device
