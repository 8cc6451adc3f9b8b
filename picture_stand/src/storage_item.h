// One entry of a listing: a storage, a folder, a picture, or an empty cell.

#pragma once

#include <QObject>
#include <QString>

#include <string>
#include <utility>

namespace lindenreed::picture_stand {

/// Carries the kinds of entries to QML.
class StorageItemType : public QObject
{
    Q_OBJECT

public:
    enum StorageItemRoles {
        StorageItemRoot, ///< what stands above all storages
        StorageItemInternal,
        StorageItemSDCard,
        StorageItemOTG, ///< USB storage
        StorageItemFolder,
        StorageItemFile,
        StorageItemEmpty ///< fills a row of the grid
    };
    Q_ENUM(StorageItemRoles)
};

struct StorageItem
{
    /// Measures the medium where `kind`, one of StorageItemRoles, is a storage. Any thread.
    StorageItem(const QString &shownName, const QString &absolutePath, int kind);

    QString totalSpace() const { return QString::fromStdString(space.first); }
    QString freeSpace() const { return QString::fromStdString(space.second); }
    /// Free and total space in a sentence of the device language.
    QString memoryText() const;

    QString name; ///< as it is shown; empty in an empty cell
    QString path; ///< absolute; empty in an empty cell and above all storages
    int type; ///< one of StorageItemRoles
    /// Size of the medium and what is free of it, as text in UTF-8; empty where it cannot be measured, and
    /// for all but storages.
    std::pair<std::string, std::string> space;

private:
    void refreshSpace();
};

} // namespace lindenreed::picture_stand
