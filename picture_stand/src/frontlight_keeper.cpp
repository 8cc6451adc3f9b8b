#include "frontlight_keeper.h"

#include "datastorage.h"

#include <boardconf.h>
#include <slateview.h>

#include <QString>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace lindenreed::picture_stand {

namespace {

constexpr int allPlaylists = -1;

QString stored(const QString &key)
{
    return DataStorage::instance().getSetting(key, allPlaylists);
}

void keep(const QString &key, int value)
{
    DataStorage::instance().setSetting(key, QString::number(value, 10), allPlaylists);
}

int asSwitch(int value)
{
    return value != 0 ? 1 : 0;
}

} // namespace

FrontlightKeeper::Light FrontlightKeeper::deviceLight()
{
    Light light;
    light.brightness = GetFrontlightState();
    light.brightness_auto = hw_is_frontlight_auto() != 0;
    light.smartlight = GetFrontlightColor();
    light.smartlight_auto = hw_is_frontlight_color_auto() != 0;
    light.enabled = true; // nothing asks the device whether it is
    return light;
}

void FrontlightKeeper::remember()
{
    const Light light = deviceLight();
    // The device still shows the show's light: taking it for the device's own would lose that. Before the
    // first leave no light is the show's, not even a dark one: `enabled` tells them apart.
    if (light == inside)
        return;
    outside = light;
}

void FrontlightKeeper::applyStored()
{
    const int brightness = stored(u"frontlight_brightness"_s).toInt();
    const int brightnessAuto = stored(u"frontlight_brightness_auto"_s).toInt();
    std::fprintf(stderr, "FRONTLIGHT \t load brightness = %d auto = %d \r\n", brightness, brightnessAuto);

    SetFrontlightState(stored(u"frontlight_brightness"_s).toInt());
    hw_set_frontlight_auto_enabled(asSwitch(stored(u"frontlight_brightness_auto"_s).toInt()));
    SetFrontlightColor(stored(u"frontlight_smartlight"_s).toInt());
    hw_set_frontlight_color_auto_enabled(asSwitch(stored(u"frontlight_smartlight_auto"_s).toInt()));
    SetFrontlightEnabled(asSwitch(stored(u"frontlight_enabled"_s).toInt()));
}

void FrontlightKeeper::store()
{
    const int brightness = GetFrontlightState();
    std::fprintf(stderr, "FRONTLIGHT \t save brightness = %d auto = %d \r\n", brightness,
                 asSwitch(hw_is_frontlight_auto()));

    keep(u"frontlight_brightness"_s, GetFrontlightState());
    keep(u"frontlight_brightness_auto"_s, asSwitch(hw_is_frontlight_auto()));
    keep(u"frontlight_smartlight"_s, GetFrontlightColor());
    keep(u"frontlight_smartlight_auto"_s, asSwitch(hw_is_frontlight_color_auto()));
    keep(u"frontlight_enabled"_s, 1); // a show that has been left always comes back lit
}

void FrontlightKeeper::giveBack()
{
    inside = deviceLight();

    SetFrontlightState(outside.brightness);
    hw_set_frontlight_auto_enabled(outside.brightness_auto);
    SetFrontlightColor(outside.smartlight);
    hw_set_frontlight_color_auto_enabled(outside.smartlight_auto);
    SetFrontlightEnabled(outside.enabled);
}

} // namespace lindenreed::picture_stand
