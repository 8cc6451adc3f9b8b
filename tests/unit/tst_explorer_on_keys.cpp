// Grid and list on a device with keys and without touch.

#include "explorer_menu.h"
#include "panel_application.h"
#include "panel_remote.h"

#include <device.h>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::picture_stand::FolderModel;

namespace {

/// The frames that show in a cell; the frame is the visible rectangle whose line is 4 pixels.
QList<QQuickItem *> frames(QQuickItem *item)
{
    QList<QQuickItem *> found;
    if (!item->isVisible())
        return found;
    if (item->metaObject()->indexOfProperty("border") >= 0
        && QQmlExpression(qmlContext(item), item, u"border.width"_s).evaluate().toInt() == 4)
        found.append(item);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children)
        found.append(frames(child));
    return found;
}

/// Rows whose cells are framed.
QList<int> framed(const RunningExplorer &explorer)
{
    QList<int> rows;
    for (int row = 0; row < explorer.cells(); ++row) {
        if (explorer.cell(row) && !frames(explorer.cell(row)).isEmpty())
            rows.append(row);
    }
    return rows;
}

} // namespace

class tst_ExplorerOnKeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(u"keys-6"_s); }
    void cleanup() { m_test.reset(); }

    void frameOfAFolder();
    void frameOfAStorage();
    void frameOfAPicture();
    void frameFollowsTheKeys();
    void intoAFolderAndOn();
    void centreOpensAndSelects();
    void pageKeys();
    void pageThatAllFits();
    void menuKey_data();
    void menuKey();
    void menuKeyWhereAFingerOpensNone();

private:
    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerOnKeys::frameOfAFolder()
{
    m_test->tree.make({u"a/"_s, u"b/"_s, u"c/"_s});
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(framed(explorer), QList<int>{0});
        QCOMPARE(frames(explorer.cell(0)).size(), 1);
        QQuickItem *const frame = frames(explorer.cell(0)).first();
        QCOMPARE(QQmlExpression(qmlContext(frame), frame, u"border.color"_s).evaluate().value<QColor>(),
                 QColor(Qt::black));
        QCOMPARE(frame->size(), QSizeF(239 - 14, 239));
        explorer.list()->setProperty("currentIndex", 2);
        QCOMPARE(framed(explorer), QList<int>{2});
    });
}

void tst_ExplorerOnKeys::frameOfAStorage()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker({});
        MediaFixture::plug(true, true);
        QTRY_COMPARE(explorer.cells(), 3);
        for (const int row : {0, 1, 2}) {
            explorer.list()->setProperty("currentIndex", row);
            QTRY_COMPARE(framed(explorer), QList<int>{row});
        }
    });
}

// White is between the two, also where the picture is as dark as the frame, and the list cuts nothing of it.
void tst_ExplorerOnKeys::frameOfAPicture()
{
    m_test->pictures(3);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(framed(explorer), QList<int>{0});
        for (const int row : {0, 1, 2}) {
            explorer.list()->setProperty("currentIndex", row);
            QTRY_COMPARE(framed(explorer), QList<int>{row});
            QQuickItem *const frame = frames(explorer.cell(row)).first();
            const QRectF picture
                = frame->mapRectFromItem(frame->parentItem(), frame->parentItem()->boundingRect());
            QCOMPARE(picture, frame->boundingRect().adjusted(8, 8, -8, -8));
            const QRectF inList = explorer.list()->mapRectFromItem(frame, frame->boundingRect());
            QVERIFY(explorer.list()->boundingRect().contains(inList));
        }
        // One frame tells where the keys are.
        explorer.list()->setFocus(false);
        QVERIFY(!explorer.list()->hasActiveFocus());
        QCOMPARE(framed(explorer), QList<int>());
        explorer.list()->forceActiveFocus();
        QCOMPARE(framed(explorer), QList<int>{2});
    });
}

void tst_ExplorerOnKeys::frameFollowsTheKeys()
{
    m_test->tree.make({u"a/"_s, u"b/"_s, u"c/"_s});
    m_test->pictures(2);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(framed(explorer), QList<int>{0});
        explorer.key(Qt::Key_Right);
        QCOMPARE(framed(explorer), QList<int>{1});
        explorer.key(Qt::Key_Down);
        QCOMPARE(framed(explorer), QList<int>{4});
        explorer.key(Qt::Key_Left);
        QCOMPARE(framed(explorer), QList<int>{3});
    });
}

void tst_ExplorerOnKeys::intoAFolderAndOn()
{
    m_test->tree.make({u"a/b/"_s});
    m_test->picture(u"a/b/p.png"_s);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(framed(explorer), QList<int>{0});
        QTest::ignoreMessage(QtDebugMsg, qPrintable(m_test->path(u"a"_s) + u" a"_s));
        explorer.key(Qt::Key_Return);
        QTRY_COMPARE(framed(explorer), QList<int>{0});
        QTest::ignoreMessage(QtDebugMsg, qPrintable(m_test->path(u"a/b"_s) + u" b"_s));
        explorer.key(Qt::Key_Return);
        QTRY_COMPARE(explorer.cells(), 1);
        explorer.key(Qt::Key_Return); // the picker selects
        QTRY_COMPARE(explorer.folders()->getSelected(), QStringList{m_test->path(u"a/b/p.png"_s)});
    });
}

void tst_ExplorerOnKeys::centreOpensAndSelects()
{
    const QStringList paths = m_test->pictures(4);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_COMPARE(framed(explorer), QList<int>{0});
        explorer.key(Qt::Key_Down);
        explorer.key(Qt::Key_Return);
        QTRY_COMPARE(Device::instance()->viewer.opened(), QStringList{paths.at(3)});
        explorer.folders()->setMode(FolderModel::SelectionMode);
        explorer.key(Qt::Key_Return);
        QCOMPARE(explorer.folders()->getSelected(), QStringList{paths.at(3)});
    });
}

void tst_ExplorerOnKeys::pageKeys()
{
    const QStringList paths = m_test->pictures(30);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_COMPARE(framed(explorer), QList<int>{0});
        explorer.key(Qt::Key_PageDown);
        QVERIFY(explorer.list()->property("contentY").toDouble() > 0);
        explorer.key(Qt::Key_PageUp);
        QCOMPARE(explorer.list()->property("contentY").toDouble(), 0.);
    });
}

void tst_ExplorerOnKeys::pageThatAllFits()
{
    const QStringList paths = m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_COMPARE(framed(explorer), QList<int>{0});
        explorer.key(Qt::Key_PageDown);
        QCOMPARE(explorer.list()->property("contentY").toDouble(), 0.);
    });
}

void tst_ExplorerOnKeys::menuKey_data()
{
    QTest::addColumn<FolderModel::FolderModelViewMode>("view");
    QTest::addColumn<QString>("onward");

    QTest::newRow("grid") << FolderModel::GridViewMode << u"right"_s;
    QTest::newRow("list") << FolderModel::ListViewMode << u"down"_s;
}

void tst_ExplorerOnKeys::menuKey()
{
    QFETCH(FolderModel::FolderModelViewMode, view);
    QFETCH(QString, onward);

    const QStringList paths = m_test->pictures(3);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths, FolderModel::NormalMode, view);
        QTRY_COMPARE(framed(explorer), QList<int>{0});
        PanelRemote remote;
        const auto press = [&](const QString &name) {
            return code(remote.ask(u"key"_s, {{u"name"_s, name}})) == u"ok";
        };
        explorer.folders()->setMode(FolderModel::SelectionMode);
        QVERIFY(press(onward) && press(u"menu"_s));
        QVERIFY(!explorer_menu::shown(explorer));
        explorer.folders()->setMode(FolderModel::NormalMode);
        QVERIFY(press(u"menu"_s));
        QVERIFY(explorer_menu::shown(explorer));
        QVERIFY(press(u"menu"_s)); // stays open
        QVERIFY(explorer_menu::shown(explorer));
        QCOMPARE(explorer_menu::rows(explorer).size(), 2);
        QVERIFY(press(u"down"_s) && press(u"centre"_s)); // deletes
        QTRY_COMPARE(explorer.cells(), 2);
        QCOMPARE(explorer.playlists()->getImagesById(explorer.playlists()->activeId()),
                 (QStringList{paths.at(0), paths.at(2)}));
    });
}

void tst_ExplorerOnKeys::menuKeyWhereAFingerOpensNone()
{
    m_test->tree.make({u"a/"_s});
    const QString path = m_test->picture(u"p.png"_s);
    explore([&](RunningExplorer &explorer) {
        explorer.onlyPlaylist({path});
        explorer.openPicker(m_test->tree.top, PlaylistModel::AddMode, FolderModel::NormalMode);
        QTRY_VERIFY(explorer.cell(3));
        for (const int row : {0, 1, 3}) { // a folder, a blank cell, a picture that the playlist has
            explorer.list()->setProperty("currentIndex", row);
            explorer.key(Qt::Key_Menu);
            QVERIFY(!explorer_menu::shown(explorer));
        }
    });
}

PANEL_TEST_MAIN_WITH_RECORD(tst_ExplorerOnKeys, R"({"profile": "keys-6"})")
#include "tst_explorer_on_keys.moc"
