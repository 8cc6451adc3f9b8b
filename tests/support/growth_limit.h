// How much a process may grow, in a test that watches it.

#pragma once

#include <QtGlobal>

/// In KiB. A sanitizer adds what it keeps back of freed memory (16 MiB, set in tests/CMakeLists.txt) and its
/// records of it, which of what is reserved take an eighth though nothing of it is used.
constexpr qint64 growthLimit(qint64 plain, [[maybe_unused]] qint64 reserved = 0)
{
#ifdef __SANITIZE_ADDRESS__
    return plain + 24 * 1024 + reserved / 8;
#else
    return plain;
#endif
}
