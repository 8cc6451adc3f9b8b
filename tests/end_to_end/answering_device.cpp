// A program with a control socket and a panel and nothing else: what the launcher and the show need of a
// device. Takes "press", "fire" and "idle" as the frame does, writes each command to standard output, and
// shows one grey per picture. "open" announces a picture for the viewer.
//
// answering_device [REFUSED_COMMAND]

#include "control_server.h"
#include "panel_file.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QTimer>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

void show(PanelWriter &panel, int picture)
{
    panel.beginWrite();
    std::fill_n(panel.pixels(), 80 * panel.stride(), static_cast<std::uint8_t>(255 - 17 * picture));
    ++panel.header().refreshNumber;
    panel.endWrite();
}

void note(const QJsonObject &request)
{
    const QString words = request.value("do"_L1).toString() + u' ' + request.value("name"_L1).toString();
    std::puts(qUtf8Printable(words.trimmed()));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QString refused = QCoreApplication::arguments().value(1);

    QString error;
    const auto panel = PanelWriter::create({.size = {60, 80}}, u"/devroot/run/panel"_s, &error);
    ControlServer server;
    int picture = 0;
    const auto add = [&](const QString &command, const QStringList &members, const auto &act) {
        server.add(command, members, [&, command, act](const QJsonObject &request, const Reply &reply) {
            note(request);
            if (command == refused) {
                reply.fail(u"not-possible"_s, u"It is refused."_s);
                return;
            }
            act(request);
            reply(command == "state"_L1 ? QJsonObject{{u"language"_s, u"en"_s}} : QJsonObject());
        });
    };
    add(u"state"_s, {}, [](const QJsonObject &) {});
    add(u"idle"_s, {u"ms"_s}, [](const QJsonObject &) {});
    add(u"press"_s, {u"name"_s, u"id"_s, u"n"_s}, [&](const QJsonObject &) { show(*panel, ++picture); });
    add(u"fire"_s, {u"name"_s}, [&](const QJsonObject &) { show(*panel, ++picture); });
    add(u"open"_s, {u"path"_s}, [&](const QJsonObject &request) {
        server.announce({{u"event"_s, u"open"_s}, {u"path"_s, request.value("path"_L1)}});
    });
    add(u"quit"_s, {},
        [](const QJsonObject &) { QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(0); }); });

    if (!panel || !server.listen(u"/devroot/run/control"_s, &error)) {
        std::fputs(qUtf8Printable(error), stderr);
        return 1;
    }
    show(*panel, 0);
    return QCoreApplication::exec();
}
