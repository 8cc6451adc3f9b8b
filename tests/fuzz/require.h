// How a fuzzer tells that a promise was broken.

#pragma once

#include <cstdlib>

inline void require(bool promise)
{
    if (!promise)
        std::abort();
}
