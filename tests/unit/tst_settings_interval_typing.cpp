// What can be typed into the dialog for an interval, and what is saved of it.

#include "interval_dialog.h"
#include "panel_application.h"

#include <QClipboard>
#include <QGuiApplication>

#include <memory>

using namespace interval_dialog;

class tst_SettingsIntervalTyping : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<SettingsScreens>(); }
    void cleanup() { m_test.reset(); }

    void typed_data();
    void typed();
    void pasted_data();
    void pasted();
    void pastedInALanguage_data();
    void pastedInALanguage();
    void unitChanged_data();
    void unitChanged();
    void limits();
    void saved_data();
    void saved();
    void signAlone();
    void emptyField();

private:
    void run(const std::function<void(RunningApp &)> &body) { m_test->run(u"settings_slideshow"_s, body); }

    std::unique_ptr<SettingsScreens> m_test;
};

void tst_SettingsIntervalTyping::typed_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("shown");

    QTest::newRow("a second") << 0 << u"1"_s << u"1"_s;
    QTest::newRow("a day of seconds") << 0 << u"86400"_s << u"86400"_s;
    QTest::newRow("a second more") << 0 << u"86401"_s << u"86400"_s;
    QTest::newRow("six digits") << 0 << u"100000"_s << u"10000"_s;
    QTest::newRow("a day of minutes") << 1 << u"1440"_s << u"1440"_s;
    QTest::newRow("a minute more") << 1 << u"1441"_s << u"1440"_s;
    QTest::newRow("a day of hours") << 2 << u"24"_s << u"24"_s;
    QTest::newRow("an hour more") << 2 << u"25"_s << u"24"_s;
    QTest::newRow("three digits of hours") << 2 << u"240"_s << u"24"_s;
    QTest::newRow("nothing") << 0 << u"0"_s << u"1"_s;
    QTest::newRow("nothing, then a digit") << 0 << u"05"_s << u"15"_s;
    QTest::newRow("minus") << 0 << u"-5"_s << u"5"_s;
    QTest::newRow("minus at the end") << 0 << u"5-"_s << u"5"_s;
    QTest::newRow("blanks") << 0 << u" 5 "_s << u"5"_s;
    QTest::newRow("letters") << 0 << u"a1b2c"_s << u"12"_s;
    QTest::newRow("a point") << 0 << u"1.5"_s << u"15"_s;
}

void tst_SettingsIntervalTyping::typed()
{
    QFETCH(int, unit);
    QFETCH(QString, keys);
    QFETCH(QString, shown);

    run([&](RunningApp &running) {
        QVERIFY(openAndType(running, unit, keys));
        QCOMPARE(field(running), shown);
    });
}

void tst_SettingsIntervalTyping::pasted_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("saved"); // seconds and unit

    QTest::newRow("a number") << u"77"_s << u"77"_s << u"77|0"_s;
    QTest::newRow("nothing at all") << QString() << u""_s << u"30|0"_s;
    QTest::newRow("words") << u"ten"_s << u""_s << u"30|0"_s;
    QTest::newRow("minus") << u"-5"_s << u""_s << u"30|0"_s;
    QTest::newRow("plus") << u"+5"_s << u"5"_s << u"5|0"_s;
    QTest::newRow("blanks around") << u" 5 "_s << u""_s << u"30|0"_s;
    QTest::newRow("zero") << u"0"_s << u"1"_s << u"1|0"_s;
    QTest::newRow("zeros") << u"000"_s << u"1"_s << u"1|0"_s;
    QTest::newRow("leading zeros") << u"0077"_s << u"0077"_s << u"77|0"_s;
    QTest::newRow("too much") << u"86401"_s << u"86400"_s << u"86400|0"_s;
    QTest::newRow("six digits") << u"100000"_s << u""_s << u"30|0"_s;
    QTest::newRow("more than a number holds") << u"99999999999999999999"_s << u""_s << u"30|0"_s;
    QTest::newRow("hexadecimal") << u"0x10"_s << u""_s << u"30|0"_s;
    QTest::newRow("fraction") << u"1.5"_s << u""_s << u"30|0"_s;
    QTest::newRow("lines") << u"1\n2"_s << u""_s << u"30|0"_s;
}

void tst_SettingsIntervalTyping::pasted()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);
    QFETCH(QString, saved);

    run([&](RunningApp &running) {
        QVERIFY(open(running));
        QGuiApplication::clipboard()->setText(text);
        QVERIFY(QMetaObject::invokeMethod(item(running, "input"), "paste"));
        QCOMPARE(field(running), shown);
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QVERIFY(!isOpen(running));
        QCOMPARE(stored(), saved);
    });
}

void tst_SettingsIntervalTyping::pastedInALanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("shown"); // in seconds, minutes, hours

    for (const QString &language : {u"en_US"_s, u"de_DE"_s}) {
        const auto row = [&](const char *name, const QString &text, const QStringList &shown) {
            QTest::addRow("%s, %s", name, qPrintable(language)) << language << text << shown;
        };
        const QStringList nothing{QString(), QString(), QString()};
        const QStringList aThousand{u"1000"_s, u"1000"_s, QString()}; // no hours have four digits
        row("a point", u"1.000"_s, language == u"de_DE"_s ? aThousand : nothing);
        row("a comma", u"1,000"_s, language == u"en_US"_s ? aThousand : nothing);
        row("plus", u"+5"_s, {u"5"_s, u"5"_s, u"5"_s});
        row("minus", u"-5"_s, nothing);
        row("blanks around", u" 7 "_s, nothing);
        row("letters", u"abc"_s, nothing);
        row("leading zeros", u"007"_s, {u"007"_s, u"007"_s, u"007"_s});
        row("all digits that fit", u"99999"_s, {u"86400"_s, QString(), QString()});
        row("all digits that fit, and plus", u"+99"_s, {u"99"_s, u"99"_s, u"24"_s});
        row("a digit more", u"999999"_s, nothing);
    }
}

void tst_SettingsIntervalTyping::pastedInALanguage()
{
    QFETCH(QString, language);
    QFETCH(QString, text);
    QFETCH(QStringList, shown);

    const QLocale before;
    const auto restored = qScopeGuard([&] { QLocale::setDefault(before); });
    QLocale::setDefault(QLocale(language));
    run([&](RunningApp &running) {
        for (int unit = 0; unit < 3; ++unit) {
            QVERIFY(openAndType(running, unit, {}));
            QVERIFY(QMetaObject::invokeMethod(item(running, "input"), "clear"));
            QGuiApplication::clipboard()->setText(text);
            QVERIFY(QMetaObject::invokeMethod(item(running, "input"), "paste"));
            QCOMPARE(field(running), shown.at(unit));
            QVERIFY(SettingsScreens::pressButton(running, "@Save"));
            QVERIFY(!isOpen(running));
            const int seconds = shown.at(unit).toInt() * QList{1, 60, 3600}.at(unit);
            if (seconds > 0)
                QCOMPARE(stored(), u"%1|%2"_s.arg(seconds).arg(unit));
        }
        if (shown.join(QString()).isEmpty())
            QCOMPARE(stored(), u"30|0"_s);
    });
}

void tst_SettingsIntervalTyping::unitChanged_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<int>("newUnit");
    QTest::addColumn<QString>("shown");

    QTest::newRow("seconds to minutes, fits") << 0 << u"1440"_s << 1 << u"1440"_s;
    QTest::newRow("seconds to minutes") << 0 << u"1441"_s << 1 << u"1440"_s;
    QTest::newRow("seconds to hours, fits") << 0 << u"24"_s << 2 << u"24"_s;
    QTest::newRow("seconds to hours") << 0 << u"300"_s << 2 << u"24"_s;
    QTest::newRow("minutes to hours") << 1 << u"25"_s << 2 << u"24"_s;
    QTest::newRow("hours to seconds") << 2 << u"24"_s << 0 << u"24"_s;
    QTest::newRow("empty") << 0 << QString() << 2 << QString();
}

void tst_SettingsIntervalTyping::unitChanged()
{
    QFETCH(int, unit);
    QFETCH(QString, keys);
    QFETCH(int, newUnit);
    QFETCH(QString, shown);

    run([&](RunningApp &running) {
        QVERIFY(openAndType(running, unit, keys));
        QCOMPARE(field(running), keys);
        QVERIFY(chooseUnit(running, newUnit));
        QCOMPARE(field(running), shown);
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        const int seconds = shown.toInt() * QList{1, 60, 3600}.at(newUnit);
        QCOMPARE(stored(), shown.isEmpty() ? u"30|0"_s : u"%1|%2"_s.arg(seconds).arg(newUnit));
    });
}

void tst_SettingsIntervalTyping::limits()
{
    run([](RunningApp &running) {
        QVERIFY(open(running));
        for (const auto &[unit, top] : {std::pair{0, 86'400}, {1, 1'440}, {2, 24}}) {
            QVERIFY(chooseUnit(running, unit));
            const QObject *const validator = SettingsScreens::named(running, "int_validator");
            QCOMPARE(validator->property("bottom").toInt(), 1);
            QCOMPARE(validator->property("top").toInt(), top);
        }
    });
}

void tst_SettingsIntervalTyping::saved_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("shown");

    QTest::newRow("45 seconds") << 0 << u"45"_s << u"45|0"_s << u"Custom (45 seconds)"_s;
    QTest::newRow("one second") << 0 << u"1"_s << u"1|0"_s << u"Custom (1 second)"_s;
    QTest::newRow("3 minutes") << 1 << u"3"_s << u"180|1"_s << u"Custom (3 minutes)"_s;
    QTest::newRow("2 minutes, a preset") << 1 << u"2"_s << u"120|1"_s << u"2\u00a0minutes"_s;
    QTest::newRow("120 seconds, a preset") << 0 << u"120"_s << u"120|0"_s << u"2\u00a0minutes"_s;
    QTest::newRow("1 hour") << 2 << u"1"_s << u"3600|2"_s << u"Custom (1 hour)"_s;
    QTest::newRow("a day") << 2 << u"24"_s << u"86400|2"_s << u"Custom (24 hours)"_s;
    QTest::newRow("a day of minutes") << 1 << u"1440"_s << u"86400|1"_s << u"Custom (1440 minutes)"_s;
}

void tst_SettingsIntervalTyping::saved()
{
    QFETCH(int, unit);
    QFETCH(QString, keys);
    QFETCH(QString, stored);
    QFETCH(QString, shown);

    run([&](RunningApp &running) {
        QVERIFY(openAndType(running, unit, keys));
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QVERIFY(!isOpen(running));
        QCOMPARE(interval_dialog::stored(), stored);
        QCOMPARE(item(running, "menu_change_picter")->property("text").toString(), shown);
    });
}

void tst_SettingsIntervalTyping::signAlone()
{
    run([](RunningApp &running) {
        QVERIFY(open(running));
        type(running, u"+"_s); // may be the beginning of a number, and is none
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QVERIFY(!isOpen(running));
        QCOMPARE(stored(), u"30|0"_s);
        QCOMPARE(running.settings()->changePictureTime(), 30);
    });
}

void tst_SettingsIntervalTyping::emptyField()
{
    run([](RunningApp &running) {
        QVERIFY(open(running));
        QVERIFY(chooseUnit(running, 2));
        SettingsChanges changes(running.settings());
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QVERIFY(!isOpen(running));
        QCOMPARE(changes.taken(), QStringList());
        QCOMPARE(stored(), u"30|0"_s);
    });
}

PANEL_TEST_MAIN(tst_SettingsIntervalTyping)
#include "tst_settings_interval_typing.moc"
