// Settings as they are saved, of a playlist, and with the light.

#include "settings_fixture.h"

#include <boardconf.h>
#include <slateview.h>

using lindenreed::picture_stand::SettingsModel;

class tst_SettingsSaving : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { SettingsFixture::firstRows(); }
    void init() { m_test = std::make_unique<SettingsFixture>(); }
    void cleanup() { m_test.reset(); }

    void savingOneKeyWritesOneRow_data();
    void savingOneKeyWritesOneRow();
    void savingOneKeyOfAPlaylist_data();
    void savingOneKeyOfAPlaylist();
    void unknownKeysSaveNothing_data();
    void unknownKeysSaveNothing();
    void savingAllWritesEveryRowAndTheLight();
    void savingTheLightWritesFiveGlobalRows();
    void savingInTheOrderOfTheKeys();
    void firstRunIsNeverAPlaylists();
    void viewsAndTheLight_data();
    void viewsAndTheLight();
    void enteringAndLeavingInOrder();
    void twoModelsKeepTheirOwnLight();

private:
    std::unique_ptr<SettingsFixture> m_test;
};

void tst_SettingsSaving::savingOneKeyWritesOneRow_data()
{
    rowForEachSetting();
}

void tst_SettingsSaving::savingOneKeyWritesOneRow()
{
    QFETCH(int, setting);

    const Sample &saved = samples.at(setting);
    m_test->model->loadConfig();
    for (const Sample &sample : samples)
        QVERIFY(m_test->model->setProperty(sample.property, sample.other));
    m_test->model->saveConfig(saved.key);

    QStringList expected = SettingsFixture::firstRows();
    expected[setting] = saved.key + u'|' + saved.otherText;
    QCOMPARE(globalRows(), expected);
    QCOMPARE(playlistRows(), QStringList());
    QVERIFY(m_test->lightCalls().isEmpty());
}

void tst_SettingsSaving::savingOneKeyOfAPlaylist_data()
{
    rowForEachSetting();
}

void tst_SettingsSaving::savingOneKeyOfAPlaylist()
{
    QFETCH(int, setting);

    const Sample &saved = samples.at(setting);
    m_test->model->setActivePlaylist(5);
    QVERIFY(m_test->model->setProperty(saved.property, saved.other));
    m_test->model->saveConfig(saved.key);
    if (saved.key == u"is_first_run"_s) {
        QCOMPARE(globalRows().at(setting), u"is_first_run|0"_s);
        QCOMPARE(playlistRows(), QStringList());
    } else {
        QCOMPARE(globalRows(), SettingsFixture::firstRows());
        QCOMPARE(playlistRows(), QStringList(u"%1|%2|5"_s.arg(saved.key, saved.otherText)));
    }
}

void tst_SettingsSaving::unknownKeysSaveNothing_data()
{
    QTest::addColumn<QString>("key");

    QTest::newRow("the property's name") << u"isFirstRun"_s;
    QTest::newRow("another case") << u"Shuffle"_s;
    QTest::newRow("a light's own key") << u"frontlight_brightness"_s;
    QTest::newRow("the light in another case") << u"Frontlight"_s;
    QTest::newRow("a blank") << u" "_s;
    QTest::newRow("a part of a key") << u"created_date"_s;
    QTest::newRow("two keys") << u"shuffle,display_mode"_s;
}

void tst_SettingsSaving::unknownKeysSaveNothing()
{
    QFETCH(QString, key);

    m_test->model->loadConfig();
    for (const Sample &sample : samples)
        QVERIFY(m_test->model->setProperty(sample.property, sample.other));
    m_test->model->saveConfig(key);
    QCOMPARE(globalRows(), SettingsFixture::firstRows());
    QCOMPARE(playlistRows(), QStringList());
    QVERIFY(m_test->lightCalls().isEmpty());
    QCOMPARE(m_test->output->text(), QByteArray());
}

void tst_SettingsSaving::savingAllWritesEveryRowAndTheLight()
{
    m_test->model->setActivePlaylist(5);
    for (const Sample &sample : samples)
        QVERIFY(m_test->model->setProperty(sample.property, sample.other));
    SetFrontlightState(33);
    m_test->model->saveConfig(QString());

    QStringList expectedGlobal = SettingsFixture::firstRows();
    expectedGlobal[14] = u"is_first_run|0"_s;
    const QStringList light = {u"33"_s, u"0"_s, u"%1"_s.arg(GetFrontlightColor()), u"0"_s, u"1"_s};
    for (int i = 0; i < 5; ++i)
        expectedGlobal[15 + i] = lightKeys.at(i) + u'|' + light.at(i);
    QCOMPARE(globalRows(), expectedGlobal);

    QStringList expected;
    for (const Sample &sample : samples.mid(0, 14))
        expected.append(u"%1|%2|5"_s.arg(sample.key, sample.otherText));
    QCOMPARE(playlistRows(), expected);
}

void tst_SettingsSaving::savingTheLightWritesFiveGlobalRows()
{
    m_test->model->setActivePlaylist(5);
    SetFrontlightState(33);
    for (const Sample &sample : samples)
        QVERIFY(m_test->model->setProperty(sample.property, sample.other));
    m_test->model->saveConfig(u"frontlight"_s);
    QCOMPARE(globalRows().mid(0, 15), SettingsFixture::firstRows().mid(0, 15));
    QCOMPARE(globalRows().at(15), u"frontlight_brightness|33"_s);
    QCOMPARE(globalRows().at(19), u"frontlight_enabled|1"_s);
    QCOMPARE(playlistRows(), QStringList());
    QCOMPARE(m_test->output->text(), QByteArray("FRONTLIGHT \t save brightness = 33 auto = 0 \r\n"));
}

void tst_SettingsSaving::savingInTheOrderOfTheKeys()
{
    m_test->model->loadConfig();
    QVERIFY(stored_database::execute(
        {u"CREATE TABLE witnessed(id INTEGER PRIMARY KEY, what TEXT)"_s,
         u"CREATE TRIGGER witness AFTER INSERT ON settings BEGIN INSERT INTO witnessed(what) VALUES(NEW.name); END"_s}));
    m_test->model->saveConfig(u""_s);
    const QStringList order = stored_database::rows(u"SELECT what FROM witnessed ORDER BY id"_s);
    QVERIFY(stored_database::execute({u"DROP TRIGGER witness"_s, u"DROP TABLE witnessed"_s}));

    QStringList expected;
    for (const Sample &sample : samples)
        expected.append(sample.key);
    QCOMPARE(order, expected + lightKeys);
}

void tst_SettingsSaving::firstRunIsNeverAPlaylists()
{
    DataStorage::instance().setSetting(u"is_first_run"_s, u"0"_s, 5);
    m_test->model->setActivePlaylist(5);
    QCOMPARE(m_test->model->property("isFirstRun"), QVariant(true));
}

void tst_SettingsSaving::viewsAndTheLight_data()
{
    QTest::addColumn<int>("event");
    QTest::addColumn<QString>("view");
    QTest::addColumn<QString>("previous");
    QTest::addColumn<QString>("effect");

    const QString none;
    const QString show = u"slideshow"_s;
    const QString lists = u"playlists"_s;
    const QString settings = u"settings_slideshow"_s;

    QTest::newRow("to the foreground with the show") << 0 << show << none << u"enter"_s;
    QTest::newRow("to the foreground with the playlists") << 0 << lists << none << none;
    QTest::newRow("to the foreground with no view") << 0 << none << none << none;
    QTest::newRow("to the background with the show") << 1 << show << none << u"leave"_s;
    QTest::newRow("to the background with the playlists") << 1 << lists << none << none;
    QTest::newRow("from the playlists to the show") << 2 << show << lists << u"enter"_s;
    QTest::newRow("from the show to the show") << 2 << show << show << u"enter"_s;
    QTest::newRow("from nowhere to the show") << 2 << show << none << u"enter"_s;
    QTest::newRow("from the show to the playlists") << 2 << lists << show << u"leave"_s;
    QTest::newRow("from the show to its settings") << 2 << settings << show << u"leave"_s;
    QTest::newRow("from the settings to the playlists") << 2 << lists << settings << none;
    QTest::newRow("a name in another case") << 2 << u"Slideshow"_s << u"SLIDESHOW"_s << none;
    QTest::newRow("the end with the show") << 3 << show << none << u"leave"_s;
    QTest::newRow("the end with the playlists") << 3 << lists << none << none;
}

void tst_SettingsSaving::viewsAndTheLight()
{
    QFETCH(int, event);
    QFETCH(QString, view);
    QFETCH(QString, previous);
    QFETCH(QString, effect);

    const QByteArrayList reading{"GetFrontlightState", "hw_is_frontlight_auto", "GetFrontlightColor",
                                 "hw_is_frontlight_color_auto"};
    const QByteArrayList setting{"SetFrontlightState 0", "hw_set_frontlight_auto_enabled 0",
                                 "SetFrontlightColor 0", "hw_set_frontlight_color_auto_enabled 0",
                                 "SetFrontlightEnabled 0"};
    QByteArrayList expected;
    if (effect == u"enter"_s)
        expected = reading + setting;
    else if (effect == u"leave"_s)
        expected
            = QByteArrayList{"GetFrontlightState", "hw_is_frontlight_auto"} + reading + reading + setting;

    if (event == 0)
        m_test->model->onForeground(view);
    else if (event == 1)
        m_test->model->onBackground(view);
    else if (event == 2)
        m_test->model->changedView(view, previous);
    else
        m_test->model->onExit(view);
    QCOMPARE(m_test->lightCalls(), expected);
    QCOMPARE(globalRows() != SettingsFixture::firstRows(), effect == u"leave"_s);
}

void tst_SettingsSaving::enteringAndLeavingInOrder()
{
    SetFrontlightState(70);
    SetFrontlightColor(10);
    m_test->model->changedView(u"slideshow"_s, u"playlists"_s);
    QCOMPARE(GetFrontlightState(), 0);
    SetFrontlightState(5); // by the user, during the show
    m_test->model->changedView(u"playlists"_s, u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 70);
    QCOMPARE(GetFrontlightColor(), 10);
    QCOMPARE(globalRows().at(15), u"frontlight_brightness|5"_s);
    QCOMPARE(m_test->output->text(),
             QByteArray("FRONTLIGHT \t load brightness = 0 auto = 0 \r\nFRONTLIGHT \t save brightness = 5 "
                        "auto = 0 \r\n"));

    m_test->model->changedView(u"slideshow"_s, u"playlists"_s);
    QCOMPARE(GetFrontlightState(), 5);
    m_test->model->onBackground(u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 70);
    m_test->model->onForeground(u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 5);
    m_test->model->onExit(u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 70);
}

void tst_SettingsSaving::twoModelsKeepTheirOwnLight()
{
    SettingsModel other;
    SetFrontlightState(70);
    m_test->model->onForeground(u"slideshow"_s);
    other.onBackground(u"slideshow"_s); // has never entered
    QCOMPARE(GetFrontlightState(), 0);
    m_test->model->onBackground(u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 70);
}

QTEST_GUILESS_MAIN(tst_SettingsSaving)
#include "tst_settings_saving.moc"
