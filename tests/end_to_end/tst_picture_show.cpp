// One whole show of the real program, driven from outside: what the user does, what the panel shows, what the
// program asks of the device.

#include "device_calls.h"
#include "show_device.h"

#include <panel_file.h>
#include <slateview.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int pictures = 10; ///< of the default playlist

} // namespace

class tst_PictureShow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void overview();
    void callsOfOneShow();
    void everyPictureOnce();
    void tapZones();
    void tapZonesSideways();
    void swipes();
    void accessibleSteps();
    void cornerReturnsToTheOverview();
    void homeEndsTheProgram();
    void panelShowsTheDitheredPicture();
    void thousandPictureChanges();
    void interfaceThatCannotBeLoaded();

private:
    /// Which picture is on the panel, by a walk through all of them; -1: none of them.
    int shown() const { return int(m_panels.indexOf(m_device->screenshot())); }
    bool closeMenu() { return m_device->does(u"key"_s, {{u"name"_s, u"menu"_s}}) && m_device->idle(); }
    bool walkThroughAll();
    QStringList newCalls();

    std::unique_ptr<ShowDevice> m_device;
    QList<QImage> m_panels;
    qint64 m_lastCall = 0;
    bool m_minuteTimerSeen = false;
};

void tst_PictureShow::init()
{
    m_lastCall = 0;
    m_minuteTimerSeen = false;
    m_device = std::make_unique<ShowDevice>();
    if (qstrcmp(QTest::currentTestFunction(), "interfaceThatCannotBeLoaded") != 0)
        QVERIFY(m_device->start());
}

void tst_PictureShow::cleanup()
{
    m_device.reset();
}

bool tst_PictureShow::walkThroughAll()
{
    m_panels.clear();
    for (int i = 0; i < pictures; ++i) {
        m_panels.append(m_device->screenshot());
        if (m_panels.last().isNull() || !m_device->fire(u"nextImageEvent"_s))
            return false;
    }
    return true;
}

QStringList tst_PictureShow::newCalls()
{
    QStringList lines;
    for (const QJsonValue &value : m_device->journal()) {
        const QJsonObject call = value.toObject();
        if (call.value("number"_L1).toInteger() <= m_lastCall)
            continue;
        m_lastCall = call.value("number"_L1).toInteger();
        if (call.value("thread"_L1).toString() != "main"_L1
            || isQueryOrState(call.value("name"_L1).toString().toLatin1()))
            continue;
        QStringList words{call.value("name"_L1).toString()};
        for (const QJsonValue &argument : call.value("arguments"_L1).toArray())
            words.append(argument.toString());
        // The clock of the minutes goes on whenever it has to.
        const bool isMinute = words.contains("updateDateTimeEvent"_L1);
        if (isMinute && std::exchange(m_minuteTimerSeen, true))
            continue;
        lines.append(words.join(u' '));
    }
    return lines;
}

void tst_PictureShow::overview()
{
    QStringList names;
    for (const QJsonObject &item : m_device->items())
        names.append(item.value("name"_L1).toString());
    QVERIFY(names.contains(u"Picture frame"_s));
    QVERIFY(names.contains(u"Photos. 10"_s));
    QVERIFY(names.contains(u"Start playback"_s));
    QVERIFY(m_device->state().value("panel"_L1).toObject().value("type"_L1).toInt() == 1);
}

void tst_PictureShow::callsOfOneShow()
{
    QStringList calls = newCalls();
    QVERIFY(calls.size() > 2);
    QVERIFY(calls.takeAt(2).startsWith("SetHardTimerEx updateDateTimeEvent callback context "_L1));
    QCOMPARE(calls,
             (QStringList{u"setStartupFlag 1"_s, u"setEventHandler handler"_s, u"SetPanelType 1"_s,
                          u"EnumFontsEx"_s, u"FreeFontsForSort fonts"_s, u"GetPreviousTask"_s,
                          u"GetTaskFramebufferInfo 0"_s}));

    const QStringList started{u"SetAutoPowerOff 0"_s, u"SetAutoKeylock 0"_s,
                              u"ClearTimerByName nextImageEvent"_s,
                              u"SetHardTimerEx nextImageEvent callback context 30000"_s};
    const QStringList stopped{u"SetAutoPowerOff 1"_s, u"SetAutoKeylock 1"_s,
                              u"ClearTimerByName nextImageEvent"_s};
    QVERIFY(m_device->play());
    calls = newCalls();
    // The button starts the show; the light of the frame, the panel and the second start come with the view.
    const QStringList expected = started
        + QStringList{u"SetFrontlightState 0"_s,   u"hw_set_frontlight_auto_enabled 0"_s,
                      u"SetFrontlightColor 0"_s,   u"hw_set_frontlight_color_auto_enabled 0"_s,
                      u"SetFrontlightEnabled 0"_s, u"SetPanelType 0"_s}
        + started;
    QCOMPARE(calls, expected);

    for (int picture = 0; picture < 3; ++picture) {
        QVERIFY(m_device->fire(u"nextImageEvent"_s));
        QCOMPARE(newCalls(),
                 (QStringList{u"ClearTimerByName nextImageEvent"_s, started.last(), u"BanSleep 1"_s}));
    }

    QVERIFY(m_device->tap(20, 20));
    const QStringList ended = stopped
        + QStringList{u"SetFrontlightState 40"_s,  u"hw_set_frontlight_auto_enabled 0"_s, // the device's own
                      u"SetFrontlightColor 50"_s,  u"hw_set_frontlight_color_auto_enabled 0"_s,
                      u"SetFrontlightEnabled 1"_s, u"SetPanelType 1"_s};
    QCOMPARE(newCalls(), ended);
}

void tst_PictureShow::everyPictureOnce()
{
    QVERIFY(m_device->play());
    QVERIFY(walkThroughAll());
    for (int i = 0; i < pictures; ++i)
        QCOMPARE(m_panels.indexOf(m_panels.at(i)), i); // ten different ones
    QCOMPARE(shown(), 0); // and round again
    const QJsonObject panel = m_device->state().value("panel"_L1).toObject();
    QCOMPARE(panel.value("type"_L1).toInt(), 0);
}

void tst_PictureShow::tapZones()
{
    QVERIFY(m_device->play());
    QVERIFY(walkThroughAll());
    // 758 x 1024: a quarter is 189.5 and 568.5, a fifth 151.6 and 204.8.
    QVERIFY(m_device->tap(569, 700));
    QCOMPARE(shown(), 1);
    QVERIFY(m_device->tap(568, 700)); // the centre asks for the menu, which lies over the picture
    QCOMPARE(shown(), -1);
    QVERIFY(closeMenu());
    QCOMPARE(shown(), 1);
    QVERIFY(m_device->tap(190, 700));
    QCOMPARE(shown(), -1);
    QVERIFY(closeMenu());
    QVERIFY(m_device->tap(189, 700));
    QCOMPARE(shown(), 0);
    QVERIFY(m_device->tap(152, 10)); // beside the corner: back, not out
    QCOMPARE(shown(), 9);
    QVERIFY(m_device->tap(10, 205)); // below it
    QCOMPARE(shown(), 8);
    QVERIFY(m_device->tap(757, 0)); // the other corners are not special
    QCOMPARE(shown(), 9);
    QVERIFY(m_device->tap(0, 1023));
    QCOMPARE(shown(), 8);
    QVERIFY(m_device->tap(151, 204));
    QVERIFY(m_device->state().value("panel"_L1).toObject().value("type"_L1).toInt() == 1);
}

void tst_PictureShow::tapZonesSideways()
{
    QVERIFY(m_device->play());
    QVERIFY(m_device->does(u"orientation"_s, {{u"value"_s, 1}}));
    QVERIFY(m_device->idle());
    QTRY_COMPARE(m_device->screenshot().size(), QSize(1024, 758));
    QStringList calls; // until the refresh that follows a turn
    QTRY_VERIFY((calls += newCalls()).contains(u"requestScreenRefresh 1 1"_s));
    QVERIFY(m_device->idle());
    QVERIFY(walkThroughAll());
    // A quarter is exactly 256 and 768, which belong to the sides.
    QVERIFY(m_device->tap(768, 500));
    QCOMPARE(shown(), 1);
    QVERIFY(m_device->tap(767, 500));
    QCOMPARE(shown(), -1);
    QVERIFY(closeMenu());
    QVERIFY(m_device->tap(257, 500));
    QCOMPARE(shown(), -1);
    QVERIFY(closeMenu());
    QCOMPARE(shown(), 1);
    QVERIFY(m_device->tap(256, 500));
    QCOMPARE(shown(), 0);
    // Leaving turns the screen back.
    QVERIFY(m_device->tap(204, 151));
    QTRY_COMPARE(m_device->screenshot().size(), QSize(758, 1024));
}

void tst_PictureShow::swipes()
{
    QVERIFY(m_device->play());
    QVERIFY(walkThroughAll());
    QVERIFY(m_device->drag(600, 500, 300, 520)); // to the left: forward
    QCOMPARE(shown(), 1);
    QVERIFY(m_device->drag(300, 500, 600, 480)); // to the right: back
    QCOMPARE(shown(), 0);
    QVERIFY(m_device->drag(400, 300, 420, 700)); // down
    QCOMPARE(shown(), 0);
    QVERIFY(m_device->drag(400, 700, 380, 300)); // up
    QCOMPARE(shown(), 0);
    QVERIFY(m_device->drag(300, 300, 500, 500)); // just as far down as right
    QCOMPARE(shown(), 0);
    QVERIFY(m_device->drag(50, 500, 350, 500)); // from the left edge: a swipe, no tap
    QCOMPARE(shown(), 9);
    // 18 pixels are a tap, 19 a swipe: their squares stand on both sides of 212 * 1.6.
    QVERIFY(m_device->drag(600, 500, 618, 500));
    QCOMPARE(shown(), 0);
    QVERIFY(m_device->drag(600, 500, 619, 500));
    QCOMPARE(shown(), 9);
}

void tst_PictureShow::accessibleSteps()
{
    QVERIFY(m_device->play());
    QVERIFY(walkThroughAll());
    QVERIFY(m_device->does(u"increase"_s, {{u"name"_s, u"#wrapper"_s}}) && m_device->idle());
    QCOMPARE(shown(), 1);
    QVERIFY(m_device->does(u"decrease"_s, {{u"name"_s, u"#wrapper"_s}}) && m_device->idle());
    QCOMPARE(shown(), 0);
}

void tst_PictureShow::cornerReturnsToTheOverview()
{
    const QImage before = m_device->screenshot();
    QVERIFY(m_device->play());
    QVERIFY(m_device->screenshot() != before);
    QVERIFY(m_device->tap(0, 0));
    const QRect belowTheClock(0, 45, 758, 979);
    QCOMPARE(m_device->screenshot().copy(belowTheClock), before.copy(belowTheClock));
    QVERIFY(!m_device->ask(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}).value("ok"_L1).toBool());
}

void tst_PictureShow::homeEndsTheProgram()
{
    m_device->ask(u"tap"_s, {{u"x"_s, 62}, {u"y"_s, 88}});
    QVERIFY(m_device->program().waitForFinished());
    QCOMPARE(m_device->program().exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_device->program().exitCode(), 0);
}

void tst_PictureShow::panelShowsTheDitheredPicture()
{
    // Exactly as large as the screen and touched by nothing but the dither.
    QImage picture(758, 1024, QImage::Format_Grayscale8);
    for (int y = 0; y < 1024; ++y) {
        for (int x = 0; x < 758; ++x)
            picture.scanLine(y)[x] = uchar((x * x / 700 + y) & 0xff);
    }
    const QString first = u"/mnt/ext1/Photo/01.jpg"_s;
    QVERIFY(QFile::rename(first, first + u".kept"_s));
    QVERIFY(picture.save(first, "PNG"));
    QVERIFY(m_device->play());

    QuickFloyd16Dither(picture.scanLine(0), int(picture.bytesPerLine()), 0, 0, 758, 1024);
    QString error;
    const auto panel = lindenreed::remote::readPanel(u"/devroot/run/panel"_s, &error);
    QVERIFY2(panel, qUtf8Printable(error));
    for (int y = 0; y < 900; ++y) // below stands the date
        QVERIFY(std::equal(picture.constScanLine(y), picture.constScanLine(y) + 758,
                           panel->glass.constScanLine(y)));
    QVERIFY(QFile::remove(first));
    QVERIFY(QFile::rename(first + u".kept"_s, first));
}

void tst_PictureShow::thousandPictureChanges()
{
    QVERIFY(m_device->play());
    const QString folder = u"/proc/%1/"_s.arg(m_device->program().processId());
    /// What is open, and the names of the threads.
    const auto open = [&] {
        const QDir::Filters all = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
        QList<QStringList> found(2);
        for (const QFileInfo &handle : QDir(folder + u"fd"_s).entryInfoList(all))
            found[0].append(handle.symLinkTarget());
        for (const QString &thread : QDir(folder + u"task"_s).entryList(all)) {
            QFile name(folder + u"task/"_s + thread + u"/comm"_s);
            found[1].append(name.open(QIODevice::ReadOnly) ? QString::fromUtf8(name.readAll().trimmed())
                                                           : thread);
        }
        return found;
    };
    const auto changes = [&](int count) {
        for (int i = 0; i < count; ++i) {
            if (!m_device->does(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}))
                return false;
        }
        return m_device->idle();
    };
    QVERIFY(changes(100));
    const QList<QStringList> early = open();
    QByteArray log = m_device->errors();
    QCOMPARE(log.count("add image"), pictures); // one entry each
    QVERIFY(changes(900));
    const QList<QStringList> late = open();
    // A thumbnail of the overview may have been open still. Idle workers may have gone home, and others may
    // have come, each with a handle: pictures that met where they had not before.
    const qsizetype come = std::max<qsizetype>(late.at(1).size() - early.at(1).size(), 0);
    QVERIFY(come <= QThread::idealThreadCount());
    for (int kind : {0, 1})
        QVERIFY2(late.at(kind).size() <= early.at(kind).size() + come,
                 qPrintable(u"%1\nthen %2"_s.arg(early.at(kind).join(u' '), late.at(kind).join(u' '))));
    log = m_device->errors();
    QCOMPARE(log.count(" image "), 0);
}

void tst_PictureShow::interfaceThatCannotBeLoaded()
{
    // An installation without the device's control set.
    const QTemporaryDir folder;
    const QDir stage(QCoreApplication::applicationDirPath());
    const QString program = folder.filePath(u"picture_stand"_s);
    QVERIFY(QFile::copy(stage.filePath(u"picture_stand"_s), program));
    for (const QString &entry : stage.entryList({u"*.so*"_s, u"platforms"_s}))
        QVERIFY(QFile::link(stage.filePath(entry), folder.filePath(entry)));
    QProcess process;
    process.start(program, QStringList());
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 255); // -1
}

QTEST_GUILESS_MAIN(tst_PictureShow)
#include "tst_picture_show.moc"
