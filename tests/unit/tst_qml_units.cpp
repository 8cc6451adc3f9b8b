// The interface runs as it was compiled with the program: the engine makes nothing of the text at run time.

#include "compiled_unit.h"
#include "panel_application.h"
#include "running_app.h"
#include "stored_database.h"

#include <private/qqmlcomponent_p.h>
#include <private/qv4executablecompilationunit_p.h>

#include <device.h>
#include <slateview_testing.h>

#include <QDirIterator>

using namespace Qt::StringLiterals;

class tst_QmlUnits : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void everyComponent();
};

void tst_QmlUnits::everyComponent()
{
    const lindenreed::device::DeviceForTest device;
    lindenreed::picture_stand::App app;
    const int status = runApp(app, [](RunningApp &running) {
        int count = 0;
        QDirIterator files(u":/qt/qml/com/lindenreed/picture_stand"_s, {u"*.qml"_s}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QUrl url(u"qrc"_s + files.next());
            const QByteArray name = url.fileName().toUtf8();
            const QQmlPrivate::CachedQmlUnit *compiled = compiledUnit(url);
            QVERIFY2(compiled && compiled->aotCompiledFunctions, name.constData());

            QQmlComponent component(qmlEngine(running.window), url);
            QVERIFY2(component.isReady(), qPrintable(component.errorString()));
            const auto unit = QQmlComponentPrivate::get(&component)->compilationUnit;
            QVERIFY2(unit->unitData() == compiled->qmlData, name.constData());
            ++count;
        }
        QCOMPARE(count, 30);
    });
    QCOMPARE(status, 0);
}

PANEL_TEST_MAIN(tst_QmlUnits)
#include "tst_qml_units.moc"
