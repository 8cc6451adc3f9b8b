// What stands where on the screens of one playlist and of the picker, and in a row of the overview.

#include "panel_application.h"
#include "workflow_fixture.h"

#include <QQmlExpression>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

namespace {

double measure(const RunningApp &running, const QString &expression)
{
    return QQmlExpression(qmlContext(running.screen()), running.screen(), expression).evaluate().toDouble();
}

QQuickItem *find(QQuickItem *item, const std::function<bool(const QQuickItem *)> &fits)
{
    if (fits(item))
        return item;
    for (QQuickItem *child : item->childItems()) {
        if (QQuickItem *found = find(child, fits))
            return found;
    }
    return nullptr;
}

QQuickItem *ofType(QQuickItem *root, const char *type)
{
    return find(root, [type](const QQuickItem *item) {
        return item->metaObject()->className() == QByteArray(type)
            || QByteArray(item->metaObject()->className()).startsWith(type + QByteArray("_QMLTYPE"));
    });
}

QList<QQuickItem *> allOfType(QQuickItem *root, const char *type)
{
    QList<QQuickItem *> found;
    const std::function<void(QQuickItem *)> collect = [&](QQuickItem *item) {
        if (QByteArray(item->metaObject()->className()).startsWith(type))
            found.append(item);
        for (QQuickItem *child : item->childItems())
            collect(child);
    };
    collect(root);
    return found;
}

/// The black lines of a screen: its own rectangles of height 1.
QList<QRect> lines(const RunningApp &running)
{
    QList<QRect> found;
    for (const QQuickItem *child : running.screen()->childItems()) {
        if (child->height() == 1 && child->property("color").value<QColor>() == QColor(Qt::black))
            found.append(sceneRectangle(child));
    }
    return found;
}

} // namespace

class tst_PlaylistScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<WorkflowFixture>(); }
    void cleanup() { m_test.reset(); }

    void rowOfTheOverview();
    void menuKeyOnARow();
    void coversOfARow();
    void headerOfThePlaylist();
    void panelOfThePlaylist();
    void contentOfThePlaylist();
    void vanishedFiles();
    void picker();
    void pickerShowsTheGridAlone();
    void footerOfEachState_data();
    void footerOfEachState();

private:
    void runWithOne(const std::function<void(RunningApp &)> &body)
    {
        m_test->run([&](RunningApp &running) {
            m_mine = WorkflowFixture::add(running, u"Mine"_s, m_test->paths.first(2));
            QTRY_VERIFY(WorkflowFixture::button(running, u"Mine. 2"_s));
            body(running);
        });
    }
    static bool open(const RunningApp &running) { return WorkflowFixture::press(running, u"Mine. 2"_s); }

    qlonglong m_mine = -1;
    std::unique_ptr<WorkflowFixture> m_test;
};

void tst_PlaylistScreens::rowOfTheOverview()
{
    runWithOne([&](RunningApp &running) {
        const auto dp
            = [&](double length) { return int(measure(running, u"Global.dp(%1 * 0.5333)"_s.arg(length))); };
        QQuickItem *const texts = WorkflowFixture::button(running, u"Mine. 2"_s);
        QQuickItem *const row = texts->parentItem();
        const QRect place = sceneRectangle(row);
        QCOMPARE(place.height(), dp(268));

        const QList<QQuickItem *> texted = texts->childItems();
        QCOMPARE(texted.at(0)->property("text").toString(), u"Mine"_s);
        QCOMPARE(texted.at(0)->property("styledFont").toDouble(), measure(running, u"FontStyles.BodyBold"_s));
        QCOMPARE(texted.at(0)->property("elide").toInt(), int(Qt::ElideRight));
        QCOMPARE(texted.at(1)->property("text").toString(), u"2"_s);
        QCOMPARE(texted.at(1)->property("styledFont").toDouble(),
                 measure(running, u"FontStyles.BodySBold"_s));
        QVERIFY(texted.at(1)->y() >= texted.at(0)->height());

        QQuickItem *const play = WorkflowFixture::button(running, textOf("@StartPlayback"));
        QCOMPARE(play->property("icon").toString(), u"image://resource/audio_book_play"_s);
        QCOMPARE(play->property("disabledIcon").toString(), u"image://resource/audio_book_play_disabled"_s);
        QCOMPARE(play->property("pressedIcon").toString(), u"image://resource/audio_book_play_inv"_s);
        QCOMPARE(play->parentItem()->width(), dp(94));
        QCOMPARE(place.right() - sceneRectangle(play->parentItem()).right(), dp(8));

        QQuickItem *const upright
            = find(row, [](const QQuickItem *item) { return item->property("vertical").toBool(); });
        QVERIFY(upright);
        QCOMPARE(upright->height(), place.height() - measure(running, u"Global.dp(48 * 0.53333)"_s));
        QCOMPARE(sceneRectangle(upright).right() + 1, sceneRectangle(play->parentItem()).left());
        QQuickItem *const level = find(row, [&](const QQuickItem *item) {
            return item->property("vertical").isValid() && !item->property("vertical").toBool()
                && item->width() == row->width();
        });
        QVERIFY(level);
        QCOMPARE(sceneRectangle(level).bottom(), place.bottom());

        const QQuickItem *const area = find(
            row, [](const QQuickItem *item) { return item->metaObject()->indexOfProperty("hovered") >= 0; });
        QVERIFY(area);
        QCOMPARE(sceneRectangle(area), place.adjusted(0, 0, -dp(102), 0));
    });
}

void tst_PlaylistScreens::menuKeyOnARow()
{
    runWithOne([&](RunningApp &running) {
        WorkflowFixture::add(running, u"Other"_s, {});
        QTRY_VERIFY(running.itemWith("cellHeight")->hasActiveFocus());
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Menu, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return})
            QTest::keyClick(running.window, key); // the last of the menu of the second row: delete
        QCOMPARE(running.playlists()->count(), 1);
        QCOMPARE(stored_database::rows(u"SELECT title FROM playlists"_s), QStringList{u"Mine"_s});
    });
}

void tst_PlaylistScreens::coversOfARow()
{
    // The first four pictures that are there, in reading order, under the outer corners of the block.
    m_test->run([&](RunningApp &running) {
        const QStringList stored
            = QStringList{u"/gone/1.png"_s, m_test->paths.at(0), u"/gone/2.png"_s} + m_test->paths.sliced(1);
        WorkflowFixture::add(running, u"Mine"_s, stored);
        QTRY_VERIFY(WorkflowFixture::button(running, u"Mine. 4"_s));
        QQuickItem *const row = WorkflowFixture::button(running, u"Mine. 4"_s)->parentItem();
        const QList<QQuickItem *> covers = allOfType(row, "RoundedImage");
        QCOMPARE(covers.size(), 4);
        const int cell = int(measure(running, u"Global.dp(109 * 0.5333)"_s));
        const int block = int(measure(running, u"Global.dp(220 * 0.5333)"_s));
        const QRect first = sceneRectangle(covers.first());
        QCOMPARE(first.left() - sceneRectangle(row).left(),
                 int(measure(running, u"Global.dp(12 * 0.5333)"_s)));
        const QList<QByteArray> corners{"radius_top_left", "radius_top_right", "radius_bottom_left",
                                        "radius_bottom_right"};
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(covers.at(i)->property("source").toString(),
                     u"image://cover_provider/"_s + m_test->paths.at(i));
            QCOMPARE(sceneRectangle(covers.at(i)),
                     QRect(first.topLeft() + QPoint(i % 2, i / 2) * (block - cell), QSize(cell, cell)));
            for (int corner = 0; corner < 4; ++corner)
                QCOMPARE(covers.at(i)->property(corners.at(corner)).toDouble(),
                         corner == i ? measure(running, u"Global.dp(10 * 0.5333)"_s) : 0.0);
        }
    });
}

void tst_PlaylistScreens::headerOfThePlaylist()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        const QQuickItem *const header = running.itemWith("closePressedIcon");
        QCOMPARE(header->property("title").toString(), u"Mine"_s);
        QCOMPARE(header->property("closeIcon").toString(), u"image://resource/back"_s);
        QCOMPARE(header->property("closePressedIcon").toString(), u"image://resource/back_inv"_s);
        QCOMPARE(header->property("rightButtonsOffset").toDouble(),
                 measure(running, u"Global.dp(20 * 0.53)"_s));
        const auto *add = WorkflowFixture::button(running, textOf("@AddPhotos"));
        const auto *settings = WorkflowFixture::button(running, textOf("@SlideshowSettings"));
        const auto *toggle = WorkflowFixture::button(running, textOf("@ShowAsList"));
        QVERIFY(add && settings && toggle);
        QVERIFY(sceneRectangle(add).right() < sceneRectangle(settings).left());
        QVERIFY(sceneRectangle(settings).right() < sceneRectangle(toggle).left());
        QCOMPARE(add->property("icon").toString(), u"image://resource/plus_add"_s);
        QCOMPARE(add->property("pressedIcon").toString(), u"image://resource/plus_add_inv"_s);
        QCOMPARE(settings->property("icon").toString(), u"image://resource/desktop_app_settings"_s);
        QCOMPARE(settings->property("pressedIcon").toString(), u"image://resource/desktop_app_settings_f"_s);

        // No playlist is active on the way back: no title, and no complaint.
        running.playlists()->setActiveId(-1);
        QCOMPARE(header->property("title").toString(), QString());
    });
}

void tst_PlaylistScreens::panelOfThePlaylist()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        QQuickItem *const header = running.itemWith("closePressedIcon");
        QQuickItem *const panel = running.itemWith("select_all_title");
        const double height = measure(running, u"GlobalValues.defaultAppHeaderHeight"_s);
        QVERIFY(header->isVisible() && !panel->isVisible());
        WorkflowFixture::folders(running)->setMode(FolderModel::SelectionMode);
        QVERIFY(!header->isVisible() && panel->isVisible());
        QCOMPARE(sceneRectangle(panel), sceneRectangle(header));
        QCOMPARE(panel->height(), height);
        QCOMPARE(panel->property("select_all_title").toString(), textOf("@All"));
        QCOMPARE(panel->property("selected_label_text").toString(), textOf("@SelectBooks"));
        QCOMPARE(panel->property("items_count").toInt(), 2);
        QCOMPARE(panel->property("selected_count").toInt(), 0);
        QVERIFY(!panel->property("use_disabled").toBool());
        WorkflowFixture::folders(running)->selectFile(m_test->paths.first(), true);
        QCOMPARE(panel->property("selected_count").toInt(), 1);
        QCOMPARE(lines(running), QList<QRect>{QRect(0, int(height), ScreenWidth(), 1)});
    });
}

void tst_PlaylistScreens::contentOfThePlaylist()
{
    // Each view is made when it is first shown, and not before.
    runWithOne([&](RunningApp &running) {
        QVERIFY(open(running));
        QVERIFY(running.itemWith("countImagesInRow")->isVisible());
        QVERIFY(!ofType(running.screen(), "ExplorerListView"));
        QQuickItem *const grid = running.itemWith("countImagesInRow");
        QCOMPARE(sceneRectangle(grid).top(), lines(running).constFirst().bottom() + 1);
        QCOMPARE(sceneRectangle(grid).bottom(), int(running.screen()->height()) - 1);
        QVERIFY(WorkflowFixture::press(running, textOf("@ShowAsList")));
        QQuickItem *const list = ofType(running.screen(), "ExplorerListView");
        QVERIFY(list && list->isVisible() && !grid->isVisible());
        QCOMPARE(sceneRectangle(list), sceneRectangle(grid));

        // The way the pictures are shown outlives the screen; the view that is not shown is not made.
        QVERIFY(WorkflowFixture::press(running, textOf("@Back")));
        QVERIFY(WorkflowFixture::pressSoon(running, u"Mine. 2"_s));
        QVERIFY(ofType(running.screen(), "ExplorerListView"));
        QVERIFY(!ofType(running.screen(), "ExplorerGridView"));
        WorkflowFixture::folders(running)->setViewMode(FolderModel::GridViewMode);
    });
}

void tst_PlaylistScreens::vanishedFiles()
{
    m_test->run([&](RunningApp &running) {
        const qlonglong id = WorkflowFixture::add(running, u"Gone"_s, {u"/gone/1.png"_s, u"/gone/2.png"_s});
        QTRY_VERIFY(WorkflowFixture::button(running, u"Gone. 0"_s));
        QVERIFY(!WorkflowFixture::button(running, textOf("@StartPlayback"))->isEnabled());
        QVERIFY(WorkflowFixture::press(running, u"Gone. 0"_s));
        QVERIFY(!ofType(running.screen(), "ExplorerGridView"));
        QQuickItem *const text
            = findAccessible(running.screen(), QAccessible::StaticText, textOf("@ThereAreNoPicturesYet"));
        QVERIFY(text);
        QCOMPARE(text->property("wrapMode").toInt(), 1); // at words
        const int margin = int(measure(running, u"Global.dp(115 * 0.53)"_s));
        const int top = lines(running).constFirst().bottom() + 1;
        QCOMPARE(sceneRectangle(text),
                 QRect(0, top, ScreenWidth(), int(running.screen()->height()) - top)
                     .marginsRemoved({margin, margin, margin, margin}));
        QVERIFY(WorkflowFixture::button(running, textOf("@PlayItem"))->isEnabled());
        QVERIFY(running.playlists()->activeId() == id);
        // There is nothing to show then, which the picture tells.
        QTest::ignoreMessage(
            QtWarningMsg,
            QRegularExpression(u"Failed to get image from provider: image://image_provider/$"_s));
        QVERIFY(WorkflowFixture::press(running, textOf("@PlayItem")));
        QCOMPARE(running.app.currentView(), u"slideshow"_s);
        QVERIFY(running.slideshow()->currentImage().isEmpty());
    });
}

void tst_PlaylistScreens::picker()
{
    runWithOne([&](RunningApp &running) {
        QVERIFY(WorkflowFixture::create(running));
        QQuickItem *const panel = running.itemWith("select_all_title");
        const int height = int(measure(running, u"GlobalValues.defaultAppHeaderHeight"_s));
        const int crumbs = int(measure(running, u"GlobalValues.breadcrumbsHeight"_s));
        QCOMPARE(sceneRectangle(panel), QRect(0, 0, ScreenWidth(), height));
        QVERIFY(panel->property("use_disabled").toBool());
        QCOMPARE(panel->property("items_count").toInt(), 4);
        QCOMPARE(panel->property("select_all_title").toString(), textOf("@All"));
        QCOMPARE(panel->property("selected_label_text").toString(), textOf("@SelectBooks"));
        QCOMPARE(lines(running),
                 (QList<QRect>{QRect(0, height, ScreenWidth(), 1),
                               QRect(0, height + 1 + crumbs, ScreenWidth(), 1)}));
        QQuickItem *const path = ofType(running.screen(), "Breadcrumbs");
        QVERIFY(path);
        QCOMPARE(sceneRectangle(path), QRect(0, height + 1, ScreenWidth(), crumbs));
        QQuickItem *const grid = running.itemWith("countImagesInRow");
        QCOMPARE(sceneRectangle(grid).top(), height + crumbs + 2);
        QCOMPARE(sceneRectangle(grid).bottom(), int(running.screen()->height()) - 1);
        QVERIFY(grid->hasActiveFocus()
                || find(grid, [](const QQuickItem *item) { return item->hasActiveFocus(); }));

        WorkflowSteps steps(running);
        QVERIFY(QMetaObject::invokeMethod(path, "clicked", Q_ARG(int, 0)));
        QCOMPARE(steps.taken().constFirst(), u"folder "_s);

        WorkflowFixture::folders(running)->setMode(FolderModel::NormalMode);
        QVERIFY(!panel->isVisible());
        QCOMPARE(panel->height(), 0.0);
        QCOMPARE(lines(running).constFirst().top(), 0);
    });
}

void tst_PlaylistScreens::pickerShowsTheGridAlone()
{
    runWithOne([&](RunningApp &running) {
        WorkflowFixture::folders(running)->setViewMode(FolderModel::ListViewMode);
        QVERIFY(WorkflowFixture::create(running));
        QVERIFY(running.itemWith("countImagesInRow")->isVisible());
        QVERIFY(!ofType(running.screen(), "ExplorerListView"));
        running.screen()->setVisible(false);
        QVERIFY(!running.itemWith("countImagesInRow")->isVisible());
        running.screen()->setVisible(true);
        QVERIFY(running.itemWith("countImagesInRow")->isVisible());
        WorkflowFixture::folders(running)->setViewMode(FolderModel::GridViewMode);
    });
}

void tst_PlaylistScreens::footerOfEachState_data()
{
    QTest::addColumn<PlaylistModel::PlaylistMode>("mode");
    QTest::addColumn<FolderModel::FolderModelMode>("folderMode");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<bool>("needsSelection");

    const auto add
        = [](const char *name, PlaylistModel::PlaylistMode mode, FolderModel::FolderModelMode folderMode,
             const char *text, const QString &icon,
             bool needs) { QTest::newRow(name) << mode << folderMode << QByteArray(text) << icon << needs; };
    add("overview", PlaylistModel::AllViewMode, FolderModel::NormalMode, "@New_playlist", u"plus_add"_s,
        false);
    add("overview, while selecting", PlaylistModel::AllViewMode, FolderModel::SelectionMode, "@New_playlist",
        u"plus_add"_s, false);
    add("playlist", PlaylistModel::ViewMode, FolderModel::NormalMode, "@PlayItem", u"audio_book_play"_s,
        false);
    add("playlist, selecting", PlaylistModel::ViewMode, FolderModel::SelectionMode, "@Delete", u"trash"_s,
        true);
    add("adding", PlaylistModel::AddMode, FolderModel::SelectionMode, "@AddPhotos", {}, true);
    add("creating", PlaylistModel::CreateMode, FolderModel::SelectionMode, "@CreatePlaylist", {}, true);
}

void tst_PlaylistScreens::footerOfEachState()
{
    QFETCH(PlaylistModel::PlaylistMode, mode);
    QFETCH(FolderModel::FolderModelMode, folderMode);
    QFETCH(QByteArray, text);
    QFETCH(QString, icon);
    QFETCH(bool, needsSelection);

    runWithOne([&](RunningApp &running) {
        FolderModel *const folders = WorkflowFixture::folders(running);
        // Both as a change while it is shown, and from the beginning of a screen.
        running.playlists()->setMode(mode);
        folders->setMode(folderMode);
        for (const char *view : {"", "select_photos"}) {
            running.app.changeView(QString::fromLatin1(view));
            QQuickItem *const footer = running.itemWith("textButton");
            QCOMPARE(footer->property("textButton").toString(), textOf(text.constData()));
            QCOMPARE(footer->property("imageSource").toString(), icon);
            QQuickItem *const button = WorkflowFixture::button(running, textOf(text.constData()));
            QVERIFY(button);
            QCOMPARE(button->isEnabled(), !needsSelection);
            QQuickItem *const image = find(button, [](const QQuickItem *item) {
                return QByteArray(item->metaObject()->className()).startsWith("QQuickImage");
            });
            QVERIFY(image);
            QCOMPARE(image->isVisible(), !icon.isEmpty());
            if (!icon.isEmpty())
                QCOMPARE(image->property("source").toString(), u"image://resource/"_s + icon);
            folders->selectFile(m_test->paths.first(), true);
            QVERIFY(button->isEnabled());
            folders->clearSelection();
        }
    });
}

PANEL_TEST_MAIN(tst_PlaylistScreens)
#include "tst_playlist_screens.moc"
