// The screen that sets a show: its header and rows, what they do, its menus, flicking.

#include "panel_application.h"
#include "settings_screens.h"

#include <slateview_testing.h>

#include <memory>

using lindenreed::device::Device;

class tst_SettingsSlideshow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<SettingsScreens>(); }
    void cleanup() { m_test.reset(); }

    void header();
    void backKey();
    void rows_data();
    void rows();
    void flickable();
    void headerScrollsAway();
    void flickIsNotFast();
    void ways_data();
    void ways();
    void shuffle();
    void displayMode();
    void displayModeMenu();
    void unknownDisplayMode_data();
    void unknownDisplayMode();
    void storedDisplayModeThatIsNone_data() { unknownDisplayMode_data(); }
    void storedDisplayModeThatIsNone();
    void intervalMenu();
    void menusAreMadeWhenOpened();

private:
    void run(const std::function<void(RunningApp &)> &body) { m_test->run(u"settings_slideshow"_s, body); }

    std::unique_ptr<SettingsScreens> m_test;
};

namespace {

QQuickItem *item(const RunningApp &running, const char *id)
{
    return SettingsScreens::item(running, id);
}

QString text(const RunningApp &running, const char *id)
{
    return item(running, id)->property("text").toString();
}

} // namespace

void tst_SettingsSlideshow::header()
{
    run([](RunningApp &running) {
        const QQuickItem *const header = item(running, "header");
        QCOMPARE(header->property("title").toString(), u"Slideshow settings"_s);
        QCOMPARE(header->property("closeIcon").toString(), u"image://resource/back"_s);
        QCOMPARE(header->property("closePressedIcon").toString(), u"image://resource/back_inv"_s);
        QCOMPARE(sceneRectangle(header).topLeft(), QPoint(0, 0));
        QCOMPARE(header->width(), running.screen()->width());
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.app.currentView(), u"playlists"_s);
    });
}

void tst_SettingsSlideshow::backKey()
{
    run([](RunningApp &running) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Back, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(running.window, &held); // from a dialog that it has closed, say
        QCOMPARE(running.app.currentView(), u"settings_slideshow"_s);
        SettingsScreens::key(running, Qt::Key_Back);
        QCOMPARE(running.app.currentView(), u"playlists"_s);
    });
}

void tst_SettingsSlideshow::rows_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<int>("place");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("text");

    const auto row
        = [](const char *id, int place, const QString &title, const QString &icon, const QString &text) {
              QTest::newRow(id) << QByteArray(id) << place << title << icon << text;
          };
    row("menu_change_picter", 0, u"Change picture every"_s, u"validity_date"_s, u"30 seconds"_s);
    row("menu_created_date", 1, u"Photo date"_s, u"photo_created_date"_s, u"..."_s);
    row("menu_datetime", 2, u"Current date and time"_s, u"desktop_app_calendar"_s, u"..."_s);
    row("menu_shuffle", 3, u"Shuffle"_s, u"player2_mode_random"_s, {});
    row("menu_displaymode", 4, u"Display mode"_s, u"display_mode"_s, u"Fill screen"_s);
}

void tst_SettingsSlideshow::rows()
{
    QFETCH(QByteArray, id);
    QFETCH(int, place);
    QFETCH(QString, title);
    QFETCH(QString, icon);
    QFETCH(QString, text);

    run([&](RunningApp &running) {
        QQuickItem *const row = item(running, id.constData());
        QVERIFY(row);
        QCOMPARE(row->property("title").toString(), title);
        QCOMPARE(row->property("image_src").toString(), u"image://resource/"_s + icon);
        QCOMPARE(row->property("image_src_pressed").toString(), u"image://resource_inv/"_s + icon);
        QCOMPARE(row->property("text").toString(), text);
        QCOMPARE(accessibleName(row), title);
        QCOMPARE(accessible(row)->role(), text.isEmpty() ? QAccessible::CheckBox : QAccessible::Button);

        const int side = SettingsScreens::number(
            running, "header",
            u"GlobalValues.defaultListViewSideMargin - GlobalValues.listElementHoverFrameBorderRadius"_s);
        const int top = int(item(running, "header")->height() + place * row->height());
        QCOMPARE(sceneRectangle(row),
                 QRect(side, top, int(running.screen()->width()) - 2 * side, int(row->height())));

        const QQuickItem *const separator = SettingsScreens::separatorOf(row);
        QVERIFY(separator);
        const int radius = row->property("radius").toInt();
        QVERIFY(radius > 0);
        QCOMPARE(separator->x(), radius);
        QCOMPARE(separator->width(), row->width() - 2 * radius);
        QCOMPARE(
            separator->height(),
            SettingsScreens::number(running, "header", u"GlobalValues.defaultSolidSeparatorThickness"_s));
        QCOMPARE(separator->y() + separator->height(), row->height());
        QCOMPARE(separator->property("color"),
                 SettingsScreens::value(running, "header", u"GlobalValues.defaultSolidseparatorColor"_s));
    });
}

void tst_SettingsSlideshow::flickable()
{
    run([](RunningApp &running) {
        QQuickItem *const screen = running.screen();
        QVERIFY(screen->clip());
        QCOMPARE(screen->property("flickableDirection").toInt(), 2); // vertical
        QCOMPARE(screen->property("pressDelay").toInt(), 120);
        // The rows alone, so that the header is not counted.
        QCOMPARE(screen->property("contentHeight").toReal(), 5 * item(running, "menu_shuffle")->height());
        const auto atBounds = SettingsScreens::value(running, "header", u"Flickable.StopAtBounds"_s);
        const auto beyond = SettingsScreens::value(running, "header", u"Flickable.DragAndOvershootBounds"_s);
        QVERIFY(atBounds.isValid() && beyond.isValid() && atBounds != beyond);
        QCOMPARE(screen->property("boundsBehavior").toInt(), atBounds.toInt());
        screen->setHeight(screen->property("contentHeight").toReal());
        QCOMPARE(screen->property("boundsBehavior").toInt(), atBounds.toInt());
        screen->setHeight(screen->height() - 1);
        QCOMPARE(screen->property("boundsBehavior").toInt(), beyond.toInt());
    });
}

void tst_SettingsSlideshow::headerScrollsAway()
{
    run([](RunningApp &running) {
        running.screen()->setHeight(300);
        running.screen()->setProperty("contentY", 100);
        QCOMPARE(sceneRectangle(item(running, "header")).top(), -100);
        QCOMPARE(sceneRectangle(item(running, "menu_change_picter")).top(),
                 -100 + int(item(running, "header")->height()));
    });
}

void tst_SettingsSlideshow::flickIsNotFast()
{
    for (const QString &view :
         {u"settings_slideshow"_s, u"settings_created_datetime"_s, u"settings_current_datetime"_s}) {
        m_test->run(view, [](RunningApp &running) {
            running.screen()->setHeight(150);
            QSignalSpy fast(&Device::instance()->screen, &lindenreed::device::Screen::fastModeWanted);
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression(u"ReferenceError: content_wrapper is not defined$"_s));
            const QPoint start(300, 140);
            QTest::mousePress(running.window, Qt::LeftButton, {}, start);
            for (int step = 1; step <= 8; ++step)
                QTest::mouseMove(running.window, start - QPoint(0, step * 8), 20);
            QTRY_VERIFY(running.screen()->property("contentY").toReal() > 0);
            QTest::mouseRelease(running.window, Qt::LeftButton, {}, start - QPoint(0, 64));
            QTRY_VERIFY(!running.screen()->property("moving").toBool());
            QCOMPARE(fast.count(), 0);
        });
    }
}

void tst_SettingsSlideshow::ways_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<QString>("view");

    QTest::newRow("photo date") << QByteArray("menu_created_date") << u"settings_created_datetime"_s;
    QTest::newRow("current date") << QByteArray("menu_datetime") << u"settings_current_datetime"_s;
}

void tst_SettingsSlideshow::ways()
{
    QFETCH(QByteArray, id);
    QFETCH(QString, view);

    run([&](RunningApp &running) {
        QVERIFY(pressByAccessibility(item(running, id.constData())));
        QCOMPARE(running.app.currentView(), view);
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.app.currentView(), u"settings_slideshow"_s);
        QTRY_VERIFY(item(running, id.constData())->y() > 0); // the rows have found their places
        SettingsScreens::tap(running, item(running, id.constData()));
        QCOMPARE(running.app.currentView(), view);
    });
}

void tst_SettingsSlideshow::shuffle()
{
    run([](RunningApp &running) {
        QQuickItem *const row = item(running, "menu_shuffle");
        for (const bool on : {true, false}) {
            SettingsScreens::tap(running, row);
            QCOMPARE(running.settings()->property("shuffle").toBool(), on);
            QCOMPARE(row->property("switch_value").toBool(), on);
            QCOMPARE(accessible(row)->state().checked, uint(on));
            QVERIFY(globalRows().contains(on ? u"shuffle|1"_s : u"shuffle|0"_s)); // at once
        }
        running.settings()->setProperty("shuffle", true); // what changes elsewhere shows
        QVERIFY(row->property("switch_value").toBool());
    });
}

void tst_SettingsSlideshow::displayMode()
{
    run([](RunningApp &running) {
        const QStringList before = globalRows();
        QVERIFY(pressByAccessibility(item(running, "menu_displaymode")));
        QVERIFY(SettingsScreens::choose(running, u"Fit on black"_s));
        QVERIFY(!item(running, "loader_displaymode")->isVisible());
        QCOMPARE(running.settings()->property("display_mode").toInt(), 0);
        QCOMPARE(text(running, "menu_displaymode"), u"Fit on black"_s);
        QStringList after = before;
        after.replaceInStrings(u"display_mode|1"_s, u"display_mode|0"_s);
        QVERIFY(after != before);
        QCOMPARE(globalRows(), after);

        QVERIFY(pressByAccessibility(item(running, "menu_displaymode")));
        QVERIFY(SettingsScreens::choose(running, u"Fill screen"_s));
        QCOMPARE(globalRows(), before);
        QCOMPARE(text(running, "menu_displaymode"), u"Fill screen"_s);
    });
}

void tst_SettingsSlideshow::displayModeMenu()
{
    run([](RunningApp &running) {
        QQuickItem *const row = item(running, "menu_displaymode");
        SettingsScreens::tap(running, row);
        QQuickItem *const loader = item(running, "loader_displaymode");
        QVERIFY(loader->isVisible());
        QCOMPARE(loader->parentItem(), running.window->contentItem());
        QCOMPARE(loader->size(), running.window->contentItem()->size());
        auto *const menu = loader->property("item").value<QQuickItem *>();
        QCOMPARE(menu->property("delegateName").toString(), u"RadioButton"_s);
        QCOMPARE(menu->property("title").toString(), u"Fill screen"_s);
        QCOMPARE(menu->property("area").toRectF().toRect(), sceneRectangle(row));
        QVERIFY(SettingsScreens::shows(running, QAccessible::RadioButton, u"Fit on black"_s));
        QVERIFY(!menu->property("radioBtnDontCheckChecked").toBool());
        // What is checked already is no choice here: the menu stays.
        QVERIFY(SettingsScreens::choose(running, u"Fill screen"_s));
        QVERIFY(loader->isVisible());
        QTest::mouseClick(running.window, Qt::LeftButton, {}, QPoint(5, 5)); // outside
        QVERIFY(!loader->isVisible());
        QCOMPARE(running.settings()->property("display_mode").toInt(), 1);
    });
}

void tst_SettingsSlideshow::unknownDisplayMode_data()
{
    QTest::addColumn<int>("mode");

    QTest::newRow("beyond") << 2;
    QTest::newRow("before") << -1;
}

void tst_SettingsSlideshow::unknownDisplayMode()
{
    QFETCH(int, mode);

    run([mode](RunningApp &running) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"menu_displaymode|TypeError"_s));
        running.settings()->setProperty("display_mode", mode);
        QVERIFY(
            !SettingsScreens::value(running, "displaymode_model", u"displaymode_model.get(%1)"_s.arg(mode))
                 .isValid());
        running.settings()->setProperty("display_mode", 0); // and it comes to itself again
        QCOMPARE(text(running, "menu_displaymode"), u"Fit on black"_s);
    });
}

void tst_SettingsSlideshow::storedDisplayModeThatIsNone()
{
    QFETCH(int, mode);

    DataStorage::instance().setSetting(u"display_mode"_s, QString::number(mode), -1);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"SettingsSlideshow.qml:\\d+: TypeError"_s));
    run([mode](RunningApp &running) {
        QCOMPARE(running.settings()->property("display_mode").toInt(), mode);
        QCOMPARE(text(running, "menu_displaymode"), QString());
        QCOMPARE(text(running, "menu_change_picter"), u"30 seconds"_s); // the other rows have theirs
        // Any choice mends it.
        QVERIFY(pressByAccessibility(item(running, "menu_displaymode")));
        QVERIFY(SettingsScreens::choose(running, u"Fill screen"_s));
        QCOMPARE(text(running, "menu_displaymode"), u"Fill screen"_s);
        QVERIFY(globalRows().contains(u"display_mode|1"_s));
    });
}

void tst_SettingsSlideshow::intervalMenu()
{
    run([](RunningApp &running) {
        QQuickItem *const row = item(running, "menu_change_picter");
        SettingsScreens::tap(running, row);
        QQuickItem *const loader = item(running, "loader_change_picture_time");
        QVERIFY(loader->isVisible());
        QCOMPARE(loader->parentItem(), running.window->contentItem());
        QCOMPARE(loader->size(), running.window->contentItem()->size());
        auto *const menu = loader->property("item").value<QQuickItem *>();
        QCOMPARE(menu->property("delegateName").toString(), u"RadioButton"_s);
        QCOMPARE(menu->property("title").toString(), u"30 seconds"_s);
        QCOMPARE(menu->property("area").toRectF().toRect(), sceneRectangle(row));
        QVERIFY(menu->property("radioBtnDontCheckChecked").toBool());
        QCOMPARE(menu->property("checkedRow").toInt(), 3);
        for (const QString &name :
             {u"2 seconds"_s, u"5 seconds"_s, u"10 seconds"_s, u"30 seconds"_s, u"1\u00a0minute"_s,
              u"2\u00a0minutes"_s, u"5\u00a0minutes"_s, u"Custom"_s})
            QVERIFY2(SettingsScreens::shows(running, QAccessible::RadioButton, name), qUtf8Printable(name));
        QTest::mouseClick(running.window, Qt::LeftButton, {}, QPoint(5, 5)); // outside
        QVERIFY(!loader->isVisible());
        QCOMPARE(running.settings()->changePictureTime(), 30);
    });
}

void tst_SettingsSlideshow::menusAreMadeWhenOpened()
{
    run([](RunningApp &running) {
        for (const char *id : {"loader_change_picture_time", "loader_displaymode"}) {
            QVERIFY(!item(running, id)->isVisible());
            QVERIFY(!item(running, id)->property("item").value<QObject *>());
            item(running, id)->setVisible(true);
            QVERIFY(item(running, id)->property("item").value<QObject *>());
            item(running, id)->setVisible(false);
        }
        QVERIFY(
            item(running, "loader_custom_interval")->property("item").value<QObject *>()); // from the start
        QVERIFY(!item(running, "loader_custom_interval")->isVisible());
    });
}

PANEL_TEST_MAIN(tst_SettingsSlideshow)
#include "tst_settings_slideshow.moc"
