#include "sleep_delay.h"

#include <device.h>

namespace lindenreed::device {

void SleepDelay::renew()
{
    if (Device *device = Device::instance())
        device->power.putOffSleep();
}

} // namespace lindenreed::device
