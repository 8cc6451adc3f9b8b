// Storages and fonts of the running application.

#include "app_fixture.h"
#include "datastorage.h"
#include "media_fixture.h"
#include "panel_application.h"
#include "panel_remote.h"
#include "running_app.h"
#include "stderr_capture.h"

#include <QQmlComponent>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::App;
using lindenreed::picture_stand::FontModel;
using lindenreed::picture_stand::Storage;

class tst_AppMedia : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup()
    {
        MediaFixture::plug(false, false);
        m_test.reset();
    }

    void orderOfTheStart(); // first: the storages are looked for once at a start
    void fontsForTheScreens();
    void kindsForTheScreens();
    void mediaEvents_data();
    void mediaEvents();
    void eventBeforeTheInterface();
    void mediaComeAndGo_data();
    void mediaComeAndGo();
    void quitDuringALook();

private:
    std::unique_ptr<AppFixture> m_test;
};

void tst_AppMedia::orderOfTheStart()
{
    // A table that is missing is told in the log: reading the settings leaves its mark among the calls.
    DataStorage::instance();
    QVERIFY(stored_database::execute({u"ALTER TABLE settings RENAME TO kept"_s}));
    QByteArrayList names;
    {
        const StderrCapture log;
        App app;
        m_test->device.setFonts({{"A", 0, "A Regular"}});
        m_test->device.forgetCalls();
        QCOMPARE(runApp(app,
                        [&](RunningApp &running) {
                            QVERIFY(running.model<FontModel>("FontModel"));
                            QTRY_VERIFY(!MediaFixture::roots().isEmpty());
                            for (const SdkCall &call : lindenreed::device::journal::entries())
                                names.append(call.name);
                        }),
                 0);
    }
    QVERIFY(stored_database::execute({u"ALTER TABLE kept RENAME TO settings"_s}));
    const qsizetype panel = names.indexOf("SetPanelType");
    const qsizetype settings = names.indexOf("lr_print_log2");
    const qsizetype fonts = names.indexOf("EnumFontsEx");
    const qsizetype storages = names.indexOf("IsSDCardMounted");
    QVERIFY2(panel >= 0 && panel < settings && settings < fonts && fonts < storages,
             names.join(' ').constData());
    // Right after the settings, and once.
    QCOMPARE(names.mid(fonts - 1, 4),
             QByteArrayList({"lr_print_log2", "EnumFontsEx", "sv_get_default_font", "FreeFontsForSort"}));
    QCOMPARE(names.count("EnumFontsEx"), 1);
    QCOMPARE(names.count("IsSDCardMounted"), 1);
}

void tst_AppMedia::fontsForTheScreens()
{
    m_test->device.setFonts({{"A", 0, "A Regular"}, {"A", 2, "A Bold"}});
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto *fonts = running.model<FontModel>("FontModel");
                        QVERIFY(fonts);
                        QCOMPARE(fonts->rowCount(), 2);
                        QQmlComponent component(qmlEngine(running.window));
                        component.setData(
                            "import QtQml\nimport com.lindenreed.picturestand 1.0\n"
                            "QtObject {\n"
                            "property var row: FontModel.index(1, 0)\n"
                            "property string title: FontModel.data(row, FontDataRoles.TitleRole)\n"
                            "property bool bold: FontModel.data(row, FontDataRoles.HasBold)\n"
                            "property bool italic: FontModel.data(row, FontDataRoles.HasItalic)\n"
                            "property string same: FontModel.getFontFamilyByName('Any Sans')\n"
                            "property int last: FontDataRoles.HasBoldItalic\n"
                            "}",
                            QUrl(u"qrc:/test.qml"_s));
                        const std::unique_ptr<QObject> object(
                            component.create(qmlEngine(running.window)->rootContext()));
                        QVERIFY2(object, qPrintable(component.errorString()));
                        QCOMPARE(object->property("title").toString(), u"A"_s);
                        QVERIFY(object->property("bold").toBool());
                        QVERIFY(!object->property("italic").toBool());
                        QCOMPARE(object->property("same").toString(), u"Any Sans"_s);
                        QCOMPARE(object->property("last").toInt(), 266);
                    }),
             0);
}

void tst_AppMedia::kindsForTheScreens()
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QQmlComponent component(qmlEngine(running.window));
                        component.setData("import QtQml\nimport com.lindenreed.picturestand 1.0\n"
                                          "QtObject {\n"
                                          "property int first: StorageItemDataRoles.StorageItemRoot\n"
                                          "property int last: StorageItemDataRoles.StorageItemEmpty\n"
                                          "property bool storages: typeof Storage !== 'undefined'\n"
                                          "property var one: StorageItemDataRoles {}\n"
                                          "property var other: FontDataRoles {}\n"
                                          "}",
                                          QUrl(u"qrc:/test.qml"_s));
                        const std::unique_ptr<QObject> object(
                            component.create(qmlEngine(running.window)->rootContext()));
                        QVERIFY2(object, qPrintable(component.errorString()));
                        QCOMPARE(object->property("first").toInt(), 0);
                        QCOMPARE(object->property("last").toInt(), 6);
                        QVERIFY(!object->property("storages").toBool()); // only through the models
                        QVERIFY(object->property("one").value<QObject *>());
                        QVERIFY(object->property("other").value<QObject *>());
                    }),
             0);
}

void tst_AppMedia::mediaEvents_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("looks");

    QTest::newRow("the number before them") << 160 << 0;
    QTest::newRow("card in") << 161 << 1;
    QTest::newRow("card out") << 162 << 1;
    QTest::newRow("USB in") << 163 << 1;
    QTest::newRow("USB out") << 164 << 1;
    QTest::newRow("the number behind them") << 165 << 0;
}

void tst_AppMedia::mediaEvents()
{
    QFETCH(int, type);
    QFETCH(int, looks);

    QVERIFY(MediaFixture::settled());
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &) {
                        const QSignalSpy changed(&Storage::instance(), &Storage::storageChanged);
                        m_test->device.send(type, 7, 9); // neither is read
                        // One that is known to come tells that no other one will.
                        Storage::instance().update();
                        QVERIFY(MediaFixture::reported(changed, looks + 1));
                        m_test->device.forgetCalls();
                        m_test->device.send(type);
                        Storage::instance().update();
                        QVERIFY(MediaFixture::reported(changed, 2 * looks + 2));
                        QCOMPARE(MediaFixture::workerCalls().count("isUsbStorMounted"), looks + 1);
                    }),
             0);
}

void tst_AppMedia::eventBeforeTheInterface()
{
    QVERIFY(MediaFixture::settled());
    App app;
    const QSignalSpy changed(&Storage::instance(), &Storage::storageChanged);
    // The handler is there before anything else: an event may come while the panel is being set.
    connect(
        &app, &App::screenChanged, &app, [this] { m_test->device.send(161); }, Qt::SingleShotConnection);
    QCOMPARE(runApp(app, [&](RunningApp &) { QVERIFY(MediaFixture::reported(changed, 1)); }), 0);
}

void tst_AppMedia::mediaComeAndGo_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("root");

    QTest::newRow("card") << u"card"_s << u"SD card /mnt/ext2 2"_s;
    QTest::newRow("USB") << u"usb"_s << u"USB drive /mnt/ext3 3"_s;
}

void tst_AppMedia::mediaComeAndGo()
{
    QFETCH(QString, command);
    QFETCH(QString, root);

    App app;
    QCOMPARE(
        runApp(app,
               [&](RunningApp &) {
                   const QString internal = u"This device /mnt/ext1 1"_s;
                   QTRY_COMPARE(MediaFixture::lines(MediaFixture::roots()), QStringList{internal});
                   PanelRemote remote;
                   QVERIFY(remote.ask(command, {{u"in"_s, true}}).value(u"ok"_s).toBool());
                   QTRY_COMPARE(MediaFixture::lines(MediaFixture::roots()), QStringList({internal, root}));
                   QVERIFY(remote.ask(command, {{u"in"_s, false}}).value(u"ok"_s).toBool());
                   QTRY_COMPARE(MediaFixture::lines(MediaFixture::roots()), QStringList{internal});
               }),
        0);
}

void tst_AppMedia::quitDuringALook()
{
    QVERIFY(MediaFixture::settled());
    const QSignalSpy changed(&Storage::instance(), &Storage::storageChanged);
    {
        App app;
        QCOMPARE(runApp(app,
                        [&](RunningApp &) {
                            for (const int type : {161, 162, 163, 164})
                                m_test->device.send(type);
                        }),
                 0);
    }
    // Nobody waits for the workers, and they need nothing of the application.
    QVERIFY(MediaFixture::reported(changed, 4));
}

PANEL_TEST_MAIN(tst_AppMedia)
#include "tst_app_media.moc"
