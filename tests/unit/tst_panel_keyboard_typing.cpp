// Keys of the device's keyboard: what they type into which field.

#include "keyboard_scene.h"
#include "panel_application.h"

#include <texts.h>

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

/// A key's name in the language that is loaded.
QString word(const char *key)
{
    return QString::fromUtf8(lindenreed::device::texts::text(key));
}

} // namespace

class tst_PanelKeyboardTyping : public KeyboardTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void tapsType();
    void tapsBetweenKeysReachOne();
    void tapOnTheGroundIsNothing();
    void fingerThatSlidesOff();
    void fingerFromTheWindowBelow();
    void pressedKeyIsInverted();
    void shiftIsForOneLetter();
    void shiftTwiceIsOff();
    void shiftedKeyIsInverted();
    void deleteKey();
    void heldDeleteRepeats();
    void signsAndBack();
    void lettersAfterSignsInTheNextField();
    void digitsPad();
    void doneAccepts();
    void doneWithoutAnAcceptableText();
    void doneInAFieldOfManyLines();
    void acceptedFieldPassesTheFocusOn();
    void fieldOfLimitedLength();
    void fieldWithAValidator();
    void fieldThatDiesWhileAKeyIsDown();
    void typeAndKeysBesideTheKeyboard();
    void lettersOfALanguage_data();
    void lettersOfALanguage();
    void languageKey();
    void languageIsKept();

private:
    bool hold(const QPoint &place, int ms)
    {
        return m_scene->ask(u"hold"_s, {{u"x"_s, place.x()}, {u"y"_s, place.y()}, {u"ms"_s, ms}});
    }
};

void tst_PanelKeyboardTyping::tapsType()
{
    QVERIFY(m_scene->open());
    for (const QString &key : {u"d"_s, u"u"_s, u"n"_s, u"e"_s, u"Space"_s, u"a"_s, u"."_s})
        QVERIFY(m_scene->tapKey(key));
    QCOMPARE(m_scene->text("name"), u"dune a."_s);
    QCOMPARE(m_scene->log(), QStringList()); // nothing reached the window below
    QVERIFY(KeyboardScene::isOpen());
}

void tst_PanelKeyboardTyping::tapsBetweenKeysReachOne()
{
    QVERIFY(m_scene->open());
    const QRect key = rectangleOf(m_scene->key(u"g"_s));
    QVERIFY(m_scene->tap({key.left() - 2, key.center().y()}));
    QVERIFY(m_scene->tap({key.center().x(), key.bottom() + 2}));
    QCOMPARE(m_scene->text("name"), u"gg"_s);
}

void tst_PanelKeyboardTyping::tapOnTheGroundIsNothing()
{
    QVERIFY(m_scene->open("number"));
    QVERIFY(m_scene->tap({10, m_scene->place().center().y()})); // beside the pad
    QCOMPARE(m_scene->text("number"), QString());
    QCOMPARE(m_scene->log(), QStringList());
    QVERIFY(m_scene->item("number")->hasActiveFocus());
}

void tst_PanelKeyboardTyping::fingerThatSlidesOff()
{
    QVERIFY(m_scene->open());
    const QPoint from = m_scene->middleOf(u"a"_s);
    const QPoint to = m_scene->middleOf(u"s"_s);
    QVERIFY(m_scene->ask(u"drag"_s,
                         {{u"x1"_s, from.x()}, {u"y1"_s, from.y()}, {u"x2"_s, to.x()}, {u"y2"_s, to.y()}}));
    QCOMPARE(m_scene->text("name"), QString());
}

void tst_PanelKeyboardTyping::fingerFromTheWindowBelow()
{
    QVERIFY(m_scene->open());
    const QPoint to = m_scene->middleOf(u"s"_s);
    QVERIFY(m_scene->ask(u"drag"_s, {{u"x1"_s, 600}, {u"y1"_s, 300}, {u"x2"_s, to.x()}, {u"y2"_s, to.y()}}));
    QCOMPARE(m_scene->text("name"), QString());
    QCOMPARE(m_scene->log(), QStringList{u"below"_s});
}

void tst_PanelKeyboardTyping::pressedKeyIsInverted()
{
    QVERIFY(m_scene->open());
    const QRect key = rectangleOf(m_scene->key(u"i"_s));
    const QPoint corner = key.center() - QPoint(key.width() / 3, 0); // beside the letter
    QCOMPARE(panel_view::greyAt(corner.x(), corner.y()), 255);
    const quint64 before = panel_view::countFrom();
    m_scene->remote.send(u"hold"_s, {{u"x"_s, corner.x()}, {u"y"_s, corner.y()}, {u"ms"_s, 300}});
    QTRY_COMPARE(panel_view::greyAt(corner.x(), corner.y()), 0);
    const auto header = panel_view::snapshot().header;
    QCOMPARE(QRect(header.x, header.y, header.refreshWidth, header.refreshHeight), key); // the key alone
    QCOMPARE(panel_view::refreshNumber(), before + 1);
    QVERIFY(m_scene->remote.nextLine().value(u"ok"_s).toBool());
    QTRY_COMPARE(panel_view::greyAt(corner.x(), corner.y()), 255);
    QCOMPARE(m_scene->text("name"), u"i"_s);
}

void tst_PanelKeyboardTyping::shiftIsForOneLetter()
{
    QVERIFY(m_scene->open());
    QVERIFY(m_scene->tapKey(u"Shift"_s));
    QVERIFY(m_scene->key(u"a"_s).isEmpty());
    QCOMPARE(m_scene->key(u"Shift"_s).value(u"checked"_s), QJsonValue(true));
    QVERIFY(m_scene->tapKey(u"A"_s));
    QVERIFY(m_scene->tapKey(u"b"_s));
    QCOMPARE(m_scene->text("name"), u"Ab"_s);
}

void tst_PanelKeyboardTyping::shiftTwiceIsOff()
{
    QVERIFY(m_scene->open());
    QVERIFY(m_scene->pressKey(u"Shift"_s));
    QVERIFY(m_scene->pressKey(u"Shift"_s));
    QVERIFY(m_scene->pressKey(u"a"_s));
    QCOMPARE(m_scene->text("name"), u"a"_s);
}

void tst_PanelKeyboardTyping::shiftedKeyIsInverted()
{
    QVERIFY(m_scene->open());
    const QRect key = rectangleOf(m_scene->key(u"Shift"_s));
    const QPoint side(key.left() + 4, key.center().y());
    QCOMPARE(panel_view::greyAt(side.x(), side.y()), 255);
    QVERIFY(m_scene->pressKey(u"Shift"_s));
    QTRY_COMPARE(panel_view::greyAt(side.x(), side.y()), 0);
    QVERIFY(m_scene->pressKey(u"A"_s));
    QTRY_COMPARE(panel_view::greyAt(side.x(), side.y()), 255);
}

void tst_PanelKeyboardTyping::deleteKey()
{
    m_scene->item("name")->setProperty("text", u"abc"_s);
    QVERIFY(m_scene->open());
    QVERIFY(m_scene->tapKey(u"Delete"_s));
    QCOMPARE(m_scene->text("name"), u"ab"_s);
    QVERIFY(m_scene->pressKey(u"Delete"_s));
    QVERIFY(m_scene->pressKey(u"Delete"_s));
    QVERIFY(m_scene->pressKey(u"Delete"_s)); // of nothing
    QCOMPARE(m_scene->text("name"), QString());
}

void tst_PanelKeyboardTyping::heldDeleteRepeats()
{
    m_scene->item("name")->setProperty("text", u"a long name that is not wanted"_s);
    QVERIFY(m_scene->open());
    const qsizetype before = m_scene->text("name").size();
    QVERIFY(hold(m_scene->middleOf(u"Delete"_s), 1500));
    const qsizetype after = m_scene->text("name").size();
    QVERIFY2(after <= before - 3, qPrintable(m_scene->text("name")));
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(m_scene->text("name").size(), after); // up is up
}

void tst_PanelKeyboardTyping::signsAndBack()
{
    QVERIFY(m_scene->open());
    const QRect place = m_scene->place();
    QVERIFY(m_scene->tapKey(u"123"_s));
    QCOMPARE(m_scene->place(), place);
    for (const QString &key : {u"7"_s, u"%"_s, u","_s, u"Space"_s, u"?"_s})
        QVERIFY(m_scene->tapKey(key));
    QVERIFY(m_scene->tapKey(u"ABC"_s));
    QVERIFY(m_scene->tapKey(u"x"_s));
    QCOMPARE(m_scene->text("name"), u"7%, ?x"_s);
}

void tst_PanelKeyboardTyping::lettersAfterSignsInTheNextField()
{
    QVERIFY(m_scene->open());
    QVERIFY(m_scene->pressKey(u"123"_s));
    m_scene->item("number")->forceActiveFocus();
    QTRY_VERIFY(m_scene->key(u"?"_s).isEmpty());
    m_scene->item("name")->forceActiveFocus();
    QTRY_VERIFY(!m_scene->key(u"q"_s).isEmpty());
}

void tst_PanelKeyboardTyping::digitsPad()
{
    QVERIFY(m_scene->open("number"));
    for (const QString &key : {u"4"_s, u"7"_s, u"Delete"_s, u"2"_s, u"0"_s, u"Done"_s})
        QVERIFY(m_scene->tapKey(key));
    QCOMPARE(m_scene->text("number"), u"420"_s);
    QCOMPARE(m_scene->log(), QStringList{u"number accepted"_s});
    QVERIFY(!KeyboardScene::isOpen());
}

void tst_PanelKeyboardTyping::doneAccepts()
{
    QVERIFY(m_scene->open());
    QVERIFY(m_scene->tapKey(u"a"_s));
    QVERIFY(m_scene->tapKey(u"Done"_s));
    QCOMPARE(m_scene->log(), QStringList{u"accepted"_s});
    QVERIFY(!KeyboardScene::isOpen());
}

void tst_PanelKeyboardTyping::doneWithoutAnAcceptableText()
{
    QVERIFY(m_scene->open("number"));
    QVERIFY(m_scene->pressKey(u"7"_s));
    QVERIFY(m_scene->pressKey(u"Done"_s));
    QCOMPARE(m_scene->log(), QStringList());
    QCOMPARE(m_scene->text("number"), u"7"_s);
    QVERIFY(!KeyboardScene::isOpen());
}

void tst_PanelKeyboardTyping::doneInAFieldOfManyLines()
{
    QQmlEngine engine;
    const auto window = loadWindow(engine, R"(Window { visible: true
        TextEdit { objectName: "note"; width: 300; height: 200; text: "a"; focus: true
                   inputMethodHints: Qt.ImhMultiLine } })");
    QTRY_VERIFY(KeyboardScene::isOpen());
    QVERIFY(m_scene->pressKey(u"Done"_s));
    QVERIFY(!KeyboardScene::isOpen());
    QCOMPARE(window->findChild<QQuickItem *>(u"note"_s)->property("text").toString(), u"a"_s);
}

void tst_PanelKeyboardTyping::acceptedFieldPassesTheFocusOn()
{
    QVERIFY(m_scene->open());
    connect(m_scene->item("name"), SIGNAL(accepted()), m_scene->item("number"), SLOT(forceActiveFocus()));
    QVERIFY(m_scene->pressKey(u"Done"_s));
    QTRY_VERIFY(KeyboardScene::isOpen());
    QTRY_VERIFY(!m_scene->key(u"9"_s).isEmpty());
}

void tst_PanelKeyboardTyping::fieldOfLimitedLength()
{
    m_scene->item("name")->setProperty("maximumLength", 3);
    QVERIFY(m_scene->open());
    for (int i = 0; i < 5; ++i)
        QVERIFY(m_scene->pressKey(u"m"_s));
    QCOMPARE(m_scene->text("name"), u"mmm"_s);
}

void tst_PanelKeyboardTyping::fieldWithAValidator()
{
    QVERIFY(m_scene->open("number"));
    for (const QString &key : {u"9"_s, u"9"_s, u"9"_s, u"9"_s}) // 500 at most
        QVERIFY(m_scene->pressKey(key));
    QCOMPARE(m_scene->text("number").toInt() <= 999, true);
    QVERIFY(m_scene->text("number").size() <= 3);
    QVERIFY(m_scene->pressKey(u"Delete"_s));
    QCOMPARE(m_scene->text("number"), u"9"_s.repeated(m_scene->text("number").size()));
}

void tst_PanelKeyboardTyping::fieldThatDiesWhileAKeyIsDown()
{
    m_scene->item("loader")->setProperty("active", true);
    m_scene->item("loader")->property("item").value<QQuickItem *>()->forceActiveFocus();
    QTRY_VERIFY(KeyboardScene::isOpen());
    const QPoint key = m_scene->middleOf(u"a"_s);
    m_scene->remote.send(u"hold"_s, {{u"x"_s, key.x()}, {u"y"_s, key.y()}, {u"ms"_s, 300}});
    QTRY_COMPARE(panel_view::greyAt(key.x() - 20, key.y()), 0);
    m_scene->item("loader")->setProperty("active", false);
    QVERIFY(m_scene->remote.nextLine().value(u"ok"_s).toBool());
    QTRY_VERIFY(!KeyboardScene::isOpen());
    QVERIFY(m_scene->open()); // and works for the next field
    QVERIFY(m_scene->tapKey(u"a"_s));
    QCOMPARE(m_scene->text("name"), u"a"_s);
}

void tst_PanelKeyboardTyping::typeAndKeysBesideTheKeyboard()
{
    QVERIFY(m_scene->open());
    QVERIFY(m_scene->pressKey(u"a"_s));
    QVERIFY(m_scene->ask(u"type"_s, {{u"text"_s, u"bd"_s}}));
    QVERIFY(m_scene->ask(u"key"_s, {{u"name"_s, u"left"_s}}));
    QVERIFY(m_scene->pressKey(u"c"_s));
    QCOMPARE(m_scene->text("name"), u"abcd"_s);
    QVERIFY(KeyboardScene::isOpen());
    QVERIFY(m_scene->ask(u"key"_s, {{u"name"_s, u"centre"_s}}));
    QCOMPARE(m_scene->log(), QStringList{u"accepted"_s});
}

void tst_PanelKeyboardTyping::lettersOfALanguage_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("rows");
    QTest::newRow("de") << u"größeẞ"_s << 5;
    QTest::newRow("es") << u"niñoÁ"_s << 5;
    QTest::newRow("fr") << u"forêtŒoù"_s << 5;
    QTest::newRow("it") << u"cittàÈ"_s << 5;
    QTest::newRow("pl") << u"żółwĄ"_s << 5;
    QTest::newRow("ru") << u"съёмкаЖ"_s << 4;
    QTest::newRow("uk") << u"їжачокҐ"_s << 4;
    QTest::newRow("zh_CN") << u"abcX"_s << 4;
}

void tst_PanelKeyboardTyping::lettersOfALanguage()
{
    QFETCH(QString, text);
    QFETCH(int, rows);
    lindenreed::device::texts::load(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(m_scene->open());
    for (const QChar letter : text) {
        if (m_scene->key(letter).isEmpty())
            QVERIFY(m_scene->pressKey(word("@KeyShift")));
        QVERIFY(m_scene->pressKey(letter));
    }
    QCOMPARE(m_scene->text("name"), text);
    QSet<int> tops;
    const QJsonArray keys = m_scene->keyboard().value(u"children"_s).toArray();
    for (const QJsonValue &key : keys)
        tops.insert(rectangleOf(key.toObject()).top());
    QCOMPARE(tops.size(), rows);
}

void tst_PanelKeyboardTyping::languageKey()
{
    lindenreed::device::texts::load(u"ru"_s);
    QVERIFY(m_scene->open());
    QVERIFY(m_scene->pressKey(u"ж"_s));
    QVERIFY(m_scene->tapKey(word("@KeyLanguage")));
    QVERIFY(m_scene->pressKey(u"q"_s));
    QVERIFY(m_scene->key(u"ж"_s).isEmpty());
    QVERIFY(m_scene->pressKey(u"123"_s));
    QVERIFY(m_scene->pressKey(u"ABC"_s));
    QVERIFY(m_scene->tapKey(word("@KeyLanguage")));
    QVERIFY(m_scene->pressKey(u"123"_s));
    QVERIFY(m_scene->pressKey(u"АБВ"_s));
    QVERIFY(m_scene->pressKey(u"ю"_s));
    QCOMPARE(m_scene->text("name"), u"жqю"_s);
}

void tst_PanelKeyboardTyping::languageIsKept()
{
    lindenreed::device::texts::load(u"ru"_s);
    QVERIFY(m_scene->open());
    QVERIFY(m_scene->pressKey(word("@KeyLanguage")));
    QGuiApplication::inputMethod()->hide();
    QGuiApplication::inputMethod()->show();
    QTRY_VERIFY(KeyboardScene::isOpen());
    QVERIFY(m_scene->pressKey(u"q"_s));
    QVERIFY(m_scene->pressKey(word("@KeyLanguage")));
}

PANEL_TEST_MAIN(tst_PanelKeyboardTyping)
#include "tst_panel_keyboard_typing.moc"
