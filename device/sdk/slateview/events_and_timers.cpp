// Events and timers.

#include "slateview.h"

#include "call.h"

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

namespace {

extern "C" int forwardToHandler(int type, int par1, int par2)
{
    Device *const running = device();
    return running ? running->events.send(type, par1, par2) : 0;
}

} // namespace

sv_event_handler GetEventHandler(void)
{
    const Device *const running = device();
    const bool installed = running && running->events.hasHandler();
    journal::record("GetEventHandler", {}, installed ? "handler" : "null");
    return installed ? forwardToHandler : nullptr;
}

int SendEvent(sv_event_handler handler, int type, int par1, int par2)
{
    // Entered before the call: what the handler asks of the device comes after it.
    note("SendEvent", handler ? "handler" : "null", type, par1, par2);
    return handler ? handler(type, par1, par2) : 0;
}

void SetHardTimerEx(const char *name, sv_timer_callback callback, void *context, int milliseconds)
{
    note("SetHardTimerEx", name, callback ? "callback" : "null", context ? "context" : "null", milliseconds);
    Device *const running = device();
    if (running && name && callback)
        running->timers.arm(name, callback, context, std::chrono::milliseconds(milliseconds));
}

void ClearTimerByName(const char *name)
{
    note("ClearTimerByName", name);
    Device *const running = device();
    if (running && name)
        running->timers.clear(name);
}
