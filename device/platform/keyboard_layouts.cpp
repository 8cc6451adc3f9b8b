#include "keyboard_layouts.h"

#include <algorithm>

namespace lindenreed::device {

namespace {

// The Cyrillic alphabets take twelve columns in the order that their readers know; what Latin alphabets have
// beyond 26 letters stands above, so that the other keys keep their width.
const std::array<LetterLayout, 8> layouts{{
    {u"", 10, u"", {u"qwertyuiop", u"asdfghjkl", u"zxcvbnm"}},
    {u"de", 10, u"äöüß", {u"qwertzuiop", u"asdfghjkl", u"yxcvbnm"}},
    {u"es", 10, u"áéíóúü¿¡", {u"qwertyuiop", u"asdfghjklñ", u"zxcvbnm"}},
    {u"fr", 10, u"éèêëàâçîïôûœ", {u"azertyuiop", u"qsdfghjklm", u"wxcvbnù"}},
    {u"it", 10, u"àèéìòù", {u"qwertyuiop", u"asdfghjkl", u"zxcvbnm"}},
    {u"pl", 10, u"ąćęłńóśźż", {u"qwertyuiop", u"asdfghjkl", u"zxcvbnm"}},
    {u"ru", 12, u"", {u"йцукенгшщзхъ", u"фывапролджэ", u"ячсмитьбюё"}},
    {u"uk", 12, u"", {u"йцукенгшщзхї", u"фівапролджєґ", u"ячсмитьбю’"}},
}};

const LetterLayout *find(QStringView language)
{
    const auto found = std::find_if(layouts.cbegin(), layouts.cend(),
                                    [&](const LetterLayout &each) { return each.language == language; });
    return found == layouts.cend() ? nullptr : &*found;
}

} // namespace

const LetterLayout &letterLayout(const QString &language)
{
    if (const LetterLayout *exact = find(language))
        return *exact;
    const LetterLayout *withoutCountry = find(QStringView(language).left(language.indexOf(u'_')));
    return withoutCountry ? *withoutCountry : plainLatinLayout();
}

const LetterLayout &plainLatinLayout()
{
    return layouts.front();
}

const std::array<QStringView, 3> &signRows()
{
    static const std::array<QStringView, 3> rows{u"1234567890", u"@#€%&*+-=/", u"()\"':;!?"};
    return rows;
}

QChar commaSign()
{
    return u',';
}

const std::array<QStringView, 3> &padRows()
{
    static const std::array<QStringView, 3> rows{u"123", u"456", u"789"};
    return rows;
}

QChar capital(QChar letter)
{
    // Unicode's own capital of this letter is two letters.
    return letter == u'ß' ? QChar(u'ẞ') : letter.toUpper();
}

} // namespace lindenreed::device
