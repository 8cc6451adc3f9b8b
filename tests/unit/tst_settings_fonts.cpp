// The fonts and their styles in the bar of a trial: fonts with each number of styles, and those of this
// machine.

#include "customize_screen.h"
#include "panel_application.h"

#include <memory>

using namespace customize_screen;

class tst_SettingsFonts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<SettingsScreens>(); }
    void cleanup() { m_test.reset(); }

    void fontRows();
    void styleRows_data();
    void styleRows();
    void storedStyle_data();
    void storedStyle();
    void chosenStyle_data();
    void chosenStyle();
    void missingRow();
    void nextRow();
    void lastMatchWins();
    void lastFamilyOfOneRecord();
    void noFonts();
    void fontsOfThisMachine();

private:
    void run(const std::function<void(RunningApp &)> &body) { m_test->run(dates.first().view, body); }
    static QList<lindenreed::device::FontRecord> family(const QByteArray &styles)
    {
        QList<lindenreed::device::FontRecord> records;
        for (const char style : styles)
            records.append({"Face", style - '0', "Face " + QByteArray(1, style)});
        records.append({"Last", 0, "Last R"}); // a last family of one record would have no title
        records.append({"Last", 2, "Last B"});
        return records;
    }

    std::unique_ptr<SettingsScreens> m_test;
};

namespace {

const QStringList allStyles{u"0 Regular false false"_s, u"1 Bold true false"_s, u"2 Italic false true"_s,
                            u"3 Bold italic true true"_s};

} // namespace

void tst_SettingsFonts::fontRows()
{
    m_test->device.setFonts({{"A", 0, "A R"},
                             {"A", 1, "A I"},
                             {"A", 2, "A B"},
                             {"A", 3, "A BI"},
                             {"B", 0, "B R"},
                             {"B", 3, "B BI"}});
    run([](RunningApp &running) {
        QStringList rows;
        for (int row = 0; row < SettingsScreens::number(running, "font_model", u"count"_s); ++row) {
            rows.append(
                SettingsScreens::value(running, "font_model",
                                       u"[get(%1).uid_, get(%1).text_, get(%1).family_, get(%1).normal_, "
                                       "get(%1).bold_, get(%1).italic_, get(%1).bold_italic_, "
                                       "get(%1).hasBold_, get(%1).hasItalic_, get(%1).hasBoldItalic_]"
                                       ".join('|')"_s.arg(row))
                    .toString());
        }
        QCOMPARE(rows,
                 (QStringList{u"0|default|Noto Sans|||||false|false|false"_s,
                              u"1|A|A|A R|A B|A I|A BI|true|true|true"_s,
                              u"2|B|B|B R|||B BI|false|false|true"_s}));
    });
}

void tst_SettingsFonts::styleRows_data()
{
    QTest::addColumn<QByteArray>("styles"); // of the device: 1 italic, 2 bold
    QTest::addColumn<QList<int>>("rows");

    QTest::newRow("regular") << QByteArray("0") << QList<int>{0};
    QTest::newRow("bold") << QByteArray("02") << QList<int>{0, 1};
    QTest::newRow("italic") << QByteArray("01") << QList<int>{0, 2};
    QTest::newRow("bold italic") << QByteArray("03") << QList<int>{0, 3};
    QTest::newRow("bold and italic") << QByteArray("012") << QList<int>{0, 1, 2};
    QTest::newRow("all but bold") << QByteArray("013") << QList<int>{0, 2, 3};
    QTest::newRow("all but italic") << QByteArray("023") << QList<int>{0, 1, 3};
    QTest::newRow("all") << QByteArray("0123") << QList<int>{0, 1, 2, 3};
    QTest::newRow("bold without regular") << QByteArray("2") << QList<int>{0, 1};
}

void tst_SettingsFonts::styleRows()
{
    QFETCH(QByteArray, styles);
    QFETCH(QList<int>, rows);

    m_test->device.setFonts(family(styles));
    run([&](RunningApp &running) {
        QCOMPARE(customize_screen::styles(running), QStringList{allStyles.first()}); // "default"
        QVERIFY(choose(running, "font", u"Face"_s));
        QStringList expected;
        for (const int row : rows)
            expected.append(allStyles.at(row));
        QCOMPARE(customize_screen::styles(running), expected);
        QCOMPARE(selected(running, "font_style"), 0);
        QVERIFY(item(running, "font_style")->isVisible());
        QVERIFY(choose(running, "font", u"default"_s));
        QVERIFY(!item(running, "font_style")->isVisible());
        QCOMPARE(customize_screen::styles(running), QStringList{allStyles.first()});
    });
}

void tst_SettingsFonts::storedStyle_data()
{
    QTest::addColumn<bool>("bold");
    QTest::addColumn<bool>("italic");
    QTest::addColumn<int>("uid");

    QTest::newRow("regular") << false << false << 0;
    QTest::newRow("bold") << true << false << 1;
    QTest::newRow("italic") << false << true << 2;
    QTest::newRow("bold italic") << true << true << 3;
}

void tst_SettingsFonts::storedStyle()
{
    QFETCH(bool, bold);
    QFETCH(bool, italic);
    QFETCH(int, uid);

    m_test->device.setFonts(family("0123"));
    DataStorage::instance().setSetting(u"created_date_font"_s, u"Face"_s, -1);
    DataStorage::instance().setSetting(u"created_date_font_is_bold"_s, QString::number(bold), -1);
    DataStorage::instance().setSetting(u"created_date_font_is_italic"_s, QString::number(italic), -1);
    run([&](RunningApp &running) {
        QCOMPARE(selected(running, "font"), 1);
        QVERIFY(item(running, "font_style")->isVisible());
        QCOMPARE(selected(running, "font_style"), uid);
        QVERIFY(SettingsScreens::shows(running, QAccessible::ComboBox,
                                       u"Style: "_s + allStyles.at(uid).section(u' ', 1, -3)));
    });
}

void tst_SettingsFonts::chosenStyle_data()
{
    QTest::addColumn<QByteArray>("styles");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("look");

    const QByteArray all("0123");
    QTest::newRow("regular") << all << u"Regular"_s << u"2 Face 0 0"_s;
    QTest::newRow("bold") << all << u"Bold"_s << u"2 Face 1 0"_s;
    QTest::newRow("italic") << all << u"Italic"_s << u"2 Face 0 1"_s;
    QTest::newRow("bold italic") << all << u"Bold italic"_s << u"2 Face 1 1"_s;
    QTest::newRow("bold of two") << QByteArray("02") << u"Bold"_s << u"2 Face 1 0"_s;
    QTest::newRow("italic of three") << QByteArray("012") << u"Italic"_s << u"2 Face 0 1"_s;
}

void tst_SettingsFonts::chosenStyle()
{
    QFETCH(QByteArray, styles);
    QFETCH(QString, chosen);
    QFETCH(QString, look);

    m_test->device.setFonts(family(styles));
    run([&](RunningApp &running) {
        QVERIFY(choose(running, "font", u"Face"_s));
        QVERIFY(choose(running, "font_style", chosen));
        QCOMPARE(customize_screen::look(running, dates.first()), look);
        QCOMPARE(previewLook(running), look);
    });
}

void tst_SettingsFonts::missingRow()
{
    // Regular and italic: the row with the uid 2 is row 1, and there is no row 2.
    m_test->device.setFonts(family("01"));
    run([](RunningApp &running) {
        QVERIFY(choose(running, "font", u"Face"_s));
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(u"SettingsCustomizeDate.qml:\\d+: TypeError: .*bold_"_s));
        QVERIFY(choose(running, "font_style", u"Italic"_s));
        QCOMPARE(customize_screen::look(running, dates.first()), u"2 Face 0 0"_s);
    });
}

void tst_SettingsFonts::nextRow()
{
    // No bold: the row with the uid 2 is row 1, and row 2 is the bold italic one.
    m_test->device.setFonts(family("013"));
    run([](RunningApp &running) {
        QVERIFY(choose(running, "font", u"Face"_s));
        QVERIFY(choose(running, "font_style", u"Italic"_s));
        QCOMPARE(customize_screen::look(running, dates.first()), u"2 Face 1 1"_s);
    });
}

void tst_SettingsFonts::lastMatchWins()
{
    m_test->device.setFonts(
        {{"A", 0, "A1"}, {"A", 1, "A1i"}, {"B", 0, "B"}, {"B", 1, "Bi"}, {"A", 0, "A2"}, {"A", 2, "A2b"}});
    DataStorage::instance().setSetting(u"created_date_font"_s, u"A"_s, -1);
    run([](RunningApp &running) {
        QCOMPARE(selected(running, "font"), 3);
        QCOMPARE(styles(running), allStyles.first(2));
    });
}

void tst_SettingsFonts::lastFamilyOfOneRecord()
{
    // It has no title, and is chosen as such.
    m_test->device.setFonts({{"A", 0, "A"}, {"A", 1, "Ai"}, {"B", 0, "B"}});
    run([](RunningApp &running) {
        QVERIFY(choose(running, "font", QString(u""_s)));
        QCOMPARE(customize_screen::look(running, dates.first()), u"2  0 0"_s);
        QCOMPARE(styles(running), allStyles.first(1));
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QVERIFY(globalRows().contains(u"created_date_font|"_s));
    });
}

void tst_SettingsFonts::noFonts()
{
    m_test->device.setFonts({});
    run([](RunningApp &running) {
        QCOMPARE(SettingsScreens::number(running, "font_model", u"count"_s), 1);
        QCOMPARE(selected(running, "font"), 0);
        QVERIFY(SettingsScreens::shows(running, QAccessible::ComboBox, u"Font: default"_s));
    });
}

void tst_SettingsFonts::fontsOfThisMachine()
{
    run([](RunningApp &running) {
        const auto *const fonts = running.model<lindenreed::picture_stand::FontModel>("FontModel");
        QVERIFY(fonts->rowCount() > 2);
        QCOMPARE(SettingsScreens::number(running, "font_model", u"count"_s), fonts->rowCount());
        QObject *const editor = SettingsScreens::named(running, "font");
        for (int row = 0; row < fonts->rowCount(); ++row) {
            QVERIFY(QMetaObject::invokeMethod(editor, "choose", Q_ARG(int, row)));
            const QModelIndex index = fonts->index(row);
            const auto has = [&](int role) { return fonts->data(index, role).toBool(); };
            QStringList expected{allStyles.first()};
            if (has(lindenreed::picture_stand::FontModel::HasBold))
                expected.append(allStyles.at(1));
            if (has(lindenreed::picture_stand::FontModel::HasItalic))
                expected.append(allStyles.at(2));
            if (has(lindenreed::picture_stand::FontModel::HasBoldItalic))
                expected.append(allStyles.at(3));
            QCOMPARE(styles(running), expected);
            QCOMPARE(item(running, "font_style")->isVisible(), row > 0);
            QCOMPARE(setting(running, dates.first(), "font"),
                     fonts->data(index, lindenreed::picture_stand::FontModel::TitleRole));
            QVERIFY(item(running, "font")->width() <= item(running, "font")->property("max_width").toReal());
        }
    });
}

PANEL_TEST_MAIN(tst_SettingsFonts)
#include "tst_settings_fonts.moc"
