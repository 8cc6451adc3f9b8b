// Power and frontlight.

#include "slateview.h"

#include "call.h"

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

int BanSleep(int count)
{
    if (Device *const running = device())
        running->power.putOffSleep();
    return answer("BanSleep", 0, count);
}

void SetAutoPowerOff(int on)
{
    note("SetAutoPowerOff", on);
    if (Device *const running = device())
        running->power.setAutoPowerOff(on != 0);
}

void SetAutoKeylock(int on)
{
    note("SetAutoKeylock", on);
    if (Device *const running = device())
        running->power.setAutoKeylock(on != 0);
}

int GetFrontlightState(void)
{
    const Device *const running = device();
    return answer("GetFrontlightState", running ? running->light.brightness() : 0);
}

void SetFrontlightState(int level)
{
    note("SetFrontlightState", level);
    if (Device *const running = device())
        running->light.setBrightness(level);
}

int GetFrontlightColor(void)
{
    const Device *const running = device();
    return answer("GetFrontlightColor", running ? running->light.colour() : 0);
}

void SetFrontlightColor(int level)
{
    note("SetFrontlightColor", level);
    if (Device *const running = device())
        running->light.setColour(level);
}

void SetFrontlightEnabled(int on)
{
    note("SetFrontlightEnabled", on);
    if (Device *const running = device())
        running->light.setEnabled(on != 0);
}
