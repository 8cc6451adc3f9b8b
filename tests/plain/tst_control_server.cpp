// Requests and answers: what is accepted, what is refused and how.

#include "echo_server.h"
#include "raw_client.h"

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

constexpr qsizetype limit = 64 * 1024;

/// A request of exactly this many bytes, without its newline.
QByteArray requestOfLength(qsizetype length)
{
    QByteArray line = R"({"id":7,"do":"echo","text":""})";
    line.insert(line.size() - 2, QByteArray(length - line.size(), 'a'));
    return line;
}

} // namespace

class tst_ControlServer : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_echo = std::make_unique<EchoServer>(); }
    void cleanup() { m_echo.reset(); }

    void answers();
    void answersLater();
    void badRequest_data();
    void badRequest();
    void missingCommandKeepsTheId_data();
    void missingCommandKeepsTheId();
    void unknownCommand();
    void unknownMember_data();
    void unknownMember();
    void failure();
    void resultsCannotReplaceIdAndOk();
    void longestLine();
    void tooLongLine_data();
    void tooLongLine();
    void tooLongLineWithoutEnd();
    void lineInPieces();

private:
    std::unique_ptr<EchoServer> m_echo;
};

void tst_ControlServer::answers()
{
    RawClient client(m_echo->path());
    const QJsonObject answer = client.ask(R"({"id":-3,"do":"echo","text":"Grüße"})");
    QCOMPARE(answer, (QJsonObject{{u"id"_s, -3}, {u"ok"_s, true}, {u"text"_s, u"Grüße"_s}}));
    QCOMPARE(m_echo->server->clients(), 1);
}

void tst_ControlServer::answersLater()
{
    RawClient client(m_echo->path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_echo->pending.size(), 1);
    QVERIFY(!m_echo->pending.constFirst().clientGone());
    m_echo->pending.constFirst()();
    QCOMPARE(client.next(), (QJsonObject{{u"id"_s, 1}, {u"ok"_s, true}}));
}

void tst_ControlServer::badRequest_data()
{
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("blanks") << QByteArray("   ");
    QTest::newRow("no JSON") << QByteArray("state");
    QTest::newRow("half an object") << QByteArray(R"({"id":1,"do":"echo")");
    QTest::newRow("two objects") << QByteArray(R"({"id":1,"do":"echo"}{"id":2,"do":"echo"})");
    QTest::newRow("array") << QByteArray(R"([1,"echo"])");
    QTest::newRow("number") << QByteArray("1");
    QTest::newRow("text") << QByteArray(R"("echo")");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("no id") << QByteArray(R"({"do":"echo"})");
    QTest::newRow("id is a text") << QByteArray(R"({"id":"1","do":"echo"})");
    QTest::newRow("id is null") << QByteArray(R"({"id":null,"do":"echo"})");
    QTest::newRow("id is a fraction") << QByteArray(R"({"id":1.5,"do":"echo"})");
    QTest::newRow("id is true") << QByteArray(R"({"id":true,"do":"echo"})");
    QTest::newRow("id above 64 bits") << QByteArray(R"({"id":18446744073709551616,"do":"echo"})");
    QTest::newRow("id beyond every number") << QByteArray(R"({"id":1e999,"do":"echo"})");
    QTest::newRow("Latin-1 in a text") << QByteArray("{\"id\":1,\"do\":\"echo\",\"text\":\"Gr\xfc\xdf"
                                                     "e\"}");
    QTest::newRow("half a UTF-8 character") << QByteArray("{\"id\":1,\"do\":\"echo\",\"text\":\"\xc3\"}");
    QTest::newRow("overlong UTF-8") << QByteArray("{\"id\":1,\"do\":\"echo\",\"text\":\"\xc0\xaf\"}");
    QTest::newRow("surrogate in UTF-8") << QByteArray("{\"id\":1,\"do\":\"echo\",\"text\":\"\xed\xa0\x80\"}");
    QTest::newRow("invalid UTF-8 in a name") << QByteArray("{\"id\":1,\"do\":\"echo\",\"\xff\":1}");
    QTest::newRow("zero byte") << QByteArray("{\"id\":1,\0\"do\":\"echo\"}", 21);
    QTest::newRow("deep arrays") << QByteArray(60'000, '[');
    QTest::newRow("deep objects") << QByteArray("{\"a\":").repeated(13'000);
    QTest::newRow("deep and complete")
        << "{\"id\":1,\"do\":\"echo\",\"text\":" + QByteArray(30'000, '[') + QByteArray(30'000, ']') + '}';
}

void tst_ControlServer::badRequest()
{
    QFETCH(QByteArray, line);

    RawClient client(m_echo->path());
    const QJsonObject answer = client.ask(line);
    QCOMPARE(answer.value("error"_L1), u"bad-request"_s);
    QVERIFY(answer.value("id"_L1).isNull());
    QCOMPARE(answer.value("ok"_L1), false);
    QVERIFY(!answer.value("message"_L1).toString().isEmpty());
    QCOMPARE(m_echo->echoes, 0);
    QCOMPARE(client.ask(R"({"id":2,"do":"echo","text":"still here"})").value("text"_L1), u"still here"_s);
}

void tst_ControlServer::missingCommandKeepsTheId_data()
{
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("no do") << QByteArray(R"({"id":12})");
    QTest::newRow("do is a number") << QByteArray(R"({"id":12,"do":1})");
}

void tst_ControlServer::missingCommandKeepsTheId()
{
    QFETCH(QByteArray, line);

    RawClient client(m_echo->path());
    const QJsonObject answer = client.ask(line);
    QCOMPARE(answer.value("error"_L1), u"bad-request"_s);
    QCOMPARE(answer.value("id"_L1), 12);
}

void tst_ControlServer::unknownCommand()
{
    RawClient client(m_echo->path());
    const QJsonObject answer = client.ask(R"({"id":9007199254740993,"do":"Echo"})");
    QCOMPARE(answer.value("error"_L1), u"unknown-command"_s);
    QCOMPARE(answer.value("id"_L1).toInteger(), 9007199254740993); // more than a double can tell apart
    QCOMPARE(answer.value("ok"_L1), false);
    QVERIFY(answer.value("message"_L1).toString().contains(u"Echo"_s));
}

void tst_ControlServer::unknownMember_data()
{
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("beside a known one") << QByteArray(R"({"id":1,"do":"echo","text":"a","test":"b"})");
    QTest::newRow("other letter case") << QByteArray(R"({"id":1,"do":"echo","Text":"a"})");
    QTest::newRow("of a command without members") << QByteArray(R"({"id":1,"do":"wait","text":"a"})");
    QTest::newRow("empty name") << QByteArray(R"({"id":1,"do":"echo","":"a"})");
}

void tst_ControlServer::unknownMember()
{
    QFETCH(QByteArray, line);

    RawClient client(m_echo->path());
    const QJsonObject answer = client.ask(line);
    QCOMPARE(answer.value("error"_L1), u"bad-argument"_s);
    QCOMPARE(answer.value("id"_L1), 1);
    QCOMPARE(m_echo->echoes, 0);
    QCOMPARE(m_echo->waits, 0);
}

void tst_ControlServer::failure()
{
    RawClient client(m_echo->path());
    QCOMPARE(client.ask(R"({"id":4,"do":"refuse"})"),
             (QJsonObject{{u"id"_s, 4},
                          {u"ok"_s, false},
                          {u"error"_s, u"not-possible"_s},
                          {u"message"_s, u"The item is covered."_s}}));
}

void tst_ControlServer::resultsCannotReplaceIdAndOk()
{
    m_echo->server->add(u"odd"_s, {}, [](const QJsonObject &, const Reply &reply) {
        reply({{u"id"_s, 99}, {u"ok"_s, false}});
    });
    RawClient client(m_echo->path());
    QCOMPARE(client.ask(R"({"id":4,"do":"odd"})"), (QJsonObject{{u"id"_s, 4}, {u"ok"_s, true}}));
}

void tst_ControlServer::longestLine()
{
    RawClient client(m_echo->path());
    const QJsonObject answer = client.ask(requestOfLength(limit));
    QCOMPARE(answer.value("ok"_L1), true);
    QCOMPARE(answer.value("id"_L1), 7);
}

void tst_ControlServer::tooLongLine_data()
{
    QTest::addColumn<qsizetype>("length");

    QTest::newRow("one byte too long") << limit + 1;
    QTest::newRow("twice the limit") << 2 * limit;
    QTest::newRow("five megabytes") << qsizetype(5'000'000);
}

void tst_ControlServer::tooLongLine()
{
    QFETCH(qsizetype, length);

    RawClient client(m_echo->path());
    QVERIFY(client.send(requestOfLength(length) + "\n{\"id\":2,\"do\":\"echo\"}\n"));
    const QJsonObject answer = client.next();
    QCOMPARE(answer.value("error"_L1), u"too-long"_s);
    QVERIFY(answer.value("id"_L1).isNull());
    QCOMPARE(answer.value("ok"_L1), false);
    // Answered once: what comes next is the answer to the next line.
    QCOMPARE(client.next().value("id"_L1), 2);
    QCOMPARE(m_echo->echoes, 1);
}

void tst_ControlServer::tooLongLineWithoutEnd()
{
    RawClient client(m_echo->path());
    RawClient witness(m_echo->path());
    QVERIFY(client.send(QByteArray(3 * limit, 'a')));
    QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QVERIFY(client.receive().isEmpty()); // not before its end
    QVERIFY(client.send(QByteArray("\n")));
    QCOMPARE(client.next().value("error"_L1), u"too-long"_s);
}

void tst_ControlServer::lineInPieces()
{
    RawClient client(m_echo->path());
    RawClient witness(m_echo->path());
    const QByteArray line = "{\"id\":1,\"do\":\"echo\",\"text\":\"\xc3\xa4\"}\r\n";
    for (qsizetype i = 0; i < line.size(); ++i) {
        QCOMPARE(m_echo->echoes, int(i)); // the witness's
        QVERIFY(client.send(line.sliced(i, 1)));
        QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    }
    QCOMPARE(client.next().value("text"_L1), u"ä"_s);
}

QTEST_GUILESS_MAIN(tst_ControlServer)
#include "tst_control_server.moc"
