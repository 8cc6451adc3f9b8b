// Commands for finger, keys and typing.

#include "arguments.h"
#include "device.h"
#include "input_context.h"
#include "keys.h"
#include "protocol_limits.h"
#include "remote_control.h"

namespace lindenreed::device {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using remote::Reply;

void RemoteControl::addInputCommands()
{
    const auto place = [this](Arguments &arguments, const QString &x, const QString &y) {
        const QSize size = m_device.screen.size();
        const int left = arguments.integer(x, 0, size.width() - 1);
        return QPoint(left, arguments.integer(y, 0, size.height() - 1));
    };
    const auto perform = [this](const Arguments &arguments, Gesture gesture, const Reply &reply) {
        if (arguments.refuse(reply))
            return;
        if (!m_device.profile.touch) {
            reply.fail(u"not-supported"_s, u"The profile %1 has no touch."_s.arg(m_device.profile.name));
            return;
        }
        if (refuseInBackground(reply))
            return;
        // One that waits behind others, or is under way, ends where another task comes to the front.
        gesture.abandoned = [this, reply] { return reply.clientGone() || !m_device.events.inForeground(); };
        gesture.done = [this, reply] {
            if (!refuseInBackground(reply))
                reply();
        };
        m_finger.perform(std::move(gesture));
    };

    m_server.add(u"tap"_s, {u"x"_s, u"y"_s}, [=](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const QPoint at = place(arguments, u"x"_s, u"y"_s);
        perform(arguments, {at, at, 0, Finger::tapTime, {}, {}}, reply);
    });
    m_server.add(u"hold"_s, {u"x"_s, u"y"_s, u"ms"_s}, [=](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const QPoint at = place(arguments, u"x"_s, u"y"_s);
        const std::chrono::milliseconds rest(arguments.integerOr(u"ms"_s, 0, remote::longestHoldMs, 1000));
        perform(arguments, {at, at, 0, rest, {}, {}}, reply);
    });
    const QStringList dragMembers{u"x1"_s, u"y1"_s, u"x2"_s, u"y2"_s, u"steps"_s};
    m_server.add(u"drag"_s, dragMembers, [=](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const QPoint from = place(arguments, u"x1"_s, u"y1"_s);
        const QPoint to = place(arguments, u"x2"_s, u"y2"_s);
        const int steps = arguments.integerOr(u"steps"_s, 1, remote::mostDragSteps, 10);
        perform(arguments, {from, to, steps, 0ms, {}, {}}, reply);
    });

    m_server.add(u"key"_s, {u"name"_s}, [this](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const std::optional<keys::Key> key = keys::named(arguments.word(u"name"_s, keys::names()));
        if (arguments.refuse(reply) || refuseInBackground(reply))
            return;
        if (key->deviceCode)
            m_device.events.post(event::key, *key->deviceCode, 0);
        // A finger holds an item for its menu; which item has the focus shows without touch alone.
        const bool ofTheDeviceAlone = key->qtKey == Qt::Key_Menu && m_device.profile.touch;
        if (key->qtKey && !ofTheDeviceAlone && !m_inputContext.takeKey(*key->qtKey)) {
            const bool taken = keys::press(*key->qtKey, *key->qtKey == Qt::Key_Return ? u"\r"_s : QString());
            // Without touch the arrow keys are the only way to another item.
            if (!taken && !m_device.profile.touch)
                keys::moveFocus(*key->qtKey);
        }
        afterThisTurn(reply);
    });
    m_server.add(u"type"_s, {u"text"_s}, [this](const QJsonObject &request, const Reply &reply) {
        Arguments arguments(request);
        const QString text = arguments.text(u"text"_s);
        if (arguments.refuse(reply) || refuseInBackground(reply))
            return;
        if (keys::type(text))
            reply();
        else
            reply.fail(u"not-possible"_s, u"No text field has the focus."_s);
    });
}

} // namespace lindenreed::device
