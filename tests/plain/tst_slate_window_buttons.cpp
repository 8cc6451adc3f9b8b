// The buttons beside the device on the desk: what they mean, where they are, what they say.

#include "panel_file.h"
#include "slate_window_accessible.h"
#include "slate_window_view.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

QJsonObject state(bool card, bool usb, bool light, bool inverted, int orientation)
{
    return {{u"media"_s, QJsonObject{{u"sd"_s, card}, {u"usb"_s, usb}}},
            {u"light"_s, QJsonObject{{u"enabled"_s, light}}},
            {u"screen"_s, QJsonObject{{u"inverted"_s, inverted}, {u"orientation"_s, orientation}}}};
}

} // namespace

class tst_SlateWindowButtons : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void asksWhatTheDeviceHas();
    void commands_data();
    void commands();
    void turnsOn();
    void turnThatIsDeclined();
    void sleepingShows();
    void profileWithoutLight();
    void deviceThatKnowsNoCard();
    void refusedOnce();
    void nothingWithoutDevice();

    void divisor_data();
    void divisor();
    void stripBesideTheBody();
    void stripShrinksToAPoint();
    void brightness();

    void click();
    void leftBeforeRelease();
    void controlKeys();
    void tips();
    void noteIsShown();
    void accessible();

private:
    void show();
    QString lastAsked() const;
    QPoint middle(DeviceButton button) const
    {
        return m_view->layout().strip().buttonRectangle(button).center();
    }

    std::unique_ptr<ButtonStates> m_buttons;
    std::unique_ptr<QSignalSpy> m_asked;
    std::unique_ptr<QSignalSpy> m_notes;
    QTemporaryDir m_folder;
    std::unique_ptr<PanelWriter> m_writer;
    std::unique_ptr<DeviceView> m_view;
};

void tst_SlateWindowButtons::init()
{
    m_buttons = std::make_unique<ButtonStates>();
    m_asked = std::make_unique<QSignalSpy>(m_buttons.get(), &ButtonStates::asked);
    m_notes = std::make_unique<QSignalSpy>(m_buttons.get(), &ButtonStates::note);
    m_buttons->deviceCame();
}

void tst_SlateWindowButtons::cleanup()
{
    m_view.reset();
    m_writer.reset();
    m_asked.reset();
    m_notes.reset();
    m_buttons.reset();
}

void tst_SlateWindowButtons::show()
{
    m_writer = PanelWriter::create({.size = {300, 400}}, m_folder.filePath(u"panel"_s), nullptr);
    QVERIFY(m_writer);
    m_view = std::make_unique<DeviceView>(m_folder.filePath(u"panel"_s), m_buttons.get());
    QSignalSpy ready(m_view.get(), &DeviceView::ready);
    m_view->readSoon();
    QVERIFY(ready.wait());
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

QString tst_SlateWindowButtons::lastAsked() const
{
    const QJsonObject members = m_asked->constLast().at(1).toJsonObject();
    QString line = m_asked->constLast().at(0).toString();
    for (auto member = members.constBegin(); member != members.constEnd(); ++member)
        line += u' ' + member.key() + u'=' + member.value().toVariant().toString();
    return line;
}

void tst_SlateWindowButtons::asksWhatTheDeviceHas()
{
    QCOMPARE(m_asked->count(), 2);
    QCOMPARE(m_asked->at(0).at(0), u"state"_s);
    QCOMPARE(m_asked->at(1).at(0), u"light"_s);
    QVERIFY(m_asked->at(1).at(1).toJsonObject().isEmpty()); // it changes nothing
}

void tst_SlateWindowButtons::commands_data()
{
    QTest::addColumn<DeviceButton>("button");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second"); ///< where it is on

    QTest::newRow("card") << DeviceButton::Card << u"card in=true"_s << u"card in=false"_s;
    QTest::newRow("USB") << DeviceButton::Usb << u"usb in=true"_s << u"usb in=false"_s;
    QTest::newRow("light") << DeviceButton::Light << u"light enabled=true"_s << u"light enabled=false"_s;
    QTest::newRow("invert") << DeviceButton::Invert << u"invert on=true"_s << u"invert on=false"_s;
    QTest::newRow("sleep") << DeviceButton::Sleep << u"background"_s << u"background"_s;
    QTest::newRow("wake") << DeviceButton::Wake << u"foreground"_s << u"foreground"_s;
}

void tst_SlateWindowButtons::commands()
{
    QFETCH(DeviceButton, button);
    QFETCH(QString, first);
    QFETCH(QString, second);

    m_buttons->setState(state(false, false, false, false, 0));
    QVERIFY(!m_buttons->isOn(button));
    const QString name = m_buttons->name(button);
    m_buttons->press(button);
    QCOMPARE(lastAsked(), first);
    m_buttons->setState(state(true, true, true, true, 0));
    QCOMPARE(m_buttons->isOn(button), first != second);
    QCOMPARE(m_buttons->name(button) != name, first != second); // says what the next press does
    m_buttons->press(button);
    QCOMPARE(lastAsked(), second);
}

void tst_SlateWindowButtons::turnsOn()
{
    int orientation = 0;
    QStringList asked;
    for (int i = 0; i < 5; ++i) {
        m_buttons->setState(state(false, false, false, false, orientation));
        m_buttons->press(DeviceButton::Turn);
        asked.append(lastAsked());
        orientation = m_asked->constLast().at(1).toJsonObject().value("value"_L1).toInt();
    }
    QCOMPARE(asked,
             (QStringList{u"orientation value=1"_s, u"orientation value=3"_s, u"orientation value=2"_s,
                          u"orientation value=0"_s, u"orientation value=1"_s}));
}

void tst_SlateWindowButtons::turnThatIsDeclined()
{
    // A device that does not go upside down stays sideways; the next press goes on from there.
    m_buttons->setState(state(false, false, false, false, 1));
    m_buttons->press(DeviceButton::Turn);
    QCOMPARE(lastAsked(), u"orientation value=3"_s);
    m_buttons->setState(state(false, false, false, false, 1));
    m_buttons->press(DeviceButton::Turn);
    QCOMPARE(lastAsked(), u"orientation value=2"_s);
}

void tst_SlateWindowButtons::sleepingShows()
{
    QVERIFY(!m_buttons->isOn(DeviceButton::Sleep));
    m_buttons->setState({{u"task"_s, QJsonObject{{u"foreground"_s, false}}}});
    QVERIFY(m_buttons->isOn(DeviceButton::Sleep));
    QVERIFY(!m_buttons->isOn(DeviceButton::Wake));
    m_buttons->setState({{u"task"_s, QJsonObject{{u"foreground"_s, true}}}});
    QVERIFY(!m_buttons->isOn(DeviceButton::Sleep));
}

void tst_SlateWindowButtons::profileWithoutLight()
{
    m_buttons->setState(state(false, false, true, false, 0));
    QVERIFY(m_buttons->isAvailable(DeviceButton::Light));
    m_buttons->refuse(u"light"_s, u"not-supported"_s, u"There is no light."_s);
    QVERIFY(!m_buttons->isAvailable(DeviceButton::Light));
    QVERIFY(!m_buttons->isOn(DeviceButton::Light));
    QVERIFY(m_buttons->isAvailable(DeviceButton::Card));
    QCOMPARE(m_buttons->tip(DeviceButton::Light), u"There is no light."_s);
    QCOMPARE(m_notes->count(), 0); // nobody has pressed it yet
    const qsizetype before = m_asked->count();
    m_buttons->press(DeviceButton::Light);
    QCOMPARE(m_asked->count(), before);
    QCOMPARE(m_notes->count(), 1);
    m_buttons->deviceCame(); // another device may have one
    QVERIFY(m_buttons->isAvailable(DeviceButton::Light));
}

void tst_SlateWindowButtons::deviceThatKnowsNoCard()
{
    m_buttons->press(DeviceButton::Card);
    m_buttons->refuse(u"card"_s, u"unknown-command"_s, u"There is no command card."_s);
    QVERIFY(!m_buttons->isAvailable(DeviceButton::Card));
    QCOMPARE(m_notes->count(), 1);
    QCOMPARE(m_notes->at(0).at(0), u"There is no command card."_s);
}

void tst_SlateWindowButtons::refusedOnce()
{
    m_buttons->press(DeviceButton::Usb);
    m_buttons->refuse(u"usb"_s, u"not-possible"_s, u"The drive is in use."_s);
    QVERIFY(m_buttons->isAvailable(DeviceButton::Usb));
    QCOMPARE(m_notes->count(), 1);
    QCOMPARE(m_notes->at(0).at(0), u"The drive is in use."_s);
}

void tst_SlateWindowButtons::nothingWithoutDevice()
{
    m_buttons->deviceWent();
    const qsizetype before = m_asked->count();
    for (const DeviceButton button : deviceButtons) {
        QVERIFY(!m_buttons->isAvailable(button));
        m_buttons->press(button);
    }
    QCOMPARE(m_asked->count(), before);
}

void tst_SlateWindowButtons::divisor_data()
{
    QTest::addColumn<QSize>("panel");
    QTest::addColumn<QSize>("room");
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("most");

    const auto row = [](const char *name, QSize panel, QSize room, double least, double most) {
        QTest::newRow(name) << panel << room << least << most;
    };
    row("all the room", {758, 1024}, {4000, 4000}, 1, 1);
    row("exactly the room", {758, 1024}, {870 + 16 + 72, 1212}, 1, 1);
    row("a little too low: nearly as large", {758, 1024}, {1920, 1211}, 1.001, 1.01);
    row("six inches on a desktop screen: a half would waste it", {758, 1024}, {1920, 1040}, 1.16, 1.19);
    row("eight inches on a desktop screen", {1404, 1872}, {1920, 1040}, 2, 2);
    row("eight inches on a small screen", {1404, 1872}, {1366, 728}, 3, 3);
    row("no room at all", {1404, 1872}, {0, 0}, 8, 8);
}

void tst_SlateWindowButtons::divisor()
{
    QFETCH(QSize, panel);
    QFETCH(QSize, room);
    QFETCH(double, least);
    QFETCH(double, most);

    const double divisor = WindowLayout::divisorFor(panel, room);
    QVERIFY2(divisor >= least && divisor <= most, qPrintable(QString::number(divisor)));
    const QSize size = WindowLayout(panel, divisor).size();
    QVERIFY(room.isEmpty() || (size.width() <= room.width() && size.height() <= room.height()));
}

void tst_SlateWindowButtons::stripBesideTheBody()
{
    const WindowLayout layout({758, 1024});
    const QRect plate = layout.strip().plate();
    QCOMPARE(plate.topLeft(), QPoint(870 + 16, 56));
    QCOMPARE(plate.width(), 72);
    QCOMPARE(layout.size(), QSize(870 + 16 + 72, 1212));
    QRegion buttons;
    for (const DeviceButton button : deviceButtons) {
        const QRect rectangle = layout.strip().buttonRectangle(button);
        QVERIFY(plate.contains(rectangle));
        QVERIFY(!buttons.intersects(rectangle));
        buttons += rectangle;
        QVERIFY(layout.strip().buttonAt(rectangle.center()) == button);
    }
    QVERIFY(!layout.strip().buttonAt(plate.topLeft()));
    QVERIFY(!layout.strip().buttonAt(layout.body().panel().center()));
    QVERIFY(!layout.outline().contains(QPoint(870 + 8, 100))); // the desk shows between them
    QVERIFY(layout.outline().contains(plate.center()));
}

void tst_SlateWindowButtons::stripShrinksToAPoint()
{
    const auto width = [](double divisor, double ratio) {
        return WindowLayout({1404, 1872}, divisor, ratio).strip().plate().width();
    };
    QCOMPARE(width(1.5, 1), 48);
    QCOMPARE(width(2, 1), 36);
    QCOMPARE(width(8, 1), 36); // a mouse still finds it
    QCOMPARE(width(2, 2), 72); // on a display with twice the pixels as well
}

void tst_SlateWindowButtons::brightness()
{
    const WindowLayout layout({300, 400});
    const auto brightest = [&](DeviceButton button, std::optional<DeviceButton> pressed) {
        QImage picture(layout.size(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        layout.strip().paint(&painter, *m_buttons, pressed);
        painter.end();
        const QRect target = layout.strip().buttonRectangle(button);
        int level = 0;
        for (int y = target.top(); y <= target.bottom(); ++y) {
            for (int x = target.left(); x <= target.right(); ++x)
                level = std::max(level, qRed(picture.pixel(x, y)));
        }
        return level;
    };
    for (const DeviceButton button : deviceButtons) {
        QCOMPARE(brightest(button, {}), 0x8a);
        QCOMPARE(brightest(button, button), 0xff);
    }
    m_buttons->setState(state(false, false, true, false, 0));
    QCOMPARE(brightest(DeviceButton::Light, {}), 0xe4);
    m_buttons->refuse(u"light"_s, u"not-supported"_s, u"There is no light."_s);
    QCOMPARE(brightest(DeviceButton::Light, {}), 0x4c);
    QCOMPARE(brightest(DeviceButton::Light, DeviceButton::Light), 0x4c);
}

void tst_SlateWindowButtons::click()
{
    show();
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(DeviceButton::Invert));
    QCOMPARE(lastAsked(), u"invert on=true"_s);
}

void tst_SlateWindowButtons::leftBeforeRelease()
{
    show();
    const qsizetype before = m_asked->count();
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, middle(DeviceButton::Invert));
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, middle(DeviceButton::Light));
    QCOMPARE(m_asked->count(), before);
}

void tst_SlateWindowButtons::controlKeys()
{
    show();
    QStringList asked;
    for (const Qt::Key key : {Qt::Key_D, Qt::Key_U, Qt::Key_T, Qt::Key_L, Qt::Key_I, Qt::Key_S, Qt::Key_R}) {
        QTest::keyClick(m_view.get(), key, Qt::ControlModifier);
        asked.append(m_asked->constLast().at(0).toString());
    }
    QCOMPARE(asked,
             (QStringList{u"card"_s, u"usb"_s, u"orientation"_s, u"light"_s, u"invert"_s, u"background"_s,
                          u"foreground"_s}));
}

void tst_SlateWindowButtons::tips()
{
    show();
    QVERIFY(m_view->tip().isEmpty());
    QTest::mouseMove(m_view.get(), middle(DeviceButton::Card));
    QTRY_COMPARE(m_view->tip(), u"Put the SD card in (Ctrl+D)"_s);
    QTest::mouseMove(m_view.get(), middle(DeviceButton::Sleep));
    QTRY_VERIFY(m_view->tip().startsWith(u"Sleep"_s));
    QTest::mouseMove(m_view.get(), m_view->body().panel().center());
    QTRY_VERIFY(m_view->tip().isEmpty());
}

void tst_SlateWindowButtons::noteIsShown()
{
    show();
    const QImage before = m_view->shown();
    m_buttons->refuse(u"usb"_s, u"not-possible"_s, u"The drive is in use."_s);
    QCOMPARE(m_view->tip(), u"The drive is in use."_s);
    m_view->pressButton(DeviceButton::Invert);
    QVERIFY(m_view->tip().isEmpty());
}

void tst_SlateWindowButtons::accessible()
{
    show();
    m_buttons->setState(state(true, false, false, false, 0));
    QAccessibleInterface *window = QAccessible::queryAccessibleInterface(m_view.get());
    QVERIFY(window);
    QCOMPARE(window->text(QAccessible::Name), u"Picture frame"_s);
    QStringList names;
    for (int i = 0; i < window->childCount(); ++i) {
        QAccessibleInterface *part = window->child(i);
        QVERIFY(part);
        QCOMPARE(part->role(), QAccessible::Button);
        QCOMPARE(part->parent(), window);
        QCOMPARE(window->indexOfChild(part), i);
        QVERIFY(window->rect().contains(part->rect()));
        names.append(part->text(QAccessible::Name));
    }
    QCOMPARE(names,
             (QStringList{u"Previous"_s, u"Menu"_s, u"Next"_s, u"Take the SD card out"_s,
                          u"Put the USB drive in"_s, u"Turn the device"_s, u"Switch the light on"_s,
                          u"White on black"_s, u"Sleep: to the background"_s, u"Wake: to the front"_s}));
    QVERIFY(window->child(3)->state().checked);
    QVERIFY(!window->child(4)->state().checked);
    QVERIFY(!window->child(4)->state().disabled);

    QSignalSpy keys(m_view.get(), &DeviceView::asked);
    window->child(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(keys.at(0).at(1).toJsonObject().value("name"_L1), u"next"_s);
    window->child(3)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(lastAsked(), u"card in=false"_s);
    m_buttons->deviceWent();
    QVERIFY(window->child(3)->state().disabled);
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    makeDeviceViewAccessible();
    tst_SlateWindowButtons test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_slate_window_buttons.moc"
