// The show as it runs: start and stop, its timer, background and foreground.

#include "show_fixture.h"

#include <QSignalSpy>

#include <climits>

using lindenreed::picture_stand::SlideshowModel;

class tst_SlideshowTimer : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_show = std::make_unique<ShowFixture>(); }
    void cleanup() { m_show.reset(); }

    void start();
    void startWithoutPictures();
    void stop();
    void secondStartBeginsTheWaitAnew();
    void stepDuringAShow();
    void pausedStepArmsNothing();
    void tick();
    void tickAfterStop();
    void signalsComeBeforeTheTimer();
    void intervals_data();
    void intervals();
    void intervalWhilePaused();
    void zeroIntervalLeavesTheLoopFree();
    void backgroundAndForeground();
    void backgroundTwice();
    void foregroundOfAShowThatDidNotRun();
    void destructorGivesTheDeviceBack();
    void resumeTimer();

private:
    std::unique_ptr<ShowFixture> m_show;
};

void tst_SlideshowTimer::start()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 30);
    model.start();
    QCOMPARE(m_show->calls(), "SetAutoPowerOff 0\nSetAutoKeylock 0\n" + cleared + '\n' + armed(30'000));
}

void tst_SlideshowTimer::startWithoutPictures()
{
    SlideshowModel model;
    model.start();
    QCOMPARE(m_show->calls(), QByteArray());
    model.initFromList(m_show->makePictures(1), 1);
    model.resumeTimer();
    QCOMPARE(m_show->calls(), QByteArray()); // and it does not count as running
}

void tst_SlideshowTimer::stop()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 30);
    model.start();
    m_show->device.forgetCalls();
    model.stop();
    QCOMPARE(m_show->calls(), "SetAutoPowerOff 1\nSetAutoKeylock 1\n" + cleared);
    QVERIFY(!m_show->device.fire("nextImageEvent"));
}

void tst_SlideshowTimer::secondStartBeginsTheWaitAnew()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 30);
    model.start();
    m_show->device.forgetCalls();
    model.start();
    QCOMPARE(m_show->calls(), "SetAutoPowerOff 0\nSetAutoKeylock 0\n" + cleared + '\n' + armed(30'000));
}

void tst_SlideshowTimer::stepDuringAShow()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(3), 2);
    model.start();
    m_show->device.forgetCalls();
    model.nextImage();
    QCOMPARE(m_show->calls(), cleared + '\n' + armed(2000) + "\nBanSleep 1");
    m_show->device.forgetCalls();
    model.prevImage();
    QCOMPARE(m_show->calls(), cleared + '\n' + armed(2000));
}

void tst_SlideshowTimer::pausedStepArmsNothing()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(3), 2);
    model.nextImage();
    model.prevImage();
    QCOMPARE(m_show->calls(), cleared + "\nBanSleep 1\n" + cleared);
}

void tst_SlideshowTimer::tick()
{
    const QStringList paths = m_show->makePictures(2);
    SlideshowModel model;
    model.initFromList(paths, 2);
    model.start();
    m_show->device.forgetCalls();
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    QVERIFY(m_show->device.fire("nextImageEvent"));
    QCOMPARE(model.currentImage(), paths.at(1));
    QCOMPARE(load.takeFirst(), (QVariantList{paths, 1}));
    QCOMPARE(m_show->calls(), cleared + '\n' + armed(2000) + "\nBanSleep 1");
    QVERIFY(m_show->device.fire("nextImageEvent"));
    QCOMPARE(model.currentImage(), paths.at(0));
}

void tst_SlideshowTimer::tickAfterStop()
{
    // A timer that somebody armed for a stopped model changes nothing.
    const QStringList paths = m_show->makePictures(2);
    SlideshowModel model;
    model.initFromList(paths, 2);
    model.start();
    connect(&model, &SlideshowModel::current_imageChanged, &model, [&model] { model.stop(); });
    QVERIFY(m_show->device.fire("nextImageEvent"));
    QVERIFY(!m_show->device.fire("nextImageEvent"));
    QCOMPARE(model.currentImage(), paths.at(1));
}

void tst_SlideshowTimer::signalsComeBeforeTheTimer()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 2);
    model.start();
    m_show->device.forgetCalls();
    QByteArrayList order;
    connect(&model, &SlideshowModel::current_imageChanged, &model, [&] {
        order.append("changed");
        QCOMPARE(m_show->calls(), QByteArray());
    });
    connect(&model, &SlideshowModel::loadToCache, &model, [&] {
        order.append("load");
        QCOMPARE(m_show->calls(), QByteArray());
    });
    model.nextImage();
    QCOMPARE(order, (QByteArrayList{"changed", "load"}));
}

void tst_SlideshowTimer::intervals_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("milliseconds");

    QTest::newRow("none") << 0 << 0;
    QTest::newRow("two seconds") << 2 << 2000;
    QTest::newRow("a day") << 86'400 << 86'400'000;
    QTest::newRow("more than the timer can hold") << INT_MAX << INT_MAX;
    QTest::newRow("less than the timer can hold") << INT_MIN << INT_MIN;
}

void tst_SlideshowTimer::intervals()
{
    QFETCH(int, seconds);
    QFETCH(int, milliseconds);

    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 30);
    model.start();
    m_show->device.forgetCalls();
    model.intervalChange(seconds);
    QCOMPARE(m_show->calls(), cleared + '\n' + armed(milliseconds));
}

void tst_SlideshowTimer::intervalWhilePaused()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 30);
    model.intervalChange(3);
    QCOMPARE(m_show->calls(), cleared);
    m_show->device.forgetCalls();
    model.start();
    QCOMPARE(m_show->device.calls({"SetHardTimerEx"}).first().arguments.last(), QByteArray("3000"));
}

void tst_SlideshowTimer::zeroIntervalLeavesTheLoopFree()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 0);
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    model.start();
    QCOMPARE(changed.count(), 0); // not from inside the call
    QTRY_VERIFY(changed.count() > 3);
    bool otherWork = false;
    QMetaObject::invokeMethod(
        this, [&otherWork] { otherWork = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(otherWork);
}

void tst_SlideshowTimer::backgroundAndForeground()
{
    const QStringList paths = m_show->makePictures(2);
    SlideshowModel model;
    model.initFromList(paths, 4);
    model.start();
    m_show->device.forgetCalls();
    model.onBackground();
    QCOMPARE(m_show->calls(), "SetAutoPowerOff 1\nSetAutoKeylock 1\n" + cleared);
    m_show->device.forgetCalls();
    model.onForeground();
    QCOMPARE(m_show->calls(), "SetAutoPowerOff 0\nSetAutoKeylock 0\n" + cleared + '\n' + armed(4000));
    QCOMPARE(model.currentImage(), paths.first());

    // What ran in the foreground once runs again with each return, until the next background.
    model.stop();
    m_show->device.forgetCalls();
    model.onForeground();
    QCOMPARE(m_show->device.calls({"SetHardTimerEx"}).size(), 1);
}

void tst_SlideshowTimer::backgroundTwice()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 4);
    model.start();
    model.onBackground();
    model.onBackground();
    m_show->device.forgetCalls();
    model.onForeground();
    QCOMPARE(m_show->calls(), QByteArray());
}

void tst_SlideshowTimer::foregroundOfAShowThatDidNotRun()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 4);
    model.onForeground();
    QCOMPARE(m_show->calls(), QByteArray());
    model.onBackground();
    m_show->device.forgetCalls();
    model.onForeground();
    QCOMPARE(m_show->calls(), QByteArray());
}

void tst_SlideshowTimer::destructorGivesTheDeviceBack()
{
    {
        SlideshowModel model;
        model.initFromList(m_show->makePictures(2), 4);
        model.start();
        m_show->device.forgetCalls();
    }
    QCOMPARE(m_show->calls(), "SetAutoPowerOff 1\nSetAutoKeylock 1\n" + cleared);
}

void tst_SlideshowTimer::resumeTimer()
{
    SlideshowModel model;
    model.initFromList(m_show->makePictures(2), 6);
    model.resumeTimer();
    QCOMPARE(m_show->calls(), QByteArray());
    model.start();
    m_show->device.forgetCalls();
    model.resumeTimer();
    QCOMPARE(m_show->calls(), armed(6000));
}

QTEST_GUILESS_MAIN(tst_SlideshowTimer)
#include "tst_slideshow_timer.moc"
