// A playlist in the database, in the place of the one that a new database has.

#pragma once

#include "show_device.h"
#include "stored_database.h"

#include <QMap>

namespace stored_show {

/// Starts and ends the program once, which makes the database. No program may run.
inline bool store(const QStringList &pictures, const QMap<QString, QString> &settings)
{
    stored_database::remove();
    ShowDevice first;
    if (!first.start() || !first.does(QStringLiteral("quit")) || !first.program().waitForFinished())
        return false;
    QStringList rows;
    for (const QString &path : pictures)
        rows.append(QStringLiteral("('%1', 1)").arg(path));
    QStringList statements{QStringLiteral("DELETE FROM playlist_images"),
                           QStringLiteral("INSERT INTO playlist_images (url, playlist) VALUES ")
                               + rows.join(u',')};
    for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting)
        statements.append(QStringLiteral("UPDATE settings SET value = '%2' WHERE name = '%1'")
                              .arg(setting.key(), setting.value()));
    return stored_database::execute(statements);
}

} // namespace stored_show
