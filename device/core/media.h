// Which storages are in.

#pragma once

#include <QObject>
#include <QString>

namespace lindenreed::device {

enum class Medium { Card, Usb };

/// Main thread; other threads read the two flags of Facts, which this class writes.
///
/// A simulated medium is in when /mnt/ext2 (/mnt/ext3) is there and /mnt/.unplugged/sd (usb) is not; a real
/// one when the path is a mount point.
class Media : public QObject
{
    Q_OBJECT

public:
    /// `mounts` is the folder of all storages, `mountTable` the kernel's table of mount points.
    explicit Media(const QString &mounts = QStringLiteral("/mnt"),
                   const QString &mountTable = QStringLiteral("/proc/self/mountinfo"));
    bool present(Medium medium) const;
    void look(); ///< reads the file system anew and tells what came and went

signals:
    void changed(lindenreed::device::Medium medium);

private:
    bool find(const QString &folder, const QString &unplugged) const;

    QString m_mounts;
    QString m_mountTable;
};

} // namespace lindenreed::device
