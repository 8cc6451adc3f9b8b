#include "file_tree.h"

#include <QFile>

namespace lindenreed::host {

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

fs::path nativePath(const QString &path)
{
    return fs::path(QFile::encodeName(path).toStdString());
}

bool emptyFolder(const fs::path &folder)
{
    std::error_code failure;
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, failure);
    // A folder has to be open to its owner before the walk descends into it.
    for (fs::recursive_directory_iterator at(folder, failure), end; !failure && at != end;
         at.increment(failure)) {
        std::error_code ignored;
        if (fs::is_directory(at->symlink_status(ignored)))
            fs::permissions(at->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }

    bool complete = true;
    for (fs::directory_iterator at(folder, failure), end; !failure && at != end; at.increment(failure)) {
        std::error_code ignored;
        fs::remove_all(at->path(), ignored);
        complete = complete && !ignored;
    }
    return complete && !failure;
}

bool removeTree(const fs::path &folder)
{
    std::error_code failure;
    const fs::file_status status = fs::symlink_status(folder, failure);
    if (!fs::exists(status))
        return true;
    const bool emptied = !fs::is_directory(status) || emptyFolder(folder);
    fs::remove(folder, failure);
    return emptied && !failure;
}

bool copyTree(const fs::path &from, const fs::path &to, const std::function<bool(const fs::path &)> &wanted,
              QString *error)
{
    std::error_code failure;
    fs::create_directories(to, failure);
    fs::recursive_directory_iterator at(from, failure);
    for (const fs::recursive_directory_iterator end; !failure && at != end; at.increment(failure)) {
        const fs::path inside = at->path().lexically_relative(from);
        if (!wanted(inside))
            continue;
        const fs::path copy = to / inside;
        if (at->is_directory(failure))
            fs::create_directories(copy, failure);
        else
            fs::copy_file(at->path(), copy, fs::copy_options::overwrite_existing, failure);
        if (!failure)
            fs::permissions(copy, fs::perms::owner_write, fs::perm_options::add, failure);
        if (failure)
            break;
    }
    if (failure)
        *error = u"%1 cannot be filled: %2"_s.arg(QFile::decodeName(to.c_str()),
                                                  QString::fromLocal8Bit(failure.message().c_str()));
    return !failure;
}

} // namespace lindenreed::host
