// The dialog for an interval of the user's own: how it opens and closes, what it shows, where the keys go.

#include "interval_dialog.h"
#include "panel_application.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QQmlProperty>

#include <limits>
#include <memory>

using namespace interval_dialog;

class tst_SettingsIntervalDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<SettingsScreens>(); }
    void cleanup() { m_test.reset(); }

    void opens();
    void measures();
    void left_data();
    void left();
    void checkedCustomRowAgain();
    void openedWithAStoredTime_data();
    void openedWithAStoredTime();
    void storedUnitThatIsNone_data();
    void storedUnitThatIsNone();
    void shownAgainAfterMixedValues();
    void openedAgain();
    void followsWhatIsChangedElsewhere();
    void focusGoesToTheScreen();
    void unitTakesTheFocus();
    void turned();

private:
    void run(const std::function<void(RunningApp &)> &body) { m_test->run(u"settings_slideshow"_s, body); }

    std::unique_ptr<SettingsScreens> m_test;
};

void tst_SettingsIntervalDialog::opens()
{
    run([](RunningApp &running) {
        QVERIFY(!isOpen(running));
        QVERIFY(open(running));
        QVERIFY(isOpen(running));
        QVERIFY(!item(running, "loader_change_picture_time")->isVisible());
        QCOMPARE(item(running, "loader_custom_interval")->parentItem(), running.window->contentItem());
        QVERIFY(SettingsScreens::shows(running, QAccessible::Dialog, u"Set custom interval"_s));
        QCOMPARE(field(running), QString());
        QCOMPARE(unit(running), 0);
        QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
    });
}

void tst_SettingsIntervalDialog::measures()
{
    run([](RunningApp &running) {
        QVERIFY(open(running));
        const auto value
            = [&](const QString &expression) { return SettingsScreens::value(running, "input", expression); };
        QQuickItem *const input = item(running, "input");
        const QQuickItem *const frame = input->parentItem();
        QCOMPARE(frame->width(), value(u"Global.dp(150 * 0.53)"_s).toReal());
        QCOMPARE(frame->height(), value(u"GlobalValues.defaultAppHeaderHeight"_s).toReal());
        QCOMPARE(QQmlProperty::read(frame, u"border.width"_s).toInt(), 3);
        QCOMPARE(QQmlProperty::read(frame, u"border.color"_s).value<QColor>(), QColor(Qt::black));
        QCOMPARE(value(u"inputMethodHints === Qt.ImhDigitsOnly"_s).toBool(), true);
        QCOMPARE(value(u"styledFont === FontStyles.Heading5"_s).toBool(), true);
        QCOMPARE(value(u"horizontalAlignment === TextInput.AlignHCenter"_s).toBool(), true);
        QCOMPARE(value(u"verticalAlignment === TextInput.AlignVCenter"_s).toBool(), true);
        const QQuickItem *const row = frame->parentItem();
        QCOMPARE(row->property("spacing").toReal(), value(u"Global.dp(20 * 0.53)"_s).toReal());
        QCOMPARE(row->parentItem()->height(), value(u"Global.dp(200 * 0.53)"_s).toReal());
        const QPoint off = sceneRectangle(row).center() - sceneRectangle(row->parentItem()).center();
        QVERIFY(std::abs(off.x()) <= 1 && std::abs(off.y()) <= 1);
        QQuickItem *const time = item(running, "time");
        QCOMPARE(time->width(), value(u"Global.dp(315 * 0.53)"_s).toReal());
        QVERIFY(time->property("show_border").toBool() && time->property("highlightSelected").toBool());
        QCOMPARE(time->property("styledFont"), value(u"FontStyles.Heading5"_s));
        QCOMPARE(time->state(), u"RadioTextButton"_s);
        auto *const dialog = item(running, "loader_custom_interval")->property("item").value<QQuickItem *>();
        QCOMPARE(dialog->state(), u"VerticalTop"_s);
        QCOMPARE(dialog->property("verticalOffset").toInt(), value(u"Global.dp(120 * 0.53)"_s).toInt());
        QVERIFY(findAccessible(dialog, QAccessible::Button, u"Save"_s));
        const QQuickItem *const footer = findAccessible(dialog, QAccessible::Button, u"Save"_s)->parentItem();
        QVERIFY(footer->property("isUppercase").toBool());
    });
}

void tst_SettingsIntervalDialog::left_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("cancel") << u"cancel"_s;
    QTest::newRow("tap outside") << u"outside"_s;
    QTest::newRow("back key") << u"back"_s;
    QTest::newRow("escape key") << u"escape"_s;
}

void tst_SettingsIntervalDialog::left()
{
    QFETCH(QString, how);

    run([&](RunningApp &running) {
        QVERIFY(open(running));
        type(running, u"45"_s);
        if (how == u"cancel"_s)
            QVERIFY(SettingsScreens::pressButton(running, "@Cancel"));
        else if (how == u"outside"_s)
            QTest::mouseClick(running.window, Qt::LeftButton, {}, QPoint(5, 5));
        else
            SettingsScreens::key(running, how == u"back"_s ? Qt::Key_Back : Qt::Key_Escape);
        QVERIFY(!isOpen(running));
        QCOMPARE(running.app.currentView(), u"settings_slideshow"_s);
        QTRY_VERIFY(!QGuiApplication::inputMethod()->isVisible());
        QCOMPARE(stored(), u"30|0"_s);
        QVERIFY(open(running));
        QCOMPARE(field(running), u"45"_s); // what was typed is still there
    });
}

void tst_SettingsIntervalDialog::checkedCustomRowAgain()
{
    run([](RunningApp &running) {
        running.settings()->setProperty("change_picture_time", 45);
        QVERIFY(pressByAccessibility(item(running, "menu_change_picter")));
        QQuickItem *const row = findAccessible(running.window->contentItem(), QAccessible::RadioButton,
                                               u"Custom (45 seconds)"_s);
        QVERIFY(row && accessible(row)->state().checked);
        QVERIFY(pressByAccessibility(row));
        QVERIFY(isOpen(running));
        QVERIFY(!item(running, "loader_change_picture_time")->isVisible());
    });
}

void tst_SettingsIntervalDialog::openedWithAStoredTime_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("shown");

    QTest::newRow("45 seconds") << 45 << 0 << u"45"_s;
    QTest::newRow("3 minutes") << 180 << 1 << u"3"_s;
    QTest::newRow("3 hours") << 10'800 << 2 << u"3"_s;
    QTest::newRow("more than a day") << 200 * 3'600 << 2 << u"24"_s;
}

void tst_SettingsIntervalDialog::openedWithAStoredTime()
{
    QFETCH(int, seconds);
    QFETCH(int, unit);
    QFETCH(QString, shown);

    DataStorage::instance().setSetting(u"change_picture_time"_s, QString::number(seconds), -1);
    DataStorage::instance().setSetting(u"change_picture_time_index"_s, QString::number(unit), -1);
    run([&](RunningApp &running) {
        QVERIFY(open(running));
        QCOMPARE(field(running), shown);
        QCOMPARE(interval_dialog::unit(running), unit);
    });
}

void tst_SettingsIntervalDialog::storedUnitThatIsNone_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("row");

    QTest::newRow("before") << -1 << u"Custom (45 seconds)"_s;
    QTest::newRow("beyond") << 3 << u"Custom (0 seconds)"_s;
    QTest::newRow("far beyond") << std::numeric_limits<int>::max() << u"Custom (0 seconds)"_s;
}

void tst_SettingsIntervalDialog::storedUnitThatIsNone()
{
    QFETCH(int, unit);
    QFETCH(QString, row);

    DataStorage::instance().setSetting(u"change_picture_time"_s, u"45"_s, -1);
    DataStorage::instance().setSetting(u"change_picture_time_index"_s, QString::number(unit), -1);
    run([&](RunningApp &running) {
        QCOMPARE(item(running, "menu_change_picter")->property("text").toString(), row);
        // There is nothing to multiply with: the dialog closes, and the settings stay.
        QVERIFY(open(running));
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QVERIFY(!isOpen(running));
        QCOMPARE(stored(), u"45|%1"_s.arg(unit));
        // With a unit that is one it saves.
        QVERIFY(open(running));
        QVERIFY(chooseUnit(running, 1));
        item(running, "input")->forceActiveFocus();
        QVERIFY(QMetaObject::invokeMethod(item(running, "input"), "clear"));
        type(running, u"3"_s);
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QVERIFY(!isOpen(running));
        QCOMPARE(stored(), u"180|1"_s);
    });
}

void tst_SettingsIntervalDialog::shownAgainAfterMixedValues()
{
    run([](RunningApp &running) {
        running.settings()->setProperty("change_picture_time", 7);
        QVERIFY(open(running));
        QVERIFY(chooseUnit(running, 2));
        item(running, "input")->forceActiveFocus();
        QVERIFY(QMetaObject::invokeMethod(item(running, "input"), "clear"));
        type(running, u"3"_s);
        // For a moment 7 seconds in hours, none, which the field raises to 1.
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        QVERIFY(open(running));
        QCOMPARE(field(running), u"3"_s);
        QCOMPARE(unit(running), 2);
    });
}

void tst_SettingsIntervalDialog::openedAgain()
{
    run([](RunningApp &running) {
        QVERIFY(openAndType(running, 1, u"3"_s));
        QVERIFY(SettingsScreens::pressButton(running, "@Save"));
        for (int i = 0; i < 2; ++i) {
            QVERIFY(open(running));
            QVERIFY(item(running, "input")->hasActiveFocus());
            QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
            QCOMPARE(field(running), u"3"_s);
            QCOMPARE(unit(running), 1);
            QVERIFY(SettingsScreens::pressButton(running, "@Cancel"));
            QTRY_VERIFY(!QGuiApplication::inputMethod()->isVisible());
        }
        // A preset in the same unit changes nothing of what the dialog has.
        QVERIFY(pressByAccessibility(item(running, "menu_change_picter")));
        QVERIFY(SettingsScreens::choose(running, u"5\u00a0minutes"_s));
        QVERIFY(open(running));
        QCOMPARE(field(running), u"3"_s);
        QCOMPARE(unit(running), 1);
    });
}

void tst_SettingsIntervalDialog::followsWhatIsChangedElsewhere()
{
    run([](RunningApp &running) {
        QVERIFY(openAndType(running, 1, u"3"_s));
        QVERIFY(SettingsScreens::pressButton(running, "@Cancel"));
        running.settings()->setProperty("change_picture_time_index", 2);
        running.settings()->setProperty("change_picture_time", 7'200);
        QVERIFY(open(running));
        QCOMPARE(field(running), u"2"_s);
        QCOMPARE(unit(running), 2);
    });
}

void tst_SettingsIntervalDialog::focusGoesToTheScreen()
{
    run([](RunningApp &running) {
        QVERIFY(open(running));
        QList<QQuickItem *> way;
        connect(running.window, &QQuickWindow::activeFocusItemChanged, running.screen(),
                [&] { way.append(running.window->activeFocusItem()); });
        QVERIFY(SettingsScreens::pressButton(running, "@Cancel"));
        QVERIFY(running.screen()->hasActiveFocus());
        // First to the rows while the dialog still shows, then to the screen.
        const QQuickItem *const rows = item(running, "content");
        const auto isOfTheRows
            = [&](const QQuickItem *item) { return item == rows || rows->isAncestorOf(item); };
        const auto first = std::ranges::find_if(way, isOfTheRows);
        QVERIFY(first != way.cend());
        QVERIFY(std::find(first, way.end(), running.screen()) != way.end());
    });
}

void tst_SettingsIntervalDialog::unitTakesTheFocus()
{
    run([](RunningApp &running) {
        QVERIFY(open(running));
        SettingsScreens::tap(running, item(running, "time"));
        QVERIFY(item(running, "time")->property("isOpened").toBool());
        QVERIFY(item(running, "time")->hasActiveFocus());
        item(running, "input")->forceActiveFocus();
        QVERIFY(SettingsScreens::choose(running, u"minutes"_s));
        QVERIFY(item(running, "time")->hasActiveFocus());
    });
}

void tst_SettingsIntervalDialog::turned()
{
    run([](RunningApp &running) {
        QVERIFY(open(running));
        QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
        emit running.app.orientationChanged();
        QTRY_VERIFY(!QGuiApplication::inputMethod()->isVisible());
        SettingsScreens::tap(running, item(running, "time"));
        QVERIFY(item(running, "time")->property("isOpened").toBool());
        emit running.app.orientationChanged();
        QVERIFY(!item(running, "time")->property("isOpened").toBool());
    });
}

PANEL_TEST_MAIN(tst_SettingsIntervalDialog)
#include "tst_settings_interval_dialog.moc"
