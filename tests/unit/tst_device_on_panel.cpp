// The device that the platform plug-in starts: its language and font, and how tests get it fresh.

#include <slateview.h>
#include <slateview_testing.h>

#include <device.h>
#include <paths.h>
#include <texts.h>

#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

class tst_DeviceOnPanel : public QObject
{
    Q_OBJECT

private slots:
    void startedBeforeAnyWindow();
    void unknownLanguageIsEnglish();
    void defaultFontIsThere();
    void fontsMayAskThePlatform();
    void freshForEachTest();
    void turnsWithItsSizes();
};

void tst_DeviceOnPanel::startedBeforeAnyWindow()
{
    QVERIFY(Device::instance());
    QCOMPARE(Device::instance()->profile.name, u"grey-6"_s);
    QCOMPARE(ScreenWidth(), 758);
    QCOMPARE(ScreenHeight(), 1024);
}

void tst_DeviceOnPanel::unknownLanguageIsEnglish()
{
    QCOMPARE(texts::language(), u"en"_s); // there is no table for the one that is configured
    QCOMPARE(QByteArray(GetLangText("@PlayItem")), QByteArray("Play"));
    QCOMPARE(QCoreApplication::translate("Playlists", "@PlayItem"), u"Play"_s);
}

void tst_DeviceOnPanel::defaultFontIsThere()
{
    const char *const family = sv_get_default_font(5);
    QVERIFY(family);
    QVERIFY2(QFontDatabase::hasFamily(QString::fromUtf8(family)), family);
}

void tst_DeviceOnPanel::fontsMayAskThePlatform()
{
    QVERIFY(QGuiApplication::platformNativeInterface()); // newer versions of Qt do so, and end without it
}

void tst_DeviceOnPanel::freshForEachTest()
{
    Device *const device = Device::instance();
    SetOrientation(1);
    SetPanelType(0);
    SetFrontlightState(3);
    SetHardTimerEx(
        "t", [](void *) {}, nullptr, 3'600'000);
    {
        DeviceForTest fresh;
        QCOMPARE(Device::instance(), device);
        QVERIFY(fresh.calls().isEmpty());
        QCOMPARE(GetOrientation(), 0);
        QCOMPARE(GetPanelType(), 1);
        QCOMPARE(GetFrontlightState(), 40);
        QVERIFY(device->timers.pending().isEmpty());
        static int calls;
        calls = 0;
        SetHardTimerEx(
            "t", [](void *) { ++calls; }, nullptr, 3'600'000);
        QVERIFY(fresh.fire("t"));
        QCOMPARE(calls, 1);
    }
    QCOMPARE(Device::instance(), device); // it belongs to the plug-in
    QVERIFY(journal::entries().isEmpty());
}

void tst_DeviceOnPanel::turnsWithItsSizes()
{
    DeviceForTest device;
    SetOrientation(1);
    QCOMPARE(ScreenWidth(), 1024);
    QTRY_COMPARE(QGuiApplication::primaryScreen()->geometry().size(), QSize(1024, 758));
}

int main(int argc, char *argv[])
{
    // A language that the device does not speak, on lines as another system may write them.
    QDir().mkpath(u"/mnt/ext1/system/config"_s);
    QFile configuration(QString::fromLatin1(configurationPath));
    if (!configuration.open(QIODevice::WriteOnly) || configuration.write("language=xx_YY\r\n") < 0)
        qFatal("The device's configuration cannot be written.");
    configuration.close();

    qputenv("QT_QPA_PLATFORM", "lindenreed2");
    QGuiApplication application(argc, argv);
    tst_DeviceOnPanel test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_device_on_panel.moc"
