// What every operation of the SDK does around its one call into the core: it enters itself into the journal.

#pragma once

#include <device.h>
#include <journal.h>

#include <concepts>
#include <cstring>
#include <type_traits>

#include <unistd.h>

namespace lindenreed::device::sdk {

/// An argument or a result as the journal shows it. Long texts are cut: the journal is for people.
inline QByteArray shown(const char *text)
{
    constexpr std::size_t longest = 200;
    return text ? QByteArray(text, qsizetype(strnlen(text, longest))) : QByteArray("null");
}

template <std::integral T>
QByteArray shown(T number)
{
    return QByteArray::number(qint64(number));
}

inline QByteArray shown(double number)
{
    return QByteArray::number(number);
}

/// A call without a result.
template <typename... Arguments>
void note(const char *name, Arguments... arguments)
{
    journal::record(name, {shown(arguments)...});
}

/// A call with a result, which is handed on.
template <typename Result, typename... Arguments>
Result answer(const char *name, Result result, Arguments... arguments)
{
    journal::record(name, {shown(arguments)...}, shown(result));
    return result;
}

/// The device, null before it has started and after it has stopped. For operations of the main thread.
inline Device *device()
{
    Q_ASSERT_X(gettid() == getpid(), "SDK", "this operation is for the main thread");
    return Device::instance();
}

} // namespace lindenreed::device::sdk
