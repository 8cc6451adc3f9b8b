// Pictures are read as in a device, without one: a grey panel, and the device's own reader of JPEG files.

#pragma once

#include <facts.h>
#include <paths.h>

#include <QCoreApplication>

namespace lindenreed::benchmarks {

/// Once, before the first picture.
inline void readAsOnAGreyPanel()
{
    QCoreApplication::addLibraryPath(device::pluginFolder());
    device::facts().running = true;
}

} // namespace lindenreed::benchmarks
