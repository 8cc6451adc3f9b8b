// The playlist workflow as a plain model beside the real one: what each action of the user has to make of the
// playlists, the modes, the selection and the rows. It knows nothing of the application.

#pragma once

#include "workflow_world.h"

#include <QMap>

#include <algorithm>

struct WorkflowModel
{
    enum Mode { ViewMode, AddMode, CreateMode, AllViewMode };
    enum Kind { Internal = 1, SdCard, UsbStorage, Folder, File, Filler };
    struct Row
    {
        QString path;
        Kind kind;
    };

    explicit WorkflowModel(WorkflowWorld &itsWorld)
        : world(itsWorld)
    {
        start();
    }
    /// Whatever was going on before, what is stored stays.
    void start()
    {
        activeId = -1;
        mode = AllViewMode;
        selecting = true;
        selected.clear();
        ignored.clear();
        showsList = false;
        storagesAreReported();
        changeFolder(QStringLiteral("/mnt/ext1/Photo"));
    }

    // The overview.

    void open(qlonglong id)
    {
        activeId = id;
        mode = ViewMode;
        selecting = false;
        showPlaylist();
    }
    void create(const QString &title)
    {
        if (title.isEmpty())
            return;
        activeId = titles.isEmpty() ? 1 : titles.lastKey() + 1;
        titles.insert(activeId, title);
        pick(CreateMode);
    }
    /// `choice` of the row's menu comes first in the following ones.
    void rename(qlonglong id, const QString &title)
    {
        activeId = id;
        if (!title.isEmpty())
            titles[id] = title;
    }
    void leaveMenu() { activeId = -1; }
    void addByMenu(qlonglong id)
    {
        activeId = id;
        pick(AddMode);
    }
    void deleteByMenu(qlonglong id)
    {
        remove(id);
        activeId = -1;
    }

    // A playlist.

    void back()
    {
        ignored.clear();
        changeFolder(folder);
        mode = AllViewMode;
        activeId = -1;
    }
    void plus()
    {
        pick(AddMode);
        selected.clear();
    }
    void deletePicture(const QString &path)
    {
        pictures[activeId].remove(path);
        showPlaylist();
    }
    void deleteSelected()
    {
        pictures[activeId].subtract(selected);
        showPlaylist();
        selected.clear();
        selecting = false;
    }

    // Selecting, in a playlist or in the picker.

    void toggle(const QString &path)
    {
        if (!selected.remove(path))
            selected.insert(path);
    }
    void selectAll()
    {
        for (const Row &row : rows) {
            if (row.kind == File && !ignored.contains(row.path))
                selected.insert(row.path);
        }
    }
    /// The box takes all; where all is taken it gives all up.
    void pressBox()
    {
        if (countFiles > 0 && selected.size() == countFiles)
            selected.clear();
        else
            selectAll();
    }
    void cancel()
    {
        selected.clear();
        if (mode == CreateMode) {
            remove(activeId);
            activeId = -1;
            mode = AllViewMode;
            return;
        }
        selecting = false;
        if (mode == AddMode) {
            mode = ViewMode;
            showPlaylist();
        }
    }
    void addSelected()
    {
        const qsizetype before = pictures[activeId].size();
        pictures[activeId].unite(selected);
        added = static_cast<int>(pictures[activeId].size() - before);
        selected.clear();
        mode = ViewMode;
        selecting = false;
        showPlaylist();
    }

    // The picker.

    void changeFolder(QString path) // by value: it may be one of the crumbs
    {
        showsList = false;
        folder = path;
        rows.clear();
        const bool isFolder = world.isFolder(path);
        if (isFolder)
            listFolder(path);
        else
            rows = storages;
        crumbs = way(path);
        const QString counted = isFolder ? path : QString(workingFolder);
        countFiles = 0;
        for (const QString &name : path.isEmpty() || isFolder ? world.picturesIn(counted) : QStringList())
            countFiles += ignored.contains(counted + u'/' + name) ? 0 : 1;
    }
    void pressCrumb(qsizetype index)
    {
        if (crumbs.at(index) != folder)
            changeFolder(crumbs.at(index));
    }

    // The device.

    /// What is in now becomes known.
    void storagesAreReported()
    {
        storages = {{QStringLiteral("/mnt/ext1"), Internal}};
        if (world.isIn(WorkflowWorld::Card))
            storages.append({QStringLiteral("/mnt/ext2"), SdCard});
        if (world.isIn(WorkflowWorld::Usb))
            storages.append({QStringLiteral("/mnt/ext3"), UsbStorage});
        if (showsList)
            showList(list);
        else if (folder.isEmpty())
            changeFolder(folder);
    }

    // What follows.

    QStringList picturesOf(qlonglong id) const
    {
        QStringList sorted = pictures.value(id).values();
        sorted.sort();
        return sorted;
    }
    int countThere(qlonglong id) const
    {
        const QSet<QString> all = pictures.value(id);
        return static_cast<int>(
            std::ranges::count_if(all, [this](const QString &path) { return world.isThere(path); }));
    }
    int interval() const { return intervals.value(activeId, intervals.value(-1)); }
    bool isPicking() const { return mode == AddMode || mode == CreateMode; }
    /// In the picker what the playlist has already is greyed.
    bool canBeToggled(const Row &row) const
    {
        return row.kind == File && !(mode == AddMode && pictures.value(activeId).contains(row.path));
    }
    /// What the three tables have, in the order of ids, urls and scopes.
    QStringList stored() const
    {
        QStringList lines;
        for (auto title = titles.cbegin(); title != titles.cend(); ++title)
            lines.append(QStringLiteral("title %1 ").arg(title.key()) + title.value());
        for (auto each = pictures.cbegin(); each != pictures.cend(); ++each) {
            for (const QString &path : picturesOf(each.key()))
                lines.append(QStringLiteral("picture %1 ").arg(each.key()) + path);
        }
        for (auto each = intervals.cbegin(); each != intervals.cend(); ++each)
            lines.append(QStringLiteral("interval %1 %2").arg(each.key()).arg(each.value()));
        return lines;
    }

    WorkflowWorld &world;
    QMap<qlonglong, QString> titles;
    QMap<qlonglong, QSet<QString>> pictures; ///< by playlist
    QMap<qlonglong, int> intervals{{-1, 30}}; ///< a playlist's own one stays for the next with its id
    qlonglong activeId = -1;
    Mode mode = AllViewMode;
    bool selecting = true; ///< what it is before the first playlist is opened shows nowhere
    QSet<QString> selected;
    QSet<QString> ignored;
    QList<Row> storages; ///< as reported last
    QString folder;
    QStringList crumbs; ///< paths
    bool showsList = false;
    QStringList list;
    QList<Row> rows;
    int countFiles = 0;
    int added = 0; ///< by the last adding

private:
    static constexpr QLatin1String workingFolder{"/mnt/ext1"};

    void pick(Mode how)
    {
        mode = how;
        selecting = true;
        ignored = pictures.value(activeId);
        changeFolder(folder);
    }
    void remove(qlonglong id)
    {
        titles.remove(id);
        pictures.remove(id);
    }
    void showPlaylist() { showList(picturesOf(activeId)); }
    void showList(const QStringList &paths)
    {
        showsList = true;
        list = paths;
        rows.clear();
        for (const QString &path : paths) {
            if (world.isThere(path))
                rows.append({path, File});
        }
        countFiles = static_cast<int>(rows.size());
        ignored.clear();
    }
    void listFolder(const QString &path)
    {
        for (const QString &name : world.foldersIn(path))
            rows.append({path + u'/' + name, Folder});
        while (rows.size() % 3 != 0)
            rows.append({QString(), Filler});
        for (const QString &name : world.picturesIn(path))
            rows.append({path + u'/' + name, File});
    }
    /// Above all storages, the storage, the folders below it.
    QStringList way(const QString &path) const
    {
        QStringList found{QString()};
        if (!world.isFolder(path))
            return found;
        for (const Row &storage : storages) {
            if (!world.isFolder(storage.path)) {
                found.append(storage.path); // gone, and not yet reported: it is part of every way
                continue;
            }
            if (!path.startsWith(storage.path))
                continue;
            found.append(storage.path);
            if (path == storage.path)
                break;
            const QString below = path.mid(storage.path.size() + 1);
            // A dot in the way ends it.
            for (int depth = 0; depth <= below.count(u'/') && !below.contains(u'.'); ++depth)
                found.append(storage.path + u'/' + below.section(u'/', 0, depth));
        }
        return found;
    }
};
