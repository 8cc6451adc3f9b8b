// What a row of the list does: opening and selecting its picture, and how assistive input knows it.

#include "accessible_items.h"
#include "explorer_fixture.h"
#include "panel_application.h"

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

namespace {

constexpr int Loading = 2; // as QQuickImageBase numbers it

} // namespace

class tst_ExplorerListRows : public QObject
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

    void tapOpens_data();
    void tapOpens();
    void tapOpensWhatHasGone();
    void tapSelects();
    void returnKeys_data();
    void returnKeys();
    void forAssistiveInput();
    void pressFrame();
    void pressFrameGoesWithADrag();
    void thumbnailThatComesBack();

private:
    void inAList(FolderModel::FolderModelMode selecting, const std::function<void(RunningExplorer &)> &body)
    {
        explore([&](RunningExplorer &explorer) {
            explorer.openPlaylist(m_paths, selecting, FolderModel::ListViewMode);
            QTRY_VERIFY(explorer.cell(3));
            body(explorer);
        });
    }
    /// The pictures that were handed to the viewer.
    QByteArrayList opened() const
    {
        QByteArrayList paths;
        const auto calls = m_test->media.device.calls({"OpenBook"});
        for (const auto &call : calls)
            paths.append(call.arguments.first());
        return paths;
    }

    std::unique_ptr<ExplorerFixture> m_test;
    QStringList m_paths;
};

void tst_ExplorerListRows::tapOpens_data()
{
    QTest::addColumn<QPointF>("place");

    QTest::newRow("on the picture") << QPointF(80, 90);
    QTest::newRow("on the name") << QPointF(200, 30);
    QTest::newRow("at the upper right corner") << QPointF(689, 0);
    QTest::newRow("at the lower left corner") << QPointF(0, 188);
}

void tst_ExplorerListRows::tapOpens()
{
    QFETCH(QPointF, place);

    inAList(FolderModel::NormalMode, [&](RunningExplorer &explorer) {
        explorer.tap(explorer.cell(1)->mapToScene(place).toPoint());
        QTRY_COMPARE(opened().size(), 1);
        QVERIFY2(opened().first().contains(m_paths.at(1).toUtf8()), opened().first());
        QCOMPARE(explorer.folders()->countSelected(), 0);
    });
}

void tst_ExplorerListRows::tapOpensWhatHasGone()
{
    inAList(FolderModel::NormalMode, [&](RunningExplorer &explorer) {
        QVERIFY(QFile::remove(m_paths.at(1)));
        explorer.tap(explorer.cell(1));
        QTRY_COMPARE(opened().size(), 1);
        QVERIFY(opened().first().contains(m_paths.at(1).toUtf8()));
    });
}

void tst_ExplorerListRows::tapSelects()
{
    inAList(FolderModel::SelectionMode, [&](RunningExplorer &explorer) {
        explorer.tap(explorer.cell(1));
        QTRY_COMPARE(explorer.folders()->getSelected(), QStringList{m_paths.at(1)});
        explorer.tap(explorer.cell(2)->mapToScene({600, 10}).toPoint());
        QTRY_COMPARE(explorer.folders()->countSelected(), 2);
        explorer.tap(explorer.cell(1));
        QTRY_COMPARE(explorer.folders()->getSelected(), QStringList{m_paths.at(2)});
        QCOMPARE(opened(), QByteArrayList());
    });
}

void tst_ExplorerListRows::returnKeys_data()
{
    QTest::addColumn<Qt::Key>("key");

    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
}

void tst_ExplorerListRows::returnKeys()
{
    QFETCH(Qt::Key, key);

    inAList(FolderModel::NormalMode, [&](RunningExplorer &explorer) {
        QTRY_VERIFY(explorer.list()->hasActiveFocus());
        explorer.key(Qt::Key_Down);
        explorer.key(key);
        QCOMPARE(opened().size(), 1);
        QVERIFY(opened().first().contains(m_paths.at(1).toUtf8()));
        explorer.folders()->setMode(FolderModel::SelectionMode);
        explorer.key(key);
        QCOMPARE(explorer.folders()->getSelected(), QStringList{m_paths.at(1)});
    });
}

void tst_ExplorerListRows::forAssistiveInput()
{
    inAList(FolderModel::NormalMode, [&](RunningExplorer &explorer) {
        QQuickItem *const row = explorer.cell(2);
        QCOMPARE(accessible(row)->role(), QAccessible::ListItem);
        QCOMPARE(accessibleName(row), u"002.png"_s);
        QVERIFY(pressByAccessibility(row));
        QCOMPARE(opened().size(), 1);
        QVERIFY(opened().first().contains(m_paths.at(2).toUtf8()));
        explorer.folders()->setMode(FolderModel::SelectionMode);
        QVERIFY(pressByAccessibility(row));
        QCOMPARE(explorer.folders()->getSelected(), QStringList{m_paths.at(2)});
        QVERIFY(pressByAccessibility(row));
        QCOMPARE(explorer.folders()->countSelected(), 0);
        QCOMPARE(opened().size(), 1);
        QCOMPARE(accessible(row)->childCount(), 0); // the row speaks for all that is in it
    });
}

void tst_ExplorerListRows::pressFrame()
{
    inAList(FolderModel::NormalMode, [&](RunningExplorer &explorer) {
        const QQuickItem *const area = RunningExplorer::below(explorer.cell(1), "hovered");
        QCOMPARE(area->size(), explorer.cell(1)->size());
        QVERIFY(!area->property("hovered").toBool());
        const QPoint point = RunningExplorer::centreOf(explorer.cell(1));
        QTest::mousePress(explorer.window, Qt::LeftButton, {}, point);
        QTRY_VERIFY(area->property("hovered").toBool());
        QTest::mouseRelease(explorer.window, Qt::LeftButton, {}, point);
        QTRY_VERIFY(!area->property("hovered").toBool());
    });
}

void tst_ExplorerListRows::pressFrameGoesWithADrag()
{
    m_paths = m_test->pictures(20);
    inAList(FolderModel::NormalMode, [&](RunningExplorer &explorer) {
        const QQuickItem *const area = RunningExplorer::below(explorer.cell(1), "hovered");
        const QPoint start = RunningExplorer::centreOf(explorer.cell(1));
        QTest::mousePress(explorer.window, Qt::LeftButton, {}, start);
        QTRY_VERIFY(area->property("hovered").toBool());
        for (int step = 1; !explorer.list()->property("dragging").toBool(); ++step) {
            QVERIFY(step * 5 < explorer.cell(1)->height() / 2); // the finger stays on the row
            QTest::mouseMove(explorer.window, start - QPoint(0, step * 5), 10);
        }
        QVERIFY(!area->property("hovered").toBool());
        QTest::mouseRelease(explorer.window, Qt::LeftButton, {}, start);
        QTRY_VERIFY(!explorer.list()->property("moving").toBool());
        QCOMPARE(opened(), QByteArrayList());
    });
}

/// Its file went after it was listed, and is back when the list is shown once more.
void tst_ExplorerListRows::thumbnailThatComesBack()
{
    const QString path = m_test->picture(u"away %41 a while.png"_s); // no other test has made its thumbnail
    explore([&](RunningExplorer &explorer) {
        const auto settled = [&]() -> QQuickItem * {
            const QUrl source(u"image://cover_provider/"_s + QString(path).replace(u'%', u"%25"_s));
            QQuickItem *const picture = RunningExplorer::below(explorer.list(), "source", source);
            return picture && picture->property("status").toInt() != Loading ? picture : nullptr;
        };
        const qlonglong id = explorer.onlyPlaylist({path});
        explorer.playlists()->setMode(PlaylistModel::ViewMode);
        explorer.folders()->setViewMode(FolderModel::ListViewMode);
        explorer.folders()->loadFromList(explorer.playlists()->getImagesById(id));
        QVERIFY(QFile::rename(path, path + u".away"_s));
        explorer.app.changeView(u"playlist"_s);
        QTRY_VERIFY(settled());
        QCOMPARE(settled()->implicitWidth(), 0.);

        explorer.app.changeView(u"playlists"_s);
        QTRY_VERIFY(!settled());
        QVERIFY(QFile::rename(path + u".away"_s, path));
        explorer.app.changeView(u"playlist"_s);
        QTRY_VERIFY(settled() && settled()->implicitWidth() > 0);
    });
}

PANEL_TEST_MAIN(tst_ExplorerListRows)
#include "tst_explorer_list_rows.moc"
