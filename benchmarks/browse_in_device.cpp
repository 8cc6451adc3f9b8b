// The browsing that the benchmark "browse" measures: FOLDER. Runs in a device; writes its medians as JSON.

#include "in_device.h"
#include "running_app.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <cstdio>

#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace lindenreed;
using namespace lindenreed::benchmarks;
using picture_stand::App;
using picture_stand::FolderModel;

namespace {

constexpr int pages = 12;

struct Used
{
    double cpuMs = 0;
    double systemMs = 0;
};

/// Of this thread.
Used used()
{
    rusage usage = {};
    getrusage(RUSAGE_THREAD, &usage);
    const auto ms
        = [](const timeval &time) { return double(time.tv_sec) * 1e3 + double(time.tv_usec) * 1e-3; };
    return {ms(usage.ru_utime) + ms(usage.ru_stime), ms(usage.ru_stime)};
}

class Browsing
{
public:
    explicit Browsing(const RunningApp &running)
        : m_running(running)
    {
    }

    void run(const QString &folder, Medians &medians)
    {
        m_running.app.changeView(u"select_photos"_s);
        settle();
        measure(u"open"_s, medians, [&] {
            QElapsedTimer clock;
            clock.start();
            const quint64 before = m_refreshes.last();
            m_running.model<FolderModel>("FolderModel")->changeFolder(folder);
            while (m_refreshes.last() == before)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            medians.add(u"ms"_s, double(clock.nsecsElapsed()) * 1e-6);
        });
        settle();
        QQuickItem *grid = m_running.itemWith("cellHeight");
        if (!grid)
            qFatal("There is no grid.");
        grid->forceActiveFocus();
        for (int page = 0; page < pages; ++page) {
            const double before = grid->property("contentY").toDouble();
            measure(u"page"_s, medians, [this] {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_PageDown, Qt::NoModifier);
                QCoreApplication::sendEvent(m_running.window, &press);
                settle();
            });
            if (grid->property("contentY").toDouble() <= before)
                qFatal("The page key does not scroll.");
        }
    }

private:
    template <typename Work>
    static void measure(const QString &name, Medians &medians, const Work &work)
    {
        const Used before = used();
        work();
        const Used after = used();
        medians.add(name + u"_cpu_ms"_s, after.cpuMs - before.cpuMs);
        medians.add(name + u"_system_ms"_s, after.systemMs - before.systemMs);
    }

    /// Until the panel has rested for longer than a thumbnail takes.
    void settle() const
    {
        QElapsedTimer quiet;
        quint64 last = 0;
        do {
            if (last != m_refreshes.last()) {
                last = m_refreshes.last();
                quiet.start();
            }
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        } while (quiet.elapsed() < 200);
    }

    const RunningApp &m_running;
    const Refreshes m_refreshes;
};

double residentMiB()
{
    QFile file(u"/proc/self/status"_s);
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return text.mid(text.indexOf("VmRSS:") + 6).simplified().split(' ').value(0).toDouble() / 1024;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "lindenreed2");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    App app;
    Medians medians;
    const int status = runApp(app, [&](RunningApp &running) {
        Browsing(running).run(QCoreApplication::arguments().value(1), medians);
        medians.add(u"MiB"_s, residentMiB());
    });
    QJsonObject stages = medians.all();
    stages.remove(u"ms"_s);
    const QJsonObject result{{u"seconds"_s, medians.of(u"ms"_s) * 1e-3}, {u"stages"_s, stages}};
    std::puts(QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return status;
}
