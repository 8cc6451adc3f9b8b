// Who has the keys' attention while dialogs and menus lie over each other.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_ControlsFocus : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void comesAndGoes();
    void staysInside();
    void screenMayGiveItItself();
    void menuOverADialogKeepsIt();
    void dialogGetsItBackWhereverItWas();
    void dialogOverAMenu();
    void lastDialogShownHasIt();
    void lowerDialogGoesFirst();
    void dialogThatIsDeletedWhileOpen();

private:
    void make();
    void show(const QString &name, bool visible = true) { m_scene->item(name)->setVisible(visible); }
    QQuickItem *item(const QString &name) const { return m_scene->item(name); }
    QString focused() const { return m_scene->focused() ? m_scene->focused()->objectName() : QString(); }
    /// Whether the focus is with `name` when everything that was put off has run, and does not move any more.
    bool staysWith(const QString &name) const
    {
        for (int turn = 0; turn < 5; ++turn)
            QCoreApplication::processEvents();
        QSignalSpy moved(&m_scene->window(), &QQuickWindow::activeFocusItemChanged);
        for (int turn = 0; turn < 5; ++turn)
            QCoreApplication::processEvents();
        return focused() == name && moved.isEmpty();
    }
    QStringList log() const { return m_scene->root()->property("log").toStringList(); }

    std::unique_ptr<QmlScene> m_scene;
};

/// A button, and two dialogs and a menu that are hidden.
void tst_ControlsFocus::make()
{
    m_scene = controlsScene(R"(
        property var log: []
        function note(text) { log = log.concat([text]) }
        TextButton { objectName: 'behind'; text: 'Behind'; onAction: screen.note('behind') }
        ListModel { id: rows; ListElement { uid_: 0; text_: 'Rename' } ListElement { uid_: 1; text_: 'Delete' } }
        DialogContainer {
            objectName: 'dialog'
            anchors.fill: parent
            visible: false
            TextButton { objectName: 'first'; text: 'First'; onAction: screen.note('first') }
            TextButton { objectName: 'second'; text: 'Second'; onAction: screen.note('second') }
        }
        DialogContainer {
            objectName: 'other dialog'
            anchors.fill: parent
            visible: false
            TextButton { objectName: 'third'; text: 'Third' }
        }
        ContextMenu {
            objectName: 'menu'
            visible: false
            Component.onCompleted: present(rows, '', '', Qt.rect(50, 100, 400, 50))
            onChoosed: uid => { screen.note('row ' + uid); visible = false }
            onClose: { screen.note('close'); visible = false }
        })");
    QVERIFY(m_scene);
    item(u"behind"_s)->forceActiveFocus();
}

void tst_ControlsFocus::cleanup()
{
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsFocus::comesAndGoes()
{
    make();
    for (int i = 0; i < 2; ++i) {
        show(u"dialog"_s);
        QVERIFY(staysWith(u"first"_s));
        m_scene->key(Qt::Key_Return);
        QCOMPARE(log().last(), u"first"_s);
        show(u"dialog"_s, false);
        QCOMPARE(focused(), u"behind"_s);
    }
}

void tst_ControlsFocus::staysInside()
{
    make();
    show(u"dialog"_s);
    QVERIFY(staysWith(u"first"_s));
    for (Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Tab, Qt::Key_Up, Qt::Key_Left}) {
        const bool atFirst = focused() == u"first"_s;
        m_scene->key(key);
        QCOMPARE(focused(), atFirst ? u"second"_s : u"first"_s);
    }
    // Focus that is led astray comes back to where it was.
    const QString before = focused();
    item(u"behind"_s)->forceActiveFocus();
    QVERIFY(staysWith(before));
    show(u"dialog"_s, false);
    item(u"behind"_s)->forceActiveFocus();
    QVERIFY(staysWith(u"behind"_s));
}

void tst_ControlsFocus::screenMayGiveItItself()
{
    make();
    connect(item(u"dialog"_s), &QQuickItem::visibleChanged, this,
            [this] { item(item(u"dialog"_s)->isVisible() ? u"second"_s : u"behind"_s)->forceActiveFocus(); });
    show(u"dialog"_s);
    QVERIFY(staysWith(u"second"_s));
    show(u"dialog"_s, false);
    QVERIFY(staysWith(u"behind"_s));
}

void tst_ControlsFocus::menuOverADialogKeepsIt()
{
    make();
    show(u"dialog"_s);
    m_scene->key(Qt::Key_Down);
    QCOMPARE(focused(), u"second"_s);
    for (int i = 0; i < 2; ++i) {
        show(u"menu"_s);
        QVERIFY(staysWith(u"menu"_s));
        m_scene->key(Qt::Key_Down); // a row, and not a button of the dialog
        m_scene->key(Qt::Key_Return);
        QCOMPARE(log(), QStringList(2 * i + 1, u"row 1"_s));
        QVERIFY(staysWith(u"second"_s)); // the choice closed it
        show(u"menu"_s);
        m_scene->key(Qt::Key_Up);
        m_scene->key(Qt::Key_Down);
        m_scene->key(Qt::Key_Return);
        QVERIFY(staysWith(u"second"_s));
    }
    show(u"dialog"_s, false);
    QVERIFY(staysWith(u"behind"_s));
}

void tst_ControlsFocus::dialogGetsItBackWhereverItWas()
{
    make();
    show(u"dialog"_s);
    show(u"menu"_s);
    QVERIFY(staysWith(u"menu"_s));
    item(u"behind"_s)->forceActiveFocus(); // by a screen that does so before it hides its menu
    show(u"menu"_s, false);
    QVERIFY(staysWith(u"first"_s));
}

void tst_ControlsFocus::dialogOverAMenu()
{
    make();
    show(u"menu"_s);
    show(u"dialog"_s);
    QVERIFY(staysWith(u"first"_s));
    show(u"dialog"_s, false);
    QVERIFY(staysWith(u"menu"_s));
    show(u"menu"_s, false);
    QVERIFY(staysWith(u"behind"_s));
}

void tst_ControlsFocus::lastDialogShownHasIt()
{
    make();
    show(u"other dialog"_s); // though it lies over the other one
    show(u"dialog"_s);
    QVERIFY(staysWith(u"first"_s));
    show(u"dialog"_s, false);
    QVERIFY(staysWith(u"third"_s));
    show(u"dialog"_s);
    QVERIFY(staysWith(u"first"_s));
    item(u"third"_s)->forceActiveFocus();
    QVERIFY(staysWith(u"first"_s));
}

void tst_ControlsFocus::lowerDialogGoesFirst()
{
    make();
    show(u"dialog"_s);
    show(u"other dialog"_s);
    QVERIFY(staysWith(u"third"_s));
    show(u"dialog"_s, false);
    QVERIFY(staysWith(u"third"_s));
    show(u"other dialog"_s, false);
    QVERIFY(staysWith(u"behind"_s));
}

void tst_ControlsFocus::dialogThatIsDeletedWhileOpen()
{
    make();
    show(u"dialog"_s);
    show(u"other dialog"_s);
    QVERIFY(staysWith(u"third"_s));
    delete item(u"other dialog"_s);
    item(u"behind"_s)->forceActiveFocus();
    QVERIFY(staysWith(u"first"_s));
}

PANEL_TEST_MAIN(tst_ControlsFocus)
#include "tst_controls_focus.moc"
