// What the user can do with a device on the desk beside touching it.

#pragma once

#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QString>

#include <array>
#include <optional>

namespace lindenreed::remote {

enum class DeviceButton { Card, Usb, Turn, Light, Invert, Sleep, Wake };

/// From top to bottom.
inline constexpr std::array deviceButtons
    = {DeviceButton::Card,   DeviceButton::Usb,   DeviceButton::Turn, DeviceButton::Light,
       DeviceButton::Invert, DeviceButton::Sleep, DeviceButton::Wake};

/// Knows how each button stands and which command it stands for. What goes to the device leaves by asked().
class ButtonStates : public QObject
{
    Q_OBJECT

public:
    explicit ButtonStates(QObject *parent = nullptr);

    void deviceCame(); ///< asks what the device has
    void deviceWent(); ///< nothing can be pressed until it comes again
    void setState(const QJsonObject &state); ///< the answer to "state"
    /// What the device did not do, and why. What it never does is not offered again.
    void refuse(const QString &command, const QString &error, const QString &message);

    /// Whether a finger does anything; without one, keys move a focus. True until the device has told.
    bool hasTouch() const { return m_hasTouch; }
    /// Card in, light on, sleeping while another task is in front; false for what is no switch.
    bool isOn(DeviceButton button) const;
    bool isAvailable(DeviceButton button) const;
    QString name(DeviceButton button) const; ///< what pressing it does
    QString tip(DeviceButton button) const; ///< the name with its key, or why the button does nothing
    static std::optional<DeviceButton> withKey(int key); ///< held with Ctrl

    void press(DeviceButton button);

signals:
    void asked(const QString &command, const QJsonObject &members);
    void changed();
    void note(const QString &sentence); ///< for the user, about something that was just refused

private:
    int nextTurn();

    bool m_deviceIsThere = false;
    bool m_hasTouch = true;
    bool m_cardIn = false;
    bool m_usbIn = false;
    bool m_lightOn = false;
    bool m_inverted = false;
    bool m_inBackground = false;
    int m_orientation = 0;
    std::optional<int> m_turnAsked; ///< and not done: the application may have declined
    QHash<QString, QString> m_refusals; ///< command to reason, of what this device never does
};

} // namespace lindenreed::remote
