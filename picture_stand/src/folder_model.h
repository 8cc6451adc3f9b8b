// The pictures and folders of the browser, as a list for the interface, and what is selected of them.

#pragma once

#include "storage_item.h"

#include <QAbstractListModel>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

namespace lindenreed::picture_stand {

/**
 * Either a folder, the storages among them, or a list of pictures.
 *
 * Nothing is selected, and there are no rows, at the beginning. The selection is of paths and has nothing to
 * do with the rows: it lasts from folder to folder. Main thread.
 */
class FolderModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(FolderModelMode mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(FolderModelViewMode viewMode READ viewMode WRITE setViewMode NOTIFY viewModeChanged)
    Q_PROPERTY(int countSelected READ countSelected NOTIFY countSelectedChanged)
    Q_PROPERTY(int countFiles READ countFiles NOTIFY countFilesChanged)

public:
    enum ContentDataRoles {
        PathRole = Qt::UserRole + 1,
        NameRole,
        TypeRole, ///< one of StorageItemType::StorageItemRoles
        FreeSpaceRole, ///< empty for all but storages
        TotalSpaceRole, ///< the same
        MemoryRole, ///< both in a sentence
        IsSelectedRole
    };
    Q_ENUM(ContentDataRoles)

    enum FolderModelMode { NormalMode, SelectionMode };
    Q_ENUM(FolderModelMode)

    enum FolderModelViewMode { GridViewMode, ListViewMode };
    Q_ENUM(FolderModelViewMode)

    explicit FolderModel(QObject *parent = nullptr);

    FolderModelMode mode() const { return m_mode; }
    void setMode(FolderModelMode mode);
    FolderModelViewMode viewMode() const { return m_viewMode; }
    void setViewMode(FolderModelViewMode viewMode);
    /// How many pictures can still be picked, as of the last change of the rows.
    int countFiles() const { return m_countFiles; }

    int rowCount(const QModelIndex &parent = {}) const override; ///< whatever the parent
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void changedFolder(QString);
    void modeChanged();
    void countSelectedChanged();
    void countFilesChanged(); ///< also where the number is the same
    void viewModeChanged();

public slots:
    /// Lists a folder; the storages where `path` is empty or no folder.
    void changeFolder(QString path);
    void selectFile(QString path, bool value);
    int countSelected() const;
    /// Selects nothing any more, in other folders either.
    void clearSelection();
    /// Adds the pictures on show to the selection, except those that are not to be picked in bulk.
    void selectAllFiles();
    /// In no particular order.
    QStringList getSelected() const;
    /// Shows those of these pictures whose file is there. Any picture may be picked in bulk then.
    void loadFromList(QStringList files);
    /// Goes back to the folder that was listed last, and reads it anew.
    void restore();
    /// What follows the first dot of a file name; empty without one.
    QString getExtension(QString name) const;
    /// To be called when storages came or went.
    void storageChanged();
    /// Pictures that are neither counted nor picked in bulk. The count stays until the rows change.
    void setListIgnoreSelection(QStringList list);
    void clearListIgnoreSelection();

private:
    void notifySelected(qsizetype row);

    QString currentPath; ///< listed last; empty for the storages
    QList<StorageItem> items; ///< the rows
    QSet<QString> selectedPaths;
    QStringList ignoreList;
    FolderModelMode m_mode = SelectionMode;
    int m_countFiles = 0;
    bool fromList = true; ///< the rows are those of a list
    QStringList sourceList; ///< as it was given, with the files that have vanished
    FolderModelViewMode m_viewMode = GridViewMode;
};

} // namespace lindenreed::picture_stand
