// The journal as lines that are easy to compare.

#pragma once

#include <slateview_testing.h>

/// "Name(argument, argument) = result" for each call of the main thread, without " = " where there is no
/// result.
inline QByteArrayList journalLines(const lindenreed::device::DeviceForTest &device,
                                   const QByteArrayList &names = {})
{
    QByteArrayList lines;
    const QList<lindenreed::device::SdkCall> calls = device.calls(names);
    for (const lindenreed::device::SdkCall &call : calls) {
        QByteArray line = call.name + '(' + call.arguments.join(", ") + ')';
        if (!call.result.isEmpty())
            line += " = " + call.result;
        lines.append(line);
    }
    return lines;
}
