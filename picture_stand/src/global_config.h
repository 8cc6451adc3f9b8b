// Where the device keeps its own configuration.

#pragma once

namespace lindenreed::picture_stand {

/// Read only; may be missing.
inline constexpr char globalConfigPath[] = "/mnt/ext1/system/config/global.cfg";

} // namespace lindenreed::picture_stand
