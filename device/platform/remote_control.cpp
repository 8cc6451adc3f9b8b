#include "remote_control.h"

#include "composition.h"
#include "device.h"
#include "platform_screen.h"
#include "platform_window.h"

#include <algorithm>
#include <utility>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

QString modeName(RefreshMode mode)
{
    switch (mode) {
    case RefreshMode::Full:
        return u"full"_s;
    case RefreshMode::Fast:
        return u"fast"_s;
    case RefreshMode::Partial:
        break;
    }
    return u"partial"_s;
}

RemoteControl::RemoteControl(Device &device, const Panel &panel, Composition &composition,
                             const StatusPanel &statusPanel, const PlatformScreen &screen,
                             InputContext &inputContext)
    : m_device(device)
    , m_panel(panel)
    , m_composition(composition)
    , m_statusPanel(statusPanel)
    , m_screen(screen)
    , m_inputContext(inputContext)
    , m_finger(screen)
    , m_idleWatcher([this] { return somethingIsUnderWay(); })
    , m_termination(device.events)
{
    addStateCommands();
    addDeviceCommands();
    addInputCommands();
    addItemCommands();

    connect(&m_finger, &Finger::downChanged, &composition, &Composition::setFingerDown);
    connect(&composition, &Composition::refreshed, this,
            [this](quint64 number, const QRect &area, RefreshMode mode) {
                m_server.announce({{u"event"_s, u"refresh"_s},
                                   {u"number"_s, qint64(number)},
                                   {u"x"_s, area.x()},
                                   {u"y"_s, area.y()},
                                   {u"width"_s, area.width()},
                                   {u"height"_s, area.height()},
                                   {u"mode"_s, modeName(mode)},
                                   {u"missed"_s, 0}});
            });
    connect(&composition, &Composition::refreshed, &m_idleWatcher, &IdleWatcher::noteWork);
    connect(&m_finger, &Finger::downChanged, &m_idleWatcher, &IdleWatcher::noteWork);
    connect(&device.viewer, &Viewer::requested, this, [this](const QString &path) {
        m_server.announce({{u"event"_s, u"open"_s}, {u"path"_s, path}});
    });

    connect(&device.screen, &Screen::geometryChanged, this, &RemoteControl::announceChange);
    connect(&device.screen, &Screen::inversionChanged, this, &RemoteControl::announceChange);
    connect(&device.light, &Light::changed, this, &RemoteControl::announceChange);
    connect(&device.power, &Power::changed, this, &RemoteControl::announceChange);
    connect(&device.timers, &Timers::changed, this, &RemoteControl::announceChange);
    connect(&device.media, &Media::changed, this, &RemoteControl::announceChange);
    connect(&device.events, &Events::inForegroundChanged, this, &RemoteControl::announceChange);
}

void RemoteControl::announceChange()
{
    // One for all that changes in this turn of the loop.
    if (std::exchange(m_changeAnnounced, true))
        return;
    const auto announce = [this] {
        m_changeAnnounced = false;
        m_server.announce({{u"event"_s, u"changed"_s}});
    };
    QMetaObject::invokeMethod(this, announce, Qt::QueuedConnection);
}

bool RemoteControl::somethingIsUnderWay() const
{
    if (m_composition.isPending() || m_finger.isBusy())
        return true;
    const QList<PlatformWindow *> windows = m_screen.platformWindows();
    return std::any_of(windows.cbegin(), windows.cend(),
                       [](const PlatformWindow *window) { return window->hasPendingUpdateRequest(); });
}

bool RemoteControl::refuseInBackground(const remote::Reply &reply) const
{
    if (m_device.events.inForeground())
        return false;
    reply.fail(u"not-possible"_s, u"The application is in the background."_s);
    return true;
}

void RemoteControl::afterThisTurn(const remote::Reply &reply)
{
    // What was posted before is delivered before.
    QMetaObject::invokeMethod(
        this, [reply] { reply(); }, Qt::QueuedConnection);
}

} // namespace lindenreed::device
