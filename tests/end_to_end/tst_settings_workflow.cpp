// The settings on the real program: by touch, by assistive press and by keys alone, in several languages, in
// what the panel shows, in the device's journal and in the database file.

#include "named_screen.h"
#include "stored_database.h"

#include <panel_file.h>
#include <slateview.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QScopeGuard>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

class tst_SettingsWorkflow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void interval();
    void ownInterval_data();
    void ownInterval();
    void typedOnTheKeyboard();
    void displayModeOfTheShow();
    void fittedPictureIsAsDithered_data();
    void fittedPictureIsAsDithered();
    void datesOfTheShow();
    void trialDropped();
    void fontOfTheMachine();
    void backToTheShow();
    void everythingHasAName_data();
    void everythingHasAName();
    void keysAlone();
    void trialByKeys();

private:
    bool start(const QByteArray &profile = "grey-6", const QByteArray &language = "en");
    static QStringList settings(const QString &name)
    {
        return stored_database::rows(
            u"SELECT playlist, value FROM settings WHERE name = '%1' ORDER BY playlist"_s.arg(name));
    }

    /// Of the running show, in ms; -1 without one.
    int showInterval()
    {
        const QJsonArray timers = m_device->state().value("timers"_L1).toArray();
        for (const QJsonValue &timer : timers) {
            if (timer.toObject().value("name"_L1) == "nextImageEvent"_L1)
                return timer.toObject().value("interval_ms"_L1).toInt();
        }
        return -1;
    }

    std::unique_ptr<NamedScreen> m_device;
};

void tst_SettingsWorkflow::init()
{
    stored_database::remove();
    m_device = std::make_unique<NamedScreen>();
}

void tst_SettingsWorkflow::cleanup()
{
    const QByteArrayList lines = m_device->unexpectedErrors();
    QVERIFY2(lines.isEmpty(), lines.join('\n').constData());
    m_device.reset();
}

bool tst_SettingsWorkflow::start(const QByteArray &profile, const QByteArray &language)
{
    const auto write = [](const QString &path, const QByteArray &text) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    };
    return QDir().mkpath(u"/mnt/ext1/system/config"_s)
        && write(u"/mnt/ext1/system/config/global.cfg"_s, "language=" + language + "\n")
        && write(u"/devroot/device.json"_s, "{\"profile\":\"" + profile + "\"}") && m_device->start();
}

void tst_SettingsWorkflow::interval()
{
    QVERIFY(start());
    QVERIFY(m_device->walk(
        {u"press Slideshow settings"_s, u"touch Change picture every"_s, u"touch 5 seconds"_s}));
    QCOMPARE(settings(u"change_picture_time"_s), QStringList{u"-1|5"_s});
    QVERIFY(m_device->names().contains(u"5 seconds"_s));
    QVERIFY(m_device->walk({u"press Back"_s}) && m_device->play());
    QCOMPARE(showInterval(), 5'000);
}

void tst_SettingsWorkflow::ownInterval_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<QStringList>("words"); // of the row, the custom row, the three units and the button
    QTest::addColumn<QString>("number");
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("shown");

    const QStringList english{u"Slideshow settings"_s,
                              u"Change picture every"_s,
                              u"Custom"_s,
                              u"seconds"_s,
                              u"minutes"_s,
                              u"hours"_s,
                              u"Save"_s};
    QTest::newRow("English, one") << QByteArray("en") << english << u"1"_s << 2 << u"Custom (1 hour)"_s;
    QTest::newRow("English, more") << QByteArray("en") << english << u"45"_s << 0 << u"Custom (45 seconds)"_s;
    const QStringList polish{u"Ustawienia pokazu"_s,
                             u"Czas wyświetlania"_s,
                             u"Inny"_s,
                             u"sekundy"_s,
                             u"minuty"_s,
                             u"godziny"_s,
                             u"Zapisz"_s};
    QTest::newRow("Polish, one") << QByteArray("pl") << polish << u"1"_s << 0 << u"Inny (1 sekunda)"_s;
    QTest::newRow("Polish, few") << QByteArray("pl") << polish << u"3"_s << 1 << u"Inny (3 minuty)"_s;
    QTest::newRow("Polish, many") << QByteArray("pl") << polish << u"12"_s << 2 << u"Inny (12 godzin)"_s;
    QTest::newRow("Polish, few again")
        << QByteArray("pl") << polish << u"22"_s << 2 << u"Inny (22 godziny)"_s;
}

void tst_SettingsWorkflow::ownInterval()
{
    QFETCH(QByteArray, language);
    QFETCH(QStringList, words);
    QFETCH(QString, number);
    QFETCH(int, unit);
    QFETCH(QString, shown);

    QVERIFY(start("grey-6", language));
    QVERIFY(
        m_device->walk({u"press "_s + words.at(0), u"touch "_s + words.at(1), u"touch "_s + words.at(2)}));
    if (unit > 0)
        QVERIFY(m_device->walk(
            {u"press "_s + words.at(3), u"touch "_s + words.at(3 + unit), u"touch "_s + words.at(1)}));
    QVERIFY(m_device->walk({u"type "_s + number, u"touch "_s + words.at(6)}));
    QVERIFY2(m_device->names().contains(shown),
             qUtf8Printable(QStringList(m_device->names().values()).join(u'\n')));
    const int factors[] = {1, 60, 3600};
    QCOMPARE(settings(u"change_picture_time"_s), QStringList{u"-1|%1"_s.arg(number.toInt() * factors[unit])});
    QCOMPARE(settings(u"change_picture_time_index"_s), QStringList{u"-1|%1"_s.arg(unit)});
    QVERIFY(m_device->walk({u"touch "_s + words.at(1)}));
    QVERIFY(m_device->names().contains(shown));
}

void tst_SettingsWorkflow::typedOnTheKeyboard()
{
    QVERIFY(start());
    QVERIFY(m_device->walk({u"press Slideshow settings"_s, u"touch Change picture every"_s, u"touch Custom"_s,
                            u"touch 4"_s, u"touch 5"_s, u"touch Save"_s}));
    QCOMPARE(settings(u"change_picture_time"_s), QStringList{u"-1|45"_s});
    QVERIFY(!m_device->names().contains(u"4"_s)); // the keyboard has gone with the dialog
}

void tst_SettingsWorkflow::displayModeOfTheShow()
{
    QVERIFY(start());
    QVERIFY(m_device->walk(
        {u"press Slideshow settings"_s, u"touch Display mode"_s, u"touch Fit on black"_s, u"press Back"_s}));
    QCOMPARE(settings(u"display_mode"_s), QStringList{u"-1|0"_s});
    QVERIFY(m_device->play());
    QVERIFY(m_device->walk({u"key next"_s, u"key next"_s})); // the third picture is wider than it is high
    const QImage picture = m_device->screenshot();
    for (int x = 0; x < picture.width(); ++x)
        QVERIFY(qGray(picture.pixel(x, 2)) == 0 && qGray(picture.pixel(x, picture.height() - 3)) == 0);
}

void tst_SettingsWorkflow::fittedPictureIsAsDithered_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("left");
    QTest::newRow("margins of one width") << 702 << 28;
    QTest::newRow("margins of two") << 701 << 28;
}

void tst_SettingsWorkflow::fittedPictureIsAsDithered()
{
    QFETCH(int, width);
    QFETCH(int, left);
    QImage picture(width, 1024, QImage::Format_Grayscale8);
    for (int y = 0; y < 1024; ++y) {
        for (int x = 0; x < width; ++x)
            picture.scanLine(y)[x] = uchar((x * x / 700 + y) & 0xff);
    }
    const QString first = u"/mnt/ext1/Photo/01.jpg"_s;
    QVERIFY(QFile::rename(first, first + u".kept"_s) && picture.save(first, "PNG"));
    const auto back = qScopeGuard([&] {
        QFile::remove(first);
        QFile::rename(first + u".kept"_s, first);
    });

    QVERIFY(start());
    QVERIFY(m_device->walk(
        {u"press Slideshow settings"_s, u"touch Display mode"_s, u"touch Fit on black"_s, u"press Back"_s}));
    QVERIFY(m_device->play());
    QuickFloyd16Dither(picture.scanLine(0), int(picture.bytesPerLine()), 0, 0, width, 1024);
    QString error;
    const auto panel = lindenreed::remote::readPanel(u"/devroot/run/panel"_s, &error);
    QVERIFY2(panel, qUtf8Printable(error));
    for (int y = 0; y < 900; ++y) { // below stands the date
        const uchar *row = panel->glass.constScanLine(y);
        QVERIFY(std::count(row, row + left, 0) == left
                && std::count(row + left + width, row + 758, 0) == 758 - left - width);
        QVERIFY(std::equal(row + left, row + left + width, picture.constScanLine(y)));
    }
}

void tst_SettingsWorkflow::datesOfTheShow()
{
    QVERIFY(start());
    QVERIFY(m_device->walk({u"press Slideshow settings"_s, u"touch Current date and time"_s,
                            u"touch Show date and time"_s, u"touch Font and position"_s, u"touch Position"_s,
                            u"touch Bottom right"_s}));
    const QRect clock = [this] {
        const QList<QJsonObject> items = m_device->items();
        for (const QJsonObject &item : items) {
            if (item.value("id"_L1) == "main_txt"_L1)
                return ShowDevice::rectangleOf(item);
        }
        return QRect();
    }();
    QVERIFY(clock.center().x() > 379 && clock.center().y() > 512);
    QCOMPARE(settings(u"current_date_position"_s), QStringList{u"-1|0"_s}); // on trial
    QVERIFY(m_device->walk({u"touch Save"_s}));
    QCOMPARE(settings(u"current_date_position"_s), QStringList{u"-1|3"_s});
    QCOMPARE(settings(u"current_date_show"_s), QStringList{u"-1|1"_s});
    QVERIFY(m_device->walk({u"press Back"_s, u"press Back"_s}) && m_device->play());
    const QList<QJsonObject> items = m_device->items();
    QVERIFY(std::ranges::any_of(items, [&](const QJsonObject &item) {
        return item.value("id"_L1) == "main_txt"_L1 && ShowDevice::rectangleOf(item).center().y() > 512;
    }));
}

void tst_SettingsWorkflow::trialDropped()
{
    QVERIFY(start());
    const QStringList before = stored_database::rows(u"SELECT * FROM settings"_s);
    QVERIFY(
        m_device->walk({u"press Slideshow settings"_s, u"touch Photo date"_s, u"touch Font and position"_s,
                        u"touch Position"_s, u"touch Top right"_s, u"press Font: default"_s,
                        u"touch DejaVu Sans"_s, u"press Style: Regular"_s, u"touch Bold"_s}));
    QVERIFY(m_device->names().contains(u"Style: Bold"_s));
    QVERIFY(m_device->walk({u"touch Back"_s, u"touch Font and position"_s}));
    QVERIFY(m_device->names().contains(u"Font: default"_s) && !m_device->names().contains(u"Style: Bold"_s));
    QCOMPARE(stored_database::rows(u"SELECT * FROM settings"_s), before);
}

void tst_SettingsWorkflow::fontOfTheMachine()
{
    QVERIFY(start());
    QVERIFY(
        m_device->walk({u"press Slideshow settings"_s, u"touch Photo date"_s, u"touch Font and position"_s,
                        u"press Font: default"_s, u"touch DejaVu Sans Mono"_s}));
    QVERIFY(m_device->names().contains(u"Style: Regular"_s));
    QVERIFY(m_device->walk({u"touch Save"_s}));
    QCOMPARE(settings(u"created_date_font"_s), QStringList{u"-1|DejaVu Sans Mono"_s});
}

void tst_SettingsWorkflow::backToTheShow()
{
    QVERIFY(start());
    QVERIFY(m_device->play());
    QVERIFY(m_device->tap(379, 512)); // the menu
    QVERIFY(m_device->walk({u"touch Slideshow settings"_s, u"touch Shuffle"_s,
                            u"touch Change picture every"_s, u"touch 10 seconds"_s}));
    QCOMPARE(settings(u"shuffle"_s), (QStringList{u"-1|0"_s, u"1|1"_s}));
    QCOMPARE(settings(u"change_picture_time"_s), (QStringList{u"-1|30"_s, u"1|10"_s}));
    QVERIFY(m_device->walk({u"touch Back"_s}));
    QCOMPARE(m_device->state().value("panel"_L1).toObject().value("type"_L1).toInt(), 0); // the show
    QCOMPARE(showInterval(), 10'000);
}

void tst_SettingsWorkflow::everythingHasAName_data()
{
    QTest::addColumn<QStringList>("steps");

    const QStringList first{u"press Slideshow settings"_s};
    const QStringList date = first + QStringList{u"press Photo date"_s};
    const QStringList trial = date + QStringList{u"press Font and position"_s};
    QTest::newRow("the first screen") << first;
    QTest::newRow("intervals") << first + QStringList{u"press Change picture every"_s};
    QTest::newRow("display modes") << first + QStringList{u"press Display mode"_s};
    QTest::newRow("own interval") << first + QStringList{u"press Change picture every"_s, u"press Custom"_s};
    QTest::newRow("units") << first
            + QStringList{u"press Change picture every"_s, u"press Custom"_s, u"press seconds"_s};
    QTest::newRow("a date") << date;
    QTest::newRow("trial") << trial;
    QTest::newRow("fonts") << trial + QStringList{u"press Font: default"_s};
    QTest::newRow("corners") << trial + QStringList{u"press Position"_s};
}

void tst_SettingsWorkflow::everythingHasAName()
{
    QFETCH(QStringList, steps);

    QVERIFY(start());
    QVERIFY(m_device->walk(steps));
    const QList<QJsonObject> items = m_device->items();
    QVERIFY(items.size() > 3);
    const QSet<QString> unnamed{u"ScrollBar"_s, u"PopupMenu"_s, u"StatusBar"_s};
    for (const QJsonObject &item : items) {
        const QString role = item.value("role"_L1).toString();
        QVERIFY2(!item.value("name"_L1).toString().isEmpty() || unnamed.contains(role), qUtf8Printable(role));
    }
}

void tst_SettingsWorkflow::keysAlone()
{
    QVERIFY(start("keys-6"));
    QVERIFY(m_device->walk({u"press Slideshow settings"_s})); // the keys are at the first row
    const QStringList toCustom{u"key centre"_s, u"key down"_s, u"key down"_s, u"key down"_s, u"key down"_s};
    QVERIFY(m_device->walk(toCustom + QStringList{u"key centre"_s}));
    QVERIFY(m_device->names().contains(u"Set custom interval"_s));
    // The number pad has the keys, from its 1 on; without it over the unit and Cancel to Save.
    QVERIFY(m_device->walk({u"key down"_s, u"key centre"_s, u"key right"_s, u"key centre"_s, u"key back"_s,
                            u"key down"_s, u"key down"_s, u"key down"_s, u"key centre"_s}));
    QVERIFY(!m_device->names().contains(u"Set custom interval"_s));
    QCOMPARE(settings(u"change_picture_time"_s), QStringList{u"-1|45"_s});
    // Back at the row: three down is shuffle, one more the display mode.
    QVERIFY(m_device->walk({u"key down"_s, u"key down"_s, u"key down"_s, u"key centre"_s}));
    QCOMPARE(settings(u"shuffle"_s), QStringList{u"-1|1"_s});
    QVERIFY(m_device->walk({u"key down"_s, u"key centre"_s, u"key up"_s, u"key centre"_s}));
    QCOMPARE(settings(u"display_mode"_s), QStringList{u"-1|0"_s});
    // And up again, past the first row to the header.
    QVERIFY(
        m_device->walk({u"key up"_s, u"key up"_s, u"key up"_s, u"key up"_s, u"key up"_s, u"key centre"_s}));
    QVERIFY(m_device->names().contains(u"New playlist"_s));
}

void tst_SettingsWorkflow::trialByKeys()
{
    QVERIFY(start("keys-6"));
    QVERIFY(m_device->walk({u"press Slideshow settings"_s, u"key down"_s, u"key centre"_s}));
    QVERIFY(m_device->names().contains(u"Show photo date"_s));
    QVERIFY(m_device->walk({u"key centre"_s}));
    QCOMPARE(settings(u"created_date_show"_s), QStringList{u"-1|0"_s});
    QVERIFY(m_device->walk({u"key down"_s, u"key centre"_s}));
    QVERIFY(m_device->names().contains(u"Font: default"_s));
    QVERIFY(m_device->walk({u"key centre"_s}));
    QStringList fonts;
    const QList<QJsonObject> items = m_device->items();
    for (const QJsonObject &item : items) {
        if (item.value("role"_L1) == "RadioButton"_L1)
            fonts.append(item.value("name"_L1).toString());
    }
    QCOMPARE(fonts.value(0), u"default"_s);
    const qsizetype steps = fonts.indexOf(u"DejaVu Sans"_s);
    QVERIFY(steps > 0);
    QVERIFY(m_device->walk(QStringList(steps, u"key down"_s) + QStringList{u"key centre"_s}));
    QVERIFY(m_device->names().contains(u"Style: Regular"_s));
    QVERIFY(m_device->walk(
        {u"key right"_s, u"key centre"_s, u"key down"_s, u"key centre"_s})); // its second style
    QVERIFY(m_device->names().contains(u"Style: Bold"_s));
    // The keys begin at the third corner, which is in force, and stay among the corners.
    QVERIFY(m_device->walk(
        {u"key right"_s, u"key centre"_s, u"key down"_s, u"key up"_s, u"key left"_s, u"key centre"_s}));
    QVERIFY(m_device->walk({u"key centre"_s, u"key back"_s})); // opened again, and left
    QVERIFY(m_device->walk({u"key right"_s, u"key centre"_s})); // done
    QCOMPARE(settings(u"created_date_position"_s), QStringList{u"-1|1"_s});
    QCOMPARE(settings(u"created_date_font"_s), QStringList{u"-1|DejaVu Sans"_s});
    QCOMPARE(settings(u"created_date_font_is_bold"_s), QStringList{u"-1|1"_s});
    QVERIFY(m_device->names().contains(u"Show photo date"_s));
    QVERIFY(m_device->walk({u"key up"_s, u"key centre"_s})); // the header
    QVERIFY(m_device->names().contains(u"Shuffle"_s));
}

QTEST_GUILESS_MAIN(tst_SettingsWorkflow)
#include "tst_settings_workflow.moc"
