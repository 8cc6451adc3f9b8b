// Configuration files: key=value lines.

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>

#include <optional>

namespace lindenreed::device {

/// One configuration file as it was when it was read. Never writes. Works before any application object
/// exists.
///
/// The last line of a key wins, CR LF is accepted, keys and values are taken as they stand between line
/// start, first "=" and line end; anything else on a line is passed over, and so is what stands behind the
/// first 4 MiB. A file that cannot be read is like an empty one.
class Configuration
{
public:
    static Configuration read(const QByteArray &path);

    QByteArrayList keys() const { return m_values.keys(); } ///< in no order
    std::optional<QByteArray> text(const QByteArray &key) const;
    /// Nothing unless the whole value is a decimal integer that fits an int.
    std::optional<int> integer(const QByteArray &key) const;

private:
    QHash<QByteArray, QByteArray> m_values;
};

} // namespace lindenreed::device
