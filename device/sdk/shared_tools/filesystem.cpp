#include "shared_tools/filesystem.h"

#include "call.h"

#include <facts.h>

namespace lindenreed::system::filesystem {

bool IsSDCardMounted(const std::string &path)
{
    const bool mounted = path == "/mnt/ext2" && device::facts().cardPresent;
    return device::sdk::answer("IsSDCardMounted", mounted, path.c_str());
}

} // namespace lindenreed::system::filesystem
