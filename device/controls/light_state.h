// The frontlight for QML.

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lindenreed::device {

/// The device's light as it is now, and the means to change it at once. Main thread. Outlives a stopped
/// device: the light is then absent and dark, and setting it does nothing.
class LightState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_ADDED_IN_VERSION(1, 0)
    QML_SINGLETON

    Q_PROPERTY(bool present READ isPresent CONSTANT FINAL) ///< this kind of device has a light
    Q_PROPERTY(bool colourPresent READ hasColour CONSTANT FINAL) ///< and its colour can be set
    Q_PROPERTY(int brightness READ brightness WRITE setBrightness NOTIFY changed FINAL) ///< 0 to 100
    Q_PROPERTY(int colour READ colour WRITE setColour NOTIFY changed FINAL) ///< 0 coldest, 100 warmest
    Q_PROPERTY(bool brightnessAuto READ brightnessAuto WRITE setBrightnessAuto NOTIFY changed FINAL)
    Q_PROPERTY(bool colourAuto READ colourAuto WRITE setColourAuto NOTIFY changed FINAL)
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY changed FINAL)

public:
    explicit LightState(QObject *parent = nullptr);

    bool isPresent() const { return m_present; }
    bool hasColour() const { return m_colourPresent; }
    int brightness() const;
    int colour() const;
    bool brightnessAuto() const;
    bool colourAuto() const;
    bool isEnabled() const;

    void setBrightness(int level);
    void setColour(int level);
    void setBrightnessAuto(bool on);
    void setColourAuto(bool on);
    void setEnabled(bool on);

signals:
    void changed();

private:
    bool m_present = false;
    bool m_colourPresent = false;
};

} // namespace lindenreed::device
