#include "lasting_threads.h"

#include <QThreadPool>

#include <latch>
#include <memory>

namespace lindenreed::picture_stand {

void startLastingThreads(QThreadPool &pool, int count)
{
    pool.setExpiryTimeout(-1);
    const auto begun = std::make_shared<std::latch>(count);
    for (int i = 0; i < count; ++i) {
        pool.start([&pool, begun] {
            pool.releaseThread(); // there may be more of them than run at once
            begun->arrive_and_wait(); // each has a thread of its own
            pool.reserveThread();
        });
    }
}

} // namespace lindenreed::picture_stand
