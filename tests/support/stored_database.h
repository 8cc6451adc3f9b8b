// The database file, seen past the application: through a connection of its own.

#pragma once

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace stored_database {

inline const QString folder = QStringLiteral("/mnt/ext1/system");
inline const QString path = folder + QStringLiteral("/picture_stand.sqlite");

/// The rows of a query, columns joined by "|"; a failed query gives its error as the one row.
inline QStringList rows(const QString &statement)
{
    QStringList result;
    const QString name = QStringLiteral("witness");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(path);
        QSqlQuery query(database);
        if (!database.open() || !query.exec(QStringLiteral("PRAGMA synchronous = OFF"))
            || !query.exec(statement)) {
            result.append(QStringLiteral("failed: ") + query.lastError().text());
        } else {
            const int columns = query.record().count();
            while (query.next()) {
                QStringList values;
                for (int column = 0; column < columns; ++column)
                    values.append(query.value(column).toString());
                result.append(values.join(u'|'));
            }
        }
    }
    QSqlDatabase::removeDatabase(name);
    return result;
}

/// Runs statements that give no rows; false at the first that fails.
inline bool execute(const QStringList &statements)
{
    for (const QString &statement : statements) {
        const QStringList result = rows(statement);
        if (!result.isEmpty()) {
            qWarning("%s", qPrintable(statement + QStringLiteral(": ") + result.join(u'\n')));
            return false;
        }
    }
    return true;
}

/// Spares the store the waiting for the disk, which is most of what its writes take: no test pulls the plug.
inline void hurry()
{
    QSqlQuery(QStringLiteral("PRAGMA synchronous = OFF"));
}

/// A device whose frame has never run.
inline void remove()
{
    QDir().mkpath(folder);
    QDir(path).removeRecursively(); // where a test put a folder in its place
    QFile::remove(path);
    QFile::remove(path + QStringLiteral("-journal"));
}

/// Drops the connection of a store that is gone, so that the next one can have the name.
inline void forgetDefaultConnection()
{
    QSqlDatabase::removeDatabase(QStringLiteral("qt_sql_default_connection"));
}

} // namespace stored_database
