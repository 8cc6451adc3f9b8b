// The real program, killed at random moments of a walk through the playlist workflow: the database stays
// whole and keeps every step that was answered, and the next start goes on from there.

#include "walking_device.h"
#include "workflow_witness.h"

#include <QRegularExpression>
#include <QScopeGuard>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int killCount = 20;

QSet<QString> asSet(const QStringList &lines)
{
    return QSet<QString>(lines.cbegin(), lines.cend());
}

bool writes(const WorkflowWalk::Step &step, const WorkflowModel &model)
{
    if (step.action == WorkflowWalk::MoveMedium || step.action == WorkflowWalk::VanishOrReturn)
        return false;
    WorkflowModel after = model;
    WorkflowWalk::apply(step, after);
    return after.stored() != model.stored();
}

/// A step that was cut off may have come to any number of its pictures.
bool isOnTheWay(const QStringList &lines, const QStringList &from, const QStringList &to)
{
    const auto titles = [](const QStringList &all) { return all.filter(QRegularExpression(u"^title "_s)); };
    return (titles(lines) == titles(from) || titles(lines) == titles(to))
        && asSet(lines).contains(asSet(from) & asSet(to)) && (asSet(from) | asSet(to)).contains(asSet(lines));
}

} // namespace

class tst_WorkflowWalkKilled : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsLost_data() { WorkflowWalk::addSeeds(1, 25); }
    void nothingIsLost();

private:
    static void killWhileStarting(WorkflowWalk &walk);
    void walkUntilKilled(WorkflowWalk &walk, WorkflowModel &model);
    void keepsWhatWasAnswered(WorkflowModel &model);

    std::unique_ptr<WalkingDevice> m_device;
    QStringList m_before; ///< what was stored when the last step began
    bool m_answered = false; ///< that step
    QStringList m_steps;
};

/// A frame that has run before writes nothing then.
void tst_WorkflowWalkKilled::killWhileStarting(WorkflowWalk &walk)
{
    QProcess program;
    program.start(WalkingDevice::programPath(), QStringList());
    QVERIFY(program.waitForStarted());
    QVERIFY(!program.waitForFinished(1 + walk.below(600)));
    program.kill();
    QVERIFY(program.waitForFinished());
}

/// Some steps, and one that writes, in which the program is killed.
void tst_WorkflowWalkKilled::walkUntilKilled(WorkflowWalk &walk, WorkflowModel &model)
{
    int patience = walk.below(4);
    for (;;) {
        WorkflowWalk::Step step = walk.next(model);
        for (int i = 0; patience <= 0 && i < 4 && !writes(step, model); ++i)
            step = walk.next(model);
        m_steps.append(step.asText());
        m_before = model.stored();
        const auto request = m_device->prepare(step, model);
        QVERIFY(request);
        WorkflowWalk::apply(step, model);
        if (step.action == WorkflowWalk::MoveMedium)
            model.storagesAreReported();
        if (--patience < 0 && model.stored() != m_before) {
            // Half of them in the middle of it. A tap takes longer than a press.
            const std::chrono::milliseconds limit(
                walk.below(2) == 0 ? 40'000 : walk.below(request->command == "tap"_L1 ? 150 : 60));
            m_answered = m_device->ask(request->command, request->members, limit).value("ok"_L1).toBool();
            m_steps.last() += m_answered ? u", answered"_s : u", cut off"_s;
            m_device->program().kill();
            QVERIFY(m_device->program().waitForFinished());
            return;
        }
        QVERIFY(m_device->doesSoon(*request));
    }
}

/// The model goes on with what the last step came to.
void tst_WorkflowWalkKilled::keepsWhatWasAnswered(WorkflowModel &model)
{
    QCOMPARE(stored_database::rows(u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
    const QStringList lines = WorkflowWitness().stored();
    if (m_answered)
        QCOMPARE(lines, model.stored());
    else
        QVERIFY2(isOnTheWay(lines, m_before, model.stored()), qUtf8Printable(lines.join(u'\n')));
    model.titles.clear();
    model.pictures.clear();
    for (const QString &line : lines) {
        const qlonglong id = line.section(u' ', 1, 1).toLongLong();
        if (line.startsWith("title "_L1))
            model.titles.insert(id, line.section(u' ', 2));
        else if (line.startsWith("picture "_L1))
            model.pictures[id].insert(line.section(u' ', 2));
    }
    QCOMPARE(model.stored(), lines);
}

void tst_WorkflowWalkKilled::nothingIsLost()
{
    QFETCH(quint32, seed);

    stored_database::remove();
    WorkflowWorld world;
    WorkflowModel model(world);
    WalkingDevice::meetFirstRun(model);
    WorkflowWalk walk(seed, WalkingDevice::bounds());
    m_steps.clear();
    const auto tell = qScopeGuard([&] {
        if (QTest::currentTestFailed())
            qInfo("last: %s", qUtf8Printable(m_steps.mid(qMax(0, m_steps.size() - 10)).join("; "_L1)));
        if (m_device)
            m_device->pullMedia(world);
        m_device.reset();
    });

    for (int kill = 0; kill <= killCount; ++kill) {
        const bool programLooksFirst = walk.below(2) == 0; // at what a cut off writing has left
        if (kill > 0 && !programLooksFirst)
            keepsWhatWasAnswered(model);
        if (kill > 0 && walk.below(4) == 0)
            killWhileStarting(walk);
        m_device = std::make_unique<WalkingDevice>();
        QVERIFY(m_device->start());
        if (kill > 0 && programLooksFirst)
            keepsWhatWasAnswered(model);
        if (QTest::currentTestFailed())
            return;
        model.start();
        const QString wrong = m_device->difference(model, true);
        QVERIFY2(wrong.isEmpty(), qUtf8Printable(wrong));
        if (kill < killCount)
            walkUntilKilled(walk, model);
        if (QTest::currentTestFailed())
            return;
    }
}

QTEST_GUILESS_MAIN(tst_WorkflowWalkKilled)
#include "tst_workflow_walk_killed.moc"
