// Commands that only tell: state, timers, journal, opened, idle.

#include "arguments.h"
#include "device.h"
#include "journal.h"
#include "panel.h"
#include "protocol_limits.h"
#include "remote_control.h"
#include "texts.h"

#include <QJsonArray>

#include <limits>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

constexpr int protocolVersion = 1;

QJsonArray pendingTimers(const Timers &timers)
{
    QJsonArray array;
    const QList<PendingTimer> pending = timers.pending();
    for (const PendingTimer &timer : pending) {
        array.append(QJsonObject{{u"name"_s, QString::fromUtf8(timer.name)},
                                 {u"remaining_ms"_s, qint64(timer.remaining.count())},
                                 {u"interval_ms"_s, qint64(timer.interval.count())}});
    }
    return array;
}

/// Moments are on the monotonic clock.
QJsonArray timersRanOut(const Timers &timers)
{
    const auto microseconds = [](std::chrono::steady_clock::time_point moment) {
        return qint64(
            std::chrono::duration_cast<std::chrono::microseconds>(moment.time_since_epoch()).count());
    };
    QJsonArray array;
    for (const RanOut &timer : timers.lately()) {
        array.append(QJsonObject{{u"number"_s, qint64(timer.number)},
                                 {u"name"_s, QString::fromUtf8(timer.name)},
                                 {u"interval_ms"_s, qint64(timer.interval.count())},
                                 {u"armed_us"_s, microseconds(timer.armed)},
                                 {u"ran_us"_s, microseconds(timer.ran)},
                                 {u"fired"_s, timer.fired}});
    }
    return array;
}

/// What the profile's hardware has, and no more: these are the members that the command "light" takes.
QJsonObject lightState(const Device &device)
{
    QJsonObject state;
    if (device.profile.frontlight) {
        state.insert(u"brightness"_s, device.light.brightness());
        state.insert(u"brightness_auto"_s, device.light.brightnessAuto());
        state.insert(u"enabled"_s, device.light.enabled());
        if (device.profile.colourLight) {
            state.insert(u"color"_s, device.light.colour());
            state.insert(u"color_auto"_s, device.light.colourAuto());
        }
    }
    return state;
}

QJsonArray lastCalls(int count)
{
    QJsonArray array;
    const QList<SdkCall> calls = journal::entries();
    for (qsizetype i = std::max<qsizetype>(0, calls.size() - count); i < calls.size(); ++i) {
        const SdkCall &call = calls.at(i);
        QJsonArray arguments;
        for (const QByteArray &argument : call.arguments)
            arguments.append(QString::fromUtf8(argument));
        array.append(QJsonObject{{u"number"_s, qint64(call.number)},
                                 {u"name"_s, QString::fromUtf8(call.name)},
                                 {u"arguments"_s, arguments},
                                 {u"result"_s, QString::fromUtf8(call.result)},
                                 {u"thread"_s, call.onMainThread ? u"main"_s : u"worker"_s}});
    }
    return array;
}

} // namespace

QJsonObject RemoteControl::state() const
{
    const Screen &screen = m_device.screen;
    const Power &power = m_device.power;
    return {
        {u"protocol"_s, protocolVersion},
        {u"profile"_s, m_device.profile.name},
        {u"touch"_s, m_device.profile.touch},
        {u"language"_s, texts::language()},
        {u"screen"_s,
         QJsonObject{{u"width"_s, screen.size().width()},
                     {u"height"_s, screen.size().height()},
                     {u"orientation"_s, screen.orientation()},
                     {u"inverted"_s, screen.inverted()}}},
        {u"panel"_s,
         QJsonObject{{u"type"_s, screen.panelType()},
                     {u"height"_s, screen.statusHeight()},
                     {u"refreshes"_s, qint64(m_panel.refreshNumber())},
                     {u"last_mode"_s, modeName(m_panel.refreshMode())}}},
        {u"light"_s, lightState(m_device)},
        {u"power"_s,
         QJsonObject{{u"auto_power_off"_s, power.autoPowerOff()},
                     {u"auto_keylock"_s, power.autoKeylock()},
                     {u"ban_sleep"_s, power.banSleep()}}},
        {u"task"_s, QJsonObject{{u"foreground"_s, m_device.events.inForeground()}}},
        {u"timers"_s, pendingTimers(m_device.timers)},
        {u"media"_s,
         QJsonObject{{u"sd"_s, m_device.media.present(Medium::Card)},
                     {u"usb"_s, m_device.media.present(Medium::Usb)}}},
    };
}

void RemoteControl::addStateCommands()
{
    using remote::Reply;
    m_server.add(u"state"_s, {}, [this](const QJsonObject &, const Reply &reply) { reply(state()); });
    m_server.add(u"timers"_s, {}, [this](const QJsonObject &, const Reply &reply) {
        reply({{u"timers"_s, pendingTimers(m_device.timers)}, {u"ran_out"_s, timersRanOut(m_device.timers)}});
    });
    m_server.add(u"opened"_s, {}, [this](const QJsonObject &, const Reply &reply) {
        reply({{u"opened"_s, QJsonArray::fromStringList(m_device.viewer.opened())}});
    });
    m_server.add(u"journal"_s, {u"n"_s}, [](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const int most = std::numeric_limits<int>::max();
        const int count = arguments.integerOr(u"n"_s, 0, most, most);
        if (!arguments.refuse(reply))
            reply({{u"calls"_s, lastCalls(count)}});
    });
    m_server.add(u"idle"_s, {u"ms"_s, u"limit"_s}, [this](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const int quiet = arguments.integerOr(u"ms"_s, 0, remote::longestQuietMs, 300);
        const int limit = arguments.integerOr(u"limit"_s, 0, remote::longestIdleMs, remote::longestIdleMs);
        if (arguments.refuse(reply))
            return;
        m_idleWatcher.wait(
            std::chrono::milliseconds(quiet), std::chrono::milliseconds(limit),
            [reply] { return reply.clientGone(); },
            [reply, limit](bool idle) {
                if (idle)
                    reply();
                else
                    reply.fail(u"busy"_s,
                               u"The device has not come to rest within %1 seconds."_s.arg(limit / 1000.0));
            });
    });
}

} // namespace lindenreed::device
