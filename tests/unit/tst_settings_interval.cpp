// How an interval in seconds is told: as one of the presets, or as a time of the user's own in the unit it
// was typed in.

#include "panel_application.h"
#include "settings_screens.h"

#include <QMap>

#include <memory>

namespace {

const QList<int> allSeconds{0,   1,   2,    3,    5,    7,    10,   29,   30,   31,    45,    59,
                            60,  61,  89,   90,   91,   119,  120,  121,  149,  150,   300,   301,
                            929, 930, 1799, 1800, 3599, 3600, 5399, 5400, 7200, 10800, 86399, 86400};

/// What the screen has to tell, worked out from the settings' changes alone.
class Expected
{
public:
    void change(int seconds, int unit)
    {
        static const QMap<int, QString> presets{{2, u"2 seconds"_s},       {5, u"5 seconds"_s},
                                                {10, u"10 seconds"_s},     {30, u"30 seconds"_s},
                                                {60, u"1\u00a0minute"_s},  {120, u"2\u00a0minutes"_s},
                                                {300, u"5\u00a0minutes"_s}};
        if (presets.contains(seconds)) {
            row = presets.value(seconds);
            customText = u"Custom"_s;
            customSeconds = 0;
            return; // the dialog keeps what it had
        }
        const int inUnit = unit == 1 ? rounded(seconds) : unit == 2 ? rounded(rounded(seconds)) : seconds;
        const QString name = unit == 1 ? u"minute"_s : unit == 2 ? u"hour"_s : u"second"_s;
        customText = u"Custom (%1 %2%3)"_s.arg(inUnit).arg(name, inUnit == 1 ? QString() : u"s"_s);
        row = customText;
        customSeconds = seconds;
        dialogText = QString::number(inUnit);
        dialogUnit = unit;
    }
    QString all() const
    {
        return (QStringList{row, customText, QString::number(customSeconds), dialogText,
                            QString::number(dialogUnit)})
            .join(u'|');
    }

    QString row, customText, dialogText;
    int customSeconds = 0;
    int dialogUnit = 0;

private:
    static int rounded(int value) { return (value + 30) / 60; }
};

QString told(const RunningApp &running)
{
    const auto value = [&](const char *expression) {
        return SettingsScreens::value(running, "change_picture_time_model", QString::fromLatin1(expression))
            .toString();
    };
    return (QStringList{value("menu_change_picter.text"), value("get(7).text_"), value("get(7).value_"),
                        value("custom_input_value"), value("custom_input_time")})
        .join(u'|');
}

QStringList intervalRows(int playlist)
{
    return stored_database::rows(
        u"SELECT name, value FROM settings WHERE playlist = %1 AND name LIKE 'change_picture%' ORDER BY id"_s
            .arg(playlist));
}

void apply(const RunningApp &running, int seconds, int unit)
{
    SettingsScreens::value(running, "menu_change_picter",
                           u"wrapper.apply_picture_time(%1, %2)"_s.arg(seconds).arg(unit));
}

} // namespace

class tst_SettingsInterval : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<SettingsScreens>(); }
    void cleanup() { m_test.reset(); }

    void presets();
    void firstOpening();
    void openedWithEachInterval();
    void fromEachIntervalToTheNext();
    void oddUnits_data();
    void oddUnits();
    void halvesAreRoundedAtEachStep();
    void unitBeforeSeconds();
    void mixedValuesStayInTheDialog();
    void chosenPreset_data();
    void chosenPreset();
    void checkedPresetAgain();

private:
    void run(const std::function<void(RunningApp &)> &body) { m_test->run(u"settings_slideshow"_s, body); }

    std::unique_ptr<SettingsScreens> m_test;
};

void tst_SettingsInterval::presets()
{
    run([](RunningApp &running) {
        const QStringList rows{u"0|2 seconds|2|0"_s,        u"1|5 seconds|5|0"_s,
                               u"2|10 seconds|10|0"_s,      u"3|30 seconds|30|0"_s,
                               u"4|1\u00a0minute|60|1"_s,   u"5|2\u00a0minutes|120|1"_s,
                               u"6|5\u00a0minutes|300|1"_s, u"7|Custom|0|0"_s};
        const auto value = [&](const QString &expression) {
            return SettingsScreens::value(running, "change_picture_time_model", expression).toString();
        };
        QCOMPARE(value(u"count"_s), u"8"_s);
        QCOMPARE(value(u"custom_uid"_s), u"7"_s);
        for (int row = 0; row < 8; ++row) {
            QCOMPARE(
                value(u"[get(%1).uid_, get(%1).text_, get(%1).value_, get(%1).time_index_].join('|')"_s.arg(
                    row)),
                rows.at(row));
        }
        const QStringList units{u"0|seconds|1"_s, u"1|minutes|60"_s, u"2|hours|3600"_s};
        for (int row = 0; row < 3; ++row) {
            QCOMPARE(SettingsScreens::value(
                         running, "time_model",
                         u"[get(%1).uid_, get(%1).text_, get(%1).multiply_].join('|')"_s.arg(row))
                         .toString(),
                     units.at(row));
        }
    });
}

void tst_SettingsInterval::firstOpening()
{
    run([](RunningApp &running) { QCOMPARE(told(running), u"30 seconds|Custom|0||0"_s); });
}

void tst_SettingsInterval::openedWithEachInterval()
{
    run([](RunningApp &running) {
        for (const int seconds : allSeconds) {
            for (int unit = 0; unit < 3; ++unit) {
                running.app.changeView(u"playlists"_s);
                running.settings()->setProperty("change_picture_time_index", unit);
                running.settings()->setProperty("change_picture_time", seconds);
                running.app.changeView(u"settings_slideshow"_s);
                QTRY_COMPARE(running.window->contentItem()->childItems().size(),
                             3); // the last one's dialog is gone
                Expected expected;
                expected.change(seconds, unit);
                QCOMPARE(told(running), expected.all());
            }
        }
    });
}

void tst_SettingsInterval::fromEachIntervalToTheNext()
{
    run([](RunningApp &running) {
        Expected expected;
        int seconds = 30;
        int unit = 0;
        expected.change(seconds, unit);
        // Steps that have no common divisor with the number of pairs: each pair once, in no order.
        const int pairs = 3 * int(allSeconds.size());
        for (int i = 0, at = 0; i < pairs; ++i, at = (at + 29) % pairs) {
            const int newSeconds = allSeconds.at(at / 3);
            const int newUnit = at % 3;
            if (newUnit != unit)
                expected.change(seconds, newUnit);
            if (newSeconds != seconds)
                expected.change(newSeconds, newUnit);
            seconds = newSeconds;
            unit = newUnit;
            apply(running, seconds, unit);
            QCOMPARE(told(running), expected.all());
        }
        QVERIFY(globalRows().contains(u"change_picture_time|%1"_s.arg(seconds)));
        QVERIFY(globalRows().contains(u"change_picture_time_index|%1"_s.arg(unit)));
    });
}

void tst_SettingsInterval::oddUnits_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("text");

    QTest::newRow("below") << -1 << u"Custom (216001 seconds)"_s;
    QTest::newRow("above") << 3 << u"Custom (1 second)"_s;
}

void tst_SettingsInterval::oddUnits()
{
    QFETCH(int, unit);
    QFETCH(QString, text);

    run([&](RunningApp &running) {
        apply(running, 216'001, unit);
        QCOMPARE(told(running).section(u'|', 0, 0), text);
    });
}

void tst_SettingsInterval::halvesAreRoundedAtEachStep()
{
    run([](RunningApp &running) {
        const auto hours = [&](int seconds) {
            return SettingsScreens::number(running, "header",
                                           u"wrapper.get_change_time(%1, 2)"_s.arg(seconds));
        };
        // 29.5 minutes are 30, and these an hour; a single division would make it none.
        QCOMPARE(hours(1769), 0);
        QCOMPARE(hours(1770), 1);
        QCOMPARE(hours(5369), 1);
        QCOMPARE(hours(5370), 2);
        QCOMPARE(
            SettingsScreens::value(running, "header", u"wrapper.get_change_time_text(3600, 2)"_s).toString(),
            u"1 hour"_s);
    });
}

void tst_SettingsInterval::unitBeforeSeconds()
{
    run([](RunningApp &running) {
        apply(running, 45, 0);
        running.playlists()->setActiveId(1); // its rows are new, and tell in which order they are written
        SettingsChanges changes(running.settings());
        QStringList texts;
        const QObject *const row = SettingsScreens::named(running, "menu_change_picter");
        const auto note = [&] {
            texts.append(row->property("text").toString());
            QCOMPARE(intervalRows(1), QStringList()); // both are changed before either is written
        };
        connect(running.settings(),
                &lindenreed::picture_stand::SettingsModel::change_picture_time_indexChanged, &changes, note);
        connect(running.settings(), &lindenreed::picture_stand::SettingsModel::change_picture_timeChanged,
                &changes, note);
        apply(running, 10'800, 2);
        QCOMPARE(changes.taken(),
                 (QStringList{u"change_picture_time_index 2"_s, u"change_picture_time 10800"_s}));
        QCOMPARE(texts, (QStringList{u"Custom (0 hours)"_s, u"Custom (3 hours)"_s}));
        QCOMPARE(intervalRows(1),
                 (QStringList{u"change_picture_time_index|2"_s, u"change_picture_time|10800"_s}));
        disconnect(running.settings(), nullptr, &changes, nullptr);
        running.playlists()->setActiveId(-1);
    });
}

void tst_SettingsInterval::mixedValuesStayInTheDialog()
{
    run([](RunningApp &running) {
        apply(running, 45, 0);
        QCOMPARE(told(running), u"Custom (45 seconds)|Custom (45 seconds)|45|45|0"_s);
        apply(running, 120, 1); // for a moment 45 seconds in minutes, which the dialog keeps
        QCOMPARE(told(running), u"2\u00a0minutes|Custom|0|1|1"_s);
    });
}

void tst_SettingsInterval::chosenPreset_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("unit");

    QTest::newRow("2 s") << u"2 seconds"_s << 2 << 0;
    QTest::newRow("5 s") << u"5 seconds"_s << 5 << 0;
    QTest::newRow("10 s") << u"10 seconds"_s << 10 << 0;
    QTest::newRow("30 s") << u"30 seconds"_s << 30 << 0;
    QTest::newRow("1 min") << u"1\u00a0minute"_s << 60 << 1;
    QTest::newRow("2 min") << u"2\u00a0minutes"_s << 120 << 1;
    QTest::newRow("5 min") << u"5\u00a0minutes"_s << 300 << 1;
}

void tst_SettingsInterval::chosenPreset()
{
    QFETCH(QString, name);
    QFETCH(int, seconds);
    QFETCH(int, unit);

    run([&](RunningApp &running) {
        apply(running, 45, 0);
        QVERIFY(pressByAccessibility(SettingsScreens::item(running, "menu_change_picter")));
        QVERIFY(SettingsScreens::choose(running, name));
        QVERIFY(!SettingsScreens::item(running, "loader_change_picture_time")->isVisible());
        QCOMPARE(SettingsScreens::named(running, "menu_change_picter")->property("text").toString(), name);
        QCOMPARE(intervalRows(-1),
                 (QStringList{u"change_picture_time|%1"_s.arg(seconds),
                              u"change_picture_time_index|%1"_s.arg(unit)}));
    });
}

void tst_SettingsInterval::checkedPresetAgain()
{
    run([](RunningApp &running) {
        QVERIFY(stored_database::execute(
            {u"UPDATE settings SET value = '7' WHERE name = 'change_picture_time'"_s}));
        SettingsChanges changes(running.settings());
        QVERIFY(pressByAccessibility(SettingsScreens::item(running, "menu_change_picter")));
        QVERIFY(SettingsScreens::choose(running, u"30 seconds"_s));
        QVERIFY(!SettingsScreens::item(running, "loader_change_picture_time")->isVisible());
        QCOMPARE(changes.taken(), QStringList());
        QVERIFY(intervalRows(-1).contains(u"change_picture_time|30"_s)); // written, though it changed nothing
    });
}

PANEL_TEST_MAIN(tst_SettingsInterval)
#include "tst_settings_interval.moc"
