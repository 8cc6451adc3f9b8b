// All playlists, as a list for the interface.

#pragma once

#include "datastorage.h"

#include <QAbstractListModel>

#include <vector>

/**
 * A copy of the store's playlists, in the store's order, with the playlist that the user works on.
 *
 * Writing goes to the store, whose signal brings the copy up to date. Whether files exist is asked of the
 * file system at each call. Main thread.
 */
class PlaylistModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(qlonglong activeId READ activeId WRITE setActiveId NOTIFY activeIdChanged)
    Q_PROPERTY(PlaylistMode mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Roles {
        TitleRole = 0, // the value of Qt::DisplayRole
        IdRole = Qt::UserRole + 1,
        CountRole, ///< stored pictures
        CountExistsRole ///< pictures whose file is there
    };
    Q_ENUM(Roles)

    /// What the user is doing.
    enum PlaylistMode {
        ViewMode, ///< one playlist is open
        AddMode, ///< pictures are being picked for an existing playlist
        CreateMode, ///< pictures are being picked for a new playlist
        AllViewMode ///< the overview of all playlists
    };
    Q_ENUM(PlaylistMode)

    explicit PlaylistModel(QObject *parent = nullptr);

    qlonglong activeId() const { return m_activeId; } ///< -1: none
    void setActiveId(qlonglong id);
    PlaylistMode mode() const { return m_mode; }
    void setMode(PlaylistMode mode);
    int count() const { return rowCount(); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void activeIdChanged();
    void modeChanged();
    void countChanged();

public slots:
    /// Reads all playlists from the store.
    void refreshData();
    /// Makes an empty playlist; its id, -1 on failure.
    qlonglong addItem(QString name);
    void deleteItem(qlonglong id);
    void editItem(qlonglong id, QString name);
    /// The index-th picture of a playlist among those whose file is there, or "".
    QString getImage(int playlistId, int index);
    /// Adds to the active playlist.
    void addImagesToPlaylist(QStringList images);
    void deleteImages(qlonglong id, QStringList images);
    void deleteImage(qlonglong id, QString image);
    /// The playlist's row, -1 if there is none.
    int getIndexById(qlonglong id);
    /// All stored pictures, also those whose file has vanished.
    QStringList getImagesById(qlonglong id);
    /// Hands a picture to the device's own viewer.
    void openImage(QString path);
    bool hasImage(qlonglong id, QString image);
    /// Says how many pictures the last adding brought, for the user. The active playlist must exist:
    /// std::out_of_range otherwise.
    QString getImagesAddedMessage();
    bool hasExistsImage(qlonglong id);
    int countExistsImages(QStringList list) const;

private:
    const DataStorage::Playlists *find(qlonglong id) const;
    void beginOuterReset();
    void endOuterReset();

    std::vector<DataStorage::Playlists> playlists;
    qlonglong m_activeId = 0;
    PlaylistMode m_mode = ViewMode;
    int lastAddedCount = 0;
};
