#include "slate_window_buttons.h"

#include <QKeySequence>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

QString command(DeviceButton button)
{
    switch (button) {
    case DeviceButton::Card:
        return u"card"_s;
    case DeviceButton::Usb:
        return u"usb"_s;
    case DeviceButton::Turn:
        return u"orientation"_s;
    case DeviceButton::Light:
        return u"light"_s;
    case DeviceButton::Invert:
        return u"invert"_s;
    case DeviceButton::Sleep:
        return u"background"_s;
    case DeviceButton::Wake:
        return u"foreground"_s;
    }
    return {};
}

int keyOf(DeviceButton button)
{
    switch (button) {
    case DeviceButton::Card:
        return Qt::Key_D;
    case DeviceButton::Usb:
        return Qt::Key_U;
    case DeviceButton::Turn:
        return Qt::Key_T;
    case DeviceButton::Light:
        return Qt::Key_L;
    case DeviceButton::Invert:
        return Qt::Key_I;
    case DeviceButton::Sleep:
        return Qt::Key_S;
    case DeviceButton::Wake:
        return Qt::Key_R;
    }
    return 0;
}

/// The next orientation code clockwise: the codes are not in the order of the angles.
int clockwise(int orientation)
{
    static constexpr std::array next = {1, 3, 0, 2};
    return next[std::size_t(orientation) & 3U];
}

} // namespace

ButtonStates::ButtonStates(QObject *parent)
    : QObject(parent)
{
}

void ButtonStates::deviceCame()
{
    m_deviceIsThere = true;
    m_refusals.clear();
    m_turnAsked.reset();
    emit asked(u"state"_s, {});
    emit asked(u"light"_s, {}); // changes nothing, and is refused where there is none
    emit changed();
}

void ButtonStates::deviceWent()
{
    m_deviceIsThere = false;
    emit changed();
}

void ButtonStates::setState(const QJsonObject &state)
{
    const QJsonObject media = state.value("media"_L1).toObject();
    const QJsonObject screen = state.value("screen"_L1).toObject();
    m_hasTouch = state.value("touch"_L1).toBool(true);
    m_cardIn = media.value("sd"_L1).toBool();
    m_usbIn = media.value("usb"_L1).toBool();
    m_lightOn = state.value("light"_L1).toObject().value("enabled"_L1).toBool();
    m_inverted = screen.value("inverted"_L1).toBool();
    m_inBackground = !state.value("task"_L1).toObject().value("foreground"_L1).toBool(true);
    if (const int orientation = screen.value("orientation"_L1).toInt(); orientation != m_orientation) {
        m_orientation = orientation;
        m_turnAsked.reset();
    }
    emit changed();
}

void ButtonStates::refuse(const QString &refused, const QString &error, const QString &message)
{
    const bool isForGood = error == "not-supported"_L1 || error == "unknown-command"_L1;
    const bool isNew = isForGood && !m_refusals.contains(refused);
    if (isForGood)
        m_refusals.insert(refused, message);
    // That there is no light was our own question.
    if (refused != "light"_L1 || !isNew)
        emit note(message);
    emit changed();
}

bool ButtonStates::isOn(DeviceButton button) const
{
    switch (button) {
    case DeviceButton::Card:
        return m_cardIn;
    case DeviceButton::Usb:
        return m_usbIn;
    case DeviceButton::Light:
        return m_lightOn && isAvailable(button);
    case DeviceButton::Invert:
        return m_inverted;
    case DeviceButton::Sleep:
        return m_inBackground;
    case DeviceButton::Turn:
    case DeviceButton::Wake:
        break;
    }
    return false;
}

bool ButtonStates::isAvailable(DeviceButton button) const
{
    return m_deviceIsThere && !m_refusals.contains(command(button));
}

QString ButtonStates::name(DeviceButton button) const
{
    switch (button) {
    case DeviceButton::Card:
        return m_cardIn ? u"Take the SD card out"_s : u"Put the SD card in"_s;
    case DeviceButton::Usb:
        return m_usbIn ? u"Take the USB drive out"_s : u"Put the USB drive in"_s;
    case DeviceButton::Turn:
        return u"Turn the device"_s;
    case DeviceButton::Light:
        return isOn(button) ? u"Switch the light off"_s : u"Switch the light on"_s;
    case DeviceButton::Invert:
        return m_inverted ? u"Black on white"_s : u"White on black"_s;
    case DeviceButton::Sleep:
        return u"Sleep: to the background"_s;
    case DeviceButton::Wake:
        return u"Wake: to the front"_s;
    }
    return {};
}

QString ButtonStates::tip(DeviceButton button) const
{
    const QString refusal = m_refusals.value(command(button));
    if (!refusal.isEmpty())
        return refusal;
    const QKeySequence keys(QKeyCombination(Qt::ControlModifier, Qt::Key(keyOf(button))));
    return name(button) + u" ("_s + keys.toString(QKeySequence::NativeText) + u')';
}

std::optional<DeviceButton> ButtonStates::withKey(int key)
{
    for (const DeviceButton button : deviceButtons) {
        if (keyOf(button) == key)
            return button;
    }
    return std::nullopt;
}

int ButtonStates::nextTurn()
{
    m_turnAsked = clockwise(m_turnAsked.value_or(m_orientation));
    if (*m_turnAsked == m_orientation) // once round: where it stands already there is nothing to tell
        m_turnAsked = clockwise(m_orientation);
    return *m_turnAsked;
}

void ButtonStates::press(DeviceButton button)
{
    if (!isAvailable(button)) {
        if (m_deviceIsThere)
            emit note(tip(button));
        return;
    }
    QJsonObject members;
    switch (button) {
    case DeviceButton::Card:
        members.insert(u"in"_s, !m_cardIn);
        break;
    case DeviceButton::Usb:
        members.insert(u"in"_s, !m_usbIn);
        break;
    case DeviceButton::Turn:
        members.insert(u"value"_s, nextTurn());
        break;
    case DeviceButton::Light:
        members.insert(u"enabled"_s, !m_lightOn);
        break;
    case DeviceButton::Invert:
        members.insert(u"on"_s, !m_inverted);
        break;
    case DeviceButton::Sleep:
    case DeviceButton::Wake:
        break;
    }
    emit asked(command(button), members);
}

} // namespace lindenreed::remote
