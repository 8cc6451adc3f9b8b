// Folders and breadcrumbs of the running application: its first folder, media that come and go, the screens'
// view.

#include "app_fixture.h"
#include "folder_tree.h"
#include "media_fixture.h"
#include "panel_application.h"
#include "panel_remote.h"
#include "running_app.h"

#include <QQmlComponent>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;
using lindenreed::picture_stand::BreadcrumbsModel;
using lindenreed::picture_stand::FolderModel;

class tst_AppFolders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        stored_database::remove();
        QVERIFY(QDir().rmdir(u"/mnt/ext1/Photo"_s)); // empty in a new device root
    }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup()
    {
        MediaFixture::plug(false, false);
        m_test.reset();
    }

    void firstFolderIsMissing(); // first: the storages are looked for once at a start
    void firstFolder();
    void mediaReachTheStorages();
    void mediaReachAList();
    void pulledCard();
    void foldersForTheScreens();
    void rowsForTheScreens();
    void breadcrumbsForTheScreens();

private:
    static QStringList names(const QAbstractListModel &model, int role)
    {
        QStringList found;
        for (int row = 0; row < model.rowCount(); ++row)
            found.append(model.data(model.index(row), role).toString());
        return found;
    }
    static QStringList names(RunningApp &running)
    {
        return names(*running.model<FolderModel>("FolderModel"), FolderModel::NameRole);
    }
    static QStringList crumbs(RunningApp &running)
    {
        return names(*running.model<BreadcrumbsModel>("BreadcrumbsModel"), BreadcrumbsModel::NameRole);
    }
    /// An item made of `text` in the window of the application.
    static std::unique_ptr<QQuickItem> made(RunningApp &running, const char *text)
    {
        QQmlComponent component(qmlEngine(running.window));
        component.setData(text, QUrl(u"qrc:/test.qml"_s));
        std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem *>(component.create(running.context)));
        if (item)
            item->setParentItem(running.window->contentItem());
        else
            qWarning("%s", qPrintable(component.errorString()));
        return item;
    }

    std::unique_ptr<AppFixture> m_test;
};

void tst_AppFolders::firstFolderIsMissing()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto *folders = running.model<FolderModel>("FolderModel");
                        QCOMPARE(folders->countFiles(), 0);
                        QCOMPARE(crumbs(running), QStringList{QString()});
                        const QSignalSpy reset(folders, &FolderModel::modelReset);
                        QVERIFY(MediaFixture::settled());
                        QVERIFY(MediaFixture::look());
                        // No storage was known then, and it stays at that.
                        QCOMPARE(names(running), QStringList());
                        QCOMPARE(reset.count(), 0);
                        folders->restore();
                        QCOMPARE(names(running), QStringList{u"This device"_s});
                        QCOMPARE(crumbs(running), QStringList{QString()});
                    }),
             0);
}

void tst_AppFolders::firstFolder()
{
    const FolderTree photos(u"/mnt/ext1/Photo"_s);
    photos.make({u"a.jpg"_s, u"2023/b.jpg"_s});
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QCOMPARE(names(running), QStringList({u"2023"_s, u""_s, u""_s, u"a.jpg"_s}));
                        QCOMPARE(running.model<FolderModel>("FolderModel")->countFiles(), 1);
                        QCOMPARE(crumbs(running), QStringList({QString(), u"This device"_s, u"Photo"_s}));
                    }),
             0);
}

void tst_AppFolders::mediaReachTheStorages()
{
    App app;
    QCOMPARE(
        runApp(
            app,
            [&](RunningApp &running) {
                auto *folders = running.model<FolderModel>("FolderModel");
                folders->changeFolder({});
                QCOMPARE(names(running), QStringList{u"This device"_s});
                PanelRemote remote;
                QCOMPARE(code(remote.ask(u"card"_s, {{u"in"_s, true}})), u"ok"_s);
                QTRY_COMPARE(names(running), QStringList({u"This device"_s, u"SD card"_s}));
                QCOMPARE(code(remote.ask(u"usb"_s, {{u"in"_s, true}})), u"ok"_s);
                QTRY_COMPARE(names(running), QStringList({u"This device"_s, u"SD card"_s, u"USB drive"_s}));
                QCOMPARE(code(remote.ask(u"card"_s, {{u"in"_s, false}})), u"ok"_s);
                QTRY_COMPARE(names(running), QStringList({u"This device"_s, u"USB drive"_s}));
            }),
        0);
}

void tst_AppFolders::mediaReachAList()
{
    MediaFixture::plug(true, false);
    const FolderTree trip(u"/mnt/ext2/trip"_s);
    trip.make({u"a.jpg"_s});
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto *folders = running.model<FolderModel>("FolderModel");
                        folders->loadFromList({trip.path(u"a.jpg"_s), m_test->paths.at(0)});
                        QCOMPARE(names(running), QStringList({u"a.jpg"_s, u"0.png"_s}));
                        PanelRemote remote;
                        QCOMPARE(code(remote.ask(u"card"_s, {{u"in"_s, false}})), u"ok"_s);
                        QTRY_COMPARE(names(running), QStringList{u"0.png"_s});
                        QCOMPARE(code(remote.ask(u"card"_s, {{u"in"_s, true}})), u"ok"_s);
                        QTRY_COMPARE(names(running), QStringList({u"a.jpg"_s, u"0.png"_s}));
                    }),
             0);
}

void tst_AppFolders::pulledCard()
{
    MediaFixture::plug(true, false);
    QVERIFY(MediaFixture::look());
    const FolderTree trip(u"/mnt/ext2/trip"_s);
    trip.make({u"a.jpg"_s});
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto *folders = running.model<FolderModel>("FolderModel");
                        folders->changeFolder(trip.top);
                        PanelRemote remote;
                        QCOMPARE(code(remote.ask(u"card"_s, {{u"in"_s, false}})), u"ok"_s);
                        QTRY_COMPARE(MediaFixture::roots().size(), 1);
                        QCOMPARE(names(running), QStringList{u"a.jpg"_s}); // until the user moves
                        QCOMPARE(crumbs(running), QStringList({QString(), u"SD card"_s, u"trip"_s}));
                        running.model<BreadcrumbsModel>("BreadcrumbsModel")->changeFolderByIndex(1);
                        QCOMPARE(names(running), QStringList{u"This device"_s});
                        QCOMPARE(crumbs(running), QStringList{QString()});
                    }),
             0);
    MediaFixture::plug(true, false);
}

void tst_AppFolders::foldersForTheScreens()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto *folders = running.model<FolderModel>("FolderModel");
                        const auto item = made(running, R"(import QtQuick
import com.lindenreed.picturestand 1.0
Item {
    property bool selecting: FolderModel.mode === FolderModelModeRoles.SelectionMode
    property bool inGrid: FolderModel.viewMode === FolderModelModeRoles.GridViewMode
    property int selected: FolderModel.countSelected
    property int files: FolderModel.countFiles
    property string folder
    function change() {
        FolderModel.mode = FolderModelModeRoles.NormalMode
        FolderModel.viewMode = FolderModelModeRoles.ListViewMode
        FolderModel.selectFile("/a.jpg", true)
    }
    Connections {
        target: FolderModel
        function onChangedFolder(path) { folder = path }
    }
})");
                        QVERIFY(item);
                        QVERIFY(item->property("selecting").toBool());
                        QVERIFY(item->property("inGrid").toBool());
                        QVERIFY(QMetaObject::invokeMethod(item.get(), "change"));
                        QVERIFY(!item->property("selecting").toBool());
                        QVERIFY(!item->property("inGrid").toBool());
                        QCOMPARE(item->property("selected").toInt(), 1); // the property, not the slot
                        QCOMPARE(folders->mode(), FolderModel::NormalMode);
                        folders->changeFolder(m_test->folder.path());
                        QCOMPARE(item->property("folder").toString(), m_test->folder.path());
                        QCOMPARE(item->property("files").toInt(), 4);
                    }),
             0);
}

void tst_AppFolders::rowsForTheScreens()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto *folders = running.model<FolderModel>("FolderModel");
                        folders->changeFolder({});
                        const auto item = made(running, R"(import QtQuick
Item {
    id: item
    property string line
    Repeater {
        model: FolderModel
        Item {
            property string line: [path, name, type, selected, freeSpace !== "", totalSpace !== "",
                                   memory !== ""].join(" ")
            onLineChanged: item.line = line
        }
    }
})");
                        QVERIFY(item);
                        QCOMPARE(item->property("line").toString(),
                                 u"/mnt/ext1 This device 1 false true true true"_s);
                        folders->loadFromList({m_test->paths.at(1)});
                        QCOMPARE(item->property("line").toString(),
                                 m_test->paths.at(1) + u" 1.png 5 false false false true"_s);
                        folders->selectFile(m_test->paths.at(1), true);
                        QCOMPARE(item->property("line").toString(),
                                 m_test->paths.at(1) + u" 1.png 5 true false false true"_s);
                    }),
             0);
}

void tst_AppFolders::breadcrumbsForTheScreens()
{
    const FolderTree tree(u"/mnt/ext1/album"_s);
    tree.make({u"a/b/"_s});
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto *folders = running.model<FolderModel>("FolderModel");
                        folders->changeFolder(tree.path(u"a"_s));
                        const auto item = made(running, R"(import QtQuick
import com.lindenreed.controls 2.0
Breadcrumbs {
    width: 700
    onClicked: index => BreadcrumbsModel.changeFolderByIndex(index)
    model: BreadcrumbsModel
    property string line: shown.map(each => each.row + each.name).join("/")
})");
                        QVERIFY(item);
                        QTRY_COMPARE(item->property("line").toString(), u"0/1This device/2album/3a"_s);
                        QVERIFY(QMetaObject::invokeMethod(item.get(), "clicked", Q_ARG(int, 2)));
                        QCOMPARE(names(running), QStringList({u"a"_s, u""_s, u""_s}));
                        QTRY_COMPARE(item->property("line").toString(), u"0/1This device/2album"_s);
                        QVERIFY(QMetaObject::invokeMethod(item.get(), "clicked", Q_ARG(int, 0)));
                        QTRY_COMPARE(item->property("line").toString(), u"0"_s);
                        QCOMPARE(names(running), QStringList{u"This device"_s});
                    }),
             0);
}

PANEL_TEST_MAIN(tst_AppFolders)
#include "tst_app_folders.moc"
