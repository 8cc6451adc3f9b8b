// What a tap on the picture does, to the pixel where one zone ends and the next begins, with the light panel
// closed and open.

#include "accessible_items.h"
#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <facts.h>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;

namespace {

constexpr QSize screen(758, 1024);
/// Where a fifth and a quarter are whole pixels: 152 and 200, 190 and 570.
constexpr QSize divisible(760, 1000);

enum Zone { Corner, Left, Right, Middle };

} // namespace

class tst_ShowZones : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void zones_data();
    void zones();

private:
    std::unique_ptr<AppFixture> m_test;
};

void tst_ShowZones::zones_data()
{
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<bool>("lightPanel");
    QTest::addColumn<Zone>("zone");

    const auto add = [](const char *name, QPoint at, Zone zone) {
        QTest::addRow("%s", name) << at << false << zone;
        QTest::addRow("%s, with the light panel", name) << at << true << zone;
    };
    add("in the corner", {1, 1}, Corner);
    add("last pixel of the corner", {152, 200}, Corner);
    add("beside the corner", {153, 200}, Left);
    add("below the corner", {152, 201}, Left);
    add("left edge", {0, 300}, Left);
    add("last of the left", {190, 300}, Left);
    add("last of the left, above", {190, 0}, Left);
    add("first of the middle", {191, 300}, Middle);
    add("last of the middle", {569, 300}, Middle);
    add("first of the right", {570, 300}, Right);
    add("upper right corner", {757, 0}, Right);
}

void tst_ShowZones::zones()
{
    QFETCH(QPoint, at);
    QFETCH(bool, lightPanel);
    QFETCH(Zone, zone);

    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        QTRY_COMPARE(running.screen()->size().toSize(), screen);
                        const auto is
                            = [&](const char *name) { return running.screen()->property(name).toBool(); };
                        if (lightPanel) {
                            pressByAccessibility(running.screen());
                            pressByAccessibility(
                                findAccessible(running.screen(), QAccessible::Button, u"Frontlight"_s));
                        }
                        QCOMPARE(is("frontlight_opened"), lightPanel);
                        m_test->device.forgetCalls();

                        lindenreed::device::facts().width = divisible.width();
                        lindenreed::device::facts().height = divisible.height();
                        QTest::mouseClick(running.window, Qt::LeftButton, {}, at);
                        lindenreed::device::facts().width = screen.width();
                        lindenreed::device::facts().height = screen.height();

                        const bool left = zone == Corner;
                        QCOMPARE(app.currentView(), left ? u"playlists"_s : u"slideshow"_s);
                        if (left)
                            return;
                        const int step = lightPanel || zone == Middle ? 0 : zone == Left ? -1 : 1;
                        const qsizetype count = m_test->paths.size();
                        QCOMPARE(running.slideshow()->currentImage(),
                                 m_test->paths.at((step + count) % count));
                        QCOMPARE(is("frontlight_opened"), false);
                        QCOMPARE(is("menu_opened"), zone == Middle && !lightPanel);
                        if (zone != Middle && lightPanel)
                            QCOMPARE(m_test->calls(), QByteArray()); // it closes, and nothing else
                        else if (zone == Middle)
                            QCOMPARE(m_test->device.calls({"SetAutoPowerOff"}).value(0).arguments,
                                     QByteArrayList{lightPanel ? "0" : "1"});
                    }),
             0);
}

PANEL_TEST_MAIN(tst_ShowZones)
#include "tst_show_zones.moc"
