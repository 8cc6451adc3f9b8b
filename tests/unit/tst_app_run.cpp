// The application as it runs: order of its start, its connections, events of the device, two runs in one
// process.

#include "datastorage.h"
#include "device_calls.h"
#include "panel_application.h"
#include "running_app.h"
#include "stored_database.h"

#include <slateview.h>
#include <slateview_testing.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QQmlComponent>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTime>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::App;

namespace {

const QString configPath = u"/mnt/ext1/system/config/global.cfg"_s;

/// The calls that change something, and those that read the orientation or the light.
QByteArray callsOf(const DeviceForTest &device)
{
    QByteArrayList lines;
    for (const SdkCall &call : device.calls()) {
        if (!isQuery(call.name))
            lines.append((QByteArrayList{call.name} + call.arguments).join(' '));
    }
    return lines.join('\n');
}

} // namespace

class tst_AppRun : public QObject
{
    Q_OBJECT

public slots:
    void noteComponent() { m_callsAtComponent.append(callsOf(*m_device)); }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void orderOfTheStart();
    void placeOfTheSettings();
    void exitCode();
    void previousOrientation_data();
    void previousOrientation();
    void minuteTick();
    void contextAndTypes();
    void firstScreen();
    void views_data();
    void views();
    void unknownView();
    void sameViewAgain();
    void orderOfTheShowsRow();
    void orderOfTheOverviewsRow();
    void screensChangeTheView();
    void windowFollowsThePanel();
    void infoMessage();
    void infoMessageForFourSeconds();
    void intervalReachesTheShow();
    void shuffleReachesTheShow();
    void activePlaylistReachesTheSettings();
    void footer();
    void keysOfTheDevice_data();
    void keysOfTheDevice();
    void configuredKeys_data();
    void configuredKeys();
    void configuredKeyDuringAShow();
    void backgroundAndForeground();
    void turnOfTheDevice();
    void twoRunsInOneProcess();
    void quitInTheMiddleOfAPrefetch();
    void quitDuringAShow();

private:
    void configure(const QByteArray &contents);

    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<QTemporaryDir> m_folder;
    QStringList m_paths;
    QByteArrayList m_callsAtComponent; ///< what had been called when the screens' loader had a new component
};

void tst_AppRun::initTestCase()
{
    stored_database::remove();
    m_folder = std::make_unique<QTemporaryDir>();
    for (int i = 0; i < 4; ++i) {
        QImage picture(60 + i, 40, QImage::Format_Grayscale8);
        picture.fill(i * 60);
        m_paths.append(m_folder->filePath(u"%1.png"_s.arg(i)));
        QVERIFY(picture.save(m_paths.last()));
    }
}

void tst_AppRun::init()
{
    configure({});
    m_device = std::make_unique<DeviceForTest>();
}

void tst_AppRun::cleanup()
{
    QThreadPool::globalInstance()->waitForDone();
    m_device.reset();
}

void tst_AppRun::configure(const QByteArray &contents)
{
    QDir().mkpath(QFileInfo(configPath).path());
    QFile file(configPath);
    if (contents == "missing") {
        QVERIFY(!file.exists() || file.remove());
        return;
    }
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(contents);
}

void tst_AppRun::orderOfTheStart()
{
    App app;
    QByteArrayList signalsSeen; // each with the calls that came before it
    connect(&app, &App::screenChanged, &app,
            [&] { signalsSeen.append(QByteArray::number(callsOf(*m_device).count('\n'))); });
    m_device->forgetCalls();
    QByteArray calls;
    QCOMPARE(runApp(app, [&](RunningApp &) { calls = callsOf(*m_device); }), 0);

    QByteArrayList lines = calls.split('\n');
    QVERIFY(lines.size() > 2);
    // To the full minute: what is left of the running one.
    const QByteArrayList tick = lines.takeAt(2).split(' ');
    QCOMPARE(tick.mid(0, 4),
             (QByteArrayList{"SetHardTimerEx", "updateDateTimeEvent", "callback", "context"}));
    QVERIFY(tick.last().toInt() >= 1000 && tick.last().toInt() <= 60'000);
    QCOMPARE(tick.last().toInt() % 1000, 0);
    // The settings are loaded before anybody listens to them: no timer is touched.
    QCOMPARE(lines,
             (QByteArrayList{"setStartupFlag 1", "setEventHandler handler", "SetPanelType 1",
                             "GetPreviousTask", "GetTaskFramebufferInfo 0"}));
    QCOMPARE(signalsSeen, QByteArrayList{"3"}); // right after the panel
}

void tst_AppRun::placeOfTheSettings()
{
    App app;
    // What is stored while the panel is being set is loaded: the settings come later.
    connect(
        &app, &App::screenChanged, &app,
        [] { DataStorage::instance().setSetting(u"change_picture_time"_s, u"77"_s, -1); },
        Qt::SingleShotConnection);
    QByteArray calls;
    int interval = 0;
    m_device->forgetCalls();
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        calls = callsOf(*m_device);
                        interval = running.settings()->changePictureTime();
                    }),
             0);
    DataStorage::instance().setSetting(u"change_picture_time"_s, u"30"_s, -1);
    QCOMPARE(interval, 77);
    // And before anybody listens: the show, told of an interval, would have cleared its timer.
    QVERIFY2(!calls.contains("ClearTimerByName"), calls.constData());
}

void tst_AppRun::exitCode()
{
    App app;
    QTimer::singleShot(0, &app, [] { QCoreApplication::exit(7); });
    QCOMPARE(app.run(qGuiApp), 7);
}

void tst_AppRun::previousOrientation_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("applied");

    QTest::newRow("upright") << 0 << true;
    QTest::newRow("90 degrees is ignored") << 1 << false;
    QTest::newRow("270 degrees is ignored") << 2 << false;
    QTest::newRow("180 degrees, which this device cannot") << 3 << false;
}

void tst_AppRun::previousOrientation()
{
    QFETCH(int, orientation);
    QFETCH(bool, applied);

    m_device->setPreviousOrientation(orientation);
    App app;
    QByteArray calls;
    // Upright counts as a change only once in a process: the turn before it makes sure that it is one.
    app.changeView(u"slideshow"_s);
    app.changeOrientation(1);
    app.changeView(QString());
    SetOrientation(1);
    m_device->forgetCalls();
    QList<bool> windows; // whether there was one at each change of the screen
    connect(&app, &App::screenChanged, &app,
            [&windows] { windows.append(!QGuiApplication::topLevelWindows().isEmpty()); });
    QCOMPARE(runApp(app, [&](RunningApp &) { calls = callsOf(*m_device); }), 0);
    QCOMPARE(windows, QList<bool>(applied ? 2 : 1, false)); // the panel's, and the turn's
    QCOMPARE(
        calls.contains("GetTaskFramebufferInfo 1\nGetOrientation\nprepareAspectChange 0\nSetOrientation 0"),
        applied);
    QCOMPARE(calls.count("SetOrientation"), applied ? 1 : 0);
}

void tst_AppRun::minuteTick()
{
    App app;
    QSignalSpy changed(&app, &App::currentDateChanged);
    QCOMPARE(runApp(app,
                    [&](RunningApp &) {
                        m_device->forgetCalls();
                        QByteArray callsBefore = "not heard";
                        connect(&app, &App::currentDateChanged, &app,
                                [&callsBefore, this] { callsBefore = callsOf(*m_device); });
                        const auto armed = [] {
                            return "SetHardTimerEx updateDateTimeEvent callback context "
                                + QByteArray::number((60 - QTime::currentTime().second()) * 1000);
                        };
                        const QByteArray earliest = armed();
                        QVERIFY(m_device->fire("updateDateTimeEvent"));
                        const QByteArray latest = armed();
                        const QByteArray calls = callsOf(*m_device);
                        QCOMPARE(changed.count(), 1);
                        QCOMPARE(callsBefore, QByteArray()); // first the date, then the next tick
                        QVERIFY2(calls == earliest || calls == latest, calls.constData());
                        QVERIFY(m_device->fire("updateDateTimeEvent")); // armed again, in any view
                        QCOMPARE(changed.count(), 2);
                    }),
             0);
}

void tst_AppRun::contextAndTypes()
{
    App app;
    QCOMPARE(
        runApp(
            app,
            [&](RunningApp &running) {
                QVERIFY(running.settings());
                QVERIFY(running.slideshow());
                QVERIFY(running.playlists());
                QCOMPARE(running.model<App>("App"), &app);
                QVERIFY(qmlEngine(running.window)->imageProvider(u"image_provider"_s));

                const auto evaluate = [&](const QByteArray &imports, const QByteArray &expression) {
                    QQmlComponent component(qmlEngine(running.window));
                    component.setData(imports + "\nQtObject { property var v: " + expression + " }",
                                      QUrl(u"qrc:/test.qml"_s));
                    const std::unique_ptr<QObject> object(component.create());
                    return object ? object->property("v") : QVariant(component.errorString());
                };
                const QByteArray types = "import QtQml; import com.lindenreed.picturestand 1.0";
                QCOMPARE(evaluate(types, "PlaylistDataRoles.TitleRole").toInt(), 0);
                QCOMPARE(evaluate(types, "PlaylistDataRoles.IdRole").toInt(), 257);
                QCOMPARE(evaluate(types, "PlaylistDataRoles.AllViewMode").toInt(), 3);
                QVERIFY(
                    evaluate(
                        types,
                        "Qt.createQmlObject('import com.lindenreed.picturestand 1.0; SettingsDataRoles {}', "
                        "this) !== null")
                        .toBool());
                // Each identifier resolves its own kind only.
                QVERIFY(evaluate("import QtQml; import com.lindenreed.picture_stand 1.0",
                                 "typeof PlaylistDataRoles === 'undefined'")
                            .toBool());
                QVERIFY(evaluate(types, "typeof Playlists === 'undefined'").toBool());
            }),
        0);
}

void tst_AppRun::firstScreen()
{
    App app;
    QSignalSpy changed(&app, &App::changedView);
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QVERIFY(running.itemWith("cellHeight")); // the overview's list
                        QCOMPARE(app.currentView(), QString());
                        QCOMPARE(running.window->title(), u"Scroll"_s);
                        QCOMPARE(running.window->size(), QSize(app.screenWidth(), app.screenHeight()));
                        m_device->forgetCalls();
                        app.changeView(u"playlists"_s); // a real change
                        QCOMPARE(changed.count(), 1);
                        QCOMPARE(app.prevView(), QString());
                        QCOMPARE(callsOf(*m_device), QByteArray("SetPanelType 1"));
                    }),
             0);
}

void tst_AppRun::views_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QByteArray>("toPlaylists");

    // The panel before the new screen; better updates are for the show alone.
    QTest::newRow("grey") << 0 << QByteArray("SetPanelType 1");
    QTest::newRow("colour") << 1 << QByteArray("SetPanelType 1\nsetFastUpdates 1\nsetScreenUpdateMode 5");
}

void tst_AppRun::views()
{
    QFETCH(int, mask);
    QFETCH(QByteArray, toPlaylists);

    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        m_device->setColourMask(mask);
                        QPointer<QQuickItem> first = running.screen();
                        m_device->forgetCalls();
                        app.changeView(u"playlists"_s);
                        QCOMPARE(callsOf(*m_device), toPlaylists);
                        QCOMPARE(running.screen(), first.data()); // the same component stays as it is

                        app.changeView(u"slideshow"_s);
                        QVERIFY(running.itemWith("test_w"));
                        QTRY_VERIFY(first.isNull());
                        app.changeView(u"playlists"_s);
                        QVERIFY(running.itemWith("cellHeight"));
                        m_device->setColourMask(0);
                    }),
             0);
}

void tst_AppRun::unknownView()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const QQuickItem *before = running.screen();
                        m_device->forgetCalls();
                        app.changeView(u"playlist"_s);
                        app.changeView(u"Playlists"_s);
                        QCOMPARE(callsOf(*m_device), QByteArray());
                        QCOMPARE(running.screen(), before);
                        QCOMPARE(app.currentView(), u"Playlists"_s);
                    }),
             0);
}

void tst_AppRun::sameViewAgain()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &) {
                        app.changeView(u"playlists"_s);
                        m_device->forgetCalls();
                        app.changeView(u"playlists"_s);
                        QCOMPARE(callsOf(*m_device), QByteArray());
                    }),
             0);
}

void tst_AppRun::orderOfTheShowsRow()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_paths, 30);
                        m_device->setColourMask(1);
                        QQuickItem *atPanel = nullptr;
                        connect(&app, &App::screenChanged, &app, [&] { atPanel = running.screen(); });
                        QQuickItem *const before = running.screen();
                        m_device->forgetCalls();
                        app.changeView(u"slideshow"_s);
                        m_device->setColourMask(0);
                        const QByteArray calls = callsOf(*m_device);
                        // The settings first, with the light; then the row: panel, quality, component, start.
                        const qsizetype panel
                            = calls.indexOf("SetPanelType 0\nsetFastUpdates 0\nSetAutoPowerOff 0\n"
                                            "SetAutoKeylock 0\nClearTimerByName nextImageEvent\n"
                                            "SetHardTimerEx nextImageEvent callback context 30000");
                        QVERIFY2(panel > 0, calls.constData());
                        QVERIFY(calls.indexOf("GetFrontlightState") >= 0
                                && calls.lastIndexOf("Frontlight") < panel);
                        QVERIFY(!calls.contains("setScreenUpdateMode"));
                        QCOMPARE(atPanel, before);
                        QVERIFY(running.screen() != before);
                    }),
             0);
}

void tst_AppRun::orderOfTheOverviewsRow()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        m_device->setColourMask(1);
                        running.slideshow()->initFromList(m_paths, 30);
                        m_callsAtComponent.clear();
                        QVERIFY(connect(running.window->contentItem()->childItems().first(),
                                        SIGNAL(sourceComponentChanged()), this, SLOT(noteComponent())));
                        // The component between panel and quality, and the start.
                        app.changeView(u"slideshow"_s);
                        QCOMPARE(m_callsAtComponent.size(), 1);
                        QVERIFY2(m_callsAtComponent.first().endsWith("SetPanelType 0\nsetFastUpdates 0"),
                                 m_callsAtComponent.first().constData());
                        QCOMPARE(
                            callsOf(*m_device),
                            m_callsAtComponent.first()
                                + "\nSetAutoPowerOff 0\nSetAutoKeylock 0\nClearTimerByName nextImageEvent"
                                  "\nSetHardTimerEx nextImageEvent callback context 30000");

                        // Behind panel, quality and the full refresh; nothing comes after it.
                        m_callsAtComponent.clear();
                        app.changeView(u"playlists"_s);
                        m_device->setColourMask(0);
                        QCOMPARE(m_callsAtComponent.size(), 1);
                        QVERIFY2(m_callsAtComponent.first().endsWith(
                                     "SetPanelType 1\nsetFastUpdates 1\nsetScreenUpdateMode 5"),
                                 m_callsAtComponent.first().constData());
                        QCOMPARE(callsOf(*m_device), m_callsAtComponent.first());
                    }),
             0);
}

void tst_AppRun::screensChangeTheView()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QVERIFY(QMetaObject::invokeMethod(running.screen(), "changeView",
                                                          Q_ARG(QString, u"slideshow"_s)));
                        QCOMPARE(app.currentView(), u"slideshow"_s);
                        QVERIFY(running.screen()->property("test_w").isValid());
                        QVERIFY(QMetaObject::invokeMethod(running.screen(), "changeView",
                                                          Q_ARG(QString, u"elsewhere"_s)));
                        QCOMPARE(app.currentView(), u"elsewhere"_s);
                    }),
             0);
}

void tst_AppRun::windowFollowsThePanel()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        app.showPanel(false);
                        QTRY_COMPARE(running.window->height(), ScreenHeight());
                        app.showPanel(true);
                        QTRY_COMPARE(running.window->height(), ScreenHeight() - PanelHeight());
                        app.changeView(u"slideshow"_s);
                        app.changeOrientation(1);
                        QTRY_COMPARE(running.window->size(), QSize(1024, 758));
                        app.changeView(u"playlists"_s);
                        QTRY_COMPARE(running.window->size(), QSize(758, 1024 - PanelHeight()));
                    }),
             0);
}

void tst_AppRun::infoMessage()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const QList<QQuickItem *> loaders = running.window->contentItem()->childItems();
                        QCOMPARE(loaders.size(), 2);
                        QQuickItem *message = loaders.at(1);
                        QVERIFY(!message->isVisible());
                        QVERIFY(!message->property("item").value<QObject *>());

                        emit app.showInfoMessage(u"Two pictures"_s, u"image://resource/icon_done"_s);
                        app.changeView(u"slideshow"_s); // a message outlives a change of view
                        QVERIFY(message->isVisible());
                        QPointer<QObject> item = message->property("item").value<QObject *>();
                        QVERIFY(item);
                        QCOMPARE(item->property("text").toString(), u"Two pictures"_s);
                        QCOMPARE(item->property("icon").toUrl(), QUrl(u"image://resource/icon_done"_s));
                        QMetaObject::invokeMethod(item, "close");
                        QVERIFY(!message->isVisible());

                        emit app.showInfoMessage(u"Again"_s, u"image://resource/icon_done"_s);
                        QVERIFY(message->isVisible());
                        QCOMPARE(message->property("item").value<QObject *>(),
                                 item.data()); // it stays for the next one
                    }),
             0);
}

void tst_AppRun::infoMessageForFourSeconds()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const QQuickItem *message = running.window->contentItem()->childItems().at(1);
                        QElapsedTimer shown;
                        shown.start();
                        emit app.showInfoMessage(u"Two pictures"_s, QString());
                        QVERIFY(message->isVisible());
                        QTRY_VERIFY_WITH_TIMEOUT(!message->isVisible(), 10'000);
                        // The timer may be coarse: a twentieth.
                        QVERIFY2(shown.elapsed() >= 3800 && shown.elapsed() < 4900,
                                 QByteArray::number(shown.elapsed()).constData());
                    }),
             0);
}

void tst_AppRun::intervalReachesTheShow()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_paths, 30);
                        running.slideshow()->start();
                        m_device->forgetCalls();
                        running.settings()->setProperty("change_picture_time", 77);
                        QCOMPARE(callsOf(*m_device),
                                 QByteArray("ClearTimerByName nextImageEvent\n"
                                            "SetHardTimerEx nextImageEvent callback context 77000"));
                    }),
             0);
}

void tst_AppRun::shuffleReachesTheShow()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList({m_paths.at(2), m_paths.at(1)}, 30);
                        QSignalSpy load(running.slideshow(),
                                        &lindenreed::picture_stand::SlideshowModel::loadToCache);
                        running.settings()->setProperty("shuffle", true);
                        QCOMPARE(load.count(), 1);
                        running.settings()->setProperty("shuffle", false);
                        QCOMPARE(load.count(), 2);
                        QCOMPARE(running.slideshow()->currentImage(), m_paths.at(1));
                    }),
             0);
}

void tst_AppRun::activePlaylistReachesTheSettings()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const qlonglong id = running.playlists()->addItem(u"Own settings"_s);
                        QVERIFY(id > 0);
                        running.playlists()->setActiveId(id);
                        running.settings()->setProperty("change_picture_time", 99);
                        running.settings()->saveConfig(u"change_picture_time"_s);
                        running.playlists()->setActiveId(-1);
                        QCOMPARE(running.settings()->changePictureTime(), 30);

                        // Leaving a show reloads the settings at once, and they reach the old list.
                        running.slideshow()->initFromList(m_paths, 30);
                        running.slideshow()->start();
                        m_device->forgetCalls();
                        running.playlists()->setActiveId(id);
                        QCOMPARE(running.settings()->changePictureTime(), 99);
                        QVERIFY(callsOf(*m_device).contains(
                            "SetHardTimerEx nextImageEvent callback context 99000"));
                        // The settings know playlists by their low 32 bits.
                        running.playlists()->setActiveId(-1);
                        QCOMPARE(running.settings()->changePictureTime(), 30);
                        running.playlists()->setActiveId((1LL << 32) + id);
                        QCOMPARE(running.settings()->changePictureTime(), 99);
                        running.playlists()->deleteItem(id);
                        running.playlists()->setActiveId(-1);
                    }),
             0);
}

void tst_AppRun::footer()
{
    App app;
    QCOMPARE(
        runApp(
            app,
            [&](RunningApp &running) {
                QQuickItem *footer = running.itemWith("grid");
                QVERIFY(footer);
                QVERIFY(footer->property("grid").value<QObject *>());
                QCOMPARE(footer->property("grid").value<QObject *>(), running.itemWith("cellHeight"));

                // Nothing to show: nothing happens.
                const qlonglong id = running.playlists()->addItem(u"Empty"_s);
                running.playlists()->setActiveId(id);
                QMetaObject::invokeMethod(footer, "tryRunSlideShow");
                QCOMPARE(app.currentView(), QString());
                running.playlists()->setActiveId(-1);
                QMetaObject::invokeMethod(footer, "tryRunSlideShow");
                QCOMPARE(app.currentView(), QString());

                // The stored count decides, vanished files included; the show drops those.
                running.playlists()->setActiveId(id);
                running.playlists()->addImagesToPlaylist({u"/nowhere.png"_s, m_paths.at(3), m_paths.at(0)});
                QSignalSpy load(running.slideshow(), &lindenreed::picture_stand::SlideshowModel::loadToCache);
                m_device->forgetCalls();
                footer = running.itemWith("grid");
                QMetaObject::invokeMethod(footer, "tryRunSlideShow");
                QCOMPARE(app.currentView(), u"slideshow"_s);
                QCOMPARE(load.count(), 1);
                QCOMPARE(load.first(), (QVariantList{QStringList{m_paths.at(0), m_paths.at(3)}, 0}));
                QCOMPARE(m_device->calls({"SetAutoPowerOff"}).size(),
                         2); // started here and by the view's row
                QCOMPARE(m_device->calls({"SetHardTimerEx"}).size(), 2);

                app.changeView(u"playlists"_s);
                running.playlists()->deleteItem(id);
                running.playlists()->setActiveId(-1);
            }),
        0);
}

void tst_AppRun::keysOfTheDevice_data()
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

void tst_AppRun::keysOfTheDevice()
{
    QFETCH(int, type);
    QFETCH(int, code);
    QFETCH(int, position);
    QFETCH(int, menu);

    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_paths, 30);
                        QSignalSpy opened(running.slideshow(),
                                          &lindenreed::picture_stand::SlideshowModel::openCloseMenu);
                        m_device->send(type, code, 99); // in any view: the overview is on
                        QCOMPARE(running.slideshow()->currentImage(), m_paths.at(position));
                        QCOMPARE(opened.count(), menu);
                    }),
             0);
}

void tst_AppRun::configuredKeys_data()
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

void tst_AppRun::configuredKeys()
{
    QFETCH(QByteArray, config);
    QFETCH(int, code);
    QFETCH(int, position);
    QFETCH(int, menu);

    configure(config);
    App app;
    configure({}); // bindings that change now take effect at the next start
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_paths, 30);
                        QSignalSpy opened(running.slideshow(),
                                          &lindenreed::picture_stand::SlideshowModel::openCloseMenu);
                        m_device->forgetCalls();
                        m_device->send(40, code, 0);
                        QCOMPARE(running.slideshow()->currentImage(), m_paths.at(position));
                        QCOMPARE(opened.count(), menu);
                        // The same effect as the device's own key.
                        QCOMPARE(callsOf(*m_device),
                                 position == 1 ? QByteArray("ClearTimerByName nextImageEvent\nBanSleep 1")
                                     : position == 3 ? QByteArray("ClearTimerByName nextImageEvent")
                                                     : QByteArray());
                    }),
             0);
}

void tst_AppRun::configuredKeyDuringAShow()
{
    configure("btkeys.count=1\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=@KA_next\n");
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_paths, 30);
                        running.slideshow()->start();
                        QList<std::pair<QString, QByteArray>> effects;
                        for (const int type : {25, 40}) {
                            m_device->forgetCalls();
                            m_device->send(type, type == 25 ? 25 : 7);
                            effects.append({running.slideshow()->currentImage(), callsOf(*m_device)});
                            m_device->send(25, 24);
                        }
                        QCOMPARE(effects.at(0).first, m_paths.at(1));
                        QCOMPARE(
                            effects.at(0).second,
                            QByteArray("ClearTimerByName nextImageEvent\n"
                                       "SetHardTimerEx nextImageEvent callback context 30000\nBanSleep 1"));
                        QCOMPARE(effects.at(1), effects.at(0));
                    }),
             0);
}

void tst_AppRun::backgroundAndForeground()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_paths, 30);
                        app.changeView(u"slideshow"_s);
                        m_device->forgetCalls();
                        m_device->send(152);
                        QByteArray calls = callsOf(*m_device);
                        // The light first, while the show is as it was before.
                        QVERIFY2(calls.indexOf("GetFrontlightState") >= 0
                                     && calls.lastIndexOf("Frontlight") < calls.indexOf("SetAutoPowerOff 1"),
                                 calls.constData());
                        m_device->forgetCalls();
                        m_device->send(151);
                        calls = callsOf(*m_device);
                        QVERIFY2(calls.indexOf("GetFrontlightState") >= 0
                                     && calls.lastIndexOf("Frontlight") < calls.indexOf("SetAutoPowerOff 0"),
                                 calls.constData());

                        // A show that did not run stays stopped.
                        running.slideshow()->stop();
                        m_device->send(152);
                        m_device->forgetCalls();
                        m_device->send(151);
                        QVERIFY(!callsOf(*m_device).contains("SetAutoPowerOff"));

                        // Elsewhere the light is left alone.
                        app.changeView(u"playlists"_s);
                        m_device->forgetCalls();
                        m_device->send(152);
                        m_device->send(151);
                        QVERIFY(!callsOf(*m_device).contains("Frontlight"));
                    }),
             0);
}

void tst_AppRun::turnOfTheDevice()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &) {
                        m_device->forgetCalls();
                        m_device->send(32, 1);
                        QCOMPARE(GetOrientation(), 0); // the overview stays upright
                        QVERIFY(m_device->calls({"SetOrientation"}).isEmpty());
                        app.changeView(u"slideshow"_s);
                        m_device->forgetCalls();
                        m_device->send(32, 2);
                        QCOMPARE(GetOrientation(), 2);
                        // The handler is installed: both events go out through it, and come back as unknown
                        // ones.
                        QVERIFY(callsOf(*m_device).contains("GetEventHandler\nSendEvent handler 212 32 2\n"
                                                            "GetEventHandler\nSendEvent handler 43 0 0"));
                    }),
             0);
}

void tst_AppRun::twoRunsInOneProcess()
{
    for (int run = 0; run < 2; ++run) {
        App app;
        QCOMPARE(runApp(app,
                        [&](RunningApp &running) {
                            QVERIFY(running.itemWith("cellHeight"));
                            running.slideshow()->initFromList(m_paths, 30);
                            app.changeView(u"slideshow"_s);
                            // One answer to a key, from this application alone.
                            QSignalSpy changed(
                                running.slideshow(),
                                &lindenreed::picture_stand::SlideshowModel::current_imageChanged);
                            m_device->send(25, 25);
                            QCOMPARE(changed.count(), 1);
                            QCOMPARE(running.slideshow()->currentImage(), m_paths.at(1));
                            QVERIFY(m_device->fire("nextImageEvent"));
                            QCOMPARE(running.slideshow()->currentImage(), m_paths.at(2));
                        }),
                 0);
    }
    QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
}

void tst_AppRun::quitInTheMiddleOfAPrefetch()
{
    const QTemporaryDir folder;
    QImage large(1600, 1600, QImage::Format_RGB32);
    large.fill(Qt::gray);
    QStringList paths;
    for (int i = 0; i < 40; ++i) {
        paths.append(folder.filePath(u"%1.png"_s.arg(i)));
        if (i == 0)
            QVERIFY(large.save(paths.first()));
        else
            QVERIFY(QFile::link(paths.first(), paths.last()));
    }
    {
        App app;
        QCOMPARE(runApp(app,
                        [&](RunningApp &running) {
                            running.slideshow()->initFromList(paths, 30);
                            running.slideshow()->shuffleChange(false);
                            QTRY_VERIFY(QThreadPool::globalInstance()->activeThreadCount() > 0);
                        }),
                 0);
        QVERIFY(QThreadPool::globalInstance()->activeThreadCount() > 0);
    }
    // The job has what it needs; it ends after the picture that it is at.
    QVERIFY(QThreadPool::globalInstance()->waitForDone(30'000));
}

void tst_AppRun::quitDuringAShow()
{
    {
        App app;
        QCOMPARE(runApp(app,
                        [&](RunningApp &running) {
                            running.slideshow()->initFromList(m_paths, 30);
                            app.changeView(u"slideshow"_s);
                            m_device->forgetCalls();
                        }),
                 0);
        QVERIFY(callsOf(*m_device).contains("Frontlight")); // the light is given back before the end
        QVERIFY(!callsOf(*m_device).contains("SetAutoPowerOff 1"));
    }
    QVERIFY(
        callsOf(*m_device).endsWith("SetAutoPowerOff 1\nSetAutoKeylock 1\nClearTimerByName nextImageEvent"));
}

PANEL_TEST_MAIN(tst_AppRun)
#include "tst_app_run.moc"
