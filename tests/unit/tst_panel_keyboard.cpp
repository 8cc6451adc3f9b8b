// The device's keyboard on the screen: when it is open, where it lies, its keys in the tree.

#include "keyboard_scene.h"
#include "panel_application.h"

#include <QScreen>
#include <QSignalSpy>

#include <algorithm>

using namespace Qt::StringLiterals;

class tst_PanelKeyboard : public KeyboardTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void opensWithTheFocus();
    void opensByATapOnTheField();
    void hideKeepsTheFocus();
    void hidesWithoutAField_data();
    void hidesWithoutAField();
    void showWithoutAField();
    void staysOpenFromFieldToField();
    void hintsThatChange();
    void padIsCentred();
    void followsTurningAndStatusPanel_data();
    void followsTurningAndStatusPanel();
    void turnedWhileHidden();
    void keysInTheTree();
    void hiddenKeysAreRefused();
    void pageTurnedUnderAFinger();
};

void tst_PanelKeyboard::opensWithTheFocus()
{
    const QInputMethod *method = QGuiApplication::inputMethod();
    QVERIFY(!method->isVisible());
    QVERIFY(method->keyboardRectangle().isEmpty());
    const QSignalSpy visible(method, &QInputMethod::visibleChanged);
    const QSignalSpy rectangle(method, &QInputMethod::keyboardRectangleChanged);
    QVERIFY(m_scene->open());
    QCOMPARE(visible.size(), 1);
    QVERIFY(rectangle.size() > 0);
    QVERIFY(!method->isAnimating());
    QVERIFY(m_scene->window->property("keyboardVisible").toBool());

    // Four rows of 124 and five gaps of 8 below a line of 2, on a 300 dpi panel.
    const QRect place = m_scene->place();
    QCOMPARE(place, QRect(0, 1024 - 383, 758, 383));
    QCOMPARE(m_scene->window->property("keyboardRectangle").toRectF(), method->keyboardRectangle());
    QCOMPARE(m_scene->greyOfGround(), KeyboardScene::ground);
    QCOMPARE(panel_view::greyAt(400, place.top()), 0); // the line along its edge
    QCOMPARE(panel_view::greyAt(400, place.top() - 1), 0x88);
    QCOMPARE(QGuiApplication::focusWindow(), m_scene->window.get());
    QCOMPARE(QGuiApplication::focusObject(), m_scene->item("name"));
}

void tst_PanelKeyboard::opensByATapOnTheField()
{
    QVERIFY(m_scene->tap({120, 85}));
    QTRY_VERIFY(KeyboardScene::isOpen());
    QMetaObject::invokeMethod(m_scene->window.get(), "hideKeyboard");
    QVERIFY(!KeyboardScene::isOpen());
    QVERIFY(m_scene->tap({120, 85})); // the field has the focus already
    QTRY_VERIFY(KeyboardScene::isOpen());
}

void tst_PanelKeyboard::hideKeepsTheFocus()
{
    QVERIFY(m_scene->open());
    const QSignalSpy visible(QGuiApplication::inputMethod(), &QInputMethod::visibleChanged);
    QMetaObject::invokeMethod(m_scene->window.get(), "hideKeyboard");
    QVERIFY(!KeyboardScene::isOpen());
    QCOMPARE(visible.size(), 1);
    QVERIFY(m_scene->window->property("keyboardRectangle").toRectF().isEmpty());
    QVERIFY(m_scene->item("name")->hasActiveFocus());
    QTRY_COMPARE(panel_view::greyAt(756, 1022), 0x88); // what it covered comes back
    QVERIFY(panel_view::waitUntilStill());
    QVERIFY(!KeyboardScene::isOpen());
}

void tst_PanelKeyboard::hidesWithoutAField_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what : {"another item gets the focus", "nothing has the focus",
                             "the field is switched off", "the field is hidden", "the field can only be read",
                             "the field dies", "the window is hidden", "the window dies"})
        QTest::newRow(what) << QString::fromLatin1(what);
}

void tst_PanelKeyboard::hidesWithoutAField()
{
    QFETCH(QString, what);
    m_scene->item("loader")->setProperty("active", true);
    auto *field = m_scene->item("loader")->property("item").value<QQuickItem *>();
    field->forceActiveFocus();
    QTRY_VERIFY(KeyboardScene::isOpen());
    if (what.startsWith(u"another"))
        m_scene->item("plain")->forceActiveFocus();
    else if (what.startsWith(u"nothing"))
        field->setFocus(false);
    else if (what.endsWith(u"off"))
        field->setEnabled(false);
    else if (what.endsWith(u"field is hidden"))
        field->setVisible(false);
    else if (what.endsWith(u"read"))
        field->setProperty("readOnly", true);
    else if (what.endsWith(u"field dies"))
        m_scene->item("loader")->setProperty("active", false);
    else if (what.endsWith(u"window is hidden"))
        m_scene->window->hide();
    else
        m_scene->window.reset();
    QTRY_VERIFY(!KeyboardScene::isOpen());
    QCOMPARE(m_scene->keyboard(), QJsonObject());
}

void tst_PanelKeyboard::showWithoutAField()
{
    QGuiApplication::inputMethod()->show();
    QVERIFY(panel_view::waitUntilStill());
    QVERIFY(!KeyboardScene::isOpen());
}

void tst_PanelKeyboard::staysOpenFromFieldToField()
{
    QVERIFY(m_scene->open());
    const QSignalSpy visible(QGuiApplication::inputMethod(), &QInputMethod::visibleChanged);
    m_scene->item("number")->forceActiveFocus();
    QTRY_VERIFY(m_scene->key(u"a"_s).isEmpty());
    QVERIFY(!m_scene->key(u"0"_s).isEmpty());
    m_scene->item("name")->forceActiveFocus();
    QTRY_VERIFY(!m_scene->key(u"a"_s).isEmpty());
    QVERIFY(visible.isEmpty());
    QVERIFY(KeyboardScene::isOpen());
}

void tst_PanelKeyboard::hintsThatChange()
{
    QVERIFY(m_scene->open());
    m_scene->item("name")->setProperty("inputMethodHints", int(Qt::ImhDigitsOnly));
    QTRY_VERIFY(m_scene->key(u"a"_s).isEmpty());
    m_scene->item("name")->setProperty("inputMethodHints", int(Qt::ImhNone));
    QTRY_VERIFY(!m_scene->key(u"a"_s).isEmpty());
}

void tst_PanelKeyboard::padIsCentred()
{
    m_scene->item("number")->forceActiveFocus();
    QTRY_VERIFY(KeyboardScene::isOpen());
    QCOMPARE(m_scene->place(), QRect(0, 1024 - 383, 758, 383));
    const QRect one = rectangleOf(m_scene->key(u"1"_s));
    const QRect three = rectangleOf(m_scene->key(u"3"_s));
    // 720 wide with its gaps of 8 at both sides, on a 300 dpi panel.
    QCOMPARE(one.left(), (758 - 509) / 2 + 6);
    QVERIFY(qAbs(three.right() + 1 + 6 - (one.left() - 6) - 509) <= 1);
    QCOMPARE(m_scene->keyboard().value(u"children"_s).toArray().size(), 12);
}

void tst_PanelKeyboard::followsTurningAndStatusPanel_data()
{
    QTest::addColumn<int>("orientation");
    for (const int orientation : {0, 1, 2, 3})
        QTest::addRow("orientation %d", orientation) << orientation;
}

void tst_PanelKeyboard::followsTurningAndStatusPanel()
{
    QFETCH(int, orientation);
    QVERIFY(m_scene->open());
    for (const int panelType : {1, 0}) {
        screen().setOrientation(orientation);
        screen().setPanelType(panelType);
        const QSize size = screen().size();
        QTRY_COMPARE(m_scene->place().bottomRight(), QPoint(size.width() - 1, size.height() - 1));
        QTRY_COMPARE(m_scene->place().width(), size.width());
        QVERIFY(panel_view::waitUntilStill());
        QCOMPARE(m_scene->window->property("keyboardRectangle").toRectF(),
                 QGuiApplication::inputMethod()->keyboardRectangle());
        QCOMPARE(rectangleOf(m_scene->keyboard()), m_scene->place());
        QVERIFY(m_scene->place().height() <= size.height() / 2);
        QCOMPARE(m_scene->greyOfGround(), KeyboardScene::ground);
        QCOMPARE(panel_view::greyAt(5, m_scene->place().top() - 1), 0x88);
        QVERIFY(m_scene->tapKey(u"q"_s));
        QVERIFY(m_scene->tapKey(u"."_s));
    }
    QCOMPARE(m_scene->text("name"), u"q.q."_s);
    QCOMPARE(m_scene->log(), QStringList());
}

void tst_PanelKeyboard::turnedWhileHidden()
{
    QVERIFY(m_scene->open());
    QGuiApplication::inputMethod()->hide();
    screen().setOrientation(1);
    QVERIFY(panel_view::waitUntilStill());
    QGuiApplication::inputMethod()->show();
    QTRY_VERIFY(KeyboardScene::isOpen());
    QTRY_COMPARE(m_scene->place().bottomRight(), QPoint(1023, 757));
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(m_scene->greyOfGround(), KeyboardScene::ground);
}

void tst_PanelKeyboard::keysInTheTree()
{
    QVERIFY(m_scene->open());
    const QJsonObject keyboard = m_scene->keyboard();
    QCOMPARE(rectangleOf(keyboard), m_scene->place());
    QStringList names;
    const QJsonArray keys = keyboard.value(u"children"_s).toArray();
    for (const QJsonValue &each : keys) {
        const QJsonObject key = each.toObject();
        QCOMPARE(key.value(u"role"_s).toString(), u"Button"_s);
        QVERIFY(key.value(u"enabled"_s).toBool());
        QVERIFY(m_scene->place().contains(rectangleOf(key)));
        names.append(key.value(u"name"_s).toString());
    }
    QCOMPARE(names.join(u' '),
             u"q w e r t y u i o p a s d f g h j k l Shift z x c v b n m Delete 123 Space . Done"_s);
    QCOMPARE(m_scene->key(u"Shift"_s).value(u"id"_s).toString(), u"key_shift"_s);
    QCOMPARE(m_scene->key(u"Shift"_s).value(u"checked"_s), QJsonValue(false));
    QVERIFY(!m_scene->key(u"q"_s).contains(u"checked"_s));
}

void tst_PanelKeyboard::hiddenKeysAreRefused()
{
    const QJsonObject press{{u"name"_s, u"#key_shift"_s}};
    QCOMPARE(m_scene->remote.ask(u"press"_s, press).value(u"error"_s).toString(), u"no-such-item"_s);
    QVERIFY(m_scene->open());
    QVERIFY(m_scene->ask(u"press"_s, press));
    QCOMPARE(m_scene->remote.ask(u"increase"_s, press).value(u"error"_s).toString(), u"not-possible"_s);
    QGuiApplication::inputMethod()->hide();
    QCOMPARE(m_scene->remote.ask(u"press"_s, press).value(u"error"_s).toString(), u"no-such-item"_s);
}

void tst_PanelKeyboard::pageTurnedUnderAFinger()
{
    QVERIFY(m_scene->open());
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const auto keyboard = std::find_if(windows.cbegin(), windows.cend(), [this](const QWindow *window) {
        return window->isVisible() && window != m_scene->window.get();
    });
    QVERIFY(keyboard != windows.cend());
    const QPoint finger = m_scene->middleOf(u"Done"_s) - (*keyboard)->position();
    QTest::mousePress(*keyboard, Qt::LeftButton, {}, finger);
    QVERIFY(m_scene->ask(u"press"_s, {{u"name"_s, u"#key_signs"_s}}));
    // The key that the finger was on has gone: what lies there now is not meant.
    QTest::mouseRelease(*keyboard, Qt::LeftButton, {}, finger);
    QVERIFY(KeyboardScene::isOpen());
    QVERIFY(!m_scene->key(u"ABC"_s).isEmpty());
}

PANEL_TEST_MAIN(tst_PanelKeyboard)
#include "tst_panel_keyboard.moc"
