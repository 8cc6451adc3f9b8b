// The grid of folders, storages and pictures: its measures, which cell stands for which row, and its keys.

#include "explorer_lists.h"
#include "panel_application.h"

#include <QQmlComponent>
#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// The six delegates of a cell, in their order.
enum Delegate { Picture, Folder, Blank, Internal, Card, Usb };

QList<QQuickItem *> delegates(const RunningExplorer &explorer, int row)
{
    return explorer.cell(row)->childItems();
}

/// The only one on show; -1 where that is not one.
int shown(const RunningExplorer &explorer, int row)
{
    int found = -1;
    for (int i = 0; i < delegates(explorer, row).size(); ++i) {
        if (delegates(explorer, row).at(i)->isVisible()) {
            if (found >= 0)
                return -1;
            found = i;
        }
    }
    return found;
}

QList<int> shownKinds(const RunningExplorer &explorer)
{
    QList<int> kinds;
    for (int row = 0; row < explorer.cells(); ++row)
        kinds.append(explorer.cell(row) ? shown(explorer, row) : -2);
    return kinds;
}

} // namespace

class tst_ExplorerGrid : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(); }
    void cleanup() { m_test.reset(); }

    void properties();
    void startsInvisible();
    void measures();
    void measuresFollowTheScreen();
    void cellsFollowTheWidthWhileVisible();
    void emptyFolder();
    void kindsInAFolder_data();
    void kindsInAFolder();
    void kindsOfStorages();
    void everyCellHasAllDelegates();
    void marginsOfBlankCells();
    void nothingOnABlankCell();
    void pageKeys();
    void arrowKeys();
    void focusGoesToTheGrid();
    void dragIsFast();

private:
    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerGrid::properties()
{
    m_test->pictures(2);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QQuickItem *const wrapper = explorer.explorer();
        QCOMPARE(wrapper->property("countImagesInRow").toInt(), 3);
        QCOMPARE(wrapper->property("sideMargin").toInt(), 34); // 48 of 300 dpi
        QCOMPARE(wrapper->property("gridMargin").toInt(), 14); // 20 of 300 dpi
        explorer_lists::compareProperties(explorer);
    });
}

void tst_ExplorerGrid::startsInvisible()
{
    explore([&](RunningExplorer &explorer) {
        QQmlComponent component(
            explorer.context->engine(),
            QUrl(u"qrc:/qt/qml/com/lindenreed/picture_stand/qml/explorer/ExplorerGridView.qml"_s));
        const std::unique_ptr<QObject> object(component.beginCreate(explorer.context));
        auto *const wrapper = qobject_cast<QQuickItem *>(object.get());
        QVERIFY2(wrapper, qPrintable(component.errorString()));
        wrapper->setSize(QSizeF(640, 600));
        QQuickItem *const list = RunningExplorer::below(wrapper, "cellHeight");
        QVERIFY(list && !list->isVisible());
        component.completeCreate();
        QVERIFY(list->isVisible());
        QCOMPARE(wrapper->property("cellSize").toInt(), 200); // a third of 640 less 2 x 20
    });
}

void tst_ExplorerGrid::measures()
{
    m_test->pictures(2);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        const QQuickItem *const list = explorer.list();
        QTRY_COMPARE(list->width(), 758. - 2 * 20);
        QCOMPARE(list->position(), QPointF(20, 0));
        QCOMPARE(list->height(), explorer.explorer()->height() - 14);
        QCOMPARE(explorer.explorer()->property("cellSize").toInt(), 239); // a third of 718, whole pixels
        QCOMPARE(list->property("cellWidth").toDouble(), 239.);
        QCOMPARE(list->property("cellHeight").toDouble(), 239.);
        QCOMPARE(list->property("cacheBuffer").toInt(), 4 * 239);
        QCOMPARE(explorer.cell(0)->size(), QSizeF(239, 239));
        QCOMPARE(explorer.cell(1)->position(), QPointF(239, 0));
    });
}

void tst_ExplorerGrid::measuresFollowTheScreen()
{
    m_test->pictures(2);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.explorer()->property("cellSize").toInt(), 239);
        // The frame turns in a show alone; the grid itself follows whatever size it gets.
        const auto turn = [&](int orientation) {
            SetOrientation(orientation);
            emit explorer.app.screenChanged();
        };
        turn(1);
        QTRY_COMPARE(explorer.list()->width(), 1024. - 2 * 20);
        QCOMPARE(explorer.explorer()->property("cellSize").toInt(), 328);
        QTRY_COMPARE(explorer.cell(0)->size(), QSizeF(328, 328));
        QCOMPARE(explorer.list()->property("cacheBuffer").toInt(), 4 * 328);
        turn(0);
        QTRY_COMPARE(explorer.cell(0)->size(), QSizeF(239, 239));
    });
}

void tst_ExplorerGrid::cellsFollowTheWidthWhileVisible()
{
    m_test->pictures(2);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.explorer()->property("cellSize").toInt(), 239);
        QVERIFY(explorer.list()->isVisible());
        QQuickItem *const wrapper = explorer.explorer();
        explorer.list()->setVisible(false);
        wrapper->setProperty("sideMargin", 64);
        QCOMPARE(explorer.list()->width(), 758. - 2 * 50);
        QCOMPARE(wrapper->property("cellSize").toInt(), 239); // nobody sees it
        explorer.list()->setVisible(true);
        QCOMPARE(wrapper->property("cellSize").toInt(), 219);
        wrapper->setProperty("sideMargin", 34);
        QCOMPARE(wrapper->property("cellSize").toInt(), 239);
    });
}

void tst_ExplorerGrid::emptyFolder()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QVERIFY(explorer.list()->isVisible());
        QCOMPARE(explorer.cells(), 0);
        QQuickItem *const button = RunningExplorer::below(explorer.footer(), "visibleBorders");
        QVERIFY(button && button->isVisible() && !button->isEnabled());
        explorer.folders()->selectFile(u"/anywhere/a.png"_s, true);
        QVERIFY(button->isEnabled());
        explorer.folders()->clearSelection();
        QVERIFY(!button->isEnabled());
    });
}

void tst_ExplorerGrid::kindsInAFolder_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QList<int>>("kinds");

    QTest::newRow("pictures alone") << QStringList{u"1.png"_s, u"2.png"_s} << QList<int>{Picture, Picture};
    QTest::newRow("one folder and pictures")
        << QStringList{u"f/"_s, u"1.png"_s, u"2.png"_s} << QList<int>{Folder, Blank, Blank, Picture, Picture};
    QTest::newRow("two folders") << QStringList{u"f/"_s, u"g/"_s} << QList<int>{Folder, Folder, Blank};
    QTest::newRow("three folders and a picture")
        << QStringList{u"f/"_s, u"g/"_s, u"h/"_s, u"1.png"_s} << QList<int>{Folder, Folder, Folder, Picture};
    QTest::newRow("four folders and two pictures")
        << QStringList{u"f/"_s, u"g/"_s, u"h/"_s, u"i/"_s, u"1.png"_s, u"2.png"_s}
        << QList<int>{Folder, Folder, Folder, Folder, Blank, Blank, Picture, Picture};
    QTest::newRow("five folders and a picture")
        << QStringList{u"f/"_s, u"g/"_s, u"h/"_s, u"i/"_s, u"j/"_s, u"1.png"_s}
        << QList<int>{Folder, Folder, Folder, Folder, Folder, Blank, Picture};
    QTest::newRow("a folder that looks like a picture")
        << QStringList{u"x.jpg/"_s} << QList<int>{Folder, Blank, Blank, Picture};
}

void tst_ExplorerGrid::kindsInAFolder()
{
    QFETCH(QStringList, entries);
    QFETCH(QList<int>, kinds);

    m_test->tree.make(entries);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(shownKinds(explorer), kinds);
    });
}

void tst_ExplorerGrid::kindsOfStorages()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker({});
        QTRY_COMPARE(shownKinds(explorer), QList<int>{Internal});
        MediaFixture::plug(true, true);
        QTRY_COMPARE(shownKinds(explorer), (QList<int>{Internal, Card, Usb}));
        MediaFixture::plug(false, true);
        QTRY_COMPARE(shownKinds(explorer), (QList<int>{Internal, Usb}));
    });
}

void tst_ExplorerGrid::everyCellHasAllDelegates()
{
    m_test->tree.make({u"f/"_s, u"1.png"_s});
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.cells(), 4);
        for (int row = 0; row < 4; ++row) {
            QCOMPARE(delegates(explorer, row).size(), 6);
            QQuickItem *const cell = explorer.cell(row);
            QCOMPARE(cell->property("isFirstInRow").toBool(), row % 3 == 0);
            QCOMPARE(cell->property("isLastInRow").toBool(), row == 2);
            QVERIFY(cell->property("gridMargid").isValid());
            for (const int current : {2, 0}) {
                explorer.list()->setProperty("currentIndex", current);
                QCOMPARE(cell->property("currentIndex").toInt(), current);
            }
        }
    });
}

void tst_ExplorerGrid::marginsOfBlankCells()
{
    m_test->tree.make({u"f/"_s});
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.cells(), 3);
        const QQuickItem *const middle = delegates(explorer, 1).at(Blank);
        const QQuickItem *const last = delegates(explorer, 2).at(Blank);
        QTRY_COMPARE(middle->size(), QSizeF(239, 239));
        QCOMPARE(middle->x(), 0.);
        QCOMPARE(last->size(), QSizeF(239 - 14, 239));
        QCOMPARE(last->x(), 0.);
        for (const QQuickItem *blank : {middle, last}) {
            QCOMPARE(blank->childItems().size(), 1);
            const QQuickItem *const line = blank->childItems().first();
            QCOMPARE(line->width(), blank->width());
            QCOMPARE(line->y() + line->height(), blank->height());
            QVERIFY(line->height() > 0 && !line->property("vertical").toBool());
        }
    });
}

void tst_ExplorerGrid::nothingOnABlankCell()
{
    m_test->tree.make({u"f/"_s});
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(shownKinds(explorer), (QList<int>{Folder, Blank, Blank}));
        const QSignalSpy changed(explorer.folders(), &lindenreed::picture_stand::FolderModel::changedFolder);
        const QSignalSpy selected(explorer.folders(),
                                  &lindenreed::picture_stand::FolderModel::countSelectedChanged);
        explorer.tap(explorer.cell(1));
        explorer.list()->setProperty("currentIndex", 2);
        explorer.key(Qt::Key_Return);
        // What the last tap does comes after what the others would have done.
        QTest::ignoreMessage(QtDebugMsg, qPrintable(m_test->path(u"f"_s) + u" f"_s));
        explorer.tap(explorer.cell(0));
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toString(), m_test->path(u"f"_s));
        QCOMPARE(selected.count(), 0);
    });
}

void tst_ExplorerGrid::pageKeys()
{
    m_test->pictures(30);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_VERIFY(explorer.list()->hasActiveFocus());
        const auto position = [&] { return explorer.list()->property("contentY").toDouble(); };
        QCOMPARE(position(), 0.);
        explorer.key(Qt::Key_PageDown);
        QCOMPARE(position(), 239.); // whole rows, and one stays in sight
        explorer.key(Qt::Key_PageDown);
        QCOMPARE(position(), 2 * 239.);
        explorer.key(Qt::Key_PageUp);
        QCOMPARE(position(), 239.);
        explorer.key(Qt::Key_PageUp);
        QCOMPARE(position(), 0.);
        explorer.key(Qt::Key_PageUp);
        QCOMPARE(position(), 0.);
    });
}

void tst_ExplorerGrid::arrowKeys()
{
    m_test->pictures(5);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_VERIFY(explorer.list()->hasActiveFocus());
        const auto current = [&] { return explorer.list()->property("currentIndex").toInt(); };
        QTRY_COMPARE(current(), 0);
        explorer.key(Qt::Key_Right);
        QCOMPARE(current(), 1);
        explorer.key(Qt::Key_Down);
        QCOMPARE(current(), 4);
        explorer.key(Qt::Key_Left);
        QCOMPARE(current(), 3);
        explorer.key(Qt::Key_Up);
        QCOMPARE(current(), 0);
    });
}

void tst_ExplorerGrid::focusGoesToTheGrid()
{
    m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        explorer_lists::focusIsPassedOn(explorer);
    });
}

void tst_ExplorerGrid::dragIsFast()
{
    m_test->pictures(30);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_VERIFY(explorer.cell(0));
        explorer_lists::dragIsFast(explorer.window, explorer.list());
    });
}

PANEL_TEST_MAIN(tst_ExplorerGrid)
#include "tst_explorer_grid.moc"
