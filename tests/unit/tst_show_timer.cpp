// A tick that comes after its show has stopped. The timer of this program is the test's own.

#include "slideshow_model.h"

#include <slateview.h>
#include <slateview_testing.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using lindenreed::device::DeviceForTest;
using lindenreed::picture_stand::SlideshowModel;

namespace {

sv_timer_callback keptCallback = nullptr;
void *keptContext = nullptr;
int armed = 0;

} // namespace

// In the place of the device's: keeps what it is given, so that the test decides when the timer runs out.
void SetHardTimerEx(const char *, sv_timer_callback callback, void *context, int)
{
    keptCallback = callback;
    keptContext = context;
    ++armed;
}

class tst_ShowTimer : public QObject
{
    Q_OBJECT

private slots:
    void lateTick();
};

void tst_ShowTimer::lateTick()
{
    DeviceForTest device;
    QTemporaryDir folder;
    QStringList paths;
    for (const char *name : {"a.jpg", "b.jpg"}) {
        paths.append(folder.filePath(QString::fromLatin1(name)));
        QFile file(paths.last());
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    SlideshowModel model;
    model.initFromList(paths, 2);
    model.start();
    QCOMPARE(armed, 1);
    QVERIFY(keptCallback);
    keptCallback(keptContext); // a show that runs
    QCOMPARE(model.currentImage(), paths.at(1));
    QCOMPARE(armed, 2);

    model.stop();
    device.forgetCalls();
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    keptCallback(keptContext);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(load.count(), 0);
    QCOMPARE(model.currentImage(), paths.at(1));
    QCOMPARE(armed, 2);
    QVERIFY(device.calls().isEmpty());
}

QTEST_GUILESS_MAIN(tst_ShowTimer)
#include "tst_show_timer.moc"
