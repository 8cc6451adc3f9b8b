// The frontlight, what keeps the device awake, and the pictures handed to its viewer.

#include <light.h>
#include <power.h>
#include <viewer.h>

#include <QSignalSpy>
#include <QTest>

using namespace lindenreed::device;

class tst_LightPower : public QObject
{
    Q_OBJECT

private slots:
    void levels_data();
    void levels();
    void switches();
    void lightTellsRealChangesOnly();
    void lightReset();
    void noLight();
    void power();
    void powerReset();
    void viewer();
};

void tst_LightPower::levels_data()
{
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("expected");

    QTest::newRow("off") << 0 << 0;
    QTest::newRow("lowest") << 1 << 1;
    QTest::newRow("highest") << 100 << 100;
    QTest::newRow("just above") << 101 << 100;
    QTest::newRow("just below") << -1 << 0;
    QTest::newRow("largest int") << std::numeric_limits<int>::max() << 100;
    QTest::newRow("smallest int") << std::numeric_limits<int>::min() << 0;
}

void tst_LightPower::levels()
{
    QFETCH(int, asked);
    QFETCH(int, expected);

    Light light;
    light.setBrightness(asked);
    QCOMPARE(light.brightness(), expected);
    QCOMPARE(light.colour(), 50);
    light.setColour(asked);
    QCOMPARE(light.colour(), expected);
}

void tst_LightPower::switches()
{
    Light light;
    QVERIFY(light.enabled());
    QVERIFY(!light.brightnessAuto());
    QVERIFY(!light.colourAuto());
    light.setEnabled(false);
    QVERIFY(!light.enabled());
    QCOMPARE(light.brightness(), 40); // the level waits for the light to come back
    light.setBrightnessAuto(true);
    QVERIFY(light.brightnessAuto());
    QVERIFY(!light.colourAuto());
    light.setColourAuto(true);
    QVERIFY(light.colourAuto());
}

void tst_LightPower::lightTellsRealChangesOnly()
{
    Light light;
    QSignalSpy changed(&light, &Light::changed);
    light.setBrightness(40);
    light.setColour(50);
    light.setEnabled(true);
    light.setBrightnessAuto(false);
    light.setColourAuto(false);
    QCOMPARE(changed.size(), 0);
    light.setBrightness(150);
    light.setBrightness(200); // still 100
    QCOMPARE(changed.size(), 1);
    light.setColour(0);
    light.setEnabled(false);
    light.setBrightnessAuto(true);
    light.setColourAuto(true);
    QCOMPARE(changed.size(), 5);
}

void tst_LightPower::lightReset()
{
    Light light;
    light.setBrightness(1);
    light.setColour(2);
    light.setEnabled(false);
    light.setBrightnessAuto(true);
    light.setColourAuto(true);
    light.reset();
    QCOMPARE(light.brightness(), 40);
    QCOMPARE(light.colour(), 50);
    QVERIFY(light.enabled());
    QVERIFY(!light.brightnessAuto());
    QVERIFY(!light.colourAuto());
}

void tst_LightPower::noLight()
{
    Light light(QString(), false);
    QSignalSpy changed(&light, &Light::changed);
    light.setBrightness(70);
    light.setColour(70);
    light.setEnabled(true);
    light.setBrightnessAuto(true);
    light.setColourAuto(true);
    light.reset();
    QCOMPARE(light.brightness(), 0);
    QCOMPARE(light.colour(), 0);
    QVERIFY(!light.enabled());
    QVERIFY(!light.brightnessAuto());
    QVERIFY(!light.colourAuto());
    QCOMPARE(changed.size(), 0);
}

void tst_LightPower::power()
{
    Power power;
    QSignalSpy changed(&power, &Power::changed);
    QVERIFY(power.autoPowerOff());
    QVERIFY(power.autoKeylock());
    power.setAutoPowerOff(true);
    power.setAutoKeylock(true);
    QCOMPARE(changed.size(), 0);
    power.setAutoPowerOff(false);
    QVERIFY(!power.autoPowerOff());
    QVERIFY(power.autoKeylock());
    power.setAutoKeylock(false);
    QVERIFY(!power.autoKeylock());
    QCOMPARE(changed.size(), 2);
    power.putOffSleep();
    power.putOffSleep();
    QCOMPARE(power.banSleep(), 2);
    QCOMPARE(changed.size(), 4);
}

void tst_LightPower::powerReset()
{
    Power power;
    power.setAutoPowerOff(false);
    power.setAutoKeylock(false);
    power.putOffSleep();
    power.reset();
    QVERIFY(power.autoPowerOff());
    QVERIFY(power.autoKeylock());
    QCOMPARE(power.banSleep(), 0);
}

void tst_LightPower::viewer()
{
    Viewer viewer;
    QSignalSpy requested(&viewer, &Viewer::requested);
    for (int i = 0; i < 100; ++i)
        viewer.open(QString::number(i));
    QCOMPARE(viewer.opened().size(), 100);
    viewer.open(QStringLiteral("100"));
    QCOMPARE(viewer.opened().size(), 100);
    QCOMPARE(viewer.opened().constFirst(), QStringLiteral("1")); // the oldest gives way
    QCOMPARE(viewer.opened().constLast(), QStringLiteral("100"));
    QCOMPARE(requested.size(), 101);
    QCOMPARE(requested.constLast().constFirst().toString(), QStringLiteral("100"));
    viewer.forget();
    QVERIFY(viewer.opened().isEmpty());
}

QTEST_GUILESS_MAIN(tst_LightPower)
#include "tst_light_power.moc"
