// What killed launchers left behind.

#pragma once

#include <QString>

namespace lindenreed::host {

/// Removes the temporary devices in `folder` whose launcher has gone without removing them, and their folders
/// in memory. Those of other users, and those in use, stay.
void removeAbandonedRoots(const QString &folder);

} // namespace lindenreed::host
