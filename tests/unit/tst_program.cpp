// One whole run of the program in this process: its first steps, a show as the user drives it, and all that
// it asks of the device, down to the end of its last object.

#include "accessible_items.h"
#include "device_calls.h"
#include "program.h"

#include <device.h>
#include <journal.h>
#include <slateview.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QGuiApplication>
#include <QImageReader>
#include <QLocale>
#include <QQuickWindow>
#include <QTest>
#include <QTimer>

#include <cstdlib>

#include <langinfo.h>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::device::SdkCall;

namespace {

/// What the run has left to be looked at.
struct Run
{
    int result = -2;
    QByteArray language; ///< LANG when the application object comes up
    int allocationLimit = 0; ///< for a picture, in MiB, at that moment
    QByteArray encoding; ///< of the process's locale, at that moment
    QByteArray platform; ///< QT_QPA_PLATFORM at that moment
    bool softwareDrawing = false; ///< at that moment
    QLocale locale;
    QString font;
    QString deviceFont;
    bool played = false;
    QByteArrayList calls; ///< "name argument argument"
    quint64 lastCall = 0;
};

Run theRun;

/// To be called often: the journal keeps a limited number of calls.
void gatherCalls()
{
    for (const SdkCall &call : lindenreed::device::journal::entries()) {
        if (call.number <= theRun.lastCall)
            continue;
        theRun.lastCall = call.number;
        if (call.name == "sv_get_default_font" && call.arguments == QByteArrayList{"5"})
            theRun.deviceFont = QString::fromUtf8(call.result);
        if (call.onMainThread && !isQueryOrState(call.name))
            theRun.calls.append((QByteArrayList{call.name} + call.arguments).join(' '));
    }
}

bool waitForCalls(const QByteArray &last, qsizetype more)
{
    const qsizetype before = theRun.calls.size();
    return QTest::qWaitFor([&] {
        gatherCalls();
        return theRun.calls.size() >= before + more && theRun.calls.last() == last;
    });
}

bool play(QWindow *window)
{
    // The play button, and through the two dialogs before the first show: interval and button are in the
    // second.
    auto *quickWindow = qobject_cast<QQuickWindow *>(window);
    const QString start = QString::fromUtf8(GetLangText("@StartPlayback"));
    const QPoint place = window->mapFromGlobal(QPoint(685, 224));
    const auto isThere = [&] {
        QQuickItem *button = findAccessible(quickWindow->contentItem(), QAccessible::Button, start);
        return button && button->isEnabled() && sceneRectangle(button).contains(place);
    };
    const auto hasTheKeys = [quickWindow](const QString &name) {
        return QTest::qWaitFor(
            [=] { return accessibleName(quickWindow->activeFocusItem()).startsWith(name); });
    };
    if (!QTest::qWaitFor(isThere))
        return false;
    QTest::mouseClick(window, Qt::LeftButton, {}, place);
    if (!hasTheKeys(QString::fromUtf8(GetLangText("@Continue"))))
        return false;
    QTest::keyClick(window, Qt::Key_Return);
    if (!hasTheKeys(u"30 "_s))
        return false;
    QTest::keyClick(window, Qt::Key_Down);
    if (!hasTheKeys(start))
        return false;
    QTest::keyClick(window, Qt::Key_Return);
    if (!waitForCalls("SetHardTimerEx nextImageEvent callback context 30000", 8))
        return false;
    for (int picture = 0; picture < 3; ++picture) {
        if (!Device::instance()->timers.fire("nextImageEvent") || !waitForCalls("BanSleep 1", 3))
            return false;
    }
    QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(20, 20)); // the corner
    return waitForCalls("SetPanelType 1", 4);
}

void drive()
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    if (windows.isEmpty() || !windows.first()->isExposed()) {
        QTimer::singleShot(10, qGuiApp, &drive);
        return;
    }
    gatherCalls();
    theRun.locale = QLocale();
    theRun.font = QGuiApplication::font().family();
    theRun.played = play(windows.first());
    QTest::mouseClick(windows.first(), Qt::LeftButton, {},
                      windows.first()->mapFromGlobal(QPoint(62, 88))); // home
}

/// Runs inside the constructor of the program's application object.
void applicationComesUp()
{
    theRun.language = qgetenv("LANG");
    theRun.allocationLimit = QImageReader::allocationLimit();
    theRun.encoding = nl_langinfo(CODESET);
    theRun.platform = qgetenv("QT_QPA_PLATFORM");
    theRun.softwareDrawing = QQuickWindow::sceneGraphBackend() == "software"_L1;
    // What the program has to replace.
    QLocale::setDefault(QLocale(QLocale::Japanese));
    QGuiApplication::setFont(QFont(u"Another Font"_s));
    QTimer::singleShot(0, QCoreApplication::instance(), &drive);
    // A run that goes another way must end as well.
    QTimer::singleShot(60'000, QCoreApplication::instance(), [] { QCoreApplication::exit(-3); });
}

bool put(const QString &path, const QByteArray &contents)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

} // namespace

class tst_Program : public QObject
{
    Q_OBJECT

private slots:
    void firstSteps();
    void callsOfOneShow();
};

void tst_Program::firstSteps()
{
    // All of it before the application object, which takes it from there.
    QCOMPARE(theRun.platform, QByteArray("lindenreed2"));
    QCOMPARE(theRun.language, QByteArray("de_AT.UTF-8"));
    QCOMPARE(theRun.encoding, QByteArray("UTF-8")); // also where no such locale is installed
    QVERIFY(theRun.softwareDrawing);
    QCOMPARE(theRun.allocationLimit, 128);
    // And what comes right after it.
    QCOMPARE(theRun.locale, QLocale(QLocale::German, QLocale::Austria));
    QVERIFY(!theRun.deviceFont.isEmpty());
    QCOMPARE(theRun.font, theRun.deviceFont);
}

void tst_Program::callsOfOneShow()
{
    const QByteArrayList intervalStarts{"ClearTimerByName nextImageEvent",
                                        "SetHardTimerEx nextImageEvent callback context 30000"};
    const QByteArrayList started = QByteArrayList{"SetAutoPowerOff 0", "SetAutoKeylock 0"} + intervalStarts;
    const QByteArrayList stopped{"SetAutoPowerOff 1", "SetAutoKeylock 1", "ClearTimerByName nextImageEvent"};
    const QByteArrayList next = intervalStarts + QByteArrayList{"BanSleep 1"};

    // The tick's own time goes by the clock, and a full minute may pass while the show runs.
    QByteArrayList calls = theRun.calls;
    const QByteArray tick = "SetHardTimerEx updateDateTimeEvent callback context ";
    QVERIFY(calls.size() > 2);
    QVERIFY2(calls.at(2).startsWith(tick), calls.at(2).constData());
    calls.removeIf([&tick](const QByteArray &call) { return call.startsWith(tick); });

    const QByteArrayList expected = QByteArrayList{"setStartupFlag 1",        "setEventHandler handler",
                                                   "SetPanelType 1",          "EnumFontsEx",
                                                   "FreeFontsForSort fonts",  "GetPreviousTask",
                                                   "GetTaskFramebufferInfo 0"}
        // Play: the button starts the show, the light of the frame comes with the view, then its row.
        + started + QByteArrayList{"SetFrontlightState 0",   "hw_set_frontlight_auto_enabled 0",
                                   "SetFrontlightColor 0",   "hw_set_frontlight_color_auto_enabled 0",
                                   "SetFrontlightEnabled 0", "SetPanelType 0"}
        + started
        // Three pictures.
        + next + next
        + next
        // The corner: the device has its own light again.
        + stopped + QByteArrayList{"SetFrontlightState 40",  "hw_set_frontlight_auto_enabled 0",
                                   "SetFrontlightColor 50",  "hw_set_frontlight_color_auto_enabled 0",
                                   "SetFrontlightEnabled 1", "SetPanelType 1"} // The end of the show's model.
        + stopped;
    QCOMPARE(calls, expected);
    QVERIFY(theRun.played);
    QCOMPARE(theRun.result, 0);
}

int main(int argc, char **argv)
{
    if (!put(u"/mnt/ext1/system/config/global.cfg"_s, "language=de\n")
        || !put(u"/devroot/share/locale/locale.alias"_s, "en en_GB.UTF-8\nde de_AT.UTF-8\n"))
        return 1;
    qputenv("QT_QPA_PLATFORM", "offscreen"); // the program knows better
    QImageReader::setAllocationLimit(256);
    qAddPreRoutine(&applicationComesUp);
    theRun.result = lindenreed::picture_stand::runProgram(argc, argv);
    gatherCalls();

    tst_Program test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_program.moc"
