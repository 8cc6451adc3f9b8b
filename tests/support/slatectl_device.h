// A device that slatectl finds: it knows every command, and a test says what it answers. Needs the library
// remote.

#pragma once

#include "slatectl_place.h"

#include <control_server.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>
#include <memory>

class SlatectlDevice
{
public:
    using Reply = lindenreed::remote::Reply;

    SlatectlDevice()
    {
        const QStringList members = words("x y ms x1 y1 x2 y2 steps name id n type par1 par2 text brightness "
                                          "color auto color_auto enabled on value in");
        const QStringList commands
            = words("state tap hold drag key event type timers fire card usb light invert orientation "
                    "background foreground tree press increase decrease idle journal opened quit chart");
        for (const QString &command : commands) {
            server->add(command, members, [this](const QJsonObject &request, const Reply &reply) {
                requests.append(request);
                answer(reply);
            });
        }
        QString error;
        if (!server->listen(place.runFolder() + QStringLiteral("/control"), &error))
            qFatal("%s", qUtf8Printable(error));
    }

    SlatectlPlace place;
    QList<QJsonObject> requests;
    std::function<void(const Reply &)> answer = [](const Reply &reply) {
        reply({{QStringLiteral("done"), true}});
    };
    std::unique_ptr<lindenreed::remote::ControlServer> server
        = std::make_unique<lindenreed::remote::ControlServer>();

private:
    static QStringList words(const char *text) { return QString::fromLatin1(text).split(u' '); }
};
