// What the configurable keys of the device do.

#pragma once

#include <map>
#include <string>

namespace lindenreed::picture_stand {

/// Scan code to action, such as "@KA_next". Actions that nobody knows are among them, and empty ones.
using KeyMap = std::map<int, std::string>;

/// The keys as they are configured now; none where the configuration is missing. Main thread.
KeyMap readKeyMap();

} // namespace lindenreed::picture_stand
