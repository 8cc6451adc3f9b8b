// Which of a program's calls change something on the device.

#pragma once

#include <QByteArray>
#include <QSet>

/// Sizes, kinds, states, texts, configuration files, and work on pictures in memory: calls that change
/// nothing on the device.
inline bool isQuery(const QByteArray &name)
{
    static const QSet<QByteArray> queries{"ScreenWidth",
                                          "ScreenHeight",
                                          "PanelHeight",
                                          "GetPanelType",
                                          "SvGetScreenModeInversion",
                                          "device_display_colormask",
                                          "device_display_dpi",
                                          "device_platform",
                                          "GetLangText",
                                          "GetLangTextPlural",
                                          "GetLangTime",
                                          "GetThemeInt",
                                          "sv_get_default_font",
                                          "GetSoftwareLocalizationType",
                                          "GetCustomizedPartner",
                                          "sv_config_open",
                                          "sv_config_close",
                                          "ReadInt",
                                          "ReadString",
                                          "lr_print_log2",
                                          "adjustAreaDefault",
                                          "adjustAreaWithBrightnessContrastGamma",
                                          "QuickFloyd16Dither"};
    return queries.contains(name);
}

/// The same, and what only reads the orientation or the light.
inline bool isQueryOrState(const QByteArray &name)
{
    static const QSet<QByteArray> states{"GetOrientation", "GetFrontlightState", "GetFrontlightColor",
                                         "hw_is_frontlight_auto", "hw_is_frontlight_color_auto"};
    return isQuery(name) || states.contains(name);
}
