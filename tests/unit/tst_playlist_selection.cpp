// What is selected on the screens of a playlist and of the picker, and what leaves it as it was.

#include "panel_application.h"
#include "workflow_fixture.h"

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

class tst_PlaylistSelection : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<WorkflowFixture>(); }
    void cleanup() { m_test.reset(); }

    void selectAll_data();
    void selectAll();
    void leftOverOnTheWayToThePicker_data();
    void leftOverOnTheWayToThePicker();

private:
    void runWithOne(const std::function<void(RunningApp &)> &body)
    {
        m_test->run([&](RunningApp &running) {
            WorkflowFixture::add(running, u"Mine"_s, m_test->paths.first(2));
            QTRY_VERIFY(WorkflowFixture::button(running, u"Mine. 2"_s));
            body(running);
        });
    }
    static bool open(const RunningApp &running) { return WorkflowFixture::press(running, u"Mine. 2"_s); }
    static bool addFromTheMenu(const RunningApp &running)
    {
        return WorkflowFixture::choose(running, u"Mine. 2"_s, textOf("@AddPhotosToPlaylist"));
    }

    std::unique_ptr<WorkflowFixture> m_test;
};

void tst_PlaylistSelection::selectAll_data()
{
    QTest::addColumn<bool>("picking");

    QTest::newRow("playlist") << false;
    QTest::newRow("picker, without what the playlist has") << true;
}

void tst_PlaylistSelection::selectAll()
{
    QFETCH(bool, picking);

    runWithOne([&](RunningApp &running) {
        FolderModel *const folders = WorkflowFixture::folders(running);
        if (picking) {
            QVERIFY(addFromTheMenu(running));
        } else {
            QVERIFY(open(running));
            folders->setMode(FolderModel::SelectionMode);
        }
        QQuickItem *const box
            = findAccessible(running.window->contentItem(), QAccessible::CheckBox, textOf("@All"));
        QVERIFY(box);
        QVERIFY(pressByAccessibility(box));
        QStringList selected = folders->getSelected();
        selected.sort();
        QCOMPARE(selected, picking ? m_test->paths.last(2) : m_test->paths.first(2));
        QVERIFY(pressByAccessibility(box));
        QCOMPARE(folders->getSelected(), QStringList());
        folders->selectFile(selected.first(), true);
        QVERIFY(pressByAccessibility(box)); // one of two: the rest as well
        QCOMPARE(folders->countSelected(), 2);
        folders->clearSelection();
    });
}

void tst_PlaylistSelection::leftOverOnTheWayToThePicker_data()
{
    QTest::addColumn<bool>("isNew");

    QTest::newRow("a new playlist") << true;
    QTest::newRow("the menu of a playlist") << false;
}

void tst_PlaylistSelection::leftOverOnTheWayToThePicker()
{
    QFETCH(bool, isNew);

    // Every way out of selecting has cleared it, so nothing does on this way.
    runWithOne([&](RunningApp &running) {
        FolderModel *const folders = WorkflowFixture::folders(running);
        const QStringList selected{u"/elsewhere/z.png"_s, m_test->paths.last()};
        for (const QString &path : selected)
            folders->selectFile(path, true);
        QVERIFY(isNew ? WorkflowFixture::create(running) : addFromTheMenu(running));
        QCOMPARE(running.app.currentView(), u"select_photos"_s);
        QStringList left = folders->getSelected();
        left.sort();
        QCOMPARE(left, selected);
        QCOMPARE(running.itemWith("select_all_title")->property("selected_count").toInt(), 2);
        folders->clearSelection();
    });
}

PANEL_TEST_MAIN(tst_PlaylistSelection)
#include "tst_playlist_selection.moc"
