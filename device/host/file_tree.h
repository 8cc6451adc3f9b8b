// Whole folders: copied and removed byte for byte, whatever their files are called.

#pragma once

#include <QString>

#include <filesystem>
#include <functional>

namespace lindenreed::host {

std::filesystem::path nativePath(const QString &path);

/// Removes everything below `folder`, also what is not writable; follows no link. False where something is
/// left.
bool emptyFolder(const std::filesystem::path &folder);

/// The same with the folder itself. True where there is none.
bool removeTree(const std::filesystem::path &folder);

/// Copies what `wanted` says yes to; it is asked with the path below `from`. Copies are writable, whatever
/// their originals are. False, with one sentence in `error`, when something could not be copied.
bool copyTree(const std::filesystem::path &from, const std::filesystem::path &to,
              const std::function<bool(const std::filesystem::path &)> &wanted, QString *error);

} // namespace lindenreed::host
