// The foot of a list on a device of keys: how the focus comes to the button and back, and that there is
// nothing for a finger.

#include "explorer_fixture.h"
#include "panel_application.h"
#include "panel_remote.h"

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

namespace {

QQuickItem *button(const RunningExplorer &explorer)
{
    return RunningExplorer::below(explorer.footer(), "visibleBorders");
}

/// The black frame around what has the keys, in the item with these; null where none shows.
QQuickItem *frame(QQuickItem *item)
{
    for (QQuickItem *child : item->childItems()) {
        const double width = RunningExplorer::valueOf(child, u"border.width"_s).toDouble();
        if (child->isVisible()
            && width
                == RunningExplorer::valueOf(child, u"GlobalValues.defaultFocusedElementBorderThickness"_s)
                       .toDouble())
            return child;
    }
    return nullptr;
}

} // namespace

class tst_ExplorerFooterOnKeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(u"keys-6"_s); }
    void cleanup() { m_test.reset(); }

    void noAidsForFingers();
    void pageKeys();
    void fromTheListToTheButtonAndBack_data();
    void fromTheListToTheButtonAndBack();
    void focusFrame();
    void centreOnARow();

private:
    void inAPlaylist(FolderModel::FolderModelViewMode view, int pictures,
                     const std::function<void(RunningExplorer &)> &body)
    {
        m_paths = m_test->pictures(pictures);
        explore([&](RunningExplorer &explorer) {
            explorer.openPlaylist(m_paths, FolderModel::NormalMode, view);
            QTRY_VERIFY(explorer.cell(0));
            QTRY_VERIFY(explorer.list()->hasActiveFocus());
            body(explorer);
        });
    }
    static void press(const QString &name)
    {
        PanelRemote remote;
        QCOMPARE(code(remote.ask(u"key"_s, {{u"name"_s, name}})), u"ok"_s);
    }

    std::unique_ptr<ExplorerFixture> m_test;
    QStringList m_paths;
};

void tst_ExplorerFooterOnKeys::noAidsForFingers()
{
    inAPlaylist(FolderModel::ListViewMode, 20, [](RunningExplorer &explorer) {
        QVERIFY(explorer.list()->property("contentHeight").toDouble() > explorer.list()->height());
        QVERIFY(!RunningExplorer::below(explorer.footer(), "indicatorLength")->isVisible());
        for (const QQuickItem *item : explorer.footer()->childItems())
            QVERIFY(item->metaObject()->indexOfSignal("scrollUp()") < 0 || !item->isVisible());
    });
}

void tst_ExplorerFooterOnKeys::pageKeys()
{
    inAPlaylist(FolderModel::ListViewMode, 20, [](RunningExplorer &explorer) {
        press(u"page-down"_s);
        QCOMPARE(explorer.list()->property("contentY").toDouble(), 3. * 189);
        press(u"page-up"_s);
        QCOMPARE(explorer.list()->property("contentY").toDouble(), 0.);
    });
}

void tst_ExplorerFooterOnKeys::fromTheListToTheButtonAndBack_data()
{
    QTest::addColumn<FolderModel::FolderModelViewMode>("view");

    QTest::newRow("grid") << FolderModel::GridViewMode;
    QTest::newRow("list") << FolderModel::ListViewMode;
}

void tst_ExplorerFooterOnKeys::fromTheListToTheButtonAndBack()
{
    QFETCH(FolderModel::FolderModelViewMode, view);

    inAPlaylist(view, 2, [](RunningExplorer &explorer) {
        for (int steps = 0; steps < 3 && !button(explorer)->hasActiveFocus(); ++steps)
            press(u"down"_s);
        QVERIFY(button(explorer)->hasActiveFocus());
        QVERIFY(!explorer.list()->hasActiveFocus());
        press(u"up"_s);
        QVERIFY(explorer.list()->hasActiveFocus());
        QVERIFY(!button(explorer)->hasActiveFocus());
        QVERIFY(explorer.list()->property("currentIndex").toInt() >= 0);
    });
}

void tst_ExplorerFooterOnKeys::focusFrame()
{
    inAPlaylist(FolderModel::ListViewMode, 3, [](RunningExplorer &explorer) {
        QTRY_VERIFY(explorer.cell(2));
        QVERIFY(frame(explorer.cell(0)) && !frame(explorer.cell(1)));
        press(u"down"_s);
        QVERIFY(!frame(explorer.cell(0)) && frame(explorer.cell(1)));
        button(explorer)->forceActiveFocus();
        const QQuickItem *const shown = frame(button(explorer));
        QVERIFY(shown);
        QCOMPARE(RunningExplorer::valueOf(button(explorer), u"visibleBorders.join()"_s), u"1,1,0,1"_s);
    });
}

void tst_ExplorerFooterOnKeys::centreOnARow()
{
    inAPlaylist(FolderModel::ListViewMode, 3, [&](RunningExplorer &explorer) {
        QTRY_VERIFY(explorer.cell(2));
        press(u"down"_s);
        press(u"centre"_s);
        QCOMPARE(m_test->media.device.calls({"OpenBook"}).size(), 1);
        explorer.folders()->setMode(FolderModel::SelectionMode);
        press(u"centre"_s);
        QCOMPARE(explorer.folders()->getSelected(), QStringList{m_paths.at(1)});
    });
}

PANEL_TEST_MAIN_WITH_RECORD(tst_ExplorerFooterOnKeys, R"({"profile": "keys-6"})")
#include "tst_explorer_footer_on_keys.moc"
