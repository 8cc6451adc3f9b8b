// The screens on which the look of a date is tried out: their bar, their preview, their corner picker.

#include "customize_screen.h"
#include "panel_application.h"

#include <QQmlComponent>

#include <memory>

using namespace customize_screen;
using lindenreed::device::Device;

class tst_SettingsCustomize : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init()
    {
        m_test = std::make_unique<SettingsScreens>();
        m_test->device.setFonts(fonts);
    }
    void cleanup() { m_test.reset(); }

    void defaults();
    void firstOpening_data() { rowForEachDate(); }
    void firstOpening();
    void bar();
    void corners();
    void preview_data() { rowForEachDate(); }
    void preview();
    void previewMoments_data() { rowForEachDate(); }
    void previewMoments();
    void fullRefreshes();
    void turning();
    void pickerOpensAndCloses();
    void unknownFont();
    void unknownPosition_data();
    void unknownPosition();

private:
    void run(int date, const std::function<void(RunningApp &, const Date &)> &body)
    {
        m_test->run(dates.at(date).view, [&](RunningApp &running) { body(running, dates.at(date)); });
    }

    std::unique_ptr<SettingsScreens> m_test;
};

void tst_SettingsCustomize::defaults()
{
    run(0, [](RunningApp &running, const Date &) {
        const auto made = [&](const char *type) {
            QQmlComponent component(qmlEngine(running.window));
            component.setData(QByteArray("import com.lindenreed.picture_stand 1.0\n") + type + " {}",
                              QUrl(u"qrc:/made.qml"_s));
            return std::unique_ptr<QObject>(component.create());
        };
        const std::unique_ptr<QObject> editor = made("SettingsCustomizeDate");
        QVERIFY(editor);
        QCOMPARE(editor->property("current_position"), QVariant(0));
        QCOMPARE(editor->property("current_font_family"), QVariant(u"Roboto"_s));
        QCOMPARE(editor->property("current_font_italic"), QVariant(false));
        QCOMPARE(editor->property("current_font_bold"), QVariant(false));
        for (const char *type : {"SettingsCreatedDateTime", "SettingsCurrentDateTime"}) {
            const std::unique_ptr<QObject> list = made(type);
            QVERIFY(list);
            QCOMPARE(list->property("title"), QVariant(QString()));
        }
    });
}

void tst_SettingsCustomize::firstOpening()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        QCOMPARE(look(running, which), date == 0 ? u"2 default 0 0"_s : u"0 default 0 0"_s);
        QCOMPARE(selected(running, "font"), 0);
        QVERIFY(!item(running, "font_style")->isVisible());
        // What is hidden takes no room from the list of fonts.
        QCOMPARE(item(running, "font")->property("max_width").toReal(),
                 item(running, "row")->width() - item(running, "back_button")->width()
                     - item(running, "position")->width()
                     - SettingsScreens::number(running, "header", u"Global.dp(16)"_s));
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
        QCOMPARE(upright->property("color").value<QColor>(), QColor(Qt::black));

        // In a row from the left, and none reaches into the next.
        int left = 0;
        for (const char *id : {"back_button", "font", "font_style", "position", "line", "done_button"}) {
            QTRY_VERIFY2(sceneRectangle(item(running, id)).left() >= left, id);
            left = sceneRectangle(item(running, id)).right();
        }
        // The frame around a list reaches beyond it, and clears the next one.
        QVERIFY(sceneRectangle(style).left() - sceneRectangle(font).right() > value(u"font.overhang"_s));
        // From the bar to the edges "gray", but for the preview at the bottom left.
        const QImage picture = running.window->grabWindow();
        const QRect stage(QPoint(0, int(header->height())), picture.rect().bottomRight());
        for (const QPoint at :
             {stage.topLeft(), stage.topRight(), stage.center(), stage.bottomLeft(), stage.bottomRight()})
            QCOMPARE(picture.pixelColor(at), QColor(Qt::darkGray));
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
        QVERIFY(item(running, "preview")->isVisible());
    });
}

void tst_SettingsCustomize::previewMoments()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        const auto shown = [&] { return item(running, "preview")->property("datetime").toDateTime(); };
        running.app.changeView(which.listView);
        const QDateTime before = QDateTime::currentDateTime();
        running.app.changeView(which.view);
        const QDateTime created = shown();
        QVERIFY(created >= before && created <= QDateTime::currentDateTime());
        // The one stays what it was when the screen was made, the other is the minute of the application.
        QTRY_VERIFY(QDateTime::currentDateTime() > created);
        QSignalSpy minutes(&running.app, &lindenreed::picture_stand::App::currentDateChanged);
        QVERIFY(m_test->device.fire("updateDateTimeEvent"));
        QTRY_COMPARE(minutes.count(), 1);
        QCOMPARE(shown() > created, date == 1);
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

void tst_SettingsCustomize::turning()
{
    run(0, [](RunningApp &running, const Date &) {
        QVERIFY(choose(running, "font", u"Serif"_s));
        for (const char *id : {"font", "font_style"}) {
            QVERIFY(pressByAccessibility(item(running, id)));
            QVERIFY(item(running, id)->property("isOpened").toBool());
            emit running.app.orientationChanged();
            QVERIFY(!item(running, id)->property("isOpened").toBool());
        }

        // Never all at once for a user; here they tell the order.
        QVERIFY(pressByAccessibility(item(running, "position")));
        auto *const picker = item(running, "loader")->property("item").value<QObject *>();
        picker->setProperty("transparentRect", QRectF());
        for (const char *id : {"font", "font_style"})
            item(running, id)->setProperty("isOpened", true);
        Steps steps;
        steps.note(picker, "transparentRectChanged()", u"picker"_s);
        steps.note(item(running, "font"), "isOpenedChanged()", u"font"_s);
        steps.note(item(running, "font_style"), "isOpenedChanged()", u"style"_s);
        emit running.app.orientationChanged();
        QCOMPARE(steps.taken(), (QStringList{u"picker"_s, u"style"_s, u"font"_s}));
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
        QCOMPARE(item(running, "position")->property("color").value<QColor>(), QColor(Qt::black));
        QTest::mouseRelease(running.window, Qt::LeftButton, {}, at);
        QCOMPARE(sources(), u"image://resource/positioning_bottom_left image://resource/arrow_down"_s);
        QCOMPARE(item(running, "position")->property("color").value<QColor>(), QColor(Qt::white));
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
        auto *const picker = loader->property("item").value<QQuickItem *>();
        const QVariant area = picker->property("transparentRect");
        picker->setProperty("transparentRect", QRectF());
        SettingsScreens::tap(running, item(running, "position")); // and again, placed anew
        QVERIFY(loader->isVisible());
        QCOMPARE(picker->property("transparentRect"), area);
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

void tst_SettingsCustomize::unknownPosition_data()
{
    QTest::addColumn<QString>("stored");

    QTest::newRow("beyond the last") << u"4"_s;
    QTest::newRow("before the first") << u"-1"_s;
}

void tst_SettingsCustomize::unknownPosition()
{
    QFETCH(QString, stored);

    DataStorage::instance().setSetting(u"created_date_position"_s, stored, -1);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"SettingsCustomizeDate.qml:\\d+: TypeError: "_s));
    run(0, [](RunningApp &running, const Date &) {
        const QQuickItem *const image = item(running, "position_rect")->childItems().constFirst();
        QCOMPARE(image->property("source").toString(), QString());
        QCOMPARE(item(running, "preview")->state(), u"top_left"_s);
        QVERIFY(chooseCorner(running, u"Top right"_s));
        QCOMPARE(item(running, "preview")->state(), u"top_right"_s);
    });
}

PANEL_TEST_MAIN(tst_SettingsCustomize)
#include "tst_settings_customize.moc"
