// Where the device's own data and its literal places are.

#pragma once

#include <QString>

namespace lindenreed::device {

/// share/picture_stand beside the library this code is in, absolute, without a final slash. Works before any
/// application object exists, in the build tree and in an installed one.
QString dataFolder();

QString profilesFolder(); ///< of the device's own data

/// The device's own plug-ins for Qt, beside the same library: a folder that Qt does not look into by itself.
QString pluginFolder();

inline constexpr char configurationPath[] = "/mnt/ext1/system/config/global.cfg";
inline constexpr char deviceRecordPath[] = "/devroot/device.json"; ///< {"profile": NAME, "orientation": N}
inline constexpr char runFolder[] = "/devroot/run"; ///< control socket and panel file

} // namespace lindenreed::device
