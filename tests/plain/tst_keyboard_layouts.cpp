// The keyboard's layouts and where its keys lie, on every kind of screen.

#include <keyboard_page.h>
#include <texts.h>

#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

struct Place
{
    const char *name;
    QSize available; ///< without the status panel
    int dpi;
};

const QList<Place> places{{"grey-6 upright", {758, 979}, 212},      {"grey-6 sideways", {1024, 713}, 212},
                          {"grey-6-hd upright", {1072, 1384}, 300}, {"grey-6-hd sideways", {1448, 1008}, 300},
                          {"grey-8 upright", {1404, 1808}, 300},    {"grey-8 sideways", {1872, 1340}, 300}};

const QStringList languages{u"en"_s, u"de"_s, u"es"_s, u"fr"_s, u"it"_s, u"pl"_s, u"ru"_s, u"uk"_s};

/// 9 mm, which a fingertip needs.
int fingertip(int dpi)
{
    return int(9 * dpi / 25.4);
}

QString lettersOf(const LetterLayout &layout)
{
    QString letters = layout.extra.toString();
    for (const QStringView row : layout.rows)
        letters += row;
    return letters;
}

QList<KeyboardKey> keysOf(const KeyboardView &view, const Place &place, QSize *size)
{
    *size = QSize(place.available.width(), keyboardHeight(view, place.available, place.dpi));
    return placeKeys(view, *size, place.dpi);
}

} // namespace

class tst_KeyboardLayouts : public QObject
{
    Q_OBJECT

private slots:
    void alphabets_data();
    void alphabets();
    void layoutOfALanguage();
    void capitals();
    void keysLieWell_data();
    void keysLieWell();
    void noGapBetweenNeighbours();
    void heightStaysBetweenPages();
    void rowsOfTheGuide();
    void padOfTheGuide();
    void languageKeyNeedsALanguage();
    void namesAndIds();
};

void tst_KeyboardLayouts::alphabets_data()
{
    QTest::addColumn<QString>("alphabet");
    const QString latin = u"abcdefghijklmnopqrstuvwxyz"_s;
    QTest::newRow("en") << latin;
    QTest::newRow("de") << latin + u"äöüß"_s;
    QTest::newRow("es") << latin + u"áéíñóúü¿¡"_s;
    QTest::newRow("fr") << latin + u"àâçéèêëîïôùûœ"_s;
    QTest::newRow("it") << latin + u"àéèìòù"_s;
    QTest::newRow("pl") << latin + u"ąćęłńóśźż"_s;
    QTest::newRow("ru") << u"абвгдеёжзийклмнопрстуфхцчшщъыьэюя"_s;
    QTest::newRow("uk") << u"абвгґдеєжзиіїйклмнопрстуфхцчшщьюя’"_s;
}

void tst_KeyboardLayouts::alphabets()
{
    QFETCH(QString, alphabet);
    QString letters = lettersOf(letterLayout(QString::fromLatin1(QTest::currentDataTag())));
    std::sort(letters.begin(), letters.end());
    std::sort(alphabet.begin(), alphabet.end());
    QCOMPARE(letters, alphabet); // each once
}

void tst_KeyboardLayouts::layoutOfALanguage()
{
    QCOMPARE(letterLayout(u"de_AT"_s).language, QStringView(u"de"));
    for (const QString &language : {u""_s, u"en"_s, u"zh_CN"_s, u"ja"_s, u"d"_s, u"deu"_s})
        QCOMPARE(&letterLayout(language), &plainLatinLayout());
}

void tst_KeyboardLayouts::capitals()
{
    QCOMPARE(capital(u'a'), QChar(u'A'));
    QCOMPARE(capital(u'ß'), QChar(u'ẞ'));
    QCOMPARE(capital(u'œ'), QChar(u'Œ'));
    QCOMPARE(capital(u'ґ'), QChar(u'Ґ'));
    QCOMPARE(capital(u'¿'), QChar(u'¿'));
}

void tst_KeyboardLayouts::keysLieWell_data()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : languages)
        QTest::newRow(qPrintable(language)) << language;
}

void tst_KeyboardLayouts::keysLieWell()
{
    QFETCH(QString, language);
    for (const Place &place : places) {
        for (const KeyboardPage page : {KeyboardPage::Letters, KeyboardPage::Signs, KeyboardPage::Pad}) {
            QSize size;
            const QList<KeyboardKey> keys
                = keysOf({page, &letterLayout(language), false, false}, place, &size);
            QRegion taken;
            for (const KeyboardKey &key : keys) {
                QVERIFY2(QRect(QPoint(), size).contains(key.rectangle), place.name);
                QVERIFY2(!taken.intersects(key.rectangle), place.name);
                taken += key.rectangle;
                const int gap = fromDesign(8, place.dpi);
                QVERIFY2(key.rectangle.height() + gap >= fingertip(place.dpi), place.name);
                // Twelve columns are narrower than a fingertip on a six-inch panel, as they are on any.
                const int least = fingertip(place.dpi)
                    * (letterLayout(language).columns > 10 || letterLayout(language).extra.size() > 10 ? 80
                                                                                                       : 100)
                    / 100;
                QVERIFY2(key.rectangle.width() + gap >= least, qPrintable(key.name()));
            }
            const auto count = [&](KeyAction action) {
                return std::count_if(keys.cbegin(), keys.cend(),
                                     [&](const KeyboardKey &key) { return key.action == action; });
            };
            QCOMPARE(count(KeyAction::Delete), 1);
            QCOMPARE(count(KeyAction::Done), 1);
            QCOMPARE(count(KeyAction::Space), page == KeyboardPage::Pad ? 0 : 1);
        }
    }
}

void tst_KeyboardLayouts::noGapBetweenNeighbours()
{
    QSize size;
    const Place &place = places.constFirst();
    const QList<KeyboardKey> keys = keysOf({KeyboardPage::Signs}, place, &size);
    // From the first key to the last of a full row, every pixel belongs to one.
    const QRect first = keys.first().rectangle;
    qsizetype before = 0;
    for (int x = first.left(); x < size.width() - fromDesign(8, place.dpi); ++x) {
        const qsizetype key = keyAt(keys, {x, first.center().y()}, place.dpi);
        QVERIFY2(key == before || key == before + 1, qPrintable(QString::number(x)));
        before = key;
    }
    QCOMPARE(before, 9);
    for (int y = first.top(); y < size.height() - fromDesign(8, place.dpi); ++y)
        QVERIFY(keyAt(keys, {first.center().x(), y}, place.dpi) >= 0);
    QCOMPARE(keyAt(keys, {-50, 10}, place.dpi), -1);
}

void tst_KeyboardLayouts::heightStaysBetweenPages()
{
    for (const Place &place : places) {
        for (const QString &language : languages) {
            KeyboardView view{KeyboardPage::Letters, &letterLayout(language)};
            const int height = keyboardHeight(view, place.available, place.dpi);
            view.plainLatin = true;
            QCOMPARE(keyboardHeight(view, place.available, place.dpi), height);
            view.page = KeyboardPage::Signs;
            QCOMPARE(keyboardHeight(view, place.available, place.dpi), height);
            // Five rows of a fingertip are a little more than half of a screen that lies sideways.
            QVERIFY2(height <= place.available.height() * 6 / 10, place.name);
        }
    }
}

void tst_KeyboardLayouts::rowsOfTheGuide()
{
    QSize size;
    const QList<KeyboardKey> keys = keysOf({}, {"grey-8 upright", {1404, 1808}, 300}, &size);
    QCOMPARE(size.height(), 2 + 4 * 124 + 5 * 8);
    QMap<int, int> inRow;
    for (const KeyboardKey &key : keys) {
        QCOMPARE(key.rectangle.height(), 124);
        ++inRow[key.rectangle.top()];
    }
    QCOMPARE(inRow.values(), QList<int>({10, 9, 9, 4}));
    QCOMPARE(keys.first().rectangle.topLeft(), QPoint(8, 10));
    QCOMPARE(keys.at(1).rectangle.left() - keys.at(0).rectangle.right() - 1, 8);
    QCOMPARE(keys.at(9).rectangle.right(), 1404 - 8 - 1);
    QCOMPARE(keys.last().rectangle.bottomRight(), QPoint(1404 - 8 - 1, size.height() - 8 - 1));
}

void tst_KeyboardLayouts::padOfTheGuide()
{
    QSize size;
    const QList<KeyboardKey> keys = keysOf({KeyboardPage::Pad}, {"grey-8 upright", {1404, 1808}, 300}, &size);
    QCOMPARE(keys.size(), 12);
    QCOMPARE(keys.first().rectangle.left() - 8, (1404 - 720) / 2);
    QCOMPARE(keys.last().rectangle.right() + 1 + 8, (1404 + 720) / 2);
    QString digits;
    for (const KeyboardKey &key : keys)
        digits += key.text;
    QCOMPARE(digits, u"1234567890"_s);
}

void tst_KeyboardLayouts::languageKeyNeedsALanguage()
{
    const auto hasLanguageKey = [](const KeyboardView &view) {
        const QList<KeyboardKey> keys = placeKeys(view, QSize(758, 383), 212);
        return std::any_of(keys.cbegin(), keys.cend(),
                           [](const KeyboardKey &key) { return key.action == KeyAction::Language; });
    };
    QVERIFY(!hasLanguageKey({}));
    QVERIFY(hasLanguageKey({KeyboardPage::Letters, &letterLayout(u"uk"_s)}));
    QVERIFY(hasLanguageKey({KeyboardPage::Letters, &letterLayout(u"uk"_s), true})); // the way back
}

void tst_KeyboardLayouts::namesAndIds()
{
    QCOMPARE((KeyboardKey{KeyAction::Text, u"ä"_s, {}}.name()), u"ä"_s);
    QCOMPARE((KeyboardKey{KeyAction::Text, u"ä"_s, {}}.id()), QString());
    lindenreed::device::texts::load(u"pl"_s);
    QCOMPARE((KeyboardKey{KeyAction::Space, u" "_s, {}}.name()), u"Spacja"_s);
    QCOMPARE((KeyboardKey{KeyAction::Delete, {}, {}}.name()), u"Usuń"_s);
    // Scripts go by the id, in any language.
    const QList<std::pair<KeyAction, QString>> ids{
        {KeyAction::Shift, u"key_shift"_s},       {KeyAction::Delete, u"key_delete"_s},
        {KeyAction::Language, u"key_language"_s}, {KeyAction::Space, u"key_space"_s},
        {KeyAction::Done, u"key_done"_s},         {KeyAction::Letters, u"key_letters"_s}};
    for (const auto &[action, id] : ids)
        QCOMPARE((KeyboardKey{action, {}, {}}.id()), id);
    lindenreed::device::texts::load(u"en"_s);
    QCOMPARE((KeyboardKey{KeyAction::Space, u" "_s, {}}.name()), u"Space"_s);
    QCOMPARE((KeyboardKey{KeyAction::Space, u" "_s, {}}.id()), u"key_space"_s);
    QCOMPARE((KeyboardKey{KeyAction::Signs, u"123"_s, {}}.name()), u"123"_s);
    QCOMPARE((KeyboardKey{KeyAction::Signs, u"123"_s, {}}.id()), u"key_signs"_s);
    QCOMPARE((KeyboardKey{KeyAction::Done, {}, {}}.id()), u"key_done"_s);
}

QTEST_GUILESS_MAIN(tst_KeyboardLayouts)
#include "tst_keyboard_layouts.moc"
