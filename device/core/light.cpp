#include "light.h"

#include "backlight.h"
#include "log.h"

#include <algorithm>
#include <utility>

namespace lindenreed::device {

Light::Light(const QString &backlight, bool present)
    : m_present(present)
    , m_brightness(present ? 40 : 0)
    , m_colour(present ? 50 : 0)
    , m_enabled(present)
{
    if (backlight.isEmpty() || !present)
        return;
    QString error;
    m_backlight = Backlight::open(backlight, &error);
    if (m_backlight)
        m_brightness = m_backlight->level();
    else
        log::line(2, __FILE__, __LINE__, __func__, "no backlight: " + error.toStdString());
}

Light::~Light() = default;

template <typename T>
void Light::set(T &member, T value)
{
    if (!m_present || std::exchange(member, value) == value)
        return;
    if (m_backlight)
        m_backlight->setLevel(m_enabled ? m_brightness : 0);
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
