#include "lasting_threads.h"

#include <QThreadPool>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace lindenreed::picture_stand {

namespace {

struct Begun
{
    std::mutex mutex;
    std::condition_variable changed;
    int count = 0;
};

} // namespace

void startLastingThreads(QThreadPool &pool)
{
    const int count = pool.maxThreadCount();
    pool.setExpiryTimeout(-1);
    const auto begun = std::make_shared<Begun>();
    for (int i = 0; i < count; ++i) {
        pool.start([count, begun] {
            // Each has a thread of its own. Where the kernel refuses one, the others go on without it.
            std::unique_lock lock(begun->mutex);
            ++begun->count;
            begun->changed.notify_all();
            begun->changed.wait_for(lock, std::chrono::seconds(1), [&] { return begun->count == count; });
        });
    }
}

} // namespace lindenreed::picture_stand
