// What the database file holds of the playlist workflow, as the plain model of it tells the same.

#pragma once

#include "stored_database.h"

/// Reads past the application, through a connection of its own that stays open. One at a time.
class WorkflowWitness
{
public:
    WorkflowWitness()
    {
        QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name).setDatabaseName(stored_database::path);
    }
    ~WorkflowWitness() { QSqlDatabase::removeDatabase(name); }
    WorkflowWitness(const WorkflowWitness &) = delete;
    WorkflowWitness &operator=(const WorkflowWitness &) = delete;

    /// Playlists, pictures and intervals, as of WorkflowModel::stored(); failures are among the lines.
    QStringList stored() const
    {
        return lines(
            {QStringLiteral("SELECT 'title', id, title FROM playlists ORDER BY id"),
             QStringLiteral("SELECT 'picture', playlist, url FROM playlist_images ORDER BY playlist, url"),
             QStringLiteral(
                 "SELECT 'interval', playlist, value FROM settings WHERE name = 'change_picture_time' "
                 "ORDER BY playlist")});
    }

private:
    static QStringList lines(const QStringList &statements)
    {
        QStringList found;
        QSqlQuery query(QSqlDatabase::database(name));
        for (const QString &statement : statements) {
            if (!query.exec(statement))
                found.append(query.lastError().text());
            while (query.next())
                found.append(query.value(0).toString() + u' ' + query.value(1).toString() + u' '
                             + query.value(2).toString());
        }
        return found;
    }

    static inline const QString name = QStringLiteral("walk");
};
