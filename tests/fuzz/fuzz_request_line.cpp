// Lines of clients, as the control server reads them.

#include "request_line.h"

#include <QJsonDocument>

#include <cstdint>
#include <cstdlib>

using namespace lindenreed::remote;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const RequestLine read = parseRequestLine(QByteArrayView(data, qsizetype(size)));
    if (!read.error.isEmpty()) {
        // A line is refused with a reason, never half accepted.
        if (read.message.isEmpty() || !read.request.isEmpty() || !read.command.isEmpty())
            std::abort();
        return 0;
    }
    // What was accepted and is written again has to be read as the same request.
    const RequestLine again = parseRequestLine(QJsonDocument(read.request).toJson(QJsonDocument::Compact));
    if (!again.error.isEmpty() || again.id != read.id || again.command != read.command
        || again.request != read.request)
        std::abort();
    return 0;
}
