// QML for tests, from a string. Needs Qt6::Quick.

#pragma once

#include <QFile>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <memory>

/// The window that `qml` declares (imports of QtQuick are added); the test program ends where it cannot be
/// made.
inline std::unique_ptr<QQuickWindow> loadWindow(QQmlEngine &engine, const QByteArray &qml)
{
    // In a file: other addresses would be loaded in the background, and Qt 6.8 looks for inline components
    // where the text comes from.
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("inline.qml")));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s", qPrintable(file.errorString()));
    file.write("import QtQuick\nimport QtQuick.Window\n" + qml);
    file.close();
    QQmlComponent component(&engine, QUrl::fromLocalFile(file.fileName()));
    std::unique_ptr<QObject> object(component.create());
    auto *window = qobject_cast<QQuickWindow *>(object.get());
    if (!window)
        qFatal("%s", qUtf8Printable(component.errorString()));
    object.release();
    return std::unique_ptr<QQuickWindow>(window);
}
