// A window that stops reading, during a show: the device goes on and does not grow.

#include "first_show.h"
#include "growth_limit.h"
#include "launched_device.h"

#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

constexpr int pictureChanges = 120;
constexpr qint64 mostGrowthKb = growthLimit(6 * 1024); ///< an unread picture of every change would be 90 MB

qint64 residentKb(qint64 process)
{
    for (const QByteArray &line : fileContent(u"/proc/%1/status"_s.arg(process)).split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.sliced(6).trimmed().split(' ').constFirst().toLongLong();
    }
    return 0;
}

} // namespace

class tst_StoppedWindow : public QObject
{
    Q_OBJECT

private slots:
    void deviceGoesOn();
};

void tst_StoppedWindow::deviceGoesOn()
{
    LaunchedDevice device;
    device.place.environment().insert(u"DISPLAY"_s, u":none"_s);
    device.place.environment().insert(u"QT_QPA_PLATFORM"_s,
                                      u"offscreen"_s); // of the window alone: the device has its own
    QVERIFY(device.start({}));
    qint64 window = 0;
    QTRY_VERIFY((window = findDescendant(device.launcher.processId(), "slate-window")) > 0);
    const qint64 program = findDescendant(device.launcher.processId(), "picture_stand");
    QVERIFY(program > 0);
    QVERIFY(startFirstShow(*device.client));
    QVERIFY(device.does(u"idle"_s));

    const auto change = [&](int times) {
        for (int i = 0; i < times; ++i) {
            if (!device.does(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}})
                || !device.does(u"idle"_s, {{u"ms"_s, 0}}))
                return false;
        }
        return true;
    };
    QVERIFY(change(20)); // every cache has what it will have
    QCOMPARE(::kill(pid_t(window), SIGSTOP), 0);
    const qint64 before = residentKb(program);
    QVERIFY(before > 0);
    QVERIFY(change(pictureChanges));
    const qint64 grown = residentKb(program) - before;
    QVERIFY2(grown < mostGrowthKb, qPrintable(u"%1 KB"_s.arg(grown)));

    QCOMPARE(::kill(pid_t(window), SIGCONT), 0);
    QVERIFY(device.does(u"quit"_s));
    QCOMPARE(LauncherPlace::end(device.launcher).status, 0);
}

QTEST_GUILESS_MAIN(tst_StoppedWindow)
#include "tst_stopped_window.moc"
