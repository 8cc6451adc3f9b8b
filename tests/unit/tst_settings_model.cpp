// Settings as they are loaded and assigned.

#include "settings_fixture.h"

#include <boardconf.h>
#include <slateview.h>

using lindenreed::picture_stand::SettingsModel;

namespace {

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
    void initTestCase() { SettingsFixture::firstRows(); }
    void init() { m_test = std::make_unique<SettingsFixture>(); }
    void cleanup() { m_test.reset(); }

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
    void everyByteOfAFont();
    void aMissingRowIsZero();
    void aPlaylistOverridesTheGlobalRow();
    void savingEmitsNothing();

private:
    std::unique_ptr<SettingsFixture> m_test;
};

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
        const QVariant value = m_test->model->property(sample.property);
        QCOMPARE(value, QVariant(value.metaType(), nullptr)); // 0, false or empty
    }
    QVERIFY(m_test->lightCalls().isEmpty());
}

void tst_SettingsModel::aNewDatabaseLoads()
{
    m_test->model->loadConfig();
    for (const Sample &sample : samples)
        QCOMPARE(m_test->model->property(sample.property), sample.first);
    QCOMPARE(m_test->model->shuffle(), false);
    QCOMPARE(m_test->model->changePictureTime(), 30);
    QVERIFY(m_test->lightCalls().isEmpty());
    QCOMPARE(m_test->output->text(), QByteArray());
    QCOMPARE(globalRows(), SettingsFixture::firstRows());
}

void tst_SettingsModel::loadingEmitsInTheOrderOfTheKeys()
{
    NotifyLog log(m_test->model.get());
    m_test->model->loadConfig();
    // What is 0, false or empty already does not change.
    QCOMPARE(
        log.taken(),
        QByteArrayList({"change_picture_time", "display_mode", "created_date_show", "created_date_position",
                        "created_date_font", "current_date_font", "isFirstRun"}));
    for (const Sample &sample : samples)
        DataStorage::instance().setSetting(sample.key, sample.otherText, -1);
    m_test->model->loadConfig();
    QCOMPARE(log.taken(), allProperties());
}

void tst_SettingsModel::loadingTwiceEmitsOnce()
{
    m_test->model->loadConfig();
    NotifyLog log(m_test->model.get());
    m_test->model->loadConfig();
    QCOMPARE(log.taken(), QByteArrayList());
}

void tst_SettingsModel::aListenerSeesTheLaterKeysInTheirOldState()
{
    m_test->model->loadConfig();
    for (const Sample &sample : samples)
        DataStorage::instance().setSetting(sample.key, sample.otherText, -1);

    NotifyLog log(m_test->model.get());
    int position = 0;
    QStringList unexpected;
    log.onNote = [&](const QByteArray &) {
        for (int i = 0; i < samples.size(); ++i) {
            const QVariant expected = i <= position ? samples.at(i).other : samples.at(i).first;
            if (m_test->model->property(samples.at(i).property) != expected)
                unexpected.append(u"%1 at %2"_s.arg(samples.at(i).key).arg(position));
        }
        // A key that has not been read yet is read after this.
        if (position == 0)
            DataStorage::instance().setSetting(u"is_first_run"_s, u"1"_s, -1);
        ++position;
    };
    m_test->model->loadConfig();
    QCOMPARE(unexpected, QStringList());
    QByteArrayList expected = allProperties();
    expected.removeLast();
    QCOMPARE(log.taken(), expected);
}

void tst_SettingsModel::loadingDropsWhatWasNotSaved_data()
{
    rowForEachSetting();
}

void tst_SettingsModel::loadingDropsWhatWasNotSaved()
{
    QFETCH(int, setting);

    const Sample &sample = samples.at(setting);
    m_test->model->loadConfig();
    QVERIFY(m_test->model->setProperty(sample.property, sample.other));
    NotifyLog log(m_test->model.get());
    m_test->model->loadConfig();
    QCOMPARE(m_test->model->property(sample.property), sample.first);
    QCOMPARE(log.taken(), QByteArrayList{sample.property});
    QCOMPARE(globalRows(), SettingsFixture::firstRows());
}

void tst_SettingsModel::assigningNotifiesOnChangeOnly_data()
{
    rowForEachSetting();
}

void tst_SettingsModel::assigningNotifiesOnChangeOnly()
{
    QFETCH(int, setting);

    const Sample &sample = samples.at(setting);
    m_test->model->loadConfig();
    NotifyLog log(m_test->model.get());
    QVERIFY(m_test->model->setProperty(sample.property, sample.first));
    QCOMPARE(log.taken(), QByteArrayList());
    QVERIFY(m_test->model->setProperty(sample.property, sample.other));
    QCOMPARE(log.taken(), QByteArrayList{sample.property});
    QCOMPARE(m_test->model->property(sample.property), sample.other);
    QVERIFY(m_test->model->setProperty(sample.property, sample.other));
    QCOMPARE(log.taken(), QByteArrayList());
    QCOMPARE(globalRows(), SettingsFixture::firstRows());
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
    QVERIFY(
        m_test->model->setProperty(property, property.endsWith("font") ? QVariant(u"x"_s) : QVariant(true)));
    m_test->model->loadConfig();
    QCOMPARE(m_test->model->property(property), value);
    QCOMPARE(m_test->output->text(), QByteArray());
}

/// As any program may have stored it. What is no character becomes one, here and there another.
void tst_SettingsModel::everyByteOfAFont()
{
    for (int byte = 1; byte < 256; ++byte) {
        const QByteArray name = "A" + QByteArray(1, char(byte)) + "b";
        QVERIFY(stored_database::execute({u"UPDATE settings SET value = CAST(x'%1' AS TEXT) WHERE name = "
                                          "'created_date_font'"_s.arg(QString::fromLatin1(name.toHex()))}));
        m_test->model->loadConfig();
        const QString font = m_test->model->property("created_date_font").toString();
        if (byte < 0x80)
            QCOMPARE(font, QString::fromLatin1(name));
        QVERIFY2(font.size() == 3 && font.front() == u'A' && font.back() == u'b', qPrintable(font));
    }
    QCOMPARE(m_test->output->text(), QByteArray());
}

void tst_SettingsModel::aMissingRowIsZero()
{
    m_test->model->loadConfig();
    QVERIFY(
        stored_database::execute({u"UPDATE settings SET name = 'gone' WHERE name IN ('change_picture_time', "
                                  "'created_date_show', 'created_date_font')"_s}));
    NotifyLog log(m_test->model.get());
    m_test->model->loadConfig();
    QCOMPARE(log.taken(), QByteArrayList({"change_picture_time", "created_date_show", "created_date_font"}));
    QCOMPARE(m_test->model->property("change_picture_time"), QVariant(0));
    QCOMPARE(m_test->model->property("created_date_show"), QVariant(false));
    QCOMPARE(m_test->model->property("created_date_font"), QVariant(u""_s));
    QVERIFY(stored_database::execute({u"UPDATE settings SET name = 'change_picture_time' WHERE id = 1"_s,
                                      u"UPDATE settings SET name = 'created_date_show' WHERE id = 5"_s,
                                      u"UPDATE settings SET name = 'created_date_font' WHERE id = 7"_s}));
}

void tst_SettingsModel::savingEmitsNothing()
{
    m_test->model->loadConfig();
    for (const Sample &sample : samples)
        QVERIFY(m_test->model->setProperty(sample.property, sample.other));
    DataStorage::instance().setSetting(u"shuffle"_s, u"0"_s, -1);
    NotifyLog log(m_test->model.get());
    m_test->model->saveConfig(u""_s);
    QCOMPARE(log.taken(), QByteArrayList());
    for (const Sample &sample : samples)
        QCOMPARE(m_test->model->property(sample.property), sample.other);
}

void tst_SettingsModel::aPlaylistOverridesTheGlobalRow()
{
    DataStorage::instance().setSetting(u"shuffle"_s, u"1"_s, 5);
    DataStorage::instance().setSetting(u"change_picture_time"_s, u"60"_s, 5);
    m_test->model->loadConfig();
    NotifyLog log(m_test->model.get());

    m_test->model->setActivePlaylist(5);
    QCOMPARE(log.taken(), QByteArrayList({"change_picture_time", "shuffle"}));
    QCOMPARE(m_test->model->shuffle(), true);
    QCOMPARE(m_test->model->changePictureTime(), 60);
    QCOMPARE(m_test->model->property("display_mode"), QVariant(1));

    m_test->model->setActivePlaylist(6);
    QCOMPARE(log.taken(), QByteArrayList({"change_picture_time", "shuffle"}));
    QCOMPARE(m_test->model->changePictureTime(), 30);

    m_test->model->setActivePlaylist(5);
    m_test->model->setActivePlaylist(-1);
    QCOMPARE(m_test->model->shuffle(), false);
    QCOMPARE(m_test->model->changePictureTime(), 30);
}

QTEST_GUILESS_MAIN(tst_SettingsModel)
#include "tst_settings_model.moc"
