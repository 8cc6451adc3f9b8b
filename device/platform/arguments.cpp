#include "arguments.h"

#include <cmath>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

int Arguments::integer(const QString &name, int least, int most)
{
    if (!has(name)) {
        complain(u"\"%1\" is missing."_s.arg(name));
        return least;
    }
    return optionalInteger(name, least, most).value_or(least);
}

int Arguments::integerOr(const QString &name, int least, int most, int fallback)
{
    return optionalInteger(name, least, most).value_or(fallback);
}

std::optional<int> Arguments::optionalInteger(const QString &name, int least, int most)
{
    if (!has(name))
        return std::nullopt;
    const QJsonValue value = m_request.value(name);
    const double number = value.toDouble();
    if (!value.isDouble() || std::floor(number) != number) {
        complain(u"\"%1\" is not an integer."_s.arg(name));
        return std::nullopt;
    }
    if (number < least || number > most) {
        complain(u"\"%1\" is not between %2 and %3."_s.arg(name).arg(least).arg(most));
        return std::nullopt;
    }
    return int(number);
}

bool Arguments::boolean(const QString &name)
{
    if (!has(name))
        complain(u"\"%1\" is missing."_s.arg(name));
    return optionalBoolean(name).value_or(false);
}

std::optional<bool> Arguments::optionalBoolean(const QString &name)
{
    if (!has(name))
        return std::nullopt;
    const QJsonValue value = m_request.value(name);
    if (!value.isBool()) {
        complain(u"\"%1\" is neither true nor false."_s.arg(name));
        return std::nullopt;
    }
    return value.toBool();
}

QString Arguments::text(const QString &name)
{
    const QJsonValue value = m_request.value(name);
    if (value.isUndefined())
        complain(u"\"%1\" is missing."_s.arg(name));
    else if (!value.isString())
        complain(u"\"%1\" is not a text."_s.arg(name));
    else if (value.toString().isEmpty())
        complain(u"\"%1\" is empty."_s.arg(name));
    return value.toString();
}

QString Arguments::word(const QString &name, const QStringList &words)
{
    const QString value = text(name);
    if (!words.contains(value))
        complain(u"\"%1\" is none of %2."_s.arg(name, words.join(u", "_s)));
    return value;
}

void Arguments::complain(const QString &sentence)
{
    if (m_complaint.isEmpty())
        m_complaint = sentence;
}

bool Arguments::refuse(const remote::Reply &reply) const
{
    if (m_complaint.isEmpty())
        return false;
    reply.fail(u"bad-argument"_s, m_complaint);
    return true;
}

} // namespace lindenreed::device
