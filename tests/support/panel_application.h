// main() of tests that run on the device's platform plug-in.

#pragma once

#include <QFile>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QTest>

/// Arguments for QtTest beside those of the command line; define it before this file is included to have
/// some.
#ifndef PANEL_TEST_ARGUMENTS
#define PANEL_TEST_ARGUMENTS QStringList()
#endif

/// A main() that runs the tests of `TestClass` in an application on the platform plug-in, drawn by the
/// software back end, as the picture frame is. The plug-in starts the device. Needs Qt6::Quick, and the
/// test's own file must include its .moc file. QML in raw strings belongs behind the class: moc stumbles over
/// it inside.
#define PANEL_TEST_MAIN(TestClass)                                                                           \
    int main(int argc, char **argv)                                                                          \
    {                                                                                                        \
        qputenv("QT_QPA_PLATFORM", "lindenreed2");                                                           \
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);                                        \
        QGuiApplication application(argc, argv);                                                             \
        TestClass test;                                                                                      \
        return QTest::qExec(&test, application.arguments() + PANEL_TEST_ARGUMENTS);                          \
    }

/// The same on another profile than the default one: `record` is the text of /devroot/device.json, which
/// belongs to the test's own device root.
#define PANEL_TEST_MAIN_WITH_RECORD(TestClass, record)                                                       \
    static void writeDeviceRecord()                                                                          \
    {                                                                                                        \
        QFile file(QStringLiteral("/devroot/device.json"));                                                  \
        if (!file.open(QIODevice::WriteOnly) || file.write(record) < 0)                                      \
            qFatal("/devroot/device.json cannot be written");                                                \
    }                                                                                                        \
    [[maybe_unused]] static const bool deviceRecordWritten = (writeDeviceRecord(), true);                    \
    PANEL_TEST_MAIN(TestClass)
