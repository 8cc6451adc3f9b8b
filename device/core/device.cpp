#include "device.h"

#include "configuration.h"
#include "facts.h"
#include "panel_levels.h"
#include "paths.h"
#include "texts.h"
#include "theme.h"

#include <utility>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

// A plain pointer: static destructors may still ask for the device.
constinit Device *theDevice = nullptr;

} // namespace

Device::Device(const Profile &wanted)
    : profile(wanted)
    , screen(profile)
    , light(profile.backlight.isEmpty() ? QString() : u"/sys/class/backlight/"_s + profile.backlight,
            profile.frontlight)
{
    facts().dpi = profile.dpi;
    facts().colourMask = profile.colourMask;
    facts().platformNumber = profile.platformNumber;
    setLevelLuminances(profile.luminances);
    QObject::connect(&media, &Media::changed, &events, [this](Medium medium) { postMediaEvent(medium); });
}

void Device::postMediaEvent(Medium medium)
{
    const bool in = media.present(medium);
    if (medium == Medium::Card)
        events.post(in ? event::cardIn : event::cardOut, 0, 0);
    else
        events.post(in ? event::usbIn : event::usbOut, 0, 0);
}

bool Device::start(const Profile &profile, QString *error)
{
    Q_ASSERT_X(!theDevice, "Device::start", "the device has already started");
    if (theDevice || !theme::load(error))
        return false;
    const Configuration configuration = Configuration::read(configurationPath);
    texts::load(QString::fromUtf8(configuration.text("language").value_or("en")));
    theDevice = new Device(profile);
    facts().running = true;
    return true;
}

void Device::stop()
{
    facts().running = false;
    delete std::exchange(theDevice, nullptr);
}

Device *Device::instance()
{
    return theDevice;
}

} // namespace lindenreed::device
