// What the application asked of the device: the last calls that crossed the SDK boundary.

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>

namespace lindenreed::device {

/// One call of the SDK.
struct SdkCall
{
    quint64 number = 0; ///< from 1, of this process
    QByteArray name;
    QByteArrayList arguments; ///< as text, without the data of log lines and pictures
    QByteArray result; ///< as text, empty for none
    bool onMainThread = true;
};

/// A ring of 1,000 entries, written by the SDK libraries alone. Any thread, also in static destructors.
namespace journal {

void record(QByteArray name, QByteArrayList arguments = {}, QByteArray result = {});
QList<SdkCall> entries(); ///< oldest first
void forget(); ///< empties the ring; numbers go on

} // namespace journal
} // namespace lindenreed::device
