#include "fallback_font.h"

#include <QFont>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

void nameFallbackFont(const QString &language)
{
    QFont::insertSubstitution(u"Noto Sans"_s,
                              language == u"ja"_s ? u"Noto Sans CJK JP"_s : u"Noto Sans CJK SC"_s);
}

} // namespace lindenreed::device
