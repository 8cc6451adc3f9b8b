// Trying out how a date looks: what a trial changes, in which order, and what is kept of it.

#include "customize_screen.h"
#include "panel_application.h"

#include <memory>

using namespace customize_screen;
using lindenreed::device::Device;
using lindenreed::device::Screen;
using lindenreed::picture_stand::App;

class tst_CustomizeTrial : public QObject
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
    void loadedBeforeItLeaves_data() { rowForEachDate(); }
    void loadedBeforeItLeaves();
    void pickerClosesFirst();
    void nothingIsSelectedBetween();
    void backKey_data() { rowForEachDate(); }
    void backKey();

private:
    void run(int date, const std::function<void(RunningApp &, const Date &)> &body)
    {
        m_test->run(dates.at(date).view, [&](RunningApp &running) { body(running, dates.at(date)); });
    }

    std::unique_ptr<SettingsScreens> m_test;
};

void tst_CustomizeTrial::trialAndBack()
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

void tst_CustomizeTrial::trialAndDone()
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

void tst_CustomizeTrial::rowsInOrder()
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

void tst_CustomizeTrial::switchIsNoPartOfTheTrial()
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

void tst_CustomizeTrial::newFontStartsRegular()
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

void tst_CustomizeTrial::sameFontKeepsItsStyle()
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

void tst_CustomizeTrial::loadedBeforeItLeaves()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        const QByteArray changed = which.prefix + "positionChanged()";
        Steps steps;
        steps.note(running.settings(), changed.constData(), u"setting"_s);
        steps.note(&running.app, "changedView(QString)", u"view"_s);
        running.settings()->setProperty(which.prefix + "position", 3);
        QVERIFY(SettingsScreens::pressButton(running, "@Back"));
        QCOMPARE(steps.taken(), (QStringList{u"setting"_s, u"setting"_s, u"view"_s}));

        running.app.changeView(which.view);
        running.settings()->setProperty(which.prefix + "position", 3);
        running.settings()->setProperty("display_mode", 0); // of another screen: dropped by the load
        steps.note(running.settings(), "display_modeChanged()", u"load"_s);
        steps.taken();
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QCOMPARE(steps.taken(), (QStringList{u"load"_s, u"view"_s}));
    });
}

void tst_CustomizeTrial::pickerClosesFirst()
{
    run(0, [](RunningApp &running, const Date &) {
        Steps steps;
        steps.note(item(running, "loader"), "visibleChanged()", u"picker"_s);
        steps.note(running.settings(), "created_date_positionChanged()", u"position"_s);
        QObject::connect(&Device::instance()->screen, &Screen::nextDrawingWanted, &steps,
                         [&] { steps.add(u"full update"_s); });
        QVERIFY(chooseCorner(running, u"Top right"_s));
        QCOMPARE(steps.taken(), (QStringList{u"picker"_s, u"picker"_s, u"position"_s, u"full update"_s}));
        QVERIFY(pressByAccessibility(item(running, "position")));
        QVERIFY(SettingsScreens::pressButton(running, "@Close"));
        QCOMPARE(steps.taken(), (QStringList{u"picker"_s, u"picker"_s, u"full update"_s}));
    });
}

void tst_CustomizeTrial::nothingIsSelectedBetween()
{
    run(0, [](RunningApp &running, const Date &) {
        QVERIFY(choose(running, "font", u"Serif"_s));
        Steps steps;
        steps.note(item(running, "font_style"), "selectedUidChanged()", u"selection"_s);
        steps.note(SettingsScreens::named(running, "font_style_model"), "countChanged()", u"rows"_s);
        QVERIFY(choose(running, "font", u"Sans"_s)); // regular before and after
        // To none, all rows away, two rows, to the first.
        QCOMPARE(steps.taken(),
                 (QStringList{u"selection"_s, u"rows"_s, u"rows"_s, u"rows"_s, u"selection"_s}));
    });
}

void tst_CustomizeTrial::backKey()
{
    QFETCH(int, date);

    run(date, [&](RunningApp &running, const Date &which) {
        const QString before = look(running, which);
        QVERIFY(choose(running, "font", u"Serif"_s));
        // What is open goes first.
        for (const char *id : {"font", "font_style", "position"}) {
            QVERIFY(pressByAccessibility(item(running, id)));
            SettingsScreens::key(running, Qt::Key_Back);
            QCOMPARE(running.app.currentView(), which.view);
            QVERIFY(item(running, id)->hasActiveFocus());
        }
        SettingsScreens::key(running, Qt::Key_Back);
        QCOMPARE(running.app.currentView(), which.listView);
        QCOMPARE(look(running, which), before);
    });
}

PANEL_TEST_MAIN(tst_CustomizeTrial)
#include "tst_customize_trial.moc"
