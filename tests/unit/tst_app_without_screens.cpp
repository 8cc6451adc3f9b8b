// A program whose screens are missing ends at once.

#include "app.h"
#include "panel_application.h"
#include "stored_database.h"

#include <slateview_testing.h>

#include <QRegularExpression>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;

// The macro wants to stand outside of namespaces.
static void takeAwayComponents()
{
    Q_CLEANUP_RESOURCE(picture_stand_core_raw_qml_0);
}

class tst_AppWithoutScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void result();
};

void tst_AppWithoutScreens::result()
{
    // The engine would run the compiled screens without their text.
    qputenv("QML_DISABLE_DISK_CACHE", "1");
    takeAwayComponents();
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    QTest::ignoreMessage(QtWarningMsg, "QQmlApplicationEngine failed to load component");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Main\\.qml: No such file or directory"_s));
    const DeviceForTest device;
    lindenreed::picture_stand::App app;
    bool turned = false;
    QTimer::singleShot(0, &app, [&turned] {
        turned = true;
        QCoreApplication::exit(0);
    });
    QCOMPARE(app.run(qGuiApp), -1);
    QVERIFY(!turned);
}

PANEL_TEST_MAIN(tst_AppWithoutScreens)
#include "tst_app_without_screens.moc"
