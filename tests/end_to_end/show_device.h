// The real program beside a test, driven through its control socket as any client would.

#pragma once

#include "first_show.h"

#include <control_client.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QRect>
#include <QTest>

#include <chrono>
#include <optional>

/// The picture frame, started in the device root that the test itself runs in. Its end ends the program.
class ShowDevice
{
public:
    ~ShowDevice()
    {
        if (m_program.state() != QProcess::NotRunning) {
            m_program.kill();
            m_program.waitForFinished();
        }
    }

    static QString programPath()
    {
        return QCoreApplication::applicationDirPath() + QStringLiteral("/picture_stand");
    }

    /// Waits until the first screen is complete.
    bool start()
    {
        m_program.setProcessChannelMode(QProcess::SeparateChannels);
        m_program.start(programPath(), QStringList());
        if (!m_program.waitForStarted())
            return false;
        const auto connectedOrOver = [this] {
            m_client = lindenreed::remote::ControlClient::connectTo(QStringLiteral("/devroot/run"), nullptr);
            return m_client || m_program.state() == QProcess::NotRunning;
        };
        return QTest::qWaitFor(connectedOrOver, 20'000) && m_client && idle();
    }

    QJsonObject ask(const QString &command, const QJsonObject &members = {},
                    std::chrono::milliseconds limit = std::chrono::seconds(40))
    {
        return m_client->ask(command, members, limit);
    }
    bool does(const QString &command, const QJsonObject &members = {})
    {
        const QJsonObject answer = ask(command, members);
        if (!answer.value(QLatin1String("ok")).toBool())
            qWarning("%s: %s", qUtf8Printable(command),
                     qUtf8Printable(answer.value(QLatin1String("message")).toString()));
        return answer.value(QLatin1String("ok")).toBool();
    }
    bool idle() { return does(QStringLiteral("idle"), {{QStringLiteral("ms"), 150}}); }
    bool tap(int x, int y)
    {
        return does(QStringLiteral("tap"), {{QStringLiteral("x"), x}, {QStringLiteral("y"), y}}) && idle();
    }
    bool drag(int x1, int y1, int x2, int y2)
    {
        return does(QStringLiteral("drag"),
                    {{QStringLiteral("x1"), x1},
                     {QStringLiteral("y1"), y1},
                     {QStringLiteral("x2"), x2},
                     {QStringLiteral("y2"), y2}})
            && idle();
    }
    bool fire(const QString &timer)
    {
        return does(QStringLiteral("fire"), {{QStringLiteral("name"), timer}}) && idle();
    }
    bool press(const QString &name)
    {
        return does(QStringLiteral("press"), {{QStringLiteral("name"), name}}) && idle();
    }
    /// Starts the first playlist's show.
    bool play() { return startFirstShow(*m_client); }
    QImage screenshot() const { return m_client->screenshot(); }
    QJsonObject state() { return ask(QStringLiteral("state")); }
    QJsonArray journal()
    {
        return ask(QStringLiteral("journal"), {{QStringLiteral("n"), 1000}})
            .value(QLatin1String("calls"))
            .toArray();
    }

    /// All that is on the screen, in reading order, however deep.
    QList<QJsonObject> items()
    {
        QList<QJsonObject> all;
        collect(ask(QStringLiteral("tree")).value(QLatin1String("tree")).toArray(), all);
        return all;
    }
    /// Of one of items(), in screen pixels.
    static QRect rectangleOf(const QJsonObject &item)
    {
        const QJsonObject rectangle = item.value(QLatin1String("rectangle")).toObject();
        return {rectangle.value(QLatin1String("x")).toInt(), rectangle.value(QLatin1String("y")).toInt(),
                rectangle.value(QLatin1String("width")).toInt(),
                rectangle.value(QLatin1String("height")).toInt()};
    }

    const QProcess &program() const { return m_program; }
    QProcess &program() { return m_program; }

    /// What the program has written to standard error since the last call.
    QByteArray errors()
    {
        QCoreApplication::processEvents();
        return m_program.readAllStandardError();
    }

    /// The program's own diagnostics; others are warnings of the interface, say.
    static bool isDiagnostic(const QByteArray &line)
    {
        return line.startsWith("add image ") || line.startsWith("remove image ")
            || line.startsWith("FRONTLIGHT ") || line.startsWith("4 picture_stand/")
            || line.contains("/inhibitor.cpp:");
    }

    /// The lines among the errors that are no diagnostics.
    QByteArrayList unexpectedErrors()
    {
        QByteArrayList unexpected;
        for (const QByteArray &line : errors().split('\n')) {
            if (!isDiagnostic(line) && !line.trimmed().isEmpty())
                unexpected.append(line.trimmed());
        }
        return unexpected;
    }

private:
    static void collect(const QJsonArray &items, QList<QJsonObject> &all)
    {
        for (const QJsonValue &value : items) {
            all.append(value.toObject());
            collect(value.toObject().value(QLatin1String("children")).toArray(), all);
        }
    }

    QProcess m_program;
    std::optional<lindenreed::remote::ControlClient> m_client;
};
