// slatectl: how it finds the device, and how it tells what comes of a request.

#include "panel_file.h"
#include "raw_client.h"
#include "slatectl_device.h"

#include <QTimer>

#include <list>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

class tst_Slatectl : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_device = std::make_unique<SlatectlDevice>(); }
    void cleanup() { m_device.reset(); }

    void otherRoot_data();
    void otherRoot();
    void answerIsOneLineOfJson();
    void answerThatCannotBeWritten();
    void refused();
    void noDevice();
    void deadSocket();
    void noRoot();
    void busyDevice();
    void deviceThatGoes();
    void quitFasterThanItsAnswer();
    void followBeginsWithWhatIsThere();
    void follow();

private:
    static SlatectlOutcome run(const QStringList &arguments) { return SlatectlPlace::run(arguments); }

    std::unique_ptr<SlatectlDevice> m_device;
};

void tst_Slatectl::otherRoot_data()
{
    QTest::addColumn<QStringList>("arguments"); ///< OTHER stands for the root, RUN for its run folder

    QTest::newRow("two words") << QStringList{u"--root"_s, u"OTHER"_s, u"state"_s};
    QTest::newRow("one word") << QStringList{u"--root=OTHER"_s, u"state"_s};
    QTest::newRow("run folder") << QStringList{u"--run"_s, u"RUN"_s, u"state"_s};
    QTest::newRow("run folder after the command") << QStringList{u"state"_s, u"--run=RUN"_s};
    QTest::newRow("two words after the command") << QStringList{u"state"_s, u"--root"_s, u"OTHER"_s};
    QTest::newRow("one word after the command") << QStringList{u"state"_s, u"--root=OTHER"_s};
    QTest::newRow("before the command's words")
        << QStringList{u"tap"_s, u"--root"_s, u"OTHER"_s, u"1"_s, u"2"_s};
    QTest::newRow("among the command's words") << QStringList{u"tap"_s, u"1"_s, u"--root=OTHER"_s, u"2"_s};
    QTest::newRow("after the command's text") << QStringList{u"press"_s, u"Play"_s, u"--root"_s, u"OTHER"_s};
}

void tst_Slatectl::otherRoot()
{
    QFETCH(QStringList, arguments);

    const QString other = m_device->place.path(u"other"_s);
    QVERIFY(QDir().mkdir(other));
    const QString runFolder = *runFolderOf(other, nullptr);
    QVERIFY(QDir().mkpath(runFolder));
    ControlServer server;
    for (const QString &command : {u"state"_s, u"tap"_s, u"press"_s}) {
        server.add(command, {u"x"_s, u"y"_s, u"name"_s}, [](const QJsonObject &, const Reply &reply) {
            reply({{u"name"_s, u"other"_s}});
        });
    }
    QVERIFY(server.listen(runFolder + u"/control"_s, nullptr));

    const SlatectlOutcome outcome
        = run(arguments.replaceInStrings(u"OTHER"_s, other).replaceInStrings(u"RUN"_s, runFolder));
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.output, QByteArray("{\"name\":\"other\"}\n"));
    QVERIFY(m_device->requests.isEmpty());
}

void tst_Slatectl::answerIsOneLineOfJson()
{
    m_device->answer = [](const Reply &reply) {
        reply({{u"text"_s, u"line 1\nGrüße"_s}, {u"list"_s, QJsonArray{1, 2}}});
    };
    const SlatectlOutcome outcome = run({u"state"_s});
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.output, QByteArray("{\"list\":[1,2],\"text\":\"line 1\\nGrüße\"}\n"));
    QCOMPARE(outcome.errors, QByteArray());
}

void tst_Slatectl::answerThatCannotBeWritten()
{
    QProcess program;
    program.setStandardOutputFile(u"/dev/full"_s);
    program.start(SlatectlPlace::program(), {u"state"_s});
    QTRY_COMPARE(program.state(), QProcess::NotRunning);
    QCOMPARE(program.readAllStandardError(),
             QByteArray("slatectl: The answer cannot be written: No space left on device.\n"));
    QCOMPARE(program.exitCode(), 2);
}

void tst_Slatectl::refused()
{
    m_device->answer = [](const Reply &reply) { reply.fail(u"no-such-item"_s, u"There is no\n\"Play\"."_s); };
    const SlatectlOutcome outcome = run({u"press"_s, u"Play"_s});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.errors, QByteArray("slatectl: no-such-item: There is no \"Play\".\n"));
}

void tst_Slatectl::noDevice()
{
    m_device->server.reset();
    const SlatectlOutcome outcome = run({u"state"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.errors,
             "slatectl: No device answers at " + QFile::encodeName(m_device->place.runFolder())
                 + "/control.\n");
}

void tst_Slatectl::deadSocket()
{
    m_device->server.reset();
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(m_device->place.runFolder() + u"/control"_s);
    std::strncpy(address.sun_path, name.constData(), sizeof(address.sun_path) - 1);
    const int dead = ::socket(AF_UNIX, SOCK_STREAM, 0);
    QVERIFY(::bind(dead, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0);
    ::close(dead);
    QCOMPARE(run({u"state"_s}).status, 2);
}

void tst_Slatectl::noRoot()
{
    const QString missing = m_device->place.path(u"missing"_s);
    const SlatectlOutcome outcome = run({u"--root"_s, missing, u"state"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors, "slatectl: There is no device root " + QFile::encodeName(missing) + ".\n");
}

void tst_Slatectl::busyDevice()
{
    std::list<RawClient> others;
    for (int i = 0; i < 64; ++i) {
        others.emplace_back(m_device->place.runFolder() + u"/control"_s);
        QCOMPARE(others.back().ask(R"({"id":1,"do":"state"})").value("ok"_L1), true);
    }
    const SlatectlOutcome outcome = run({u"state"_s});
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.errors.startsWith("slatectl: busy: "), outcome.errors.constData());
}

void tst_Slatectl::deviceThatGoes()
{
    m_device->answer
        = [this](const Reply &) { QTimer::singleShot(0, this, [this] { m_device->server.reset(); }); };
    const SlatectlOutcome outcome = run({u"state"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.errors.count('\n'), 1);
}

void tst_Slatectl::quitFasterThanItsAnswer()
{
    m_device->answer
        = [this](const Reply &) { QTimer::singleShot(0, this, [this] { m_device->server.reset(); }); };
    const SlatectlOutcome outcome = run({u"quit"_s});
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QByteArray());
}

void tst_Slatectl::followBeginsWithWhatIsThere()
{
    const auto writer
        = PanelWriter::create({.size = {30, 20}}, m_device->place.runFolder() + u"/panel"_s, nullptr);
    QVERIFY(writer);
    writer->beginWrite();
    writer->header().refreshNumber = 7;
    writer->header().orientation = 1;
    writer->endWrite();
    QProcess program;
    program.start(SlatectlPlace::program(), {u"follow"_s});
    QTRY_VERIFY(program.canReadLine());
    QCOMPARE(program.readLine(),
             QByteArray("{\"event\":\"refresh\",\"height\":20,\"missed\":0,\"mode\":\"full\",\"number\":7,"
                        "\"width\":30,\"x\":0,\"y\":0}\n"));
    m_device->server->announce({{u"event"_s, u"changed"_s}}); // it follows already
    QTRY_VERIFY(program.canReadLine());
    QCOMPARE(program.readLine(), QByteArray("{\"event\":\"changed\"}\n"));
    program.kill();
    program.waitForFinished();
}

void tst_Slatectl::follow()
{
    QProcess program;
    program.start(SlatectlPlace::program(), {u"follow"_s});
    QByteArray lines;
    const auto read = [&](qsizetype count) {
        return QTest::qWaitFor(
            [&] {
                m_device->server->announce(
                    {{u"event"_s, u"open"_s}, {u"path"_s, QString::number(lines.count('\n'))}});
                lines += program.readAllStandardOutput();
                return lines.count('\n') >= count;
            },
            20'000);
    };
    QVERIFY(read(1)); // the first one comes at once, not when a buffer is full
    QVERIFY(read(3));
    m_device->server.reset();
    QTRY_COMPARE(program.state(), QProcess::NotRunning);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(program.readAllStandardError(), QByteArray());
    lines += program.readAllStandardOutput();
    QVERIFY(lines.startsWith("{\"event\":\"open\",\"path\":\"0\"}\n"));
    QVERIFY(lines.endsWith("}\n"));
    for (const QByteArray &line : lines.chopped(1).split('\n'))
        QCOMPARE(QJsonDocument::fromJson(line).object().value("event"_L1), u"open"_s);
}

QTEST_GUILESS_MAIN(tst_Slatectl)
#include "tst_slatectl.moc"
