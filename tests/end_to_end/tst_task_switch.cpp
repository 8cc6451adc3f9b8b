// The picture frame as one task among others: how it starts after another one, and how it gives way to one.

#include "first_show.h"
#include "launcher_run.h"

#include <control_client.h>
#include <run_folder.h>

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using lindenreed::remote::ControlClient;

class tst_TaskSwitch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void orientationOfThePreviousTask_data();
    void orientationOfThePreviousTask();
    void firstTurnEvent();
    void backgroundAndForeground();
    void machineThatIsTheDevice();

private:
    bool start(QProcess &launcher, const QStringList &options);
    QJsonObject state(const QString &part) { return m_client->ask(u"state"_s).value(part).toObject(); }
    bool does(const QString &command, const QJsonObject &members = {})
    {
        return m_client->ask(command, members).value("ok"_L1).toBool();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
    QString m_root;
    std::optional<ControlClient> m_client;
};

void tst_TaskSwitch::init()
{
    m_client.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
    m_root = m_place->path(u"device"_s);
}

bool tst_TaskSwitch::start(QProcess &launcher, const QStringList &options)
{
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_place->runtimeFolder()));
    m_place->start(launcher, QStringList{u"--root"_s, m_root, u"--headless"_s} + options);
    const auto connected = [&] {
        const auto folder = lindenreed::remote::runFolderOf(m_root, nullptr);
        m_client = folder ? ControlClient::connectTo(*folder, nullptr) : std::nullopt;
        return m_client.has_value();
    };
    return QTest::qWaitFor(connected, 20'000) && does(u"idle"_s);
}

void tst_TaskSwitch::orientationOfThePreviousTask_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("told"); // to the frame
    QTest::addColumn<int>("orientation");

    // A frame that begins with its overview is upright, whatever came before.
    QTest::newRow("none") << QStringList{} << u"null"_s << 0;
    QTest::newRow("upright") << QStringList{u"--orientation"_s, u"0"_s} << u"orientation 0"_s << 0;
    QTest::newRow("turned right") << QStringList{u"--orientation"_s, u"1"_s} << u"orientation 1"_s << 0;
    QTest::newRow("turned left") << QStringList{u"--orientation"_s, u"2"_s} << u"orientation 2"_s << 0;
    QTest::newRow("upside down where that cannot be")
        << QStringList{u"--orientation"_s, u"3"_s} << u"orientation 3"_s << 0;
    QTest::newRow("upside down where that can be")
        << QStringList{u"--orientation"_s, u"3"_s, u"--profile"_s, u"grey-8"_s} << u"orientation 3"_s << 3;
}

void tst_TaskSwitch::orientationOfThePreviousTask()
{
    QFETCH(QStringList, options);
    QFETCH(QString, told);
    QFETCH(int, orientation);

    QProcess launcher;
    QVERIFY(start(launcher, options));
    QStringList seen;
    const QJsonArray calls = m_client->ask(u"journal"_s).value("calls"_L1).toArray();
    for (const QJsonValue &call : calls) {
        if (call.toObject().value("name"_L1) == "GetTaskFramebufferInfo"_L1)
            seen.append(call.toObject().value("result"_L1).toString());
    }
    QCOMPARE(seen, QStringList{told});
    QCOMPARE(state(u"screen"_s).value("orientation"_L1).toInt(), orientation);
    QVERIFY(does(u"quit"_s));
    QCOMPARE(LauncherPlace::end(launcher).status, 0);
}

// How the task before it left the screen is not known, so the first turn clears the panel, wherever it leads.
void tst_TaskSwitch::firstTurnEvent()
{
    QProcess launcher;
    QVERIFY(start(launcher, {}));
    const QImage overview = m_client->screenshot().copy(0, 60, 758, 964); // without the clock
    QVERIFY(does(u"orientation"_s, {{u"value"_s, 0}}));
    QVERIFY(does(u"idle"_s, {{u"ms"_s, 60}}));
    QCOMPARE(m_client->screenshot().copy(0, 60, 758, 964), overview);
    QStringList cleared;
    const QJsonArray calls = m_client->ask(u"journal"_s).value("calls"_L1).toArray();
    for (const QJsonValue &call : calls) {
        if (call.toObject().value("name"_L1) == "ClearScreen"_L1)
            cleared.append(call.toObject().value("thread"_L1).toString());
    }
    QCOMPARE(cleared, QStringList{u"main"_s});
    QVERIFY(does(u"quit"_s));
    QCOMPARE(LauncherPlace::end(launcher).status, 0);
}

void tst_TaskSwitch::backgroundAndForeground()
{
    QProcess launcher;
    QVERIFY(start(launcher, {}));
    const QJsonObject ownLight = state(u"light"_s);
    QVERIFY(startFirstShow(*m_client));
    QVERIFY(does(u"idle"_s));
    const QJsonObject showLight = state(u"light"_s);
    QVERIFY(showLight != ownLight);
    QCOMPARE(state(u"power"_s).value("auto_power_off"_L1), QJsonValue(false));

    for (int round = 0; round < 3; ++round) {
        QVERIFY(does(u"background"_s));
        QCOMPARE(state(u"light"_s), ownLight);
        QCOMPARE(state(u"power"_s).value("auto_power_off"_L1), QJsonValue(true));
        QVERIFY(does(u"foreground"_s));
        QCOMPARE(state(u"power"_s).value("auto_power_off"_L1), QJsonValue(false));
    }
    QVERIFY(does(u"quit"_s));
    const LauncherEnd end = LauncherPlace::end(launcher);
    QVERIFY2(end.status == 0, end.errors.constData());
}

// Inside a device is a machine that has the folders itself, once it no longer looks held.
void tst_TaskSwitch::machineThatIsTheDevice()
{
    const QString script
        = u"rm /devroot/lock; mkdir -m 700 /mnt/r; XDG_RUNTIME_DIR=/mnt/r; export XDG_RUNTIME_DIR; "
          "%1 --direct --headless --profile grey-8 --orientation 3 & until %2 --root / idle; do :; done "
          "2>/dev/null; "
          "%2 --root / state; %2 --root / screenshot /mnt/ext1/shot.png && test -s /mnt/ext1/shot.png && "
          "%2 --root / quit; wait $!; echo $?; ls -A /devroot/run /mnt/r/picture_stand | wc -w"_s.arg(
              LauncherPlace::builtCommand(u"slate-run"_s), LauncherPlace::builtCommand(u"slatectl"_s));
    const LauncherEnd end = m_place->runScript(script);
    const QByteArrayList lines = end.output.trimmed().split('\n');
    QVERIFY2(lines.size() > 3, end.errors.constData());
    QJsonObject shown;
    for (const QByteArray &line : lines) {
        const QJsonObject answer = QJsonDocument::fromJson(line).object();
        if (answer.contains("screen"_L1))
            shown = answer.value("screen"_L1).toObject();
    }
    QCOMPARE(shown.value("orientation"_L1).toInt(), 3);
    QCOMPARE(lines.at(lines.size() - 2), QByteArray("0"));
    QCOMPARE(lines.constLast(), QByteArray("2")); // the names of the two folders, which are empty
    QCOMPARE(end.status, 0);
}

QTEST_GUILESS_MAIN(tst_TaskSwitch)
#include "tst_task_switch.moc"
