// A device in a place of its own, started by the launcher and asked through its control socket.

#pragma once

#include "launcher_run.h"

#include <control_client.h>
#include <run_folder.h>

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

/// The children of a process, however deep, that run a program of this name; 0: none.
inline qint64 findDescendant(qint64 process, const QByteArray &name)
{
    const QList<QByteArray> children
        = fileContent(QStringLiteral("/proc/%1/task/%1/children").arg(process)).split(' ');
    for (const QByteArray &child : children) {
        const qint64 id = child.trimmed().toLongLong();
        if (id == 0)
            continue;
        if (fileContent(QStringLiteral("/proc/%1/comm").arg(id)).trimmed() == name.left(15))
            return id;
        if (const qint64 found = findDescendant(id, name))
            return found;
    }
    return 0;
}

/// Main thread. What still runs at its end is killed.
class LaunchedDevice
{
public:
    /// Waits until the device answers and has come to rest.
    bool start(const QStringList &options)
    {
        const QString root = place.path(QStringLiteral("device"));
        if (!QDir().mkdir(root))
            return false;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(place.runtimeFolder()));
        const QString runFolder = lindenreed::remote::runFolderOf(root, nullptr).value_or(QString());
        place.start(launcher, QStringList{QStringLiteral("--root"), root} + options);
        const auto connected = [&] {
            client = lindenreed::remote::ControlClient::connectTo(runFolder, nullptr);
            return client.has_value();
        };
        return QTest::qWaitFor(connected, 60'000) && does(QStringLiteral("idle"));
    }

    bool does(const QString &command, const QJsonObject &members = {})
    {
        return client->ask(command, members).value(QLatin1String("ok")).toBool();
    }

    const QTemporaryDir folder;
    LauncherPlace place{folder.path()};
    QProcess launcher;
    std::optional<lindenreed::remote::ControlClient> client;
};
