// The overview of all playlists: its measures, its rows, and the way into a show.

#include "explorer_lists.h"
#include "panel_application.h"
#include "running_app.h"
#include "stored_database.h"

#include <slateview.h>
#include <slateview_testing.h>

#include <QAccessible>
#include <QImage>
#include <QQmlExpression>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThreadPool>

#include <cstdlib>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::picture_stand::App;
using lindenreed::picture_stand::SlideshowModel;

namespace {

QQuickItem *findItem(QQuickItem *item, const std::function<bool(const QQuickItem *)> &fits)
{
    if (fits(item))
        return item;
    for (QQuickItem *child : item->childItems()) {
        if (QQuickItem *found = findItem(child, fits))
            return found;
    }
    return nullptr;
}

QQuickItem *withValue(const RunningApp &running, const char *property, const QString &value)
{
    return findItem(running.screen(),
                    [&](const QQuickItem *item) { return item->property(property).toString() == value; });
}

QQuickItem *grid(const RunningApp &running)
{
    return running.itemWith("cellHeight");
}

/// The first row's.
QQuickItem *playButton(const RunningApp &running)
{
    return withValue(running, "icon", u"image://resource/audio_book_play"_s);
}

QQuickItem *emptyText(const RunningApp &running)
{
    return withValue(running, "text", QString::fromUtf8(GetLangText("@ThereAreNoPlaylistsYet")));
}

/// An expression as the screen itself would write it.
double measure(const RunningApp &running, const QString &expression)
{
    return QQmlExpression(qmlContext(running.screen()), running.screen(), expression).evaluate().toDouble();
}

QPoint centreOf(const QQuickItem *item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

} // namespace

class tst_PlaylistsScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void noPlaylists();
    void header();
    void measures();
    void keysGoToTheList();
    void dragIsFast();
    void playWithoutFiles();
    void playWithOwnSettings();

private:
    /// The store holds this one playlist, whose id is returned.
    qlonglong onlyPlaylist(const RunningApp &running, const QStringList &pictures);

    static qlonglong addPlaylist(const RunningApp &running, const QStringList &pictures);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DeviceForTest> m_device;
};

void tst_PlaylistsScreen::initTestCase()
{
    stored_database::remove();
}

void tst_PlaylistsScreen::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_folder = std::make_unique<QTemporaryDir>();
    m_device = std::make_unique<DeviceForTest>();
}

void tst_PlaylistsScreen::cleanup()
{
    QThreadPool::globalInstance()->waitForDone();
    m_device.reset();
    m_folder.reset();
}

qlonglong tst_PlaylistsScreen::onlyPlaylist(const RunningApp &running, const QStringList &pictures)
{
    PlaylistModel *playlists = running.playlists();
    while (playlists->count() > 0)
        playlists->deleteItem(playlists->data(playlists->index(0), PlaylistModel::IdRole).toLongLong());
    running.settings()->setProperty("isFirstRun", false);
    running.settings()->saveConfig(u"is_first_run"_s);
    const qlonglong id = addPlaylist(running, pictures);
    // Until the window has its size the list has none, and no rows.
    if (!QTest::qWaitFor([&] { return running.screen()->height() == ScreenHeight() - PanelHeight(); }))
        qWarning("the screen does not fill the window");
    return id;
}

qlonglong tst_PlaylistsScreen::addPlaylist(const RunningApp &running, const QStringList &pictures)
{
    PlaylistModel *playlists = running.playlists();
    const qlonglong id = playlists->addItem(u"Mine"_s);
    playlists->setActiveId(id);
    playlists->addImagesToPlaylist(pictures);
    playlists->setActiveId(-1);
    return id;
}

void tst_PlaylistsScreen::noPlaylists()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const qlonglong id = onlyPlaylist(running, {});
                        QVERIFY(emptyText(running));
                        QVERIFY(!emptyText(running)->isVisible());
                        QVERIFY(grid(running)->isVisible());

                        running.playlists()->deleteItem(id);
                        QVERIFY(emptyText(running)->isVisible());
                        QVERIFY(!grid(running)->isVisible());
                        QCOMPARE(emptyText(running)->property("horizontalAlignment").toInt(),
                                 int(Qt::AlignHCenter));

                        running.playlists()->addItem(u"Another"_s);
                        QVERIFY(!emptyText(running)->isVisible());
                        QVERIFY(grid(running)->isVisible());
                    }),
             0);
}

void tst_PlaylistsScreen::header()
{
    App app;
    QCOMPARE(
        runApp(app,
               [&](RunningApp &running) {
                   QQuickItem *const header = running.itemWith("closePressedIcon");
                   QVERIFY(header);
                   QCOMPARE(header->property("title").toString(),
                            QString::fromUtf8(GetLangText("@picture_stand")));
                   QCOMPARE(header->property("closeIcon").toString(), u"image://resource/home"_s);
                   QCOMPARE(header->property("closePressedIcon").toString(), u"image://resource/home_inv"_s);
                   QCOMPARE(header->height(), measure(running, u"GlobalValues.defaultAppHeaderHeight"_s));
                   QCOMPARE(header->position(), QPointF());
               }),
        0);
}

void tst_PlaylistsScreen::measures()
{
    App app;
    QCOMPARE(
        runApp(app,
               [&](RunningApp &running) {
                   onlyPlaylist(running, {});
                   const QQuickItem *const list = grid(running);
                   const double side = measure(running, u"Global.dp(48 * 0.5333)"_s);
                   const double top = measure(running, u"GlobalValues.defaultAppHeaderHeight"_s);
                   QVERIFY(side > 0 && top > 0);
                   QCOMPARE(list->position(), QPointF(side, top));
                   QCOMPARE(list->width(), running.screen()->width() - 2 * side);
                   QCOMPARE(list->height(),
                            running.screen()->height() - top - measure(running, u"Global.dp(20 * 0.5333)"_s));
                   QCOMPARE(list->property("cellWidth").toDouble(), list->width());
                   QCOMPARE(list->property("cellHeight").toDouble(),
                            measure(running, u"Global.dp(268 * 0.5333)"_s));
                   QVERIFY(list->clip());
                   QCOMPARE(list->property("pressDelay").toDouble(),
                            measure(running, u"GlobalValues.listPressDelay"_s));

                   const auto *footer = list->property("footerItem").value<QQuickItem *>();
                   QVERIFY(footer);
                   QCOMPARE(footer->height(), measure(running, u"GlobalValues.scrollListButtonsHeight"_s));
                   QCOMPARE(footer->width(), list->width());
                   QCOMPARE(footer->childItems().size(), 0);
               }),
        0);
}

void tst_PlaylistsScreen::keysGoToTheList()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        onlyPlaylist(running, {});
                        QVERIFY(grid(running)->property("keyNavigationEnabled").toBool());
                        QTRY_VERIFY(grid(running)->hasActiveFocus());
                        running.screen()->setVisible(false);
                        grid(running)->setFocus(false);
                        QVERIFY(!grid(running)->hasActiveFocus());
                        running.screen()->setVisible(true); // and again whenever it comes back
                        QVERIFY(grid(running)->hasActiveFocus());
                    }),
             0);
}

void tst_PlaylistsScreen::dragIsFast()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        onlyPlaylist(running, {});
                        explorer_lists::dragIsFast(running.window, grid(running));
                    }),
             0);
}

void tst_PlaylistsScreen::playWithoutFiles()
{
    const QString picture = m_folder->filePath(u"a.png"_s);
    QVERIFY(QImage(20, 20, QImage::Format_Grayscale8).save(picture));
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        onlyPlaylist(running, {u"/gone/a.png"_s, u"/gone/b.png"_s});
                        const qlonglong other = addPlaylist(running, {picture});
                        const auto button = [&](bool enabled) {
                            return findItem(running.screen(), [enabled](const QQuickItem *item) {
                                return item->property("icon").toString()
                                    == u"image://resource/audio_book_play"_s
                                    && item->isEnabled() == enabled;
                            });
                        };
                        QTRY_VERIFY(button(false) && button(true));
                        QCOMPARE(button(false)->property("disabledIcon").toString(),
                                 u"image://resource/audio_book_play_disabled"_s);
                        m_device->forgetCalls();
                        QSignalSpy activated(running.playlists(), &PlaylistModel::activeIdChanged);
                        // What the second tap does has happened after what the first one would have done.
                        QTest::mouseClick(running.window, Qt::LeftButton, {}, centreOf(button(false)));
                        QTest::mouseClick(running.window, Qt::LeftButton, {}, centreOf(button(true)));
                        QTRY_COMPARE(app.currentView(), u"slideshow"_s);
                        QCOMPARE(activated.count(), 1);
                        QCOMPARE(running.playlists()->activeId(), other);
                        QCOMPARE(m_device->calls({"SetHardTimerEx"}).size(),
                                 2); // by the footer and by the view's row
                    }),
             0);
}

void tst_PlaylistsScreen::playWithOwnSettings()
{
    QStringList paths;
    for (int i = 0; i < 8; ++i) {
        QImage picture(20, 20, QImage::Format_Grayscale8);
        picture.fill(i * 20);
        paths.append(m_folder->filePath(u"%1.png"_s.arg(i)));
        QVERIFY(picture.save(paths.last()));
    }
    QStringList shuffled = paths;
    std::srand(1); // where an unseeded source stands at the start
    for (int i = 1; i < 8; ++i)
        shuffled.swapItemsAt(i, std::rand() % (i + 1));
    QVERIFY(shuffled != paths);

    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const qlonglong id = onlyPlaylist(running, paths);
                        DataStorage::instance().setSetting(u"shuffle"_s, u"1"_s, int(id));
                        DataStorage::instance().setSetting(u"change_picture_time"_s, u"99"_s, int(id));
                        QTRY_VERIFY(playButton(running));
                        QVERIFY(playButton(running)->isEnabled());

                        QSignalSpy load(running.slideshow(), &SlideshowModel::loadToCache);
                        std::srand(1);
                        m_device->forgetCalls();
                        QAccessibleInterface *const button
                            = QAccessible::queryAccessibleInterface(playButton(running));
                        QVERIFY(button && button->actionInterface());
                        button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());

                        QCOMPARE(app.currentView(), u"slideshow"_s);
                        QCOMPARE(running.playlists()->activeId(), id);
                        QCOMPARE(load.count(), 1);
                        QCOMPARE(load.first(), (QVariantList{shuffled, 0}));
                        QCOMPARE(running.slideshow()->currentImage(), shuffled.first());
                        const auto armed = m_device->calls({"SetHardTimerEx"});
                        QCOMPARE(armed.size(), 2); // by the footer and by the view's row
                        for (const auto &call : armed)
                            QCOMPARE(call.arguments.last(), QByteArray("99000"));
                    }),
             0);
}

PANEL_TEST_MAIN(tst_PlaylistsScreen)
#include "tst_playlists_screen.moc"
