// How a program is enclosed: the sandbox's arguments and what the program is told of its surroundings.

#pragma once

#include <QProcessEnvironment>
#include <QStringList>

#include <optional>

namespace lindenreed::host {

/// What the program sees in the host's place.
struct Sandbox
{
    QString mnt; ///< of the device root, real path
    QString devroot; ///< of the device root, real path
    QString runFolder;
    QString pictures; ///< folder of the user's; empty: none
    QString picturesAt; ///< where the device shows it
    QString memoryInformation; ///< file in the place of /proc/meminfo; empty: the host's own
};

/// Arguments of bubblewrap, up to and without the program. What is not the device's is bound read-only.
QStringList sandboxArguments(const Sandbox &sandbox, bool network);

/// The program's whole environment, from the launcher's own.
QProcessEnvironment programEnvironment(const QProcessEnvironment &own);

} // namespace lindenreed::host
