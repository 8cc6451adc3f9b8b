#include "request_line.h"

#include <QJsonDocument>
#include <QStringDecoder>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

bool isUtf8(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(bytes);
    return !decoder.hasError();
}

} // namespace

std::optional<qint64> integerOf(const QJsonValue &value)
{
    // The default comes back for everything that is no integer; no integer equals both.
    if (!value.isDouble() || value.toInteger(0) != value.toInteger(1))
        return std::nullopt;
    return value.toInteger();
}

RequestLine parseRequestLine(QByteArrayView line)
{
    RequestLine result;
    const auto refuse = [&result](const QString &message) {
        result.error = u"bad-request"_s;
        result.message = message;
        return result;
    };

    if (!isUtf8(line))
        return refuse(u"The line is not UTF-8."_s);
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson(line.toByteArray(), &problem);
    if (problem.error != QJsonParseError::NoError)
        return refuse(u"The line is not JSON: %1."_s.arg(problem.errorString()));
    if (!document.isObject())
        return refuse(u"The line is not a JSON object."_s);

    const QJsonObject request = document.object();
    result.id = integerOf(request.value("id"_L1));
    if (!result.id)
        return refuse(u"The request has no integer \"id\"."_s);
    const QJsonValue command = request.value("do"_L1);
    if (!command.isString())
        return refuse(u"The request has no text \"do\"."_s);
    result.command = command.toString();
    result.request = request;
    return result;
}

} // namespace lindenreed::remote
