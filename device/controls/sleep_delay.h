// Keeping the device awake, for QML.

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lindenreed::device {

/// Main thread. Outlives a stopped device; its requests then do nothing.
class SleepDelay : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_ADDED_IN_VERSION(1, 0)
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The time after which an idle device goes to sleep starts anew.
    Q_INVOKABLE void renew();
};

} // namespace lindenreed::device
