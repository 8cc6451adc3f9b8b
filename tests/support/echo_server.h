// A control server with three commands, for tests of what holds for every command.

#pragma once

#include "control_server.h"

#include <QTemporaryDir>
#include <QTest>

/// "echo" answers with its text, "wait" keeps its reply in `pending`, "refuse" fails.
class EchoServer
{
public:
    EchoServer()
    {
        using namespace Qt::StringLiterals;
        using lindenreed::remote::Reply;
        server = std::make_unique<lindenreed::remote::ControlServer>();
        server->add(u"echo"_s, {u"text"_s}, [this](const QJsonObject &request, const Reply &reply) {
            ++echoes;
            reply({{u"text"_s, request.value("text"_L1)}});
        });
        server->add(u"wait"_s, {}, [this](const QJsonObject &, const Reply &reply) {
            ++waits;
            pending.append(reply);
        });
        server->add(u"refuse"_s, {}, [](const QJsonObject &, const Reply &reply) {
            reply.fail(u"not-possible"_s, u"The item is covered."_s);
        });
        QString error;
        if (!server->listen(path(), &error))
            qFatal("%s", qPrintable(error));
    }
    ~EchoServer() { server.reset(); }

    QString path() const { return folder.filePath(QStringLiteral("control")); }

    QTemporaryDir folder;
    std::unique_ptr<lindenreed::remote::ControlServer> server;
    QList<lindenreed::remote::Reply> pending; ///< of the command "wait"
    int waits = 0; ///< how often "wait" began
    int echoes = 0;
};
