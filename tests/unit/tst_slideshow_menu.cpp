// The menu over the show: its entries, how they look at rest and pressed, what they answer, and the order in
// which the screen acts on it.

#include "accessible_items.h"
#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <QFont>
#include <QFontMetricsF>
#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;

namespace {

constexpr QSize screen(758, 1024);

// A design length in the pixels of 212 dpi, through 160 as the theme counts.
int dp(double design)
{
    return qRound(design * 0.53 * 212 / 160);
}

struct Entry
{
    const char *view;
    QString text;
    QString icon;
};

QList<Entry> entries()
{
    return {{"stop_slideshow", u"Stop slideshow"_s, u"slideshow_stop"_s},
            {"settings_slideshow", u"Slideshow settings"_s, u"slideshow_settings"_s},
            {"frontlight", u"Frontlight"_s, u"slideshow_brightness"_s}};
}

QQuickItem *entry(const RunningApp &running, int index)
{
    return findAccessible(running.screen(), QAccessible::Button, entries().at(index).text);
}

QQuickItem *menu(const RunningApp &running)
{
    return entry(running, 0)->parentItem()->parentItem();
}

QQuickItem *childWith(QQuickItem *item, const char *property)
{
    for (QQuickItem *child : item->childItems()) {
        if (child->metaObject()->indexOfProperty(property) >= 0)
            return child;
    }
    return nullptr;
}

bool isOpen(const RunningApp &running)
{
    return running.screen()->property("menu_opened").toBool();
}

} // namespace

class tst_SlideshowMenu : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void entriesInTheirOrder();
    void dimsThePicture();
    void pressedEntry();
    void fingerThatSlidesAway();
    void outside();
    void ordersOfCalls_data();
    void ordersOfCalls();
    void stopLeadsBack_data();
    void stopLeadsBack();
    void settings();
    void leavesNoTraceInTheUpdates();
    void longTextIsElided();
    void keys();
    void keysAfterwards();

private:
    /// Calls `body` in a show of four pictures, with its menu open where that is wanted.
    void inAShow(bool open, const std::function<void(RunningApp &)> &body);

    std::unique_ptr<AppFixture> m_test;
};

void tst_SlideshowMenu::inAShow(bool open, const std::function<void(RunningApp &)> &body)
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        QTRY_COMPARE(running.screen()->size().toSize(), screen);
                        if (open)
                            pressByAccessibility(running.screen());
                        QCOMPARE(isOpen(running), open);
                        body(running);
                    }),
             0);
}

void tst_SlideshowMenu::entriesInTheirOrder()
{
    inAShow(true, [](RunningApp &running) {
        int bottom = -1;
        int widest = 0;
        for (const Entry &expected : entries()) {
            QQuickItem *item = findAccessible(running.screen(), QAccessible::Button, expected.text);
            QVERIFY2(item, qPrintable(expected.text));
            const QRect place = sceneRectangle(item);
            QCOMPARE(place.height(), dp(160 + 64));
            if (bottom >= 0)
                QCOMPARE(place.top(), bottom);
            bottom = place.top() + place.height();
            QVERIFY(item->clip());

            QQuickItem *image = childWith(item, "fillMode");
            QCOMPARE(image->property("source").toUrl(), QUrl(u"image://resource/"_s + expected.icon));
            QCOMPARE(sceneRectangle(image).left(), place.left() + 11);
            QCOMPARE(sceneRectangle(image).center().y(), place.center().y());
            QQuickItem *text = childWith(item, "styledFont");
            QCOMPARE(text->property("text").toString(), expected.text);
            QCOMPARE(text->property("color").value<QColor>(), QColor(Qt::white));
            QCOMPARE(sceneRectangle(text).left(), sceneRectangle(image).right() + 1 + dp(40));
            QVERIFY(std::abs(sceneRectangle(text).center().y() - place.center().y()) <= 1);
            // Icon, gap, text, and a margin on both sides.
            const QFont font = text->property("font").value<QFont>();
            QVERIFY(!font.bold());
            const double textWidth = QFontMetricsF(font).boundingRect(expected.text).width();
            QVERIFY(std::abs(item->width() - (113 + textWidth + 2 * 11 + dp(40))) < 1);
            widest = std::max(widest, place.width());
        }
        const QRect first = sceneRectangle(entry(running, 0));
        QVERIFY(std::abs(2 * first.left() + widest - screen.width()) <= 2); // centred both ways
        QVERIFY(std::abs(first.top() + bottom - screen.height()) <= 2);
        QCOMPARE(sceneRectangle(menu(running)), QRect(QPoint(), screen));
    });
}

void tst_SlideshowMenu::dimsThePicture()
{
    inAShow(false, [](RunningApp &running) {
        const auto grey = [&](QPoint at) { return qGray(running.window->grabWindow().pixel(at)); };
        running.settings()->setProperty("created_date_position", 2);
        running.slideshow()->prevImage(); // the brightest
        const int picture = grey({700, 50});
        QVERIFY(picture > 0xa0);
        QVERIFY(running.screen()->setProperty("menu_opened", true));
        // Three tenths are left, of the date as well.
        QVERIFY(std::abs(grey({700, 50}) - picture * 3 / 10) <= 2);
        QImage corner = running.window->grabWindow().copy(0, 900, 300, 124);
        for (int y = 0; y < corner.height(); ++y) {
            for (int x = 0; x < corner.width(); ++x)
                QVERIFY(qGray(corner.pixel(x, y)) <= 0x50); // not even its white letters shine through
        }
        QVERIFY(running.screen()->setProperty("menu_opened", false));
        QCOMPARE(grey({700, 50}), picture);
    });
}

void tst_SlideshowMenu::pressedEntry()
{
    for (int i = 0; i < entries().size(); ++i) {
        inAShow(true, [i](RunningApp &running) {
            QQuickItem *item = entry(running, i);
            const QUrl rest(u"image://resource/"_s + entries().at(i).icon);
            QQuickItem *image = childWith(item, "fillMode");
            QQuickItem *text = childWith(item, "styledFont");
            QCOMPARE(item->state(), u"Normal"_s);
            QSignalSpy chosen(menu(running), SIGNAL(choosed(QString)));
            const QPoint at = sceneRectangle(item).center();
            QTest::mousePress(running.window, Qt::LeftButton, {}, at);
            QCOMPARE(item->state(), u"Pressed"_s);
            QVERIFY(text->property("font").value<QFont>().bold());
            QCOMPARE(image->property("source").toUrl(), QUrl(rest.toString() + u"_inv"_s));
            QVERIFY(chosen.isEmpty());
            QTest::mouseRelease(running.window, Qt::LeftButton, {}, at);
            QCOMPARE(chosen.size(), 1);
            QCOMPARE(chosen.at(0).at(0).toString(), QString::fromLatin1(entries().at(i).view));
            if (i == 2) { // the others are gone with their screen
                QCOMPARE(item->state(), u"Normal"_s);
                QVERIFY(!text->property("font").value<QFont>().bold());
                QCOMPARE(image->property("source").toUrl(), rest);
            }
        });
    }
}

void tst_SlideshowMenu::fingerThatSlidesAway()
{
    inAShow(true, [](RunningApp &running) {
        QQuickItem *item = entry(running, 0);
        const QPoint at = sceneRectangle(item).center();
        QTest::mousePress(running.window, Qt::LeftButton, {}, at);
        QTest::mouseMove(running.window, QPoint(at.x(), 900));
        QTest::mouseRelease(running.window, Qt::LeftButton, {}, QPoint(at.x(), 900));
        QCOMPARE(item->state(), u"Normal"_s);
        QVERIFY(isOpen(running)); // neither chosen nor closed
    });
}

void tst_SlideshowMenu::outside()
{
    for (const QPoint &at : {QPoint(1, 1), QPoint(757, 1023), QPoint(379, 100), QPoint(700, 355)}) {
        inAShow(true, [this, at](RunningApp &running) {
            m_test->device.forgetCalls();
            QTest::mouseClick(running.window, Qt::LeftButton, {}, at);
            QVERIFY2(!isOpen(running), qPrintable(u"%1, %2"_s.arg(at.x()).arg(at.y())));
            QCOMPARE(running.app.currentView(), u"slideshow"_s);
            QCOMPARE(m_test->device.calls({"SetAutoPowerOff"}).size(), 1); // started, and nothing else
            QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(0));
        });
    }
}

void tst_SlideshowMenu::ordersOfCalls_data()
{
    QTest::addColumn<bool>("open");
    QTest::addColumn<QString>("means");
    QTest::addColumn<QByteArray>("calls");

    const QByteArray stop("SetAutoPowerOff 1\nSetAutoKeylock 1\nClearTimerByName nextImageEvent");
    const QByteArray start("SetAutoPowerOff 0\nSetAutoKeylock 0\nClearTimerByName nextImageEvent\n"
                           "SetHardTimerEx nextImageEvent callback context 30000");
    QTest::newRow("the centre shows the menu, then stops")
        << false << u"centre"_s << "setFastUpdates 1\n" + stop;
    QTest::newRow("so does assistive input") << false << u"press"_s << "setFastUpdates 1\n" + stop;
    QTest::newRow("the key stops, then shows the menu") << false << u"key"_s << stop + "\nsetFastUpdates 1";
    QTest::newRow("so does a configured key") << false << u"scan code"_s << stop + "\nsetFastUpdates 1";
    QTest::newRow("the key closes the menu, then starts") << true << u"key"_s << "setFastUpdates 0\n" + start;
    QTest::newRow("so does a tap outside") << true << u"outside"_s << "setFastUpdates 0\n" + start;
    QTest::newRow("the light needs no more than the menu's end")
        << true << u"frontlight"_s << QByteArray("setFastUpdates 0");
}

void tst_SlideshowMenu::ordersOfCalls()
{
    QFETCH(bool, open);
    QFETCH(QString, means);
    QFETCH(QByteArray, calls);

    m_test->device.setColourMask(1); // where the quality of updates makes a difference
    m_test->configure("btkeys.count=1\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=@KA_menu\n");
    inAShow(open, [&](RunningApp &running) {
        m_test->device.forgetCalls();
        if (means == u"centre"_s)
            QTest::mouseClick(running.window, Qt::LeftButton, {}, QPoint(379, 900));
        else if (means == u"press"_s)
            pressByAccessibility(running.screen());
        else if (means == u"key"_s)
            m_test->device.send(25, 23);
        else if (means == u"scan code"_s)
            m_test->device.send(40, 7);
        else if (means == u"outside"_s)
            QTest::mouseClick(running.window, Qt::LeftButton, {}, QPoint(379, 100));
        else
            pressByAccessibility(entry(running, 2));
        QCOMPARE(m_test->calls(), calls);
        QCOMPARE(isOpen(running), !open);
        QCOMPARE(running.screen()->property("frontlight_opened").toBool(), means == u"frontlight"_s);
    });
}

void tst_SlideshowMenu::stopLeadsBack_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("view");

    QTest::newRow("an open playlist: back to it") << int(PlaylistModel::ViewMode) << u"playlist"_s;
    QTest::newRow("the overview") << int(PlaylistModel::AllViewMode) << u"playlists"_s;
    QTest::newRow("while adding") << int(PlaylistModel::AddMode) << u"playlists"_s;
}

void tst_SlideshowMenu::stopLeadsBack()
{
    QFETCH(int, mode);
    QFETCH(QString, view);

    inAShow(true, [&](RunningApp &running) {
        const qlonglong id = running.playlists()->addItem(u"Mine"_s);
        running.playlists()->setMode(PlaylistModel::PlaylistMode(mode));
        running.playlists()->setActiveId(id);
        bool open = true;
        qlonglong activeId = 0;
        connect(&running.app, &App::changedView, this, [&] {
            open = isOpen(running);
            activeId = running.playlists()->activeId();
        });
        m_test->device.forgetCalls();
        pressByAccessibility(entry(running, 0));
        QCOMPARE(running.app.currentView(), view);
        QVERIFY(!open); // before the view changed
        QCOMPARE(activeId, view == u"playlist"_s ? id : -1);
        QVERIFY(m_test->device.calls({"SetAutoPowerOff"}).isEmpty()); // the menu has stopped the show
        running.playlists()->setActiveId(-1);
        running.playlists()->deleteItem(id);
        running.playlists()->setMode(PlaylistModel::AllViewMode);
    });
}

void tst_SlideshowMenu::settings()
{
    inAShow(true, [this](RunningApp &running) {
        QStringList changes;
        connect(&running.app, &App::backViewChanged, this, [&] { changes.append(running.app.backView()); });
        connect(&running.app, &App::changedView, this, [&](const QString &view) { changes.append(view); });
        QSignalSpy wanted(running.screen(), SIGNAL(changeView(QString)));
        m_test->device.forgetCalls();
        pressByAccessibility(entry(running, 1));
        QCOMPARE(changes, (QStringList{u"slideshow"_s, u"settings_slideshow"_s}));
        QCOMPARE(wanted.size(), 1);
        QVERIFY(m_test->device.calls({"SetAutoPowerOff"}).isEmpty()); // stopped long since
    });
}

void tst_SlideshowMenu::leavesNoTraceInTheUpdates()
{
    // The screen goes with its menu open: that is no change of the menu.
    m_test->device.setColourMask(1);
    inAShow(true, [this](RunningApp &running) {
        m_test->device.forgetCalls();
        running.app.changeView(u"playlists"_s);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const auto calls = m_test->device.calls({"setFastUpdates"});
        QCOMPARE(calls.size(), 1);
        QCOMPARE(calls.at(0).arguments, QByteArrayList{"1"});
    });
}

void tst_SlideshowMenu::longTextIsElided()
{
    inAShow(true, [](RunningApp &running) {
        QQuickItem *item = entry(running, 1);
        QVERIFY(item->setProperty("text_", u"Slideshow settings and whatever else "_s.repeated(3)));
        const QString shown = childWith(item, "styledFont")->property("text").toString();
        QVERIFY2(shown.endsWith(u'…') && shown.startsWith(u"Slideshow settings"_s), qPrintable(shown));
        const QFont font = childWith(item, "styledFont")->property("font").value<QFont>();
        QVERIFY(QFontMetricsF(font).horizontalAdvance(shown) <= screen.width() - (113 + 2 * 11));
    });
}

void tst_SlideshowMenu::keys()
{
    inAShow(true, [](RunningApp &running) {
        for (const int expected : {0, 1, 2, 2}) {
            QVERIFY2(entry(running, expected)->hasActiveFocus(), QByteArray::number(expected).constData());
            QTest::keyClick(running.window, Qt::Key_Down);
        }
        QTest::keyClick(running.window, Qt::Key_Up);
        QVERIFY(entry(running, 1)->hasActiveFocus());
        QTest::keyClick(running.window, Qt::Key_Down);
        QTest::keyClick(running.window, Qt::Key_Return);
        QVERIFY(!isOpen(running));
        QVERIFY(running.screen()->property("frontlight_opened").toBool());
        // The next time they begin at the first entry again, which Enter takes as well.
        pressByAccessibility(running.screen());
        QTest::keyClick(running.window, Qt::Key_Down);
        QTest::keyClick(running.window, Qt::Key_Back);
        QVERIFY(!isOpen(running));
        pressByAccessibility(running.screen());
        QVERIFY(entry(running, 0)->hasActiveFocus());
        QTest::keyClick(running.window, Qt::Key_Enter);
        QCOMPARE(running.app.currentView(), u"playlists"_s);
    });
}

void tst_SlideshowMenu::keysAfterwards()
{
    inAShow(true, [](RunningApp &running) {
        QTest::keyClick(running.window, Qt::Key_Back);
        QVERIFY(!isOpen(running));
        QTest::keyClick(running.window, Qt::Key_Return); // not on an entry that nobody sees
        QCOMPARE(running.app.currentView(), u"slideshow"_s);
        QVERIFY(running.screen()->hasActiveFocus());
    });
}

PANEL_TEST_MAIN(tst_SlideshowMenu)
#include "tst_slideshow_menu.moc"
