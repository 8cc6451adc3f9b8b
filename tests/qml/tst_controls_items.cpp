// The items of the control set, looked at and touched.

#include <facts.h>

#include "accessible_items.h"
#include "panel_application.h"
#include "qml_scene.h"

#include <QSignalSpy>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsItems : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void buttonSize();
    void tapActsOnce();
    void pressedLook();
    void pressedLookWithoutIconOfItsOwn();
    void dragOutActsNot();
    void disabledButton_data();
    void disabledButton();
    void keysAct_data();
    void keysAct();
    void heldKeyActsOnce();
    void narrowButtonKeepsItsTile();
    void accessibleButton();
    void focusFrameOnlyForKeys();
    void headerMeasures();
    void headerButtonsStandAtTheRight();
    void headerOffset();
    void headerCloses();
    void headerFocusWalks();
    void longTitleIsElided();
    void textIsPlain();
    void textStyle_data();
    void textStyle();
    void textOverridesItsStyle();
    void fixedLinesBringTheirHeight();
    void accessibleText();
    void separatorDots_data();
    void separatorDots();
    void separatorFollowsItsColour();
    void plainItemsAreWhatTheyAreNamedFor();

private:
    std::unique_ptr<QmlScene> make(const QByteArray &items, const QByteArray &version = "1.0");

    std::unique_ptr<QmlScene> m_scene;
};

namespace {

/// The bounding rectangle of everything that is darker than `limit`.
QRect ink(const QImage &picture, int limit = 128)
{
    QRect found;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.constScanLine(y)[x] < limit)
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

} // namespace

void tst_ControlsItems::cleanup()
{
    const QStringList warnings = m_scene ? m_scene->warnings() : QStringList();
    m_scene.reset();
    facts().dpi = 212;
    QCOMPARE(warnings, QStringList());
}

std::unique_ptr<QmlScene> tst_ControlsItems::make(const QByteArray &items, const QByteArray &version)
{
    auto scene = std::make_unique<QmlScene>("import QtQuick\nimport com.lindenreed.controls " + version
                                            + "\nItem {\n" + items + "\n}");
    if (!scene->isShown())
        qWarning("%s", qPrintable(scene->errors()));
    return scene;
}

void tst_ControlsItems::buttonSize()
{
    m_scene = make("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QCOMPARE(m_scene->item(u"button"_s)->size(), QSizeF(96, 79));
    m_scene.reset();
    facts().dpi = 300;
    m_scene = make("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QCOMPARE(m_scene->item(u"button"_s)->size(), QSizeF(136, 112));
    const QRect drawing = ink(m_scene->picture(u"button"_s));
    QVERIFY2(std::abs(drawing.center().x() - 68) <= 1, "the icon stands in the middle");
    QVERIFY(drawing.width() > 54 && drawing.width() < 72);
}

void tst_ControlsItems::tapActsOnce()
{
    m_scene = make("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QSignalSpy action(m_scene->item(u"button"_s), SIGNAL(action()));
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QCOMPARE(action.count(), 1);
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, QPoint(0, 1)); // the edge belongs to it
    QCOMPARE(action.count(), 2);
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, QPoint(96, 40));
    QCOMPARE(action.count(), 2);
}

void tst_ControlsItems::pressedLook()
{
    m_scene = make("BitmapButton { objectName: 'button'; icon: 'image://resource/home'\n"
                   "pressedIcon: 'image://resource/home_inv' }");
    const QImage rest = m_scene->picture(u"button"_s);
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QVERIFY(m_scene->item(u"button"_s)->property("pressed").toBool());
    const QImage pressed = m_scene->picture(u"button"_s);
    const QRect tile = ink(pressed);
    QCOMPARE(tile.size(), QSize(73, 73)); // 104 of the design
    QVERIFY(std::abs(tile.center().x() - rest.width() / 2) <= 1);
    QCOMPARE(pressed.pixelColor(tile.left() + 2, 40), QColor(Qt::black));
    QVERIFY2(pressed != rest, "white drawing on a black tile");
    const QRect drawing = ink(rest);
    // Within the tile every pixel is turned round.
    for (int y = drawing.top(); y <= drawing.bottom(); ++y) {
        for (int x = drawing.left(); x <= drawing.right(); ++x)
            QVERIFY(std::abs(255 - rest.constScanLine(y)[x] - pressed.constScanLine(y)[x]) <= 2);
    }
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QCOMPARE(m_scene->picture(u"button"_s), rest);
}

void tst_ControlsItems::pressedLookWithoutIconOfItsOwn()
{
    m_scene = make("BitmapButton { objectName: 'own'; icon: 'image://resource/home'; pressedIcon: "
                   "'image://resource/home_inv' }\n"
                   "BitmapButton { objectName: 'none'; y: 200; icon: 'image://resource/home' }");
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"own"_s));
    const QImage own = m_scene->picture(u"own"_s);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"own"_s));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"none"_s));
    QCOMPARE(m_scene->picture(u"none"_s), own);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"none"_s));
}

void tst_ControlsItems::dragOutActsNot()
{
    m_scene = make("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QSignalSpy action(m_scene->item(u"button"_s), SIGNAL(action()));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QTest::mouseMove(&m_scene->window(), QPoint(300, 300));
    QVERIFY(!m_scene->item(u"button"_s)->property("pressed").toBool());
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(300, 300));
    QCOMPARE(action.count(), 0);
}

void tst_ControlsItems::disabledButton_data()
{
    QTest::addColumn<QByteArray>("properties");

    QTest::newRow("with an icon for it")
        << QByteArray("enabled: false; disabledIcon: 'image://resource/audio_book_play_disabled'");
    QTest::newRow("without one") << QByteArray("enabled: false");
}

void tst_ControlsItems::disabledButton()
{
    QFETCH(QByteArray, properties);

    m_scene = make("BitmapButton { objectName: 'button'; icon: 'image://resource/audio_book_play'; "
                   + properties + " }");
    QQuickItem *button = m_scene->item(u"button"_s);
    QSignalSpy action(button, SIGNAL(action()));
    const QImage rest = m_scene->picture(u"button"_s);
    int darkest = 255;
    for (int y = 0; y < rest.height(); ++y)
        darkest = std::min<int>(
            darkest, *std::min_element(rest.constScanLine(y), rest.constScanLine(y) + rest.width()));
    QCOMPARE(darkest, 0xAA);
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QCOMPARE(m_scene->picture(u"button"_s), rest);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    pressByAccessibility(button);
    button->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(action.count(), 0);
}

void tst_ControlsItems::keysAct_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("actions");

    QTest::newRow("return") << Qt::Key_Return << 1;
    QTest::newRow("enter") << Qt::Key_Enter << 1;
    QTest::newRow("space") << Qt::Key_Space << 1;
    QTest::newRow("page down is the screen's") << Qt::Key_PageDown << 0;
}

void tst_ControlsItems::keysAct()
{
    QFETCH(Qt::Key, key);
    QFETCH(int, actions);

    m_scene = make("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QSignalSpy action(m_scene->item(u"button"_s), SIGNAL(action()));
    QTest::keyClick(&m_scene->window(), key);
    QCOMPARE(action.count(), 0); // it has not the focus yet
    m_scene->item(u"button"_s)->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), key);
    QCOMPARE(action.count(), actions);
}

void tst_ControlsItems::heldKeyActsOnce()
{
    m_scene = make("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QSignalSpy action(m_scene->item(u"button"_s), SIGNAL(action()));
    m_scene->item(u"button"_s)->forceActiveFocus();
    QTest::keyPress(&m_scene->window(), Qt::Key_Return);
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, {}, {}, true);
    QCoreApplication::sendEvent(&m_scene->window(), &again);
    QTest::keyRelease(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(action.count(), 1);
}

void tst_ControlsItems::narrowButtonKeepsItsTile()
{
    m_scene
        = make("BitmapButton { objectName: 'button'; width: 66; icon: 'image://resource/audio_book_play' }");
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    const QImage picture = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    QCOMPARE(ink(picture).width(), 66);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
}

void tst_ControlsItems::accessibleButton()
{
    m_scene = make(
        "BitmapButton { objectName: 'button'; icon: 'image://resource/home'; Accessible.name: 'Go home' }");
    QQuickItem *button = m_scene->item(u"button"_s);
    QSignalSpy action(button, SIGNAL(action()));
    QCOMPARE(accessible(button)->role(), QAccessible::Button);
    QCOMPARE(accessible(button)->text(QAccessible::Name), u"Go home"_s);
    QVERIFY(pressByAccessibility(button));
    QCOMPARE(action.count(), 1);
}

void tst_ControlsItems::focusFrameOnlyForKeys()
{
    // A device with touch: a focused button looks like any other.
    m_scene = make("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    const QImage rest = m_scene->picture(u"button"_s);
    m_scene->item(u"button"_s)->forceActiveFocus();
    QCOMPARE(m_scene->picture(u"button"_s), rest);
}

void tst_ControlsItems::headerMeasures()
{
    facts().dpi = 300;
    m_scene = make(
        "AppHeader { objectName: 'header'; width: 600; title: 'Hill'; closeIcon: 'image://resource/home' }",
        "2.0");
    QQuickItem *header = m_scene->item(u"header"_s);
    QCOMPARE(header->height(), 120.0);
    const QImage picture = m_scene->picture(u"header"_s);
    // Two pixels of black line inside the lower edge, from side to side.
    for (int x : {0, 300, 599}) {
        QCOMPARE(picture.pixelColor(x, 117), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(x, 118), QColor(Qt::black));
        QCOMPARE(picture.pixelColor(x, 119), QColor(Qt::black));
    }
    const QRect icon = ink(picture.copy(0, 0, 150, 117));
    QVERIFY2(std::abs(icon.left() - 60) <= 3, "the icon's ink stands on the content line");
    const QRect title = ink(picture.copy(0, 0, 600, 117).copy(150, 0, 450, 117));
    QVERIFY2(title.left() + 150 >= 156 && title.left() + 150 <= 164,
             "the title begins where the target ends");
}

void tst_ControlsItems::headerButtonsStandAtTheRight()
{
    facts().dpi = 300;
    m_scene = make("AppHeader { width: 600; closeIcon: 'image://resource/back'\n"
                   "BitmapButton { objectName: 'first'; icon: 'image://resource/plus_add' }\n"
                   "BitmapButton { objectName: 'last'; icon: 'image://resource/desktop_app_settings' } }",
                   "2.0");
    QCOMPARE(m_scene->item(u"first"_s)->mapToScene({}).x(), 600.0 - 20 - 2 * 136);
    QCOMPARE(m_scene->item(u"last"_s)->mapToScene({}).x(), 600.0 - 20 - 136);
    QCOMPARE(m_scene->item(u"last"_s)->mapToScene({}).y(), 4.0);
    QSignalSpy action(m_scene->item(u"last"_s), SIGNAL(action()));
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"last"_s));
    QCOMPARE(action.count(), 1);
}

void tst_ControlsItems::headerOffset()
{
    m_scene = make("AppHeader { objectName: 'header'; width: 600; rightButtonsOffset: 50\n"
                   "BitmapButton { objectName: 'only' } }",
                   "2.0");
    QCOMPARE(m_scene->item(u"only"_s)->mapToScene({}).x(), 600.0 - 50 - 96);
}

void tst_ControlsItems::headerCloses()
{
    m_scene = make("AppHeader { objectName: 'header'; width: 600; closeIcon: 'image://resource/home'\n"
                   "closePressedIcon: 'image://resource/home_inv'; closeAccessibleName: 'Leave' }",
                   "2.0");
    QQuickItem *header = m_scene->item(u"header"_s);
    QSignalSpy close(header, SIGNAL(close()));
    const QPoint target(14 + 48, 42);
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, target);
    QVERIFY(ink(m_scene->picture(u"header"_s).copy(0, 0, 110, 84)).width() == 73);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, target);
    QCOMPARE(close.count(), 1);
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, QPoint(62, 1)); // as high as the header
    QCOMPARE(close.count(), 2);
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, QPoint(300, 42));
    QCOMPARE(close.count(), 2);

    bool pressed = false;
    for (QQuickItem *child : header->childItems()) {
        QAccessibleInterface *interface = accessible(child);
        if (interface && interface->text(QAccessible::Name) == u"Leave")
            pressed = pressByAccessibility(child);
    }
    QVERIFY(pressed);
    QCOMPARE(close.count(), 3);
}

void tst_ControlsItems::headerFocusWalks()
{
    m_scene
        = make("AppHeader { objectName: 'header'; width: 600; closeIcon: 'image://resource/back'\n"
               "BitmapButton { objectName: 'first' } BitmapButton { objectName: 'asleep'; enabled: false }\n"
               "BitmapButton { objectName: 'last' } }",
               "2.0");
    QQuickItem *first = m_scene->item(u"first"_s);
    QQuickItem *last = m_scene->item(u"last"_s);
    QSignalSpy close(m_scene->item(u"header"_s), SIGNAL(close()));
    first->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Right);
    QVERIFY(last->hasActiveFocus());
    QTest::keyClick(&m_scene->window(), Qt::Key_Right);
    QVERIFY2(last->hasActiveFocus(), "there is nothing further right");
    QTest::keyClick(&m_scene->window(), Qt::Key_Left);
    QVERIFY(first->hasActiveFocus());
    QTest::keyClick(&m_scene->window(), Qt::Key_Left);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(close.count(), 1);
}

void tst_ControlsItems::longTitleIsElided()
{
    m_scene = make("AppHeader { objectName: 'header'; width: 600; title: 'Lake '.repeat(40)\n"
                   "BitmapButton { objectName: 'button' } }",
                   "2.0");
    const QImage picture = m_scene->picture(u"header"_s).copy(0, 0, 600, 80);
    const QRect title = ink(picture);
    QVERIFY(title.left() >= 110);
    QVERIFY2(title.right() < m_scene->item(u"button"_s)->mapToScene({}).x(), "it ends before the buttons");
    QVERIFY2(title.right() > 400, "and uses the room");
}

void tst_ControlsItems::textIsPlain()
{
    m_scene = make(
        "StyledText { objectName: 'tagged'; text: '<b>x</b>' }\nText { objectName: 'typed'\n"
        "textFormat: Text.PlainText; text: '<b>x</b>'; font.family: 'Noto Sans'; font.pixelSize: 30 }");
    QVERIFY(std::abs(m_scene->item(u"tagged"_s)->implicitWidth() - m_scene->item(u"typed"_s)->implicitWidth())
            < 2);
}

void tst_ControlsItems::textStyle_data()
{
    QTest::addColumn<QByteArray>("style");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("bold");
    QTest::addColumn<double>("height");

    QTest::newRow("no style") << QByteArray() << 42 << false << 0.0;
    QTest::newRow("second line") << QByteArray("styledFont: FontStyles.BodyS") << 42 << false << 54.0;
    QTest::newRow("title") << QByteArray("styledFont: FontStyles.Heading3") << 58 << true << 74.0;
    QTest::newRow("in an icon") << QByteArray("styledFont: FontStyles.TextInIcons1") << 28 << true << 34.0;
}

void tst_ControlsItems::textStyle()
{
    QFETCH(QByteArray, style);
    QFETCH(int, size);
    QFETCH(bool, bold);
    QFETCH(double, height);

    facts().dpi = 300;
    m_scene = make("StyledText { objectName: 'text'; text: 'Hills'; " + style + " }");
    const QFont font = m_scene->item(u"text"_s)->property("font").value<QFont>();
    QCOMPARE(font.family(), u"Noto Sans"_s);
    QCOMPARE(font.pixelSize(), size);
    QCOMPARE(font.bold(), bold);
    QVERIFY(!font.italic());
    if (height > 0)
        QCOMPARE(m_scene->item(u"text"_s)->height(), height);
    else
        QVERIFY(std::abs(m_scene->item(u"text"_s)->height() - 57) <= 1); // the font's natural line
    QCOMPARE(m_scene->item(u"text"_s)->property("color").value<QColor>(), QColor(Qt::black));
}

void tst_ControlsItems::textOverridesItsStyle()
{
    m_scene = make(
        "StyledText { objectName: 'text'; text: 'Hills'; styledFont: FontStyles.Heading4; font.bold: true\n"
        "font.italic: true; font.family: 'DejaVu Sans'; color: 'white' }");
    const QFont font = m_scene->item(u"text"_s)->property("font").value<QFont>();
    QVERIFY(font.bold());
    QVERIFY(font.italic());
    QCOMPARE(font.family(), u"DejaVu Sans"_s);
    QCOMPARE(font.pixelSize(), 41);
    QCOMPARE(m_scene->item(u"text"_s)->property("color").value<QColor>(), QColor(Qt::white));
}

void tst_ControlsItems::fixedLinesBringTheirHeight()
{
    facts().dpi = 300;
    m_scene = make(
        "StyledText { objectName: 'styled'; text: 'a\\nb'; styledFont: FontStyles.BodyL }\n"
        "StyledText { objectName: 'unstyled'; text: 'a\\nb'; lineHeightMode: Text.FixedHeight }\n"
        "StyledText { objectName: 'told'; text: 'a\\nb'; styledFont: FontStyles.BodyL; lineHeight: 42 }");
    QCOMPARE(m_scene->item(u"styled"_s)->height(), 128.0);
    QCOMPARE(m_scene->item(u"unstyled"_s)->height(),
             115.0); // one line of 57, and the last as high as the font
    QCOMPARE(m_scene->item(u"told"_s)->height(), 84.0);
}

void tst_ControlsItems::accessibleText()
{
    m_scene = make("StyledText { objectName: 'text'; text: 'Hills' }");
    QCOMPARE(accessible(m_scene->item(u"text"_s))->role(), QAccessible::StaticText);
    QCOMPARE(accessible(m_scene->item(u"text"_s))->text(QAccessible::Name), u"Hills"_s);
    m_scene->item(u"text"_s)->setProperty("text", u"Lakes"_s);
    QCOMPARE(accessible(m_scene->item(u"text"_s))->text(QAccessible::Name), u"Lakes"_s);
}

void tst_ControlsItems::separatorDots_data()
{
    QTest::addColumn<int>("dpi");
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("dot");
    QTest::addColumn<int>("pitch");

    QTest::newRow("across, 300 dpi") << 300 << QByteArray("width: 101") << QSize(101, 2) << 2 << 8;
    QTest::newRow("down, 300 dpi") << 300 << QByteArray("vertical: true; height: 101") << QSize(2, 101) << 2
                                   << 8;
    QTest::newRow("across, 212 dpi") << 212 << QByteArray("width: 50") << QSize(50, 1) << 1 << 6;
    QTest::newRow("down, 212 dpi") << 212 << QByteArray("vertical: true; height: 50") << QSize(1, 50) << 1
                                   << 6;
    QTest::newRow("between pixels") << 300 << QByteArray("width: 50; x: 0.4; y: 3.4") << QSize(50, 2) << 2
                                    << 8;
    QTest::newRow("thick") << 300 << QByteArray("width: 50; height: 6") << QSize(50, 6) << 6 << 12;
}

void tst_ControlsItems::separatorDots()
{
    QFETCH(int, dpi);
    QFETCH(QByteArray, properties);
    QFETCH(QSize, size);
    QFETCH(int, dot);
    QFETCH(int, pitch);

    facts().dpi = dpi;
    m_scene = make("DottedSeparator { objectName: 'line'; " + properties + " }");
    QCOMPARE(m_scene->item(u"line"_s)->size(), QSizeF(size));
    const QImage picture = m_scene->picture(u"line"_s);
    QCOMPARE(picture.size(), size);
    const bool across = size.width() > size.height();
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool black = (across ? x : y) % pitch < dot;
            QCOMPARE(picture.pixelColor(x, y), QColor(black ? Qt::black : Qt::white));
        }
    }
}

void tst_ControlsItems::separatorFollowsItsColour()
{
    m_scene = make(
        "DottedSeparator { objectName: 'line'; width: 50; color: GlobalValues.defaultSolidseparatorColor }");
    QCOMPARE(m_scene->picture(u"line"_s).pixelColor(0, 0), QColor(0x55, 0x55, 0x55));
    m_scene->item(u"line"_s)->setProperty("color", QColor(Qt::black));
    QCOMPARE(m_scene->picture(u"line"_s).pixelColor(0, 0), QColor(Qt::black));
    m_scene->item(u"line"_s)->setProperty("vertical", true);
    QCOMPARE(m_scene->item(u"line"_s)->implicitWidth(), 1.0);
    QCOMPARE(m_scene->item(u"line"_s)->implicitHeight(), 0.0);
}

void tst_ControlsItems::plainItemsAreWhatTheyAreNamedFor()
{
    m_scene = make("AutoReloadImage { objectName: 'image'; source: 'image://resource/home'; sourceSize: "
                   "Qt.size(40, 40)\n"
                   "fillMode: Image.PreserveAspectCrop; asynchronous: false; cache: false }\n"
                   "LoaderNoSleep { objectName: 'loader'; sourceComponent: Item { objectName: 'loaded' } }");
    QVERIFY(m_scene->item(u"image"_s)->inherits("QQuickImage"));
    QCOMPARE(m_scene->item(u"image"_s)->size(), QSizeF(40, 40));
    QVERIFY(m_scene->item(u"loader"_s)->inherits("QQuickLoader"));
    QVERIFY(m_scene->item(u"loader"_s)->property("item").value<QQuickItem *>());
}

PANEL_TEST_MAIN(tst_ControlsItems)
#include "tst_controls_items.moc"
