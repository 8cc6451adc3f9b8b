// What a test allocates. To be included by one source of a program: it replaces the global operator new.

#pragma once

#include <algorithm>
#include <cstdlib>
#include <new>

struct Allocations
{
    std::size_t largest = 0;
    std::size_t total = 0;

    void clear() { *this = {}; }
};

inline thread_local Allocations allocations;

// Not inlined: the compiler would complain of memory that free() gets from new.
[[gnu::noinline]] void *operator new(std::size_t size)
{
    allocations.largest = std::max(allocations.largest, size);
    allocations.total += size;
    if (void *memory = std::malloc(size > 0 ? size : 1))
        return memory;
    std::abort();
}

[[gnu::noinline]] void operator delete(void *memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}
