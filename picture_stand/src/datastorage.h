// The database: playlists with their pictures, and settings.

#pragma once

#include <QObject>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

/**
 * The only code that touches the database file on the internal memory.
 *
 * Each write commits by itself. Failures go to the device log and are otherwise silent: an operation then
 * gives its neutral result. The default connection of Qt SQL belongs to this object. Main thread.
 */
class DataStorage : public QObject
{
    Q_OBJECT

public:
    /// One playlist as it is stored.
    struct Playlists
    {
        long long id = -1;
        QString title; ///< as the user typed it, or a text key that begins with "@"
        QStringList images; ///< absolute paths, sorted by their bytes; also of files that have vanished
    };

    /// Opens the database, makes missing tables and fills a new one. Use instance() instead, where there is
    /// one store for the whole run: two at once would fight for the default connection.
    explicit DataStorage(QObject *parent);

    /// The store of this process, opened at the first call.
    static DataStorage &instance();

    /// The new playlist's id, -1 on failure.
    long long addPlaylist(const QString &title);
    /// False if the playlist already has this picture. A picture that could not be written answers true.
    bool addImageToPlayList(long long playlist, QString url);
    void deleteImageFromPlayList(long long playlist, QString url);
    void updatePlaylist(long long id, const QString &title);
    /// Deletes the playlist and its pictures; its own settings stay.
    void deletePlaylist(long long id);
    /// All playlists, oldest first; what could not be read is missing.
    std::vector<Playlists> getPlaylists();

    /// The value for a playlist, else the common one, which is that of playlist -1; empty where there is
    /// none.
    QString getSetting(QString name, int playlist);
    void setSetting(QString name, QString value, int playlist);

signals:
    /// Playlists or pictures have changed, or a change was tried.
    void changed();

private:
    void createScheme();
    void seed();
    bool execute(const QString &statement);
    std::string errorText() const;

    QSqlDatabase m_database;
};
