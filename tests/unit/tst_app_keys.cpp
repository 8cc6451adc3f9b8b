// Events of the device: keys, configured keys, background, turning.

#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <slateview.h>

#include <QSignalSpy>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;

class tst_AppKeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void keysOfTheDevice_data();
    void keysOfTheDevice();
    void configuredKeys_data();
    void configuredKeys();
    void configuredKeyDuringAShow();
    void backgroundAndForeground();
    void turnOfTheDevice();

private:
    std::unique_ptr<AppFixture> m_test;
};

void tst_AppKeys::keysOfTheDevice_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("position"); // of four, from the first
    QTest::addColumn<int>("menu");

    QTest::newRow("menu key") << 25 << 23 << 0 << 1;
    QTest::newRow("previous key") << 25 << 24 << 3 << 0;
    QTest::newRow("next key") << 25 << 25 << 1 << 0;
    QTest::newRow("another key") << 25 << 26 << 0 << 0;
    QTest::newRow("a configurable key that nobody configured") << 40 << 25 << 0 << 0;
    QTest::newRow("the number beyond the media events") << 165 << 0 << 0 << 0;
    QTest::newRow("an unknown event") << 24 << 25 << 0 << 0;
}

void tst_AppKeys::keysOfTheDevice()
{
    QFETCH(int, type);
    QFETCH(int, code);
    QFETCH(int, position);
    QFETCH(int, menu);

    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_test->paths, 30);
                        QSignalSpy opened(running.slideshow(),
                                          &lindenreed::picture_stand::SlideshowModel::openCloseMenu);
                        m_test->device.send(type, code, 99); // in any view: the overview is on
                        QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(position));
                        QCOMPARE(opened.count(), menu);
                    }),
             0);
}

void tst_AppKeys::configuredKeys_data()
{
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("menu");

    const auto key = [](int i, const char *name, int code, const char *action) {
        const QByteArray number = QByteArray::number(i);
        return "btkeys.bt" + number + ".name=" + name + "\nbtkeys.bt" + number
            + ".scanCode=" + QByteArray::number(code) + "\ntkey.bt" + number + ".0=" + action + '\n';
    };
    const QByteArray two = "btkeys.count=2\n";
    QTest::newRow("next") << "btkeys.count=1\n" + key(1, "a", 7, "@KA_next") << 7 << 1 << 0;
    QTest::newRow("previous") << "btkeys.count=1\n" + key(1, "a", 7, "@KA_prev") << 7 << 3 << 0;
    QTest::newRow("menu") << "btkeys.count=1\n" + key(1, "a", 7, "@KA_menu") << 7 << 0 << 1;
    QTest::newRow("another action of 8 letters")
        << "btkeys.count=1\n" + key(1, "a", 7, "@KA_none") << 7 << 0 << 0;
    QTest::newRow("a longer action") << "btkeys.count=1\n" + key(1, "a", 7, "@KA_next2") << 7 << 0 << 0;
    QTest::newRow("no such scan code") << "btkeys.count=1\n" + key(1, "a", 7, "@KA_next") << 8 << 0 << 0;
    QTest::newRow("count missing") << key(1, "a", 7, "@KA_next") << 7 << 0 << 0;
    QTest::newRow("count of zero") << "btkeys.count=0\n" + key(1, "a", 7, "@KA_next") << 7 << 0 << 0;
    QTest::newRow("count below zero") << "btkeys.count=-1\n" + key(1, "a", 7, "@KA_next") << 7 << 0 << 0;
    QTest::newRow("count out of range")
        << "btkeys.count=2147483647\n" + key(1, "a", 7, "@KA_next") << 7 << 1 << 0;
    QTest::newRow("of two with one code the first wins")
        << two + key(1, "a", 7, "@KA_next") + key(2, "b", 7, "@KA_prev") << 7 << 1 << 0;
    QTest::newRow("unless the first is deleted")
        << two + key(1, "__DELETED__", 7, "@KA_next") + key(2, "b", 7, "@KA_prev") << 7 << 3 << 0;
    QTest::newRow("beyond the count") << "btkeys.count=1\n" + key(2, "b", 7, "@KA_prev") << 7 << 0 << 0;
    QTest::newRow("no scan code lands on 0")
        << QByteArray("btkeys.count=1\nbtkeys.bt1.name=a\ntkey.bt1.0=@KA_next\n") << 0 << 1 << 0;
    QTest::newRow("no action, which holds its code against the next")
        << QByteArray("btkeys.count=2\nbtkeys.bt1.scanCode=7\n") + key(2, "b", 7, "@KA_prev") << 7 << 0 << 0;
    QTest::newRow("no scan code against a later explicit 0")
        << QByteArray("btkeys.count=2\ntkey.bt1.0=@KA_next\n") + key(2, "b", 0, "@KA_prev") << 0 << 1 << 0;
    QTest::newRow("a scan code out of range lands on 0")
        << QByteArray("btkeys.count=1\nbtkeys.bt1.scanCode=4294967303\ntkey.bt1.0=@KA_next\n") << 0 << 1 << 0;
    QTest::newRow("and not on its low 32 bits")
        << QByteArray("btkeys.count=1\nbtkeys.bt1.scanCode=4294967303\ntkey.bt1.0=@KA_next\n") << 7 << 0 << 0;
    QTest::newRow("an action of 7 letters") << "btkeys.count=1\n" + key(1, "a", 7, "@KA_nex") << 7 << 0 << 0;
    QTest::newRow("no configuration") << QByteArray("missing") << 0 << 0 << 0;
    QTest::newRow("key 1000") << "btkeys.count=1001\n" + key(1000, "a", 7, "@KA_next") << 7 << 1 << 0;
    QTest::newRow("key 1001 does not count")
        << "btkeys.count=1001\n" + key(1001, "a", 7, "@KA_next") << 7 << 0 << 0;
    QTest::newRow("the twelfth key") << "btkeys.count=12\n" + key(12, "l", 7, "@KA_next") << 7 << 1 << 0;
}

void tst_AppKeys::configuredKeys()
{
    QFETCH(QByteArray, config);
    QFETCH(int, code);
    QFETCH(int, position);
    QFETCH(int, menu);

    m_test->configure(config);
    App app;
    m_test->configure({}); // bindings that change now take effect at the next start
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_test->paths, 30);
                        QSignalSpy opened(running.slideshow(),
                                          &lindenreed::picture_stand::SlideshowModel::openCloseMenu);
                        m_test->device.forgetCalls();
                        m_test->device.send(40, code, 0);
                        QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(position));
                        QCOMPARE(opened.count(), menu);
                        // The same effect as the device's own key.
                        QCOMPARE(m_test->calls(),
                                 position == 1 ? QByteArray("ClearTimerByName nextImageEvent\nBanSleep 1")
                                     : position == 3 ? QByteArray("ClearTimerByName nextImageEvent")
                                                     : QByteArray());
                    }),
             0);
}

void tst_AppKeys::configuredKeyDuringAShow()
{
    m_test->configure("btkeys.count=1\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=@KA_next\n");
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_test->paths, 30);
                        running.slideshow()->start();
                        QList<std::pair<QString, QByteArray>> effects;
                        for (const int type : {25, 40}) {
                            m_test->device.forgetCalls();
                            m_test->device.send(type, type == 25 ? 25 : 7);
                            effects.append({running.slideshow()->currentImage(), m_test->calls()});
                            m_test->device.send(25, 24);
                        }
                        QCOMPARE(effects.at(0).first, m_test->paths.at(1));
                        QCOMPARE(
                            effects.at(0).second,
                            QByteArray("ClearTimerByName nextImageEvent\n"
                                       "SetHardTimerEx nextImageEvent callback context 30000\nBanSleep 1"));
                        QCOMPARE(effects.at(1), effects.at(0));
                    }),
             0);
}

void tst_AppKeys::backgroundAndForeground()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        m_test->device.forgetCalls();
                        m_test->device.send(152);
                        QByteArray calls = m_test->calls();
                        // The light first, while the show is as it was before.
                        QVERIFY2(calls.indexOf("GetFrontlightState") >= 0
                                     && calls.lastIndexOf("Frontlight") < calls.indexOf("SetAutoPowerOff 1"),
                                 calls.constData());
                        m_test->device.forgetCalls();
                        m_test->device.send(151);
                        calls = m_test->calls();
                        QVERIFY2(calls.indexOf("GetFrontlightState") >= 0
                                     && calls.lastIndexOf("Frontlight") < calls.indexOf("SetAutoPowerOff 0"),
                                 calls.constData());

                        // A show that did not run stays stopped.
                        running.slideshow()->stop();
                        m_test->device.send(152);
                        m_test->device.forgetCalls();
                        m_test->device.send(151);
                        QVERIFY(!m_test->calls().contains("SetAutoPowerOff"));

                        // Elsewhere the light is left alone.
                        app.changeView(u"playlists"_s);
                        m_test->device.forgetCalls();
                        m_test->device.send(152);
                        m_test->device.send(151);
                        QVERIFY(!m_test->calls().contains("Frontlight"));
                    }),
             0);
}

void tst_AppKeys::turnOfTheDevice()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &) {
                        m_test->device.forgetCalls();
                        m_test->device.send(32, 1);
                        QCOMPARE(GetOrientation(), 0); // the overview stays upright
                        QVERIFY(m_test->device.calls({"SetOrientation"}).isEmpty());
                        app.changeView(u"slideshow"_s);
                        m_test->device.forgetCalls();
                        m_test->device.send(32, 2);
                        QCOMPARE(GetOrientation(), 2);
                        // The handler is installed: both events go out through it, and come back as unknown
                        // ones.
                        QVERIFY(m_test->calls().contains("GetEventHandler\nSendEvent handler 212 32 2\n"
                                                         "GetEventHandler\nSendEvent handler 43 0 0"));
                    }),
             0);
}

PANEL_TEST_MAIN(tst_AppKeys)
#include "tst_app_keys.moc"
