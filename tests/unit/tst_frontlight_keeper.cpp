#include <boardconf.h>
#include <datastorage.h>
#include <frontlight_keeper.h>
#include <slateview.h>
#include <slateview_testing.h>
#include <stderr_capture.h>
#include <stored_database.h>

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::FrontlightKeeper;

namespace {

struct Light
{
    int brightness;
    int brightnessAuto;
    int colour;
    int colourAuto;
};

const QStringList reading{u"GetFrontlightState"_s, u"hw_is_frontlight_auto"_s, u"GetFrontlightColor"_s,
                          u"hw_is_frontlight_color_auto"_s};

QStringList setting(const Light &light, int enabled)
{
    return {u"SetFrontlightState %1"_s.arg(light.brightness),
            u"hw_set_frontlight_auto_enabled %1"_s.arg(light.brightnessAuto),
            u"SetFrontlightColor %1"_s.arg(light.colour),
            u"hw_set_frontlight_color_auto_enabled %1"_s.arg(light.colourAuto),
            u"SetFrontlightEnabled %1"_s.arg(enabled)};
}

QStringList storedRows()
{
    return stored_database::rows(
        u"SELECT id, name, value, playlist FROM settings WHERE name LIKE 'frontlight%' ORDER BY id"_s);
}

QStringList rowsOf(const Light &light)
{
    return {u"16|frontlight_brightness|%1|-1"_s.arg(light.brightness),
            u"17|frontlight_brightness_auto|%1|-1"_s.arg(light.brightnessAuto),
            u"18|frontlight_smartlight|%1|-1"_s.arg(light.colour),
            u"19|frontlight_smartlight_auto|%1|-1"_s.arg(light.colourAuto), u"20|frontlight_enabled|1|-1"_s};
}

constexpr Light system_light{40, 1, 60, 0};
constexpr Light frame_light{15, 0, 25, 1};

} // namespace

class tst_FrontlightKeeper : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rememberReadsAndSetsNothing();
    void applyStoredOnANewDatabase();
    void applyStoredSetsInOrder();
    void storeWritesWhatTheDeviceShows();
    void storeSwitchesTheShowsLightOnForGood();
    void giveBackReadsThenSets();
    void aDarkDeviceIsRemembered();
    void leavingWithoutEnteringGivesBackZero();
    void aWholeVisit();
    void rememberKeepsTheSystemsLight();
    void rememberTakesADifferentLight_data();
    void rememberTakesADifferentLight();
    void twoEntriesLoseTheSystemsLight();
    void anAutomaticValueOfTwo();
    void valuesThatAreNoNumbers();
    void aDatabaseThatFailsDoesNotStopTheHandOver();

private:
    QStringList calls();
    void setDevice(const Light &light);
    void setRow(const QString &key, const QString &value);

    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<StderrCapture> m_output;
};

void tst_FrontlightKeeper::init()
{
    m_device = std::make_unique<DeviceForTest>();
    DataStorage &store = DataStorage::instance();
    stored_database::hurry();
    for (const QString &key :
         {u"frontlight_brightness"_s, u"frontlight_brightness_auto"_s, u"frontlight_smartlight"_s,
          u"frontlight_smartlight_auto"_s, u"frontlight_enabled"_s})
        store.setSetting(key, u"0"_s, -1);
    setDevice(system_light);
    m_output = std::make_unique<StderrCapture>();
}

void tst_FrontlightKeeper::cleanup()
{
    m_output.reset();
    m_device.reset();
}

/// The calls since the last time, each with its arguments; log lines are no part of the hand-over.
QStringList tst_FrontlightKeeper::calls()
{
    QStringList result;
    for (const SdkCall &call : m_device->calls()) {
        if (call.name != "lr_print_log2")
            result.append(QString::fromUtf8((QByteArrayList{call.name} + call.arguments).join(' ')));
    }
    m_device->forgetCalls();
    return result;
}

void tst_FrontlightKeeper::setDevice(const Light &light)
{
    SetFrontlightState(light.brightness);
    hw_set_frontlight_auto_enabled(light.brightnessAuto);
    SetFrontlightColor(light.colour);
    hw_set_frontlight_color_auto_enabled(light.colourAuto);
    m_device->forgetCalls();
}

void tst_FrontlightKeeper::setRow(const QString &key, const QString &value)
{
    DataStorage::instance().setSetting(key, value, -1);
}

void tst_FrontlightKeeper::rememberReadsAndSetsNothing()
{
    FrontlightKeeper keeper;
    keeper.remember();
    QCOMPARE(calls(), reading);
    QCOMPARE(m_output->text(), QByteArray());
    QCOMPARE(storedRows(),
             QStringList({u"16|frontlight_brightness|0|-1"_s, u"17|frontlight_brightness_auto|0|-1"_s,
                          u"18|frontlight_smartlight|0|-1"_s, u"19|frontlight_smartlight_auto|0|-1"_s,
                          u"20|frontlight_enabled|0|-1"_s}));
}

void tst_FrontlightKeeper::applyStoredOnANewDatabase()
{
    FrontlightKeeper keeper;
    keeper.applyStored();
    QCOMPARE(calls(), setting({0, 0, 0, 0}, 0));
    QCOMPARE(m_output->text(), QByteArray("FRONTLIGHT \t load brightness = 0 auto = 0 \r\n"));
}

void tst_FrontlightKeeper::applyStoredSetsInOrder()
{
    setRow(u"frontlight_brightness"_s, u"15"_s);
    setRow(u"frontlight_smartlight"_s, u"25"_s);
    setRow(u"frontlight_smartlight_auto"_s, u"-3"_s);
    setRow(u"frontlight_enabled"_s, u"7"_s);
    DataStorage::instance().setSetting(u"frontlight_brightness"_s, u"99"_s,
                                       5); // no playlist has a light of its own

    FrontlightKeeper keeper;
    keeper.applyStored();
    QCOMPARE(calls(), setting(frame_light, 1));
    QCOMPARE(m_output->text(), QByteArray("FRONTLIGHT \t load brightness = 15 auto = 0 \r\n"));
    QVERIFY(stored_database::execute({u"DELETE FROM settings WHERE playlist = 5"_s}));
}

void tst_FrontlightKeeper::storeWritesWhatTheDeviceShows()
{
    FrontlightKeeper keeper;
    keeper.store();
    // The line asks for itself, and each row asks anew.
    QCOMPARE(calls(), QStringList({u"GetFrontlightState"_s, u"hw_is_frontlight_auto"_s}) + reading);
    QCOMPARE(m_output->text(), QByteArray("FRONTLIGHT \t save brightness = 40 auto = 1 \r\n"));
    QCOMPARE(storedRows(), rowsOf(system_light));
}

void tst_FrontlightKeeper::storeSwitchesTheShowsLightOnForGood()
{
    SetFrontlightEnabled(0);
    FrontlightKeeper keeper;
    keeper.store();
    QCOMPARE(storedRows().last(), u"20|frontlight_enabled|1|-1"_s);
}

void tst_FrontlightKeeper::giveBackReadsThenSets()
{
    FrontlightKeeper keeper;
    keeper.remember();
    setDevice(frame_light);
    keeper.giveBack();
    QCOMPARE(calls(), reading + setting(system_light, 1));
    QCOMPARE(m_output->text(), QByteArray());
    QCOMPARE(storedRows().first(), u"16|frontlight_brightness|0|-1"_s);
}

void tst_FrontlightKeeper::aDarkDeviceIsRemembered()
{
    setDevice({0, 0, 0, 0});
    FrontlightKeeper keeper;
    keeper.remember(); // equals the show's light only as long as no show has been left
    calls();
    setDevice(frame_light);
    keeper.giveBack();
    QCOMPARE(calls(), reading + setting({0, 0, 0, 0}, 1));
}

void tst_FrontlightKeeper::leavingWithoutEnteringGivesBackZero()
{
    FrontlightKeeper keeper;
    keeper.store();
    calls();
    keeper.giveBack();
    QCOMPARE(calls(), reading + setting({0, 0, 0, 0}, 0));
}

void tst_FrontlightKeeper::aWholeVisit()
{
    FrontlightKeeper keeper;
    keeper.remember();
    keeper.applyStored();
    setDevice(frame_light); // the user, during the show
    keeper.store();
    keeper.giveBack();
    QCOMPARE(storedRows(), rowsOf(frame_light));
    QCOMPARE(GetFrontlightState(), 40);
    QCOMPARE(hw_is_frontlight_auto(), 1);
    QCOMPARE(GetFrontlightColor(), 60);
    QCOMPARE(hw_is_frontlight_color_auto(), 0);

    calls();
    m_output->forget();
    keeper.remember();
    keeper.applyStored();
    QCOMPARE(calls(), reading + setting(frame_light, 1));
    QCOMPARE(m_output->text(), QByteArray("FRONTLIGHT \t load brightness = 15 auto = 0 \r\n"));
}

void tst_FrontlightKeeper::rememberKeepsTheSystemsLight()
{
    FrontlightKeeper keeper;
    keeper.remember();
    setDevice(frame_light);
    keeper.giveBack();

    setDevice(frame_light); // as the show was left: not taken for the device's own
    keeper.remember();
    calls();
    keeper.giveBack();
    QCOMPARE(calls(), reading + setting(system_light, 1));
}

void tst_FrontlightKeeper::rememberTakesADifferentLight_data()
{
    QTest::addColumn<int>("brightness");
    QTest::addColumn<int>("brightnessAuto");
    QTest::addColumn<int>("colour");
    QTest::addColumn<int>("colourAuto");

    QTest::newRow("another brightness") << 16 << 0 << 25 << 1;
    QTest::newRow("another automatic brightness") << 15 << 1 << 25 << 1;
    QTest::newRow("another colour") << 15 << 0 << 26 << 1;
    QTest::newRow("another automatic colour") << 15 << 0 << 25 << 0;
    QTest::newRow("all zero") << 0 << 0 << 0 << 0;
}

void tst_FrontlightKeeper::rememberTakesADifferentLight()
{
    QFETCH(int, brightness);
    QFETCH(int, brightnessAuto);
    QFETCH(int, colour);
    QFETCH(int, colourAuto);

    FrontlightKeeper keeper;
    keeper.remember();
    setDevice(frame_light);
    keeper.giveBack();

    const Light another{brightness, brightnessAuto, colour, colourAuto};
    setDevice(another);
    keeper.remember();
    calls();
    keeper.giveBack();
    QCOMPARE(calls(), reading + setting(another, 1));
}

void tst_FrontlightKeeper::twoEntriesLoseTheSystemsLight()
{
    setRow(u"frontlight_brightness"_s, u"15"_s);
    FrontlightKeeper keeper;
    keeper.remember();
    keeper.applyStored();
    keeper.remember();
    keeper.applyStored();
    calls();
    keeper.giveBack();
    QCOMPARE(calls(), reading + setting({15, 0, 0, 0}, 1));
}

void tst_FrontlightKeeper::anAutomaticValueOfTwo()
{
    setRow(u"frontlight_brightness_auto"_s, u"2"_s);
    FrontlightKeeper keeper;
    keeper.applyStored();
    QCOMPARE(m_output->text(), QByteArray("FRONTLIGHT \t load brightness = 0 auto = 2 \r\n"));
    QCOMPARE(calls(), setting({0, 1, 0, 0}, 0));
}

void tst_FrontlightKeeper::valuesThatAreNoNumbers()
{
    setRow(u"frontlight_brightness"_s, u"bright"_s);
    setRow(u"frontlight_brightness_auto"_s, u"true"_s);
    setRow(u"frontlight_smartlight"_s, u"99999999999"_s);
    setRow(u"frontlight_smartlight_auto"_s, u""_s);
    setRow(u"frontlight_enabled"_s, u"on"_s);
    FrontlightKeeper keeper;
    keeper.applyStored();
    QCOMPARE(m_output->text(), QByteArray("FRONTLIGHT \t load brightness = 0 auto = 0 \r\n"));
    QCOMPARE(calls(), setting({0, 0, 0, 0}, 0));
}

void tst_FrontlightKeeper::aDatabaseThatFailsDoesNotStopTheHandOver()
{
    QVERIFY(stored_database::execute({u"ALTER TABLE settings RENAME TO hidden"_s}));
    FrontlightKeeper keeper;
    keeper.remember();
    keeper.applyStored();
    QCOMPARE(calls(), reading + setting({0, 0, 0, 0}, 0));
    keeper.store();
    calls();
    keeper.giveBack();
    QCOMPARE(calls(), reading + setting(system_light, 1));
    // Seven reads and five writes, each with its line.
    QCOMPARE(m_output->logLines(u"picture_stand/src/datastorage"_s).size(), 12);
    QVERIFY(stored_database::execute({u"ALTER TABLE hidden RENAME TO settings"_s}));
}

QTEST_GUILESS_MAIN(tst_FrontlightKeeper)
#include "tst_frontlight_keeper.moc"
