// The window's side of the control socket.

#include "control_server.h"
#include "slate_window_link.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

class tst_SlateWindowLink : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void waitsForTheDevice();
    void givesUp();
    void hearsAndSends();
    void deviceThatGoes();
    void dropsWhatAHangingDeviceCannotTake();
    void findsTheNextDevice();
    void tellsStateAndRefusals();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_SlateWindowLink::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_SlateWindowLink::waitsForTheDevice()
{
    DeviceLink link(m_folder->path());
    QSignalSpy connected(&link, &DeviceLink::connected);
    QSignalSpy gone(&link, &DeviceLink::gone);
    link.open(30'000);
    QCOMPARE(connected.count(), 0);
    ControlServer server;
    QVERIFY(server.listen(path(u"control"_s), nullptr));
    QTRY_COMPARE(connected.count(), 1);
    QTRY_COMPARE(server.clients(), 2);
    QCOMPARE(gone.count(), 0);
    QVERIFY(link.isConnected());
}

void tst_SlateWindowLink::givesUp()
{
    DeviceLink link(m_folder->path());
    QSignalSpy connected(&link, &DeviceLink::connected);
    QSignalSpy timedOut(&link, &DeviceLink::timedOut);
    link.open(120);
    QVERIFY(timedOut.wait());
    QCOMPARE(timedOut.count(), 1);
    QCOMPARE(connected.count(), 0);
    QVERIFY(!link.isConnected());
}

void tst_SlateWindowLink::hearsAndSends()
{
    ControlServer server;
    QList<QJsonObject> requests;
    server.add(u"key"_s, {u"name"_s}, [&](const QJsonObject &request, const Reply &reply) {
        requests.append(request);
        reply();
    });
    QVERIFY(server.listen(path(u"control"_s), nullptr));
    DeviceLink link(m_folder->path());
    QSignalSpy refreshed(&link, &DeviceLink::refreshed);
    QSignalSpy changed(&link, &DeviceLink::changed);
    link.open(30'000);
    for (int i = 0; i < 100; ++i) // answers make room for more
        link.send(u"key"_s, {{u"name"_s, u"next"_s}});
    QTRY_COMPARE(requests.size(), 32);
    QTRY_VERIFY((link.send(u"key"_s, {{u"name"_s, u"menu"_s}}), requests.size() > 32));
    QCOMPARE(requests.constFirst().value("name"_L1), u"next"_s);
    QCOMPARE(requests.constLast().value("name"_L1), u"menu"_s);
    // What was drawn before the device answered "follow" was announced to nobody.
    QTRY_COMPARE(refreshed.count(), 1);
    QTRY_VERIFY((server.announce({{u"event"_s, u"refresh"_s}, {u"number"_s, 1}}), refreshed.count() > 1));
    QCOMPARE(changed.count(), 0);
    QTRY_VERIFY((server.announce({{u"event"_s, u"changed"_s}}), changed.count() > 0));
}

void tst_SlateWindowLink::deviceThatGoes()
{
    auto server = std::make_unique<ControlServer>();
    QVERIFY(server->listen(path(u"control"_s), nullptr));
    DeviceLink link(m_folder->path());
    QSignalSpy gone(&link, &DeviceLink::gone);
    link.open(30'000);
    QTRY_COMPARE(server->clients(), 2);
    server.reset();
    QTRY_COMPARE(gone.count(), 1);
    link.send(u"quit"_s);
    QCoreApplication::processEvents();
    QCOMPARE(gone.count(), 1);
}

void tst_SlateWindowLink::dropsWhatAHangingDeviceCannotTake()
{
    ControlServer server;
    QList<Reply> pending;
    int begun = 0;
    server.add(u"tap"_s, {}, [&](const QJsonObject &, const Reply &reply) {
        ++begun;
        pending.append(reply);
    });
    QVERIFY(server.listen(path(u"control"_s), nullptr));
    DeviceLink link(m_folder->path());
    QSignalSpy connected(&link, &DeviceLink::connected);
    link.open(30'000);
    QTRY_COMPARE(connected.count(), 1);
    for (int i = 0; i < 1000; ++i)
        link.send(u"tap"_s);
    for (int i = 1; i <= 32; ++i) {
        QTRY_COMPARE(begun, i);
        pending.takeFirst()();
    }
    // Answered all; the next one that comes is a new one.
    QTRY_VERIFY((link.send(u"tap"_s), begun > 32));
}

void tst_SlateWindowLink::findsTheNextDevice()
{
    auto server = std::make_unique<ControlServer>();
    QVERIFY(server->listen(path(u"control"_s), nullptr));
    DeviceLink link(m_folder->path());
    QSignalSpy connected(&link, &DeviceLink::connected);
    QSignalSpy timedOut(&link, &DeviceLink::timedOut);
    link.open(10);
    QTRY_COMPARE(connected.count(), 1);
    server.reset();
    QTRY_VERIFY(!link.isConnected());
    server = std::make_unique<ControlServer>();
    QVERIFY(server->listen(path(u"control"_s), nullptr));
    QTRY_COMPARE(connected.count(), 2);
    QTRY_COMPARE(server->clients(), 2);
    QCOMPARE(timedOut.count(), 0);
}

void tst_SlateWindowLink::tellsStateAndRefusals()
{
    ControlServer server;
    server.add(u"state"_s, {}, [](const QJsonObject &, const Reply &reply) {
        reply({{u"profile"_s, u"grey-6"_s}});
    });
    server.add(u"light"_s, {}, [](const QJsonObject &, const Reply &reply) {
        reply.fail(u"not-supported"_s, u"There is no light."_s);
    });
    QVERIFY(server.listen(path(u"control"_s), nullptr));
    DeviceLink link(m_folder->path());
    QSignalSpy told(&link, &DeviceLink::stateTold);
    QSignalSpy refused(&link, &DeviceLink::refused);
    link.open(30'000);
    link.send(u"state"_s);
    link.send(u"light"_s);
    QTRY_COMPARE(refused.count(), 1);
    QCOMPARE(refused.at(0), (QVariantList{u"light"_s, u"not-supported"_s, u"There is no light."_s}));
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.at(0).at(0).toJsonObject().value("profile"_L1), u"grey-6"_s);
}

QTEST_GUILESS_MAIN(tst_SlateWindowLink)
#include "tst_slate_window_link.moc"
