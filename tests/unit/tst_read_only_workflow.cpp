// A new playlist over a database that nobody can write: what the models stand at when the picker opens.

#include "obeyed_permissions.h"
#include "panel_application.h"
#include "stderr_capture.h"
#include "workflow_fixture.h"

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;

class tst_ReadOnlyWorkflow : public QObject
{
    Q_OBJECT

private slots:
    void newPlaylist();
};

void tst_ReadOnlyWorkflow::newPlaylist()
{
    stored_database::remove();
    {
        const DataStorage store(nullptr); // makes the database of a first run
    }
    stored_database::forgetDefaultConnection();
    QVERIFY(QFile::setPermissions(stored_database::path, QFile::ReadOwner));
    const ObeyedPermissions permissions; // before the store of the run opens it

    QTest::failOnWarning(QRegularExpression(u".?"_s));
    const lindenreed::device::DeviceForTest device;
    App app;
    QCOMPARE(runApp(app,
                    [](RunningApp &running) {
                        PlaylistModel *const playlists = running.playlists();
                        QTRY_COMPARE(running.screen()->height(), ScreenHeight() - PanelHeight());
                        QCOMPARE(playlists->count(), 1);
                        playlists->setActiveId(1); // what a tap on its play button leaves
                        StderrCapture output;
                        QVERIFY(WorkflowFixture::create(running));
                        const QStringList lines = output.logLines(u"picture_stand/src/datastorage"_s);
                        QCOMPARE(lines.size(), 1);
                        QVERIFY(lines.first().contains(u"addPlaylist"_s));
                        QCOMPARE(playlists->activeId(), -1);
                        QCOMPARE(playlists->mode(), PlaylistModel::CreateMode);
                        QCOMPARE(running.app.currentView(), u"select_photos"_s);
                        QCOMPARE(playlists->count(), 1);
                        QVERIFY(WorkflowFixture::press(running, textOf("@Cancel"))); // nothing to throw away
                        QCOMPARE(running.app.currentView(), u"playlists"_s);
                        QCOMPARE(playlists->count(), 1);
                    }),
             0);
    QCOMPARE(stored_database::rows(u"SELECT id, title FROM playlists"_s),
             QStringList{u"1|@DefaultPlaylist"_s});
}

PANEL_TEST_MAIN(tst_ReadOnlyWorkflow)
#include "tst_read_only_workflow.moc"
