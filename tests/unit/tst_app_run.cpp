// The application as it runs: order of its start, what the screens get, two runs in one process, quitting.

#include "app_fixture.h"
#include "cover_cache.h"
#include "datastorage.h"
#include "folder_tree.h"
#include "panel_application.h"
#include "running_app.h"
#include "storage.h"

#include <slateview.h>

#include <QQmlComponent>
#include <QQuickAsyncImageProvider>
#include <QSignalSpy>
#include <QTime>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;
using lindenreed::picture_stand::BreadcrumbsModel;
using lindenreed::picture_stand::CoverCache;
using lindenreed::picture_stand::coverKey;
using lindenreed::picture_stand::FolderModel;
using lindenreed::picture_stand::Storage;

class tst_AppRun : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void orderOfTheStart();
    void placeOfTheSettings();
    void placeOfTheFirstFolder();
    void placeOfTheThumbnails();
    void exitCode();
    void previousOrientation_data();
    void previousOrientation();
    void minuteTick();
    void contextAndTypes();
    void twoRunsInOneProcess();
    void quitInTheMiddleOfAPrefetch();
    void quitDuringAShow();

private:
    std::unique_ptr<AppFixture> m_test;
};

void tst_AppRun::orderOfTheStart()
{
    App app;
    QByteArrayList signalsSeen; // each with the calls that came before it
    connect(&app, &App::screenChanged, &app,
            [&] { signalsSeen.append(QByteArray::number(m_test->calls().count('\n'))); });
    m_test->device.forgetCalls();
    QByteArray calls;
    QCOMPARE(runApp(app, [&](RunningApp &) { calls = m_test->calls(); }), 0);

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
             (QByteArrayList{"setStartupFlag 1", "setEventHandler handler", "SetPanelType 1", "EnumFontsEx",
                             "FreeFontsForSort fonts", "GetPreviousTask", "GetTaskFramebufferInfo 0"}));
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
    m_test->device.forgetCalls();
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        calls = m_test->calls();
                        interval = running.settings()->changePictureTime();
                    }),
             0);
    DataStorage::instance().setSetting(u"change_picture_time"_s, u"30"_s, -1);
    QCOMPARE(interval, 77);
    // And before anybody listens: the show, told of an interval, would have cleared its timer.
    QVERIFY2(!calls.contains("ClearTimerByName"), calls.constData());
}

void tst_AppRun::placeOfTheFirstFolder()
{
    const FolderTree photos(u"/mnt/ext1/Photo"_s);
    photos.make({u"a.jpg"_s, u"b.jpg"_s});
    App app;
    QList<QStringList> listed;
    QByteArray callsBefore;
    QByteArray callsOfAView;
    connect(&Storage::instance(), &Storage::listFilesChanged, &app, [&](const QStringList &names) {
        listed.append(names);
        callsBefore = m_test->calls();
        app.changeView(u"slideshow"_s); // nobody listens to it yet: the light stays
        callsOfAView = m_test->calls().mid(callsBefore.size());
        app.changeView({});
    });
    m_test->device.forgetCalls();
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QCOMPARE(listed, QList<QStringList>({{u"a.jpg"_s, u"b.jpg"_s}}));
                        QCOMPARE(running.model<FolderModel>("FolderModel")->rowCount(), 2);
                        QCOMPARE(running.model<FolderModel>("FolderModel")->countFiles(), 2);
                        // The breadcrumbs listened already.
                        QVERIFY(running.model<BreadcrumbsModel>("BreadcrumbsModel")->rowCount() > 0);
                    }),
             0);
    QVERIFY2(callsBefore.endsWith("FreeFontsForSort fonts"), callsBefore.constData());
    QCOMPARE(callsOfAView, QByteArray());
}

void tst_AppRun::placeOfTheThumbnails()
{
    App app;
    m_test->device.forgetCalls();
    QByteArrayList calls;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        calls = callLines(m_test->device.calls(
                            {"FreeFontsForSort", "GetThemeInt", "device_platform", "GetPreviousTask"}));

                        QVERIFY(dynamic_cast<QQuickAsyncImageProvider *>(
                            qmlEngine(running.window)->imageProvider(u"cover_provider"_s)));
                        // And what is listed from now on is loaded ahead, by its bare name.
                        Storage::instance().listFiles(m_test->folder.path(), {u"2.png"_s}, 0);
                        QTRY_VERIFY(CoverCache::instance().find(coverKey(u"2.png"_s, 220, 220)));
                    }),
             0);
    QCOMPARE(
        calls,
        (QByteArrayList{"FreeFontsForSort fonts", "GetThemeInt e3.galery_cover.width 165",
                        "GetThemeInt e3.galery_cover.height 290", "device_platform", "GetPreviousTask"}));
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

    m_test->device.setPreviousOrientation(orientation);
    App app;
    QByteArray calls;
    // Upright counts as a change only once in a process: the turn before it makes sure that it is one.
    app.changeView(u"slideshow"_s);
    app.changeOrientation(1);
    app.changeView(QString());
    SetOrientation(1);
    m_test->device.forgetCalls();
    QList<bool> windows; // whether there was one at each change of the screen
    connect(&app, &App::screenChanged, &app,
            [&windows] { windows.append(!QGuiApplication::topLevelWindows().isEmpty()); });
    QCOMPARE(runApp(app, [&](RunningApp &) { calls = m_test->calls(); }), 0);
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
                        m_test->device.forgetCalls();
                        QByteArray callsBefore = "not heard";
                        connect(&app, &App::currentDateChanged, &app,
                                [&callsBefore, this] { callsBefore = m_test->calls(); });
                        const auto armed = [] {
                            return "SetHardTimerEx updateDateTimeEvent callback context "
                                + QByteArray::number((60 - QTime::currentTime().second()) * 1000);
                        };
                        const QByteArray earliest = armed();
                        QVERIFY(m_test->device.fire("updateDateTimeEvent"));
                        const QByteArray latest = armed();
                        const QByteArray calls = m_test->calls();
                        QCOMPARE(changed.count(), 1);
                        QCOMPARE(callsBefore, QByteArray()); // first the date, then the next tick
                        QVERIFY2(calls == earliest || calls == latest, calls.constData());
                        QVERIFY(m_test->device.fire("updateDateTimeEvent")); // armed again, in any view
                        QCOMPARE(changed.count(), 2);
                    }),
             0);
}

void tst_AppRun::contextAndTypes()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QVERIFY(running.settings());
                        QVERIFY(running.slideshow());
                        QVERIFY(running.playlists());
                        QVERIFY(running.model<FolderModel>("FolderModel"));
                        QVERIFY(running.model<BreadcrumbsModel>("BreadcrumbsModel"));
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
                        QCOMPARE(evaluate(types, "FolderModelModeRoles.IsSelectedRole").toInt(), 263);
                        QCOMPARE(evaluate(types, "FolderModelModeRoles.SelectionMode").toInt(), 1);
                        QCOMPARE(evaluate(types, "FolderModelModeRoles.ListViewMode").toInt(), 1);
                        for (const QByteArray name :
                             {"StorageItemDataRoles", "FolderModelModeRoles", "FontDataRoles",
                              "SettingsDataRoles", "PlaylistDataRoles"}) {
                            QVERIFY2(evaluate(types,
                                              "Qt.createQmlObject('import com.lindenreed.picturestand 1.0; "
                                                  + name + " {}', this) !== null")
                                         .toBool(),
                                     name.constData());
                        }
                        for (const QByteArray name :
                             {"Storage", "DataStorage", "ResourceImageProvider", "CoverProvider"}) {
                            QVERIFY2(evaluate(types + "; import com.lindenreed.picture_stand 1.0",
                                              "typeof " + name + " === 'undefined'")
                                         .toBool(),
                                     name.constData());
                        }
                        // Each identifier resolves its own kind only.
                        QVERIFY(evaluate("import QtQml; import com.lindenreed.picture_stand 1.0",
                                         "typeof PlaylistDataRoles === 'undefined'")
                                    .toBool());
                        QVERIFY(evaluate(types, "typeof Playlists === 'undefined'").toBool());
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
                            running.startShow(m_test->paths);
                            // One answer to a key, from this application alone.
                            QSignalSpy changed(
                                running.slideshow(),
                                &lindenreed::picture_stand::SlideshowModel::current_imageChanged);
                            m_test->device.send(25, 25);
                            QCOMPARE(changed.count(), 1);
                            QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(1));
                            QVERIFY(m_test->device.fire("nextImageEvent"));
                            QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(2));
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
                            QVERIFY(!QThreadPool::globalInstance()->waitForDone(0));
                        }),
                 0);
        QVERIFY(!QThreadPool::globalInstance()->waitForDone(0));
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
                            running.startShow(m_test->paths);
                            m_test->device.forgetCalls();
                        }),
                 0);
        QVERIFY(m_test->calls().contains("Frontlight")); // the light is given back before the end
        QVERIFY(!m_test->calls().contains("SetAutoPowerOff 1"));
    }
    QVERIFY(m_test->calls().endsWith("SetAutoPowerOff 1\nSetAutoKeylock 1\nClearTimerByName nextImageEvent"));
}

PANEL_TEST_MAIN(tst_AppRun)
#include "tst_app_run.moc"
