// The grid on a panel of 300 dpi, whose pixels are those of the design.

#include "explorer_fixture.h"
#include "panel_application.h"

#include <memory>

using namespace Qt::StringLiterals;

class tst_ExplorerFine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(u"grey-8"_s); }
    void cleanup() { m_test.reset(); }

    void grid();
    void picture();
    void folder();
    void storage();

private:
    /// The one of a cell's delegates that shows.
    static QQuickItem *shown(const RunningExplorer &explorer, int row)
    {
        const QList<QQuickItem *> delegates = explorer.cell(row)->childItems();
        for (QQuickItem *delegate : delegates) {
            if (delegate->isVisible())
                return delegate;
        }
        return nullptr;
    }
    static QRectF area(const QQuickItem *item, const QQuickItem *inside)
    {
        return QRectF(item->mapToItem(inside, QPointF()), item->size());
    }
    static QQuickItem *textOf(QQuickItem *delegate, const QString &text)
    {
        return RunningExplorer::below(delegate, "text", text);
    }

    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerFine::grid()
{
    m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QCOMPARE(explorer.explorer()->property("sideMargin").toInt(), 48);
        QCOMPARE(explorer.explorer()->property("gridMargin").toInt(), 20);
        QTRY_COMPARE(explorer.list()->width(), 1404. - 2 * 28);
        QCOMPARE(explorer.list()->x(), 28.);
        QCOMPARE(explorer.list()->height(), explorer.explorer()->height() - 20);
        QCOMPARE(explorer.explorer()->property("cellSize").toInt(), 449);
        QTRY_COMPARE(explorer.cell(0)->size(), QSizeF(449, 449));
        QCOMPARE(explorer.list()->property("cacheBuffer").toInt(), 4 * 449);
        QCOMPARE(explorer.list()->property("footerItem").value<QQuickItem *>()->height(), 128.);
    });
}

void tst_ExplorerFine::picture()
{
    m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.cell(0)->size(), QSizeF(449, 449));
        QQuickItem *const outer = shown(explorer, 0);
        QCOMPARE(area(outer, explorer.cell(0)), QRectF(20, 28, 409, 413));
        QCOMPARE(area(RunningExplorer::below(outer, "sourceSize"), outer), QRectF(1, 1, 407, 411));
        QQuickItem *const circle = RunningExplorer::below(outer, "isSelected");
        QCOMPARE(circle->childItems().at(1)->size(), QSizeF(93, 93)); // 94 by the rounder factor
        QCOMPARE(RunningExplorer::below(circle, "source")->size(), QSizeF(48, 48));
    });
}

void tst_ExplorerFine::folder()
{
    const QString name = u"A long name of a folder that takes three lines and more than three, far more"_s;
    m_test->tree.make({name + u'/'});
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.cell(0)->size(), QSizeF(449, 449));
        QQuickItem *const folder = shown(explorer, 0);
        QCOMPARE(area(folder, explorer.cell(0)), QRectF(20, 0, 429, 449));
        QCOMPARE(area(RunningExplorer::below(folder, "fillMode"), folder).size(), QSizeF(144, 144));
        QCOMPARE(area(RunningExplorer::below(folder, "fillMode"), folder).y(), 6. + 14.);
        QQuickItem *const text = textOf(folder, name);
        QCOMPARE(area(text, folder).topLeft(), QPointF(6, 6 + 14 + 144));
        QCOMPARE(text->width(), 429. - 2 * 6);
        QCOMPARE(text->property("lineCount").toInt(), 3);
        QVERIFY(text->property("truncated").toBool());
        QCOMPARE(RunningExplorer::below(folder, "vertical", true)->height(), 449. - 4 * 20);
    });
}

void tst_ExplorerFine::storage()
{
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker({});
        QTRY_VERIFY(explorer.cell(0) && explorer.cell(0)->width() == 449);
        QQuickItem *const storage = shown(explorer, 0);
        QQuickItem *const name = textOf(storage, QString::fromUtf8(GetLangText("@FlashDir")));
        QCOMPARE(area(name, storage).topLeft(), QPointF(6 + 12, 6 + 14 + 144 + 12));
        QQuickItem *const memory
            = textOf(storage,
                     explorer.folders()
                         ->data(explorer.folders()->index(0), RunningExplorer::FolderModel::MemoryRole)
                         .toString());
        QCOMPARE(area(memory, storage).topLeft(), QPointF(6 + 12, area(name, storage).bottom() + 12));
        QQuickItem *const capacity
            = textOf(storage,
                     explorer.folders()
                         ->data(explorer.folders()->index(0), RunningExplorer::FolderModel::TotalSpaceRole)
                         .toString());
        QCOMPARE(capacity->width(), 80.);
    });
}

PANEL_TEST_MAIN_WITH_RECORD(tst_ExplorerFine, R"({"profile": "grey-8"})")
#include "tst_explorer_fine.moc"
