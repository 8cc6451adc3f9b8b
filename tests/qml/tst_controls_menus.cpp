// Context menus: what they show, and where.

#include "context_menu_test.h"
#include "panel_application.h"

using namespace Qt::StringLiterals;

class tst_ControlsMenus : public ContextMenuTest
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(endScene(m_scene), QStringList()); }

    void opensWithItsRows();
    void textIsPlain();
    void iconsOfRows();
    void titleChecksItsRow();
    void customTextOfThisMomentIsMeasured();
    void place_data();
    void place();
    void placeOfAHighMenu_data();
    void placeOfAHighMenu();
    void staysOnTheScreenWhenItTurns();
    void longMenuScrolls();
    void longTextIsElided();
    void accessibleRows();
    void loaderOfNothing();
};

void tst_ControlsMenus::opensWithItsRows()
{
    make("ImageTextButton", threeRows);
    QVERIFY(!isOpen());
    open();
    QCOMPARE(m_scene->item(u"loader"_s)->parentItem(), m_scene->window().contentItem());
    int last = 0;
    for (const QString &text : {u"Rename"_s, u"Add photos"_s, u"Delete"_s}) {
        QVERIFY2(row(text), qPrintable(text));
        const QRect rectangle = sceneRectangle(row(text));
        QVERIFY(rectangle.top() > last);
        QCOMPARE(rectangle.height(), 85); // 120 of the design
        last = rectangle.top();
    }
    QVERIFY2(!row({}, QAccessible::Heading), "no title, no place for it");
}

void tst_ControlsMenus::textIsPlain()
{
    make("ImageTextButton", "append({uid_: 0, text_: '<b>Bold</b>', image_: ''})");
    open();
    QVERIFY(row(u"<b>Bold</b>"_s));
    for (QQuickItem *item : row(u"<b>Bold</b>"_s)->childItems()) {
        if (item->inherits("QQuickText")) {
            QCOMPARE(item->property("text").toString(), u"<b>Bold</b>"_s);
            QCOMPARE(item->property("textFormat").toInt(), int(Qt::PlainText));
        }
    }
}

void tst_ControlsMenus::iconsOfRows()
{
    make("ImageTextButton", threeRows);
    open();
    const QRect place = sceneRectangle(row(u"Delete"_s));
    const auto sources = [this] {
        QStringList found;
        for (QQuickItem *item : row(u"Delete"_s)->childItems()) {
            if (item->inherits("QQuickImage") && item->isVisible())
                found.append(item->property("source").toString());
        }
        return found;
    };
    QCOMPARE(sources(), QStringList(u"image://resource/trash"_s));
    QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, place.center());
    QTRY_COMPARE(sources(), QStringList(u"image://resource_inv/trash"_s));
    const QImage pressed = m_scene->window().grabWindow();
    QCOMPARE(pressed.pixelColor(place.right() - 8, place.center().y()), QColor(Qt::black));
    QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(chosen(), QVariantList());
}

void tst_ControlsMenus::titleChecksItsRow()
{
    make("RadioButton", threeRows, "Delete");
    open();
    QVERIFY(row(u"Delete"_s, QAccessible::Heading));
    QVERIFY(accessible(row(u"Delete"_s, QAccessible::RadioButton))->state().checked);
    QVERIFY(!accessible(row(u"Rename"_s, QAccessible::RadioButton))->state().checked);
    QVERIFY(accessible(row(u"Rename"_s, QAccessible::RadioButton))->state().checkable);
}

void tst_ControlsMenus::customTextOfThisMomentIsMeasured()
{
    make("RadioButton", threeRows, "Delete");
    open();
    const int before = sceneRectangle(panel()).width();
    QCOMPARE(before, 339); // 480 of the design, at least
    click({590, 790});
    QVERIFY(!isOpen());
    QVERIFY(QMetaObject::invokeMethod(m_scene->root()->property("rows").value<QObject *>(), "setProperty",
                                      Q_ARG(int, 1), Q_ARG(QString, u"text_"_s),
                                      Q_ARG(QVariant, u"Custom (45 seconds of this)"_s)));
    open();
    const QRect wide = sceneRectangle(panel());
    QVERIFY2(wide.width() > before, "as wide as its text");
    QVERIFY(wide.left() >= 34 && wide.right() < 600 - 34);
}

void tst_ControlsMenus::place_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QByteArray>("side");

    QTest::newRow("under a row") << QRect(34, 100, 532, 100) << QByteArray("under");
    QTest::newRow("above a row near the foot") << QRect(34, 600, 532, 100) << QByteArray("above");
    QTest::newRow("at the right of something tall") << QRect(20, 60, 150, 700) << QByteArray("right");
    QTest::newRow("at the left of something tall") << QRect(430, 60, 150, 700) << QByteArray("left");
    QTest::newRow("over what fills the screen") << QRect(34, 0, 532, 800) << QByteArray("over");
    QTest::newRow("of something beyond the left edge") << QRect(-300, 100, 200, 50) << QByteArray("under");
    QTest::newRow("of something below the screen") << QRect(40, 900, 200, 50) << QByteArray("any");
}

void tst_ControlsMenus::place()
{
    QFETCH(QRect, area);
    QFETCH(QByteArray, side);

    make("ImageTextButton", threeRows, {}, area);
    open();
    const QRect frame = sceneRectangle(panel());
    QVERIFY(QRect(34, 34, 600 - 68, 800 - 68).contains(frame)); // page margins, 48 of the design
    const QByteArray found = frame.top() > area.bottom() ? "under"
        : frame.bottom() < area.top()                    ? "above"
        : frame.left() > area.right()                    ? "right"
        : frame.right() < area.left()                    ? "left"
                                                         : "over";
    if (side != "any")
        QCOMPARE(found, side);
    if ((side == "under" && area.left() >= 0) || side == "over")
        QCOMPARE(frame.right(), area.right());
}

void tst_ControlsMenus::placeOfAHighMenu_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<bool>("low");

    QTest::newRow("of a row at the top") << QRect(34, 100, 532, 100) << true;
    QTest::newRow("of a row above the middle") << QRect(34, 340, 532, 100) << true;
    QTest::newRow("of a row below the middle") << QRect(34, 360, 532, 100) << false;
    QTest::newRow("of a row at the foot") << QRect(34, 650, 532, 100) << false;
}

void tst_ControlsMenus::placeOfAHighMenu()
{
    QFETCH(QRect, area);
    QFETCH(bool, low);

    // Room for it neither under the row nor above: it keeps clear of what it can.
    make("ImageTextButton", "for (let i = 0; i < 7; ++i) append({uid_: i, text_: 'Row ' + i})", {}, area);
    open();
    const QRect frame = sceneRectangle(panel());
    QVERIFY(frame.height() > 800 - 68 - 200 && frame.height() < 800 - 68);
    QCOMPARE(frame.right(), area.right());
    QCOMPARE(low ? frame.bottom() : frame.top(), low ? 800 - 34 - 1 : 34);
}

void tst_ControlsMenus::staysOnTheScreenWhenItTurns()
{
    make("ImageTextButton", threeRows, {}, {34, 640, 532, 100});
    open();
    m_scene->window().resize(800, 600);
    m_scene->root()->setSize({800, 600});
    QTRY_VERIFY(QRect(34, 34, 800 - 68, 600 - 68).contains(sceneRectangle(panel())));
}

void tst_ControlsMenus::longMenuScrolls()
{
    make("RadioButton", manyRows, "Row 3");
    open();
    const QRect frame = sceneRectangle(panel());
    QVERIFY(frame.height() <= 800 - 68);
    QVERIFY(row(u"Row 3"_s, QAccessible::RadioButton));
    QVERIFY2(!row(u"Row 29"_s, QAccessible::RadioButton), "not there yet");
    auto *list = row(u"Row 3"_s, QAccessible::RadioButton)->parentItem()->parentItem();
    QCOMPARE(int(list->height()) % 85, 0); // whole rows
    list->setProperty("contentY", 85.0 * 30 - list->height());
    QTRY_VERIFY(row(u"Row 29"_s, QAccessible::RadioButton));
    click(sceneRectangle(row(u"Row 29"_s, QAccessible::RadioButton)).center());
    QTRY_COMPARE(chosen(), QVariantList{29});
}

void tst_ControlsMenus::longTextIsElided()
{
    make("ImageTextButton", "append({uid_: 0, text_: 'Very '.repeat(60), image_: 'trash'})");
    open();
    QCOMPARE(sceneRectangle(panel()).width(), 600 - 68);
    bool truncated = false;
    for (QQuickItem *item : row(u"Very "_s.repeated(60))->childItems())
        truncated = truncated || item->property("truncated").toBool();
    QVERIFY(truncated);
}

void tst_ControlsMenus::accessibleRows()
{
    make("RadioButton", threeRows, "Delete");
    open();
    QVERIFY(row(u"Rename"_s, QAccessible::RadioButton));
    m_scene.reset();
    make("ImageTextButton", threeRows, "Delete");
    open();
    QVERIFY(row(u"Rename"_s, QAccessible::MenuItem));
    QVERIFY(!accessible(row(u"Delete"_s, QAccessible::MenuItem))->state().checked);
    const auto focused = [this](const QString &text) { return bool(accessible(row(text))->state().focused); };
    QVERIFY(focused(u"Rename"_s) && !focused(u"Add photos"_s));
    QTest::keyClick(&m_scene->window(), Qt::Key_Down);
    QVERIFY(!focused(u"Rename"_s) && focused(u"Add photos"_s));
}

void tst_ControlsMenus::loaderOfNothing()
{
    m_scene = std::make_unique<QmlScene>(
        "import QtQuick\nimport com.lindenreed.controls 1.0\n"
        "Item { Item { id: none; visible: false }\n"
        "ListModel { id: rows }\n"
        "Component.onCompleted: {\n"
        "Global.openContextMenuLoader(null, rows, '', '', Qt.rect(0, 0, 1, 1))\n"
        "Global.openContextMenuLoader(none, null, '', '', Qt.rect(0, 0, 1, 1)) } }");
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

PANEL_TEST_MAIN(tst_ControlsMenus)
#include "tst_controls_menus.moc"
