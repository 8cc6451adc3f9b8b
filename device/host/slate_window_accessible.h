// The device on the desk for people who do not see it, and for programs that test it.

#pragma once

namespace lindenreed::remote {

/// From here on every DeviceView tells assistive programs its keys and buttons: name, place, state and the
/// action of pressing. Needs the application object.
void makeDeviceViewAccessible();

} // namespace lindenreed::remote
