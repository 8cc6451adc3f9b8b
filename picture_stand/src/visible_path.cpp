#include "visible_path.h"

namespace lindenreed::picture_stand {

using namespace Qt::StringLiterals;

QByteArray visiblePath(const QString &path)
{
    QString visible;
    for (const QChar character : path) {
        if (character == u'\n')
            visible += u"\\n"_s;
        else if (character == u'\r')
            visible += u"\\r"_s;
        else if (character == u'\t')
            visible += u"\\t"_s;
        else if (character.category() == QChar::Other_Control)
            visible += u"\\x%1"_s.arg(uint(character.unicode()), 2, 16, QChar(u'0'));
        else if (character == QChar::LineSeparator || character == QChar::ParagraphSeparator)
            visible += u"\\u%1"_s.arg(uint(character.unicode()), 4, 16, QChar(u'0'));
        else
            visible += character;
    }
    return visible.toLocal8Bit();
}

} // namespace lindenreed::picture_stand
