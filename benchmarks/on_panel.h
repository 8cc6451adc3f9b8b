// What an application on the panel takes: from a step to the first refresh, and page by page.

#pragma once

#include "in_device.h"
#include "memory_setup.h"
#include "running_app.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <cstdio>
#include <functional>

#include <sys/resource.h>

namespace lindenreed::benchmarks {

class OnPanel
{
public:
    OnPanel(const RunningApp &running, Medians &medians)
        : m_running(running)
        , m_medians(medians)
    {
    }

    /// Adds "ms" until the panel's next refresh is complete, and "open" of the main thread's own time.
    void open(const std::function<void()> &work) const
    {
        m_refreshes.settle(200);
        measure(QStringLiteral("open"), [&] {
            QElapsedTimer clock;
            clock.start();
            const quint64 before = m_refreshes.last();
            work();
            while (m_refreshes.last() == before)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            m_medians.add(QStringLiteral("ms"), double(clock.nsecsElapsed()) * 1e-6);
        });
        m_refreshes.settle(200);
    }

    /// Adds "page" of each page that the page key brings, of so many at most; how many there were.
    int turnPages(int most) const
    {
        QQuickItem *grid = m_running.itemWith("cellHeight");
        if (!grid)
            qFatal("There is no grid.");
        grid->forceActiveFocus();
        for (int page = 0; page < most; ++page) {
            const double before = grid->property("contentY").toDouble();
            measure(QStringLiteral("page"), [this] {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_PageDown, Qt::NoModifier);
                QCoreApplication::sendEvent(m_running.window, &press);
                m_refreshes.settle(100);
            });
            if (grid->property("contentY").toDouble() <= before)
                return page;
        }
        return most;
    }

private:
    struct Used
    {
        double cpuMs = 0;
        double systemMs = 0;
    };

    /// Of this thread.
    static Used used()
    {
        rusage usage = {};
        getrusage(RUSAGE_THREAD, &usage);
        const auto ms
            = [](const timeval &time) { return double(time.tv_sec) * 1e3 + double(time.tv_usec) * 1e-3; };
        return {ms(usage.ru_utime) + ms(usage.ru_stime), ms(usage.ru_stime)};
    }

    void measure(const QString &name, const std::function<void()> &work) const
    {
        const Used before = used();
        work();
        const Used after = used();
        m_medians.add(name + QStringLiteral("_cpu_ms"), after.cpuMs - before.cpuMs);
        m_medians.add(name + QStringLiteral("_system_ms"), after.systemMs - before.systemMs);
    }

    const RunningApp &m_running;
    Medians &m_medians;
    const Refreshes m_refreshes;
};

/// The application's run with `body` in it, and its result as JSON: "ms" as seconds, the other medians as
/// stages.
inline int measureApp(int argc, char *argv[],
                      const std::function<void(const RunningApp &, const QStringList &, Medians &)> &body)
{
    picture_stand::setUpMemory();
    qputenv("QT_QPA_PLATFORM", "lindenreed2");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    picture_stand::App app;
    Medians medians;
    const int status = runApp(
        app, [&](RunningApp &running) { body(running, QCoreApplication::arguments().mid(1), medians); });
    QJsonObject stages = medians.all();
    stages.remove(QStringLiteral("ms"));
    const QJsonObject result{{QStringLiteral("seconds"), medians.of(QStringLiteral("ms")) * 1e-3},
                             {QStringLiteral("stages"), stages}};
    std::puts(QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return status;
}

} // namespace lindenreed::benchmarks
