// The playlist workflow on its screens: each way from one state to the next, with the order of its steps.

#include "panel_application.h"
#include "workflow_fixture.h"

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

class tst_PlaylistWorkflow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<WorkflowFixture>(); }
    void cleanup() { m_test.reset(); }

    void openRow_data();
    void openRow();
    void play();
    void playFromThePlaylist();
    void playWithoutStoredPictures();
    void headerPlus();
    void headerBack();
    void headerSettings();
    void viewToggle();
    void menuAdd();
    void menuDelete();
    void menuRename();
    void menuClosed();
    void newPlaylist();
    void createCancelled();
    void addCancelled();
    void addedPictures_data();
    void addedPictures();
    void selectMultiple();
    void selectionCancelled();
    void selectionDeleted();
    void lastPlaylistDeleted();

private:
    static bool press(const RunningApp &running, const QString &name)
    {
        return WorkflowFixture::press(running, name);
    }
    static bool open(const RunningApp &running)
    {
        return WorkflowFixture::pressSoon(running, u"Mine. 2"_s)
            && running.app.currentView() == u"playlist"_s;
    }
    /// Runs with the playlist "Mine" of the first two pictures.
    void runWithOne(const std::function<void(RunningApp &)> &body)
    {
        m_test->run([&](RunningApp &running) {
            m_mine = WorkflowFixture::add(running, u"Mine"_s, m_test->paths.first(2));
            body(running);
        });
    }

    qlonglong m_mine = -1;
    std::unique_ptr<WorkflowFixture> m_test;
};

void tst_PlaylistWorkflow::openRow_data()
{
    QTest::addColumn<bool>("byTap");

    QTest::newRow("tap") << true;
    QTest::newRow("assistive press") << false;
}

void tst_PlaylistWorkflow::openRow()
{
    QFETCH(bool, byTap);

    runWithOne([&](RunningApp &running) {
        FolderModel *const folders = WorkflowFixture::folders(running);
        folders->setListIgnoreSelection(m_test->paths); // the list must not be thinned by it
        WorkflowSteps steps(running);
        QTRY_VERIFY(WorkflowFixture::button(running, u"Mine. 2"_s));
        if (byTap) {
            const QRect row = sceneRectangle(WorkflowFixture::button(running, u"Mine. 2"_s));
            QTest::mouseClick(running.window, Qt::LeftButton, {}, row.center());
            QTRY_COMPARE(running.app.currentView(), u"playlist"_s);
        } else {
            QVERIFY(press(running, u"Mine. 2"_s));
        }
        QCOMPARE(steps.taken(),
                 (QStringList{u"active Mine"_s, u"ViewMode"_s, u"NormalMode"_s, u"2 of 2 rows"_s,
                              u"view playlist"_s}));
    });
}

void tst_PlaylistWorkflow::play()
{
    runWithOne([&](RunningApp &running) {
        QTRY_VERIFY(WorkflowFixture::button(running, textOf("@StartPlayback")));
        WorkflowSteps steps(running);
        m_test->device.forgetCalls();
        QVERIFY(press(running, textOf("@StartPlayback")));
        QCOMPARE(steps.taken(), (QStringList{u"active Mine"_s, u"show of 2"_s, u"view slideshow"_s}));
        QByteArrayList calls;
        for (const auto &call : m_test->device.calls({"SetHardTimerEx", "SetPanelType"}))
            calls.append(call.name);
        // Started before the view changes, and again by it.
        QCOMPARE(calls, (QByteArrayList{"SetHardTimerEx", "SetPanelType", "SetHardTimerEx"}));
        QCOMPARE(running.playlists()->mode(), PlaylistModel::AllViewMode);
    });
}

void tst_PlaylistWorkflow::playFromThePlaylist()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        WorkflowSteps steps(running);
        QVERIFY(QFile::remove(m_test->paths.first()));
        QVERIFY(press(running, textOf("@PlayItem")));
        // All stored pictures are handed over; the show drops what has vanished.
        QCOMPARE(steps.taken(), (QStringList{u"show of 1"_s, u"view slideshow"_s}));
        QCOMPARE(running.playlists()->mode(), PlaylistModel::ViewMode);
    });
}

void tst_PlaylistWorkflow::playWithoutStoredPictures()
{
    m_test->run([&](RunningApp &running) {
        WorkflowFixture::add(running, u"Empty"_s, {});
        QVERIFY(WorkflowFixture::pressSoon(running, u"Empty. 0"_s));
        WorkflowSteps steps(running);
        m_test->device.forgetCalls();
        QVERIFY(WorkflowFixture::shows(running, textOf("@ThereAreNoPicturesYet")));
        QVERIFY(press(running, textOf("@PlayItem")));
        QCOMPARE(steps.taken(), QStringList());
        QVERIFY(m_test->device.calls({"SetHardTimerEx"}).isEmpty());
        QCOMPARE(running.app.currentView(), u"playlist"_s);
    });
}

void tst_PlaylistWorkflow::headerPlus()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        FolderModel *const folders = WorkflowFixture::folders(running);
        folders->selectFile(m_test->paths.last(), true); // what an unfinished selection may have left
        WorkflowSteps steps(running);
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(u"/Playlist\\.qml:\\d+: ReferenceError: "
                                                "select_photos_loader is not defined$"_s));
        QVERIFY(press(running, textOf("@AddPhotos")));
        QCOMPARE(steps.taken(),
                 (QStringList{u"folder "_s + m_test->folder.path(), u"2 of 4 rows"_s, u"AddMode"_s,
                              u"SelectionMode"_s, u"selected 0"_s, u"view select_photos"_s}));
    });
}

void tst_PlaylistWorkflow::headerBack()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        WorkflowFixture::folders(running)->setListIgnoreSelection(m_test->paths);
        WorkflowSteps steps(running);
        QVERIFY(press(running, textOf("@Back")));
        QCOMPARE(steps.taken(),
                 (QStringList{u"folder "_s + m_test->folder.path(), u"4 of 4 rows"_s, u"AllViewMode"_s,
                              u"active -1"_s, u"view playlists"_s}));
    });
}

void tst_PlaylistWorkflow::headerSettings()
{
    runWithOne([&](RunningApp &running) {
        WorkflowSteps steps(running);
        QVERIFY(press(running, textOf("@SlideshowSettings")));
        QCOMPARE(steps.taken(), (QStringList{u"back to playlists"_s, u"view settings_slideshow"_s}));
        running.app.changeView(u"playlists"_s);
        QVERIFY(open(running));
        steps.taken();
        QVERIFY(press(running, textOf("@SlideshowSettings")));
        QCOMPARE(steps.taken(), (QStringList{u"back to playlist"_s, u"view settings_slideshow"_s}));
    });
}

void tst_PlaylistWorkflow::viewToggle()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        const auto icons = [&](const QString &name) {
            const QQuickItem *const toggle = WorkflowFixture::button(running, name);
            return toggle
                ? toggle->property("icon").toString() + u' ' + toggle->property("pressedIcon").toString()
                : QString();
        };
        const auto named
            = [](const QString &icon) { return u"image://resource/%1 image://resource/%1_inv"_s.arg(icon); };
        WorkflowSteps steps(running);
        QCOMPARE(icons(textOf("@ShowAsList")), named(u"bookstore_change_view_to_thumbnails"_s));
        QVERIFY(press(running, textOf("@ShowAsList")));
        QCOMPARE(icons(textOf("@ShowAsGrid")), named(u"bookstore_change_view_to_list"_s));
        QVERIFY(!running.itemWith("countImagesInRow")->isVisible());
        QVERIFY(press(running, textOf("@ShowAsGrid")));
        QVERIFY(running.itemWith("countImagesInRow")->isVisible());
        QCOMPARE(steps.taken(), (QStringList{u"ListViewMode"_s, u"GridViewMode"_s}));
    });
}

void tst_PlaylistWorkflow::menuAdd()
{
    runWithOne([&](RunningApp &running) {
        FolderModel *const folders = WorkflowFixture::folders(running);
        folders->setMode(FolderModel::NormalMode);
        folders->selectFile(m_test->paths.last(), true);
        WorkflowSteps steps(running);
        QVERIFY(WorkflowFixture::choose(running, u"Mine. 2"_s, textOf("@AddPhotosToPlaylist")));
        // The selection is not cleared: every way out of selecting has done so.
        QCOMPARE(
            steps.taken(),
            (QStringList{u"active Mine"_s, u"AddMode"_s, u"SelectionMode"_s,
                         u"folder "_s + m_test->folder.path(), u"2 of 4 rows"_s, u"view select_photos"_s}));
        QCOMPARE(folders->countSelected(), 1);
    });
}

void tst_PlaylistWorkflow::menuDelete()
{
    runWithOne([&](RunningApp &running) {
        WorkflowFixture::add(running, u"Other"_s, {});
        WorkflowSteps steps(running);
        QVERIFY(WorkflowFixture::choose(running, u"Other. 0"_s, textOf("@Delete")));
        // Without a question.
        QCOMPARE(steps.taken(), (QStringList{u"active Other"_s, u"stored Mine 2"_s, u"active -1"_s}));
        QVERIFY(!findAccessible(running.window->contentItem(), QAccessible::PopupMenu));
        QCOMPARE(stored_database::rows(u"SELECT title FROM playlists"_s), QStringList{u"Mine"_s});
        for (const QString &path : std::as_const(m_test->paths))
            QVERIFY(QFile::exists(path));
    });
}

void tst_PlaylistWorkflow::menuRename()
{
    runWithOne([&](RunningApp &running) {
        WorkflowSteps steps(running);
        QVERIFY(WorkflowFixture::choose(running, u"Mine. 2"_s, textOf("@Rename")));
        QVERIFY(!findAccessible(running.window->contentItem(), QAccessible::PopupMenu));
        QTRY_VERIFY(findAccessible(running.window->contentItem(), QAccessible::EditableText));
        QCOMPARE(steps.taken(), QStringList{u"active Mine"_s});
        QCOMPARE(running.playlists()->mode(), PlaylistModel::AllViewMode);
    });
}

void tst_PlaylistWorkflow::menuClosed()
{
    runWithOne([&](RunningApp &running) {
        WorkflowFixture::add(running, u"Other"_s, {});
        QVERIFY(WorkflowFixture::hold(running, u"Other. 0"_s));
        QQuickItem *const grid = running.itemWith("cellHeight");
        QCOMPARE(grid->property("currentIndex").toInt(), 1);
        running.playlists()->setActiveId(m_mine);
        WorkflowSteps steps(running);
        const auto entries = [&] {
            QStringList names;
            const std::function<void(QQuickItem *)> collect = [&](QQuickItem *item) {
                if (accessible(item) && accessible(item)->role() == QAccessible::MenuItem
                    && item->isVisible())
                    names.append(accessibleName(item) + u' ' + item->property("icon").toString());
                for (QQuickItem *child : item->childItems())
                    collect(child);
            };
            collect(running.window->contentItem());
            return names;
        };
        QTRY_COMPARE(
            entries(),
            (QStringList{textOf("@Rename") + u" edit_word"_s, textOf("@AddPhotosToPlaylist") + u" plus_add"_s,
                         textOf("@Delete") + u" trash"_s}));
        QTest::mouseClick(running.window, Qt::LeftButton, {}, {5, 5});
        QTRY_VERIFY(!findAccessible(running.window->contentItem(), QAccessible::PopupMenu));
        QCOMPARE(steps.taken(), QStringList{u"active -1"_s});
        QVERIFY(grid->hasActiveFocus());
    });
}

void tst_PlaylistWorkflow::newPlaylist()
{
    runWithOne([&](RunningApp &running) {
        FolderModel *const folders = WorkflowFixture::folders(running);
        folders->setMode(FolderModel::NormalMode);
        folders->setListIgnoreSelection(m_test->paths);
        WorkflowSteps steps(running);
        QVERIFY(WorkflowFixture::create(running));
        QCOMPARE(
            steps.taken(),
            (QStringList{u"stored Mine 2, %1 0"_s.arg(textOf("@New_playlist")),
                         u"active "_s + textOf("@New_playlist"), u"CreateMode"_s, u"SelectionMode"_s,
                         u"folder "_s + m_test->folder.path(), u"4 of 4 rows"_s, u"view select_photos"_s}));
        QVERIFY(!WorkflowFixture::button(running, textOf("@CreatePlaylist"))->isEnabled());
    });
}

void tst_PlaylistWorkflow::createCancelled()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(WorkflowFixture::create(running));
        WorkflowFixture::folders(running)->selectFile(m_test->paths.last(), true);
        WorkflowSteps steps(running);
        QVERIFY(press(running, textOf("@Cancel")));
        QCOMPARE(steps.taken(),
                 (QStringList{u"stored Mine 2"_s, u"active -1"_s, u"selected 0"_s, u"AllViewMode"_s,
                              u"view playlists"_s}));
        QCOMPARE(WorkflowFixture::folders(running)->mode(), FolderModel::SelectionMode); // left as it is
        QCOMPARE(stored_database::rows(u"SELECT title FROM playlists"_s), QStringList{u"Mine"_s});
    });
}

void tst_PlaylistWorkflow::addCancelled()
{
    // Also from the overview's menu the way leads to the playlist.
    runWithOne([&](RunningApp &running) {
        QVERIFY(WorkflowFixture::choose(running, u"Mine. 2"_s, textOf("@AddPhotosToPlaylist")));
        WorkflowFixture::folders(running)->selectFile(m_test->paths.last(), true);
        WorkflowSteps steps(running);
        QVERIFY(press(running, textOf("@Cancel")));
        QCOMPARE(steps.taken(),
                 (QStringList{u"selected 0"_s, u"ViewMode"_s, u"NormalMode"_s, u"2 of 2 rows"_s,
                              u"view playlist"_s}));
        QCOMPARE(running.playlists()->activeId(), m_mine);
    });
}

void tst_PlaylistWorkflow::addedPictures_data()
{
    QTest::addColumn<bool>("created");
    QTest::addColumn<int>("added");

    QTest::newRow("one to a playlist that is there") << false << 1;
    QTest::newRow("two to a playlist that is there") << false << 2;
    QTest::newRow("one to a new playlist") << true << 1;
    QTest::newRow("two to a new playlist") << true << 2;
}

void tst_PlaylistWorkflow::addedPictures()
{
    QFETCH(bool, created);
    QFETCH(int, added);

    runWithOne([&](RunningApp &running) {
        const QString title = created ? textOf("@New_playlist") : u"Mine"_s;
        if (created) {
            QVERIFY(WorkflowFixture::create(running));
        } else {
            QVERIFY(WorkflowFixture::choose(running, u"Mine. 2"_s, textOf("@AddPhotosToPlaylist")));
        }
        const QString action = textOf(created ? "@CreatePlaylist" : "@AddPhotos");
        QVERIFY(!WorkflowFixture::button(running, action)->isEnabled());
        for (const QString &path : m_test->paths.last(added))
            WorkflowFixture::folders(running)->selectFile(path, true);
        QVERIFY(WorkflowFixture::button(running, action)->isEnabled());
        WorkflowSteps steps(running);
        QVERIFY(press(running, action));
        QStringList expected;
        const int before = created ? 0 : 2;
        for (int i = 1; i <= added; ++i)
            expected.append(created ? u"stored Mine 2, %1 %2"_s.arg(title).arg(i)
                                    : u"stored Mine %1"_s.arg(2 + i));
        const QString message = added == 1 ? u"1 picture was added to "_s : u"2 pictures were added to "_s;
        expected += QStringList{u"selected 0"_s,
                                u"ViewMode"_s,
                                u"NormalMode"_s,
                                u"%1 of %1 rows"_s.arg(before + added),
                                u"message "_s + message + title + u" image://resource/icon_done"_s,
                                u"view playlist"_s};
        QCOMPARE(steps.taken(), expected);
        QTRY_VERIFY(WorkflowFixture::shows(running, message + title)); // over the new screen
    });
}

void tst_PlaylistWorkflow::selectMultiple()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        WorkflowSteps steps(running);
        QVERIFY(WorkflowFixture::choose(running, u"a.png"_s, textOf("@SelectMultiple")));
        QCOMPARE(steps.taken(), QStringList{u"SelectionMode"_s});
        QVERIFY(!WorkflowFixture::button(running, textOf("@Delete"))->isEnabled());
        QVERIFY(!WorkflowFixture::button(running, textOf("@Back"))); // the panel stands in the header's place
        WorkflowFixture::folders(running)->selectFile(m_test->paths.first(), true);
        QVERIFY(WorkflowFixture::button(running, textOf("@Delete"))->isEnabled());
    });
}

void tst_PlaylistWorkflow::selectionCancelled()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        WorkflowFixture::folders(running)->setMode(FolderModel::SelectionMode);
        WorkflowFixture::folders(running)->selectFile(m_test->paths.first(), true);
        WorkflowSteps steps(running);
        QVERIFY(press(running, textOf("@Cancel")));
        QCOMPARE(steps.taken(), (QStringList{u"selected 0"_s, u"NormalMode"_s}));
        QVERIFY(WorkflowFixture::button(running, textOf("@Back")));
        QVERIFY(WorkflowFixture::button(running, textOf("@PlayItem")));
    });
}

void tst_PlaylistWorkflow::selectionDeleted()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        WorkflowFixture::folders(running)->setMode(FolderModel::SelectionMode);
        WorkflowFixture::folders(running)->selectFile(m_test->paths.first(), true);
        WorkflowSteps steps(running);
        QVERIFY(press(running, textOf("@Delete")));
        QCOMPARE(steps.taken(),
                 (QStringList{u"stored Mine 1"_s, u"1 of 1 rows"_s, u"selected 0"_s, u"NormalMode"_s}));
        QCOMPARE(stored_database::rows(u"SELECT url FROM playlist_images"_s), m_test->paths.sliced(1, 1));
        QVERIFY(QFile::exists(m_test->paths.first()));
        QVERIFY(WorkflowFixture::button(running, textOf("@PlayItem")));
    });
}

void tst_PlaylistWorkflow::lastPlaylistDeleted()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(WorkflowFixture::choose(running, u"Mine. 2"_s, textOf("@Delete")));
        QVERIFY(WorkflowFixture::shows(running, textOf("@ThereAreNoPlaylistsYet")));
        QVERIFY(WorkflowFixture::button(running, textOf("@New_playlist"))->isEnabled());
    });
}

PANEL_TEST_MAIN(tst_PlaylistWorkflow)
#include "tst_playlist_workflow.moc"
