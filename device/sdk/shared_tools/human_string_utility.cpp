#include "shared_tools/human_string_utility.h"

#include "call.h"

#include <texts.h>

#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>

namespace lindenreed::utilities {

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

namespace {

struct Unit
{
    const char *key;
    const char *english; ///< where no table is loaded
};

constexpr std::array<Unit, 5> units{{
    {"@Size_B", "B"},
    {"@Size_KB", "KB"},
    {"@Size_MB", "MB"},
    {"@Size_GB", "GB"},
    {"@Size_TB", "TB"},
}};
constexpr double step = 1024.0;

QByteArray sizeText(double bytes)
{
    std::size_t unit = 0;
    // What would be shown as 1024 is one of the next unit.
    while (std::round(bytes) >= step && unit + 1 < units.size()) {
        bytes /= step;
        ++unit;
    }
    QLocale locale = texts::locale();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const int decimals = unit == 0 || bytes >= 99.95 ? 0 : 1;
    const char *const name = texts::text(units[unit].key);
    return locale.toString(bytes, 'f', decimals).toUtf8() + ' ' + (name ? name : units[unit].english);
}

} // namespace

int HumanStringUtility::HumanSizeWithPrecision(char *buffer, int size, std::uint64_t count,
                                               std::uint64_t unit, bool flag)
{
    int length = 0;
    if (buffer && size > 0) {
        const QByteArray text = sizeText(double(count) * double(unit));
        length = int(std::min<qsizetype>(text.size(), size - 1));
        while (length > 0 && length < text.size() && (uchar(text.at(length)) & 0xc0) == 0x80)
            --length; // never half a character
        std::copy_n(text.constData(), length, buffer);
        buffer[length] = '\0';
    }
    return answer("HumanSizeWithPrecision", length, size, count, unit, flag);
}

} // namespace lindenreed::utilities
