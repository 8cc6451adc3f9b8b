// The controls on a screen that is turned by 90 degrees: wide, and not high.

#include <device.h>

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"
#include "panel_remote.h"
#include "panel_view.h"

#include <QInputMethod>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsSideways : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void init();
    void cleanup();
    void menuBesideItsItem_data();
    void menuBesideItsItem();
    void longMenu();
    void menuStaysOnTheScreenWhenItTurns();
    void dialog_data();
    void dialog();
    void dialogAboveTheKeyboard();
    void comboBox_data();
    void comboBox();
    void rows();
    void footerButton();
    void heads();

private:
    void make(const QByteArray &items);
    QRect place(const QString &name) const { return sceneRectangle(m_scene->item(name)); }
    QQuickItem *find(QAccessible::Role role, const QString &name = {}) const
    {
        return findAccessible(m_scene->window().contentItem(), role, name);
    }
    /// One finger on the glass, in the middle of a rectangle of the window.
    void tap(const QRect &rectangle);
    /// The grey on the panel of a point of the window.
    static int panelGrey(const QPoint &point);
    QStringList log() const { return m_scene->root()->property("log").toStringList(); }

    PanelRemote m_remote;
    std::unique_ptr<QmlScene> m_scene;
};

namespace {

constexpr int statusHeight = 45;
constexpr QSize windowSize(1024, 758 - statusHeight);
constexpr QRect window(QPoint(), windowSize);
constexpr int mat = 6; // 8 of the design
const QRect room = window.adjusted(34, 34, -34, -34); // within the page's margins

} // namespace

void tst_ControlsSideways::initTestCase_data()
{
    QTest::addColumn<int>("orientation");

    QTest::newRow("clockwise") << 1;
    QTest::newRow("the other way") << 2;
}

void tst_ControlsSideways::init()
{
    QFETCH_GLOBAL(int, orientation);
    Device::instance()->screen.setOrientation(orientation);
    QTRY_COMPARE(QGuiApplication::primaryScreen()->availableGeometry(), QRect({0, statusHeight}, windowSize));
}

void tst_ControlsSideways::cleanup()
{
    QGuiApplication::inputMethod()->hide();
    QCOMPARE(endScene(m_scene), QStringList());
    Device::instance()->screen.setOrientation(0);
}

void tst_ControlsSideways::make(const QByteArray &items)
{
    m_scene = controlsScene("property var log: []\nfunction note(text) { log = log.concat([text]) }\n"
                            "ListModel { id: few; ListElement { uid_: 0; text_: 'Rename' }\n"
                            "ListElement { uid_: 1; text_: 'Show in random order' }\n"
                            "ListElement { uid_: 2; text_: 'Delete' } }\n"
                            "ListModel { id: many; Component.onCompleted: {\n"
                            "for (let i = 0; i < 30; ++i) append({uid_: i, text_: 'Row ' + i}) } }\n"
                                + items,
                            windowSize);
    QVERIFY(m_scene);
    m_scene->window().setPosition(0, statusHeight);
    m_scene->window().grabWindow(); // lays the rows out
    QVERIFY(panel_view::waitUntilStill());
}

void tst_ControlsSideways::tap(const QRect &rectangle)
{
    const QPoint point = rectangle.center() + QPoint(0, statusHeight);
    QCOMPARE(code(m_remote.ask(u"tap"_s, {{u"x"_s, point.x()}, {u"y"_s, point.y()}})), u"ok"_s);
}

int tst_ControlsSideways::panelGrey(const QPoint &point)
{
    return panel_view::greyAt(point.x(), point.y() + statusHeight);
}

void tst_ControlsSideways::menuBesideItsItem_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<bool>("over"); // there is no room beside it

    QTest::newRow("a button of the header") << QRect(908, 3, 96, 79) << false;
    QTest::newRow("the first row") << QRect(34, 85, 956, 102) << false;
    QTest::newRow("the last row") << QRect(34, 600, 956, 102) << false;
    QTest::newRow("a cell left of the middle") << QRect(300, 250, 220, 220) << false;
    QTest::newRow("a cell in the middle") << QRect(402, 250, 220, 220) << true;
    QTest::newRow("a cell at the right") << QRect(780, 250, 220, 220) << false;
    QTest::newRow("as large as the screen") << window << true;
}

void tst_ControlsSideways::menuBesideItsItem()
{
    QFETCH(QRect, area);
    QFETCH(bool, over);

    make("ContextMenu { onChoosed: uid => screen.note('row ' + uid)\n"
         "function openAt(area: rect) {\n"
         "    const corner = screen.mapToGlobal(area.x, area.y)\n"
         "    present(few, '', '', Qt.rect(corner.x, corner.y, area.width, area.height)) }\n"
         "objectName: 'menu' }");
    QVERIFY(QMetaObject::invokeMethod(m_scene->item(u"menu"_s), "openAt", Q_ARG(QRectF, area)));
    QVERIFY(panel_view::waitUntilStill());
    const QRect frame = sceneRectangle(find(QAccessible::PopupMenu));
    QVERIFY2(room.contains(frame), "with its mat it lies within the page's margins");
    QCOMPARE(frame.intersects(area), over);
    QCOMPARE(panelGrey({frame.left(), frame.center().y()}), 0);
    QCOMPARE(panelGrey({frame.right(), frame.center().y()}), 0);
    QCOMPARE(panelGrey({frame.center().x(), frame.bottom()}), 0);
    const QRect row = sceneRectangle(find(QAccessible::MenuItem, u"Delete"_s));
    QVERIFY(frame.contains(row));
    tap(row);
    QCOMPARE(log(), QStringList(u"row 2"_s));
}

void tst_ControlsSideways::longMenu()
{
    make("ContextMenu { Component.onCompleted: Qt.callLater(open) // when the rows are there\n"
         "function open() { present(many, 'RadioButton', 'Row 20', Qt.rect(908, 48, 96, 79)) } }");
    const QRect frame = sceneRectangle(find(QAccessible::PopupMenu));
    QVERIFY(room.contains(frame));
    QVERIFY2(frame.height() > room.height() - 85, "it uses the height that is there");
    QQuickItem *row = find(QAccessible::RadioButton, u"Row 20"_s);
    QVERIFY2(row && frame.contains(sceneRectangle(row)), "the row that it is at is in sight");
}

void tst_ControlsSideways::menuStaysOnTheScreenWhenItTurns()
{
    make("ContextMenu { anchors.fill: parent\n"
         "Component.onCompleted: present(few, '', '', Qt.rect(908, 648, 96, 79)) }");
    m_scene->root()->setSize({758, 979});
    Device::instance()->screen.setOrientation(0);
    m_scene->window().resize(758, 979);
    QTRY_VERIFY(QRect(34, 34, 758 - 68, 979 - 68).contains(sceneRectangle(find(QAccessible::PopupMenu))));
    QCOMPARE(sceneRectangle(find(QAccessible::Button, u"Close"_s)), QRect(0, 0, 758, 979));
}

void tst_ControlsSideways::dialog_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("top");
    QTest::addColumn<int>("width");

    const int height = 2 * 3 + 79 + 200 + 80; // two lines, head, content, footer
    const int middle = (windowSize.height() - height) / 2;
    QTest::newRow("in the middle") << QByteArray() << middle << 777; // 1100 of the design
    QTest::newRow("with a width") << QByteArray("dialogWidth: 500") << middle << 500;
    QTest::newRow("at the top") << QByteArray("state: 'VerticalTop'") << 170 << 777;
    QTest::newRow("at an offset of the other orientation")
        << QByteArray("state: 'VerticalTop'; verticalOffset: 700") << windowSize.height() - mat - height
        << 777;
}

void tst_ControlsSideways::dialog()
{
    QFETCH(QByteArray, properties);
    QFETCH(int, top);
    QFETCH(int, width);

    make("DialogContainer { anchors.fill: parent; title: 'Interval'; " + properties
         + "\nItem { width: parent.width; height: 200 }\n"
           "DialogFooter { applyTitle: 'Save'; onApply: screen.note('save'); onCancel: screen.note('cancel') "
           "} }");
    const QRect frame = sceneRectangle(find(QAccessible::Dialog));
    QCOMPARE(frame.width(), width);
    QVERIFY(std::abs(frame.top() - top) <= 1);
    QVERIFY(std::abs(frame.left() - (windowSize.width() - 1 - frame.right())) <= 1);
    QCOMPARE(panelGrey({frame.left(), frame.center().y()}), 0);
    QCOMPARE(panelGrey({frame.right(), frame.center().y()}), 0);
    const QRect save = sceneRectangle(find(QAccessible::Button, u"Save"_s));
    const QRect cancel = sceneRectangle(find(QAccessible::Button, u"Cancel"_s));
    QVERIFY(frame.contains(save) && frame.contains(cancel));
    QVERIFY(std::abs(save.width() - cancel.width()) <= 1);
    tap(save);
    tap(cancel);
    QCOMPARE(log(), (QStringList{u"save"_s, u"cancel"_s}));
}

void tst_ControlsSideways::dialogAboveTheKeyboard()
{
    make("DialogContainer { anchors.fill: parent; title: 'Name'\n"
         "AdvancedTextInput { id: input; objectName: 'input'; width: parent.width; height: 79; text: 'x' }\n"
         "DialogFooter { applyTitle: 'Save'; onApply: screen.note('save') } }");
    m_scene->item(u"input"_s)->forceActiveFocus();
    QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
    const auto frame = [this] { return sceneRectangle(find(QAccessible::Dialog)); };
    QTRY_VERIFY(frame().bottom() < QGuiApplication::inputMethod()->keyboardRectangle().top());
    QVERIFY(window.contains(frame()));
    tap(sceneRectangle(find(QAccessible::Button, u"Save"_s)));
    QCOMPARE(log(), QStringList(u"save"_s));
}

void tst_ControlsSideways::comboBox_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("side"); // of the menu: 1 under the combo box, -1 above it, 0 beside it

    QTest::newRow("near the top") << QByteArray("y: 60; menuItems: few") << 1;
    QTest::newRow("near the foot") << QByteArray("y: 600; menuItems: few") << -1;
    QTest::newRow("many rows") << QByteArray("y: 300; menuItems: many") << 0;
    QTest::newRow("many rows, at the right") << QByteArray("x: 770; y: 300; menuItems: many") << 0;
}

void tst_ControlsSideways::comboBox()
{
    QFETCH(QByteArray, properties);
    QFETCH(int, side);

    make("ComboBox { objectName: 'box'; width: 220; show_border: true; selectedUid: 1\n"
         "state: 'RadioTextButton'; onChoosed: uid => screen.note('row ' + uid); "
         + QByteArray(properties.contains("x: ") ? "" : "x: 60; ") + properties + " }");
    const QRect box = place(u"box"_s);
    tap(box);
    QVERIFY(panel_view::waitUntilStill());
    const QRect frame = sceneRectangle(find(QAccessible::PopupMenu));
    QVERIFY(room.contains(frame));
    QVERIFY(!frame.intersects(box));
    QCOMPARE(frame.top() > box.bottom() ? 1 : frame.bottom() < box.top() ? -1 : 0, side);
    QCOMPARE(panelGrey({frame.left(), frame.center().y()}), 0);
    QQuickItem *row = nullptr;
    for (const QString &name : {u"Delete"_s, u"Row 2"_s}) {
        if (QQuickItem *found = find(QAccessible::RadioButton, name))
            row = found;
    }
    QVERIFY(row);
    QVERIFY(frame.contains(sceneRectangle(row)));
    tap(sceneRectangle(row));
    QTRY_COMPARE(log(),
                 QStringList(u"row 2"_s)); // a row of a list that scrolls hears of the tap a little later
}

void tst_ControlsSideways::rows()
{
    make("SettingsBitmapTextTextButton { objectName: 'row'; x: 34; width: 956; title: 'Interval'; text: '5 "
         "minutes'\n"
         "image_src: 'image://resource/validity_date'; onAction: screen.note('row') }\n"
         "SettingsBitmapTextSwitcher { objectName: 'switch'; y: 102; x: 34; width: 956; title: 'Random "
         "order'\n"
         "image_src: 'image://resource/player2_mode_random'; onAction: screen.note('switch') }");
    const QImage picture = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    const QRect row = place(u"row"_s);
    QCOMPARE(row.height(), 102);
    const QRect left = ink(picture.copy(QRect(0, row.top(), 512, row.height())));
    const QRect right = ink(picture.copy(QRect(512, row.top(), 512, row.height())), 0x80);
    QVERIFY2(left.left() >= 42 && left.left() <= 52, "the icon stands on the content line");
    QVERIFY2(std::abs(511 - right.right() - 42) <= 3, "and the value ends on its mirror");
    tap(row);
    tap(place(u"switch"_s));
    QCOMPARE(log(), (QStringList{u"row"_s, u"switch"_s}));
}

void tst_ControlsSideways::footerButton()
{
    make("RoundedCornerButtonContainer { objectName: 'footer'\n"
         "anchors { bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }\n"
         "width: parent.width - 2 * GlobalValues.scrollListCenterButtonSideOffset\n"
         "height: GlobalValues.scrollListButtonsHeight; visibleBorders: [1, 1, 0, 1]\n"
         "onClicked: screen.note('footer') }\n"
         "LRControls2.ScrollAssistant { anchors { left: parent.left; right: parent.right; bottom: "
         "parent.bottom }\n"
         "height: GlobalValues.scrollListButtonsHeight; z: -1\n"
         "onScrollUp: screen.note('up'); onScrollDown: screen.note('down') }");
    const QRect footer = place(u"footer"_s);
    QCOMPARE(footer.bottom(), window.bottom());
    QCOMPARE(footer.left(), 79);
    QCOMPARE(footer.right(), window.right() - 79);
    tap(footer);
    tap(QRect(0, footer.top(), 79, footer.height()));
    tap(QRect(footer.right() + 1, footer.top(), 79, footer.height()));
    QCOMPARE(log(), (QStringList{u"footer"_s, u"up"_s, u"down"_s}));
}

void tst_ControlsSideways::heads()
{
    make("LRControls2.AppHeader { objectName: 'header'; width: parent.width; title: 'Garden in spring'\n"
         "closeIcon: 'image://resource/home'; onClose: screen.note('close')\n"
         "BitmapButton { objectName: 'last'; icon: 'image://resource/plus_add'; onAction: screen.note('add') "
         "} }\n"
         "GroupSelectionPanel { objectName: 'selection'; y: 100; width: parent.width; items_count: 24\n"
         "selected_count: 3; selected_label_text: 'selected'; select_all_title: 'All'\n"
         "onSelectAll: screen.note('all') }\n"
         "LRControls2.Breadcrumbs { y: 200; width: parent.width; onClicked: index => screen.note('crumb ' + "
         "index)\n"
         "model: ListModel { ListElement { name: '' } ListElement { name: 'This device' }\n"
         "ListElement { name: 'Holidays by the sea' } ListElement { name: 'The last evening' } } }");
    QCOMPARE(place(u"last"_s).right(), window.right() - 14);
    tap(place(u"last"_s));
    tap(sceneRectangle(find(QAccessible::CheckBox)));
    tap(sceneRectangle(find(QAccessible::Button, u"Holidays by the sea"_s))); // not folded: there is room
    QCOMPARE(log(), (QStringList{u"add"_s, u"all"_s, u"crumb 2"_s}));
    QVERIFY(window.contains(sceneRectangle(find(QAccessible::Button, u"The last evening"_s))));
}

PANEL_TEST_MAIN(tst_ControlsSideways)
#include "tst_controls_sideways.moc"
