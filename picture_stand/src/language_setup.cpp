#include "language_setup.h"

#include "global_config.h"
#include "locale_alias.h"
#include "regular_file.h"

#include <shared_tools/cfg_wrapper.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>

namespace lindenreed::picture_stand {

void setUpLanguage()
{
    const auto language
        = utilities::readFromConfig<std::string>(globalConfigPath, "language", std::string("en"));

    constexpr char aliasPath[] = "/devroot/share/locale/locale.alias";
    QFile file(QString::fromLatin1(aliasPath));
    if (!openRegularFile(file))
        return;
    constexpr qint64 mostBytes = 4 * 1024 * 1024; // what stands behind it is not read
    QByteArray table = file.read(std::min(file.size(), mostBytes));
    if (table.size() == mostBytes)
        table.truncate(table.lastIndexOf('\n') + 1); // half a locale is another one
    std::istringstream aliases(table.toStdString());
    const std::optional<std::string> locale = localeAlias(aliases, language);
    if (!locale)
        return;

    // The environment keeps the pointer, also while static objects are being destroyed: never freed.
    static auto &variable = *new std::string;
    variable = "LANG=" + *locale; // a line of one word gives an empty LANG
    putenv(variable.data());
}

} // namespace lindenreed::picture_stand
