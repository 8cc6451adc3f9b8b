// Places of a format that values are put into.

#pragma once

#include <QString>
#include <QStringList>

namespace lindenreed::device {

/// Two texts with equal placeholders take the same values.
struct Placeholders
{
    QStringList inOrder; ///< "%s", "%d": printf's take values as they come
    QStringList numbered; ///< "%1", "%2", sorted: these say which value they take

    bool operator==(const Placeholders &other) const = default;
};

/// "%%" is no placeholder. A percent sign that begins none counts as one of its own, for printf() would not
/// pass it over.
Placeholders placeholders(const QString &text);

} // namespace lindenreed::device
