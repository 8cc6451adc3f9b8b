// The real program on a disk that is full, or fails, at one call for the database's files: at the start, and
// in what a user does.

#include "faulty_device.h"
#include "stored_database.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString planPath = u"/devroot/tmp/plan"_s;

QStringList stored()
{
    return stored_database::rows(u"SELECT 'title', id, title, '' FROM playlists UNION ALL "
                                 "SELECT 'picture', playlist, url, '' FROM playlist_images UNION ALL "
                                 "SELECT 'setting', playlist, name, value FROM settings"_s);
}

bool isSound()
{
    return stored_database::rows(u"PRAGMA integrity_check"_s) == QStringList{u"ok"_s};
}

bool isLong()
{
    return qEnvironmentVariableIsSet("SLATE_LONG");
}

} // namespace

class tst_FaultyDatabase : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { qInfo("%d faults", m_faults); }
    void cleanup() { m_device.reset(); }

    void start_data();
    void start();
    void whatAUserDoes_data();
    void whatAUserDoes();

private:
    void begin();
    bool endsForAMissingPlaylist();
    bool meet(const QString &step, const QString &lines);
    QString nameOfTheFirst();
    void goesOnAfterwards(const QStringList &titles);

    FaultPlan *m_plan = nullptr;
    std::unique_ptr<FaultyDevice> m_device;
    QByteArray m_database; ///< as the first start leaves it
    QStringList m_lines;
    bool m_ended = false; ///< the program, in the last step
    int m_position = 0;
    int m_error = 0;
    int m_faults = 0;
};

void tst_FaultyDatabase::initTestCase()
{
    m_plan = FaultPlan::at(QFile::encodeName(planPath));
    QVERIFY(m_plan);
    stored_database::remove();
    begin();
    QVERIFY(m_device->start() && m_device->ends());
    QFile file(stored_database::path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_database = file.readAll();
    m_lines = stored();
    QVERIFY(m_lines.size() > 30);
}

/// No fault yet.
void tst_FaultyDatabase::begin()
{
    m_plan->arm(FaultPlan::never, 0);
    m_device = std::make_unique<FaultyDevice>(stored_database::folder, planPath);
}

void tst_FaultyDatabase::start_data()
{
    QTest::addColumn<bool>("first");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("error");

    const auto add = [](bool first, int position, int error) {
        QTest::addRow("%s start, call %d, %s", first ? "first" : "later", position,
                      error == EIO ? "I/O error" : "disk full")
            << first << position << error;
    };
    if (!isLong()) {
        add(true, 20, ENOSPC);
        add(true, 60, EIO);
        add(false, 5, EIO);
        return;
    }
    for (const int error : {ENOSPC, EIO}) {
        for (int position = 0; position < 200; ++position)
            add(true, position, error);
        for (int position = 0; position < 40; ++position)
            add(false, position, error);
    }
}

void tst_FaultyDatabase::start()
{
    QFETCH(bool, first);
    QFETCH(int, position);
    QFETCH(int, error);

    stored_database::remove();
    QFile file(stored_database::path);
    if (!first)
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(m_database) == m_database.size());
    file.close();
    begin();
    m_plan->arm(position, error);
    QVERIFY(m_device->start());
    const bool failed = m_plan->hasFailed();
    m_plan->arm(FaultPlan::never, 0);
    m_faults += failed ? 1 : 0;
    QVERIFY(failed || isLong());
    QVERIFY(m_device->names().contains(u"New playlist"_s));
    QVERIFY(m_device->ends());
    QVERIFY(isSound());
    if (!first)
        QCOMPARE(stored(), m_lines);
    // The settings are the mark of a database that has been filled, with what could be had.
    const bool filled = stored_database::rows(u"SELECT count(*) FROM settings"_s) == QStringList{u"20"_s};
    goesOnAfterwards({});
    const QStringList now = stored();
    for (const QString &line : std::as_const(m_lines)) {
        if (line.startsWith("setting"_L1) || (line.startsWith("title"_L1) && !filled))
            QVERIFY2(now.contains(line), qUtf8Printable(line));
    }
}

void tst_FaultyDatabase::whatAUserDoes_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("error");

    for (int position = isLong() ? 0 : 5; position < (isLong() ? 40 : 14); position += isLong() ? 1 : 8) {
        for (const int error : {ENOSPC, EIO}) {
            if (isLong() || (error == EIO) == (position == 5))
                QTest::addRow("call %d, %s", position, error == EIO ? "I/O error" : "disk full")
                    << position << error;
        }
    }
}

/// A playlist whose row came through although its storing was told as failed has no number in the program:
/// the message of the pictures that were added asks for it in vain.
bool tst_FaultyDatabase::endsForAMissingPlaylist()
{
    QProcess &program = m_device->program();
    return (program.state() == QProcess::NotRunning || program.waitForFinished())
        && program.readAllStandardError().contains("vector::_M_range_check");
}

/// Does a step, of whose calls one fails. Lines that match `lines` may come and go by it; the others stay.
bool tst_FaultyDatabase::meet(const QString &step, const QString &lines)
{
    const QStringList before = stored();
    m_plan->arm(m_position, m_error);
    const bool done = m_device->act(step);
    const bool failed = m_plan->hasFailed();
    m_plan->arm(FaultPlan::never, 0);
    m_faults += failed ? 1 : 0;
    if (!failed && !isLong()) {
        qWarning("%s has no call %d", qPrintable(step), m_position);
        return false;
    }
    const QStringList after = stored();
    const QRegularExpression mayChange(u'^' + lines + u'$');
    const auto rest = [&](QStringList all) {
        all.removeIf([&](const QString &line) { return mayChange.match(line).hasMatch(); });
        return all;
    };
    m_ended = !done && endsForAMissingPlaylist();
    const bool running = m_ended || m_device->isRunning();
    const bool sound = isSound();
    if ((!done && !m_ended) || !running || rest(before) != rest(after) || !sound) {
        qWarning("%s: %s, %s, %s; there was\n%s\nand there is\n%s", qPrintable(step),
                 done ? "done" : "not done", running ? "running" : "ended", sound ? "sound" : "not sound",
                 qPrintable(before.join(u'\n')), qPrintable(after.join(u'\n')));
        return false;
    }
    return true;
}

/// The first playlist's, with how many of its pictures are there.
QString tst_FaultyDatabase::nameOfTheFirst()
{
    const QSet<QString> names = m_device->names();
    const auto found
        = std::ranges::find_if(names, [](const QString &name) { return name.startsWith("Photos. "_L1); });
    return found == names.cend() ? QString() : *found;
}

void tst_FaultyDatabase::whatAUserDoes()
{
    QFETCH(int, position);
    QFETCH(int, error);
    m_position = position;
    m_error = error;

    stored_database::remove();
    QFile file(stored_database::path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(m_database) == m_database.size());
    file.close();
    begin();
    QVERIFY(m_device->start());

    QVERIFY(m_device->walk({u"press Slideshow settings"_s, u"touch Change picture every"_s}));
    QVERIFY(meet(u"touch 5 seconds"_s, u"setting\\|-1\\|change_picture_time(_index)?\\|.*"_s));
    QVERIFY(stored().contains(u"setting|-1|change_picture_time|5"_s)
            || stored().contains(u"setting|-1|change_picture_time|30"_s));
    QVERIFY(m_device->walk({u"press Back"_s, u"touch New playlist"_s}));
    QVERIFY(meet(u"touch Continue"_s, u"title\\|2\\|New playlist\\|"_s));
    if (!stored().contains(u"title|2|New playlist|"_s)) // pictures cannot be added, and it works again
        QVERIFY(m_device->walk({u"touch Cancel"_s, u"touch New playlist"_s, u"touch Continue"_s}));
    QVERIFY(m_device->walk({u"touch 01.jpg"_s, u"touch 02.jpg"_s}));
    QVERIFY(meet(u"touch Create playlist"_s, u"picture\\|(2|-1)\\|/mnt/ext1/Photo/0[12].jpg\\|"_s));
    if (m_ended) {
        goesOnAfterwards({u"@DefaultPlaylist"_s, u"New playlist"_s});
        return;
    }
    QVERIFY(m_device->act(u"press Back"_s));
    QVERIFY(m_device->walk({u"touch "_s + nameOfTheFirst(), u"hold 05.jpg"_s}));
    QVERIFY(meet(u"touch Delete"_s, u"picture\\|1\\|/mnt/ext1/Photo/05.jpg\\|"_s));
    QVERIFY(m_device->act(u"press Back"_s));
    if (const QString name = nameOfTheFirst(); !name.isEmpty()) { // else it could not be read just now
        QVERIFY(m_device->act(u"hold "_s + name));
        QVERIFY(meet(u"touch Delete"_s, u"(title|picture)\\|1\\|.*"_s));
    }

    QStringList titles;
    for (const QString &line : stored()) {
        if (line.startsWith("title"_L1))
            titles.append(line.section(u'|', 2, 2));
    }
    QVERIFY(m_device->ends());
    goesOnAfterwards(titles);
}

/// The next start has nothing to complain of.
void tst_FaultyDatabase::goesOnAfterwards(const QStringList &titles)
{
    QVERIFY(isSound());
    begin();
    QVERIFY(m_device->start());
    const QStringList names = m_device->names().values();
    for (const QString &title : titles) {
        const QString shown = title == "@DefaultPlaylist"_L1 ? u"Photos"_s : title;
        QVERIFY2(!names.filter(shown + u". "_s).isEmpty(), qPrintable(names.join(u'\n')));
    }
    QCOMPARE(m_device->unexpectedErrors(), QByteArrayList());
    QVERIFY(m_device->ends());
}

QTEST_GUILESS_MAIN(tst_FaultyDatabase)
#include "tst_faulty_database.moc"
