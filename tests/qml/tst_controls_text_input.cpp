// The text field, as the dialogs of the screens use it.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QSignalSpy>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsTextInput : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void typing();
    void returnAccepts();
    void returnRefusesWhatIsNotAcceptable();
    void digitsWithLimits();
    void focusOpensTheKeyboard_data();
    void focusOpensTheKeyboard();
    void hintsReachTheKeyboard();
    void frameOfTheScreen();
    void fiveDigitsFit();
    void caret();
    void selection();
    void style();
    void longTextStaysInside();
    void accessibleField();
    void disabledField();

private:
    void make(const QByteArray &members, const QByteArray &frame = "width: 600; height: 120");
    QQuickItem *field() const { return m_scene->item(u"field"_s); }
    QString text() const { return field()->property("text").toString(); }
    void type(const QString &typed);

    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsTextInput::make(const QByteArray &members, const QByteArray &frame)
{
    m_scene = controlsScene(
        "Rectangle { objectName: 'frame'\n" + frame
            + "\nborder.color: 'black'; border.width: field.activeFocus ? "
              "GlobalValues.inputElementActiveBorder\n"
              ": GlobalValues.inputElementBorder\nAdvancedTextInput { id: field; objectName: 'field'\n"
              "anchors.fill: parent; clip: true\n"
            + members + " } }",
        {600, 800}, 300);
    QVERIFY(m_scene);
}

void tst_ControlsTextInput::type(const QString &typed)
{
    for (const QChar character : typed)
        QTest::keyClick(&m_scene->window(), character.toLatin1());
}

void tst_ControlsTextInput::cleanup()
{
    QGuiApplication::inputMethod()->hide();
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsTextInput::typing()
{
    make("text: 'Garden'");
    QSignalSpy changed(field(), SIGNAL(textChanged()));
    field()->forceActiveFocus();
    QMetaObject::invokeMethod(field(), "selectAll"); // as the dialog for a new name does
    type(u"Lake"_s);
    QCOMPARE(text(), u"Lake"_s);
    QCOMPARE(changed.count(), 4);
    QTest::keyClick(&m_scene->window(), Qt::Key_Backspace);
    QCOMPARE(text(), u"Lak"_s);
}

void tst_ControlsTextInput::returnAccepts()
{
    make("text: 'Garden'");
    QSignalSpy accepted(field(), SIGNAL(accepted()));
    field()->forceActiveFocus();
    QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(accepted.count(), 1);
    QTRY_VERIFY2(!QGuiApplication::inputMethod()->isVisible(), "the keyboard has done its work");
    QTest::keyClick(&m_scene->window(), Qt::Key_Enter);
    QCOMPARE(accepted.count(), 2);
    QCOMPARE(text(), u"Garden"_s);
}

void tst_ControlsTextInput::returnRefusesWhatIsNotAcceptable()
{
    make("validator: IntValidator { bottom: 1; top: 24 }");
    QSignalSpy accepted(field(), SIGNAL(accepted()));
    field()->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(accepted.count(), 0);
    type(u"12"_s);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QCOMPARE(accepted.count(), 1);
}

void tst_ControlsTextInput::digitsWithLimits()
{
    // What the dialog for a time of one's own does with hours.
    make("inputMethodHints: Qt.ImhDigitsOnly; validator: IntValidator { id: limits; bottom: 1; top: 24 }\n"
         "onTextChanged: if (text !== '' && text < limits.bottom) text = limits.bottom",
         "width: 150; height: 120");
    field()->forceActiveFocus();
    type(u"2x47"_s); // 247 would be too much, and a letter is no digit
    QCOMPARE(text(), u"24"_s);
    QMetaObject::invokeMethod(field(), "selectAll");
    type(u"0"_s);
    QCOMPARE(text(), u"1"_s);
}

void tst_ControlsTextInput::focusOpensTheKeyboard_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("a tap") << u"tap"_s;
    QTest::newRow("a screen that gives it the focus") << u"focus"_s;
    QTest::newRow("assistive input") << u"press"_s;
}

void tst_ControlsTextInput::focusOpensTheKeyboard()
{
    QFETCH(QString, how);

    make("text: 'Garden'");
    QVERIFY(!QGuiApplication::inputMethod()->isVisible());
    const auto enter = [&] {
        if (how == u"tap")
            QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, QPoint(300, 60));
        else if (how == u"focus")
            field()->forceActiveFocus();
        else
            QVERIFY(pressByAccessibility(field()));
    };
    enter();
    QVERIFY(field()->hasActiveFocus());
    QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
    QGuiApplication::inputMethod()->hide();
    QTRY_VERIFY(!QGuiApplication::inputMethod()->isVisible());
    if (how == u"focus")
        return; // it has the focus still: nothing happens
    enter();
    QTRY_VERIFY2(QGuiApplication::inputMethod()->isVisible(), "the same brings it back");
}

void tst_ControlsTextInput::hintsReachTheKeyboard()
{
    make("inputMethodHints: Qt.ImhDigitsOnly");
    field()->forceActiveFocus();
    QCOMPARE(field()->inputMethodQuery(Qt::ImHints).toInt() & int(Qt::ImhDigitsOnly), int(Qt::ImhDigitsOnly));
}

void tst_ControlsTextInput::frameOfTheScreen()
{
    make("text: 'I'");
    const auto left = [&] { return ink(m_scene->picture(u"frame"_s).copy(6, 6, 588, 108)).left() + 6; };
    QVERIFY2(left() >= 24 && left() <= 30, "the text keeps 24 from the frame");
    QCOMPARE(ink(m_scene->picture(u"frame"_s).copy(0, 60, 20, 1)).width(), 2);
    field()->forceActiveFocus();
    QCOMPARE(ink(m_scene->picture(u"frame"_s).copy(0, 60, 20, 1)).width(), 4);
    const QRect drawn = ink(m_scene->picture(u"frame"_s).copy(6, 6, 100, 108));
    QVERIFY2(std::abs(drawn.center().y() + 6 - 60) <= 3, "in the middle of the frame's height");
}

void tst_ControlsTextInput::fiveDigitsFit()
{
    make("text: '86400'; horizontalAlignment: TextInput.AlignHCenter\n"
         "verticalAlignment: TextInput.AlignVCenter; styledFont: FontStyles.Heading5",
         "width: 150; height: 120");
    const QRect digits = ink(m_scene->picture(u"frame"_s).copy(3, 3, 144, 114));
    QVERIFY2(digits.left() >= 1 && digits.right() <= 142, "none is cut");
    QVERIFY(std::abs(digits.center().x() - 72) <= 2);
    QVERIFY(std::abs(digits.center().y() - 57) <= 4);
}

void tst_ControlsTextInput::caret()
{
    make("");
    QVERIFY(ink(m_scene->picture(u"field"_s).copy(6, 6, 588, 108)).isEmpty());
    field()->forceActiveFocus();
    const auto drawn = [&] { return ink(m_scene->picture(u"field"_s).copy(6, 6, 588, 108)); };
    QTRY_COMPARE(drawn().width(), 4);
    QVERIFY(drawn().height() >= 50 && drawn().height() <= 80);
    QCOMPARE(drawn().left() + 6, 24);
}

void tst_ControlsTextInput::selection()
{
    make("text: 'Garden'");
    field()->forceActiveFocus();
    QMetaObject::invokeMethod(field(), "selectAll");
    const QImage picture = m_scene->picture(u"field"_s);
    const QRect black = ink(picture.copy(6, 6, 588, 108));
    QVERIFY2(black.height() >= 50 && black.width() > 100, "black behind white letters");
    QImage inside = picture.copy(black.translated(6, 6).adjusted(4, 4, -4, -4));
    inside.invertPixels();
    QVERIFY(!ink(inside).isEmpty());
}

void tst_ControlsTextInput::style()
{
    make("styledFont: FontStyles.Heading5");
    QFont font = field()->property("font").value<QFont>();
    QCOMPARE(font.family(), u"Noto Sans"_s);
    QCOMPARE(font.pixelSize(), 48);
    QVERIFY(font.bold());
    make("");
    font = field()->property("font").value<QFont>();
    QCOMPARE(font.pixelSize(), 50);
    QVERIFY(!font.bold());
}

void tst_ControlsTextInput::longTextStaysInside()
{
    make("text: 'Lakes and hills '.repeat(10)");
    field()->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_End);
    const QImage window = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    QVERIFY2(ink(window.copy(0, 120, 600, 80)).isEmpty(), "one line");
    QCOMPARE(field()->property("cursorRectangle").toRectF().right() <= 600, true);
}

void tst_ControlsTextInput::accessibleField()
{
    make("text: 'Garden'; Accessible.name: 'Title'");
    QCOMPARE(accessible(field())->role(), QAccessible::EditableText);
    QCOMPARE(accessibleName(field()), u"Title"_s);
    QCOMPARE(accessible(field())->text(QAccessible::Value), u"Garden"_s);
    QVERIFY(accessible(field())->state().editable);
    QVERIFY(accessible(field())->state().focusable);
}

void tst_ControlsTextInput::disabledField()
{
    make("text: 'Garden'; enabled: false");
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, QPoint(300, 60));
    QVERIFY(!field()->hasActiveFocus());
    const QImage picture = m_scene->picture(u"field"_s).copy(6, 6, 588, 108);
    int darkest = 255;
    for (int y = 0; y < picture.height(); ++y)
        darkest = std::min<int>(
            darkest, *std::min_element(picture.constScanLine(y), picture.constScanLine(y) + picture.width()));
    QCOMPARE(darkest, 0xAA);
}

PANEL_TEST_MAIN(tst_ControlsTextInput)
#include "tst_controls_text_input.moc"
