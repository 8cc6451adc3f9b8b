// A client's whole connection: lines that come in pieces. The first byte says how long the pieces are.

#include "fuzz_targets.h"
#include "require.h"

#include <control_connection.h>
#include <control_server.h>
#include <request_line.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QTimer>

#include <sys/socket.h>
#include <unistd.h>

using namespace lindenreed::remote;
using namespace Qt::StringLiterals;

namespace {

/// What the answer to a line has as "error"; null where it is done.
QString expectedError(const QByteArray &line)
{
    if (line.size() > longestRequestLine)
        return u"too-long"_s;
    const RequestLine read = parseRequestLine(line);
    if (!read.error.isEmpty())
        return read.error;
    if (read.command != "now"_L1 && read.command != "later"_L1 && read.command != "follow"_L1)
        return u"unknown-command"_s;
    for (const QString &member : read.request.keys()) {
        if (member != "id"_L1 && member != "do"_L1 && (member != "x"_L1 || read.command == "follow"_L1))
            return u"bad-argument"_s;
    }
    return {};
}

void receive(int socket, QByteArray *received)
{
    char buffer[16 * 1024];
    for (ssize_t count = 0; (count = ::recv(socket, buffer, sizeof buffer, MSG_DONTWAIT)) > 0;)
        received->append(buffer, count);
}

} // namespace

void fuzzControlConnection(const QByteArray &input)
{
    if (input.isEmpty())
        return;
    const qsizetype pieceSize = 1 + uchar(input.front()) * 8;
    const QByteArray sent = input.sliced(1);

    static ControlServer server;
    static const bool hasCommands = [] {
        server.add(u"now"_s, {u"x"_s}, [](const QJsonObject &, const Reply &reply) { reply(); });
        server.add(u"later"_s, {u"x"_s}, [](const QJsonObject &, const Reply &reply) {
            QTimer::singleShot(0, &server, [reply] { reply(); });
        });
        return true;
    }();
    require(hasCommands);

    int ends[2];
    require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) == 0);
    auto socket = std::make_unique<QLocalSocket>();
    require(socket->setSocketDescriptor(ends[0]));
    {
        const auto connection = std::make_shared<ControlConnection>(&server, std::move(socket));
        connection->begin();
        QByteArray received;
        qsizetype offset = 0;
        // Each line has one answer; a line without its end has none.
        const qsizetype lines = sent.count('\n');
        while (offset < sent.size() || received.count('\n') < lines) {
            if (offset < sent.size()) {
                const qsizetype size = std::min(pieceSize, sent.size() - offset);
                const ssize_t count = ::send(ends[1], sent.constData() + offset, std::size_t(size), 0);
                offset += std::max<ssize_t>(count, 0);
            }
            QCoreApplication::processEvents();
            receive(ends[1], &received);
        }
        for (int turn = 0; turn < 4; ++turn)
            QCoreApplication::processEvents();
        receive(ends[1], &received);

        const QList<QByteArray> questions = sent.split('\n').first(lines);
        const QList<QByteArray> answers = received.split('\n');
        require(answers.size() == lines + 1 && answers.last().isEmpty());
        for (qsizetype i = 0; i < lines; ++i) {
            const QJsonObject answer = QJsonDocument::fromJson(answers.at(i)).object();
            const QString error = expectedError(questions.at(i));
            require(answer.value("error"_L1).toString() == error);
            require(answer.value("ok"_L1) == QJsonValue(error.isEmpty()) && answer.contains("id"_L1));
        }
    }
    ::close(ends[1]);
}
