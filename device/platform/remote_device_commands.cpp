// Commands that do what the rest of the device would do: events, timers, light, inversion, the end.

#include "arguments.h"
#include "chart.h"
#include "composition.h"
#include "device.h"
#include "panel.h"
#include "remote_control.h"

#include <QTimer>

#include <limits>

namespace lindenreed::device {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using remote::Reply;

void RemoteControl::addDeviceCommands()
{
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();

    m_server.add(u"event"_s, {u"type"_s, u"par1"_s, u"par2"_s},
                 [this](const QJsonObject &request, const Reply &reply) {
                     Arguments arguments(request);
                     const int type = arguments.integer(u"type"_s, 0, most);
                     const int par1 = arguments.integerOr(u"par1"_s, least, most, 0);
                     const int par2 = arguments.integerOr(u"par2"_s, least, most, 0);
                     if (arguments.refuse(reply))
                         return;
                     m_device.events.post(type, par1, par2);
                     afterThisTurn(reply);
                 });

    for (const auto &[command, type] :
         {std::pair(u"background"_s, event::background), {u"foreground"_s, event::foreground}}) {
        m_server.add(command, {}, [this, type = type](const QJsonObject &, const Reply &reply) {
            m_device.events.post(type, 0, 0);
            // Whatever another task left on the panel goes.
            if (type == event::foreground)
                m_device.screen.refresh(RefreshMode::Full);
            afterThisTurn(reply);
        });
    }

    // A sensor only tells; the application decides whether the screen turns.
    m_server.add(u"orientation"_s, {u"value"_s}, [this](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const int value = arguments.integer(u"value"_s, 0, 3);
        if (arguments.refuse(reply))
            return;
        m_device.events.post(event::orientation, value, 0);
        afterThisTurn(reply);
    });

    for (const auto &[command, medium] : {std::pair(u"card"_s, Medium::Card), {u"usb"_s, Medium::Usb}}) {
        m_server.add(command, {u"in"_s},
                     [this, medium = medium](const QJsonObject &request, const Reply &reply) {
                         Arguments arguments(request);
                         const bool in = arguments.boolean(u"in"_s);
                         if (!arguments.refuse(reply))
                             plug(medium, in, reply);
                     });
    }

    m_server.add(u"invert"_s, {u"on"_s}, [this](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const bool on = arguments.boolean(u"on"_s);
        if (arguments.refuse(reply))
            return;
        m_device.screen.setInverted(on);
        reply();
    });

    const QStringList lightMembers{u"brightness"_s, u"color"_s, u"auto"_s, u"color_auto"_s, u"enabled"_s};
    m_server.add(u"light"_s, lightMembers, [this](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const std::optional<int> brightness = arguments.optionalInteger(u"brightness"_s, 0, 100);
        const std::optional<int> colour = arguments.optionalInteger(u"color"_s, 0, 100);
        const std::optional<bool> automatic = arguments.optionalBoolean(u"auto"_s);
        const std::optional<bool> colourAutomatic = arguments.optionalBoolean(u"color_auto"_s);
        const std::optional<bool> enabled = arguments.optionalBoolean(u"enabled"_s);
        if (arguments.refuse(reply))
            return;
        if (!m_device.profile.frontlight) {
            reply.fail(u"not-supported"_s, u"The profile %1 has no light."_s.arg(m_device.profile.name));
            return;
        }
        if ((colour || colourAutomatic) && !m_device.profile.colourLight) {
            reply.fail(u"not-supported"_s,
                       u"The light of the profile %1 has no colour."_s.arg(m_device.profile.name));
            return;
        }
        Light &light = m_device.light;
        if (brightness)
            light.setBrightness(*brightness);
        if (colour)
            light.setColour(*colour);
        if (automatic)
            light.setBrightnessAuto(*automatic);
        if (colourAutomatic)
            light.setColourAuto(*colourAutomatic);
        if (enabled)
            light.setEnabled(*enabled);
        reply();
    });

    m_server.add(u"fire"_s, {u"name"_s}, [this](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const QString name = arguments.text(u"name"_s);
        if (arguments.refuse(reply))
            return;
        // Answers once: it takes the connection along.
        auto *guard = new QObject(this);
        connect(&m_device.timers, &Timers::ranOut, guard,
                [guard, reply, wanted = name.toUtf8()](const QByteArray &ran) {
                    if (ran != wanted)
                        return;
                    // What is captured may go with the connection.
                    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
                    const Reply answer = reply;
                    delete guard;
                    answer();
                });
        // Another timer that ran out in the same moment may have cleared it, or armed it anew.
        QTimer::singleShot(1s, guard, [guard, reply, name] {
            // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
            const Reply answer = reply;
            const QString sentence = u"The timer \"%1\" was cleared before it ran out."_s.arg(name);
            delete guard;
            answer.fail(u"failed"_s, sentence);
        });
        if (!m_device.timers.fire(name.toUtf8())) {
            delete guard;
            reply.fail(u"no-such-item"_s, u"No timer \"%1\" is pending."_s.arg(name));
        }
    });

    m_server.add(u"chart"_s, {}, [this](const QJsonObject &, const Reply &reply) {
        QImage chart = drawChart(m_device.screen.size());
        // Patches are measured: they are on the glass as they are, whatever the panel makes of pictures.
        if (m_device.screen.inverted())
            chart.invertPixels();
        m_composition.cover(chart.convertToFormat(m_panel.pictureFormat()));
        // Whoever asked photographs the panel next: the answer comes when the chart is there.
        connect(
            &m_composition, &Composition::refreshed, this, [reply] { reply(); }, Qt::SingleShotConnection);
    });

    m_server.add(u"quit"_s, {}, [this](const QJsonObject &, const Reply &reply) {
        m_termination.begin();
        reply(); // the loop goes on until its next turn
    });
}

void RemoteControl::plug(Medium medium, bool in, const Reply &reply)
{
    const QString name = medium == Medium::Card ? u"card"_s : u"USB storage"_s;
    QString reason;
    switch (m_device.media.plug(medium, in, &reason)) {
    case PlugResult::Done:
        afterThisTurn(reply); // the application has heard of it then
        break;
    case PlugResult::AlreadySo:
        reply.fail(u"not-possible"_s,
                   (in ? u"The %1 is in already."_s : u"The %1 is out already."_s).arg(name));
        break;
    case PlugResult::NoMedium:
        reply.fail(u"no-such-item"_s, u"There is no simulated %1."_s.arg(name));
        break;
    case PlugResult::RealMedium:
        reply.fail(u"not-possible"_s, u"The %1 is a real one; unmount it."_s.arg(name));
        break;
    case PlugResult::Failed:
        reply.fail(u"failed"_s, u"The %1 cannot be moved: %2."_s.arg(name, reason));
        break;
    }
}

} // namespace lindenreed::device
