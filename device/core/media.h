// Which storages are in.

#pragma once

#include <QFile>
#include <QFileSystemWatcher>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>

namespace lindenreed::device {

enum class Medium { Card, Usb };

/// How moving a simulated medium went.
enum class PlugResult {
    Done,
    AlreadySo, ///< it is in, or out, already
    NoMedium, ///< there is no simulated medium that could go in
    RealMedium, ///< a mount point is nothing that the device could move
    Failed, ///< the file system refused; the reason is in the error
};

/// Main thread; other threads read the two flags of Facts, which this class writes.
///
/// A simulated medium is in when /mnt/ext2 (/mnt/ext3) is there and /mnt/.unplugged/sd (usb) is not; a real
/// one when the path is a mount point. Changes are seen as they happen where an event loop runs.
class Media : public QObject
{
    Q_OBJECT

public:
    /// `mounts` is the folder of all storages, `mountTable` the kernel's table of mount points.
    explicit Media(const QString &mounts = QStringLiteral("/mnt"),
                   const QString &mountTable = QStringLiteral("/proc/self/mountinfo"));
    bool present(Medium medium) const;

    /// Moves a simulated medium in or out; what changed is told before this returns.
    PlugResult plug(Medium medium, bool in, QString *error = nullptr);
    void look(); ///< reads the file system anew and tells what came and went

signals:
    void changed(lindenreed::device::Medium medium);

private:
    void watch();
    void watchFolders();
    bool isIn(Medium medium) const;
    bool isMountPoint(const QString &path) const;
    QString folder(Medium medium) const; ///< while it is in
    QString unplugged(Medium medium) const; ///< while it is out

    QString m_mounts;
    QString m_mountTable;
    std::unique_ptr<QFileSystemWatcher> m_folderWatcher;
    QFile m_watchedTable;
    std::unique_ptr<QSocketNotifier> m_tableNotifier; ///< goes before the file it watches
};

} // namespace lindenreed::device
