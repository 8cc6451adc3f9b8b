#include "journal.h"

#include <deque>
#include <mutex>

#include <unistd.h>

namespace lindenreed::device::journal {

namespace {

constexpr std::size_t capacity = 1000;

struct Ring
{
    std::mutex mutex;
    std::deque<SdkCall> calls;
    quint64 lastNumber = 0;
};

// Never destroyed: calls from static destructors are entered, too.
Ring &ring()
{
    static Ring *const instance = new Ring;
    return *instance;
}

} // namespace

void record(QByteArray name, QByteArrayList arguments, QByteArray result)
{
    SdkCall call;
    call.name = std::move(name);
    call.arguments = std::move(arguments);
    call.result = std::move(result);
    call.onMainThread = gettid() == getpid();

    Ring &all = ring();
    const std::lock_guard lock(all.mutex);
    call.number = ++all.lastNumber;
    if (all.calls.size() == capacity)
        all.calls.pop_front();
    all.calls.push_back(std::move(call));
}

QList<SdkCall> entries()
{
    Ring &all = ring();
    const std::lock_guard lock(all.mutex);
    return QList<SdkCall>(all.calls.cbegin(), all.calls.cend());
}

void forget()
{
    Ring &all = ring();
    const std::lock_guard lock(all.mutex);
    all.calls.clear();
}

} // namespace lindenreed::device::journal
