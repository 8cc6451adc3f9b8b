#include "placeholders.h"

#include <QRegularExpression>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

Placeholders placeholders(const QString &text)
{
    // First what printf() takes, flags, width, precision and length included, then Qt's, then a bare sign.
    static const QRegularExpression pattern(
        u"%(?:[-+ #0']*(?:\\d+\\$?|\\*)?(?:\\.(?:\\d+|\\*)?)?(?:hh?|ll?|[Lqjzt])?[diouxXeEfFgGaAcCsSpnm%]|(L?\\d{1,2})|)"_s);
    Placeholders found;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QString placeholder = match.captured();
        if (match.hasCaptured(1))
            found.numbered.append(placeholder);
        else if (placeholder != u"%%"_s)
            found.inOrder.append(placeholder);
    }
    found.numbered.sort();
    return found;
}

} // namespace lindenreed::device
