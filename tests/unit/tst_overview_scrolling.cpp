// The overview with more playlists than the panel has room for: the page keys, and what lies over its list.

#include "panel_application.h"
#include "workflow_fixture.h"

#include <QQmlExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr double rowHeight = 189; // 268 of 300 dpi
constexpr double buttonHeight = 90; // 128 of 300 dpi

QQuickItem *list(const RunningApp &running)
{
    return running.itemWith("cellHeight");
}

QQuickItem *footer(const RunningApp &running)
{
    return running.itemWith("textButton");
}

QQuickItem *indicator(const RunningApp &running)
{
    return running.itemWith("indicatorLength");
}

double contentY(const RunningApp &running)
{
    return list(running)->property("contentY").toDouble();
}

QQuickItem *corner(const RunningApp &running, const char *key)
{
    return WorkflowFixture::button(running, textOf(key));
}

} // namespace

class tst_OverviewScrolling : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<WorkflowFixture>(); }
    void cleanup() { m_test.reset(); }

    void footerFromTheListToTheEdge();
    void pageKeys_data();
    void pageKeys();
    void aidsOnlyWhereItScrolls_data();
    void aidsOnlyWhereItScrolls();
    void indicatorFollows_data();
    void indicatorFollows();
    void cornersPage();

private:
    /// The overview of so many playlists.
    void runWith(int playlists, const std::function<void(RunningApp &)> &body)
    {
        m_test->run([&](RunningApp &running) {
            stored_database::hurry();
            for (int i = 0; i < playlists; ++i)
                running.playlists()->addItem(u"Number %1"_s.arg(i));
            QTRY_COMPARE(list(running)->property("contentHeight").toDouble(),
                         playlists * rowHeight + buttonHeight);
            body(running);
        });
    }

    std::unique_ptr<WorkflowFixture> m_test;
};

void tst_OverviewScrolling::footerFromTheListToTheEdge()
{
    runWith(12, [](RunningApp &running) {
        const QRect area = sceneRectangle(footer(running));
        QCOMPARE(footer(running)->property("grid").value<QQuickItem *>(), list(running));
        QCOMPARE(area.top(), sceneRectangle(list(running)).top());
        QVERIFY(area.top() > 0);
        QCOMPARE(area.bottom(), sceneRectangle(running.screen()).bottom());
        QVERIFY(area.bottom() > sceneRectangle(list(running)).bottom()); // the list ends before
        QCOMPARE(area.left(), 0);
        QCOMPARE(area.width(), ScreenWidth());

        const QRect bar = sceneRectangle(indicator(running));
        QCOMPARE(bar.top(), sceneRectangle(list(running)).top());
        QCOMPARE(bar.right(), area.right());
        QCOMPARE(indicator(running)->property("length").toDouble(), area.height() - buttonHeight);
        for (const char *key : {"@PreviousPage", "@NextPage"})
            QCOMPARE(sceneRectangle(corner(running, key)).bottom(), area.bottom());
        QCOMPARE(sceneRectangle(WorkflowFixture::button(running, textOf("@New_playlist"))).bottom(),
                 area.bottom());
    });
}

void tst_OverviewScrolling::pageKeys_data()
{
    QTest::addColumn<int>("playlists");
    QTest::addColumn<bool>("onTheRow");
    QTest::addColumn<double>("rowsFurther");

    QTest::newRow("the list has the focus") << 12 << false << 3.;
    QTest::newRow("a row has the focus") << 12 << true << 3.;
    QTest::newRow("all in sight") << 2 << false << 0.;
}

void tst_OverviewScrolling::pageKeys()
{
    QFETCH(int, playlists);
    QFETCH(bool, onTheRow);
    QFETCH(double, rowsFurther);

    runWith(playlists, [&](RunningApp &running) {
        auto *const row = list(running)->property("currentItem").value<QQuickItem *>();
        QVERIFY(row);
        (onTheRow ? row : list(running))->forceActiveFocus();
        QTest::keyClick(running.window, Qt::Key_PageDown);
        QCOMPARE(contentY(running), rowsFurther * rowHeight);
        QTest::keyClick(running.window, Qt::Key_Home); // no page key
        QCOMPARE(contentY(running), rowsFurther * rowHeight);
        QTest::keyClick(running.window, Qt::Key_PageDown);
        QCOMPARE(contentY(running), 2 * rowsFurther * rowHeight);
        QTest::keyClick(running.window, Qt::Key_PageUp);
        QCOMPARE(contentY(running), rowsFurther * rowHeight);
        QTest::keyClick(running.window, Qt::Key_PageUp);
        QTest::keyClick(running.window, Qt::Key_PageUp);
        QCOMPARE(contentY(running), 0.);
        QVERIFY(running.app.currentView().isEmpty()); // and nothing was opened
    });
}

void tst_OverviewScrolling::aidsOnlyWhereItScrolls_data()
{
    QTest::addColumn<int>("playlists");
    QTest::addColumn<bool>("shown");

    QTest::newRow("all in sight") << 4 << false;
    QTest::newRow("one too many") << 5 << true;
}

void tst_OverviewScrolling::aidsOnlyWhereItScrolls()
{
    QFETCH(int, playlists);
    QFETCH(bool, shown);

    runWith(playlists, [&](RunningApp &running) {
        QCOMPARE(list(running)->height() < playlists * rowHeight + buttonHeight, shown);
        QCOMPARE(indicator(running)->isVisible(), shown);
        for (const char *key : {"@PreviousPage", "@NextPage"})
            QCOMPARE(corner(running, key) != nullptr, shown);
    });
}

void tst_OverviewScrolling::indicatorFollows_data()
{
    QTest::addColumn<double>("way"); ///< of the list, from 0 to 1

    QTest::newRow("at the top") << 0.;
    QTest::newRow("half way") << 0.5;
    QTest::newRow("at the end") << 1.;
}

void tst_OverviewScrolling::indicatorFollows()
{
    QFETCH(double, way);

    runWith(12, [&](RunningApp &running) {
        const double all = 12 * rowHeight + buttonHeight;
        const double height = list(running)->height();
        list(running)->setProperty("contentY", way * (all - height));
        const double length = footer(running)->height() - buttonHeight;
        const double bar = height * length / all;
        QVERIFY(qAbs(indicator(running)->property("indicatorLength").toDouble() - bar) < 1);
        QVERIFY(qAbs(indicator(running)->property("offset").toDouble() - (length - bar) * way) < 1);
    });
}

void tst_OverviewScrolling::cornersPage()
{
    runWith(12, [](RunningApp &running) {
        const int bottom = running.window->height() - 1;
        QTest::mouseClick(running.window, Qt::LeftButton, {}, {ScreenWidth() - 1, bottom});
        QTRY_COMPARE(contentY(running), 3 * rowHeight);
        QTest::mouseClick(running.window, Qt::LeftButton, {}, {0, bottom});
        QTRY_COMPARE(contentY(running), 0.);
        QVERIFY(pressByAccessibility(corner(running, "@NextPage")));
        QCOMPARE(contentY(running), 3 * rowHeight);
    });
}

PANEL_TEST_MAIN(tst_OverviewScrolling)
#include "tst_overview_scrolling.moc"
