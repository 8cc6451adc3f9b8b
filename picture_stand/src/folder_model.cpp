#include "folder_model.h"

#include "folder_names.h"
#include "storage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lindenreed::picture_stand {

namespace {

constexpr int gridColumns = 3;

QStringList pictureFilters()
{
    return u"*.jpg|*.png|*.bmp|*.jpeg|*.tiff|*.tif|*.svg"_s.split(u'|');
}

} // namespace

FolderModel::FolderModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void FolderModel::setMode(FolderModelMode mode)
{
    if (m_mode == mode)
        return;
    m_mode = mode;
    emit modeChanged();
}

void FolderModel::setViewMode(FolderModelViewMode viewMode)
{
    if (m_viewMode == viewMode)
        return;
    m_viewMode = viewMode;
    emit viewModeChanged();
}

int FolderModel::rowCount(const QModelIndex & /*parent*/) const
{
    return static_cast<int>(items.size());
}

QVariant FolderModel::data(const QModelIndex &index, int role) const
{
    if (index.row() < 0 || index.row() >= items.size())
        return {};

    const StorageItem &item = items.at(index.row());
    switch (role) {
    case PathRole:
        return item.path;
    case NameRole:
        return item.name;
    case TypeRole:
        return item.type;
    case FreeSpaceRole:
        return item.freeSpace();
    case TotalSpaceRole:
        return item.totalSpace();
    case MemoryRole:
        return item.memoryText();
    case IsSelectedRole:
        return selectedPaths.contains(item.path);
    default:
        return {};
    }
}

QHash<int, QByteArray> FolderModel::roleNames() const
{
    return {{PathRole, "path"},
            {NameRole, "name"},
            {TypeRole, "type"},
            {FreeSpaceRole, "freeSpace"},
            {TotalSpaceRole, "totalSpace"},
            {MemoryRole, "memory"},
            {IsSelectedRole, "selected"}};
}

void FolderModel::changeFolder(QString path)
{
    fromList = false;
    currentPath = path;
    beginResetModel();
    const QStringList filters = pictureFilters();
    items = Storage::instance().listFiles(path, filters, gridColumns);
    endResetModel();
    emit changedFolder(path);

    // Read anew. Above the storages this is the working directory, whose pictures are counted.
    const QDir folder(path);
    const QStringList names = folderNames(path, QDir::Dirs | QDir::Files, filters);
    m_countFiles = static_cast<int>(std::ranges::count_if(
        names, [&](const QString &name) { return !ignoreList.contains(folder.absoluteFilePath(name)); }));
    emit countFilesChanged();
}

void FolderModel::selectFile(QString path, bool value)
{
    if (value)
        selectedPaths.insert(path);
    else
        selectedPaths.remove(path);
    const auto found = std::ranges::find(std::as_const(items), path, &StorageItem::path);
    if (found != items.cend())
        notifySelected(found - items.cbegin());
    emit countSelectedChanged();
}

int FolderModel::countSelected() const
{
    return static_cast<int>(selectedPaths.size());
}

void FolderModel::clearSelection()
{
    for (qsizetype row = 0; row < items.size(); ++row) {
        const StorageItem &item = items.at(row);
        if (item.type == StorageItemType::StorageItemFile && selectedPaths.remove(item.path))
            notifySelected(row);
    }
    selectedPaths.clear(); // what was picked in other folders
    emit countSelectedChanged();
}

void FolderModel::selectAllFiles()
{
    for (qsizetype row = 0; row < items.size(); ++row) {
        const StorageItem &item = items.at(row);
        if (item.type == StorageItemType::StorageItemFile && !ignoreList.contains(item.path)) {
            selectedPaths.insert(item.path);
            notifySelected(row);
        }
    }
    emit countSelectedChanged();
}

QStringList FolderModel::getSelected() const
{
    return selectedPaths.values();
}

void FolderModel::loadFromList(QStringList files)
{
    sourceList = files;
    fromList = true;
    beginResetModel();
    items.clear();
    for (const QString &path : std::as_const(files)) {
        if (QFile::exists(path))
            items.append(StorageItem(QFileInfo(path).fileName(), path, StorageItemType::StorageItemFile));
    }
    endResetModel();
    m_countFiles = rowCount();
    ignoreList.clear(); // a list that is shown ends the picking, also where the storages made it show again
    emit countFilesChanged();
}

void FolderModel::restore()
{
    changeFolder(currentPath);
}

QString FolderModel::getExtension(QString name) const
{
    return QFileInfo(name).completeSuffix();
}

void FolderModel::storageChanged()
{
    if (fromList)
        loadFromList(sourceList);
    // A folder stays as it is, also where its card was pulled: the user moves on from there.
    if (currentPath.isEmpty() && !fromList)
        changeFolder(currentPath);
}

void FolderModel::setListIgnoreSelection(QStringList list)
{
    ignoreList = std::move(list);
}

void FolderModel::clearListIgnoreSelection()
{
    ignoreList.clear();
}

void FolderModel::notifySelected(qsizetype row)
{
    const QModelIndex changed = index(static_cast<int>(row));
    emit dataChanged(changed, changed, {IsSelectedRole}); // the mark alone, not the picture
}

} // namespace lindenreed::picture_stand
