// The device's life: start, stop, start again; and the device that tests get.

#include <device.h>
#include <facts.h>
#include <panel_levels.h>
#include <paths.h>
#include <slateview_testing.h>
#include <texts.h>
#include <theme.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <cstdio>

#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;
using namespace std::chrono_literals;

namespace {

constexpr char profileArgument[] = "--with-profiles";

} // namespace

class tst_Device : public QObject
{
    Q_OBJECT

private slots:
    void before();
    void startAndStop();
    void luminancesOfTheProfileCount();
    void startsAgain();
    void stopForgetsTimersAndHandler();
    void stopFromATimer();
    void deviceForTestIsFresh();
    void deviceForTestStartsOneOfItsOwn();
    void deviceForTestSets();
    void deviceForTestFires();
    void deviceForTestWantsItsProfile_data();
    void deviceForTestWantsItsProfile();
};

void tst_Device::before()
{
    QCOMPARE(Device::instance(), nullptr);
    QCOMPARE(facts().width.load(), 758);
    QCOMPARE(facts().height.load(), 1024);
    QCOMPARE(facts().dpi.load(), 212);
    QCOMPARE(facts().colourMask.load(), 0);
    QCOMPARE(theme::integer("e3.galery_cover.width", 7), 7);
    QCOMPARE(texts::text("@PlayItem"), nullptr);
    QCOMPARE(QCoreApplication::translate("A", "@PlayItem"), u"@PlayItem"_s);
    Device::stop(); // harmless
}

void tst_Device::startAndStop()
{
    Profile profile;
    profile.panelSize = QSize(300, 400);
    profile.dpi = 100;
    profile.colourMask = 1;
    profile.platformNumber = 17;
    Device::start(profile);
    QVERIFY(Device::instance());
    QCOMPARE(Device::instance()->profile.panelSize, QSize(300, 400));
    QCOMPARE(Device::instance()->screen.size(), QSize(300, 400));
    QCOMPARE(facts().width.load(), 300);
    QCOMPARE(facts().height.load(), 400);
    QCOMPARE(facts().dpi.load(), 100);
    QCOMPARE(facts().colourMask.load(), 1);
    QCOMPARE(facts().platformNumber.load(), 17);
    QCOMPARE(theme::integer("e3.galery_cover.width", 7), 220);
    QCOMPARE(theme::integer("e3.galery_cover.height", 7), 220);
    QCOMPARE(theme::integer("no.such.number", 7), 7);
    QCOMPARE(QByteArray(texts::text("@PlayItem")), QByteArray("Play"));
    QCOMPARE(QCoreApplication::translate("A", "@PlayItem"), u"Play"_s);
    QVERIFY(!Device::instance()->previousOrientation);
    QCOMPARE(Device::instance()->localizationType, 0);
    QCOMPARE(Device::instance()->customizedPartner, 0);

    Device::stop();
    QCOMPARE(Device::instance(), nullptr);
    // What any thread may read stays: a worker may outlive the device.
    QCOMPARE(facts().width.load(), 300);
    QCOMPARE(facts().colourMask.load(), 1);
    QCOMPARE(QByteArray(texts::text("@PlayItem")), QByteArray("Play"));
    QCOMPARE(theme::integer("e3.galery_cover.width", 7), 220);
}

void tst_Device::luminancesOfTheProfileCount()
{
    QCOMPARE(levelCurve(), lindenreed::pixels::evenLevels());
    Profile profile;
    profile.luminances = lindenreed::pixels::luminancesByGamma(0.01, 0.5, 1.3);
    Device::start(profile);
    QCOMPARE(levelCurve(), lindenreed::pixels::curveFor(*profile.luminances));
    QVERIFY(levelCurve() != lindenreed::pixels::evenLevels());
    Device::stop();
    Device::start(Profile());
    QCOMPARE(levelCurve(), lindenreed::pixels::evenLevels());
    Device::stop();
}

void tst_Device::startsAgain()
{
    Device::start(Profile());
    Device::instance()->screen.setOrientation(1);
    Device::instance()->screen.setInverted(true);
    Device::instance()->light.setBrightness(3);
    Device::stop();
    Device::start(Profile());
    QCOMPARE(Device::instance()->screen.orientation(), 0);
    QCOMPARE(facts().width.load(), 758);
    QVERIFY(!facts().inverted);
    QCOMPARE(facts().dpi.load(), 212);
    QCOMPARE(facts().colourMask.load(), 0);
    QCOMPARE(facts().platformNumber.load(), 0);
    QCOMPARE(Device::instance()->light.brightness(), 40);
    Device::stop();
}

void tst_Device::stopForgetsTimersAndHandler()
{
    static int calls;
    calls = 0;
    Device::start(Profile());
    Device::instance()->timers.arm(
        "a", [](void *) { ++calls; }, nullptr, 0ms);
    Device::instance()->events.setHandler([](int, int, int) { return ++calls; });
    Device::instance()->events.post(1, 0, 0);
    Device::stop();
    bool turned = false;
    QTimer::singleShot(20, this, [&turned] { turned = true; });
    QTRY_VERIFY(turned);
    QCOMPARE(calls, 0);
}

void tst_Device::stopFromATimer()
{
    Device::start(Profile());
    Device::instance()->timers.arm(
        "end", [](void *) { Device::stop(); }, nullptr, 0ms);
    QTRY_VERIFY(!Device::instance());
}

void tst_Device::deviceForTestIsFresh()
{
    Device::start(Profile());
    Device &device = *Device::instance();
    device.screen.setOrientation(2);
    device.screen.setPanelType(0);
    device.light.setBrightness(3);
    device.power.setAutoPowerOff(false);
    device.viewer.open(u"/a"_s);
    device.events.setHandler([](int, int, int) { return 0; });
    device.timers.arm(
        "a", [](void *) {}, nullptr, 1h);
    device.previousOrientation = 2;
    journal::record("Former");
    {
        DeviceForTest fresh;
        QCOMPARE(Device::instance(), &device); // the one that runs already
        QCOMPARE(device.screen.orientation(), 0);
        QCOMPARE(device.screen.panelType(), 1);
        QCOMPARE(device.light.brightness(), 40);
        QVERIFY(device.power.autoPowerOff());
        QVERIFY(device.viewer.opened().isEmpty());
        QVERIFY(!device.events.hasHandler());
        QVERIFY(device.timers.pending().isEmpty());
        QVERIFY(!device.previousOrientation);
        QVERIFY(fresh.calls().isEmpty());

        device.events.setHandler([](int, int, int) { return 0; });
        device.timers.arm(
            "a", [](void *) {}, nullptr, 1h);
        journal::record("Own");
        fresh.setColourMask(1);
    }
    QCOMPARE(Device::instance(), &device);
    QVERIFY(!device.events.hasHandler());
    QVERIFY(device.timers.pending().isEmpty());
    QVERIFY(journal::entries().isEmpty());
    QCOMPARE(facts().colourMask.load(), 0);
    Device::stop();
}

void tst_Device::deviceForTestStartsOneOfItsOwn()
{
    QVERIFY(!Device::instance());
    {
        DeviceForTest colour(u"colour-6"_s);
        QVERIFY(Device::instance());
        QCOMPARE(Device::instance()->profile.name, u"colour-6"_s);
        QVERIFY(facts().colourMask != 0);
    }
    QVERIFY(!Device::instance());
    DeviceForTest grey;
    QCOMPARE(Device::instance()->profile.name, u"grey-6"_s);
    QCOMPARE(facts().colourMask.load(), 0);
}

void tst_Device::deviceForTestSets()
{
    DeviceForTest device;
    device.setColourMask(7);
    QCOMPARE(facts().colourMask.load(), 7);
    device.setLocalization(4, 9);
    QCOMPARE(Device::instance()->localizationType, 4);
    QCOMPARE(Device::instance()->customizedPartner, 9);
    device.setPreviousOrientation(3);
    QCOMPARE(Device::instance()->previousOrientation, std::optional(3));
    device.setPreviousOrientation(std::nullopt);
    QVERIFY(!Device::instance()->previousOrientation);

    QList<int> seen;
    Device::instance()->events.setHandler([&seen](int type, int par1, int par2) {
        seen = {type, par1, par2};
        return 0;
    });
    device.send(25, 23);
    QCOMPARE(seen, QList<int>({25, 23, 0}));

    journal::record("A");
    journal::record("B");
    journal::record("C");
    QCOMPARE(device.calls().size(), 3);
    QCOMPARE(device.calls({"A", "C"}).size(), 2);
    QCOMPARE(device.calls({"A", "C"}).constLast().name, QByteArray("C"));
    device.forgetCalls();
    QVERIFY(device.calls().isEmpty());
}

void tst_Device::deviceForTestFires()
{
    DeviceForTest device;
    static int calls;
    calls = 0;
    QVERIFY(!device.fire("nextImageEvent"));
    Device::instance()->timers.arm(
        "nextImageEvent",
        [](void *) {
            ++calls;
            Device::instance()->timers.arm(
                "nextImageEvent", [](void *) { ++calls; }, nullptr, 1h);
        },
        nullptr, 1h);
    QVERIFY(device.fire("nextImageEvent"));
    QCOMPARE(calls, 1); // run when it returns, and armed anew by its callback
    QCOMPARE(Device::instance()->timers.pending().size(), 1);
}

void tst_Device::deviceForTestWantsItsProfile_data()
{
    QTest::addColumn<QStringList>(
        "profiles"); // of the device that runs, if any, and of the one that is asked for
    QTest::addColumn<QByteArray>("message");

    QTest::newRow("another one runs")
        << QStringList{u"grey-6"_s, u"grey-8"_s}
        << QByteArray(R"(The test asks for the profile "grey-8", but the device was started with "grey-6".)");
    QTest::newRow("there is none") << QStringList{QString(), u"grey-7"_s}
                                   << QByteArray(R"(There is no profile "grey-7"; there are: )");
}

void tst_Device::deviceForTestWantsItsProfile()
{
    QFETCH(QStringList, profiles);
    QFETCH(QByteArray, message);

    QProcess child;
    child.start(u"/proc/self/exe"_s, QStringList{QString::fromLatin1(profileArgument)} + profiles);
    QVERIFY(child.waitForFinished());
    QVERIFY(child.exitStatus() == QProcess::CrashExit || child.exitCode() != 0);
    QVERIFY(child.readAllStandardError().contains(message));
    QCOMPARE(child.readAllStandardOutput(), QByteArray());
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1StringView(profileArgument)) {
        const rlimit none{0, 0};
        setrlimit(RLIMIT_CORE, &none); // the end is meant
        if (const auto running = Profile::named(profilesFolder(), arguments.at(2), nullptr))
            Device::start(*running);
        const DeviceForTest wanted(arguments.at(3));
        std::puts("the test goes on");
        return 0;
    }
    tst_Device test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_device.moc"
