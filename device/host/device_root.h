// The folder that holds a device: made on first use, held by one launcher at a time.

#pragma once

#include <QString>

#include <memory>

namespace lindenreed::host {

/// A device root that this process holds; given back, and removed if temporary, at the end of its life. Main
/// thread.
class DeviceRoot
{
public:
    enum class Kind {
        Kept, ///< made with the sample pictures where it is missing
        Temporary, ///< new, removed at the end, without the sample pictures
        TemporaryWithSamples
    };

    /// `path`: the folder; empty for a temporary one at a place of its own. Null, with one sentence in
    /// `error`, where it is no folder, holds something else, cannot be made, or is held by another launcher.
    static std::unique_ptr<DeviceRoot> open(const QString &path, Kind kind, QString *error);

    /// A machine that is such a device itself, with its root at "/": only checked and held.
    static std::unique_ptr<DeviceRoot> openMachine(QString *error);

    ~DeviceRoot();
    DeviceRoot(const DeviceRoot &) = delete;
    DeviceRoot &operator=(const DeviceRoot &) = delete;

    const QString &path() const { return m_path; } ///< real path, without a final slash but for "/"
    QString inside(const QString &devicePath) const; ///< where "/mnt/..." or "/devroot/..." is on the host

private:
    DeviceRoot() = default;
    bool hold(QString *error);
    bool fill(Kind kind, QString *error);

    QString m_path;
    int m_lock = -1;
    bool m_temporary = false;
    bool m_removesFolder = false;
};

} // namespace lindenreed::host
