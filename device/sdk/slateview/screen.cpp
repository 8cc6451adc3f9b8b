// Screen and panel.

#include "slateview.h"

#include "call.h"

#include <facts.h>

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

int ScreenWidth(void)
{
    return answer("ScreenWidth", facts().width.load());
}

int ScreenHeight(void)
{
    return answer("ScreenHeight", facts().height.load());
}

int PanelHeight(void)
{
    const Device *const running = device();
    return answer("PanelHeight", running ? running->screen.statusHeight() : Profile().statusHeight);
}

void SetPanelType(int type)
{
    note("SetPanelType", type);
    if (Device *const running = device())
        running->screen.setPanelType(type);
}

int GetPanelType(void)
{
    const Device *const running = device();
    return answer("GetPanelType", running ? running->screen.panelType() : 0);
}

int GetOrientation(void)
{
    const Device *const running = device();
    return answer("GetOrientation", running ? running->screen.orientation() : 0);
}

void SetOrientation(int orientation)
{
    note("SetOrientation", orientation);
    if (Device *const running = device())
        running->screen.setOrientation(orientation);
}

int IsDeviceSupportUpSideDown(void)
{
    const Device *const running = device();
    return answer("IsDeviceSupportUpSideDown", running && running->profile.upsideDown ? 1 : 0);
}

void ClearScreen(void)
{
    note("ClearScreen");
    if (Device *const running = device())
        running->screen.clear();
}

int SvGetScreenModeInversion(void)
{
    return answer("SvGetScreenModeInversion", facts().inverted ? 1 : 0);
}
