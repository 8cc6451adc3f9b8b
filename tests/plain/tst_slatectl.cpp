// slatectl: what it makes of its words, and how it tells what comes of them.

#include "control_server.h"
#include "panel_file.h"
#include "raw_client.h"
#include "slatectl_place.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>

#include <list>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

class tst_Slatectl : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void usage_data();
    void usage();
    void wrongWordIsNamed();
    void version();
    void help_data();
    void help();
    void requests_data();
    void requests();
    void otherRoot_data();
    void otherRoot();
    void answerIsOneLineOfJson();
    void refused();
    void noDevice();
    void deadSocket();
    void noRoot();
    void busyDevice();
    void deviceThatGoes();
    void quitFasterThanItsAnswer();
    void followBeginsWithWhatIsThere();
    void follow();
    void everyCommandIsInTheHelp();

private:
    static SlatectlOutcome run(const QStringList &arguments) { return SlatectlPlace::run(arguments); }

    std::unique_ptr<SlatectlPlace> m_place;
    std::unique_ptr<ControlServer> m_server;
    QList<QJsonObject> m_requests;
    std::function<void(const Reply &)> m_answer;
};

void tst_Slatectl::initTestCase()
{
    QVERIFY(QFileInfo(SlatectlPlace::program()).isExecutable());
}

void tst_Slatectl::init()
{
    m_place = std::make_unique<SlatectlPlace>();
    m_requests.clear();
    m_answer = [](const Reply &reply) { reply({{u"done"_s, true}}); };
    m_server = std::make_unique<ControlServer>();
    const QStringList members
        = {u"x"_s,          u"y"_s,       u"ms"_s,   u"x1"_s,         u"y1"_s,    u"x2"_s,
           u"y2"_s,         u"steps"_s,   u"name"_s, u"id"_s,         u"n"_s,     u"type"_s,
           u"par1"_s,       u"par2"_s,    u"text"_s, u"brightness"_s, u"color"_s, u"auto"_s,
           u"color_auto"_s, u"enabled"_s, u"on"_s,   u"value"_s,      u"in"_s};
    for (const QString &command :
         {u"state"_s,      u"tap"_s,     u"hold"_s,   u"drag"_s,        u"key"_s,
          u"event"_s,      u"type"_s,    u"timers"_s, u"fire"_s,        u"card"_s,
          u"usb"_s,        u"light"_s,   u"invert"_s, u"orientation"_s, u"background"_s,
          u"foreground"_s, u"tree"_s,    u"press"_s,  u"increase"_s,    u"decrease"_s,
          u"idle"_s,       u"journal"_s, u"opened"_s, u"quit"_s,        u"chart"_s}) {
        m_server->add(command, members, [this](const QJsonObject &request, const Reply &reply) {
            m_requests.append(request);
            m_answer(reply);
        });
    }
    QString error;
    QVERIFY2(m_server->listen(m_place->runFolder() + u"/control"_s, &error), qPrintable(error));
}

void tst_Slatectl::cleanup()
{
    m_server.reset();
    m_place.reset();
}

void tst_Slatectl::usage_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("nothing") << QStringList();
    QTest::newRow("unknown command") << QStringList{u"dance"_s};
    QTest::newRow("command in capitals") << QStringList{u"State"_s};
    QTest::newRow("empty command") << QStringList{u""_s};
    QTest::newRow("unknown option") << QStringList{u"--route"_s, u"/tmp"_s, u"state"_s};
    QTest::newRow("root without folder") << QStringList{u"--root"_s};
    QTest::newRow("root without command") << QStringList{u"--root"_s, u"/tmp"_s};
    QTest::newRow("two roots") << QStringList{u"--root"_s, u"/tmp"_s, u"state"_s, u"--root=/tmp"_s};
    QTest::newRow("root without folder, at the end") << QStringList{u"state"_s, u"--root"_s};
    QTest::newRow("unknown option at the end") << QStringList{u"state"_s, u"--route"_s};
    QTest::newRow("frame with one number") << QStringList{u"frame"_s, u"1"_s};
    QTest::newRow("frame with three numbers") << QStringList{u"frame"_s, u"1"_s, u"2"_s, u"3"_s};
    QTest::newRow("frame without width") << QStringList{u"frame"_s, u"1"_s, u"2"_s, u"0"_s, u"4"_s};
    QTest::newRow("frame without height") << QStringList{u"frame"_s, u"1"_s, u"2"_s, u"3"_s, u"-4"_s};
    QTest::newRow("frame to a file") << QStringList{u"frame"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"a.pgm"_s};
    QTest::newRow("a word too many") << QStringList{u"state"_s, u"now"_s};
    QTest::newRow("tap without places") << QStringList{u"tap"_s};
    QTest::newRow("tap with one number") << QStringList{u"tap"_s, u"10"_s};
    QTest::newRow("tap with three numbers") << QStringList{u"tap"_s, u"10"_s, u"20"_s, u"30"_s};
    QTest::newRow("tap with a word") << QStringList{u"tap"_s, u"10"_s, u"left"_s};
    QTest::newRow("tap with a fraction") << QStringList{u"tap"_s, u"10"_s, u"1.5"_s};
    QTest::newRow("tap with an empty word") << QStringList{u"tap"_s, u"10"_s, u""_s};
    QTest::newRow("number beyond 32 bits") << QStringList{u"tap"_s, u"10"_s, u"2147483648"_s};
    QTest::newRow("number beyond 64 bits") << QStringList{u"tap"_s, u"10"_s, u"99999999999999999999"_s};
    QTest::newRow("number with a unit") << QStringList{u"tap"_s, u"10"_s, u"20px"_s};
    QTest::newRow("hold for less than nothing") << QStringList{u"hold"_s, u"1"_s, u"2"_s, u"-1"_s};
    QTest::newRow("hold for more than a minute") << QStringList{u"hold"_s, u"1"_s, u"2"_s, u"60001"_s};
    QTest::newRow("idle for more than 20 seconds") << QStringList{u"idle"_s, u"20001"_s};
    QTest::newRow("drag in too many steps")
        << QStringList{u"drag"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"1001"_s};
    QTest::newRow("drag to half a place") << QStringList{u"drag"_s, u"1"_s, u"2"_s, u"3"_s};
    QTest::newRow("drag in no steps") << QStringList{u"drag"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"0"_s};
    QTest::newRow("no key") << QStringList{u"key"_s};
    QTest::newRow("unknown key") << QStringList{u"key"_s, u"home"_s};
    QTest::newRow("event with one number") << QStringList{u"event"_s, u"25"_s};
    QTest::newRow("event that no device has") << QStringList{u"event"_s, u"999"_s, u"0"_s, u"0"_s};
    QTest::newRow("event by a word") << QStringList{u"event"_s, u"key"_s, u"23"_s, u"0"_s};
    QTest::newRow("light of nothing") << QStringList{u"light"_s};
    QTest::newRow("no text") << QStringList{u"type"_s};
    QTest::newRow("empty text") << QStringList{u"type"_s, u""_s};
    QTest::newRow("two texts") << QStringList{u"type"_s, u"a"_s, u"b"_s};
    QTest::newRow("no timer") << QStringList{u"fire"_s};
    QTest::newRow("light too bright") << QStringList{u"light"_s, u"brightness"_s, u"101"_s};
    QTest::newRow("light below nothing") << QStringList{u"light"_s, u"color"_s, u"-1"_s};
    QTest::newRow("light without a value") << QStringList{u"light"_s, u"brightness"_s};
    QTest::newRow("light twice") << QStringList{u"light"_s, u"auto"_s, u"on"_s, u"auto"_s, u"on"_s};
    QTest::newRow("light half on") << QStringList{u"light"_s, u"auto"_s, u"half"_s};
    QTest::newRow("light by its member's name") << QStringList{u"light"_s, u"color_auto"_s, u"on"_s};
    QTest::newRow("light with a bare number") << QStringList{u"light"_s, u"40"_s};
    QTest::newRow("card to nowhere") << QStringList{u"card"_s};
    QTest::newRow("card on") << QStringList{u"card"_s, u"on"_s};
    QTest::newRow("USB in and out") << QStringList{u"usb"_s, u"in"_s, u"out"_s};
    QTest::newRow("invert to nothing") << QStringList{u"invert"_s};
    QTest::newRow("invert to a number") << QStringList{u"invert"_s, u"1"_s};
    QTest::newRow("fifth orientation") << QStringList{u"orientation"_s, u"4"_s};
    QTest::newRow("screenshot to nowhere") << QStringList{u"screenshot"_s};
    QTest::newRow("screenshot in another format") << QStringList{u"screenshot"_s, u"x.jpg"_s};
    QTest::newRow("idle for too long a limit") << QStringList{u"idle"_s, u"300"_s, u"30001"_s};
    QTest::newRow("press nothing") << QStringList{u"press"_s};
    QTest::newRow("press an id without name") << QStringList{u"press"_s, u"#"_s};
    QTest::newRow("press the zeroth") << QStringList{u"press"_s, u"Play"_s, u"0"_s};
    QTest::newRow("idle for a word") << QStringList{u"idle"_s, u"long"_s};
    QTest::newRow("journal of less than nothing") << QStringList{u"journal"_s, u"-1"_s};
    QTest::newRow("quit with a word") << QStringList{u"quit"_s, u"now"_s};
}

void tst_Slatectl::usage()
{
    QFETCH(QStringList, arguments);

    const SlatectlOutcome outcome = run(arguments);
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY2(outcome.errors.startsWith("slatectl: "), outcome.errors.constData());
    QCOMPARE(outcome.errors.count('\n'), 1);
    QVERIFY(outcome.errors.endsWith('\n'));
    QVERIFY(m_requests.isEmpty()); // nothing was sent
}

void tst_Slatectl::wrongWordIsNamed()
{
    QVERIFY(run({u"light"_s, u"foo"_s, u"3"_s})
                .errors.startsWith(
                    "slatectl: light: \"foo\" is not one of brightness, color, auto, color-auto, enabled ("));
    QVERIFY(run({u"light"_s})
                .errors.startsWith(
                    "slatectl: light: one of brightness, color, auto, color-auto, enabled is missing ("));
    QVERIFY(run({u"event"_s, u"999"_s, u"0"_s, u"0"_s})
                .errors.startsWith("slatectl: event: \"999\" is not one of 25, 32, 40, 151, "));
    QVERIFY(run({u"screenshot"_s, u"x.jpg"_s}).errors.contains("\"x.jpg\" does not end in .png"));
    QVERIFY(run({u"state"_s, u"now"_s}).errors.contains("\"now\" is one word too many"));
}

void tst_Slatectl::version()
{
    const SlatectlOutcome outcome = run({u"--version"_s});
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QByteArray());
    QVERIFY(outcome.output.startsWith("slatectl "));
}

void tst_Slatectl::help_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("long") << QStringList{u"--help"_s};
    QTest::newRow("short") << QStringList{u"-h"_s};
    QTest::newRow("after the root") << QStringList{u"--root"_s, u"/none"_s, u"--help"_s};
    QTest::newRow("after a command") << QStringList{u"tap"_s, u"--help"_s};
    QTest::newRow("after a command's text") << QStringList{u"press"_s, u"Play"_s, u"-h"_s};
}

void tst_Slatectl::help()
{
    QFETCH(QStringList, arguments);

    const SlatectlOutcome outcome = run(arguments);
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QByteArray());
    QVERIFY(outcome.output.startsWith("Usage: slatectl [--root DIR] COMMAND"));
    QVERIFY(outcome.output.contains("  drag X1 Y1 X2 Y2 [STEPS]  "));
    QVERIFY(outcome.output.contains("  frame [X Y W H]  "));
    for (const QByteArray &line : outcome.output.split('\n'))
        QVERIFY2(line.size() <= 110, line.constData());
}

void tst_Slatectl::everyCommandIsInTheHelp()
{
    const QByteArray text = run({u"--help"_s}).output;
    for (const char *command :
         {"state",      "tap",        "hold",       "drag",   "key",   "event",  "type",
          "timers",     "card",       "usb",        "fire",   "light", "invert", "orientation",
          "background", "foreground", "screenshot", "follow", "tree",  "press",  "increase",
          "decrease",   "idle",       "journal",    "opened", "quit"})
        QVERIFY2(text.contains(QByteArray("\n  ") + command + ' '), command);
}

void tst_Slatectl::requests_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("request"); ///< without its id, members in alphabetical order

    const auto row = [](const char *arguments, const char *request) {
        QTest::newRow(arguments) << QString::fromUtf8(arguments).split(u' ') << QByteArray(request);
    };
    row("state", R"({"do":"state"})");
    row("tap 10 -20", R"({"do":"tap","x":10,"y":-20})");
    row("hold 1 2", R"({"do":"hold","x":1,"y":2})");
    row("hold 1 2 900", R"({"do":"hold","ms":900,"x":1,"y":2})");
    row("drag 1 2 3 4", R"({"do":"drag","x1":1,"x2":3,"y1":2,"y2":4})");
    row("drag 1 2 3 4 12", R"({"do":"drag","steps":12,"x1":1,"x2":3,"y1":2,"y2":4})");
    for (const char *key :
         {"menu", "prev", "next", "page-up", "page-down", "left", "right", "up", "down", "centre", "back"})
        row(QByteArray("key ") + key, QByteArray(R"({"do":"key","name":")") + key + R"("})");
    row("event 25 23 0", R"({"do":"event","par1":23,"par2":0,"type":25})");
    for (const char *type : {"32", "40", "151", "152", "161", "162", "163", "164"}) {
        row(QByteArray("event ") + type + " 1 2",
            QByteArray(R"({"do":"event","par1":1,"par2":2,"type":)") + type + '}');
    }
    row("type Grüße", R"({"do":"type","text":"Grüße"})");
    row("type --help", R"({"do":"type","text":"--help"})");
    row("press --root 2", R"({"do":"press","n":2,"name":"--root"})");
    row("timers", R"({"do":"timers"})");
    row("fire nextImageEvent", R"({"do":"fire","name":"nextImageEvent"})");
    row("light brightness 40 auto on", R"({"auto":true,"brightness":40,"do":"light"})");
    row("light enabled off color-auto on color 100",
        R"({"color":100,"color_auto":true,"do":"light","enabled":false})");
    row("card in", R"({"do":"card","in":true})");
    row("card out", R"({"do":"card","in":false})");
    row("usb in", R"({"do":"usb","in":true})");
    row("usb out", R"({"do":"usb","in":false})");
    row("invert on", R"({"do":"invert","on":true})");
    row("invert off", R"({"do":"invert","on":false})");
    row("orientation 3", R"({"do":"orientation","value":3})");
    row("background", R"({"do":"background"})");
    row("foreground", R"({"do":"foreground"})");
    row("tree", R"({"do":"tree"})");
    row("press Play", R"({"do":"press","name":"Play"})");
    row("press Play 2", R"({"do":"press","n":2,"name":"Play"})");
    row("press #play", R"({"do":"press","name":"#play"})");
    row("increase Light", R"({"do":"increase","name":"Light"})");
    row("decrease Light 1", R"({"do":"decrease","n":1,"name":"Light"})");
    row("idle", R"({"do":"idle"})");
    row("idle 0", R"({"do":"idle","ms":0})");
    row("journal", R"({"do":"journal"})");
    row("journal 20", R"({"do":"journal","n":20})");
    row("chart", R"({"do":"chart"})");
    row("opened", R"({"do":"opened"})");
    row("quit", R"({"do":"quit"})");
    QTest::newRow("text with blanks")
        << QStringList{u"type"_s, u" a \"b\" "_s} << QByteArray(R"({"do":"type","text":" a \"b\" "})");
}

void tst_Slatectl::requests()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, request);

    const SlatectlOutcome outcome = run(arguments);
    QCOMPARE(outcome.errors, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(m_requests.size(), 1);
    QJsonObject sent = m_requests.constFirst();
    QVERIFY(sent.contains(u"id"_s));
    sent.remove(u"id"_s);
    QCOMPARE(QJsonDocument(sent).toJson(QJsonDocument::Compact), request);
}

void tst_Slatectl::otherRoot_data()
{
    QTest::addColumn<QStringList>("arguments"); ///< OTHER stands for the root

    QTest::newRow("two words") << QStringList{u"--root"_s, u"OTHER"_s, u"state"_s};
    QTest::newRow("one word") << QStringList{u"--root=OTHER"_s, u"state"_s};
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

    const QString other = m_place->path(u"other"_s);
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

    const SlatectlOutcome outcome = run(arguments.replaceInStrings(u"OTHER"_s, other));
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.output, QByteArray("{\"name\":\"other\"}\n"));
    QVERIFY(m_requests.isEmpty());
}

void tst_Slatectl::answerIsOneLineOfJson()
{
    m_answer = [](const Reply &reply) {
        reply({{u"text"_s, u"line 1\nGrüße"_s}, {u"list"_s, QJsonArray{1, 2}}});
    };
    const SlatectlOutcome outcome = run({u"state"_s});
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.output, QByteArray("{\"list\":[1,2],\"text\":\"line 1\\nGrüße\"}\n"));
    QCOMPARE(outcome.errors, QByteArray());
}

void tst_Slatectl::refused()
{
    m_answer = [](const Reply &reply) { reply.fail(u"no-such-item"_s, u"There is no\n\"Play\"."_s); };
    const SlatectlOutcome outcome = run({u"press"_s, u"Play"_s});
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.errors, QByteArray("slatectl: no-such-item: There is no \"Play\".\n"));
}

void tst_Slatectl::noDevice()
{
    m_server.reset();
    const SlatectlOutcome outcome = run({u"state"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.errors,
             "slatectl: No device answers at " + QFile::encodeName(m_place->runFolder()) + "/control.\n");
}

void tst_Slatectl::deadSocket()
{
    m_server.reset();
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(m_place->runFolder() + u"/control"_s);
    std::strncpy(address.sun_path, name.constData(), sizeof(address.sun_path) - 1);
    const int dead = ::socket(AF_UNIX, SOCK_STREAM, 0);
    QVERIFY(::bind(dead, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0);
    ::close(dead);
    QCOMPARE(run({u"state"_s}).status, 2);
}

void tst_Slatectl::noRoot()
{
    const QString missing = m_place->path(u"missing"_s);
    const SlatectlOutcome outcome = run({u"--root"_s, missing, u"state"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors, "slatectl: There is no device root " + QFile::encodeName(missing) + ".\n");
}

void tst_Slatectl::busyDevice()
{
    std::list<RawClient> others;
    for (int i = 0; i < 64; ++i) {
        others.emplace_back(m_place->runFolder() + u"/control"_s);
        QCOMPARE(others.back().ask(R"({"id":1,"do":"state"})").value("ok"_L1), true);
    }
    const SlatectlOutcome outcome = run({u"state"_s});
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.errors.startsWith("slatectl: busy: "), outcome.errors.constData());
}

void tst_Slatectl::deviceThatGoes()
{
    m_answer = [this](const Reply &) { QTimer::singleShot(0, this, [this] { m_server.reset(); }); };
    const SlatectlOutcome outcome = run({u"state"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.errors.count('\n'), 1);
}

void tst_Slatectl::quitFasterThanItsAnswer()
{
    m_answer = [this](const Reply &) { QTimer::singleShot(0, this, [this] { m_server.reset(); }); };
    const SlatectlOutcome outcome = run({u"quit"_s});
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QByteArray());
}

void tst_Slatectl::followBeginsWithWhatIsThere()
{
    const auto writer = PanelWriter::create({.size = {30, 20}}, m_place->runFolder() + u"/panel"_s, nullptr);
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
    m_server->announce({{u"event"_s, u"changed"_s}}); // it follows already
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
                m_server->announce(
                    {{u"event"_s, u"open"_s}, {u"path"_s, QString::number(lines.count('\n'))}});
                lines += program.readAllStandardOutput();
                return lines.count('\n') >= count;
            },
            20'000);
    };
    QVERIFY(read(1)); // the first one comes at once, not when a buffer is full
    QVERIFY(read(3));
    m_server.reset();
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
