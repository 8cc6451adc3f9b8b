// The device's log: lines on standard error.

#pragma once

#include <string>

namespace lindenreed::device::log {

/// Writes "LEVEL FILE:LINE FUNCTION: MESSAGE" as one line with one write; control characters are shown as
/// "\n",
/// "\x1b". Any thread.
void line(int level, const char *file, int line, const char *function, const std::string &message);

} // namespace lindenreed::device::log
