// Memory that is not there. To be included by one source of a program, which has to export its symbols
// (ENABLE_EXPORTS): it replaces the C library's allocation, on which operator new stands too. Not for
// sanitizers, which have their own.

#pragma once

#include <atomic>
#include <cerrno>
#include <cstddef>

/// While an object of this lives, nothing of `limit` bytes or more can be allocated, on any thread.
class FailingAllocations
{
public:
    explicit FailingAllocations(std::size_t limit) { s_limit = limit; }
    ~FailingAllocations() { s_limit = SIZE_MAX; }
    FailingAllocations(const FailingAllocations &) = delete;
    FailingAllocations &operator=(const FailingAllocations &) = delete;

    int count() const { return s_count; } ///< that failed, ever

    static bool fails(std::size_t size)
    {
        if (size < s_limit)
            return false;
        ++s_count;
        errno = ENOMEM;
        return true;
    }

private:
    static inline std::atomic<std::size_t> s_limit = SIZE_MAX;
    static inline std::atomic<int> s_count = 0;
};

extern "C" {
void *__libc_malloc(std::size_t size); // NOLINT(bugprone-reserved-identifier): the library's own names
void *__libc_calloc(std::size_t count, std::size_t size); // NOLINT(bugprone-reserved-identifier)
void *__libc_realloc(void *memory, std::size_t size); // NOLINT(bugprone-reserved-identifier)
void *__libc_memalign(std::size_t alignment, std::size_t size); // NOLINT(bugprone-reserved-identifier)

void *malloc(std::size_t size)
{
    return FailingAllocations::fails(size) ? nullptr : __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size)
{
    return FailingAllocations::fails(count * size) ? nullptr : __libc_calloc(count, size);
}

void *realloc(void *memory, std::size_t size)
{
    return FailingAllocations::fails(size) ? nullptr : __libc_realloc(memory, size);
}

void *aligned_alloc(std::size_t alignment, std::size_t size)
{
    return FailingAllocations::fails(size) ? nullptr : __libc_memalign(alignment, size);
}

int posix_memalign(void **memory, std::size_t alignment, std::size_t size)
{
    void *const found = FailingAllocations::fails(size) ? nullptr : __libc_memalign(alignment, size);
    if (!found)
        return ENOMEM;
    *memory = found;
    return 0;
}
}
