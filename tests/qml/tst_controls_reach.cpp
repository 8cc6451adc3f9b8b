// What can be reached by name while a dialog, a menu or a message lies over the screen.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"
#include "panel_remote.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

/// A screen with a button and a text, and over it `above`.
QByteArray screenWith(const QByteArray &above)
{
    return "property var log: []\nfunction note(text) { log = log.concat([text]) }\n"
           "TextButton { text: 'Behind'; onAction: screen.note('behind') }\n"
           "StyledText { y: 750; text: 'To be read' }\n"
           "ListModel { id: rows; ListElement { uid_: 0; text_: 'Rename' } ListElement { uid_: 1; text_: "
           "'Delete' } }\n"
        + above;
}

void collect(const QJsonArray &nodes, QHash<QString, bool> &enabled)
{
    for (const QJsonValue &node : nodes) {
        enabled.insert(node[u"name"_s].toString(), node[u"enabled"_s].toBool());
        collect(node[u"children"_s].toArray(), enabled);
    }
}

} // namespace

class tst_ControlsReach : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void modal_data();
    void modal();
    void hiddenModal();
    void message();

private:
    void make(const QByteArray &above)
    {
        m_scene = controlsScene(screenWith(above));
        QVERIFY(m_scene);
        m_scene->window().grabWindow(); // lays the rows out
    }
    /// Whether what is listed with this name is enabled; nothing where it is not listed.
    std::optional<bool> listed(const QString &name)
    {
        QHash<QString, bool> enabled;
        collect(m_remote.ask(u"tree"_s).value(u"tree"_s).toArray(), enabled);
        return enabled.contains(name) ? std::optional(enabled.value(name)) : std::nullopt;
    }
    /// The code of the answer, empty where it was done.
    QString act(const QString &command, const QString &name)
    {
        return m_remote.ask(command, {{u"name"_s, name}}).value(u"error"_s).toString();
    }
    QStringList log() const { return m_scene->root()->property("log").toStringList(); }

    PanelRemote m_remote;
    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsReach::cleanup()
{
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsReach::modal_data()
{
    QTest::addColumn<QByteArray>("above");
    QTest::addColumn<QString>("inside");
    QTest::addColumn<QString>("told");

    QTest::newRow("a dialog") << QByteArray(
        "DialogContainer { anchors.fill: parent; title: 'Question'\n"
        "DialogFooter { applyTitle: 'Yes'; onApply: screen.note('yes') } }")
                              << u"Yes"_s << u"yes"_s;
    QTest::newRow("a menu") << QByteArray(
        "ContextMenu { onChoosed: uid => screen.note('row ' + uid)\n"
        "Component.onCompleted: present(rows, '', '', Qt.rect(50, 100, 400, 50)) }")
                            << u"Delete"_s << u"row 1"_s;
    QTest::newRow("an open combo box")
        << QByteArray("ComboBox { menuItems: rows; y: 300; Component.onCompleted: Qt.callLater(open)\n"
                      "onChoosed: uid => screen.note('row ' + uid) }")
        << u"Delete"_s << u"row 1"_s;
}

void tst_ControlsReach::modal()
{
    QFETCH(QByteArray, above);
    QFETCH(QString, inside);
    QFETCH(QString, told);

    make(above);
    QTRY_COMPARE(listed(inside), std::optional(true));
    QCOMPARE(listed(u"Close"_s), std::optional(true)); // the way out
    QCOMPARE(listed(u"Behind"_s), std::optional(false));
    QCOMPARE(listed(u"To be read"_s), std::optional(false));
    QCOMPARE(act(u"press"_s, u"Behind"_s), u"not-possible"_s);
    QCOMPARE(act(u"press"_s, inside), QString());
    QCOMPARE(log(), QStringList(told));
}

void tst_ControlsReach::hiddenModal()
{
    make("DialogContainer { objectName: 'dialog'; anchors.fill: parent; Item { height: 100 } }");
    QCOMPARE(listed(u"Behind"_s), std::optional(false));
    m_scene->item(u"dialog"_s)->setVisible(false);
    QCOMPARE(listed(u"Behind"_s), std::optional(true));
    QCOMPARE(act(u"press"_s, u"Behind"_s), QString());
    QCOMPARE(log(), QStringList(u"behind"_s));
}

void tst_ControlsReach::message()
{
    // Beside a message the screen stays in use.
    make("InfoMessage { text: 'Saved'; onClose: screen.note('close') }");
    QCOMPARE(listed(u"Behind"_s), std::optional(true));
    QCOMPARE(act(u"press"_s, u"Behind"_s), QString());
    QCOMPARE(act(u"press"_s, u"Saved"_s), QString());
    QCOMPARE(log(), (QStringList{u"behind"_s, u"close"_s}));
}

PANEL_TEST_MAIN(tst_ControlsReach)
#include "tst_controls_reach.moc"
