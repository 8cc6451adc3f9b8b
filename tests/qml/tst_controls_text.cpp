// Text in the styles of the theme.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

using namespace Qt::StringLiterals;

class tst_ControlsText : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void isPlain();
    void style_data();
    void style();
    void ownFontWins();
    void fixedLinesBringTheirHeight();
    void accessibility();

private:
    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsText::cleanup()
{
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsText::isPlain()
{
    m_scene = controlsScene(
        "StyledText { objectName: 'tagged'; text: '<b>x</b>' }\nText { objectName: 'typed'\n"
        "textFormat: Text.PlainText; text: '<b>x</b>'; font.family: 'Noto Sans'; font.pixelSize: 30 }");
    QVERIFY(std::abs(m_scene->item(u"tagged"_s)->implicitWidth() - m_scene->item(u"typed"_s)->implicitWidth())
            < 2);
}

void tst_ControlsText::style_data()
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

void tst_ControlsText::style()
{
    QFETCH(QByteArray, style);
    QFETCH(int, size);
    QFETCH(bool, bold);
    QFETCH(double, height);

    m_scene
        = controlsScene("StyledText { objectName: 'text'; text: 'Hills'; " + style + " }", {600, 800}, 300);
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

void tst_ControlsText::ownFontWins()
{
    m_scene = controlsScene(
        "StyledText { objectName: 'text'; text: 'Hills'; styledFont: FontStyles.Heading4; font.bold: true\n"
        "font.italic: true; font.family: 'DejaVu Sans'; color: 'white' }");
    const QFont font = m_scene->item(u"text"_s)->property("font").value<QFont>();
    QVERIFY(font.bold());
    QVERIFY(font.italic());
    QCOMPARE(font.family(), u"DejaVu Sans"_s);
    QCOMPARE(font.pixelSize(), 41);
    QCOMPARE(m_scene->item(u"text"_s)->property("color").value<QColor>(), QColor(Qt::white));
}

void tst_ControlsText::fixedLinesBringTheirHeight()
{
    m_scene = controlsScene(
        "StyledText { objectName: 'styled'; text: 'a\\nb'; styledFont: FontStyles.BodyL }\n"
        "StyledText { objectName: 'unstyled'; text: 'a\\nb'; lineHeightMode: Text.FixedHeight }\n"
        "StyledText { objectName: 'told'; text: 'a\\nb'; styledFont: FontStyles.BodyL; lineHeight: 42 }",
        {600, 800}, 300);
    QCOMPARE(m_scene->item(u"styled"_s)->height(), 128.0);
    QCOMPARE(m_scene->item(u"unstyled"_s)->height(),
             115.0); // one line of 57, and the last as high as the font
    QCOMPARE(m_scene->item(u"told"_s)->height(), 84.0);
}

void tst_ControlsText::accessibility()
{
    m_scene = controlsScene("StyledText { objectName: 'text'; text: 'Hills' }");
    QCOMPARE(accessible(m_scene->item(u"text"_s))->role(), QAccessible::StaticText);
    QCOMPARE(accessible(m_scene->item(u"text"_s))->text(QAccessible::Name), u"Hills"_s);
    m_scene->item(u"text"_s)->setProperty("text", u"Lakes"_s);
    QCOMPARE(accessible(m_scene->item(u"text"_s))->text(QAccessible::Name), u"Lakes"_s);
}

PANEL_TEST_MAIN(tst_ControlsText)
#include "tst_controls_text.moc"
