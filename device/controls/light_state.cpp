#include "light_state.h"

#include <device.h>

namespace lindenreed::device {

namespace {

Light *light()
{
    Device *device = Device::instance();
    return device && device->profile.frontlight ? &device->light : nullptr;
}

} // namespace

LightState::LightState(QObject *parent)
    : QObject(parent)
{
    if (const Light *present = light()) {
        m_present = true;
        m_colourPresent = Device::instance()->profile.colourLight;
        connect(present, &Light::changed, this, &LightState::changed);
    }
}

int LightState::brightness() const
{
    return light() ? light()->brightness() : 0;
}

int LightState::colour() const
{
    return light() ? light()->colour() : 0;
}

bool LightState::brightnessAuto() const
{
    return light() && light()->brightnessAuto();
}

bool LightState::colourAuto() const
{
    return light() && light()->colourAuto();
}

bool LightState::isEnabled() const
{
    return light() && light()->enabled();
}

void LightState::setBrightness(int level)
{
    if (light())
        light()->setBrightness(level);
}

void LightState::setColour(int level)
{
    if (light())
        light()->setColour(level);
}

void LightState::setBrightnessAuto(bool on)
{
    if (light())
        light()->setBrightnessAuto(on);
}

void LightState::setColourAuto(bool on)
{
    if (light())
        light()->setColourAuto(on);
}

void LightState::setEnabled(bool on)
{
    if (light())
        light()->setEnabled(on);
}

} // namespace lindenreed::device
