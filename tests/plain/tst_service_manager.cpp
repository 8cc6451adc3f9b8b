// What the service manager is told, and when.

#include "notify_socket.h"

#include <service_manager.h>

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <unistd.h>

using lindenreed::device::ServiceManager;

class tst_ServiceManager : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void ready_data();
    void ready();
    void goesOn();
    void hangs();
    void noPatience_data();
    void noPatience();
    void nobodyThere_data();
    void nobodyThere();

private:
    QByteArray path() const { return QFile::encodeName(m_folder->filePath(QStringLiteral("notify"))); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_ServiceManager::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_ServiceManager::cleanup()
{
    qunsetenv("NOTIFY_SOCKET");
    qunsetenv("WATCHDOG_USEC");
}

void tst_ServiceManager::ready_data()
{
    QTest::addColumn<QByteArray>("name");

    QTest::newRow("path") << QByteArray();
    QTest::newRow("not in the file system")
        << QByteArray("@tst_service_manager ") + QByteArray::number(qint64(::getpid()));
}

void tst_ServiceManager::ready()
{
    QFETCH(QByteArray, name);

    if (name.isEmpty())
        name = path();
    NotifySocket socket(name);
    QVERIFY(socket.bound());
    qputenv("NOTIFY_SOCKET", name);
    ServiceManager manager;
    QCOMPARE(socket.told(), QList<QByteArray>()); // not before it is
    manager.tellReady();
    QCOMPARE(socket.told(), QList<QByteArray>{"READY=1"});
}

void tst_ServiceManager::goesOn()
{
    NotifySocket socket(path());
    qputenv("NOTIFY_SOCKET", path());
    qputenv("WATCHDOG_USEC", "400000");
    ServiceManager manager;
    manager.tellReady();
    QElapsedTimer clock;
    clock.start();
    QTRY_VERIFY(socket.told().size() >= 4);
    QCOMPARE(socket.told(), (QList<QByteArray>{"READY=1", "WATCHDOG=1", "WATCHDOG=1", "WATCHDOG=1"}));
    QVERIFY2(clock.elapsed() >= 500,
             qPrintable(QString::number(clock.elapsed()))); // twice in 400 ms, no more
}

void tst_ServiceManager::hangs()
{
    NotifySocket socket(path());
    qputenv("NOTIFY_SOCKET", path());
    qputenv("WATCHDOG_USEC", "20000");
    ServiceManager manager;
    manager.tellReady();
    QTest::qSleep(100); // the loop does not run
    QCOMPARE(socket.told(), QList<QByteArray>{"READY=1"});
    QTRY_VERIFY(socket.told().size() >= 2);
    QCOMPARE(socket.told().at(1), QByteArray("WATCHDOG=1"));
}

void tst_ServiceManager::noPatience_data()
{
    QTest::addColumn<QByteArray>("patience");

    QTest::newRow("none") << QByteArray();
    QTest::newRow("zero") << QByteArray("0");
    QTest::newRow("below zero") << QByteArray("-5");
    QTest::newRow("no number") << QByteArray("soon");
}

void tst_ServiceManager::noPatience()
{
    QFETCH(QByteArray, patience);

    NotifySocket socket(path());
    qputenv("NOTIFY_SOCKET", path());
    qputenv("WATCHDOG_USEC", patience);
    ServiceManager manager;
    manager.tellReady();
    QTest::qWait(50);
    QCOMPARE(socket.told(), QList<QByteArray>{"READY=1"});
}

void tst_ServiceManager::nobodyThere_data()
{
    QTest::addColumn<QByteArray>("name");

    QTest::newRow("not set") << QByteArray();
    QTest::newRow("nowhere") << QByteArray("/nowhere/notify");
    QTest::newRow("too long") << QByteArray("/") + QByteArray(200, 'x');
}

void tst_ServiceManager::nobodyThere()
{
    QFETCH(QByteArray, name);

    qputenv("NOTIFY_SOCKET", name);
    qputenv("WATCHDOG_USEC", "2000");
    ServiceManager manager;
    manager.tellReady();
    QTest::qWait(20); // and nothing happens
}

QTEST_GUILESS_MAIN(tst_ServiceManager)
#include "tst_service_manager.moc"
