// Where the launcher finds what belongs to it: by its own place, in the build tree and in an installed one.

#pragma once

#include <QString>

namespace lindenreed::host {

QString ownFolder(); ///< bin, with the other commands
QString programFolder(); ///< lib/picture_stand
QString dataFolder(); ///< share/picture_stand

} // namespace lindenreed::host
