// Dates and times as text.

#include "texts.h"

#include <array>
#include <string_view>

namespace lindenreed::device::texts {

namespace {

constexpr std::array<std::string_view, 7> dayNames{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                   "Thursday", "Friday", "Saturday"};
constexpr std::array<std::string_view, 12> monthNames{"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};

/// Nothing for a number that is no index: a caller's tm may hold anything.
template <std::size_t count>
std::string_view name(const std::array<std::string_view, count> &names, int index)
{
    return index >= 0 && index < int(count) ? names[std::size_t(index)] : std::string_view();
}

QByteArray padded(qint64 number, int width, char fill = '0')
{
    return QByteArray::number(number).rightJustified(width, fill);
}

qint64 onTwelveHourClock(int hour)
{
    const int rest = hour % 12;
    return rest == 0 ? 12 : rest;
}

/// False: no conversion of ours.
bool append(QByteArray &text, char conversion, const std::tm &time)
{
    switch (conversion) {
    case 'a':
        text += name(dayNames, time.tm_wday).substr(0, 3);
        return true;
    case 'A':
        text += name(dayNames, time.tm_wday);
        return true;
    case 'b':
        text += name(monthNames, time.tm_mon).substr(0, 3);
        return true;
    case 'B':
    case 'l': // English names a month beside a day as it names it alone
        text += name(monthNames, time.tm_mon);
        return true;
    case 'd':
        text += padded(time.tm_mday, 2);
        return true;
    case 'e':
        text += padded(time.tm_mday, 2, ' ');
        return true;
    case 'H':
        text += padded(time.tm_hour, 2);
        return true;
    case 'I':
        text += padded(onTwelveHourClock(time.tm_hour), 2);
        return true;
    case 'j':
        text += padded(qint64(time.tm_yday) + 1, 3);
        return true;
    case 'm':
        text += padded(qint64(time.tm_mon) + 1, 2);
        return true;
    case 'M':
        text += padded(time.tm_min, 2);
        return true;
    case 'p':
        text += time.tm_hour < 12 ? "AM" : "PM";
        return true;
    case 'S':
        text += padded(time.tm_sec, 2);
        return true;
    case 'y':
        text += padded(((qint64(time.tm_year) + 1900) % 100 + 100) % 100, 2);
        return true;
    case 'Y':
        text += QByteArray::number(qint64(time.tm_year) + 1900);
        return true;
    case '%':
        text += '%';
        return true;
    default:
        return false;
    }
}

} // namespace

QByteArray time(const char *format, const std::tm &time)
{
    QByteArray text;
    for (const char *at = format; *at != '\0'; ++at) {
        if (*at == '%' && append(text, at[1], time))
            ++at;
        else
            text += *at;
    }
    return text;
}

} // namespace lindenreed::device::texts
