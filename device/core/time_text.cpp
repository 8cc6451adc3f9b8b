// Dates and times as text.

#include "texts.h"

namespace lindenreed::device::texts {

namespace {

/// Nothing for a number that is no day: a caller's tm may hold anything.
QByteArray dayName(const QLocale &locale, int day, QLocale::FormatType length)
{
    // Qt counts from Monday, 1 to 7.
    return day >= 0 && day < 7 ? locale.dayName(day == 0 ? 7 : day, length).toUtf8() : QByteArray();
}

bool isMonth(int month)
{
    return month >= 0 && month < 12;
}

QByteArray monthName(const QLocale &locale, int month)
{
    return isMonth(month) ? locale.standaloneMonthName(month + 1).toUtf8() : QByteArray();
}

/// In the case that goes with a day.
QString caseOfDay(const QLocale &locale, int month, QLocale::FormatType length)
{
    return isMonth(month) ? locale.monthName(month + 1, length) : QString();
}

/// As it follows the number of a day: some languages put a word before it.
QByteArray monthOfDay(const QLocale &locale, int month)
{
    const QString name = caseOfDay(locale, month, QLocale::LongFormat);
    const char *const pattern = text("@MonthOfDay");
    return (pattern && !name.isEmpty() ? QString::fromUtf8(pattern).arg(name) : name).toUtf8();
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
bool append(QByteArray &text, char conversion, const QLocale &locale, const std::tm &time)
{
    switch (conversion) {
    case 'a':
        text += dayName(locale, time.tm_wday, QLocale::ShortFormat);
        return true;
    case 'A':
        text += dayName(locale, time.tm_wday, QLocale::LongFormat);
        return true;
    case 'b':
        text += caseOfDay(locale, time.tm_mon, QLocale::ShortFormat).toUtf8();
        return true;
    case 'B':
        text += monthName(locale, time.tm_mon);
        return true;
    case 'l':
        text += monthOfDay(locale, time.tm_mon);
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
        text += (time.tm_hour < 12 ? locale.amText() : locale.pmText()).toUtf8();
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
    const QLocale language = locale();
    QByteArray text;
    for (const char *at = format; *at != '\0'; ++at) {
        if (*at == '%' && append(text, at[1], language, time))
            ++at;
        else
            text += *at;
    }
    return text;
}

} // namespace lindenreed::device::texts
