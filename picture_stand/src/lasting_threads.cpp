#include "lasting_threads.h"

#include <QSemaphore>
#include <QThreadPool>

#include <memory>

namespace lindenreed::picture_stand {

void startLastingThreads(QThreadPool &pool)
{
    const int count = pool.maxThreadCount();
    pool.setExpiryTimeout(-1);
    const auto begun = std::make_shared<QSemaphore>();
    for (int i = 0; i < count; ++i) {
        pool.start([count, begun] {
            // Each has a thread of its own. Where the kernel refuses one, the others go on without it.
            begun->release();
            if (begun->tryAcquire(count, 1000))
                begun->release(count);
        });
    }
}

} // namespace lindenreed::picture_stand
