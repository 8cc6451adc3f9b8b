// A picture in the grid: its measures, its thumbnail, selecting and greying.

#include "accessible_items.h"
#include "explorer_fixture.h"
#include "panel_application.h"

#include <device.h>

#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::picture_stand::FolderModel;

namespace {

enum ImageStatus { Null, Ready, Loading, Error }; // as QQuickImageBase numbers them

/// The picture delegate of a row.
QQuickItem *delegate(const RunningExplorer &explorer, int row)
{
    return explorer.cell(row)->childItems().first();
}

QQuickItem *image(const RunningExplorer &explorer, int row)
{
    return RunningExplorer::below(delegate(explorer, row), "sourceSize");
}

/// What lies over the image, in this order.
enum Layer { Touch, LoadingSign, CheckCircle, Greying };

QQuickItem *layer(const RunningExplorer &explorer, int row, Layer layer)
{
    QList<QQuickItem *> layers = image(explorer, row)->childItems();
    layers.removeIf([](const QQuickItem *item) { return item->size().isEmpty(); });
    return layers.value(layer);
}

QString opened()
{
    const QStringList paths = Device::instance()->viewer.opened();
    return paths.join(u' ');
}

} // namespace

class tst_ExplorerPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(); }
    void cleanup() { m_test.reset(); }

    void measures();
    void thumbnail_data();
    void thumbnail();
    void sourceIsSetOnce();
    void sourceIsSetLater();
    void layers();
    void tapOpens();
    void tapOnAVanishedPictureOpens();
    void tapSelects();
    void holdInSelectionDoesNothing();
    void pressActionSelectsInEveryMode();
    void returnKey();
    void checkCircle();
    void checkCirclesComeWithTheMode();
    void greyedWhereThePlaylistHasIt();
    void notGreyedInOtherModes_data();
    void notGreyedInOtherModes();
    void pressedFrame();

private:
    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerPictures::measures()
{
    m_test->pictures(3);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.cell(2)->size(), QSizeF(239, 239));
        for (int row = 0; row < 3; ++row) {
            QQuickItem *const outer = delegate(explorer, row);
            QCOMPARE(outer->property("selected_margin").toInt(), 8); // 12 of 300 dpi
            QCOMPARE(outer->position(), QPointF(14, 2 * 14 - 8));
            QCOMPARE(outer->size(), QSizeF(239 - 2 * 14, 239 - (2 * 14 - 8) - (14 - 8)));
            QCOMPARE(RunningExplorer::valueOf(outer, u"border.width"_s).toInt(), 1);
            QCOMPARE(RunningExplorer::valueOf(outer, u"border.color"_s).value<QColor>(), QColor(Qt::black));
            QCOMPARE(image(explorer, row)->position(), QPointF(1, 1));
            QCOMPARE(image(explorer, row)->size(), outer->size() - QSizeF(2, 2));
        }
    });
}

void tst_ExplorerPictures::thumbnail_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"a.png"_s;
    QTest::newRow("what looks like an escape") << u"a%41.png"_s;
}

void tst_ExplorerPictures::thumbnail()
{
    QFETCH(QString, name);
    const QString path = m_test->picture(name);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(image(explorer, 0)->property("status").toInt(), int(Ready));
        QQuickItem *const shown = image(explorer, 0);
        QCOMPARE(shown->property("source").toUrl(),
                 QUrl(u"image://cover_provider/"_s + QString(path).replace(u'%', u"%25"_s)));
        QCOMPARE(shown->property("sourceSize").toSize(), shown->size().toSize());
        QCOMPARE(RunningExplorer::valueOf(shown, u"fillMode === Image.PreserveAspectCrop"_s).toBool(), true);
        QVERIFY(shown->property("asynchronous").toBool());
        QVERIFY(!shown->property("cache").toBool());
    });
}

void tst_ExplorerPictures::sourceIsSetOnce()
{
    m_test->picture(u"a.png"_s);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_VERIFY(delegate(explorer, 0)->property("sourceSet").toBool());
        image(explorer, 0)->setProperty("source", QUrl());
        QMetaObject::invokeMethod(delegate(explorer, 0), "setSource");
        QCOMPARE(image(explorer, 0)->property("source").toUrl(), QUrl());
    });
}

void tst_ExplorerPictures::sourceIsSetLater()
{
    m_test->picture(u"a.png"_s);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_VERIFY(explorer.cell(0));
        explorer.folders()->restore(); // new delegates
        QMetaObject::invokeMethod(explorer.list(), "forceLayout");
        QVERIFY(!delegate(explorer, 0)->property("sourceSet").toBool());
        QCOMPARE(image(explorer, 0)->property("source").toUrl(), QUrl());
        QTRY_VERIFY(delegate(explorer, 0)->property("sourceSet").toBool());
        QVERIFY(!image(explorer, 0)->property("source").toUrl().isEmpty());
    });
}

void tst_ExplorerPictures::layers()
{
    m_test->picture(u"a.png"_s);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_VERIFY(layer(explorer, 0, Greying));
        QVERIFY(layer(explorer, 0, Touch)->property("hovered").isValid());
        QVERIFY(layer(explorer, 0, LoadingSign)->property("bandColor").isValid());
        QVERIFY(layer(explorer, 0, CheckCircle)->property("isSelected").isValid());
        QCOMPARE(layer(explorer, 0, Greying)->property("color").value<QColor>(), QColor(Qt::white));
        QCOMPARE(layer(explorer, 0, Greying)->opacity(), 0.5);
        for (const Layer each : {Touch, LoadingSign, CheckCircle, Greying})
            QCOMPARE(layer(explorer, 0, each)->size(), image(explorer, 0)->size());
    });
}

void tst_ExplorerPictures::tapOpens()
{
    const QStringList paths = m_test->pictures(2);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_VERIFY(explorer.cell(1));
        explorer.tap(explorer.cell(1));
        QTRY_COMPARE(opened(), paths.at(1));
        QCOMPARE(explorer.folders()->countSelected(), 0);
    });
}

void tst_ExplorerPictures::tapOnAVanishedPictureOpens()
{
    const QStringList paths = m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_VERIFY(explorer.cell(0));
        QVERIFY(QFile::remove(paths.first()));
        explorer.tap(explorer.cell(0));
        QTRY_COMPARE(opened(), paths.first());
    });
}

void tst_ExplorerPictures::tapSelects()
{
    const QStringList paths = m_test->pictures(2);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths, FolderModel::SelectionMode);
        QTRY_VERIFY(explorer.cell(1));
        explorer.tap(explorer.cell(1));
        QTRY_COMPARE(explorer.folders()->getSelected(), QStringList{paths.at(1)});
        explorer.tap(explorer.cell(1));
        QTRY_COMPARE(explorer.folders()->countSelected(), 0);
        QCOMPARE(opened(), QString());
    });
}

void tst_ExplorerPictures::holdInSelectionDoesNothing()
{
    const QStringList paths = m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths, FolderModel::SelectionMode);
        QTRY_VERIFY(explorer.cell(0));
        QQuickItem *const circle = layer(explorer, 0, CheckCircle);
        QQuickItem *const area = RunningExplorer::below(circle, "pressedButtons");
        QVERIFY(area);
        QTest::mousePress(explorer.window, Qt::LeftButton, {}, RunningExplorer::centreOf(explorer.cell(0)));
        QTRY_VERIFY(area->property("pressed").toBool());
        QVERIFY(!layer(explorer, 0, Touch)->property("hovered").toBool()); // it never hears of the finger
        QTest::mouseRelease(explorer.window, Qt::LeftButton, {}, RunningExplorer::centreOf(explorer.cell(0)));
        QTRY_VERIFY(!area->property("pressed").toBool());
    });
}

void tst_ExplorerPictures::pressActionSelectsInEveryMode()
{
    const QStringList paths = m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_VERIFY(explorer.cell(0));
        QQuickItem *const button = delegate(explorer, 0);
        QCOMPARE(accessible(button)->role(), QAccessible::Button);
        QCOMPARE(accessibleName(button), u"000.png"_s);
        for (const auto mode : {FolderModel::NormalMode, FolderModel::SelectionMode}) {
            explorer.folders()->setMode(mode);
            QVERIFY(pressByAccessibility(button));
            QCOMPARE(explorer.folders()->getSelected(), paths);
            QVERIFY(pressByAccessibility(button));
            QCOMPARE(explorer.folders()->countSelected(), 0);
        }
        // What is greyed as well.
        explorer.playlists()->setMode(PlaylistModel::AddMode);
        QVERIFY(layer(explorer, 0, Greying)->isVisible());
        QVERIFY(pressByAccessibility(button));
        QCOMPARE(explorer.folders()->getSelected(), paths);
        QCOMPARE(opened(), QString());
    });
}

void tst_ExplorerPictures::returnKey()
{
    const QStringList paths = m_test->pictures(2);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_VERIFY(explorer.list()->hasActiveFocus() || explorer.cell(0)->hasActiveFocus());
        explorer.key(Qt::Key_Right);
        explorer.key(Qt::Key_Return);
        QTRY_COMPARE(opened(), paths.at(1));
        explorer.folders()->setMode(FolderModel::SelectionMode);
        explorer.key(Qt::Key_Enter);
        QCOMPARE(explorer.folders()->getSelected(), QStringList{paths.at(1)});
        QCOMPARE(opened(), paths.at(1));
        // What cannot be picked by the finger cannot be by the key.
        explorer.playlists()->setMode(PlaylistModel::AddMode);
        explorer.key(Qt::Key_Return);
        QCOMPARE(explorer.folders()->getSelected(), QStringList{paths.at(1)});
        QCOMPARE(opened(), paths.at(1));
    });
}

void tst_ExplorerPictures::checkCircle()
{
    const QStringList paths = m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths, FolderModel::SelectionMode);
        QTRY_VERIFY(explorer.cell(0));
        const QList<QQuickItem *> parts = layer(explorer, 0, CheckCircle)->childItems();
        QVERIFY(parts.size() >= 2);
        const QQuickItem *const veil = parts.at(0);
        QQuickItem *const ring = parts.at(1);
        QQuickItem *const sign = RunningExplorer::below(ring, "source");
        QVERIFY(sign);

        QCOMPARE(veil->property("color").value<QColor>(), QColor(Qt::white));
        QCOMPARE(veil->opacity(), 0.5);
        QCOMPARE(veil->size(), image(explorer, 0)->size());
        QCOMPARE(ring->size(), QSizeF(66, 66)); // 94 of 300 dpi
        QCOMPARE(ring->property("radius").toDouble(), 33.);
        QCOMPARE(ring->property("color").value<QColor>(), QColor(Qt::white));
        QCOMPARE(RunningExplorer::valueOf(ring, u"border.width"_s).isValid(), true);
        QCOMPARE(QQmlExpression(qmlContext(ring), ring, u"border.width"_s).evaluate().toInt(), 5);
        QCOMPARE(QQmlExpression(qmlContext(ring), ring, u"border.color"_s).evaluate().value<QColor>(),
                 QColor(u"grey"_s));
        QVERIFY((RunningExplorer::centreOf(ring) - RunningExplorer::centreOf(image(explorer, 0)))
                    .manhattanLength()
                <= 2);
        QCOMPARE(sign->property("source").toUrl(), QUrl(u"image://resource/sync_status_done"_s));
        QCOMPARE(sign->size(), QSizeF(34, 34)); // 48 of 300 dpi

        const auto checked = [&] { return bool(accessible(delegate(explorer, 0))->state().checked); };
        QVERIFY(ring->isVisible() && !veil->isVisible() && !sign->isVisible() && !checked());
        explorer.folders()->selectFile(paths.first(), true);
        QVERIFY(ring->isVisible() && veil->isVisible() && sign->isVisible() && checked());
        explorer.folders()->selectFile(paths.first(), false);
        QVERIFY(ring->isVisible() && !veil->isVisible() && !sign->isVisible() && !checked());
    });
}

void tst_ExplorerPictures::checkCirclesComeWithTheMode()
{
    const QStringList paths = m_test->pictures(4);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_VERIFY(explorer.cell(3));
        for (const auto mode :
             {FolderModel::NormalMode, FolderModel::SelectionMode, FolderModel::NormalMode}) {
            explorer.folders()->setMode(mode);
            for (int row = 0; row < 4; ++row) {
                QCOMPARE(layer(explorer, row, CheckCircle)->isVisible(), mode == FolderModel::SelectionMode);
                QCOMPARE(bool(accessible(delegate(explorer, row))->state().checkable),
                         mode == FolderModel::SelectionMode);
            }
        }
    });
}

void tst_ExplorerPictures::greyedWhereThePlaylistHasIt()
{
    const QStringList paths = m_test->pictures(2);
    explore([&](RunningExplorer &explorer) {
        explorer.onlyPlaylist({paths.at(0)});
        explorer.openPicker(m_test->tree.top, PlaylistModel::AddMode);
        QTRY_VERIFY(explorer.cell(1));
        QVERIFY(layer(explorer, 0, Greying)->isVisible());
        QVERIFY(!layer(explorer, 0, CheckCircle)->isVisible());
        QVERIFY(!layer(explorer, 1, Greying)->isVisible());
        QVERIFY(layer(explorer, 1, CheckCircle)->isVisible());
        explorer.tap(explorer.cell(0));
        explorer.tap(explorer.cell(1)); // takes effect after what the first tap could do
        QTRY_COMPARE(explorer.folders()->getSelected(), QStringList{paths.at(1)});
        QCOMPARE(opened(), QString());
    });
}

void tst_ExplorerPictures::notGreyedInOtherModes_data()
{
    QTest::addColumn<PlaylistModel::PlaylistMode>("mode");

    QTest::newRow("a playlist is looked at") << PlaylistModel::ViewMode;
    QTest::newRow("a new playlist") << PlaylistModel::CreateMode;
    QTest::newRow("the overview") << PlaylistModel::AllViewMode;
}

void tst_ExplorerPictures::notGreyedInOtherModes()
{
    QFETCH(PlaylistModel::PlaylistMode, mode);

    const QStringList paths = m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.onlyPlaylist(paths);
        explorer.openPicker(m_test->tree.top, mode);
        QTRY_VERIFY(explorer.cell(0));
        QVERIFY(!layer(explorer, 0, Greying)->isVisible());
        QVERIFY(layer(explorer, 0, CheckCircle)->isVisible());
    });
}

void tst_ExplorerPictures::pressedFrame()
{
    const QStringList paths = m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_COMPARE(image(explorer, 0)->property("status").toInt(), int(Ready));
        QQuickItem *const touch = layer(explorer, 0, Touch);
        const auto edges = [touch] {
            QList<QRectF> areas;
            for (const QQuickItem *item : touch->childItems()) {
                if (item->isVisible() && item->property("color").isValid()
                    && item->property("color").value<QColor>() == QColor(Qt::black))
                    areas.append(QRectF(item->position(), item->size()));
            }
            return areas;
        };
        QCOMPARE(edges(), QList<QRectF>());
        const QPoint point = RunningExplorer::centreOf(explorer.cell(0));
        QTest::mousePress(explorer.window, Qt::LeftButton, {}, point);
        QTRY_VERIFY(touch->property("hovered").toBool());
        const double thick = explorer.measure(u"GlobalValues.defaultFocusedElementBorderThickness"_s);
        const QSizeF size = touch->size();
        QCOMPARE(edges(),
                 (QList<QRectF>{{0, 0, size.width(), thick},
                                {0, size.height() - thick, size.width(), thick},
                                {0, 0, thick, size.height()},
                                {size.width() - thick, 0, thick, size.height()}}));
        QTest::mouseMove(explorer.window, QPoint(20, point.y())); // off the picture
        QTRY_VERIFY(!touch->property("hovered").toBool());
        QTest::mouseMove(explorer.window, point);
        QTRY_VERIFY(touch->property("hovered").toBool());
        QTest::mouseRelease(explorer.window, Qt::LeftButton, {}, point);
        QTRY_VERIFY(!touch->property("hovered").toBool());
        QCOMPARE(edges(), QList<QRectF>());
        // A pointer that only passes by presses nothing.
        QTest::mouseMove(explorer.window, point + QPoint(3, 3));
        QVERIFY(!touch->property("hovered").toBool());
    });
}

PANEL_TEST_MAIN(tst_ExplorerPictures)
#include "tst_explorer_pictures.moc"
