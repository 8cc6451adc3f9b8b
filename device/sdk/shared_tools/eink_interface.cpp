#include "shared_tools/eink_interface.h"

#include "call.h"

#include <utility>

namespace lindenreed::utilities {

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

namespace {

class Platform final : public EinkPlatform
{
public:
    // This panel turns as a whole and is drawn anew afterwards: it needs no preparation.
    void prepareAspectChange(int mode) override { note("prepareAspectChange", mode); }

    void requestScreenRefresh(int full, int wait) override
    {
        note("requestScreenRefresh", full, wait);
        if (Device *const running = sdk::device())
            running->screen.refresh(full != 0 ? RefreshMode::Full : RefreshMode::Partial);
    }

    void setScreenUpdateMode(int mode) override
    {
        note("setScreenUpdateMode", mode);
        if (Device *const running = sdk::device())
            running->screen.setUpdateMode(mode);
    }

    void setEventHandler(std::function<int(int type, int par1, int par2)> handler) override
    {
        note("setEventHandler", handler ? "handler" : "null");
        if (Device *const running = sdk::device())
            running->events.setHandler(std::move(handler));
    }

    // Nothing else waits for the start of an application here.
    void setStartupFlag(int flag) override { note("setStartupFlag", flag); }

    void setFastUpdates(bool fast) override
    {
        note("setFastUpdates", fast);
        if (Device *const running = sdk::device())
            running->screen.setFastUpdates(fast);
    }
};

} // namespace

EinkInterface &EinkInterface::instance()
{
    static EinkInterface *const interface = new EinkInterface; // never destroyed: static destructors may ask
    return *interface;
}

EinkPlatform *EinkInterface::platform() const
{
    static Platform *const platform = new Platform;
    return platform;
}

} // namespace lindenreed::utilities
