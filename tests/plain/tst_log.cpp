// Lines of the device log.

#include <log.h>

#include <captured_error.h>

#include <QTest>

#include <string>
#include <thread>
#include <vector>

using namespace lindenreed::device;

class tst_Log : public QObject
{
    Q_OBJECT

private slots:
    void oneLineOneWrite();
    void visible_data();
    void visible();
    void controlCharactersElsewhere();
    void nullTexts();
    void longMessage();
    void threadsDoNotMix();
};

void tst_Log::oneLineOneWrite()
{
    CapturedError error;
    log::line(2, "picture_stand/src/datastorage", 17, "bool open()", "cannot open");
    log::line(-1, "a", 0, "b", "");
    QCOMPARE(
        error.finish(),
        QByteArrayList({"2 picture_stand/src/datastorage:17 bool open(): cannot open\n", "-1 a:0 b: \n"}));
}

void tst_Log::visible_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("shown");

    QTest::newRow("line feed") << QByteArray("a\nb") << QByteArray("a\\nb");
    QTest::newRow("line feed at the end") << QByteArray("a\n") << QByteArray("a\\n");
    QTest::newRow("carriage return") << QByteArray("a\rb") << QByteArray("a\\rb");
    QTest::newRow("tabulator") << QByteArray("a\tb") << QByteArray("a\\tb");
    QTest::newRow("escape") << QByteArray("\x1b[2J") << QByteArray("\\x1b[2J");
    QTest::newRow("first control character") << QByteArray("\x01") << QByteArray("\\x01");
    QTest::newRow("NUL inside") << QByteArray("a\0b", 3) << QByteArray("a\\x00b");
    QTest::newRow("last control character") << QByteArray("\x1f") << QByteArray("\\x1f");
    QTest::newRow("delete") << QByteArray("\x7f") << QByteArray("\\x7f");
    QTest::newRow("eight-bit control character") << QByteArray("\xc2\x9b"
                                                               "2J")
                                                 << QByteArray("\\x9b2J");
    QTest::newRow("no-break space is none") << QByteArray("5\xc2\xa0GB") << QByteArray("5\xc2\xa0GB");
    QTest::newRow("letters beyond ASCII") << QByteArray("Frühstück 図") << QByteArray("Frühstück 図");
    QTest::newRow("half a letter at the end") << QByteArray("a\xc2") << QByteArray("a\xc2");
    QTest::newRow("percent signs are no format") << QByteArray("%s%n 50%") << QByteArray("%s%n 50%");
}

void tst_Log::visible()
{
    QFETCH(QByteArray, message);
    QFETCH(QByteArray, shown);

    CapturedError error;
    log::line(4, "f", 1, "g", message.toStdString());
    QCOMPARE(error.finish(), QByteArrayList({"4 f:1 g: " + shown + "\n"}));
}

void tst_Log::controlCharactersElsewhere()
{
    CapturedError error;
    log::line(4, "f\n", 1, "g\x1b", "m");
    QCOMPARE(error.finish(), QByteArrayList({"4 f\\n:1 g\\x1b: m\n"}));
}

void tst_Log::nullTexts()
{
    CapturedError error;
    log::line(4, nullptr, 1, nullptr, "m");
    QCOMPARE(error.finish(), QByteArrayList({"4 :1 : m\n"}));
}

void tst_Log::longMessage()
{
    CapturedError error;
    log::line(4, "f", 1, "g", std::string(50'000, 'x'));
    const QByteArrayList writes = error.finish();
    QCOMPARE(writes.size(), 1);
    QCOMPARE(writes.constFirst(), "4 f:1 g: " + QByteArray(50'000, 'x') + "\n");
}

void tst_Log::threadsDoNotMix()
{
    CapturedError error;
    std::vector<std::thread> workers;
    for (int worker = 0; worker < 4; ++worker) {
        workers.emplace_back([worker] {
            for (int i = 0; i < 10; ++i)
                log::line(4, "f", worker, "g", std::string(100, char('a' + worker)));
        });
    }
    for (std::thread &worker : workers)
        worker.join();
    const QByteArrayList writes = error.finish();
    QCOMPARE(writes.size(), 40);
    for (const QByteArray &line : writes) {
        const int worker = line.at(4) - '0';
        QCOMPARE(line,
                 "4 f:" + QByteArray::number(worker) + " g: " + QByteArray(100, char('a' + worker)) + "\n");
    }
}

QTEST_APPLESS_MAIN(tst_Log)
#include "tst_log.moc"
