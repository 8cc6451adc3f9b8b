#include <boardconf.h>
#include <datastorage.h>
#include <settings_model.h>
#include <slateview.h>
#include <slateview_testing.h>
#include <stderr_capture.h>
#include <stored_database.h>

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::SettingsModel;

namespace {

/// A setting: its key, its property, the value that a new database has, another one, and that as text.
struct Sample
{
    QString key;
    QByteArray property;
    QVariant first;
    QVariant other;
    QString otherText;
};

// In the order in which they are loaded and saved.
const QList<Sample> samples{
    {u"change_picture_time"_s, "change_picture_time", 30, 3600, u"3600"_s},
    {u"change_picture_time_index"_s, "change_picture_time_index", 0, 2, u"2"_s},
    {u"shuffle"_s, "shuffle", false, true, u"1"_s},
    {u"display_mode"_s, "display_mode", 1, 0, u"0"_s},
    {u"created_date_show"_s, "created_date_show", true, false, u"0"_s},
    {u"created_date_position"_s, "created_date_position", 2, -7, u"-7"_s},
    {u"created_date_font"_s, "created_date_font", u"default"_s, u"O'Neill Sans"_s, u"O'Neill Sans"_s},
    {u"created_date_font_is_bold"_s, "created_date_font_is_bold", false, true, u"1"_s},
    {u"created_date_font_is_italic"_s, "created_date_font_is_italic", false, true, u"1"_s},
    {u"current_date_show"_s, "current_date_show", false, true, u"1"_s},
    {u"current_date_position"_s, "current_date_position", 0, 3, u"3"_s},
    {u"current_date_font"_s, "current_date_font", u"default"_s, u"Serif \U0001F58B"_s, u"Serif \U0001F58B"_s},
    {u"current_date_font_is_bold"_s, "current_date_font_is_bold", false, true, u"1"_s},
    {u"current_date_font_is_italic"_s, "current_date_font_is_italic", false, true, u"1"_s},
    {u"is_first_run"_s, "isFirstRun", true, false, u"0"_s},
};

const QStringList lightKeys{u"frontlight_brightness"_s, u"frontlight_brightness_auto"_s,
                            u"frontlight_smartlight"_s, u"frontlight_smartlight_auto"_s,
                            u"frontlight_enabled"_s};

QStringList globalRows()
{
    return stored_database::rows(u"SELECT name, value FROM settings WHERE playlist = -1 ORDER BY id"_s);
}

QStringList playlistRows()
{
    return stored_database::rows(
        u"SELECT name, value, playlist FROM settings WHERE playlist <> -1 ORDER BY id"_s);
}

QList<QMetaMethod> ownMethods(QMetaMethod::MethodType type)
{
    QList<QMetaMethod> result;
    const QMetaObject &meta = SettingsModel::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == type)
            result.append(meta.method(i));
    }
    return result;
}

/// Notes the notify signals of a model, in the order in which they come, as property names.
class NotifyLog : public QObject
{
    Q_OBJECT

public:
    explicit NotifyLog(SettingsModel *model)
    {
        const QMetaObject &meta = SettingsModel::staticMetaObject;
        const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot("note()"));
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
            connect(model, meta.property(i).notifySignal(), this, slot);
    }

    QByteArrayList taken() { return std::exchange(m_names, {}); }
    std::function<void(const QByteArray &)> onNote;

public slots:
    void note()
    {
        QByteArray name = sender()->metaObject()->method(senderSignalIndex()).name();
        name.chop(int(qstrlen("Changed")));
        m_names.append(name);
        if (onNote)
            onNote(name);
    }

private:
    QByteArrayList m_names;
};

QByteArrayList allProperties()
{
    QByteArrayList names;
    for (const Sample &sample : samples)
        names.append(sample.property);
    return names;
}

} // namespace

class tst_SettingsModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void theMetaObjectIsInOrder();
    void aNewModelIsEmpty();
    void aNewDatabaseLoads();
    void loadingEmitsInTheOrderOfTheKeys();
    void loadingTwiceEmitsOnce();
    void aListenerSeesTheLaterKeysInTheirOldState();
    void loadingDropsWhatWasNotSaved_data();
    void loadingDropsWhatWasNotSaved();
    void assigningNotifiesOnChangeOnly_data();
    void assigningNotifiesOnChangeOnly();
    void textsOfOtherForms_data();
    void textsOfOtherForms();
    void aMissingRowIsZero();

    void savingOneKeyWritesOneRow_data();
    void savingOneKeyWritesOneRow();
    void savingOneKeyOfAPlaylist_data();
    void savingOneKeyOfAPlaylist();
    void unknownKeysSaveNothing_data();
    void unknownKeysSaveNothing();
    void savingAllWritesEveryRowAndTheLight();
    void savingTheLightWritesFiveGlobalRows();
    void savingInTheOrderOfTheKeys();
    void savingEmitsNothing();

    void aPlaylistOverridesTheGlobalRow();
    void firstRunIsNeverAPlaylists();

    void viewsAndTheLight_data();
    void viewsAndTheLight();
    void enteringAndLeavingInOrder();
    void twoModelsKeepTheirOwnLight();

private:
    QByteArrayList lightCalls();

    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<StderrCapture> m_output;
    std::unique_ptr<SettingsModel> m_model;
    QStringList m_firstRows;
};

void tst_SettingsModel::initTestCase()
{
    const DeviceForTest device;
    DataStorage::instance();
    stored_database::hurry();
    m_firstRows = globalRows();
    QCOMPARE(m_firstRows.size(), 20);
}

void tst_SettingsModel::init()
{
    m_device = std::make_unique<DeviceForTest>();
    QVERIFY(stored_database::execute({u"DELETE FROM settings WHERE id > 20"_s}));
    for (const QString &row : m_firstRows)
        DataStorage::instance().setSetting(row.section(u'|', 0, 0), row.section(u'|', 1), -1);
    QCOMPARE(globalRows(), m_firstRows);
    m_output = std::make_unique<StderrCapture>();
    m_model = std::make_unique<SettingsModel>();
    m_device->forgetCalls();
}

void tst_SettingsModel::cleanup()
{
    m_model.reset();
    m_output.reset();
    m_device.reset();
}

QByteArrayList tst_SettingsModel::lightCalls()
{
    QByteArrayList result;
    for (const SdkCall &call : m_device->calls())
        result.append((QByteArrayList{call.name} + call.arguments).join(' '));
    m_device->forgetCalls();
    return result;
}

void tst_SettingsModel::theMetaObjectIsInOrder()
{
    const QMetaObject &meta = SettingsModel::staticMetaObject;
    QCOMPARE(meta.className(), "lindenreed::picture_stand::SettingsModel");

    QByteArrayList signals_;
    for (const QMetaMethod &method : ownMethods(QMetaMethod::Signal))
        signals_.append(method.methodSignature());
    QCOMPARE(signals_,
             QByteArrayList({"shuffleChanged()", "change_picture_timeChanged()", "display_modeChanged()",
                             "created_date_showChanged()", "created_date_positionChanged()",
                             "created_date_fontChanged()", "created_date_font_is_boldChanged()",
                             "created_date_font_is_italicChanged()", "current_date_showChanged()",
                             "current_date_positionChanged()", "current_date_fontChanged()",
                             "current_date_font_is_boldChanged()", "current_date_font_is_italicChanged()",
                             "change_picture_time_indexChanged()", "isFirstRunChanged()"}));

    QByteArrayList slots_;
    for (const QMetaMethod &method : ownMethods(QMetaMethod::Slot)) {
        slots_.append(method.methodSignature() + ' ' + method.parameterNames().join(','));
        QCOMPARE(method.access(), QMetaMethod::Public);
        QCOMPARE(method.returnType(), QMetaType::Void);
    }
    QCOMPARE(
        slots_,
        QByteArrayList({"onForeground(QString) currentView", "onBackground(QString) currentView",
                        "changedView(QString,QString) currentView,prevView", "onExit(QString) currentView",
                        "saveConfig(QString) property", "loadConfig() "}));

    const QByteArrayList properties{"isFirstRun bool",
                                    "change_picture_time int",
                                    "change_picture_time_index int",
                                    "shuffle bool",
                                    "display_mode int",
                                    "created_date_show bool",
                                    "created_date_position int",
                                    "created_date_font QString",
                                    "created_date_font_is_bold bool",
                                    "created_date_font_is_italic bool",
                                    "current_date_show bool",
                                    "current_date_position int",
                                    "current_date_font QString",
                                    "current_date_font_is_bold bool",
                                    "current_date_font_is_italic bool"};
    QByteArrayList found;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        found.append(QByteArray(property.name()) + ' ' + property.typeName());
        QVERIFY(property.isReadable());
        QVERIFY(property.isWritable());
        QCOMPARE(property.notifySignal().name(), QByteArray(property.name()) + "Changed");
    }
    QCOMPARE(found, properties);
    QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 0);
}

void tst_SettingsModel::aNewModelIsEmpty()
{
    for (const Sample &sample : samples) {
        const QVariant value = m_model->property(sample.property);
        QCOMPARE(value, QVariant(value.metaType(), nullptr)); // 0, false or empty
    }
    QVERIFY(lightCalls().isEmpty());
}

void tst_SettingsModel::aNewDatabaseLoads()
{
    m_model->loadConfig();
    for (const Sample &sample : samples)
        QCOMPARE(m_model->property(sample.property), sample.first);
    QCOMPARE(m_model->shuffle(), false);
    QCOMPARE(m_model->changePictureTime(), 30);
    QVERIFY(lightCalls().isEmpty());
    QCOMPARE(m_output->text(), QByteArray());
    QCOMPARE(globalRows(), m_firstRows);
}

void tst_SettingsModel::loadingEmitsInTheOrderOfTheKeys()
{
    NotifyLog log(m_model.get());
    m_model->loadConfig();
    // What is 0, false or empty already does not change.
    QCOMPARE(
        log.taken(),
        QByteArrayList({"change_picture_time", "display_mode", "created_date_show", "created_date_position",
                        "created_date_font", "current_date_font", "isFirstRun"}));
    for (const Sample &sample : samples)
        DataStorage::instance().setSetting(sample.key, sample.otherText, -1);
    m_model->loadConfig();
    QCOMPARE(log.taken(), allProperties());
}

void tst_SettingsModel::loadingTwiceEmitsOnce()
{
    m_model->loadConfig();
    NotifyLog log(m_model.get());
    m_model->loadConfig();
    QCOMPARE(log.taken(), QByteArrayList());
}

void tst_SettingsModel::aListenerSeesTheLaterKeysInTheirOldState()
{
    m_model->loadConfig();
    for (const Sample &sample : samples)
        DataStorage::instance().setSetting(sample.key, sample.otherText, -1);

    NotifyLog log(m_model.get());
    int position = 0;
    QStringList unexpected;
    log.onNote = [&](const QByteArray &) {
        for (int i = 0; i < samples.size(); ++i) {
            const QVariant expected = i <= position ? samples.at(i).other : samples.at(i).first;
            if (m_model->property(samples.at(i).property) != expected)
                unexpected.append(u"%1 at %2"_s.arg(samples.at(i).key).arg(position));
        }
        // A key that has not been read yet is read after this.
        if (position == 0)
            DataStorage::instance().setSetting(u"is_first_run"_s, u"1"_s, -1);
        ++position;
    };
    m_model->loadConfig();
    QCOMPARE(unexpected, QStringList());
    QByteArrayList expected = allProperties();
    expected.removeLast();
    QCOMPARE(log.taken(), expected);
}

void tst_SettingsModel::loadingDropsWhatWasNotSaved_data()
{
    QTest::addColumn<int>("setting");
    for (int i = 0; i < samples.size(); ++i)
        QTest::newRow(samples.at(i).property) << i;
}

void tst_SettingsModel::loadingDropsWhatWasNotSaved()
{
    QFETCH(int, setting);

    const Sample &sample = samples.at(setting);
    m_model->loadConfig();
    QVERIFY(m_model->setProperty(sample.property, sample.other));
    NotifyLog log(m_model.get());
    m_model->loadConfig();
    QCOMPARE(m_model->property(sample.property), sample.first);
    QCOMPARE(log.taken(), QByteArrayList{sample.property});
    QCOMPARE(globalRows(), m_firstRows);
}

void tst_SettingsModel::assigningNotifiesOnChangeOnly_data()
{
    loadingDropsWhatWasNotSaved_data();
}

void tst_SettingsModel::assigningNotifiesOnChangeOnly()
{
    QFETCH(int, setting);

    const Sample &sample = samples.at(setting);
    m_model->loadConfig();
    NotifyLog log(m_model.get());
    QVERIFY(m_model->setProperty(sample.property, sample.first));
    QCOMPARE(log.taken(), QByteArrayList());
    QVERIFY(m_model->setProperty(sample.property, sample.other));
    QCOMPARE(log.taken(), QByteArrayList{sample.property});
    QCOMPARE(m_model->property(sample.property), sample.other);
    QVERIFY(m_model->setProperty(sample.property, sample.other));
    QCOMPARE(log.taken(), QByteArrayList());
    QCOMPARE(globalRows(), m_firstRows);
}

void tst_SettingsModel::textsOfOtherForms_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("value");

    QTest::newRow("no number") << u"display_mode"_s << u"crop"_s << QByteArray("display_mode") << QVariant(0);
    QTest::newRow("too large") << u"display_mode"_s << u"2147483648"_s << QByteArray("display_mode")
                               << QVariant(0);
    QTest::newRow("the largest") << u"display_mode"_s << u"2147483647"_s << QByteArray("display_mode")
                                 << QVariant(2147483647);
    QTest::newRow("a position beyond the corners")
        << u"created_date_position"_s << u"17"_s << QByteArray("created_date_position") << QVariant(17);
    QTest::newRow("a negative position")
        << u"current_date_position"_s << u"-1"_s << QByteArray("current_date_position") << QVariant(-1);
    QTest::newRow("a fraction") << u"change_picture_time"_s << u"1.5"_s << QByteArray("change_picture_time")
                                << QVariant(0);
    QTest::newRow("hexadecimal") << u"change_picture_time"_s << u"0x10"_s << QByteArray("change_picture_time")
                                 << QVariant(0);
    QTest::newRow("another number is true")
        << u"shuffle"_s << u"-2"_s << QByteArray("shuffle") << QVariant(true);
    QTest::newRow("a word is false") << u"created_date_show"_s << u"true"_s << QByteArray("created_date_show")
                                     << QVariant(false);
    QTest::newRow("an empty font") << u"created_date_font"_s << u""_s << QByteArray("created_date_font")
                                   << QVariant(u""_s);
    QTest::newRow("a font with blanks") << u"current_date_font"_s << u" Serif "_s
                                        << QByteArray("current_date_font") << QVariant(u" Serif "_s);
}

void tst_SettingsModel::textsOfOtherForms()
{
    QFETCH(QString, key);
    QFETCH(QString, text);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, value);

    DataStorage::instance().setSetting(key, text, -1);
    QVERIFY(m_model->setProperty(property, property.endsWith("font") ? QVariant(u"x"_s) : QVariant(true)));
    m_model->loadConfig();
    QCOMPARE(m_model->property(property), value);
    QCOMPARE(m_output->text(), QByteArray());
}

void tst_SettingsModel::aMissingRowIsZero()
{
    m_model->loadConfig();
    QVERIFY(
        stored_database::execute({u"UPDATE settings SET name = 'gone' WHERE name IN ('change_picture_time', "
                                  "'created_date_show', 'created_date_font')"_s}));
    NotifyLog log(m_model.get());
    m_model->loadConfig();
    QCOMPARE(log.taken(), QByteArrayList({"change_picture_time", "created_date_show", "created_date_font"}));
    QCOMPARE(m_model->property("change_picture_time"), QVariant(0));
    QCOMPARE(m_model->property("created_date_show"), QVariant(false));
    QCOMPARE(m_model->property("created_date_font"), QVariant(u""_s));
    QVERIFY(stored_database::execute({u"UPDATE settings SET name = 'change_picture_time' WHERE id = 1"_s,
                                      u"UPDATE settings SET name = 'created_date_show' WHERE id = 5"_s,
                                      u"UPDATE settings SET name = 'created_date_font' WHERE id = 7"_s}));
}

void tst_SettingsModel::savingOneKeyWritesOneRow_data()
{
    loadingDropsWhatWasNotSaved_data();
}

void tst_SettingsModel::savingOneKeyWritesOneRow()
{
    QFETCH(int, setting);

    const Sample &saved = samples.at(setting);
    m_model->loadConfig();
    for (const Sample &sample : samples)
        QVERIFY(m_model->setProperty(sample.property, sample.other));
    m_model->saveConfig(saved.key);

    QStringList expected = m_firstRows;
    expected[setting] = saved.key + u'|' + saved.otherText;
    QCOMPARE(globalRows(), expected);
    QCOMPARE(playlistRows(), QStringList());
    QVERIFY(lightCalls().isEmpty());
}

void tst_SettingsModel::savingOneKeyOfAPlaylist_data()
{
    loadingDropsWhatWasNotSaved_data();
}

void tst_SettingsModel::savingOneKeyOfAPlaylist()
{
    QFETCH(int, setting);

    const Sample &saved = samples.at(setting);
    m_model->setActivePlaylist(5);
    QVERIFY(m_model->setProperty(saved.property, saved.other));
    m_model->saveConfig(saved.key);
    if (saved.key == u"is_first_run"_s) {
        QCOMPARE(globalRows().at(setting), u"is_first_run|0"_s);
        QCOMPARE(playlistRows(), QStringList());
    } else {
        QCOMPARE(globalRows(), m_firstRows);
        QCOMPARE(playlistRows(), QStringList(u"%1|%2|5"_s.arg(saved.key, saved.otherText)));
    }
}

void tst_SettingsModel::unknownKeysSaveNothing_data()
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

void tst_SettingsModel::unknownKeysSaveNothing()
{
    QFETCH(QString, key);

    m_model->loadConfig();
    for (const Sample &sample : samples)
        QVERIFY(m_model->setProperty(sample.property, sample.other));
    m_model->saveConfig(key);
    QCOMPARE(globalRows(), m_firstRows);
    QCOMPARE(playlistRows(), QStringList());
    QVERIFY(lightCalls().isEmpty());
    QCOMPARE(m_output->text(), QByteArray());
}

void tst_SettingsModel::savingAllWritesEveryRowAndTheLight()
{
    m_model->setActivePlaylist(5);
    for (const Sample &sample : samples)
        QVERIFY(m_model->setProperty(sample.property, sample.other));
    SetFrontlightState(33);
    m_model->saveConfig(QString());

    QStringList expectedGlobal = m_firstRows;
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

void tst_SettingsModel::savingTheLightWritesFiveGlobalRows()
{
    m_model->setActivePlaylist(5);
    SetFrontlightState(33);
    for (const Sample &sample : samples)
        QVERIFY(m_model->setProperty(sample.property, sample.other));
    m_model->saveConfig(u"frontlight"_s);
    QCOMPARE(globalRows().mid(0, 15), m_firstRows.mid(0, 15));
    QCOMPARE(globalRows().at(15), u"frontlight_brightness|33"_s);
    QCOMPARE(globalRows().at(19), u"frontlight_enabled|1"_s);
    QCOMPARE(playlistRows(), QStringList());
    QCOMPARE(m_output->text(), QByteArray("FRONTLIGHT \t save brightness = 33 auto = 0 \r\n"));
}

void tst_SettingsModel::savingInTheOrderOfTheKeys()
{
    m_model->loadConfig();
    QVERIFY(stored_database::execute(
        {u"CREATE TABLE witnessed(id INTEGER PRIMARY KEY, what TEXT)"_s,
         u"CREATE TRIGGER witness AFTER INSERT ON settings BEGIN INSERT INTO witnessed(what) VALUES(NEW.name); END"_s}));
    m_model->saveConfig(u""_s);
    const QStringList order = stored_database::rows(u"SELECT what FROM witnessed ORDER BY id"_s);
    QVERIFY(stored_database::execute({u"DROP TRIGGER witness"_s, u"DROP TABLE witnessed"_s}));

    QStringList expected;
    for (const Sample &sample : samples)
        expected.append(sample.key);
    QCOMPARE(order, expected + lightKeys);
}

void tst_SettingsModel::savingEmitsNothing()
{
    m_model->loadConfig();
    for (const Sample &sample : samples)
        QVERIFY(m_model->setProperty(sample.property, sample.other));
    DataStorage::instance().setSetting(u"shuffle"_s, u"0"_s, -1);
    NotifyLog log(m_model.get());
    m_model->saveConfig(u""_s);
    QCOMPARE(log.taken(), QByteArrayList());
    for (const Sample &sample : samples)
        QCOMPARE(m_model->property(sample.property), sample.other);
}

void tst_SettingsModel::aPlaylistOverridesTheGlobalRow()
{
    DataStorage::instance().setSetting(u"shuffle"_s, u"1"_s, 5);
    DataStorage::instance().setSetting(u"change_picture_time"_s, u"60"_s, 5);
    m_model->loadConfig();
    NotifyLog log(m_model.get());

    m_model->setActivePlaylist(5);
    QCOMPARE(log.taken(), QByteArrayList({"change_picture_time", "shuffle"}));
    QCOMPARE(m_model->shuffle(), true);
    QCOMPARE(m_model->changePictureTime(), 60);
    QCOMPARE(m_model->property("display_mode"), QVariant(1));

    m_model->setActivePlaylist(6);
    QCOMPARE(log.taken(), QByteArrayList({"change_picture_time", "shuffle"}));
    QCOMPARE(m_model->changePictureTime(), 30);

    m_model->setActivePlaylist(5);
    m_model->setActivePlaylist(-1);
    QCOMPARE(m_model->shuffle(), false);
    QCOMPARE(m_model->changePictureTime(), 30);
}

void tst_SettingsModel::firstRunIsNeverAPlaylists()
{
    DataStorage::instance().setSetting(u"is_first_run"_s, u"0"_s, 5);
    m_model->setActivePlaylist(5);
    QCOMPARE(m_model->property("isFirstRun"), QVariant(true));
}

void tst_SettingsModel::viewsAndTheLight_data()
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

void tst_SettingsModel::viewsAndTheLight()
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
        m_model->onForeground(view);
    else if (event == 1)
        m_model->onBackground(view);
    else if (event == 2)
        m_model->changedView(view, previous);
    else
        m_model->onExit(view);
    QCOMPARE(lightCalls(), expected);
    QCOMPARE(globalRows() != m_firstRows, effect == u"leave"_s);
}

void tst_SettingsModel::enteringAndLeavingInOrder()
{
    SetFrontlightState(70);
    SetFrontlightColor(10);
    m_model->changedView(u"slideshow"_s, u"playlists"_s);
    QCOMPARE(GetFrontlightState(), 0);
    SetFrontlightState(5); // by the user, during the show
    m_model->changedView(u"playlists"_s, u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 70);
    QCOMPARE(GetFrontlightColor(), 10);
    QCOMPARE(globalRows().at(15), u"frontlight_brightness|5"_s);
    QCOMPARE(m_output->text(),
             QByteArray("FRONTLIGHT \t load brightness = 0 auto = 0 \r\nFRONTLIGHT \t save brightness = 5 "
                        "auto = 0 \r\n"));

    m_model->changedView(u"slideshow"_s, u"playlists"_s);
    QCOMPARE(GetFrontlightState(), 5);
    m_model->onBackground(u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 70);
    m_model->onForeground(u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 5);
    m_model->onExit(u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 70);
}

void tst_SettingsModel::twoModelsKeepTheirOwnLight()
{
    SettingsModel other;
    SetFrontlightState(70);
    m_model->onForeground(u"slideshow"_s);
    other.onBackground(u"slideshow"_s); // has never entered
    QCOMPARE(GetFrontlightState(), 0);
    m_model->onBackground(u"slideshow"_s);
    QCOMPARE(GetFrontlightState(), 70);
}

QTEST_GUILESS_MAIN(tst_SettingsModel)
#include "tst_settings_model.moc"
