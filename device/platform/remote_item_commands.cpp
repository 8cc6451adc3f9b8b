// Commands that go by what is on the screen: tree, press, increase, decrease.

#include "arguments.h"
#include "item_actions.h"
#include "item_tree.h"
#include "remote_control.h"

#include <limits>

namespace lindenreed::device {

using namespace Qt::StringLiterals;
using remote::Reply;

void RemoteControl::addItemCommands()
{
    m_server.add(u"tree"_s, {}, [this](const QJsonObject &, const Reply &reply) {
        reply({{u"tree"_s, toJson(readTree(m_screen, m_statusPanel))}});
    });

    for (const auto &[command, action] : {std::pair(u"press"_s, ItemAction::Press),
                                          {u"increase"_s, ItemAction::Increase},
                                          {u"decrease"_s, ItemAction::Decrease}}) {
        // A QML id is told by its "#": the member "id" is the request's own.
        m_server.add(
            command, {u"name"_s, u"n"_s},
            [this, action = action](const QJsonObject &request, const Reply &reply) {
                Arguments arguments(request);
                const QString which = arguments.text(u"name"_s);
                const int number = arguments.integerOr(u"n"_s, 1, std::numeric_limits<int>::max(), 1);
                if (arguments.refuse(reply) || refuseInBackground(reply))
                    return;
                const bool byId = which.size() > 1 && which.startsWith(u'#');
                const ItemChoice choice{byId ? QString() : which, byId ? which.mid(1) : QString(), number};
                if (const auto failure = actOnItem(m_screen, m_statusPanel, choice, action))
                    reply.fail(failure->code, failure->message);
                else
                    reply();
            });
    }
}

} // namespace lindenreed::device
