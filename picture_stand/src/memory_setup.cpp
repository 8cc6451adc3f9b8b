#include "memory_setup.h"

#include <QImageReader>

#include <malloc.h>

namespace lindenreed::picture_stand {

void setUpMemory()
{
#ifdef __GLIBC__
    // Left to itself the library takes the first freed picture as a sign to keep the next ones, up to 32 MiB
    // each, in the heaps of up to eight threads a processor; in between lie pictures of the cache, so that
    // nothing of it comes back.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    mallopt(M_ARENA_MAX, 2);
#endif
    // What is read ahead is reckoned with it; Qt's own is 128 MiB, and 256 from 6.8 on.
    constexpr int mebibytes = 128;
    QImageReader::setAllocationLimit(mebibytes);
}

void giveFreeMemoryBack()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace lindenreed::picture_stand
