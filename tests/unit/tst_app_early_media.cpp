// A card that comes before anybody has asked for the storages. One event only: the storages are the
// process's.

#include "app_fixture.h"
#include "media_fixture.h"
#include "panel_application.h"
#include "running_app.h"

using lindenreed::picture_stand::App;
using lindenreed::picture_stand::Storage;

class tst_AppEarlyMedia : public QObject
{
    Q_OBJECT

private slots:
    void theEventIsTheFirstUse();
};

void tst_AppEarlyMedia::theEventIsTheFirstUse()
{
    stored_database::remove();
    const AppFixture test;
    MediaFixture media;
    App app;
    std::unique_ptr<QSignalSpy> changed;
    // The panel is set before the interface is there.
    connect(
        &app, &App::screenChanged, &app,
        [&] {
            QVERIFY(MediaFixture::workerCalls().isEmpty());
            media.device.send(161);
            // Reports wait for the event loop, so that none is missed.
            changed = std::make_unique<QSignalSpy>(&Storage::instance(), &Storage::storageChanged);
        },
        Qt::SingleShotConnection);
    QCOMPARE(runApp(app,
                    [&](RunningApp &) {
                        QVERIFY(changed);
                        // To make the storages is to look, and the event asks for a look as well. One more,
                        // which is known to come, tells that no other one will.
                        Storage::instance().update();
                        QVERIFY(MediaFixture::reported(*changed, 3));
                        QCOMPARE(MediaFixture::workerCalls().count("isUsbStorMounted"), 3);
                    }),
             0);
    MediaFixture::plug(false, false);
}

PANEL_TEST_MAIN(tst_AppEarlyMedia)
#include "tst_app_early_media.moc"
