// The title bar of a screen.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_ControlsHeader : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void measures();
    void buttonsStandAtTheRight();
    void offset();
    void closes();
    void focusWalks();
    void longTitleIsElided();

private:
    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsHeader::cleanup()
{
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsHeader::measures()
{
    m_scene = controlsScene("LRControls2.AppHeader { objectName: 'header'; width: 600; title: 'Hill'; "
                            "closeIcon: 'image://resource/home' }",
                            {600, 800}, 300);
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

void tst_ControlsHeader::buttonsStandAtTheRight()
{
    m_scene = controlsScene(
        "LRControls2.AppHeader { width: 600; closeIcon: 'image://resource/back'\n"
        "BitmapButton { objectName: 'first'; icon: 'image://resource/plus_add' }\n"
        "BitmapButton { objectName: 'last'; icon: 'image://resource/desktop_app_settings' } }",
        {600, 800}, 300);
    QCOMPARE(m_scene->item(u"first"_s)->mapToScene({}).x(), 600.0 - 20 - 2 * 136);
    QCOMPARE(m_scene->item(u"last"_s)->mapToScene({}).x(), 600.0 - 20 - 136);
    QCOMPARE(m_scene->item(u"last"_s)->mapToScene({}).y(), 4.0);
    QSignalSpy action(m_scene->item(u"last"_s), SIGNAL(action()));
    m_scene->tap(m_scene->middle(u"last"_s));
    QCOMPARE(action.count(), 1);
}

void tst_ControlsHeader::offset()
{
    m_scene
        = controlsScene("LRControls2.AppHeader { objectName: 'header'; width: 600; rightButtonsOffset: 50\n"
                        "BitmapButton { objectName: 'only' } }");
    QCOMPARE(m_scene->item(u"only"_s)->mapToScene({}).x(), 600.0 - 50 - 96);
}

void tst_ControlsHeader::closes()
{
    m_scene = controlsScene(
        "LRControls2.AppHeader { objectName: 'header'; width: 600; closeIcon: 'image://resource/home'\n"
        "closePressedIcon: 'image://resource/home_inv' }");
    QQuickItem *header = m_scene->item(u"header"_s);
    QSignalSpy close(header, SIGNAL(close()));
    const QPoint target(14 + 48, 42);
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, target);
    QVERIFY(ink(m_scene->picture(u"header"_s).copy(0, 0, 110, 84)).width() == 73);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, target);
    QCOMPARE(close.count(), 1);
    m_scene->tap(QPoint(62, 1)); // as high as the header
    QCOMPARE(close.count(), 2);
    m_scene->tap(QPoint(300, 42));
    QCOMPARE(close.count(), 2);

    QVERIFY(pressByAccessibility(findAccessible(header, QAccessible::Button, u"Close"_s)));
    QCOMPARE(close.count(), 3);
    header->setProperty("closeIcon", QUrl(u"image://resource/back"_s));
    QVERIFY(pressByAccessibility(findAccessible(header, QAccessible::Button, u"Back"_s)));
    QCOMPARE(close.count(), 4);
}

void tst_ControlsHeader::focusWalks()
{
    m_scene = controlsScene(
        "LRControls2.AppHeader { objectName: 'header'; width: 600; closeIcon: 'image://resource/back'\n"
        "BitmapButton { objectName: 'first' } BitmapButton { objectName: 'asleep'; enabled: false }\n"
        "BitmapButton { objectName: 'last' } }");
    QQuickItem *first = m_scene->item(u"first"_s);
    QQuickItem *last = m_scene->item(u"last"_s);
    QSignalSpy close(m_scene->item(u"header"_s), SIGNAL(close()));
    first->forceActiveFocus();
    m_scene->key(Qt::Key_Right);
    QVERIFY(last->hasActiveFocus());
    m_scene->key(Qt::Key_Right);
    QVERIFY2(last->hasActiveFocus(), "there is nothing further right");
    m_scene->key(Qt::Key_Left);
    QVERIFY(first->hasActiveFocus());
    m_scene->key(Qt::Key_Left);
    m_scene->key(Qt::Key_Return);
    QCOMPARE(close.count(), 1);
}

void tst_ControlsHeader::longTitleIsElided()
{
    m_scene = controlsScene(
        "LRControls2.AppHeader { objectName: 'header'; width: 600; title: 'Lake '.repeat(40)\n"
        "BitmapButton { objectName: 'button' } }");
    const QImage picture = m_scene->picture(u"header"_s).copy(0, 0, 600, 80);
    const QRect title = ink(picture);
    QVERIFY(title.left() >= 110);
    QVERIFY2(title.right() < m_scene->item(u"button"_s)->mapToScene({}).x(), "it ends before the buttons");
    QVERIFY2(title.right() > 400, "and uses the room");
}

PANEL_TEST_MAIN(tst_ControlsHeader)
#include "tst_controls_header.moc"
