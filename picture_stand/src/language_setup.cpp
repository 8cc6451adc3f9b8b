#include "language_setup.h"

#include "global_config.h"

#include <shared_tools/cfg_wrapper.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace lindenreed::picture_stand {

void setUpLanguage()
{
    const auto language
        = utilities::readFromConfig<std::string>(globalConfigPath, "language", std::string("en"));

    std::ifstream aliases("/devroot/share/locale/locale.alias");
    for (std::string line; std::getline(aliases, line);) {
        std::istringstream tokens(line);
        std::string name;
        std::string locale;
        tokens >> name >> locale; // a line of one token gives an empty LANG
        if (name != language)
            continue;

        // The environment keeps the pointer, also while static objects are being destroyed: never freed.
        static auto &variable = *new std::string;
        variable = "LANG=" + locale;
        putenv(variable.data());
        return;
    }
}

} // namespace lindenreed::picture_stand
