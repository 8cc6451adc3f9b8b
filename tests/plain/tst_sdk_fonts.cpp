// The fonts that applications may choose from.

#include <slateview.h>
#include <slateview_testing.h>

#include <texts.h>

#include <journal_lines.h>

#include <QFontDatabase>
#include <QGuiApplication>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

struct Font
{
    QByteArray family;
    int style;
    QByteArray face;

    bool operator==(const Font &other) const = default;
};

QList<Font> fonts()
{
    sv_font *const records = EnumFontsEx();
    QList<Font> found;
    for (const sv_font *record = records; record->family; ++record)
        found.append({record->family, record->style, record->face});
    FreeFontsForSort(records);
    return found;
}

QByteArrayList families()
{
    QByteArrayList names;
    for (const Font &font : fonts()) {
        if (!names.contains(font.family))
            names.append(font.family);
    }
    return names;
}

} // namespace

class tst_SdkFonts : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { texts::load(u"en"_s); }
    void withoutDevice();
    void facesOfAFamily();
    void eachStyleOnce();
    void familiesStandTogether();
    void forTheLanguage_data();
    void forTheLanguage();
    void ofATest();
    void nothingToGiveBack();
};

void tst_SdkFonts::withoutDevice()
{
    sv_font *const records = EnumFontsEx();
    QVERIFY(records);
    QVERIFY(!records->family);
    FreeFontsForSort(records);
}

void tst_SdkFonts::facesOfAFamily()
{
    const DeviceForTest device;
    const QList<Font> all = fonts();
    QVERIFY(all.contains({"Noto Sans", 0, "Noto Sans Regular"}));
    QVERIFY(all.contains({"Noto Sans", 1, "Noto Sans Italic"}));
    QVERIFY(all.contains({"Noto Sans", 2, "Noto Sans Bold"}));
    QVERIFY(all.contains({"Noto Sans", 3, "Noto Sans Bold Italic"}));
    QVERIFY(all.contains({"DejaVu Sans", 0, "DejaVu Sans Book"})); // its word for regular
    QCOMPARE(
        journalLines(device),
        QByteArrayList({"EnumFontsEx() = " + QByteArray::number(all.size()), "FreeFontsForSort(fonts)"}));
}

void tst_SdkFonts::eachStyleOnce()
{
    const DeviceForTest device;
    QSet<std::pair<QByteArray, int>> seen;
    for (const Font &font : fonts()) {
        QVERIFY(font.style >= 0 && font.style <= 3);
        QVERIFY2(!seen.contains({font.family, font.style}), font.face.constData());
        seen.insert({font.family, font.style});
        QVERIFY2(font.face.startsWith(font.family + ' '), font.face.constData());
        QVERIFY2(QFontDatabase::hasFamily(QString::fromUtf8(font.family)), font.family.constData());
    }
}

void tst_SdkFonts::familiesStandTogether()
{
    const DeviceForTest device;
    QByteArrayList runs;
    for (const Font &font : fonts()) {
        if (runs.isEmpty() || runs.constLast() != font.family)
            runs.append(font.family);
    }
    QCOMPARE(runs, families());
    QVERIFY(runs.size() > 1);
}

void tst_SdkFonts::forTheLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QByteArray>("offered");
    QTest::addColumn<QByteArray>("notOffered");

    QTest::newRow("English") << u"en"_s << QByteArray("Noto Serif") << QByteArray("Noto Sans Symbols");
    QTest::newRow("Ukrainian") << u"uk"_s << QByteArray("Noto Serif") << QByteArray("Noto Sans Symbols");
    QTest::newRow("English, a font made for Chinese")
        << u"en"_s << QByteArray("Noto Serif") << QByteArray("Noto Sans CJK SC");
    QTest::newRow("Japanese") << u"ja"_s << QByteArray("Noto Sans CJK JP") << QByteArray("Noto Serif");
    QTest::newRow("Chinese") << u"zh_CN"_s << QByteArray("Noto Sans CJK SC") << QByteArray("Noto Serif");
}

void tst_SdkFonts::forTheLanguage()
{
    QFETCH(QString, language);
    QFETCH(QByteArray, offered);
    QFETCH(QByteArray, notOffered);

    const DeviceForTest device;
    texts::load(language);
    QVERIFY2(families().contains(offered), families().join(", ").constData());
    QVERIFY2(!families().contains(notOffered), notOffered.constData());
}

void tst_SdkFonts::ofATest()
{
    {
        DeviceForTest device;
        device.setFonts({{"A", 0, "A Regular"}, {"A", 7, {}}, {"Ä", 3, ""}, {"A", 0, "again"}});
        sv_font *const records = EnumFontsEx();
        QCOMPARE(QByteArray(records[0].family), QByteArray("A"));
        QCOMPARE(QByteArray(records[0].face), QByteArray("A Regular"));
        QCOMPARE(records[1].style, 7);
        QVERIFY(!records[1].face);
        QCOMPARE(QByteArray(records[2].family), QByteArray("Ä"));
        QCOMPARE(QByteArray(records[2].face), QByteArray(""));
        QCOMPARE(QByteArray(records[3].face), QByteArray("again"));
        QVERIFY(!records[4].family);

        device.setFonts({}); // what was handed out stays
        QCOMPARE(QByteArray(records[0].family), QByteArray("A"));
        FreeFontsForSort(records);
        QCOMPARE(fonts(), QList<Font>());
    }
    const DeviceForTest next;
    QVERIFY(fonts().size() > 4); // the system's own again
}

void tst_SdkFonts::nothingToGiveBack()
{
    const DeviceForTest device;
    FreeFontsForSort(nullptr);
    QCOMPARE(journalLines(device), QByteArrayList({"FreeFontsForSort(null)"}));
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // fonts need an application object of windows
    QGuiApplication application(argc, argv);
    tst_SdkFonts test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_sdk_fonts.moc"
