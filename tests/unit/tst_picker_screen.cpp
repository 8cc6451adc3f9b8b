// The picker as it comes on show: who has the keys, and a button that must not be pressed yet.

#include "panel_application.h"
#include "workflow_fixture.h"

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

class tst_PickerScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<WorkflowFixture>(); }
    void cleanup() { m_test.reset(); }

    void keysGoToTheGrid();
    void clickOfADisabledButton_data();
    void clickOfADisabledButton();

private:
    std::unique_ptr<WorkflowFixture> m_test;
};

void tst_PickerScreen::keysGoToTheGrid()
{
    m_test->run([](RunningApp &running) {
        QVERIFY(WorkflowFixture::create(running));
        QQuickItem *const grid = running.itemWith("cellHeight");
        QVERIFY(grid && grid->property("count").toInt() == 4);
        QTRY_VERIFY(grid->hasActiveFocus());

        // And again whenever the screen comes back; what is hidden has no keys.
        running.screen()->setVisible(false);
        QVERIFY(!grid->isVisible());
        grid->setFocus(false);
        QVERIFY(!grid->hasActiveFocus());
        running.screen()->setVisible(true);
        QVERIFY(grid->isVisible());
        QVERIFY(grid->hasActiveFocus());
    });
}

void tst_PickerScreen::clickOfADisabledButton_data()
{
    QTest::addColumn<PlaylistModel::PlaylistMode>("mode");

    QTest::newRow("for a new playlist") << PlaylistModel::CreateMode;
    QTest::newRow("for a playlist") << PlaylistModel::AddMode;
    QTest::newRow("selecting in a playlist") << PlaylistModel::ViewMode;
}

void tst_PickerScreen::clickOfADisabledButton()
{
    QFETCH(PlaylistModel::PlaylistMode, mode);

    m_test->run([&](RunningApp &running) {
        running.playlists()->setActiveId(WorkflowFixture::add(running, u"Mine"_s, m_test->paths.first(1)));
        running.playlists()->setMode(mode);
        WorkflowFixture::folders(running)->setMode(FolderModel::SelectionMode);
        running.app.changeView(mode == PlaylistModel::ViewMode ? u"playlist"_s : u"select_photos"_s);
        QQuickItem *const button = running.itemWith("visibleBorders");
        QVERIFY(button && !button->isEnabled());
        WorkflowSteps steps(running);
        QVERIFY(QMetaObject::invokeMethod(button, "clicked"));
        QCOMPARE(steps.taken(), QStringList());

        WorkflowFixture::folders(running)->selectFile(m_test->paths.at(1), true);
        QVERIFY(button->isEnabled());
        steps.taken();
        QVERIFY(QMetaObject::invokeMethod(button, "clicked"));
        QVERIFY(!steps.taken().isEmpty());
    });
}

PANEL_TEST_MAIN(tst_PickerScreen)
#include "tst_picker_screen.moc"
