// Views by name: the rows of the first screens, the window, messages.

#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <device.h>
#include <slateview.h>

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::device::Screen;
using lindenreed::picture_stand::App;

class tst_AppViews : public QObject
{
    Q_OBJECT

public slots:
    void noteComponent() { m_callsAtComponent.append(m_test->calls()); }

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void firstScreen();
    void views_data();
    void views();
    void unknownView();
    void sameViewAgain();
    void orderOfTheShowsRow();
    void orderOfTheOtherRows();
    void rowsOfTheSettings_data();
    void rowsOfTheSettings();
    void screensChangeTheView();
    void windowFollowsThePanel();
    void infoMessage();
    void infoMessageForFourSeconds();

private:
    std::unique_ptr<AppFixture> m_test;
    QByteArrayList m_callsAtComponent; ///< what had been called when the screens' loader had a new component
};

void tst_AppViews::firstScreen()
{
    App app;
    QSignalSpy changed(&app, &App::changedView);
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QVERIFY(running.itemWith("cellHeight")); // the overview's list
                        QCOMPARE(app.currentView(), QString());
                        QCOMPARE(running.window->title(), u"Scroll"_s);
                        QCOMPARE(running.window->size(), QSize(app.screenWidth(), app.screenHeight()));
                        m_test->device.forgetCalls();
                        app.changeView(u"playlists"_s); // a real change
                        QCOMPARE(changed.count(), 1);
                        QCOMPARE(app.prevView(), QString());
                        QCOMPARE(m_test->calls(), QByteArray("SetPanelType 1"));
                    }),
             0);
}

void tst_AppViews::views_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QByteArray>("toPlaylists");

    // The panel before the new screen; better updates are for the show alone.
    QTest::newRow("grey") << 0 << QByteArray("SetPanelType 1");
    QTest::newRow("colour") << 1 << QByteArray("SetPanelType 1\nsetFastUpdates 1\nsetScreenUpdateMode 5");
}

void tst_AppViews::views()
{
    QFETCH(int, mask);
    QFETCH(QByteArray, toPlaylists);

    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        m_test->device.setColourMask(mask);
                        QPointer<QQuickItem> first = running.screen();
                        m_test->device.forgetCalls();
                        app.changeView(u"playlists"_s);
                        QCOMPARE(m_test->calls(), toPlaylists);
                        QCOMPARE(running.screen(), first.data()); // the same component stays as it is

                        app.changeView(u"slideshow"_s);
                        QVERIFY(running.itemWith("test_w"));
                        QTRY_VERIFY(first.isNull());
                        app.changeView(u"playlists"_s);
                        QVERIFY(running.itemWith("cellHeight"));
                        m_test->device.setColourMask(0);
                    }),
             0);
}

void tst_AppViews::unknownView()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const QQuickItem *before = running.screen();
                        m_test->device.forgetCalls();
                        app.changeView(u"playlist "_s);
                        app.changeView(u"Playlists"_s);
                        QCOMPARE(m_test->calls(), QByteArray());
                        QCOMPARE(running.screen(), before);
                        QCOMPARE(app.currentView(), u"Playlists"_s);
                    }),
             0);
}

void tst_AppViews::sameViewAgain()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &) {
                        app.changeView(u"playlists"_s);
                        m_test->device.forgetCalls();
                        app.changeView(u"playlists"_s);
                        QCOMPARE(m_test->calls(), QByteArray());
                    }),
             0);
}

void tst_AppViews::orderOfTheShowsRow()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(m_test->paths, 30);
                        m_test->device.setColourMask(1);
                        QQuickItem *atPanel = nullptr;
                        connect(&app, &App::screenChanged, &app, [&] { atPanel = running.screen(); });
                        QQuickItem *const before = running.screen();
                        m_test->device.forgetCalls();
                        app.changeView(u"slideshow"_s);
                        m_test->device.setColourMask(0);
                        const QByteArray calls = m_test->calls();
                        // The settings first, with the light; then the row: panel, quality, component, start.
                        const qsizetype panel
                            = calls.indexOf("SetPanelType 0\nsetFastUpdates 0\nSetAutoPowerOff 0\n"
                                            "SetAutoKeylock 0\nClearTimerByName nextImageEvent\n"
                                            "SetHardTimerEx nextImageEvent callback context 30000");
                        QVERIFY2(panel > 0, calls.constData());
                        QVERIFY(calls.indexOf("GetFrontlightState") >= 0
                                && calls.lastIndexOf("Frontlight") < panel);
                        QVERIFY(!calls.contains("setScreenUpdateMode"));
                        QCOMPARE(atPanel, before);
                        QVERIFY(running.screen() != before);
                    }),
             0);
}

void tst_AppViews::orderOfTheOtherRows()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        m_test->device.setColourMask(1);
                        running.slideshow()->initFromList(m_test->paths, 30);
                        m_callsAtComponent.clear();
                        QVERIFY(connect(running.window->contentItem()->childItems().first(),
                                        SIGNAL(sourceComponentChanged()), this, SLOT(noteComponent())));
                        // The component between panel and quality, and the start.
                        app.changeView(u"slideshow"_s);
                        QCOMPARE(m_callsAtComponent.size(), 1);
                        QVERIFY2(m_callsAtComponent.first().endsWith("SetPanelType 0\nsetFastUpdates 0"),
                                 m_callsAtComponent.first().constData());
                        QCOMPARE(
                            m_test->calls(),
                            m_callsAtComponent.first()
                                + "\nSetAutoPowerOff 0\nSetAutoKeylock 0\nClearTimerByName nextImageEvent"
                                  "\nSetHardTimerEx nextImageEvent callback context 30000");

                        // Behind panel, quality and the full refresh; nothing comes after it.
                        for (const QString &view : {u"playlists"_s, u"playlist"_s, u"select_photos"_s}) {
                            m_test->device.setColourMask(1);
                            app.changeView(u"slideshow"_s);
                            m_callsAtComponent.clear();
                            app.changeView(view);
                            m_test->device.setColourMask(0);
                            QCOMPARE(m_callsAtComponent.size(), 1);
                            QVERIFY2(m_callsAtComponent.first().endsWith(
                                         "SetPanelType 1\nsetFastUpdates 1\nsetScreenUpdateMode 5"),
                                     m_callsAtComponent.first().constData());
                            QCOMPARE(m_test->calls(), m_callsAtComponent.first());
                        }
                    }),
             0);
}

namespace {

/// Without what the show does on its way out: it gives the light back.
QByteArray behindTheShow(const QByteArray &calls)
{
    QByteArrayList lines = calls.split('\n');
    lines.removeIf([](const QByteArray &line) {
        return line.toLower().contains("frontlight") || line == "GetOrientation";
    });
    return lines.join('\n');
}

} // namespace

void tst_AppViews::rowsOfTheSettings_data()
{
    QTest::addColumn<QString>("view");
    QTest::addColumn<QByteArray>("calls");
    QTest::addColumn<bool>("fullRefresh");
    QTest::addColumn<QByteArray>("component");

    const QByteArray list("SetPanelType 1\nsetFastUpdates 1");
    const QByteArray trial("SetPanelType 0\nsetFastUpdates 1\nsetScreenUpdateMode 5");
    const auto row = [](const QString &view, const QByteArray &calls, bool refresh, const char *component) {
        QTest::newRow(qUtf8Printable(view)) << view << calls << refresh << QByteArray(component);
    };
    row(u"settings_slideshow"_s, list, false, "SettingsSlideshow");
    row(u"settings_created_datetime"_s, list, false, "SettingsCreatedDateTime");
    row(u"settings_current_datetime"_s, list, false, "SettingsCurrentDateTime");
    row(u"settings_customize_created_date"_s, trial, true, "SettingsCustomizeCreatedDate");
    row(u"settings_customize_current_date"_s, trial, true, "SettingsCustomizeCurrentDate");
}

void tst_AppViews::rowsOfTheSettings()
{
    QFETCH(QString, view);
    QFETCH(QByteArray, calls);
    QFETCH(bool, fullRefresh);
    QFETCH(QByteArray, component);

    App app;
    QCOMPARE(
        runApp(app,
               [&](RunningApp &running) {
                   running.slideshow()->initFromList(m_test->paths, 30);
                   m_test->device.setColourMask(1);
                   app.changeView(u"slideshow"_s);
                   m_callsAtComponent.clear();
                   QVERIFY(connect(running.window->contentItem()->childItems().first(),
                                   SIGNAL(sourceComponentChanged()), this, SLOT(noteComponent())));
                   // A full refresh by name is wanted of the screen itself, when the new screen is there.
                   QByteArrayList wantedOf;
                   connect(&Device::instance()->screen, &Screen::nextDrawingWanted, &app,
                           [&] { wantedOf.append(running.screen()->metaObject()->className()); });
                   m_test->device.forgetCalls();
                   app.changeView(view);
                   m_test->device.setColourMask(0);
                   QCOMPARE(m_callsAtComponent.size(), 1);
                   QCOMPARE(behindTheShow(m_callsAtComponent.first()), calls);
                   QCOMPARE(m_test->calls(), m_callsAtComponent.first()); // nothing comes after it
                   QVERIFY(QByteArray(running.screen()->metaObject()->className()).startsWith(component));
                   wantedOf.removeIf([&](const QByteArray &name) { return !name.startsWith(component); });
                   QCOMPARE(wantedOf.size(), fullRefresh ? 1 : 0);
               }),
        0);
}

void tst_AppViews::screensChangeTheView()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QVERIFY(QMetaObject::invokeMethod(running.screen(), "changeView",
                                                          Q_ARG(QString, u"slideshow"_s)));
                        QCOMPARE(app.currentView(), u"slideshow"_s);
                        QVERIFY(running.screen()->property("test_w").isValid());
                        QVERIFY(QMetaObject::invokeMethod(running.screen(), "changeView",
                                                          Q_ARG(QString, u"elsewhere"_s)));
                        QCOMPARE(app.currentView(), u"elsewhere"_s);
                    }),
             0);
}

void tst_AppViews::windowFollowsThePanel()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        app.showPanel(false);
                        QTRY_COMPARE(running.window->height(), ScreenHeight());
                        app.showPanel(true);
                        QTRY_COMPARE(running.window->height(), ScreenHeight() - PanelHeight());
                        app.changeView(u"slideshow"_s);
                        app.changeOrientation(1);
                        QTRY_COMPARE(running.window->size(), QSize(1024, 758));
                        app.changeView(u"playlists"_s);
                        QTRY_COMPARE(running.window->size(), QSize(758, 1024 - PanelHeight()));
                    }),
             0);
}

void tst_AppViews::infoMessage()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        // Behind the loader of the screens; what a screen puts into the window comes after
                        // it.
                        QQuickItem *message = running.window->contentItem()->childItems().value(1);
                        QVERIFY(message);
                        QVERIFY(!message->isVisible());
                        QVERIFY(!message->property("item").value<QObject *>());

                        emit app.showInfoMessage(u"Two pictures"_s, u"image://resource/icon_done"_s);
                        app.changeView(u"slideshow"_s); // a message outlives a change of view
                        QVERIFY(message->isVisible());
                        QPointer<QObject> item = message->property("item").value<QObject *>();
                        QVERIFY(item);
                        QCOMPARE(item->property("text").toString(), u"Two pictures"_s);
                        QCOMPARE(item->property("icon").toUrl(), QUrl(u"image://resource/icon_done"_s));
                        QMetaObject::invokeMethod(item, "close");
                        QVERIFY(!message->isVisible());

                        emit app.showInfoMessage(u"Again"_s, u"image://resource/icon_done"_s);
                        QVERIFY(message->isVisible());
                        QCOMPARE(message->property("item").value<QObject *>(),
                                 item.data()); // it stays for the next one
                    }),
             0);
}

void tst_AppViews::infoMessageForFourSeconds()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const QQuickItem *message = running.window->contentItem()->childItems().at(1);
                        QElapsedTimer shown;
                        shown.start();
                        emit app.showInfoMessage(u"Two pictures"_s, QString());
                        QVERIFY(message->isVisible());
                        QTRY_VERIFY_WITH_TIMEOUT(!message->isVisible(), 10'000);
                        // The timer may be coarse: a twentieth.
                        QVERIFY2(shown.elapsed() >= 3800 && shown.elapsed() < 4900,
                                 QByteArray::number(shown.elapsed()).constData());
                    }),
             0);
}

PANEL_TEST_MAIN(tst_AppViews)
#include "tst_app_views.moc"
