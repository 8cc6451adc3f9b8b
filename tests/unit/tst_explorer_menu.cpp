// The menu of a picture in grid and list: when it opens, what it offers, and who has the keys afterwards.

#include "explorer_menu.h"
#include "panel_application.h"
#include "panel_remote.h"

#include <device.h>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::picture_stand::FolderModel;
namespace menu = explorer_menu;

namespace {

/// What has the name of a row's picture, and the focus: the delegate in a cell of the grid, the list's row
/// itself.
QQuickItem *picture(const RunningExplorer &explorer, int row)
{
    QQuickItem *const delegate = RunningExplorer::below(explorer.cell(row), "sourceSet");
    return delegate ? delegate : explorer.cell(row);
}

void eitherView()
{
    QTest::addColumn<FolderModel::FolderModelViewMode>("view");

    QTest::newRow("grid") << FolderModel::GridViewMode;
    QTest::newRow("list") << FolderModel::ListViewMode;
}

} // namespace

class tst_ExplorerMenu : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init()
    {
        m_test = std::make_unique<ExplorerFixture>();
        m_paths = m_test->pictures(4);
    }
    void cleanup() { m_test.reset(); }

    void rowsOfAPlaylist_data() { eitherView(); }
    void rowsOfAPlaylist();
    void rowsInOtherModes_data();
    void rowsInOtherModes();
    void loadedOnFirstUse_data() { eitherView(); }
    void loadedOnFirstUse();
    void belongsToThePicture_data() { eitherView(); }
    void belongsToThePicture();
    void opensNothing_data() { eitherView(); }
    void opensNothing();
    void noneInSelection_data() { eitherView(); }
    void noneInSelection();
    void selecting_data() { eitherView(); }
    void selecting();
    void deleting_data() { eitherView(); }
    void deleting();
    void deletingTheLast_data() { eitherView(); }
    void deletingTheLast();
    void tapOutside_data() { eitherView(); }
    void tapOutside();
    void backKey_data() { eitherView(); }
    void backKey();

private:
    /// Runs the application with m_paths in the view of the test's row.
    void inAPlaylist(const std::function<void(RunningExplorer &)> &body,
                     FolderModel::FolderModelMode selecting = FolderModel::NormalMode)
    {
        QFETCH(FolderModel::FolderModelViewMode, view);
        explore([&](RunningExplorer &explorer) {
            explorer.openPlaylist(m_paths, selecting, view);
            QTRY_VERIFY(explorer.cell(int(m_paths.size()) - 1));
            body(explorer);
        });
    }

    std::unique_ptr<ExplorerFixture> m_test;
    QStringList m_paths;
};

void tst_ExplorerMenu::rowsOfAPlaylist()
{
    inAPlaylist([&](RunningExplorer &explorer) {
        menu::hold(explorer, 1);
        QTRY_COMPARE(menu::rows(explorer),
                     (QStringList{menu::text("@SelectMultiple") + u" checkbox_on"_s,
                                  menu::text("@Delete") + u" trash"_s}));
        QVERIFY(menu::shown(explorer)->property("title").toString().isEmpty());
        QVERIFY(menu::shown(explorer)->hasActiveFocus());
    });
}

void tst_ExplorerMenu::rowsInOtherModes_data()
{
    QTest::addColumn<PlaylistModel::PlaylistMode>("mode");

    QTest::newRow("pictures for a playlist") << PlaylistModel::AddMode;
    QTest::newRow("pictures for a new playlist") << PlaylistModel::CreateMode;
}

void tst_ExplorerMenu::rowsInOtherModes()
{
    QFETCH(PlaylistModel::PlaylistMode, mode);

    explore([&](RunningExplorer &explorer) {
        explorer.onlyPlaylist({});
        explorer.openPicker(m_test->tree.top, mode, FolderModel::NormalMode);
        QTRY_VERIFY(explorer.cell(3));
        menu::hold(explorer, 1);
        QCOMPARE(menu::rows(explorer), QStringList{menu::text("@SelectMultiple") + u" checkbox_on"_s});
        menu::choose(explorer, "@SelectMultiple");
        QCOMPARE(explorer.folders()->mode(), FolderModel::SelectionMode);
    });
}

void tst_ExplorerMenu::loadedOnFirstUse()
{
    inAPlaylist([&](RunningExplorer &explorer) {
        const auto loaded = [&] {
            int count = 0;
            for (const QQuickItem *loader : explorer.window->contentItem()->childItems()) {
                auto *item = loader->property("item").value<QQuickItem *>();
                count += item && item->metaObject()->indexOfProperty("radioBtnDontCheckChecked") >= 0 ? 1 : 0;
            }
            return count;
        };
        QCOMPARE(loaded(), 0);
        menu::hold(explorer, 0);
        QCOMPARE(loaded(), 1);
        QCOMPARE(menu::shown(explorer)->size(), explorer.window->contentItem()->size());
        const QQuickItem *const first = menu::shown(explorer);
        explorer.key(Qt::Key_Escape);
        QTRY_VERIFY(!menu::shown(explorer));
        menu::hold(explorer, 0);
        QCOMPARE(menu::shown(explorer), first);
    });
}

void tst_ExplorerMenu::belongsToThePicture()
{
    inAPlaylist([&](RunningExplorer &explorer) {
        for (const int row : {1, 3}) {
            menu::hold(explorer, row);
            const QQuickItem *const image = RunningExplorer::below(explorer.cell(row), "sourceSize");
            QCOMPARE(menu::shown(explorer)->property("globalArea").toRectF(),
                     QRectF(image->mapToGlobal(QPointF()), image->size()));
            explorer.key(Qt::Key_Escape);
            QTRY_VERIFY(!menu::shown(explorer));
        }
    });
}

void tst_ExplorerMenu::opensNothing()
{
    inAPlaylist([&](RunningExplorer &explorer) {
        menu::hold(explorer, 0);
        explorer.key(Qt::Key_Escape);
        QTRY_VERIFY(!menu::shown(explorer));
        explorer.tap(explorer.cell(1));
        QTRY_COMPARE(Device::instance()->viewer.opened(), QStringList{m_paths.at(1)});
    });
}

void tst_ExplorerMenu::noneInSelection()
{
    const auto holdTwice = [](RunningExplorer &explorer) {
        PanelRemote remote;
        const auto holdFirst = [&] {
            const QPoint point = RunningExplorer::centreOf(explorer.cell(0));
            return code(remote.ask(
                u"hold"_s, {{u"x"_s, point.x()}, {u"y"_s, point.y() + PanelHeight()}, {u"ms"_s, 1000}}));
        };
        QCOMPARE(holdFirst(), u"ok"_s);
        QVERIFY(!menu::shown(explorer));
        explorer.folders()->setMode(FolderModel::NormalMode);
        QCOMPARE(holdFirst(), u"ok"_s); // the same finger where it has something to do
        QVERIFY(menu::shown(explorer));
    };
    inAPlaylist(holdTwice, FolderModel::SelectionMode);
}

void tst_ExplorerMenu::selecting()
{
    inAPlaylist([&](RunningExplorer &explorer) {
        menu::hold(explorer, 2);
        menu::choose(explorer, "@SelectMultiple");
        QCOMPARE(explorer.folders()->mode(), FolderModel::SelectionMode);
        QCOMPARE(explorer.folders()->countSelected(), 0);
        QVERIFY(picture(explorer, 2)->hasActiveFocus());
        explorer.key(Qt::Key_Return);
        QCOMPARE(explorer.folders()->getSelected(), QStringList{m_paths.at(2)});
    });
}

void tst_ExplorerMenu::deleting()
{
    inAPlaylist([&](RunningExplorer &explorer) {
        menu::hold(explorer, 1);
        menu::choose(explorer, "@Delete");
        const QStringList left{m_paths.at(0), m_paths.at(2), m_paths.at(3)};
        QCOMPARE(explorer.playlists()->getImagesById(explorer.playlists()->activeId()), left);
        QTRY_COMPARE(explorer.cells(), 3);
        QCOMPARE(explorer.folders()->mode(), FolderModel::NormalMode);
        QVERIFY(QFile::exists(m_paths.at(1))); // out of the playlist, not off the disk
        for (int row = 0; row < 3; ++row)
            QCOMPARE(accessibleName(picture(explorer, row)), QFileInfo(left.at(row)).fileName());
        // The keys are still the view's.
        QTRY_VERIFY(explorer.list()->hasActiveFocus());
        explorer.key(explorer.folders()->viewMode() == FolderModel::GridViewMode ? Qt::Key_Right
                                                                                 : Qt::Key_Down);
        QCOMPARE(explorer.list()->property("currentIndex").toInt(), 1);
    });
}

void tst_ExplorerMenu::deletingTheLast()
{
    m_paths = m_paths.first(1);
    inAPlaylist([&](RunningExplorer &explorer) {
        menu::hold(explorer, 0);
        menu::choose(explorer, "@Delete");
        QCOMPARE(explorer.folders()->countFiles(), 0);
        QCOMPARE(explorer.folders()->rowCount(), 0);
        QTRY_VERIFY(!explorer.list() || !explorer.list()->isVisible());
    });
}

void tst_ExplorerMenu::tapOutside()
{
    inAPlaylist([&](RunningExplorer &explorer) {
        menu::hold(explorer, 0);
        explorer.tap(QPoint(explorer.window->width() / 2, explorer.window->height() - 40));
        QTRY_VERIFY(!menu::shown(explorer));
        QVERIFY(picture(explorer, 0)->hasActiveFocus());
        QCOMPARE(explorer.folders()->mode(), FolderModel::NormalMode);
        QCOMPARE(explorer.app.currentView(), u"playlist"_s);
    });
}

void tst_ExplorerMenu::backKey()
{
    inAPlaylist([&](RunningExplorer &explorer) {
        menu::hold(explorer, 3);
        explorer.key(Qt::Key_Back);
        QTRY_VERIFY(!menu::shown(explorer));
        QVERIFY(picture(explorer, 3)->hasActiveFocus());
        explorer.key(Qt::Key_PageDown); // reaches the view, which has only one page
        QCOMPARE(explorer.list()->property("contentY").toDouble(), 0.);
    });
}

PANEL_TEST_MAIN(tst_ExplorerMenu)
#include "tst_explorer_menu.moc"
