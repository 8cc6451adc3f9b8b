// QML for tests, from a string. Needs Qt6::Quick.

#pragma once

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

/// The window that `qml` declares (imports of QtQuick are added); the test program ends where it cannot be
/// made.
inline std::unique_ptr<QQuickWindow> loadWindow(QQmlEngine &engine, const QByteArray &qml)
{
    QQmlComponent component(&engine);
    // A file URL: others would be loaded in the background.
    component.setData("import QtQuick\nimport QtQuick.Window\n" + qml,
                      QUrl::fromLocalFile(QStringLiteral("/inline.qml")));
    std::unique_ptr<QObject> object(component.create());
    auto *window = qobject_cast<QQuickWindow *>(object.get());
    if (!window)
        qFatal("%s", qUtf8Printable(component.errorString()));
    object.release();
    return std::unique_ptr<QQuickWindow>(window);
}
