// Which words of the language the screen that sets a show asks for: keys, and the counts that select a
// plural.

#include "interval_dialog.h"
#include "panel_application.h"

#include <QCoreApplication>
#include <QTranslator>

#include <memory>

namespace {

/// A language in which every word is its key, with the count that it was asked for, "@Second[45]", and which
/// puts what stands in brackets first.
class KeysAsWords : public QTranslator
{
public:
    KeysAsWords() { QCoreApplication::installTranslator(this); }
    ~KeysAsWords() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *source, const char *comment, int count) const override
    {
        const QString word = QString::fromUtf8(source);
        if (!word.startsWith(u'@'))
            return word == u"%1 (%2)"_s ? u"(%2) %1"_s : word == u"%1 %2"_s ? u"%2 %1"_s : QString();
        return count < 0
            ? word
            : u"%1[%2%3]"_s.arg(word).arg(count).arg(QString::fromUtf8(comment) == u"0"_s ? u""_s : u"?"_s);
    }

private:
    Q_DISABLE_COPY_MOVE(KeysAsWords)
};

} // namespace

class tst_SettingsWords : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init();
    void cleanup();

    void rows();
    void presets();
    void units();
    void customRow_data();
    void customRow();

private:
    void run(const std::function<void(RunningApp &)> &body) { m_test->run(u"settings_slideshow"_s, body); }

    std::unique_ptr<SettingsScreens> m_test;
    std::unique_ptr<KeysAsWords> m_words;
};

void tst_SettingsWords::init()
{
    m_test = std::make_unique<SettingsScreens>();
    m_words = std::make_unique<KeysAsWords>();
}

void tst_SettingsWords::cleanup()
{
    m_words.reset();
    m_test.reset();
}

void tst_SettingsWords::rows()
{
    run([](RunningApp &running) {
        const auto property = [&](const char *id, const char *name) {
            return interval_dialog::item(running, id)->property(name).toString();
        };
        QCOMPARE(property("header", "title"), u"@SlideshowSettings"_s);
        QCOMPARE(property("menu_change_picter", "title"), u"@ChangePictureEvery"_s);
        QCOMPARE(property("menu_created_date", "title"), u"@PhotoCreatedDate"_s);
        QCOMPARE(property("menu_datetime", "title"), u"@CurrentDateTime"_s);
        QCOMPARE(property("menu_shuffle", "title"), u"@Shuffle"_s);
        QCOMPARE(property("menu_displaymode", "title"), u"@DisplayMode"_s);
        QCOMPARE(property("menu_displaymode", "text"), u"@FillScreen"_s);
        running.settings()->setProperty("display_mode", 0);
        QCOMPARE(property("menu_displaymode", "text"), u"@FitToScreenOnBlack"_s);
        QVERIFY(interval_dialog::open(running));
        QVERIFY(SettingsScreens::shows(running, QAccessible::Dialog, u"@SetCustomInterval"_s));
        QVERIFY(SettingsScreens::shows(running, QAccessible::Button, u"@Save"_s));
        QVERIFY(SettingsScreens::shows(running, QAccessible::Button, u"@Cancel"_s));
    });
}

void tst_SettingsWords::presets()
{
    // One word for all seconds of the list, which has no count: a language that has three forms takes a short
    // one.
    const QStringList words{u"2 @Second_2"_s, u"5 @Second_2"_s, u"10 @Second_2"_s, u"30 @Second_2"_s,
                            u"@1min"_s,       u"@2min"_s,       u"@5min"_s,        u"@CustomTime"_s};
    run([&](RunningApp &running) {
        for (int row = 0; row < words.size(); ++row) {
            QCOMPARE(SettingsScreens::value(running, "change_picture_time_model", u"get(%1).text_"_s.arg(row))
                         .toString(),
                     words.at(row));
        }
        QCOMPARE(interval_dialog::item(running, "menu_change_picter")->property("text").toString(),
                 u"30 @Second_2"_s);
    });
}

void tst_SettingsWords::units()
{
    // Seconds and minutes as they are said of two; of hours a word of its own.
    const QStringList words{u"@Second[2]"_s, u"@Minute[2]"_s, u"@Hours"_s};
    run([&](RunningApp &running) {
        for (int row = 0; row < words.size(); ++row) {
            QCOMPARE(SettingsScreens::value(running, "time_model", u"get(%1).text_"_s.arg(row)).toString(),
                     words.at(row));
        }
    });
}

void tst_SettingsWords::customRow_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("text");

    QTest::newRow("one second") << 1 << 0 << u"1 @Second[1]"_s;
    QTest::newRow("a few seconds") << 3 << 0 << u"3 @Second[3]"_s;
    QTest::newRow("many seconds") << 25 << 0 << u"25 @Second[25]"_s;
    QTest::newRow("one minute, nearly") << 61 << 1 << u"1 @Minute[1]"_s;
    QTest::newRow("a few minutes") << 180 << 1 << u"3 @Minute[3]"_s;
    QTest::newRow("many minutes") << 1500 << 1 << u"25 @Minute[25]"_s;
    QTest::newRow("one hour") << 3600 << 2 << u"1 @Hour[1]"_s;
    QTest::newRow("a few hours") << 10'800 << 2 << u"3 @Hour[3]"_s;
    QTest::newRow("many hours") << 86'400 << 2 << u"24 @Hour[24]"_s;
    QTest::newRow("a unit that is none") << 45 << -1 << u"45 @Second[45]"_s;
}

void tst_SettingsWords::customRow()
{
    QFETCH(int, seconds);
    QFETCH(int, unit);
    QFETCH(QString, text);

    run([&](RunningApp &running) {
        running.settings()->setProperty("change_picture_time_index", unit);
        running.settings()->setProperty("change_picture_time", seconds);
        QCOMPARE(interval_dialog::item(running, "menu_change_picter")->property("text").toString(),
                 u"(%1) @CustomTime"_s.arg(text)); // a number stands before its unit in every language
    });
}

PANEL_TEST_MAIN(tst_SettingsWords)
#include "tst_settings_words.moc"
