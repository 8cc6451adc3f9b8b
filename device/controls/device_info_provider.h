// What QML may know of the device, and the two things it may ask of the panel.

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lindenreed::device {

/// Main thread. Outlives a stopped device; its requests then do nothing.
class DeviceInfoProvider : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_ADDED_IN_VERSION(1, 0)
    QML_SINGLETON

    Q_PROPERTY(bool isTouchDevice READ isTouchDevice CONSTANT FINAL)
    Q_PROPERTY(int screenWidth READ screenWidth NOTIFY screenWidthChanged FINAL)

public:
    explicit DeviceInfoProvider(QObject *parent = nullptr);

    bool isTouchDevice() const { return m_touch; } ///< false: keys only
    int screenWidth() const; ///< pixels, as the panel is turned now

    /// The next drawing refreshes the whole panel in full quality.
    Q_INVOKABLE void requireFullUpdateHQ();

    /// The rectangle, in screen pixels, shows two levels and is fast until nothing moves in it any more.
    Q_INVOKABLE void enterA2onFlick(double x, double y, double width, double height);

signals:
    void screenWidthChanged();

private:
    bool m_touch;
};

} // namespace lindenreed::device
