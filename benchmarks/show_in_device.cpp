// The show that the benchmark "show" measures: ALBUM warm|cold. Runs in a device; writes its medians as JSON.

#include "created_date.h"
#include "in_device.h"
#include "memory_setup.h"
#include "picture_reader.h"
#include "running_app.h"

#include <boardconf.h>
#include <device.h>
#include <slateview.h>

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QThreadPool>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace lindenreed;
using namespace lindenreed::benchmarks;
using picture_stand::App;

namespace {

/// What the picture goes through on its way to the image item, stage by stage.
void measureStages(const QString &path, const QSize &screen, Medians &medians)
{
    const auto measure = [&medians](const QString &name, const auto &work) {
        const double before = cpuTime();
        work();
        medians.add(name, cpuTime() - before);
    };
    QImage kept;
    QImage shown;
    measure(u"date"_s, [&] { picture_stand::createdDate(path); });
    measure(u"decode"_s, [&] { kept = *picture_stand::readImage(path); });
    measure(u"scale"_s, [&] {
        shown = kept.scaled(screen, Qt::KeepAspectRatio, Qt::FastTransformation);
        shown.detach();
    });
    const bool colour = device_display_colormask() != 0;
    measure(u"tone"_s, [&] {
        if (colour)
            adjustAreaDefault(shown.bits(), int(shown.bytesPerLine()), shown.width(), shown.height());
        else
            adjustAreaWithBrightnessContrastGamma(shown.bits(), int(shown.bytesPerLine()), shown.width(),
                                                  shown.height(), 1, 1, 1);
    });
    if (!colour) {
        measure(u"dither"_s, [&] {
            QuickFloyd16Dither(shown.bits(), int(shown.bytesPerLine()), 0, 0, shown.width(), shown.height());
        });
    }
}

/// What a change takes beside its stages.
double restOf(const QJsonObject &stages, bool warm)
{
    double rest = stages.value(u"cpu_ms"_s).toDouble();
    for (const QString &stage : {u"scale"_s, u"tone"_s, u"dither"_s, u"scene"_s, u"panel"_s})
        rest -= stages.value(stage).toDouble();
    return warm ? rest : rest - stages.value(u"decode"_s).toDouble();
}

class Show
{
public:
    Show(const RunningApp &running, const QStringList &album, bool warm)
        : m_running(running)
        , m_album(album)
        , m_warm(warm)
    {
        QObject::connect(&device::Device::instance()->timers, &device::Timers::ranOut, &m_context,
                         [this] { m_waiting.start(); });
        QObject::connect(running.window, &QQuickWindow::afterAnimating, &m_context, [this] {
            m_waited = m_waiting.nsecsElapsed();
            m_frameBegins = cpuTime();
        });
        QObject::connect(running.window, &QQuickWindow::afterRendering, &m_context,
                         [this] { m_frameDrawn = cpuTime(); });
    }

    void run(Medians &medians)
    {
        if (!m_warm) // nothing is loaded ahead
            QObject::disconnect(m_running.slideshow(), &picture_stand::SlideshowModel::loadToCache, nullptr,
                                nullptr);
        m_running.slideshow()->initFromList(m_album, 3600);
        m_running.slideshow()->shuffleChange(false);
        m_running.slideshow()->start();
        m_running.app.changeView(u"slideshow"_s);
        settle();
        for (qsizetype i = 1; i < m_album.size(); ++i) {
            change(medians);
            settle();
            measureStages(m_album.at(i), QSize(ScreenWidth(), ScreenHeight()), medians);
        }
    }

private:
    void settle() const
    {
        if (m_warm)
            QThreadPool::globalInstance()->waitForDone();
        m_refreshes.settle(100);
    }

    void change(Medians &medians)
    {
        const quint64 before = m_refreshes.last();
        QElapsedTimer clock;
        clock.start();
        const double begin = cpuTime();
        device::Device::instance()->timers.fire("nextImageEvent");
        while (m_refreshes.last() == before)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const double end = cpuTime();
        const double wall = double(clock.nsecsElapsed()) * 1e-6;
        medians.add(u"ms"_s, wall);
        medians.add(u"cpu_ms"_s, end - begin);
        medians.add(u"wait"_s, double(m_waited) * 1e-6);
        medians.add(u"scene"_s, m_frameDrawn - m_frameBegins);
        medians.add(u"panel"_s, end - m_frameDrawn);
    }

    const RunningApp &m_running;
    const QStringList m_album;
    const bool m_warm;
    const Refreshes m_refreshes;
    QObject m_context;
    QElapsedTimer m_waiting; ///< since the picture was ready
    qint64 m_waited = 0; ///< for the frame
    double m_frameBegins = 0;
    double m_frameDrawn = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    picture_stand::setUpMemory();
    qputenv("QT_QPA_PLATFORM", "lindenreed2");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QStringList album;
    for (const QFileInfo &file : QDir(arguments.value(1)).entryInfoList(QDir::Files, QDir::Name))
        album.append(file.filePath());

    App app;
    Medians medians;
    const bool warm = arguments.value(2) == "warm"_L1;
    const int status = runApp(app, [&](RunningApp &running) { Show(running, album, warm).run(medians); });
    QJsonObject stages = medians.all();
    stages.remove(u"ms"_s);
    stages.insert(u"rest"_s, restOf(stages, warm));
    const QJsonObject result{{u"seconds"_s, medians.of(u"ms"_s) * 1e-3}, {u"stages"_s, stages}};
    std::puts(QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return status;
}
