// The show's screen on the panel: fill modes, the way out, touches, and what is left without pictures.

#include "panel_application.h"
#include "panel_view.h"
#include "running_app.h"

#include <slateview_testing.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThreadPool>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::picture_stand::App;
using lindenreed::picture_stand::SlideshowModel;

namespace {

enum ImageStatus { Null, Ready, Loading, Error }; // as QQuickImageBase numbers them
enum FillMode { Stretch, PreserveAspectFit, PreserveAspectCrop }; // as QQuickImage does

constexpr QSize screen(758, 1024);
constexpr int lightGrey = 0xdd; ///< one of the panel's own, dithered to itself

QQuickItem *image(const RunningApp &running)
{
    for (QQuickItem *child : running.screen()->childItems()) {
        if (child->metaObject()->indexOfProperty("fillMode") >= 0)
            return child;
    }
    return nullptr;
}

bool isBlack(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qGray(picture.pixel(x, y)) != 0)
                return false;
        }
    }
    return true;
}

/// Loads the screen without the dates, which have tests of their own, and waits until it is as large as the
/// panel.
void showIt(const RunningApp &running)
{
    running.settings()->setProperty("created_date_show", false);
    running.app.changeView(u"slideshow"_s);
    QTRY_COMPARE(image(running)->size().toSize(), screen);
}

void tap(const RunningApp &running, QPoint at)
{
    QTest::mouseClick(running.window, Qt::LeftButton, {}, at);
}

} // namespace

class tst_ShowScreen : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void leavingByTheCorner_data();
    void leavingByTheCorner();
    void fillModes_data();
    void fillModes();
    void hardEdge();
    void movementThatComesBack();
    void withoutPictures();
    void blackForWhatCannotBeShown();

private:
    QString save(const QImage &picture, const QString &name);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DeviceForTest> m_device;
};

void tst_ShowScreen::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_folder = std::make_unique<QTemporaryDir>();
    m_device = std::make_unique<DeviceForTest>();
}

void tst_ShowScreen::cleanup()
{
    QThreadPool::globalInstance()->waitForDone();
    m_device.reset();
    m_folder.reset();
}

QString tst_ShowScreen::save(const QImage &picture, const QString &name)
{
    const QString path = m_folder->filePath(name);
    return picture.save(path) ? path : QString();
}

void tst_ShowScreen::leavingByTheCorner_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("view");

    QTest::newRow("an open playlist: back to it") << int(PlaylistModel::ViewMode) << u"playlist"_s;
    QTest::newRow("the overview") << int(PlaylistModel::AllViewMode) << u"playlists"_s;
    QTest::newRow("while adding") << int(PlaylistModel::AddMode) << u"playlists"_s;
    QTest::newRow("while creating") << int(PlaylistModel::CreateMode) << u"playlists"_s;
}

void tst_ShowScreen::leavingByTheCorner()
{
    QFETCH(int, mode);
    QFETCH(QString, view);

    QImage picture(40, 30, QImage::Format_Grayscale8);
    picture.fill(lightGrey);
    const QStringList paths{save(picture, u"a.png"_s), save(picture, u"b.png"_s)};
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const qlonglong id = running.playlists()->addItem(u"Mine"_s);
                        running.playlists()->setMode(PlaylistModel::PlaylistMode(mode));
                        running.playlists()->setActiveId(id);
                        running.slideshow()->initFromList(paths, 30);
                        showIt(running);
                        m_device->forgetCalls();

                        // By the time that the view changes the show has stopped, and the playlist is set.
                        qsizetype stops = -1;
                        qlonglong activeId = 0;
                        connect(&app, &App::changedView, &app, [&] {
                            stops = m_device->calls({"SetAutoPowerOff"}).size();
                            activeId = running.playlists()->activeId();
                        });
                        QSignalSpy changed(running.slideshow(), &SlideshowModel::current_imageChanged);
                        tap(running, {screen.width() / 5, screen.height() / 5});
                        QCOMPARE(app.currentView(), view);
                        QCOMPARE(stops, 1);
                        QCOMPARE(activeId, view == u"playlist"_s ? id : -1);
                        QCOMPARE(changed.count(), 0);
                        QCOMPARE(m_device->calls({"SetAutoPowerOff"}).first().arguments, QByteArrayList{"1"});
                        QVERIFY(!m_device->fire("nextImageEvent"));

                        running.playlists()->setActiveId(-1);
                        running.playlists()->deleteItem(id);
                    }),
             0);
}

void tst_ShowScreen::fillModes_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("fillMode");
    QTest::addColumn<int>("atTheTop");

    QTest::newRow("whole, with bars") << 0 << int(PreserveAspectFit) << 0;
    QTest::newRow("filled") << 1 << int(PreserveAspectCrop) << lightGrey;
    QTest::newRow("any other value fills as well") << 2 << int(PreserveAspectCrop) << lightGrey;
}

void tst_ShowScreen::fillModes()
{
    QFETCH(int, mode);
    QFETCH(int, fillMode);
    QFETCH(int, atTheTop);

    QImage square(100, 100, QImage::Format_Grayscale8);
    square.fill(lightGrey);
    const QString path = save(square, u"a.png"_s);
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.settings()->setProperty("display_mode", mode);
                        running.slideshow()->initFromList({path}, 30);
                        showIt(running);
                        QCOMPARE(image(running)->property("fillMode").toInt(), fillMode);
                        QTRY_COMPARE(panel_view::greyAt(379, 512), lightGrey);
                        QVERIFY(panel_view::waitUntilStill());
                        const QImage panel = panel_view::upright();
                        QCOMPARE(panel.size(), screen);
                        // A square as wide as the screen leaves 133 rows above and below.
                        for (int y : {0, 131, 892, 1023})
                            QCOMPARE(qGray(panel.pixel(379, y)), atTheTop);
                        for (int y : {134, 889})
                            QCOMPARE(qGray(panel.pixel(379, y)), lightGrey);
                        for (int x : {0, 757})
                            QCOMPARE(qGray(panel.pixel(x, 512)), lightGrey);
                    }),
             0);
}

void tst_ShowScreen::hardEdge()
{
    // The picture comes in the size of the screen, so that nobody smooths it on the way.
    QImage halves(2, 1, QImage::Format_Grayscale8);
    halves.scanLine(0)[0] = 0;
    halves.scanLine(0)[1] = 255;
    const QString path = save(halves, u"a.png"_s);
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.settings()->setProperty("display_mode", 0);
                        running.slideshow()->initFromList({path}, 30);
                        showIt(running);
                        QCOMPARE(image(running)->property("sourceSize").toSize(), screen);
                        QCOMPARE(image(running)->property("asynchronous").toBool(), false);
                        QTRY_COMPARE(panel_view::greyAt(700, 512), 255);
                        QVERIFY(panel_view::waitUntilStill());
                        const QImage panel = panel_view::upright();
                        for (int x = 0; x < screen.width(); ++x)
                            QCOMPARE(qGray(panel.pixel(x, 512)), x < 379 ? 0 : 255);
                    }),
             0);
}

void tst_ShowScreen::movementThatComesBack()
{
    QImage picture(40, 30, QImage::Format_Grayscale8);
    picture.fill(lightGrey);
    const QStringList paths{save(picture, u"a.png"_s), save(picture, u"b.png"_s)};
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(paths, 30);
                        showIt(running);
                        QSignalSpy changed(running.slideshow(), &SlideshowModel::current_imageChanged);

                        // A tap here would be a step forward; a swipe without a way is nothing.
                        constexpr QPoint start(700, 600);
                        QTest::mousePress(running.window, Qt::LeftButton, {}, start);
                        QTest::mouseMove(running.window, start - QPoint(100, 0));
                        QTest::mouseMove(running.window, start);
                        QTest::mouseRelease(running.window, Qt::LeftButton, {}, start);
                        QCOMPARE(changed.count(), 0);
                        QCOMPARE(running.slideshow()->currentImage(), paths.at(0));

                        // The next touch begins anew: it moves below the threshold, and is a tap.
                        QTest::mousePress(running.window, Qt::LeftButton, {}, start);
                        QTest::mouseMove(running.window, start - QPoint(10, 10));
                        QTest::mouseRelease(running.window, Qt::LeftButton, {}, start - QPoint(10, 10));
                        QCOMPARE(changed.count(), 1);
                        QCOMPARE(running.slideshow()->currentImage(), paths.at(1));
                    }),
             0);
}

void tst_ShowScreen::withoutPictures()
{
    // A white screen first, so that black is new.
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QVERIFY(panel_view::waitUntilStill());
                        QVERIFY(!isBlack(panel_view::upright()));
                        running.playlists()->setMode(PlaylistModel::AllViewMode);
                        running.slideshow()->initFromList({u"/gone/a.jpg"_s, u"/gone/b.jpg"_s}, 30);
                        for (int i = 0; i < 2; ++i)
                            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Failed to get image"_s));
                        showIt(running);
                        QVERIFY(panel_view::waitUntilStill());
                        QVERIFY(isBlack(panel_view::upright()));
                        QVERIFY(!m_device->fire("nextImageEvent"));

                        // Taps step through nothing, in both directions, and through the middle.
                        m_device->forgetCalls();
                        QSignalSpy changed(running.slideshow(), &SlideshowModel::current_imageChanged);
                        tap(running, {700, 600});
                        QCOMPARE(changed.count(), 1);
                        QCOMPARE(m_device->calls({"BanSleep"}).size(), 1);
                        tap(running, {50, 600});
                        QCOMPARE(changed.count(), 2);
                        tap(running, {379, 600});
                        QCOMPARE(changed.count(), 2);
                        QVERIFY(running.screen()->property("menu_opened").toBool());
                        tap(running, {379, 50});
                        QVERIFY(!running.screen()->property("menu_opened").toBool());
                        QVERIFY(!m_device->fire("nextImageEvent"));
                        QVERIFY(panel_view::waitUntilStill());
                        QVERIFY(isBlack(panel_view::upright()));

                        tap(running, {20, 20});
                        QCOMPARE(app.currentView(), u"playlists"_s);
                    }),
             0);
}

void tst_ShowScreen::blackForWhatCannotBeShown()
{
    QImage white(100, 100, QImage::Format_Grayscale8);
    white.fill(255);
    const QString good = save(white, u"a.png"_s);
    const QString bad = m_folder->filePath(u"b.png"_s);
    QFile file(bad);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("no picture at all");
    file.close();
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.settings()->setProperty("display_mode", 1);
                        running.slideshow()->initFromList({good, bad}, 30);
                        showIt(running);
                        QCOMPARE(image(running)->property("status").toInt(), int(Ready));
                        QTRY_COMPARE(panel_view::greyAt(10, 1000), 255);

                        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Failed to get image"_s));
                        QVERIFY(m_device->fire("nextImageEvent"));
                        QCOMPARE(image(running)->property("status").toInt(), int(Error));
                        QTRY_COMPARE(panel_view::greyAt(10, 1000), 0);
                        QVERIFY(panel_view::waitUntilStill());
                        QVERIFY(isBlack(panel_view::upright())); // nothing is left of the one before

                        QVERIFY(m_device->fire("nextImageEvent"));
                        QCOMPARE(image(running)->property("status").toInt(), int(Ready));
                        QTRY_COMPARE(panel_view::greyAt(10, 1000), 255);
                    }),
             0);
}

PANEL_TEST_MAIN(tst_ShowScreen)
#include "tst_show_screen.moc"
