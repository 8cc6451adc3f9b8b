#include "control_server.h"
#include "raw_client.h"
#include "request_line.h"

#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

constexpr int randomLines = 10'000;

/// Lines that say something, to be damaged.
QByteArrayList goodLines()
{
    return {
        R"({"id":1,"do":"state"})",
        R"({"id":2,"do":"tap","x":10,"y":20})",
        R"({"id":3,"do":"drag","x1":-1,"y1":2147483647,"x2":1e3,"y2":0.5,"steps":20})",
        R"({"id":4,"do":"type","text":"Grüße \u00e4\n\"\\ 🖼"})",
        R"({"id":5,"do":"light","auto":true,"enabled":false,"brightness":40})",
        R"({"id":9223372036854775807,"do":"press","name":"[[[{}]]]","n":1})",
        R"( { "id" : -9 , "do" : "idle" , "ms" : null , "more" : [ 1 , { "a" : [ ] } ] } )",
    };
}

QByteArray randomLine(QRandomGenerator &random)
{
    const QByteArrayList good = goodLines();
    if (random.bounded(4) == 0) {
        QByteArray line(random.bounded(300), '\0');
        for (char &byte : line)
            byte = char(random.bounded(256));
        return line.replace('\n', ' ');
    }
    QByteArray line = good.at(random.bounded(int(good.size())));
    for (int change = random.bounded(1, 6); change > 0; --change) {
        const int position = random.bounded(int(line.size()) + 1);
        switch (random.bounded(5)) {
        case 0:
            line.insert(position, char(random.bounded(256)));
            break;
        case 1:
            line.remove(position, random.bounded(10));
            break;
        case 2:
            if (position < line.size())
                line[position] = char(line.at(position) ^ (1 << random.bounded(8)));
            break;
        case 3:
            line.insert(position, good.at(random.bounded(int(good.size()))).left(random.bounded(30)));
            break;
        case 4:
            line.insert(position, QByteArray(random.bounded(2000), "[{\"]}0"[random.bounded(6)]));
            break;
        }
    }
    return line.replace('\n', ' ');
}

} // namespace

class tst_RequestLine : public QObject
{
    Q_OBJECT

private slots:
    void integers_data();
    void integers();
    void goodLine();
    void randomLinesKeepTheirPromise();
    void randomLinesToADevice();
};

void tst_RequestLine::integers_data()
{
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<bool>("isInteger");
    QTest::addColumn<qint64>("integer");

    QTest::newRow("zero") << QJsonValue(0) << true << qint64(0);
    QTest::newRow("one") << QJsonValue(1) << true << qint64(1);
    QTest::newRow("negative") << QJsonValue(-70000) << true << qint64(-70000);
    QTest::newRow("whole number written as a fraction") << QJsonValue(3.0) << true << qint64(3);
    QTest::newRow("largest") << QJsonValue(std::numeric_limits<qint64>::max()) << true
                             << std::numeric_limits<qint64>::max();
    QTest::newRow("smallest") << QJsonValue(std::numeric_limits<qint64>::min()) << true
                              << std::numeric_limits<qint64>::min();
    QTest::newRow("fraction") << QJsonValue(0.5) << false << qint64(0);
    QTest::newRow("too large") << QJsonValue(1e19) << false << qint64(0);
    QTest::newRow("text") << QJsonValue(u"1"_s) << false << qint64(0);
    QTest::newRow("true") << QJsonValue(true) << false << qint64(0);
    QTest::newRow("null") << QJsonValue(QJsonValue::Null) << false << qint64(0);
    QTest::newRow("not there") << QJsonValue(QJsonValue::Undefined) << false << qint64(0);
    QTest::newRow("object") << QJsonValue(QJsonObject()) << false << qint64(0);
}

void tst_RequestLine::integers()
{
    QFETCH(QJsonValue, value);
    QFETCH(bool, isInteger);
    QFETCH(qint64, integer);

    const std::optional<qint64> read = integerOf(value);
    QCOMPARE(read.has_value(), isInteger);
    QCOMPARE(read.value_or(0), integer);
}

void tst_RequestLine::goodLine()
{
    const RequestLine read = parseRequestLine(R"({"id":5,"do":"tap","x":10})");
    QCOMPARE(read.error, QString());
    QCOMPARE(read.message, QString());
    QCOMPARE(*read.id, 5);
    QCOMPARE(read.command, u"tap"_s);
    QCOMPARE(read.request, (QJsonObject{{u"id"_s, 5}, {u"do"_s, u"tap"_s}, {u"x"_s, 10}}));
}

void tst_RequestLine::randomLinesKeepTheirPromise()
{
    QRandomGenerator random(20'240'229);
    int accepted = 0;
    for (int i = 0; i < randomLines; ++i) {
        const QByteArray line = randomLine(random);
        const RequestLine read = parseRequestLine(line);
        if (!read.error.isEmpty()) {
            QCOMPARE(read.error, u"bad-request"_s);
            QVERIFY2(!read.message.isEmpty(), line.constData());
            continue;
        }
        ++accepted;
        // What was accepted and is written again has to be read as the same request.
        const RequestLine again
            = parseRequestLine(QJsonDocument(read.request).toJson(QJsonDocument::Compact));
        QVERIFY2(again.error.isEmpty(), line.constData());
        QCOMPARE(again.id, read.id);
        QCOMPARE(again.command, read.command);
        QCOMPARE(again.request, read.request);
    }
    // Both ways were walked.
    QVERIFY2(accepted > randomLines / 50 && accepted < randomLines, qPrintable(QString::number(accepted)));
}

void tst_RequestLine::randomLinesToADevice()
{
    const QTemporaryDir folder;
    ControlServer server;
    server.add(u"state"_s, {}, [](const QJsonObject &, const Reply &reply) { reply(); });
    QString error;
    QVERIFY2(server.listen(folder.filePath(u"control"_s), &error), qPrintable(error));
    RawClient client(folder.filePath(u"control"_s));

    const QStringList codes = {u"bad-request"_s, u"unknown-command"_s, u"bad-argument"_s, u"too-long"_s};
    QRandomGenerator random(7);
    for (int i = 0; i < randomLines / 10; ++i) {
        const QByteArray line = randomLine(random);
        const QJsonObject answer = client.ask(line);
        QVERIFY2(answer.contains(u"id"_s), line.constData());
        QVERIFY2(answer.value("ok"_L1).toBool() || codes.contains(answer.value("error"_L1).toString()),
                 line.constData());
        QVERIFY2(client.receive().isEmpty(), line.constData()); // one line, one answer
    }
    QCOMPARE(client.ask(R"({"id":1,"do":"state"})").value("ok"_L1), true);
}

QTEST_GUILESS_MAIN(tst_RequestLine)
#include "tst_request_line.moc"
