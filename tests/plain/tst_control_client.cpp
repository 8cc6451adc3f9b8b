#include "control_client.h"
#include "device_thread.h"
#include "panel_file.h"
#include "raw_client.h"

#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <list>
#include <vector>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;
using namespace std::chrono_literals;

class tst_ControlClient : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void noDevice();
    void asks();
    void refusal();
    void unreadableRequest();
    void noAnswerInTime();
    void lateAnswerIsPassedOver();
    void deviceGoesWhileAsked();
    void deviceThatTalksNonsense();
    void deviceGone();
    void busyDevice();
    void largeAnswer();
    void eventsBetweenAnswers();
    void noEventInTime();
    void eventsEndWithTheDevice();
    void moved();
    void clientsSideBySide();
    void screenshot();
    void screenshotWithoutPanel();

private:
    ControlClient connected()
    {
        QString error;
        std::optional<ControlClient> client = ControlClient::connectTo(m_folder->path(), &error);
        if (!client)
            qFatal("%s", qPrintable(error));
        return std::move(*client);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DeviceThread> m_device;
    QList<Reply> m_pending; ///< the device's thread
};

void tst_ControlClient::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_device
        = std::make_unique<DeviceThread>(m_folder->filePath(u"control"_s), [this](ControlServer &server) {
              server.add(u"echo"_s, {u"text"_s}, [](const QJsonObject &request, const Reply &reply) {
                  reply({{u"text"_s, request.value("text"_L1)}});
              });
              server.add(u"wait"_s, {},
                         [this](const QJsonObject &, const Reply &reply) { m_pending.append(reply); });
              server.add(u"refuse"_s, {}, [](const QJsonObject &, const Reply &reply) {
                  reply.fail(u"not-supported"_s, u"There is no light."_s);
              });
          });
    QVERIFY(m_device->listens());
}

void tst_ControlClient::cleanup()
{
    m_device.reset();
    m_pending.clear();
    m_folder.reset();
}

void tst_ControlClient::noDevice()
{
    QString error;
    QVERIFY(!ControlClient::connectTo(m_folder->filePath(u"none"_s), &error));
    QCOMPARE(error, u"No device answers at %1/control."_s.arg(m_folder->filePath(u"none"_s)));
    QVERIFY(!ControlClient::connectTo(m_folder->filePath(u"none"_s), nullptr));
}

void tst_ControlClient::asks()
{
    ControlClient client = connected();
    const QJsonObject first = client.ask(u"echo"_s, {{u"text"_s, u"ä"_s}});
    QCOMPARE(first.value("ok"_L1), true);
    QCOMPARE(first.value("text"_L1), u"ä"_s);
    const QJsonObject second = client.ask(u"echo"_s, {{u"text"_s, u"b"_s}});
    QCOMPARE(second.value("text"_L1), u"b"_s);
    QVERIFY(first.value("id"_L1) != second.value("id"_L1));
}

void tst_ControlClient::refusal()
{
    ControlClient client = connected();
    const QJsonObject answer = client.ask(u"refuse"_s);
    QCOMPARE(answer.value("ok"_L1), false);
    QCOMPARE(answer.value("error"_L1), u"not-supported"_s);
    QCOMPARE(answer.value("message"_L1), u"There is no light."_s);
}

void tst_ControlClient::unreadableRequest()
{
    ControlClient client = connected();
    const QJsonObject answer = client.ask(u"echo"_s, {{u"text"_s, QString(70'000, u'a')}});
    QCOMPARE(answer.value("error"_L1), u"too-long"_s); // although this answer has no id
    QCOMPARE(client.ask(u"echo"_s).value("ok"_L1), true);
}

void tst_ControlClient::noAnswerInTime()
{
    ControlClient client = connected();
    const QJsonObject answer = client.ask(u"wait"_s, {}, 50ms);
    QCOMPARE(answer.value("ok"_L1), false);
    QCOMPARE(answer.value("error"_L1), u"no-answer"_s);
    QVERIFY(client.isConnected());
}

void tst_ControlClient::lateAnswerIsPassedOver()
{
    ControlClient client = connected();
    QCOMPARE(client.ask(u"wait"_s, {}, 50ms).value("error"_L1), u"no-answer"_s);
    m_device->run([this] { m_pending.takeFirst()({{u"text"_s, u"late"_s}}); });
    QCOMPARE(client.ask(u"echo"_s, {{u"text"_s, u"in time"_s}}).value("text"_L1), u"in time"_s);
}

void tst_ControlClient::deviceGoesWhileAsked()
{
    ControlClient client = connected();
    QCOMPARE(client.ask(u"wait"_s, {}, 50ms).value("error"_L1), u"no-answer"_s);
    const std::unique_ptr<QThread> stopper(QThread::create([this] { m_device->stop(); }));
    stopper->start();
    QCOMPARE(client.ask(u"wait"_s, {}, 20s).value("error"_L1), u"no-device"_s);
    QVERIFY(stopper->wait());
}

void tst_ControlClient::deviceThatTalksNonsense()
{
    QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath(u"control"_s));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    const int listening = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QCOMPARE(::bind(listening, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    QCOMPARE(::listen(listening, 1), 0);
    std::optional<ControlClient> client = ControlClient::connectTo(folder.path(), nullptr);
    QVERIFY(client);
    const int device = ::accept(listening, nullptr, nullptr);
    const QByteArray nonsense("\xff\xfe\n\n[1]\n7\n{\"id\":\"1\"}\n{\"id\":999,\"ok\":true}\n"
                              "{\"id\":1e300}\n{\"id\":1,\"ok\":true,\"text\":\"at last\"}\n{\"id\":");
    QCOMPARE(::write(device, nonsense.constData(), std::size_t(nonsense.size())), nonsense.size());
    QCOMPARE(client->ask(u"echo"_s).value("text"_L1), u"at last"_s);
    QCOMPARE(client->ask(u"echo"_s, {}, 50ms).value("error"_L1), u"no-answer"_s); // half a line
    ::close(device);
    QCOMPARE(client->ask(u"echo"_s).value("error"_L1), u"no-device"_s);
    ::close(listening);
}

void tst_ControlClient::deviceGone()
{
    ControlClient client = connected();
    QCOMPARE(client.ask(u"echo"_s).value("ok"_L1), true);
    m_device->stop();
    for (int i = 0; i < 2; ++i) {
        const QJsonObject answer = client.ask(u"echo"_s);
        QCOMPARE(answer.value("ok"_L1), false);
        QCOMPARE(answer.value("error"_L1), u"no-device"_s);
        QVERIFY(answer.value("message"_L1).toString().contains(m_folder->path()));
    }
    QVERIFY(!client.isConnected());
}

void tst_ControlClient::busyDevice()
{
    std::list<RawClient> others;
    for (int i = 0; i < 64; ++i) {
        others.emplace_back(m_folder->filePath(u"control"_s));
        QCOMPARE(others.back().ask(R"({"id":1,"do":"echo"})").value("ok"_L1), true);
    }
    ControlClient client = connected();
    QCOMPARE(client.ask(u"echo"_s).value("error"_L1), u"busy"_s);

    // One that asks when the device has long hung up.
    ControlClient late = connected();
    RawClient watcher(m_folder->filePath(u"control"_s));
    QVERIFY(watcher.isClosedByServer()); // it came later, so that `late` has been refused as well
    QCOMPARE(late.ask(u"echo"_s).value("error"_L1), u"busy"_s);
}

void tst_ControlClient::largeAnswer()
{
    const QString large(6'000'000, u'x');
    m_device.reset();
    m_device
        = std::make_unique<DeviceThread>(m_folder->filePath(u"control"_s), [&large](ControlServer &server) {
              server.add(u"tree"_s, {}, [&large](const QJsonObject &, const Reply &reply) {
                  reply({{u"text"_s, large}});
              });
          });
    ControlClient client = connected();
    QCOMPARE(client.ask(u"tree"_s).value("text"_L1).toString().size(), large.size());
}

void tst_ControlClient::eventsBetweenAnswers()
{
    ControlClient client = connected();
    QCOMPARE(client.ask(u"follow"_s).value("ok"_L1), true);
    m_device->announce({{u"event"_s, u"open"_s}, {u"path"_s, u"a"_s}});
    m_device->announce({{u"event"_s, u"open"_s}, {u"path"_s, u"b"_s}});
    QCOMPARE(client.ask(u"echo"_s, {{u"text"_s, u"c"_s}}).value("text"_L1), u"c"_s);
    m_device->announce({{u"event"_s, u"open"_s}, {u"path"_s, u"d"_s}});
    QCOMPARE(client.nextEvent(10s).value("path"_L1), u"a"_s);
    QCOMPARE(client.nextEvent(10s).value("path"_L1), u"b"_s);
    QCOMPARE(client.nextEvent(10s).value("path"_L1), u"d"_s);
}

void tst_ControlClient::noEventInTime()
{
    ControlClient client = connected();
    QCOMPARE(client.ask(u"follow"_s).value("ok"_L1), true);
    QVERIFY(client.nextEvent(20ms).isEmpty());
    QVERIFY(client.isConnected());
}

void tst_ControlClient::eventsEndWithTheDevice()
{
    ControlClient client = connected();
    QCOMPARE(client.ask(u"follow"_s).value("ok"_L1), true);
    m_device->announce({{u"event"_s, u"changed"_s}});
    m_device->stop();
    QCOMPARE(client.nextEvent(10s).value("event"_L1), u"changed"_s); // what was said before it went
    QVERIFY(client.nextEvent(10s).isEmpty());
    QVERIFY(!client.isConnected());
}

void tst_ControlClient::moved()
{
    ControlClient first = connected();
    ControlClient second = std::move(first);
    QCOMPARE(second.ask(u"echo"_s).value("ok"_L1), true);
    first = std::move(second);
    QCOMPARE(first.ask(u"echo"_s).value("ok"_L1), true);
}

void tst_ControlClient::screenshot()
{
    const auto writer = PanelWriter::create({.size = {30, 20}}, m_folder->filePath(u"panel"_s), nullptr);
    QVERIFY(writer);
    writer->beginWrite();
    writer->header().orientation = 1;
    writer->pixels()[29] = 0; // top right on the glass is top left for a user who holds it turned
    writer->endWrite();
    const QImage picture = connected().screenshot();
    QCOMPARE(picture.size(), QSize(20, 30));
    QCOMPARE(qGray(picture.pixel(0, 0)), 0);
}

void tst_ControlClient::screenshotWithoutPanel()
{
    QString error;
    QVERIFY(connected().screenshot(&error).isNull());
    QVERIFY(error.contains(u"panel"_s));
    QVERIFY(connected().screenshot().isNull());
}

void tst_ControlClient::clientsSideBySide()
{
    constexpr int clientCount = 4;
    constexpr int requests = 100;
    const QTemporaryDir folder;
    int answered = 0; // of the device's thread alone
    DeviceThread device(folder.filePath(u"control"_s), [&answered](ControlServer &server) {
        server.add(u"echo"_s, {u"text"_s}, [&answered](const QJsonObject &request, const Reply &reply) {
            ++answered;
            reply({{u"text"_s, request.value("text"_L1)}});
        });
    });
    QVERIFY(device.listens());

    std::atomic_int wrong = 0;
    std::vector<std::unique_ptr<QThread>> clients;
    for (int number = 0; number < clientCount; ++number) {
        clients.emplace_back(QThread::create([&folder, &wrong, number] {
            std::optional<ControlClient> client = ControlClient::connectTo(folder.path(), nullptr);
            for (int i = 0; i < requests; ++i) {
                const QString text = u"%1 of %2"_s.arg(i).arg(number);
                if (!client || client->ask(u"echo"_s, {{u"text"_s, text}}).value("text"_L1) != text)
                    ++wrong;
            }
        }));
        clients.back()->start();
    }
    for (const std::unique_ptr<QThread> &client : clients)
        QVERIFY(client->wait());
    device.stop();
    QCOMPARE(wrong.load(), 0);
    QCOMPARE(answered, clientCount * requests);
}

QTEST_GUILESS_MAIN(tst_ControlClient)
#include "tst_control_client.moc"
