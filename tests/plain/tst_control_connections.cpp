// Clients side by side, clients that leave, and the socket itself.

#include "control_connection.h"
#include "echo_server.h"
#include "file_calls.h"
#include "raw_client.h"

#include <list>

#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

class tst_ControlConnections : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_echo = std::make_unique<EchoServer>(); }
    void cleanup() { m_echo.reset(); }

    void pipelinedRequestsAreAnsweredInOrder();
    void nextRequestWaitsForTheAnswer();
    void nextRequestWaitsUntilTheAnswerIsTaken();
    void connectionsRunSideBySide();
    void halfARequestIsDropped();
    void aRequestThatIsCompleteIsDone();
    void requestsBehindAGoneClientAreDropped();
    void mostConnections();
    void clientsWaitForHandles();
    void replyAfterTheClientLeft();
    void secondReplyIsPassedOver();
    void serverGoesWithPendingReplies();
    void otherUserIsRefused();
    void staleSocketIsReplaced();
    void usedSocketIsKept();
    void fileInTheWayIsKept();
    void folderThatGetsInTheWay();
    void pathThatIsTooLong();

private:
    std::unique_ptr<EchoServer> m_echo;
};

void tst_ControlConnections::pipelinedRequestsAreAnsweredInOrder()
{
    RawClient client(m_echo->path());
    QByteArray lines;
    constexpr int count = 5000; // more than fits into the buffers between
    for (int i = 0; i < count; ++i)
        lines += "{\"id\":" + QByteArray::number(i) + ",\"do\":\"echo\"}\n";
    QVERIFY(client.send(lines));
    for (int i = 0; i < count; ++i)
        QCOMPARE(client.next().value("id"_L1).toInt(-1), i);
    QCOMPARE(m_echo->echoes, count);
}

void tst_ControlConnections::nextRequestWaitsForTheAnswer()
{
    RawClient client(m_echo->path());
    RawClient witness(m_echo->path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n{\"id\":2,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_echo->waits, 1);
    QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QCOMPARE(m_echo->waits, 1);
    m_echo->pending.takeFirst()();
    QTRY_COMPARE(m_echo->waits, 2);
    QCOMPARE(client.next().value("id"_L1), 1);
    m_echo->pending.takeFirst()();
    QCOMPARE(client.next().value("id"_L1), 2);
}

void tst_ControlConnections::nextRequestWaitsUntilTheAnswerIsTaken()
{
    const QString large(4'000'000, u'x');
    m_echo->server->add(u"large"_s, {}, [&large](const QJsonObject &, const Reply &reply) {
        reply({{u"text"_s, large}});
    });
    RawClient client(m_echo->path());
    RawClient witness(m_echo->path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"large\"}\n{\"id\":2,\"do\":\"wait\"}\n")));
    for (int i = 0; i < 20; ++i)
        QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QCOMPARE(m_echo->waits, 0); // and the device has not waited for this reader
    QCOMPARE(client.next().value("text"_L1).toString().size(), large.size());
    QTRY_COMPARE(m_echo->waits, 1);
}

void tst_ControlConnections::connectionsRunSideBySide()
{
    RawClient first(m_echo->path());
    RawClient second(m_echo->path());
    QVERIFY(first.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QVERIFY(second.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_echo->waits, 2);
    m_echo->pending.at(1)({{u"name"_s, u"second"_s}});
    QCOMPARE(second.next().value("name"_L1), u"second"_s);
    m_echo->pending.at(0)({{u"name"_s, u"first"_s}});
    QCOMPARE(first.next().value("name"_L1), u"first"_s);
}

void tst_ControlConnections::halfARequestIsDropped()
{
    {
        RawClient client(m_echo->path());
        QVERIFY(client.send(QByteArray(R"({"id":1,"do":"echo"})"))); // no newline
        QTRY_COMPARE(m_echo->server->clients(), 1);
    }
    QTRY_COMPARE(m_echo->server->clients(), 0);
    QCOMPARE(m_echo->echoes, 0);
}

void tst_ControlConnections::aRequestThatIsCompleteIsDone()
{
    {
        RawClient client(m_echo->path());
        QVERIFY(client.isConnected());
        QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"echo\"}\n")));
    }
    QTRY_COMPARE(m_echo->echoes, 1);
    QTRY_COMPARE(m_echo->server->clients(), 0);
}

void tst_ControlConnections::requestsBehindAGoneClientAreDropped()
{
    {
        RawClient client(m_echo->path());
        QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n{\"id\":2,\"do\":\"echo\"}\n")));
        QTRY_COMPARE(m_echo->waits, 1);
    }
    QTRY_COMPARE(m_echo->server->clients(), 0);
    QVERIFY(m_echo->pending.constFirst().clientGone());
    m_echo->pending.constFirst()();
    RawClient witness(m_echo->path());
    QCOMPARE(witness.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QCOMPARE(m_echo->echoes, 1);
}

void tst_ControlConnections::mostConnections()
{
    std::list<RawClient> clients;
    for (int i = 1; i <= 64; ++i) {
        clients.emplace_back(m_echo->path());
        QTRY_COMPARE(m_echo->server->clients(), i);
    }

    RawClient oneMore(m_echo->path());
    const QJsonObject answer = oneMore.next();
    QCOMPARE(answer.value("error"_L1), u"busy"_s);
    QVERIFY(answer.value("id"_L1).isNull());
    QCOMPARE(answer.value("ok"_L1), false);
    QVERIFY(oneMore.isClosedByServer());
    QCOMPARE(m_echo->server->clients(), 64);
    for (RawClient &client : clients)
        QCOMPARE(client.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);

    clients.pop_front();
    QTRY_COMPARE(m_echo->server->clients(), 63);
    RawClient another(m_echo->path());
    QCOMPARE(another.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
}

void tst_ControlConnections::clientsWaitForHandles()
{
    RawClient known(m_echo->path());
    QCOMPARE(known.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    std::list<RawClient> early;
    for (int i = 0; i < 3; ++i)
        early.emplace_back(m_echo->path());

    rlimit usual = {};
    QVERIFY(::getrlimit(RLIMIT_NOFILE, &usual) == 0);
    const rlimit none{3, usual.rlim_max}; // what is open stays
    QVERIFY(::setrlimit(RLIMIT_NOFILE, &none) == 0);
    for (RawClient &client : early)
        QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"echo\"}\n")));
    for (int i = 0; i < 20; ++i)
        QCOMPARE(known.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    const qsizetype clients = m_echo->server->clients();
    QVERIFY(::setrlimit(RLIMIT_NOFILE, &usual) == 0);
    QCOMPARE(clients, 1);

    for (RawClient &client : early)
        QCOMPARE(client.next().value("ok"_L1), true);
    RawClient late(m_echo->path());
    QCOMPARE(late.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
}

void tst_ControlConnections::replyAfterTheClientLeft()
{
    RawClient client(m_echo->path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_echo->waits, 1);
    client.leave();
    QTRY_COMPARE(m_echo->server->clients(), 0);
    QVERIFY(m_echo->pending.constFirst().clientGone());
    m_echo->pending.constFirst()();
    m_echo->pending.constFirst().fail(u"failed"_s, u"Nobody reads this."_s);
}

void tst_ControlConnections::secondReplyIsPassedOver()
{
    RawClient client(m_echo->path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_echo->waits, 1);
    m_echo->pending.constFirst()({{u"turn"_s, 1}});
    m_echo->pending.constFirst()({{u"turn"_s, 2}});
    m_echo->pending.constFirst().fail(u"failed"_s, {});
    QCOMPARE(client.next().value("turn"_L1), 1);
    QCOMPARE(client.ask(R"({"id":2,"do":"echo"})").value("id"_L1), 2);
}

void tst_ControlConnections::serverGoesWithPendingReplies()
{
    RawClient client(m_echo->path());
    QVERIFY(client.send(QByteArray("{\"id\":1,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_echo->waits, 1);
    m_echo->server.reset();
    QVERIFY(m_echo->pending.constFirst().clientGone());
    m_echo->pending.constFirst()();
    m_echo->pending.constFirst().fail(u"failed"_s, u"Nobody reads this."_s);
    QVERIFY(client.isClosedByServer());
    QVERIFY(client.receive().isEmpty());
    QVERIFY(!QFile::exists(m_echo->path()));
}

void tst_ControlConnections::otherUserIsRefused()
{
    if (::geteuid() != 0)
        QSKIP("only root can become another user");
    constexpr uid_t somebodyElse = 65534;
    QVERIFY(::chmod(QFile::encodeName(m_echo->folder.path()).constData(), 0755) == 0);
    QVERIFY(::chmod(QFile::encodeName(m_echo->path()).constData(), 0666) == 0);

    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, QFile::encodeName(m_echo->path()).constData(),
                 sizeof(address.sun_path) - 1);
    const pid_t child = ::fork();
    if (child == 0) {
        // 1: could not try, 2: was answered, 3: nobody else is in this user namespace, 0: the door was closed
        // without a word
        const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
        if (::setuid(somebodyElse) != 0)
            ::_exit(3);
        if (::connect(socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0)
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
    if (WEXITSTATUS(status) == 3)
        QSKIP("there is no other user here");
    QCOMPARE(WEXITSTATUS(status), 0);
    QCOMPARE(m_echo->echoes, 0);
    QCOMPARE(m_echo->server->clients(), 0);
}

void tst_ControlConnections::staleSocketIsReplaced()
{
    const QString stale = m_echo->folder.filePath(u"stale"_s);
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

void tst_ControlConnections::usedSocketIsKept()
{
    ControlServer second;
    QString error;
    QVERIFY(!second.listen(m_echo->path(), &error));
    QVERIFY(error.contains(m_echo->path()));
    RawClient client(m_echo->path());
    QCOMPARE(client.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
}

void tst_ControlConnections::fileInTheWayIsKept()
{
    QFile file(m_echo->folder.filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("mine"), 4);
    file.close();

    ControlServer second;
    QString error;
    QVERIFY(!second.listen(file.fileName(), &error));
    QVERIFY(error.contains(file.fileName()));
    QCOMPARE(file.size(), 4);
}

void tst_ControlConnections::folderThatGetsInTheWay()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"control"_s);
    {
        // After the look at what stands there, and before the socket.
        const FileCalls calls(QFile::encodeName(path), [&path](FileCall &) { QDir().mkpath(path); });
        ControlServer second;
        QString error;
        QVERIFY(!second.listen(path, &error));
        QVERIFY2(error.contains(path), qPrintable(error));
        QVERIFY(QFileInfo(path).isDir());
    }
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             QStringList{u"control"_s});
}

void tst_ControlConnections::pathThatIsTooLong()
{
    ControlServer second;
    QString error;
    QVERIFY(!second.listen(m_echo->folder.filePath(QString(200, u'a')), &error));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(tst_ControlConnections)
#include "tst_control_connections.moc"
