// Where a device root's control socket and panel file are, for programs outside the sandbox.

#pragma once

#include <QString>

#include <optional>

namespace lindenreed::remote {

/// $XDG_DATA_HOME/picture_stand/device.
QString defaultDeviceRoot();

/// $XDG_RUNTIME_DIR/picture_stand, or /tmp/picture_stand-<uid> where XDG_RUNTIME_DIR is unset or is not a
/// folder of this user with mode 0700. Made with mode 0700 where it is missing; nothing, with one sentence in
/// `error`, where it belongs to somebody else or is open to others.
std::optional<QString> runBase(QString *error);

/// <run base>/<first 16 hex digits of the SHA-256 of the root's real path>. The root must exist.
std::optional<QString> runFolderOf(const QString &deviceRoot, QString *error);

} // namespace lindenreed::remote
