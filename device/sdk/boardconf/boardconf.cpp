#include "boardconf.h"

#include "call.h"

#include <facts.h>

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

int device_display_colormask(void)
{
    return answer("device_display_colormask", facts().colourMask.load());
}

unsigned device_display_dpi(void)
{
    return answer("device_display_dpi", unsigned(facts().dpi.load()));
}

int device_platform(void)
{
    return answer("device_platform", facts().platformNumber.load());
}

int hw_is_frontlight_auto(void)
{
    const Device *const running = device();
    return answer("hw_is_frontlight_auto", running && running->light.brightnessAuto() ? 1 : 0);
}

int hw_is_frontlight_color_auto(void)
{
    const Device *const running = device();
    return answer("hw_is_frontlight_color_auto", running && running->light.colourAuto() ? 1 : 0);
}

void hw_set_frontlight_auto_enabled(int on)
{
    note("hw_set_frontlight_auto_enabled", on);
    if (Device *const running = device())
        running->light.setBrightnessAuto(on != 0);
}

void hw_set_frontlight_color_auto_enabled(int on)
{
    note("hw_set_frontlight_color_auto_enabled", on);
    if (Device *const running = device())
        running->light.setColourAuto(on != 0);
}
