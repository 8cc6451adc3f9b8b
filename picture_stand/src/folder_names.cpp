#include "folder_names.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace lindenreed::picture_stand {

namespace {

namespace fs = std::filesystem;

/// None where it is hidden, or no UTF-8.
std::optional<QString> nameOf(const fs::directory_entry &entry)
{
    const std::string bytes = entry.path().filename().string();
    if (bytes.starts_with('.'))
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString name = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(name);
}

bool isListed(const fs::directory_entry &entry, QDir::Filters kinds)
{
    std::error_code error;
    if (entry.is_directory(error))
        return kinds.testFlag(QDir::Dirs);
    // As for QDir, what a link leads to may be anything that is there.
    return kinds.testFlag(QDir::Files)
        && (entry.is_regular_file(error) || (entry.is_symlink(error) && entry.exists(error)));
}

/// As QDir::match(), which would read the filters anew for each name.
class Wildcards
{
public:
    explicit Wildcards(const QStringList &filters)
    {
        for (const QString &filter : filters)
            m_expressions.append(QRegularExpression::fromWildcard(filter, Qt::CaseInsensitive));
    }

    /// Without any, all names.
    bool match(const QString &name) const
    {
        return m_expressions.isEmpty()
            || std::ranges::any_of(m_expressions, [&](const QRegularExpression &expression) {
                   return expression.match(name).hasMatch();
               });
    }

private:
    QList<QRegularExpression> m_expressions;
};

/// Calls `body` with each entry of a folder and its name; nothing where the folder cannot be read.
template <typename Body>
void forEach(const QString &folder, Body body)
{
    if (folder.contains(QChar::Null))
        return;
    std::error_code error;
    const fs::path path = QFile::encodeName(folder.isEmpty() ? QStringLiteral(".") : folder).toStdString();
    for (fs::directory_iterator at(path, error), end; !error && at != end; at.increment(error)) {
        if (const std::optional<QString> name = nameOf(*at))
            body(*at, *name);
    }
}

void addFilesBelow(const QString &folder, const Wildcards &wildcards, QStringList &paths)
{
    forEach(folder, [&](const fs::directory_entry &entry, const QString &name) {
        const QString path = QDir(folder).filePath(name);
        std::error_code error;
        if (entry.is_directory(error)) {
            if (!entry.is_symlink(error))
                addFilesBelow(path, wildcards, paths);
        } else if (wildcards.match(name) && isListed(entry, QDir::Files)) {
            paths.append(path);
        }
    });
}

} // namespace

QStringList folderNames(const QString &folder, QDir::Filters kinds, const QStringList &filters)
{
    QStringList names;
    const Wildcards wildcards(filters);
    forEach(folder, [&](const fs::directory_entry &entry, const QString &name) {
        if (wildcards.match(name) && isListed(entry, kinds))
            names.append(name);
    });
    names.sort();
    return names;
}

QStringList filesBelow(const QString &folder, const QStringList &filters)
{
    QStringList paths;
    addFilesBelow(folder, Wildcards(filters), paths);
    return paths;
}

} // namespace lindenreed::picture_stand
