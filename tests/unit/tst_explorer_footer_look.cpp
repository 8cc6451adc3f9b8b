// How the big button at the foot of a list looks: its place, its colours, its icon and its text.

#include "explorer_fixture.h"
#include "panel_application.h"

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

namespace {

QQuickItem *button(const RunningExplorer &explorer)
{
    return RunningExplorer::below(explorer.footer(), "visibleBorders");
}

/// What stands in the button; both in its one row.
QQuickItem *icon(const RunningExplorer &explorer)
{
    return RunningExplorer::below(button(explorer), "fillMode");
}
QQuickItem *text(const RunningExplorer &explorer)
{
    return RunningExplorer::below(button(explorer), "styledFont");
}

QColor colour(const RunningExplorer &explorer, const QString &expression)
{
    return RunningExplorer::valueOf(text(explorer), expression).value<QColor>();
}

} // namespace

class tst_ExplorerFooterLook : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(); }
    void cleanup() { m_test.reset(); }

    void place();
    void lines();
    void blockedArea();
    void enabled();
    void hovered();
    void disabled();
    void pressedThoughDisabled();
    void content();
    void noIconInThePicker_data();
    void noIconInThePicker();
    void longTexts_data();
    void longTexts();

private:
    void inAList(FolderModel::FolderModelMode selecting, const std::function<void(RunningExplorer &)> &body)
    {
        const QStringList paths = m_test->pictures(2);
        explore([&](RunningExplorer &explorer) {
            explorer.openPlaylist(paths, selecting, FolderModel::ListViewMode);
            QTRY_VERIFY(explorer.cell(0));
            body(explorer);
        });
    }

    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerFooterLook::place()
{
    inAList(FolderModel::NormalMode, [](RunningExplorer &explorer) {
        const QQuickItem *const item = button(explorer);
        QCOMPARE(item->size(), QSizeF(758 - 2 * 79, 90)); // 112 of 300 dpi at each side, 128 high
        QCOMPARE(item->position(), QPointF(79, explorer.footer()->height() - 90));
        QCOMPARE(item->property("radius").toDouble(),
                 explorer.measure(u"GlobalValues.defaultElementBorderRadius"_s));
    });
}

void tst_ExplorerFooterLook::lines()
{
    inAList(FolderModel::NormalMode, [](RunningExplorer &explorer) {
        QQuickItem *const item = text(explorer);
        QCOMPARE(RunningExplorer::valueOf(item, u"button.border.width"_s).toDouble(),
                 explorer.measure(u"GlobalValues.minimalLineThickness"_s));
        QCOMPARE(colour(explorer, u"button.border.color"_s),
                 colour(explorer, u"GlobalValues.defaultSolidseparatorColor"_s));
        QCOMPARE(RunningExplorer::valueOf(item, u"button.visibleBorders.join()"_s).toString(), u"1,1,0,1"_s);
    });
}

void tst_ExplorerFooterLook::blockedArea()
{
    inAList(FolderModel::NormalMode, [](RunningExplorer &explorer) {
        const QList<QQuickItem *> layers = explorer.footer()->childItems();
        const QQuickItem *const under = layers.value(layers.indexOf(button(explorer)) - 1);
        QVERIFY(under);
        QVERIFY(under->inherits("QQuickMouseArea"));
        QCOMPARE(under->position(), button(explorer)->position());
        QCOMPARE(under->size(), button(explorer)->size());
    });
}

void tst_ExplorerFooterLook::enabled()
{
    inAList(FolderModel::NormalMode, [](RunningExplorer &explorer) {
        QCOMPARE(text(explorer)->property("color").value<QColor>(),
                 colour(explorer, u"button.hoveredColor"_s));
        QCOMPARE(text(explorer)->property("color").value<QColor>(), QColor(Qt::black));
        QCOMPARE(icon(explorer)->property("source").toUrl(), QUrl(u"image://resource/audio_book_play"_s));
        QCOMPARE(icon(explorer)->opacity(), 1.);
    });
}

void tst_ExplorerFooterLook::hovered()
{
    inAList(FolderModel::NormalMode, [](RunningExplorer &explorer) {
        const QPoint point = RunningExplorer::centreOf(button(explorer));
        QTest::mousePress(explorer.window, Qt::LeftButton, {}, point);
        QTRY_VERIFY(button(explorer)->property("hovered").toBool());
        QCOMPARE(text(explorer)->property("color").value<QColor>(),
                 colour(explorer, u"button.backgroundColor"_s));
        QCOMPARE(text(explorer)->property("color").value<QColor>(), QColor(Qt::white));
        QCOMPARE(icon(explorer)->property("source").toUrl(), QUrl(u"image://resource_inv/audio_book_play"_s));
        // Elsewhere the finger lets go without pressing.
        QTest::mouseMove(explorer.window, QPoint(point.x(), 300));
        QTRY_VERIFY(!button(explorer)->property("hovered").toBool());
        QCOMPARE(text(explorer)->property("color").value<QColor>(), QColor(Qt::black));
        QCOMPARE(icon(explorer)->property("source").toUrl(), QUrl(u"image://resource/audio_book_play"_s));
        QTest::mouseRelease(explorer.window, Qt::LeftButton, {}, QPoint(point.x(), 300));
        QCOMPARE(explorer.app.currentView(), u"playlist"_s);
    });
}

void tst_ExplorerFooterLook::disabled()
{
    inAList(FolderModel::SelectionMode, [](RunningExplorer &explorer) {
        QVERIFY(!button(explorer)->isEnabled());
        QCOMPARE(text(explorer)->property("color").value<QColor>(),
                 colour(explorer, u"GlobalValues.defaultDisabledTextColor"_s));
        QCOMPARE(icon(explorer)->property("source").toUrl(), QUrl(u"image://resource/trash"_s));
        QVERIFY(icon(explorer)->opacity() < 0.5); // as grey as the text
    });
}

void tst_ExplorerFooterLook::pressedThoughDisabled()
{
    inAList(FolderModel::SelectionMode, [](RunningExplorer &explorer) {
        const QPoint point = RunningExplorer::centreOf(button(explorer));
        QTest::mousePress(explorer.window, Qt::LeftButton, {}, point);
        QCOMPARE(text(explorer)->property("color").value<QColor>(),
                 colour(explorer, u"GlobalValues.defaultDisabledTextColor"_s));
        QCOMPARE(icon(explorer)->property("source").toUrl(), QUrl(u"image://resource/trash"_s));
        QTest::mouseRelease(explorer.window, Qt::LeftButton, {}, point);
    });
}

void tst_ExplorerFooterLook::content()
{
    inAList(FolderModel::NormalMode, [](RunningExplorer &explorer) {
        QQuickItem *const row = text(explorer)->parentItem();
        QCOMPARE(icon(explorer)->parentItem(), row);
        QVERIFY(icon(explorer)->x() < text(explorer)->x()); // the icon before the text
        // In the middle, but for half a pixel.
        const QPointF middle(row->x() + row->width() / 2, row->y() + row->height() / 2);
        QVERIFY(qAbs(middle.x() - button(explorer)->width() / 2) <= 0.5);
        QVERIFY(qAbs(middle.y() - button(explorer)->height() / 2) <= 0.5);
        QCOMPARE(text(explorer)->property("styledFont"),
                 RunningExplorer::valueOf(row, u"FontStyles.Heading5"_s));
        QCOMPARE(text(explorer)->property("text").toString(), QString::fromUtf8(GetLangText("@PlayItem")));
        QCOMPARE(text(explorer)->width(), text(explorer)->implicitWidth());
        QVERIFY(!text(explorer)->property("truncated").toBool());
    });
}

void tst_ExplorerFooterLook::noIconInThePicker_data()
{
    QTest::addColumn<PlaylistModel::PlaylistMode>("mode");

    QTest::newRow("for a playlist") << PlaylistModel::AddMode;
    QTest::newRow("for a new playlist") << PlaylistModel::CreateMode;
}

void tst_ExplorerFooterLook::noIconInThePicker()
{
    QFETCH(PlaylistModel::PlaylistMode, mode);

    m_test->pictures(1);
    explore([&](RunningExplorer &explorer) {
        explorer.onlyPlaylist({});
        explorer.openPicker(m_test->tree.top, mode);
        QVERIFY(!icon(explorer)->isVisible());
        QCOMPARE(text(explorer)->x(), 0.); // the text has the middle for itself
        explorer.playlists()->setMode(PlaylistModel::ViewMode);
        QVERIFY(icon(explorer)->isVisible());
    });
}

void tst_ExplorerFooterLook::longTexts_data()
{
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("truncated");

    QTest::newRow("short") << u"Играть"_s << false;
    QTest::newRow("German") << u"Fotowiedergabelistenverzeichniseinträge löschen"_s << true;
    QTest::newRow("Russian") << u"Воспроизведение последовательности изображений"_s << true;
}

void tst_ExplorerFooterLook::longTexts()
{
    QFETCH(QString, shown);
    QFETCH(bool, truncated);

    for (const bool withIcon : {true, false}) {
        inAList(FolderModel::NormalMode, [&](RunningExplorer &explorer) {
            explorer.footer()->setProperty("textButton", shown);
            if (!withIcon)
                explorer.footer()->setProperty("imageSource", QString());
            const double room = button(explorer)->width() - icon(explorer)->width()
                - explorer.measure(u"Global.pixelsFromDesign(10)"_s);
            QCOMPARE(icon(explorer)->width() > 0, withIcon);
            QCOMPARE(text(explorer)->width(), std::min(text(explorer)->implicitWidth(), room));
            QCOMPARE(text(explorer)->property("truncated").toBool(), truncated);
            QCOMPARE(text(explorer)->property("lineCount").toInt(), 1);
            const QQuickItem *const row = text(explorer)->parentItem();
            QVERIFY(row->x() >= -0.5 && row->x() + row->width() <= button(explorer)->width() + 0.5);
        });
    }
}

PANEL_TEST_MAIN(tst_ExplorerFooterLook)
#include "tst_explorer_footer_look.moc"
