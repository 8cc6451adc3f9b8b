// The playlist workflow on the real program, as a user and a caring observer see it: by touch and by
// assistive press, in what the screen tells, in the device's journal and in the database file.

#include "named_screen.h"
#include "stored_database.h"

#include <QDir>
#include <QSet>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString messageOfTwo = u"2 pictures were added to New playlist"_s;

} // namespace

class tst_Workflow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void states_data();
    void states();
    void transitions_data();
    void transitions();
    void firstRun_data();
    void firstRun();
    void lastPlaylistDeleted();
    void vanishedFiles();
    void leftWhilePicking();
    void picturesThatAreThereAlready();
    void ownSettingsOfAPlaylist();
    void typedTitle();
    void pickingForNothing();
    void keysAlone();

private:
    bool start(const QByteArray &profile = "grey-6");
    static QStringList stored()
    {
        return stored_database::rows(u"SELECT title, (SELECT count(*) FROM playlist_images WHERE "
                                     "playlist_images.playlist = playlists.id) FROM playlists ORDER BY id"_s);
    }
    static QStringList settings(const QString &name)
    {
        return stored_database::rows(
            u"SELECT playlist, value FROM settings WHERE name = '%1' ORDER BY playlist"_s.arg(name));
    }
    bool showRuns();

    std::unique_ptr<NamedScreen> m_device;
    QByteArrayList m_expectedErrors;
};

void tst_Workflow::init()
{
    stored_database::remove();
    m_expectedErrors.clear();
    m_device = std::make_unique<NamedScreen>();
}

void tst_Workflow::cleanup()
{
    const QByteArrayList lines = m_device->unexpectedErrors();
    QVERIFY2(lines.size() == m_expectedErrors.size(), lines.join('\n').constData());
    for (qsizetype i = 0; i < lines.size(); ++i)
        QVERIFY2(lines.at(i).contains(m_expectedErrors.at(i)), lines.at(i).constData());
    m_device.reset();
}

bool tst_Workflow::start(const QByteArray &profile)
{
    QFile record(u"/devroot/device.json"_s);
    if (!record.open(QIODevice::WriteOnly) || record.write("{\"profile\":\"" + profile + "\"}") < 0)
        return false;
    record.close();
    return m_device->start();
}

bool tst_Workflow::showRuns()
{
    const QJsonObject state = m_device->state();
    const QJsonArray timers = state.value("timers"_L1).toArray();
    return state.value("panel"_L1).toObject().value("type"_L1).toInt() != 1
        && std::ranges::any_of(timers, [](const QJsonValue &timer) {
               return timer.toObject().value("name"_L1) == "nextImageEvent"_L1;
           });
}

void tst_Workflow::states_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("needsSelection");
    QTest::addColumn<QStringList>("inStore");

    const QStringList one{u"@DefaultPlaylist|10"_s};
    const QString open = u"touch Photos. 10"_s;
    QTest::newRow("overview") << QStringList() << u"New playlist"_s << false << one;
    QTest::newRow("playlist") << QStringList{open} << u"Play"_s << false << one;
    QTest::newRow("playlist, selecting")
        << QStringList{open, u"hold 01.jpg"_s, u"touch Select multiple"_s} << u"Delete"_s << true << one;
    QTest::newRow("adding") << QStringList{u"hold Photos. 10"_s, u"touch Add pictures to playlist"_s,
                                           u"touch This device"_s}
                            << u"Add pictures"_s << true << one;
    QTest::newRow("creating") << QStringList{u"touch New playlist"_s, u"touch Continue"_s}
                              << u"Create playlist"_s << true << one + QStringList{u"New playlist|0"_s};
}

void tst_Workflow::states()
{
    QFETCH(QStringList, steps);
    QFETCH(QString, button);
    QFETCH(bool, needsSelection);
    QFETCH(QStringList, inStore);

    QFile::copy(u"/mnt/ext1/Photo/01.jpg"_s, u"/mnt/ext1/loose.jpg"_s); // beside what the playlist has
    QVERIFY(start());
    QVERIFY(m_device->walk(steps));
    QCOMPARE(m_device->isEnabled(button), !needsSelection);
    QCOMPARE(stored(), inStore);
    const QImage before = m_device->screenshot();
    if (needsSelection) {
        QVERIFY(
            m_device->act(u"touch "_s + button)); // a disabled button lets nothing through to the list either
        QCOMPARE(m_device->screenshot(), before);
        QVERIFY(m_device->act(u"touch "_s
                              + (m_device->names().contains(u"01.jpg"_s) ? u"01.jpg"_s : u"loose.jpg"_s)));
        QVERIFY(m_device->isEnabled(button));
    }
    QVERIFY(QFile::remove(u"/mnt/ext1/loose.jpg"_s));
}

void tst_Workflow::transitions_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("event");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<int>("views"); // that are gone to
    QTest::addColumn<bool>("withLine");

    const QStringList overview;
    const QStringList playlist{u"touch Photos. 10"_s};
    const QStringList selecting = playlist + QStringList{u"hold 01.jpg"_s, u"touch Select multiple"_s};
    const QStringList creating{u"touch New playlist"_s, u"touch Continue"_s};
    const QStringList adding{u"hold Photos. 10"_s, u"touch Add pictures to playlist"_s};
    const QStringList all{u"@DefaultPlaylist|10"_s};
    const QStringList pick{u"touch 01.jpg"_s, u"touch 02.jpg"_s};
    const QStringList atOverview{u"Picture frame"_s, u"New playlist"_s, u"Photos. 10"_s};
    const QStringList atPlaylist{u"Photos"_s, u"Play"_s, u"Back"_s, u"01.jpg"_s};
    const QStringList atPicker{u"Cancel"_s, u"All"_s, u"Photo"_s, u"0 / 10"_s};

    const auto row
        = [](const char *name, const QStringList &before, const QStringList &event, const QStringList &shown,
             const QStringList &after, int views = 1, bool withLine = false) {
              QTest::newRow(name) << before << event << shown << after << views << withLine;
          };
    row("overview, tap on a row", overview, playlist, atPlaylist, all);
    row("overview, assistive press on a row", overview, {u"press Photos. 10"_s}, atPlaylist, all);
    row("overview, dialog with a title", overview, creating, atPicker + QStringList{u"Create playlist"_s},
        all + QStringList{u"New playlist|0"_s});
    row("overview, menu, add", overview, adding, {u"Cancel"_s, u"Add pictures"_s}, all);
    row("overview, menu, rename", overview, {u"hold Photos. 10"_s, u"touch Rename"_s, u"touch OK"_s},
        {u"Photos. 10"_s, u"New playlist"_s}, {u"Photos|10"_s}, 0);
    row("playlist, plus", playlist, {u"touch Add pictures"_s}, {u"Cancel"_s, u"Add pictures"_s}, all, 1,
        true);
    row("playlist, back", playlist, {u"touch Back"_s}, atOverview, all);
    row("playlist, select several", playlist, {u"hold 01.jpg"_s, u"touch Select multiple"_s},
        {u"Cancel"_s, u"Delete"_s, u"0 / 10"_s}, all, 0);
    row("playlist, delete one by its menu", playlist, {u"hold 01.jpg"_s, u"touch Delete"_s},
        {u"Photos"_s, u"Play"_s, u"02.jpg"_s}, {u"@DefaultPlaylist|9"_s}, 0);
    row("selecting, cancel", selecting, {u"touch 01.jpg"_s, u"touch Cancel"_s}, atPlaylist, all, 0);
    row("selecting, delete", selecting, {u"touch 01.jpg"_s, u"touch 03.jpg"_s, u"touch Delete"_s},
        {u"Photos"_s, u"Play"_s, u"02.jpg"_s}, {u"@DefaultPlaylist|8"_s}, 0);
    row("creating, add", creating, pick + QStringList{u"touch Create playlist"_s},
        {u"New playlist"_s, u"Play"_s, u"01.jpg"_s, messageOfTwo}, all + QStringList{u"New playlist|2"_s});
    row("creating, cancel", creating, pick + QStringList{u"touch Cancel"_s}, atOverview, all);
    row("adding, cancel", adding, {u"touch Cancel"_s}, atPlaylist, all);
}

void tst_Workflow::transitions()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, event);
    QFETCH(QStringList, shown);
    QFETCH(QStringList, after);
    QFETCH(int, views);
    QFETCH(bool, withLine);

    QVERIFY(start());
    QVERIFY(m_device->walk(before));
    const qsizetype calls = m_device->journal().size();
    QVERIFY(m_device->walk(event));
    const QSet<QString> found = m_device->names();
    for (const QString &name : std::as_const(shown))
        QVERIFY2(found.contains(name), qUtf8Printable(name));
    QCOMPARE(stored(), after);
    if (withLine)
        m_expectedErrors.append("ReferenceError: select_photos_loader is not defined");

    // Each view has the panel. No show is begun on any of these ways, and no picture's file is touched.
    const QJsonArray journal = m_device->journal();
    QStringList panels;
    for (qsizetype i = calls; i < journal.size(); ++i) {
        const QJsonObject call = journal.at(i).toObject();
        QVERIFY(call.value("name"_L1) != "SetAutoPowerOff"_L1);
        if (call.value("name"_L1) == "SetPanelType"_L1)
            panels.append(call.value("arguments"_L1).toArray().first().toString());
    }
    QCOMPARE(panels, QStringList(views, u"1"_s));
    const QJsonObject state = m_device->state();
    QCOMPARE(state.value("panel"_L1).toObject().value("type"_L1).toInt(), 1);
    QVERIFY(state.value("power"_L1).toObject().value("auto_power_off"_L1).toBool());
    QCOMPARE(QDir(u"/mnt/ext1/Photo"_s).entryList(QDir::Files).size(), 10);
}

void tst_Workflow::firstRun_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<int>("interval");
    QTest::addColumn<bool>("starts");

    const QStringList first{u"press Start playback"_s};
    const QStringList second = first + QStringList{u"touch Continue"_s};
    const QStringList chosen = second + QStringList{u"touch 30 seconds"_s, u"touch 5 seconds"_s};
    const QStringList minutes = second + QStringList{u"touch 30 seconds"_s, u"touch 2\u00a0minutes"_s};
    QTest::newRow("left at the first dialog") << first + QStringList{u"outside"_s} << 0 << false;
    QTest::newRow("left at the second dialog") << second + QStringList{u"outside"_s} << 0 << false;
    QTest::newRow("left with an interval") << chosen + QStringList{u"outside"_s} << 5 << false;
    QTest::newRow("nothing chosen") << second + QStringList{u"touch Start playback"_s} << 0 << true;
    QTest::newRow("seconds chosen") << chosen + QStringList{u"touch Start playback"_s} << 5 << true;
    QTest::newRow("minutes chosen") << minutes + QStringList{u"touch Start playback"_s} << 120 << true;
}

void tst_Workflow::firstRun()
{
    QFETCH(QStringList, steps);
    QFETCH(int, interval);
    QFETCH(bool, starts);

    QVERIFY(start());
    // The dialog says 30 seconds whatever the setting is.
    QVERIFY(
        stored_database::execute({u"UPDATE settings SET value = '45' WHERE name = 'change_picture_time'"_s}));
    QVERIFY(m_device->walk(steps));
    QCOMPARE(settings(u"change_picture_time"_s),
             interval == 0 ? QStringList{u"-1|45"_s} : (QStringList{u"-1|45"_s, u"1|%1"_s.arg(interval)}));
    if (interval != 0)
        QCOMPARE(settings(u"change_picture_time_index"_s).constLast(), interval < 60 ? u"1|0"_s : u"1|1"_s);
    QCOMPARE(settings(u"is_first_run"_s).constFirst(), starts ? u"-1|0"_s : u"-1|1"_s);
    QCOMPARE(showRuns(), starts);
    if (starts) {
        const QJsonArray timers = m_device->state().value("timers"_L1).toArray();
        for (const QJsonValue &timer : timers) {
            if (timer.toObject().value("name"_L1) == "nextImageEvent"_L1)
                QCOMPARE(timer.toObject().value("interval_ms"_L1).toInt(),
                         1000 * (interval == 0 ? 45 : interval));
        }
    } else {
        QVERIFY(m_device->names().contains(u"Photos. 10"_s) && !m_device->names().contains(u"Continue"_s));
        QVERIFY(m_device->press(u"Start playback"_s)); // and it asks again
        QVERIFY(m_device->names().contains(u"Continue"_s));
    }
}

void tst_Workflow::lastPlaylistDeleted()
{
    QVERIFY(start());
    QVERIFY(m_device->walk({u"hold Photos. 10"_s, u"touch Delete"_s}));
    QCOMPARE(stored(), QStringList());
    QVERIFY(m_device->names().contains(u"There are no playlists yet. Tap New playlist to make one."_s));
    QVERIFY(m_device->isEnabled(u"New playlist"_s));
    QVERIFY(m_device->walk(
        {u"touch New playlist"_s, u"touch Continue"_s, u"touch 02.jpg"_s, u"touch Create playlist"_s}));
    QCOMPARE(stored(), QStringList{u"New playlist|1"_s});
    QVERIFY(m_device->names().contains(u"1 picture was added to New playlist"_s));
}

void tst_Workflow::vanishedFiles()
{
    QVERIFY(QDir().rename(u"/mnt/ext1/Photo"_s, u"/mnt/ext1/Photo.kept"_s));
    const bool started = start();
    const bool disabled = started && !m_device->isEnabled(u"Start playback"_s);
    const bool opened = started && m_device->act(u"touch Photos. 0"_s)
        && m_device->names().contains(u"There are no pictures yet. Tap + to add some."_s)
        && m_device->isEnabled(u"Play"_s);
    const bool played
        = opened && m_device->walk({u"touch Play"_s, u"touch Continue"_s, u"touch Start playback"_s});
    QVERIFY(QDir().rename(u"/mnt/ext1/Photo.kept"_s, u"/mnt/ext1/Photo"_s));
    QVERIFY(disabled);
    QVERIFY(opened);
    QVERIFY(played);
    QVERIFY(m_device->state().value("panel"_L1).toObject().value("type"_L1).toInt() != 1);
    QVERIFY(!showRuns()); // there is no picture to run
    QCOMPARE(stored(), QStringList{u"@DefaultPlaylist|10"_s});
    m_expectedErrors.append("Failed to get image from provider: image://image_provider/");
}

void tst_Workflow::leftWhilePicking()
{
    QVERIFY(start());
    QVERIFY(m_device->walk({u"touch New playlist"_s, u"touch Continue"_s, u"touch 01.jpg"_s}));
    QVERIFY(m_device->does(u"quit"_s));
    QVERIFY(m_device->program().state() == QProcess::NotRunning || m_device->program().waitForFinished());
    QCOMPARE(stored(), (QStringList{u"@DefaultPlaylist|10"_s, u"New playlist|0"_s}));
    m_device = std::make_unique<NamedScreen>();
    QVERIFY(start());
    QVERIFY(m_device->names().contains(u"New playlist. 0"_s));
}

void tst_Workflow::picturesThatAreThereAlready()
{
    QVERIFY(start());
    QVERIFY(m_device->walk({u"touch New playlist"_s, u"touch Continue"_s, u"touch 01.jpg"_s,
                            u"touch 02.jpg"_s, u"touch Create playlist"_s, u"touch Add pictures"_s}));
    m_expectedErrors.append("ReferenceError: select_photos_loader is not defined");
    QVERIFY(m_device->names().contains(u"0 / 8"_s));
    QVERIFY(m_device->act(u"touch 01.jpg"_s)); // greyed
    QVERIFY(m_device->names().contains(u"0 / 8"_s) && !m_device->isEnabled(u"Add pictures"_s));
    QVERIFY(m_device->act(u"touch All"_s));
    QVERIFY(m_device->names().contains(u"8 / 8"_s));
    QVERIFY(m_device->act(u"touch Add pictures"_s));
    QVERIFY(m_device->names().contains(u"8 pictures were added to New playlist"_s));
    QCOMPARE(stored(), (QStringList{u"@DefaultPlaylist|10"_s, u"New playlist|10"_s}));
    QCOMPARE(stored_database::rows(u"SELECT count(DISTINCT url) FROM playlist_images WHERE playlist = 2"_s),
             QStringList{u"10"_s});
}

void tst_Workflow::ownSettingsOfAPlaylist()
{
    QVERIFY(start());
    QVERIFY(stored_database::execute({u"UPDATE settings SET value = '0' WHERE name = 'is_first_run'"_s,
                                      u"INSERT INTO settings(name, value, playlist) VALUES "
                                      "('change_picture_time', '17', 1)"_s}));
    QVERIFY(m_device->press(u"Start playback"_s));
    QVERIFY(showRuns());
    const QJsonArray timers = m_device->state().value("timers"_L1).toArray();
    for (const QJsonValue &timer : timers) {
        if (timer.toObject().value("name"_L1) == "nextImageEvent"_L1)
            QCOMPARE(timer.toObject().value("interval_ms"_L1).toInt(), 17'000);
    }
}

void tst_Workflow::typedTitle()
{
    QVERIFY(start());
    QVERIFY(m_device->act(u"touch New playlist"_s));
    const QString title = u"  <b>50 %s</b> %2 & \"x\""_s;
    QVERIFY(m_device->does(u"type"_s, {{u"text"_s, title}})); // in place of what is selected
    QVERIFY(m_device->walk({u"touch Continue"_s, u"touch 01.jpg"_s, u"touch Create playlist"_s}));
    QCOMPARE(stored().constLast(), title + u"|1"_s);
    QVERIFY(m_device->names().contains(title));
    QVERIFY(m_device->names().contains(u"1 picture was added to "_s + title));
    QVERIFY(m_device->act(u"touch Back"_s));
    QVERIFY(m_device->names().contains(title + u". 1"_s));
}

void tst_Workflow::pickingForNothing()
{
    // The one way on which bad luck ends the program: nothing that is stored is lost by it.
    QVERIFY(start());
    QVERIFY(stored_database::execute({u"CREATE TRIGGER refuse BEFORE INSERT ON playlists BEGIN "
                                      "SELECT RAISE(ABORT, 'refused'); END"_s}));
    const QStringList before = stored();
    QVERIFY(m_device->walk({u"touch New playlist"_s, u"touch Continue"_s, u"touch 01.jpg"_s}));
    QVERIFY(stored_database::execute({u"DROP TRIGGER refuse"_s}));
    m_device->ask(u"press"_s, {{u"name"_s, u"Create playlist"_s}});
    QVERIFY(m_device->program().state() == QProcess::NotRunning || m_device->program().waitForFinished());
    QCOMPARE(m_device->program().exitStatus(), QProcess::CrashExit);
    QVERIFY(m_device->errors().contains("vector::_M_range_check"));
    QCOMPARE(stored(), before);
    QCOMPARE(stored_database::rows(u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
    m_device = std::make_unique<NamedScreen>();
    QVERIFY(start());
    QVERIFY(m_device->names().contains(u"Photos. 10"_s));
}

void tst_Workflow::keysAlone()
{
    QVERIFY(start("keys-6"));
    QVERIFY(m_device->act(u"key centre"_s)); // the frame is on the first playlist
    QVERIFY(m_device->names().contains(u"Back"_s));
    QVERIFY(m_device->press(u"Back"_s));
    QVERIFY(m_device->walk({u"key down"_s, u"key centre"_s})); // from the last playlist to the button
    QVERIFY(m_device->names().contains(u"Continue"_s));
    QVERIFY(m_device->act(u"key back"_s)); // the keyboard
    QVERIFY(m_device->act(u"key back"_s)); // the dialog
    QVERIFY(!m_device->names().contains(u"Continue"_s));
    QVERIFY(m_device->walk(
        {u"key up"_s, u"key right"_s, u"key centre"_s})); // back to the row, and to its play sign
    QVERIFY(m_device->names().contains(u"Continue"_s));
    QVERIFY(m_device->act(u"key centre"_s));
    QVERIFY(m_device->names().contains(u"Change picture every"_s));
    QVERIFY(m_device->walk(
        {u"key back"_s, u"key left"_s, u"key up"_s, u"key down"_s})); // the header, and the row again
    QVERIFY(m_device->act(u"key centre"_s));
    QVERIFY(m_device->names().contains(u"Back"_s));
}

QTEST_GUILESS_MAIN(tst_Workflow)
#include "tst_workflow.moc"
