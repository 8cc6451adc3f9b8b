// The buttons with words: the text button and the frame of the footer button.

#include <facts.h>

#include "accessible_items.h"
#include "panel_application.h"
#include "qml_scene.h"

#include <QSignalSpy>

#include <algorithm>
#include <array>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsButtons : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void textButtonSize_data();
    void textButtonSize();
    void narrowTextButton();
    void textButtonActs();
    void textButtonPressed();
    void textButtonDisabled();
    void visiblePartsAreAccepted();
    void footerActs();
    void footerBorders_data();
    void footerBorders();
    void footerHovered();
    void footerDisabled();
    void linesOfADisabledFooter();
    void footerKeepsItsMat();

private:
    void make(const QByteArray &items);
    void makeFooter(const QByteArray &properties = {});
    QQuickItem *button() const { return m_scene->item(u"button"_s); }
    QImage window() { return m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8); }

    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsButtons::make(const QByteArray &items)
{
    m_scene = std::make_unique<QmlScene>("import QtQuick\nimport com.lindenreed.controls 1.0\nItem {\n"
                                         + items + "\n}");
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

void tst_ControlsButtons::makeFooter(const QByteArray &properties)
{
    make(QByteArray(R"(Rectangle { anchors.fill: parent; color: 'gray' }
RoundedCornerButtonContainer {
    id: button
    objectName: 'button'
    anchors { bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
    width: parent.width - 2 * GlobalValues.scrollListCenterButtonSideOffset
    height: GlobalValues.scrollListButtonsHeight
    border { color: GlobalValues.defaultSolidseparatorColor; width: GlobalValues.minimalLineThickness }
    radius: GlobalValues.defaultElementBorderRadius
    visibleBorders: [1, 1, 0, 1]
    Accessible.name: label.text
    @PROPERTIES@
    StyledText {
        id: label
        objectName: 'label'
        anchors.centerIn: parent
        text: 'Play'
        styledFont: FontStyles.Heading5
        color: button.enabled ? (button.hovered ? button.backgroundColor : button.hoveredColor)
                              : GlobalValues.defaultDisabledTextColor
        Accessible.ignored: true
    }
})")
             .replace("@PROPERTIES@", properties));
}

void tst_ControlsButtons::cleanup()
{
    const QStringList warnings = m_scene ? m_scene->warnings() : QStringList();
    m_scene.reset();
    facts().dpi = 212;
    QCOMPARE(warnings, QStringList());
}

void tst_ControlsButtons::textButtonSize_data()
{
    QTest::addColumn<int>("dpi");
    QTest::addColumn<QSize>("least");

    QTest::newRow("212 dpi") << 212 << QSize(226, 79);
    QTest::newRow("300 dpi") << 300 << QSize(320, 112);
}

void tst_ControlsButtons::textButtonSize()
{
    QFETCH(int, dpi);
    QFETCH(QSize, least);

    facts().dpi = dpi;
    make("TextButton { objectName: 'button'; text: 'Go' }\n"
         "TextButton { objectName: 'long'; y: 200; text: 'Start the playback now' }");
    QCOMPARE(button()->size().toSize(), least);
    QQuickItem *wide = m_scene->item(u"long"_s);
    QVERIFY(wide->width() > least.width());
    QCOMPARE(wide->height(), button()->height());
    for (QQuickItem *item : wide->childItems())
        QVERIFY2(!item->property("truncated").toBool(), "there is room for the whole text");
}

void tst_ControlsButtons::narrowTextButton()
{
    make("TextButton { objectName: 'button'; width: 120; text: 'Start the playback now' }");
    bool truncated = false;
    for (QQuickItem *item : button()->childItems()) {
        QVERIFY(item->x() >= 0 && item->x() + item->width() <= 120);
        truncated = truncated || item->property("truncated").toBool();
    }
    QVERIFY(truncated);
}

void tst_ControlsButtons::textButtonActs()
{
    make("TextButton { objectName: 'button'; text: 'Continue' }");
    QSignalSpy action(button(), SIGNAL(action()));
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, QPoint(1, 1)); // the edge belongs to it
    QCOMPARE(action.count(), 1);
    button()->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QTest::keyClick(&m_scene->window(), Qt::Key_Space);
    QCOMPARE(action.count(), 3);
    QCOMPARE(accessible(button())->role(), QAccessible::Button);
    QCOMPARE(accessibleName(button()), u"Continue"_s);
    QVERIFY(pressByAccessibility(button()));
    QCOMPARE(action.count(), 4);
}

void tst_ControlsButtons::textButtonPressed()
{
    make("TextButton { objectName: 'button'; text: 'Continue' }");
    const QImage rest = m_scene->picture(u"button"_s);
    const QPoint inside(20, rest.height() / 2);
    QCOMPARE(rest.pixelColor(0, rest.height() / 2), QColor(Qt::black)); // its line
    QCOMPARE(rest.pixelColor(inside), QColor(Qt::white));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, inside);
    const QImage pressed = m_scene->picture(u"button"_s);
    QCOMPARE(pressed.pixelColor(inside), QColor(Qt::black));
    QVERIFY2(std::any_of(pressed.constScanLine(rest.height() / 2),
                         pressed.constScanLine(rest.height() / 2) + pressed.width(),
                         [](uchar grey) { return grey > 200; }),
             "white letters");
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(400, 400));
    QCOMPARE(m_scene->picture(u"button"_s), rest);
}

void tst_ControlsButtons::textButtonDisabled()
{
    make("TextButton { objectName: 'button'; text: 'Continue'; enabled: false }");
    QSignalSpy action(button(), SIGNAL(action()));
    const QImage rest = m_scene->picture(u"button"_s);
    for (int y = 0; y < rest.height(); ++y) {
        for (int x = 0; x < rest.width(); ++x)
            QVERIFY(rest.constScanLine(y)[x] >= 0xAA);
    }
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    pressByAccessibility(button());
    QCOMPARE(action.count(), 0);
}

void tst_ControlsButtons::visiblePartsAreAccepted()
{
    // On a device with touch there is no frame to draw; a screen says its sides all the same.
    make("TextButton { objectName: 'button'; text: 'Go'; focusElement.visibleParts: [0, 1, 1, 0] }");
    const QImage rest = m_scene->picture(u"button"_s);
    button()->forceActiveFocus();
    QCOMPARE(m_scene->picture(u"button"_s), rest);
}

void tst_ControlsButtons::footerActs()
{
    makeFooter();
    QSignalSpy clicked(button(), SIGNAL(clicked()));
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QCOMPARE(clicked.count(), 1);
    button()->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(clicked.count(), 2);
    QCOMPARE(accessible(button())->role(), QAccessible::Button);
    QCOMPARE(accessibleName(button()), u"Play"_s);
    QVERIFY(pressByAccessibility(button()));
    QCOMPARE(clicked.count(), 3);
}

void tst_ControlsButtons::footerBorders_data()
{
    QTest::addColumn<QByteArray>("borders");
    QTest::addColumn<QByteArray>("sides"); // top, right, bottom, left

    QTest::newRow("none at the foot") << QByteArray("[1, 1, 0, 1]") << QByteArray("1101");
    QTest::newRow("all") << QByteArray("[1, 1, 1, 1]") << QByteArray("1111");
    QTest::newRow("top alone") << QByteArray("[1, 0, 0, 0]") << QByteArray("1000");
    QTest::newRow("left alone") << QByteArray("[0, 0, 0, 1]") << QByteArray("0001");
}

void tst_ControlsButtons::footerBorders()
{
    QFETCH(QByteArray, borders);
    QFETCH(QByteArray, sides);

    make("RoundedCornerButtonContainer { objectName: 'button'; x: 100; y: 100; width: 300; height: 90\n"
         "border.color: 'black'; border.width: 2; radius: 11; visibleBorders: "
         + borders + " }");
    const QImage picture = m_scene->picture(u"button"_s);
    const std::array<QPoint, 4> edges = {QPoint(150, 0), QPoint(299, 45), QPoint(150, 89), QPoint(0, 45)};
    for (std::size_t side = 0; side < edges.size(); ++side)
        QCOMPARE(picture.pixelColor(edges[side]) == QColor(Qt::black), sides[qsizetype(side)] == '1');
    // A side's line runs straight to an edge that has none; between two lines the corner is round.
    if (sides == "1101") {
        QCOMPARE(picture.pixelColor(0, 89), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(299, 89), QColor(Qt::black));
    }
    if (sides != "1000" && sides != "0001")
        QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::white));
}

void tst_ControlsButtons::footerHovered()
{
    makeFooter();
    QVERIFY(!button()->property("hovered").toBool());
    QCOMPARE(button()->property("hoveredColor").value<QColor>(), QColor(Qt::black));
    QCOMPARE(button()->property("backgroundColor").value<QColor>(), QColor(Qt::white));
    const QPoint inside(30, 40);
    QCOMPARE(m_scene->picture(u"button"_s).pixelColor(inside), QColor(Qt::white));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QVERIFY(button()->property("hovered").toBool());
    QCOMPARE(m_scene->picture(u"button"_s).pixelColor(inside), QColor(Qt::black));
    QCOMPARE(m_scene->item(u"label"_s)->property("color").value<QColor>(), QColor(Qt::white));
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QVERIFY(!button()->property("hovered").toBool());
}

void tst_ControlsButtons::footerDisabled()
{
    makeFooter("enabled: false");
    QSignalSpy clicked(button(), SIGNAL(clicked()));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QVERIFY(!button()->property("hovered").toBool());
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    pressByAccessibility(button());
    QCOMPARE(clicked.count(), 0);
}

void tst_ControlsButtons::linesOfADisabledFooter()
{
    make("RoundedCornerButtonContainer { objectName: 'button'; width: 300; height: 90; enabled: false }\n"
         "RoundedCornerButtonContainer { objectName: 'chosen'; y: 200; width: 300; height: 90; enabled: "
         "false\n"
         "border.color: GlobalValues.defaultSolidseparatorColor }");
    QCOMPARE(m_scene->picture(u"button"_s).pixelColor(150, 0), QColor(0xAA, 0xAA, 0xAA));
    QCOMPARE(m_scene->picture(u"chosen"_s).pixelColor(150, 0),
             QColor(0x55, 0x55, 0x55)); // the screen's own colour
    button()->setEnabled(true);
    QCOMPARE(m_scene->picture(u"button"_s).pixelColor(150, 0), QColor(Qt::black));
}

void tst_ControlsButtons::footerKeepsItsMat()
{
    makeFooter();
    const QRect frame = sceneRectangle(button());
    const QImage picture = window();
    const QColor grey = picture.pixelColor(5, 795);
    QVERIFY(grey != QColor(Qt::white));
    for (int distance = 1; distance <= 6; ++distance) { // 8 of the design
        QCOMPARE(picture.pixelColor(frame.left() - distance, 790), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(frame.right() + distance, 790), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(300, frame.top() - distance), QColor(Qt::white));
    }
    QCOMPARE(picture.pixelColor(frame.left() - 7, 790), grey);
    QCOMPARE(picture.pixelColor(300, frame.top() - 7), grey);
}

PANEL_TEST_MAIN(tst_ControlsButtons)

#include "tst_controls_buttons.moc"
