// The way from the top to the folder on show, as a list for the interface.

#pragma once

#include "storage_item.h"

#include <QAbstractListModel>
#include <QHash>
#include <QList>
#include <QString>

namespace lindenreed::picture_stand {

/**
 * What stands above all storages, the storage, each folder down to the one on show.
 *
 * Empty until the first folder. Follows whoever shows folders, and asks for another one; it never moves by
 * itself. Main thread.
 */
class BreadcrumbsModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum ContentDataRoles {
        IndexRole = Qt::UserRole + 1, ///< the row
        NameRole, ///< empty at the top
        DisplayRole ///< the same
    };
    Q_ENUM(ContentDataRoles)

    explicit BreadcrumbsModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override; ///< whatever the parent
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    /// Another folder is wanted; empty for the storages.
    void changedFolder(QString);

public slots:
    /// Takes the way to `folder`, over the storages that are known now.
    void changeFolder(QString folder);
    /// Asks for the folder of a crumb, unless it is the one on show. Other numbers are passed over.
    void changeFolderByIndex(int index);

private:
    QString currentFolder;
    QList<StorageItem> crumbs;
};

} // namespace lindenreed::picture_stand
