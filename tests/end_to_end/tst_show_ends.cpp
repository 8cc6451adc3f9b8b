// The ends of a show: by signals, by a launcher that is killed; what they give back and what they leave.

#include "first_show.h"
#include "launcher_run.h"
#include "wakeful_services.h"

#include <control_client.h>
#include <panel_file.h>
#include <run_folder.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using lindenreed::remote::ControlClient;
using lindenreed::remote::PanelHeader;

namespace {

/// A process and all that it has started.
QList<int> family(int process)
{
    QList<int> found{process};
    for (qsizetype i = 0; i < found.size(); ++i) {
        const QByteArray children = fileContent(u"/proc/%1/task/%1/children"_s.arg(found.at(i)));
        for (const QByteArray &child : children.simplified().split(' ')) {
            if (!child.isEmpty())
                found.append(child.toInt());
        }
    }
    return found;
}

/// Until its last thread has gone: the first may be a zombie while another still holds the sockets.
bool isAlive(int process)
{
    const QByteArray state = fileContent(u"/proc/%1/stat"_s.arg(process));
    return !state.isEmpty()
        && (!state.contains(") Z ")
            || QDir(u"/proc/%1/task"_s.arg(process)).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() > 1);
}

/// The panel's header, also when the file has no name any more.
class KeptPanel
{
public:
    explicit KeptPanel(const QString &path)
        : m_file(path)
    {
        if (m_file.open(QIODevice::ReadOnly))
            m_header = static_cast<const PanelHeader *>(
                static_cast<const void *>(m_file.map(0, sizeof(PanelHeader))));
    }
    const PanelHeader *header() const { return m_header; }

private:
    QFile m_file;
    const PanelHeader *m_header = nullptr;
};

constexpr quint32 lightOn = 4; // of the header's flags

} // namespace

class tst_ShowEnds : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void signalsDuringAShow_data();
    void signalsDuringAShow();
    void wakefulnessOfAKilledShow_data();
    void wakefulnessOfAKilledShow();
    void killedProgram();
    void killedLauncher();
    void killedTemporaryDevice();

private:
    QByteArray startShow(QProcess &launcher, const QStringList &options);
    QString runFolder(const QString &root) const
    {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_place->runtimeFolder()));
        return lindenreed::remote::runFolderOf(root, nullptr).value_or(QString());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
    QString m_root;
    std::optional<ControlClient> m_client;
    std::unique_ptr<KeptPanel> m_panel;
};

void tst_ShowEnds::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
    m_root = m_place->path(u"device"_s);
}

void tst_ShowEnds::cleanup()
{
    m_client.reset();
    m_panel.reset();
}

/// A show with its light off, where the device's own is on. What went wrong, or nothing.
QByteArray tst_ShowEnds::startShow(QProcess &launcher, const QStringList &options)
{
    m_place->start(launcher, QStringList{u"--headless"_s, u"--root"_s, m_root} + options);
    const auto connected = [&] {
        const QString folder = runFolder(m_root);
        m_client = folder.isEmpty() ? std::nullopt : ControlClient::connectTo(folder, nullptr);
        return m_client.has_value();
    };
    if (!QTest::qWaitFor(connected, 20'000))
        return "no device: " + launcher.readAllStandardError();
    const auto refusal = [&](const QString &command, const QJsonObject &members) {
        const QJsonObject answer = m_client->ask(command, members);
        return answer.value("ok"_L1).toBool() ? QByteArray() : QJsonDocument(answer).toJson();
    };
    if (const QByteArray reason = refusal(u"idle"_s, {}); !reason.isEmpty())
        return reason;
    m_panel = std::make_unique<KeptPanel>(runFolder(m_root) + u"/panel"_s);
    const PanelHeader *header = m_panel->header();
    if (!header || header->brightness != 40 || (header->flags & lightOn) == 0)
        return "the device's own light is not on";
    if (!startFirstShow(*m_client))
        return "the show does not start";
    if (const QByteArray reason = refusal(u"idle"_s, {}); !reason.isEmpty())
        return reason;
    if (header->brightness != 0 || (header->flags & lightOn) != 0)
        return "the show's light is not off";
    return {};
}

void tst_ShowEnds::signalsDuringAShow_data()
{
    QTest::addColumn<int>("number");

    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void tst_ShowEnds::signalsDuringAShow()
{
    QFETCH(int, number);

    QProcess launcher;
    QCOMPARE(startShow(launcher, {}), QByteArray());
    const QList<int> processes = family(int(launcher.processId()));
    QVERIFY(processes.size() >= 3); // launcher, sandbox, program
    ::kill(pid_t(launcher.processId()), number);
    QCOMPARE(LauncherPlace::end(launcher).status, 0);

    QCOMPARE(m_panel->header()->brightness, 40U);
    QVERIFY((m_panel->header()->flags & lightOn) != 0);
    for (const int process : processes)
        QTRY_VERIFY(!isAlive(process));
    QCOMPARE(m_place->leftovers(), QStringList());
    QCOMPARE(m_place->run({u"--root"_s, m_root, u"--headless"_s, u"--"_s, u"true"_s}).status, 0);
}

void tst_ShowEnds::wakefulnessOfAKilledShow_data()
{
    QTest::addColumn<bool>("program"); // else the launcher
    QTest::addColumn<int>("number");

    QTest::newRow("program killed") << true << SIGKILL;
    QTest::newRow("program crashed") << true << SIGSEGV;
    QTest::newRow("launcher killed") << false << SIGKILL;
    QTest::newRow("in order") << false << SIGTERM;
}

void tst_ShowEnds::wakefulnessOfAKilledShow()
{
    QFETCH(bool, program);
    QFETCH(int, number);

    const PrivateBus bus;
    const ScreenSaver desktop(bus);
    m_place->environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
    QProcess launcher;
    QCOMPARE(startShow(launcher, {}), QByteArray());
    // Asked for anew: at the start the desktop, which is this test, was waiting for the show.
    for (const QString &command : {u"background"_s, u"foreground"_s})
        QVERIFY(m_client->ask(command).value("ok"_L1).toBool());
    QTRY_VERIFY(!desktop.held.isEmpty());

    const QList<int> processes = family(int(launcher.processId()));
    ::kill(program ? processes.constLast() : processes.constFirst(), number);
    QTRY_VERIFY(desktop.held.isEmpty());
    QTRY_COMPARE(launcher.state(), QProcess::NotRunning);
    for (const int process : processes)
        QTRY_VERIFY(!isAlive(process));
}

void tst_ShowEnds::killedProgram()
{
    QProcess launcher;
    QCOMPARE(startShow(launcher, {}), QByteArray());
    const QList<int> processes = family(int(launcher.processId()));
    ::kill(processes.constLast(), SIGKILL);
    QCOMPARE(LauncherPlace::end(launcher).status, 128 + SIGKILL);
    for (const int process : processes)
        QTRY_VERIFY(!isAlive(process));
    QCOMPARE(m_place->leftovers(), QStringList());
}

void tst_ShowEnds::killedLauncher()
{
    QVERIFY(writeFile(m_place->path(u"Holiday/a.jpg"_s), "a"));
    QProcess launcher;
    QCOMPARE(startShow(launcher, {u"--photos"_s, m_place->path(u"Holiday"_s)}), QByteArray());
    const QList<int> processes = family(int(launcher.processId()));
    QVERIFY(processes.size() >= 3);
    launcher.kill();
    QVERIFY(launcher.waitForFinished());
    for (const int process : processes)
        QTRY_VERIFY(!isAlive(process));

    // Nothing is locked, and the next start takes away what is left.
    QProcess next;
    QCOMPARE(startShow(next, {}), QByteArray());
    QVERIFY(!QFileInfo::exists(m_root + u"/mnt/ext1/Photo/Holiday"_s));
    next.terminate();
    const LauncherEnd end = LauncherPlace::end(next);
    QCOMPARE(end.status, 0);
    QCOMPARE(m_place->leftovers(), QStringList());
    QVERIFY(QFileInfo::exists(m_place->path(u"Holiday/a.jpg"_s)));
}

void tst_ShowEnds::killedTemporaryDevice()
{
    QProcess launcher;
    m_place->start(launcher, {u"--headless"_s, u"--temporary"_s, u"--samples"_s});
    const auto folders
        = [this] { return QDir(m_place->temporaryFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot); };
    QTRY_COMPARE(folders().size(), 1);
    m_root = m_place->temporaryFolder() + u'/' + folders().constFirst();
    QTRY_VERIFY(QFileInfo::exists(runFolder(m_root) + u"/control"_s));
    const QList<int> processes = family(int(launcher.processId()));
    launcher.kill();
    QVERIFY(launcher.waitForFinished());
    for (const int process : processes)
        QTRY_VERIFY(!isAlive(process));
    QCOMPARE(m_place->leftovers().size(), 2);

    QCOMPARE(m_place->runScript(u":"_s).status, 0);
    QCOMPARE(m_place->leftovers(), QStringList());
}

QTEST_GUILESS_MAIN(tst_ShowEnds)
#include "tst_show_ends.moc"
