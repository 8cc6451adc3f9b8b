// The table of languages and locales. Its first line is the language that is looked up.

#include "fuzz_targets.h"
#include "require.h"

#include <locale_alias.h>

#include <sstream>

using lindenreed::picture_stand::localeAlias;

namespace {

using Alias = std::optional<std::string>;

Alias find(const std::string &table, const std::string &language)
{
    std::istringstream stream(table);
    return localeAlias(stream, language);
}

bool hasSpace(const std::string &text)
{
    return text.find_first_of(" \t\n\v\f\r") != std::string::npos;
}

} // namespace

void fuzzLocaleAlias(const QByteArray &input)
{
    const std::string all = input.toStdString();
    const std::size_t end = all.find('\n');
    const std::string language = all.substr(0, end);
    const std::string table = end == std::string::npos ? std::string() : all.substr(end + 1);

    const Alias alias = find(table, language);
    require(!alias || (!hasSpace(*alias) && table.find(*alias) != std::string::npos));

    // Line ends of the other kind say the same.
    std::string other;
    for (const char byte : table)
        other += byte == '\n' ? std::string("\r\n") : std::string(1, byte);
    require(find(other, language) == alias);

    // The first line counts: what follows changes nothing, what stands before it takes its place.
    if (!language.empty() && !hasSpace(language)) {
        require(find(table + '\n' + language + " x_X", language) == (alias ? alias : Alias("x_X")));
        require(find(language + " x_X\n" + table, language) == "x_X");
        require(find("x" + language + " x_X\n" + table, language) == alias);
    }
}
