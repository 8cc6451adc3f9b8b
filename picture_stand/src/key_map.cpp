#include "key_map.h"

#include "global_config.h"

#include <shared_tools/cfg_wrapper.h>

#include <algorithm>

namespace lindenreed::picture_stand {

KeyMap readKeyMap()
{
    KeyMap keys;
    utilities::CfgWrapper config(globalConfigPath, 1);
    // No device has this many keys; a damaged number must not keep the program from starting.
    constexpr int mostKeys = 1000;
    const int count = std::min(config.readIfExists<int>("btkeys.count").value_or(0), mostKeys);
    for (int i = 1; i <= count; ++i) {
        const std::string key = "btkeys.bt" + std::to_string(i);
        if (config.read<std::string>(key + ".name", {}) == "__DELETED__")
            continue;
        const int scanCode = config.readIfExists<int>(key + ".scanCode").value_or(0);
        const auto action = config.read<std::string>("tkey.bt" + std::to_string(i) + ".0", {});
        keys.try_emplace(scanCode, action); // of two keys with one code the first counts
    }
    config.closeNoSave();
    return keys;
}

} // namespace lindenreed::picture_stand
