// Small parts of the platform plug-in: the device's record, the battery, members of requests.

#include <arguments.h>
#include <battery.h>
#include <device_record.h>
#include <idle_watcher.h>
#include <keys.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <csignal>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using lindenreed::device::Arguments;
using lindenreed::device::batteryCharge;
using lindenreed::device::DeviceRecord;
using lindenreed::device::IdleWatcher;
using lindenreed::device::othersWork;
using lindenreed::device::readDeviceRecord;

namespace {

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s cannot be written", qUtf8Printable(path));
}

} // namespace

class tst_PlatformParts : public QObject
{
    Q_OBJECT

private slots:
    void deviceRecord_data();
    void deviceRecord();
    void noDeviceRecord();
    void battery_data();
    void battery();
    void batteryOfAMouseDoesNotCount();
    void noPowerSupplies();
    void integers_data();
    void integers();
    void missingMembers();
    void optionalMembers();
    void keyNames();
    void idleNeedsQuiet();
    void idlePatienceEnds();
    void processesCount();
};

void tst_PlatformParts::deviceRecord_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("profile");
    QTest::addColumn<int>("orientation"); // -1: none
    QTest::addColumn<QString>("complaint"); // empty: it can be used
    QTest::newRow("both") << QByteArray(R"({"profile": "grey-8", "orientation": 3})") << u"grey-8"_s << 3
                          << QString();
    QTest::newRow("profile alone") << QByteArray(R"({"profile": "colour-6"})") << u"colour-6"_s << -1
                                   << QString();
    const auto refused = [](const char *name, const QByteArray &bytes, const QString &complaint) {
        QTest::newRow(name) << bytes << QString() << -1 << complaint;
    };
    refused("no profile", R"({"orientation": 0})", u"\"profile\" must be"_s);
    refused("other members", R"({"profile": "grey-8", "colour": 1})", u"\"colour\" is not known"_s);
    refused("a member's name of two lines", R"({"profile": "a", "\n\u001b": 1})",
            uR"("\n\x1b" is not known)"_s);
    refused("empty file", QByteArray(), u"it is no JSON object"_s);
    refused("no JSON", "profile=grey-8", u"it is no JSON object"_s);
    refused("an array", "[1]", u"it is no JSON object"_s);
    refused("profile is a number", R"({"profile": 8})", u"\"profile\" must be"_s);
    for (const char *orientation : {"4", "-1", "1.5", "1e300", "null", "\"1\""}) {
        refused(qPrintable(u"orientation "_s + QLatin1StringView(orientation)),
                QByteArray(R"({"profile": "grey-8", "orientation": )") + orientation + '}',
                u"\"orientation\" must be a whole number from 0 to 3"_s);
    }
}

void tst_PlatformParts::deviceRecord()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, orientation);
    QFETCH(QString, complaint);
    const QTemporaryDir folder;
    write(folder.filePath(u"device.json"_s), bytes);
    QString error;
    const std::optional<DeviceRecord> record = readDeviceRecord(folder.filePath(u"device.json"_s), &error);
    QCOMPARE(record.has_value(), complaint.isEmpty());
    QVERIFY2(complaint.isEmpty() ? error.isEmpty() : error.contains(complaint), qPrintable(error));
    QVERIFY(!error.contains(u'\n'));
    if (record) {
        QTEST(record->profile, "profile");
        QCOMPARE(record->orientation.value_or(-1), orientation);
    }
}

void tst_PlatformParts::noDeviceRecord()
{
    QString error;
    const std::optional<DeviceRecord> record = readDeviceRecord(u"/nowhere/device.json"_s, &error);
    QVERIFY(record);
    QCOMPARE(record->profile, u"grey-6"_s);
    QVERIFY(!record->orientation);
    QVERIFY(error.isEmpty());

    // What would block, and what would never end.
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    for (const QString &path : {pipe, u"/dev/zero"_s, folder.path()}) {
        QVERIFY(!readDeviceRecord(path, &error));
        QCOMPARE(error, u"%1 is not usable: it is no file."_s.arg(path));
    }
}

void tst_PlatformParts::battery_data()
{
    QTest::addColumn<QByteArray>("capacity");
    QTest::addColumn<int>("percent"); // -1: none
    QTest::newRow("a number") << QByteArray("73\n") << 73;
    QTest::newRow("empty") << QByteArray("0\n") << 0;
    QTest::newRow("full") << QByteArray("100\n") << 100;
    QTest::newRow("more than full") << QByteArray("104\n") << 100;
    QTest::newRow("no number") << QByteArray("unknown\n") << -1;
}

void tst_PlatformParts::battery()
{
    QFETCH(QByteArray, capacity);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(u"AC"_s));
    QVERIFY(QDir(folder.path()).mkpath(u"BAT0"_s));
    write(folder.filePath(u"AC/type"_s), "Mains\n");
    write(folder.filePath(u"BAT0/type"_s), "Battery\n");
    write(folder.filePath(u"BAT0/capacity"_s), capacity);
    QTEST(batteryCharge(folder.path()).value_or(-1), "percent");
}

void tst_PlatformParts::batteryOfAMouseDoesNotCount()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(u"hid-1"_s));
    write(folder.filePath(u"hid-1/type"_s), "Battery\n");
    write(folder.filePath(u"hid-1/scope"_s), "Device\n");
    write(folder.filePath(u"hid-1/capacity"_s), "50\n");
    QVERIFY(!batteryCharge(folder.path()));
}

void tst_PlatformParts::noPowerSupplies()
{
    QVERIFY(!batteryCharge(u"/nowhere"_s));
}

void tst_PlatformParts::integers_data()
{
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("least") << QJsonValue(0) << true;
    QTest::newRow("most") << QJsonValue(100) << true;
    QTest::newRow("too small") << QJsonValue(-1) << false;
    QTest::newRow("too large") << QJsonValue(101) << false;
    QTest::newRow("beyond int") << QJsonValue(1e300) << false;
    QTest::newRow("fraction") << QJsonValue(1.5) << false;
    QTest::newRow("whole number written as a fraction") << QJsonValue(50.0) << true;
    QTest::newRow("text") << QJsonValue(u"5"_s) << false;
    QTest::newRow("switch") << QJsonValue(true) << false;
    QTest::newRow("null") << QJsonValue() << false;
}

void tst_PlatformParts::integers()
{
    QFETCH(QJsonValue, value);
    QFETCH(bool, accepted);
    Arguments arguments(QJsonObject{{u"n"_s, value}});
    const int number = arguments.integer(u"n"_s, 0, 100);
    QVERIFY(number >= 0 && number <= 100);
    const lindenreed::remote::Reply nobody({}, 1);
    QCOMPARE(arguments.refuse(nobody), !accepted);
}

void tst_PlatformParts::missingMembers()
{
    const lindenreed::remote::Reply nobody({}, 1);
    Arguments integer((QJsonObject()));
    integer.integer(u"n"_s, 0, 1);
    QVERIFY(integer.refuse(nobody));
    Arguments boolean((QJsonObject()));
    boolean.boolean(u"on"_s);
    QVERIFY(boolean.refuse(nobody));
    Arguments text((QJsonObject()));
    text.text(u"name"_s);
    QVERIFY(text.refuse(nobody));
    Arguments word(QJsonObject{{u"name"_s, u"c"_s}});
    word.word(u"name"_s, {u"a"_s, u"b"_s});
    QVERIFY(word.refuse(nobody));
}

void tst_PlatformParts::optionalMembers()
{
    Arguments arguments((QJsonObject()));
    QVERIFY(!arguments.optionalInteger(u"n"_s, 0, 1));
    QVERIFY(!arguments.optionalBoolean(u"on"_s));
    QCOMPARE(arguments.integerOr(u"n"_s, 0, 1, 7), 7);
    QVERIFY(!arguments.refuse(lindenreed::remote::Reply({}, 1)));
}

void tst_PlatformParts::keyNames()
{
    const QStringList names = lindenreed::device::keys::names();
    QCOMPARE(names.size(), 11);
    for (const QString &name : names)
        QVERIFY(lindenreed::device::keys::named(name));
    QVERIFY(!lindenreed::device::keys::named(u"Menu"_s));
}

void tst_PlatformParts::idleNeedsQuiet()
{
    bool busy = true;
    int answers = 0;
    int looks = 0;
    bool idle = false;
    IdleWatcher watcher([&] {
        ++looks;
        return busy;
    });
    watcher.wait(
        40ms, 25s, [] { return false; },
        [&](bool quiet) {
            ++answers;
            idle = quiet;
        });
    bool abandonedAnswered = false;
    watcher.wait(
        0ms, 25s, [] { return true; }, [&](bool) { abandonedAnswered = true; });
    QTRY_VERIFY(looks >= 10); // far more than the quiet that is wanted
    QCOMPARE(answers, 0);
    busy = false;
    QTRY_COMPARE_WITH_TIMEOUT(answers, 1, 25'000);
    QVERIFY(idle);
    QVERIFY(!abandonedAnswered);
}

void tst_PlatformParts::idlePatienceEnds()
{
    bool busy = true;
    QList<bool> answers;
    const auto never = [] { return false; };
    IdleWatcher watcher([&] { return busy; });
    QElapsedTimer time;
    time.start();
    watcher.wait(0ms, 100ms, never, [&](bool quiet) { answers.append(quiet); });
    QTRY_COMPARE(answers, QList<bool>{false});
    QVERIFY(time.elapsed() >= 100);
    busy = false; // a wait that was given up harms no other
    IdleWatcher patient([] { return false; });
    patient.wait(0ms, 25s, never, [&](bool quiet) { answers.append(quiet); });
    QTRY_COMPARE_WITH_TIMEOUT(answers, QList<bool>({false, true}), 25'000);
}

void tst_PlatformParts::processesCount()
{
    // Started by another thread, which goes on.
    QThread starter;
    starter.start();
    QProcess process;
    process.moveToThread(&starter);
    const auto onStarter = [&process](const auto &work) {
        QMetaObject::invokeMethod(&process, work, Qt::BlockingQueuedConnection);
    };
    const auto end = qScopeGuard([&] {
        onStarter([&] {
            process.kill();
            process.waitForFinished();
            process.moveToThread(QCoreApplication::instance()->thread());
        });
        starter.quit();
        starter.wait();
    });
    qint64 id = 0;
    onStarter([&] {
        process.start(u"sh"_s, {u"-c"_s, u"while :; do :; done"_s});
        id = process.waitForStarted() ? process.processId() : 0;
    });
    QVERIFY(id > 0);
    QTRY_VERIFY(othersWork());
    QCOMPARE(::kill(pid_t(id), SIGSTOP), 0);
    QTRY_VERIFY(!othersWork());
}

QTEST_GUILESS_MAIN(tst_PlatformParts)
#include "tst_platform_parts.moc"
