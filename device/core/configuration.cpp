#include "configuration.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <charconv>

namespace lindenreed::device {

// Many times what a device writes; what stands behind it is not read.
static constexpr qint64 mostBytes = 4 * 1024 * 1024;

Configuration Configuration::read(const QByteArray &path)
{
    Configuration configuration;
    const QString name = QFile::decodeName(path);
    // A pipe or a device under this name would block or never end.
    if (!QFileInfo(name).isFile())
        return configuration;
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return configuration;

    QByteArray content = file.read(std::min(file.size(), mostBytes));
    if (content.size() == mostBytes)
        content.truncate(content.lastIndexOf('\n') + 1); // half a value is another one
    qsizetype begin = 0;
    while (begin < content.size()) {
        qsizetype end = content.indexOf('\n', begin);
        const qsizetype next = end < 0 ? content.size() : end + 1;
        if (end < 0)
            end = content.size();
        if (end > begin && content.at(end - 1) == '\r')
            --end;
        const QByteArrayView line = QByteArrayView(content).sliced(begin, end - begin);
        if (const qsizetype equals = line.indexOf('='); equals > 0)
            configuration.m_values.insert(line.first(equals).toByteArray(),
                                          line.sliced(equals + 1).toByteArray());
        begin = next;
    }
    return configuration;
}

std::optional<QByteArray> Configuration::text(const QByteArray &key) const
{
    const auto found = m_values.constFind(key);
    if (found == m_values.constEnd())
        return std::nullopt;
    return *found;
}

std::optional<int> Configuration::integer(const QByteArray &key) const
{
    const auto found = m_values.constFind(key);
    if (found == m_values.constEnd())
        return std::nullopt;
    int value = 0;
    const char *const end = found->constData() + found->size();
    const auto [stop, error] = std::from_chars(found->constData(), end, value);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return value;
}

} // namespace lindenreed::device
