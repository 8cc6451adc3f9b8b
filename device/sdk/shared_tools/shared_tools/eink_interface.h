// The device platform object: what applications ask of the panel beyond drawing.

#pragma once

#include <functional>

namespace lindenreed::utilities {

/// Operations of the device platform. Main thread; before the device has started they do nothing.
class EinkPlatform
{
public:
    virtual ~EinkPlatform() = default;

    /// The picture is about to turn between upright and sideways.
    virtual void prepareAspectChange(int mode) = 0;
    /// Asks for one refresh of the whole screen: `full` not 0 makes it a full one. `wait` is accepted and not
    /// needed.
    virtual void requestScreenRefresh(int full, int wait) = 0;
    /// 1 and 2: the next drawing is a partial refresh, on grey and on colour, as every one is that nothing
    /// else was asked for; 5: it is a full one.
    virtual void setScreenUpdateMode(int mode) = 0;
    /// Installs the application's handler for device events; they come through the event loop.
    virtual void setEventHandler(std::function<int(int type, int par1, int par2)> handler) = 0;
    /// 1: the application takes part in the device's start-up.
    virtual void setStartupFlag(int flag) = 0;
    /// Less quality, more speed, on a colour panel: drawing shows two levels first and all of them when it
    /// has come to rest.
    virtual void setFastUpdates(bool fast) = 0;
};

/// Process-wide way to the device platform object.
class EinkInterface
{
public:
    static EinkInterface &instance();
    EinkPlatform *platform() const; ///< never null; owned by this object

private:
    EinkInterface() = default;
};

} // namespace lindenreed::utilities
