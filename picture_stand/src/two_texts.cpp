#include "two_texts.h"

namespace lindenreed::picture_stand {

std::optional<QByteArray> withTwoTexts(const char *format, const QByteArray &first, const QByteArray &second)
{
    if (!format)
        return std::nullopt;
    QByteArray result;
    int used = 0;
    for (const char *next = format; *next != '\0'; ++next) {
        if (*next != '%') {
            result += *next;
            continue;
        }
        ++next;
        if (*next == '%') {
            result += '%';
        } else if (*next == 's' && used < 2) {
            result += used++ == 0 ? first : second;
        } else {
            return std::nullopt;
        }
    }
    if (used != 2)
        return std::nullopt;
    return result;
}

} // namespace lindenreed::picture_stand
