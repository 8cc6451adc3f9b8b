#include "locale_alias.h"

#include <sstream>

namespace lindenreed::picture_stand {

std::optional<std::string> localeAlias(std::istream &aliases, const std::string &language)
{
    for (std::string line; std::getline(aliases, line);) {
        std::istringstream tokens(line);
        std::string name;
        std::string locale;
        tokens >> name >> locale;
        if (name == language)
            return locale;
    }
    return std::nullopt;
}

} // namespace lindenreed::picture_stand
