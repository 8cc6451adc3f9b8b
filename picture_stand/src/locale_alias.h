// The device's table of languages and locales.

#pragma once

#include <iosfwd>
#include <optional>
#include <string>

namespace lindenreed::picture_stand {

/// The second word of the first line whose first word is `language`, empty where the line has none; nothing
/// where there is no such line. White space is that of the C locale, so CR LF is accepted.
std::optional<std::string> localeAlias(std::istream &aliases, const std::string &language);

} // namespace lindenreed::picture_stand
