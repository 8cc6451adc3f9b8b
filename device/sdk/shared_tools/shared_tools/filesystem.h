// Storages that come and go.

#pragma once

#include <string>

namespace lindenreed::system::filesystem {

/// Whether the SD card is in; `path` is where it is mounted, "/mnt/ext2", no other path is a card's. False
/// before the device has started. Any thread.
bool IsSDCardMounted(const std::string &path);

} // namespace lindenreed::system::filesystem
