// The device's events in every situation of the application: what they do, and that everything else does
// nothing.

#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"
#include "stderr_capture.h"

#include <slateview.h>

#include <QSignalSpy>

#include <limits>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;
using lindenreed::picture_stand::SlideshowModel;

namespace {

constexpr int least = std::numeric_limits<int>::min();
constexpr int most = std::numeric_limits<int>::max();

const QByteArray stepped = "ClearTimerByName nextImageEvent";
const QByteArray armed = "SetHardTimerEx nextImageEvent callback context 30000";

} // namespace

class tst_AppEvents : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void keysInEverySituation_data();
    void keysInEverySituation();
    void whatIsNoEvent();
    void keysThatAreNone();
    void secondParameter();
    void backgroundTwice();
    void parametersOfTheBackground();
    void turnsInTheShow();
    void eventsBeforeTheInterface();
    void eventsAfterTheLoop();

private:
    std::unique_ptr<AppFixture> m_test;
};

void tst_AppEvents::keysInEverySituation_data()
{
    QTest::addColumn<QStringList>("views"); // one after the other, the first show with four pictures
    QTest::addColumn<bool>("pictures");
    QTest::addColumn<bool>("paused");
    QTest::addColumn<bool>("timer"); // a step arms it

    const QString show = u"slideshow"_s;
    QTest::newRow("a running show") << QStringList{show} << true << false << true;
    QTest::newRow("a show that is paused") << QStringList{show} << true << true << false;
    QTest::newRow("the overview after a show") << QStringList{show, u"playlists"_s} << true << true << false;
    QTest::newRow("the overview before any show") << QStringList{} << false << false << false;
    for (const QString &view :
         {u"settings_slideshow"_s, u"settings_created_datetime"_s, u"settings_current_datetime"_s,
          u"settings_customize_created_date"_s, u"settings_customize_current_date"_s, u"playlist"_s,
          u"select_photos"_s, u"a view that nobody knows"_s}) {
        QTest::newRow(qPrintable(view + u", after a show"_s))
            << QStringList{show, view} << true << true << false;
        QTest::newRow(qPrintable(view + u", before any show"_s))
            << QStringList{view} << false << false << false;
    }
}

void tst_AppEvents::keysInEverySituation()
{
    QFETCH(QStringList, views);
    QFETCH(bool, pictures);
    QFETCH(bool, paused);
    QFETCH(bool, timer);

    m_test->configure("btkeys.count=2\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=@KA_next\n"
                      "btkeys.bt2.scanCode=8\ntkey.bt2.0=@KA_prev\n");
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        SlideshowModel *show = running.slideshow();
                        if (pictures)
                            show->initFromList(m_test->paths, 30);
                        for (const QString &view : views)
                            app.changeView(view);
                        if (paused)
                            show->stop();
                        QSignalSpy loads(show, &SlideshowModel::loadToCache);
                        QSignalSpy changes(show, &SlideshowModel::current_imageChanged);
                        const QStringList list = pictures ? m_test->paths : QStringList();
                        const QByteArray step = timer ? stepped + '\n' + armed : stepped;

                        for (const auto &[type, code] : {std::pair(25, 25), {40, 7}}) {
                            m_test->device.forgetCalls();
                            m_test->device.send(type, code);
                            QCOMPARE(show->currentImage(), list.value(1));
                            QCOMPARE(m_test->calls(), step + "\nBanSleep 1");
                            QCOMPARE(loads.takeFirst(), (QVariantList{list, pictures ? 1 : 0}));

                            m_test->device.forgetCalls();
                            m_test->device.send(25, 24); // back to where it was
                            QCOMPARE(show->currentImage(), list.value(0));
                            QCOMPARE(m_test->calls(), step); // this one does not put sleep off
                            QCOMPARE(loads.takeFirst(), (QVariantList{list, pictures ? 0 : -1}));
                            if (!pictures)
                                m_test->device.send(25, 25); // from -1 to 0
                            loads.clear();
                        }
                        m_test->device.send(40, 8);
                        QCOMPARE(show->currentImage(), list.value(3));
                        QVERIFY(changes.count() >= 5);
                        QVERIFY(loads.count() == 1);
                    }),
             0);
}

void tst_AppEvents::whatIsNoEvent()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        m_test->device.forgetCalls();
                        const StderrCapture errors;
                        QSignalSpy menu(running.slideshow(), &SlideshowModel::openCloseMenu);
                        QSignalSpy views(&app, &App::changedView);
                        QList<int> types{least, -1, 1'000, 40'000, most};
                        for (int type = 0; type < 300; ++type) {
                            const bool known = type == 25 || type == 32 || type == 40
                                || (type >= 151 && type <= 152) || (type >= 161 && type <= 164);
                            if (!known)
                                types.append(type);
                        }
                        for (const int type : types) {
                            for (const int par1 : {least, 0, 23, 24, 25, most})
                                m_test->device.send(type, par1, 25);
                        }
                        QCOMPARE(m_test->device.calls().size(), 0);
                        QCOMPARE(running.slideshow()->currentImage(), m_test->paths.first());
                        QCOMPARE(menu.count() + views.count(), 0);
                        QCOMPARE(errors.text(), QByteArray());
                    }),
             0);
}

void tst_AppEvents::keysThatAreNone()
{
    m_test->configure("btkeys.count=1\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=@KA_home\n");
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_test->paths, 30);
                        m_test->device.forgetCalls();
                        const StderrCapture errors;
                        for (const int code : {least, -1, 0, 7, 22, 26, 23 + 256, most}) {
                            m_test->device.send(25, code);
                            m_test->device.send(40, code);
                        }
                        QCOMPARE(m_test->device.calls().size(), 0);
                        QCOMPARE(running.slideshow()->currentImage(), m_test->paths.first());
                        QCOMPARE(errors.text(), QByteArray());
                    }),
             0);
}

void tst_AppEvents::secondParameter()
{
    m_test->configure("btkeys.count=1\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=@KA_next\n");
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        const QList<std::pair<int, int>> events{{25, 23}, {25, 23}, {25, 24},
                                                                {25, 25}, {40, 7},  {152, 0},
                                                                {151, 0}, {32, 1},  {32, 0}};
                        m_test->device.send(32, 1); // the first turn of a process is like no other
                        m_test->device.send(32, 0);
                        std::optional<QByteArrayList> first;
                        for (const int par2 : {0, 25, least, most}) {
                            QByteArrayList effects;
                            for (const auto &[type, par1] : events) {
                                m_test->device.forgetCalls();
                                m_test->device.send(type, par1, par2);
                                effects.append(m_test->calls());
                            }
                            m_test->device.send(25, 24); // two steps forward, one back
                            QCOMPARE(running.slideshow()->currentImage(), m_test->paths.first());
                            if (first)
                                QCOMPARE(effects, *first);
                            first = effects;
                        }
                    }),
             0);
}

void tst_AppEvents::backgroundTwice()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        m_test->device.send(152);
                        m_test->device.send(152); // finds a show that does not run
                        m_test->device.forgetCalls();
                        m_test->device.send(151);
                        QVERIFY(m_test->device.calls({"SetAutoPowerOff", "SetHardTimerEx"}).isEmpty());
                    }),
             0);
}

void tst_AppEvents::parametersOfTheBackground()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        for (const int par1 : {least, -1, 1, 25, most}) {
                            m_test->device.forgetCalls();
                            m_test->device.send(152, par1);
                            QVERIFY(
                                m_test->calls().contains("SetAutoPowerOff 1\nSetAutoKeylock 1\n" + stepped));
                            m_test->device.forgetCalls();
                            m_test->device.send(151, par1);
                            QVERIFY(m_test->calls().endsWith("SetAutoPowerOff 0\nSetAutoKeylock 0\n" + stepped
                                                             + '\n' + armed));
                            QCOMPARE(running.slideshow()->currentImage(), m_test->paths.first());
                        }
                    }),
             0);
}

void tst_AppEvents::turnsInTheShow()
{
    App app;
    QCOMPARE(
        runApp(app,
               [&](RunningApp &) {
                   app.changeView(u"slideshow"_s);
                   for (const int orientation : {1, 2, 3, 0}) {
                       m_test->device.send(32, orientation);
                       QCOMPARE(GetOrientation(), orientation);
                   }
                   // No device stands like this: handed on as any other, and refused there.
                   for (const int orientation : {least, -1, 4, most}) {
                       m_test->device.forgetCalls();
                       m_test->device.send(32, orientation);
                       QVERIFY(m_test->calls().contains("SetOrientation " + QByteArray::number(orientation)));
                       QCOMPARE(GetOrientation(), 0);
                   }
                   app.changeView(u"playlists"_s);
                   m_test->device.forgetCalls();
                   for (const int orientation : {least, -1, 1, 2, 3, 4, most})
                       m_test->device.send(32, orientation);
                   QVERIFY(m_test->device.calls({"SetOrientation", "ClearScreen"}).isEmpty());
               }),
        0);
}

void tst_AppEvents::eventsBeforeTheInterface()
{
    m_test->configure("btkeys.count=1\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=@KA_menu\n");
    App app;
    bool early = false;
    connect(
        &app, &App::screenChanged, &app,
        [&] {
            early = QGuiApplication::topLevelWindows().isEmpty();
            m_test->device.forgetCalls();
            for (const int code : {23, 24, 25})
                m_test->device.send(25, code);
            m_test->device.send(40, 7);
            m_test->device.send(152);
            m_test->device.send(151);
            QCOMPARE(m_test->calls(),
                     stepped + '\n' + stepped + "\nBanSleep 1\nSetAutoPowerOff 1\nSetAutoKeylock 1\n"
                         + stepped);
        },
        Qt::SingleShotConnection);
    QCOMPARE(runApp(app, [](RunningApp &) {}), 0);
    QVERIFY(early);
}

void tst_AppEvents::eventsAfterTheLoop()
{
    {
        App app;
        QCOMPARE(
            runApp(app, [&](RunningApp &running) { running.slideshow()->initFromList(m_test->paths, 30); }),
            0);
        // Nothing takes the handler away.
        QVERIFY(GetEventHandler());
        m_test->device.forgetCalls();
        SendEvent(GetEventHandler(), 25, 25, 0);
        QVERIFY(m_test->calls().contains("BanSleep 1"));
    }
    m_test->device.forgetCalls();
    m_test->device.send(25, 25); // whom it spoke for has gone
    QCOMPARE(m_test->calls(), QByteArray());
}

PANEL_TEST_MAIN(tst_AppEvents)
#include "tst_app_events.moc"
