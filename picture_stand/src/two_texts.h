// Formats from language tables that take two texts.

#pragma once

#include <QByteArray>

#include <optional>

namespace lindenreed::picture_stand {

/// `format` with its two "%s" replaced and "%%" as "%"; nothing if it is null, holds any other conversion, or
/// more or fewer. Any thread.
std::optional<QByteArray> withTwoTexts(const char *format, const QByteArray &first, const QByteArray &second);

} // namespace lindenreed::picture_stand
