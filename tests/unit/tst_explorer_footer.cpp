// The layer over a list: the page keys, the scroll aids, and when its button can be pressed.

#include "accessible_items.h"
#include "explorer_fixture.h"
#include "panel_application.h"

#include <QKeyEvent>
#include <QQmlComponent>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

namespace {

QQuickItem *button(const RunningExplorer &explorer)
{
    return RunningExplorer::below(explorer.footer(), "visibleBorders");
}

QQuickItem *indicator(const RunningExplorer &explorer)
{
    return RunningExplorer::below(explorer.footer(), "indicatorLength");
}

/// The two corners that page.
QList<QQuickItem *> corners(const RunningExplorer &explorer)
{
    QList<QQuickItem *> found;
    for (QQuickItem *child : explorer.footer()->childItems()) {
        if (child->metaObject()->indexOfSignal("scrollUp()") >= 0)
            found = child->childItems();
    }
    return found;
}

double contentY(const RunningExplorer &explorer)
{
    return explorer.list()->property("contentY").toDouble();
}

} // namespace

class tst_ExplorerFooter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(); }
    void cleanup() { m_test.reset(); }

    void textOfANewOne();
    void texts_data();
    void texts();
    void enabling_data();
    void enabling();
    void fillsItsParent();
    void pageKeys_data();
    void pageKeys();
    void otherKeys_data();
    void otherKeys();
    void indicatorOnlyWhereItScrolls_data();
    void indicatorOnlyWhereItScrolls();
    void indicatorAtTheTopRight();
    void indicatorFollows_data();
    void indicatorFollows();
    void indicatorCountsTheHeader();
    void assistantPages();
    void disabledButtonTakesTaps();
    void enabledButtonTakesTaps();

private:
    void inAList(int pictures, const std::function<void(RunningExplorer &)> &body,
                 FolderModel::FolderModelViewMode view = FolderModel::ListViewMode)
    {
        const QStringList paths = m_test->pictures(pictures);
        explore([&](RunningExplorer &explorer) {
            explorer.openPlaylist(paths, FolderModel::NormalMode, view);
            QTRY_VERIFY(explorer.cell(0));
            body(explorer);
        });
    }

    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerFooter::textOfANewOne()
{
    inAList(1, [](RunningExplorer &explorer) {
        explorer.playlists()->setMode(PlaylistModel::AllViewMode);
        QQmlComponent component(explorer.context->engine(),
                                QUrl(u"qrc:/qt/qml/com/lindenreed/picture_stand/qml/explorer/"
                                     "ExplorerFooter.qml"_s));
        const std::unique_ptr<QObject> footer(component.create(explorer.context));
        QVERIFY2(footer, qPrintable(component.errorString()));
        QCOMPARE(footer->property("textButton").toString(), QString::fromUtf8(GetLangText("@New_playlist")));
        QCOMPARE(footer->property("imageSource").toString(), u"plus_add"_s);
        QCOMPARE(footer->property("grid").value<QObject *>(), nullptr);
    });
}

void tst_ExplorerFooter::texts_data()
{
    QTest::addColumn<PlaylistModel::PlaylistMode>("mode");
    QTest::addColumn<FolderModel::FolderModelMode>("selecting");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("icon");

    QTest::newRow("overview") << PlaylistModel::AllViewMode << FolderModel::NormalMode
                              << QByteArray("@New_playlist") << u"plus_add"_s;
    QTest::newRow("overview, while the picker still selects")
        << PlaylistModel::AllViewMode << FolderModel::SelectionMode << QByteArray("@New_playlist")
        << u"plus_add"_s;
    QTest::newRow("playlist") << PlaylistModel::ViewMode << FolderModel::NormalMode << QByteArray("@PlayItem")
                              << u"audio_book_play"_s;
    QTest::newRow("selecting in a playlist")
        << PlaylistModel::ViewMode << FolderModel::SelectionMode << QByteArray("@Delete") << u"trash"_s;
    QTest::newRow("for a playlist") << PlaylistModel::AddMode << FolderModel::SelectionMode
                                    << QByteArray("@AddPhotos") << u""_s;
    QTest::newRow("for a new playlist")
        << PlaylistModel::CreateMode << FolderModel::SelectionMode << QByteArray("@CreatePlaylist") << u""_s;
}

void tst_ExplorerFooter::texts()
{
    QFETCH(PlaylistModel::PlaylistMode, mode);
    QFETCH(FolderModel::FolderModelMode, selecting);
    QFETCH(QByteArray, key);
    QFETCH(QString, icon);

    inAList(1, [&](RunningExplorer &explorer) {
        // From a state that is no row of the table, so that either model's news is needed.
        const bool selects = selecting == FolderModel::SelectionMode;
        explorer.folders()->setMode(selects ? FolderModel::NormalMode : FolderModel::SelectionMode);
        explorer.playlists()->setMode(mode);
        explorer.folders()->setMode(selecting);
        const auto shown = [&] {
            return QStringList{explorer.footer()->property("textButton").toString(),
                               explorer.footer()->property("imageSource").toString()};
        };
        const QStringList expected{QString::fromUtf8(GetLangText(key)), icon};
        QCOMPARE(shown(), expected);
        explorer.playlists()->setMode(mode == PlaylistModel::ViewMode ? PlaylistModel::AddMode
                                                                      : PlaylistModel::ViewMode);
        QVERIFY(shown() != expected);
        explorer.playlists()->setMode(mode);
        QCOMPARE(shown(), expected);
        QCOMPARE(accessible(button(explorer))->role(), QAccessible::Button);
        QCOMPARE(accessibleName(button(explorer)), expected.first());
    });
}

void tst_ExplorerFooter::enabling_data()
{
    QTest::addColumn<PlaylistModel::PlaylistMode>("mode");
    QTest::addColumn<FolderModel::FolderModelMode>("selecting");
    QTest::addColumn<bool>("needsSelection");

    QTest::newRow("overview") << PlaylistModel::AllViewMode << FolderModel::NormalMode << false;
    QTest::newRow("overview, while the picker still selects")
        << PlaylistModel::AllViewMode << FolderModel::SelectionMode << false;
    QTest::newRow("playlist") << PlaylistModel::ViewMode << FolderModel::NormalMode << false;
    QTest::newRow("selecting in a playlist") << PlaylistModel::ViewMode << FolderModel::SelectionMode << true;
    QTest::newRow("for a playlist") << PlaylistModel::AddMode << FolderModel::SelectionMode << true;
    QTest::newRow("for a new playlist") << PlaylistModel::CreateMode << FolderModel::SelectionMode << true;
}

void tst_ExplorerFooter::enabling()
{
    QFETCH(PlaylistModel::PlaylistMode, mode);
    QFETCH(FolderModel::FolderModelMode, selecting);
    QFETCH(bool, needsSelection);

    inAList(1, [&](RunningExplorer &explorer) {
        explorer.playlists()->setMode(mode);
        explorer.folders()->setMode(selecting);
        QCOMPARE(button(explorer)->isEnabled(), !needsSelection);
        explorer.folders()->selectFile(u"/elsewhere/a.png"_s, true); // also from another folder
        QVERIFY(button(explorer)->isEnabled());
        explorer.folders()->clearSelection();
        QCOMPARE(button(explorer)->isEnabled(), !needsSelection);
    });
}

void tst_ExplorerFooter::fillsItsParent()
{
    inAList(2, [](RunningExplorer &explorer) {
        QCOMPARE(explorer.footer()->parentItem(), explorer.explorer());
        QCOMPARE(explorer.footer()->position(), QPointF());
        QCOMPARE(explorer.footer()->size(), explorer.explorer()->size());
        QCOMPARE(explorer.explorer()->childItems().last(), explorer.footer()); // over the list
    });
}

void tst_ExplorerFooter::pageKeys_data()
{
    QTest::addColumn<FolderModel::FolderModelViewMode>("view");
    QTest::addColumn<int>("pictures");
    QTest::addColumn<double>("rowsFurther"); ///< 0 where all is in sight

    QTest::newRow("list with a bar") << FolderModel::ListViewMode << 20 << 3.;
    QTest::newRow("grid with a bar") << FolderModel::GridViewMode << 40 << 2.;
    QTest::newRow("all in sight") << FolderModel::ListViewMode << 2 << 0.;
}

void tst_ExplorerFooter::pageKeys()
{
    QFETCH(FolderModel::FolderModelViewMode, view);
    QFETCH(int, pictures);
    QFETCH(double, rowsFurther);

    inAList(
        pictures,
        [&](RunningExplorer &explorer) {
            QTRY_VERIFY(explorer.list()->hasActiveFocus());
            // A bar that does not show does not keep the keys from paging.
            if (indicator(explorer)->isVisible())
                indicator(explorer)->setVisible(false);
            const double further = rowsFurther * explorer.list()->property("cellHeight").toDouble();
            explorer.key(Qt::Key_PageDown);
            QCOMPARE(contentY(explorer), further);
            explorer.key(Qt::Key_PageUp);
            QCOMPARE(contentY(explorer), 0.);
            explorer.key(Qt::Key_PageUp);
            QCOMPARE(contentY(explorer), 0.);
        },
        view);
}

void tst_ExplorerFooter::otherKeys_data()
{
    QTest::addColumn<Qt::Key>("key");

    QTest::newRow("home") << Qt::Key_Home;
    QTest::newRow("end") << Qt::Key_End;
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("a letter") << Qt::Key_N;
}

void tst_ExplorerFooter::otherKeys()
{
    QFETCH(Qt::Key, key);

    inAList(20, [&](RunningExplorer &explorer) {
        QTRY_VERIFY(explorer.list()->hasActiveFocus());
        explorer.key(key);
        QCOMPARE(contentY(explorer), 0.);
        explorer.key(Qt::Key_PageDown);
        QVERIFY(contentY(explorer) > 0);
    });
}

void tst_ExplorerFooter::indicatorOnlyWhereItScrolls_data()
{
    QTest::addColumn<int>("pictures");
    QTest::addColumn<bool>("shown");

    QTest::newRow("all in sight") << 4 << false; // 4 of 189 and the footer's 90 in 876
    QTest::newRow("one too many") << 5 << true;
}

void tst_ExplorerFooter::indicatorOnlyWhereItScrolls()
{
    QFETCH(int, pictures);
    QFETCH(bool, shown);

    inAList(pictures, [&](RunningExplorer &explorer) {
        QTRY_COMPARE(explorer.list()->property("contentHeight").toDouble(), pictures * 189. + 90);
        QCOMPARE(indicator(explorer)->isVisible(), shown);
        QCOMPARE(corners(explorer).size(), 2);
        for (const QQuickItem *corner : corners(explorer))
            QCOMPARE(corner->isVisible(), shown);
    });
}

void tst_ExplorerFooter::indicatorAtTheTopRight()
{
    inAList(20, [](RunningExplorer &explorer) {
        const QQuickItem *const bar = indicator(explorer);
        QCOMPARE(bar->y(), 0.);
        QCOMPARE(bar->x() + bar->width(), explorer.footer()->width());
        QCOMPARE(bar->property("length").toDouble(), explorer.footer()->height() - 90);
    });
}

void tst_ExplorerFooter::indicatorFollows_data()
{
    QTest::addColumn<int>("pictures");
    QTest::addColumn<double>("way"); ///< of the list, from 0 to 1

    for (const int pictures : {6, 20, 200}) {
        for (const double way : {0., 0.5, 1.})
            QTest::addRow("%d pictures, %d hundredths", pictures, int(way * 100)) << pictures << way;
    }
}

void tst_ExplorerFooter::indicatorFollows()
{
    QFETCH(int, pictures);
    QFETCH(double, way);

    inAList(1, [&](RunningExplorer &explorer) {
        explorer.folders()->loadFromList(QStringList(pictures, m_test->path(u"000.png"_s)));
        const double all = pictures * 189. + 90;
        QTRY_COMPARE(explorer.list()->property("contentHeight").toDouble(), all);
        const double height = explorer.list()->height();
        explorer.list()->setProperty("contentY", way * (all - height));
        const double length = explorer.footer()->height() - 90;
        const double bar = std::max(height * length / all, 51.2 * 212 / 160); // 96 at least
        const QQuickItem *const item = indicator(explorer);
        QCOMPARE(item->property("length").toDouble(), length);
        QVERIFY(qAbs(item->property("indicatorLength").toDouble() - bar) < 1);
        QVERIFY(qAbs(item->property("offset").toDouble() - (length - bar) * way) < 1);
    });
}

void tst_ExplorerFooter::indicatorCountsTheHeader()
{
    inAList(1, [](RunningExplorer &explorer) {
        QQmlComponent component(explorer.context->engine());
        component.setData("import QtQuick\n"
                          "import com.lindenreed.picture_stand 1.0\n"
                          "Item { width: 600; height: 800\n"
                          "GridView { id: list; anchors.fill: parent; cellWidth: 600; cellHeight: 100\n"
                          "model: 40; header: Item { height: 300; width: 600 } delegate: Item {} }\n"
                          "ExplorerFooter { anchors.fill: parent; grid: list } }",
                          QUrl(u"qrc:/test.qml"_s));
        const std::unique_ptr<QObject> object(component.create(explorer.context));
        auto *const scene = qobject_cast<QQuickItem *>(object.get());
        QVERIFY2(scene, qPrintable(component.errorString()));
        scene->setParentItem(explorer.window->contentItem());
        QQuickItem *const list = RunningExplorer::below(scene, "cellHeight");
        QQuickItem *const bar = RunningExplorer::below(scene, "indicatorLength");
        QTRY_COMPARE(list->property("contentHeight").toDouble(), 4300.);
        QCOMPARE(list->property("contentY").toDouble(), -300.);
        QCOMPARE(bar->property("offset").toDouble(), 0.);
        list->setProperty("contentY", 3200); // its end
        QCOMPARE(bar->property("offset").toDouble() + bar->property("indicatorLength").toDouble(),
                 bar->property("length").toDouble());
    });
}

void tst_ExplorerFooter::assistantPages()
{
    inAList(20, [](RunningExplorer &explorer) {
        const double bottom = explorer.window->height() - 1;
        explorer.tap(QPoint(757, int(bottom)));
        QTRY_COMPARE(contentY(explorer), 3. * 189);
        explorer.tap(QPoint(0, int(bottom)));
        QTRY_COMPARE(contentY(explorer), 0.);
    });
}

void tst_ExplorerFooter::disabledButtonTakesTaps()
{
    inAList(20, [&](RunningExplorer &explorer) {
        explorer.folders()->setMode(FolderModel::SelectionMode);
        QVERIFY(!button(explorer)->isEnabled());
        explorer.tap(button(explorer));
        // Had the list got that tap, it would answer it before this one.
        explorer.tap(explorer.cell(0));
        QTRY_COMPARE(explorer.folders()->countSelected(), 1);
        QCOMPARE(explorer.folders()->getSelected(), QStringList{m_test->path(u"000.png"_s)});
        QCOMPARE(explorer.folders()->rowCount(), 20);
    });
}

void tst_ExplorerFooter::enabledButtonTakesTaps()
{
    inAList(20, [&](RunningExplorer &explorer) {
        explorer.folders()->setMode(FolderModel::SelectionMode);
        explorer.folders()->selectFile(m_test->path(u"000.png"_s), true);
        explorer.tap(button(explorer));
        QTRY_COMPARE(explorer.folders()->mode(), FolderModel::NormalMode);
        QCOMPARE(explorer.folders()->rowCount(), 19); // what was selected has gone, nothing else was touched
    });
}

PANEL_TEST_MAIN(tst_ExplorerFooter)
#include "tst_explorer_footer.moc"
