// The storages in the grid: what they show, what a tap does, and their lines.

#include "accessible_items.h"
#include "explorer_cells.h"
#include "panel_application.h"

#include <device.h>
#include <texts.h>

#include <QScopeGuard>
#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;
using namespace explorer_cells;

class tst_ExplorerStorages : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(); }
    void cleanup() { m_test.reset(); }

    void shownTexts();
    void icons();
    void measures();
    void otherLanguages_data();
    void otherLanguages();
    void accessibleNames();
    void tap();
    void dottedLines();

private:
    /// The picker on the storages, of which so many are in.
    static void openStorages(const RunningExplorer &explorer, bool card, bool usb, int cells)
    {
        explorer.openPicker({});
        MediaFixture::plug(card, usb);
        QTRY_COMPARE(explorer.cells(), cells);
        QTRY_VERIFY(explorer.cell(cells - 1) && explorer.cell(cells - 1)->width() == 239);
    }

    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerStorages::shownTexts()
{
    explore([&](RunningExplorer &explorer) {
        openStorages(explorer, true, true, 3);
        const char *const keys[] = {"@FlashDir", "@SDcard", "@OTG"};
        const Delegate kinds[] = {Internal, Card, Usb};
        for (int row = 0; row < 3; ++row) {
            QQuickItem *const storage = delegate(explorer, row, kinds[row]);
            const QList<QQuickItem *> shown = texts(storage);
            const bool hasCapacity = row < 2;
            QCOMPARE(shown.size(), hasCapacity ? 3 : 2);
            if (hasCapacity) {
                QQuickItem *const capacity = shown.at(0);
                QCOMPARE(capacity->property("text").toString(),
                         role(explorer, row, FolderModel::TotalSpaceRole));
                QVERIFY(hasStyle(capacity, u"TextInIcons1"_s));
                QCOMPARE(capacity->width(), 57.); // 80 of 300 dpi
                QCOMPARE(capacity->property("maximumLineCount").toInt(), 2);
                QCOMPARE(capacity->property("horizontalAlignment").toInt(), int(Qt::AlignHCenter));
                QVERIFY((RunningExplorer::centreOf(capacity) - RunningExplorer::centreOf(icon(storage)))
                            .manhattanLength()
                        <= 2);
            }
            QQuickItem *const name = shown.at(hasCapacity ? 1 : 0);
            QCOMPARE(name->property("text").toString(), text(keys[row]));
            QVERIFY(hasStyle(name, u"BodyLBold"_s));
            QCOMPARE(name->property("maximumLineCount").toInt(), 1);
            QVERIFY(!name->property("truncated").toBool());
            QQuickItem *const memory = shown.last();
            QCOMPARE(memory->property("text").toString(), role(explorer, row, FolderModel::MemoryRole));
            QVERIFY(memory->property("text").toString().contains(u'\n'));
            QVERIFY(hasStyle(memory, u"BodySBold"_s));
            QCOMPARE(memory->property("maximumLineCount").toInt(), 2);
            QCOMPARE(memory->property("lineCount").toInt(), 2);
            QVERIFY(!memory->property("truncated").toBool());
        }
    });
}

void tst_ExplorerStorages::icons()
{
    explore([&](RunningExplorer &explorer) {
        openStorages(explorer, true, true, 3);
        const auto source = [&](int row, Delegate kind) {
            return icon(delegate(explorer, row, kind))->property("source").toUrl().toString();
        };
        QCOMPARE(source(0, Internal), u"image://resource/e3_detail_internal_memory"_s);
        QCOMPARE(source(1, Card), u"image://resource/e3_detail_sd_card"_s);
        QCOMPARE(source(2, Usb), u"image://resource/e3_detail_otg"_s);
    });
}

void tst_ExplorerStorages::measures()
{
    explore([&](RunningExplorer &explorer) {
        openStorages(explorer, false, false, 1);
        QQuickItem *const storage = delegate(explorer, 0, Internal);
        QCOMPARE(storage->position(), QPointF(14, 0));
        QCOMPARE(storage->size(), QSizeF(225, 239));
        QCOMPARE(icon(storage)->size(), QSizeF(102, 102));
        const QQuickItem *const name = texts(storage).at(1);
        const QQuickItem *const memory = texts(storage).at(2);
        const double below = 4 + 10 + 102; // margin, icon's margin, icon
        QCOMPARE(name->mapToItem(storage, QPointF()), QPointF(4 + 8, below + 8)); // 12 of 300 dpi
        QCOMPARE(memory->mapToItem(storage, QPointF()), QPointF(4 + 8, below + 8 + 45 + 8)); // a line of 64
        QVERIFY(memory->mapToItem(storage, QPointF(0, memory->height())).y() <= 239);
    });
}

void tst_ExplorerStorages::otherLanguages_data()
{
    QTest::addColumn<QString>("language");

    for (const char *language : {"de", "fr", "es", "it", "pl", "uk", "ru", "zh_CN", "ja"})
        QTest::newRow(language) << QString::fromLatin1(language);
}

void tst_ExplorerStorages::otherLanguages()
{
    QFETCH(QString, language);

    const auto english = qScopeGuard([] { lindenreed::device::texts::load(u"en"_s); });
    QList<double> baselines;
    for (const QString &each : {u"en"_s, language}) {
        lindenreed::device::texts::load(each);
        QVERIFY(MediaFixture::look());
        explore([&](RunningExplorer &explorer) {
            openStorages(explorer, true, true, 3);
            const Delegate kinds[] = {Internal, Card, Usb};
            for (int row = 0; row < 3; ++row) {
                QQuickItem *const storage = delegate(explorer, row, kinds[row]);
                for (const QQuickItem *shown : texts(storage))
                    QVERIFY(!shown->property("truncated").toBool());
                const QQuickItem *const memory = texts(storage).last();
                QCOMPARE(memory->property("lineCount").toInt(), 2);
                baselines.append(memory->mapToItem(storage, QPointF(0, memory->baselineOffset())).y());
            }
        });
        MediaFixture::plug(false, false);
        QVERIFY(MediaFixture::look());
    }
    // Whatever font helps out, clear of the dotted line.
    QCOMPARE(baselines.size(), 6);
    for (const double baseline : std::as_const(baselines))
        QVERIFY2(qAbs(baseline - baselines.first()) <= 1, qPrintable(QString::number(baseline)));
}

void tst_ExplorerStorages::accessibleNames()
{
    explore([&](RunningExplorer &explorer) {
        openStorages(explorer, true, true, 3);
        const auto full = [&](int row) {
            return role(explorer, row, FolderModel::NameRole) + u". "_s
                + role(explorer, row, FolderModel::MemoryRole) + u". "_s
                + role(explorer, row, FolderModel::TotalSpaceRole);
        };
        QVERIFY(full(0).size() > 15);
        QCOMPARE(accessibleName(delegate(explorer, 0, Internal)), full(0));
        QCOMPARE(accessibleName(delegate(explorer, 1, Card)), full(1));
        QCOMPARE(accessibleName(delegate(explorer, 2, Usb)), text("@OTG"));
        QCOMPARE(accessible(delegate(explorer, 2, Usb))->role(), QAccessible::Button);
    });
}

void tst_ExplorerStorages::tap()
{
    explore([&](RunningExplorer &explorer) {
        openStorages(explorer, false, true, 2);
        QTest::ignoreMessage(QtDebugMsg, qPrintable(u"/mnt/ext3 "_s + text("@OTG")));
        const QSignalSpy changed(explorer.folders(), &FolderModel::changedFolder);
        explorer.tap(explorer.cell(1));
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toString(), u"/mnt/ext3"_s);
    });
}

void tst_ExplorerStorages::dottedLines()
{
    explore([&](RunningExplorer &explorer) {
        openStorages(explorer, false, true, 2);
        QVERIFY(line(delegate(explorer, 0, Internal), true)->isVisible());
        QVERIFY(line(delegate(explorer, 1, Usb), true)->isVisible()); // a cell is free beside it
        MediaFixture::plug(true, true);
        QTRY_COMPARE(explorer.cells(), 3);
        QTRY_VERIFY(explorer.cell(2));
        QVERIFY(line(delegate(explorer, 0, Internal), true)->isVisible());
        QVERIFY(line(delegate(explorer, 1, Card), true)->isVisible());
        QVERIFY(!line(delegate(explorer, 2, Usb), true)->isVisible());
        for (const auto &[row, kind] : {std::pair(0, Internal), {1, Card}, {2, Usb}})
            QVERIFY(line(delegate(explorer, row, kind), false)->isVisible());
    });
}

PANEL_TEST_MAIN(tst_ExplorerStorages)
#include "tst_explorer_storages.moc"
