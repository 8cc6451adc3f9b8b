#include "slateview_testing.h"

#include <device.h>
#include <facts.h>
#include <paths.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

namespace lindenreed::device {

namespace {

/// The device as it is right after its start.
void reset(Device &device)
{
    device.timers.clearAll();
    device.events.reset();
    device.viewer.forget();
    device.light.reset();
    device.power.reset();
    device.screen.reset();
    device.previousOrientation.reset();
    device.localizationType = 0;
    device.customizedPartner = 0;
    device.fonts.reset();
    facts().colourMask = device.profile.colourMask;
    journal::forget();
}

} // namespace

DeviceForTest::DeviceForTest(const QString &profile)
{
    if (Device *const running = Device::instance()) {
        if (running->profile.name != profile)
            qFatal("The test asks for the profile \"%s\", but the device was started with \"%s\".",
                   qPrintable(profile), qPrintable(running->profile.name));
    } else {
        QString error;
        const std::optional<Profile> found = Profile::named(profilesFolder(), profile, &error);
        if (!found)
            qFatal("%s", qPrintable(error));
        Device::start(*found);
        m_started = true;
    }
    reset(*Device::instance());
}

DeviceForTest::~DeviceForTest()
{
    if (m_mounted) {
        facts().cardPresent = m_mounted->first;
        facts().usbPresent = m_mounted->second;
    }
    if (Device *const running = Device::instance())
        reset(*running);
    if (m_started)
        Device::stop();
}

QList<SdkCall> DeviceForTest::calls(const QByteArrayList &names) const
{
    QList<SdkCall> found = journal::entries();
    found.removeIf([&names](const SdkCall &call) {
        return !call.onMainThread || (!names.isEmpty() && !names.contains(call.name));
    });
    return found;
}

void DeviceForTest::forgetCalls()
{
    journal::forget();
}

void DeviceForTest::send(int type, int par1, int par2)
{
    Device::instance()->events.send(type, par1, par2);
}

bool DeviceForTest::fire(const QByteArray &timer)
{
    Timers &timers = Device::instance()->timers;
    bool ran = false;
    QObject listener; // ends the connection with this call
    QObject::connect(&timers, &Timers::ranOut, &listener,
                     [&ran, &timer](const QByteArray &name) { ran = ran || name == timer; });
    if (!timers.fire(timer))
        return false;
    // Another callback may clear it, or arm it anew, before its turn comes.
    QDeadlineTimer patience(10'000);
    while (!ran && Device::instance() && !patience.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return ran || !Device::instance();
}

void DeviceForTest::setFonts(const QList<FontRecord> &fonts)
{
    Device::instance()->fonts = fonts;
}

void DeviceForTest::setMounted(bool card, bool usb)
{
    if (!m_mounted)
        m_mounted = {facts().cardPresent, facts().usbPresent};
    facts().cardPresent = card;
    facts().usbPresent = usb;
}

void DeviceForTest::setColourMask(int mask)
{
    facts().colourMask = mask;
}

void DeviceForTest::setLocalization(int type, int partner)
{
    Device::instance()->localizationType = type;
    Device::instance()->customizedPartner = partner;
}

void DeviceForTest::setPreviousOrientation(std::optional<int> orientation)
{
    Device::instance()->previousOrientation = orientation;
}

} // namespace lindenreed::device
