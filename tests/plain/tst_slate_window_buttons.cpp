// The buttons beside the device on the desk: where they are, how they look, what clicks and keys make of
// them.

#include "asked_buttons.h"
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

class tst_SlateWindowButtons : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_buttons = std::make_unique<AskedButtons>(); }
    void cleanup();

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
    QPoint middle(DeviceButton button) const
    {
        return m_view->layout().strip().buttonRectangle(button).center();
    }

    std::unique_ptr<AskedButtons> m_buttons;
    QTemporaryDir m_folder;
    std::unique_ptr<PanelWriter> m_writer;
    std::unique_ptr<DeviceView> m_view;
};

void tst_SlateWindowButtons::cleanup()
{
    m_view.reset();
    m_writer.reset();
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
    m_buttons->setState(buttonsState(false, false, true, false, 0));
    QCOMPARE(brightest(DeviceButton::Light, {}), 0xe4);
    m_buttons->refuse(u"light"_s, u"not-supported"_s, u"There is no light."_s);
    QCOMPARE(brightest(DeviceButton::Light, {}), 0x4c);
    QCOMPARE(brightest(DeviceButton::Light, DeviceButton::Light), 0x4c);
}

void tst_SlateWindowButtons::click()
{
    show();
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(DeviceButton::Invert));
    QCOMPARE(m_buttons->lastRequest(), u"invert on=true"_s);
}

void tst_SlateWindowButtons::leftBeforeRelease()
{
    show();
    const qsizetype before = m_buttons->requests.count();
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, middle(DeviceButton::Invert));
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, middle(DeviceButton::Light));
    QCOMPARE(m_buttons->requests.count(), before);
}

void tst_SlateWindowButtons::controlKeys()
{
    show();
    QStringList asked;
    for (const Qt::Key key : {Qt::Key_D, Qt::Key_U, Qt::Key_T, Qt::Key_L, Qt::Key_I, Qt::Key_S, Qt::Key_R}) {
        QTest::keyClick(m_view.get(), key, Qt::ControlModifier);
        asked.append(m_buttons->requests.constLast().at(0).toString());
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
    m_buttons->setState(buttonsState(true, false, false, false, 0));
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
    QCOMPARE(m_buttons->lastRequest(), u"card in=false"_s);
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
