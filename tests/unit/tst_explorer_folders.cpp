// Folders in the grid: what they show, what a tap does, and their lines.

#include "accessible_items.h"
#include "explorer_cells.h"
#include "panel_application.h"

#include <device.h>

#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

using namespace explorer_cells;

class tst_ExplorerFolders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(); }
    void cleanup() { m_test.reset(); }

    void folderMeasures();
    void folderName();
    void oddNames_data();
    void oddNames();
    void folderTap();
    void folderByAccessibility();
    void folderInSelection();
    void holdOnAFolder();
    void lines();
    void noFrameForAFinger();

private:
    /// A folder "sub" with a folder in it, and the picker on the album.
    void openSub(const RunningExplorer &explorer, const QString &name = u"sub"_s) const
    {
        m_test->tree.make({name + u"/in/"_s});
        explorer.openPicker(m_test->tree.top);
        QTRY_VERIFY(explorer.cell(0) && explorer.cell(0)->width() == 239);
    }

    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerFolders::folderMeasures()
{
    m_test->tree.make({u"a/"_s, u"b/"_s, u"c/"_s});
    explore([&](RunningExplorer &explorer) {
        openSub(explorer, u"a"_s);
        const QRectF expected[] = {{14, 0, 225, 239}, {0, 0, 239, 239}, {0, 0, 225, 239}};
        for (int row = 0; row < 3; ++row) {
            QQuickItem *const folder = delegate(explorer, row, Folder);
            QCOMPARE(QRectF(folder->position(), folder->size()), expected[row]);
            QQuickItem *const sign = icon(folder);
            QCOMPARE(sign->property("source").toUrl(), QUrl(u"image://resource/e3_filter_folders"_s));
            QCOMPARE(sign->size(), QSizeF(102, 102)); // 144 of 300 dpi
            QCOMPARE(sign->mapToItem(folder, QPointF()).y(), 4. + 10.); // 6 and 14 of 300 dpi
            QVERIFY(qAbs(sign->mapToItem(folder, QPointF(51, 0)).x() - folder->width() / 2) <= 1);
            QCOMPARE(texts(folder).size(), 1);
            QQuickItem *const name = texts(folder).first();
            QCOMPARE(name->mapToItem(folder, QPointF()), QPointF(4, 4 + 10 + 102));
            QCOMPARE(name->width(), folder->width() - 2 * 4);
        }
    });
}

void tst_ExplorerFolders::folderName()
{
    explore([&](RunningExplorer &explorer) {
        openSub(explorer, u"A name of so many words that no cell of the grid has the room for all"_s);
        QQuickItem *const name = texts(delegate(explorer, 0, Folder)).first();
        QVERIFY(hasStyle(name, u"BodyLBold"_s));
        QCOMPARE(name->property("horizontalAlignment").toInt(), int(Qt::AlignHCenter));
        QVERIFY(RunningExplorer::valueOf(name, u"wrapMode === Text.WrapAtWordBoundaryOrAnywhere"_s).toBool());
        QVERIFY(RunningExplorer::valueOf(name, u"elide === Text.ElideRight"_s).toBool());
        QCOMPARE(name->property("lineCount").toInt(), 2); // whole lines
        QVERIFY(name->property("truncated").toBool());
        QVERIFY(name->mapToItem(explorer.cell(0), QPointF(0, name->height())).y() <= 239);
        explorer.explorer()->setProperty("cellSize", 400);
        QTRY_COMPARE(name->property("lineCount").toInt(), 3);
    });
}

void tst_ExplorerFolders::oddNames_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("markup") << u"<b>bold</b> &amp; <img src='x'>"_s.replace(u'/', u'|');
    QTest::newRow("percents") << u"100%1 %2 %%"_s;
    QTest::newRow("quotes and backslash") << u"\"it's\" \\n"_s;
    QTest::newRow("a line break") << u"two\nlines"_s;
    QTest::newRow("spaces at the ends") << u"  a  "_s;
    QTest::newRow("a text key") << u"@Delete"_s;
    QTest::newRow("from right to left") << u"אבג"_s;
    QTest::newRow("outside the first plane") << u"山🌄"_s;
}

void tst_ExplorerFolders::oddNames()
{
    QFETCH(QString, name);

    explore([&](RunningExplorer &explorer) {
        openSub(explorer, name);
        QQuickItem *const folder = delegate(explorer, 0, Folder);
        QCOMPARE(texts(folder).first()->property("text").toString(), name);
        QVERIFY(RunningExplorer::valueOf(texts(folder).first(), u"textFormat === Text.PlainText"_s).toBool());
        QCOMPARE(accessibleName(folder), name);
        const QString path = m_test->path(name);
        QTest::ignoreMessage(QtDebugMsg, qPrintable(path + u' ' + name));
        explorer.tap(explorer.cell(0));
        QTRY_COMPARE(role(explorer, 0, FolderModel::PathRole), path + u"/in"_s);
    });
}

void tst_ExplorerFolders::folderTap()
{
    explore([&](RunningExplorer &explorer) {
        openSub(explorer);
        const QSignalSpy changed(explorer.folders(), &FolderModel::changedFolder);
        QTest::ignoreMessage(QtDebugMsg, qPrintable(m_test->path(u"sub"_s) + u" sub"_s));
        explorer.tap(explorer.cell(0));
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toString(), m_test->path(u"sub"_s));
    });
}

void tst_ExplorerFolders::folderByAccessibility()
{
    explore([&](RunningExplorer &explorer) {
        openSub(explorer);
        QQuickItem *const folder = delegate(explorer, 0, Folder);
        QCOMPARE(accessible(folder)->role(), QAccessible::Button);
        QCOMPARE(accessibleName(folder), u"sub"_s);
        QTest::ignoreMessage(QtDebugMsg, qPrintable(m_test->path(u"sub"_s) + u" sub"_s));
        QVERIFY(pressByAccessibility(folder));
        QCOMPARE(role(explorer, 0, FolderModel::NameRole), u"in"_s);
    });
}

void tst_ExplorerFolders::folderInSelection()
{
    explore([&](RunningExplorer &explorer) {
        openSub(explorer); // the picker selects
        QCOMPARE(explorer.folders()->mode(), FolderModel::SelectionMode);
        QTRY_VERIFY(explorer.list()->hasActiveFocus() || explorer.cell(0)->hasActiveFocus());
        QTest::ignoreMessage(QtDebugMsg, qPrintable(m_test->path(u"sub"_s) + u" sub"_s));
        explorer.key(Qt::Key_Return);
        QCOMPARE(role(explorer, 0, FolderModel::NameRole), u"in"_s);
        QCOMPARE(explorer.folders()->countSelected(), 0);
        // And on into the next one, by keys alone.
        QTRY_VERIFY(explorer.cell(0));
        QTest::ignoreMessage(QtDebugMsg, qPrintable(m_test->path(u"sub/in"_s) + u" in"_s));
        explorer.key(Qt::Key_Enter);
        QCOMPARE(explorer.cells(), 0);
    });
}

void tst_ExplorerFolders::holdOnAFolder()
{
    explore([&](RunningExplorer &explorer) {
        openSub(explorer);
        QQuickItem *const touch = RunningExplorer::below(delegate(explorer, 0, Folder), "hovered");
        QVERIFY(touch);
        QSignalSpy held(touch, SIGNAL(pressAndHold()));
        const QPoint point = RunningExplorer::centreOf(explorer.cell(0));
        QTest::mousePress(explorer.window, Qt::LeftButton, {}, point);
        QTRY_VERIFY(touch->property("hovered").toBool()); // framed
        QTRY_COMPARE(held.count(), 1);
        QTest::mouseRelease(explorer.window, Qt::LeftButton, {}, point);
        QVERIFY(!touch->property("hovered").toBool());
        QCOMPARE(role(explorer, 0, FolderModel::NameRole), u"sub"_s);
    });
}

void tst_ExplorerFolders::lines()
{
    m_test->tree.make({u"a/"_s, u"b/"_s, u"c/"_s, u"d/"_s});
    explore([&](RunningExplorer &explorer) {
        openSub(explorer, u"a"_s);
        QTRY_VERIFY(explorer.cell(3));
        for (int row = 0; row < 4; ++row) {
            QQuickItem *const folder = delegate(explorer, row, Folder);
            const QQuickItem *const closing = line(folder, false);
            QCOMPARE(closing->x(), 0.);
            QCOMPARE(closing->width(), folder->width());
            QCOMPARE(closing->y() + closing->height(), 239.);
            const QQuickItem *const upright = line(folder, true);
            QCOMPARE(upright->isVisible(), row != 2);
            QCOMPARE(upright->height(), 239. - 4 * 14);
            QVERIFY(qAbs(upright->y() - 2 * 14) <= 1);
            QCOMPARE(upright->x() + upright->width(), folder->width());
        }
    });
}

void tst_ExplorerFolders::noFrameForAFinger()
{
    explore([&](RunningExplorer &explorer) {
        openSub(explorer);
        QCOMPARE(explorer.list()->property("currentIndex").toInt(), 0);
        for (QQuickItem *child : delegate(explorer, 0, Folder)->childItems())
            QVERIFY(child->metaObject()->indexOfProperty("border") < 0 || !child->isVisible());
    });
}

PANEL_TEST_MAIN(tst_ExplorerFolders)
#include "tst_explorer_folders.moc"
