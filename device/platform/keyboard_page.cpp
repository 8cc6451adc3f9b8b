#include "keyboard_page.h"

#include "texts.h"

#include <algorithm>
#include <cmath>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

// Pixels of a 300 dpi panel.
constexpr int lineHeight = 2;
constexpr int gapWidth = 8;
constexpr int rowHeight = 124;
constexpr int leastRowHeight = 106; // a fingertip
constexpr int padWidth = 720;

/// A key before it has its place; the width counts in columns.
struct Key
{
    KeyAction action;
    QString text;
    double columns = 1;
};

struct Row
{
    int columns; ///< of the whole row, filled or not
    QList<Key> keys;
};

Row textRow(int columns, QStringView characters)
{
    Row row{std::max(columns, int(characters.size())), {}};
    for (const QChar character : characters)
        row.keys.append({KeyAction::Text, character});
    return row;
}

void shift(Row &row)
{
    for (Key &key : row.keys)
        key.text = capital(key.text.front());
}

QList<Row> letterRows(const KeyboardView &view)
{
    const LetterLayout &layout = view.plainLatin ? plainLatinLayout() : *view.letters;
    QList<Row> rows;
    if (!layout.extra.isEmpty())
        rows.append(textRow(layout.columns, layout.extra));
    for (const QStringView characters : layout.rows)
        rows.append(textRow(layout.columns, characters));
    if (view.shifted)
        std::for_each(rows.begin(), rows.end(), shift);
    Row &last = rows.last();
    const double side = (layout.columns - double(last.keys.size())) / 2;
    last.keys.prepend({KeyAction::Shift, {}, side});
    last.keys.append({KeyAction::Delete, {}, side});

    Row lowest{10, {{KeyAction::Signs, u"123"_s, 1.5}}};
    const bool hasLanguage = view.letters != &plainLatinLayout();
    if (hasLanguage)
        lowest.keys.append({KeyAction::Language, {}, 1});
    lowest.keys.append({KeyAction::Space, u" "_s, hasLanguage ? 4.5 : 5.5});
    lowest.keys.append({KeyAction::Text, u"."_s, 1});
    lowest.keys.append({KeyAction::Done, {}, 2});
    rows.append(lowest);
    return rows;
}

QList<Row> signPageRows(const KeyboardView &view)
{
    QList<Row> rows;
    for (const QStringView characters : signRows())
        rows.append(textRow(10, characters));
    Row &last = rows.last();
    last.keys.append({KeyAction::Delete, {}, 10 - double(last.keys.size())});
    const LetterLayout &back = view.plainLatin ? plainLatinLayout() : *view.letters;
    const bool cyrillic = back.rows.front().front().script() == QChar::Script_Cyrillic;
    rows.append({10,
                 {{KeyAction::Letters, cyrillic ? u"АБВ"_s : u"ABC"_s, 1.5},
                  {KeyAction::Text, commaSign(), 1},
                  {KeyAction::Space, u" "_s, 4.5},
                  {KeyAction::Text, u"."_s, 1},
                  {KeyAction::Done, {}, 2}}});
    return rows;
}

QList<Row> padPageRows()
{
    QList<Row> rows;
    for (const QStringView characters : padRows())
        rows.append(textRow(3, characters));
    rows.append({3, {{KeyAction::Delete, {}}, {KeyAction::Text, u"0"_s}, {KeyAction::Done, {}}}});
    return rows;
}

QList<Row> rowsOf(const KeyboardView &view)
{
    switch (view.page) {
    case KeyboardPage::Signs:
        return signPageRows(view);
    case KeyboardPage::Pad:
        return padPageRows();
    case KeyboardPage::Letters:
        break;
    }
    return letterRows(view);
}

QString wordFor(const char *key)
{
    const char *const word = texts::text(key);
    return QString::fromUtf8(word ? word : key);
}

} // namespace

int fromDesign(int length, int dpi)
{
    return int(std::lround(length * dpi / 300.0));
}

QString KeyboardKey::name() const
{
    switch (action) {
    case KeyAction::Space:
        return wordFor("@KeySpace");
    case KeyAction::Shift:
        return wordFor("@KeyShift");
    case KeyAction::Delete:
        return wordFor("@Delete");
    case KeyAction::Language:
        return wordFor("@KeyLanguage");
    case KeyAction::Done:
        return wordFor("@KeyDone");
    case KeyAction::Text:
    case KeyAction::Signs:
    case KeyAction::Letters:
        break;
    }
    return text;
}

QString KeyboardKey::id() const
{
    switch (action) {
    case KeyAction::Text:
        return {};
    case KeyAction::Signs:
        return u"key_signs"_s;
    case KeyAction::Letters:
        return u"key_letters"_s;
    case KeyAction::Shift:
        return u"key_shift"_s;
    case KeyAction::Delete:
        return u"key_delete"_s;
    case KeyAction::Language:
        return u"key_language"_s;
    case KeyAction::Space:
        return u"key_space"_s;
    case KeyAction::Done:
        return u"key_done"_s;
    }
    return {};
}

int keyboardHeight(const KeyboardView &view, const QSize &available, int dpi)
{
    const bool extraRow = view.page != KeyboardPage::Pad && !view.letters->extra.isEmpty();
    const int rows = extraRow ? 5 : 4;
    const int gap = fromDesign(gapWidth, dpi);
    const int line = std::max(1, fromDesign(lineHeight, dpi));
    const int fixed = line + (rows + 1) * gap;
    const int fitting = (available.height() / 2 - fixed) / rows;
    return fixed + rows * std::clamp(fitting, fromDesign(leastRowHeight, dpi), fromDesign(rowHeight, dpi));
}

QList<KeyboardKey> placeKeys(const KeyboardView &view, const QSize &keyboard, int dpi)
{
    const int gap = fromDesign(gapWidth, dpi);
    const int line = std::max(1, fromDesign(lineHeight, dpi));
    const int width = view.page == KeyboardPage::Pad ? std::min(fromDesign(padWidth, dpi), keyboard.width())
                                                     : keyboard.width();
    const int left = (keyboard.width() - width) / 2 + gap;
    const QList<Row> rows = rowsOf(view);
    const double rowPitch = double(keyboard.height() - line - gap) / double(rows.size());

    QList<KeyboardKey> placed;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const Row &row = rows.at(i);
        const double pitch = double(width - gap) / row.columns;
        double taken = 0;
        for (const Key &key : row.keys)
            taken += key.columns;
        double column = (row.columns - taken) / 2;
        const int top = line + gap + int(std::lround(double(i) * rowPitch));
        const int below = line + gap + int(std::lround(double(i + 1) * rowPitch));
        for (const Key &key : row.keys) {
            const int from = left + int(std::lround(column * pitch));
            column += key.columns;
            const int to = left + int(std::lround(column * pitch));
            placed.append({key.action, key.text, QRect(from, top, to - from - gap, below - top - gap)});
        }
    }
    return placed;
}

qsizetype keyAt(const QList<KeyboardKey> &keys, const QPoint &place, int dpi)
{
    const int reach = (fromDesign(gapWidth, dpi) + 1) / 2;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        if (keys.at(i).rectangle.adjusted(-reach, -reach, reach, reach).contains(place))
            return i;
    }
    return -1;
}

} // namespace lindenreed::device
