// One line of a client, before it is known whether anybody understands it.

#pragma once

#include <QByteArrayView>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace lindenreed::remote {

/// What a line says. Where `error` is not empty it is an error code, and `message` says why, for people.
struct RequestLine
{
    std::optional<qint64> id; ///< nothing: the answer's id is null
    QString command; ///< of "do"
    QJsonObject request; ///< the whole object
    QString error;
    QString message;
};

/// Reads one line without its newline. Never fails in another way than by `error`; bytes that are no UTF-8,
/// deep nesting and numbers that are no integers are among what it refuses. Any thread.
RequestLine parseRequestLine(QByteArrayView line);

/// The integer that a JSON value is; nothing for fractions, texts, and what 64 bits cannot hold.
std::optional<qint64> integerOf(const QJsonValue &value);

} // namespace lindenreed::remote
