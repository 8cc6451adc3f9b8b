// The light panel over the show: what it is made of, how high it is, and that touches end at it.

#include "accessible_items.h"
#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <datastorage.h>
#include <device.h>

#include <QQmlComponent>
#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::picture_stand::App;

namespace {

constexpr QSize screen(758, 1024);

int dp(double design)
{
    return qRound(design * 0.53 * 212 / 160);
}

QQuickItem *panel(const RunningApp &running)
{
    return running.screen()->childItems().last();
}

QQuickItem *descendant(QQuickItem *item, const char *property)
{
    if (item->metaObject()->indexOfProperty(property) >= 0)
        return item;
    for (QQuickItem *child : item->childItems()) {
        if (QQuickItem *found = descendant(child, property))
            return found;
    }
    return nullptr;
}

QQuickItem *control(const RunningApp &running)
{
    return descendant(panel(running), "frontlight_enabled");
}

} // namespace

class tst_ShowLightPanel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init();
    void cleanup() { m_test.reset(); }

    void lightOff();
    void lightOn();
    void lightChangesWhileOpen();
    void readsTheLightAgain();
    void touchesEndHere_data();
    void touchesEndHere();
    void swipeOverThePicture();
    void atOnce();
    void keys();
    void keysUnderAMenu();
    void interface();

private:
    /// Calls `body` in a show with the panel open.
    void withPanel(const std::function<void(RunningApp &)> &body);

    std::unique_ptr<AppFixture> m_test;
};

void tst_ShowLightPanel::init()
{
    m_test = std::make_unique<AppFixture>();
    DataStorage::instance();
    QVERIFY(stored_database::execute({u"UPDATE settings SET value = '0' WHERE name LIKE 'frontlight%'"_s}));
}

void tst_ShowLightPanel::withPanel(const std::function<void(RunningApp &)> &body)
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        QTRY_COMPARE(running.screen()->size().toSize(), screen);
                        QVERIFY(!panel(running)->isVisible());
                        pressByAccessibility(running.screen());
                        pressByAccessibility(
                            findAccessible(running.screen(), QAccessible::Button, u"Frontlight"_s));
                        QVERIFY(panel(running)->isVisible());
                        body(running);
                    }),
             0);
}

void tst_ShowLightPanel::lightOff()
{
    withPanel([](RunningApp &running) {
        // The frame's own light, which was never on.
        const QRect place = sceneRectangle(panel(running));
        QCOMPARE(place, QRect(0, screen.height() - place.height(), screen.width(), place.height()));
        QCOMPARE(place.height(), int(control(running)->implicitHeight()));
        const QRect inner = sceneRectangle(control(running));
        QCOMPARE(inner.bottom(), screen.height() - 1);
        QCOMPARE(inner.left(), 34); // the content line less the rows' own frame
        QCOMPARE(screen.width() - 1 - inner.right(), 34);
        QCOMPARE(control(running)->property("bottomPadding").toInt(), dp(39));
        QVERIFY(!findAccessible(panel(running), QAccessible::StaticText,
                                u"Note that the frontlight drains the battery faster"_s));
    });
}

void tst_ShowLightPanel::lightOn()
{
    withPanel([](RunningApp &running) {
        Device::instance()->light.setEnabled(true);
        QQuickItem *note = findAccessible(panel(running), QAccessible::StaticText,
                                          u"Note that the frontlight drains the battery faster"_s);
        QVERIFY(note);
        QQuickItem *footer = note->parentItem()->parentItem();
        const QRect place = sceneRectangle(footer);
        QCOMPARE(place.height(), int(note->height()) + 2 * dp(32));
        QCOMPARE(place, QRect(0, screen.height() - place.height(), screen.width(), place.height()));
        QCOMPARE(footer->property("color").value<QColor>(), QColor(0xc3, 0xc3, 0xc3));
        QCOMPARE(sceneRectangle(control(running)).bottom() + 1, place.top());
        QCOMPARE(int(panel(running)->height()), int(control(running)->implicitHeight()) + place.height());

        QQuickItem *sign = descendant(footer, "fillMode");
        QCOMPARE(sign->property("source").toUrl(), QUrl(u"image://resource/battery_warning"_s));
        QCOMPARE(sceneRectangle(sign).left(), dp(88.5));
        QVERIFY(std::abs(sceneRectangle(sign).center().y() - place.center().y()) <= 1);
        QVERIFY(sceneRectangle(note).left() > sceneRectangle(sign).right());
        QCOMPARE(screen.width() - 1 - sceneRectangle(note).right(), dp(44));
        QCOMPARE(sceneRectangle(note).top(), place.top() + dp(32));
        QCOMPARE(note->property("truncated").toBool(), false);
        QCOMPARE(note->property("lineCount").toInt(), 2);
    });
}

void tst_ShowLightPanel::lightChangesWhileOpen()
{
    withPanel([](RunningApp &running) {
        const double dark = panel(running)->height();
        Device::instance()->light.setEnabled(true);
        const double bright = panel(running)->height();
        QVERIFY(bright > dark);
        QCOMPARE(panel(running)->y() + bright, screen.height());
        Device::instance()->light.setEnabled(false);
        QCOMPARE(panel(running)->height(), dark);
        QCOMPARE(panel(running)->y() + dark, screen.height());
    });
}

void tst_ShowLightPanel::readsTheLightAgain()
{
    withPanel([](RunningApp &running) {
        // To read again is to tell everybody who shows the light.
        QQmlComponent component(qmlEngine(running.window));
        component.setData("import QtQuick\nimport com.lindenreed.controls\n"
                          "Item { id: counter; property int readings: 0\n"
                          "Connections { target: LightState; function onChanged() { ++counter.readings } } }",
                          QUrl(u"qrc:/counter.qml"_s));
        const std::unique_ptr<QObject> counter(component.create());
        QVERIFY2(counter, qPrintable(component.errorString()));
        QTest::mouseClick(running.window, Qt::LeftButton, {}, QPoint(379, 20));
        QVERIFY(!panel(running)->isVisible());
        QCOMPARE(counter->property("readings").toInt(), 1);
        running.screen()->setProperty("frontlight_opened", true);
        QCOMPARE(counter->property("readings").toInt(), 2);
    });
}

void tst_ShowLightPanel::touchesEndHere_data()
{
    QTest::addColumn<QPoint>("at");

    // Left, right, and in the middle, where there is nothing to touch; and in the footer.
    QTest::newRow("left edge") << QPoint(3, 700);
    QTest::newRow("right edge") << QPoint(755, 700);
    QTest::newRow("middle of a row") << QPoint(350, 645);
    QTest::newRow("below the rows") << QPoint(379, 893);
    QTest::newRow("the warning") << QPoint(379, 970);
    QTest::newRow("lower left corner") << QPoint(0, 1023);
}

void tst_ShowLightPanel::touchesEndHere()
{
    QFETCH(QPoint, at);

    withPanel([&](RunningApp &running) {
        Device::instance()->light.setEnabled(true);
        QVERIFY(sceneRectangle(panel(running)).contains(at));
        Device::instance()->light.setBrightnessAuto(true); // nothing on the panel moves
        m_test->device.forgetCalls();
        QSignalSpy changed(running.slideshow(),
                           &lindenreed::picture_stand::SlideshowModel::current_imageChanged);
        QTest::mouseClick(running.window, Qt::LeftButton, {}, at);
        QTest::mousePress(running.window, Qt::LeftButton, {}, at);
        QTest::mouseMove(running.window, QPoint(379, 500));
        QTest::mouseMove(running.window, QPoint(300, 300));
        QTest::mouseRelease(running.window, Qt::LeftButton, {}, QPoint(300, 300));
        QVERIFY(changed.isEmpty());
        QVERIFY(panel(running)->isVisible());
        QVERIFY(!running.screen()->property("menu_opened").toBool());
        QCOMPARE(m_test->calls(), QByteArray());
    });
}

void tst_ShowLightPanel::swipeOverThePicture()
{
    // A swipe steps, whatever lies over the picture elsewhere.
    withPanel([this](RunningApp &running) {
        QTest::mousePress(running.window, Qt::LeftButton, {}, QPoint(600, 300));
        QTest::mouseMove(running.window, QPoint(300, 310));
        QTest::mouseRelease(running.window, Qt::LeftButton, {}, QPoint(300, 310));
        QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(1));
        QVERIFY(panel(running)->isVisible());
        QVERIFY(!m_test->device.fire("nextImageEvent")); // and paused it stays
    });
}

void tst_ShowLightPanel::atOnce()
{
    // Nothing is stored until the show is left; the device has the light at once.
    withPanel([](RunningApp &running) {
        const auto stored = [] {
            return stored_database::rows(
                u"SELECT value FROM settings WHERE name = 'frontlight_brightness'"_s);
        };
        Device::instance()->light.setEnabled(true);
        QQuickItem *slider = findAccessible(panel(running), QAccessible::Slider);
        QVERIFY(actByAccessibility(slider, QAccessibleActionInterface::increaseAction()));
        QCOMPARE(Device::instance()->light.brightness(), 5);
        QCOMPARE(stored(), QStringList{u"0"_s});
        running.app.changeView(u"playlists"_s);
        QCOMPARE(stored(), QStringList{u"5"_s});
    });
}

void tst_ShowLightPanel::keys()
{
    withPanel([this](RunningApp &running) {
        QTest::keyClick(running.window, Qt::Key_Return); // the switch is the first
        QVERIFY(Device::instance()->light.enabled());
        QTest::keyClick(running.window, Qt::Key_Down);
        QTest::keyClick(running.window, Qt::Key_Right);
        QCOMPARE(Device::instance()->light.brightness(), 5);
        m_test->device.forgetCalls();
        QTest::keyClick(running.window, Qt::Key_Back);
        QVERIFY(!panel(running)->isVisible());
        QCOMPARE(m_test->device.calls({"SetAutoPowerOff"}).size(), 1); // as a tap on the picture
        QVERIFY(running.screen()->hasActiveFocus()); // and no key works on what nobody sees
    });
}

void tst_ShowLightPanel::keysUnderAMenu()
{
    withPanel([](RunningApp &running) {
        emit running.slideshow()->openCloseMenu(); // the menu key
        emit running.slideshow()->openCloseMenu();
        QVERIFY(panel(running)->isVisible());
        QTest::keyClick(running.window, Qt::Key_Return); // the switch again
        QVERIFY(Device::instance()->light.enabled());
    });
}

void tst_ShowLightPanel::interface()
{
    withPanel([](RunningApp &running) {
        QCOMPARE(panel(running)->property("title").toString(), QString());
        const QMetaObject *type = panel(running)->metaObject();
        QVERIFY(type->indexOfSignal("changeView(QString)") >= 0);
        QVERIFY(type->indexOfSignal("back()") >= 0);
        const QMetaObject *screenType = running.screen()->metaObject();
        for (const char *property : {"menu_opened", "frontlight_opened", "title", "backView", "test_w"})
            QVERIFY2(screenType->indexOfProperty(property) >= 0, property);
        for (const char *signal : {"changeView(QString)", "back()"})
            QVERIFY2(screenType->indexOfSignal(signal) >= 0, signal);
    });
}

PANEL_TEST_MAIN(tst_ShowLightPanel)
#include "tst_show_light_panel.moc"
