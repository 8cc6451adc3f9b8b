// The real program while it gets no more handles: what it cannot open is missing, and comes when there are
// handles again.

#include "faulty_device.h"
#include "raw_client.h"
#include "stored_show.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <memory>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

const QString planPath = u"/devroot/tmp/plan"_s;
constexpr auto svg
    = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"300\" height=\"300\"><rect width=\"300\" "
      "height=\"300\" fill=\"#888\"/></svg>";

bool isLong()
{
    return qEnvironmentVariableIsSet("SLATE_LONG");
}

/// Leaves a process `count` handles beside those that it has.
bool leaveHandles(qint64 process, int count)
{
    const auto id = pid_t(process);
    int limit = 0;
    for (;; ++limit) {
        const bool free
            = !QFileInfo(u"/proc/%1/fd/%2"_s.arg(process).arg(limit)).isSymLink(); // a socket's leads nowhere
        if (free && count-- == 0)
            break;
    }
    rlimit now = {};
    if (::prlimit(id, RLIMIT_NOFILE, nullptr, &now) != 0)
        return false;
    now.rlim_cur = rlim_t(limit);
    return ::prlimit(id, RLIMIT_NOFILE, &now, nullptr) == 0;
}

bool giveHandlesBack(qint64 process)
{
    rlimit now = {};
    ::prlimit(pid_t(process), RLIMIT_NOFILE, nullptr, &now);
    now.rlim_cur = now.rlim_max;
    return ::prlimit(pid_t(process), RLIMIT_NOFILE, &now, nullptr) == 0;
}

} // namespace

class tst_FewHandles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void show_data();
    void show();
    void screens();
    void newClients();
    void threadsAreThere();
    void openingsAtTheStart_data();
    void openingsAtTheStart();

private:
    bool isBlack()
    {
        const QImage picture = m_device->screenshot();
        return qGray(picture.pixel(picture.width() / 2, picture.height() / 2)) == 0;
    }
    bool step() { return m_device->fire(u"nextImageEvent"_s); }

    FaultPlan *m_plan = nullptr;
    std::unique_ptr<FaultyDevice> m_device;
};

/// No fault yet.
void tst_FewHandles::init()
{
    m_plan = FaultPlan::at(QFile::encodeName(planPath));
    QVERIFY(m_plan);
    m_plan->arm(FaultPlan::never, 0);
    m_device = std::make_unique<FaultyDevice>(u"/"_s, planPath);
}

void tst_FewHandles::cleanup()
{
    if (QTest::currentTestFailed()) {
        m_device->program().waitForFinished(500);
        qInfo("%s", m_device->program().readAllStandardError().constData());
    }
    m_device.reset();
}

void tst_FewHandles::show_data()
{
    QTest::addColumn<int>("handles");

    for (const int handles : isLong() ? QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10} : QList<int>{0, 4})
        QTest::addRow("%d handles", handles) << handles;
}

void tst_FewHandles::show()
{
    QFETCH(int, handles);

    const QString folder = u"/mnt/ext1/handles"_s;
    QVERIFY(QDir().mkpath(folder));
    QStringList paths{folder + u"/a.svg"_s, folder + u"/b.png"_s, folder + u"/c.svg"_s};
    for (const QString &path : std::as_const(paths)) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QImage grey(300, 300, QImage::Format_Grayscale8);
        grey.fill(0x88);
        QVERIFY(path.endsWith(u"svg"_s) ? file.write(svg) > 0 : grey.save(&file, "PNG"));
    }
    QVERIFY(stored_show::store({u"/mnt/ext1/Photo/01.jpg"_s, u"/mnt/ext1/Photo/02.jpg"_s},
                               {{u"is_first_run"_s, u"0"_s}}));
    QStringList statements{u"INSERT INTO playlists(id, title) VALUES (2, 'Handles')"_s};
    for (const QString &path : std::as_const(paths))
        statements.append(u"INSERT INTO playlist_images(url, playlist) VALUES ('%1', 2)"_s.arg(path));
    QVERIFY(stored_database::execute(statements));
    QVERIFY(m_device->start());
    const qint64 process = m_device->program().processId();

    // Idle threads would end by then, were they not told to stay.
    if (isLong())
        QTest::qWait(33'000);
    QVERIFY(leaveHandles(process, handles));
    QVERIFY(m_device->does(u"press"_s, {{u"name"_s, u"Start playback"_s}, {u"n"_s, 2}}) && m_device->idle());
    for (qsizetype i = 0; i < paths.size(); ++i) {
        if (handles == 0)
            QVERIFY(isBlack());
        QVERIFY(step());
    }
    QVERIFY(giveHandlesBack(process));
    for (qsizetype i = 0; i < paths.size(); ++i) {
        QVERIFY(step());
        QVERIFY2(!isBlack(), QByteArray::number(i));
    }
    QVERIFY(m_device->ends());
}

void tst_FewHandles::screens()
{
    stored_database::remove();
    QVERIFY(m_device->start());
    const qint64 process = m_device->program().processId();
    const QStringList toThePictures{u"hold Photos. 10"_s, u"touch Add pictures to playlist"_s};
    QVERIFY(leaveHandles(process, 0));
    QVERIFY(m_device->walk(toThePictures));
    QVERIFY(m_device->act(u"touch This device"_s));
    QVERIFY(!m_device->names().contains(u"Photo"_s)); // a folder that cannot be listed is empty
    QVERIFY(m_device->walk({u"touch Cancel"_s, u"press Back"_s}));
    m_device->errors();
    QVERIFY(m_device->walk({u"press Slideshow settings"_s, u"press Photo date"_s,
                            u"press Font and position"_s, u"press Back"_s, u"press Back"_s,
                            u"touch Change picture every"_s, u"touch 5 seconds"_s, u"press Back"_s}));
    const QByteArray told = m_device->errors();
    QVERIFY2(told.contains(": no icon \""), told.constData()); // which a crossed box stands for
    QVERIFY2(told.contains(": Error performing setSetting request. ["), told.constData());
    const auto firstThumbnail = [this] {
        return m_device->act(u"touch Photos. 10"_s)
            ? m_device->screenshot().copy(m_device->place(u"01.jpg"_s))
            : QImage();
    };
    const QImage without = firstThumbnail();
    QVERIFY(m_device->act(u"press Back"_s));
    QVERIFY(giveHandlesBack(process));
    const QImage with = firstThumbnail();
    QVERIFY(!with.isNull() && m_device->act(u"press Back"_s));
    QVERIFY(m_device->walk(toThePictures));
    QVERIFY(m_device->act(u"touch This device"_s));
    QVERIFY(m_device->names().contains(u"Photo"_s));
    QVERIFY(m_device->ends());

    m_device = std::make_unique<FaultyDevice>(u"/"_s, planPath);
    QVERIFY(m_device->start());
    const QImage usual = firstThumbnail();
    QVERIFY(without != usual);
    QCOMPARE(with, usual);
    QCOMPARE(stored_database::rows(
                 u"SELECT value FROM settings WHERE playlist = -1 AND name = 'change_picture_time'"_s),
             QStringList{u"30"_s});
}

/// Who comes meanwhile waits, and is answered when there are handles again.
void tst_FewHandles::newClients()
{
    QVERIFY(m_device->start());
    const qint64 process = m_device->program().processId();
    QVERIFY(leaveHandles(process, 0));
    const QString path = u"/devroot/run/control"_s;
    RawClient early(path);
    QVERIFY(early.isConnected() && early.send(QByteArray("{\"id\":1,\"do\":\"timers\"}\n")));
    QVERIFY(m_device->does(u"timers"_s) && m_device->idle());
    QVERIFY(early.receive().isEmpty());
    QVERIFY(giveHandlesBack(process));
    QCOMPARE(early.next().value("ok"_L1), true);
    QCOMPARE(RawClient(path).ask(R"({"id":1,"do":"timers"})").value("ok"_L1), true);
    QVERIFY(m_device->ends());
}

/// One that starts later would need a handle: those of two thumbnails, of Qt's own work on large pictures,
/// and of at least one picture that is read ahead.
void tst_FewHandles::threadsAreThere()
{
    QVERIFY(m_device->start());
    const QDir threads(u"/proc/%1/task"_s.arg(m_device->program().processId()));
    const auto isPooled = [&threads](const QString &thread) {
        QFile file(threads.filePath(thread + u"/comm"_s));
        return file.open(QIODevice::ReadOnly) && file.readAll() == "Thread (pooled)\n";
    };
    QTRY_VERIFY(std::ranges::count_if(threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot), isPooled)
                >= 2 + QThread::idealThreadCount() + 1);
    QVERIFY(m_device->ends());
}

void tst_FewHandles::openingsAtTheStart_data()
{
    QTest::addColumn<int>("position");

    for (int position = isLong() ? 0 : 3; position < (isLong() ? 150 : 60); position += isLong() ? 1 : 25)
        QTest::addRow("opening %d", position) << position;
}

void tst_FewHandles::openingsAtTheStart()
{
    QFETCH(int, position);

    stored_database::remove();
    m_plan->arm(position, EMFILE);
    if (m_device->start()) {
        QVERIFY(m_plan->hasFailed());
        QVERIFY(m_device->ends());
        return;
    }
    // It cannot do without its profile, theme, platform or interface, and says so.
    QVERIFY(m_device->program().state() == QProcess::NotRunning || m_device->program().waitForFinished());
    const QByteArray errors = m_device->errors();
    QVERIFY2(m_device->program().exitStatus() == QProcess::NormalExit
                 || errors.contains("no Qt platform plugin"), // which Qt tells, and aborts
             errors.constData());
    QVERIFY(m_device->program().exitCode() != 0);
    QVERIFY2(errors.contains("Too many open files") || errors.contains("cannot be read")
                 || errors.contains("not usable") || errors.contains("not installed"),
             errors.constData());
}

QTEST_GUILESS_MAIN(tst_FewHandles)
#include "tst_few_handles.moc"
