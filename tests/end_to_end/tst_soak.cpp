// A show that goes on and on, over a library of every kind of picture, with all that happens to a device
// meanwhile. What it takes of the machine is told as a table.

#include "soak_meter.h"
#include "soak_show.h"

#include <QTest>
#include <QThread>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t settled = 500; ///< changes until every cache has what it will have
constexpr double mostGrowthKb = 1; ///< for each 100 changes
constexpr double mostLateMs = 1000;

} // namespace

class tst_Soak : public QObject
{
    Q_OBJECT

private slots:
    void goesOn();

private:
    static bool happens(SoakShow &show, int event, int roundsBetweenEdits);
    static void tell(const SoakMeter &meter, std::size_t first, std::size_t end);
};

bool tst_Soak::happens(SoakShow &show, int event, int roundsBetweenEdits)
{
    const int round = event / 10;
    switch (event % 10) {
    case 0:
    case 3:
        return show.plugs("card");
    case 1:
        return show.opensMenu();
    case 2:
        return show.touches();
    case 4:
        return show.goesAway();
    case 5:
        return show.turns(round % 2 == 0 ? 1 : 2);
    case 6:
        return show.changesByItself();
    case 7:
        return show.turns(0); // before the settings do it
    case 9:
        return show.plugs("usb");
    default:
        if (round % roundsBetweenEdits == 0)
            return show.editsPlaylists();
        if (round % 4 == 1)
            return show.mixesAnew();
        return show.changesDisplayMode();
    }
}

void tst_Soak::tell(const SoakMeter &meter, std::size_t first, std::size_t end)
{
    const SoakMeter::Sample middle = meter.median(first, end);
    std::printf("| %zu to %zu | %.1f | %d | %d |\n", first + 1, end, middle.residentKb / 1024, middle.handles,
                middle.threads);
    std::fflush(stdout);
}

void tst_Soak::goesOn()
{
    const bool isLong = qEnvironmentVariableIsSet("SLATE_LONG");
    const int wished = qEnvironmentVariableIntValue("SLATE_LONG");
    const std::size_t changes = !isLong ? 500 : wished > 1 ? std::size_t(wished) : 50'000;
    const std::size_t stretch = changes / 20;

    SoakShow show;
    QVERIFY2(show.start(), qPrintable(show.trouble()));
    QElapsedTimer clock;
    clock.start();
    SoakMeter meter(show.device().program().processId());
    std::printf("| changes | MiB | handles | threads |\n|---|---:|---:|---:|\n");
    int events = 0;
    for (std::size_t done = 1; done <= changes; ++done) {
        // As fast as pictures finish; now and then those that are read ahead as well, or ever more would be
        // on their way.
        if (done % 10 == 0)
            QVERIFY2(show.rests(), qPrintable(show.trouble()));
        QVERIFY2(show.change(), qPrintable(show.trouble()));
        meter.measure();
        const QByteArrayList unexpected = show.unexpectedLines();
        QVERIFY2(unexpected.isEmpty(), unexpected.join('\n').constData());
        QVERIFY2(show.latestMs() < mostLateMs, qPrintable(u"%1 ms late"_s.arg(show.latestMs())));
        if (done % stretch == 0)
            tell(meter, done - stretch, done);
        // Until it has settled all that happens to the device has happened several times: the heaps reach
        // their size with the largest of it, and what still grows then grows for ever.
        const bool settles = isLong && done <= settled;
        const std::size_t between = settles ? 4 : isLong ? 50 : 20;
        if (done % between == 0) {
            const int event = events++;
            QVERIFY2(happens(show, event, settles ? 2 : 8),
                     qPrintable(u"event %1: %2"_s.arg(event).arg(show.trouble())));
        }
    }
    const qint64 tookS = clock.elapsed() / 1000;

    // In the short run the rest after the first half stands for the long one.
    const std::size_t first = isLong ? settled : changes / 2;
    const double growth = meter.growth(first);
    std::printf("\n%zu changes by hand and %d by themselves, at most %.1f ms late; %d events; %lld s; "
                "resident memory "
                "%+.2f KiB for each 100 changes from %zu on\n",
                changes, show.unfired(), show.latestMs(), events, tookS, growth, first);
    if (isLong)
        QVERIFY2(growth < mostGrowthKb, qPrintable(QString::number(growth)));
    else
        QVERIFY(meter.median(changes - 100, changes).residentKb < 192 * 1024);
    // Idle readers go home and come back, each with a handle of its own.
    const SoakMeter::Sample early = meter.median(first / 2, first);
    const SoakMeter::Sample late = meter.median(changes - first / 2, changes);
    const int readers = QThread::idealThreadCount();
    QVERIFY2(late.threads <= early.threads + readers
                 && late.handles - late.threads <= early.handles - early.threads + 1,
             qPrintable(u"%1 handles and %2 threads, then %3 and %4"_s.arg(early.handles)
                            .arg(early.threads)
                            .arg(late.handles)
                            .arg(late.threads)));
}

QTEST_GUILESS_MAIN(tst_Soak)
#include "tst_soak.moc"
