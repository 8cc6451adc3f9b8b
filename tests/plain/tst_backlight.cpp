// A light of the machine: a folder as the kernel has it, and a logind that the test plays.

#include "obeyed_permissions.h"
#include "private_bus.h"
#include "stderr_capture.h"

#include <device.h>
#include <light.h>

#include <QDBusContext>
#include <QDBusMessage>
#include <QDir>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

/// Keeps what it is asked for.
class LogindSession : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Session")

public:
    explicit LogindSession(const PrivateBus &bus)
    {
        QDBusConnection connection = bus.connection();
        connection.registerObject(u"/org/freedesktop/login1/session/auto"_s, this,
                                  QDBusConnection::ExportAllSlots);
        connection.registerService(u"org.freedesktop.login1"_s);
    }

    QList<uint> values;
    QStringList names;
    bool refuses = false;

public slots:
    void SetBrightness(const QString &subsystem, const QString &name, uint value)
    {
        names = {subsystem, name};
        values.append(value);
        if (refuses)
            sendErrorReply(QDBusError::AccessDenied, u"not yours"_s);
    }
};

class tst_Backlight : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void startsAsItIs_data();
    void startsAsItIs();
    void unusable_data();
    void unusable();
    void writesWhatItMay();
    void passesLevelsOn_data();
    void passesLevelsOn();
    void onAndOff();
    void everyChangeInOrder();
    void givenBackWhileLeaving();
    void whatIsNotBrightnessStays();
    void refusal();
    void noBus();
    void hangingBus();
    void busThatDies();
    void deviceNamesIt();

private:
    QString folder() const { return m_class->filePath(u"panel_light"_s); }
    /// A file that is not ours to write, as the kernel's are.
    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(folder() + u'/' + name);
        file.remove();
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()
            || !file.setPermissions(QFile::ReadOwner))
            qFatal("The test's file cannot be written.");
    }
    static qsizetype complaints(const StderrCapture &errors) { return errors.text().count('\n'); }

    const ObeyedPermissions m_permissions;
    std::unique_ptr<QTemporaryDir> m_class;
};

void tst_Backlight::init()
{
    m_class = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir().mkpath(folder()));
    write(u"max_brightness"_s, "255\n");
    write(u"brightness"_s, "102\n");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere/bus");
}

void tst_Backlight::startsAsItIs_data()
{
    QTest::addColumn<QByteArray>("most");
    QTest::addColumn<QByteArray>("now");
    QTest::addColumn<int>("level");

    QTest::newRow("in between") << QByteArray("255\n") << QByteArray("102\n") << 40;
    QTest::newRow("dark") << QByteArray("255\n") << QByteArray("0\n") << 0;
    QTest::newRow("full") << QByteArray("255\n") << QByteArray("255\n") << 100;
    QTest::newRow("coarse") << QByteArray("3\n") << QByteArray("1\n") << 33;
    QTest::newRow("on and off only") << QByteArray("1") << QByteArray("1") << 100;
    QTest::newRow("fine") << QByteArray("1000000\n") << QByteArray("250000\n") << 25;
}

void tst_Backlight::startsAsItIs()
{
    QFETCH(QByteArray, most);
    QFETCH(QByteArray, now);
    QFETCH(int, level);

    write(u"max_brightness"_s, most);
    write(u"brightness"_s, now);
    const StderrCapture errors;
    const Light light(folder());
    QCOMPARE(light.brightness(), level);
    QVERIFY(light.enabled());
    QCOMPARE(errors.text(), QByteArray());
}

void tst_Backlight::unusable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content"); // null: the file is missing

    const QString most = u"max_brightness"_s;
    const QString now = u"brightness"_s;
    QTest::newRow("no highest value") << most << QByteArray();
    QTest::newRow("empty highest value") << most << QByteArray("");
    QTest::newRow("highest value 0") << most << QByteArray("0\n");
    QTest::newRow("highest value below 0") << most << QByteArray("-5\n");
    QTest::newRow("highest value beyond reason") << most << QByteArray("1000001\n");
    QTest::newRow("highest value beyond 32 bits") << most << QByteArray("99999999999\n");
    QTest::newRow("highest value is no number") << most << QByteArray("full\n");
    QTest::newRow("no value") << now << QByteArray();
    QTest::newRow("value above the highest") << now << QByteArray("256\n");
    QTest::newRow("value is no number") << now << QByteArray("\xff\x01\n");
}

void tst_Backlight::unusable()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);

    if (content.isNull())
        QVERIFY(QFile::remove(folder() + u'/' + name));
    else
        write(name, content);
    const StderrCapture errors;
    Light light(folder());
    QCOMPARE(complaints(errors), 1);
    QVERIFY(errors.text().contains(u"no backlight: %1/%2"_s.arg(folder(), name).toUtf8()));
    QCOMPARE(light.brightness(), 40);
    light.setBrightness(70); // in memory
    QCOMPARE(light.brightness(), 70);
    QCOMPARE(complaints(errors), 1);
}

void tst_Backlight::writesWhatItMay()
{
    const PrivateBus bus;
    const LogindSession session(bus);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    QFile file(folder() + u"/brightness"_s);
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    const auto content = [&file] { return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray(); };
    const StderrCapture errors;
    Light light(folder());
    light.setBrightness(100);
    QCOMPARE(content(), QByteArray("255"));
    file.close();
    light.setEnabled(false);
    QCOMPARE(content(), QByteArray("0"));
    file.close();
    QVERIFY(file.setPermissions(QFile::ReadOwner)); // and when it may no longer, logind is asked
    light.setEnabled(true);
    QTRY_COMPARE(session.values, QList<uint>{255});
    QCOMPARE(errors.text(), QByteArray());
    QVERIFY(file.remove());
    light.setBrightness(20);
    QTRY_COMPARE(session.values, QList<uint>({255, 51}));
    QVERIFY(!file.exists());
}

void tst_Backlight::passesLevelsOn_data()
{
    QTest::addColumn<QByteArray>("most");
    QTest::addColumn<int>("level");
    QTest::addColumn<uint>("value");

    QTest::newRow("full") << QByteArray("255") << 100 << 255U;
    QTest::newRow("half") << QByteArray("255") << 50 << 128U;
    QTest::newRow("dark") << QByteArray("255") << 0 << 0U;
    QTest::newRow("lowest light of a fine one") << QByteArray("100000") << 1 << 1000U;
    QTest::newRow("lowest light of a coarse one") << QByteArray("7") << 1 << 1U;
    QTest::newRow("beyond") << QByteArray("7") << 1000 << 7U;
}

void tst_Backlight::passesLevelsOn()
{
    QFETCH(QByteArray, most);
    QFETCH(int, level);
    QFETCH(uint, value);

    write(u"max_brightness"_s, most);
    write(u"brightness"_s, "3");
    const PrivateBus bus;
    const LogindSession session(bus);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    Light light(folder());
    light.setBrightness(level);
    QTRY_COMPARE(session.values, QList<uint>{value});
    QCOMPARE(session.names, QStringList({u"backlight"_s, u"panel_light"_s}));
}

void tst_Backlight::onAndOff()
{
    const PrivateBus bus;
    const LogindSession session(bus);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    Light light(folder());
    light.setEnabled(false);
    QTRY_COMPARE(session.values, QList<uint>{0});
    light.setBrightness(100); // waits for the light to come back
    QCOMPARE(light.brightness(), 100);
    light.setEnabled(true);
    QTRY_COMPARE(session.values, QList<uint>({0, 255}));
}

void tst_Backlight::everyChangeInOrder()
{
    const PrivateBus bus;
    const LogindSession session(bus);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    write(u"max_brightness"_s, "100");
    write(u"brightness"_s, "0");
    Light light(folder());
    QList<uint> expected;
    for (uint level = 1; level <= 100; ++level) {
        light.setBrightness(int(level));
        expected.append(level);
    }
    QTRY_COMPARE(session.values, expected);
}

void tst_Backlight::givenBackWhileLeaving()
{
    const PrivateBus bus;
    const LogindSession session(bus);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    {
        Light light(folder());
        light.setBrightness(100);
        QTRY_COMPARE(session.values.size(), 1);
        light.setBrightness(40);
    } // no turn of the loop in between
    QTRY_COMPARE(session.values, QList<uint>({255, 102}));
}

void tst_Backlight::whatIsNotBrightnessStays()
{
    const PrivateBus bus;
    const LogindSession session(bus);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    Light light(folder());
    QSignalSpy changed(&light, &Light::changed);
    light.setColour(10);
    light.setColourAuto(true);
    light.setBrightnessAuto(true);
    light.setBrightness(40); // as it is
    light.setBrightness(41);
    QCOMPARE(changed.size(), 4);
    QTRY_COMPARE(session.values, QList<uint>{105});
}

void tst_Backlight::refusal()
{
    const PrivateBus bus;
    LogindSession session(bus);
    session.refuses = true;
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    const StderrCapture errors;
    Light light(folder());
    for (int level = 50; level < 60; ++level)
        light.setBrightness(level);
    QTRY_COMPARE(session.values.size(), 10);
    QTRY_COMPARE(complaints(errors), 1);
    QVERIFY(errors.text().contains("the backlight panel_light cannot be set: not yours"));
    QCOMPARE(light.brightness(), 59);
    // Answers come in order: with the next complaint all those before it have been dealt with.
    session.refuses = false;
    light.setBrightness(60);
    QTRY_COMPARE(session.values.size(), 11);
    session.refuses = true;
    light.setBrightness(61);
    QTRY_COMPARE(complaints(errors), 2);
}

void tst_Backlight::noBus()
{
    const StderrCapture errors;
    Light light(folder());
    for (int level = 50; level < 60; ++level) {
        light.setBrightness(level);
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(complaints(errors), 1);
    QCOMPARE(light.brightness(), 59);
}

void tst_Backlight::hangingBus()
{
    const HangingBus bus;
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    const StderrCapture errors;
    QElapsedTimer time;
    time.start();
    Light light(folder());
    for (int level = 50; level < 100; ++level)
        light.setBrightness(level);
    QVERIFY2(time.elapsed() < 300, "the caller waited for the bus");
    QTRY_COMPARE(complaints(errors), 1);
    QCOMPARE(light.brightness(), 99);
}

void tst_Backlight::busThatDies()
{
    auto bus = std::make_unique<PrivateBus>();
    auto session = std::make_unique<LogindSession>(*bus);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus->address().toUtf8());
    const StderrCapture errors;
    Light light(folder());
    light.setBrightness(50);
    QTRY_COMPARE(session->values.size(), 1);
    bus->end();
    QTRY_COMPARE(complaints(errors), 1);
    light.setBrightness(60);

    const PrivateBus next;
    const LogindSession again(next);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", next.address().toUtf8());
    QTRY_VERIFY((light.setBrightness(light.brightness() == 70 ? 71 : 70), !again.values.isEmpty()));
}

void tst_Backlight::deviceNamesIt()
{
    const StderrCapture errors;
    Profile profile;
    Device::start(profile);
    Device::stop();
    QCOMPARE(errors.text(), QByteArray());
    profile.backlight = u"no-such-light"_s;
    Device::start(profile);
    QCOMPARE(Device::instance()->light.brightness(), 40);
    Device::stop();
    QCOMPARE(complaints(errors), 1);
    QVERIFY(errors.text().contains("/sys/class/backlight/no-such-light/max_brightness"));
}

QTEST_GUILESS_MAIN(tst_Backlight)
#include "tst_backlight.moc"
