#include "breadcrumbs_model.h"

#include "storage.h"

namespace lindenreed::picture_stand {

BreadcrumbsModel::BreadcrumbsModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

int BreadcrumbsModel::rowCount(const QModelIndex & /*parent*/) const
{
    return static_cast<int>(crumbs.size());
}

QVariant BreadcrumbsModel::data(const QModelIndex &index, int role) const
{
    if (index.row() < 0 || index.row() >= crumbs.size())
        return {};

    switch (role) {
    case IndexRole:
        return index.row();
    case NameRole:
    case DisplayRole:
        return crumbs.at(index.row()).name;
    default:
        return {};
    }
}

QHash<int, QByteArray> BreadcrumbsModel::roleNames() const
{
    return {{IndexRole, "index"}, {NameRole, "name"}, {DisplayRole, "display"}};
}

void BreadcrumbsModel::changeFolder(QString folder)
{
    beginResetModel();
    currentFolder = folder;
    crumbs = Storage::instance().pathItems(folder);
    endResetModel();
}

void BreadcrumbsModel::changeFolderByIndex(int index)
{
    if (index < 0 || index >= crumbs.size())
        return;
    if (crumbs.at(index).path != currentFolder)
        emit changedFolder(crumbs.at(index).path);
}

} // namespace lindenreed::picture_stand
