// The buttons beside a device that has just come, and what they ask of it. Needs the library
// slate_window_parts.

#pragma once

#include <slate_window_buttons.h>

#include <QJsonObject>
#include <QSignalSpy>
#include <QTest>
#include <QVariant>

/// What a device tells of its switches.
inline QJsonObject buttonsState(bool card, bool usb, bool light, bool inverted, int orientation)
{
    return {
        {QStringLiteral("media"), QJsonObject{{QStringLiteral("sd"), card}, {QStringLiteral("usb"), usb}}},
        {QStringLiteral("light"), QJsonObject{{QStringLiteral("enabled"), light}}},
        {QStringLiteral("screen"),
         QJsonObject{{QStringLiteral("inverted"), inverted}, {QStringLiteral("orientation"), orientation}}}};
}

class AskedButtons : public lindenreed::remote::ButtonStates
{
public:
    AskedButtons() { deviceCame(); }

    /// As "command member=value".
    QString lastRequest() const
    {
        const QJsonObject members = requests.constLast().at(1).toJsonObject();
        QString line = requests.constLast().at(0).toString();
        for (auto member = members.constBegin(); member != members.constEnd(); ++member)
            line += u' ' + member.key() + u'=' + member.value().toVariant().toString();
        return line;
    }

    QSignalSpy requests{this, &ButtonStates::asked};
    QSignalSpy notes{this, &ButtonStates::note};
};
