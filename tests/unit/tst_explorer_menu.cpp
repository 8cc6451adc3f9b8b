// The menu of a picture in the grid: when it opens, what it offers, and who has the keys afterwards.

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

QQuickItem *delegate(const RunningExplorer &explorer, int row)
{
    return explorer.cell(row)->childItems().first();
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

    void rowsOfAPlaylist();
    void rowsInOtherModes_data();
    void rowsInOtherModes();
    void loadedOnFirstUse();
    void belongsToThePicture();
    void opensNothing();
    void noneInSelection();
    void selecting();
    void deleting();
    void deletingTheLast();
    void tapOutside();
    void backKey();

private:
    std::unique_ptr<ExplorerFixture> m_test;
    QStringList m_paths;
};

void tst_ExplorerMenu::rowsOfAPlaylist()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(m_paths);
        QTRY_VERIFY(explorer.cell(3));
        menu::hold(explorer, 1);
        QCOMPARE(menu::rows(explorer),
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
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(m_paths);
        QTRY_VERIFY(explorer.cell(3));
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
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(m_paths);
        QTRY_VERIFY(explorer.cell(3));
        for (const int row : {1, 3}) {
            menu::hold(explorer, row);
            const QQuickItem *const image = RunningExplorer::below(delegate(explorer, row), "sourceSize");
            QCOMPARE(menu::shown(explorer)->property("globalArea").toRectF(),
                     QRectF(image->mapToGlobal(QPointF()), image->size()));
            explorer.key(Qt::Key_Escape);
            QTRY_VERIFY(!menu::shown(explorer));
        }
    });
}

void tst_ExplorerMenu::opensNothing()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(m_paths);
        QTRY_VERIFY(explorer.cell(3));
        menu::hold(explorer, 0);
        explorer.key(Qt::Key_Escape);
        QTRY_VERIFY(!menu::shown(explorer));
        explorer.tap(explorer.cell(1));
        QTRY_COMPARE(Device::instance()->viewer.opened(), QStringList{m_paths.at(1)});
    });
}

void tst_ExplorerMenu::noneInSelection()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(m_paths, FolderModel::SelectionMode);
        QTRY_VERIFY(explorer.cell(3));
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
    });
}

void tst_ExplorerMenu::selecting()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(m_paths);
        QTRY_VERIFY(explorer.cell(3));
        menu::hold(explorer, 2);
        menu::choose(explorer, "@SelectMultiple");
        QCOMPARE(explorer.folders()->mode(), FolderModel::SelectionMode);
        QCOMPARE(explorer.folders()->countSelected(), 0);
        QVERIFY(delegate(explorer, 2)->hasActiveFocus());
        explorer.key(Qt::Key_Return);
        QCOMPARE(explorer.folders()->getSelected(), QStringList{m_paths.at(2)});
    });
}

void tst_ExplorerMenu::deleting()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(m_paths);
        QTRY_VERIFY(explorer.cell(3));
        menu::hold(explorer, 1);
        menu::choose(explorer, "@Delete");
        const QStringList left{m_paths.at(0), m_paths.at(2), m_paths.at(3)};
        QCOMPARE(explorer.playlists()->getImagesById(explorer.playlists()->activeId()), left);
        QTRY_COMPARE(explorer.cells(), 3);
        QCOMPARE(explorer.folders()->mode(), FolderModel::NormalMode);
        QVERIFY(QFile::exists(m_paths.at(1)));
        for (int row = 0; row < 3; ++row)
            QCOMPARE(accessibleName(delegate(explorer, row)), QFileInfo(left.at(row)).fileName());
        // The keys are still the grid's.
        QTRY_VERIFY(RunningExplorer::valueOf(explorer.list(), u"activeFocus"_s).toBool());
        explorer.key(Qt::Key_Right);
        QCOMPARE(explorer.list()->property("currentIndex").toInt(), 1);
    });
}

void tst_ExplorerMenu::deletingTheLast()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist({m_paths.at(0)});
        QTRY_VERIFY(explorer.cell(0));
        menu::hold(explorer, 0);
        menu::choose(explorer, "@Delete");
        QCOMPARE(explorer.folders()->countFiles(), 0);
        QTRY_VERIFY(!explorer.list() || !explorer.list()->isVisible());
    });
}

void tst_ExplorerMenu::tapOutside()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(m_paths);
        QTRY_VERIFY(explorer.cell(3));
        menu::hold(explorer, 0);
        explorer.tap(QPoint(explorer.window->width() / 2, explorer.window->height() - 40));
        QTRY_VERIFY(!menu::shown(explorer));
        QVERIFY(delegate(explorer, 0)->hasActiveFocus());
        QCOMPARE(explorer.folders()->mode(), FolderModel::NormalMode);
        QCOMPARE(explorer.app.currentView(), u"playlist"_s);
    });
}

void tst_ExplorerMenu::backKey()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(m_paths);
        QTRY_VERIFY(explorer.cell(3));
        menu::hold(explorer, 3);
        explorer.key(Qt::Key_Back);
        QTRY_VERIFY(!menu::shown(explorer));
        QVERIFY(delegate(explorer, 3)->hasActiveFocus());
        explorer.key(Qt::Key_PageDown); // reaches the grid, which has only one page
        QCOMPARE(explorer.list()->property("contentY").toDouble(), 0.);
    });
}

PANEL_TEST_MAIN(tst_ExplorerMenu)
#include "tst_explorer_menu.moc"
