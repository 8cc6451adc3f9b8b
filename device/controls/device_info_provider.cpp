#include "device_info_provider.h"

#include <device.h>
#include <facts.h>

#include <QRectF>

namespace lindenreed::device {

namespace {

constexpr int fullRefreshOfNextDrawing = 5; // update mode

} // namespace

DeviceInfoProvider::DeviceInfoProvider(QObject *parent)
    : QObject(parent)
    , m_touch(!Device::instance() || Device::instance()->profile.touch)
{
    if (Device *device = Device::instance())
        connect(&device->screen, &Screen::geometryChanged, this, &DeviceInfoProvider::screenWidthChanged);
}

int DeviceInfoProvider::screenWidth() const
{
    return facts().width;
}

void DeviceInfoProvider::requireFullUpdateHQ()
{
    if (Device *device = Device::instance())
        device->screen.setUpdateMode(fullRefreshOfNextDrawing);
}

void DeviceInfoProvider::enterA2onFlick(double x, double y, double width, double height)
{
    if (Device *device = Device::instance())
        device->screen.useFastMode(QRectF(x, y, width, height).toAlignedRect());
}

} // namespace lindenreed::device
