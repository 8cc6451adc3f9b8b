// The combo box: what it shows, its menu, and the row numbers it speaks of.

#include <facts.h>

#include "accessible_items.h"
#include "panel_application.h"
#include "qml_scene.h"

#include <QQmlExpression>
#include <QSignalSpy>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsComboBox : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void showsTheSelectedRow_data();
    void showsTheSelectedRow();
    void followsItsModel();
    void followsItsBindingAfterAChoice();
    void prefixIsAboveTheValue();
    void maximumWidth();
    void fixedWidth();
    void border();
    void tapOpensAndChooses();
    void selectedBeforeItIsTold();
    void selectedRowCanBeChosenAgain();
    void tapOutsideClosesAlone();
    void menuLiesOverEverything();
    void menuPlace_data();
    void menuPlace();
    void sevenRowsAndNoMore();
    void highlight_data();
    void highlight();
    void radioSignsAreAState();
    void closes_data();
    void closes();
    void goesWhileItIsOpen();
    void keysWithTheFocusKept();
    void keyBackCloses();
    void disabled();
    void accessibility();

private:
    void make(const QByteArray &properties, const QByteArray &rows = {}, const QByteArray &items = {});
    QQuickItem *box() const { return m_scene->item(u"box"_s); }
    QQuickItem *row(const QString &text, QAccessible::Role role = QAccessible::RadioButton) const;
    QQuickItem *menu() const;
    bool isOpened() const { return box()->property("isOpened").toBool(); }
    QString name() const { return accessibleName(box()); }
    QVariantList chosen() const { return m_scene->root()->property("chosen").toList(); }
    void open();
    void click(QQuickItem *item);

    std::unique_ptr<QmlScene> m_scene;
};

namespace {

const QByteArray units = "append({uid_: 0, text_: 'Seconds'}); append({uid_: 1, text_: 'Minutes'});"
                         "append({uid_: 2, text_: 'Hours'})";

} // namespace

void tst_ControlsComboBox::make(const QByteArray &properties, const QByteArray &rows, const QByteArray &items)
{
    m_scene = std::make_unique<QmlScene>(
        QByteArray(R"(import QtQuick
import com.lindenreed.controls 1.0
Item {
    id: screen
    property var chosen: []
    property int unit: 0
    property alias rows: rows
    ListModel { id: rows; Component.onCompleted: { @ROWS@ } }
    ComboBox {
        id: box
        objectName: 'box'
        @PLACE@
        menuItems: rows
        @STATE@
        onChoosed: uid => screen.chosen = screen.chosen.concat([uid, selectedUid, isOpened])
        @PROPERTIES@
    }
    @ITEMS@
})")
            .replace("@ROWS@", rows.isEmpty() ? units : rows)
            .replace("@PLACE@", properties.contains("y: ") ? "" : "x: 60; y: 100")
            .replace("@STATE@", properties.contains("state: ") ? "" : "state: 'RadioTextButton'")
            .replace("@PROPERTIES@", properties)
            .replace("@ITEMS@", items));
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

void tst_ControlsComboBox::cleanup()
{
    const QStringList warnings = m_scene ? m_scene->warnings() : QStringList();
    m_scene.reset();
    facts().dpi = 212;
    QCOMPARE(warnings, QStringList());
}

QQuickItem *tst_ControlsComboBox::row(const QString &text, QAccessible::Role role) const
{
    return findAccessible(m_scene->window().contentItem(), role, text);
}

QQuickItem *tst_ControlsComboBox::menu() const
{
    return findAccessible(m_scene->window().contentItem(), QAccessible::PopupMenu);
}

void tst_ControlsComboBox::click(QQuickItem *item)
{
    QVERIFY(item);
    QTest::mouseClick(&m_scene->window(), Qt::LeftButton, {}, sceneRectangle(item).center());
}

void tst_ControlsComboBox::open()
{
    click(box());
    QVERIFY(isOpened());
    QVERIFY(menu());
    m_scene->window().grabWindow(); // lays the rows out
}

void tst_ControlsComboBox::showsTheSelectedRow_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QByteArray>("selected");
    QTest::addColumn<QString>("shown");

    const QByteArray gaps = "append({uid_: 4, text_: 'Four'}); append({uid_: 9, text_: 'Nine'})";
    QTest::newRow("none at first") << QByteArray() << QByteArray() << QString();
    QTest::newRow("-1 is none") << QByteArray() << QByteArray("selectedUid: -1") << QString();
    QTest::newRow("a row") << QByteArray() << QByteArray("selectedUid: 1") << u"Minutes"_s;
    QTest::newRow("by uid, not by place") << gaps << QByteArray("selectedUid: 9") << u"Nine"_s;
    QTest::newRow("a uid in a gap") << gaps << QByteArray("selectedUid: 1") << QString();
    QTest::newRow("-1 is none even where a row has it")
        << QByteArray("append({uid_: -1, text_: 'Minus'})") << QByteArray("selectedUid: -1") << QString();
}

void tst_ControlsComboBox::showsTheSelectedRow()
{
    QFETCH(QByteArray, rows);
    QFETCH(QByteArray, selected);
    QFETCH(QString, shown);

    make(selected, rows);
    QCOMPARE(name(), shown);
}

void tst_ControlsComboBox::followsItsModel()
{
    // As a screen refills it: nothing selected, no rows, other rows, a selection.
    make("selectedUid: 1");
    auto *rows = m_scene->root()->property("rows").value<QObject *>();
    box()->setProperty("selectedUid", -1);
    QVERIFY(QMetaObject::invokeMethod(rows, "clear"));
    QCOMPARE(name(), QString());
    box()->setProperty("selectedUid", 2);
    QCOMPARE(name(), QString());
    const auto append = [this](const QByteArray &row) {
        QQmlExpression(qmlContext(m_scene->root()), m_scene->root(),
                       QString::fromUtf8("rows.append(" + row + ")"))
            .evaluate();
    };
    append("{uid_: 0, text_: 'Regular'}");
    QCOMPARE(name(), QString());
    append("{uid_: 2, text_: 'Italic'}");
    QCOMPARE(name(), u"Italic"_s);
    QVERIFY(QMetaObject::invokeMethod(rows, "setProperty", Q_ARG(int, 1), Q_ARG(QString, u"text_"_s),
                                      Q_ARG(QVariant, u"Slanted"_s)));
    QCOMPARE(name(), u"Slanted"_s);
}

void tst_ControlsComboBox::followsItsBindingAfterAChoice()
{
    make("selectedUid: screen.unit");
    open();
    click(row(u"Hours"_s));
    QCOMPARE(name(), u"Hours"_s);
    QCOMPARE(box()->property("selectedUid").toInt(), 2);
    m_scene->root()->setProperty("unit", 1);
    QCOMPARE(name(), u"Minutes"_s);
}

void tst_ControlsComboBox::prefixIsAboveTheValue()
{
    make("selectedUid: 1; preffix_text: 'Style: '");
    QCOMPARE(name(), u"Style: Minutes"_s);
    QRectF prefix;
    QRectF value;
    for (QQuickItem *item : box()->childItems()) {
        const QRectF place(item->position(), item->size());
        if (item->property("text").toString() == u"Style: ")
            prefix = place;
        if (item->property("text").toString() == u"Minutes")
            value = place;
    }
    QVERIFY(prefix.top() >= 0 && prefix.height() > 0);
    QVERIFY(value.top() > prefix.center().y());
    QVERIFY(value.bottom() <= box()->height());
    QCOMPARE(prefix.left(), 0.0); // without a border the text begins at the edge
    QCOMPARE(value.left(), 0.0);
}

void tst_ControlsComboBox::maximumWidth()
{
    make("selectedUid: 0");
    const qreal natural = box()->width();
    QCOMPARE(box()->height(), 79.0); // 112 of the design
    m_scene.reset();
    make("selectedUid: 0; max_width: 1000");
    QCOMPARE(box()->width(), natural);
    m_scene.reset();
    make("selectedUid: 0; max_width: 90");
    QCOMPARE(box()->width(), 90.0);
    bool truncated = false;
    for (QQuickItem *item : box()->childItems()) {
        QVERIFY2(item->x() + item->width() <= 90 + 6, "nothing stands out but the ground of what is pressed");
        truncated = truncated || item->property("truncated").toBool();
    }
    QVERIFY(truncated);
    QCOMPARE(name(), u"Seconds"_s);
    m_scene.reset();
    make("selectedUid: 0; max_width: -20"); // a screen that is being laid out
    QCOMPARE(box()->width(), 0.0);
}

void tst_ControlsComboBox::fixedWidth()
{
    make("selectedUid: 0; width: 221; show_border: true");
    const qreal arrow = 221 - 10 - 23; // padding 14 and arrow 32 of the design
    bool found = false;
    for (QQuickItem *item : box()->childItems())
        found = found || (item->inherits("QQuickImage") && item->x() == arrow);
    QVERIFY2(found, "the arrow stands at the right");
}

void tst_ControlsComboBox::border()
{
    make("selectedUid: 0; width: 221; show_border: true");
    QCOMPARE(m_scene->picture(u"box"_s).pixelColor(0, 40), QColor(Qt::black));
    m_scene.reset();
    make("selectedUid: 0; width: 221");
    QCOMPARE(m_scene->picture(u"box"_s).pixelColor(0, 20), QColor(Qt::white));
}

void tst_ControlsComboBox::tapOpensAndChooses()
{
    make("selectedUid: 0");
    QSignalSpy opened(box(), SIGNAL(isOpenedChanged()));
    open();
    QCOMPARE(opened.count(), 1);
    click(row(u"Minutes"_s));
    QCOMPARE(opened.count(), 2);
    QVERIFY(!isOpened());
    QTRY_VERIFY(!menu());
    QCOMPARE(name(), u"Minutes"_s);
    QCOMPARE(chosen().value(0).toInt(), 1);
}

void tst_ControlsComboBox::selectedBeforeItIsTold()
{
    make("selectedUid: 0", "append({uid_: 3, text_: 'Three'}); append({uid_: 8, text_: 'Eight'})");
    open();
    click(row(u"Eight"_s));
    QCOMPARE(chosen(), (QVariantList{8, 8, false}));
}

void tst_ControlsComboBox::selectedRowCanBeChosenAgain()
{
    make("selectedUid: 1");
    open();
    click(row(u"Minutes"_s));
    QCOMPARE(chosen(), (QVariantList{1, 1, false}));
}

void tst_ControlsComboBox::tapOutsideClosesAlone()
{
    make("selectedUid: 1", {},
         "BitmapButton { objectName: 'behind'; x: 480; y: 700; onAction: screen.chosen = ['behind'] }");
    open();
    click(m_scene->item(u"behind"_s));
    QVERIFY(!isOpened());
    QCOMPARE(chosen(), QVariantList());
    QCOMPARE(name(), u"Minutes"_s);
    click(m_scene->item(u"behind"_s));
    QCOMPARE(chosen(), QVariantList{u"behind"_s});
}

void tst_ControlsComboBox::menuLiesOverEverything()
{
    make("selectedUid: 0", {},
         "Item { anchors.fill: parent; parent: screen.Window.contentItem\n"
         "Rectangle { x: 60; y: 150; width: 400; height: 400; color: 'gray'\n"
         "MouseArea { anchors.fill: parent; onClicked: screen.chosen = ['covered'] } } }");
    open();
    click(row(u"Hours"_s));
    QCOMPARE(chosen().value(0).toInt(), 2);
}

void tst_ControlsComboBox::menuPlace_data()
{
    QTest::addColumn<QByteArray>("place");
    QTest::addColumn<bool>("under");

    QTest::newRow("under it") << QByteArray("x: 60; y: 100") << true;
    QTest::newRow("above it where there is no room") << QByteArray("x: 60; y: 700") << false;
    QTest::newRow("within the page's margins") << QByteArray("x: 500; y: 100") << true;
}

void tst_ControlsComboBox::menuPlace()
{
    QFETCH(QByteArray, place);
    QFETCH(bool, under);

    make("selectedUid: 0; " + place);
    open();
    const QRect frame = sceneRectangle(menu());
    const QRect closed = sceneRectangle(box());
    QVERIFY(QRect(34, 34, 600 - 68, 800 - 68).contains(frame));
    QVERIFY(under ? frame.top() > closed.bottom() : frame.bottom() < closed.top());
    if (place.contains("x: 60"))
        QCOMPARE(frame.left(), closed.left());
    QVERIFY(frame.width() >= closed.width());
}

void tst_ControlsComboBox::sevenRowsAndNoMore()
{
    make("selectedUid: 12; y: 10", "for (let i = 0; i < 20; ++i) append({uid_: i, text_: 'Row ' + i})");
    open();
    const int height = sceneRectangle(menu()).height();
    QVERIFY(height > 7 * 79 && height < 8 * 79);
    QVERIFY2(row(u"Row 12"_s), "the selected row is in sight");
    QVERIFY(sceneRectangle(menu()).contains(sceneRectangle(row(u"Row 12"_s))));
}

void tst_ControlsComboBox::highlight_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<bool>("bold");

    QTest::newRow("of itself") << QByteArray() << true;
    QTest::newRow("asked for") << QByteArray("highlightSelected: true") << true;
    QTest::newRow("not wanted") << QByteArray("highlightSelected: false") << false;
    QTest::newRow("of itself, without signs") << QByteArray("state: ''") << true;
    QTest::newRow("not wanted, without signs") << QByteArray("state: ''; highlightSelected: false") << false;
}

void tst_ControlsComboBox::highlight()
{
    QFETCH(QByteArray, properties);
    QFETCH(bool, bold);

    make("selectedUid: 1; " + properties);
    open();
    const auto role = properties.contains("state: ") ? QAccessible::MenuItem : QAccessible::RadioButton;
    QVERIFY(accessible(row(u"Minutes"_s, role))->state().checked);
    QVERIFY(!accessible(row(u"Hours"_s, role))->state().checked);
    const auto isBold = [](QQuickItem *row) {
        for (QQuickItem *item : row->childItems()) {
            if (item->inherits("QQuickText"))
                return item->property("font").value<QFont>().bold();
        }
        return false;
    };
    QCOMPARE(isBold(row(u"Minutes"_s, role)), bold);
    QVERIFY(!isBold(row(u"Hours"_s, role)));
}

void tst_ControlsComboBox::radioSignsAreAState()
{
    make("selectedUid: 1; state: ''");
    open();
    QVERIFY(!row(u"Minutes"_s, QAccessible::RadioButton));
    QVERIFY(row(u"Minutes"_s, QAccessible::MenuItem));
}

void tst_ControlsComboBox::closes_data()
{
    QTest::addColumn<QByteArray>("by");

    QTest::newRow("when the screen turns") << QByteArray("turn");
    QTest::newRow("when it is hidden") << QByteArray("hide");
    QTest::newRow("when it is disabled") << QByteArray("disable");
}

void tst_ControlsComboBox::closes()
{
    QFETCH(QByteArray, by);

    make("selectedUid: 1");
    if (by == "turn") { // closed, it does not mind
        QVERIFY(QMetaObject::invokeMethod(box(), "orientationChanged"));
        QVERIFY(!isOpened());
    }
    open();
    if (by == "turn")
        QVERIFY(QMetaObject::invokeMethod(box(), "orientationChanged"));
    else
        box()->setProperty(by == "hide" ? "visible" : "enabled", false);
    QVERIFY(!isOpened());
    QTRY_VERIFY(!menu());
    QCOMPARE(chosen(), QVariantList());
}

void tst_ControlsComboBox::goesWhileItIsOpen()
{
    make("selectedUid: 1");
    open();
    delete box();
    QVERIFY2(!menu(), "its menu goes with it");
    m_scene->window().grabWindow();
}

void tst_ControlsComboBox::keysWithTheFocusKept()
{
    // A screen gives it the focus whenever it opens or closes.
    make("selectedUid: 1; onIsOpenedChanged: box.forceActiveFocus()");
    box()->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QVERIFY(isOpened());
    QVERIFY(box()->hasActiveFocus());
    QTest::keyClick(&m_scene->window(), Qt::Key_Down);
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QVERIFY(!isOpened());
    QCOMPARE(chosen(), (QVariantList{2, 2, false}));
    QVERIFY(box()->hasActiveFocus());
    QTest::keyClick(&m_scene->window(), Qt::Key_Space);
    QTest::keyClick(&m_scene->window(), Qt::Key_Up);
    QTest::keyClick(&m_scene->window(), Qt::Key_Up);
    QTest::keyClick(&m_scene->window(), Qt::Key_Enter);
    QCOMPARE(name(), u"Seconds"_s);
}

void tst_ControlsComboBox::keyBackCloses()
{
    make("selectedUid: 1");
    box()->forceActiveFocus();
    QTest::keyClick(&m_scene->window(), Qt::Key_Return);
    QTest::keyClick(&m_scene->window(), Qt::Key_Down);
    QTest::keyClick(&m_scene->window(), Qt::Key_Back);
    QVERIFY(!isOpened());
    QCOMPARE(chosen(), QVariantList());
    QCOMPARE(name(), u"Minutes"_s);
}

void tst_ControlsComboBox::disabled()
{
    make("selectedUid: 1; enabled: false");
    click(box());
    pressByAccessibility(box());
    QVERIFY(!isOpened());
}

void tst_ControlsComboBox::accessibility()
{
    make("selectedUid: 0; preffix_text: 'Font: '");
    QCOMPARE(accessible(box())->role(), QAccessible::ComboBox);
    QCOMPARE(name(), u"Font: Seconds"_s);
    QVERIFY(pressByAccessibility(box()));
    QVERIFY(isOpened());
    m_scene->window().grabWindow();
    QVERIFY(pressByAccessibility(row(u"Hours"_s)));
    QCOMPARE(name(), u"Font: Hours"_s);
    QVERIFY(!isOpened());
}

PANEL_TEST_MAIN(tst_ControlsComboBox)

#include "tst_controls_combo_box.moc"
