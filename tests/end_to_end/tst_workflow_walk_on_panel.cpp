// The playlist workflow on the real program, walked at random by touch: after each step the screen and the
// database file have what a plain model of it has.

#include "walking_device.h"
#include "workflow_witness.h"

#include <QScopeGuard>

using namespace Qt::StringLiterals;

namespace {

constexpr int stepCount = 150;

} // namespace

class tst_WorkflowWalkOnPanel : public QObject
{
    Q_OBJECT

private slots:
    void sameAsTheModel_data() { WorkflowWalk::addSeeds(1, 10); }
    void sameAsTheModel();
};

void tst_WorkflowWalkOnPanel::sameAsTheModel()
{
    QFETCH(quint32, seed);

    stored_database::remove();
    WorkflowWorld world;
    WorkflowModel model(world);
    WalkingDevice::meetFirstRun(model);
    WalkingDevice device;
    QVERIFY(device.start());
    const auto pullMedia = qScopeGuard([&] { device.pullMedia(world); });
    const WorkflowWitness witness;
    WorkflowWalk walk(seed, WalkingDevice::bounds());
    QStringList lately;
    const auto tell = qScopeGuard([&] {
        if (QTest::currentTestFailed())
            qInfo("last: %s", qUtf8Printable(lately.join("; "_L1)));
    });

    device.look();
    QByteArrayList expectedLines;
    bool countsAreFresh = true;
    for (int i = 0; i < stepCount; ++i) {
        const WorkflowWalk::Step step = walk.next(model);
        lately = lately.mid(qMax(0, lately.size() - 9)) << u"%1 "_s.arg(i) + step.asText();
        const QStringList storedBefore = model.stored();
        const auto request = device.prepare(step, model);
        QVERIFY(request);
        WorkflowWalk::apply(step, model);
        if (step.action == WorkflowWalk::MoveMedium)
            model.storagesAreReported();
        if (step.action == WorkflowWalk::Plus)
            expectedLines.append("ReferenceError: select_photos_loader is not defined");
        else if (step.action == WorkflowWalk::ChangeFolder)
            expectedLines.append("qml: " + step.text.toUtf8() + ' ');
        QVERIFY(device.does(request->command, request->members));

        // The rows of the overview count when they are made.
        if (model.stored() != storedBefore || model.mode != WorkflowModel::AllViewMode)
            countsAreFresh = true;
        else if (step.action == WorkflowWalk::MoveMedium || step.action == WorkflowWalk::VanishOrReturn)
            countsAreFresh = false;
        const QString wrong = device.difference(model, countsAreFresh);
        QVERIFY2(wrong.isEmpty(), qUtf8Printable(wrong));
        QCOMPARE(witness.stored(), model.stored());
    }
    const QByteArrayList lines = device.unexpectedErrors();
    QVERIFY2(lines.size() == expectedLines.size(), lines.join('\n').constData());
    for (qsizetype i = 0; i < lines.size(); ++i)
        QVERIFY2(lines.at(i).contains(expectedLines.at(i)), lines.at(i).constData());
}

QTEST_GUILESS_MAIN(tst_WorkflowWalkOnPanel)
#include "tst_workflow_walk_on_panel.moc"
