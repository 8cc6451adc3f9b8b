// Size, turning and refreshing of the screen.

#include <facts.h>
#include <screen.h>

#include <QSignalSpy>
#include <QTest>

using namespace lindenreed::device;

class tst_Screen : public QObject
{
    Q_OBJECT

private slots:
    void startsUpright();
    void orientation_data();
    void orientation();
    void orientationThreeWithoutSupport();
    void unknownOrientation_data();
    void unknownOrientation();
    void sameOrientationIsQuiet();
    void statusPanel();
    void inversion();
    void refresh_data();
    void refresh();
    void refreshOfNothing();
    void fastMode();
    void clear();
    void updateMode();
    void fastUpdates();
    void reset();
};

void tst_Screen::startsUpright()
{
    Profile profile;
    profile.panelSize = QSize(100, 200);
    profile.statusHeight = 9;
    const Screen screen(profile);
    QCOMPARE(screen.size(), QSize(100, 200));
    QCOMPARE(facts().width.load(), 100);
    QCOMPARE(facts().height.load(), 200);
    QCOMPARE(screen.orientation(), 0);
    QCOMPARE(screen.panelType(), 1);
    QCOMPARE(screen.statusHeight(), 9);
    QVERIFY(!screen.inverted());
    QVERIFY(!screen.fastUpdates());
}

void tst_Screen::orientation_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QSize>("size");

    QTest::newRow("a quarter turn clockwise") << 1 << QSize(1024, 758);
    QTest::newRow("three quarter turns clockwise") << 2 << QSize(1024, 758);
    QTest::newRow("half a turn") << 3 << QSize(758, 1024);
}

void tst_Screen::orientation()
{
    QFETCH(int, code);
    QFETCH(QSize, size);

    Screen screen{Profile()};
    QSize seen;
    connect(&screen, &Screen::geometryChanged, this,
            [&seen] { seen = QSize(facts().width, facts().height); });
    screen.setOrientation(code);
    QCOMPARE(screen.orientation(), code);
    QCOMPARE(screen.size(), size);
    QCOMPARE(seen, size); // the facts are right when the news goes out
    screen.setOrientation(0);
    QCOMPARE(QSize(facts().width, facts().height), QSize(758, 1024));
}

void tst_Screen::orientationThreeWithoutSupport()
{
    Profile profile;
    profile.upsideDown = false;
    Screen screen(profile);
    screen.setOrientation(3); // the application decides
    QCOMPARE(screen.orientation(), 3);
}

void tst_Screen::unknownOrientation_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("below") << -1;
    QTest::newRow("above") << 4;
    QTest::newRow("far above") << std::numeric_limits<int>::max();
}

void tst_Screen::unknownOrientation()
{
    QFETCH(int, code);
    Screen screen{Profile()};
    screen.setOrientation(1);
    QSignalSpy changed(&screen, &Screen::geometryChanged);
    screen.setOrientation(code);
    QCOMPARE(screen.orientation(), 1);
    QCOMPARE(changed.size(), 0);
}

void tst_Screen::sameOrientationIsQuiet()
{
    Screen screen{Profile()};
    QSignalSpy changed(&screen, &Screen::geometryChanged);
    screen.setOrientation(0);
    QCOMPARE(changed.size(), 0);
    screen.setOrientation(3);
    QCOMPARE(changed.size(), 1);
}

void tst_Screen::statusPanel()
{
    Screen screen{Profile()};
    QSignalSpy changed(&screen, &Screen::geometryChanged);
    screen.setPanelType(1);
    QCOMPARE(changed.size(), 0);
    screen.setPanelType(0);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(screen.panelType(), 0);
    QCOMPARE(screen.statusHeight(), 45); // also while it is hidden
    QCOMPARE(screen.size(), QSize(758, 1024));
}

void tst_Screen::inversion()
{
    Screen screen{Profile()};
    QSignalSpy changed(&screen, &Screen::inversionChanged);
    screen.setInverted(true);
    QVERIFY(screen.inverted());
    QVERIFY(facts().inverted);
    screen.setInverted(true);
    QCOMPARE(changed.size(), 1);
    screen.setInverted(false);
    QVERIFY(!facts().inverted);
    QCOMPARE(changed.size(), 2);
}

void tst_Screen::refresh_data()
{
    QTest::addColumn<QRect>("asked");
    QTest::addColumn<QRect>("wanted");

    const QRect whole(0, 0, 758, 1024);
    QTest::newRow("no area is the whole screen") << QRect() << whole;
    QTest::newRow("inside") << QRect(1, 2, 3, 4) << QRect(1, 2, 3, 4);
    QTest::newRow("reaching out") << QRect(-10, -10, 20, 5000) << QRect(0, 0, 10, 1024);
    QTest::newRow("larger than the screen") << QRect(-10, -10, 5000, 5000) << whole;
}

void tst_Screen::refresh()
{
    QFETCH(QRect, asked);
    QFETCH(QRect, wanted);

    Screen screen{Profile()};
    QList<std::pair<RefreshMode, QRect>> seen;
    connect(&screen, &Screen::refreshWanted, this, [&seen](RefreshMode mode, QRect area) {
        seen.append({mode, area});
    });
    screen.refresh(RefreshMode::Full, asked);
    screen.refresh(RefreshMode::Partial, asked);
    QCOMPARE(seen.size(), 2);
    QCOMPARE(seen.at(0).first, RefreshMode::Full);
    QCOMPARE(seen.at(1).first, RefreshMode::Partial);
    QCOMPARE(seen.at(0).second, wanted);
}

void tst_Screen::refreshOfNothing()
{
    Screen screen{Profile()};
    QSignalSpy wanted(&screen, &Screen::refreshWanted);
    screen.refresh(RefreshMode::Full, QRect(800, 0, 10, 10));
    QCOMPARE(wanted.size(), 0);
    screen.setOrientation(1); // 800 is on the screen now
    screen.refresh(RefreshMode::Full, QRect(800, 0, 10, 10));
    QCOMPARE(wanted.size(), 1);
}

void tst_Screen::fastMode()
{
    Screen screen{Profile()};
    QList<QRect> areas;
    connect(&screen, &Screen::fastModeWanted, this, [&areas](QRect area) { areas.append(area); });
    screen.useFastMode(QRect(-5, 10, 20, 20));
    screen.useFastMode(QRect());
    screen.useFastMode(QRect(2000, 0, 10, 10));
    QCOMPARE(areas, QList<QRect>({QRect(0, 10, 15, 20)}));
}

void tst_Screen::clear()
{
    Screen screen{Profile()};
    QSignalSpy cleared(&screen, &Screen::cleared);
    screen.clear();
    QCOMPARE(cleared.size(), 1);
}

void tst_Screen::updateMode()
{
    Screen screen{Profile()};
    QList<RefreshMode> wanted;
    connect(&screen, &Screen::nextDrawingWanted, this, [&wanted](RefreshMode mode) { wanted.append(mode); });
    screen.setUpdateMode(2);
    screen.setUpdateMode(5);
    screen.setUpdateMode(99);
    screen.setUpdateMode(-1);
    screen.setUpdateMode(1);
    QCOMPARE(wanted, QList<RefreshMode>({RefreshMode::Partial, RefreshMode::Full, RefreshMode::Partial}));
}

void tst_Screen::fastUpdates()
{
    Screen screen{Profile()};
    screen.setFastUpdates(true);
    QVERIFY(screen.fastUpdates());
    screen.setFastUpdates(false);
    QVERIFY(!screen.fastUpdates());
}

void tst_Screen::reset()
{
    Screen screen{Profile()};
    screen.setOrientation(2);
    screen.setPanelType(0);
    screen.setInverted(true);
    screen.setFastUpdates(true);
    screen.reset();
    QCOMPARE(screen.orientation(), 0);
    QCOMPARE(facts().width.load(), 758);
    QCOMPARE(screen.panelType(), 1);
    QVERIFY(!screen.inverted());
    QVERIFY(!screen.fastUpdates());
}

QTEST_GUILESS_MAIN(tst_Screen)
#include "tst_screen.moc"
