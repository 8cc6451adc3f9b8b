// The device's storages, and what lies in their folders.

#pragma once

#include "storage_item.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <string>
#include <utility>

namespace lindenreed::picture_stand {

/**
 * Which storages are in, and listings for the interface.
 *
 * Looking for storages and measuring them takes a worker thread; what it found arrives through the event
 * loop, as a whole new list. All else is for the main thread.
 */
class Storage : public QObject
{
    Q_OBJECT

public:
    /// The one of this process, never destroyed: a worker may outlive main(). The first call begins the first
    /// look.
    static Storage &instance();

    /// Begins a look at the storages and returns at once. Each call has a worker of its own; the list of the
    /// one that ends last stays. Where there is no thread to be had, nothing is looked at.
    void update();

    /// Folders, empty cells up to a whole row of `columns` (none for 0), then what matches `filters`, in any
    /// letter case; hidden entries are not listed. The storages where `path` is empty or no folder.
    QList<StorageItem> listFiles(const QString &path, const QStringList &filters, int columns);

    /// The way to a folder: what stands above all storages, the storage, each folder below it. Only the first
    /// where `path` is empty, no folder, or on none of the storages.
    QList<StorageItem> pathItems(const QString &path);

    /// Sets size and free space of the medium below `path` as text; false, and `out` as it was, where it
    /// cannot be measured. Any thread.
    static bool diskSpace(const std::string &path, std::pair<std::string, std::string> &out);

signals:
    void storageChanged(); ///< also where the same storages were found
    /// The bare names of what listFiles() lists behind the folders, told before it returns.
    void listFilesChanged(QStringList);

private:
    Storage();
    void takeRoots(QList<StorageItem> &found);

    QList<StorageItem> roots; ///< empty until the first worker has reported; main thread alone
};

} // namespace lindenreed::picture_stand
