// Listeners: events, slow readers, refreshes united on the way.

#include "control_connection.h"
#include "echo_server.h"
#include "raw_client.h"

#include <QRect>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

QJsonObject refresh(int number, QRect rectangle, const QString &mode)
{
    return {{u"event"_s, u"refresh"_s}, {u"number"_s, number},           {u"x"_s, rectangle.x()},
            {u"y"_s, rectangle.y()},    {u"width"_s, rectangle.width()}, {u"height"_s, rectangle.height()},
            {u"mode"_s, mode}};
}

} // namespace

class tst_ControlFollowers : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_echo = std::make_unique<EchoServer>(); }
    void cleanup() { m_echo.reset(); }

    void followersHear();
    void followTakesNoMembers();
    void followersMayAsk();
    void slowReader();
    void slowReaderKeepsOpenEvents();
    void unitedModes_data();
    void unitedModes();
    void unitedRectangleAndMissed();
    void unitedWithAnEmptyRectangle();

private:
    std::unique_ptr<EchoServer> m_echo;
};

void tst_ControlFollowers::followersHear()
{
    RawClient follower(m_echo->path());
    RawClient other(m_echo->path());
    QCOMPARE(other.ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    QCOMPARE(follower.ask(R"({"id":1,"do":"follow"})"), (QJsonObject{{u"id"_s, 1}, {u"ok"_s, true}}));
    m_echo->server->announce(refresh(42, {0, 10, 758, 20}, u"partial"_s));
    m_echo->server->announce({{u"event"_s, u"changed"_s}});
    m_echo->server->announce({{u"event"_s, u"open"_s}, {u"path"_s, u"/mnt/ext1/a.jpg"_s}});
    QJsonObject expected = refresh(42, {0, 10, 758, 20}, u"partial"_s);
    expected.insert(u"missed"_s, 0);
    QCOMPARE(follower.next(), expected);
    QCOMPARE(follower.next().value("event"_L1), u"changed"_s);
    QCOMPARE(follower.next().value("path"_L1), u"/mnt/ext1/a.jpg"_s);
    QCOMPARE(other.ask(R"({"id":2,"do":"echo"})").value("id"_L1), 2);
    QVERIFY(other.receive().isEmpty());

    follower.leave();
    QTRY_COMPARE(m_echo->server->clients(), 1);
    m_echo->server->announce({{u"event"_s, u"changed"_s}});
}

void tst_ControlFollowers::followTakesNoMembers()
{
    RawClient client(m_echo->path());
    QCOMPARE(client.ask(R"({"id":1,"do":"follow","all":true})").value("error"_L1), u"bad-argument"_s);
    m_echo->server->announce({{u"event"_s, u"changed"_s}});
    QCOMPARE(client.ask(R"({"id":2,"do":"echo"})").value("id"_L1), 2);
}

void tst_ControlFollowers::followersMayAsk()
{
    RawClient client(m_echo->path());
    QCOMPARE(client.ask(R"({"id":1,"do":"follow"})").value("ok"_L1), true);
    QVERIFY(client.send(QByteArray("{\"id\":2,\"do\":\"wait\"}\n")));
    QTRY_COMPARE(m_echo->waits, 1);
    m_echo->server->announce({{u"event"_s, u"changed"_s}});
    QCOMPARE(client.next().value("event"_L1), u"changed"_s); // events do not wait for answers
    m_echo->pending.constFirst()();
    QCOMPARE(client.next().value("id"_L1), 2);
}

void tst_ControlFollowers::slowReader()
{
    RawClient slow(m_echo->path());
    RawClient quick(m_echo->path());
    QCOMPARE(slow.ask(R"({"id":1,"do":"follow"})").value("ok"_L1), true);
    QCOMPARE(quick.ask(R"({"id":1,"do":"follow"})").value("ok"_L1), true);

    constexpr int count = 3000;
    for (int number = 1; number <= count; ++number) {
        // The one full refresh and the one that reaches far are both among those that the slow reader misses.
        const QRect rectangle = number == 2000 ? QRect(700, 1000, 50, 20) : QRect(number % 100, 5, 10, 10);
        m_echo->server->announce(refresh(number, rectangle, number == 1500 ? u"full"_s : u"fast"_s));
        m_echo->server->announce({{u"event"_s, u"changed"_s}});
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

void tst_ControlFollowers::slowReaderKeepsOpenEvents()
{
    RawClient slow(m_echo->path());
    QCOMPARE(slow.ask(R"({"id":1,"do":"follow"})").value("ok"_L1), true);
    for (int number = 1; number <= 1000; ++number)
        m_echo->server->announce(refresh(number, {0, 0, 1, 1}, u"partial"_s));
    for (int i = 0; i < 50; ++i)
        m_echo->server->announce({{u"event"_s, u"open"_s}, {u"path"_s, QString::number(i % 25)}});
    int expected = 0;
    while (expected < 50) {
        const QJsonObject event = slow.next();
        QVERIFY(!event.isEmpty());
        if (event.value("event"_L1) == "open"_L1)
            QCOMPARE(event.value("path"_L1), QString::number(expected++ % 25));
    }
}

void tst_ControlFollowers::unitedModes_data()
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

void tst_ControlFollowers::unitedModes()
{
    QFETCH(QString, earlier);
    QFETCH(QString, later);
    QFETCH(QString, united);

    const QJsonObject both
        = unitedRefresh(refresh(1, {0, 0, 1, 1}, earlier), refresh(2, {0, 0, 1, 1}, later));
    QCOMPARE(both.value("mode"_L1), united);
    QCOMPARE(both.value("number"_L1), 2);
}

void tst_ControlFollowers::unitedRectangleAndMissed()
{
    QJsonObject earlier = refresh(5, {10, 20, 30, 40}, u"partial"_s);
    earlier.insert(u"missed"_s, 3);
    QJsonObject expected = refresh(6, {5, 20, 35, 100}, u"partial"_s);
    expected.insert(u"missed"_s, 4);
    QCOMPARE(unitedRefresh(earlier, refresh(6, {5, 100, 2, 20}, u"partial"_s)), expected);
}

void tst_ControlFollowers::unitedWithAnEmptyRectangle()
{
    QJsonObject expected = refresh(6, {50, 60, 2, 20}, u"partial"_s);
    expected.insert(u"missed"_s, 1);
    QCOMPARE(unitedRefresh(refresh(5, {0, 0, 0, 0}, u"fast"_s), refresh(6, {50, 60, 2, 20}, u"partial"_s)),
             expected);
}

QTEST_GUILESS_MAIN(tst_ControlFollowers)
#include "tst_control_followers.moc"
