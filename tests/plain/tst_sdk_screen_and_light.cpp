// The SDK's operations on screen, power, light and board: what they do, and what they leave in the journal.

#include <boardconf.h>
#include <slateview.h>
#include <slateview_testing.h>

#include <device.h>
#include <facts.h>

#include <journal_lines.h>

#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

class tst_SdkScreenAndLight : public QObject
{
    Q_OBJECT

private slots:
    void sizes();
    void statusPanel();
    void orientation();
    void upsideDown();
    void clearScreen();
    void inversion();
    void power();
    void levels();
    void lightSwitch();
    void automaticLight();
    void withoutALight();
    void board();
    void boardOfAnotherProfile();
};

void tst_SdkScreenAndLight::sizes()
{
    DeviceForTest device;
    QCOMPARE(ScreenWidth(), 758);
    QCOMPARE(ScreenHeight(), 1024);
    SetOrientation(1); // the sizes follow before it returns
    QCOMPARE(ScreenWidth(), 1024);
    QCOMPARE(ScreenHeight(), 758);
    QCOMPARE(journalLines(device),
             QByteArrayList({"ScreenWidth() = 758", "ScreenHeight() = 1024", "SetOrientation(1)",
                             "ScreenWidth() = 1024", "ScreenHeight() = 758"}));
}

void tst_SdkScreenAndLight::statusPanel()
{
    DeviceForTest device;
    QCOMPARE(PanelHeight(), 45);
    QCOMPARE(GetPanelType(), 1);
    SetPanelType(0);
    QCOMPARE(GetPanelType(), 0);
    QCOMPARE(Device::instance()->screen.panelType(), 0);
    QCOMPARE(PanelHeight(), 45);
    QCOMPARE(journalLines(device),
             QByteArrayList({"PanelHeight() = 45", "GetPanelType() = 1", "SetPanelType(0)",
                             "GetPanelType() = 0", "PanelHeight() = 45"}));
}

void tst_SdkScreenAndLight::orientation()
{
    DeviceForTest device;
    for (int code = 3; code >= 0; --code) {
        SetOrientation(code);
        QCOMPARE(GetOrientation(), code);
    }
    SetOrientation(2);
    SetOrientation(-1);
    SetOrientation(4);
    QCOMPARE(GetOrientation(), 2);
    QCOMPARE(journalLines(device).constLast(), QByteArray("GetOrientation() = 2"));
    QCOMPARE(device.calls({"SetOrientation"}).size(), 7); // refused ones are in the journal as well
    QCOMPARE(device.calls({"SetOrientation"}).constLast().arguments, QByteArrayList({"4"}));
}

void tst_SdkScreenAndLight::upsideDown()
{
    {
        DeviceForTest device;
        QCOMPARE(IsDeviceSupportUpSideDown(), 0);
        QCOMPARE(journalLines(device), QByteArrayList({"IsDeviceSupportUpSideDown() = 0"}));
    }
    DeviceForTest device(u"grey-8"_s);
    QCOMPARE(IsDeviceSupportUpSideDown(), 1);
}

void tst_SdkScreenAndLight::clearScreen()
{
    DeviceForTest device;
    QSignalSpy cleared(&Device::instance()->screen, &Screen::cleared);
    ClearScreen();
    QCOMPARE(cleared.size(), 1);
    QCOMPARE(journalLines(device), QByteArrayList({"ClearScreen()"}));
}

void tst_SdkScreenAndLight::inversion()
{
    DeviceForTest device;
    QCOMPARE(SvGetScreenModeInversion(), 0);
    Device::instance()->screen.setInverted(true);
    QCOMPARE(SvGetScreenModeInversion(), 1);
    QCOMPARE(journalLines(device),
             QByteArrayList({"SvGetScreenModeInversion() = 0", "SvGetScreenModeInversion() = 1"}));
}

void tst_SdkScreenAndLight::power()
{
    DeviceForTest device;
    const Power &power = Device::instance()->power;
    SetAutoPowerOff(0);
    QVERIFY(!power.autoPowerOff());
    SetAutoPowerOff(17);
    QVERIFY(power.autoPowerOff());
    SetAutoKeylock(0);
    QVERIFY(!power.autoKeylock());
    SetAutoKeylock(-1);
    QVERIFY(power.autoKeylock());
    QCOMPARE(BanSleep(1), 0);
    QCOMPARE(power.banSleep(), 1);
    QCOMPARE(journalLines(device),
             QByteArrayList({"SetAutoPowerOff(0)", "SetAutoPowerOff(17)", "SetAutoKeylock(0)",
                             "SetAutoKeylock(-1)", "BanSleep(1) = 0"}));
}

void tst_SdkScreenAndLight::levels()
{
    DeviceForTest device;
    SetFrontlightState(101);
    QCOMPARE(GetFrontlightState(), 100);
    SetFrontlightState(std::numeric_limits<int>::min());
    QCOMPARE(GetFrontlightState(), 0);
    SetFrontlightColor(33);
    QCOMPARE(GetFrontlightColor(), 33);
    QCOMPARE(GetFrontlightState(), 0);
    QCOMPARE(
        journalLines(device),
        QByteArrayList({"SetFrontlightState(101)", "GetFrontlightState() = 100",
                        "SetFrontlightState(-2147483648)", "GetFrontlightState() = 0",
                        "SetFrontlightColor(33)", "GetFrontlightColor() = 33", "GetFrontlightState() = 0"}));
}

void tst_SdkScreenAndLight::lightSwitch()
{
    DeviceForTest device;
    SetFrontlightEnabled(0);
    QVERIFY(!Device::instance()->light.enabled());
    SetFrontlightEnabled(1);
    QVERIFY(Device::instance()->light.enabled());
    QCOMPARE(journalLines(device), QByteArrayList({"SetFrontlightEnabled(0)", "SetFrontlightEnabled(1)"}));
}

void tst_SdkScreenAndLight::automaticLight()
{
    DeviceForTest device;
    QCOMPARE(hw_is_frontlight_auto(), 0);
    QCOMPARE(hw_is_frontlight_color_auto(), 0);
    hw_set_frontlight_auto_enabled(1);
    QCOMPARE(hw_is_frontlight_auto(), 1);
    QCOMPARE(hw_is_frontlight_color_auto(), 0);
    hw_set_frontlight_color_auto_enabled(2);
    QCOMPARE(hw_is_frontlight_color_auto(), 1);
    hw_set_frontlight_auto_enabled(0);
    QCOMPARE(hw_is_frontlight_auto(), 0);
    QCOMPARE(hw_is_frontlight_color_auto(), 1);
    QCOMPARE(
        journalLines(device).mid(2, 4),
        QByteArrayList({"hw_set_frontlight_auto_enabled(1)", "hw_is_frontlight_auto() = 1",
                        "hw_is_frontlight_color_auto() = 0", "hw_set_frontlight_color_auto_enabled(2)"}));
}

void tst_SdkScreenAndLight::withoutALight()
{
    Profile profile;
    profile.frontlight = false;
    Device::start(profile);
    SetFrontlightState(50);
    SetFrontlightColor(50);
    SetFrontlightEnabled(1);
    hw_set_frontlight_auto_enabled(1);
    hw_set_frontlight_color_auto_enabled(1);
    QCOMPARE(GetFrontlightState(), 0);
    QCOMPARE(GetFrontlightColor(), 0);
    QCOMPARE(hw_is_frontlight_auto(), 0);
    QCOMPARE(hw_is_frontlight_color_auto(), 0);
    QVERIFY(!Device::instance()->light.enabled());
    Device::stop();
}

void tst_SdkScreenAndLight::board()
{
    DeviceForTest device;
    QCOMPARE(device_display_colormask(), 0);
    QCOMPARE(device_display_dpi(), 212U);
    QCOMPARE(device_platform(), 0);
    device.setColourMask(3);
    QCOMPARE(device_display_colormask(), 3);
    QCOMPARE(journalLines(device),
             QByteArrayList({"device_display_colormask() = 0", "device_display_dpi() = 212",
                             "device_platform() = 0", "device_display_colormask() = 3"}));
}

void tst_SdkScreenAndLight::boardOfAnotherProfile()
{
    DeviceForTest device(u"grey-8"_s);
    QCOMPARE(device_display_dpi(), 300U);
    QCOMPARE(device_platform(), 17);
    QCOMPARE(PanelHeight(), 64);
    QCOMPARE(ScreenWidth(), 1404);
}

QTEST_GUILESS_MAIN(tst_SdkScreenAndLight)
#include "tst_sdk_screen_and_light.moc"
