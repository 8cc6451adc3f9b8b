// The font families that the device offers, as the interface sees them.

#include "font_model.h"
#include "journal_lines.h"

#include <slateview.h>

#include <QGuiApplication>
#include <QMetaEnum>
#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::device::FontRecord;
using lindenreed::picture_stand::FontModel;

namespace {

/// One row: title, family, regular, bold, italic, bold italic.
using Row = QStringList;
using Rows = QList<Row>;

Rows rowsOf(const FontModel &model)
{
    Rows rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        Row texts;
        for (int role = FontModel::TitleRole; role <= FontModel::BoldItalicNameRole; ++role)
            texts.append(model.data(model.index(row), role).toString());
        rows.append(texts);
    }
    return rows;
}

/// The rows behind the first one, as "title|family|regular|bold|italic|bold italic".
QStringList families(const FontModel &model)
{
    QStringList lines;
    for (const Row &row : rowsOf(model).mid(1))
        lines.append(row.join(u'|'));
    return lines;
}

} // namespace

class tst_FontModel : public QObject
{
    Q_OBJECT

private slots:
    void emptyBeforeLoading();
    void metaObject();
    void roleNames();
    void callsInOrder();
    void theDevicesOwnFontFirst();
    void grouping_data();
    void grouping();
    void valuesOfARow();
    void outsideOfTheList_data();
    void outsideOfTheList();
    void otherRoles_data();
    void otherRoles();
    void rowsWhateverTheParent();
    void familyByName_data();
    void familyByName();
    void everyByte();
    void loadedAnew();
    void fontsOfThisMachine();
};

void tst_FontModel::emptyBeforeLoading()
{
    const DeviceForTest device;
    FontModel model;
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(!model.data(model.index(0), FontModel::TitleRole).isValid());
    QCOMPARE(model.getFontFamilyByName(u"default"_s), QString());
    QCOMPARE(model.getFontFamilyByName(u"A"_s), QString());
    QVERIFY(device.calls().isEmpty());
}

void tst_FontModel::metaObject()
{
    const QMetaObject &meta = FontModel::staticMetaObject;
    QCOMPARE(QByteArray(meta.className()), QByteArray("lindenreed::picture_stand::FontModel"));
    QVERIFY(meta.superClass() == &QAbstractListModel::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod slot = meta.method(meta.methodOffset());
    QCOMPARE(slot.methodSignature(), QByteArray("getFontFamilyByName(QString)"));
    QCOMPARE(slot.parameterNames(), QByteArrayList{"name"});
    QCOMPARE(slot.returnMetaType().id(), int(QMetaType::QString));
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    QCOMPARE(slot.access(), QMetaMethod::Public);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());

    QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 1);
    const QMetaEnum roles = meta.enumerator(meta.enumeratorOffset());
    QCOMPARE(QByteArray(roles.name()), QByteArray("ContentDataRoles"));
    const QByteArrayList names{"UidRole",      "TitleRole",      "FamilyNameRole",     "NormalNameRole",
                               "BoldNameRole", "ItalicNameRole", "BoldItalicNameRole", "HasBold",
                               "HasItalic",    "HasBoldItalic"};
    QCOMPARE(roles.keyCount(), int(names.size()));
    for (int i = 0; i < roles.keyCount(); ++i) {
        QCOMPARE(QByteArray(roles.key(i)), names.at(i));
        QCOMPARE(roles.value(i), 257 + i);
    }
}

void tst_FontModel::roleNames()
{
    // 264, the bold face, has the name of the italic one; 265 has none.
    const QHash<int, QByteArray> names{{257, "uid"},         {258, "text"},       {259, "family"},
                                       {260, "normal"},      {261, "bold"},       {262, "italic"},
                                       {263, "bold_italic"}, {264, "has_italic"}, {266, "has_bold_italic"}};
    QCOMPARE(FontModel().roleNames(), names);
}

void tst_FontModel::callsInOrder()
{
    DeviceForTest device;
    device.setFonts({{"A", 0, "A Regular"}});
    FontModel model;
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    model.loadFonts();
    const QByteArray own = sv_get_default_font(5);
    device.forgetCalls();
    model.loadFonts();
    QCOMPARE(
        journalLines(device),
        QByteArrayList({"EnumFontsEx() = 1", "sv_get_default_font(5) = " + own, "FreeFontsForSort(fonts)"}));
    QVERIFY(reset.isEmpty() && inserted.isEmpty()); // no view exists yet
}

void tst_FontModel::theDevicesOwnFontFirst()
{
    DeviceForTest device;
    device.setFonts({});
    FontModel model;
    model.loadFonts();
    const QString own = QString::fromUtf8(sv_get_default_font(5));
    QVERIFY(!own.isEmpty());
    QCOMPARE(rowsOf(model), Rows({Row{u"default"_s, own, {}, {}, {}, {}}}));
    for (const int role : {FontModel::HasBold, FontModel::HasItalic, FontModel::HasBoldItalic})
        QCOMPARE(model.data(model.index(0), role), QVariant(false));
    QCOMPARE(model.data(model.index(0), FontModel::NormalNameRole), QVariant(QString()));
}

void tst_FontModel::grouping_data()
{
    QTest::addColumn<QList<FontRecord>>("records");
    QTest::addColumn<QStringList>("expected");

    using Records = QList<FontRecord>;
    QTest::newRow("three families of two styles")
        << Records{{"A", 0, "A0"}, {"A", 2, "A2"}, {"B", 0, "B0"},
                   {"B", 1, "B1"}, {"C", 0, "C0"}, {"C", 3, "C3"}}
        << QStringList{u"A|A|A0|A2||"_s, u"B|B|B0||B1|"_s, u"C|C|C0|||C3"_s};
    QTest::newRow("all four styles, in any order")
        << Records{{"A", 3, "A3"}, {"A", 1, "A1"}, {"A", 0, "A0"}, {"A", 2, "A2"}}
        << QStringList{u"A|A|A0|A2|A1|A3"_s};
    QTest::newRow("a last family of one record has no title")
        << Records{{"A", 0, "A0"}, {"A", 1, "A1"}, {"B", 0, "B0"}}
        << QStringList{u"A|A|A0||A1|"_s, u"|B|B0|||"_s};
    QTest::newRow("nor has the only one") << Records{{"A", 2, "A2"}} << QStringList{u"|A||A2||"_s};
    QTest::newRow("one record before others") << Records{{"A", 0, "A0"}, {"B", 0, "B0"}, {"B", 1, "B1"}}
                                              << QStringList{u"A|A|A0|||"_s, u"B|B|B0||B1|"_s};
    QTest::newRow("two runs of one family")
        << Records{{"A", 0, "A0"}, {"B", 0, "B0"}, {"A", 1, "A1"}, {"A", 2, "A2"}}
        << QStringList{u"A|A|A0|||"_s, u"B|B|B0|||"_s, u"A|A||A2|A1|"_s};
    QTest::newRow("families as they come, not by the alphabet")
        << Records{{"C", 0, "C0"}, {"A", 0, "A0"}, {"B", 0, "B0"}, {"B", 0, "B0"}}
        << QStringList{u"C|C|C0|||"_s, u"A|A|A0|||"_s, u"B|B|B0|||"_s};
    QTest::newRow("letter case makes another family")
        << Records{{"A", 0, "A0"}, {"a", 1, "a1"}, {"a", 2, "a2"}}
        << QStringList{u"A|A|A0|||"_s, u"a|a||a2|a1|"_s};
    QTest::newRow("a style twice: the last face")
        << Records{{"A", 0, "first"}, {"A", 0, "last"}} << QStringList{u"A|A|last|||"_s};
    QTest::newRow("a face without a name takes the former one away")
        << Records{{"A", 0, "A0"}, {"A", 2, "A2"}, {"A", 0, {}}} << QStringList{u"A|A||A2||"_s};
    QTest::newRow("other styles are passed over")
        << Records{{"A", 4, "A4"}, {"A", -1, "A-1"}, {"A", 1, "A1"}} << QStringList{u"A|A|||A1|"_s};
    QTest::newRow("other styles alone still make a family")
        << Records{{"A", 4, "A4"}, {"A", 7, "A7"}} << QStringList{u"A|A||||"_s};
    QTest::newRow("a family called default")
        << Records{{"default", 0, "d0"}, {"default", 1, "d1"}} << QStringList{u"default|default|d0||d1|"_s};
    QTest::newRow("names in UTF-8") << Records{{"Größe", 0, "Größe Buch"}, {"Größe", 1, "源"}}
                                    << QStringList{u"Größe|Größe|Größe Buch||源|"_s};
}

void tst_FontModel::grouping()
{
    QFETCH(QList<FontRecord>, records);
    QFETCH(QStringList, expected);

    DeviceForTest device;
    device.setFonts(records);
    FontModel model;
    model.loadFonts();
    QCOMPARE(rowsOf(model).constFirst().constFirst(), u"default"_s);
    QCOMPARE(families(model), expected);
}

void tst_FontModel::valuesOfARow()
{
    DeviceForTest device;
    device.setFonts({{"A", 0, "A0"}, {"A", 1, "A1"}, {"B", 2, "B2"}, {"B", 3, "B3"}, {"C", 0, "C0"}});
    FontModel model;
    model.loadFonts();
    const auto values = [&model](int row) {
        QVariantList list;
        for (int role = 257; role <= 266; ++role)
            list.append(model.data(model.index(row), role));
        return list;
    };
    const QString none;
    QCOMPARE(values(1), (QVariantList{1, u"A"_s, u"A"_s, u"A0"_s, none, u"A1"_s, none, false, true, false}));
    QCOMPARE(values(2), (QVariantList{2, u"B"_s, u"B"_s, none, u"B2"_s, none, u"B3"_s, true, false, true}));
    QCOMPARE(values(3), (QVariantList{3, none, u"C"_s, u"C0"_s, none, none, none, false, false, false}));
    QCOMPARE(model.data(model.index(1), FontModel::UidRole).typeId(), int(QMetaType::Int));
    QCOMPARE(model.data(model.index(1), FontModel::HasBold).typeId(), int(QMetaType::Bool));
}

void tst_FontModel::outsideOfTheList_data()
{
    QTest::addColumn<int>("row");

    QTest::newRow("the size") << 2;
    QTest::newRow("beyond it") << 100;
    QTest::newRow("negative") << -1;
}

void tst_FontModel::outsideOfTheList()
{
    QFETCH(int, row);

    DeviceForTest device;
    device.setFonts({{"A", 0, "A0"}});
    /// index() gives no index outside of the list; a view may still keep one.
    class Indices : public FontModel
    {
    public:
        QModelIndex any(int at) const { return createIndex(at, 0); }
    } model;
    model.loadFonts();
    QCOMPARE(model.rowCount(), 2);
    for (const int role : {257, 258, 264, 300, int(Qt::DisplayRole)})
        QVERIFY(!model.data(model.any(row), role).isValid());
    QVERIFY(!model.data(QModelIndex(), 258).isValid());
}

void tst_FontModel::otherRoles_data()
{
    QTest::addColumn<int>("role");

    QTest::newRow("300") << 300;
    QTest::newRow("before the first") << 256;
    QTest::newRow("behind the last") << 267;
    QTest::newRow("display") << int(Qt::DisplayRole);
    QTest::newRow("negative") << -1;
}

void tst_FontModel::otherRoles()
{
    QFETCH(int, role);

    DeviceForTest device;
    device.setFonts({{"A", 0, "A0"}});
    FontModel model;
    model.loadFonts();
    const QVariant value = model.data(model.index(1), role);
    QCOMPARE(value.typeId(), int(QMetaType::QString));
    QCOMPARE(value.toString(), QString());
}

void tst_FontModel::rowsWhateverTheParent()
{
    DeviceForTest device;
    device.setFonts({{"A", 0, "A0"}, {"B", 0, "B0"}});
    FontModel model;
    model.loadFonts();
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.rowCount(model.index(1)), 3);
}

void tst_FontModel::familyByName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<std::optional<QString>>("family"); // none for the device's own

    QTest::newRow("default") << u"default"_s << std::optional<QString>();
    QTest::newRow("a family") << u"A"_s << std::optional(u"A"_s);
    QTest::newRow("one that is not there") << u"Gone Sans"_s << std::optional(u"Gone Sans"_s);
    QTest::newRow("default in other letters") << u"Default"_s << std::optional(u"Default"_s);
    QTest::newRow("nothing") << QString() << std::optional(QString());
}

void tst_FontModel::familyByName()
{
    QFETCH(QString, name);
    QFETCH(std::optional<QString>, family);

    DeviceForTest device;
    device.setFonts({{"A", 0, "A0"}});
    FontModel model;
    model.loadFonts();
    QCOMPARE(model.getFontFamilyByName(name), family.value_or(QString::fromUtf8(sv_get_default_font(5))));
}

/// In the names of a family and its faces, and in the name of a stored font.
void tst_FontModel::everyByte()
{
    DeviceForTest device;
    QList<FontRecord> records;
    QStringList expected;
    for (int byte = 1; byte < 256; ++byte) {
        const QByteArray name = "A" + QByteArray(1, char(byte)) + "b";
        records.append({name, 0, name + " R"});
        records.append({name, 2, name + " B"});
        const QString read = QString::fromUtf8(name);
        if (byte >= 0x80 && byte != 0xff)
            continue; // none is a character by itself: all are one name
        expected.append(read + u'|' + read + u'|' + read + u" R|"_s + read + u" B||"_s);
    }
    device.setFonts(records);
    FontModel model;
    model.loadFonts();
    QCOMPARE(families(model), expected);
    for (char16_t character = 1; character < 0x100; ++character) {
        const QString name = u"A"_s + QChar(character) + u'b';
        QCOMPARE(model.getFontFamilyByName(name), name);
    }
}

void tst_FontModel::loadedAnew()
{
    DeviceForTest device;
    device.setFonts({{"A", 0, "A0"}, {"A", 1, "A1"}});
    FontModel model;
    model.loadFonts();
    device.setFonts({{"B", 0, "B0"}, {"B", 1, "B1"}});
    QCOMPARE(families(model), QStringList{u"A|A|A0||A1|"_s}); // fonts that come later are not seen
    model.loadFonts();
    QCOMPARE(families(model), QStringList{u"B|B|B0||B1|"_s});
}

void tst_FontModel::fontsOfThisMachine()
{
    const DeviceForTest device;
    FontModel model;
    model.loadFonts();
    const Rows rows = rowsOf(model);
    QVERIFY(rows.contains(Row{u"Noto Sans"_s, u"Noto Sans"_s, u"Noto Sans Regular"_s, u"Noto Sans Bold"_s,
                              u"Noto Sans Italic"_s, u"Noto Sans Bold Italic"_s}));
    QStringList seen;
    for (const Row &row : rows.mid(1)) {
        QVERIFY2(!seen.contains(row.at(1)), qPrintable(row.at(1)));
        seen.append(row.at(1));
        QVERIFY2(row.at(0) == row.at(1) || (row == rows.constLast() && row.at(0).isEmpty()),
                 qPrintable(row.at(1)));
    }
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // fonts need an application object of windows
    const QGuiApplication application(argc, argv);
    tst_FontModel test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_font_model.moc"
