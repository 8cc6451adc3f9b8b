// Lines of clients, as the control server reads them.

#include "fuzz_targets.h"
#include "require.h"

#include <request_line.h>

#include <QJsonDocument>

using namespace lindenreed::remote;

void fuzzRequestLine(const QByteArray &input)
{
    const RequestLine read = parseRequestLine(input);
    if (!read.error.isEmpty()) {
        // A line is refused with a reason, never half accepted.
        require(!read.message.isEmpty() && read.request.isEmpty() && read.command.isEmpty());
        return;
    }
    // What was accepted and is written again has to be read as the same request.
    const RequestLine again = parseRequestLine(QJsonDocument(read.request).toJson(QJsonDocument::Compact));
    require(again.error.isEmpty() && again.id == read.id && again.command == read.command
            && again.request == read.request);
}
