// The frontlight panel on a device whose light has a colour.

#include <device.h>
#include <journal.h>

#include "accessible_items.h"
#include "panel_application.h"
#include "qml_scene.h"

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsLight : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void showsTheLight();
    void followsTheDevice();
    void onAndOff();
    void switchesOfTheAutomatic_data();
    void switchesOfTheAutomatic();
    void draggedKnob();
    void tappedRail_data();
    void tappedRail();
    void steps_data();
    void steps();
    void asleepWhileOff();
    void asleepWhileAutomatic();
    void heightAndPadding();
    void railAndKnob();

private:
    QQuickItem *slider(int at) const; ///< 0: brightness, 1: colour
    QQuickItem *toggle(int at) const; ///< 0: light, 1: brightness by itself, 2: colour by itself
    QPoint knob(int at) const;
    void tap(const QPoint &point);

    std::unique_ptr<QmlScene> m_scene;
};

namespace {

Light &light()
{
    return Device::instance()->light;
}

void collect(QQuickItem *item, QAccessible::Role role, QList<QQuickItem *> &found)
{
    QAccessibleInterface *interface = item->isVisible() ? accessible(item) : nullptr;
    if (interface && interface->role() == role)
        found.append(item);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children)
        collect(child, role, found);
}

QQuickItem *nth(QQuickItem *root, QAccessible::Role role, int at)
{
    QList<QQuickItem *> found;
    collect(root, role, found);
    return found.value(at);
}

int valueOf(QQuickItem *slider)
{
    return accessible(slider)->valueInterface()->currentValue().toInt();
}

int darkest(const QImage &picture)
{
    int found = 255;
    for (int y = 0; y < picture.height(); ++y)
        found = std::min<int>(
            found, *std::min_element(picture.constScanLine(y), picture.constScanLine(y) + picture.width()));
    return found;
}

} // namespace

void tst_ControlsLight::init()
{
    light().reset();
    journal::forget();
    m_scene = std::make_unique<QmlScene>(
        "import QtQuick\nimport com.lindenreed.controls 1.0\nItem { Frontlight { objectName: 'panel'\n"
        "x: 48; width: parent.width - 96; bottomPadding: 44 } }",
        QSize(1072, 1000));
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

void tst_ControlsLight::cleanup()
{
    const QStringList warnings = m_scene->warnings();
    m_scene.reset();
    light().reset();
    QCOMPARE(warnings, QStringList());
    QVERIFY2(journal::entries().isEmpty(), "the device acts by itself, the application asked for nothing");
}

QQuickItem *tst_ControlsLight::slider(int at) const
{
    return nth(m_scene->root(), QAccessible::Slider, at);
}

QQuickItem *tst_ControlsLight::toggle(int at) const
{
    return nth(m_scene->root(), QAccessible::CheckBox, at);
}

QPoint tst_ControlsLight::knob(int at) const
{
    // The rail runs between the two signs' targets; the knob is 56 wide.
    const QRect row = sceneRectangle(slider(at));
    const double left = row.left() + 12 + 72 + 112 + 28;
    const double right = row.right() + 1 - 12 - 84 - 28;
    return QPoint(qRound(left + (right - left) * valueOf(slider(at)) / 100), row.center().y());
}

void tst_ControlsLight::tap(const QPoint &point)
{
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, point);
}

void tst_ControlsLight::showsTheLight()
{
    QQuickItem *panel = m_scene->item(u"panel"_s);
    QVERIFY(panel->property("frontlight_enabled").toBool());
    QCOMPARE(valueOf(slider(0)), 40);
    QCOMPARE(valueOf(slider(1)), 50);
    for (int i : {0, 1}) {
        QCOMPARE(accessible(slider(i))->valueInterface()->minimumValue().toInt(), 0);
        QCOMPARE(accessible(slider(i))->valueInterface()->maximumValue().toInt(), 100);
        QVERIFY(!accessibleName(slider(i)).isEmpty());
    }
    QVERIFY(accessibleName(slider(0)) != accessibleName(slider(1)));
    QVERIFY(accessible(toggle(0))->state().checked);
    QVERIFY(!accessible(toggle(1))->state().checked);
    QVERIFY(!accessible(toggle(2))->state().checked);
    QVERIFY(QMetaObject::invokeMethod(panel, "refresh"));
    QCOMPARE(valueOf(slider(0)), 40);
}

void tst_ControlsLight::followsTheDevice()
{
    light().setBrightness(73);
    light().setColour(12);
    light().setColourAuto(true);
    QCOMPARE(valueOf(slider(0)), 73);
    QCOMPARE(valueOf(slider(1)), 12);
    QVERIFY(accessible(toggle(2))->state().checked);
    light().setEnabled(false);
    QVERIFY(!m_scene->item(u"panel"_s)->property("frontlight_enabled").toBool());
}

void tst_ControlsLight::onAndOff()
{
    tap(sceneRectangle(toggle(0)).center());
    QVERIFY(!light().enabled());
    QVERIFY(!m_scene->item(u"panel"_s)->property("frontlight_enabled").toBool());
    QVERIFY(pressByAccessibility(toggle(0)));
    QVERIFY(light().enabled());
    QCOMPARE(light().brightness(), 40); // off and on again loses nothing
}

void tst_ControlsLight::switchesOfTheAutomatic_data()
{
    QTest::addColumn<int>("at");

    QTest::newRow("brightness") << 1;
    QTest::newRow("colour") << 2;
}

void tst_ControlsLight::switchesOfTheAutomatic()
{
    QFETCH(int, at);

    tap(sceneRectangle(toggle(at)).center());
    QCOMPARE(light().brightnessAuto(), at == 1);
    QCOMPARE(light().colourAuto(), at == 2);
    tap(sceneRectangle(toggle(at)).center());
    QVERIFY(!light().brightnessAuto() && !light().colourAuto());
}

void tst_ControlsLight::draggedKnob()
{
    QQuickWindow *window = &m_scene->window();
    const QPoint start = knob(0);
    QList<int> levels;
    connect(&light(), &Light::changed, this, [&levels] { levels.append(light().brightness()); });
    QTest::mousePress(window, Qt::LeftButton, {}, start);
    QCOMPARE(light().brightness(), 40);
    for (int dx = 20; dx <= 200; dx += 20)
        QTest::mouseMove(window, start + QPoint(dx, 0));
    QVERIFY2(levels.size() >= 5, "the light follows while the finger moves");
    QVERIFY(std::is_sorted(levels.begin(), levels.end()));
    QVERIFY(light().brightness() > 60 && light().brightness() < 90);
    QVERIFY2(std::abs(knob(0).x() - start.x() - 200) <= 4, "and the knob stays under it");
    QTest::mouseMove(window, QPoint(1070, start.y()));
    QCOMPARE(light().brightness(), 100);
    QTest::mouseMove(window, QPoint(2, start.y()));
    QCOMPARE(light().brightness(), 0);
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(2, start.y()));
    QCOMPARE(light().colour(), 50);
    disconnect(&light(), nullptr, this, nullptr);
}

void tst_ControlsLight::tappedRail_data()
{
    QTest::addColumn<int>("at");
    QTest::addColumn<int>("level");

    QTest::newRow("a quarter of the light") << 0 << 25;
    QTest::newRow("full light") << 0 << 100;
    QTest::newRow("coldest") << 1 << 0;
    QTest::newRow("warm") << 1 << 80;
}

void tst_ControlsLight::tappedRail()
{
    QFETCH(int, at);
    QFETCH(int, level);

    const QPoint now = knob(at);
    (at == 0 ? light().setBrightness(level) : light().setColour(level));
    const QPoint wanted = knob(at);
    light().reset();
    QCOMPARE(knob(at), now);
    tap(wanted);
    QCOMPARE(at == 0 ? light().brightness() : light().colour(), level);
    QCOMPARE(at == 0 ? light().colour() : light().brightness(), at == 0 ? 50 : 40);
}

void tst_ControlsLight::steps_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("signs") << u"signs"_s;
    QTest::newRow("keys") << u"keys"_s;
    QTest::newRow("assistive input") << u"actions"_s;
}

void tst_ControlsLight::steps()
{
    QFETCH(QString, how);

    const auto step = [&](bool up) {
        const QRect row = sceneRectangle(slider(0));
        if (how == u"signs") {
            tap(QPoint(up ? row.right() - 40 : row.left() + 12 + 72 + 56, row.center().y()));
        } else if (how == u"keys") {
            slider(0)->forceActiveFocus();
            QTest::keyClick(&m_scene->window(), up ? Qt::Key_Right : Qt::Key_Left);
        } else {
            QVERIFY(actByAccessibility(slider(0),
                                       up ? QAccessibleActionInterface::increaseAction()
                                          : QAccessibleActionInterface::decreaseAction()));
        }
    };
    step(true);
    QCOMPARE(light().brightness(), 45);
    step(false);
    step(false);
    QCOMPARE(light().brightness(), 35);
    light().setBrightness(98);
    step(true);
    QCOMPARE(light().brightness(), 100);
    step(true);
    QCOMPARE(light().brightness(), 100);
    light().setBrightness(3);
    step(false);
    QCOMPARE(light().brightness(), 0);
    QCOMPARE(light().colour(), 50);
}

void tst_ControlsLight::asleepWhileOff()
{
    light().setEnabled(false);
    tap(knob(0) + QPoint(100, 0));
    tap(sceneRectangle(toggle(1)).center());
    actByAccessibility(slider(1), QAccessibleActionInterface::increaseAction());
    QCOMPARE(light().brightness(), 40);
    QCOMPARE(light().colour(), 50);
    QVERIFY(!light().brightnessAuto());
    const QImage row = m_scene->picture(u"panel"_s).copy(sceneRectangle(slider(0)).translated(-48, 0));
    QCOMPARE(darkest(row), 0xAA);
}

void tst_ControlsLight::asleepWhileAutomatic()
{
    light().setBrightnessAuto(true);
    QVERIFY(!slider(0)->isEnabled());
    QVERIFY(slider(1)->isEnabled());
    QVERIFY(toggle(1)->isEnabled());
    light().setColourAuto(true);
    QVERIFY(!slider(1)->isEnabled());
    QVERIFY(pressByAccessibility(toggle(1)));
    QVERIFY(slider(0)->isEnabled());
}

void tst_ControlsLight::heightAndPadding()
{
    QQuickItem *panel = m_scene->item(u"panel"_s);
    QCOMPARE(panel->implicitHeight(), 3 * 120.0 + 2 * 144 + 44);
    QCOMPARE(panel->height(), panel->implicitHeight());
    panel->setProperty("bottomPadding", 0);
    QCOMPARE(panel->implicitHeight(), 3 * 120.0 + 2 * 144);
    light().setEnabled(false); // off, it stays as high
    QCOMPARE(panel->implicitHeight(), 3 * 120.0 + 2 * 144);
}

void tst_ControlsLight::railAndKnob()
{
    const QRect row = sceneRectangle(slider(0));
    const QPoint middle = knob(0);
    const QImage window = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    const auto grey = [&](int x, int y) { return int(window.constScanLine(y)[x]); };
    for (int y : {0, 28 - 4}) {
        QCOMPARE(grey(middle.x(), row.top() + 72 + y), y == 0 ? 255 : 0); // white, its line black
        QCOMPARE(grey(middle.x(), row.top() + 71 - y), y == 0 ? 255 : 0);
    }
    QCOMPARE(grey(middle.x(), row.top() + 72 + 30), 255);
    QCOMPARE(grey(middle.x() - 60, row.top() + 72), 0);
    QCOMPARE(grey(middle.x() + 60, row.top() + 72), 0xAA);
    QCOMPARE(grey(middle.x() + 60, row.top() + 72 + 5), 255);
    QCOMPARE(grey(middle.x() + 60, row.top() + 72 - 6), 255);
    const QImage sign = window.copy(QRect(row.left() + 12, row.top() + 36, 72, 72));
    QVERIFY(std::any_of(sign.constBits(), sign.constBits() + sign.sizeInBytes(),
                        [](uchar pixel) { return pixel == 0; }));
}

PANEL_TEST_MAIN_WITH_RECORD(tst_ControlsLight, R"({"profile": "grey-8"})")
#include "tst_controls_light.moc"
