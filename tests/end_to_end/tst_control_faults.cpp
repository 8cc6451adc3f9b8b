// The real program and clients that do everything wrong.

#include "growth_limit.h"
#include "raw_client.h"
#include "show_device.h"

#include <QDir>

#include <algorithm>
#include <list>
#include <vector>

using namespace Qt::StringLiterals;

class tst_ControlFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void mostClients();
    void floodOfClients();
    void silentClients();
    void badRequests_data();
    void badRequests();
    void longestLine();
    void halfARequest_data();
    void halfARequest();
    void clientThatNeverReads();
    void listenersThatNeverRead();
    void clientThatLeavesInTheMiddle_data();
    void clientThatLeavesInTheMiddle();

private:
    static inline const QString socketPath = u"/devroot/run/control"_s;
    // 2,000 unread answers, or the refreshes that ten listeners have not read, would be far above.
    static constexpr qint64 mostGrowthKb = growthLimit(512);
    /// Sockets alone: files come and go while pictures are read ahead.
    qsizetype descriptors() const
    {
        const QDir folder(u"/proc/%1/fd"_s.arg(m_device->program().processId()));
        const QStringList names = folder.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        return std::ranges::count_if(names, [&folder](const QString &name) {
            return QFile::symLinkTarget(folder.filePath(name)).contains(u"socket:"_s);
        });
    }
    qint64 residentPages() const
    {
        QFile file(u"/proc/%1/statm"_s.arg(m_device->program().processId()));
        return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() : 0;
    }

    std::unique_ptr<ShowDevice> m_device;
    qsizetype m_descriptors = 0;
};

void tst_ControlFaults::initTestCase()
{
    m_device = std::make_unique<ShowDevice>();
    QVERIFY(m_device->start());
    QVERIFY(m_device->play());
    m_device->errors();
}

void tst_ControlFaults::init()
{
    m_descriptors = descriptors();
    QVERIFY(m_descriptors > 1); // the server's and this client's
}

void tst_ControlFaults::cleanup()
{
    // Whatever was done to it: the device lives, answers, and has forgotten the client.
    QVERIFY(m_device->state().value("ok"_L1).toBool());
    QTRY_COMPARE(descriptors(), m_descriptors);
    QVERIFY(m_device->does(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}));
    QVERIFY(m_device->idle());
}

void tst_ControlFaults::cleanupTestCase()
{
    QVERIFY(m_device->does(u"quit"_s));
    QTRY_COMPARE(m_device->program().state(), QProcess::NotRunning);
    QCOMPARE(m_device->program().exitCode(), 0);
    m_device.reset();
}

void tst_ControlFaults::mostClients()
{
    std::vector<RawClient> clients;
    for (int i = 1; i < 64; ++i) { // the test's own is the first
        clients.emplace_back(socketPath);
        QVERIFY(clients.back().ask(R"({"id":1,"do":"state"})").value("ok"_L1).toBool());
    }
    for (int i = 0; i < 2; ++i) {
        RawClient oneMore(socketPath);
        QVERIFY(oneMore.isConnected());
        QCOMPARE(oneMore.next().value("error"_L1).toString(), u"busy"_s);
        QVERIFY(oneMore.isClosedByServer());
    }
    QVERIFY(clients.front().ask(R"({"id":2,"do":"timers"})").value("ok"_L1).toBool());
    clients.pop_back();
    // Each try is one client more, so the first that is let in has to be the last: behind it the device may
    // be full again until it has heard of the end.
    const auto isLetIn
        = [] { return RawClient(socketPath).ask(R"({"id":1,"do":"state"})").value("ok"_L1).toBool(); };
    QVERIFY(QTest::qWaitFor(isLetIn));
}

void tst_ControlFaults::floodOfClients()
{
    const qint64 before = residentPages();
    std::list<RawClient> clients;
    for (int i = 0; i < 1000; ++i) {
        // The test has not as many handles itself. The first ones keep the device full.
        if (clients.size() == 200)
            clients.erase(std::next(clients.begin(), 100));
        clients.emplace_back(socketPath);
        QVERIFY(clients.back().isConnected());
    }
    QCOMPARE(clients.back().next().value("error"_L1).toString(), u"busy"_s); // so it has dealt with all
    const qsizetype now = descriptors();
    QVERIFY2(now <= m_descriptors + 64 + 8, QByteArray::number(now).constData());
    const qint64 grown = (residentPages() - before) * 4;
    QVERIFY2(grown < mostGrowthKb, qPrintable(QString::number(grown)));
    QVERIFY(m_device->does(u"timers"_s)); // who was there before is answered meanwhile
}

void tst_ControlFaults::silentClients()
{
    std::vector<RawClient> clients;
    for (int i = 0; i < 20; ++i) {
        clients.emplace_back(socketPath);
        QVERIFY(clients.back().isConnected());
    }
    QVERIFY(m_device->does(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}));
    QVERIFY(m_device->idle());
    // Nobody was sent away for it.
    for (RawClient &client : clients)
        QVERIFY(client.ask(R"({"id":1,"do":"timers"})").value("ok"_L1).toBool());
}

void tst_ControlFaults::badRequests_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const QByteArray &line, const QString &error) {
        QTest::newRow(name) << line << error;
    };
    row("no JSON", "state", u"bad-request"_s);
    row("an array", "[1]", u"bad-request"_s);
    row("a number", "7", u"bad-request"_s);
    row("cut off", R"({"id":1,"do":"sta)", u"bad-request"_s);
    row("two in one line", R"({"id":1,"do":"state"}{"id":2,"do":"state"})", u"bad-request"_s);
    row("no id", R"({"do":"state"})", u"bad-request"_s);
    row("id is a text", R"({"id":"1","do":"state"})", u"bad-request"_s);
    row("id is a fraction", R"({"id":1.5,"do":"state"})", u"bad-request"_s);
    row("no UTF-8", "{\"id\":1,\"do\":\"\xff\xfe\"}", u"bad-request"_s);
    row("zero bytes", QByteArray("{\"id\":1,\0\0\0}", 12), u"bad-request"_s);
    row("random bytes", "\x01\x02\x80\x81\xff", u"bad-request"_s);
    row("deeply nested", QByteArray(30'000, '['), u"bad-request"_s);
    row("deeply nested objects", QByteArray("{\"id\":1,\"do\":").repeated(2000), u"bad-request"_s);
    row("one byte too long", "{\"id\":1,\"do\":\"" + QByteArray(65'536, 'x'), u"too-long"_s);
    row("a megabyte", QByteArray(1 << 20, '{'), u"too-long"_s);
    row("unknown command", R"({"id":1,"do":"dance"})", u"unknown-command"_s);
    row("command in capitals", R"({"id":1,"do":"STATE"})", u"unknown-command"_s);
    row("empty command", R"({"id":1,"do":""})", u"unknown-command"_s);
    row("unknown member", R"({"id":1,"do":"state","now":true})", u"bad-argument"_s);
    row("tap without a place", R"({"id":1,"do":"tap"})", u"bad-argument"_s);
    row("tap far away", R"({"id":1,"do":"tap","x":1e300,"y":0})", u"bad-argument"_s);
    row("hold for ever", R"({"id":1,"do":"hold","x":1,"y":1,"ms":2147483647})", u"bad-argument"_s);
    row("drag in a million steps", R"({"id":1,"do":"drag","x1":1,"y1":1,"x2":2,"y2":2,"steps":1000000})",
        u"bad-argument"_s);
    row("unknown key", R"({"id":1,"do":"key","name":"fire"})", u"bad-argument"_s);
    row("event below 0", R"({"id":1,"do":"event","type":-1,"par1":0,"par2":0})", u"bad-argument"_s);
    row("timer that is not pending", R"({"id":1,"do":"fire","name":"never"})", u"no-such-item"_s);
    row("item that is not there", R"({"id":1,"do":"press","name":"Nothing"})", u"no-such-item"_s);
    row("light of a colour", R"({"id":1,"do":"light","color":1})", u"not-supported"_s);
}

void tst_ControlFaults::badRequests()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, error);

    RawClient client(socketPath);
    const QJsonObject answer = client.ask(line);
    QCOMPARE(answer.value("error"_L1).toString(), error);
    QCOMPARE(answer.value("ok"_L1), QJsonValue(false));
    QVERIFY(!answer.value("message"_L1).toString().isEmpty());
    // The same connection goes on.
    QVERIFY(client.ask(R"({"id":5,"do":"state"})").value("ok"_L1).toBool());
}

void tst_ControlFaults::longestLine()
{
    RawClient client(socketPath);
    QByteArray line(65'536, ' ');
    line.replace(0, 21, R"({"id":1,"do":"state"})");
    QVERIFY(client.ask(line).value("ok"_L1).toBool());
}

void tst_ControlFaults::halfARequest_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("a bracket") << QByteArray("{");
    QTest::newRow("all but the line end") << QByteArray(R"({"id":1,"do":"quit"})");
    QTest::newRow("a megabyte without a line end") << QByteArray(1 << 20, 'x');
}

void tst_ControlFaults::halfARequest()
{
    QFETCH(QByteArray, bytes);

    RawClient waiting(socketPath);
    QVERIFY(waiting.send(bytes));
    RawClient leaving(socketPath);
    QVERIFY(leaving.send(bytes));
    leaving.leave();
    QVERIFY(m_device->idle()); // neither keeps the device from its work
    QCOMPARE(m_device->program().state(), QProcess::Running);
}

void tst_ControlFaults::clientThatNeverReads()
{
    RawClient client(socketPath);
    QVERIFY(client.ask(R"({"id":1,"do":"journal"})").value("ok"_L1).toBool());
    const qint64 before = residentPages();
    // Much longer answers than questions: the device takes the next one only when the last answer is gone.
    const QByteArray requests = QByteArray("{\"id\":1,\"do\":\"journal\"}\n").repeated(2000);
    QVERIFY(client.send(requests));
    QVERIFY(m_device->idle());
    QVERIFY(m_device->state().value("ok"_L1).toBool());
    const qint64 grown = (residentPages() - before) * 4;
    QVERIFY2(grown < mostGrowthKb, qPrintable(QString::number(grown)));
}

void tst_ControlFaults::listenersThatNeverRead()
{
    std::vector<RawClient> listeners;
    for (int i = 0; i < 10; ++i) {
        listeners.emplace_back(socketPath);
        QVERIFY(listeners.back().send(QByteArray("{\"id\":1,\"do\":\"follow\"}\n")));
    }
    const qint64 before = residentPages();
    for (int i = 0; i < 1000; ++i) // many more than the sockets themselves take
        QVERIFY(m_device->does(u"invert"_s, {{u"on"_s, i % 2 == 0}}));
    QVERIFY(m_device->idle());
    const qint64 grown = (residentPages() - before) * 4;
    QVERIFY2(grown < mostGrowthKb, qPrintable(QString::number(grown)));
}

void tst_ControlFaults::clientThatLeavesInTheMiddle_data()
{
    QTest::addColumn<QByteArray>("request");

    QTest::newRow("of a hold") << QByteArray(R"({"id":1,"do":"hold","x":400,"y":500,"ms":3000})");
    QTest::newRow("of a drag") << QByteArray(
        R"({"id":1,"do":"drag","x1":400,"y1":500,"x2":420,"y2":520,"steps":500})");
    QTest::newRow("of waiting") << QByteArray(R"({"id":1,"do":"idle","ms":10000})");
    QTest::newRow("of following") << QByteArray(R"({"id":1,"do":"follow"})");
}

void tst_ControlFaults::clientThatLeavesInTheMiddle()
{
    QFETCH(QByteArray, request);

    RawClient client(socketPath);
    QVERIFY(client.send(request + '\n'));
    QVERIFY(m_device->state().value("ok"_L1).toBool());
    client.leave();
    QVERIFY(m_device->idle());
}

QTEST_GUILESS_MAIN(tst_ControlFaults)
#include "tst_control_faults.moc"
