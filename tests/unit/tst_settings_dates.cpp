// The two lists that switch a date of the show on and lead to how it looks.

#include "panel_application.h"
#include "settings_screens.h"

#include <memory>

class tst_SettingsDates : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<SettingsScreens>(); }
    void cleanup() { m_test.reset(); }

    void screens_data();
    void screens();
    void rowsStandBelowTheHeader_data() { screens_data(); }
    void rowsStandBelowTheHeader();
    void switched_data() { screens_data(); }
    void switched();
    void ways_data() { screens_data(); }
    void ways();
    void backKey_data() { screens_data(); }
    void backKey();
    void flickable_data() { screens_data(); }
    void flickable();
    void titleIsGivenFromOutside_data() { screens_data(); }
    void titleIsGivenFromOutside();

private:
    std::unique_ptr<SettingsScreens> m_test;
};

namespace {

QQuickItem *item(const RunningApp &running, const char *id)
{
    return SettingsScreens::item(running, id);
}

} // namespace

void tst_SettingsDates::screens_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("switchTitle");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<QString>("customizeView");

    QTest::newRow("photo date") << u"settings_created_datetime"_s << u"Photo date"_s << u"Show photo date"_s
                                << u"photo_created_date"_s << QByteArray("created_date_show") << true
                                << u"settings_customize_created_date"_s;
    QTest::newRow("current date") << u"settings_current_datetime"_s << u"Current date and time"_s
                                  << u"Show date and time"_s << u"desktop_app_calendar"_s
                                  << QByteArray("current_date_show") << false
                                  << u"settings_customize_current_date"_s;
}

void tst_SettingsDates::screens()
{
    QFETCH(QString, view);
    QFETCH(QString, title);
    QFETCH(QString, switchTitle);
    QFETCH(QString, icon);
    QFETCH(bool, shown);

    m_test->run(view, [&](RunningApp &running) {
        const QQuickItem *const header = item(running, "header");
        QCOMPARE(header->property("title").toString(), title);
        QCOMPARE(header->property("closeIcon").toString(), u"image://resource/back"_s);
        QCOMPARE(header->property("closePressedIcon").toString(), u"image://resource/back_inv"_s);
        QVERIFY(SettingsScreens::shows(running, QAccessible::Heading, title));

        QQuickItem *const show
            = findAccessible(running.window->contentItem(), QAccessible::CheckBox, switchTitle);
        QVERIFY(show);
        QCOMPARE(show->property("image_src").toString(), u"image://resource/"_s + icon);
        QCOMPARE(show->property("image_src_pressed").toString(), u"image://resource_inv/"_s + icon);
        QCOMPARE(show->property("switch_value").toBool(), shown);

        QQuickItem *const customize
            = findAccessible(running.window->contentItem(), QAccessible::Button, u"Font and position"_s);
        QVERIFY(customize);
        QCOMPARE(customize->property("text").toString(), u"..."_s);
        QCOMPARE(customize->property("image_src").toString(), u"image://resource/scribble_text_tool"_s);
        QCOMPARE(customize->property("image_src_pressed").toString(),
                 u"image://resource_inv/scribble_text_tool"_s);
    });
}

void tst_SettingsDates::rowsStandBelowTheHeader()
{
    QFETCH(QString, view);

    m_test->run(view, [&](RunningApp &running) {
        const int side = SettingsScreens::number(
            running, "header",
            u"GlobalValues.defaultListViewSideMargin - GlobalValues.listElementHoverFrameBorderRadius"_s);
        int top = int(item(running, "header")->height());
        QVERIFY(side > 0 && top > 0);
        for (const char *id : {"menu_show", "menu_customize"}) {
            const QQuickItem *const row = item(running, id);
            QCOMPARE(sceneRectangle(row),
                     QRect(side, top, int(running.screen()->width()) - 2 * side, int(row->height())));
            top += int(row->height());
            const QQuickItem *const separator = SettingsScreens::separatorOf(row);
            QVERIFY(separator);
            const int radius = row->property("radius").toInt();
            QCOMPARE(sceneRectangle(separator),
                     QRect(side + radius, top - int(separator->height()), int(row->width()) - 2 * radius,
                           SettingsScreens::number(running, "header",
                                                   u"GlobalValues.defaultSolidSeparatorThickness"_s)));
            QCOMPARE(separator->property("color"),
                     SettingsScreens::value(running, "header", u"GlobalValues.defaultSolidseparatorColor"_s));
        }
    });
}

void tst_SettingsDates::switched()
{
    QFETCH(QString, view);
    QFETCH(QByteArray, key);
    QFETCH(bool, shown);

    m_test->run(view, [&](RunningApp &running) {
        QStringList rows = globalRows();
        QQuickItem *const row = item(running, "menu_show");
        bool value = shown;
        for (int i = 0; i < 2; ++i) {
            SettingsScreens::tap(running, row);
            value = !value;
            QCOMPARE(running.settings()->property(key).toBool(), value);
            QCOMPARE(row->property("switch_value").toBool(), value);
            // At once, and nothing else.
            const QString name = QString::fromLatin1(key);
            rows.replaceInStrings(u"%1|%2"_s.arg(name).arg(int(!value)),
                                  u"%1|%2"_s.arg(name).arg(int(value)));
            QCOMPARE(globalRows(), rows);
        }
        QVERIFY(pressByAccessibility(row));
        QCOMPARE(running.settings()->property(key).toBool(), !shown);
    });
}

void tst_SettingsDates::ways()
{
    QFETCH(QString, view);
    QFETCH(QString, customizeView);

    m_test->run(view, [&](RunningApp &running) {
        SettingsScreens::tap(running, item(running, "menu_customize"));
        QCOMPARE(running.app.currentView(), customizeView);
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.app.currentView(), view);
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.app.currentView(), u"settings_slideshow"_s);
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(running.app.currentView(), u"playlists"_s);
    });
}

void tst_SettingsDates::backKey()
{
    QFETCH(QString, view);

    m_test->run(view, [&](RunningApp &running) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Back, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(running.window, &held); // from a dialog that it has closed, say
        QCOMPARE(running.app.currentView(), view);
        SettingsScreens::key(running, Qt::Key_Back);
        QCOMPARE(running.app.currentView(), u"settings_slideshow"_s);
    });
}

void tst_SettingsDates::flickable()
{
    QFETCH(QString, view);

    m_test->run(view, [](RunningApp &running) {
        QQuickItem *const screen = running.screen();
        QVERIFY(screen->clip());
        QCOMPARE(screen->property("flickableDirection").toInt(), 2); // vertical
        QCOMPARE(screen->property("pressDelay").toInt(), 120);
        QCOMPARE(screen->property("contentHeight").toReal(), 2 * item(running, "menu_show")->height());
        const auto atBounds = SettingsScreens::number(running, "header", u"Flickable.StopAtBounds"_s);
        const auto beyond = SettingsScreens::number(running, "header", u"Flickable.DragAndOvershootBounds"_s);
        QCOMPARE(screen->property("boundsBehavior").toInt(), atBounds);
        screen->setHeight(screen->property("contentHeight").toReal() - 1);
        QCOMPARE(screen->property("boundsBehavior").toInt(), beyond);
        screen->setProperty("contentY", 50);
        QCOMPARE(sceneRectangle(item(running, "header")).top(), -50); // it scrolls away with the rows
    });
}

void tst_SettingsDates::titleIsGivenFromOutside()
{
    QFETCH(QString, view);

    m_test->run(view, [](RunningApp &running) {
        running.screen()->setProperty("title", u"Another"_s);
        QCOMPARE(item(running, "header")->property("title").toString(), u"Another"_s);
    });
}

PANEL_TEST_MAIN(tst_SettingsDates)
#include "tst_settings_dates.moc"
