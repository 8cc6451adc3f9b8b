// The place in a device where a folder of the user's is shown.

#pragma once

#include <QString>

#include <memory>

namespace lindenreed::host {

/// Whether a path of the host cannot be seen from inside the sandbox, because the device's folders cover it.
bool isHiddenInside(const QString &hostPath);

/// A folder of the user's with its mount point in a device root, which is taken away at the end of this
/// object's life if it was made here.
class PicturesMount
{
public:
    /// Takes away the mount point that a killed launcher left. `record` is where it is written down while it
    /// is there.
    static void removeAbandoned(const QString &photoFolder, const QString &record);

    /// False, with one sentence in `error`, where there is no such folder, it could not be seen inside, or
    /// has no name.
    static bool isUsable(const QString &pictures, QString *error);

    /// `pictures` must be usable. `photoFolder`: the device's folder for pictures, on the host. Null, with
    /// one sentence in `error`, where the name is taken in the device.
    static std::unique_ptr<PicturesMount> prepare(const QString &pictures, const QString &photoFolder,
                                                  const QString &record, QString *error);
    ~PicturesMount();
    PicturesMount(const PicturesMount &) = delete;
    PicturesMount &operator=(const PicturesMount &) = delete;

    const QString &source() const { return m_source; } ///< real path of the user's folder
    QString devicePath() const; ///< "/mnt/ext1/Photo/<its name>"

private:
    PicturesMount() = default;
    QString m_source;
    QString m_name;
    QString m_mountPoint;
    QString m_record;
    bool m_made = false;
};

} // namespace lindenreed::host
