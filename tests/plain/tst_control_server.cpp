#include "control_connection.h"
#include "control_server.h"
#include "raw_client.h"

#include <QRect>
#include <QTemporaryDir>
#include <QTest>

#include <list>

#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>

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

QJsonObject refresh(int number, QRect rectangle, const QString &mode)
{
    return {{u"event"_s, u"refresh"_s}, {u"number"_s, number},           {u"x"_s, rectangle.x()},
            {u"y"_s, rectangle.y()},    {u"width"_s, rectangle.width()}, {u"height"_s, rectangle.height()},
            {u"mode"_s, mode}};
}

} // namespace

class tst_ControlServer : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

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
    void pipelinedRequestsAreAnsweredInOrder();
    void nextRequestWaitsForTheAnswer();
    void nextRequestWaitsUntilTheAnswerIsTaken();
    void connectionsRunSideBySide();
    void halfARequestIsDropped();
    void aRequestThatIsCompleteIsDone();
    void requestsBehindAGoneClientAreDropped();
    void mostConnections();
    void replyAfterTheClientLeft();
    void secondReplyIsPassedOver();
    void serverGoesWithPendingReplies();
    void otherUserIsRefused();
    void followersHear();
    void followTakesNoMembers();
    void followersMayAsk();
    void slowReader();
    void slowReaderKeepsOpenEvents();
    void unitedModes_data();
    void unitedModes();
    void unitedRectangleAndMissed();
    void unitedWithAnEmptyRectangle();
    void staleSocketIsReplaced();
    void usedSocketIsKept();
    void fileInTheWayIsKept();
    void pathThatIsTooLong();

private:
    QString path() const { return m_folder->filePath(u"control"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ControlServer> m_server;
    QList<Reply> m_pending; ///< of the command "wait"
    int m_waits = 0; ///< how often "wait" began
    int m_echoes = 0;
};

void tst_ControlServer::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<ControlServer>();
    m_pending.clear();
    m_waits = 0;
    m_echoes = 0;
    m_server->add(u"echo"_s, {u"text"_s}, [this](const QJsonObject &request, const Reply &reply) {
        ++m_echoes;
        reply({{u"text"_s, request.value("text"_L1)}});
    });
    m_server->add(u"wait"_s, {}, [this](const QJsonObject &, const Reply &reply) {
        ++m_waits;
        m_pending.append(reply);
    });
    m_server->add(u"refuse"_s, {}, [](const QJsonObject &, const Reply &reply) {
        reply.fail(u"not-possible"_s, u"The item is covered."_s);
    });
    QString error;
    QVERIFY2(m_server->listen(path(), &error), qPrintable(error));
}

void tst_ControlServer::cleanup()
{
    m_server.reset();
    m_pending.clear();
    m_folder.reset();
}

void tst_ControlServer::answers()
{
    RawClient client(path());
    const QJsonObject answer = client.ask(R"({"id":-3,"do":"echo","text":"Grüße"})");
    QCOMPARE(answer, (QJsonObject{{u"id"_s, -3}, {u"ok"_s, true}, {u"text"_s, u"Grüße"_s}}));
    QCOMPARE(m_server->clients(), 1);
}

void tst_ControlServer::answersLater()
{
    RawClient client(path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_pending.size(), 1);
    QVERIFY(!m_pending.constFirst().clientGone());
    m_pending.constFirst()();
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

    RawClient client(path());
    const QJsonObject answer = client.ask(line);
    QCOMPARE(answer.value("error"_L1), u"bad-request"_s);
    QVERIFY(answer.value("id"_L1).isNull());
    QCOMPARE(answer.value("ok"_L1), false);
    QVERIFY(!answer.value("message"_L1).toString().isEmpty());
    QCOMPARE(m_echoes, 0);
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

    RawClient client(path());
    const QJsonObject answer = client.ask(line);
    QCOMPARE(answer.value("error"_L1), u"bad-request"_s);
    QCOMPARE(answer.value("id"_L1), 12);
}

void tst_ControlServer::unknownCommand()
{
    RawClient client(path());
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

    RawClient client(path());
    const QJsonObject answer = client.ask(line);
    QCOMPARE(answer.value("error"_L1), u"bad-argument"_s);
    QCOMPARE(answer.value("id"_L1), 1);
    QCOMPARE(m_echoes, 0);
    QCOMPARE(m_waits, 0);
}

void tst_ControlServer::failure()
{
    RawClient client(path());
    QCOMPARE(client.ask(R"({"id":4,"do":"refuse"})"),
             (QJsonObject{{u"id"_s, 4},
                          {u"ok"_s, false},
                          {u"error"_s, u"not-possible"_s},
                          {u"message"_s, u"The item is covered."_s}}));
}

void tst_ControlServer::resultsCannotReplaceIdAndOk()
{
    m_server->add(u"odd"_s, {}, [](const QJsonObject &, const Reply &reply) {
        reply({{u"id"_s, 99}, {u"ok"_s, false}});
    });
    RawClient client(path());
    QCOMPARE(client.ask(R"({"id":4,"do":"odd"})"), (QJsonObject{{u"id"_s, 4}, {u"ok"_s, true}}));
}

void tst_ControlServer::longestLine()
{
    RawClient client(path());
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

    RawClient client(path());
    QVERIFY(client.send(requestOfLength(length) + "\n{\"id\":2,\"do\":\"echo\"}\n"));
    const QJsonObject answer = client.next();
    QCOMPARE(answer.value("error"_L1), u"too-long"_s);
    QVERIFY(answer.value("id"_L1).isNull());
    QCOMPARE(answer.value("ok"_L1), false);
    // Answered once: what comes next is the answer to the next line.
    QCOMPARE(client.next().value("id"_L1), 2);
    QCOMPARE(m_echoes, 1);
}

void tst_ControlServer::tooLongLineWithoutEnd()
{
    RawClient client(path());
    RawClient witness(path());
    QVERIFY(client.send(QByteArray(3 * limit, 'a')));
    QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QVERIFY(client.receive().isEmpty()); // not before its end
    QVERIFY(client.send(QByteArray("\n")));
    QCOMPARE(client.next().value("error"_L1), u"too-long"_s);
}

void tst_ControlServer::lineInPieces()
{
    RawClient client(path());
    RawClient witness(path());
    const QByteArray line = "{\"id\":1,\"do\":\"echo\",\"text\":\"\xc3\xa4\"}\r\n";
    for (qsizetype i = 0; i < line.size(); ++i) {
        QCOMPARE(m_echoes, int(i)); // the witness's
        QVERIFY(client.send(line.sliced(i, 1)));
        QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    }
    QCOMPARE(client.next().value("text"_L1), u"ä"_s);
}

void tst_ControlServer::pipelinedRequestsAreAnsweredInOrder()
{
    RawClient client(path());
    QByteArray lines;
    constexpr int count = 5000; // more than fits into the buffers between
    for (int i = 0; i < count; ++i)
        lines += "{\"id\":" + QByteArray::number(i) + ",\"do\":\"echo\"}\n";
    QVERIFY(client.send(lines));
    for (int i = 0; i < count; ++i)
        QCOMPARE(client.next().value("id"_L1).toInt(-1), i);
    QCOMPARE(m_echoes, count);
}

void tst_ControlServer::nextRequestWaitsForTheAnswer()
{
    RawClient client(path());
    RawClient witness(path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n{\"id\":2,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_waits, 1);
    QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QCOMPARE(m_waits, 1);
    m_pending.takeFirst()();
    QTRY_COMPARE(m_waits, 2);
    QCOMPARE(client.next().value("id"_L1), 1);
    m_pending.takeFirst()();
    QCOMPARE(client.next().value("id"_L1), 2);
}

void tst_ControlServer::nextRequestWaitsUntilTheAnswerIsTaken()
{
    const QString large(4'000'000, u'x');
    m_server->add(u"large"_s, {}, [&large](const QJsonObject &, const Reply &reply) {
        reply({{u"text"_s, large}});
    });
    RawClient client(path());
    RawClient witness(path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"large\"}\n{\"id\":2,\"do\":\"wait\"}\n")));
    for (int i = 0; i < 20; ++i)
        QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QCOMPARE(m_waits, 0); // and the device has not waited for this reader
    QCOMPARE(client.next().value("text"_L1).toString().size(), large.size());
    QTRY_COMPARE(m_waits, 1);
}

void tst_ControlServer::connectionsRunSideBySide()
{
    RawClient first(path());
    RawClient second(path());
    QVERIFY(first.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QVERIFY(second.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_waits, 2);
    m_pending.at(1)({{u"name"_s, u"second"_s}});
    QCOMPARE(second.next().value("name"_L1), u"second"_s);
    m_pending.at(0)({{u"name"_s, u"first"_s}});
    QCOMPARE(first.next().value("name"_L1), u"first"_s);
}

void tst_ControlServer::halfARequestIsDropped()
{
    {
        RawClient client(path());
        QVERIFY(client.send(QByteArray(R"({"id":1,"do":"echo"})"))); // no newline
        QTRY_COMPARE(m_server->clients(), 1);
    }
    QTRY_COMPARE(m_server->clients(), 0);
    QCOMPARE(m_echoes, 0);
}

void tst_ControlServer::aRequestThatIsCompleteIsDone()
{
    {
        RawClient client(path());
        QVERIFY(client.isConnected());
        QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"echo\"}\n")));
    }
    QTRY_COMPARE(m_echoes, 1);
    QTRY_COMPARE(m_server->clients(), 0);
}

void tst_ControlServer::requestsBehindAGoneClientAreDropped()
{
    {
        RawClient client(path());
        QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n{\"id\":2,\"do\":\"echo\"}\n")));
        QTRY_COMPARE(m_waits, 1);
    }
    QTRY_COMPARE(m_server->clients(), 0);
    QVERIFY(m_pending.constFirst().clientGone());
    m_pending.constFirst()();
    RawClient witness(path());
    QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QCOMPARE(m_echoes, 1);
}

void tst_ControlServer::mostConnections()
{
    std::list<RawClient> clients;
    for (int i = 1; i <= 64; ++i) {
        clients.emplace_back(path());
        QTRY_COMPARE(m_server->clients(), i);
    }

    RawClient oneMore(path());
    const QJsonObject answer = oneMore.next();
    QCOMPARE(answer.value("error"_L1), u"busy"_s);
    QVERIFY(answer.value("id"_L1).isNull());
    QCOMPARE(answer.value("ok"_L1), false);
    QVERIFY(oneMore.isClosedByServer());
    QCOMPARE(m_server->clients(), 64);
    for (RawClient &client : clients)
        QCOMPARE(client.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);

    clients.pop_front();
    QTRY_COMPARE(m_server->clients(), 63);
    RawClient another(path());
    QCOMPARE(another.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
}

void tst_ControlServer::replyAfterTheClientLeft()
{
    RawClient client(path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_waits, 1);
    client.leave();
    QTRY_COMPARE(m_server->clients(), 0);
    QVERIFY(m_pending.constFirst().clientGone());
    m_pending.constFirst()();
    m_pending.constFirst().fail(u"failed"_s, u"Nobody reads this."_s);
}

void tst_ControlServer::secondReplyIsPassedOver()
{
    RawClient client(path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_waits, 1);
    m_pending.constFirst()({{u"turn"_s, 1}});
    m_pending.constFirst()({{u"turn"_s, 2}});
    m_pending.constFirst().fail(u"failed"_s, {});
    QCOMPARE(client.next().value("turn"_L1), 1);
    QCOMPARE(client.ask(R"({"id":2,"do":"echo"})").value("id"_L1), 2);
}

void tst_ControlServer::serverGoesWithPendingReplies()
{
    RawClient client(path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_waits, 1);
    m_server.reset();
    QVERIFY(m_pending.constFirst().clientGone());
    m_pending.constFirst()();
    m_pending.constFirst().fail(u"failed"_s, u"Nobody reads this."_s);
    QVERIFY(client.isClosedByServer());
    QVERIFY(client.receive().isEmpty());
    QVERIFY(!QFile::exists(path()));
}

void tst_ControlServer::otherUserIsRefused()
{
    if (::geteuid() != 0)
        QSKIP("only root can become another user");
    constexpr uid_t somebodyElse = 65534;
    QVERIFY(::chmod(QFile::encodeName(m_folder->path()).constData(), 0755) == 0);
    QVERIFY(::chmod(QFile::encodeName(path()).constData(), 0666) == 0);

    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, QFile::encodeName(path()).constData(), sizeof(address.sun_path) - 1);
    const pid_t child = ::fork();
    if (child == 0) {
        // 1: could not try, 2: was answered, 0: the door was closed without a word
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        if (::setuid(somebodyElse) != 0
            || ::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0)
            ::_exit(1);
        constexpr char line[] = "{\"id\":1,\"do\":\"echo\"}\n";
        [[maybe_unused]] const ssize_t sent = ::send(socket, line, sizeof(line) - 1, MSG_NOSIGNAL);
        pollfd waiting = {socket, POLLIN, 0};
        ::poll(&waiting, 1, 5000);
        char byte = 0;
        ::_exit(::recv(socket, &byte, 1, MSG_DONTWAIT) > 0 ? 2 : 0);
    }
    int status = -1;
    QVERIFY(QTest::qWaitFor([&] { return ::waitpid(child, &status, WNOHANG) == child; }, 10'000));
    QVERIFY(WIFEXITED(status));
    QCOMPARE(WEXITSTATUS(status), 0);
    QCOMPARE(m_echoes, 0);
    QCOMPARE(m_server->clients(), 0);
}

void tst_ControlServer::followersHear()
{
    RawClient follower(path());
    RawClient other(path());
    QCOMPARE(other.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QCOMPARE(follower.ask(R"({"id":1,"do":"follow"})"), (QJsonObject{{u"id"_s, 1}, {u"ok"_s, true}}));
    m_server->announce(refresh(42, {0, 10, 758, 20}, u"partial"_s));
    m_server->announce({{u"event"_s, u"changed"_s}});
    m_server->announce({{u"event"_s, u"open"_s}, {u"path"_s, u"/mnt/ext1/a.jpg"_s}});
    QJsonObject expected = refresh(42, {0, 10, 758, 20}, u"partial"_s);
    expected.insert(u"missed"_s, 0);
    QCOMPARE(follower.next(), expected);
    QCOMPARE(follower.next().value("event"_L1), u"changed"_s);
    QCOMPARE(follower.next().value("path"_L1), u"/mnt/ext1/a.jpg"_s);
    QCOMPARE(other.ask(R"({"id":2,"do":"echo"})").value("id"_L1), 2);
    QVERIFY(other.receive().isEmpty());

    follower.leave();
    QTRY_COMPARE(m_server->clients(), 1);
    m_server->announce({{u"event"_s, u"changed"_s}});
}

void tst_ControlServer::followTakesNoMembers()
{
    RawClient client(path());
    QCOMPARE(client.ask(R"({"id":1,"do":"follow","all":true})").value("error"_L1), u"bad-argument"_s);
    m_server->announce({{u"event"_s, u"changed"_s}});
    QCOMPARE(client.ask(R"({"id":2,"do":"echo"})").value("id"_L1), 2);
}

void tst_ControlServer::followersMayAsk()
{
    RawClient client(path());
    QCOMPARE(client.ask(R"({"id":1,"do":"follow"})").value("ok"_L1), true);
    QVERIFY(client.send(QByteArray("{\"id\":2,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_waits, 1);
    m_server->announce({{u"event"_s, u"changed"_s}});
    QCOMPARE(client.next().value("event"_L1), u"changed"_s); // events do not wait for answers
    m_pending.constFirst()();
    QCOMPARE(client.next().value("id"_L1), 2);
}

void tst_ControlServer::slowReader()
{
    RawClient slow(path());
    RawClient quick(path());
    QCOMPARE(slow.ask(R"({"id":1,"do":"follow"})").value("ok"_L1), true);
    QCOMPARE(quick.ask(R"({"id":1,"do":"follow"})").value("ok"_L1), true);

    constexpr int count = 3000;
    for (int number = 1; number <= count; ++number) {
        // The one full refresh and the one that reaches far are both among those that the slow reader misses.
        const QRect rectangle = number == 2000 ? QRect(700, 1000, 50, 20) : QRect(number % 100, 5, 10, 10);
        m_server->announce(refresh(number, rectangle, number == 1500 ? u"full"_s : u"fast"_s));
        m_server->announce({{u"event"_s, u"changed"_s}});
        const QJsonObject first = quick.next();
        QCOMPARE(first.value("number"_L1), number);
        QCOMPARE(first.value("missed"_L1), 0);
        QCOMPARE(quick.next().value("event"_L1), u"changed"_s);
    }

    qint64 told = 0;
    int lines = 0;
    QRect reached;
    bool full = false;
    QJsonObject last;
    while (last.value("number"_L1).toInt() < count) {
        const QJsonObject event = slow.next();
        QVERIFY(!event.isEmpty());
        ++lines;
        if (event.value("event"_L1) != "refresh"_L1)
            continue;
        last = event;
        told += last.value("missed"_L1).toInteger() + 1;
        reached |= QRect(last.value("x"_L1).toInt(), last.value("y"_L1).toInt(),
                         last.value("width"_L1).toInt(), last.value("height"_L1).toInt());
        full |= last.value("mode"_L1) == "full"_L1;
    }
    QCOMPARE(told, count);
    QVERIFY(full);
    QCOMPARE(reached, QRect(0, 5, 750, 1015));
    QVERIFY2(last.value("missed"_L1).toInteger() > count / 2,
             "the reader was given the past, not the present");
    QVERIFY2(lines < 500, qPrintable(QString::number(lines)));
}

void tst_ControlServer::slowReaderKeepsOpenEvents()
{
    RawClient slow(path());
    QCOMPARE(slow.ask(R"({"id":1,"do":"follow"})").value("ok"_L1), true);
    for (int number = 1; number <= 1000; ++number)
        m_server->announce(refresh(number, {0, 0, 1, 1}, u"partial"_s));
    for (int i = 0; i < 50; ++i)
        m_server->announce({{u"event"_s, u"open"_s}, {u"path"_s, QString::number(i % 25)}});
    int expected = 0;
    while (expected < 50) {
        const QJsonObject event = slow.next();
        QVERIFY(!event.isEmpty());
        if (event.value("event"_L1) == "open"_L1)
            QCOMPARE(event.value("path"_L1), QString::number(expected++ % 25));
    }
}

void tst_ControlServer::unitedModes_data()
{
    QTest::addColumn<QString>("earlier");
    QTest::addColumn<QString>("later");
    QTest::addColumn<QString>("united");

    QTest::newRow("full, then partial") << u"full"_s << u"partial"_s << u"full"_s;
    QTest::newRow("partial, then full") << u"partial"_s << u"full"_s << u"full"_s;
    QTest::newRow("full, then fast") << u"full"_s << u"fast"_s << u"full"_s;
    QTest::newRow("partial, then fast") << u"partial"_s << u"fast"_s << u"partial"_s;
    QTest::newRow("fast, then partial") << u"fast"_s << u"partial"_s << u"partial"_s;
    QTest::newRow("fast, then fast") << u"fast"_s << u"fast"_s << u"fast"_s;
}

void tst_ControlServer::unitedModes()
{
    QFETCH(QString, earlier);
    QFETCH(QString, later);
    QFETCH(QString, united);

    const QJsonObject both
        = unitedRefresh(refresh(1, {0, 0, 1, 1}, earlier), refresh(2, {0, 0, 1, 1}, later));
    QCOMPARE(both.value("mode"_L1), united);
    QCOMPARE(both.value("number"_L1), 2);
}

void tst_ControlServer::unitedRectangleAndMissed()
{
    QJsonObject earlier = refresh(5, {10, 20, 30, 40}, u"partial"_s);
    earlier.insert(u"missed"_s, 3);
    QJsonObject expected = refresh(6, {5, 20, 35, 100}, u"partial"_s);
    expected.insert(u"missed"_s, 4);
    QCOMPARE(unitedRefresh(earlier, refresh(6, {5, 100, 2, 20}, u"partial"_s)), expected);
}

void tst_ControlServer::unitedWithAnEmptyRectangle()
{
    QJsonObject expected = refresh(6, {50, 60, 2, 20}, u"partial"_s);
    expected.insert(u"missed"_s, 1);
    QCOMPARE(unitedRefresh(refresh(5, {0, 0, 0, 0}, u"fast"_s), refresh(6, {50, 60, 2, 20}, u"partial"_s)),
             expected);
}

void tst_ControlServer::staleSocketIsReplaced()
{
    const QString stale = m_folder->filePath(u"stale"_s);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, QFile::encodeName(stale).constData(), sizeof(address.sun_path) - 1);
    const int dead = ::socket(AF_UNIX, SOCK_STREAM, 0);
    QVERIFY(::bind(dead, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0);
    ::close(dead);
    QVERIFY(QFile::exists(stale));

    ControlServer second;
    QString error;
    QVERIFY2(second.listen(stale, &error), qPrintable(error));
    RawClient client(stale);
    QCOMPARE(client.ask(R"({"id":1,"do":"echo"})").value("error"_L1), u"unknown-command"_s);

    struct stat status = {};
    QVERIFY(::stat(QFile::encodeName(stale).constData(), &status) == 0);
    QCOMPARE(status.st_mode & 0077, 0u);
}

void tst_ControlServer::usedSocketIsKept()
{
    ControlServer second;
    QString error;
    QVERIFY(!second.listen(path(), &error));
    QVERIFY(error.contains(path()));
    RawClient client(path());
    QCOMPARE(client.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
}

void tst_ControlServer::fileInTheWayIsKept()
{
    QFile file(m_folder->filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("mine"), 4);
    file.close();

    ControlServer second;
    QString error;
    QVERIFY(!second.listen(file.fileName(), &error));
    QVERIFY(error.contains(file.fileName()));
    QCOMPARE(file.size(), 4);
}

void tst_ControlServer::pathThatIsTooLong()
{
    ControlServer second;
    QString error;
    QVERIFY(!second.listen(m_folder->filePath(QString(200, u'a')), &error));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(tst_ControlServer)
#include "tst_control_server.moc"
