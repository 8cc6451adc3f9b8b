// A folder of the device's storages with what a test wants in it.

#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <filesystem>
#include <system_error>

/// Makes a folder, which may be there empty, and removes it with all that is in it.
class FolderTree
{
public:
    explicit FolderTree(const QString &path)
        : top(path)
    {
        if (!QDir().mkpath(top) || !QDir(top).isEmpty())
            qFatal("%s cannot be had empty", qPrintable(top));
    }
    ~FolderTree()
    {
        std::error_code error; // by the library: Qt does not remove every name
        std::filesystem::remove_all(top.toStdString(), error);
    }
    FolderTree(const FolderTree &) = delete;
    FolderTree &operator=(const FolderTree &) = delete;

    /// Folders end in a slash; the others are empty files.
    void make(const QStringList &entries) const
    {
        for (const QString &entry : entries) {
            QFile file(path(entry));
            if (!QDir().mkpath(entry.endsWith(u'/') ? file.fileName() : QFileInfo(file).path())
                || (!entry.endsWith(u'/') && !file.open(QIODevice::WriteOnly)))
                qFatal("%s cannot be made", qPrintable(file.fileName()));
        }
    }

    QString path(const QString &entry) const { return top + u'/' + entry; }

    const QString top;
};
