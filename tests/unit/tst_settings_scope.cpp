// For whom a setting is: changed from the overview, from a playlist or from its running show, and the way
// back.

#include "interval_dialog.h"
#include "panel_application.h"

#include <QTemporaryDir>

#include <memory>

using lindenreed::picture_stand::SlideshowModel;

class tst_SettingsScope : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init();
    void cleanup() { m_test.reset(); }

    void changes_data();
    void changes();
    void everySettingOfOneScope_data() { changes_data(); }
    void everySettingOfOneScope();
    void trial_data() { changes_data(); }
    void trial();
    void droppedTrial_data() { changes_data(); }
    void droppedTrial();
    void backToTheShow();

private:
    /// Calls `body` with two playlists of the pictures, on the overview.
    void run(const std::function<void(RunningApp &)> &body);

    std::unique_ptr<SettingsScreens> m_test;
    std::unique_ptr<QTemporaryDir> m_folder;
    QStringList m_paths;
    qlonglong m_first = -1;
    qlonglong m_second = -1;
};

void tst_SettingsScope::init()
{
    m_test = std::make_unique<SettingsScreens>();
    m_folder = std::make_unique<QTemporaryDir>(u"/mnt/ext1/pictures-XXXXXX"_s);
    m_paths.clear();
    for (const QString &name : {u"a.png"_s, u"b.png"_s, u"c.png"_s}) {
        m_paths.append(m_folder->filePath(name));
        QImage picture(30, 40, QImage::Format_Grayscale8);
        picture.fill(100);
        QVERIFY(picture.save(m_paths.constLast()));
    }
}

void tst_SettingsScope::run(const std::function<void(RunningApp &)> &body)
{
    m_test->run(u"playlists"_s, [&](RunningApp &running) {
        PlaylistModel *const playlists = running.playlists();
        while (playlists->count() > 0)
            playlists->deleteItem(playlists->data(playlists->index(0), PlaylistModel::IdRole).toLongLong());
        for (qlonglong *id : {&m_first, &m_second}) {
            *id = playlists->addItem(id == &m_first ? u"First"_s : u"Second"_s);
            playlists->setActiveId(*id);
            playlists->addImagesToPlaylist(m_paths);
        }
        playlists->setActiveId(-1);
        running.settings()->setProperty("isFirstRun", false);
        running.settings()->saveConfig(u"is_first_run"_s);
        body(running);
    });
}

namespace {

enum Start { Overview, Playlist, Show };

/// From the overview to the settings, on the way that a user has.
void openSettings(const RunningApp &running, Start start)
{
    if (start == Playlist) {
        QVERIFY(SettingsScreens::pressSoon(running, u"First. 3"_s));
        QCOMPARE(running.app.currentView(), u"playlist"_s);
    } else if (start == Show) {
        QVERIFY(SettingsScreens::pressSoon(running, textOf("@StartPlayback")));
        QCOMPARE(running.app.currentView(), u"slideshow"_s);
        QVERIFY(running.screen()->setProperty("menu_opened", true));
        running.slideshow()->stop();
    }
    QVERIFY(SettingsScreens::pressButton(running, "@SlideshowSettings"));
    QCOMPARE(running.app.currentView(), u"settings_slideshow"_s);
}

/// The stored settings of a playlist by their names, -1 those of all; without the light, which has no
/// playlist.
QStringList rowsOf(qlonglong playlist)
{
    return stored_database::rows(u"SELECT name, value FROM settings WHERE playlist = %1 "
                                 "AND name NOT LIKE 'frontlight%' ORDER BY name"_s.arg(playlist));
}

} // namespace

void tst_SettingsScope::changes_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<QString>("back");

    QTest::newRow("from the overview") << int(Overview) << u"playlists"_s;
    QTest::newRow("from a playlist") << int(Playlist) << u"playlist"_s;
    QTest::newRow("from a running show") << int(Show) << u"slideshow"_s;
}

void tst_SettingsScope::changes()
{
    QFETCH(int, start);
    QFETCH(QString, back);

    run([&](RunningApp &running) {
        const QStringList before = globalRows();
        openSettings(running, Start(start));
        QCOMPARE(running.playlists()->activeId(), start == Overview ? -1 : m_first);
        QVERIFY(pressByAccessibility(SettingsScreens::item(running, "menu_shuffle")));
        QVERIFY(pressByAccessibility(SettingsScreens::item(running, "menu_displaymode")));
        QVERIFY(SettingsScreens::choose(running, u"Fit on black"_s));
        QVERIFY(interval_dialog::open(running));
        interval_dialog::type(running, u"45"_s);
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));

        QStringList changed = before;
        changed.replaceInStrings(u"shuffle|0"_s, u"shuffle|1"_s);
        changed.replaceInStrings(u"display_mode|1"_s, u"display_mode|0"_s);
        changed.replaceInStrings(u"change_picture_time|30"_s, u"change_picture_time|45"_s);
        if (start == Overview) {
            QCOMPARE(globalRows(), changed);
            QCOMPARE(playlistRows(), QStringList());
        } else {
            const auto row = [this](const QString &text) { return text + u'|' + QString::number(m_first); };
            QStringList light = before; // a show that is left notes the light, for all
            if (start == Show)
                light.replaceInStrings(u"frontlight_enabled|0"_s, u"frontlight_enabled|1"_s);
            QCOMPARE(globalRows(), light);
            QCOMPARE(playlistRows(),
                     (QStringList{row(u"shuffle|1"_s), row(u"display_mode|0"_s),
                                  row(u"change_picture_time_index|0"_s), row(u"change_picture_time|45"_s)}));
        }
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.app.currentView(), back);

        // What the second playlist has of it.
        running.playlists()->setActiveId(m_second);
        QCOMPARE(running.settings()->changePictureTime(), start == Overview ? 45 : 30);
        QCOMPARE(running.settings()->property("shuffle").toBool(), start == Overview);
        running.playlists()->setActiveId(m_first);
        QCOMPARE(running.settings()->changePictureTime(), 45);
        running.playlists()->setActiveId(-1);
    });
}

void tst_SettingsScope::everySettingOfOneScope()
{
    QFETCH(int, start);

    run([&](RunningApp &running) {
        // The second playlist has values of its own for all that a playlist can have.
        for (const Sample &sample : samples) {
            if (sample.key != u"is_first_run"_s)
                DataStorage::instance().setSetting(sample.key, sample.otherText, int(m_second));
        }
        const QStringList ofTheSecond = rowsOf(m_second);
        QCOMPARE(ofTheSecond.size(), 14);
        const qlonglong scope = start == Overview ? -1 : m_first;
        const qlonglong other = start == Overview ? m_first : -1;
        const QStringList ofTheOther = rowsOf(other);

        openSettings(running, Start(start));
        const auto press
            = [&](const char *id) { return pressByAccessibility(SettingsScreens::item(running, id)); };
        QVERIFY(press("menu_change_picter") && SettingsScreens::choose(running, u"5\u00a0minutes"_s));
        QVERIFY(press("menu_shuffle"));
        QVERIFY(press("menu_displaymode") && SettingsScreens::choose(running, u"Fit on black"_s));
        QVERIFY(press("menu_created_date") && press("menu_show"));
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QVERIFY(press("menu_datetime") && press("menu_show") && press("menu_customize"));
        running.settings()->setProperty("current_date_position", 3);
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));

        const QMap<QString, QString> changed{{u"change_picture_time"_s, u"300"_s},
                                             {u"change_picture_time_index"_s, u"1"_s},
                                             {u"shuffle"_s, u"1"_s},
                                             {u"display_mode"_s, u"0"_s},
                                             {u"created_date_show"_s, u"0"_s},
                                             {u"current_date_show"_s, u"1"_s},
                                             {u"current_date_position"_s, u"3"_s},
                                             {u"current_date_font"_s, u"default"_s},
                                             {u"current_date_font_is_bold"_s, u"0"_s},
                                             {u"current_date_font_is_italic"_s, u"0"_s}};
        QStringList found = rowsOf(scope);
        if (start == Overview) // where all settings have a row already
            found.removeIf([&](const QString &row) { return !changed.contains(row.section(u'|', 0, 0)); });
        QStringList expected;
        for (auto row = changed.cbegin(); row != changed.cend(); ++row)
            expected.append(row.key() + u'|' + row.value());
        QCOMPARE(found, expected);
        QCOMPARE(rowsOf(other), ofTheOther);
        QCOMPARE(rowsOf(m_second), ofTheSecond);
        running.playlists()->setActiveId(m_second);
        for (const Sample &sample : samples) {
            if (sample.key != u"is_first_run"_s)
                QCOMPARE(running.settings()->property(sample.property), sample.other);
        }
        running.playlists()->setActiveId(-1);
    });
}

void tst_SettingsScope::trial()
{
    QFETCH(int, start);

    run([&](RunningApp &running) {
        const QString second = u"SELECT * FROM settings WHERE playlist = %1"_s.arg(m_second);
        QVERIFY(stored_database::execute(
            {u"INSERT INTO settings (name, value, playlist) VALUES ('current_date_font', 'Own', %1)"_s.arg(
                m_second)}));
        const QStringList ofSecond = stored_database::rows(second);
        QCOMPARE(ofSecond.size(), 1);
        openSettings(running, Start(start));
        const QStringList before = globalRows(); // with the light of the show that was left
        QVERIFY(pressByAccessibility(SettingsScreens::item(running, "menu_datetime")));
        QVERIFY(pressByAccessibility(SettingsScreens::item(running, "menu_show")));
        QVERIFY(pressByAccessibility(SettingsScreens::item(running, "menu_customize")));
        running.settings()->setProperty("current_date_position", 3);
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));

        QStringList changed = before;
        changed.replaceInStrings(u"current_date_show|0"_s, u"current_date_show|1"_s);
        changed.replaceInStrings(u"current_date_position|0"_s, u"current_date_position|3"_s);
        const QString id = u"|"_s + QString::number(m_first);
        const QStringList own{u"current_date_show|1"_s + id, u"current_date_position|3"_s + id,
                              u"current_date_font|default"_s + id, u"current_date_font_is_bold|0"_s + id,
                              u"current_date_font_is_italic|0"_s + id};
        QCOMPARE(globalRows(), start == Overview ? changed : before);
        const QString other = u"current_date_font|Own|"_s + QString::number(m_second);
        QCOMPARE(playlistRows(), QStringList{other} + (start == Overview ? QStringList() : own));
        QCOMPARE(stored_database::rows(second), ofSecond);

        // What the second playlist has of it.
        running.playlists()->setActiveId(m_second);
        QCOMPARE(running.settings()->property("current_date_position").toInt(), start == Overview ? 3 : 0);
        QCOMPARE(running.settings()->property("current_date_font").toString(), u"Own"_s);
        running.playlists()->setActiveId(-1);
        QCOMPARE(running.settings()->property("current_date_position").toInt(), start == Overview ? 3 : 0);
    });
}

void tst_SettingsScope::droppedTrial()
{
    QFETCH(int, start);

    run([&](RunningApp &running) {
        for (const qlonglong playlist : {m_first, m_second})
            DataStorage::instance().setSetting(u"current_date_position"_s, u"1"_s, int(playlist));
        const QStringList before = rowsOf(-1) + rowsOf(m_first) + rowsOf(m_second);
        openSettings(running, Start(start));
        QVERIFY(pressByAccessibility(SettingsScreens::item(running, "menu_datetime")));
        QVERIFY(pressByAccessibility(SettingsScreens::item(running, "menu_customize")));
        running.settings()->setProperty("current_date_position", 3);
        running.settings()->setProperty("current_date_font", u"DejaVu Sans"_s);
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.settings()->property("current_date_position").toInt(), start == Overview ? 0 : 1);
        QCOMPARE(running.settings()->property("current_date_font").toString(), u"default"_s);
        QCOMPARE(rowsOf(-1) + rowsOf(m_first) + rowsOf(m_second), before);
        running.playlists()->setActiveId(-1);
    });
}

void tst_SettingsScope::backToTheShow()
{
    run([&](RunningApp &running) {
        openSettings(running, Show);
        running.slideshow()->nextImage(); // as the device's key does
        running.slideshow()->stop();
        const QString current = running.slideshow()->currentImage();
        m_test->device.forgetCalls();
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.app.currentView(), u"slideshow"_s);
        QCOMPARE(running.screen()->property("menu_opened").toBool(), false);
        QCOMPARE(running.slideshow()->currentImage(), current);
        QCOMPARE(m_test->device.calls({"SetHardTimerEx"}).size(), 1); // it runs again
        QCOMPARE(m_test->device.calls({"SetHardTimerEx"}).constFirst().arguments.constLast(),
                 QByteArray("30000"));
    });
}

PANEL_TEST_MAIN(tst_SettingsScope)
#include "tst_settings_scope.moc"
