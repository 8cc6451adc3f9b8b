// The SDK outside of the device's life: before its start, after its stop, in static constructors and
// destructors.

#include <boardconf.h>
#include <slateview.h>

#include <shared_tools/cfg_wrapper.h>
#include <shared_tools/eink_interface.h>

#include <device.h>
#include <facts.h>
#include <journal.h>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <cstring>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;
using lindenreed::utilities::EinkInterface;
using lindenreed::utilities::EinkPlatform;

namespace {

constexpr char leaveArgument[] = "--only-static-objects";
constexpr char key[] = "@PlayItem";

void never(void *)
{
    std::puts("a timer ran out without a device");
}

/// The first operation that is not neutral, empty where all are.
const char *notNeutral()
{
    EinkPlatform *const platform = EinkInterface::instance().platform();
    platform->setEventHandler([](int, int, int) { return 1; });
    if (GetEventHandler() || SendEvent(nullptr, 1, 2, 3) != 0)
        return "events";
    platform->prepareAspectChange(0);
    platform->requestScreenRefresh(1, 1);
    platform->setScreenUpdateMode(5);
    platform->setStartupFlag(1);
    platform->setFastUpdates(true);

    SetOrientation(1);
    SetPanelType(0);
    ClearScreen();
    if (GetOrientation() != 0 || GetPanelType() != 0 || IsDeviceSupportUpSideDown() != 0
        || PanelHeight() != 45)
        return "screen";

    SetHardTimerEx("t", never, nullptr, 0);
    ClearTimerByName("t");
    SetHardTimerEx("t", never, nullptr, 0);

    SetAutoPowerOff(0);
    SetAutoKeylock(0);
    if (BanSleep(1) != 0)
        return "power";

    SetFrontlightState(70);
    SetFrontlightColor(70);
    SetFrontlightEnabled(1);
    hw_set_frontlight_auto_enabled(1);
    hw_set_frontlight_color_auto_enabled(1);
    if (GetFrontlightState() != 0 || GetFrontlightColor() != 0 || hw_is_frontlight_auto() != 0
        || hw_is_frontlight_color_auto() != 0)
        return "light";

    int task = 7;
    int subtask = 7;
    GetPreviousTask(&task, &subtask);
    if (task != 0 || subtask != 0 || GetTaskFramebufferInfo(1) || OpenBook("/a.jpg", nullptr, 0) != 0)
        return "tasks";
    if (sv_get_default_font(5) || GetSoftwareLocalizationType() != 0 || GetCustomizedPartner() != 0)
        return "fonts and customisation";
    return "";
}

/// The first operation that does not do in any thread, at any time, what it should; empty where all do.
const char *notAlwaysThere()
{
    unsigned char bytes[12] = {100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110, 111};
    adjustAreaWithBrightnessContrastGamma(bytes, 12, 4, 1, 0.0, 1.0, 1.0);
    if (bytes[0] == 100)
        return "tone";
    std::memset(bytes, 100, sizeof bytes);
    adjustAreaDefault(bytes, 12, 4, 1);
    QuickFloyd16Dither(bytes, 12, 0, 0, 12, 1);
    for (const unsigned char byte : bytes) {
        if (byte % 17 != 0)
            return "dither";
    }

    std::tm moment{};
    moment.tm_mon = 4;
    char text[16];
    GetLangTime(text, sizeof text, "%B", &moment, 0);
    if (std::strcmp(text, "May") != 0)
        return "time";

    lr_print_log2(4, "file", 1, "function", "%s", "line");

    // Configuration files can be read at any time, by one thread.
    if (lindenreed::utilities::readFromConfig<int>("/nowhere", "a", 3) != 3)
        return "configuration";
    return "";
}

bool factsAre(int width, int height, int dpi, int mask, int number)
{
    return ScreenWidth() == width && ScreenHeight() == height && int(device_display_dpi()) == dpi
        && device_display_colormask() == mask && device_platform() == number
        && SvGetScreenModeInversion() == 0;
}

void expect(bool right, const char *what)
{
    if (!right)
        std::printf("wrong: %s\n", what);
}

void expectNothingWrong(const char *wrong)
{
    expect(*wrong == '\0', wrong);
}

/// Lives from before main until after everything that main made.
struct Surrounding
{
    Surrounding()
    {
        expectNothingWrong(notNeutral());
        expectNothingWrong(notAlwaysThere());
        expect(factsAre(758, 1024, 212, 0, 0), "facts before main");
        expect(GetLangText(key) == key && GetLangTextPlural(key, 2) == key, "texts before main");
        expect(GetThemeInt("e3.galery_cover.width", 5) == 5, "theme before main");
    }
    ~Surrounding()
    {
        expectNothingWrong(notNeutral());
        expectNothingWrong(notAlwaysThere());
        if (started) {
            expect(factsAre(300, 400, 90, 0, 17), "facts after main");
            expect(std::strcmp(GetLangText(key), "Play") == 0, "texts after main");
            expect(std::strcmp(GetLangTextPlural(key, 2), "Play") == 0, "plural texts after main");
            expect(GetThemeInt("e3.galery_cover.width", 5) == 220, "theme after main");
            expect(journal::entries().size() == 1000, "journal after main");
            std::puts("end");
        }
    }
    bool started = false;
};

Surrounding surrounding;

Profile smallProfile()
{
    Profile profile;
    profile.panelSize = QSize(300, 400);
    profile.dpi = 90;
    profile.platformNumber = 17;
    return profile;
}

} // namespace

class tst_SdkLives : public QObject
{
    Q_OBJECT

private slots:
    void beforeAnyApplication();
    void configurationBeforeAnyApplication();
    void everyCallIsInTheJournal();
    void applicationAfterApplication();
    void afterTheStop();
    void settersAfterTheLoop();
    void staticObjects();
};

void tst_SdkLives::beforeAnyApplication()
{
    QVERIFY(!QCoreApplication::instance());
    QCOMPARE(notNeutral(), "");
    QCOMPARE(notAlwaysThere(), "");
    QVERIFY(factsAre(758, 1024, 212, 0, 0));
    QVERIFY(GetLangText(key) == key);
    QVERIFY(GetLangTextPlural(key, 3) == key);
    QCOMPARE(GetThemeInt("e3.galery_cover.width", 5), 5);
}

void tst_SdkLives::configurationBeforeAnyApplication()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"global.cfg"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("language=de\n");
    file.close();
    const std::string path = file.fileName().toStdString();
    QCOMPARE(lindenreed::utilities::readFromConfig<std::string>(path, "language", "en"), std::string("de"));
}

void tst_SdkLives::everyCallIsInTheJournal()
{
    journal::forget();
    notNeutral();
    const QList<SdkCall> calls = journal::entries();
    QByteArrayList names;
    for (const SdkCall &call : calls)
        names.append(call.name);
    QCOMPARE(names,
             QByteArrayList({"setEventHandler",
                             "GetEventHandler",
                             "SendEvent",
                             "prepareAspectChange",
                             "requestScreenRefresh",
                             "setScreenUpdateMode",
                             "setStartupFlag",
                             "setFastUpdates",
                             "SetOrientation",
                             "SetPanelType",
                             "ClearScreen",
                             "GetOrientation",
                             "GetPanelType",
                             "IsDeviceSupportUpSideDown",
                             "PanelHeight",
                             "SetHardTimerEx",
                             "ClearTimerByName",
                             "SetHardTimerEx",
                             "SetAutoPowerOff",
                             "SetAutoKeylock",
                             "BanSleep",
                             "SetFrontlightState",
                             "SetFrontlightColor",
                             "SetFrontlightEnabled",
                             "hw_set_frontlight_auto_enabled",
                             "hw_set_frontlight_color_auto_enabled",
                             "GetFrontlightState",
                             "GetFrontlightColor",
                             "hw_is_frontlight_auto",
                             "hw_is_frontlight_color_auto",
                             "GetPreviousTask",
                             "GetTaskFramebufferInfo",
                             "OpenBook",
                             "sv_get_default_font",
                             "GetSoftwareLocalizationType",
                             "GetCustomizedPartner"}));
}

void tst_SdkLives::applicationAfterApplication()
{
    int count = 1;
    char name[] = "test";
    char *arguments[] = {name, nullptr};
    for (int round = 0; round < 3; ++round) {
        QCoreApplication application(count, arguments);
        QCOMPARE(QCoreApplication::translate("A", key),
                 QString::fromLatin1(key)); // nothing of the former one
        Device::start(Profile());
        QCOMPARE(QCoreApplication::translate("A", key), u"Play"_s);
        QCOMPARE(QByteArray(GetLangText(key)), QByteArray("Play"));
        Device::stop();
        QCOMPARE(QCoreApplication::translate("A", key), u"Play"_s);
    }
}

void tst_SdkLives::afterTheStop()
{
    Device::start(smallProfile());
    QVERIFY(factsAre(300, 400, 90, 0, 17));
    Device::stop();
    QCOMPARE(notNeutral(), "");
    QCOMPARE(notAlwaysThere(), "");
    QVERIFY(factsAre(300, 400, 90, 0, 17));
    QCOMPARE(QByteArray(GetLangText(key)), QByteArray("Play"));
    QCOMPARE(GetThemeInt("e3.galery_cover.width", 5), 220);
}

void tst_SdkLives::settersAfterTheLoop()
{
    int count = 1;
    char name[] = "test";
    char *arguments[] = {name, nullptr};
    static int calls;
    calls = 0;
    QCoreApplication application(count, arguments);
    Device::start(Profile());
    SetAutoPowerOff(0);
    SetHardTimerEx(
        "t", [](void *) { ++calls; }, nullptr, 0);
    QMetaObject::invokeMethod(&application, &QCoreApplication::quit, Qt::QueuedConnection);
    QCoreApplication::exec();
    const int ran = calls;
    SetHardTimerEx(
        "t", [](void *) { ++calls; }, nullptr, 0);
    SetAutoPowerOff(1);
    SetFrontlightState(17);
    QVERIFY(Device::instance()->power.autoPowerOff());
    QCOMPARE(GetFrontlightState(), 17);
    Device::stop();
    QCoreApplication::processEvents();
    QCOMPARE(calls, ran);
}

void tst_SdkLives::staticObjects()
{
    int count = 1;
    char name[] = "test";
    char *arguments[] = {name, nullptr};
    QCoreApplication application(count, arguments);
    QProcess child;
    child.start(u"/proc/self/exe"_s, {QString::fromLatin1(leaveArgument)});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(child.readAllStandardOutput(), QByteArray("end\n"));
    QCOMPARE(child.readAllStandardError(), QByteArray("4 file:1 function: line\n").repeated(2));
}

int main(int argc, char *argv[])
{
    if (argc == 2 && std::strcmp(argv[1], leaveArgument) == 0) {
        QCoreApplication application(argc, argv);
        Device::start(smallProfile());
        for (int i = 0; i < 1000; ++i)
            GetLangText(key);
        Device::stop();
        surrounding.started = true;
        return 0;
    }
    tst_SdkLives test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_sdk_lives.moc"
