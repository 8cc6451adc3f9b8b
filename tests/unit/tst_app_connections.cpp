// What one part of the application tells the others.

#include "app_fixture.h"
#include "folder_tree.h"
#include "panel_application.h"
#include "running_app.h"

#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;
using lindenreed::picture_stand::BreadcrumbsModel;
using lindenreed::picture_stand::FolderModel;

class tst_AppConnections : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void foldersReachTheBreadcrumbs();
    void breadcrumbsReachTheFolders();
    void intervalReachesTheShow();
    void shuffleReachesTheShow();
    void activePlaylistReachesTheSettings();
    void footer();

private:
    std::unique_ptr<AppFixture> m_test;
};

void tst_AppConnections::foldersReachTheBreadcrumbs()
{
    const FolderTree tree(u"/mnt/ext1/album"_s);
    tree.make({u"a/b/"_s});
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto *folders = running.model<FolderModel>("FolderModel");
                        auto *crumbs = running.model<BreadcrumbsModel>("BreadcrumbsModel");
                        QTRY_COMPARE((folders->changeFolder({}), folders->rowCount()), 1);
                        QCOMPARE(crumbs->rowCount(), 1);
                        const QSignalSpy reset(crumbs, &BreadcrumbsModel::modelReset);
                        folders->changeFolder(tree.path(u"a/b"_s));
                        QCOMPARE(reset.count(), 1);
                        QCOMPARE(crumbs->rowCount(), 5);
                        folders->loadFromList({});
                        QCOMPARE(reset.count(), 1);
                        folders->restore();
                        QCOMPARE(reset.count(), 2);
                    }),
             0);
}

void tst_AppConnections::breadcrumbsReachTheFolders()
{
    const FolderTree tree(u"/mnt/ext1/album"_s);
    tree.make({u"a/"_s, u"b/"_s});
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto *folders = running.model<FolderModel>("FolderModel");
                        auto *crumbs = running.model<BreadcrumbsModel>("BreadcrumbsModel");
                        QTRY_COMPARE((folders->changeFolder({}), folders->rowCount()), 1);
                        folders->changeFolder(tree.path(u"a"_s));
                        QCOMPARE(folders->rowCount(), 0);
                        const QSignalSpy changed(folders, &FolderModel::changedFolder);
                        crumbs->changeFolderByIndex(2);
                        QCOMPARE(changed.count(), 1); // and not in circles
                        QCOMPARE(changed.constFirst().constFirst().toString(), tree.top);
                        QCOMPARE(folders->rowCount(), 3);
                        QCOMPARE(crumbs->rowCount(), 3);
                    }),
             0);
}

void tst_AppConnections::intervalReachesTheShow()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_test->paths, 30);
                        running.slideshow()->start();
                        m_test->device.forgetCalls();
                        running.settings()->setProperty("change_picture_time", 77);
                        QCOMPARE(m_test->calls(),
                                 QByteArray("ClearTimerByName nextImageEvent\n"
                                            "SetHardTimerEx nextImageEvent callback context 77000"));
                    }),
             0);
}

void tst_AppConnections::shuffleReachesTheShow()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList({m_test->paths.at(2), m_test->paths.at(1)}, 30);
                        QSignalSpy load(running.slideshow(),
                                        &lindenreed::picture_stand::SlideshowModel::loadToCache);
                        running.settings()->setProperty("shuffle", true);
                        QCOMPARE(load.count(), 1);
                        running.settings()->setProperty("shuffle", false);
                        QCOMPARE(load.count(), 2);
                        QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(1));
                    }),
             0);
}

void tst_AppConnections::activePlaylistReachesTheSettings()
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
                        running.slideshow()->initFromList(m_test->paths, 30);
                        running.slideshow()->start();
                        m_test->device.forgetCalls();
                        running.playlists()->setActiveId(id);
                        QCOMPARE(running.settings()->changePictureTime(), 99);
                        QVERIFY(
                            m_test->calls().contains("SetHardTimerEx nextImageEvent callback context 99000"));
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

void tst_AppConnections::footer()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QQuickItem *footer = running.itemWith("grid");
                        QVERIFY(footer);
                        QVERIFY(footer->property("grid").value<QObject *>());
                        QCOMPARE(footer->property("grid").value<QObject *>(), running.itemWith("cellHeight"));

                        running.settings()->setProperty("isFirstRun", false);
                        running.settings()->saveConfig(u"is_first_run"_s);
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
                        running.playlists()->addImagesToPlaylist(
                            {u"/nowhere.png"_s, m_test->paths.at(3), m_test->paths.at(0)});
                        QSignalSpy load(running.slideshow(),
                                        &lindenreed::picture_stand::SlideshowModel::loadToCache);
                        m_test->device.forgetCalls();
                        footer = running.itemWith("grid");
                        QMetaObject::invokeMethod(footer, "tryRunSlideShow");
                        QCOMPARE(app.currentView(), u"slideshow"_s);
                        QCOMPARE(load.count(), 1);
                        QCOMPARE(load.first(),
                                 (QVariantList{QStringList{m_test->paths.at(0), m_test->paths.at(3)}, 0}));
                        QCOMPARE(m_test->device.calls({"SetAutoPowerOff"}).size(),
                                 2); // started here and by the view's row
                        QCOMPARE(m_test->device.calls({"SetHardTimerEx"}).size(), 2);

                        app.changeView(u"playlists"_s);
                        running.playlists()->deleteItem(id);
                        running.playlists()->setActiveId(-1);
                    }),
             0);
}

PANEL_TEST_MAIN(tst_AppConnections)
#include "tst_app_connections.moc"
