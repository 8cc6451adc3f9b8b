// A window with two fields for tests of the device's keyboard, and a finger for its keys.

#pragma once

#include "panel_qml.h"
#include "panel_remote.h"
#include "panel_view.h"

#include <device.h>
#include <texts.h>

#include <QGuiApplication>
#include <QInputMethod>
#include <QJsonArray>
#include <QQuickItem>

#include <memory>

/// Fills the screen; below everything lies an area that notes what is tapped. `name` and `number` are fields.
class KeyboardScene
{
public:
    KeyboardScene()
        : window(loadWindow(m_engine, qml()))
    {
    }

    QQuickItem *item(const char *name) const
    {
        return window->findChild<QQuickItem *>(QString::fromLatin1(name));
    }
    QString text(const char *field) const { return item(field)->property("text").toString(); }
    QStringList log() const { return window->property("log").toStringList(); }

    /// The keyboard of the tree, an empty object where it is hidden.
    QJsonObject keyboard()
    {
        const QJsonArray tree = remote.ask(QStringLiteral("tree")).value(QStringLiteral("tree")).toArray();
        for (const QJsonValue &node : tree) {
            if (node.toObject().value(QStringLiteral("name")) == QStringLiteral("Keyboard"))
                return node.toObject();
        }
        return {};
    }

    QJsonObject key(const QString &name)
    {
        const QJsonArray keys = keyboard().value(QStringLiteral("children")).toArray();
        for (const QJsonValue &key : keys) {
            if (key.toObject().value(QStringLiteral("name")) == name)
                return key.toObject();
        }
        return {};
    }

    QPoint middleOf(const QString &name) { return rectangleOf(key(name)).center(); }

    bool tap(const QPoint &place)
    {
        return ask(QStringLiteral("tap"),
                   {{QStringLiteral("x"), place.x()}, {QStringLiteral("y"), place.y()}});
    }
    bool tapKey(const QString &name) { return tap(middleOf(name)); }
    bool pressKey(const QString &name)
    {
        return ask(QStringLiteral("press"), {{QStringLiteral("name"), name}});
    }
    bool ask(const QString &command, const QJsonObject &members)
    {
        return remote.ask(command, members).value(QStringLiteral("ok")).toBool();
    }

    /// Gives a field the focus; whether the keyboard has come and lies still.
    bool open(const char *field = "name")
    {
        item(field)->forceActiveFocus();
        return QTest::qWaitFor(isOpen) && panel_view::waitUntilStill();
    }
    static bool isOpen() { return QGuiApplication::inputMethod()->isVisible(); }
    /// In screen pixels.
    QRect place() const
    {
        return QGuiApplication::inputMethod()->keyboardRectangle().toRect().translated(window->position());
    }

    static constexpr int ground = 0xdd;
    /// What the panel shows between the keys.
    int greyOfGround() const { return panel_view::greyAt(place().right() - 1, place().bottom() - 1); }

private:
    static QByteArray qml();

    QQmlEngine m_engine;

public:
    std::unique_ptr<QQuickWindow> window;
    PanelRemote remote;
};

inline QByteArray KeyboardScene::qml()
{
    return R"(Window {
        id: root
        width: Screen.width; height: Screen.desktopAvailableHeight; visible: true; color: "#888888"
        property var log: []
        property rect keyboardRectangle: Qt.inputMethod.keyboardRectangle
        property bool keyboardVisible: Qt.inputMethod.visible
        function note(text) { log = log.concat([text]) }
        function hideKeyboard() { Qt.inputMethod.hide() }
        MouseArea { anchors.fill: parent; onPressed: root.note("below") }
        Item { objectName: "plain"; width: 10; height: 10 }
        TextInput { objectName: "name"; x: 100; y: 20; width: 300; height: 40; onAccepted: root.note("accepted") }
        TextInput { objectName: "number"; x: 100; y: 100; width: 300; height: 40
                    inputMethodHints: Qt.ImhDigitsOnly; validator: IntValidator { bottom: 10; top: 500 }
                    onAccepted: root.note("number accepted") }
        Loader { objectName: "loader"; x: 100; y: 180; active: false
                 sourceComponent: TextInput { width: 300; height: 40; focus: true } }
    })";
}

/// What tests of the keyboard start from: the scene, with the keyboard closed.
class KeyboardTest : public QObject
{
protected:
    void begin()
    {
        lindenreed::device::texts::load(QStringLiteral("en"));
        m_scene = std::make_unique<KeyboardScene>();
        QTRY_COMPARE(QGuiApplication::focusWindow(), m_scene->window.get());
        QTRY_COMPARE(panel_view::greyAt(700, 900), 0x88);
        QVERIFY(panel_view::waitUntilStill());
    }

    /// The device stands upright again, and nothing is open.
    void end()
    {
        screen().setOrientation(0);
        screen().setPanelType(1);
        screen().setInverted(false);
        m_scene.reset();
        QTRY_VERIFY(!KeyboardScene::isOpen());
        QVERIFY(panel_view::waitUntilStill());
    }

    static lindenreed::device::Screen &screen() { return lindenreed::device::Device::instance()->screen; }

    std::unique_ptr<KeyboardScene> m_scene;
};
