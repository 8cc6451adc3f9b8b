// A device's calls as text, "name argument argument" each.

#pragma once

#include "device_calls.h"

#include <slateview_testing.h>

#include <QByteArrayList>

inline QByteArrayList callLines(const QList<lindenreed::device::SdkCall> &calls)
{
    QByteArrayList lines;
    for (const lindenreed::device::SdkCall &call : calls)
        lines.append((QByteArrayList{call.name} + call.arguments).join(' '));
    return lines;
}

/// The calls that change something, and those that read the orientation or the light, one a line.
inline QByteArray changingCalls(const lindenreed::device::DeviceForTest &device)
{
    QList<lindenreed::device::SdkCall> calls = device.calls();
    calls.removeIf([](const lindenreed::device::SdkCall &call) { return isQuery(call.name); });
    return callLines(calls).join('\n');
}
