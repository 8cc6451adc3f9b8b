// slatectl: what it makes of its words, and what it says of them.

#include "slatectl_device.h"

using namespace Qt::StringLiterals;

class tst_SlatectlWords : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_device = std::make_unique<SlatectlDevice>(); }
    void cleanup() { m_device.reset(); }

    void usage_data();
    void usage();
    void wrongWordIsNamed();
    void rangeIsNamed_data();
    void rangeIsNamed();
    void version();
    void help_data();
    void help();
    void requests_data();
    void requests();
    void everyCommandIsInTheHelp();

private:
    static SlatectlOutcome run(const QStringList &arguments) { return SlatectlPlace::run(arguments); }

    std::unique_ptr<SlatectlDevice> m_device;
};

void tst_SlatectlWords::usage_data()
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
    QTest::newRow("run folder without folder") << QStringList{u"state"_s, u"--run"_s};
    QTest::newRow("two run folders") << QStringList{u"--run=/tmp"_s, u"state"_s, u"--run=/tmp"_s};
    QTest::newRow("root and run folder") << QStringList{u"--root"_s, u"/tmp"_s, u"state"_s, u"--run=/tmp"_s};
    QTest::newRow("run folder and root") << QStringList{u"--run"_s, u"/tmp"_s, u"--root=/tmp"_s, u"state"_s};
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

void tst_SlatectlWords::usage()
{
    QFETCH(QStringList, arguments);

    const SlatectlOutcome outcome = run(arguments);
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY2(outcome.errors.startsWith("slatectl: "), outcome.errors.constData());
    QCOMPARE(outcome.errors.count('\n'), 1);
    QVERIFY(outcome.errors.endsWith('\n'));
    QVERIFY(m_device->requests.isEmpty()); // nothing was sent
}

void tst_SlatectlWords::wrongWordIsNamed()
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

void tst_SlatectlWords::rangeIsNamed_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("complaint");

    QTest::newRow("time of hold") << u"hold 1 2 60001"_s
                                  << QByteArray("MS must be a whole number from 0 to 60000");
    QTest::newRow("steps of drag") << u"drag 1 2 3 4 0"_s
                                   << QByteArray("STEPS must be a whole number from 1 to 1000");
    QTest::newRow("time of idle") << u"idle 20001"_s
                                  << QByteArray("MS must be a whole number from 0 to 20000");
    QTest::newRow("limit of idle") << u"idle 300 30001"_s
                                   << QByteArray("LIMIT must be a whole number from 0 to 30000");
    QTest::newRow("orientation") << u"orientation 4"_s << QByteArray("N must be a whole number from 0 to 3");
    QTest::newRow("brightness") << u"light brightness 101"_s
                                << QByteArray("brightness: N must be a whole number from 0 to 100");
}

void tst_SlatectlWords::rangeIsNamed()
{
    QFETCH(QString, line);
    QFETCH(QByteArray, complaint);

    const QStringList words = line.split(u' ');
    const QByteArray errors = run(words).errors;
    complaint += ", not \"" + words.constLast().toUtf8() + '"';
    QVERIFY2(errors.startsWith("slatectl: " + words.constFirst().toUtf8() + ": " + complaint),
             errors.constData());
}

void tst_SlatectlWords::version()
{
    const SlatectlOutcome outcome = run({u"--version"_s});
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QByteArray());
    QVERIFY(outcome.output.startsWith("slatectl "));
}

void tst_SlatectlWords::help_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("long") << QStringList{u"--help"_s};
    QTest::newRow("short") << QStringList{u"-h"_s};
    QTest::newRow("after the root") << QStringList{u"--root"_s, u"/none"_s, u"--help"_s};
    QTest::newRow("after a command") << QStringList{u"tap"_s, u"--help"_s};
    QTest::newRow("after a command's text") << QStringList{u"press"_s, u"Play"_s, u"-h"_s};
}

void tst_SlatectlWords::help()
{
    QFETCH(QStringList, arguments);

    const SlatectlOutcome outcome = run(arguments);
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.errors, QByteArray());
    QVERIFY(outcome.output.startsWith("Usage: slatectl [--root DIR | --run DIR] COMMAND"));
    QVERIFY(outcome.output.contains("  drag X1 Y1 X2 Y2 [STEPS]  "));
    QVERIFY(outcome.output.contains("  frame [X Y W H]  "));
    for (const QByteArray &line : outcome.output.split('\n'))
        QVERIFY2(line.size() <= 110, line.constData());
}

void tst_SlatectlWords::everyCommandIsInTheHelp()
{
    const QByteArray text = run({u"--help"_s}).output;
    for (const char *command :
         {"state",      "tap",        "hold",       "drag",   "key",   "event",  "type",
          "timers",     "card",       "usb",        "fire",   "light", "invert", "orientation",
          "background", "foreground", "screenshot", "follow", "tree",  "press",  "increase",
          "decrease",   "idle",       "journal",    "opened", "quit"})
        QVERIFY2(text.contains(QByteArray("\n  ") + command + ' '), command);
}

void tst_SlatectlWords::requests_data()
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

void tst_SlatectlWords::requests()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, request);

    const SlatectlOutcome outcome = run(arguments);
    QCOMPARE(outcome.errors, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(m_device->requests.size(), 1);
    QJsonObject sent = m_device->requests.constFirst();
    QVERIFY(sent.contains(u"id"_s));
    sent.remove(u"id"_s);
    QCOMPARE(QJsonDocument(sent).toJson(QJsonDocument::Compact), request);
}

QTEST_GUILESS_MAIN(tst_SlatectlWords)
#include "tst_slatectl_words.moc"
