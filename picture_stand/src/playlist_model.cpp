#include "playlist_model.h"

#include "two_texts.h"

#include <slateview.h>

#include <QFile>
#include <QSignalBlocker>

#include <algorithm>
#include <iterator>

using lindenreed::picture_stand::withTwoTexts;

namespace {

constexpr qsizetype messageBytes = 255; // of a buffer of 256 with its terminator

// The words of a language table that lacks them, or has them with other placeholders.
constexpr const char *onePictureAdded = "%s picture was added to %s";
constexpr const char *picturesAdded = "%s pictures were added to %s";

} // namespace

PlaylistModel::PlaylistModel(QObject *parent)
    : QAbstractListModel(parent)
{
    refreshData();
    connect(&DataStorage::instance(), &DataStorage::changed, this, &PlaylistModel::refreshData);
    setActiveId(-1);
    setMode(AllViewMode);
}

void PlaylistModel::setActiveId(qlonglong id)
{
    if (m_activeId == id)
        return;
    m_activeId = id;
    emit activeIdChanged();
}

void PlaylistModel::setMode(PlaylistMode mode)
{
    if (m_mode == mode)
        return;
    m_mode = mode;
    emit modeChanged();
}

int PlaylistModel::rowCount(const QModelIndex &) const
{
    return static_cast<int>(playlists.size());
}

QVariant PlaylistModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};

    const DataStorage::Playlists &playlist = playlists.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case TitleRole:
        return playlist.title;
    case IdRole:
        return QVariant::fromValue<qlonglong>(playlist.id);
    case CountRole:
        return static_cast<int>(playlist.images.size());
    case CountExistsRole:
        return countExistsImages(playlist.images);
    }
    return {};
}

QHash<int, QByteArray> PlaylistModel::roleNames() const
{
    return {{TitleRole, "title"},
            {IdRole, "playlist_id"},
            {CountRole, "count"},
            {CountExistsRole, "count_exists"}};
}

void PlaylistModel::refreshData()
{
    beginResetModel();
    std::vector<DataStorage::Playlists> fresh = DataStorage::instance().getPlaylists();
    playlists.swap(fresh);
    endResetModel();
    emit countChanged();
}

// The store's signal resets the model a second time inside the bracket. The outer one also reaches the views
// when the store could not write and says nothing. Qt 6.8 warns of a reset within another, so Qt takes the
// outer one for ended meanwhile, which nobody hears.
void PlaylistModel::beginOuterReset()
{
    beginResetModel();
    const QSignalBlocker unheard(this);
    endResetModel();
}

void PlaylistModel::endOuterReset()
{
    {
        const QSignalBlocker unheard(this);
        beginResetModel();
    }
    endResetModel();
}

qlonglong PlaylistModel::addItem(QString name)
{
    beginOuterReset();
    const qlonglong id = DataStorage::instance().addPlaylist(name);
    endOuterReset();
    emit countChanged();
    return id;
}

void PlaylistModel::deleteItem(qlonglong id)
{
    beginOuterReset();
    DataStorage::instance().deletePlaylist(id);
    endOuterReset();
    emit countChanged();
}

void PlaylistModel::editItem(qlonglong id, QString name)
{
    beginOuterReset();
    DataStorage::instance().updatePlaylist(id, name);
    endOuterReset();
}

QString PlaylistModel::getImage(int playlistId, int index)
{
    for (const DataStorage::Playlists &playlist : playlists) {
        if (playlist.id != playlistId || playlist.images.size() <= index)
            continue;
        int existing = -1;
        for (const QString &image : playlist.images) {
            if (QFile::exists(image) && ++existing == index)
                return image;
        }
    }
    return {};
}

void PlaylistModel::addImagesToPlaylist(QStringList images)
{
    lastAddedCount = 0;
    for (const QString &image : images) {
        if (DataStorage::instance().addImageToPlayList(m_activeId, image))
            ++lastAddedCount;
    }
}

void PlaylistModel::deleteImages(qlonglong id, QStringList images)
{
    for (const QString &image : images)
        DataStorage::instance().deleteImageFromPlayList(id, image);
}

void PlaylistModel::deleteImage(qlonglong id, QString image)
{
    DataStorage::instance().deleteImageFromPlayList(id, image);
}

int PlaylistModel::getIndexById(qlonglong id)
{
    const DataStorage::Playlists *playlist = find(id);
    return playlist != nullptr ? static_cast<int>(playlist - playlists.data()) : -1;
}

QStringList PlaylistModel::getImagesById(qlonglong id)
{
    const DataStorage::Playlists *playlist = find(id);
    return playlist != nullptr ? playlist->images : QStringList();
}

void PlaylistModel::openImage(QString path)
{
    OpenBook(path.toLocal8Bit().constData(), nullptr, 0);
}

bool PlaylistModel::hasImage(qlonglong id, QString image)
{
    const DataStorage::Playlists *playlist = find(id);
    return playlist != nullptr && playlist->images.contains(image);
}

QString PlaylistModel::getImagesAddedMessage()
{
    // at() is meant: without an active playlist there is no sentence to say, and the run ends here.
    const DataStorage::Playlists &playlist = playlists.at(static_cast<std::size_t>(getIndexById(m_activeId)));

    const QByteArray storedTitle
        = playlist.title.toUtf8(); // a title without a text comes back as this pointer
    const QByteArray title = GetLangText(storedTitle.constData());
    const QByteArray count = QByteArray::number(lastAddedCount);

    const bool one = lastAddedCount == 1;
    const char *format = one ? GetLangText("@PhotoWasAddedToPlaylist")
                             : GetLangTextPlural("@PhotosWereAddedToPlaylist", lastAddedCount);
    std::optional<QByteArray> message = withTwoTexts(format, count, title);
    if (!message)
        message = withTwoTexts(one ? onePictureAdded : picturesAdded, count, title);

    // A character that the cut splits is shown as a replacement character.
    return QString::fromUtf8(message->left(messageBytes));
}

bool PlaylistModel::hasExistsImage(qlonglong id)
{
    const DataStorage::Playlists *playlist = find(id);
    return playlist != nullptr
        && std::any_of(playlist->images.cbegin(), playlist->images.cend(),
                       [](const QString &image) { return QFile::exists(image); });
}

int PlaylistModel::countExistsImages(QStringList list) const
{
    return static_cast<int>(
        std::count_if(list.cbegin(), list.cend(), [](const QString &image) { return QFile::exists(image); }));
}

const DataStorage::Playlists *PlaylistModel::find(qlonglong id) const
{
    const auto found
        = std::find_if(playlists.cbegin(), playlists.cend(),
                       [id](const DataStorage::Playlists &playlist) { return playlist.id == id; });
    return found != playlists.cend() ? &*found : nullptr;
}
