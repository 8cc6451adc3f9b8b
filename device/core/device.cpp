#include "device.h"

#include "configuration.h"
#include "facts.h"
#include "paths.h"
#include "texts.h"
#include "theme.h"

#include <utility>

namespace lindenreed::device {

namespace {

// A plain pointer: static destructors may still ask for the device.
constinit Device *theDevice = nullptr;

} // namespace

Device::Device(const Profile &wanted)
    : profile(wanted)
    , screen(profile)
{
    facts().dpi = profile.dpi;
    facts().colourMask = profile.colourMask;
    facts().platformNumber = profile.platformNumber;
}

void Device::start(const Profile &profile)
{
    Q_ASSERT_X(!theDevice, "Device::start", "the device has already started");
    if (theDevice)
        return;
    const Configuration configuration = Configuration::read(configurationPath);
    texts::load(QString::fromUtf8(configuration.text("language").value_or("en")));
    theme::load();
    theDevice = new Device(profile);
}

void Device::stop()
{
    delete std::exchange(theDevice, nullptr);
}

Device *Device::instance()
{
    return theDevice;
}

} // namespace lindenreed::device
