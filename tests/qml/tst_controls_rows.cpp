// Rows of the settings screens.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

#include <QSignalSpy>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsRows : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void rowMeasures();
    void tapTellsOnce_data();
    void tapTellsOnce();
    void pressedRow();
    void switchShowsItsValue();
    void switchTellsAndKeepsItsValue();
    void longTextsStayApart();
    void valueOfARow();
    void disabledRow();
    void rowScrollsWithItsList();

private:
    /// At 300 dpi, `items` in a window of 1072 by 800 pixels.
    void make(const QByteArray &items);
    void tap(const QPoint &point) { m_scene->tap(point); }

    std::unique_ptr<QmlScene> m_scene;
};

namespace {

const QByteArray textRow = "SettingsBitmapTextTextButton { objectName: 'row'; width: 952; x: 48\n"
                           "title: 'Change picture every'; text: '30 seconds'\n"
                           "image_src: 'image://resource/validity_date'\n"
                           "image_src_pressed: 'image://resource_inv/validity_date'; property int told: 0\n"
                           "onAction: ++told }";
const QByteArray switchRow
    = "SettingsBitmapTextSwitcher { objectName: 'row'; width: 952; x: 48; title: 'Shuffle'\n"
      "image_src: 'image://resource/player2_mode_random'\n"
      "image_src_pressed: 'image://resource_inv/player2_mode_random'; property int told: 0\n"
      "onAction: ++told }";

} // namespace

void tst_ControlsRows::make(const QByteArray &items)
{
    m_scene = controlsScene(items, {1072, 800}, 300);
    QVERIFY(m_scene);
}

void tst_ControlsRows::cleanup()
{
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsRows::rowMeasures()
{
    make(textRow);
    QCOMPARE(m_scene->item(u"row"_s)->height(), 144.0);
    QCOMPARE(m_scene->item(u"row"_s)->property("radius").toInt(), 12); // separators take it as their margin
    const QImage window = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    const QRect icon = ink(window.copy(0, 0, 140, 144));
    QVERIFY2(icon.left() >= 60 && icon.left() <= 72, "the icon stands on the content line");
    QVERIFY(std::abs(icon.center().y() - 72) <= 2);
    const QRect title = ink(window.copy(140, 0, 500, 144));
    QVERIFY2(title.left() + 140 >= 156 && title.left() + 140 <= 162, "the title in the text column");
    const QRect value = ink(window.copy(700, 0, 372, 144), 0x80);
    QVERIFY2(value.right() + 700 <= 988 && value.right() + 700 >= 982, "the value ends on the content line");
    int darkest = 255;
    for (int y = 0; y < 144; ++y) {
        for (int x = 700; x < 1000; ++x)
            darkest = std::min(darkest, grey(window, x, y));
    }
    QCOMPARE(darkest, 0x55);
}

void tst_ControlsRows::tapTellsOnce_data()
{
    QTest::addColumn<QByteArray>("row");

    QTest::newRow("value") << textRow;
    QTest::newRow("switch") << switchRow;
}

void tst_ControlsRows::tapTellsOnce()
{
    QFETCH(QByteArray, row);

    make(row);
    QQuickItem *item = m_scene->item(u"row"_s);
    tap(QPoint(49, 1)); // the whole row is the target
    QCOMPARE(item->property("told").toInt(), 1);
    tap(QPoint(48 + 951, 143));
    QCOMPARE(item->property("told").toInt(), 2);
    tap(QPoint(500, 144));
    QCOMPARE(item->property("told").toInt(), 2);
    QVERIFY(pressByAccessibility(item));
    QCOMPARE(item->property("told").toInt(), 3);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        item->forceActiveFocus();
        QTest::keyClick(&m_scene->window(), key);
    }
    QCOMPARE(item->property("told").toInt(), 6);
}

void tst_ControlsRows::pressedRow()
{
    make(textRow);
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, QPoint(500, 100));
    const QImage pressed = m_scene->picture(u"row"_s);
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(500, 400));
    QCOMPARE(grey(pressed, 0, 72), 0);
    QCOMPARE(grey(pressed, 951, 72), 0);
    QVERIFY2(grey(pressed, 0, 0) > 200, "round corners show the paper");
    // Icon, title and value are white now.
    for (const QRect &part : {QRect(12, 20, 72, 104), QRect(108, 20, 400, 104), QRect(700, 20, 240, 104)}) {
        QImage inside = pressed.copy(part);
        inside.invertPixels();
        QVERIFY(!ink(inside, 20).isEmpty());
    }
    QCOMPARE(m_scene->item(u"row"_s)->property("told").toInt(), 0); // let go beside it
}

void tst_ControlsRows::switchShowsItsValue()
{
    make(switchRow);
    QQuickItem *row = m_scene->item(u"row"_s);
    // The sign is 112 by 60 and ends 12 inside the row.
    const QImage off = m_scene->picture(u"row"_s).copy(952 - 12 - 112, 42, 112, 60);
    QCOMPARE(ink(off).size(), QSize(112, 60));
    QCOMPARE(grey(off, 90, 30), 255); // nothing at the right
    QCOMPARE(grey(off, 11, 30), 0); // the knob's line at the left
    QCOMPARE(grey(off, 30, 30), 255);
    QCOMPARE(grey(off, 0, 0), 255);
    QVERIFY(!accessible(row)->state().checked);

    row->setProperty("switch_value", true);
    const QImage on = m_scene->picture(u"row"_s).copy(952 - 12 - 112, 42, 112, 60);
    QCOMPARE(grey(on, 30, 30), 0);
    QCOMPARE(grey(on, 112 - 30, 30), 255); // the knob
    QVERIFY(accessible(row)->state().checked);
    QVERIFY(accessible(row)->state().checkable);
}

void tst_ControlsRows::switchTellsAndKeepsItsValue()
{
    make(switchRow);
    QQuickItem *row = m_scene->item(u"row"_s);
    QCOMPARE(accessible(row)->role(), QAccessible::CheckBox);
    QCOMPARE(accessibleName(row), u"Shuffle"_s);
    QVERIFY(actByAccessibility(row, QAccessibleActionInterface::toggleAction()));
    QCOMPARE(row->property("told").toInt(), 1);
    QVERIFY2(!row->property("switch_value").toBool(), "turning it round is the screen's affair");
}

void tst_ControlsRows::longTextsStayApart()
{
    make("SettingsBitmapTextTextButton { objectName: 'row'; width: 600; title: 'Weather '.repeat(20)\n"
         "text: 'Custom '.repeat(20); image_src: 'image://resource/validity_date' }");
    const QImage row = m_scene->picture(u"row"_s);
    QCOMPARE(m_scene->item(u"row"_s)->height(), 144.0);
    // The value has at most 45 % of the row, and 24 pixels stay free before it.
    const int valueLeft = 600 - 12 - 270;
    QVERIFY(ink(row.copy(valueLeft - 24, 0, 24, 144), 200).isEmpty());
    QVERIFY(ink(row.copy(valueLeft, 0, 270, 144)).width() > 200);
    const QRect title = ink(row.copy(108, 0, valueLeft - 24 - 108, 144));
    QVERIFY2(title.height() > 64 && title.height() < 128, "two lines, none of them cut");
}

void tst_ControlsRows::valueOfARow()
{
    make(textRow);
    QQuickItem *row = m_scene->item(u"row"_s);
    QCOMPARE(accessible(row)->role(), QAccessible::Button);
    QCOMPARE(accessibleName(row), u"Change picture every"_s);
    QCOMPARE(accessible(row)->text(QAccessible::Description), u"30 seconds"_s);
    QVERIFY2(findAccessible(row, QAccessible::StaticText, u"30 seconds"_s), "every visible text is told");
    row->setProperty("text", u"1 minute"_s);
    QCOMPARE(accessible(row)->text(QAccessible::Description), u"1 minute"_s);
}

void tst_ControlsRows::disabledRow()
{
    make("SettingsBitmapTextSwitcher { objectName: 'row'; width: 952; title: 'Shuffle'; enabled: false\n"
         "switch_value: true; image_src: 'image://resource/player2_mode_random'; property int told: 0\n"
         "onAction: ++told }");
    const QImage row = m_scene->picture(u"row"_s);
    int darkest = 255;
    for (int y = 0; y < row.height(); ++y) {
        for (int x = 0; x < row.width(); ++x)
            darkest = std::min(darkest, grey(row, x, y));
    }
    QCOMPARE(darkest, 0xAA);
    tap(QPoint(500, 72));
    pressByAccessibility(m_scene->item(u"row"_s));
    QCOMPARE(m_scene->item(u"row"_s)->property("told").toInt(), 0);
}

void tst_ControlsRows::rowScrollsWithItsList()
{
    make("Flickable { objectName: 'list'; width: 1072; height: 400; contentHeight: rows.height\n"
         "pressDelay: GlobalValues.listPressDelay; Column { id: rows; width: 1072; Repeater { model: 10\n"
         "SettingsBitmapTextTextButton { title: 'Row ' + index; objectName: 'row' + index; width: 1072 } } } "
         "}");
    QSignalSpy action(m_scene->item(u"row2"_s), SIGNAL(action()));
    QQuickWindow *window = &m_scene->window();
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(500, 350));
    for (int y = 340; y >= 150; y -= 10)
        QTest::mouseMove(window, QPoint(500, y));
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(500, 150));
    QTRY_VERIFY(m_scene->item(u"list"_s)->property("contentY").toReal() > 50);
    QCOMPARE(action.count(), 0);
}

PANEL_TEST_MAIN(tst_ControlsRows)
#include "tst_controls_rows.moc"
