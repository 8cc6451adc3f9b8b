// The icon button: what it shows, and what activates it.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_ControlsBitmapButton : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void size();
    void tapActsOnce();
    void pressedLook();
    void pressedLookWithoutIconOfItsOwn();
    void dragOutActsNot();
    void disabled_data();
    void disabled();
    void keysAct_data();
    void keysAct();
    void heldKeyActsOnce();
    void narrowButtonKeepsItsTile();
    void accessibility();
    void focusFrameOnlyForKeys();

private:
    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsBitmapButton::cleanup()
{
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsBitmapButton::size()
{
    m_scene = controlsScene("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QCOMPARE(m_scene->item(u"button"_s)->size(), QSizeF(96, 79));
    m_scene.reset();
    m_scene = controlsScene("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }",
                            {600, 800}, 300);
    QCOMPARE(m_scene->item(u"button"_s)->size(), QSizeF(136, 112));
    const QRect drawing = ink(m_scene->picture(u"button"_s));
    QVERIFY2(std::abs(drawing.center().x() - 68) <= 1, "the icon stands in the middle");
    QVERIFY(drawing.width() > 54 && drawing.width() < 72);
}

void tst_ControlsBitmapButton::tapActsOnce()
{
    m_scene = controlsScene("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QSignalSpy action(m_scene->item(u"button"_s), SIGNAL(action()));
    m_scene->tap(m_scene->middle(u"button"_s));
    QCOMPARE(action.count(), 1);
    m_scene->tap(QPoint(0, 1)); // the edge belongs to it
    QCOMPARE(action.count(), 2);
    m_scene->tap(QPoint(96, 40));
    QCOMPARE(action.count(), 2);
}

void tst_ControlsBitmapButton::pressedLook()
{
    m_scene = controlsScene("BitmapButton { objectName: 'button'; icon: 'image://resource/home'\n"
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

void tst_ControlsBitmapButton::pressedLookWithoutIconOfItsOwn()
{
    m_scene = controlsScene("BitmapButton { objectName: 'own'; icon: 'image://resource/home'; pressedIcon: "
                            "'image://resource/home_inv' }\n"
                            "BitmapButton { objectName: 'none'; y: 200; icon: 'image://resource/home' }");
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"own"_s));
    const QImage own = m_scene->picture(u"own"_s);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"own"_s));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"none"_s));
    QCOMPARE(m_scene->picture(u"none"_s), own);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"none"_s));
}

void tst_ControlsBitmapButton::dragOutActsNot()
{
    m_scene = controlsScene("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QSignalSpy action(m_scene->item(u"button"_s), SIGNAL(action()));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    QTest::mouseMove(&m_scene->window(), QPoint(300, 300));
    QVERIFY(!m_scene->item(u"button"_s)->property("pressed").toBool());
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(300, 300));
    QCOMPARE(action.count(), 0);
}

void tst_ControlsBitmapButton::disabled_data()
{
    QTest::addColumn<QByteArray>("properties");

    QTest::newRow("with an icon for it")
        << QByteArray("enabled: false; disabledIcon: 'image://resource/audio_book_play_disabled'");
    QTest::newRow("without one") << QByteArray("enabled: false");
}

void tst_ControlsBitmapButton::disabled()
{
    QFETCH(QByteArray, properties);

    m_scene = controlsScene("BitmapButton { objectName: 'button'; icon: 'image://resource/audio_book_play'; "
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
    m_scene->key(Qt::Key_Return);
    QCOMPARE(action.count(), 0);
}

void tst_ControlsBitmapButton::keysAct_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("actions");

    QTest::newRow("return") << Qt::Key_Return << 1;
    QTest::newRow("enter") << Qt::Key_Enter << 1;
    QTest::newRow("space") << Qt::Key_Space << 1;
    QTest::newRow("page down is the screen's") << Qt::Key_PageDown << 0;
}

void tst_ControlsBitmapButton::keysAct()
{
    QFETCH(Qt::Key, key);
    QFETCH(int, actions);

    m_scene = controlsScene("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QSignalSpy action(m_scene->item(u"button"_s), SIGNAL(action()));
    m_scene->key(key);
    QCOMPARE(action.count(), 0); // it has not the focus yet
    m_scene->item(u"button"_s)->forceActiveFocus();
    m_scene->key(key);
    QCOMPARE(action.count(), actions);
}

void tst_ControlsBitmapButton::heldKeyActsOnce()
{
    m_scene = controlsScene("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    QSignalSpy action(m_scene->item(u"button"_s), SIGNAL(action()));
    m_scene->item(u"button"_s)->forceActiveFocus();
    QTest::keyPress(&m_scene->window(), Qt::Key_Return);
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, {}, {}, true);
    QCoreApplication::sendEvent(&m_scene->window(), &again);
    QTest::keyRelease(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(action.count(), 1);
}

void tst_ControlsBitmapButton::narrowButtonKeepsItsTile()
{
    m_scene = controlsScene(
        "BitmapButton { objectName: 'button'; width: 66; icon: 'image://resource/audio_book_play' }");
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
    const QImage picture = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    QCOMPARE(ink(picture).width(), 66);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, m_scene->middle(u"button"_s));
}

void tst_ControlsBitmapButton::accessibility()
{
    m_scene = controlsScene(
        "BitmapButton { objectName: 'button'; icon: 'image://resource/home'; Accessible.name: 'Go home' }");
    QQuickItem *button = m_scene->item(u"button"_s);
    QSignalSpy action(button, SIGNAL(action()));
    QCOMPARE(accessible(button)->role(), QAccessible::Button);
    QCOMPARE(accessible(button)->text(QAccessible::Name), u"Go home"_s);
    QVERIFY(pressByAccessibility(button));
    QCOMPARE(action.count(), 1);
}

void tst_ControlsBitmapButton::focusFrameOnlyForKeys()
{
    // A device with touch: a focused button looks like any other.
    m_scene = controlsScene("BitmapButton { objectName: 'button'; icon: 'image://resource/home' }");
    const QImage rest = m_scene->picture(u"button"_s);
    m_scene->item(u"button"_s)->forceActiveFocus();
    QCOMPARE(m_scene->picture(u"button"_s), rest);
}

PANEL_TEST_MAIN(tst_ControlsBitmapButton)
#include "tst_controls_bitmap_button.moc"
