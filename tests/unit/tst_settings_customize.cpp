// Trying out how a date looks: what the bar shows, what a trial changes, and what is kept of it.

#include "customize_screen.h"
#include "panel_application.h"

#include <memory>

using namespace customize_screen;
using lindenreed::device::Device;
using lindenreed::device::RefreshMode;

class tst_SettingsCustomize : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init()
    {
        m_test = std::make_unique<SettingsScreens>();
        m_test->device.setFonts({{"Serif", 0, "Serif R"},
                                 {"Serif", 1, "Serif I"},
                                 {"Serif", 2, "Serif B"},
                                 {"Serif", 3, "Serif BI"},
                                 {"Sans", 0, "Sans R"},
                                 {"Sans", 2, "Sans B"}});
    }
    void cleanup() { m_test.reset(); }

    void firstOpening_data() { rowForEachDate(); }
    void firstOpening();
    void bar();
    void corners();
    void preview_data() { rowForEachDate(); }
    void preview();
    void trialAndBack_data() { rowForEachDate(); }
    void trialAndBack();
    void trialAndDone_data() { rowForEachDate(); }
    void trialAndDone();
    void rowsInOrder_data() { rowForEachDate(); }
    void rowsInOrder();
    void switchIsNoPartOfTheTrial();
    void newFontStartsRegular_data() { rowForEachDate(); }
    void newFontStartsRegular();
    void sameFontKeepsItsStyle_data() { rowForEachDate(); }
    void sameFontKeepsItsStyle();
    void fullRefreshes();
    void comboBoxesCloseOnTurning();
    void pickerOpensAndCloses();
    void unknownFont();
    void unknownPosition();

private:
    void run(int date, const std::function<void(RunningApp &, const Date &)> &body)
    {
        m_test->run(dates.at(date).view, [&](RunningApp &running) { body(running, dates.at(date)); });
    }

    std::unique_ptr<SettingsScreens> m_test;
};

void tst_SettingsCustomize::firstOpening()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        QCOMPARE(look(running, which), date == 0 ? u"2 default 0 0"_s : u"0 default 0 0"_s);
        QCOMPARE(selected(running, "font"), 0);
        QVERIFY(!item(running, "font_style")->isVisible());
        QVERIFY(SettingsScreens::shows(running, QAccessible::ComboBox, u"Font: default"_s));
        const QQuickItem *const picture = item(running, "position_rect")->childItems().constFirst();
        QCOMPARE(picture->property("source").toString(),
                 date == 0 ? u"image://resource/positioning_bottom_left"_s
                           : u"image://resource/positioning_top_left"_s);
        QVERIFY(QByteArray(item(running, "preview")->metaObject()->className()).startsWith(which.preview));
        QCOMPARE(m_test->device.calls({"SetPanelType"}).size(), 0);
        QCOMPARE(running.screen()->height(), ScreenHeight()); // the status panel is not there
    });
}

void tst_SettingsCustomize::bar()
{
    run(0, [](RunningApp &running, const Date &) {
        QVERIFY(choose(running, "font", u"Serif"_s));
        const auto value = [&](const QString &expression) {
            return SettingsScreens::number(running, "header", expression);
        };
        QQuickItem *const header = item(running, "header");
        QCOMPARE(header->height(),
                 value(u"GlobalValues.defaultAppHeaderHeight + "
                       "GlobalValues.defaultSolidSeparatorThickness"_s));
        QCOMPARE(header->width(), running.screen()->width());
        const QQuickItem *const line = item(running, "header_line");
        QCOMPARE(line->y() + line->height(), header->height());
        QCOMPARE(line->property("color"),
                 SettingsScreens::value(running, "header", u"GlobalValues.defaultSolidseparatorColor"_s));

        QCOMPARE(item(running, "back_button")->property("icon").toString(), u"image://resource/back"_s);
        QCOMPARE(item(running, "back_button")->property("pressedIcon").toString(),
                 u"image://resource/back_inv"_s);
        QTRY_COMPARE(sceneRectangle(item(running, "back_button")).left(),
                     value(u"GlobalValues.defaultAppHeaderMargin"_s));
        QQuickItem *const font = item(running, "font");
        QCOMPARE(font->property("preffix_text").toString(), u"Font: "_s);
        QQuickItem *const style = item(running, "font_style");
        QCOMPARE(style->property("preffix_text").toString(), u"Style: "_s);
        QCOMPARE(style->property("max_width").toInt(), value(u"Global.dp(340 * 0.53)"_s));
        for (QQuickItem *box : {font, style}) {
            QCOMPARE(box->state(), u"RadioTextButton"_s);
            QVERIFY(!box->property("show_border").toBool());
            QVERIFY(box->property("highlightSelected").toBool());
            QCOMPARE(box->property("styledFont").toInt(), value(u"FontStyles.BodyBold"_s));
        }
        QQuickItem *const position = item(running, "position");
        QQuickItem *const square = item(running, "position_rect");
        QQuickItem *const arrow = item(running, "arrow_img");
        QCOMPARE(position->width(), value(u"Global.dp(140 * 0.53)"_s));
        QCOMPARE(position->height(), value(u"GlobalValues.defaultAppHeaderHeight"_s));
        QCOMPARE(square->size(), QSizeF(value(u"Global.dp(94 * 0.53)"_s), value(u"Global.dp(94 * 0.53)"_s)));
        QCOMPARE(position->width() - arrow->x() - arrow->width(), value(u"Global.dp(10)"_s));
        QCOMPARE(font->property("max_width").toReal(),
                 item(running, "row")->width() - item(running, "back_button")->width() - style->width()
                     - position->width() - value(u"Global.dp(16)"_s));
        QVERIFY(position->childItems().contains(square) && position->childItems().contains(arrow));
        QVERIFY(font->width() <= font->property("max_width").toReal());
        QCOMPARE(accessible(position)->role(), QAccessible::Button);
        QCOMPARE(accessibleName(position), u"Position"_s);

        QQuickItem *const done = item(running, "done_button");
        QCOMPARE(done->property("icon").toString(), u"image://resource/done"_s);
        QCOMPARE(done->property("pressedIcon").toString(), u"image://resource/done_inv"_s);
        QCOMPARE(header->width() - done->x() - done->width(), value(u"Global.dp(20 * 0.53)"_s));
        const QQuickItem *const upright = item(running, "line");
        QCOMPARE(upright->size(), QSizeF(value(u"Global.dp(1 * 0.53)"_s), value(u"Global.dp(76 * 0.53)"_s)));
        QCOMPARE(done->x() - upright->x() - upright->width(), value(u"Global.dp(20 * 0.53)"_s));

        // In a row from the left, and none reaches into the next.
        int left = 0;
        for (const char *id : {"back_button", "font", "font_style", "position", "line", "done_button"}) {
            QTRY_VERIFY2(sceneRectangle(item(running, id)).left() >= left, id);
            left = sceneRectangle(item(running, id)).right();
        }
        const QImage picture = running.window->grabWindow();
        QCOMPARE(qGray(picture.pixel(picture.width() / 2, picture.height() / 2)), 128); // "gray"
    });
}

void tst_SettingsCustomize::corners()
{
    run(0, [](RunningApp &running, const Date &which) {
        const QStringList names{u"Top left"_s, u"Top right"_s, u"Bottom left"_s, u"Bottom right"_s};
        const QStringList states{u"top_left"_s, u"top_right"_s, u"bottom_left"_s, u"bottom_right"_s};
        for (int corner = 0; corner < 4; ++corner) {
            QCOMPARE(SettingsScreens::value(
                         running, "position_model",
                         u"[get(%1).uid_, get(%1).image_, get(%1).pressedImage_, get(%1).state_, "
                         "get(%1).title_].join(' ')"_s.arg(corner))
                         .toString(),
                     u"%1 positioning_%2 positioning_%2_inv %2 %3"_s.arg(corner).arg(states.at(corner),
                                                                                     names.at(corner)));
            QVERIFY(chooseCorner(running, names.at(corner)));
            QCOMPARE(setting(running, which, "position").toInt(), corner);
            QCOMPARE(item(running, "preview")->state(), states.at(corner));
            QCOMPARE(item(running, "position_rect")->childItems().constFirst()->property("source").toString(),
                     u"image://resource/positioning_"_s + states.at(corner));
        }
    });
}

void tst_SettingsCustomize::preview()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        running.settings()->setProperty(which.prefix + "font", u"Serif"_s);
        running.settings()->setProperty(which.prefix + "font_is_bold", true);
        running.settings()->setProperty(which.prefix + "font_is_italic", true);
        running.settings()->setProperty(which.prefix + "position", 1);
        QCOMPARE(previewLook(running), u"1 Serif 1 1"_s);
        running.settings()->setProperty(which.prefix + "font", u"default"_s);
        QCOMPARE(item(running, "preview")->property("font_family").toString(), u"Noto Sans"_s);
        // A moment near now, and of no picture.
        const QDateTime shown = item(running, "preview")->property("datetime").toDateTime();
        QVERIFY(std::abs(shown.secsTo(QDateTime::currentDateTime())) < 120);
        QVERIFY(item(running, "preview")->isVisible());
    });
}

void tst_SettingsCustomize::trialAndBack()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        const QStringList rows = globalRows();
        const QString before = look(running, which);
        QVERIFY(choose(running, "font", u"Serif"_s));
        QVERIFY(choose(running, "font_style", u"Bold italic"_s));
        QVERIFY(chooseCorner(running, u"Bottom right"_s));
        QCOMPARE(look(running, which), u"3 Serif 1 1"_s);
        QCOMPARE(previewLook(running), u"3 Serif 1 1"_s);
        QCOMPARE(globalRows(), rows);
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.app.currentView(), which.listView);
        QCOMPARE(look(running, which), before);
        QCOMPARE(globalRows(), rows);
    });
}

void tst_SettingsCustomize::trialAndDone()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        QStringList rows = globalRows();
        QVERIFY(choose(running, "font", u"Serif"_s));
        QVERIFY(choose(running, "font_style", u"Italic"_s));
        QVERIFY(chooseCorner(running, u"Top right"_s));
        // Another setting on trial is no part of it, and is dropped: what is stored is read again.
        running.settings()->setProperty("display_mode", 0);
        QSignalSpy reloaded(running.settings(),
                            &lindenreed::picture_stand::SettingsModel::display_modeChanged);
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QCOMPARE(running.app.currentView(), which.listView);
        QCOMPARE(look(running, which), u"1 Serif 0 1"_s);
        QCOMPARE(reloaded.count(), 1);
        const QString name = QString::fromLatin1(which.prefix);
        rows.replaceInStrings(QRegularExpression(u"^%1position\\|.*"_s.arg(name)), name + u"position|1"_s);
        rows.replaceInStrings(QRegularExpression(u"^%1font\\|.*"_s.arg(name)), name + u"font|Serif"_s);
        rows.replaceInStrings(QRegularExpression(u"^%1font_is_bold\\|.*"_s.arg(name)),
                              name + u"font_is_bold|0"_s);
        rows.replaceInStrings(QRegularExpression(u"^%1font_is_italic\\|.*"_s.arg(name)),
                              name + u"font_is_italic|1"_s);
        QCOMPARE(globalRows(), rows);
        QCOMPARE(playlistRows(), QStringList());
    });
}

void tst_SettingsCustomize::rowsInOrder()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        running.playlists()->setActiveId(1); // its rows are new, and tell in which order they are written
        QSignalSpy views(&running.app, &lindenreed::picture_stand::App::changedView);
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QCOMPARE(views.count(), 1);
        const QString name = QString::fromLatin1(which.prefix);
        QCOMPARE(playlistRows(),
                 (QStringList{name + u"position|%1|1"_s.arg(date == 0 ? 2 : 0), name + u"font|default|1"_s,
                              name + u"font_is_bold|0|1"_s, name + u"font_is_italic|0|1"_s}));
        running.playlists()->setActiveId(-1);
    });
}

void tst_SettingsCustomize::switchIsNoPartOfTheTrial()
{
    m_test->run(u"settings_created_datetime"_s, [](RunningApp &running) {
        QVERIFY(pressByAccessibility(item(running, "menu_show")));
        QVERIFY(pressByAccessibility(item(running, "menu_customize")));
        QVERIFY(chooseCorner(running, u"Top left"_s));
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.settings()->property("created_date_show").toBool(), false);
        QCOMPARE(running.settings()->property("created_date_position").toInt(), 2);
        QVERIFY(globalRows().contains(u"created_date_show|0"_s));
    });
}

void tst_SettingsCustomize::newFontStartsRegular()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        QVERIFY(choose(running, "font", u"Serif"_s));
        QVERIFY(item(running, "font_style")->isVisible());
        QCOMPARE(selected(running, "font_style"), 0);
        QVERIFY(choose(running, "font_style", u"Bold italic"_s));
        SettingsChanges changes(running.settings());
        QVERIFY(choose(running, "font", u"Sans"_s));
        const QString name = QString::fromLatin1(which.prefix);
        QCOMPARE(changes.taken(),
                 (QStringList{name + u"font_is_bold false"_s, name + u"font_is_italic false"_s,
                              name + u"font Sans"_s}));
        QCOMPARE(selected(running, "font_style"), 0);
        QCOMPARE(previewLook(running), u"%1 Sans 0 0"_s.arg(date == 0 ? 2 : 0));
        QVERIFY(choose(running, "font_style", u"Bold"_s));
        QVERIFY(choose(running, "font", u"default"_s));
        QVERIFY(!item(running, "font_style")->isVisible());
        QCOMPARE(setting(running, which, "font_is_bold").toBool(), false);
    });
}

void tst_SettingsCustomize::sameFontKeepsItsStyle()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        QVERIFY(choose(running, "font", u"Serif"_s));
        QVERIFY(choose(running, "font_style", u"Bold italic"_s));
        SettingsChanges changes(running.settings());
        QVERIFY(choose(running, "font", u"Serif"_s));
        QCOMPARE(changes.taken(), QStringList());
        QCOMPARE(setting(running, which, "font_is_bold").toBool(), true);
        QCOMPARE(selected(running, "font_style"), 3);
    });
}

void tst_SettingsCustomize::fullRefreshes()
{
    run(0, [](RunningApp &running, const Date &) {
        QSignalSpy wanted(&Device::instance()->screen, &lindenreed::device::Screen::nextDrawingWanted);
        const auto taken
            = [&] { return std::exchange(static_cast<QList<QList<QVariant>> &>(wanted), {}).size(); };
        QVERIFY(choose(running, "font", u"Serif"_s));
        QCOMPARE(taken(), 1);
        QVERIFY(pressByAccessibility(item(running, "font")));
        QCOMPARE(taken(), 0); // opening asks for none
        QMetaObject::invokeMethod(item(running, "font"), "close");
        QCOMPARE(taken(), 1);
        QVERIFY(choose(running, "font_style", u"Bold"_s));
        QCOMPARE(taken(), 1);
        QVERIFY(chooseCorner(running, u"Top right"_s));
        QCOMPARE(taken(), 1);
        QVERIFY(pressByAccessibility(item(running, "position")));
        QCOMPARE(taken(), 0);
        QVERIFY(SettingsScreens::pressButton(running, "@Close"));
        QCOMPARE(taken(), 1);
        QVERIFY(!item(running, "loader")->isVisible());
    });
}

void tst_SettingsCustomize::comboBoxesCloseOnTurning()
{
    run(0, [](RunningApp &running, const Date &) {
        QVERIFY(choose(running, "font", u"Serif"_s));
        for (const char *id : {"font", "font_style"}) {
            QVERIFY(pressByAccessibility(item(running, id)));
            QVERIFY(item(running, id)->property("isOpened").toBool());
            emit running.app.orientationChanged();
            QVERIFY(!item(running, id)->property("isOpened").toBool());
        }
    });
}

void tst_SettingsCustomize::pickerOpensAndCloses()
{
    run(0, [](RunningApp &running, const Date &which) {
        QQuickItem *const loader = item(running, "loader");
        QVERIFY(!loader->isVisible());
        QVERIFY(!loader->property("item").value<QObject *>());
        QTRY_VERIFY(item(running, "position")->x() > 0);
        const auto sources = [&] {
            return item(running, "position_rect")->childItems().constFirst()->property("source").toString()
                + u' ' + item(running, "arrow_img")->property("source").toString();
        };
        const QPoint at = sceneRectangle(item(running, "position")).center();
        QTest::mousePress(running.window, Qt::LeftButton, {}, at);
        QCOMPARE(sources(),
                 u"image://resource/positioning_bottom_left_inv image://resource_inv/arrow_down"_s);
        QTest::mouseRelease(running.window, Qt::LeftButton, {}, at);
        QCOMPARE(sources(), u"image://resource/positioning_bottom_left image://resource/arrow_down"_s);
        QVERIFY(loader->isVisible());
        QCOMPARE(loader->parentItem(), running.window->contentItem());
        QCOMPARE(loader->size(), running.window->contentItem()->size());
        QQuickItem *const frame = findAccessible(loader, QAccessible::PopupMenu);
        QVERIFY(frame);
        QTest::mouseClick(running.window, Qt::LeftButton, {},
                          sceneRectangle(frame).topLeft() + QPoint(40, 6));
        QVERIFY(loader->isVisible()); // the frame is not outside
        QTest::mouseClick(running.window, Qt::LeftButton, {}, QPoint(300, 900));
        QVERIFY(!loader->isVisible());
        QCOMPARE(setting(running, which, "position").toInt(), 2);
        SettingsScreens::tap(running, item(running, "position")); // and again
        QVERIFY(loader->isVisible());
    });
}

void tst_SettingsCustomize::unknownFont()
{
    DataStorage::instance().setSetting(u"created_date_font"_s, u"Gone"_s, -1);
    run(0, [](RunningApp &running, const Date &which) {
        QCOMPARE(selected(running, "font"), 0);
        QVERIFY(!item(running, "font_style")->isVisible());
        QCOMPARE(setting(running, which, "font").toString(), u"Gone"_s);
        QCOMPARE(item(running, "preview")->property("font_family").toString(), u"Gone"_s);
        QVERIFY(choose(running, "font", u"default"_s));
        QCOMPARE(setting(running, which, "font").toString(), u"default"_s);
    });
}

void tst_SettingsCustomize::unknownPosition()
{
    DataStorage::instance().setSetting(u"created_date_position"_s, u"4"_s, -1);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"SettingsCustomizeDate.qml:\\d+: TypeError: "_s));
    run(0, [](RunningApp &running, const Date &) {
        QCOMPARE(item(running, "preview")->state(), u"top_left"_s);
        QVERIFY(chooseCorner(running, u"Top right"_s));
        QCOMPARE(item(running, "preview")->state(), u"top_right"_s);
    });
}

PANEL_TEST_MAIN(tst_SettingsCustomize)
#include "tst_settings_customize.moc"
