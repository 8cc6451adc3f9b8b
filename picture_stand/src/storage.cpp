#include "storage.h"

#include "folder_names.h"

#include <shared_tools/filesystem.h>
#include <shared_tools/human_string_utility.h>
#include <slateview.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <array>
#include <cstdint>
#include <mutex>
#include <system_error>
#include <thread>
#include <type_traits>
#include <utility>

#include <sys/statvfs.h>

namespace lindenreed::picture_stand {

namespace {

// Workers may outlive main(): what they use is never destroyed.
constinit std::mutex eventLoopMutex;
bool haveEventLoop = false; ///< guarded by the mutex
static_assert(std::is_trivially_destructible_v<std::mutex>);

void loseEventLoop()
{
    const std::lock_guard lock(eventLoopMutex);
    haveEventLoop = false;
}

/// To be called where an application object is there; its end is heard of.
void findEventLoop()
{
    const std::lock_guard lock(eventLoopMutex);
    if (!haveEventLoop)
        qAddPostRoutine(loseEventLoop);
    haveEventLoop = true;
}

/// Until the worker that posted has let go of the lock. Qt's own lock is one that ThreadSanitizer does not
/// see.
void waitForWorker()
{
    const std::lock_guard lock(eventLoopMutex);
}

bool alwaysMounted()
{
    return true;
}

bool cardMounted()
{
    return system::filesystem::IsSDCardMounted("/mnt/ext2");
}

bool usbMounted()
{
    return isUsbStorMounted() != 0;
}

struct Root
{
    const char *nameKey;
    const char *path;
    StorageItemType::StorageItemRoles type;
    bool (*isPresent)();
};

constexpr std::array<Root, 3> rootTable{{
    {"@FlashDir", "/mnt/ext1", StorageItemType::StorageItemInternal, alwaysMounted},
    {"@SDcard", "/mnt/ext2", StorageItemType::StorageItemSDCard, cardMounted},
    {"@OTG", "/mnt/ext3", StorageItemType::StorageItemOTG, usbMounted},
}};

QList<StorageItem> findRoots()
{
    QList<StorageItem> found;
    for (const Root &root : rootTable) {
        if (root.isPresent())
            found.append(StorageItem(QString::fromUtf8(GetLangText(root.nameKey)),
                                     QString::fromUtf8(root.path), root.type));
    }
    return found;
}

/// The folders from below `root` down to `path`.
QList<StorageItem> foldersBelow(const QDir &root, const QString &path)
{
    QList<StorageItem> folders;
    QDir walker(path);
    // The root itself is "."; a dot anywhere else in the way ends it, too.
    while (!root.relativeFilePath(walker.path()).contains(u'.')) {
        folders.prepend(StorageItem(QFileInfo(walker.path()).fileName(), walker.absolutePath(),
                                    StorageItemType::StorageItemFolder));
        if (!walker.cdUp())
            break;
    }
    return folders;
}

std::string sizeText(std::uint64_t blocks, std::uint64_t blockSize)
{
    char buffer[64] = {};
    utilities::HumanStringUtility::HumanSizeWithPrecision(buffer, sizeof buffer, blocks, blockSize, false);
    return buffer;
}

} // namespace

Storage::Storage() = default;

Storage &Storage::instance()
{
    static Storage *storage = nullptr;
    if (!storage) {
        storage = new Storage; // stored first: what the update leads to may ask for it
        storage->update();
    }
    return *storage;
}

void Storage::update()
{
    findEventLoop();
    auto look = [this] {
        QList<StorageItem> found = findRoots();
        // The event loop must not go away while it is being woken.
        const std::lock_guard lock(eventLoopMutex);
        if (!haveEventLoop)
            return;
        auto takeOver = [this, found = std::move(found)]() mutable {
            waitForWorker();
            takeRoots(found);
        };
        QMetaObject::invokeMethod(this, std::move(takeOver), Qt::QueuedConnection);
    };
    try {
        std::thread(std::move(look)).detach();
    } catch (const std::system_error &error) {
        lr_print_log2(2, "picture_stand/src/storage", __LINE__, "void Storage::update()",
                      "Failed to look at the storages: %s", error.what());
    }
}

void Storage::takeRoots(QList<StorageItem> &found)
{
    roots.swap(found);
    found.clear();
    emit storageChanged();
}

QList<StorageItem> Storage::listFiles(const QString &path, const QStringList &filters, int columns)
{
    const QDir folder(path);
    if (path.isEmpty() || !folder.exists())
        return roots;

    QList<StorageItem> items;
    const QStringList folders = folderNames(path, QDir::Dirs);
    for (const QString &name : folders)
        items.append(StorageItem(name, folder.absoluteFilePath(name), StorageItemType::StorageItemFolder));
    const qsizetype inLastRow = columns != 0 ? items.size() % columns : 0;
    if (inLastRow != 0) {
        for (qsizetype cell = inLastRow; cell < columns; ++cell)
            items.append(StorageItem({}, {}, StorageItemType::StorageItemEmpty));
    }

    const QStringList files
        = folderNames(path, QDir::Dirs | QDir::Files, filters); // a folder that matches is listed again
    emit listFilesChanged(files); // bare names, which the thumbnails take for paths
    for (const QString &name : files)
        items.append(StorageItem(name, folder.absoluteFilePath(name), StorageItemType::StorageItemFile));
    return items;
}

QList<StorageItem> Storage::pathItems(const QString &path)
{
    QList<StorageItem> items{StorageItem({}, {}, StorageItemType::StorageItemRoot)};
    const QDir folder(path);
    if (path.isEmpty() || !folder.exists())
        return items;
    for (const StorageItem &root : std::as_const(roots)) {
        const QDir rootFolder(root.path);
        // Anywhere in the path, in any letter case: a storage that is gone has no path and is part of each.
        if (!folder.canonicalPath().contains(rootFolder.canonicalPath(), Qt::CaseInsensitive))
            continue;
        items.append(root);
        if (rootFolder.absolutePath() == folder.absolutePath())
            break;
        items.append(foldersBelow(rootFolder, path));
    }
    return items;
}

bool Storage::diskSpace(const std::string &path, std::pair<std::string, std::string> &out)
{
    struct statvfs64 medium = {};
    if (statvfs64(path.c_str(), &medium) == -1)
        return false;
    std::string total = sizeText(medium.f_blocks, medium.f_frsize);
    std::string free = sizeText(medium.f_bfree, medium.f_frsize); // what is kept for root counts as free
    out = {std::move(total), std::move(free)};
    return true;
}

} // namespace lindenreed::picture_stand
