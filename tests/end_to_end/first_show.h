// Starting the show of the first playlist, as a user of the device does.

#pragma once

#include <control_client.h>

#include <QJsonObject>

/// Presses the play button, and goes on through the two dialogs that come before the first show of a device.
inline bool startFirstShow(lindenreed::remote::ControlClient &client)
{
    const auto does = [&client](const QString &command, const QJsonObject &members) {
        return client.ask(command, members).value(QLatin1String("ok")).toBool();
    };
    const auto press = [does](const QString &name) {
        return does(QStringLiteral("press"), {{QStringLiteral("name"), name}})
            && does(QStringLiteral("idle"), {{QStringLiteral("ms"), 150}});
    };
    return press(QStringLiteral("Start playback"))
        && (!press(QStringLiteral("Continue")) || press(QStringLiteral("Start playback")));
}
